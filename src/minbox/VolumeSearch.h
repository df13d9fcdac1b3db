#pragma once

#include <atomic>

#include "BoxCandidate.h"
#include "MinBoundingBoxImpl.h"
#include "SearchHull.h"
#include "VolumeBound.h"
#include "VolumeLimit.h"

/// The box of least volume around points: MinBoundingBox::operator().
OrientedBox3 searchLeastVolume(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points);

/// The boxes with a side flush with a hull face. `best` stays unset where no face gives one; of
/// equal volumes the lowest face wins, for any thread count.
///
/// Takes one progress step per face. Throws what the callback throws on the calling thread; after
/// an abort on a worker, Tesk::AbortException("Aborting...") with `isAborted` set.
///
/// @param limit  lowered to the volumes that it finds, as it finds them
void searchFaces(MinBoundingBoxImpl& impl, const SearchHull& hull, const VolumeBound& bound,
                 std::atomic<bool>& isAborted, VolumeLimit& limit, VolumeCandidate& best);
