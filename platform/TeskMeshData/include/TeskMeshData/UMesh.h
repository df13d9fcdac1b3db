#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "TeskDebug/Exception.h"
#include "TeskMeshData/UTriangle.h"

/// The vertices and triangles of one mesh. Triangles hold pointers to vertices, so a mesh can be
/// neither copied nor moved; it is shared through std::shared_ptr.
template <class T>
class UMesh {
 public:
    using Corners = std::array<std::int32_t, 3>;

    UMesh() = default;

    /// Takes n positions and the corner indices (0..n-1) of each triangle, keeping their order.
    /// Throws a Tesk::Exception that names the first triangle with an index outside 0..n-1.
    UMesh(std::span<const UPoint3<T>> positions, std::span<const Corners> triangles) {
        m_vertices.reserve(positions.size());
        for (const UPoint3<T>& p : positions) {
            m_vertices.emplace_back(p, static_cast<std::int32_t>(m_vertices.size()));
        }
        m_triangles.reserve(triangles.size());
        for (const Corners& corners : triangles) {
            m_triangles.emplace_back(
                std::array{vertexAt(corners[0]), vertexAt(corners[1]), vertexAt(corners[2])});
        }
    }

    UMesh(const UMesh&) = delete;
    UMesh& operator=(const UMesh&) = delete;

    std::int32_t VertexCount() const { return static_cast<std::int32_t>(m_vertices.size()); }
    std::int32_t TriangleCount() const { return static_cast<std::int32_t>(m_triangles.size()); }

    UVertex<T>* Vertex(std::int32_t i) { return &m_vertices[static_cast<std::size_t>(i)]; }
    const UVertex<T>* Vertex(std::int32_t i) const {
        return &m_vertices[static_cast<std::size_t>(i)];
    }
    UTriangle<T>* Triangle(std::int32_t i) { return &m_triangles[static_cast<std::size_t>(i)]; }
    const UTriangle<T>* Triangle(std::int32_t i) const {
        return &m_triangles[static_cast<std::size_t>(i)];
    }

 private:
    UVertex<T>* vertexAt(std::int32_t index) {
        if (index < 0 || index >= VertexCount()) {
            throw Tesk::Exception("triangle " + std::to_string(m_triangles.size()) +
                                  " names vertex " + std::to_string(index) + " of " +
                                  std::to_string(m_vertices.size()));
        }
        return Vertex(index);
    }

    std::vector<UVertex<T>> m_vertices;
    std::vector<UTriangle<T>> m_triangles;
};
