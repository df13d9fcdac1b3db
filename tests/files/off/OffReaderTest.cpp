#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ReadText.h"

namespace {

using Tesk::PartFormat;
using testing::HasSubstr;

const std::string kVertices = "0 0 0\n1 0 0\n1 1 0\n0 1 0\n";

void expectSquare(const std::string& text) {
    const Tesk::PartFile part = Tesk::readPart(text, PartFormat::kOff);
    EXPECT_EQ(part.mesh.positions, (Points{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}})) << text;
    EXPECT_EQ(part.mesh.triangles, (Triangles{{0, 1, 2}, {0, 2, 3}})) << text;
    EXPECT_EQ(part.form, "");
}

std::string trouble(const std::string& text) {
    return troubleOf(text, PartFormat::kOff);
}

TEST(Off, TheCountsMayStandAnywhere) {
    for (const char* start : {"OFF\n4 1 0\n", "OFF 4 1 4\n", "4 1 0\n", "OFF # comment\n\n4 1\n",
                              "# comment\nOFF\n# comment\n4 1 0 # comment\n"}) {
        expectSquare(start + kVertices + "4 0 1 2 3\n");
    }
}

TEST(Off, IsReadInEveryLayout) {
    const std::string text = "OFF\n4 1 0\n\n" + kVertices + "\n4  0 1 2 3 ";
    for (const char* lineEnd : {"\n", "\r\n", "\r", " \n"})
        expectSquare(withLineEnds(text, lineEnd));
    expectSquare("\xef\xbb\xbf" + text);
}

TEST(Off, NormalsColoursAndTextureCoordinatesArePassedOver) {
    for (const char* magic : {"COFF", "NOFF", "CNOFF", "STOFF", "STCNOFF"}) {
        expectSquare(std::string(magic) +
                     "\n4 1 0\n0 0 0 1 0 0 255\n1 0 0 .5 .5\n1 1 0\n0 1 0 1\n4 0 1 2 3 255 0 0\n");
    }
}

TEST(Off, OtherKindsAreRefusedByName) {
    EXPECT_EQ(trouble("OFF BINARY\n" + std::string(8, '\0')),
              "line 1: binary OFF is not supported");
    EXPECT_THAT(trouble("4OFF\n4 1 0\n"), HasSubstr("not in three dimensions"));
    EXPECT_EQ(trouble("PLY\n"), "line 1: expected \"OFF\", found \"PLY\"");
}

TEST(Off, WhatIsMissingIsNamedWithItsLine) {
    EXPECT_EQ(trouble("OFF\n1000000000 1 0\n0 0 0\n"),
              "line 2: the header declares 1000000000 vertices, more than a file of 25 bytes can "
              "hold");
    EXPECT_EQ(trouble("OFF\n-1 1 0\n"),
              "line 2: the header declares -1 vertices, more than a file of 11 bytes can hold");
    EXPECT_EQ(trouble("OFF\n4 1 0\n" + kVertices + "4 0 1 2\n"),
              "line 7: face 1 has 3 of its 4 corners");
    EXPECT_EQ(trouble("OFF\n4 1 0\n" + kVertices + "3 0 1 4\n"),
              "line 7: face 1 refers to vertex 4; the file has 4, counted from 0");
    EXPECT_EQ(trouble("OFF\n4 1 0\n" + kVertices), "line 7: the file ends before face 1 of 1");
    EXPECT_EQ(trouble("OFF\n4 1 0\n0 0 0\n0 0\n0 0 0\n0 0 0\n3 0 1 2\n"),
              "line 4: a number is missing");
    EXPECT_EQ(trouble("OFF\n4 1 0\n0 0 0 # and three more\n"),
              "line 4: the file ends before vertex 2 of 4");
    EXPECT_EQ(trouble("OFF\n4 0 0\n" + kVertices), "contains no faces");
}

}  // namespace
