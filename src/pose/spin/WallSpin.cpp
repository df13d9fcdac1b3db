#include "pose/spin/WallSpin.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <optional>
#include <vector>

#include "MinBoundingBox.h"
#include "TeskDataBasic/Transcendental.h"
#include "orient/turn/TurnedPart.h"
#include "pose/geometry/OuterPoints.h"
#include "pose/mesh/FarthestVertex.h"

namespace Tesk::pose {

namespace {

/// Walls turned by less than this lie along the axes.
constexpr double kStraightRad = 1e-4;

/// What is at least this share of the best will do.
constexpr double kAlike = 0.99;

/// Facets lean less than this from upright to be walls: the sine of 5.7°.
constexpr float kLean = 0.1f;

/// The walls whose normals have about one angle modulo 90°: four times the angle, as a vector as
/// long as their area, so that no trigonometry is needed per facet.
struct WallSum {
    double area = 0.0;
    double cosine4 = 0.0;
    double sine4 = 0.0;

    void add(const WallSum& other) {
        area += other.area;
        cosine4 += other.cosine4;
        sine4 += other.sine4;
    }
};

double angleOfVector(double cosinePart, double sinePart) {
    const double angle = Tesk::angleOf(std::fabs(sinePart), cosinePart);
    return sinePart < 0.0 ? -angle : angle;
}

/// A quarter of a degree or so each; the first begins at angle 0.
constexpr std::size_t kBins = 360;
using WallBins = std::array<WallSum, kBins>;

/// Grows from 0 to 4 with the angle of a vector, at about the same rate.
double turnsOf(double cosinePart, double sinePart) {
    const double share = cosinePart / (std::fabs(cosinePart) + std::fabs(sinePart));
    return sinePart >= 0.0 ? 1.0 - share : 3.0 + share;
}

void addWall(double x, double y, double area, WallBins& bins) {
    const double real2 = x * x - y * y;
    const double imaginary2 = 2.0 * x * y;
    const double real4 = real2 * real2 - imaginary2 * imaginary2;
    const double imaginary4 = 2.0 * real2 * imaginary2;
    const double length = std::sqrt(real4 * real4 + imaginary4 * imaginary4);
    if (!(length > 0.0) || !std::isfinite(area)) return;
    const double place = turnsOf(real4, imaginary4) * (static_cast<double>(kBins) / 4.0);
    const std::size_t bin = std::min(static_cast<std::size_t>(place), kBins - 1);
    bins[bin].add({area, area * real4 / length, area * imaginary4 / length});
}

WallBins wallsOf(const PoseMesh& mesh, const PoseTurn& turn) {
    const UMatrix4<float> m = turn.matrix();
    WallBins bins{};
    const UVector3<float> up = upOf(m);
    const std::size_t count = mesh.areas.size();
    for (std::size_t first = 0; first < count; first += kBlockSize) {
        const BlockBounds& bounds = mesh.normalBounds[first / kBlockSize];
        if (bounds.leastAlong(up) >= kLean || bounds.mostAlong(up) <= -kLean) continue;
        for (std::size_t i = first; i < std::min(first + kBlockSize, count); ++i) {
            const auto along = [&](int axis) {
                return mesh.normalX[i] * m.at(0, axis) + mesh.normalY[i] * m.at(1, axis) +
                       mesh.normalZ[i] * m.at(2, axis);
            };
            if (!(std::fabs(along(2)) < kLean)) continue;
            addWall(static_cast<double>(along(0)), static_cast<double>(along(1)),
                    static_cast<double>(mesh.areas[i]), bins);
        }
    }
    return bins;
}

/// A bin with its neighbours.
WallSum around(const WallBins& bins, std::size_t bin) {
    WallSum sum = bins[(bin + kBins - 1) % kBins];
    sum.add(bins[bin]);
    sum.add(bins[(bin + 1) % kBins]);
    return sum;
}

/// The angle of the most walls modulo 90°, in −45°..45°; nothing without enough of them.
std::optional<double> wallAngle(const PoseMesh& mesh, const PoseTurn& turn) {
    constexpr double kLeastShare = 0.1;
    const WallBins bins = wallsOf(mesh, turn);
    const auto isLess = [](const WallSum& a, const WallSum& b) { return a.area < b.area; };
    // Angles next to 0 fall into the first bin or the last.
    const WallSum straight = std::max(around(bins, 0), around(bins, kBins - 1), isLess);
    WallSum most = straight;
    for (std::size_t bin = 0; bin < kBins; ++bin) {
        const WallSum sum = around(bins, bin);
        if (sum.area > most.area) most = sum;
    }
    if (!(most.area >= kLeastShare * mesh.surface) || most.area == 0.0) return std::nullopt;
    const WallSum& chosen = straight.area >= kAlike * most.area ? straight : most;
    return angleOfVector(chosen.cosine4, chosen.sine4) / 4.0;
}

/// The outline of the footprint through its farthest points in 128 directions: of a round one, the
/// rest lies within 0.03 % of its size beside it.
std::vector<PlanePoint> outlineOf(const PoseMesh& mesh, const PoseTurn& turn) {
    constexpr int kDirections = 128;
    const UMatrix4<float> m = turn.matrix();
    std::vector<PlanePoint> points;
    std::int32_t farthest = -1;
    for (int k = 0; k < kDirections; ++k) {
        const double angle = 2.0 * std::numbers::pi * k / kDirections;
        const UVector3<double> along(Tesk::cosine(angle), Tesk::sine(angle), 0.0);
        farthest = farthestAlong(mesh, turn.turnedBack(along).As<float>(), farthest);
        if (farthest < 0) break;
        const UPoint3<float> p = mesh.placed(farthest) * m;
        points.push_back({static_cast<double>(p.x), static_cast<double>(p.y)});
    }
    return hullOf(points.size(), [&](std::size_t i) { return points[i]; });
}

/// The angle of the footprint's least rectangle; 0 if the footprint as it is does as well.
double rectangleAngle(const PoseMesh& mesh, const PoseTurn& turn) {
    const std::vector<PlanePoint> outline = outlineOf(mesh, turn);
    if (outline.size() < 3) return 0.0;
    const PoseSize present = sizeOf(mesh, turn);
    const auto height = static_cast<float>(std::max(present.alongX, present.alongY));
    std::vector<UPoint3<float>> prism;
    for (const PlanePoint& p : outline) {
        for (const float z : {0.0f, height}) {
            prism.emplace_back(static_cast<float>(p[0]), static_cast<float>(p[1]), z);
        }
    }
    const OrientedBox3 box = MinBoundingBox().minBaseAreaBoxAroundAxis(
        static_cast<int>(prism.size()), prism.data(), {0.0f, 0.0f, 1.0f});
    const UVector3<double> axis = box.axis[0].As<double>();
    const double area =
        4.0 * static_cast<double>(box.extent[0]) * static_cast<double>(box.extent[1]);
    const bool isBox = std::fabs(axis.z) < 1e-3 && area > 0.0;
    if (!isBox || present.alongX * present.alongY * kAlike <= area) return 0.0;
    return angleOfVector(axis.x, axis.y);
}

/// Turns back by an angle, which is all that is between the part and the axes, and on by a multiple
/// of 90° that lays the long side along X, for the least angle in all.
PoseTurn straightened(const PoseMesh& mesh, const PoseTurn& turn, double angleRad) {
    constexpr double kQuarter = std::numbers::pi / 2.0;
    constexpr double kSquare = 1.0 + 1e-4;
    const double rest = angleRad - kQuarter * std::floor(angleRad / kQuarter + 0.5);
    const double back = std::fabs(rest) < kStraightRad ? 0.0 : -rest;
    const PoseTurn straight = back == 0.0 ? turn : turn.then(PoseTurn::aboutUp(back));
    const PoseSize footprint = sizeOf(mesh, straight);
    const bool isAcross = footprint.alongY > footprint.alongX * kSquare;
    const bool isAlong = footprint.alongX > footprint.alongY * kSquare;
    PoseTurn best = straight;
    bool isFound = false;
    for (int quarters = 0; quarters < 4; ++quarters) {
        if (quarters % 2 == 0 ? isAcross : isAlong) continue;
        const PoseTurn next =
            quarters == 0 ? straight : straight.then(PoseTurn::aboutUp(quarters * kQuarter));
        // By more than rounding: of equal ones the first stays.
        if (!isFound || next.trace() > best.trace() + 1e-6) best = next;
        isFound = true;
    }
    return best;
}

}  // namespace

PoseSize sizeOf(const PoseMesh& mesh, const PoseTurn& turn) {
    const UBox3<float> box = boxThrough(mesh.flat, mesh.flat.placement * turn.matrix());
    return {static_cast<double>(box.MaxX() - box.MinX()),
            static_cast<double>(box.MaxY() - box.MinY()),
            static_cast<double>(box.MaxZ() - box.MinZ())};
}

PoseTurn withWallsAlongAxes(const PoseMesh& mesh, const PoseTurn& turn) {
    const std::optional<double> angle = wallAngle(mesh, turn);
    return straightened(mesh, turn, angle ? *angle : rectangleAngle(mesh, turn));
}

PoseTurn withLeastRectangle(const PoseMesh& mesh, const PoseTurn& turn) {
    return straightened(mesh, turn, rectangleAngle(mesh, turn));
}

}  // namespace Tesk::pose
