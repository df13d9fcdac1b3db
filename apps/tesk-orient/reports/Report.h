#pragma once

#include <functional>
#include <string>

#include "Warning.h"
#include "reports/ReportValues.h"

namespace App {

/// What a command found, in the form that its options ask for.
struct Report {
    std::string table;  ///< for people; empty with CommonOptions::isJson
    Json json;          ///< for programs: one object, with the input's warnings; otherwise null
    std::string notes = {};  ///< how the work went, for those who want to know
};

/// Is told each warning about the input as soon as it is known, before the work begins. Empty where
/// nobody wants to hear them; a report in JSON holds them, too.
using WarningSink = std::function<void(const Warning&)>;

}  // namespace App
