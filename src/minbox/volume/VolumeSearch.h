#pragma once

#include <atomic>

#include "minbox/box/BoxCandidate.h"
#include "minbox/frame/MinBoundingBoxImpl.h"
#include "minbox/volume/FaceSearch.h"

/// The box of least volume around points: MinBoundingBox::operator().
OrientedBox3 searchLeastVolume(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points);

/// The boxes with a side flush with a hull face. `best` stays unset where no face gives one; of
/// equal volumes the lowest face wins, for any thread count.
///
/// Takes one progress step per face. Throws what the callback throws on the calling thread; after
/// an abort on a worker, Tesk::AbortException("Aborting...") with `isAborted` set.
void searchFaces(MinBoundingBoxImpl& impl, FaceSearch& search, std::atomic<bool>& isAborted,
                 VolumeCandidate& best);
