#pragma once

#include "minbox/box/BoxCandidate.h"
#include "minbox/frame/MinBoundingBoxImpl.h"

/// The box whose smallest side is least: MinBoundingBox::minBaseAreaBox().
OrientedBox3 searchLeastBaseArea(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points);

/// The lowest box, of least footprint for its height: MinBoundingBox::minBaseAreaAndHeightBox().
OrientedBox3 searchLeastHeight(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points);

class SearchHull;

/// Searches all hull faces by the score of the mode that is set in the implementation object.
/// `best` stays unset where no face gives a box; of equal scores the lowest face wins, for any
/// thread count. On the calling thread it takes one progress step per face, and passes on what the
/// callback throws.
void searchDirections(MinBoundingBoxImpl& impl, const SearchHull& hull, BoxCandidate& best);
