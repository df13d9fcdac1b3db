#pragma once

#include "PlainBoxRecord.h"

/// The box of least volume among those with a side flush with a face; unset where there is none.
PlainBoxRecord plainFaceSearch(const PlainHull& hull, int threadCount);

/// The box of least volume among those parallel to three orthogonal edges: three nested loops over
/// the edges; unset where there are no such edges.
PlainBoxRecord plainEdgeSearch(const PlainHull& hull);

/// The better one of what both found; the face box where the volumes are equal.
PlainBoxRecord plainLeastVolume(const PlainBoxRecord& face, const PlainBoxRecord& edge);
