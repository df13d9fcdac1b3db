#pragma once

#include <string>

#include "reports/OrientReport.h"

namespace App {

/// The picture of one part's chosen pose, in the format that its name asks for.
std::string posesPicture(const OrientOptions& options, const OrientResult& result);

/// The page of one part's poses, of which there is at least one.
std::string posesPage(const OrientOptions& options, const OrientResult& result);

}  // namespace App
