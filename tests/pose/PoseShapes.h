#pragma once

#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

/// A bridge 40 × 10 × 25: legs 10 wide at both ends, a deck 5 thick at z = 20. One closed mesh.
inline Part makeBridge() {
    // x and z of the profile, and its triangles; y runs from 0 to 10.
    constexpr float profile[10][2] = {{0, 0},  {10, 0},  {10, 20}, {30, 20}, {30, 0},
                                      {40, 0}, {40, 25}, {0, 25},  {10, 25}, {30, 25}};
    constexpr int cap[8][3] = {{0, 1, 2}, {0, 2, 8}, {0, 8, 7}, {2, 3, 9},
                               {2, 9, 8}, {4, 5, 6}, {3, 4, 6}, {3, 6, 9}};
    constexpr int outline[10] = {0, 1, 2, 3, 4, 5, 6, 9, 8, 7};
    Part part;
    for (const float y : {0.0f, 10.0f}) {
        for (const auto& [x, z] : profile) part.add({x, y, z});
    }
    for (const auto& [a, b, c] : cap) {
        part.triangles.push_back({a, b, c});
        part.triangles.push_back({c + 10, b + 10, a + 10});
    }
    for (int i = 0; i < 10; ++i) {
        const int from = outline[i];
        const int to = outline[(i + 1) % 10];
        part.triangles.push_back({from, from + 10, to});
        part.triangles.push_back({to, from + 10, to + 10});
    }
    return part;
}

/// A cone on its base, z from 0 to `height`.
inline Part makeCone(float radius, float height, int segments) {
    Part part;
    for (const UPoint2<float>& p : regularPolygon(radius, segments)) part.add({p.x, p.y, 0.0f});
    const std::int32_t tip = part.add({0.0f, 0.0f, height});
    const std::int32_t middle = part.add({0.0f, 0.0f, 0.0f});
    for (std::int32_t i = 0; i < segments; ++i) {
        const std::int32_t next = (i + 1) % segments;
        part.triangles.push_back({i, next, tip});
        part.triangles.push_back({next, i, middle});
    }
    return part;
}

/// A box 20³ with the cavity [5, 15]³.
inline Part makeBoxWithCavity() {
    Part part = makeBox({0, 0, 0}, {20, 20, 20});
    return part.join(makeBox({5, 5, 5}, {15, 15, 15}).turnedInsideOut());
}

/// A turn about any axis.
inline UMatrix4<float> someTurn(float angleRad = 0.7f) {
    return UMatrix4<float>::CreateRotateMatrix(angleRad, {1.0f, -2.0f, 0.5f});
}

inline UVector3<float> upOfPose(const UMatrix4<float>& rotation) {
    return {rotation.at(0, 2), rotation.at(1, 2), rotation.at(2, 2)};
}
