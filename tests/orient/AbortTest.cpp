#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <thread>

#include "CompareRecords.h"
#include "OmpThreads.h"
#include "TeskDebug/Exception.h"
#include "TeskDebug/StopWatchLog.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

namespace {

using Orientations = std::vector<OptimizeOrient::OptOrientation>;

const UVector3<float> kOldAxis(7, 8, 9);
constexpr float kOldAngle = -3.0f;
constexpr std::size_t kOldRecords = 3;

/// What came of a call whose n-th report threw.
struct Aborted {
    std::optional<std::string> text;  ///< of the exception that left the call
    std::vector<int> reports;
    std::vector<std::string> labels;
    UVector3<float> axis = kOldAxis;
    float angle = kOldAngle;
    Orientations orientations = Orientations(kOldRecords);

    bool outputsAreUntouched() const {
        return axis == kOldAxis && angle == kOldAngle && orientations.size() == kOldRecords &&
               orientations[0].score == -1.0f;
    }
};

Aborted abortedAt(MeshKernel& mesh, std::size_t report, int threads) {
    const OmpThreads setting(threads);
    Aborted call;
    for (auto& record : call.orientations) record.score = -1.0f;
    StopWatchLog::Sink before =
        StopWatchLog::setSink([&](const char* label, double) { call.labels.emplace_back(label); });
    OptimizeOrient::seedRandom(1);
    try {
        OrientOptimizer::calculateOrients(&mesh, {}, call.axis, call.angle, &call.orientations,
                                          [&](int percent) {
                                              call.reports.push_back(percent);
                                              if (call.reports.size() == report + 1) {
                                                  throw Tesk::AbortException("enough");
                                              }
                                          });
    } catch (const Tesk::AbortException& e) {
        call.text = e.what();
    }
    StopWatchLog::setSink(std::move(before));
    return call;
}

MeshKernel someMesh() {
    return makeColumnWithArm().kernel();
}

/// Report numbers: 0 and 1 are 3 and 10, then the loop's, and at the end 90, 95 and 100.
constexpr std::size_t kNever = 1000000;
constexpr std::size_t kFirstOfLoop = 2;

TEST(Abort, AtThreeOrTenTheCallbacksOwnExceptionEndsTheCallBeforeTheLoop) {
    MeshKernel mesh = someMesh();
    for (const int threads : {1, 2, 16}) {
        for (const std::size_t report : {0u, 1u}) {
            const Aborted call = abortedAt(mesh, report, threads);
            EXPECT_EQ(call.text, "enough");
            EXPECT_EQ(call.reports.size(), report + 1);
            EXPECT_EQ(call.reports.back(), report == 0 ? 3 : 10);
            EXPECT_EQ(call.labels.size(), report == 0 ? 2u : 3u);
            EXPECT_TRUE(call.outputsAreUntouched());
        }
    }
}

TEST(Abort, AtEveryReportOfTheLoopTheCallEndsWithTheLibrarysException) {
    MeshKernel mesh = someMesh();
    for (const int threads : {1, 2, 3, 16}) {
        const std::size_t all = abortedAt(mesh, kNever, threads).reports.size();
        for (std::size_t report = kFirstOfLoop; report + 3 < all; ++report) {
            const Aborted call = abortedAt(mesh, report, threads);
            ASSERT_EQ(call.text, "Aborting...") << "report " << report;
            ASSERT_EQ(call.reports.size(), report + 1) << "no report follows";
            ASSERT_EQ(call.labels.size(), 3u);
            ASSERT_TRUE(call.outputsAreUntouched());
        }
    }
}

TEST(Abort, AtNinetyTheCallbacksOwnExceptionLeavesTheOutputsUntouched) {
    MeshKernel mesh = someMesh();
    for (const int threads : {1, 3}) {
        const std::size_t all = abortedAt(mesh, kNever, threads).reports.size();
        const Aborted call = abortedAt(mesh, all - 3, threads);
        EXPECT_EQ(call.text, "enough");
        EXPECT_EQ(call.reports.back(), 90);
        EXPECT_TRUE(call.outputsAreUntouched());
    }
}

TEST(Abort, AtNinetyFiveTheListHoldsEveryCandidateUnsortedAndWithoutScore) {
    MeshKernel mesh = someMesh();
    const std::size_t all = abortedAt(mesh, kNever, 1).reports.size();
    const Aborted call = abortedAt(mesh, all - 2, 1);
    EXPECT_EQ(call.text, "enough");
    EXPECT_EQ(call.reports.back(), 95);
    EXPECT_EQ(call.axis, kOldAxis);
    EXPECT_EQ(call.angle, kOldAngle);
    // One report per candidate, besides 3, 10, 90, 95 and 100.
    ASSERT_EQ(call.orientations.size(), all - 5);
    for (const auto& record : call.orientations) EXPECT_EQ(record.score, 0.0f);
    EXPECT_EQ(call.orientations[0].axis, UVector3<float>(0, 1, 0));
    EXPECT_EQ(call.orientations[17].axis, UVector3<float>(0, 0, 0));
    EXPECT_FLOAT_EQ(call.orientations[17].supportVolume, 288.001251f);
}

TEST(Abort, AtAHundredEverythingIsComplete) {
    MeshKernel mesh = someMesh();
    const std::size_t all = abortedAt(mesh, kNever, 1).reports.size();
    const Aborted call = abortedAt(mesh, all - 1, 1);
    EXPECT_EQ(call.text, "enough");
    EXPECT_EQ(call.reports.back(), 100);
    const CallResult whole = calculated(mesh, {});
    EXPECT_EQ(call.axis, whole.axis);
    EXPECT_EQ(call.angle, whole.angle);
    expectSameRecords(call.orientations, whole.orientations);
    EXPECT_EQ(call.labels.size(), 5u);
}

TEST(Abort, WithoutAListNothingIsWrittenEither) {
    MeshKernel mesh = someMesh();
    for (const int last : {3, 10, 40, 90, 95}) {
        UVector3<float> axis = kOldAxis;
        float angle = kOldAngle;
        const auto stopAt = [&](int percent) {
            if (percent >= last) throw Tesk::AbortException("enough");
        };
        EXPECT_THROW(OrientOptimizer::calculateOrients(&mesh, {}, axis, angle, nullptr, stopAt),
                     Tesk::AbortException);
        EXPECT_EQ(axis, kOldAxis);
        EXPECT_EQ(angle, kOldAngle);
    }
}

TEST(Abort, AMeshCanBeUsedAgainAfterwards) {
    MeshKernel fresh = someMesh();
    const std::uint64_t expected = calculated(fresh, {}).hash();
    MeshKernel used = someMesh();
    for (const std::size_t report : {0u, 1u, 2u, 9u}) abortedAt(used, report, 3);
    EXPECT_EQ(calculated(used, {}).hash(), expected);
}

TEST(Abort, AnotherExceptionAtAFixedReportLeavesTheCallAsItIs) {
    MeshKernel mesh = someMesh();
    for (const int last : {3, 90, 95, 100}) {
        const auto stopAt = [&](int percent) {
            if (percent == last) throw std::string("broken");
        };
        EXPECT_THROW(calculated(mesh, {}, 1, stopAt), std::string);
    }
}

TEST(Abort, AnAbortOnOneMeshDoesNotDisturbACallOnAnother) {
    MeshKernel undisturbed = someMesh();
    const std::uint64_t expected = calculated(undisturbed, {}).hash();
    std::thread other([] {
        MeshKernel mesh = someMesh();
        for (int i = 0; i < 5; ++i) abortedAt(mesh, 4, 2);
    });
    for (int i = 0; i < 3; ++i) EXPECT_EQ(calculated(undisturbed, {}).hash(), expected);
    other.join();
}

}  // namespace
