#include "shapes/CadShapes.h"

#include <algorithm>
#include <cmath>

#include "shapes/Shapes.h"
#include "tools/TestRandom.h"

namespace {

constexpr double kPi = 3.141592653589793;

UPoint2<float> onCircle(float radius, double angleRad) {
    return {static_cast<float>(radius * Tesk::cosine(angleRad)),
            static_cast<float>(radius * Tesk::sine(angleRad))};
}

/// Adds a closed loop of points at height z and returns the index of the first.
std::int32_t addLoop(Part& part, const Polygon& loop, float z) {
    const auto first = static_cast<std::int32_t>(part.positions.size());
    for (const UPoint2<float>& p : loop) part.add({p.x, p.y, z});
    return first;
}

/// A strip of quads between two loops of n vertices, facing right of the direction of `from`.
void addStrip(Part& part, std::int32_t from, std::int32_t to, std::int32_t n) {
    for (std::int32_t i = 0; i < n; ++i) {
        const std::int32_t j = (i + 1) % n;
        part.triangles.push_back({from + i, from + j, to + j});
        part.triangles.push_back({from + i, to + j, to + i});
    }
}

/// A square outline whose points lie at the same angles as a regular polygon's.
Polygon squareAround(float half, int n) {
    Polygon square;
    for (int i = 0; i < n; ++i) {
        const UPoint2<float> p = onCircle(1.0f, 2.0 * kPi * i / n);
        const float stretch = half / std::max(std::fabs(p.x), std::fabs(p.y));
        square.push_back({p.x * stretch, p.y * stretch});
    }
    return square;
}

}  // namespace

Polygon regularPolygon(float radius, int n) {
    Polygon polygon;
    for (int i = 0; i < n; ++i) polygon.push_back(onCircle(radius, 2.0 * kPi * i / n));
    return polygon;
}

Part makeExtrusion(const Polygon& outline, float low, float high) {
    Part part;
    const auto n = static_cast<std::int32_t>(outline.size());
    const std::int32_t bottom = addLoop(part, outline, low);
    const std::int32_t top = addLoop(part, outline, high);
    for (std::int32_t i = 1; i + 1 < n; ++i) {
        part.triangles.push_back({bottom, bottom + i + 1, bottom + i});
        part.triangles.push_back({top, top + i, top + i + 1});
    }
    addStrip(part, bottom, top, n);
    return part;
}

Part makeRing(const Polygon& outer, const Polygon& inner, float low, float high) {
    Part part;
    const auto n = static_cast<std::int32_t>(outer.size());
    const std::int32_t outerLow = addLoop(part, outer, low);
    const std::int32_t outerHigh = addLoop(part, outer, high);
    const std::int32_t innerLow = addLoop(part, inner, low);
    const std::int32_t innerHigh = addLoop(part, inner, high);
    addStrip(part, outerLow, outerHigh, n);
    addStrip(part, outerHigh, innerHigh, n);
    addStrip(part, innerHigh, innerLow, n);
    addStrip(part, innerLow, outerLow, n);
    return part;
}

Part makeColumnWithArm() {
    Part part = makeBox({0.0f, 0.0f, 0.0f}, {2.0f, 6.0f, 8.0f});
    return part.join(makeBox({2.0f, 0.0f, 6.0f}, {10.0f, 6.0f, 8.0f}));
}

Part makePrism() {
    Part part;
    for (const float y : {0.0f, 6.0f}) {
        part.add({0.0f, y, 0.0f});
        part.add({0.0f, y, 10.0f});
        part.add({10.0f, y, 10.0f});
    }
    part.triangles = {{0, 2, 1}, {3, 4, 5}, {0, 1, 4}, {0, 4, 3},
                      {1, 2, 5}, {1, 5, 4}, {2, 0, 3}, {2, 3, 5}};
    return part;
}

Part makeBracket(float legX, float legY, float thickness, float width) {
    return makeExtrusion({{0.0f, 0.0f},
                          {legX, 0.0f},
                          {legX, thickness},
                          {thickness, thickness},
                          {thickness, legY},
                          {0.0f, legY}},
                         0.0f, width);
}

Part makeGear(int teeth, float radius, float thickness) {
    Polygon outer;
    Polygon hub;
    const int n = 4 * teeth;
    for (int i = 0; i < n; ++i) {
        const double angle = 2.0 * kPi * i / n;
        outer.push_back(onCircle(i % 4 < 2 ? radius : 0.85f * radius, angle));
        hub.push_back(onCircle(0.3f * radius, angle));
    }
    return makeRing(outer, hub, 0.0f, thickness);
}

Part makePlateWithHoles(int nx, int ny, float cell, float thickness, int segments) {
    const Part tile = makeRing(squareAround(0.5f * cell, segments),
                               regularPolygon(0.3f * cell, segments), 0.0f, thickness);
    Part plate;
    for (int i = 0; i < nx; ++i) {
        for (int j = 0; j < ny; ++j) {
            plate.join(
                tile.moved(cell * static_cast<float>(i), cell * static_cast<float>(j), 0.0f));
        }
    }
    return plate;
}

Part makeStack(int nx, int ny, int nz, float size) {
    Part stack;
    const Part box = makeBox({0.0f, 0.0f, 0.0f}, {size, size, size});
    for (int i = 0; i < nx; ++i) {
        for (int j = 0; j < ny; ++j) {
            for (int k = 0; k < nz; ++k) {
                stack.join(box.moved(size * static_cast<float>(i), size * static_cast<float>(j),
                                     size * static_cast<float>(k)));
            }
        }
    }
    return stack;
}

Part makeTouchingSolids() {
    const Part box = makeBox({0.0f, 0.0f, 0.0f}, {3.0f, 3.0f, 3.0f});
    Part part = box;
    part.join(box.moved(0.0f, 0.0f, 3.0f));
    part.join(box.moved(3.0f, 0.0f, 3.0f));
    part.join(box.moved(3.0f, 3.0f, 6.0f));
    return part.join(makeCylinder(1.5f, 4.0f, 24).moved(1.5f, 1.5f, 6.0f));
}

Part makeTable() {
    Part part = makeBox({0.0f, 0.0f, 8.0f}, {12.0f, 8.0f, 9.0f});
    for (const float x : {0.5f, 10.5f}) {
        for (const float y : {0.5f, 6.5f}) {
            part.join(makeBox({x, y, 0.0f}, {x + 1.0f, y + 1.0f, 8.0f}));
        }
    }
    return part;
}

namespace {

/// One of five kinds of pieces. Random numbers are drawn one per statement: the order of
/// evaluation inside a call is the compiler's choice.
Part makeRandomPiece(TestRandom& random) {
    const int kind = random.below(5);
    const float a = random.in(0.0f, 1.0f);
    const float b = random.in(0.0f, 1.0f);
    switch (kind) {
        case 0:
            return makeBox({0.0f, 0.0f, 0.0f}, {1.0f + 8.0f * a, 1.0f + 8.0f * b, 4.0f});
        case 1:
            return makeBracket(4.0f + 8.0f * a, 4.0f + 8.0f * b, 1.5f, 5.0f);
        case 2:
            return makeCylinder(1.0f + 3.0f * a, 2.0f + 10.0f * b, 32);
        case 3:
            return makeGear(6 + random.below(6), 3.0f + 4.0f * a, 2.0f);
        default:
            return makePlateWithHoles(2, 1, 5.0f, 1.0f, 16);
    }
}

}  // namespace

Part makeRandomAssembly(std::uint64_t seed) {
    TestRandom random(seed);
    Part part;
    for (int pieces = 3 + random.below(4); pieces > 0; --pieces) {
        Part piece = makeRandomPiece(random);
        // Right angles and whole numbers bring out ties; the rest brings out rounding.
        if (random.below(2) == 0) {
            const float x = random.in(-1.0f, 1.0f);
            const float y = random.in(-1.0f, 1.0f);
            const float angleRad = random.in(0.0f, 3.0f);
            piece = piece.placed(UMatrix4<float>::CreateRotateMatrix(angleRad, {x, y, 0.5f}));
        }
        const auto x = static_cast<float>(random.below(8));
        const auto y = static_cast<float>(random.below(8));
        const auto z = static_cast<float>(random.below(8));
        part.join(piece.moved(x, y, z));
    }
    return part;
}
