#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "ReadText.h"
#include "bytes/ByteOrder.h"

namespace {

using Tesk::PartFormat;
using Tesk::files::appendNumber;
using testing::ElementsAre;
using testing::HasSubstr;

/// A fan of triangles around the origin.
std::string stlOf(std::uint32_t promised, int triangles, const std::string& header = "") {
    std::string bytes = header;
    bytes.resize(80, ' ');
    appendNumber(bytes, promised);
    for (int i = 0; i < triangles; ++i) {
        const auto x = static_cast<float>(i);
        for (const float value : {0.f, 0.f, 1.f, 0.f, 0.f, 0.f, x, 1.f, 0.f, x + 1, 1.f, 0.f}) {
            appendNumber(bytes, value);
        }
        appendNumber(bytes, std::uint16_t{7});
    }
    return bytes;
}

TEST(BinaryStl, ComesWeldedInTheOrderOfItsCorners) {
    const Tesk::PartFile part = Tesk::readPart(stlOf(2, 2), PartFormat::kStl);
    EXPECT_EQ(part.form, "binary");
    EXPECT_EQ(part.mesh.positions, (Points{{0, 0, 0}, {0, 1, 0}, {1, 1, 0}, {2, 1, 0}}));
    EXPECT_EQ(part.mesh.triangles, (Triangles{{0, 1, 2}, {0, 2, 3}}));
    EXPECT_TRUE(part.warnings.empty());
}

TEST(BinaryStl, KeepsItsSoupWhereAsked) {
    Tesk::ReadOptions options;
    options.weldsVertices = false;
    const Tesk::PartFile part = Tesk::readPart(stlOf(2, 2), PartFormat::kStl, options);
    EXPECT_EQ(part.mesh.positions.size(), 6u);
    EXPECT_EQ(part.mesh.triangles, (Triangles{{0, 1, 2}, {3, 4, 5}}));
}

TEST(BinaryStl, MayBeginWithTheWordOfTheTextForm) {
    EXPECT_EQ(Tesk::readPart(stlOf(2, 2, "solid part"), PartFormat::kStl).form, "binary");
    std::string damaged = stlOf(3, 2, "solid part");
    damaged[70] = '\0';
    EXPECT_THAT(troubleOf(damaged, PartFormat::kStl), HasSubstr("declares 3 triangles"));
}

TEST(BinaryStl, BytesTooManyAreAWarning) {
    const Tesk::PartFile part = Tesk::readPart(stlOf(1, 2), PartFormat::kStl);
    EXPECT_EQ(part.mesh.triangles.size(), 1u);
    EXPECT_THAT(codesOf(part), ElementsAre("extra-bytes"));
    EXPECT_EQ(part.warnings[0].count, 50);
}

TEST(BinaryStl, BytesTooFewAreAnError) {
    EXPECT_EQ(troubleOf(stlOf(10, 3), PartFormat::kStl),
              "is cut short, or not an STL file: its header declares 10 triangles (584 bytes), but "
              "it has "
              "234 bytes, enough for 3");
    EXPECT_THAT(troubleOf(stlOf(0xffffffffu, 1), PartFormat::kStl),
                HasSubstr("declares 4294967295 triangles"));
    EXPECT_THAT(troubleOf("too short", PartFormat::kStl), HasSubstr("9 bytes are too few"));
    EXPECT_EQ(troubleOf(stlOf(0, 0), PartFormat::kStl), "contains no triangles");
    EXPECT_EQ(troubleOf("", PartFormat::kStl), "the file is empty (0 bytes)");
}

TEST(BinaryStl, TheFirstCornerThatIsNotFiniteIsNamedWithItsPlace) {
    std::string bytes = stlOf(100'000, 100'000);
    for (const std::size_t corner : {299'000u, 150'001u}) {
        const std::size_t at = 84 + corner / 3 * 50 + 12 + corner % 3 * 12;
        std::string value;
        appendNumber(value, std::numeric_limits<float>::infinity());
        bytes.replace(at, 4, value);
    }
    for (const unsigned threads : {1u, 2u, 7u}) {
        Tesk::ReadOptions options;
        options.threads = threads;
        try {
            Tesk::readPart(bytes, PartFormat::kStl, options);
            FAIL();
        } catch (const Tesk::PartFileError& error) {
            EXPECT_STREQ(error.what(),
                         "vertex 150002 has a coordinate that is not finite: (inf, 1, 0) (at byte "
                         "2500108)");
            EXPECT_EQ(error.offset(), 84 + 50'000u * 50 + 12 + 12);
        }
    }
}

TEST(BinaryStl, TooManyTrianglesAreRefused) {
    Tesk::ReadOptions options;
    options.maxTriangles = 1;
    EXPECT_THROW(Tesk::readPart(stlOf(2, 2), PartFormat::kStl, options), Tesk::PartFileError);
}

}  // namespace
