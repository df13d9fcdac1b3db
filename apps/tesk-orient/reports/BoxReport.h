#pragma once

#include <optional>
#include <string>

#include "options/Options.h"
#include "part/MeshFile.h"
#include "poses/PartBox.h"
#include "reports/ReportValues.h"

namespace App {

/// What a search for a box found.
struct BoxResult {
    LoadedPart part;
    PartBox box;
    std::optional<double> partVolume;  ///< mm³, of a closed mesh

    /// The part's volume divided by the box's, where both are known and the box is not flat.
    std::optional<double> fillRatio() const;
};

/// A table for people.
std::string boxReportTable(const BoxOptions& options, const BoxResult& result);

/// The same for programs: one JSON object, whose "schema" names its version.
Json boxReportJson(const BoxOptions& options, const BoxResult& result);

/// What these consist of, for reports of several parts.
std::string boxText(const BoxOptions& options, const BoxResult& result);
Json settingsOf(const BoxOptions& options);
Json boxConventions();
Json boxMembers(const BoxResult& result);

}  // namespace App
