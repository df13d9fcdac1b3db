#pragma once

#include "plain/PlainBoxRecord.h"

/// The box of least volume among those with a side flush with a face; unset where there is none.
PlainBoxRecord plainFaceSearch(const PlainHull& hull, int threadCount);

/// What later pairs of edges are tested against, once a first edge has had a triple.
enum class PlainThirdAxis {
    kOfLastTriple,  ///< as the search is defined
    kFirstEdge,     ///< to see where that makes a difference
};

/// The box of least volume among those parallel to three orthogonal edges: three nested loops over
/// the edges; unset where there are no such edges.
PlainBoxRecord plainEdgeSearch(const PlainHull& hull,
                               PlainThirdAxis thirdAxis = PlainThirdAxis::kOfLastTriple);

/// The better one of what both found; the face box where the volumes are equal.
PlainBoxRecord plainLeastVolume(const PlainBoxRecord& face, const PlainBoxRecord& edge);
