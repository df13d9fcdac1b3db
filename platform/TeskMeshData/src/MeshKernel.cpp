#include "TeskMeshData/MeshKernel.h"

#include "EdgeTopology.h"
#include "TeskThreads/Team.h"

MeshKernel::MeshKernel() : m_mesh(std::make_shared<UMesh<float>>()) {}

MeshKernel::MeshKernel(std::span<const UPoint3<float>> positions,
                       std::span<const UMesh<float>::Corners> triangles)
    : m_mesh(std::make_shared<UMesh<float>>(positions, triangles)) {}

const UBox3<float>& MeshKernel::GetBox() {
    m_box = UBox3<float>();
    for (std::int32_t i = 0; i < m_mesh->VertexCount(); ++i) {
        const UVertex<float>& vertex = *m_mesh->Vertex(i);
        if (!vertex.IsD()) m_box.Extend(vertex.P() * m_matrix);
    }
    return m_box;
}

void MeshKernel::UpdateTopo(bool rebuild, int parts) {
    if (rebuild) m_builtParts = 0;
    const int missing = parts & ~m_builtParts;
    if (missing == 0) return;
    const TopologyCounts counts = Tesk::mesh::buildEdgeTopology(
        *m_mesh, /*setNeighbours=*/(missing & kTriangleNeighbours) != 0);
    if ((missing & kEdgeCounts) != 0) m_topology = counts;
    m_builtParts |= missing;
}

void MeshKernel::updateTriangleNormal() {
    constexpr std::int64_t kTrianglesPerThread = 50'000;
    constexpr std::int64_t kPiece = 4096;
    const std::int64_t triangles = m_mesh->TriangleCount();
    const auto update = [&](std::int64_t first, std::int64_t end, int) {
        for (std::int64_t i = first; i < end; ++i) {
            UTriangle<float>& triangle = *m_mesh->Triangle(static_cast<std::int32_t>(i));
            const UPoint3<float>& p0 = triangle.P(0);
            triangle.SetN(((triangle.P(1) - p0) * (triangle.P(2) - p0)).GetNormal());
        }
    };
    Tesk::withTeam(Tesk::threadsFor(triangles, kTrianglesPerThread),
                   [&](Tesk::Team& team) { team.forPieces(triangles, kPiece, update); });
}
