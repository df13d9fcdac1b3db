#pragma once

#include <optional>

#include "minbox/box/BoxCandidate.h"
#include "minbox/fit/BoxCheck.h"
#include "minbox/outline/Calipers.h"

namespace Tesk::minbox {

/// Whether a candidate replaces the best one: its key is a number and strictly less.
template <class Box, class Key>
bool isBetter(const Box& box, const std::optional<Box>& best, const Key& key) {
    return key(box) == key(box) && (!best || key(*best) > key(box));
}

/// Replaces the best candidate by a better one, once that is known to be a box around the hull.
/// Returns false if the candidate is no box.
///
/// @param remeasure  forms what follows from a candidate's ranges, its key among it
template <class Box, class Key, class Remeasure>
bool offer(const HullPoints& points, Box box, std::optional<Box>& best, const Key& key,
           const Remeasure& remeasure) {
    if (key(box) != key(box)) return false;
    if (!isBetter(box, best, key)) return true;
    const FrameState state = checkFrame(points, box);
    if (state == FrameState::kDropped) return false;
    if (state == FrameState::kRemeasured) {
        remeasure(box);
        if (!isBetter(box, best, key)) return true;
    }
    best = box;
    return true;
}

/// Offers the box over an outline seen along a direction. If a steep edge makes it no box, offers
/// the one over the outline without such edges.
///
/// @param makeBox  makes the candidate over the outline that is set in the calipers
template <class Box, class MakeBox, class Key, class Remeasure>
void offerOver(const Vector& direction, const Outline& outline, Calipers& calipers,
               const MakeBox& makeBox, const Key& key, const Remeasure& remeasure,
               std::optional<Box>& best) {
    if (outline.size() < 3) return;
    const HullPoints& points = calipers.points();
    calipers.set(direction, outline);
    if (offer(points, makeBox(), best, key, remeasure)) return;
    Outline rest = outline;
    removeSteep(points, direction, rest);
    if (rest.size() < 3 || rest.size() == outline.size()) return;
    calipers.set(direction, rest);
    offer(points, makeBox(), best, key, remeasure);
}

}  // namespace Tesk::minbox
