// Calls that must come to an end. A test's time limit is what fails where one does not.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "CompareEvaluations.h"
#include "CompareRecords.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"
#include "tools/TestSize.h"

using namespace Tesk::orient;

namespace {

/// Ranks a part with everything switched on and expects a whole result.
CallResult ranked(const Part& part) {
    MeshKernel mesh = part.kernel();
    const CallResult result = calculated(mesh, {.supportAreaWeight = 1, .supportVolumeWeight = 1});
    EXPECT_EQ(result.orientations.size(), 12u);
    return result;
}

Part tinyAt(float offset) {
    return makeBox({offset, offset, offset}, {offset + 1.0f, offset + 1.0f, offset + 1.0f});
}

TEST(Hang, APartOfSizeOneFarFromTheOriginEnds) {
    for (const float offset : {2.2e6f, -2.2e6f, 1.6777216e7f, 1e9f, -1e9f, 1e20f, 3e38f}) {
        ranked(tinyAt(offset));
    }
}

TEST(Hang, APartPlacedFarFromTheOriginEnds) {
    for (const float offset : {2.2e6f, 1e9f, 1e30f}) {
        MeshKernel mesh = makeTable().kernel(
            UMatrix4<float>::CreateTransfMatrix({offset, -offset, 0.5f * offset}));
        EXPECT_EQ(calculated(mesh, {}).orientations.size(), 12u);
    }
}

TEST(Hang, ABoxOfThirtyMillionEnds) {
    ranked(makeBox({0, 0, 0}, {3e7f, 3e7f, 3e7f}));
    ranked(makeBox({-3e7f, -3e7f, -3e7f}, {3e7f, 3e7f, 3e7f}));
}

TEST(Hang, BoxesOfAnySizeEnd) {
    for (const float size : {1e-38f, 1e-20f, 1e-5f, 2.1e7f, 2.2e7f, 1e10f, 1e19f, 1e25f, 3e38f}) {
        ranked(makeBox({0, 0, 0}, {size, size, size}));
    }
}

TEST(Hang, ASamplingAreaOfOneTo600000Ends) {
    const Part bar = makeBox({0, 0, 0}, {1.3e6f, 0.02f, 0.02f});
    for (const UVector3<float>& d : {UVector3<float>(0, 0, 1), UVector3<float>(1, 0, 0),
                                     UVector3<float>(0, 1, 0), UVector3<float>(0, 1, 1)}) {
        const PlainScores s = evaluated(bar.kernel(), d, {});
        // A footprint so thin is beyond what the cell counts can express: no samples.
        if (d.x == 0.0f) {
            EXPECT_EQ(s.projectedArea, 0.0f);
        }
    }
    // Turned to stand at 45°, the footprint has 17 million columns.
    if (!testsAreSmall()) ranked(bar);
}

TEST(Hang, ThinPartsEnd) {
    ranked(makeBox({0, 0, 0}, {2e3f, 0.1f, 0.1f}));
    ranked(makeBox({0, 0, 0}, {1e4f, 0.1f, 0.1f}));
    ranked(makeBox({0, 0, 0}, {1e7f, 0.1f, 0.1f}));
    ranked(makeBox({0, 0, 0}, {1000.0f, 1000.0f, 0.01f}));
}

TEST(Hang, TenThousandTrianglesWithOneCentroidEnd) {
    // Boxes far away keep the cells coarse: few samples, each under thousands of triangles.
    Part farAway;
    for (const float d : {-2000.0f, 2000.0f}) {
        const Part box = makeBox({0, 0, 0}, {1, 1, 1});
        farAway.join(box.moved(d, 0, 0)).join(box.moved(0, d, 0)).join(box.moved(0, 0, d));
    }
    const int n = testsAreSmall() ? 2000 : 10000;
    ranked(makeCommonCentroid(n).join(farAway));
    ranked(makeCopies(n).scaled(30.0f, 30.0f, 30.0f).join(farAway));
}

TEST(Hang, VerticesThatAreNoNumbersEnd) {
    const float nan = std::nanf("");
    const float infinity = std::numeric_limits<float>::infinity();
    for (const float bad : {nan, infinity, -infinity}) {
        for (const std::size_t every : {1000u, 5u, 1u}) {
            for (int axis = 0; axis < 3; ++axis) {
                Part part = makeTable();
                for (std::size_t i = 0; i < part.positions.size(); i += every) {
                    part.positions[i][axis] = bad;
                }
                ranked(part);
            }
        }
    }
}

TEST(Hang, AMeshOfNothingButNanEnds) {
    Part part = makeSphere(5.0f, 3000);
    for (UPoint3<float>& p : part.positions) p.x = p.y = p.z = std::nanf("");
    ranked(part);
}

TEST(Hang, AMatrixThatIsNotFiniteEnds) {
    for (const float bad : {std::nanf(""), std::numeric_limits<float>::infinity(), 1e38f}) {
        UMatrix4<float> matrix;
        matrix.at(0, 0) = bad;
        matrix.at(3, 2) = bad;
        MeshKernel mesh = makeTable().kernel(matrix);
        EXPECT_EQ(calculated(mesh, {}).orientations.size(), 12u);
    }
}

TEST(Hang, AMeshWithoutTrianglesEnds) {
    ranked(Part().withUnusedVertices(100));
}

TEST(Hang, AMeshWithoutVerticesEnds) {
    MeshKernel nothing;
    const CallResult result = calculated(nothing, {});
    ASSERT_EQ(result.orientations.size(), 12u);
    for (const auto& record : result.orientations) {
        EXPECT_EQ(record.height, 0.0f);
        EXPECT_EQ(record.boxVolume, 0.0f);
        EXPECT_EQ(record.projectedArea, 0.0f);
    }
}

TEST(Hang, AMeshWhoseVerticesAreAllDeletedEnds) {
    MeshKernel mesh = makeTable().kernel();
    UMesh<float>& triangles = *mesh.getMesh();
    for (std::int32_t i = 0; i < triangles.VertexCount(); ++i) triangles.Vertex(i)->SetD(true);
    EXPECT_EQ(calculated(mesh, {}).orientations.size(), 12u);
}

TEST(Hang, TrianglesWithoutAreaEnd) {
    Part part;
    for (int i = 0; i < 500; ++i) part = part.withDegenerateTriangles();
    ranked(part);
    ranked(makeTable().scaled(0.0f, 0.0f, 0.0f));
    ranked(makeTable().scaled(1.0f, 1.0f, 0.0f));
    ranked(makeTable().scaled(1.0f, 0.0f, 0.0f));
}

TEST(Hang, OddConfigurationsEnd) {
    MeshKernel mesh = makeTable().kernel();
    for (const float odd : {std::nanf(""), std::numeric_limits<float>::infinity(), 1e30f, -1e30f}) {
        EXPECT_EQ(calculated(mesh, {.overhangAngle = odd}).orientations.size(), 12u);
        EXPECT_EQ(calculated(mesh, {.baseHeight = odd}).orientations.size(), 12u);
    }
}

}  // namespace
