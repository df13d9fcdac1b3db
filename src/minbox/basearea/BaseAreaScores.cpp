#include "minbox/basearea/BaseAreaScores.h"

#include <algorithm>
#include <cmath>

namespace {

float sideLength(double range, double squaredLength) {
    return static_cast<float>(range) / static_cast<float>(std::sqrt(squaredLength));
}

/// The three side areas of a box, each taken once: base, then the sides along the second and the
/// first axis.
std::array<float, 3> sideAreas(double range0, double range1, double range2,
                               const std::array<double, 3>& squaredLengths) {
    const float side0 = sideLength(range0, squaredLengths[0]);
    const float side1 = sideLength(range1, squaredLengths[1]);
    const float side2 = sideLength(range2, squaredLengths[2]);
    return {side0 * side1, side1 * side2, side0 * side2};
}

BoxCandidate boxOver(const MinBoundingBoxImpl& impl, const CaliperRect& rect,
                     const Calipers& calipers, const Vector& direction,
                     const RangeAlong& rangeAlong) {
    BoxCandidate box;
    const Vector& base = calipers.point(rect.support[CaliperRect::kBase]);
    layOver(impl, rect, calipers, direction, rangeAlong(base, direction), box);
    box.direction = direction;
    box.area = rect.area;
    return box;
}

float heightOf(const BoxCandidate& box) {
    return static_cast<float>(box.ranges[2].length()) /
           std::sqrt(static_cast<float>(box.squaredLengths[2]));
}

/// Lowers the score to the smallest of the box's side areas; marks which side it is.
void scoreSides(const MinBoundingBoxImpl& impl, BoxCandidate& box) {
    const auto areas = sideAreas(box.ranges[0].length(), box.ranges[1].length(),
                                 box.ranges[2].length(), box.squaredLengths);
    for (std::size_t i = 0; i < 3; ++i) {
        if (box.score == impl.unsetF || areas[i] < box.score) {
            box.score = areas[i];
            box.faceFlag = i == 0 ? impl.zeroF : impl.oneF;
        }
    }
}

}  // namespace

BoxCandidate lowestBox(const MinBoundingBoxImpl& impl, const Vector& direction, Calipers& calipers,
                       const RangeAlong& rangeAlong) {
    BoxCandidate box = boxOver(impl, calipers.minRect(), calipers, direction, rangeAlong);
    box.height = heightOf(box);
    return box;
}

BoxCandidate leastBaseBox(const MinBoundingBoxImpl& impl, const Vector& direction,
                          Calipers& calipers, const RangeAlong& rangeAlong) {
    const double squaredLength = direction | direction;
    double height = 0.0;
    CaliperRect best;
    best.score = impl.unsetF;
    bool isFirst = true;
    calipers.forEachRect([&](CaliperRect& rect) {
        if (isFirst) {
            const Vector& base = calipers.point(rect.support[CaliperRect::kBase]);
            height = rangeAlong(base, direction).length();
        }
        const auto [width, depth] = calipers.sideRanges(rect);
        rect.score = impl.unsetF;
        for (const float area :
             sideAreas(width, depth, height,
                       {rect.squaredLengths[0], rect.squaredLengths[1], squaredLength})) {
            if (rect.score == impl.unsetF || rect.score > area) rect.score = area;
        }
        if (isFirst || best.score > rect.score) best = rect;
        isFirst = false;
    });
    BoxCandidate box = boxOver(impl, best, calipers, direction, rangeAlong);
    box.score = best.score;
    scoreSides(impl, box);
    return box;
}

void measureAgain(const MinBoundingBoxImpl& impl, BoxCandidate& box) {
    box.volume = volumeOf(box);
    box.area = box.ranges[0].length() * box.ranges[1].length() / box.squaredLengths[1];
    if (impl.heightMode) box.height = heightOf(box);
    if (impl.baseAreaMode) {
        box.score = impl.unsetF;
        box.faceFlag = impl.unsetF;
        scoreSides(impl, box);
    }
}
