#pragma once

#include "BoxTestSupport.h"
#include "minbox/bound/BoxBound.h"
#include "minbox/call/MinBoundingBoxImpl.h"

/// The numbers with which an implementation object starts.
inline Tesk::minbox::SearchConstants startConstants() {
    return Tesk::minbox::MinBoundingBoxImpl(1).constants();
}

inline Tesk::minbox::SearchHull hullOf(const Points& points) {
    return {countOf(points), points.data(), startConstants()};
}

/// A hull ready for the least-volume search.
struct PreparedHull {
    explicit PreparedHull(const Points& points)
        : hull(countOf(points), points.data(), startConstants()), bound(hull) {}

    Tesk::minbox::SearchHull hull;
    Tesk::minbox::BoxBound bound;
};
