#include "placement/BoxPlacement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "MinBoundingBox.h"
#include "OrientOptimizer.h"
#include "TeskDebug/Exception.h"
#include "shapes/BoxShapes.h"
#include "shapes/Part.h"
#include "shapes/Shapes.h"

using Tesk::placement::placeByMinBox;

namespace {

using Matrix = UMatrix4<float>;

Matrix placementOf(MeshKernel& mesh) {
    Matrix matrix;
    OrientOptimizer::calculateOrients_minBoundingBox(&mesh, matrix, nullptr);
    return matrix;
}

/// A mesh of points; no triangles are needed.
MeshKernel meshOf(const Points& points) {
    return MeshKernel(points, {});
}

double determinant(const Matrix& m) {
    const auto row = [&](int i) {
        return UVector3<float>(m.at(i, 0), m.at(i, 1), m.at(i, 2)).As<double>();
    };
    return (row(0) * row(1)) | row(2);
}

void expectRigid(const Matrix& m) {
    EXPECT_NEAR(determinant(m), 1.0, 1e-5);
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            double dot = 0.0;
            for (int k = 0; k < 3; ++k) {
                dot += static_cast<double>(m.at(i, k)) * static_cast<double>(m.at(j, k));
            }
            EXPECT_NEAR(dot, i == j ? 1.0 : 0.0, 1e-5);
        }
    }
    EXPECT_EQ(m.at(3, 3), 1.0f);
}

UBox3<float> boxOf(const Points& points) {
    UBox3<float> box;
    for (const UPoint3<float>& p : points) box.Extend(p);
    return box;
}

std::array<float, 3> sizeOf(const UBox3<float>& box) {
    return {box.MaxX() - box.MinX(), box.MaxY() - box.MinY(), box.MaxZ() - box.MinZ()};
}

/// A quarter turn about a coordinate axis, without rounding.
Matrix rightAngleTurn(int axis) {
    Matrix turn;
    const int i = (axis + 1) % 3;
    const int j = (axis + 2) % 3;
    turn.at(i, i) = 0.0f;
    turn.at(j, j) = 0.0f;
    turn.at(i, j) = 1.0f;
    turn.at(j, i) = -1.0f;
    return turn;
}

TEST(BoxPlacement, APartThatLiesFlatStaysExactlyWhereItIs) {
    MeshKernel mesh =
        meshOf(transformed(boxCorners(4, 3, 2), Matrix::CreateTransfMatrix({7, 8, 9})));
    const Matrix matrix = placementOf(mesh);
    expectRigid(matrix);
    // Its axes may point the other way, so it may be turned by half a circle.
    const Points placed = transformed(
        transformed(boxCorners(4, 3, 2), Matrix::CreateTransfMatrix({7, 8, 9})), matrix);
    EXPECT_EQ(sizeOf(boxOf(placed)), (std::array{4.0f, 3.0f, 2.0f}));
    EXPECT_EQ(boxOf(placed).Center(), UPoint3<float>(9, 9.5f, 10));
}

/// The box's axes from the longest side to the shortest; of equal sides the later counts as longer.
std::array<UVector3<float>, 3> axesFromLongToShort(const OrientedBox3& box) {
    std::array<int, 3> order = {2, 1, 0};
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return box.extent[a] > box.extent[b]; });
    return {box.axis[order[0]], box.axis[order[1]], box.axis[order[2]]};
}

OrientedBox3 leastBox(const Points& points) {
    MinBoundingBox calculator;
    return calculator(static_cast<int>(points.size()), points.data());
}

TEST(BoxPlacement, WhereTheAxesAgreeExactlyTheMatrixIsExactlyTheIdentity) {
    // Parts in many positions: some have their box's axes along X, Y and Z, the right way round.
    TestRandom random(12);
    int aligned = 0;
    for (int i = 0; i < 400; ++i) {
        Points points = wedgeCorners();
        for (int turns = random.below(5); turns >= 0; --turns) {
            points = transformed(points, rightAngleTurn(random.below(3)));
        }
        for (UPoint3<float>& p : points) p = {p.x * 4.0f, p.y * 2.0f, p.z + 5.0f};
        const auto [l, m, s] = axesFromLongToShort(leastBox(points));
        const bool isAligned = l == UVector3<float>(1, 0, 0) && m == UVector3<float>(0, 1, 0) &&
                               s == UVector3<float>(0, 0, 1);
        if (!isAligned) continue;
        ++aligned;
        MeshKernel mesh = meshOf(points);
        const Matrix matrix = placementOf(mesh);
        for (int k = 0; k < 16; ++k) {
            EXPECT_EQ(matrix.at(k / 4, k % 4), k % 5 == 0 ? 1.0f : 0.0f);
        }
    }
    EXPECT_GT(aligned, 0);
}

TEST(BoxPlacement, OnlyTheLongestSidesAxisIsEverReversed) {
    int reversed = 0;
    for (const NamedPoints& set : comparisonPoints()) {
        const auto [l, m, s] = axesFromLongToShort(leastBox(set.points));
        MeshKernel mesh = meshOf(set.points);
        const Matrix matrix = placementOf(mesh);
        const auto column = [&](int k) {
            return UVector3<float>(matrix.at(0, k), matrix.at(1, k), matrix.at(2, k));
        };
        EXPECT_EQ(column(1), m) << set.name;
        EXPECT_EQ(column(2), s) << set.name;
        if (column(0) == l) continue;
        EXPECT_EQ(column(0), UVector3<float>(0, 0, 0) - l) << set.name;
        ++reversed;
    }
    EXPECT_GT(reversed, 0);
}

TEST(BoxPlacement, LaysAnyTurnedBoxFlatWithItsCentreFixed) {
    TestRandom random(3);
    for (int i = 0; i < 100; ++i) {
        const Points points = transformed(boxCorners(30, 20, 10), randomTurn(random));
        MeshKernel mesh = meshOf(points);
        const Matrix matrix = placementOf(mesh);
        expectRigid(matrix);
        const auto [x, y, z] = sizeOf(boxOf(transformed(points, matrix)));
        EXPECT_NEAR(x, 30.0f, 1e-4f);
        EXPECT_NEAR(y, 20.0f, 1e-4f);
        EXPECT_NEAR(z, 10.0f, 1e-4f);
        const UPoint3<float> before = mesh.GetBox().Center();
        const UVector3<float> moved = before * matrix - before;
        EXPECT_LT(moved.GetLength(), 1e-5f);
    }
}

TEST(BoxPlacement, TheCentreIsThatOfTheMeshsBoxNotOfTheTurnedOne) {
    // A wedge: the two boxes have different centres.
    const Points points = transformed(wedgeCorners(), Matrix::CreateRotateMatrix(0.7f, {1, 2, 3}));
    MeshKernel mesh = meshOf(points);
    const UPoint3<float> center = mesh.GetBox().Center();
    EXPECT_LT((center * placementOf(mesh) - center).GetLength(), 1e-5f);
}

TEST(BoxPlacement, SidesGoFromLongToShortForEveryShape) {
    for (const NamedPoints& set : comparisonPoints()) {
        MeshKernel mesh = meshOf(set.points);
        const Matrix matrix = placementOf(mesh);
        expectRigid(matrix);
        const auto [x, y, z] = sizeOf(boxOf(transformed(set.points, matrix)));
        EXPECT_GE(x, y * (1.0f - 1e-5f)) << set.name;
        EXPECT_GE(y, z * (1.0f - 1e-5f) - 1e-5f) << set.name;
    }
}

TEST(BoxPlacement, StandingPutsTheLongestSideUpright) {
    TestRandom random(5);
    for (int i = 0; i < 20; ++i) {
        const Points points = transformed(boxCorners(30, 20, 10), randomTurn(random));
        MeshKernel mesh = meshOf(points);
        Matrix matrix;
        placeByMinBox(&mesh, matrix, nullptr, /*layFlat=*/false);
        expectRigid(matrix);
        const auto [x, y, z] = sizeOf(boxOf(transformed(points, matrix)));
        EXPECT_NEAR(x, 10.0f, 1e-4f);
        EXPECT_NEAR(y, 20.0f, 1e-4f);
        EXPECT_NEAR(z, 30.0f, 1e-4f);
    }
}

TEST(BoxPlacement, TheMeshsMatrixComesFirstAndIsNotIncluded) {
    const Points points = boxCorners(10, 30, 20);
    const Matrix turn = Matrix::CreateRotateMatrix(0.4f, {1, 1, 0});
    const Matrix place = turn * Matrix::CreateTransfMatrix({100, -50, 3});
    Part part;
    part.positions = points;
    MeshKernel mesh = part.kernel(place);
    const Matrix matrix = placementOf(mesh);
    const auto [x, y, z] = sizeOf(boxOf(transformed(transformed(points, place), matrix)));
    EXPECT_NEAR(x, 30.0f, 1e-3f);
    EXPECT_NEAR(y, 20.0f, 1e-3f);
    EXPECT_NEAR(z, 10.0f, 1e-3f);
}

TEST(BoxPlacement, DeletedVerticesTakePart) {
    Points points = boxCorners(10, 8, 6);
    points.emplace_back(50.0f, 0.0f, 0.0f);
    MeshKernel mesh = meshOf(points);
    const Matrix all = placementOf(mesh);
    mesh.getMesh()->Vertex(8)->SetD(true);
    Matrix matrix;
    OrientOptimizer::calculateOrients_minBoundingBox(&mesh, matrix, nullptr);
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) EXPECT_EQ(matrix.at(i, j), all.at(i, j));
    }
}

TEST(BoxPlacement, OfTwoEqualSidesTheOneOfTheLowerAxisCountsAsSmaller) {
    // A plate 10 × 10 × 2: the box's axes as the search gives them decide which side goes along X.
    const Points plate =
        transformed(boxCorners(10, 10, 2), Matrix::CreateRotateMatrix(0.5f, {1, 0, 0}));
    MinBoundingBox calculator;
    const OrientedBox3 box = calculator(static_cast<int>(plate.size()), plate.data());
    MeshKernel mesh = meshOf(plate);
    const Matrix matrix = placementOf(mesh);
    int large = 0;
    for (int i = 1; i < 3; ++i) {
        if (box.extent[i] >= box.extent[large]) large = i;
    }
    const float along = matrix.at(0, 0) * box.axis[large].x + matrix.at(1, 0) * box.axis[large].y +
                        matrix.at(2, 0) * box.axis[large].z;
    EXPECT_NEAR(std::fabs(along), 1.0f, 1e-6f);
}

TEST(BoxPlacement, AnAbortLeavesTheMatrixUntouched) {
    MeshKernel mesh = meshOf(boxCorners(3, 2, 1));
    for (const int at : {3, 20, 40}) {
        Matrix matrix = Matrix::CreateTransfMatrix({1, 2, 3});
        try {
            OrientOptimizer::calculateOrients_minBoundingBox(&mesh, matrix, [&](int percent) {
                if (percent == at) throw Tesk::AbortException("enough");
            });
            FAIL() << "expected an abort at " << at;
        } catch (const Tesk::AbortException& exception) {
            EXPECT_STREQ(exception.what(), "Aborting...");
        }
        EXPECT_EQ(matrix.at(3, 0), 1.0f);
        EXPECT_EQ(matrix.at(0, 0), 1.0f);
    }
}

TEST(BoxPlacement, ReportsOnTheCallingThread) {
    MeshKernel mesh = meshOf(boxCorners(3, 2, 1));
    Matrix matrix;
    std::vector<int> reports;
    OrientOptimizer::calculateOrients_minBoundingBox(
        &mesh, matrix, [&](int percent) { reports.push_back(percent); });
    EXPECT_EQ(reports, (std::vector<int>{3, 6, 10, 13, 16, 20, 23, 26, 30, 33, 36, 40}));
}

TEST(BoxPlacement, OfDegenerateMeshesIsRigid) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    const std::vector<Points> sets = {{{1, 2, 3}},
                                      {{1, 2, 3}, {1, 2, 3}},
                                      {{1, 2, 3}, {4, 6, 3}},
                                      {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}},
                                      {{0, 0, 0}, {1, 0, 1}, {0, 1, 1}},
                                      {{0, 0, 0}, {5, 0, 5}, {0, 3, 0}, {5, 3, 5}},
                                      {{0, 0, 0}, {nan, 0, 5}, {0, 3, 0}, {5, 3, 5}},
                                      {{1e30f, 0, 0}, {0, 1e30f, 0}, {0, 0, 1e30f}, {0, 0, 0}},
                                      {{1e-30f, 0, 0}, {0, 1e-30f, 0}, {0, 0, 1e-30f}, {0, 0, 0}}};
    for (const Points& points : sets) {
        MeshKernel mesh = meshOf(points);
        expectRigid(placementOf(mesh));
    }
    for (const Points& points : {Points{}, Points{{nan, 1, 2}}, Points{{1, infinity, 2}}}) {
        MeshKernel mesh = meshOf(points);
        const Matrix matrix = placementOf(mesh);
        for (int i = 0; i < 4; ++i) {
            for (int j = 0; j < 4; ++j) EXPECT_EQ(matrix.at(i, j), i == j ? 1.0f : 0.0f);
        }
    }
}

}  // namespace
