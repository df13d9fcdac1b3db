#pragma once

#include <string>

#include "TeskDataBasic/UVector3.h"
#include "options/Options.h"
#include "part/MeshFile.h"

namespace App {

/// A direction or position for people, to three places; −0 is 0.
std::string textOf(const UVector3<float>& direction);

double degreesOf(float angleRad);

/// A volume for people, with its unit: cm³, or mm³ where it is small.
std::string volumeText(double cubicMillimetres);

/// The first line of a report: what was read, and how large it is.
std::string headingOf(const CommonOptions& options, const LoadedPart& part);

}  // namespace App
