#include "orient/ranking/RankOrients.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "TeskCommon/Assert.h"
#include "orient/rotation/CandidateRotation.h"

namespace Tesk::orient {
namespace {

using OptimizeOrient::Configure;
using OptimizeOrient::OptOrientation;
using Orientations = std::vector<OptOrientation>;
using Directions = std::vector<UVector3<float>>;

void fillRecords(const Directions& candidates, const ScoreLists& scores,
                 Orientations& orientations) {
    orientations.resize(candidates.size());
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        orientations[i] = {.axis = candidateAxis(candidates[i]),
                           .angle = candidateAngle(candidates[i]),
                           .overhangArea = scores.overhangArea[i],
                           .supportVolume = scores.supportVolume[i],
                           .projectedArea = scores.projectedArea[i],
                           .height = scores.height[i],
                           .boxVolume = scores.boxVolume[i],
                           .score = 0.0f};
    }
}

/// The weighted sum of one candidate's normalised measures; the order of the additions is part of
/// the result. Only for the reserved score is higher better; it has a fixed weight.
float combinedScore(const ScoreLists& scores, const Configure& config, std::size_t i) {
    const auto heightWeight = static_cast<float>(config.heightWeight);
    const auto supportVolumeWeight = static_cast<float>(config.supportVolumeWeight);
    const auto supportAreaWeight = static_cast<float>(config.supportAreaWeight);
    const auto boxVolumeWeight = static_cast<float>(config.boxVolumeWeight);
    float sum = heightWeight * scores.height[i];
    sum += supportVolumeWeight * scores.supportVolume[i];
    sum += supportAreaWeight * scores.overhangArea[i];
    sum += supportAreaWeight * scores.projectedArea[i];
    sum += boxVolumeWeight * scores.boxVolume[i];
    const double reserved = static_cast<double>(1.0f - scores.reservedScore[i]) * 0.2;
    return static_cast<float>(static_cast<double>(sum) + reserved);
}

/// The index of the lowest score, the first of equals. It is 0 if no score is below the start
/// value, which is slightly less than the largest float. Writes the scores into the records, if
/// there are any.
std::size_t findBest(const ScoreLists& scores, const Configure& config,
                     Orientations* orientations) {
    std::size_t best = 0;
    float bestScore = 3.40282e+38f;
    for (std::size_t i = 0; i < scores.height.size(); ++i) {
        const float score = combinedScore(scores, config, i);
        if (bestScore > score) {
            bestScore = score;
            best = i;
        }
        if (orientations) (*orientations)[i].score = score;
    }
    return best;
}

}  // namespace

ScoreLists::ScoreLists(std::size_t candidateCount) {
    for (std::vector<float>* list : all()) list->assign(candidateCount, 0.0f);
}

std::array<std::vector<float>*, 6> ScoreLists::all() {
    return {&height, &supportVolume, &overhangArea, &projectedArea, &boxVolume, &reservedScore};
}

void normaliseScores(std::vector<float>& scores) {
    if (scores.empty()) return;
    float lowest = scores.front();
    float highest = scores.front();
    for (std::size_t i = 1; i < scores.size(); ++i) {
        if (scores[i] > highest) {
            highest = scores[i];
        } else if (scores[i] < lowest) {
            lowest = scores[i];
        }
    }
    const float range = highest - lowest;
    // The comparison must fail if the range is NaN.
    if (scores.size() == 1 || 0.001 > static_cast<double>(range)) {
        std::fill(scores.begin(), scores.end(), 1.0f);
        return;
    }
    for (float& score : scores) score = (score - lowest) / range;
}

void sortByScore(Orientations& orientations) {
    std::stable_sort(orientations.begin(), orientations.end(),
                     [](const OptOrientation& a, const OptOrientation& b) {
                         if (std::isnan(b.score)) return !std::isnan(a.score);
                         return a.score < b.score;
                     });
}

void thinOut(Orientations& orientations) {
    if (orientations.size() <= 12) return;
    const std::size_t step = (orientations.size() - 2) / 10;
    Orientations spread;
    spread.reserve(12);
    for (std::size_t i = 0; i <= 10; ++i) spread.push_back(orientations[i * step]);
    spread.push_back(orientations.back());
    orientations = std::move(spread);
}

void rankOrients(const Directions& candidates, ScoreLists& scores, const Configure& config,
                 Records records, Orientations* orientations, UVector3<float>& axis, float& angle,
                 const std::function<void(int)>& progress, StopWatchLog& log) {
    TESK_ASSERT(!candidates.empty());
    if (orientations) fillRecords(candidates, scores, *orientations);
    log.logElapse("Orient-2");
    for (std::vector<float>* list : scores.all()) {
        TESK_ASSERT(list->size() == candidates.size());
        normaliseScores(*list);
    }
    if (progress) progress(95);
    const std::size_t best = findBest(scores, config, orientations);
    angle = candidateAngle(candidates[best]);
    axis = candidateAxis(candidates[best]);
    if (orientations) sortByScore(*orientations);
    log.logElapse("Orient-3");
    if (orientations && records == Records::kSpread) thinOut(*orientations);
    if (progress) progress(100);
    log.logElapse("Orient-4");
}

}  // namespace Tesk::orient
