#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>

#include "BoxTestSupport.h"
#include "TeskDebug/Exception.h"
#include "tools/TestSize.h"

namespace {

using Reports = std::vector<int>;

Reports reportsOf(const Operation& operation, const Points& points, unsigned int threads) {
    Reports reports;
    MinBoundingBox calculator(threads);
    calculator.setCallBackFunction([&](int percent) { reports.push_back(percent); });
    operation.run(calculator, points);
    return reports;
}

/// The text of the abort that a throw at the n-th report led to.
std::optional<std::string> abortAt(const Operation& operation, MinBoundingBox& calculator,
                                   const Points& points, std::size_t report,
                                   std::size_t* reported = nullptr) {
    std::size_t reports = 0;
    calculator.setCallBackFunction([&](int) {
        if (reports++ == report) throw Tesk::AbortException("enough");
    });
    std::optional<std::string> text;
    try {
        operation.run(calculator, points);
    } catch (const Tesk::AbortException& exception) {
        text = exception.what();
    }
    calculator.setCallBackFunction(nullptr);
    if (reported != nullptr) *reported = reports;
    return text;
}

const Points kBox = boxCorners(2, 3, 4);

TEST(BoxProgress, OfTheVolumeSearchEndsNearForty) {
    EXPECT_EQ(reportsOf(allOperations()[0], kBox, 1),
              (Reports{3, 6, 10, 13, 16, 20, 23, 26, 30, 33, 36, 40}));
    EXPECT_EQ(reportsOf(allOperations()[0], kBox, 3),
              (Reports{3, 6, 10, 13, 16, 20, 23, 26, 30, 33, 36, 40}));
}

TEST(BoxProgress, OfTheBaseAreaSearchesEndsAtAHundred) {
    const Reports expected = {8, 16, 25, 33, 41, 50, 58, 66, 75, 83, 91, 100};
    EXPECT_EQ(reportsOf(allOperations()[1], kBox, 1), expected);
    EXPECT_EQ(reportsOf(allOperations()[2], kBox, 1), expected);
}

TEST(BoxProgress, WorkersOfTheBaseAreaSearchesReportNothing) {
    EXPECT_EQ(reportsOf(allOperations()[1], kBox, 2), Reports());
    EXPECT_EQ(reportsOf(allOperations()[2], kBox, 4), Reports());
}

TEST(BoxProgress, FewerFacesThanThreadsReportAsOneThreadDoes) {
    EXPECT_EQ(reportsOf(allOperations()[1], tetrahedronCorners(), 5), (Reports{25, 50, 75, 100}));
}

TEST(BoxAbort, OfTheVolumeSearchHasTheLibrarysText) {
    for (const unsigned int threads : {1u, 2u, 3u, 8u}) {
        for (const std::size_t report : {0u, 5u, 11u}) {
            MinBoundingBox calculator(threads);
            EXPECT_EQ(abortAt(allOperations()[0], calculator, kBox, report), "Aborting...")
                << threads << " threads, report " << report;
        }
    }
}

TEST(BoxAbort, OfTheBaseAreaSearchesKeepsTheCallbacksText) {
    for (const std::size_t operation : {1u, 2u}) {
        for (const std::size_t report : {0u, 5u, 11u}) {
            MinBoundingBox calculator;
            std::size_t reported = 0;
            EXPECT_EQ(abortAt(allOperations()[operation], calculator, kBox, report, &reported),
                      "enough");
            EXPECT_EQ(reported, report + 1);
        }
    }
}

TEST(BoxAbort, OnTheCallingThreadNoReportFollowsIt) {
    TestRandom random(1);
    const Points points = pointsOnSphere(200, random);
    for (const std::size_t operation : {0u, 1u, 2u}) {
        for (const std::size_t report : {0u, 7u, 30u}) {
            MinBoundingBox calculator;
            std::size_t reported = 0;
            abortAt(allOperations()[operation], calculator, points, report, &reported);
            EXPECT_EQ(reported, report + 1);
        }
    }
}

TEST(BoxAbort, OnWorkerThreadsNoReportFollowsIt) {
    TestRandom random(3);
    const Points points = pointsOnSphere(300, random);
    const int aborts = testsAreSmall() ? 60 : 300;
    for (int i = 0; i < aborts; ++i) {
        const auto last = static_cast<std::size_t>(random.in(0.0f, 39.0f));
        std::size_t reports = 0;
        MinBoundingBox calculator(7);
        calculator.setCallBackFunction([&](int) {
            if (reports++ < last) return;
            // Lets the other workers come and wait for their turn to report.
            std::this_thread::sleep_for(std::chrono::microseconds(i % 3 * 200));
            throw Tesk::AbortException("enough");
        });
        EXPECT_THROW(calculator(countOf(points), points.data()), Tesk::AbortException);
        ASSERT_EQ(reports, last + 1) << "abort " << i;
    }
}

TEST(BoxAbort, AfterItTheObjectGivesWhatAFreshOneGives) {
    TestRandom random(7);
    const Points points = pointsInBall(60, random);
    for (const unsigned int threads : {1u, 3u}) {
        for (const Operation& first : allOperations()) {
            if (!first.reportsProgress) continue;
            for (const std::size_t report : {0u, 10u, 39u}) {
                for (const Operation& second : allOperations()) {
                    MinBoundingBox used(threads);
                    MinBoundingBox fresh(threads);
                    const auto text = abortAt(first, used, points, report);
                    const bool hasReports = threads == 1 || first.name == "volume";
                    EXPECT_EQ(text.has_value(), hasReports) << first.name;
                    EXPECT_TRUE(sameBits(second.run(used, points), second.run(fresh, points)))
                        << second.name << " after " << first.name << " ended at report " << report;
                }
            }
        }
    }
}

TEST(BoxAbort, AnotherOperationBeforeDoesNotChangeAResult) {
    TestRandom random(8);
    const Points points = pointsInBall(60, random);
    const Points others = bracketCorners(random);
    for (const Operation& first : allOperations()) {
        for (const Operation& second : allOperations()) {
            MinBoundingBox used;
            MinBoundingBox fresh;
            first.run(used, others);
            EXPECT_TRUE(sameBits(second.run(used, points), second.run(fresh, points)));
        }
    }
}

TEST(BoxAbort, TheCallbackNeverRunsOnTwoThreadsAtOnce) {
    TestRandom random(2);
    const Points points = pointsOnSphere(400, random);
    std::atomic<int> inside = 0;
    MinBoundingBox calculator(4);
    calculator.setCallBackFunction([&](int) {
        EXPECT_EQ(++inside, 1);
        --inside;
    });
    calculator(countOf(points), points.data());
}

}  // namespace
