#include "shapes/Shapes.h"

#include <algorithm>
#include <cmath>

#include "shapes/CadShapes.h"
#include "tools/TestRandom.h"

namespace {

constexpr double kPi = 3.141592653589793;

UMatrix4<float> scaling(float x, float y, float z) {
    UMatrix4<float> m;
    m.at(0, 0) = x;
    m.at(1, 1) = y;
    m.at(2, 2) = z;
    return m;
}

UMatrix4<float> shear() {
    UMatrix4<float> m;
    m.at(1, 0) = 0.375f;
    m.at(2, 0) = -0.2f;
    m.at(2, 1) = 0.6f;
    return m;
}

}  // namespace

Part makeBox(const UPoint3<float>& low, const UPoint3<float>& high) {
    Part part;
    for (int corner = 0; corner < 8; ++corner) {
        part.add({(corner & 1) != 0 ? high.x : low.x, (corner & 2) != 0 ? high.y : low.y,
                  (corner & 4) != 0 ? high.z : low.z});
    }
    part.triangles = {{0, 2, 3}, {0, 3, 1}, {4, 5, 7}, {4, 7, 6}, {0, 1, 5}, {0, 5, 4},
                      {2, 6, 7}, {2, 7, 3}, {0, 4, 6}, {0, 6, 2}, {1, 3, 7}, {1, 7, 5}};
    return part;
}

Part makeSphere(float radius, int triangles) {
    // 2 * rings * segments triangles less the two caps, with twice as many segments as rings.
    const int rings = std::max(3, static_cast<int>(std::ceil(std::sqrt(triangles / 4.0))) + 1);
    const int segments = 2 * rings;
    Part part;
    const std::int32_t top = part.add({0.0f, 0.0f, radius});
    for (int r = 1; r < rings; ++r) {
        const double polar = kPi * r / rings;
        for (int s = 0; s < segments; ++s) {
            const double around = 2.0 * kPi * s / segments;
            part.add({static_cast<float>(radius * Tesk::sine(polar) * Tesk::cosine(around)),
                      static_cast<float>(radius * Tesk::sine(polar) * Tesk::sine(around)),
                      static_cast<float>(radius * Tesk::cosine(polar))});
        }
    }
    const std::int32_t bottom = part.add({0.0f, 0.0f, -radius});
    const auto at = [&](int ring, int s) { return 1 + (ring - 1) * segments + s % segments; };
    for (int s = 0; s < segments; ++s) {
        part.triangles.push_back({top, at(1, s), at(1, s + 1)});
        for (int r = 1; r + 1 < rings; ++r) {
            part.triangles.push_back({at(r, s), at(r + 1, s), at(r + 1, s + 1)});
            part.triangles.push_back({at(r, s), at(r + 1, s + 1), at(r, s + 1)});
        }
        part.triangles.push_back({at(rings - 1, s), bottom, at(rings - 1, s + 1)});
    }
    return part;
}

Part makeCylinder(float radius, float height, int segments) {
    return makeExtrusion(regularPolygon(radius, segments), 0.0f, height);
}

Part makeSoup(int n, float size, std::uint64_t seed) {
    TestRandom random(seed);
    Part part;
    for (int t = 0; t < n; ++t) {
        Part::Corners corners{};
        for (std::int32_t& corner : corners) {
            const float x = random.in(0.0f, size);
            const float y = random.in(0.0f, size);
            corner = part.add({x, y, random.in(0.0f, size)});
        }
        part.triangles.push_back(corners);
    }
    return part;
}

Part makeCommonCentroid(int n) {
    Part part;
    for (int t = 0; t < n; ++t) {
        // Small whole numbers: the three corners cancel exactly.
        const auto u = static_cast<float>(1 + t % 97);
        const auto v = static_cast<float>(t % 89 - 44);
        const auto w = static_cast<float>(t % 83 - 41);
        const std::int32_t a = part.add({u, v, w});
        const std::int32_t b = part.add({-v, u, v});
        const std::int32_t c = part.add({v - u, -u - v, -v - w});
        part.triangles.push_back({a, b, c});
    }
    return part;
}

Part makeCopies(int n) {
    Part part;
    for (int t = 0; t < n; ++t) {
        const std::int32_t a = part.add({0.0f, 0.0f, 0.0f});
        part.add({4.0f, 1.0f, 2.0f});
        part.add({1.0f, 5.0f, 3.0f});
        part.triangles.push_back({a, a + 1, a + 2});
    }
    return part;
}

Part makeWavySheet(int n, float size) {
    Part part;
    const float step = size / static_cast<float>(n);
    for (int j = 0; j <= n; ++j) {
        for (int i = 0; i <= n; ++i) {
            const float x = static_cast<float>(i) * step;
            const float y = static_cast<float>(j) * step;
            const double wave = Tesk::sine(12.0 * x / size) * Tesk::cosine(9.0 * y / size);
            part.add({x, y, static_cast<float>(0.1 * size * wave)});
        }
    }
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < n; ++i) {
            const std::int32_t a = j * (n + 1) + i;
            part.triangles.push_back({a, a + 1, a + n + 2});
            part.triangles.push_back({a, a + n + 2, a + n + 1});
        }
    }
    return part;
}

const std::vector<Placement>& placements() {
    using Matrix = UMatrix4<float>;
    static const std::vector<Placement> all = [] {
        const Matrix move = Matrix::CreateTransfMatrix({12.5f, -7.25f, 3.1f});
        const Matrix turn = Matrix::CreateRotateMatrix(0.7f, {1.0f, 2.0f, 3.0f});
        const Matrix mirror = scaling(-1.0f, 1.0f, 1.0f);
        const Matrix everything = scaling(1.5f, 1.5f, 1.5f) * mirror * shear() * turn * move;
        return std::vector<Placement>{{"identity", Matrix()},
                                      {"moved", move},
                                      {"turned", turn},
                                      {"scaled up", scaling(3.0f, 2.0f, 0.5f)},
                                      {"scaled down", scaling(0.01f, 0.01f, 0.01f)},
                                      {"mirrored", mirror},
                                      {"sheared", shear()},
                                      {"everything", everything}};
    }();
    return all;
}
