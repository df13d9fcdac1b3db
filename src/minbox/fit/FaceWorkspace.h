#pragma once

#include "minbox/hull/HeightFinder.h"
#include "minbox/outline/Calipers.h"
#include "minbox/outline/Silhouette.h"

namespace Tesk::minbox {

/// The working memory of a thread that makes boxes on faces.
struct FaceWorkspace {
    /// @param maxVertices  see Silhouette
    FaceWorkspace(const SearchHull& hull, int maxVertices)
        : silhouette(hull, maxVertices), calipers(hull.points()), heights(hull) {}

    /// The hull's range along the calipers' direction, from the base vertex of a rectangle.
    Range heightOver(const CaliperRect& rect) {
        return heights.rangeAlong(calipers.support(rect, CaliperRect::kBase), calipers.direction());
    }

    Silhouette silhouette;
    Calipers calipers;
    HeightFinder heights;
};

}  // namespace Tesk::minbox
