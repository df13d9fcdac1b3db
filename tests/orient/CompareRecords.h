#pragma once

#include <gtest/gtest.h>

#include <array>

#include "OrientOptimizer.h"
#include "tools/FloatBits.h"

/// The values of a record in the order of its fields, axis first.
inline std::array<float, 10> valuesOf(const OptimizeOrient::OptOrientation& record) {
    return {record.axis.x,       record.axis.y,        record.axis.z,        record.angle,
            record.overhangArea, record.supportVolume, record.projectedArea, record.height,
            record.boxVolume,    record.score};
}

inline void expectSameRecords(const std::vector<OptimizeOrient::OptOrientation>& a,
                              const std::vector<OptimizeOrient::OptOrientation>& b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        const auto left = valuesOf(a[i]);
        const auto right = valuesOf(b[i]);
        for (std::size_t k = 0; k < left.size(); ++k) {
            ASSERT_TRUE(sameBits(left[k], right[k]))
                << "record " << i << ", value " << k << ": " << hexFloat(left[k]) << " and "
                << hexFloat(right[k]);
        }
    }
}

/// Everything that a call returns.
struct CallResult {
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> orientations;

    std::uint64_t hash() const {
        BitHash hash;
        for (int i = 0; i < 3; ++i) hash.add(axis[i]);
        hash.add(angle);
        hash.add(static_cast<std::uint32_t>(orientations.size()));
        for (const OptimizeOrient::OptOrientation& record : orientations) {
            for (const float value : valuesOf(record)) hash.add(value);
        }
        return hash.value();
    }
};

/// Seeds the random numbers and calls the function under test with a result list.
inline CallResult calculated(MeshKernel& mesh, const OptimizeOrient::Configure& config,
                             std::uint32_t seed = 1,
                             const std::function<void(int)>& progress = {}) {
    CallResult result;
    OptimizeOrient::seedRandom(seed);
    OrientOptimizer::calculateOrients(&mesh, config, result.axis, result.angle,
                                      &result.orientations, progress);
    return result;
}
