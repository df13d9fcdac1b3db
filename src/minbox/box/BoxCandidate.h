#pragma once

#include <array>

#include "MinBoundingBox.h"
#include "TeskDataBasic/UVector3.h"
#include "minbox/frame/MinBoundingBoxImpl.h"

using Vector = UVector3<double>;

/// Projections (p − origin) · axis of all hull vertices p: from min to max, not divided by the
/// axis's length.
struct Range {
    double min = 0.0;
    double max = 0.0;

    double length() const { return max - min; }
    bool operator==(const Range&) const = default;
};

/// A box with axes that are not normalised. It holds a box where the volume is not unset.
struct BoxFrame {
    Vector origin;
    std::array<Vector, 3> axes;
    std::array<double, 3> squaredLengths{};  ///< of the axes
    std::array<Range, 3> ranges;
    double volume = -1.0;

    bool operator==(const BoxFrame&) const = default;
};

/// A candidate for the box of least volume.
struct VolumeCandidate : BoxFrame {
    float score = -1.0f;  ///< not used by the search

    bool operator==(const VolumeCandidate&) const = default;
};

/// A candidate for a box of least base area.
struct BoxCandidate : BoxFrame {
    double area = -1.0;    ///< of the rectangle across the direction, times the direction's length
    float score = -1.0f;   ///< area of the smallest side
    float height = -1.0f;  ///< along the direction
    float faceFlag = -1.0f;  ///< of the smallest side: 0 across the direction, 1 another
    Vector direction;

    bool operator==(const BoxCandidate&) const = default;
};

/// A hull vertex, in the unit of the search.
inline Vector hullPoint(const MinBoundingBoxImpl& impl, int vertex) {
    const double* p = impl.computePoints->data() + 3 * static_cast<std::size_t>(vertex);
    return {p[0], p[1], p[2]};
}

inline int hullVertexCount(const MinBoundingBoxImpl& impl) {
    return static_cast<int>(impl.computePoints->size() / 3);
}

/// Of the box around the hull along the coordinate axes.
double hullDiagonal(const MinBoundingBoxImpl& impl);

/// The projections of all hull vertices on an axis; the range holds 0.
Range rangeAlong(const MinBoundingBoxImpl& impl, const Vector& origin, const Vector& axis);

/// The volume of a frame whose first axis is as long as the product of the others, as the
/// rectangle search makes them.
double volumeOf(const BoxFrame& frame);

/// Whether the axes are of finite length and orthogonal to each other.
bool hasOrthogonalAxes(const BoxFrame& frame);

/// What securing a frame found.
enum class FrameState {
    kSound,    ///< it holds all hull vertices
    kRetaken,  ///< it did not: the ranges now do, and all that follows from them must be formed
               ///< anew
    kDropped,  ///< its axes are not orthogonal, or not of finite length
};

/// Looks whether a frame is a box around the hull. A silhouette edge that is nearly parallel to the
/// direction can give one that is not, and that would win by its small volume.
FrameState secure(const MinBoundingBoxImpl& impl, BoxFrame& frame);

/// The box with unit axes and half-lengths; remembers its volume as the last one.
OrientedBox3 toOrientedBox(MinBoundingBoxImpl& impl, const BoxFrame& frame);

/// The state in which a search finds no box.
OrientedBox3 noBox();
