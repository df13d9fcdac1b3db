#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace App {

/// Red, green and blue, 0 to 1, as screens take them.
using Color = std::array<float, 3>;

/// Colours row by row, from the top left.
struct Image {
    Image(int columns, int rows, const Color& color)
        : width(columns),
          height(rows),
          pixels(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), color) {}

    Color& at(int x, int y) { return pixels[indexOf(x, y)]; }
    const Color& at(int x, int y) const { return pixels[indexOf(x, y)]; }

    int width, height;
    std::vector<Color> pixels;

 private:
    std::size_t indexOf(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }
};

}  // namespace App
