#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "shapes/BoxShapes.h"

/// The thread counts that results are compared for.
inline constexpr int kThreadCounts[] = {1, 2, 3, 4, 8, 13};

/// A set of points that searches are compared on; its hull has faces. The points of a sample mesh
/// are read when they are asked for.
struct ReferenceSet {
    std::string name;
    Points points;
    std::filesystem::path meshFile;

    /// Empty where the file cannot be read, and for the set that stands for absent sample meshes.
    Points load() const;
};

std::ostream& operator<<(std::ostream& out, const ReferenceSet& set);

/// Shapes of every kind.
std::vector<ReferenceSet> referenceShapes();

/// Those and the sample meshes; where there are none, a set that has no points.
std::vector<ReferenceSet> referenceShapesAndMeshes();

std::string nameOfSet(const testing::TestParamInfo<ReferenceSet>& tested);

/// A random solid: a noisy part, a prism or a grid with ties everywhere, straight or slanted; some
/// of them squashed.
Points randomSolid(TestRandom& random);

/// A grid along three orthogonal directions of whole numbers that are none of the coordinate axes:
/// its edges are in exactly right angles, and with a large unit dot products with their vector
/// products are rounded.
Points slantedGrid(TestRandom& random);

/// Whether the searches take the coordinates as they are. Very large and very small ones they
/// divide by a power of two, which shows in their records but not in the box.
bool isInUsualUnit(const Points& points);

/// Loads a reference set, or skips the test where there is nothing to load.
class OnReferenceSets : public testing::TestWithParam<ReferenceSet> {
 protected:
    void SetUp() override;

    int count() const { return static_cast<int>(m_points.size()); }

    Points m_points;
};
