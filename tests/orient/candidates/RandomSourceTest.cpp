#include "orient/candidates/RandomSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <thread>
#include <vector>

#include "OrientOptimizer.h"
#include "orient/candidates/InitOrients.h"
#include "plain/PlainCandidates.h"
#include "shapes/Shapes.h"

using namespace Tesk::orient;

namespace {

TEST(RandomSource, FromSeedOneItGivesTheKnownSequence) {
    OptimizeOrient::seedRandom(1);
    for (const int expected : {41, 18467, 6334, 26500, 19169, 15724, 11478, 29358, 26962, 24464}) {
        EXPECT_EQ(nextRandom(), expected);
    }
}

TEST(RandomSource, AFreshThreadStartsAsIfSeededWithOne) {
    OptimizeOrient::seedRandom(999);
    std::array<int, 3> drawn{};
    std::thread([&] {
        for (int& number : drawn) number = nextRandom();
    }).join();
    EXPECT_EQ(drawn, (std::array{41, 18467, 6334}));
}

TEST(RandomSource, EachThreadHasAStateOfItsOwn) {
    OptimizeOrient::seedRandom(5);
    PlainRandom plain(5);
    EXPECT_EQ(nextRandom(), plain.next());
    std::thread([] {
        OptimizeOrient::seedRandom(77);
        for (int i = 0; i < 10; ++i) nextRandom();
    }).join();
    EXPECT_EQ(nextRandom(), plain.next());
}

TEST(RandomSource, NumbersHaveFifteenBits) {
    OptimizeOrient::seedRandom(123456789);
    PlainRandom plain(123456789);
    int lowest = 32767;
    int highest = 0;
    for (int i = 0; i < 200000; ++i) {
        const int number = nextRandom();
        ASSERT_EQ(number, plain.next());
        lowest = std::min(lowest, number);
        highest = std::max(highest, number);
    }
    EXPECT_EQ(lowest, 0);
    EXPECT_EQ(highest, 32767);
}

TEST(RandomSource, TheSameSeedGivesTheSameNumbersAndAnotherGivesOthers) {
    const auto firstNumbers = [](std::uint32_t seed) {
        OptimizeOrient::seedRandom(seed);
        std::array<int, 5> numbers{};
        for (int& number : numbers) number = nextRandom();
        return numbers;
    };
    EXPECT_EQ(firstNumbers(31), firstNumbers(31));
    EXPECT_NE(firstNumbers(31), firstNumbers(32));
}

TEST(RandomSource, ARunHoldsTheNextNumbersAndTheGeneratorGoesOnBehindIt) {
    for (const std::size_t count : {0u, 1u, 2u, 63u, 64u, 1000u, 100'003u}) {
        OptimizeOrient::seedRandom(17);
        PlainRandom plain(17);
        EXPECT_EQ(nextRandom(), plain.next());
        const RandomRun run(count);
        std::vector<int> expected(count);
        for (int& number : expected) number = plain.next();
        EXPECT_EQ(nextRandom(), plain.next()) << "after " << count;
        for (const std::size_t first : {std::size_t{0}, count / 3, count - count / 7, count}) {
            std::vector<std::uint16_t> numbers(count - first);
            run.read(first, numbers);
            EXPECT_TRUE(std::equal(numbers.begin(), numbers.end(),
                                   expected.begin() + static_cast<std::ptrdiff_t>(first)))
                << "from " << first << " of " << count;
        }
    }
}

TEST(RandomSource, FindingCandidatesGoesOnFromWhereTheNumbersStandAndNeverSeedsThem) {
    MeshKernel cube = makeBox({0, 0, 0}, {1, 1, 1}).kernel();
    OptimizeOrient::seedRandom(2024);
    PlainRandom plain(2024);
    const auto perCall = 12 * 30 * 2;
    initOrients(&cube);
    initOrients(&cube);
    for (int i = 0; i < 2 * perCall; ++i) plain.next();
    EXPECT_EQ(nextRandom(), plain.next());
}

TEST(RandomSource, TheWholeCallDrawsOnlyForItsCandidates) {
    MeshKernel mesh = makeSphere(5.0f, 500).kernel();
    const std::int32_t triangles = mesh.getMesh()->TriangleCount();
    OptimizeOrient::seedRandom(8);
    PlainRandom plain(8);
    UVector3<float> axis;
    float angle = 0.0f;
    OrientOptimizer::calculateOrients(&mesh, {}, axis, angle, nullptr, {});
    for (int i = 0; i < triangles * 2 * plainSamplesPerTriangle(triangles); ++i) plain.next();
    EXPECT_EQ(nextRandom(), plain.next());
}

}  // namespace
