#pragma once

#include "TeskPartFiles/LengthUnits.h"

namespace App {

/// The units of mesh files, by the names that the option --units takes and reports print.
using Tesk::LengthUnit;
using Tesk::lengthUnits;
using Tesk::unitNamed;

}  // namespace App
