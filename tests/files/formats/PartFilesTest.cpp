#include "TeskPartFiles/PartFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <random>

#include "ReadText.h"

namespace {

namespace fs = std::filesystem;
using Tesk::PartFormat;
using testing::HasSubstr;

constexpr PartFormat kFormats[] = {PartFormat::kStl, PartFormat::kObj, PartFormat::kPly,
                                   PartFormat::kOff, PartFormat::kThreeMf};

/// A folder of the test's own.
class PartFiles : public testing::Test {
 protected:
    PartFiles()
        : m_folder(fs::temp_directory_path() /
                   ("part-files-" + std::to_string(std::random_device()()))) {
        fs::create_directory(m_folder);
    }
    ~PartFiles() override {
        std::error_code ignored;
        fs::remove_all(m_folder, ignored);
    }

    fs::path write(const std::string& name, const std::string& bytes) const {
        const fs::path path = m_folder / fs::path(std::u8string(name.begin(), name.end()));
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }

    fs::path m_folder;
};

Tesk::PartMesh awkwardMesh() {
    const float tiny = std::numeric_limits<float>::denorm_min();
    const float big = std::numeric_limits<float>::max();
    return {{{0.1f, -1e-5f, 1e20f},
             {16777216.0f, 1.0f / 3.0f, tiny},
             {-big, 123456.0f, 0.001f},
             {0.0f, 9999999.0f, 1e7f}},
            {{0, 1, 2}, {0, 2, 3}, {3, 2, 1}, {1, 1, 1}}};
}

std::string whatOf(const fs::path& path) {
    try {
        Tesk::readPart(path);
        return "";
    } catch (const Tesk::PartFileError& error) {
        return error.what();
    }
}

TEST_F(PartFiles, WhatIsWrittenReadsBackToTheSameBits) {
    for (const char* name : {"part.stl", "part.OBJ", "part.ply", "p\xc3\xa4rt.off", "part.3mf"}) {
        const std::string utf8 = name;
        const fs::path path = m_folder / fs::path(std::u8string(utf8.begin(), utf8.end()));
        Tesk::writePart(path, awkwardMesh());
        const Tesk::PartFile part = Tesk::readPart(path);
        EXPECT_EQ(part.mesh, awkwardMesh()) << name;
        EXPECT_TRUE(part.warnings.empty());
        EXPECT_EQ(Tesk::formatOf(path), part.format);
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder), {}), 5) << "a temporary file stayed";
}

TEST_F(PartFiles, TheFirstBytesTellTheFormat) {
    for (const PartFormat format : kFormats) {
        EXPECT_EQ(Tesk::formatOf(std::string_view(Tesk::encodePart(awkwardMesh(), format))),
                  format);
    }
    EXPECT_EQ(Tesk::formatOf(std::string_view("solid\nfacet")), PartFormat::kStl);
    EXPECT_EQ(Tesk::formatOf(std::string_view("PK\5\6")), std::nullopt);
    EXPECT_EQ(Tesk::formatOf(std::string_view()), std::nullopt);
    EXPECT_EQ(Tesk::formatOf(fs::path("part.step")), std::nullopt);
}

TEST_F(PartFiles, ErrorsNameFileAndPlace) {
    const fs::path path = write("part.obj", "v 0 0 0\nf 1 1 2\n");
    try {
        Tesk::readPart(path);
        FAIL();
    } catch (const Tesk::PartFileError& error) {
        EXPECT_EQ(error.line(), 2u);
        EXPECT_EQ(error.trouble(), "a face refers to vertex 2, but the file has 1");
        EXPECT_EQ(error.place(), "line 2: a face refers to vertex 2, but the file has 1");
        EXPECT_EQ(error.what(), error.file() + ": " + error.place());
        EXPECT_THAT(error.file(), HasSubstr("part.obj"));
        EXPECT_EQ(error.offset(), std::nullopt);
    }
}

TEST_F(PartFiles, WhatIsNoFileCannotBeRead) {
    EXPECT_THAT(whatOf(m_folder / "none.stl"), HasSubstr("none.stl: no such file"));
    EXPECT_THAT(whatOf(m_folder), HasSubstr("is a folder"));
    EXPECT_THAT(whatOf(write("empty.stl", "")), HasSubstr("the file is empty"));
    EXPECT_THAT(whatOf(write("part.step", "ISO")),
                HasSubstr("unknown file type .step; supported: .stl, .obj, .ply, .off, .3mf"));
    EXPECT_THROW(Tesk::writePart(m_folder / "part.step", awkwardMesh()), Tesk::PartFileError);
    EXPECT_THROW(Tesk::writePart(m_folder / "none" / "part.stl", awkwardMesh()),
                 Tesk::PartFileError);
}

TEST_F(PartFiles, ProgressAscendsToTheEnd) {
    Tesk::PartMesh mesh;
    for (int i = 0; i < 20'000; ++i) {
        const auto x = static_cast<float>(i);
        for (const Tesk::PartPoint& p : Points{{x, 0, 0}, {x, 1, 0}, {x, 0, 1}}) {
            mesh.positions.push_back(p);
        }
        mesh.triangles.push_back({3 * i, 3 * i + 1, 3 * i + 2});
    }
    for (const PartFormat format : kFormats) {
        std::vector<int> percentages;
        Tesk::ReadOptions options;
        options.progress = [&](int percent) { percentages.push_back(percent); };
        Tesk::readPart(Tesk::encodePart(mesh, format), format, options);
        EXPECT_GT(percentages.size(), 4u) << Tesk::nameOf(format);
        EXPECT_TRUE(std::is_sorted(percentages.begin(), percentages.end()));
        EXPECT_EQ(percentages.back(), 100);
    }
}

TEST_F(PartFiles, WhatProgressThrowsEndsTheReading) {
    struct Enough {};
    for (const PartFormat format : kFormats) {
        Tesk::ReadOptions options;
        options.progress = [](int) { throw Enough(); };
        EXPECT_THROW(Tesk::readPart(Tesk::encodePart(awkwardMesh(), format), format, options),
                     Enough);
    }
}

TEST_F(PartFiles, AnyCutOfASoundFileIsReadOrRefused) {
    for (const PartFormat format : kFormats) {
        const std::string bytes = Tesk::encodePart(awkwardMesh(), format);
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            const std::string trouble = troubleOf(bytes.substr(0, size), format);
            // A text may be cut between two faces, or in a number that is one still.
            EXPECT_TRUE(!trouble.empty() || format == PartFormat::kObj ||
                        (format == PartFormat::kOff && size + 4 > bytes.size()))
                << Tesk::nameOf(format) << " cut at " << size;
        }
    }
}

TEST_F(PartFiles, AnyChangedByteIsReadOrRefused) {
    std::mt19937 random(1);
    for (const PartFormat format : kFormats) {
        const std::string sound = Tesk::encodePart(awkwardMesh(), format);
        for (std::size_t at = 0; at < sound.size(); ++at) {
            std::string bytes = sound;
            bytes[at] = static_cast<char>(random());
            troubleOf(bytes, format);
        }
    }
}

}  // namespace
