#pragma once

#include <string>
#include <vector>

#include "options/Options.h"
#include "part/MeshFile.h"
#include "plate/PlateChecks.h"
#include "plate/Shapes.h"
#include "reports/Report.h"

namespace App {

/// What a command found of one shape.
struct PlateSection {
    std::string table;              ///< for people, without a heading
    Json members = Json::object();  ///< for programs
};

/// A section with what every command says of a shape: which object it is, how large, and where its
/// items end up.
///
/// @param lying  the shape as its first item lies on the plate, in mm
PlateSection withObject(const LoadedPlate& plate, const Shape& shape, const LoadedPart& lying,
                        const NewPlaces& places, const PlateSection& section);

/// Findings as a report prints them.
Json warningsValue(const LoadedPlate& plate, const std::vector<PlateFinding>& findings);

/// How to read a report of several parts, and what it was made with.
struct PlateFrame {
    const char* command;
    Json settings;     ///< null for none
    Json conventions;  ///< of the command's own members
};

/// The report of all sections, in the form that the options ask for.
Report plateReport(const CommonOptions& options, const LoadedPlate& plate, const PlateFrame& frame,
                   const std::vector<PlateSection>& sections,
                   const std::vector<PlateFinding>& findings);

}  // namespace App
