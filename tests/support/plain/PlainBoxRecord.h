#pragma once

#include <array>
#include <vector>

#include "MinBoundingBox.h"
#include "plain/PlainCaliper.h"
#include "plain/PlainOutline.h"

/// A candidate box with axes that are not normalised. Unset: volume, area, score and height are −1.
struct PlainBoxRecord {
    UVector3<double> origin;
    std::array<UVector3<double>, 3> axes;
    std::array<double, 3> squaredLengths{};  ///< of the axes
    /// Projections (p − origin) · axis of the hull's vertices, from min to max.
    std::array<double, 3> min{};
    std::array<double, 3> max{};
    double volume = -1.0;
    double area = -1.0;
    float score = -1.0f;
    float height = -1.0f;
    float faceFlag = -1.0f;
    UVector3<double> direction;
};

/// A record over a rectangle of an outline seen along a direction, with the direction as third
/// axis, the range along it from all hull vertices, and the volume.
PlainBoxRecord plainBoxOver(const PlainHull& hull, const PlainRect& rect,
                            const UVector3<double>& direction, const std::vector<int>& outline);

/// The range of (p − origin) · axis over all hull vertices; it contains 0.
void plainRange(const PlainHull& hull, const UVector3<double>& origin, const UVector3<double>& axis,
                double& min, double& max);

/// (max1 − min1) / s1 · (max0 − min0) · (max2 − min2) / s2.
double plainVolume(const PlainBoxRecord& record);

enum class PlainSecured { kSound, kRetaken, kDropped };

/// Checks that a record is a box around the whole hull. Where a vertex lies outside by more than
/// rounding, all ranges are taken from all vertices; what follows from them is left to the caller.
PlainSecured plainSecure(const PlainHull& hull, PlainBoxRecord& record);

/// The box with unit axes and half-lengths.
OrientedBox3 plainOrientedBox(const PlainBoxRecord& record);

/// Puts a candidate into a slot if it is better: if the slot is unset or its key strictly greater.
/// The candidate is secured first; where that changed it, `remeasure` forms volume and key anew
/// and the comparison is made again. Returns false for what is no candidate: a NaN key, or a frame
/// that was dropped.
template <class Key, class Remeasure>
bool plainOffer(const PlainHull& hull, PlainBoxRecord candidate, Key key, Remeasure remeasure,
                PlainBoxRecord& best) {
    const auto isBetter = [&] { return key(best) == -1 || key(best) > key(candidate); };
    if (key(candidate) != key(candidate)) return false;
    if (!isBetter()) return true;
    const PlainSecured secured = plainSecure(hull, candidate);
    if (secured == PlainSecured::kDropped) return false;
    if (secured == PlainSecured::kRetaken) {
        remeasure(candidate);
        if (key(candidate) != key(candidate) || !isBetter()) return true;
    }
    best = candidate;
    return true;
}

/// The best record of the faces: `offer(face, outline, best)` is called for every face whose
/// outline has more than two vertices, and again without steep edges if it returns false. With more
/// than one thread every range of faces has its own best record and links, and the records are
/// merged in order, the earlier of equal keys first.
template <class Key, class Offer>
PlainBoxRecord plainBestOfFaces(const PlainHull& hull, int threadCount, int walkLimit, Key key,
                                Offer offer) {
    PlainBoxRecord best;
    for (const auto& [first, last] : plainFaceRanges(hull, threadCount)) {
        PlainBoxRecord bestOfRange;
        std::vector<int> next(walkLimit, 0);
        for (int face = first; face <= last; ++face) {
            std::vector<int> outline = plainOutline(hull, face, next, walkLimit);
            plainTidyOutline(hull.points, hull.normals[face], outline);
            if (outline.size() < 3 || offer(face, outline, bestOfRange)) continue;
            plainRemoveSteep(hull.points, hull.normals[face], outline);
            if (outline.size() > 2) offer(face, outline, bestOfRange);
        }
        if (key(bestOfRange) == -1) continue;
        if (key(best) == -1 || key(bestOfRange) < key(best)) best = bestOfRange;
    }
    return best;
}
