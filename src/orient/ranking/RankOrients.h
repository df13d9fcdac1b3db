#pragma once

#include <array>
#include <functional>
#include <vector>

#include "OrientOptimizer.h"
#include "TeskDebug/StopWatchLog.h"

namespace Tesk::orient {

/// The measures of all candidates. Each list has one value per candidate.
struct ScoreLists {
    explicit ScoreLists(std::size_t candidateCount);

    std::array<std::vector<float>*, 6> all();

    std::vector<float> height;
    std::vector<float> supportVolume;
    std::vector<float> overhangArea;
    std::vector<float> projectedArea;
    std::vector<float> boxVolume;
    std::vector<float> reservedScore;
};

/// Scales a list to 0..1. If it has a single value, or if its values differ by less than 0.001, all
/// become 1.
void normaliseScores(std::vector<float>& scores);

/// Sorts by ascending score, NaN last. Equal scores keep their order.
void sortByScore(std::vector<OptimizeOrient::OptOrientation>& orientations);

/// Keeps the first record, ten evenly spaced ones and the last. A list of 12 or fewer is unchanged.
void thinOut(std::vector<OptimizeOrient::OptOrientation>& orientations);

/// Which records of a ranking the caller gets.
enum class Records {
    kSpread,  ///< those that thinOut() keeps
    kAll      ///< one of every candidate
};

/// Turns the measures into the caller's outputs: fills `orientations` if it is not null, normalises
/// the lists, reports 95, computes the weighted sums, writes `axis` and `angle` of the candidate
/// with the lowest sum (the first of equals), sorts `orientations`, thins it for Records::kSpread,
/// and reports 100. Logs "Orient-2", "Orient-3" and "Orient-4".
///
/// @param candidates  not empty
/// @param scores      lists as long as `candidates`; left normalised
void rankOrients(const std::vector<UVector3<float>>& candidates, ScoreLists& scores,
                 const OptimizeOrient::Configure& config, Records records,
                 std::vector<OptimizeOrient::OptOrientation>* orientations, UVector3<float>& axis,
                 float& angle, const std::function<void(int)>& progress, StopWatchLog& log);

}  // namespace Tesk::orient
