#pragma once

#include <string>

#include "reports/OrientReport.h"

namespace App {

/// The page of one part's poses, of which there is at least one.
std::string posesPage(const OrientOptions& options, const OrientResult& result);

}  // namespace App
