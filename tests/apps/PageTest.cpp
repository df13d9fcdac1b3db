#include "page/Page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "page/Base64.h"
#include "page/PageAssets.h"
#include "page/PageMesh.h"

namespace {

using App::Json;
using App::TriangleMesh;
using testing::HasSubstr;
using testing::Not;

std::vector<unsigned char> bytesOf(const std::string& base64) {
    static const std::string digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::vector<unsigned char> bytes;
    unsigned int group = 0;
    int bits = 0;
    for (const char c : base64) {
        if (c == '=') break;
        group = group << 6 | static_cast<unsigned int>(digits.find(c));
        bits += 6;
        if (bits < 8) continue;
        bits -= 8;
        bytes.push_back(static_cast<unsigned char>(group >> bits));
    }
    return bytes;
}

unsigned int numberAt(const std::vector<unsigned char>& bytes, std::size_t index, int bits) {
    unsigned int number = 0;
    const auto width = static_cast<std::size_t>(bits / 8);
    for (std::size_t k = 0; k < width; ++k) number |= bytes[index * width + k] << (8 * k);
    return number;
}

TriangleMesh tetrahedron() {
    return {{{0, 0, 0}, {10, 3.7f, -1.3f}, {0, 20, 0}, {0, 0, -7}, {99, 99, 99}},
            {{0, 1, 2}, {0, 2, 3}, {0, 3, 1}, {1, 3, 2}}};
}

/// A sheet of steps × steps squares that is gently curved.
TriangleMesh sheet(int steps) {
    TriangleMesh mesh;
    for (int i = 0; i <= steps; ++i) {
        for (int j = 0; j <= steps; ++j) {
            const auto x = static_cast<float>(i), y = static_cast<float>(j);
            mesh.positions.push_back({x, y, x * x * 0.001f + y * 0.5f});
        }
    }
    const auto at = [&](int i, int j) { return i * (steps + 1) + j; };
    for (int i = 0; i < steps; ++i) {
        for (int j = 0; j < steps; ++j) {
            mesh.triangles.push_back({at(i, j), at(i + 1, j), at(i + 1, j + 1)});
            mesh.triangles.push_back({at(i, j), at(i + 1, j + 1), at(i, j + 1)});
        }
    }
    return mesh;
}

Json poseValue() {
    return {{"rank", 1}, {"heightMm", 7.0}};
}

App::PageInput inputOf(const TriangleMesh& mesh, const std::string& name) {
    App::PageInput input{name, {{"overhangAngleDeg", 55.0}}, Json::array(), {}};
    const Json result = {{"input", {{"file", "/home/me/secret/part.stl"}, {"triangles", 4}}},
                         {"chosenRank", 1},
                         {"asItLies", poseValue()},
                         {"poses", {poseValue()}}};
    input.objects.push_back({name, "", 1, "Best: " + name, result, &mesh});
    return input;
}

/// The JSON in a page.
std::string dataIn(const std::string& page) {
    const std::string start = "id=\"data\">";
    const std::size_t from = page.find(start) + start.size();
    return page.substr(from, page.find("</script>", from) - from);
}

TEST(Base64, PadsAsTheStandardsExamplesDo) {
    const auto text = [](const std::string& plain) {
        return App::base64Of({reinterpret_cast<const unsigned char*>(plain.data()), plain.size()});
    };
    EXPECT_EQ(text(""), "");
    EXPECT_EQ(text("f"), "Zg==");
    EXPECT_EQ(text("fo"), "Zm8=");
    EXPECT_EQ(text("foo"), "Zm9v");
    EXPECT_EQ(text("foobar"), "Zm9vYmFy");
    EXPECT_EQ(text("\xff\xfe"), "//4=");
}

TEST(PageMesh, PositionsComeBackToHalfAStep) {
    const TriangleMesh mesh = tetrahedron();
    const Json value = App::pageMeshOf(mesh, 100);
    EXPECT_EQ(value["vertices"], 4) << "the unused vertex stayed";
    EXPECT_EQ(value["triangles"], 4);
    EXPECT_EQ(value["indexBits"], 16);
    EXPECT_EQ(value["deviationMm"], 0.0);
    const auto positions = bytesOf(value["positions"].get<std::string>());
    const auto indices = bytesOf(value["indices"].get<std::string>());
    ASSERT_EQ(positions.size(), 4u * 3u * 2u);
    ASSERT_EQ(indices.size(), 4u * 3u * 2u);
    for (std::size_t corner = 0; corner < 12; ++corner) {
        const auto vertex = static_cast<std::size_t>(mesh.triangles[corner / 3][corner % 3]);
        const float* expected = &mesh.positions[vertex].x;
        for (std::size_t k = 0; k < 3; ++k) {
            const double step = value["stepMm"][k].get<double>();
            const unsigned int number =
                numberAt(positions, numberAt(indices, corner, 16) * 3 + k, 16);
            EXPECT_NEAR(value["originMm"][k].get<double>() + number * step,
                        static_cast<double>(expected[k]), step * 0.5001);
        }
    }
}

TEST(PageMesh, AFlatMeshHasOneNumberAcross) {
    const TriangleMesh flat = {{{0, 0, 3}, {1, 0, 3}, {0, 1, 3}}, {{0, 1, 2}}};
    const Json value = App::pageMeshOf(flat, 10);
    EXPECT_EQ(value["stepMm"][2], 0.0);
    EXPECT_EQ(value["originMm"][2], 3.0);
}

TEST(PageMesh, ManyVerticesAreNumberedByThirtyTwoBits) {
    const TriangleMesh mesh = sheet(260);
    const Json value = App::pageMeshOf(mesh, 1'000'000);
    EXPECT_EQ(value["vertices"], 261 * 261);
    EXPECT_EQ(value["indexBits"], 32);
    const auto indices = bytesOf(value["indices"].get<std::string>());
    unsigned int most = 0;
    for (std::size_t i = 0; i < indices.size() / 4; ++i) {
        most = std::max(most, numberAt(indices, i, 32));
    }
    EXPECT_EQ(most, 261u * 261u - 1u);
}

TEST(PageMesh, AMeshAboveTheLimitIsThinnedOutAndKeepsItsCount) {
    const TriangleMesh mesh = sheet(100);
    const Json value = App::pageMeshOf(mesh, 2'000);
    EXPECT_EQ(value["sourceTriangles"], 20'000);
    EXPECT_LE(value["triangles"].get<int>(), 2'000);
    EXPECT_GE(value["triangles"].get<int>(), 100);
    EXPECT_LT(value["deviationMm"].get<double>(), 1.0);
}

TEST(PageMesh, UnconnectedTrianglesAreThinnedOutToo) {
    TriangleMesh heap;
    for (int i = 0; i < 6'000; ++i) {
        const auto x = static_cast<float>(i % 80), y = static_cast<float>(i / 80);
        const auto first = static_cast<std::int32_t>(heap.positions.size());
        for (const UPoint3<float>& p : {UPoint3<float>(x, y, 0), UPoint3<float>(x + 0.9f, y, 1),
                                        UPoint3<float>(x, y + 0.9f, 2)}) {
            heap.positions.push_back(p);
        }
        heap.triangles.push_back({first, first + 1, first + 2});
    }
    EXPECT_LE(App::pageMeshOf(heap, 1'000)["triangles"].get<int>(), 1'500);
}

TEST(Page, NoNameCanEndTheElementThatItStandsIn) {
    const TriangleMesh mesh = tetrahedron();
    const std::string name = "</script></title><img src=x onerror=\"alert('&')\">.stl";
    const std::string page = App::pageOf(inputOf(mesh, name));
    EXPECT_THAT(page, Not(HasSubstr("<img")));
    EXPECT_THAT(page, HasSubstr("<h1 id=\"title\">&lt;/script&gt;&lt;/title&gt;&lt;img src=x "
                                "onerror=&quot;alert('&amp;')&quot;&gt;.stl</h1>"));
    const Json data = Json::parse(dataIn(page));
    EXPECT_EQ(data["title"], name);
    EXPECT_EQ(data["objects"][0]["reason"], "Best: " + name);
}

TEST(Page, ANameThatIsNoUtf8IsMended) {
    const TriangleMesh mesh = tetrahedron();
    const std::string page = App::pageOf(inputOf(mesh, "a\xff.stl"));
    EXPECT_THAT(page, HasSubstr("a\xef\xbf\xbd.stl</h1>"));
}

TEST(Page, HoldsVersionedDataAndTheLicenceOfItsLibrary) {
    const TriangleMesh mesh = tetrahedron();
    const std::string page = App::pageOf(inputOf(mesh, "part.stl"));
    const Json data = Json::parse(dataIn(page));
    EXPECT_EQ(data["schema"], "tesk-orient/page/1");
    EXPECT_EQ(data["filament"]["densityGPerCm3"], 1.24);
    EXPECT_EQ(data["objects"][0]["mesh"]["triangles"], 4);
    EXPECT_THAT(page, HasSubstr("three.js authors"));
    EXPECT_THAT(page, HasSubstr("Permission is hereby granted, free of charge"));
    for (const char* mark : {"@TITLE@", "@POLICY@", "@STYLE@", "@THREE@", "@SCRIPT@", "@DATA@"}) {
        EXPECT_THAT(page, Not(HasSubstr(mark)));
    }
}

TEST(Page, DoesNotTellWhereTheFileLay) {
    const TriangleMesh mesh = tetrahedron();
    const std::string page = App::pageOf(inputOf(mesh, "part.stl"));
    EXPECT_THAT(page, Not(HasSubstr("secret")));
    EXPECT_EQ(Json::parse(dataIn(page))["objects"][0]["input"], Json({{"triangles", 4}}));
}

TEST(Page, IsTheSameEveryTime) {
    const TriangleMesh mesh = sheet(40);
    EXPECT_EQ(App::pageOf(inputOf(mesh, "part.stl")), App::pageOf(inputOf(mesh, "part.stl")));
}

TEST(Page, PartsShareTheLimitOfAPage) {
    const TriangleMesh mesh = sheet(300);
    App::PageInput input = inputOf(mesh, "part.stl");
    input.objects.push_back(input.objects[0]);
    const Json data = Json::parse(dataIn(App::pageOf(input)));
    for (const Json& object : data["objects"]) {
        EXPECT_EQ(object["mesh"]["sourceTriangles"], 180'000);
        EXPECT_LE(object["mesh"]["triangles"].get<int>(), 100'000);
    }
}

}  // namespace
