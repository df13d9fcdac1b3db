#include "part/MeshEncoding.h"

#include <gtest/gtest.h>

#include "RunProgram.h"
#include "part/MeshFile.h"
#include "shapes/CadShapes.h"

namespace {

using App::TriangleMesh;

TriangleMesh awkwardMesh() {
    const Part part = makeBracket(30.0f, 20.0f, 3.0f, 15.0f)
                          .welded()
                          .placed(UMatrix4<float>::CreateRotateMatrix(0.7f, {1.0f, 2.0f, 3.0f}))
                          .scaled(1.0f, 0.1f, 1e-3f);
    return App::triangleMeshOf(Tesk::weld(App::partMeshOf({part.positions, part.triangles})));
}

class Encoding : public testing::TestWithParam<const char*> {};

TEST_P(Encoding, ReadsBackToTheSameMesh) {
    const TriangleMesh mesh = awkwardMesh();
    const TemporaryFolder folder;
    const std::string file =
        folder.write(std::string("part") + GetParam(), App::encoderFor(GetParam())(mesh));
    const App::LoadedPart part = App::readMeshFile(file, std::nullopt);
    EXPECT_TRUE(part.warnings.empty());
    ASSERT_EQ(part.mesh.triangles, mesh.triangles);
    ASSERT_EQ(part.mesh.positions.size(), mesh.positions.size());
    for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
        for (int axis = 0; axis < 3; ++axis) {
            EXPECT_EQ(part.mesh.positions[i][axis], mesh.positions[i][axis]);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EveryFormat, Encoding,
                         testing::Values(".stl", ".obj", ".ply", ".off", ".3mf"),
                         [](const auto& format) { return std::string(format.param + 1); });

TEST(EncodingOf, TheSameMeshHasTheSameBytes) {
    const TriangleMesh mesh = awkwardMesh();
    for (const char* format : {".stl", ".obj", ".ply", ".off", ".3mf"}) {
        EXPECT_EQ(App::encoderFor(format)(mesh), App::encoderFor(format)(mesh)) << format;
    }
}

TEST(EncodingOf, AnUnknownFormatHasNoEncoder) {
    EXPECT_EQ(App::encoderFor(".step"), nullptr);
    EXPECT_EQ(App::encoderFor(""), nullptr);
}

}  // namespace
