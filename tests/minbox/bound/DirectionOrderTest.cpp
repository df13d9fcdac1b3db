#include "minbox/bound/DirectionOrder.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "shapes/BoxShapes.h"

using namespace Tesk::minbox;

namespace {

TEST(DirectionOrder, KeepsAllAndBringsNeighboursTogether) {
    TestRandom random(6);
    std::vector<Vector> directions;
    std::vector<int> numbers;
    for (int i = 0; i < 2000; ++i) {
        const UPoint3<float> p = pointsOnSphere(1, random)[0];
        directions.emplace_back(7.0 * p.x, 7.0 * p.y, 7.0 * p.z);
        numbers.push_back(i);
    }
    const auto way = [&] {
        double sum = 0.0;
        for (std::size_t i = 1; i < numbers.size(); ++i) {
            const Vector step = directions[static_cast<std::size_t>(numbers[i])] -
                                directions[static_cast<std::size_t>(numbers[i - 1])];
            sum += step.GetLength();
        }
        return sum;
    };
    const double before = way();
    orderByDirection(directions, numbers);
    EXPECT_LT(way(), before / 8);
    EXPECT_EQ(std::set<int>(numbers.begin(), numbers.end()).size(), 2000u);
}

}  // namespace
