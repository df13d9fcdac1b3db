#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "orient/grid/SampleGrid.h"
#include "orient/mesh/FlatMesh.h"
#include "orient/turn/TurnedPart.h"

namespace Tesk::orient {

/// Per candidate of a group, the triangles that a sample point can lie under, ascending.
using HittableTriangles = std::array<std::vector<std::int32_t>, kGroupSize>;

/// Finds the triangles whose rectangle, seen from above, may hold a sample point: on a fine mesh,
/// almost none. All that do are among them, and most of the others are not.
///
/// Every vertex gets a code for the cell between samples that it lies in; a triangle whose three
/// corners lie in the same column or in the same row of such cells needs no look at its
/// coordinates.
class HittableFinder {
 public:
    /// Fills the first parts.size() lists.
    void find(const FlatMesh& mesh, std::span<const TurnedPart> parts,
              std::span<const SampleGrid> grids, HittableTriangles& triangles);

 private:
    void fillCodes(const FlatMesh& mesh, std::span<const TurnedPart> parts,
                   std::span<const SampleGrid> grids);

    std::vector<std::uint32_t> m_codes;  ///< kGroupSize per vertex
};

}  // namespace Tesk::orient
