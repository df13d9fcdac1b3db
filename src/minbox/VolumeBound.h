#pragma once

#include <array>
#include <vector>

#include "BoxCandidate.h"
#include "MinBoundingBoxImpl.h"
#include "SearchHull.h"

/// Bounds below the volume of any box that stands on a plane with a given normal, for a fraction of
/// what finding the box costs.
///
/// An inner polytope of some of the hull's vertices, the farthest in about a hundred directions,
/// stands for the hull: its height along the normal times the area of its shadow. The area is that
/// of its triangles, seen along the normal, divided by two.
class VolumeBound {
 public:
    /// Looks at all vertices once per direction. Keeps nothing of the arguments.
    VolumeBound(const MinBoundingBoxImpl& impl, const SearchHull& hull);

    /// Below the volume, as the search computes it, of any box along the normal.
    double along(const Vector& normal) const;

 private:
    /// Vectors by coordinate, so that several go through the same operations at once.
    struct Columns {
        std::vector<double> x, y, z;

        void push_back(const Vector& v);
    };

    void takeTriangles(double unitLength, const gte::ConvexHull3& polytope);

    Columns m_points;
    Columns m_normals;  ///< of the inner polytope's triangles, as long as twice their areas
    double m_size = 0.0;
};
