#include "minbox/basearea/BaseAreaScores.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace Tesk::minbox {
namespace {

float sideLength(double range, double squaredLength) {
    return static_cast<float>(range) / static_cast<float>(std::sqrt(squaredLength));
}

/// The areas of a box's base and of its two different upright sides.
std::array<float, 3> sideAreas(double range0, double range1, double range2,
                               const std::array<double, 3>& squaredLengths) {
    const float side0 = sideLength(range0, squaredLengths[0]);
    const float side1 = sideLength(range1, squaredLengths[1]);
    const float side2 = sideLength(range2, squaredLengths[2]);
    return {side0 * side1, side1 * side2, side0 * side2};
}

BoxCandidate boxOver(const CaliperRect& rect, const Calipers& calipers,
                     const RangeAlong& rangeAlong) {
    const Vector& base = calipers.support(rect, CaliperRect::kBase);
    BoxCandidate box{frameOver(rect, calipers, rangeAlong(base, calipers.direction()))};
    box.direction = calipers.direction();
    box.area = rect.area;
    return box;
}

float heightOf(const BoxCandidate& box) {
    return static_cast<float>(box.ranges[2].length()) /
           std::sqrt(static_cast<float>(box.squaredLengths[2]));
}

/// Lowers the score to the smallest of the box's side areas, and marks which side it is.
void scoreSides(const SearchConstants& constants, BoxCandidate& box) {
    const auto areas = sideAreas(box.ranges[0].length(), box.ranges[1].length(),
                                 box.ranges[2].length(), box.squaredLengths);
    for (std::size_t i = 0; i < 3; ++i) {
        if (box.score == constants.unsetF || areas[i] < box.score) {
            box.score = areas[i];
            box.faceFlag = i == 0 ? constants.zeroF : constants.oneF;
        }
    }
}

}  // namespace

BoxCandidate lowestBox(Calipers& calipers, const RangeAlong& rangeAlong) {
    BoxCandidate box = boxOver(calipers.minRect(), calipers, rangeAlong);
    box.height = heightOf(box);
    return box;
}

BoxCandidate leastBaseBox(Calipers& calipers, const RangeAlong& rangeAlong) {
    const SearchConstants& constants = calipers.points().constants();
    const Vector& direction = calipers.direction();
    const double squaredLength = direction | direction;
    double height = 0.0;
    std::optional<CaliperRect> best;
    calipers.forEachRect([&](const CaliperRect& rect) {
        if (!best) {
            height = rangeAlong(calipers.support(rect, CaliperRect::kBase), direction).length();
        }
        const auto [width, depth] = calipers.sideRanges(rect);
        float score = constants.unsetF;
        for (const float area :
             sideAreas(width, depth, height,
                       {rect.squaredLengths[0], rect.squaredLengths[1], squaredLength})) {
            if (score == constants.unsetF || score > area) score = area;
        }
        if (best && !(best->score > score)) return;
        best = rect;
        best->score = score;
    });
    BoxCandidate box = boxOver(*best, calipers, rangeAlong);
    box.score = best->score;
    scoreSides(constants, box);
    return box;
}

void measureAgain(const SearchConstants& constants, BaseAreaKey key, BoxCandidate& box) {
    box.volume = volumeOf(box);
    box.area = box.ranges[0].length() * box.ranges[1].length() / box.squaredLengths[1];
    if (key == BaseAreaKey::kHeight) {
        box.height = heightOf(box);
    } else {
        box.score = constants.unsetF;
        box.faceFlag = constants.unsetF;
        scoreSides(constants, box);
    }
}

}  // namespace Tesk::minbox
