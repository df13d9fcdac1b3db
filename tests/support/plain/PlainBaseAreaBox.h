#pragma once

#include "plain/PlainBoxRecord.h"

/// The box along a direction over the rectangle of least area around an outline of at least three
/// vertices, with its height along the direction.
PlainBoxRecord plainLowestBox(const PlainHull& hull, const UVector3<double>& direction,
                              const std::vector<int>& outline);

/// The box along a direction over the rectangle that gives the smallest side, with that side's area
/// as its score.
PlainBoxRecord plainLeastSideBox(const PlainHull& hull, const UVector3<double>& direction,
                                 const std::vector<int>& outline);

/// The box that is lowest along a face normal, over the rectangle of least area; unset where no
/// face gives one.
PlainBoxRecord plainLeastHeight(const PlainHull& hull, int threadCount);

/// The box along a face normal whose smallest side is least; unset where no face gives one.
PlainBoxRecord plainLeastBaseArea(const PlainHull& hull, int threadCount);
