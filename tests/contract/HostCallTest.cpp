#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "OrientOptimizer.h"
#include "TeskDebug/Exception.h"

namespace {

using OptimizeOrient::Configure;
using OptimizeOrient::OptOrientation;

/// A box standing on its smallest side.
MeshKernel standingBox() {
    std::vector<UPoint3<float>> corners;
    for (int i = 0; i < 8; ++i) {
        corners.emplace_back((i & 1) != 0 ? 10.0f : 0.0f, (i & 2) != 0 ? 20.0f : 0.0f,
                             (i & 4) != 0 ? 50.0f : 0.0f);
    }
    const std::vector<std::array<std::int32_t, 3>> triangles = {
        {0, 2, 1}, {1, 2, 3}, {4, 5, 6}, {5, 7, 6}, {0, 1, 4}, {1, 5, 4},
        {2, 6, 3}, {3, 6, 7}, {0, 4, 2}, {2, 4, 6}, {1, 3, 5}, {3, 7, 5}};
    return {corners, triangles};
}

struct Outputs {
    UVector3<float> axis{7.0f, 8.0f, 9.0f};
    float angle = -3.0f;
    std::vector<OptOrientation> list = std::vector<OptOrientation>(2);

    bool areUntouched() const {
        return axis == UVector3<float>(7.0f, 8.0f, 9.0f) && angle == -3.0f && list.size() == 2;
    }
};

void call(Outputs& outputs, const std::function<void(int)>& progress) {
    MeshKernel mesh = standingBox();
    OptimizeOrient::seedRandom(1);
    OrientOptimizer::calculateOrients(&mesh, Configure{.computeSupport = 1}, outputs.axis,
                                      outputs.angle, &outputs.list, progress);
}

TEST(HostCall, ReturnsTwelveRecordsWithTheBestFirst) {
    Outputs outputs;
    call(outputs, {});
    ASSERT_EQ(outputs.list.size(), 12u);
    EXPECT_NEAR(outputs.list[0].height, 10.0f, 1e-4f);
    EXPECT_EQ(outputs.list[0].axis, outputs.axis);
    EXPECT_EQ(outputs.list[0].angle, outputs.angle);
    for (std::size_t i = 1; i < outputs.list.size(); ++i) {
        EXPECT_LE(outputs.list[i - 1].score, outputs.list[i].score);
    }
}

TEST(HostCall, WithoutAListStillGivesAxisAndAngle) {
    Outputs with;
    call(with, {});
    Outputs without;
    MeshKernel mesh = standingBox();
    OptimizeOrient::seedRandom(1);
    OrientOptimizer::calculateOrients(&mesh, Configure{.computeSupport = 1}, without.axis,
                                      without.angle, nullptr, {});
    EXPECT_EQ(without.axis, with.axis);
    EXPECT_EQ(without.angle, with.angle);
}

TEST(HostCall, ReportsOnTheCallingThreadFromThreeToAHundred) {
    std::vector<int> reports;
    const std::thread::id caller = std::this_thread::get_id();
    Outputs outputs;
    call(outputs, [&](int percent) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        reports.push_back(percent);
    });
    ASSERT_GE(reports.size(), 6u);
    EXPECT_EQ(reports[0], 3);
    EXPECT_EQ(reports[1], 10);
    EXPECT_EQ(reports.back(), 100);
    EXPECT_TRUE(std::is_sorted(reports.begin(), reports.end()));
}

/// The percentages of a whole call.
std::vector<int> allReports() {
    std::vector<int> reports;
    Outputs outputs;
    call(outputs, [&](int percent) { reports.push_back(percent); });
    return reports;
}

TEST(HostCall, AnAbortAtAnyReportComesBackByItsOwnType) {
    const std::size_t count = allReports().size();
    for (std::size_t last = 0; last < count; ++last) {
        std::size_t seen = 0;
        int percentAtAbort = 0;
        Outputs outputs;
        const auto progress = [&](int percent) {
            ASSERT_LE(seen, last) << "reported after the abort";
            percentAtAbort = percent;
            if (seen++ == last) throw Tesk::AbortException("Aborting...");
        };
        EXPECT_THROW(call(outputs, progress), Tesk::AbortException);
        EXPECT_EQ(outputs.areUntouched(), percentAtAbort < 95) << percentAtAbort;
    }
}

TEST(HostCall, AnAbortIsCaughtByItsBaseTypesToo) {
    Outputs outputs;
    const auto abort = [](int) { throw Tesk::AbortException("Aborting..."); };
    EXPECT_THROW(call(outputs, abort), Tesk::Exception);
    try {
        call(outputs, [&](int percent) {
            if (percent > 10) throw Tesk::AbortException("mine");
        });
        FAIL() << "not aborted";
    } catch (const std::exception& e) {
        EXPECT_EQ(std::string(e.what()), "Aborting...");
    }
}

TEST(HostCall, AnotherExceptionAtAFixedReportPassesThrough) {
    Outputs outputs;
    EXPECT_THROW(call(outputs, [](int) { throw std::out_of_range("mine"); }), std::out_of_range);
    EXPECT_TRUE(outputs.areUntouched());
}

TEST(HostCall, TheSameSeedGivesTheSameResult) {
    Outputs first;
    Outputs second;
    call(first, {});
    call(second, {});
    EXPECT_EQ(first.axis, second.axis);
    ASSERT_EQ(first.list.size(), second.list.size());
    for (std::size_t i = 0; i < first.list.size(); ++i) {
        EXPECT_EQ(first.list[i].score, second.list[i].score);
        EXPECT_EQ(first.list[i].axis, second.list[i].axis);
    }
}

}  // namespace
