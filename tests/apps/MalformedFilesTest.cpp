// Broken files end in one clear line and a code, or in a result with a warning.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <limits>

#include "RunProgram.h"
#include "tools/ZipMaker.h"

namespace {

using testing::HasSubstr;

struct Expectation {
    const char* file;
    int code;
    const char* text;  ///< in the message or warning; empty for none
};

constexpr const char* kCommands[] = {"orient", "box", "lay-flat"};

constexpr Expectation kSampleFiles[] = {
    {"3mf_missing_model_part.3mf", 0, "does not say which file is its model"},
    {"3mf_model_only.3mf", 3, "contains no build items"},
    {"obj_degenerate.obj", 3, "its one triangle has no area"},
    {"obj_index_out_of_range.obj", 3, "line 23: a face refers to vertex 12, but the file has 8"},
    {"obj_index_zero.obj", 3, "line 16: a face refers to vertex 0"},
    {"ply_corrupt_header.ply", 3, "line 7: unknown PLY type"},
    {"stl_ascii_empty_solid.stl", 3, "contains no triangles"},
    {"stl_ascii_four_vertices.stl", 3, "line 91: expected \"endloop\", found \"vertex\""},
    {"stl_ascii_garbage_bytes.stl", 3, "line 4: "},
    {"stl_ascii_missing_endfacet.stl", 3, "line 2: expected \"facet\""},
    {"stl_ascii_nan_normals.stl", 0, "1 stored normal is not made of finite numbers"},
    {"stl_ascii_zero_area.stl", 0, "1 triangle has no area"},
    {"stl_binary_count_too_big.stl", 3, "declares 1260 triangles"},
    {"stl_binary_solid_header_extra_byte.stl", 0, "1 byte after the last triangle is ignored"},
    {"stl_binary_truncated.stl", 3, "is cut short"},
    {"stl_binary_zero_triangles.stl", 3, "contains no triangles"},
    {"stl_zero_bytes.stl", 3, "the file is empty"},
};

void expectOneLine(const std::string& text) {
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
}

TEST(MalformedFiles, EverySampleEndsAsTheTableSays) {
    const char* folder = std::getenv("TESK_MESH_DIR");
    const std::filesystem::path malformed =
        std::filesystem::path(folder != nullptr ? folder : TESK_MESH_DIR) / "malformed";
    if (!std::filesystem::is_directory(malformed)) {
        GTEST_SKIP() << "no sample meshes in " << malformed;
    }
    std::size_t seen = 0;
    for (const Expectation& expected : kSampleFiles) {
        SCOPED_TRACE(expected.file);
        ++seen;
        for (const char* command : kCommands) {
            // A part without surface has no orientation, but it has a box.
            const bool hasBoxOnly = std::string(expected.file) == "obj_degenerate.obj" &&
                                    std::string(command) != "orient";
            const int code = hasBoxOnly ? 0 : expected.code;
            const ProgramResult result =
                runTeskOrient({command, (malformed / expected.file).string()});
            EXPECT_EQ(result.code, code) << command;
            EXPECT_THAT(result.error,
                        HasSubstr(hasBoxOnly ? "1 triangle has no area" : expected.text));
            EXPECT_THAT(result.error, HasSubstr(expected.file));
            EXPECT_EQ(result.out.empty(), code != 0);
            if (code != 0) expectOneLine(result.error);
        }
    }
    for (const auto& entry : std::filesystem::directory_iterator(malformed)) {
        (void)entry;
        --seen;
    }
    EXPECT_EQ(seen, 0u) << "a file without a row in the table, or the reverse";
}

TEST(MalformedFiles, APartWithoutSurfaceIsRefusedForOrientationOnly) {
    const TemporaryFolder folder;
    const std::string file =
        folder.write("line.obj", "v 0 0 0\nv 10 0 0\nv 30 0 0\nf 1 2 3\nf 1 3 2\n");
    const ProgramResult orient = runTeskOrient({"orient", file});
    EXPECT_EQ(orient.code, 3);
    EXPECT_THAT(orient.error, HasSubstr("none of its 2 triangles has an area"));
    expectOneLine(orient.error);
    const ProgramResult box = runTeskOrient({"box", file});
    EXPECT_EQ(box.code, 0);
    EXPECT_THAT(box.out, HasSubstr("30.000        15.000"));
    EXPECT_THAT(box.out, HasSubstr("Volume 0 mm³."));
    EXPECT_EQ(runTeskOrient({"lay-flat", file}).code, 0);
}

std::string binaryStl(std::uint32_t promised, std::size_t written, float x = 1.0f) {
    std::string bytes(80, 'x');
    bytes.append(reinterpret_cast<const char*>(&promised), 4);
    const float triangle[12] = {0, 0, 1, 0, 0, 0, x, 0, 0, 0, 10, 5};
    for (std::size_t i = 0; i < written; ++i) {
        bytes.append(reinterpret_cast<const char*>(triangle), 48).append(2, '\0');
    }
    return bytes;
}

struct BrokenFile {
    const char* name;
    std::string bytes;
    const char* text;
};

TEST(MalformedFiles, EveryKindOfDamageIsNamed) {
    const float notANumber = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    const BrokenFile files[] = {
        {"empty.stl", "", "the file is empty"},
        {"short.stl", binaryStl(10, 3), "is cut short"},
        {"bomb.stl", binaryStl(0xffffffffu, 1), "declares 4294967295 triangles"},
        {"none.stl", binaryStl(0, 0), "contains no triangles"},
        {"nan.stl", binaryStl(2, 2, notANumber), "vertex 2 has a coordinate that is not finite"},
        {"inf.stl", binaryStl(2, 2, infinite), "vertex 2 has a coordinate that is not finite"},
        {"nan.obj", "v 0 0 0\nv nan 0 0\nv 0 1 0\nf 1 2 3\n", "vertex 2"},
        {"range.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 4\n", "line 4"},
        {"zero.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 0 1 2\n", "line 4"},
        {"words.obj", "this is no mesh\n", "words.obj"},
        {"bomb.ply",
         "ply\nformat ascii 1.0\nelement vertex 1000000000000\nproperty float x\n"
         "property float y\nproperty float z\nend_header\n0 0 0\n",
         "declares 1000000000000 instances"},
        {"bomb.off", "OFF\n1000000000 1000000000 0\n0 0 0\n", "bomb.off"},
        {"range.off", "OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 3\n", "line 6"},
        {"no.3mf", "PK but no archive", "no.3mf"},
        {"checksum.3mf", makeZip({{.name = "_rels/.rels", .content = "x", .wrongCrc = 1}}),
         "\"_rels/.rels\" cannot be unpacked: the archive is damaged (CRC error)"},
        {"twice.3mf", makeZip({{.name = "a", .content = "1"}, {.name = "a", .content = "2"}}),
         "two files with the name \"a\""},
        {"out.3mf", makeZip({{.name = "../a", .content = "1"}}), "leads out through \"..\""},
        {"needs.3mf",
         makeZip({{.name = "3D/3dmodel.model", .content = "<model requiredextensions=\"b\"/>"}}),
         "3D/3dmodel.model, line 1: the model needs the 3MF extension with the prefix \"b\""},
        {"part.step", "ISO-10303-21;",
         "unknown file type .step; supported: .stl, .obj, .ply, .off, .3mf"},
    };
    const TemporaryFolder folder;
    for (const BrokenFile& file : files) {
        SCOPED_TRACE(file.name);
        const std::string path = folder.write(file.name, file.bytes);
        for (const char* command : kCommands) {
            const ProgramResult result = runTeskOrient({command, path});
            EXPECT_EQ(result.code, 3) << command;
            EXPECT_THAT(result.error, HasSubstr(file.name));
            EXPECT_THAT(result.error, HasSubstr(file.text));
            EXPECT_EQ(result.out, "");
            expectOneLine(result.error);
        }
    }
}

TEST(MalformedFiles, AnyCutOfASoundFileEndsCleanly) {
    const TemporaryFolder folder;
    ASSERT_EQ(run(TESK_EXAMPLE_MAKER, {folder.file("example.stl")}).code, 0);
    for (const char* format : {".stl", ".obj", ".ply", ".off", ".3mf"}) {
        const std::string sound = folder.file(std::string("sound") + format);
        ASSERT_EQ(runTeskOrient({"orient", folder.file("example.stl"), "--output", sound}).code, 0);
        const std::string bytes = readAll(sound);
        for (int cut = 1; cut < 16; ++cut) {
            const std::string part =
                folder.write(std::string("cut") + format,
                             bytes.substr(0, bytes.size() * static_cast<std::size_t>(cut) / 16));
            const ProgramResult result = runTeskOrient({"orient", part});
            // A text cut between two lines can be a sound, smaller file.
            EXPECT_TRUE(result.code == 3 || (result.code == 0 && std::strcmp(format, ".obj") == 0))
                << format << " cut at " << cut << "/16: " << result.code << ' ' << result.error;
        }
    }
}

}  // namespace
