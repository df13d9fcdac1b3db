#include "minbox/volume/FaceSearch.h"

#include <gtest/gtest.h>

#include <vector>

#include "PreparedHull.h"

using namespace Tesk::minbox;

namespace {

TEST(FaceSearch, TellsTheOthersOfWhatItFindsAndPassesOverWhatIsWorse) {
    const PreparedHull prepared(boxCorners(2, 3, 4));
    VolumeLimit limit;
    int steps = 0;
    const auto bestOf = [&] {
        FaceSearch search(prepared.hull, prepared.bound, limit, 1);
        std::vector<FaceSearch::Worker> workers;
        workers.emplace_back(search);
        workers[0].run([&] {
            ++steps;
            return true;
        });
        return search.best(workers, std::vector<FaceRange>{{0, 12}});
    };
    EXPECT_EQ(bestOf().value().volume, 24.0);
    EXPECT_EQ(limit.get(), 24.0);
    EXPECT_EQ(steps, 12);
    limit.lowerTo(20.0);  // as if another thread had found less
    EXPECT_FALSE(bestOf());
    EXPECT_EQ(steps, 24) << "progress counts the faces passed over, too";
}

TEST(FaceSearch, IsSharedByWorkersWithoutOverlap) {
    TestRandom random(11);
    const PreparedHull prepared(pointsOnSphere(300, random));
    VolumeLimit limit;
    FaceSearch search(prepared.hull, prepared.bound, limit, 1);
    std::vector<FaceSearch::Worker> workers;
    for (int i = 0; i < 3; ++i) workers.emplace_back(search);
    int steps = 0;
    // The first leaves after a few, the others share the rest.
    workers[0].run([&] { return ++steps < 20; });
    for (FaceSearch::Worker& worker : workers) {
        worker.run([&] {
            ++steps;
            return true;
        });
    }
    EXPECT_LE(steps, prepared.hull.faceCount());
    EXPECT_GT(steps, prepared.hull.faceCount() - 8) << "but for the few that the first had taken";
}

}  // namespace
