#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "BuildPose.h"
#include "OmpThreads.h"
#include "PoseShapes.h"
#include "TeskDebug/Exception.h"

namespace {

using OptimizeOrient::findBuildPoses;

const MeshKernel& someMesh() {
    static const MeshKernel mesh = makeColumnWithArm().placed(someTurn()).kernel();
    return mesh;
}

std::vector<int> reportsOf(const MeshKernel& mesh) {
    std::vector<int> reports;
    findBuildPoses(mesh, {}, [&](int percent) { reports.push_back(percent); });
    return reports;
}

TEST(PoseAbort, ReportsGrowFromThreeTo100OnTheCallingThread) {
    for (const int threads : {1, 2, 16}) {
        const OmpThreads setting(threads);
        std::vector<int> reports;
        const std::thread::id caller = std::this_thread::get_id();
        findBuildPoses(someMesh(), {}, [&](int percent) {
            reports.push_back(percent);
            EXPECT_EQ(std::this_thread::get_id(), caller);
        });
        ASSERT_GT(reports.size(), 6u);
        EXPECT_EQ(reports[0], 3);
        EXPECT_EQ(reports[1], 10);
        EXPECT_EQ(reports.back(), 100);
        for (std::size_t i = 1; i < reports.size(); ++i) EXPECT_LE(reports[i - 1], reports[i]);
        EXPECT_NE(std::count(reports.begin(), reports.end(), 90), 0);
    }
}

TEST(PoseAbort, EveryReportCanEndTheSearch) {
    for (const int threads : {1, 2, 16}) {
        const OmpThreads setting(threads);
        const std::size_t all = reportsOf(someMesh()).size();
        for (std::size_t stop = 0; stop < all; ++stop) {
            std::size_t calls = 0;
            std::string text;
            try {
                findBuildPoses(someMesh(), {}, [&](int) {
                    if (calls++ == stop) throw Tesk::AbortException("enough");
                });
            } catch (const Tesk::AbortException& e) {
                text = e.what();
            }
            EXPECT_TRUE(text == "enough" || text == "Aborting...") << stop << " " << text;
            EXPECT_EQ(calls, stop + 1) << "it is not called again";
        }
    }
}

TEST(PoseAbort, AnotherExceptionLeavesTheCallAsItIs) {
    const OmpThreads setting(3);
    const std::size_t all = reportsOf(someMesh()).size();
    for (std::size_t stop = 0; stop < all; ++stop) {
        std::size_t calls = 0;
        EXPECT_THROW(findBuildPoses(someMesh(), {},
                                    [&](int) {
                                        if (calls++ == stop) throw std::string("broken");
                                    }),
                     std::string);
        EXPECT_EQ(calls, stop + 1);
    }
}

TEST(PoseAbort, InTheMiddleItIsTheLibrarysOwn) {
    std::string text;
    try {
        findBuildPoses(someMesh(), {}, [](int percent) {
            if (percent > 10) throw Tesk::AbortException("enough");
        });
    } catch (const Tesk::AbortException& e) {
        text = e.what();
    }
    EXPECT_EQ(text, "Aborting...");
}

TEST(PoseAbort, AnEmptyCallbackReportsNothing) {
    EXPECT_FALSE(findBuildPoses(someMesh(), {}).poses.empty());
}

}  // namespace
