#include "picture/Picture.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "page/Base64.h"
#include "picture/Letters.h"
#include "picture/Panel.h"
#include "picture/Png.h"

namespace App {

namespace {

using OptimizeOrient::BuildPose;

constexpr int kWidth = 460, kHeight = 360;  ///< of each of the two
constexpr int kGap = 12;
constexpr int kCaption = 64;
constexpr Color kPaper = {1.0f, 1.0f, 1.0f};
constexpr Color kInk = {0.106f, 0.133f, 0.173f}, kQuiet = {0.333f, 0.376f, 0.431f};

struct Caption {
    std::string title, note;
};

std::string noteOf(const BuildPose& pose) {
    const double filament = std::round(static_cast<double>(pose.cost.supportFilament()));
    const std::string height = fmt::format("{:.1f} mm high", pose.measures.height);
    if (filament == 0.0) return "no support, " + height;
    return filament < 10'000.0 ? fmt::format("{:.0f} mm support, {}", filament, height)
                               : fmt::format("{:.0f} m support, {}", filament / 1000.0, height);
}

/// A plate that the part has room on in both poses.
double plateSizeFor(const Point& a, const Point& b) {
    const double largest = std::max({a[0], a[1], b[0], b[1]});
    return 20.0 * std::ceil(1.2 * largest / 20.0);
}

void paste(Image& to, const Image& from, int left) {
    for (int y = 0; y < from.height; ++y) {
        for (int x = 0; x < from.width; ++x) to.at(left + x, y) = from.at(x, y);
    }
}

std::string svgOf(const Image& image, const std::array<Caption, 2>& captions) {
    const std::string png = pngOf(image);
    const auto* bytes = reinterpret_cast<const unsigned char*>(png.data());
    std::string text = fmt::format(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 {} {}\" "
        "font-family=\"sans-serif\" "
        "font-size=\"16\" text-anchor=\"middle\">\n<rect width=\"100%\" height=\"100%\" "
        "fill=\"#ffffff\"/>\n<image width=\"{}\" height=\"{}\" "
        "href=\"data:image/png;base64,{}\"/>\n",
        image.width, image.height + kCaption, image.width, image.height,
        base64Of({bytes, png.size()}));
    int middle = kWidth / 2;
    for (const Caption& caption : captions) {
        text += fmt::format(
            "<text x=\"{0}\" y=\"{1}\" font-weight=\"bold\" fill=\"#1b222c\">{2}</text>\n"
            "<text x=\"{0}\" y=\"{3}\" fill=\"#55606e\">{4}</text>\n",
            middle, image.height + 26, caption.title, image.height + 50, caption.note);
        middle += kWidth + kGap;
    }
    return text + "</svg>\n";
}

std::string pngWithCaptions(const Image& image, const std::array<Caption, 2>& captions) {
    Image whole(image.width, image.height + kCaption, kPaper);
    paste(whole, image, 0);
    int left = 4;
    for (const Caption& caption : captions) {
        writeText(whole, left, image.height + 12, caption.title, kInk);
        writeText(whole, left, image.height + 38, caption.note, kQuiet);
        left += kWidth + kGap;
    }
    return pngOf(whole);
}

}  // namespace

std::string pictureOf(const TriangleMesh& mesh, const BuildPose& asItLies, const BuildPose& chosen,
                      int rank, float overhangAngleDeg, PictureFormat format) {
    const auto standing = [&](const BuildPose& pose) {
        return standingPartOf(mesh, pose.rotation, overhangAngleDeg);
    };
    const auto sizeOf = [](const BuildPose& pose) {
        const OptimizeOrient::PoseMeasures& m = pose.measures;
        return Point{static_cast<double>(m.footprintX), static_cast<double>(m.footprintY),
                     static_cast<double>(m.height)};
    };
    const Point lying = sizeOf(asItLies), built = sizeOf(chosen);
    const double scale =
        std::max(scaleFor(lying, kWidth, kHeight), scaleFor(built, kWidth, kHeight));
    const double plate = plateSizeFor(lying, built);
    Image image(2 * kWidth + kGap, kHeight, kPaper);
    int left = 0;
    for (const BuildPose* pose : {&asItLies, &chosen}) {
        paste(image, drawPanel(standing(*pose), plate, kWidth, kHeight, scale), left);
        left += kWidth + kGap;
    }
    const std::array<Caption, 2> captions = {Caption{"As it lies in its file", noteOf(asItLies)},
                                             Caption{fmt::format("Pose {}", rank), noteOf(chosen)}};
    return format == PictureFormat::kPng ? pngWithCaptions(image, captions)
                                         : svgOf(image, captions);
}

}  // namespace App
