#include "TeskDataBasic/UBox3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using Box = UBox3<float>;
using Point = UPoint3<float>;

TEST(UBox3, HoldsEveryPointItWasExtendedBy) {
    Box box;
    box.Extend({3, -1, 5});
    box.Extend({-2, 4, 5});
    EXPECT_EQ(box.MinX(), -2.0f);
    EXPECT_EQ(box.MaxX(), 3.0f);
    EXPECT_EQ(box.MinY(), -1.0f);
    EXPECT_EQ(box.MaxY(), 4.0f);
    EXPECT_EQ(box.MinZ(), 5.0f);
    EXPECT_EQ(box.MaxZ(), 5.0f);
    EXPECT_EQ(box.Center(), Point(0.5f, 1.5f, 5.0f));
    EXPECT_EQ(box.Volume(), 0.0f);
}

TEST(UBox3, VolumeIsTheProductOfTheSides) {
    EXPECT_EQ(Box({1, 2, 3}, {3, 5, 7}).Volume(), 24.0f);
    EXPECT_EQ(Box({-1, -1, -1}, {1, 1, 1}).Volume(), 8.0f);
}

TEST(UBox3, TheBoxOfNoPointsIsThePointAtTheOrigin) {
    const Box box;
    EXPECT_EQ(box.MinX(), 0.0f);
    EXPECT_EQ(box.MaxX(), 0.0f);
    EXPECT_EQ(box.MinZ(), 0.0f);
    EXPECT_EQ(box.MaxZ(), 0.0f);
    EXPECT_EQ(box.Center(), Point());
    EXPECT_EQ(box.Volume(), 0.0f);
}

TEST(UBox3, ACoordinateThatIsNoNumberIsPassedOver) {
    const float nan = std::nanf("");
    Box box;
    box.Extend({nan, 1, 2});
    box.Extend({3, nan, 4});
    EXPECT_EQ(box.MinX(), 3.0f);
    EXPECT_EQ(box.MaxX(), 3.0f);
    EXPECT_EQ(box.MinY(), 1.0f);
    EXPECT_EQ(box.MaxY(), 1.0f);
    EXPECT_EQ(box.MinZ(), 2.0f);
    EXPECT_EQ(box.MaxZ(), 4.0f);
    Box none;
    none.Extend({nan, nan, nan});
    EXPECT_EQ(none.MinX(), 0.0f);
    EXPECT_EQ(none.MaxX(), 0.0f);
}

TEST(UBox3, InfiniteCoordinatesCount) {
    const float infinity = std::numeric_limits<float>::infinity();
    Box box;
    box.Extend({1, 1, 1});
    box.Extend({infinity, -infinity, 2});
    EXPECT_EQ(box.MaxX(), infinity);
    EXPECT_EQ(box.MinY(), -infinity);
    EXPECT_EQ(box.MaxZ(), 2.0f);
}

TEST(UBox3, ExtremeFiniteCoordinatesCount) {
    const float far = std::numeric_limits<float>::max();
    Box box;
    box.Extend({far, -far, 0});
    EXPECT_EQ(box.MinX(), far);
    EXPECT_EQ(box.MaxX(), far);
    EXPECT_EQ(box.MinY(), -far);
    EXPECT_EQ(box.MaxY(), -far);
}

TEST(UBox3, ABoundOfZeroIsPositiveWhateverTheOrderOfThePoints) {
    for (const float first : {0.0f, -0.0f}) {
        Box box;
        box.Extend({first, first, first});
        box.Extend({-first, -first, -first});
        EXPECT_FALSE(std::signbit(box.MinX()));
        EXPECT_FALSE(std::signbit(box.MaxX()));
        EXPECT_FALSE(std::signbit(box.MinZ()));
    }
}

}  // namespace
