// The box around an axis against the least rectangle around the shadow, found by brute force: along
// the edges and the face normals of every hull, where the corners of the shadow coincide in pairs.
#include <gtest/gtest.h>

#include <iostream>
#include <limits>

#include "BoxTestSupport.h"
#include "checks/ShadowRectangle.h"
#include "plain/PlainAxisBox.h"
#include "shapes/CadShapes.h"
#include "shapes/SampleMeshes.h"
#include "shapes/Shapes.h"
#include "tools/TestSize.h"

namespace {

using Axis = UVector3<float>;

/// What all axes of a test came to.
struct Tally {
    int axes = 0;
    int byDoubles = 0;        ///< boxes over the shadow in double precision
    double worstRatio = 1.0;  ///< of a cross-section to the least, where that is not thin

    /// Says so, in the test's output and its report.
    ~Tally() {
        std::cout << axes << " axes, " << byDoubles << " boxes in double, worst ratio 1 + "
                  << worstRatio - 1.0 << '\n';
        testing::Test::RecordProperty("axes", axes);
        testing::Test::RecordProperty("worst_ratio", std::to_string(worstRatio));
    }
};

/// Along all edges and face normals of a hull, as a host forms them: in single precision. At most
/// so many, spread over the hull.
std::vector<Axis> axesOf(const gte::ConvexHull3& hull, std::size_t most) {
    const auto& vertices = hull.getVertices();
    const auto between = [&](int a, int b) {
        return vertices[static_cast<std::size_t>(b)] - vertices[static_cast<std::size_t>(a)];
    };
    std::vector<Axis> axes;
    for (const gte::HullEdge& edge : hull.getHullEdges()) axes.push_back(between(edge.a, edge.b));
    for (const auto& [a, b, c] : hull.getTriangles()) {
        const Axis normal = between(a, b) * between(a, c);
        axes.push_back(axes.size() % 2 == 0 ? normal : normal.GetNormal());
    }
    if (axes.size() <= most) return axes;
    std::vector<Axis> some;
    for (std::size_t i = 0; i < most; ++i) some.push_back(axes[i * axes.size() / most]);
    return some;
}

double crossSectionOf(const OrientedBox3& box) {
    return 4.0 * static_cast<double>(box.extent.x) * static_cast<double>(box.extent.y);
}

/// The box is one around the points, its third axis along the given one.
void expectFrame(const OrientedBox3& box, const Axis& axis) {
    const UVector3<double> unit = axis.As<double>().GetNormal();
    EXPECT_LT((box.axis[2].As<double>() - unit).GetLength(), 2e-7);
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(box.axis[i].As<double>().GetLength(), 1.0, 2e-7);
        EXPECT_NEAR(box.axis[i].As<double>() | box.axis[(i + 1) % 3].As<double>(), 0.0, 2e-7);
    }
}

void expectLeast(const OrientedBox3& box, const ShadowRectangle& least, Tally& tally) {
    // A kept box may be larger by one part in a million; the extents are rounded to float. Corners
    // are merged to within 1e-9 of the shadow's extent, which shows where the shadow is thin.
    const auto leastArea = static_cast<double>(least.area);
    const auto extent = static_cast<double>(least.extent);
    const double merging = 3e-9 * extent * extent;
    const double rounding = 1e-15 * static_cast<double>(least.depth) * extent;
    const double area = crossSectionOf(box);
    EXPECT_LE(area, leastArea * (1.0 + 1.3e-6) + merging + rounding);
    // A box may miss a vertex by 1e-9 of the hull's diagonal.
    EXPECT_GE(area, leastArea * (1.0 - 3e-7) -
                        5e-9 * extent * (extent + static_cast<double>(least.depth)));
    if (leastArea > 1e-2 * extent * extent) {
        tally.worstRatio = std::max(tally.worstRatio, area / leastArea);
    }
}

void expectHolds(const OrientedBox3& box, const Points& points, const ShadowRectangle& least) {
    const double size = static_cast<double>(least.extent + least.depth);
    const double away = box.center.As<double>().GetLength();
    EXPECT_LE(farthestOutside(box, points), 1e-6 * size + 2e-7 * away);
}

void expectLeastAround(const Points& points, const gte::ConvexHull3& hull, const Axis& axis,
                       Tally& tally) {
    SCOPED_TRACE(testing::Message() << "axis " << axis.x << " " << axis.y << " " << axis.z);
    MinBoundingBox calculator;
    const OrientedBox3 box =
        calculator.minBaseAreaBoxAroundAxis(countOf(points), points.data(), axis);
    if (!plainHasAxisPlane(axis)) {
        EXPECT_TRUE(isNoBox(box));
        return;
    }
    ++tally.axes;
    const ShadowRectangle least = leastShadowRectangle(hull, axis);
    expectFrame(box, axis);
    expectLeast(box, least, tally);
    expectHolds(box, points, least);
    const PlainHull plain(hull, countOf(points));
    const auto single = plainSingleAxisBox(hull, plain, axis);
    const PlainBoxRecord byDoubles = plainDoubleAxisBox(plain, axis);
    // The sound box of floats keeps its bits.
    if (single && single->area <= byDoubles.area * (1.0 + 1e-6)) {
        EXPECT_TRUE(sameBits(box, plainOrientedBox(*single)));
    } else {
        ++tally.byDoubles;
    }
}

/// @param most  axes of one hull
void expectLeastAroundAll(const Points& points, std::size_t most, Tally& tally) {
    const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
    if (hull.getVertices().size() < 2) return;
    for (const Axis& axis : axesOf(hull, most)) expectLeastAround(points, hull, axis, tally);
}

std::size_t mostAxes() {
    return testsAreSmall() ? 25 : 400;
}

/// Of a large mesh fewer: every call forms the hull anew.
std::size_t mostAxesOf(const Points& points) {
    const std::size_t affordable = 4'000'000 / std::max<std::size_t>(points.size(), 1);
    return std::min(mostAxes(), std::max<std::size_t>(affordable, testsAreSmall() ? 5 : 40));
}

Points turnedAndShifted(const Points& points, TestRandom& random) {
    Points moved = transformed(points, randomTurn(random));
    const float far = std::pow(10.0f, random.in(-2, 3));
    UVector3<float> by;
    for (int i = 0; i < 3; ++i) by[i] = random.in(-far, far);
    for (UPoint3<float>& p : moved) p = p + by;
    return moved;
}

TEST(AxisLeast, AlongEdgesAndNormalsOfShapes) {
    Tally tally;
    for (const NamedPoints& set : comparisonPoints()) {
        SCOPED_TRACE(set.name);
        expectLeastAroundAll(set.points, mostAxes(), tally);
    }
}

TEST(AxisLeast, AlongEdgesAndNormalsOfCadPartsTurnedAndShifted) {
    Tally tally;
    TestRandom random(61);
    const std::vector<Part> parts = {
        makeColumnWithArm(),   makePrism(),          makeBracket(30, 20, 4, 12),
        makeGear(11, 20, 5),   makeTable(),          makePlateWithHoles(2, 3, 10, 2, 8),
        makeRandomAssembly(1), makeRandomAssembly(2)};
    for (int i = 0; i < (testsAreSmall() ? 2 : 20) && !HasFailure(); ++i) {
        for (std::size_t k = 0; k < parts.size(); ++k) {
            SCOPED_TRACE(testing::Message() << "part " << k << ", pose " << i);
            expectLeastAroundAll(turnedAndShifted(parts[k].positions, random), mostAxes() / 4,
                                 tally);
        }
    }
}

TEST(AxisLeast, AlongEdgesAndNormalsOfNoisyParts) {
    Tally tally;
    TestRandom random(62);
    for (int i = 0; i < (testsAreSmall() ? 100 : 2000) && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        expectLeastAroundAll(noisyPart(random), mostAxes() / 4, tally);
    }
}

TEST(AxisLeast, AlongEdgesAndNormalsOfFlatPointsLinesAndNeedles) {
    Tally tally;
    TestRandom random(63);
    for (int i = 0; i < (testsAreSmall() ? 50 : 2000) && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        const int count = 2 + random.below(30);
        for (const auto make : {pointsInPlane, pointsOnLine, needle}) {
            const Points points = make(count, random);
            expectLeastAroundAll(points, mostAxes() / 8, tally);
            expectLeastAroundAll(turnedAndShifted(points, random), mostAxes() / 8, tally);
        }
    }
}

TEST(AxisLeast, AlongEdgesAndNormalsOfEverySampleMesh) {
    const std::vector<std::filesystem::path> files = sampleMeshes();
    if (files.empty()) GTEST_SKIP() << whyNoSampleMeshes();
    Tally tally;
    int read = 0;
    for (const auto& file : files) {
        SCOPED_TRACE(file.filename());
        const std::optional<Part> part = readSampleMesh(file);
        if (!part) continue;
        ++read;
        expectLeastAroundAll(part->positions, mostAxesOf(part->positions), tally);
    }
    if (read == 0) GTEST_SKIP() << "built without a reader for the sample meshes";
}

TEST(AxisLeast, AxesAndPartsOfAnySize) {
    float angle = 0.3f;
    for (const int exponent : {-140, -120, -60, -20, 0, 20, 60, 120}) {
        SCOPED_TRACE(testing::Message() << "part times 2^" << exponent);
        angle += 0.7f;
        Points points =
            transformed(boxCorners(2, 3, 4), UMatrix4<float>::CreateRotateMatrix(angle, {1, 2, 3}));
        const Axis edge = points[2] - points[0];
        const auto size = std::ldexp(1.0f, exponent);
        for (UPoint3<float>& p : points) p = {p.x * size, p.y * size, p.z * size};
        const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
        for (const int length : {-140, -126, -100, -60, 0, 60, 120, 125}) {
            const Axis axis = edge * std::ldexp(1.0f, length);
            MinBoundingBox calculator;
            const OrientedBox3 box =
                calculator.minBaseAreaBoxAroundAxis(countOf(points), points.data(), axis);
            ASSERT_TRUE(plainHasAxisPlane(axis));
            const ShadowRectangle least = leastShadowRectangle(hull, axis);
            expectFrame(box, axis);
            // Extents near the least float have few bits.
            const double step = std::numeric_limits<float>::denorm_min();
            EXPECT_NEAR(crossSectionOf(box) / static_cast<double>(least.area), 1.0,
                        1.3e-6 + 16 * step / static_cast<double>(size))
                << "axis times 2^" << length;
        }
    }
}

}  // namespace
