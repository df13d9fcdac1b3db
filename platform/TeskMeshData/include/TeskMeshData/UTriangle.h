#pragma once

#include <array>
#include <cstdint>

#include "TeskMeshData/UVertex.h"

/// A mesh triangle: three vertices, its unit normal, and its neighbours across its edges.
/// Edge k runs from corner k to corner (k + 1) mod 3.
template <class T>
class UTriangle {
 public:
    static constexpr std::int32_t kOpenEdge = -1;         ///< no other triangle at the edge
    static constexpr std::int32_t kNonManifoldEdge = -2;  ///< more than one other triangle

    explicit UTriangle(const std::array<UVertex<T>*, 3>& corners) : m_corners(corners) {}

    UVertex<T>* V(int k) { return m_corners[static_cast<std::size_t>(k)]; }
    const UVertex<T>* V(int k) const { return m_corners[static_cast<std::size_t>(k)]; }
    const UPoint3<T>& P(int k) const { return V(k)->P(); }

    /// Unit normal in the mesh's own frame, right-handed about the corner order; the zero vector
    /// for a triangle without area. Up to date after MeshKernel::updateTriangleNormal().
    const UVector3<T>& N() const { return m_normal; }
    void SetN(const UVector3<T>& normal) { m_normal = normal; }

    /// The index of the triangle across edge k, or kOpenEdge or kNonManifoldEdge. Up to date after
    /// MeshKernel::UpdateTopo().
    std::int32_t Neighbour(int k) const { return m_neighbours[static_cast<std::size_t>(k)]; }
    void SetNeighbour(int k, std::int32_t triangle) {
        m_neighbours[static_cast<std::size_t>(k)] = triangle;
    }

 private:
    std::array<UVertex<T>*, 3> m_corners;
    UVector3<T> m_normal;
    std::array<std::int32_t, 3> m_neighbours = {kOpenEdge, kOpenEdge, kOpenEdge};
};
