#pragma once

#include <vector>

#include "EdgeDirections.h"
#include "MinBoundingBoxImpl.h"

/// Bounds below the width of the hull along each class of edges, found when first asked for.
class ClassWidths {
 public:
    /// Keeps references to both.
    ClassWidths(const MinBoundingBoxImpl& impl, const EdgeDirections& directions);

    /// Below the volume, as the search computes it, of any box along three classes.
    double volumeBound(int a, int b, int c);

 private:
    double widthOf(int direction);

    const MinBoundingBoxImpl& m_impl;
    const EdgeDirections& m_directions;
    std::vector<double> m_widths;
    double m_size = 0.0;  ///< of the hull, at most
};
