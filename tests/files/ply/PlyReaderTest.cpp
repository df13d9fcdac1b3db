#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "ReadText.h"
#include "bytes/ByteOrder.h"

namespace {

using Tesk::PartFormat;
using Tesk::files::appendNumber;
using testing::ElementsAre;
using testing::HasSubstr;

const Points kCorners = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
const Triangles kSquare = {{0, 1, 2}, {0, 2, 3}};

std::string headerOf(const std::string& form, const std::string& scalar = "float",
                     const std::string& count = "uchar", const std::string& index = "int") {
    return "ply\nformat " + form + " 1.0\nelement vertex 4\nproperty " + scalar + " x\nproperty " +
           scalar + " y\nproperty " + scalar + " z\nelement face 1\nproperty list " + count + " " +
           index + " vertex_indices\nend_header\n";
}

const std::string kTextBody = "0 0 0\n1 0 0\n1 1 0\n0 1 0\n4 0 1 2 3\n";

std::string asciiHeader() {
    return headerOf("ascii");
}

/// Appends a number in either byte order.
template <class Number>
void append(std::string& bytes, Number value, bool isBigEndian) {
    const std::size_t start = bytes.size();
    appendNumber(bytes, value);
    if (isBigEndian) std::reverse(bytes.begin() + static_cast<std::ptrdiff_t>(start), bytes.end());
}

template <class Scalar, class Count, class Index>
std::string binaryBody(bool isBigEndian) {
    std::string bytes;
    for (const Tesk::PartPoint& p : kCorners) {
        for (const float value : {p.x, p.y, p.z}) {
            append(bytes, static_cast<Scalar>(value), isBigEndian);
        }
    }
    append(bytes, Count{4}, isBigEndian);
    for (int corner = 0; corner < 4; ++corner) {
        append(bytes, static_cast<Index>(corner), isBigEndian);
    }
    return bytes;
}

void expectSquare(const std::string& bytes, const std::string& form) {
    const Tesk::PartFile part = Tesk::readPart(bytes, PartFormat::kPly);
    EXPECT_EQ(part.form, form);
    EXPECT_EQ(part.mesh.positions, kCorners);
    EXPECT_EQ(part.mesh.triangles, kSquare);
    EXPECT_TRUE(part.warnings.empty());
}

template <class Scalar, class Count, class Index>
void expectTypes(const std::string& scalar, const std::string& count, const std::string& index) {
    SCOPED_TRACE(scalar + " " + count + " " + index);
    expectSquare(headerOf("binary_little_endian", scalar, count, index) +
                     binaryBody<Scalar, Count, Index>(false),
                 "binary");
    expectSquare(headerOf("binary_big_endian", scalar, count, index) +
                     binaryBody<Scalar, Count, Index>(true),
                 "binary");
    expectSquare(headerOf("ascii", scalar, count, index) + kTextBody, "ASCII");
}

std::string trouble(const std::string& bytes) {
    return troubleOf(bytes, PartFormat::kPly);
}

TEST(Ply, EveryTypeIsReadInEveryForm) {
    expectTypes<float, std::uint8_t, std::int32_t>("float", "uchar", "int");
    expectTypes<double, std::int8_t, std::uint32_t>("double", "char", "uint");
    expectTypes<float, std::int16_t, std::uint16_t>("float32", "short", "ushort");
    expectTypes<double, std::uint16_t, std::int16_t>("float64", "uint16", "int16");
    expectTypes<std::int32_t, std::int32_t, std::int8_t>("int32", "int32", "int8");
    expectTypes<std::uint8_t, std::uint32_t, std::uint8_t>("uint8", "uint32", "uint8");
    expectTypes<std::int16_t, float, double>("int16", "float", "double");
}

TEST(Ply, HeadersComeInEveryLayout) {
    for (const char* lineEnd : {"\n", "\r\n", "\r", " \n", "\t \r\n"}) {
        expectSquare(withLineEnds(asciiHeader() + kTextBody, lineEnd), "ASCII");
        expectSquare(withLineEnds(headerOf("binary_little_endian"), lineEnd) +
                         binaryBody<float, std::uint8_t, std::int32_t>(false),
                     "binary");
    }
    std::string commented = asciiHeader();
    for (const char* line : {"format", "element vertex", "property float y", "end_header"}) {
        commented.insert(commented.rfind(line), "comment end_header\nobj_info any thing\n  ");
    }
    expectSquare("\xef\xbb\xbf" + commented + "\n" + kTextBody, "ASCII");
}

TEST(Ply, ABodyMayBeginWithTheByteOfALineEnd) {
    for (const char first : {'\n', '\r'}) {
        for (const char* lineEnd : {"\n", "\r\n"}) {
            std::string header = headerOf("binary_little_endian", "uchar");
            std::string body = binaryBody<std::uint8_t, std::uint8_t, std::int32_t>(false);
            body[0] = first;
            Tesk::ReadOptions options;
            options.weldsVertices = false;
            const Tesk::PartFile part =
                Tesk::readPart(withLineEnds(header, lineEnd) + body, PartFormat::kPly, options);
            EXPECT_EQ(part.mesh.positions[0], (Tesk::PartPoint{static_cast<float>(first), 0, 0}));
        }
    }
}

TEST(Ply, OtherElementsAndPropertiesArePassedOver) {
    const std::string header =
        "ply\nformat ascii 1.0\nelement material 2\nproperty list uchar float colours\n"
        "property int id\nelement face 1\nproperty uchar flags\n"
        "property list uchar int vertex_index\nproperty list uchar float texcoord\n"
        "element vertex 4\nproperty uchar red\nproperty float z\nproperty float y\n"
        "property list uchar int more\nproperty double x\nelement edge 1\nproperty int a\n"
        "end_header\n";
    const std::string body =
        "2 .5 .5 7\n0 8\n9 4 0 1 2 3 2 0.5 0.5\n255 0 0 0 0\n255 0 0 1 5 1\n255 0 1 0 1\n"
        "255 0 1 2 5 6 0\n1\n";
    expectSquare(header + body, "ASCII");
}

TEST(Ply, StripsAreCutWithTurnedEveryOtherTriangle) {
    const std::string header =
        "ply\nformat ascii 1.0\nelement vertex 4\nproperty float x\nproperty float y\n"
        "property float z\nelement tristrips 1\nproperty list int int vertex_indices\nend_header\n";
    const Tesk::PartFile part = Tesk::readPart(
        header + "0 0 0\n1 0 0\n0 1 0\n1 1 0\n9 0 1 2 3 3 -1 3 2 1\n", PartFormat::kPly);
    EXPECT_EQ(part.mesh.triangles, (Triangles{{0, 1, 2}, {2, 1, 3}, {3, 2, 1}}));
}

TEST(Ply, FacesOfOneOrTwoCornersAreLeftOut) {
    std::string header = asciiHeader();
    header.replace(header.find("face 1"), 6, "face 3");
    const Tesk::PartFile part = Tesk::readPart(header + kTextBody + "2 0 1\n0\n", PartFormat::kPly);
    EXPECT_EQ(part.mesh.triangles, kSquare);
    EXPECT_THAT(codesOf(part), ElementsAre("small-faces"));
}

TEST(Ply, HeadersThatMakeNoSenseAreNamedWithTheirLine) {
    const auto damaged = [](const std::string& from, const std::string& to) {
        std::string text = asciiHeader() + kTextBody;
        text.replace(text.find(from), from.size(), to);
        return trouble(text);
    };
    EXPECT_EQ(damaged("ply\n", "plyx\n"),
              "is not a PLY file: it does not begin with a line \"ply\"");
    EXPECT_EQ(damaged("ascii", "asciii"), "line 2: unknown PLY format \"asciii\"");
    EXPECT_EQ(damaged("float x", "flaot x"), "line 4: unknown PLY type \"flaot\"");
    EXPECT_EQ(damaged("format ascii 1.0\n", ""), "line 8: the header has no line \"format\"");
    EXPECT_EQ(damaged("element vertex 4\n", ""), "line 3: a property before any element");
    EXPECT_EQ(damaged("vertex 4", "vertex -4"), "line 3: element vertex counts -4");
    EXPECT_EQ(damaged("vertex 4", "vertex four"), "line 3: \"four\" is not a whole number");
    EXPECT_EQ(damaged("end_header\n", ""), "line 9: unknown PLY header line \"0\"");
    EXPECT_EQ(damaged("float z", "float w"),
              "the header has no element \"vertex\" with x, y and z");
    EXPECT_EQ(damaged("vertex_indices", "corners"),
              "the header has no list \"vertex_indices\" in its element \"face\"");
    EXPECT_EQ(damaged("element face", "element faces"), "contains no faces");
    EXPECT_EQ(damaged("element face", "element vertex"), "the header has \"vertex\" twice");
    EXPECT_THAT(damaged("vertex 4", "vertex 1000000000000"),
                HasSubstr("declares 1000000000000 instances of \"vertex\""));
}

TEST(Ply, BodiesThatMakeNoSenseAreNamedWithTheirLine) {
    const auto damaged = [](const std::string& from, const std::string& to) {
        std::string text = asciiHeader() + kTextBody;
        text.replace(text.rfind(from), from.size(), to);
        return trouble(text);
    };
    EXPECT_EQ(damaged("1 1 0", "1 1"), "line 12: the line, or the file, ends too soon");
    EXPECT_EQ(damaged("1 1 0", "1 one 0"),
              "line 12: \"one\" is not the number that the header declares here");
    EXPECT_EQ(damaged("1 1 0", "1 nan 0"), "line 12: vertex 3 has a coordinate that is not finite");
    EXPECT_EQ(damaged("1 2 3", "1 2 4"),
              "line 14: face 1 refers to vertex 4; the file has 4, counted from 0");
    EXPECT_EQ(damaged("1 2 3", "1 2 -1"),
              "line 14: face 1 refers to vertex -1; the file has 4, counted from 0");
    EXPECT_EQ(damaged("1 2 3", "1 2 .5"),
              "line 14: face 1 refers to vertex 0.5; the file has 4, counted from 0");
    EXPECT_EQ(damaged("4 0 1", "-4 0 1"), "line 14: a list of -4 numbers");
    EXPECT_EQ(damaged("4 0 1", "5 0 1"), "line 14: the line, or the file, ends too soon");
    EXPECT_THAT(damaged("4 0 1", "5e18 0 1"), HasSubstr("line 14: is cut short"));
}

TEST(Ply, ABinaryBodyThatIsCutShortIsNamedWithItsPlace) {
    const std::string header = headerOf("binary_little_endian");
    const std::string body = binaryBody<float, std::uint8_t, std::int32_t>(false);
    const std::string cut = header + body.substr(0, body.size() - 1);
    EXPECT_EQ(trouble(cut), "is cut short: the file ends too soon (at byte " +
                                std::to_string(header.size() + 49) + ")");
    std::string bomb = headerOf("binary_little_endian", "float", "uint");
    bomb += body.substr(0, 48) + "\xff\xff\xff\x7f";
    EXPECT_THAT(trouble(bomb), HasSubstr("is cut short"));
}

}  // namespace
