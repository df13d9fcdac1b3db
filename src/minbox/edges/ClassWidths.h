#pragma once

#include <vector>

#include "minbox/edges/EdgeDirections.h"
#include "minbox/frame/MinBoundingBoxImpl.h"
#include "minbox/hull/HeightFinder.h"

/// Bounds below the width of the hull along each class of edges, found when first asked for.
class ClassWidths {
 public:
    /// Keeps references to all.
    ClassWidths(const MinBoundingBoxImpl& impl, const EdgeDirections& directions,
                HeightFinder& heights);

    /// Below the volume, as the search computes it, of any box along three classes.
    double volumeBound(int a, int b, int c);

 private:
    double widthOf(int direction);

    const MinBoundingBoxImpl& m_impl;
    const EdgeDirections& m_directions;
    HeightFinder& m_heights;
    std::vector<double> m_widths;
    double m_size = 0.0;  ///< of the hull, at most
};
