#pragma once

#include <vector>

#include "BoxCandidate.h"
#include "Calipers.h"
#include "MinBoundingBoxImpl.h"

/// Finds the outline of the hull seen along a direction: the edges between triangles that face away
/// from it and those that do not. Holds working memory; one per thread.
class Silhouette {
 public:
    /// Keeps references to both.
    Silhouette(const MinBoundingBoxImpl& impl, const std::vector<Vector>& normals);

    /// The outline's vertices, counter-clockwise about the direction, without those in line with
    /// their neighbours; empty where no edge lies on it. Valid until the next call.
    Outline& along(const Vector& direction);

 private:
    void findDots(const Vector& direction);
    int linkEdges();
    void walk(int start);

    const MinBoundingBoxImpl& m_impl;
    const std::vector<Vector>& m_normals;
    std::vector<double> m_dots;  ///< of each triangle's normal with the direction
    std::vector<int> m_next;     ///< the vertex after each vertex of the outline
    Outline m_outline;
};
