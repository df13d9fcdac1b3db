#pragma once

#include <vector>

#include "minbox/edges/EdgeDirections.h"
#include "minbox/hull/HeightFinder.h"

namespace Tesk::minbox {

/// Lower bounds of the hull's width along each class of edges, computed when first needed.
class ClassWidths {
 public:
    /// Keeps references to all.
    ClassWidths(const HullPoints& points, const EdgeDirections& directions, HeightFinder& heights);

    /// A lower bound of the volume, as the search computes it, of any box along three classes.
    double volumeBound(int a, int b, int c);

 private:
    double widthOf(int direction);

    const HullPoints& m_points;
    const EdgeDirections& m_directions;
    HeightFinder& m_heights;
    std::vector<double> m_widths;
};

}  // namespace Tesk::minbox
