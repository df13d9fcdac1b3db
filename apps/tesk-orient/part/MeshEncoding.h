#pragma once

#include <string>
#include <string_view>

#include "TriangleMesh.h"

namespace App {

using Encoder = std::string (*)(const TriangleMesh&);

/// What turns a mesh into a file's bytes, by the extension in lower case with its dot; null for an
/// unknown one. Text formats give every float the digits that read back to the same bits.
Encoder encoderFor(std::string_view extension);

}  // namespace App
