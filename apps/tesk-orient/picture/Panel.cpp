#include "picture/Panel.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace App {

namespace {

constexpr int kFine = 3;  ///< samples along each side of a pixel

// Seen from 0.55 rad to the left of the front and 0.42 rad above: sines and cosines.
constexpr double kSinYaw = -0.522687228930659, kCosYaw = 0.852524522059506;
constexpr double kSinPitch = 0.407760453059570, kCosPitch = 0.913088940312308;
constexpr Point kAway = {kSinYaw * kCosPitch, -kCosYaw* kCosPitch, kSinPitch};
constexpr Point kRight = {kCosYaw, kSinYaw, 0.0};
constexpr Point kUp = {-kSinYaw * kSinPitch, kCosYaw* kSinPitch, kCosPitch};

constexpr Color kGround = {0.961f, 0.965f, 0.973f};
constexpr Color kPlain = {0.725f, 0.761f, 0.804f};
constexpr Color kContact = {0.184f, 0.525f, 0.898f};
constexpr Color kOverPlateSteep = {0.957f, 0.725f, 0.259f},
                kOverPlateFlat = {0.847f, 0.251f, 0.122f};
constexpr Color kOverPartSteep = {0.788f, 0.627f, 0.910f}, kOverPartFlat = {0.482f, 0.184f, 0.710f};
constexpr Color kSupport = {0.310f, 0.616f, 0.541f};
constexpr Color kEdge = {0.275f, 0.318f, 0.373f};
constexpr Color kPlate = {0.914f, 0.929f, 0.949f}, kLine = {0.690f, 0.737f, 0.792f};

double dot(const Point& a, const Point& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Color mixed(const Color& a, const Color& b, double share) {
    Color color;
    const auto s = static_cast<float>(share);
    for (std::size_t k = 0; k < 3; ++k) color[k] = a[k] + (b[k] - a[k]) * s;
    return color;
}

Color scaled(const Color& a, double factor) {
    Color color;
    for (std::size_t k = 0; k < 3; ++k) {
        color[k] = std::clamp(a[k] * static_cast<float>(factor), 0.0f, 1.0f);
    }
    return color;
}

Color colorOf(const StandingFacet& facet) {
    switch (facet.kind) {
        case FacetKind::kContact:
            return kContact;
        case FacetKind::kOverPlate:
            return mixed(kOverPlateSteep, kOverPlateFlat, facet.flatness);
        case FacetKind::kOverPart:
            return mixed(kOverPartSteep, kOverPartFlat, facet.flatness);
        case FacetKind::kPlain:
            break;
    }
    return kPlain;
}

/// By a lamp above the viewer's left shoulder; a facet seen from inside as one that looks the other
/// way.
double brightnessOf(Point normal) {
    if (dot(normal, kAway) < 0.0) normal = {-normal[0], -normal[1], -normal[2]};
    Point lamp{};
    for (std::size_t k = 0; k < 3; ++k) lamp[k] = kAway[k] + 0.7 * kUp[k] - 0.45 * kRight[k];
    const double length = std::sqrt(dot(lamp, lamp));
    return 0.66 + 0.4 * std::max(dot(normal, lamp) / length, 0.0);
}

/// What is seen at one fine sample.
struct Sample {
    Color color = kGround;
    std::array<float, 3> normal{};  ///< zero: not the part
    float nearness = -std::numeric_limits<float>::infinity();
};

class Canvas {
 public:
    Canvas(int width, int height, double mmPerPixel, double middleZ)
        : m_width(width * kFine),
          m_height(height * kFine),
          m_scale(kFine / mmPerPixel),
          m_middle{0.0, 0.0, middleZ},
          m_samples(static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height)) {}

    /// Columns and rows of samples, and how near it is.
    Point project(const Point& p) const {
        const Point q = {p[0] - m_middle[0], p[1] - m_middle[1], p[2] - m_middle[2]};
        return {m_width / 2.0 + dot(q, kRight) * m_scale, m_height / 2.0 - dot(q, kUp) * m_scale,
                dot(q, kAway)};
    }

    void draw(const std::array<Point, 3>& corners, const Color& color, const Point& normal);
    void drawPlate(double size);
    void lineEdges();
    Image reduced() const;

 private:
    Sample& at(int x, int y) {
        return m_samples[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                         static_cast<std::size_t>(x)];
    }
    const Sample& at(int x, int y) const { return const_cast<Canvas*>(this)->at(x, y); }
    bool isEdge(const Sample& a, const Sample& b) const;

    int m_width, m_height;
    double m_scale;  ///< samples per mm
    Point m_middle;
    std::vector<Sample> m_samples;
};

/// First and last sample whose middle lies between the least and the greatest of three numbers.
std::array<int, 2> rangeOf(double a, double b, double c, int count) {
    const double low = std::max(std::min({a, b, c}) - 0.5, 0.0);
    const double high = std::min(std::max({a, b, c}) - 0.5, count - 1.0);
    if (!(low <= high)) return {0, -1};
    return {static_cast<int>(std::ceil(low)), static_cast<int>(std::floor(high))};
}

void Canvas::draw(const std::array<Point, 3>& corners, const Color& color, const Point& normal) {
    const Point a = project(corners[0]), b = project(corners[1]), c = project(corners[2]);
    const double whole = (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
    if (whole == 0.0) return;
    const std::array<int, 2> columns = rangeOf(a[0], b[0], c[0], m_width);
    const std::array<int, 2> rows = rangeOf(a[1], b[1], c[1], m_height);
    for (int y = rows[0]; y <= rows[1]; ++y) {
        for (int x = columns[0]; x <= columns[1]; ++x) {
            const double dx = x + 0.5 - a[0], dy = y + 0.5 - a[1];
            const double v = (dx * (c[1] - a[1]) - dy * (c[0] - a[0])) / whole;
            const double w = ((b[0] - a[0]) * dy - (b[1] - a[1]) * dx) / whole;
            if (v < 0.0 || w < 0.0 || v + w > 1.0) continue;
            const auto nearness = static_cast<float>(a[2] + v * (b[2] - a[2]) + w * (c[2] - a[2]));
            Sample& sample = at(x, y);
            if (!(nearness > sample.nearness)) continue;
            sample.nearness = nearness;
            sample.color = color;
            for (std::size_t k = 0; k < 3; ++k) sample.normal[k] = static_cast<float>(normal[k]);
        }
    }
}

/// Behind all else: whatever stands on the plate is nearer than it.
void Canvas::drawPlate(double size) {
    const double half = size / 2.0;
    for (int y = 0; y < m_height; ++y) {
        for (int x = 0; x < m_width; ++x) {
            Sample& sample = at(x, y);
            if (sample.nearness > -std::numeric_limits<float>::infinity()) continue;
            const double across = (x + 0.5 - m_width / 2.0) / m_scale;
            const double up = (m_height / 2.0 - y - 0.5) / m_scale;
            // The point of the plate that is seen here: right · across + up · upwards + away · t.
            const double t = -(m_middle[2] + up * kUp[2]) / kAway[2];
            const double px = kRight[0] * across + kUp[0] * up + kAway[0] * t;
            const double py = kRight[1] * across + kUp[1] * up + kAway[1] * t;
            if (std::fabs(px) > half || std::fabs(py) > half) continue;
            const auto isNear = [&](double v) {
                const double away = std::fabs(v / 10.0 - std::floor(v / 10.0 + 0.5)) * 10.0;
                return away * m_scale < 1.2;
            };
            sample.color = isNear(px) || isNear(py) ? kLine : kPlate;
        }
    }
}

/// Where the surface bends by more than 30°, or ends before another.
bool Canvas::isEdge(const Sample& a, const Sample& b) const {
    const auto isPart = [](const Sample& s) {
        return s.normal[0] != 0.0f || s.normal[1] != 0.0f || s.normal[2] != 0.0f;
    };
    if (!isPart(a) && !isPart(b)) return false;
    if (isPart(a) != isPart(b)) return true;
    float cosine = 0.0f;
    for (std::size_t k = 0; k < 3; ++k) cosine += a.normal[k] * b.normal[k];
    return cosine < 0.866f || std::fabs(a.nearness - b.nearness) * m_scale > 30.0;
}

void Canvas::lineEdges() {
    std::vector<std::array<int, 2>> edges;
    for (int y = 0; y + 1 < m_height; ++y) {
        for (int x = 0; x + 1 < m_width; ++x) {
            if (isEdge(at(x, y), at(x + 1, y)) || isEdge(at(x, y), at(x, y + 1))) {
                edges.push_back({x, y});
            }
        }
    }
    for (const auto& [x, y] : edges) {
        for (const auto& [dx, dy] : {std::array{0, 0}, std::array{1, 0}, std::array{0, 1}}) {
            Sample& sample = at(x + dx, y + dy);
            sample.color = mixed(sample.color, kEdge, 0.75);
        }
    }
}

Image Canvas::reduced() const {
    Image image(m_width / kFine, m_height / kFine, kGround);
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            Color sum{};
            for (int i = 0; i < kFine * kFine; ++i) {
                const Color& part = at(x * kFine + i % kFine, y * kFine + i / kFine).color;
                for (std::size_t k = 0; k < 3; ++k) sum[k] += part[k];
            }
            image.at(x, y) = scaled(sum, 1.0 / (kFine * kFine));
        }
    }
    return image;
}

/// A strip that faces the viewer; no part, so without edges. Every other one is darker, so that one
/// can be told from the next.
void drawColumn(Canvas& canvas, const Column& column, double pitch) {
    const double width = 0.3 * pitch;
    const double square = std::floor(column.x / pitch) + std::floor(column.y / pitch);
    const bool isDark = square / 2.0 != std::floor(square / 2.0);
    const Color color = scaled(kSupport, isDark ? 0.85 : 1.1);
    const auto corner = [&](double side, double z) {
        return Point{column.x + side * kRight[0] * width, column.y + side * kRight[1] * width, z};
    };
    const Point a = corner(-0.5, column.low), b = corner(0.5, column.low);
    const Point c = corner(0.5, column.high), d = corner(-0.5, column.high);
    canvas.draw({a, b, c}, color, {});
    canvas.draw({a, c, d}, color, {});
}

}  // namespace

double scaleFor(const Point& size, int width, int height) {
    const double across = std::sqrt(size[0] * size[0] + size[1] * size[1]);
    const double upright = size[2] * kCosPitch + across * kSinPitch;
    return 1.12 * std::max({across / width, upright / height, 1e-9});
}

Image drawPanel(const StandingPart& part, double plateSize, int width, int height,
                double mmPerPixel) {
    Canvas canvas(width, height, mmPerPixel, part.size[2] / 2.0);
    for (const StandingFacet& facet : part.facets) {
        canvas.draw(facet.corners, scaled(colorOf(facet), brightnessOf(facet.normal)),
                    facet.normal);
    }
    for (const Column& column : part.columns) drawColumn(canvas, column, part.pitch);
    canvas.lineEdges();
    canvas.drawPlate(plateSize);
    return canvas.reduced();
}

}  // namespace App
