#pragma once

#include "BoxTestSupport.h"
#include "minbox/bound/BoxBound.h"
#include "minbox/hull/SearchHull.h"

/// A hull ready for the least-volume search.
struct PreparedHull {
    explicit PreparedHull(const Points& points)
        : impl(1), hull(impl, countOf(points), points.data()), bound(impl, hull) {}

    MinBoundingBoxImpl impl;
    SearchHull hull;
    BoxBound bound;
};
