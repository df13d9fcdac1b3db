#include "shapes/BatchParts.h"

#include <cmath>
#include <cstdint>
#include <fstream>

namespace fs = std::filesystem;

namespace {

struct Point {
    float x, y, z;
};

/// Both poles, and `columns` points on each ring between them.
class Ball {
 public:
    Ball(int rings, unsigned seed) : m_rings(rings), m_columns(2 * rings), m_seed(seed) {}

    Point at(int ring, int column) const {
        const double turn = 2.0 * 3.14159265358979 * (column % m_columns) / m_columns;
        const double tilt = 3.14159265358979 * ring / m_rings;
        const bool isPole = ring == 0 || ring == m_rings;
        const double bump = isPole ? 0.0 : std::sin((3 + m_seed % 5) * tilt) * std::cos(5 * turn);
        const double r = 20.0 + 0.01 * (m_seed % 997) + 2.0 * bump;
        const double across = isPole ? 0.0 : r * std::sin(tilt);
        return {static_cast<float>(across * std::cos(turn)),
                static_cast<float>(across * std::sin(turn)),
                static_cast<float>(0.7 * r * std::cos(tilt))};
    }

    std::string stl() const {
        std::string triangles;
        for (int ring = 0; ring < m_rings; ++ring) {
            for (int column = 0; column < m_columns; ++column) {
                const Point a = at(ring, column), b = at(ring, column + 1);
                const Point c = at(ring + 1, column), d = at(ring + 1, column + 1);
                if (ring < m_rings - 1) add(triangles, a, c, d);
                if (ring > 0) add(triangles, a, d, b);
            }
        }
        const auto count = static_cast<std::uint32_t>(triangles.size() / 50);
        std::string bytes(80, ' ');
        bytes.append(reinterpret_cast<const char*>(&count), 4);
        return bytes + triangles;
    }

 private:
    static void add(std::string& bytes, Point a, Point b, Point c) {
        const Point corners[4] = {{0, 0, 0}, a, b, c};
        bytes.append(reinterpret_cast<const char*>(corners), sizeof(corners)).append(2, '\0');
    }

    int m_rings;
    int m_columns;
    unsigned m_seed;
};

}  // namespace

std::string bumpyBall(int rings, unsigned seed) {
    return Ball(rings, seed).stl();
}

void makeParts(const fs::path& folder, int count, int rings) {
    for (int i = 0; i < count; ++i) {
        const fs::path below = folder / ("group" + std::to_string(i % 3));
        fs::create_directories(below);
        std::string name = std::to_string(i);
        name.insert(0, name.size() < 5 ? 5 - name.size() : 0, '0');
        std::ofstream(below / ("part" + name + ".stl"), std::ios::binary)
            << bumpyBall(rings + i % 4, static_cast<unsigned>(i));
    }
}
