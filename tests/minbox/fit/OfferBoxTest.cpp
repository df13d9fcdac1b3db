#include "minbox/fit/OfferBox.h"

#include <gtest/gtest.h>

#include <limits>

#include "PreparedHull.h"

using namespace Tesk::minbox;

namespace {

const Vector kUp(0, 0, 1);

/// The corners of a box of 2 × 2 × 1, numbered as boxCorners() gives them, as hull vertices.
struct Slab {
    static HullPoints corners() {
        std::vector<double> coordinates;
        for (const UPoint3<float>& p : boxCorners(2, 2, 1)) {
            for (int i = 0; i < 3; ++i) coordinates.push_back(static_cast<double>(p[i]));
        }
        return HullPoints(coordinates, 1.0, startConstants());
    }

    int vertexAt(double x, double y, double z) const {
        for (int v = 0; v < points.count(); ++v) {
            if (points[v] == Vector(x, y, z)) return v;
        }
        return -1;
    }

    /// Offers the box over an outline; counts how often it is made and measured again.
    void offerBoxOver(const Outline& outline) {
        Calipers calipers(points);
        const auto makeBox = [&] {
            ++made;
            return VolumeCandidate{frameOver(calipers.minRect(), calipers, {0.0, height})};
        };
        const auto key = [](const VolumeCandidate& box) { return box.volume; };
        const auto remeasure = [&](VolumeCandidate& box) {
            ++remeasured;
            box.volume = volumeOf(box);
        };
        offerOver(kUp, outline, calipers, makeBox, key, remeasure, best);
    }

    HullPoints points = corners();
    double height = 1.0;  ///< that the box is given
    std::optional<VolumeCandidate> best;
    int made = 0;
    int remeasured = 0;
};

TEST(OfferBox, TakesASoundBoxAsItIs) {
    Slab slab;
    slab.offerBoxOver({slab.vertexAt(0, 0, 0), slab.vertexAt(2, 0, 0), slab.vertexAt(2, 2, 0),
                       slab.vertexAt(0, 2, 0)});
    EXPECT_EQ(slab.best.value().volume, 4.0);
    EXPECT_EQ(slab.made, 1);
    EXPECT_EQ(slab.remeasured, 0);
}

TEST(OfferBox, LeavesASteepEdgeOutWhereItSpoilsTheBox) {
    Slab slab;
    // The calipers start on the closing edge, which runs straight down.
    slab.offerBoxOver({slab.vertexAt(0, 0, 0), slab.vertexAt(2, 0, 0), slab.vertexAt(2, 2, 0),
                       slab.vertexAt(0, 2, 0), slab.vertexAt(0, 0, 1)});
    EXPECT_EQ(slab.best.value().volume, 4.0);
    EXPECT_EQ(slab.made, 2);
}

TEST(OfferBox, MeasuresABoxThatMissesAVertexAgain) {
    Slab slab;
    slab.height = 0.5;
    slab.offerBoxOver({slab.vertexAt(0, 0, 0), slab.vertexAt(2, 0, 0), slab.vertexAt(2, 2, 0),
                       slab.vertexAt(0, 2, 0)});
    EXPECT_EQ(slab.remeasured, 1);
    EXPECT_EQ(slab.best.value().volume, 4.0);
}

TEST(OfferBox, KeepsTheBestOfEqualOnesAndOfThoseThatGrowWhenMeasuredAgain) {
    Slab slab;
    const Outline whole = {slab.vertexAt(0, 0, 0), slab.vertexAt(2, 0, 0), slab.vertexAt(2, 2, 0),
                           slab.vertexAt(0, 2, 0)};
    slab.offerBoxOver(whole);
    const std::optional<VolumeCandidate> first = slab.best;
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
    EXPECT_FALSE(slab.best);
}

TEST(OfferBox, ABoxWithoutAMeasureIsNone) {
    const Slab slab;
    VolumeCandidate box;
    box.volume = std::numeric_limits<double>::quiet_NaN();
    std::optional<VolumeCandidate> best;
    const auto key = [](const VolumeCandidate& b) { return b.volume; };
    EXPECT_FALSE(offer(slab.points, box, best, key, [](VolumeCandidate&) {}));
    box.volume = 1.0;  // but no axes
    EXPECT_FALSE(offer(slab.points, box, best, key, [](VolumeCandidate&) {}));
    EXPECT_FALSE(best);
}

}  // namespace
