#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "TeskDataBasic/UBox3.h"
#include "TeskDataBasic/UPoint3.h"
#include "TeskMeshData/UMesh.h"

namespace Tesk {

/// Sums over all triangles of a mesh.
struct SurfaceMeasures {
    /// How many triangles have no area: their corners coincide or lie on a line, exactly.
    std::int64_t degenerate = 0;
    /// Six times the volume that a closed mesh encloses, negative where its triangles face inward.
    double volumeSixfold = 0.0;
};

/// Measures in double, from the first position, in the order of the triangles. Indices must be in
/// range. Linear.
inline SurfaceMeasures measureSurface(std::span<const UPoint3<float>> positions,
                                      std::span<const UMesh<float>::Corners> triangles) {
    const auto widened = [&](std::size_t vertex) {
        const UPoint3<float>& p = positions[vertex];
        return UPoint3<double>(static_cast<double>(p.x), static_cast<double>(p.y),
                               static_cast<double>(p.z));
    };
    SurfaceMeasures measures;
    if (positions.empty()) return measures;
    const UPoint3<double> origin = widened(0);
    for (const UMesh<float>::Corners& corners : triangles) {
        const UPoint3<double> a = widened(static_cast<std::size_t>(corners[0]));
        const UPoint3<double> b = widened(static_cast<std::size_t>(corners[1]));
        const UPoint3<double> c = widened(static_cast<std::size_t>(corners[2]));
        measures.degenerate += ((b - a) * (c - a)).IsZeroLength() ? 1 : 0;
        measures.volumeSixfold += (a - origin) | ((b - origin) * (c - origin));
    }
    return measures;
}

/// The size of the points' box along x, y and z; zeros if there are none.
inline std::array<double, 3> extentsOf(std::span<const UPoint3<float>> positions) {
    UBox3<float> box;
    for (const UPoint3<float>& p : positions) box.Extend(p);
    return {static_cast<double>(box.MaxX()) - static_cast<double>(box.MinX()),
            static_cast<double>(box.MaxY()) - static_cast<double>(box.MinY()),
            static_cast<double>(box.MaxZ()) - static_cast<double>(box.MinZ())};
}

}  // namespace Tesk
