// Writes the example part: a table of 80 × 50 mm with a thick top and four legs, lying about at an
// odd angle. Upside down, on its top, it prints without any support.

#include <cstdint>
#include <cstdio>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UPoint3.h"

namespace {

using Point = UPoint3<float>;

struct Triangle {
    Point a, b, c;
};

/// Blocks on a coarse grid with uneven lines: a cell is solid or empty, and the surface is every
/// face between a solid and an empty cell, so that it is closed whatever the blocks are.
class Blocks {
 public:
    Blocks(std::vector<float> x, std::vector<float> y, std::vector<float> z)
        : m_lines{std::move(x), std::move(y), std::move(z)} {}

    void fill(int x, int y, int z) { m_solid.insert({x, y, z}); }

    std::vector<Triangle> surface() const {
        std::vector<Triangle> triangles;
        for (const Cell& cell : m_solid) {
            for (int axis = 0; axis < 3; ++axis) {
                for (const int side : {0, 1}) appendFace(cell, axis, side, triangles);
            }
        }
        return triangles;
    }

 private:
    using Cell = std::vector<int>;

    void appendFace(const Cell& cell, int axis, int side, std::vector<Triangle>& triangles) const {
        Cell neighbour = cell;
        neighbour[static_cast<std::size_t>(axis)] += side == 1 ? 1 : -1;
        if (m_solid.count(neighbour) != 0) return;
        const int u = (axis + 1) % 3;
        const int v = (axis + 2) % 3;
        const auto corner = [&](int du, int dv) {
            Point p;
            p[axis] = line(axis, cell, side);
            p[u] = line(u, cell, du);
            p[v] = line(v, cell, dv);
            return p;
        };
        const Point a = corner(0, 0);
        const Point b = side == 1 ? corner(1, 0) : corner(0, 1);
        const Point c = corner(1, 1);
        const Point d = side == 1 ? corner(0, 1) : corner(1, 0);
        triangles.push_back({a, b, c});
        triangles.push_back({a, c, d});
    }

    float line(int axis, const Cell& cell, int offset) const {
        const auto k = static_cast<std::size_t>(axis);
        return m_lines[k][static_cast<std::size_t>(cell[k] + offset)];
    }

    std::vector<float> m_lines[3];
    std::set<Cell> m_solid;
};

Blocks table() {
    Blocks blocks({0, 8, 72, 80}, {0, 8, 42, 50}, {0, 34, 40});
    for (int x = 0; x < 3; ++x) {
        for (int y = 0; y < 3; ++y) {
            blocks.fill(x, y, 1);
            if (x != 1 && y != 1) blocks.fill(x, y, 0);
        }
    }
    return blocks;
}

void append(std::string& bytes, const void* value, std::size_t size) {
    bytes.append(static_cast<const char*>(value), size);
}

std::string binaryStl(const std::vector<Triangle>& triangles) {
    std::string bytes(80, ' ');
    const auto count = static_cast<std::uint32_t>(triangles.size());
    append(bytes, &count, sizeof count);
    for (const Triangle& t : triangles) {
        const UVector3<float> normal = ((t.b - t.a) * (t.c - t.a)).GetNormal();
        const float values[] = {normal.x, normal.y, normal.z, t.a.x, t.a.y, t.a.z,
                                t.b.x,    t.b.y,    t.b.z,    t.c.x, t.c.y, t.c.z};
        append(bytes, values, sizeof values);
        bytes.append(2, '\0');
    }
    return bytes;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FILE.stl\n", argv[0]);
        return 2;
    }
    const UMatrix4<float> awkward = UMatrix4<float>::CreateRotateMatrix(0.6f, {1.0f, 2.0f, 0.5f}) *
                                    UMatrix4<float>::CreateTransfMatrix({30.0f, -12.0f, 7.0f});
    std::vector<Triangle> triangles = table().surface();
    for (Triangle& t : triangles) t = {t.a * awkward, t.b * awkward, t.c * awkward};
    const std::string bytes = binaryStl(triangles);
    std::FILE* file = std::fopen(argv[1], "wb");
    const bool isWritten =
        file != nullptr && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    if (file == nullptr || std::fclose(file) != 0 || !isWritten) {
        std::fprintf(stderr, "%s: cannot be written\n", argv[1]);
        return 1;
    }
    return 0;
}
