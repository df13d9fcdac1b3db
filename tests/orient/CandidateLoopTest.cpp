#include "orient/CandidateLoop.h"

#include <gtest/gtest.h>

#include "OmpThreads.h"
#include "orient/turn/Flatten.h"
#include "shapes/Shapes.h"

using namespace Tesk::orient;

namespace {

using Reports = std::vector<int>;

/// Runs the loop over some directions of a unit box; fills what it reports.
ScoreLists run(const std::vector<UVector3<float>>& candidates, Reports& reports, int threads) {
    const OmpThreads setting(threads);
    MeshKernel mesh = makeBox({0, 0, 0}, {1, 1, 1}).kernel();
    const FlatMesh flat = flatten(*mesh.getMesh(), mesh.getMatrix());
    const std::vector<float> areas(flat.corners.size(), 0.5f);
    const OptimizeOrient::Configure config;
    const std::function<void(int)> progress = [&](int percent) { reports.push_back(percent); };
    ScoreLists scores(candidates.size());
    CandidateLoop(flat, areas, candidates, config, progress, scores).run();
    return scores;
}

TEST(CandidateLoop, AnEmptyListOfCandidatesReportsAndFillsNothing) {
    for (const int threads : {1, 2, 3}) {
        Reports reports;
        EXPECT_EQ(run({}, reports, threads).height.size(), 0u);
        EXPECT_TRUE(reports.empty());
    }
}

TEST(CandidateLoop, FillsOneSlotPerCandidateWithMoreThreadsThanCandidates) {
    Reports reports;
    const ScoreLists scores = run({{0, 0, 1}, {1, 0, 0}}, reports, 5);
    EXPECT_EQ(scores.height, std::vector<float>(2, 1.0f));
    ASSERT_FALSE(reports.empty());
    EXPECT_EQ(reports.front(), 10);
}

}  // namespace
