#pragma once

#include <cstdint>
#include <vector>

#include "TeskMeshData/MeshKernel.h"

/// The random numbers of the target platform's C library, 0..32767, from their definition.
class PlainRandom {
 public:
    explicit PlainRandom(std::uint32_t seed) : m_state(seed) {}

    int next() {
        m_state = m_state * 214013u + 2531011u;
        return static_cast<int>((m_state >> 16) & 0x7fffu);
    }

 private:
    std::uint32_t m_state;
};

/// The grid cell of a direction.
std::int64_t plainDirectionKey(const UVector3<float>& direction);

/// How many planes are drawn per triangle.
int plainSamplesPerTriangle(int triangleCount);

/// The candidate directions, bucketed in an ordered map. Refreshes the mesh's triangle normals.
std::vector<UVector3<float>> plainCandidates(MeshKernel& mesh, PlainRandom& random);
