#pragma once

#include <array>

#include "OrientedBox3.h"
#include "TeskDataBasic/UVector3.h"

namespace Tesk::minbox {

using Vector = UVector3<double>;

/// A vector orthogonal to a given one, which is not zero.
Vector anyOrthogonal(const Vector& v);

/// The numbers that the searches compare and calculate with, as the implementation object holds
/// them.
struct SearchConstants {
    double zero;
    double one;
    double half;
    float zeroF;
    float oneF;
    float unsetF;
};

/// The range of the projections (p − origin) · axis over all hull vertices p, not divided by the
/// axis's length.
struct Range {
    double min = 0.0;
    double max = 0.0;

    double length() const { return max - min; }
    bool operator==(const Range&) const = default;
};

/// A box whose axes are not normalised.
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
    float faceFlag = -1.0f;  ///< 0 if the smallest side lies across the direction, 1 if not
    Vector direction{};

    bool operator==(const BoxCandidate&) const = default;
};

/// The quantity that the least-volume search minimises.
inline double volumeKey(const VolumeCandidate& box) {
    return box.volume;
}

/// The volume of a frame whose first axis is as long as the product of the other two, as the
/// rectangle kernels make it.
double volumeOf(const BoxFrame& frame);

/// Whether the axes have finite lengths and are orthogonal to each other.
bool hasOrthogonalAxes(const BoxFrame& frame);

/// The result of a search that finds no box.
OrientedBox3 noBox();

}  // namespace Tesk::minbox
