#pragma once

#include <cstdint>
#include <vector>

#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UPoint3.h"
#include "TeskMeshData/MeshKernel.h"

/// A triangle mesh under construction: positions and, per triangle, three indices into them.
struct Part {
    using Corners = UMesh<float>::Corners;

    std::vector<UPoint3<float>> positions;
    std::vector<Corners> triangles;

    MeshKernel kernel() const { return MeshKernel(positions, triangles); }
    MeshKernel kernel(const UMatrix4<float>& placement) const;

    /// Adds a position and returns its index.
    std::int32_t add(const UPoint3<float>& position);

    /// Another part beside this one; vertices stay apart even where they coincide.
    Part& join(const Part& other);

    Part moved(float dx, float dy, float dz) const;
    Part scaled(float sx, float sy, float sz) const;

    /// The positions taken through a matrix.
    Part placed(const UMatrix4<float>& matrix) const;

    /// Leaves out every n-th triangle, beginning with the first: a mesh with holes.
    Part withoutEvery(std::size_t n) const;

    /// Corners of every triangle in the opposite order.
    Part turnedInsideOut() const;

    /// Vertices at bit-equal positions become one (+0 and −0 are equal).
    Part welded() const;

    /// n more vertices, spread around the part, that no triangle uses.
    Part withUnusedVertices(int n) const;

    /// A few triangles without area: collapsed to a vertex, to an edge, and collinear ones.
    Part withDegenerateTriangles() const;
};
