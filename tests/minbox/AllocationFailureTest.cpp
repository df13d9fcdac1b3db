// Lets the n-th allocation of a search fail, on whichever thread it happens.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <optional>

#include "BoxTestSupport.h"
#include "tools/FailingAllocations.h"
#include "tools/TestSize.h"

namespace {

/// What came of a search that was allowed so many allocations.
struct Outcome {
    std::optional<OrientedBox3> box;  ///< nothing where memory ran out
    std::int64_t used = 0;
    std::int64_t leaked = 0;
};

Outcome searchWith(const Operation& operation, unsigned int threads, const Points& points,
                   std::int64_t allocations) {
    Outcome outcome;
    const std::int64_t heldBefore = blocksHeld;
    allocationsLeft = allocations;
    try {
        MinBoundingBox calculator(threads);
        calculator.setCallBackFunction([](int) {});
        outcome.box = operation.run(calculator, points);
    } catch (const std::bad_alloc&) {
    }
    outcome.used = allocations - allocationsLeft;
    allocationsLeft = kNever;
    outcome.leaked = blocksHeld - heldBefore;
    return outcome;
}

void expectCleanFailures(const Points& points, unsigned int threads) {
    const std::int64_t tries = testsAreSmall() ? 40 : 200;
    for (const Operation& operation : allOperations()) {
        SCOPED_TRACE(operation.name);
        const Outcome whole = searchWith(operation, threads, points, kNever);
        ASSERT_TRUE(whole.box.has_value());
        int failures = 0;
        const std::int64_t stride = std::max<std::int64_t>(1, whole.used / tries);
        for (std::int64_t allowed = 0; allowed < whole.used; allowed += stride) {
            const Outcome outcome = searchWith(operation, threads, points, allowed);
            ASSERT_EQ(outcome.leaked, 0) << "after " << allowed << " allocations";
            failures += outcome.box ? 0 : 1;
            if (outcome.box) {
                ASSERT_TRUE(sameBits(*outcome.box, *whole.box));
            }
        }
        EXPECT_GT(failures, 0);
    }
}

TEST(BoxAllocationFailure, LeavesTheCallAsBadAllocAndHoldsNoMemory) {
    TestRandom random(5);
    expectCleanFailures(bracketCorners(random), 1);
    expectCleanFailures(pointsInBall(200, random), 1);
}

TEST(BoxAllocationFailure, OnAnyThreadLeavesTheCallOnTheCallingThread) {
    TestRandom random(6);
    expectCleanFailures(bracketCorners(random), 2);
    expectCleanFailures(pointsInBall(200, random), 5);
    expectCleanFailures(pointsOnSphere(300, random), 3);
}

}  // namespace
