#include "page/Base64.h"

#include <algorithm>
#include <cstdint>

namespace App {

std::string base64Of(std::span<const unsigned char> bytes) {
    static constexpr char kDigits[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text((bytes.size() + 2) / 3 * 4, '=');
    char* to = text.data();
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 3; ++i) group = group << 8 | (i < count ? bytes[at + i] : 0u);
        for (std::size_t i = 0; i <= count; ++i) to[i] = kDigits[group >> (18 - 6 * i) & 63];
        to += 4;
    }
    return text;
}

}  // namespace App
