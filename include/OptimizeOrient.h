#pragma once

#include <cstdint>

#include "TeskDataBasic/UVector3.h"

namespace OptimizeOrient {

/// The weights of the criteria for an orientation, and how support is measured. Lengths are in the
/// mesh's unit, taken as millimetres: the sampling keeps a margin of one unit around the part.
///
/// A default-constructed record holds this library's suggestion: 45°, weight 3 for the support
/// volume, 1 each for height and box volume, none for the areas, and the part on the build plate.
/// It does not affect a host that sets every field.
struct Configure {
    /// Degrees. A surface is an overhang if the z of its unit normal is below −cos(overhangAngle).
    float overhangAngle = 45.0f;
    /// Weight of both area scores, `overhangArea` and `projectedArea`.
    std::int32_t supportAreaWeight = 0;
    std::int32_t supportVolumeWeight = 3;
    std::int32_t heightWeight = 1;
    std::int32_t boxVolumeWeight = 1;
    /// Nonzero: measure support even if both support weights are 0.
    std::int32_t computeSupport = 0;
    /// The z to which the part's lowest point is moved before support is measured down to z = 0;
    /// −1 or less leaves the part at the height that the turn about its box centre gives.
    float baseHeight = 0.0f;
    std::int32_t reserved = 0;
};

/// One ranked build orientation. Turning the part by `angle` about `axis` (right-handed, through
/// any point) brings the chosen direction of the part to +Z.
struct OptOrientation {
    /// Not normalised; (0, 1, 0) for the direction −Z, (0, 0, 0) for +Z, which needs no turn.
    UVector3<float> axis;
    /// Radians, 0 to pi.
    float angle = 0.0f;
    /// Area of the overhanging triangles, each counted once for every sample column that meets it.
    float overhangArea = 0.0f;
    /// Volume between overhanging surfaces and what lies below them.
    float supportVolume = 0.0f;
    /// Area of all sample columns that meet the part.
    float projectedArea = 0.0f;
    /// z extent of the turned part.
    float height = 0.0f;
    /// Volume of the turned part's axis-aligned box.
    float boxVolume = 0.0f;
    /// Weighted sum of the measures, each first normalised to 0..1 over all candidates; lower is
    /// better. Comparable only within one call.
    float score = 0.0f;
};

static_assert(sizeof(Configure) == 32);
static_assert(sizeof(OptOrientation) == 40);

}  // namespace OptimizeOrient
