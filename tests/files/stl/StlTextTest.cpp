#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ReadText.h"

namespace {

using Tesk::PartFormat;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kFacet =
    "facet normal 0 0 1\n  outer loop\n    vertex 0 0 0\n    vertex 1 0 0\n    vertex 0 1 0\n"
    "  endloop\nendfacet\n";

std::string solid(const std::string& facets, const std::string& name = "") {
    return "solid " + name + "\n" + facets + "endsolid " + name + "\n";
}

Tesk::PartFile read(const std::string& text) {
    return Tesk::readPart(text, PartFormat::kStl);
}

void expectOneTriangle(const std::string& text) {
    const Tesk::PartFile part = read(text);
    EXPECT_EQ(part.form, "ASCII");
    EXPECT_EQ(part.mesh.positions, (Points{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}));
    EXPECT_EQ(part.mesh.triangles, (Triangles{{0, 1, 2}}));
}

TEST(TextStl, IsReadInEveryLayout) {
    const std::string text = solid(kFacet, "part");
    for (const char* lineEnd : {"\n", "\r\n", "\r", " \n", "\t\r\n", "\n\n"}) {
        expectOneTriangle(withLineEnds(text, lineEnd));
    }
    expectOneTriangle("\xef\xbb\xbf" + text);
    expectOneTriangle(" \n" + text);
    expectOneTriangle(text + "\x1a");
    expectOneTriangle(
        "SOLID\nFACET NORMAL 0 0 1 OUTER LOOP VERTEX 0 0 0 Vertex 1 0 0 VERTEX 0 1 0 "
        "ENDLOOP ENDFACET\nENDSOLID");
}

TEST(TextStl, SolidsAreTakenTogetherAndTheirNamesKept) {
    const Tesk::PartFile part =
        read(solid(kFacet, "first half") + solid(kFacet) + solid(kFacet, "facet"));
    EXPECT_EQ(part.mesh.triangles, (Triangles{{0, 1, 2}, {0, 1, 2}, {0, 1, 2}}));
    EXPECT_THAT(part.objectNames, ElementsAre("first half", "facet"));
    EXPECT_TRUE(part.warnings.empty());
}

TEST(TextStl, ASolidThatDoesNotEndIsAWarning) {
    EXPECT_THAT(codesOf(read(std::string("solid\n") + kFacet)), ElementsAre("no-endsolid"));
    EXPECT_THAT(codesOf(read(std::string("solid\n") + kFacet + solid(kFacet))),
                ElementsAre("no-endsolid"));
}

TEST(TextStl, NormalsMayBeMissingOrNonsense) {
    const std::string rest =
        "outer loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\nendfacet\n";
    expectOneTriangle(solid("facet\n" + rest));
    EXPECT_TRUE(read(solid("facet\n" + rest)).warnings.empty());
    for (const char* normal : {"nan nan nan", "0 0", "", "-1.#IND 0 0", "0 0 1e99"}) {
        const std::string text = solid("facet normal " + std::string(normal) + "\n" + rest);
        expectOneTriangle(text);
        EXPECT_THAT(codesOf(read(text)), ElementsAre("bad-normals")) << normal;
    }
}

TEST(TextStl, WhatIsMissingIsNamedWithItsLine) {
    const auto damaged = [](const std::string& from, const std::string& to) {
        std::string text = solid(kFacet);
        text.replace(text.find(from), from.size(), to);
        return troubleOf(text, PartFormat::kStl);
    };
    EXPECT_EQ(damaged("vertex 1 0 0\n", "vertex 1 0\n"), "line 5: a number is missing");
    EXPECT_EQ(damaged("vertex 1 0 0\n", "vertex 1 zero 0\n"), "line 5: \"zero\" is not a number");
    EXPECT_EQ(damaged("vertex 1 0 0\n", "vertex 1 nan 0\n"),
              "line 5: vertex 2 has a coordinate that is not finite (\"nan\")");
    EXPECT_EQ(damaged("vertex 1 0 0\n", "vertex 1e39 0 0\n"),
              "line 5: vertex 2 has a coordinate that is not finite (\"1e39\")");
    EXPECT_EQ(damaged("vertex 1 0 0\n", ""), "line 6: expected \"vertex\", found \"endloop\"");
    EXPECT_EQ(damaged("endloop\n", "vertex 2 2 2\n"),
              "line 7: expected \"endloop\", found \"vertex\"");
    EXPECT_EQ(damaged("endfacet\n", ""), "line 8: expected \"endfacet\", found \"endsolid\"");
    EXPECT_EQ(damaged("facet normal", "face normal"),
              "line 2: expected \"facet\" or \"endsolid\", found \"face\"");
    EXPECT_EQ(damaged("0 0 1\n", "0 0 1 1\n"), "line 2: expected \"outer\", found \"1\"");
    EXPECT_EQ(damaged("endloop\nendfacet\nendsolid \n", ""),
              "line 7: the file ends inside a facet, before \"endloop\"");
}

TEST(TextStl, EmptySolidsHoldNoTriangles) {
    EXPECT_EQ(troubleOf(solid(""), PartFormat::kStl), "contains no triangles");
    EXPECT_THAT(troubleOf(solid(kFacet) + kFacet, PartFormat::kStl),
                StartsWith("line 10: expected \"solid\""));
}

TEST(TextStl, ANulByteIsNamedWithItsLine) {
    std::string text = solid(kFacet);
    text[text.find("1 0 0")] = '\0';
    EXPECT_THAT(troubleOf(text, PartFormat::kStl), HasSubstr("line 5: contains a NUL byte"));
}

}  // namespace
