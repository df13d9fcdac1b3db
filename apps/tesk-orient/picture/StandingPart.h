#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "TeskDataBasic/UMatrix4.h"
#include "TriangleMesh.h"

namespace App {

using Point = std::array<double, 3>;

/// What a facet is to the print.
enum class FacetKind : std::uint8_t { kPlain, kContact, kOverPlate, kOverPart };

struct StandingFacet {
    std::array<Point, 3> corners;
    Point normal{};  ///< unit vector; zero if the facet has no area
    FacetKind kind = FacetKind::kPlain;
    double flatness = 0.0;  ///< of an overhang: 0 at the limit's slope, 1 if level
};

/// A piece of support, a vertical line.
struct Column {
    double x = 0.0, y = 0.0, low = 0.0, high = 0.0;
};

/// A part turned and set down: its box is centred over the origin, its lowest point is at z = 0.
struct StandingPart {
    std::vector<StandingFacet> facets;
    std::vector<Column> columns;  ///< under its overhangs, in rows along y
    Point size{};
    double pitch = 1.0;  ///< mm between columns
};

/// @param mesh              in millimetres, not empty
/// @param rotation          for row vectors
/// @param overhangAngleDeg  as PoseGoal::overhangAngleDeg
///
/// An overhang is over the part if the vertical line down from its centroid meets the part first.
/// Contact is what PoseMeasures::contactArea counts. Cost: linear but for the sorting of hits.
StandingPart standingPartOf(const TriangleMesh& mesh, const UMatrix4<float>& rotation,
                            float overhangAngleDeg);

}  // namespace App
