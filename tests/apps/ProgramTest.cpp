#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "RunProgram.h"
#include "part/MeshChecks.h"
#include "part/MeshEncoding.h"
#include "part/MeshFile.h"
#include "shapes/Shapes.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;

class Program : public testing::Test {
 protected:
    Program() : m_example(m_folder.file("example.stl")) {
        EXPECT_EQ(run(TESK_EXAMPLE_MAKER, {m_example}).code, 0);
    }

    json jsonOf(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments = {"orient", m_example, "--json"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const ProgramResult result = runTeskOrient(arguments);
        EXPECT_EQ(result.code, 0) << result.error;
        return json::parse(result.out);
    }

    TemporaryFolder m_folder;
    std::string m_example;
};

TEST_F(Program, StandsTheExampleOnItsTopWhereItNeedsNoSupport) {
    const json best = jsonOf()["poses"][0];
    EXPECT_NEAR(best["heightMm"].get<double>(), 40.0, 1e-3);
    // The face on the plate overhangs by its rounding, on 40 square centimetres.
    EXPECT_LT(best["supportVolumeMm3"].get<double>(), 1.0);
    EXPECT_NEAR(best["contactAreaMm2"].get<double>(), 4000.0, 1.0);
    EXPECT_TRUE(best["stands"].get<bool>());
    // The legs of the table point along −z before it is turned awkwardly.
    const UVector3<float> legs = UVector3<float>(0, 0, -1);
    const UMatrix4<float> awkward = UMatrix4<float>::CreateRotateMatrix(0.6f, {1.0f, 2.0f, 0.5f});
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_NEAR(best["up"][static_cast<std::size_t>(axis)].get<float>(),
                    legs.z * awkward.at(2, axis), 1e-4f);
    }
}

TEST_F(Program, TheExampleHasNoWarnings) {
    EXPECT_TRUE(jsonOf()["input"]["warnings"].empty());
}

TEST_F(Program, SaysInOneSentenceWhyThePoseIsBest) {
    const ProgramResult result = runTeskOrient({"orient", m_example});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("92 triangles, 48 vertices"));
    EXPECT_THAT(result.out, HasSubstr("\n *  1      0 mm       4,000      40.00"));
    EXPECT_THAT(result.out, HasSubstr("\nas is      27 m"));
    EXPECT_THAT(result.out, HasSubstr("no support instead of 27 m as it lies; 45 mm lower; stands "
                                      "on 4,000 mm²."));
    EXPECT_THAT(result.out, HasSubstr("To get there, turn the part"));
    EXPECT_EQ(result.error, "");
}

TEST_F(Program, TheJsonOfPosesHoldsAllThatWasMeasured) {
    const json report = jsonOf({"--fits", "100x100x70"});
    EXPECT_EQ(report["schema"], "tesk-orient/orient/2");
    EXPECT_EQ(report["settings"]["goal"], "balanced");
    EXPECT_EQ(report["settings"]["heightCost"], 15.0);
    EXPECT_GT(report["passedOver"]["tooLarge"].get<int>(), 0);
    EXPECT_FALSE(report["asItLies"]["stands"].get<bool>());
    EXPECT_EQ(report["poses"][0]["rank"], 1);
    for (const json& pose : report["poses"]) {
        EXPECT_LE(pose["heightMm"].get<double>(), 70.0);
        const json& cost = pose["cost"];
        EXPECT_NEAR(cost["totalMm"].get<double>(),
                    pose["supportFilamentMm"].get<double>() + cost["heightMm"].get<double>(), 0.1);
    }
}

TEST_F(Program, TheLeastSupportGoalCountsHeightLess) {
    EXPECT_EQ(jsonOf({"--goal", "least-support"})["settings"]["heightCost"], 8.0);
    EXPECT_EQ(jsonOf({"--overhang-angle", "50"})["settings"]["overhangAngleDeg"], 50.0);
}

TEST_F(Program, AnyWeightRanksByWeights) {
    const json byGoal = jsonOf({"--goal", "weights"});
    EXPECT_EQ(byGoal["schema"], "tesk-orient/orient/1");
    EXPECT_EQ(byGoal, jsonOf({"--height-weight", "1"}));
    EXPECT_EQ(byGoal["settings"]["overhangAngleDeg"], 45.0);
}

TEST_F(Program, WhereNoPoseFitsItSaysWhatTheNearestNeeds) {
    const ProgramResult result = runTeskOrient({"orient", m_example, "--fits", "30x30x30"});
    EXPECT_EQ(result.code, 5);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.error, HasSubstr("no pose fits 30 × 30 × 30 mm; the nearest needs"));
}

TEST_F(Program, AFaceIsKeptOffThePlate) {
    // The table's top, whichever way it looks.
    const json up = jsonOf()["poses"][0]["up"];
    std::string top;
    for (const json& component : up) {
        if (!top.empty()) top += ',';
        top += std::to_string(-component.get<double>());
    }
    const json allowed = jsonOf({"--keep-off", top})["poses"];
    EXPECT_FALSE(allowed.empty());
    for (const json& pose : allowed) {
        double dot = 0.0;
        for (std::size_t i = 0; i < 3; ++i)
            dot += up[i].get<double>() * pose["up"][i].get<double>();
        EXPECT_LT(dot, 0.58);
    }
    const ProgramResult none = runTeskOrient({"orient", m_example, "--keep-off", top + ":180"});
    EXPECT_EQ(none.code, 5);
    EXPECT_THAT(none.error, HasSubstr("--keep-off"));
}

TEST_F(Program, PrintsTwelveRowsWithTheBestMarked) {
    const ProgramResult result = runTeskOrient({"orient", m_example, "--goal", "weights"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("92 triangles, 48 vertices"));
    EXPECT_THAT(result.out, HasSubstr("\n*   1 "));
    EXPECT_THAT(result.out, HasSubstr("\n   12 "));
    EXPECT_THAT(result.out, HasSubstr("Best: turn the part"));
    EXPECT_EQ(result.error, "");
}

TEST_F(Program, GivesTheSameOutputAtEveryRunAndThreadCount) {
    const ProgramResult one = runTeskOrient({"orient", m_example, "--json", "--threads", "1"});
    const ProgramResult three = runTeskOrient({"orient", m_example, "--json", "--threads", "3"});
    EXPECT_EQ(one.out, three.out);
    EXPECT_NE(jsonOf({"--goal", "weights"}), jsonOf({"--goal", "weights", "--seed", "7"}));
}

TEST_F(Program, TheMatrixOfEveryRecordGivesItsHeightAndStandsThePartOnThePlate) {
    const App::LoadedPart part = App::readMeshFile(m_example, std::nullopt);
    json records = jsonOf()["poses"];
    const json ranked = jsonOf({"--goal", "weights"})["orientations"];
    for (const json& record : ranked) records.push_back(record);
    for (const json& record : records) {
        UMatrix4<float> m;
        for (int i = 0; i < 16; ++i) {
            m.at(i / 4, i % 4) =
                record["matrix"][static_cast<std::size_t>(i / 4)][static_cast<std::size_t>(i % 4)];
        }
        UBox3<float> box;
        for (const UPoint3<float>& p : part.mesh.positions) box.Extend(p * m);
        EXPECT_NEAR(box.MinZ(), 0.0f, 1e-4f);
        EXPECT_NEAR(box.MaxZ(), record["heightMm"].get<float>(), 1e-3f);
    }
}

TEST_F(Program, WritesThePartOfTheChosenRankInEveryFormat) {
    const json records = jsonOf()["poses"];
    for (const char* rank : {"1", "3"}) {
        const double height = records[static_cast<std::size_t>(std::stoi(rank) - 1)]["heightMm"];
        for (const char* name : {"t.stl", "t.obj", "t.ply", "t.off", "t.3mf"}) {
            const std::string file = m_folder.file(name);
            ASSERT_EQ(runTeskOrient({"orient", m_example, "-o", file, "--rank", rank}).code, 0);
            EXPECT_NEAR(App::sizeOf(App::readMeshFile(file, std::nullopt).mesh)[2], height, 1e-3);
        }
    }
}

TEST_F(Program, ScalesByTheUnit) {
    EXPECT_NEAR(jsonOf({"--units", "inch"})["input"]["sizeMm"][0].get<double>(),
                25.4 * jsonOf()["input"]["sizeMm"][0].get<double>(), 0.1);
}

TEST_F(Program, WarnsOfOpenEdgesWindingAndSize) {
    const Part part = makeBox({0, 0, 0}, {0.5f, 0.4f, 0.3f}).withoutEvery(12);
    App::TriangleMesh mesh{part.positions, part.triangles};
    std::swap(mesh.triangles[3][0], mesh.triangles[3][1]);
    const std::string file = m_folder.write("open.off", App::encoderFor(".off")(mesh));
    const ProgramResult result = runTeskOrient({"orient", file});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.error, HasSubstr("3 open edges"));
    EXPECT_THAT(result.error, HasSubstr("triangles face opposite ways across"));
    EXPECT_THAT(result.error, HasSubstr("--units"));
    EXPECT_EQ(runTeskOrient({"orient", file, "--quiet"}).error, "");
}

TEST_F(Program, SaysWhatIsWrongWithTheCommandLine) {
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {},
             {"orient"},
             {"orient", m_example, "--rank", "0"},
             {"orient", m_example, "--rank", "13"},
             {"orient", m_example, "--units", "parsec"},
             {"orient", m_example, "--overhang-angle", "x"},
             {"orient", m_example, "--rank", "12"},
             {"orient", m_example, "--goal", "best"},
             {"orient", m_example, "--fits", "10x20"},
             {"orient", m_example, "--fits", "10x20x-3"},
             {"orient", m_example, "--keep-off", "0,0"},
             {"orient", m_example, "--keep-off", "0,0,0"},
             {"orient", m_example, "--keep-off", "0,0,1:x"},
             {"orient", m_example, "--goal", "balanced", "--height-weight", "2"},
             {"orient", m_example, "--goal", "weights", "--fits", "250x210x210"},
             {"fold", m_example}}) {
        const ProgramResult result = runTeskOrient(arguments);
        EXPECT_EQ(result.code, 2);
        EXPECT_THAT(result.error, HasSubstr("see tesk-orient --help"));
    }
}

TEST_F(Program, HelpAndVersionSucceed) {
    EXPECT_THAT(runTeskOrient({"--help"}).out, HasSubstr("Exit codes:"));
    EXPECT_THAT(runTeskOrient({"orient", "--help"}).out, HasSubstr("--overhang-angle"));
    EXPECT_THAT(runTeskOrient({"--version"}).out, HasSubstr("tesk-orient 0."));
    EXPECT_EQ(runTeskOrient({"--help"}).code, 0);
}

TEST_F(Program, SaysBeforeTheWorkThatTheOutputCannotBeWritten) {
    for (const std::string& output :
         {std::string("/nowhere/at/all.stl"), m_folder.file("part.step"), m_folder.file("")}) {
        // The part does not exist: its error would come first if it were read first.
        const ProgramResult result =
            runTeskOrient({"orient", m_folder.file("missing.stl"), "--output", output});
        EXPECT_EQ(result.code, 4) << result.error;
        EXPECT_THAT(result.error, HasSubstr(output));
    }
}

TEST_F(Program, FileNamesMayHoldAnyLetter) {
    const std::u8string name = u8"Teil äß ☃ 部品.stl";
    const std::filesystem::path file = std::filesystem::path(m_example).parent_path() / name;
    std::filesystem::copy_file(m_example, file);
    const std::u8string text = file.u8string();
    const std::string argument(text.begin(), text.end());
    const ProgramResult found = runTeskOrient({"box", argument, "--quiet"});
    EXPECT_EQ(found.code, 0) << found.error;
    std::filesystem::remove(file);
    const ProgramResult missing = runTeskOrient({"box", argument});
    EXPECT_EQ(missing.error, "tesk-orient: " + argument + ": no such file\n");
}

TEST_F(Program, CtrlCEndsItWithinATenthOfASecondAndLeavesNoFile) {
    if (!canInterrupt()) GTEST_SKIP() << "no program can be interrupted here";
    const Part sphere = makeSphere(40.0f, 700'000);
    const std::string big =
        m_folder.write("big.stl", App::encoderFor(".stl")({sphere.positions, sphere.triangles}));
    const std::string turned = m_folder.file("turned.stl");
    const std::size_t before = m_folder.countFiles();
    int aborted = 0;
    for (const int delayMs : {20, 60, 150, 400, 900}) {
        SCOPED_TRACE(delayMs);
        const ProgramResult result = runTeskOrient({"orient", big, "--output", turned}, delayMs);
        RecordProperty("latencyMs" + std::to_string(delayMs),
                       static_cast<int>(std::lround(result.seconds * 1e3)));
        // A fast machine is through before the later ones.
        if (result.code == 0) {
            EXPECT_EQ(std::filesystem::file_size(turned), std::filesystem::file_size(big));
            std::filesystem::remove(turned);
            continue;
        }
        ++aborted;
        EXPECT_EQ(result.code, 130);
        EXPECT_THAT(result.error, HasSubstr("tesk-orient: aborted\n"));
        EXPECT_EQ(m_folder.countFiles(), before);
    }
    EXPECT_GE(aborted, 2);
}

TEST_F(Program, AnInterruptThatTheParentIgnoresDoesNotEndIt) {
    if (!canInterrupt()) GTEST_SKIP() << "no program can be interrupted here";
    const Part sphere = makeSphere(40.0f, 150'000);
    const std::string file =
        m_folder.write("part.stl", App::encoderFor(".stl")({sphere.positions, sphere.triangles}));
    const std::vector<std::string> arguments = {"orient", file};
    EXPECT_EQ(runTeskOrient(arguments, 0).code, 130);
    const ProgramResult ignored = runTeskOrient(arguments, 0, InheritedSigint::kIgnored);
    EXPECT_EQ(ignored.code, 0);
    EXPECT_EQ(ignored.out, runTeskOrient(arguments).out);
}

}  // namespace
