#pragma once

#include <optional>

#include "OrientedBox3.h"
#include "minbox/box/BoxCandidate.h"
#include "minbox/call/MinBoundingBoxImpl.h"
#include "minbox/hull/SearchHull.h"

namespace Tesk::minbox {

/// The box whose smallest side is least: MinBoundingBox::minBaseAreaBox().
OrientedBox3 searchLeastBaseArea(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points);

/// The lowest box, of least footprint for its height: MinBoundingBox::minBaseAreaAndHeightBox().
OrientedBox3 searchLeastHeight(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points);

/// Searches all faces of a hull, which has some, for the key of the mode that is set in the
/// implementation object; nothing if no face gives a box. Of equal keys the lowest face wins, for
/// any thread count. On the calling thread it takes one progress step per face, and passes on what
/// the callback throws.
std::optional<BoxCandidate> searchDirections(MinBoundingBoxImpl& impl, const SearchHull& hull);

}  // namespace Tesk::minbox
