#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "orient/grid/SampleGrid.h"
#include "orient/mesh/FlatMesh.h"
#include "orient/turn/TurnedPart.h"

namespace Tesk::orient {

/// For each candidate of a group, the triangles that a sample point may lie under, ascending.
using HittableTriangles = std::array<std::vector<std::int32_t>, kGroupSize>;

/// Finds the triangles whose bounding rectangle, seen from above, may contain a sample point. On a
/// fine mesh these are few. No triangle that contains a sample is missed; a few others are found,
/// too.
///
/// Every vertex gets a code for the gap between samples in which it lies. A triangle whose three
/// corners share a column gap or a row gap is ruled out by comparing codes alone.
class HittableFinder {
 public:
    /// Fills the first parts.size() lists. There are at most kGroupSize parts, and a grid for each.
    void find(const FlatMesh& mesh, std::span<const TurnedPart> parts,
              std::span<const SampleGrid> grids, HittableTriangles& triangles);

 private:
    void fillCodes(const FlatMesh& mesh, std::span<const TurnedPart> parts,
                   std::span<const SampleGrid> grids);

    std::vector<std::uint32_t> m_codes;  ///< kGroupSize per vertex
};

}  // namespace Tesk::orient
