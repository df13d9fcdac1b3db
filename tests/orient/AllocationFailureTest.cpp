// Lets the n-th allocation of a call fail, on whichever thread it happens.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <new>

#include "CompareRecords.h"
#include "OmpThreads.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"
#include "tools/FailingAllocations.h"
#include "tools/TestSize.h"

namespace {

/// What came of a call that was allowed so many allocations.
struct Outcome {
    bool isComplete = false;
    bool ranOutOfMemory = false;
    std::int64_t leaked = 0;
};

Outcome callWith(MeshKernel& mesh, std::int64_t allocations,
                 std::vector<OptimizeOrient::OptOrientation>& list) {
    Outcome outcome;
    UVector3<float> axis;
    float angle = 0.0f;
    OptimizeOrient::seedRandom(1);
    const std::size_t capacityBefore = list.capacity();
    const std::int64_t heldBefore = blocksHeld;
    allocationsLeft = allocations;
    try {
        OrientOptimizer::calculateOrients(&mesh, {.supportAreaWeight = 1}, axis, angle, &list, {});
        outcome.isComplete = true;
    } catch (const std::bad_alloc&) {
        outcome.ranOutOfMemory = true;
    }
    allocationsLeft = kNever;
    // The caller's list may have got its one block.
    const std::int64_t forTheList = capacityBefore == 0 && list.capacity() != 0 ? 1 : 0;
    outcome.leaked = blocksHeld - heldBefore - forTheList;
    return outcome;
}

std::int64_t allocationsOfAWholeCall(MeshKernel& mesh) {
    std::vector<OptimizeOrient::OptOrientation> list;
    callWith(mesh, kNever / 2, list);
    UVector3<float> axis;
    float angle = 0.0f;
    allocationsLeft = kNever;
    OrientOptimizer::calculateOrients(&mesh, {.supportAreaWeight = 1}, axis, angle, &list, {});
    const std::int64_t used = kNever - allocationsLeft;
    allocationsLeft = kNever;
    return used;
}

void expectCleanFailures(const Part& part, int threads) {
    const OmpThreads setting(threads);
    MeshKernel mesh = part.kernel();
    const std::uint64_t expected = calculated(mesh, {.supportAreaWeight = 1}).hash();
    const std::int64_t all = allocationsOfAWholeCall(mesh);
    ASSERT_GT(all, 30);
    const std::int64_t tries = testsAreSmall() ? 12 : 50;
    const std::int64_t stride = std::max<std::int64_t>(1, all / tries);
    int failures = 0;
    for (std::int64_t allowed = 0; allowed < all; allowed += stride) {
        std::vector<OptimizeOrient::OptOrientation> list;
        const Outcome outcome = callWith(mesh, allowed, list);
        ASSERT_TRUE(outcome.isComplete || outcome.ranOutOfMemory);
        ASSERT_EQ(outcome.leaked, 0) << "after " << allowed << " allocations";
        failures += outcome.ranOutOfMemory ? 1 : 0;
    }
    EXPECT_GT(failures, tries / 2);
    EXPECT_EQ(calculated(mesh, {.supportAreaWeight = 1}).hash(), expected);
}

TEST(AllocationFailure, LeavesTheCallAsBadAllocAndHoldsNoMemory) {
    expectCleanFailures(makeColumnWithArm(), 1);
    expectCleanFailures(makeSphere(5.0f, 300), 1);
}

TEST(AllocationFailure, OnAnyThreadLeavesTheCallOnTheCallingThread) {
    expectCleanFailures(makeColumnWithArm(), 2);
    expectCleanFailures(makeSphere(5.0f, 300), 3);
    // Of so many triangles the preparation runs on threads, too.
    expectCleanFailures(makeSphere(5.0f, 105'000), 2);
}

}  // namespace
