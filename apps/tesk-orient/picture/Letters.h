#pragma once

#include <string_view>

#include "picture/Image.h"

namespace App {

/// Writes text into an image, in letters of 10 × 14 pixels that stand 12 apart. It knows the
/// letters that captions need; others leave a gap. What reaches beyond the image is left out.
void writeText(Image& image, int left, int top, std::string_view text, const Color& color);

}  // namespace App
