#pragma once

#include <array>
#include <cstdint>

#include "TeskDataBasic/UPoint2.h"
#include "TeskDataBasic/UPoint3.h"
#include "TeskDataBasic/UVector2.h"
#include "TeskDataBasic/UVector3.h"
#include "orient/kernels/TurnKernels.h"
#include "orient/mesh/FlatMesh.h"
#include "orient/turn/TurnedPart.h"

namespace Tesk::orient {

/// A triangle of the mesh, turned for one candidate build direction.
struct TurnedTriangle {
    UPoint3<float> a, b, c;

    TurnedTriangle(const FlatMesh& mesh, const TurnedPart& part, std::int32_t triangle)
        : TurnedTriangle(mesh, part, mesh.corners[static_cast<std::size_t>(triangle)]) {}

    /// The z component of the unit normal.
    float normalZ() const { return ((b - a) * (c - b)).GetNormal().z; }

    /// The edges as seen by the column at x. A point within the triangle's rectangle is under the
    /// triangle if it lies on the same side of all three edges, whichever side that is, or exactly
    /// on the line through one of them.
    ColumnEdges edgesAt(float x) const {
        ColumnEdges edges{};
        const std::array<const UPoint3<float>*, 4> loop = {&a, &b, &c, &a};
        for (std::size_t k = 0; k < 3; ++k) {
            const UVector2<float> along = fromAbove(*loop[k + 1]) - fromAbove(*loop[k]);
            edges.alongX[k] = along.x;
            edges.fromY[k] = loop[k]->y;
            edges.across[k] = along.y * (x - loop[k]->x);
        }
        return edges;
    }

    /// The plane as seen by the column at x. Its determinant is 0 if the triangle is vertical.
    ColumnPlane planeAt(float x) const {
        const UVector3<float> u = b - a;
        const UVector3<float> v = c - a;
        const auto ux = static_cast<double>(u.x);
        const auto uy = static_cast<double>(u.y);
        const auto vx = static_cast<double>(v.x);
        const auto vy = static_cast<double>(v.y);
        const auto dx = static_cast<double>(x - a.x);
        return {ux, uy * dx, vx, dx * vy, ux * vy - uy * vx, a.y, a.z, u.z, v.z};
    }

 private:
    TurnedTriangle(const FlatMesh& mesh, const TurnedPart& part,
                   const std::array<std::int32_t, 3>& corners)
        : a(part.point(mesh, corners[0])),
          b(part.point(mesh, corners[1])),
          c(part.point(mesh, corners[2])) {}

    static UPoint2<float> fromAbove(const UPoint3<float>& p) { return {p.x, p.y}; }
};

}  // namespace Tesk::orient
