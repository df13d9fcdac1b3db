#include "minbox/box/BoxCandidate.h"

#include <algorithm>
#include <cmath>

namespace {

/// Of the product of the lengths: how far from zero the dot product of two axes may be.
constexpr double kOrthogonal = 1e-9;
/// Of the hull's diagonal: how far a vertex may lie outside; more than rounding gives.
constexpr double kOutside = 1e-9;

bool holdsAllVertices(const MinBoundingBoxImpl& impl, const BoxFrame& frame) {
    const double slack = kOutside * hullDiagonal(impl);
    std::array<Range, 3> limits = frame.ranges;
    for (std::size_t m = 0; m < 3; ++m) {
        const double axisSlack = slack * std::sqrt(frame.squaredLengths[m]);
        limits[m] = {limits[m].min - axisSlack, limits[m].max + axisSlack};
    }
    for (int i = 0; i < hullVertexCount(impl); ++i) {
        const Vector d = hullPoint(impl, i) - frame.origin;
        for (std::size_t m = 0; m < 3; ++m) {
            const double x = d | frame.axes[m];
            if (!(x >= limits[m].min && x <= limits[m].max)) return false;
        }
    }
    return true;
}

}  // namespace

double hullDiagonal(const MinBoundingBoxImpl& impl) {
    Vector low = hullPoint(impl, 0);
    Vector high = low;
    for (int i = 1; i < hullVertexCount(impl); ++i) {
        const Vector p = hullPoint(impl, i);
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    return (high - low).GetLength();
}

Range rangeAlong(const MinBoundingBoxImpl& impl, const Vector& origin, const Vector& axis) {
    // In two steps over pieces, so that a compiler does several vertices at once.
    constexpr int kPiece = 256;
    std::array<double, kPiece> heights;
    Range range{impl.zero, impl.zero};
    const int count = hullVertexCount(impl);
    for (int first = 0; first < count; first += kPiece) {
        const int size = std::min(kPiece, count - first);
        for (int i = 0; i < size; ++i) {
            heights[static_cast<std::size_t>(i)] = (hullPoint(impl, first + i) - origin) | axis;
        }
        for (int i = 0; i < size; ++i) {
            const double x = heights[static_cast<std::size_t>(i)];
            range.min = x < range.min ? x : range.min;
            range.max = x > range.max ? x : range.max;
        }
    }
    return range;
}

double volumeOf(const BoxFrame& frame) {
    const auto& [r0, r1, r2] = frame.ranges;
    return (r1.length() / frame.squaredLengths[1]) * r0.length() *
           (r2.length() / frame.squaredLengths[2]);
}

bool hasOrthogonalAxes(const BoxFrame& frame) {
    for (const double squaredLength : frame.squaredLengths) {
        if (!(squaredLength > 0.0) || !std::isfinite(squaredLength)) return false;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t j = (i + 1) % 3;
        const double dot = frame.axes[i] | frame.axes[j];
        const double bound = kOrthogonal * kOrthogonal * frame.squaredLengths[i];
        if (!(dot * dot <= bound * frame.squaredLengths[j])) return false;
    }
    return true;
}

FrameState secure(const MinBoundingBoxImpl& impl, BoxFrame& frame) {
    if (!hasOrthogonalAxes(frame)) return FrameState::kDropped;
    if (holdsAllVertices(impl, frame)) return FrameState::kSound;
    for (std::size_t m = 0; m < 3; ++m) {
        frame.ranges[m] = rangeAlong(impl, frame.origin, frame.axes[m]);
    }
    return FrameState::kRetaken;
}

OrientedBox3 toOrientedBox(MinBoundingBoxImpl& impl, const BoxFrame& frame) {
    OrientedBox3 box;
    Vector center = frame.origin;
    for (std::size_t i = 0; i < 3; ++i) {
        const Range& range = frame.ranges[i];
        const double squaredLength = frame.squaredLengths[i];
        center = center + frame.axes[i] * ((range.min + range.max) * impl.half / squaredLength);
        const double halfLength = range.length() * impl.half;
        const float extent = std::sqrt(static_cast<float>(halfLength * halfLength / squaredLength));
        box.extent[static_cast<int>(i)] =
            static_cast<float>(static_cast<double>(extent) * impl.unitLength);
        const Vector& axis = frame.axes[i];
        const double largest = std::max({std::fabs(axis.x), std::fabs(axis.y), std::fabs(axis.z)});
        box.axis[i] = (axis * (impl.one / largest)).As<float>().GetNormal();
    }
    box.center = (center * impl.unitLength).As<float>();
    const double volume = impl.unitLength * impl.unitLength * impl.unitLength * frame.volume;
    impl.lastVolume = static_cast<float>(volume);
    return box;
}

OrientedBox3 noBox() {
    const UVector3<float> ones(1.0f, 1.0f, 1.0f);
    return {UVector3<float>(), {ones, ones, ones}, ones};
}
