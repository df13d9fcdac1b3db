#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <numbers>
#include <regex>

#include "RunProgram.h"
#include "TeskDataBasic/UMatrix4.h"
#include "part/MeshChecks.h"
#include "part/MeshEncoding.h"
#include "part/MeshFile.h"
#include "shapes/Shapes.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

/// The commands that look for boxes, on a box of 40 × 30 × 20 mm that is turned.
class BoxProgram : public testing::Test {
 protected:
    BoxProgram() : m_mesh(turnedBox()), m_part(m_folder.write("part.off", encoded(m_mesh))) {}

    static App::TriangleMesh turnedBox() {
        Part box = makeBox({0, 0, 0}, {40, 30, 20});
        const auto turn = UMatrix4<float>::CreateRotateMatrix(0.8f, {1, 2, 3});
        for (UPoint3<float>& p : box.positions) p = p * turn;
        return {box.positions, box.triangles};
    }

    static std::string encoded(const App::TriangleMesh& mesh) {
        return App::encoderFor(".off")(mesh);
    }

    json jsonOf(std::vector<std::string> arguments) const {
        arguments.push_back("--json");
        const ProgramResult result = runTeskOrient(arguments);
        EXPECT_EQ(result.code, 0) << result.error;
        return json::parse(result.out);
    }

    static UVector3<float> vectorOf(const json& value) { return {value[0], value[1], value[2]}; }

    static UMatrix4<float> matrixOf(const json& rows) {
        UMatrix4<float> m;
        for (int i = 0; i < 16; ++i) {
            m.at(i / 4, i % 4) =
                rows[static_cast<std::size_t>(i / 4)][static_cast<std::size_t>(i % 4)];
        }
        return m;
    }

    static std::vector<double> sorted(const json& values) {
        auto sizes = values.get<std::vector<double>>();
        std::sort(sizes.begin(), sizes.end());
        return sizes;
    }

    TemporaryFolder m_folder;
    App::TriangleMesh m_mesh;
    std::string m_part;
};

TEST_F(BoxProgram, EveryHullCriterionFindsTheBox) {
    for (const char* criterion : {"volume", "base-area", "base-height", "principal"}) {
        const json report = jsonOf({"box", m_part, "--criterion", criterion});
        EXPECT_EQ(report["schema"], "tesk-orient/box/1");
        EXPECT_EQ(report["settings"]["criterion"], criterion);
        const std::vector<double> sizes = sorted(report["box"]["sizeMm"]);
        const std::vector<double> halves = sorted(report["box"]["halfExtentsMm"]);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(sizes[i], 20.0 + 10.0 * static_cast<double>(i), 1e-3) << criterion;
            EXPECT_NEAR(halves[i], sizes[i] / 2.0, 1e-6);
        }
        EXPECT_NEAR(report["box"]["volumeMm3"].get<double>(), 24000.0, 1.0);
        EXPECT_NEAR(report["box"]["partVolumeMm3"].get<double>(), 24000.0, 1.0);
    }
}

TEST_F(BoxProgram, TheFillRatioIsThePartsShareOfTheBox) {
    const Part rod = makeCylinder(5.0f, 30.0f, 64);
    const std::string file = m_folder.write("rod.off", encoded({rod.positions, rod.triangles}));
    const json box = jsonOf({"box", file})["box"];
    const double share = box["partVolumeMm3"].get<double>() / box["volumeMm3"].get<double>();
    // A circle's share of its square.
    EXPECT_NEAR(share, std::numbers::pi / 4.0, 0.01);
    EXPECT_NEAR(box["fillRatio"].get<double>(), share, 1e-12);
}

TEST_F(BoxProgram, TheTurnAndTheMatrixBringTheAxesOfTheBoxToXYZ) {
    for (const char* criterion : {"volume", "base-area", "base-height", "principal"}) {
        const json box = jsonOf({"box", m_part, "--criterion", criterion})["box"];
        const auto turn = UMatrix4<float>::CreateRotateMatrix(box["turn"]["angleRad"],
                                                              vectorOf(box["turn"]["axis"]));
        const UMatrix4<float> matrix = matrixOf(box["matrix"]);
        const UVector3<float> center = vectorOf(box["centerMm"]);
        for (int i = 0; i < 3; ++i) {
            const UVector3<float> axis = vectorOf(box["axes"][static_cast<std::size_t>(i)]);
            const UPoint3<float> tip(center.x + axis.x, center.y + axis.y, center.z + axis.z);
            const UVector3<float> turned =
                UPoint3<float>(axis.x, axis.y, axis.z) * turn - UPoint3<float>();
            const UVector3<float> moved =
                tip * matrix - UPoint3<float>(center.x, center.y, center.z);
            for (int k = 0; k < 3; ++k) {
                EXPECT_NEAR(turned[k], k == i ? 1.0f : 0.0f, 1e-5f) << criterion;
                EXPECT_NEAR(moved[k], k == i ? 1.0f : 0.0f, 1e-4f) << criterion;
            }
        }
    }
}

TEST_F(BoxProgram, AroundAnAxisTheThirdAxisIsThatOne) {
    const json report = jsonOf({"box", m_part, "--criterion", "around-axis", "--axis", "0.5,0,-1"});
    EXPECT_NEAR(report["box"]["axes"][2][0].get<double>(), 0.5 / std::sqrt(1.25), 1e-6);
    EXPECT_NEAR(report["settings"]["axis"][2].get<double>(), -1.0, 0.0);
}

TEST_F(BoxProgram, AxesAlongZAndAxesOfAnyLengthHaveABox) {
    for (const char* axis : {"0,0,-2", "-.5,0,1", "1e-38,0,1e20", "1e-30,2e-30,0", "-1e30,0,0"}) {
        const json box =
            jsonOf({"box", m_part, "--criterion", "around-axis", "--axis", axis})["box"];
        EXPECT_GE(box["volumeMm3"].get<double>(), 24000.0 - 1.0) << axis;
        for (const json& direction : box["axes"]) {
            EXPECT_NEAR(vectorOf(direction).GetLength(), 1.0f, 1e-5f) << axis;
        }
    }
}

TEST_F(BoxProgram, TheTableTellsFullFromHalfLengths) {
    const ProgramResult result = runTeskOrient({"box", m_part});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("Full length   Half-length"));
    EXPECT_THAT(result.out, HasSubstr("40.000        20.000"));
    EXPECT_THAT(result.out, HasSubstr("fill 100.0 %"));
    EXPECT_THAT(result.out, HasSubstr("To bring axes 1, 2, 3 to X, Y, Z, turn the part"));
    EXPECT_EQ(result.error, "");
}

TEST_F(BoxProgram, WritesTheBoxAsAClosedMeshFacingOutward) {
    for (const char* criterion : {"volume", "base-area", "base-height", "principal"}) {
        const std::string file = m_folder.file("box.ply");
        ASSERT_EQ(runTeskOrient({"box", m_part, "--criterion", criterion, "-o", file}).code, 0);
        const App::LoadedPart box = App::readMeshFile(file, std::nullopt);
        EXPECT_EQ(box.mesh.triangles.size(), 12u);
        const auto& [positions, triangles] = box.mesh;
        const auto measures = Tesk::measureSurface(positions, triangles);
        EXPECT_NEAR(measures.volumeSixfold / 6.0, 24000.0, 1.0) << criterion;
        MeshKernel kernel(box.mesh.positions, box.mesh.triangles);
        kernel.UpdateTopo(true, MeshKernel::kEdgeCounts);
        EXPECT_EQ(kernel.topology().openEdges, 0);
        EXPECT_EQ(kernel.topology().inconsistentEdges, 0);
    }
}

TEST_F(BoxProgram, AnOpenMeshHasABoxButNoVolume) {
    App::TriangleMesh open = m_mesh;
    open.triangles.pop_back();
    const std::string file = m_folder.write("open.off", encoded(open));
    const ProgramResult result = runTeskOrient({"box", file});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.error, HasSubstr("open edges"));
    EXPECT_THAT(result.error, Not(HasSubstr("support")));
    EXPECT_THAT(result.out, HasSubstr("the part's own volume is unknown"));
    EXPECT_TRUE(jsonOf({"box", file})["box"]["partVolumeMm3"].is_null());
    EXPECT_TRUE(jsonOf({"box", file})["box"]["fillRatio"].is_null());
    EXPECT_EQ(runTeskOrient({"box", file, "--quiet"}).error, "");
}

TEST_F(BoxProgram, AMeshThatIsWoundBothWaysHasNoVolume) {
    App::TriangleMesh mixed = m_mesh;
    std::swap(mixed.triangles[0][0], mixed.triangles[0][1]);
    const std::string file = m_folder.write("mixed.off", encoded(mixed));
    EXPECT_TRUE(jsonOf({"box", file})["box"]["partVolumeMm3"].is_null());
    for (auto& triangle : m_mesh.triangles) std::swap(triangle[0], triangle[1]);
    const std::string inward = m_folder.write("inward.off", encoded(m_mesh));
    EXPECT_NEAR(jsonOf({"box", inward})["box"]["partVolumeMm3"].get<double>(), 24000.0, 1.0);
}

TEST_F(BoxProgram, PointsThatNoTriangleUsesDoNotCount) {
    App::TriangleMesh more = m_mesh;
    more.positions.emplace_back(500.0f, 0.0f, 0.0f);
    const std::string file = m_folder.write("more.off", encoded(more));
    EXPECT_NEAR(jsonOf({"box", file})["box"]["volumeMm3"].get<double>(), 24000.0, 1.0);
}

TEST_F(BoxProgram, GivesTheSameForAnyThreadCount) {
    const std::string one = runTeskOrient({"box", m_part, "--json", "--threads", "1"}).out;
    EXPECT_EQ(one, runTeskOrient({"box", m_part, "--json", "--threads", "5"}).out);
}

TEST_F(BoxProgram, SaysWhatIsWrongWithTheCommandLine) {
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"box"},
             {"box", m_part, "--criterion", "beauty"},
             {"box", m_part, "--criterion", "around-axis"},
             {"box", m_part, "--criterion", "around-axis", "--axis", "1,2"},
             {"box", m_part, "--criterion", "around-axis", "--axis", "0,0,0"},
             {"box", m_part, "--criterion", "around-axis", "--axis", "nan,0,0"},
             {"box", m_part, "--axis", "1,2,3"},
             {"box", m_part, "--rank", "2"},
             {"lay-flat"},
             {"lay-flat", m_part, "--threads", "2"},
             {"lay-flat", m_part, "--axis", "1,2,3"}}) {
        const ProgramResult result = runTeskOrient(arguments);
        EXPECT_EQ(result.code, 2) << arguments.back();
        EXPECT_THAT(result.error, HasSubstr("see tesk-orient --help"));
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
    }
}

TEST_F(BoxProgram, BadFilesEndInOneLine) {
    const std::string empty = m_folder.write("empty.stl", "");
    for (const char* command : {"box", "lay-flat"}) {
        const ProgramResult result = runTeskOrient({command, empty});
        EXPECT_EQ(result.code, 3);
        EXPECT_THAT(result.error, HasSubstr("empty.stl: "));
        // The part does not exist: its error would come first if it were read first.
        const std::string missing = m_folder.file("missing.stl");
        EXPECT_EQ(runTeskOrient({command, missing, "-o", "/nowhere/at/all.stl"}).code, 4);
        EXPECT_EQ(runTeskOrient({command, missing}).code, 3);
    }
}

TEST_F(BoxProgram, LaysThePartFlatOnThePlate) {
    const std::string file = m_folder.file("flat.stl");
    const json report = jsonOf({"lay-flat", m_part, "--output", file});
    EXPECT_EQ(report["schema"], "tesk-orient/lay-flat/1");
    const App::TriangleMesh flat = App::readMeshFile(file, std::nullopt).mesh;
    const auto size = App::sizeOf(flat);
    EXPECT_NEAR(size[0], 40.0, 1e-3);
    EXPECT_NEAR(size[1], 30.0, 1e-3);
    EXPECT_NEAR(size[2], 20.0, 1e-3);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(report["sizeBeforeMm"][i].get<double>(), App::sizeOf(m_mesh)[i], 1e-3);
        EXPECT_NEAR(report["sizeAfterMm"][i].get<double>(), size[i], 1e-3);
    }
    const UMatrix4<float> m = matrixOf(report["matrix"]);
    float lowest = 1e30f;
    for (const UPoint3<float>& p : m_mesh.positions) lowest = std::min(lowest, (p * m).z);
    EXPECT_NEAR(lowest, 0.0f, 1e-5f);
    const ProgramResult table = runTeskOrient({"lay-flat", m_part});
    EXPECT_EQ(table.code, 0);
    const std::regex sizes(
        "X +[0-9.]+ +40\\.000\n +Y +[0-9.]+ +30\\.000\n +Z +[0-9.]+ +20\\.000\n");
    EXPECT_TRUE(std::regex_search(table.out, sizes)) << table.out;
    EXPECT_THAT(table.out, HasSubstr("turn the part"));
}

TEST_F(BoxProgram, CtrlCEndsEveryCommandAndLeavesNoFile) {
    if (!canInterrupt()) GTEST_SKIP() << "no program can be interrupted here";
    const Part sphere = makeSphere(40.0f, 120'000);
    const std::string big =
        m_folder.write("big.stl", App::encoderFor(".stl")({sphere.positions, sphere.triangles}));
    const std::size_t before = m_folder.countFiles();
    const std::string output = m_folder.file("out.stl");
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"box", big, "-o", output},
             {"box", big, "--criterion", "base-area", "-o", output},
             {"box", big, "--criterion", "base-height", "--threads", "1", "-o", output},
             {"lay-flat", big, "-o", output}}) {
        for (const int delayMs : {30, 700}) {
            const ProgramResult result = runTeskOrient(arguments, delayMs);
            EXPECT_EQ(result.code, 130) << arguments[0];
            EXPECT_THAT(result.error, HasSubstr("tesk-orient: aborted\n"));
            EXPECT_EQ(result.out, "");
            EXPECT_EQ(m_folder.countFiles(), before);
            // A tenth of a second where the processor is free. Work that went on would take much
            // longer than this: every vertex is one of the hull's.
            EXPECT_LT(result.seconds, 2.0) << arguments[0];
        }
    }
}

}  // namespace
