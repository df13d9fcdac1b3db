#pragma once

#include "minbox/box/BoxCandidate.h"
#include "minbox/frame/MinBoundingBoxImpl.h"
#include "minbox/outline/Calipers.h"

/// Whether a candidate with this key takes the best one's place; of equal keys the earlier one
/// stays.
template <class Box, class Key>
bool isBetter(const MinBoundingBoxImpl& impl, const Box& box, const Box& best, const Key& key) {
    return key(box) == key(box) && (best.volume == impl.unset || key(best) > key(box));
}

/// Puts a candidate in the best one's place if it is better, once it is known to be a box around
/// the hull. Returns false where the candidate is none.
template <class Box, class Key, class Remeasure>
bool offer(const MinBoundingBoxImpl& impl, Box box, Box& best, const Key& key,
           const Remeasure& remeasure) {
    if (key(box) != key(box)) return false;
    if (!isBetter(impl, box, best, key)) return true;
    const FrameState state = secure(impl, box);
    if (state == FrameState::kDropped) return false;
    if (state == FrameState::kRetaken) {
        remeasure(box);
        if (!isBetter(impl, box, best, key)) return true;
    }
    best = box;
    return true;
}

/// Offers the box over an outline seen along a direction. Where a steep edge spoils it, the box
/// over the outline without such edges.
///
/// @param makeBox  what there is over what `calipers` look at
template <class Box, class MakeBox, class Key, class Remeasure>
void offerOver(const MinBoundingBoxImpl& impl, const Vector& direction, const Outline& outline,
               Calipers& calipers, const MakeBox& makeBox, const Key& key,
               const Remeasure& remeasure, Box& best) {
    if (outline.size() < 3) return;
    calipers.set(direction, outline);
    if (offer(impl, makeBox(), best, key, remeasure)) return;
    Outline rest = outline;
    removeSteep(impl, direction, rest);
    if (rest.size() < 3 || rest.size() == outline.size()) return;
    calipers.set(direction, rest);
    offer(impl, makeBox(), best, key, remeasure);
}
