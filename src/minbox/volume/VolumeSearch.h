#pragma once

#include <atomic>
#include <optional>

#include "OrientedBox3.h"
#include "minbox/box/BoxCandidate.h"
#include "minbox/call/MinBoundingBoxImpl.h"
#include "minbox/volume/FaceSearch.h"

namespace Tesk::minbox {

/// The box of least volume around n points, which may be null: MinBoundingBox::operator().
OrientedBox3 searchLeastVolume(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points);

/// The best box with a side flush with a hull face; nothing if no face gives one. Of equal volumes
/// the lowest face wins, for any thread count.
///
/// Takes one progress step per face. Throws what the callback throws on the calling thread; after
/// an abort on a worker, Tesk::AbortException("Aborting...") with `isAborted` set.
std::optional<VolumeCandidate> searchFaces(MinBoundingBoxImpl& impl, FaceSearch& search,
                                           std::atomic<bool>& isAborted);

}  // namespace Tesk::minbox
