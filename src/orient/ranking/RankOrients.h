#pragma once

#include <functional>
#include <vector>

#include "OrientOptimizer.h"
#include "TeskDebug/StopWatchLog.h"

namespace Tesk::orient {

/// What was measured, one float per candidate in each list.
struct ScoreLists {
    explicit ScoreLists(std::size_t candidateCount);

    std::vector<float> height;
    std::vector<float> supportVolume;
    std::vector<float> overhangArea;
    std::vector<float> projectedArea;
    std::vector<float> boxVolume;
    std::vector<float> reservedScore;
};

/// Scales a list to 0..1; a list of one value, or whose values lie within 0.001, becomes all 1.
void normaliseScores(std::vector<float>& scores);

/// Sorts by ascending score, NaN last; equal scores keep their order.
void sortByScore(std::vector<OptimizeOrient::OptOrientation>& orientations);

/// Leaves the first record, ten evenly spaced ones and the last; 12 or fewer stay as they are.
void thinOut(std::vector<OptimizeOrient::OptOrientation>& orientations);

/// Turns the measures into the caller's outputs: fills `orientations` where it is not null,
/// normalises the lists, reports 95, forms the weighted sums, writes `axis` and `angle` of the
/// lowest (the first of equals), sorts and thins the list, and reports 100. Logs "Orient-2",
/// "Orient-3" and "Orient-4". `candidates` is not empty, and the lists have its length.
void rankOrients(const std::vector<UVector3<float>>& candidates, ScoreLists& scores,
                 const OptimizeOrient::Configure& config,
                 std::vector<OptimizeOrient::OptOrientation>* orientations, UVector3<float>& axis,
                 float& angle, const std::function<void(int)>& progress, StopWatchLog& log);

}  // namespace Tesk::orient
