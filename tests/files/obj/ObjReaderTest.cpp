#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ReadText.h"
#include "text/Message.h"

namespace {

using Tesk::PartFormat;
using Tesk::files::message;
using testing::ElementsAre;

const std::string kSquare = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";

Tesk::PartFile read(const std::string& text) {
    return Tesk::readPart(text, PartFormat::kObj);
}

std::string trouble(const std::string& text) {
    return troubleOf(text, PartFormat::kObj);
}

TEST(Obj, NumbersComeInEveryForm) {
    const Tesk::PartFile part = read("v .5 -.5 +1\nv 1.e3 1e+03 1E-1\nv\t2.  0 -0 1.0\nf 1 2 3\n");
    EXPECT_EQ(part.mesh.positions,
              (Points{{0.5f, -0.5f, 1.0f}, {1000.0f, 1000.0f, 0.1f}, {2.0f, 0.0f, 0.0f}}));
}

TEST(Obj, IndicesComeInEveryForm) {
    const Triangles square = {{0, 1, 2}, {0, 2, 3}};
    for (const char* face : {"f 1 2 3 4\n", "f 1/2 2/3 3/4 4/5\n", "f 1/2/3 2//5 3/1/ 4//\n",
                             "f -4 -3 -2 -1\n", "f 1 2 \\\n 3 \\\r\n 4\n", "f +1 2 3 4 # corners",
                             "fo 1 2 3 4\n", "f 1 2 3\\\n4\n", "f 1 2 3 4"}) {
        EXPECT_EQ(read(kSquare + face).mesh.triangles, square) << face;
    }
}

TEST(Obj, IsReadInEveryLayout) {
    const std::string text =
        message("# a comment\no square\n", kSquare,
                "vn 0 0 1\nvt nonsense\ng group\nusemtl none\ns off\nl 1 2\np 1\n"
                "f 1 2 3 4  \n");
    for (const char* lineEnd : {"\n", "\r\n", "\r", " \n", "\n\n"}) {
        const Tesk::PartFile part = read(withLineEnds(text, lineEnd));
        EXPECT_EQ(part.mesh.positions.size(), 4u);
        EXPECT_EQ(part.mesh.triangles.size(), 2u);
        EXPECT_THAT(part.objectNames, ElementsAre("square"));
        EXPECT_TRUE(part.warnings.empty());
    }
    EXPECT_EQ(read("\xef\xbb\xbf" + text).mesh.triangles.size(), 2u);
}

TEST(Obj, FacesMayComeBeforeTheirVertices) {
    EXPECT_EQ(read(message("f 1 2 3 4\n", kSquare)).mesh.triangles,
              (Triangles{{0, 1, 2}, {0, 2, 3}}));
}

TEST(Obj, EqualVerticesBecomeOneAndUnusedOnesGo) {
    const Tesk::PartFile part =
        read("v 9 9 9\nv 0 0 0\nv 1 0 0\nv 0 1 0\nv -0 0 0\nv 0 -1 0\nf 2 3 4\nf 5 6 3\n");
    EXPECT_EQ(part.mesh.positions, (Points{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, -1, 0}}));
    EXPECT_EQ(part.mesh.triangles, (Triangles{{0, 1, 2}, {0, 3, 1}}));
}

TEST(Obj, FacesOfOneOrTwoCornersAreLeftOut) {
    const Tesk::PartFile part = read(message(kSquare, "f 1 2\nf 1\nf 1 2 3\n"));
    EXPECT_EQ(part.mesh.triangles.size(), 1u);
    EXPECT_THAT(codesOf(part), ElementsAre("small-faces"));
    EXPECT_EQ(part.warnings[0].count, 2);
}

TEST(Obj, WhatIsMissingIsNamedWithItsLine) {
    const std::string& square = kSquare;
    EXPECT_EQ(trouble(square + "f 1 2 5\n"),
              "line 5: a face refers to vertex 5, but the file has 4");
    EXPECT_EQ(trouble("f 1 2 3\nf 1 2 6\nf 1 2 5\n" + square),
              "line 2: a face refers to vertex 6, but the file has 4");
    EXPECT_EQ(trouble("f 1 2 99999999999\n" + square),
              "line 1: a face refers to vertex 99999999999, but the file has 4");
    EXPECT_EQ(trouble(square + "\nf 0 1 2\n"),
              "line 6: a face refers to vertex 0; vertices are counted from 1");
    EXPECT_EQ(
        trouble(square + "f -5 1 2\n"),
        "line 5: a face refers to vertex -5, counted back from here, but only 4 come before it");
    EXPECT_EQ(trouble("f 1 2 7\n" + square + "f 0 1 2\nv 0 0 0\n"),
              "line 1: a face refers to vertex 7, but the file has 5");
    EXPECT_EQ(trouble("f 1 2 5\n" + square + "f 0 1 2\nv 0 0 0\n"),
              "line 6: a face refers to vertex 0; vertices are counted from 1");
    EXPECT_EQ(trouble(square + "f 1 2 x\n"), "line 5: \"x\" is not a whole number");
    EXPECT_EQ(trouble(square + "f 1 2 /3\n"), "line 5: a whole number is missing");
    EXPECT_EQ(trouble("v 0 0\n"), "line 1: a number is missing");
    EXPECT_EQ(trouble("v 0 0 0\nv 1,5 0 0\n"), "line 2: \"1,5\" is not a number");
    EXPECT_EQ(trouble("v 0 0 0\r\rv inf 0 0\r"),
              "line 3: vertex 2 has a coordinate that is not finite (\"inf\")");
    EXPECT_EQ(trouble(square + "f 1 2 3\nf 1 2"), "line 6: the file ends in a face of 2 corners");
    EXPECT_EQ(trouble("this is no mesh\n"), "contains no faces");
    EXPECT_EQ(trouble(square), "contains no faces");
}

}  // namespace
