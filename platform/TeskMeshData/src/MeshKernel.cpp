#include "TeskMeshData/MeshKernel.h"

#include "EdgeTopology.h"

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
    const TopologyCounts counts =
        buildEdgeTopology(*m_mesh, /*setNeighbours=*/(missing & kTriangleNeighbours) != 0);
    if ((missing & kEdgeCounts) != 0) m_topology = counts;
    m_builtParts |= missing;
}

void MeshKernel::updateTriangleNormal() {
#pragma omp parallel for schedule(static)
    for (std::int32_t i = 0; i < m_mesh->TriangleCount(); ++i) {
        UTriangle<float>& triangle = *m_mesh->Triangle(i);
        const UPoint3<float>& p0 = triangle.P(0);
        triangle.SetN(((triangle.P(1) - p0) * (triangle.P(2) - p0)).GetNormal());
    }
}
