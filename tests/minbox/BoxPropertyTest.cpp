#include <gtest/gtest.h>

#include "BoxTestSupport.h"
#include "TeskSDKCommonTools/ConvexHull3.h"
#include "tools/TestSize.h"

namespace {

double diagonalOf(const Points& points) {
    UVector3<double> low(1e300, 1e300, 1e300);
    UVector3<double> high(-1e300, -1e300, -1e300);
    for (const UPoint3<float>& p : points) {
        for (int i = 0; i < 3; ++i) {
            low[i] = std::min(low[i], static_cast<double>(p[i]));
            high[i] = std::max(high[i], static_cast<double>(p[i]));
        }
    }
    return (high - low).GetLength();
}

/// What any box around points must be.
void expectBoxAround(const Points& points, const OrientedBox3& box, const std::string& name) {
    const double diagonal = diagonalOf(points);
    // Far from the origin the centre, being of floats, is the coarser of the two.
    const double rounding = 1e-7 * box.center.As<double>().GetLength();
    EXPECT_LE(farthestOutside(box, points), std::max(1e-6 * diagonal, rounding))
        << name << " misses a point";
    for (int i = 0; i < 3; ++i) {
        const auto axis = box.axis[i].As<double>();
        EXPECT_NEAR(axis.GetLength(), 1.0, 1e-5) << name;
        EXPECT_NEAR(axis | box.axis[(i + 1) % 3].As<double>(), 0.0, 1e-5) << name;
        for (const double side : {-1.0, 1.0}) {
            double gap = 1e300;
            for (const UPoint3<float>& p : points) {
                const auto d = (p - UPoint3<float>()).As<double>() - box.center.As<double>();
                gap = std::min(gap, static_cast<double>(box.extent[i]) - side * (d | axis));
            }
            EXPECT_LE(std::fabs(gap), std::max(1e-5 * diagonal, rounding))
                << name << ": a side touches nothing";
        }
    }
}

std::vector<OrientedBox3> allBoxes(const Points& points) {
    std::vector<OrientedBox3> boxes;
    for (const Operation& operation : allOperations()) {
        MinBoundingBox calculator;
        boxes.push_back(operation.run(calculator, points));
    }
    OrientedBox3 principal = MinBoundingBox::generateOBB(points.data(), countOf(points));
    principal.extent = principal.extent * 0.5f;
    boxes.push_back(principal);
    return boxes;
}

void expectAllBoxesAround(const Points& points) {
    const std::vector<std::string> names = {"volume", "base area", "height", "axis", "principal"};
    const std::vector<OrientedBox3> boxes = allBoxes(points);
    const OrientedBox3& least = boxes[0];
    const float thickness = std::min({least.extent.x, least.extent.y, least.extent.z});
    const bool hasVolume = gte::ConvexHull3(points.data(), countOf(points), 3).getDimension() == 3;
    for (std::size_t k = 0; k < boxes.size(); ++k) {
        expectBoxAround(points, boxes[k], names[k]);
        // The principal box's extents are differences of projections in single precision.
        const double resolution = names[k] == "principal" ? 1e-6 * diagonalOf(points) : 0.0;
        if (hasVolume && static_cast<double>(thickness) >= resolution) {
            EXPECT_GT(volumeOf(boxes[k]), 0.0) << names[k];
        }
    }
}

TEST(BoxProperty, EveryOperationsBoxHoldsTheNoisyPart) {
    TestRandom random(31);
    for (int i = 0; i < (testsAreSmall() ? 500 : 20000) && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        expectAllBoxesAround(noisyPart(random));
    }
}

TEST(BoxProperty, EveryOperationsBoxHoldsAPartTurnedNearlySquare) {
    TestRandom random(35);
    for (int i = 0; i < (testsAreSmall() ? 300 : 5000) && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        const Points points = transformed(noisyPart(random), nearlyRightTurn(random));
        expectAllBoxesAround(transformed(points, nearlyRightTurn(random)));
    }
}

TEST(BoxProperty, EveryOperationsBoxHoldsFlatPointsLinesAndNeedles) {
    TestRandom random(36);
    for (int i = 0; i < (testsAreSmall() ? 200 : 3000) && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        const int count = 2 + random.below(30);
        for (const auto make : {pointsInPlane, pointsOnLine, needle}) {
            const Points points = make(count, random);
            if (diagonalOf(points) == 0.0) continue;
            expectAllBoxesAround(points);
            expectAllBoxesAround(transformed(points, randomTurn(random)));
        }
    }
}

TEST(BoxProperty, NoOtherOperationFindsLessVolume) {
    TestRandom random(32);
    for (int i = 0; i < (testsAreSmall() ? 100 : 1000); ++i) {
        const std::vector<OrientedBox3> boxes = allBoxes(noisyPart(random));
        for (const OrientedBox3& box : boxes) {
            // The axis box and the principal one need not be flush with a face, so they may win.
            if (&box == &boxes[3] || &box == &boxes[4]) continue;
            EXPECT_LE(volumeOf(boxes[0]), volumeOf(box) * (1.0 + 1e-5));
        }
    }
}

/// The least cross-section of the boxes with a side along a hull edge, seen along an axis.
double leastCrossSection(const Points& points, const UVector3<float>& axis) {
    const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
    const auto n = axis.As<double>().GetNormal();
    std::vector<UVector3<double>> corners;
    for (const UPoint3<float>& p : hull.getVertices()) {
        corners.push_back((p - UPoint3<float>()).As<double>());
    }
    const auto width = [&](const UVector3<double>& along) {
        double low = 1e300;
        double high = -1e300;
        for (const auto& p : corners) {
            low = std::min(low, p | along);
            high = std::max(high, p | along);
        }
        return high - low;
    };
    double least = 1e300;
    for (const gte::HullEdge& edge : hull.getHullEdges()) {
        const auto d =
            corners[static_cast<std::size_t>(edge.b)] - corners[static_cast<std::size_t>(edge.a)];
        const auto along = d - n * (d | n);
        if (along.GetLength() < 1e-4 * d.GetLength()) continue;
        const auto u = along.GetNormal();
        least = std::min(least, width(u) * width(n * u));
    }
    return least;
}

void expectLeastAround(const Points& points, const UVector3<float>& axis) {
    MinBoundingBox calculator;
    const OrientedBox3 box =
        calculator.minBaseAreaBoxAroundAxis(countOf(points), points.data(), axis);
    expectBoxAround(points, box, "axis");
    EXPECT_NEAR(std::fabs(box.axis[2].As<double>() | axis.As<double>().GetNormal()), 1.0, 1e-6);
    const double area = 4.0 * static_cast<double>(box.extent.x) * static_cast<double>(box.extent.y);
    const double least = leastCrossSection(points, axis);
    EXPECT_NEAR(area, least, 1e-6 * least + 1e-9) << axis.x << " " << axis.y << " " << axis.z;
}

TEST(AxisBoxProperty, TheCrossSectionIsTheLeastOverAllHullEdges) {
    TestRandom random(33);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        const Points points = i % 2 == 0 ? pointsInBall(10 + random.below(100), random)
                                         : transformed(bracketCorners(random), randomTurn(random));
        const float scale = random.in(0.1f, 10.0f);
        const UPoint3<float> p = pointsOnSphere(1, random)[0];
        expectLeastAround(points, UVector3<float>(p.x, p.y, p.z) * scale);
    }
}

TEST(AxisBoxProperty, TheCrossSectionIsTheLeastAlongTheCoordinateAxes) {
    TestRandom random(34);
    for (int i = 0; i < 50; ++i) {
        const Points points = transformed(bracketCorners(random), randomTurn(random));
        for (const UVector3<float>& axis :
             {UVector3<float>(1, 0, 0), UVector3<float>(-1, 0, 0), UVector3<float>(0, 1, 0),
              UVector3<float>(0, -1, 0), UVector3<float>(0, 0, 1)}) {
            expectLeastAround(points, axis);
        }
        MinBoundingBox calculator;
        EXPECT_TRUE(isNoBox(
            calculator.minBaseAreaBoxAroundAxis(countOf(points), points.data(), {0, 0, -1})));
    }
}

}  // namespace
