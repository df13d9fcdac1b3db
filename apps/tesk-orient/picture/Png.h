#pragma once

#include <string>

#include "picture/Image.h"

namespace App {

/// The bytes of a PNG file, 8 bits per colour. Throws std::bad_alloc.
std::string pngOf(const Image& image);

}  // namespace App
