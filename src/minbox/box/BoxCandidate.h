#pragma once

#include "minbox/box/BoxFrame.h"

namespace Tesk::minbox {

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

}  // namespace Tesk::minbox
