#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "TeskDataBasic/UBox3.h"
#include "TeskDataBasic/UMatrix4.h"
#include "TeskMeshData/Export.h"
#include "TeskMeshData/UMesh.h"

/// What UpdateTopo() found about the edges of a mesh.
struct TopologyCounts {
    std::int32_t openEdges = 0;          ///< with one triangle
    std::int32_t nonManifoldEdges = 0;   ///< with three or more
    std::int32_t inconsistentEdges = 0;  ///< both triangles traverse it the same way
};

/// A mesh as a host holds it: the triangles, and the matrix that places them in the build space.
///
/// Threads: any number may read at once; none may use it while another changes it.
class TESK_MESH_API MeshKernel {
 public:
    /// Parts of the topology for UpdateTopo().
    static constexpr int kTriangleNeighbours = 1;
    static constexpr int kEdgeCounts = 2;

    /// A mesh without vertices.
    MeshKernel();

    /// A mesh from flat arrays: n positions and, per triangle, three indices into them. The order
    /// of both is kept. Throws a Tesk::Exception that names the first triangle with an index
    /// outside 0..n-1.
    MeshKernel(std::span<const UPoint3<float>> positions,
               std::span<const UMesh<float>::Corners> triangles);

    std::shared_ptr<UMesh<float>> getMesh() const { return m_mesh; }

    /// The placement: mesh frame to build space, identity at the start.
    UMatrix4<float> getMatrix() const { return m_matrix; }
    void setMatrix(const UMatrix4<float>& matrix) { m_matrix = matrix; }

    /// The box of the placed mesh: of every vertex that is not deleted, transformed by the matrix.
    /// Every call computes it again. The reference is valid as long as the kernel.
    const UBox3<float>& GetBox();

    /// Updates the given parts of the topology (a sum of the constants above) in place; vertices
    /// and triangles keep their indices. Without `rebuild`, parts that have been built are not
    /// built again. Linear in the triangle count.
    void UpdateTopo(bool rebuild, int parts);

    /// Computes every triangle's N() from the positions of its corners.
    void updateTriangleNormal();

    /// The edge counts of the last UpdateTopo() with kEdgeCounts. A triangle that names a vertex
    /// twice has collapsed into an edge: it is skipped, and the triangles on its two sides become
    /// neighbours.
    const TopologyCounts& topology() const { return m_topology; }

 private:
    std::shared_ptr<UMesh<float>> m_mesh;
    UMatrix4<float> m_matrix;
    UBox3<float> m_box;
    TopologyCounts m_topology;
    int m_builtParts = 0;
};
