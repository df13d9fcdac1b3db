#include <gtest/gtest.h>

#include <limits>

#include "CompareEvaluations.h"
#include "ReferenceShapes.h"
#include "plain/PlainCandidates.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"
#include "tools/TestRandom.h"
#include "tools/TestSize.h"

using namespace Tesk::orient;

namespace {

/// A part's candidates, and directions that are no candidates: any, of any length.
std::vector<UVector3<float>> directionsFor(MeshKernel& mesh) {
    PlainRandom random(1);
    std::vector<UVector3<float>> directions = plainCandidates(mesh, random);
    TestRandom others(99);
    for (int i = 0; i < 6; ++i) {
        const float x = others.in(-2.0f, 2.0f);
        const float y = others.in(-2.0f, 2.0f);
        directions.push_back({x, y, others.in(-2.0f, 2.0f)});
    }
    directions.push_back({0.0f, 0.0f, -2.0f});
    directions.push_back({0.0f, 1e-5f, 1.0f});
    directions.push_back({-1e-5f, 0.0f, -1.0f});
    if (!testsAreSmall()) return directions;
    std::vector<UVector3<float>> few;
    for (std::size_t i = 0; i < directions.size(); i += 7) few.push_back(directions[i]);
    return few;
}

class EvaluateOrientOnShapes : public testing::TestWithParam<NamedPart> {};

TEST_P(EvaluateOrientOnShapes, AgreesWithThePlainVersionInEveryPlacement) {
    for (const Placement& placement : placements()) {
        SCOPED_TRACE(placement.name);
        MeshKernel mesh = GetParam().part.kernel(placement.matrix);
        expectSameAsPlain(mesh, directionsFor(mesh), {});
    }
}

TEST_P(EvaluateOrientOnShapes, AgreesWithThePlainVersionAtEveryBaseHeight) {
    MeshKernel mesh = GetParam().part.kernel();
    const std::vector<UVector3<float>> directions = directionsFor(mesh);
    for (const float baseHeight : {-2.0f, -1.0f, -0.5f, 5.0f}) {
        expectSameAsPlain(mesh, directions, {.baseHeight = baseHeight});
    }
    expectSameAsPlain(mesh, directions, {.computeSupport = false, .baseHeight = 5.0f});
    expectSameAsPlain(mesh, directions, {.computeSupport = false, .baseHeight = -1.0f});
}

TEST_P(EvaluateOrientOnShapes, AgreesWithThePlainVersionAtOtherOverhangAngles) {
    MeshKernel mesh = GetParam().part.kernel();
    const std::vector<UVector3<float>> directions = directionsFor(mesh);
    for (const float angle : {0.0f, 60.0f, 135.0f}) {
        expectSameAsPlain(mesh, directions, {.overhangAngle = angle});
    }
}

TEST_P(EvaluateOrientOnShapes, AgreesWithThePlainVersionThatTriesEveryTriangleAtEveryPoint) {
    MeshKernel mesh = GetParam().part.kernel(placements().back().matrix);
    expectSameAsPlain(mesh, directionsFor(mesh), {.search = PlainSearch::kEveryTriangle});
}

TEST_P(EvaluateOrientOnShapes, AgreesWithThePlainVersionAfterVerticesWereDeleted) {
    const Part part = GetParam().part.withUnusedVertices(5);
    MeshKernel mesh = part.kernel();
    UMesh<float>& triangles = *mesh.getMesh();
    for (std::int32_t i = 0; i < triangles.VertexCount(); i += 3) triangles.Vertex(i)->SetD(true);
    expectSameAsPlain(mesh, directionsFor(mesh), {.baseHeight = -1.0f});
    expectSameAsPlain(mesh, directionsFor(mesh), {});
}

INSTANTIATE_TEST_SUITE_P(Reference, EvaluateOrientOnShapes, testing::ValuesIn(referenceShapes()),
                         [](const auto& shape) { return shape.param.name; });

TEST(EvaluateOrient, AgreesWithThePlainVersionOnBiggerMeshesInEveryTriangleAtEveryPoint) {
    const int size = testsAreSmall() ? 400 : 1200;
    for (const Part& part :
         {makeSphere(20.0f, size), makeSoup(size, 15.0f, 77), makeWavySheet(size / 100, 30.0f)}) {
        MeshKernel mesh = part.kernel();
        expectSameAsPlain(mesh, directionsFor(mesh), {.search = PlainSearch::kEveryTriangle});
    }
}

TEST(EvaluateOrient, AgreesWithThePlainVersionWhereHitsPileUp) {
    // Millions of samples lie in the triangles' rectangles: the grid is measured in pieces.
    MeshKernel mesh = makeSoup(9000, 15.0f, 78).kernel();
    expectSameAsPlain(mesh, {{0, 0, 1}, {1, 2, 3}}, {});
}

TEST(EvaluateOrient, AgreesWithThePlainVersionOnGridsOfManyCells) {
    // Of two bars on edge the columns are too many for codes, and of the second the cells for one
    // piece.
    for (const float length : {3000.0f, 8000.0f}) {
        MeshKernel mesh = makeBox({0, 0, 0}, {length, 1, 2}).kernel();
        expectSameAsPlain(mesh, {{0, 0, 1}, {0, 1, 0}, {0, 1, 1}}, {});
    }
}

TEST(EvaluateOrient, AgreesWithThePlainVersionOnManyRandomAssemblies) {
    const std::uint64_t last = testsAreSmall() ? 104 : 140;
    for (std::uint64_t seed = 100; seed < last; ++seed) {
        SCOPED_TRACE(seed);
        const Part part = makeRandomAssembly(seed);
        MeshKernel mesh = part.kernel(placements()[seed % placements().size()].matrix);
        const float baseHeight = seed % 3 == 0 ? -1.0f : 0.5f * static_cast<float>(seed % 5);
        expectSameAsPlain(mesh, directionsFor(mesh), {.baseHeight = baseHeight});
    }
}

TEST(EvaluateOrient, AgreesWithThePlainVersionWhereVerticesAreNotFinite) {
    const float kInfinity = std::numeric_limits<float>::infinity();
    const float kNan = std::numeric_limits<float>::quiet_NaN();
    for (const float bad : {kNan, kInfinity, -kInfinity, 3e38f}) {
        for (const std::size_t every : {std::size_t{1000}, std::size_t{9}, std::size_t{1}}) {
            for (int axis = 0; axis < 3; ++axis) {
                Part part = makeTouchingSolids();
                for (std::size_t i = 0; i < part.positions.size(); i += every) {
                    part.positions[i][axis] = bad;
                }
                MeshKernel mesh = part.kernel();
                expectSameAsPlain(mesh, directionsFor(mesh), {});
                expectSameAsPlain(mesh, directionsFor(mesh), {.baseHeight = -1.0f});
            }
        }
    }
}

TEST(EvaluateOrient, AgreesWithThePlainVersionFarFromTheOriginAndAtEverySize) {
    const Part gear = makeRandomAssembly(8);
    for (const float offset : {1e3f, 3e4f, 1e5f, 5e5f, 2.2e6f, 1e9f}) {
        MeshKernel mesh = gear.moved(offset, -offset, 0.5f * offset).kernel();
        expectSameAsPlain(mesh, directionsFor(mesh), {});
    }
    for (const float size : {1e-30f, 1e-6f, 1e-3f, 1e3f, 1e5f, 1e6f, 3e7f, 1e15f, 1e30f}) {
        MeshKernel mesh = gear.scaled(size, size, size).kernel();
        expectSameAsPlain(mesh, directionsFor(mesh), {});
        expectSameAsPlain(mesh, directionsFor(mesh), {.baseHeight = -1.0f});
    }
}

TEST(EvaluateOrient, AgreesWithThePlainVersionOnThinParts) {
    const float longest = testsAreSmall() ? 400.0f : 4000.0f;
    for (const float length : {100.0f, longest}) {
        const Part bar = makeBox({0, 0, 0}, {length, 0.1f, 0.1f});
        MeshKernel mesh = bar.kernel();
        expectSameAsPlain(mesh, directionsFor(mesh), {});
        MeshKernel turned =
            bar.kernel(UMatrix4<float>::CreateRotateMatrix(0.3f, {0.1f, 1.0f, 0.2f}));
        expectSameAsPlain(turned, directionsFor(turned), {});
    }
}

TEST(EvaluateOrient, AgreesWithThePlainVersionOnEmptyMeshes) {
    MeshKernel nothing;
    expectSameAsPlain(nothing, directionsFor(nothing), {});
    MeshKernel points = Part().withUnusedVertices(4).kernel();
    expectSameAsPlain(points, directionsFor(points), {});
    MeshKernel flat = Part().withDegenerateTriangles().kernel();
    expectSameAsPlain(flat, directionsFor(flat), {});
}

}  // namespace
