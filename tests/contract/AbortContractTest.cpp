#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "HostMesh.h"

namespace {

using OptimizeOrient::Configure;
using OptimizeOrient::OptOrientation;

/// A call whose callback gives up when its `report`-th report (from 1) comes. All calls draw the
/// same candidates and so make the same number of reports.
class AbortedCall {
 public:
    void run(int report) {
        int reports = 0;
        OptimizeOrient::seedRandom(1);
        OrientOptimizer::calculateOrients(&m_box, Configure(), m_result.axis, m_result.angle,
                                          &m_result.orientations, [&, report](int percent) {
                                              ASSERT_LE(++reports, report)
                                                  << "reported after the abort";
                                              if (reports != report) return;
                                              m_abortedAt = percent;
                                              throw Tesk::AbortException("the host gives up");
                                          });
    }

    /// The text of what the call ended with; nothing where it completed.
    std::optional<std::string> textAfterAbortAt(int report) {
        try {
            run(report);
        } catch (const Tesk::AbortException& e) {
            return e.what();
        }
        return std::nullopt;
    }

    bool outputsAreUntouched() const {
        return m_result.axis.x == 1.0f && m_result.axis.y == 2.0f && m_result.axis.z == 3.0f &&
               m_result.angle == 4.0f && sameBits(m_result.orientations, kBefore);
    }

    int abortedAt() const { return m_abortedAt; }

 private:
    inline static const std::vector<OptOrientation> kBefore{3, {{1, 2, 3}, 4, 5, 6, 7, 8, 9, 10}};

    MeshKernel m_box = hostBox(20.0f, 30.0f, 80.0f);
    HostResult m_result = {{1.0f, 2.0f, 3.0f}, 4.0f, kBefore};
    int m_abortedAt = 0;
};

/// How many reports such a call makes when it completes.
int reportsOfACall() {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    UVector3<float> axis;
    float angle = 0.0f;
    int reports = 0;
    OptimizeOrient::seedRandom(1);
    OrientOptimizer::calculateOrients(&box, Configure(), axis, angle, nullptr,
                                      [&](int) { ++reports; });
    return reports;
}

TEST(AbortContract, AbortingAt3LeavesTheOutputsUntouched) {
    AbortedCall call;
    EXPECT_EQ(call.textAfterAbortAt(1), "the host gives up");
    EXPECT_EQ(call.abortedAt(), 3);
    EXPECT_TRUE(call.outputsAreUntouched());
}

TEST(AbortContract, AbortingAt10LeavesTheOutputsUntouched) {
    AbortedCall call;
    EXPECT_EQ(call.textAfterAbortAt(2), "the host gives up");
    EXPECT_EQ(call.abortedAt(), 10);
    EXPECT_TRUE(call.outputsAreUntouched());
}

TEST(AbortContract, AbortingAtAnyReportOfTheLoopLeavesTheOutputsUntouched) {
    const int last = reportsOfACall() - 3;
    for (int report = 3; report <= last; ++report) {
        AbortedCall call;
        EXPECT_EQ(call.textAfterAbortAt(report), "Aborting...") << "report " << report;
        EXPECT_GE(call.abortedAt(), 10);
        EXPECT_LE(call.abortedAt(), 90);
        EXPECT_TRUE(call.outputsAreUntouched()) << "report " << report;
    }
}

TEST(AbortContract, AbortingAt90LeavesTheOutputsUntouched) {
    AbortedCall call;
    EXPECT_EQ(call.textAfterAbortAt(reportsOfACall() - 2), "the host gives up");
    EXPECT_EQ(call.abortedAt(), 90);
    EXPECT_TRUE(call.outputsAreUntouched());
}

TEST(AbortContract, AbortingAt95And100ReachesTheHostToo) {
    for (const int fromTheEnd : {1, 0}) {
        AbortedCall call;
        EXPECT_EQ(call.textAfterAbortAt(reportsOfACall() - fromTheEnd), "the host gives up");
        EXPECT_EQ(call.abortedAt(), fromTheEnd == 1 ? 95 : 100);
    }
}

TEST(AbortContract, AnAbortIsCaughtByItsTypeAndByItsBases) {
    EXPECT_THROW(AbortedCall().run(5), Tesk::AbortException);
    const auto caughtAs = [](auto* base) {
        using Base = std::remove_pointer_t<decltype(base)>;
        try {
            AbortedCall().run(5);
        } catch (const Base& e) {
            return dynamic_cast<const Tesk::AbortException*>(&e) != nullptr;
        }
        return false;
    };
    EXPECT_TRUE(caughtAs(static_cast<Tesk::Exception*>(nullptr)));
    EXPECT_TRUE(caughtAs(static_cast<std::runtime_error*>(nullptr)));
    EXPECT_TRUE(caughtAs(static_cast<std::exception*>(nullptr)));
}

TEST(AbortContract, ACallAfterAnAbortIsWhole) {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    const HostResult expected = rankSeeded(box, Configure(), 9);
    UVector3<float> axis;
    float angle = 0.0f;
    const auto giveUp = [](int percent) {
        if (percent > 10) throw Tesk::AbortException("no");
    };
    EXPECT_THROW(OrientOptimizer::calculateOrients(&box, Configure(), axis, angle, nullptr, giveUp),
                 Tesk::AbortException);
    EXPECT_TRUE(sameBits(rankSeeded(box, Configure(), 9).orientations, expected.orientations));
}

TEST(AbortContract, AHostsOwnExceptionAtAFixedReportReachesTheHost) {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    UVector3<float> axis;
    float angle = 0.0f;
    const auto giveUp = [](int percent) {
        if (percent == 3) throw std::string("the host's own");
    };
    EXPECT_THROW(OrientOptimizer::calculateOrients(&box, Configure(), axis, angle, nullptr, giveUp),
                 std::string);
}

}  // namespace
