#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "TeskCommon/Assert.h"
#include "TeskDataBasic/UBox3.h"
#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UPoint3.h"
#include "TeskThreads/RawVector.h"

namespace Tesk::orient {

/// A read-only copy of a mesh in flat arrays, taken once per call and shared by all evaluations.
struct FlatMesh {
    /// Coordinates in the mesh's own frame, one entry per vertex of the mesh. Vertices that are
    /// not deleted come first, in list order.
    Tesk::RawVector<float> x, y, z;
    /// The largest absolute value of a coordinate; infinite if any coordinate is not finite.
    float reach = 0.0f;
    /// The number of vertices that are not deleted. Only these count for boxes.
    std::size_t keptVertices = 0;
    /// Corner indices into the arrays above, one entry per triangle in list order.
    Tesk::RawVector<std::array<std::int32_t, 3>> corners;
    /// The mesh's placement, and the box of the kept vertices as placed.
    UMatrix4<float> placement;
    UBox3<float> placedBox;

    UPoint3<float> point(std::int32_t vertex) const {
        const auto v = static_cast<std::size_t>(vertex);
        TESK_ASSERT(v < x.size());
        return {x[v], y[v], z[v]};
    }
};

}  // namespace Tesk::orient
