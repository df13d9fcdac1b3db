#include "picture/Picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cmath>

#include "picture/Letters.h"
#include "picture/Panel.h"
#include "picture/Png.h"

namespace {

using App::FacetKind;
using App::StandingPart;
using App::TriangleMesh;
using testing::HasSubstr;
using testing::StartsWith;

using Matrix = UMatrix4<float>;

void addBox(TriangleMesh& mesh, const UPoint3<float>& low, const UPoint3<float>& high) {
    const auto first = static_cast<std::int32_t>(mesh.positions.size());
    for (int i = 0; i < 8; ++i) {
        mesh.positions.push_back({(i & 4) != 0 ? high.x : low.x, (i & 2) != 0 ? high.y : low.y,
                                  (i & 1) != 0 ? high.z : low.z});
    }
    constexpr int kSides[6][4] = {{0, 1, 3, 2}, {4, 6, 7, 5}, {0, 4, 5, 1},
                                  {2, 3, 7, 6}, {0, 2, 6, 4}, {1, 5, 7, 3}};
    for (const auto& s : kSides) {
        mesh.triangles.push_back({first + s[0], first + s[1], first + s[2]});
        mesh.triangles.push_back({first + s[0], first + s[2], first + s[3]});
    }
}

/// A foot, and two shelves: the lower one over the plate, the upper one over the lower.
TriangleMesh shelves() {
    TriangleMesh mesh;
    addBox(mesh, {0, 0, 0}, {10, 20, 40});
    addBox(mesh, {10, 0, 10}, {30, 20, 14});
    addBox(mesh, {10, 0, 30}, {30, 20, 34});
    return mesh;
}

double areaOf(const StandingPart& part, FacetKind kind) {
    double area = 0.0;
    for (const App::StandingFacet& facet : part.facets) {
        if (facet.kind != kind) continue;
        const auto& c = facet.corners;
        area += std::fabs((c[1][0] - c[0][0]) * (c[2][1] - c[0][1]) -
                          (c[1][1] - c[0][1]) * (c[2][0] - c[0][0])) /
                2.0;
    }
    return area;
}

TEST(StandingPart, TellsContactFromWhatHangsOverThePlateAndOverThePart) {
    const StandingPart part = App::standingPartOf(shelves(), Matrix(), 55.0f);
    EXPECT_NEAR(areaOf(part, FacetKind::kContact), 200.0, 1e-6);
    EXPECT_NEAR(areaOf(part, FacetKind::kOverPlate), 400.0, 1e-6);
    EXPECT_NEAR(areaOf(part, FacetKind::kOverPart), 400.0, 1e-6);
    EXPECT_EQ(part.size, (App::Point{30.0, 20.0, 40.0}));
}

TEST(StandingPart, ColumnsReachDownToWhatIsBelow) {
    const StandingPart part = App::standingPartOf(shelves(), Matrix(), 55.0f);
    ASSERT_FALSE(part.columns.empty());
    int onPlate = 0, onPart = 0;
    for (const App::Column& column : part.columns) {
        onPlate += column.low == 0.0 && std::fabs(column.high - 10.0) < 1e-9 ? 1 : 0;
        onPart +=
            std::fabs(column.low - 14.0) < 1e-9 && std::fabs(column.high - 30.0) < 1e-9 ? 1 : 0;
    }
    EXPECT_EQ(onPlate, onPart);
    EXPECT_EQ(static_cast<std::size_t>(onPlate + onPart), part.columns.size());
    EXPECT_NEAR(onPlate * part.pitch * part.pitch, 400.0, 40.0);
}

TEST(StandingPart, StandsCentredOnThePlateAfterATurn) {
    const Matrix tipped = Matrix::CreateRotateMatrix(1.5707963f, UVector3<float>(1, 0, 0));
    const StandingPart part = App::standingPartOf(shelves(), tipped, 55.0f);
    EXPECT_NEAR(part.size[1], 40.0, 1e-5);
    EXPECT_NEAR(part.size[2], 20.0, 1e-5);
    double lowest = 1.0;
    for (const App::StandingFacet& facet : part.facets) {
        for (const App::Point& p : facet.corners) lowest = std::min(lowest, p[2]);
    }
    EXPECT_EQ(lowest, 0.0);
    EXPECT_TRUE(part.columns.empty());
}

/// FNV-1a of a picture's colours in 8 bits.
std::uint64_t hashOf(const App::Image& image) {
    std::uint64_t hash = 14695981039346656037u;
    for (const App::Color& color : image.pixels) {
        for (const float c : color) {
            hash ^= static_cast<std::uint64_t>(std::floor(c * 255.0f + 0.5f));
            hash *= 1099511628211u;
        }
    }
    return hash;
}

TEST(Panel, HasTheSameColoursOnEveryPlatform) {
    const Matrix turn = Matrix::CreateRotateMatrix(0.7f, UVector3<float>(1, 2, 3));
    const StandingPart part = App::standingPartOf(shelves(), turn, 55.0f);
    const double scale = App::scaleFor(part.size, 240, 180);
    EXPECT_EQ(hashOf(App::drawPanel(part, 60.0, 240, 180, scale)), 2783219776099465867u);
}

TEST(Panel, ShowsThePartInTheMiddleAndThePlateAroundIt) {
    const StandingPart part = App::standingPartOf(shelves(), Matrix(), 55.0f);
    const App::Image image =
        App::drawPanel(part, 60.0, 240, 180, App::scaleFor(part.size, 240, 180));
    const App::Color ground = image.at(0, 0);
    EXPECT_NE(image.at(120, 90), ground);
    int support = 0, ofPart = 0;
    for (const App::Color& c : image.pixels) {
        support += c[1] > c[0] * 1.3f && c[1] > c[2] ? 1 : 0;
        ofPart += c[2] > c[0] && c[2] < 0.87f && c[0] > 0.4f ? 1 : 0;
    }
    EXPECT_GT(support, 500);
    EXPECT_GT(ofPart, 5'000);
}

std::uint32_t bigEndianAt(const std::string& bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

TEST(Png, UnpacksToTheRowsThatWentIn) {
    App::Image image(3, 2, {0.0f, 0.5f, 1.0f});
    image.at(2, 1) = {1.0f, 0.0f, 0.2f};
    const std::string png = App::pngOf(image);
    EXPECT_THAT(png, StartsWith("\x89PNG\r\n\x1a\n"));
    EXPECT_EQ(bigEndianAt(png, 16), 3u);
    EXPECT_EQ(bigEndianAt(png, 20), 2u);
    const std::size_t data = png.find("IDAT") + 4;
    const std::uint32_t length = bigEndianAt(png, data - 8);
    std::string rows(2 * (1 + 9), '\0');
    auto size = static_cast<uLongf>(rows.size());
    ASSERT_EQ(uncompress(reinterpret_cast<Bytef*>(rows.data()), &size,
                         reinterpret_cast<const Bytef*>(png.data() + data), length),
              Z_OK);
    ASSERT_EQ(size, rows.size());
    for (std::size_t i = 11; i < 20; ++i) {  // the second row, as differences from the first
        rows[i] = static_cast<char>(rows[i] + rows[i - 10]);
    }
    EXPECT_EQ(rows.substr(1, 3), std::string("\x00\x80\xff", 3));
    EXPECT_EQ(rows.substr(17, 3), std::string("\xff\x00\x33", 3));
    const auto sum = crc32(0, reinterpret_cast<const Bytef*>(png.data() + data - 4), length + 4);
    EXPECT_EQ(bigEndianAt(png, data + length), sum);
}

TEST(Letters, StayInsideTheImage) {
    App::Image image(20, 10, {1, 1, 1});
    App::writeText(image, -5, -3, "As it lies 0123456789", {0, 0, 0});
    EXPECT_TRUE(std::any_of(image.pixels.begin(), image.pixels.end(),
                            [](const App::Color& c) { return c[0] == 0.0f; }));
}

TEST(Picture, SaysBothPosesFigures) {
    OptimizeOrient::BuildPose lies, chosen;
    lies.measures.height = 40.0f;
    lies.measures.footprintX = 30.0f;
    lies.measures.footprintY = 20.0f;
    lies.cost.supportVolume = 27'300.0f;
    chosen = lies;
    chosen.cost.supportVolume = 0.0f;
    const std::string svg =
        App::pictureOf(shelves(), lies, chosen, 2, 55.0f, App::PictureFormat::kSvg);
    EXPECT_THAT(svg, HasSubstr(">27 m support, 40.0 mm high<"));
    EXPECT_THAT(svg, HasSubstr(">no support, 40.0 mm high<"));
    EXPECT_THAT(svg, HasSubstr(">Pose 2<"));
    const auto png = App::PictureFormat::kPng;
    EXPECT_EQ(App::pictureOf(shelves(), lies, chosen, 2, 55.0f, png),
              App::pictureOf(shelves(), lies, chosen, 2, 55.0f, png));
}

}  // namespace
