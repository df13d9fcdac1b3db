#include "BaseAreaScores.h"

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

/// The box over a rectangle; its volume and area are not set yet.
BoxCandidate boxOver(const MinBoundingBoxImpl& impl, const CaliperRect& rect,
                     const Vector& direction, const Outline& outline) {
    const auto support = [&](CaliperRect::Side side) {
        const int position = rect.support[side];
        return hullPoint(impl, outline[static_cast<std::size_t>(position)]);
    };
    BoxCandidate box;
    box.origin = support(CaliperRect::kBase);
    box.axes = {rect.axes[0], rect.axes[1], direction};
    box.direction = direction;
    box.squaredLengths = {rect.squaredLengths[0], rect.squaredLengths[1], direction | direction};
    box.ranges[0] = {(support(CaliperRect::kLeft) - box.origin) | box.axes[0],
                     (support(CaliperRect::kRight) - box.origin) | box.axes[0]};
    box.ranges[1] = {impl.zero, (support(CaliperRect::kTop) - box.origin) | box.axes[1]};
    box.ranges[2] = rangeAlong(impl, box.origin, direction);
    box.volume = volumeOf(box);
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

BoxCandidate lowestBox(const MinBoundingBoxImpl& impl, const Vector& direction,
                       const Outline& outline, std::vector<bool>& visited) {
    const CaliperRect rect = minRect(impl, direction, outline, visited);
    BoxCandidate box = boxOver(impl, rect, direction, outline);
    box.height = heightOf(box);
    return box;
}

BoxCandidate leastBaseBox(const MinBoundingBoxImpl& impl, const Vector& direction,
                          const Outline& outline, std::vector<bool>& visited) {
    const double squaredLength = direction | direction;
    double height = 0.0;
    CaliperRect best;
    best.score = impl.unsetF;
    bool isFirst = true;
    forEachRect(impl, direction, outline, visited, [&](CaliperRect& rect) {
        if (isFirst) {
            const int base = outline[static_cast<std::size_t>(rect.support[CaliperRect::kBase])];
            height = rangeAlong(impl, hullPoint(impl, base), direction).length();
        }
        const auto [width, depth] = sideRanges(impl, outline, rect);
        rect.score = impl.unsetF;
        for (const float area :
             sideAreas(width, depth, height,
                       {rect.squaredLengths[0], rect.squaredLengths[1], squaredLength})) {
            if (rect.score == impl.unsetF || rect.score > area) rect.score = area;
        }
        if (isFirst || best.score > rect.score) best = rect;
        isFirst = false;
    });
    BoxCandidate box = boxOver(impl, best, direction, outline);
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
