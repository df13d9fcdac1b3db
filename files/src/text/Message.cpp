#include "text/Message.h"

namespace Tesk::files {

std::string quoted(std::string_view token) {
    constexpr std::size_t kLongest = 24;
    std::string text = "\"";
    for (const char c : token.substr(0, kLongest)) {
        const auto byte = static_cast<unsigned char>(c);
        text += byte < 0x20 || byte >= 0x7f ? '?' : c;
    }
    text += token.size() > kLongest ? "...\"" : "\"";
    return text;
}

std::string quotedName(std::string_view name) {
    constexpr std::size_t kLongest = 150;
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(name[i]); };
    std::size_t end = name.size();
    if (end > kLongest) {
        end = kLongest;
        while (end > 0 && (byteAt(end) & 0xc0) == 0x80) --end;  // not inside a character
    }
    std::string text = "\"";
    for (std::size_t i = 0; i < end; ++i) {
        // Control characters of ASCII, and those of Latin-1, which have two bytes in UTF-8.
        const bool isControl = byteAt(i) < 0x20 || byteAt(i) == 0x7f ||
                               (i > 0 && byteAt(i - 1) == 0xc2 && byteAt(i) < 0xa0);
        if (!isControl) text += name[i];
        if (isControl && byteAt(i) >= 0x80) text.pop_back();
        if (isControl) text += '?';
    }
    text += end < name.size() ? "...\"" : "\"";
    return text;
}

}  // namespace Tesk::files
