#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "BoxShapes.h"
#include "Part.h"

/// The thread counts that results are compared for.
inline constexpr int kThreadCounts[] = {1, 2, 3, 4, 8, 13};

/// Point sets whose hulls have faces, of every kind that the searches are compared on.
std::vector<NamedPoints> referenceSolids();

/// Those and the sample meshes with at most `hullVertices` hull vertices.
std::vector<NamedPoints> referenceSolidsAndMeshes(std::size_t hullVertices);

inline std::string nameOfPoints(const testing::TestParamInfo<NamedPoints>& tested) {
    std::string name = tested.param.name;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}
