#include <gtest/gtest.h>

#include <exception>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "HostMesh.h"
#include "MinBoundingBox.h"

namespace {

using Points = std::vector<UPoint3<float>>;

Points boxCorners() {
    Points points;
    for (int i = 0; i < 8; ++i) {
        points.emplace_back((i & 1) != 0 ? 20.0f : 0.0f, (i & 2) != 0 ? 30.0f : 0.0f,
                            (i & 4) != 0 ? 80.0f : 0.0f);
    }
    return points;
}

static_assert(sizeof(MinBoundingBox) == sizeof(void*));
static_assert(std::is_same_v<decltype(OrientedBox3::extent), UVector3<float>>);

TEST(BoxContract, EveryOperationWorksThroughTheLibrarysBoundary) {
    const Points points = boxCorners();
    const int count = static_cast<int>(points.size());
    MinBoundingBox calculator(2);
    for (const OrientedBox3& box :
         {calculator(count, points.data()), calculator.minBaseAreaBox(count, points.data()),
          calculator.minBaseAreaAndHeightBox(count, points.data()),
          calculator.minBaseAreaBoxAroundAxis(count, points.data(), {0, 0, 1})}) {
        EXPECT_EQ(box.extent.x * box.extent.y * box.extent.z, 6000.0f);
        EXPECT_EQ(box.center, UVector3<float>(10, 15, 40));
    }
    const OrientedBox3 principal = MinBoundingBox::generateOBB(points.data(), count);
    EXPECT_EQ(principal.extent.x * principal.extent.y * principal.extent.z, 48000.0f);
}

/// The text of the abort with which a call ends whose callback gives up at its first report.
std::string abortTextOf(unsigned int threads,
                        const std::function<void(MinBoundingBox&, const Points&)>& call) {
    MinBoundingBox calculator(threads);
    calculator.setCallBackFunction([](int) { throw Tesk::AbortException("the host gives up"); });
    try {
        call(calculator, boxCorners());
    } catch (const Tesk::AbortException& exception) {
        return exception.what();
    }
    return "";
}

TEST(BoxContract, AnAbortIsThrownInTheHostAndCaughtInTheHost) {
    const auto volume = [](MinBoundingBox& b, const Points& p) {
        b(static_cast<int>(p.size()), p.data());
    };
    EXPECT_EQ(abortTextOf(1, volume), "Aborting...");
    EXPECT_EQ(abortTextOf(3, volume), "Aborting...");
    EXPECT_EQ(abortTextOf(1,
                          [](MinBoundingBox& b, const Points& p) {
                              b.minBaseAreaBox(static_cast<int>(p.size()), p.data());
                          }),
              "the host gives up");
    EXPECT_EQ(abortTextOf(1,
                          [](MinBoundingBox& b, const Points& p) {
                              b.minBaseAreaAndHeightBox(static_cast<int>(p.size()), p.data());
                          }),
              "the host gives up");
}

struct ReportingCall {
    const char* name;
    std::function<void(MinBoundingBox&, const Points&)> run;
    unsigned int mostThreads;  ///< with more, it reports nothing
};

std::vector<ReportingCall> reportingCalls() {
    const auto count = [](const Points& p) { return static_cast<int>(p.size()); };
    return {
        {"volume", [=](MinBoundingBox& b, const Points& p) { b(count(p), p.data()); }, 4},
        {"base area",
         [=](MinBoundingBox& b, const Points& p) { b.minBaseAreaBox(count(p), p.data()); }, 1},
        {"height",
         [=](MinBoundingBox& b, const Points& p) { b.minBaseAreaAndHeightBox(count(p), p.data()); },
         1}};
}

TEST(BoxContract, AbortsOfEveryOperationLeaveNothingBehindThreadedAndNot) {
    const Points points = boxCorners();
    for (const ReportingCall& call : reportingCalls()) {
        for (unsigned int threads = 1; threads <= call.mostThreads; ++threads) {
            SCOPED_TRACE(std::string(call.name) + ", " + std::to_string(threads));
            MinBoundingBox calculator(threads);
            for (int round = 0; round < 20; ++round) {
                calculator.setCallBackFunction([](int) { throw Tesk::AbortException("enough"); });
                bool isCaught = false;
                try {
                    call.run(calculator, points);
                } catch (const std::exception& exception) {  // by its base
                    isCaught = dynamic_cast<const Tesk::AbortException*>(&exception) != nullptr;
                }
                EXPECT_TRUE(isCaught);
                EXPECT_EQ(std::uncaught_exceptions(), 0);
            }
            calculator.setCallBackFunction(nullptr);
            const OrientedBox3 box = calculator(8, points.data());
            EXPECT_EQ(box.extent.x * box.extent.y * box.extent.z, 6000.0f);
        }
    }
}

TEST(BoxContract, APartIsLaidFlatAndAnAbortLeavesTheMatrix) {
    MeshKernel mesh = hostBox(20.0f, 30.0f, 80.0f);
    UMatrix4<float> matrix;
    matrix.at(0, 1) = 7.0f;
    const auto giveUp = [](int) { throw Tesk::AbortException("the host gives up"); };
    EXPECT_THROW(OrientOptimizer::calculateOrients_minBoundingBox(&mesh, matrix, giveUp),
                 Tesk::AbortException);
    EXPECT_EQ(matrix.at(0, 1), 7.0f);
    OrientOptimizer::calculateOrients_minBoundingBox(&mesh, matrix, nullptr);
    UBox3<float> box;
    for (const UPoint3<float>& p : boxCorners()) box.Extend(p * matrix);
    EXPECT_NEAR(box.MaxX() - box.MinX(), 80.0f, 1e-4f);
    EXPECT_NEAR(box.MaxZ() - box.MinZ(), 20.0f, 1e-4f);
}

}  // namespace
