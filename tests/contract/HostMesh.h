#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "OrientOptimizer.h"

/// A box with a corner at the origin, as a host hands it over.
MeshKernel hostBox(float x, float y, float z);

/// What a host gets back from one call.
struct HostResult {
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> orientations;
};

/// One call with the random numbers seeded, so that it can be repeated.
HostResult rankSeeded(MeshKernel& mesh, const OptimizeOrient::Configure& config,
                      std::uint32_t seed);

/// Whether two lists of records are the same, bit for bit.
inline bool sameBits(const std::vector<OptimizeOrient::OptOrientation>& a,
                     const std::vector<OptimizeOrient::OptOrientation>& b) {
    return a.size() == b.size() &&
           std::memcmp(a.data(), b.data(), a.size() * sizeof(OptimizeOrient::OptOrientation)) == 0;
}
