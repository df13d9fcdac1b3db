#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>

#include "RunProgram.h"
#include "TeskPartFiles/Plates.h"
#include "part/MeshEncoding.h"
#include "part/MeshFile.h"
#include "shapes/SampleMeshes.h"
#include "shapes/Shapes.h"
#include "threemf/PlatePackage.h"
#include "threemf/RawPackage.h"
#include "tools/TestRandom.h"
#include "tools/ZipMaker.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

using Arguments = std::vector<std::string>;

std::string meshXml(const Part& part) {
    std::string text = "<mesh><vertices>";
    for (const auto& p : part.positions) {
        text += fmt::format("<vertex x=\"{}\" y=\"{}\" z=\"{}\"/>", p.x, p.y, p.z);
    }
    text += "</vertices><triangles>";
    for (const auto& [a, b, c] : part.triangles) {
        text += fmt::format("<triangle v1=\"{}\" v2=\"{}\" v3=\"{}\"/>", a, b, c);
    }
    return text + "</triangles></mesh>";
}

/// A plate of three objects: a slab 40 × 30 × 3, a tower 8 × 6 × 50, and a wedge that shows its
/// overhang when it stands on an edge.
std::string packageOf(const std::string& items,
                      const Part& third = makeBox({0, 0, 0}, {20, 10, 5})) {
    const std::string model = fmt::format(
        "<model unit=\"millimeter\" "
        "xmlns=\"http://schemas.microsoft.com/3dmanufacturing/core/2015/02\"><resources>"
        "<object id=\"1\" name=\"Slab\" partnumber=\"S-1\" type=\"model\">{}</object>"
        "<object id=\"2\" name=\"Tower\" type=\"model\">{}</object>"
        "<object id=\"3\" type=\"model\">{}</object></resources><build>{}</build></model>",
        meshXml(makeBox({0, 0, 0}, {40, 30, 3})), meshXml(makeBox({0, 0, 0}, {8, 6, 50})),
        meshXml(third), items);
    std::vector<ZipFile> files = platePackage();
    for (ZipFile& file : files) {
        if (file.name == "3D/3dmodel.model") file.content = model;
    }
    return makeZip(files);
}

std::string itemXml(int object, const UMatrix4<float>& m) {
    std::string transform;
    for (int i = 0; i < 12; ++i) transform += fmt::format("{} ", m.at(i / 3, i % 3));
    return fmt::format("<item objectid=\"{}\" transform=\"{}\"/>", object, transform);
}

UMatrix4<float> at(float x, float y, float z, float degrees = 0.0f,
                   const UVector3<float>& axis = {0, 0, 1}) {
    return UMatrix4<float>::CreateRotateMatrix(degrees * 3.14159265f / 180.0f, axis) *
           UMatrix4<float>::CreateTransfMatrix({x, y, z});
}

Tesk::Plate plateIn(const std::string& file) {
    return Tesk::readPlate(readAll(file), Tesk::PartFormat::kThreeMf);
}

/// The data of a page.
json dataOf(const std::string& page) {
    const std::string text = readAll(page);
    const std::string start = "id=\"data\">";
    const std::size_t from = text.find(start) + start.size();
    return json::parse(text.substr(from, text.find("</script>", from) - from));
}

class PlateProgram : public testing::Test {
 protected:
    ProgramResult run(const std::string& input, Arguments more = {}) const {
        Arguments arguments = {"orient", input};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runTeskOrient(arguments);
    }

    json jsonOf(const std::string& input, Arguments more = {}) const {
        more.push_back("--json");
        const ProgramResult result = run(input, more);
        EXPECT_EQ(result.code, 0) << result.error;
        return json::parse(result.out);
    }

    /// Sends a package through a command twice: only transforms may change, and then nothing.
    void expectStays(const std::string& input, const Arguments& command) const {
        const std::string once = m_folder.file("once.3mf");
        const std::string twice = m_folder.file("twice.3mf");
        for (const auto& [from, to] : {std::pair(input, once), std::pair(once, twice)}) {
            Arguments arguments = command;
            arguments.insert(arguments.end(), {from, "--quiet", "-o", to});
            const ProgramResult result = runTeskOrient(arguments);
            ASSERT_EQ(result.code, 0) << result.error;
        }
        expectOnlyTransformsDiffer(readAll(input), readAll(once));
        EXPECT_EQ(readAll(once), readAll(twice)) << command[0];
    }

    static void expectOnlyTransformsDiffer(const std::string& before, const std::string& after) {
        const RawPackage was = rawPackage(before);
        const RawPackage is = rawPackage(after);
        ASSERT_EQ(is.entries.size(), was.entries.size());
        int changed = 0;
        for (std::size_t i = 0; i < is.entries.size(); ++i) {
            EXPECT_EQ(is.entries[i].name, was.entries[i].name);
            changed += is.entries[i].data != was.entries[i].data ? 1 : 0;
        }
        EXPECT_LE(changed, 1);
        const Tesk::Plate a = Tesk::readPlate(before, Tesk::PartFormat::kThreeMf);
        const Tesk::Plate b = Tesk::readPlate(after, Tesk::PartFormat::kThreeMf);
        ASSERT_EQ(a.items.size(), b.items.size());
        for (std::size_t i = 0; i < a.objects.size(); ++i) {
            EXPECT_EQ(a.objects[i].mesh, b.objects[i].mesh);
        }
    }

    TemporaryFolder m_folder;
};

TEST_F(PlateProgram, EveryObjectHasASectionOfItsOwn) {
    const std::string plate = m_folder.write(
        "plate.3mf",
        packageOf(itemXml(1, at(0, 0, 0)) + itemXml(2, at(60, 0, 0)) + itemXml(1, at(0, 60, 0))));
    const ProgramResult table = run(plate);
    EXPECT_THAT(table.out, HasSubstr("plate.3mf: 3MF, 2 objects, 3 items\n\n\"Slab\" (object 1), "
                                     "part number S-1, 2 items: 12 triangles, 8 vertices, 40.0 × "
                                     "30.0 × 3.0 mm\n"));
    EXPECT_THAT(table.out, HasSubstr("Of all: 2 left as they are."));
    const json report = jsonOf(plate);
    EXPECT_EQ(report["schema"], "tesk-orient/plate/1");
    EXPECT_EQ(report["objects"].size(), 2u);
    EXPECT_EQ(report["objects"][0]["name"], "Slab");
    EXPECT_EQ(report["objects"][0]["items"].size(), 2u);
    EXPECT_EQ(report["objects"][1]["items"][0]["change"], "turned");
    EXPECT_NEAR(report["objects"][1]["poses"][0]["heightMm"].get<double>(), 6.0, 1e-4);
    EXPECT_NEAR(report["objects"][1]["asItLies"]["heightMm"].get<double>(), 50.0, 1e-4);
}

TEST_F(PlateProgram, TwoHundredItemsOfThreeObjectsAreMeasuredThreeTimes) {
    TestRandom random(4);
    std::string items;
    for (int i = 0; i < 200; ++i) {
        const UVector3<float> axis(random.in(-1, 1), random.in(-1, 1), random.in(0.1f, 1));
        items += itemXml(1 + i % 3,
                         at(60.0f * static_cast<float>(i % 20), 60.0f * static_cast<float>(i / 20),
                            40.0f, 90.0f * static_cast<float>(i % 7), axis));
    }
    const std::string plate = m_folder.write("many.3mf", packageOf(items));
    EXPECT_THAT(run(plate, {"--verbose", "--quiet"}).error,
                HasSubstr("Shapes measured: 3, for 3 of 3 objects and 200 of 200 items"));
    expectStays(plate, {"orient"});
}

TEST_F(PlateProgram, OnlyTransformsChangeAndTheSecondTimeNothing) {
    const std::string plate = m_folder.write("plate.3mf", makeZip(platePackage()));
    for (const Arguments& command :
         {Arguments{"orient"}, Arguments{"orient", "--goal", "least-support"},
          Arguments{"orient", "--goal", "weights"},
          Arguments{"orient", "--rank", "2", "--object", "Wedge"}, Arguments{"lay-flat"},
          Arguments{"orient", "--together"}}) {
        SCOPED_TRACE(testing::PrintToString(command));
        expectStays(plate, command);
    }
}

TEST_F(PlateProgram, TheSampleMeshesStayTheSecondTime) {
    if (sampleMeshes().empty()) GTEST_SKIP() << whyNoSampleMeshes();
    for (const std::filesystem::path& mesh : sampleMeshes()) {
        if (mesh.extension() != ".3mf") continue;
        SCOPED_TRACE(mesh);
        expectStays(mesh.string(), {"orient"});
    }
}

TEST_F(PlateProgram, AnItemKeepsItsPlaceStandsAndTurnsByTheLeastRotation) {
    const std::string plate =
        m_folder.write("plate.3mf", packageOf(itemXml(2, at(60, 20, 7, -20.0f, {1, 0, 0})) +
                                              itemXml(1, at(150, 80, 12, 100.0f, {0, 0, 1}))));
    const std::string turned = m_folder.file("turned.3mf");
    const json objects = jsonOf(plate, {"-o", turned})["objects"];
    // Tilted by 20°, the tower lies down on its front by another 70°.
    EXPECT_NEAR(objects[0]["items"][0]["turn"]["angleDeg"].get<double>(), 70.0, 1e-3);
    // Lying flat, it only comes down.
    EXPECT_EQ(objects[1]["items"][0]["change"], "moved");
    const Tesk::Plate before = plateIn(plate);
    const Tesk::Plate after = plateIn(turned);
    for (std::size_t i = 0; i < 2; ++i) {
        const auto boxOf = [&](const Tesk::Plate& in) {
            UBox3<double> box;
            const auto& m = in.items[i].transform.m;
            for (const auto& p : in.objects[in.items[i].object].mesh.positions) {
                std::array<double, 3> q{};
                for (std::size_t c = 0; c < 3; ++c) {
                    q[c] = static_cast<double>(p.x) * m[c] + static_cast<double>(p.y) * m[3 + c] +
                           static_cast<double>(p.z) * m[6 + c] + m[9 + c];
                }
                box.Extend({q[0], q[1], q[2]});
            }
            return box;
        };
        EXPECT_NEAR(boxOf(after).MinZ(), 0.0, 1e-5);
        EXPECT_NEAR(boxOf(after).Center().x, boxOf(before).Center().x, 1e-5);
        EXPECT_NEAR(boxOf(after).Center().y, boxOf(before).Center().y, 1e-5);
    }
}

TEST_F(PlateProgram, OverlapsAreNamedWithTheirDepth) {
    // The towers stand 20 mm apart and lie down towards each other.
    const std::string plate = m_folder.write(
        "plate.3mf", packageOf(itemXml(2, at(100, 0, 0)) + itemXml(1, at(130, 0, 0))));
    const ProgramResult result = run(plate);
    const json warnings = jsonOf(plate, {"-q"})["warnings"];
    ASSERT_EQ(warnings.size(), 0u) << warnings;
    // It lies along X or Y, 50 mm long about its centre: 104 ± 25 reaches the slab at 115.
    const std::string near = m_folder.write(
        "near.3mf", packageOf(itemXml(2, at(100, 0, 0, 90.0f, {0, 0, 1})) +
                              itemXml(1, at(100, 2, 0)) + itemXml(1, at(300, 0, 0))));
    const json report = jsonOf(near, {"-q"});
    ASSERT_EQ(report["warnings"].size(), 1u);
    const json& warning = report["warnings"][0];
    EXPECT_EQ(warning["code"], "parts-overlap");
    EXPECT_EQ(warning["items"], json({1, 2}));
    EXPECT_GT(warning["distanceMm"].get<double>(), 1.0);
    EXPECT_THAT(run(near).error,
                HasSubstr("\"Tower\" and \"Slab\" (item 2) overlap by " +
                          fmt::format("{:.2f} mm", warning["distanceMm"].get<double>())));
}

TEST_F(PlateProgram, AnItemOutsideTheBuildVolumeIsNamedWithTheDistance) {
    const std::string plate = m_folder.write(
        "plate.3mf", packageOf(itemXml(1, at(225, 100, 0)) + itemXml(1, at(-7, 10, 0))));
    const json report = jsonOf(plate, {"-q", "--fits", "250x210x210"});
    ASSERT_EQ(report["warnings"].size(), 2u);
    EXPECT_EQ(report["warnings"][0]["code"], "leaves-volume");
    EXPECT_NEAR(report["warnings"][0]["distanceMm"].get<double>(), 15.0, 1e-4);
    EXPECT_THAT(run(plate, {"--fits", "250x210x210"}).error,
                HasSubstr("\"Slab\" (item 2) leaves the build volume of 250 × 210 × 210 mm, taken "
                          "to begin at 0, 0, 0 of the plate, by 7.00 mm along -X"));
    EXPECT_EQ(jsonOf(plate)["warnings"].size(), 0u);
}

TEST_F(PlateProgram, SomeObjectsAreTakenByNameOrIdAndTheOthersStay) {
    const std::string plate = m_folder.write(
        "plate.3mf",
        packageOf(itemXml(2, at(0, 0, 0)) + itemXml(1, at(100, 0, 5)) + itemXml(3, at(200, 0, 5))));
    const std::string out = m_folder.file("out.3mf");
    const json report = jsonOf(plate, {"--object", "Tower", "--object", "3", "-o", out});
    ASSERT_EQ(report["objects"].size(), 2u);
    EXPECT_EQ(report["objects"][1]["id"], 3);
    const Tesk::Plate before = plateIn(plate);
    const Tesk::Plate after = plateIn(out);
    EXPECT_NE(after.items[0].transform, before.items[0].transform);
    EXPECT_EQ(after.items[1].transform, before.items[1].transform);
    EXPECT_NE(after.items[2].transform, before.items[2].transform);
    const ProgramResult missing = run(plate, {"--object", "Towr"});
    EXPECT_EQ(missing.code, 2);
    EXPECT_THAT(missing.error, HasSubstr("has no such object; it has 2 \"Tower\", 1 \"Slab\", 3"));
}

TEST_F(PlateProgram, APageTellsThePlateSWarningsFromThoseOfParts) {
    Part open = makeBox({0, 0, 0}, {20, 10, 5});
    open.triangles.pop_back();
    const std::string plate = m_folder.write(
        "plate.3mf",
        packageOf(itemXml(1, at(100, 0, 0)) + itemXml(3, at(110, 0, 9, 20.0f, {1, 0, 0})), open));
    const std::string page = m_folder.file("plate.html");
    const json report = jsonOf(plate, {"-q", "--report", page});
    ASSERT_EQ(report["warnings"].size(), 2u) << report["warnings"];
    const json data = dataOf(page);
    EXPECT_EQ(data["warnings"], json::array({report["warnings"][1]}));
    EXPECT_EQ(data["warnings"][0]["code"], "parts-overlap");
    EXPECT_EQ(data["objects"][0]["input"]["warnings"].size(), 0u);
    EXPECT_EQ(data["objects"][1]["input"]["warnings"].size(), 1u);
}

TEST_F(PlateProgram, TogetherItIsOnePartAsItLies) {
    const std::string plate =
        m_folder.write("plate.3mf", packageOf(itemXml(2, at(0, 0, 0)) + itemXml(1, at(8, 0, 0))));
    const json report = jsonOf(plate, {"--together", "-q"});
    EXPECT_EQ(report["schema"], "tesk-orient/orient/2");
    EXPECT_EQ(report["input"]["triangles"], 24);
    EXPECT_EQ(run(plate, {"--together", "--object", "Slab"}).code, 2);
    EXPECT_EQ(run(plate, {"--together", "--split"}).code, 2);
    const ProgramResult split = run(plate, {"--split"});
    EXPECT_EQ(split.code, 2);
    EXPECT_THAT(split.error, HasSubstr("a 3MF holds its objects apart already"));
}

TEST_F(PlateProgram, AnItemThatIsMadeFlatIsAnError) {
    const std::string plate = m_folder.write(
        "flat.3mf", packageOf("<item objectid=\"1\" transform=\"1 0 0 0 1 0 0 0 0 5 5 0\"/>"));
    const ProgramResult result = run(plate);
    EXPECT_EQ(result.code, 3);
    EXPECT_THAT(result.error, HasSubstr("flat.3mf: the transform of \"Slab\" makes it flat"));
}

TEST_F(PlateProgram, ObjectsWithoutAPoseAreNamedAndNothingIsWritten) {
    const std::string plate =
        m_folder.write("plate.3mf", packageOf(itemXml(2, at(0, 0, 0)) + itemXml(3, at(60, 0, 0))));
    const std::string out = m_folder.file("out.3mf");
    const ProgramResult result = run(plate, {"--fits", "30x30x30", "-o", out});
    EXPECT_EQ(result.code, 5);
    EXPECT_THAT(result.error, HasSubstr("plate.3mf: \"Tower\": no pose fits 30 × 30 × 30 mm"));
    EXPECT_THAT(result.error, Not(HasSubstr("object 3")));
    EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(PlateProgram, SplitTakesTheBodiesOfAFile) {
    App::TriangleMesh mesh;
    const auto add = [&](const Part& part) {
        const auto first = static_cast<std::int32_t>(mesh.positions.size());
        mesh.positions.insert(mesh.positions.end(), part.positions.begin(), part.positions.end());
        for (const auto& [a, b, c] : part.triangles) {
            mesh.triangles.push_back({a + first, b + first, c + first});
        }
    };
    add(makeBox({0, 0, 10}, {8, 6, 60}));
    add(makeBox({100, 0, 0}, {140, 30, 20}));
    add(makeBox({110, 10, 5}, {120, 20, 15}));
    const std::string file = m_folder.write("two.stl", App::encoderFor(".stl")(mesh));
    EXPECT_EQ(jsonOf(file)["schema"], "tesk-orient/orient/2");
    const std::string out = m_folder.file("out.obj");
    const json objects = jsonOf(file, {"--split", "-o", out})["objects"];
    ASSERT_EQ(objects.size(), 2u);
    EXPECT_EQ(objects[0]["triangles"], 12);
    EXPECT_EQ(objects[1]["triangles"], 24);
    const auto size = App::sizeOf(App::readMeshFile(out, std::nullopt).mesh);
    EXPECT_NEAR(size[2], 20.0, 1e-4);
    EXPECT_THAT(run(file, {"--split"}).out, HasSubstr("\nbody 2: 24 triangles"));
    EXPECT_EQ(jsonOf(file, {"--split", "--object", "2"})["objects"].size(), 1u);
    EXPECT_EQ(run(file, {"--object", "2"}).code, 2);
}

TEST_F(PlateProgram, OtherFormatsHoldAllItemsInTheirPlaces) {
    const std::string plate =
        m_folder.write("plate.3mf", packageOf(itemXml(2, at(0, 0, 0)) + itemXml(1, at(100, 0, 5))));
    const std::string out = m_folder.file("out.stl");
    ASSERT_EQ(run(plate, {"-o", out}).code, 0);
    const App::LoadedPart part = App::readMeshFile(out, std::nullopt);
    EXPECT_EQ(part.mesh.triangles.size(), 24u);
    EXPECT_NEAR(App::sizeOf(part.mesh)[2], 6.0, 1e-4);
}

TEST_F(PlateProgram, BoxesAndLayingFlatGoByObject) {
    const std::string plate = m_folder.write(
        "plate.3mf", packageOf(itemXml(2, at(0, 0, 0)) + itemXml(1, at(100, 0, 5, 30.0f)) +
                               itemXml(2, at(200, 0, 5, 50.0f, {1, 1, 0}))));
    const std::string out = m_folder.file("boxes.stl");
    const ProgramResult box = runTeskOrient({"box", plate, "--json", "-o", out});
    ASSERT_EQ(box.code, 0) << box.error;
    const json boxes = json::parse(box.out);
    EXPECT_EQ(boxes["command"], "box");
    ASSERT_EQ(boxes["objects"].size(), 2u);
    EXPECT_NEAR(boxes["objects"][1]["box"]["volumeMm3"].get<double>(), 3600.0, 0.1);
    // The boxes of boxes are these, also those of further items.
    EXPECT_EQ(App::readMeshFile(out, std::nullopt).mesh.triangles.size(), 36u);
    const auto together = App::sizeOf(App::readMeshFile(plate, std::nullopt).mesh);
    const auto ofBoxes = App::sizeOf(App::readMeshFile(out, std::nullopt).mesh);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(ofBoxes[i], together[i], 1e-3);

    const ProgramResult flat = runTeskOrient({"lay-flat", plate, "--json"});
    const json laid = json::parse(flat.out)["objects"];
    EXPECT_NEAR(laid[0]["sizeAfterMm"][0].get<double>(), 50.0, 1e-3);
    EXPECT_EQ(laid[1]["items"][0]["change"], "turned");
    EXPECT_NEAR(laid[1]["items"][0]["turn"]["angleDeg"].get<double>(), 30.0, 1e-3);
}

TEST_F(PlateProgram, FacesAreKeptOffInTheObjectsOwnFrame) {
    // Upside down on the plate; its top must not lie down.
    const std::string plate =
        m_folder.write("plate.3mf", packageOf(itemXml(1, at(0, 0, 3, 180.0f, {1, 0, 0}))));
    EXPECT_EQ(jsonOf(plate)["objects"][0]["items"][0]["change"], "kept");
    const json item = jsonOf(plate, {"--keep-off", "0,0,1:10"})["objects"][0]["items"][0];
    EXPECT_EQ(item["change"], "turned");
    EXPECT_NEAR(item["turn"]["angleDeg"].get<double>(), 180.0, 1e-3);
}

}  // namespace
