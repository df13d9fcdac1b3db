#include "text/MeshText.h"

#include <charconv>
#include <cmath>

namespace Tesk::files {

void appendFloat(std::string& text, float value) {
    const float size = std::fabs(value);
    const bool isPlain = value == 0.0f || (size >= 1e-4f && size < 1e7f);
    char digits[32];
    const auto end =
        std::to_chars(digits, digits + sizeof(digits), value,
                      isPlain ? std::chars_format::fixed : std::chars_format::scientific)
            .ptr;
    text.append(digits, end);
}

void appendPoint(std::string& text, const PartPoint& point) {
    appendFloat(text, point.x);
    text += ' ';
    appendFloat(text, point.y);
    text += ' ';
    appendFloat(text, point.z);
}

}  // namespace Tesk::files
