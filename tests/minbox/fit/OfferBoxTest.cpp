#include "minbox/fit/OfferBox.h"

#include <gtest/gtest.h>

#include <limits>

#include "BoxTestSupport.h"

namespace {

const Vector kUp(0, 0, 1);

/// The corners of a box of 2 × 2 × 1, numbered as boxCorners() gives them, as hull vertices.
struct Slab {
    Slab() : impl(1) {
        impl.computePoints = std::make_unique<std::vector<double>>();
        for (const UPoint3<float>& p : boxCorners(2, 2, 1)) {
            for (int i = 0; i < 3; ++i) impl.computePoints->push_back(static_cast<double>(p[i]));
        }
    }

    int vertexAt(double x, double y, double z) const {
        for (int v = 0; v < hullVertexCount(impl); ++v) {
            if (hullPoint(impl, v) == Vector(x, y, z)) return v;
        }
        return -1;
    }

    /// Offers the box over an outline; counts how often it is made and measured again.
    void offerBoxOver(const Outline& outline) {
        Calipers calipers(impl);
        const auto makeBox = [&] {
            ++made;
            VolumeCandidate box;
            layOver(impl, calipers.minRect(), calipers, kUp, {0.0, height}, box);
            return box;
        };
        const auto key = [](const VolumeCandidate& box) { return box.volume; };
        const auto remeasure = [&](VolumeCandidate& box) {
            ++remeasured;
            box.volume = volumeOf(box);
        };
        offerOver(impl, kUp, outline, calipers, makeBox, key, remeasure, best);
    }

    MinBoundingBoxImpl impl;
    double height = 1.0;  ///< that the box is given
    VolumeCandidate best;
    int made = 0;
    int remeasured = 0;
};

TEST(OfferBox, TakesASoundBoxAsItIs) {
    Slab slab;
    slab.offerBoxOver({slab.vertexAt(0, 0, 0), slab.vertexAt(2, 0, 0), slab.vertexAt(2, 2, 0),
                       slab.vertexAt(0, 2, 0)});
    EXPECT_EQ(slab.best.volume, 4.0);
    EXPECT_EQ(slab.made, 1);
    EXPECT_EQ(slab.remeasured, 0);
}

TEST(OfferBox, LeavesASteepEdgeOutWhereItSpoilsTheBox) {
    Slab slab;
    // The calipers start on the closing edge, which runs straight down.
    slab.offerBoxOver({slab.vertexAt(0, 0, 0), slab.vertexAt(2, 0, 0), slab.vertexAt(2, 2, 0),
                       slab.vertexAt(0, 2, 0), slab.vertexAt(0, 0, 1)});
    EXPECT_EQ(slab.best.volume, 4.0);
    EXPECT_EQ(slab.made, 2);
}

TEST(OfferBox, MeasuresABoxThatMissesAVertexAgain) {
    Slab slab;
    slab.height = 0.5;
    slab.offerBoxOver({slab.vertexAt(0, 0, 0), slab.vertexAt(2, 0, 0), slab.vertexAt(2, 2, 0),
                       slab.vertexAt(0, 2, 0)});
    EXPECT_EQ(slab.remeasured, 1);
    EXPECT_EQ(slab.best.volume, 4.0);
}

TEST(OfferBox, KeepsTheBestOfEqualOnesAndOfThoseThatGrowWhenMeasuredAgain) {
    Slab slab;
    const Outline whole = {slab.vertexAt(0, 0, 0), slab.vertexAt(2, 0, 0), slab.vertexAt(2, 2, 0),
                           slab.vertexAt(0, 2, 0)};
    slab.offerBoxOver(whole);
    const VolumeCandidate first = slab.best;
    slab.offerBoxOver({whole[1], whole[2], whole[3], whole[0]});
    EXPECT_EQ(slab.best, first);
    slab.height = 0.5;
    slab.offerBoxOver(whole);
    EXPECT_EQ(slab.remeasured, 1);
    EXPECT_EQ(slab.best, first);
}

TEST(OfferBox, WithoutAnOutlineOrADirectionInItThereIsNone) {
    Slab slab;
    slab.offerBoxOver({});
    slab.offerBoxOver({slab.vertexAt(0, 0, 0), slab.vertexAt(2, 0, 0)});
    EXPECT_EQ(slab.made, 0);
    slab.offerBoxOver({slab.vertexAt(0, 0, 0), slab.vertexAt(0, 0, 1), slab.vertexAt(0, 0, 0)});
    EXPECT_EQ(slab.best.volume, slab.impl.unset);
}

TEST(OfferBox, ABoxWithoutAMeasureIsNone) {
    const Slab slab;
    VolumeCandidate box;
    box.volume = std::numeric_limits<double>::quiet_NaN();
    VolumeCandidate best;
    const auto key = [](const VolumeCandidate& b) { return b.volume; };
    EXPECT_FALSE(offer(slab.impl, box, best, key, [](VolumeCandidate&) {}));
    box.volume = 1.0;  // but no axes
    EXPECT_FALSE(offer(slab.impl, box, best, key, [](VolumeCandidate&) {}));
    EXPECT_EQ(best.volume, slab.impl.unset);
}

}  // namespace
