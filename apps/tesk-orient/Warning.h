#pragma once

#include <vector>

#include "TeskPartFiles/PartFiles.h"

namespace App {

/// Something about the input that the user should know, though a result is still given.
using Warning = Tesk::PartWarning;
using Warnings = std::vector<Warning>;

}  // namespace App
