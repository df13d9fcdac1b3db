#include "picture/Png.h"

#include <zlib.h>

#include <cmath>
#include <new>
#include <string_view>

namespace App {

namespace {

std::string bigEndian(std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xff);
    return bytes;
}

std::string chunk(std::string_view type, std::string_view content) {
    const std::string checked = std::string(type) + std::string(content);
    const auto sum =
        crc32(0, reinterpret_cast<const Bytef*>(checked.data()), static_cast<uInt>(checked.size()));
    return bigEndian(static_cast<std::uint32_t>(content.size())) + checked +
           bigEndian(static_cast<std::uint32_t>(sum));
}

/// Each row as differences from the one above (PNG's filter 2): large areas of one colour are
/// zeros.
std::string filteredRows(const Image& image) {
    const auto byteAt = [&](int x, int y, std::size_t k) {
        if (y < 0) return 0;
        return static_cast<int>(std::floor(image.at(x, y)[k] * 255.0f + 0.5f));
    };
    std::string rows;
    for (int y = 0; y < image.height; ++y) {
        rows += '\2';
        for (int x = 0; x < image.width; ++x) {
            for (std::size_t k = 0; k < 3; ++k) {
                rows += static_cast<char>(byteAt(x, y, k) - byteAt(x, y - 1, k));
            }
        }
    }
    return rows;
}

std::string deflated(const std::string& bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::string packed(size, '\0');
    const int result = compress2(reinterpret_cast<Bytef*>(packed.data()), &size,
                                 reinterpret_cast<const Bytef*>(bytes.data()),
                                 static_cast<uLong>(bytes.size()), 9);
    if (result != Z_OK) throw std::bad_alloc();
    packed.resize(size);
    return packed;
}

}  // namespace

std::string pngOf(const Image& image) {
    using namespace std::string_view_literals;
    const std::string header = bigEndian(static_cast<std::uint32_t>(image.width)) +
                               bigEndian(static_cast<std::uint32_t>(image.height)) +
                               std::string("\x08\x02\x00\x00\x00"sv);
    return std::string("\x89PNG\r\n\x1a\n"sv) + chunk("IHDR", header) +
           chunk("IDAT", deflated(filteredRows(image))) + chunk("IEND", "");
}

}  // namespace App
