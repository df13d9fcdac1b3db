#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "MinBoundingBox.h"
#include "shapes/BoxShapes.h"
#include "tools/FloatBits.h"

/// The operations of a box calculator, under one signature.
struct Operation {
    std::string name;
    std::function<OrientedBox3(MinBoundingBox&, const Points&)> run;
    bool reportsProgress;
};

inline int countOf(const Points& points) {
    return static_cast<int>(points.size());
}

inline std::vector<Operation> allOperations() {
    return {
        {"volume", [](auto& b, const Points& p) { return b(countOf(p), p.data()); }, true},
        {"baseArea",
         [](auto& b, const Points& p) { return b.minBaseAreaBox(countOf(p), p.data()); }, true},
        {"height",
         [](auto& b, const Points& p) { return b.minBaseAreaAndHeightBox(countOf(p), p.data()); },
         true},
        {"axis",
         [](auto& b, const Points& p) {
             return b.minBaseAreaBoxAroundAxis(countOf(p), p.data(), {0.25f, 0.5f, 1.0f});
         },
         false}};
}

inline std::vector<float> floatsOf(const OrientedBox3& box) {
    std::vector<float> values;
    for (const auto& v : {box.center, box.axis[0], box.axis[1], box.axis[2], box.extent}) {
        values.insert(values.end(), {v.x, v.y, v.z});
    }
    return values;
}

inline bool sameBits(const OrientedBox3& a, const OrientedBox3& b) {
    const std::vector<float> x = floatsOf(a);
    const std::vector<float> y = floatsOf(b);
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (!sameBits(x[i], y[i])) return false;
    }
    return true;
}

inline std::ostream& operator<<(std::ostream& out, const OrientedBox3& box) {
    for (const float value : floatsOf(box)) out << hexFloat(value) << ' ';
    return out;
}

inline double volumeOf(const OrientedBox3& box) {
    return 8.0 * static_cast<double>(box.extent.x) * static_cast<double>(box.extent.y) *
           static_cast<double>(box.extent.z);
}

/// The extents in ascending order.
inline std::array<float, 3> sortedExtents(const OrientedBox3& box) {
    std::array<float, 3> extents = {box.extent.x, box.extent.y, box.extent.z};
    std::sort(extents.begin(), extents.end());
    return extents;
}

/// Whether a vector is a coordinate axis, up to sign and rounding.
inline bool isCoordinateAxis(const UVector3<float>& v) {
    const float largest = std::max({std::fabs(v.x), std::fabs(v.y), std::fabs(v.z)});
    return std::fabs(largest - 1.0f) < 1e-6f &&
           std::fabs(v.x) + std::fabs(v.y) + std::fabs(v.z) < 1.0f + 1e-5f;
}

/// The state of a box where there is none.
inline bool isNoBox(const OrientedBox3& box) {
    const UVector3<float> ones(1, 1, 1);
    return box.center == UVector3<float>() && box.axis[0] == ones && box.axis[1] == ones &&
           box.axis[2] == ones && box.extent == ones;
}

/// By how much the farthest finite point lies outside a box of half-lengths.
inline double farthestOutside(const OrientedBox3& box, const Points& points) {
    double farthest = 0.0;
    for (const UPoint3<float>& p : points) {
        if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) continue;
        const UVector3<double> d = (p - UPoint3<float>()).As<double>() - box.center.As<double>();
        for (int i = 0; i < 3; ++i) {
            const double x = std::fabs(d | box.axis[i].As<double>());
            farthest = std::max(farthest, x - static_cast<double>(box.extent[i]));
        }
    }
    return farthest;
}
