#include "plain/PlainAxisBox.h"

#include <algorithm>
#include <cmath>

#include "TeskDataBasic/UPoint2.h"
#include "TeskSDKCommonTools/ConvexHull2.h"

namespace {

using PlanePoints = std::vector<UPoint2<double>>;

UVector3<float> firstAcross(const UVector3<float>& axis) {
    const UVector3<float> u = axis.GetNormal();
    const UVector3<float> e1 = (u * UVector3<float>(0, 0, 1)).GetNormal();
    return e1.IsZeroLength() ? (u * u) * UVector3<float>(1, 0, 0) : e1;
}

/// Two unit vectors across an axis, counter-clockwise about it; the first at a right angle to the
/// coordinate axis that the axis runs along least.
std::array<UVector3<double>, 2> frameAcross(const UVector3<double>& unit) {
    int least = 0;
    for (int c = 1; c < 3; ++c) {
        if (std::fabs(unit[c]) < std::fabs(unit[least])) least = c;
    }
    UVector3<double> coordinateAxis;
    coordinateAxis[least] = 1.0;
    const UVector3<double> e1 = (unit * coordinateAxis).GetNormal();
    return {e1, unit * e1};
}

double dot(const UVector2<double>& a, const UVector2<double>& b) {
    return a.x * b.x + a.y * b.y;
}

double length(const UVector2<double>& v) {
    return std::sqrt(dot(v, v));
}

double largerSide(const PlanePoints& points) {
    const auto byX = [](const auto& a, const auto& b) { return a.x < b.x; };
    const auto byY = [](const auto& a, const auto& b) { return a.y < b.y; };
    const auto [left, right] = std::minmax_element(points.begin(), points.end(), byX);
    const auto [bottom, top] = std::minmax_element(points.begin(), points.end(), byY);
    return std::max(right->x - left->x, top->y - bottom->y);
}

/// The outline of the projection: turned counter-clockwise, strictly convex.
PlanePoints outlineAcross(const PlainHull& plain, const std::array<UVector3<double>, 2>& frame) {
    std::vector<double> coordinates;
    for (const UVector3<double>& p : plain.points) {
        const UVector3<double> d = p - plain.points[0];
        coordinates.push_back(d | frame[0]);
        coordinates.push_back(d | frame[1]);
    }
    PlanePoints outline;
    const gte::ConvexHull2 hull(coordinates, static_cast<int>(plain.points.size()));
    for (const int i : hull.getIndices()) {
        outline.emplace_back(coordinates[2 * i], coordinates[2 * i + 1]);
    }
    return outline;
}

/// Whether a corner may go when a and b stay.
bool isNear(const UPoint2<double>& p, const UPoint2<double>& a, const UPoint2<double>& b,
            double tolerance) {
    const UVector2<double> way = p - a;
    const UVector2<double> line = b - a;
    if (length(way) <= tolerance) return true;
    if (length(way) > length(line) + tolerance || dot(way, line) < 0.0) return false;
    return std::fabs(way * line) <= tolerance * length(line);
}

/// From one end of the outline on, each corner is followed by the last one that all those in
/// between are near enough for.
PlanePoints merged(PlanePoints outline, double tolerance) {
    if (outline.size() < 3) return outline;
    const UPoint2<double> first = outline[0];
    const auto end =
        std::max_element(outline.begin(), outline.end(), [&](const auto& a, const auto& b) {
            return dot(a - first, a - first) < dot(b - first, b - first);
        });
    std::rotate(outline.begin(), end, outline.end());
    const std::size_t size = outline.size();
    outline.push_back(outline[0]);
    PlanePoints kept;
    for (std::size_t i = 0; i < size;) {
        kept.push_back(outline[i]);
        std::size_t last = i + 1;
        while (last < size &&
               std::all_of(outline.begin() + i + 1, outline.begin() + last + 1, [&](const auto& p) {
                   return isNear(p, outline[i], outline[last + 1], tolerance);
               })) {
            ++last;
        }
        i = last;
    }
    return kept;
}

/// The side of the least rectangle among those on each edge.
UVector2<double> leastSide(const PlanePoints& outline) {
    UVector2<double> best;
    double leastArea = -1.0;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const UVector2<double> e = outline[(i + 1) % outline.size()] - outline[i];
        double right = 0.0;
        double left = 0.0;
        double top = 0.0;
        for (const UPoint2<double>& p : outline) {
            const UVector2<double> d = p - outline[i];
            right = std::max(right, dot(d, e));
            left = std::max(left, -dot(d, e));
            top = std::max(top, dot(d, UVector2<double>(-e.y, e.x)));
        }
        const double area = (right + left) * top / dot(e, e);
        if (leastArea < 0.0 || area < leastArea) {
            leastArea = area;
            best = e;
        }
    }
    return best;
}

double crossSection(const PlainBoxRecord& r) {
    return (r.max[0] - r.min[0]) * (r.max[1] - r.min[1]) /
           std::sqrt(r.squaredLengths[0] * r.squaredLengths[1]);
}

}  // namespace

bool plainHasAxisPlane(const UVector3<float>& axis) {
    return axis == UVector3<float>(0, 0, 1) || firstAcross(axis).GetLength() > 0.5f;
}

std::vector<int> plainAxisPolygon(const gte::ConvexHull3& hull, const UVector3<float>& axis) {
    const UVector3<float> u = axis.GetNormal();
    const UVector3<float> e1 = firstAcross(axis);
    const UVector3<float> e2 = e1 * u;
    std::vector<double> coordinates;
    bool isRightHanded = true;
    for (const UPoint3<float>& p : hull.getVertices()) {
        float x = 0.0f;
        float y = 0.0f;
        if (axis == UVector3<float>(1, 0, 0)) {
            x = p.y;
            y = p.z;
        } else if (axis == UVector3<float>(0, 1, 0)) {
            x = p.x;
            y = p.z;
            isRightHanded = false;  // z × x is y, so x × z is −y
        } else if (axis == UVector3<float>(0, 0, 1)) {
            x = p.x;
            y = p.y;
        } else {
            const UPoint3<float> q = p - u * p.Dot(u);
            x = q.Dot(e1);
            y = q.Dot(e2);
            isRightHanded = false;  // e1 × (e1 × u) is −u
        }
        coordinates.push_back(static_cast<double>(x));
        coordinates.push_back(static_cast<double>(y));
    }
    const gte::ConvexHull2 flat(coordinates, static_cast<int>(hull.getVertices().size()));
    std::vector<int> polygon = flat.getIndices();
    if (!isRightHanded) std::reverse(polygon.begin(), polygon.end());
    return polygon;
}

std::optional<PlainBoxRecord> plainSingleAxisBox(const gte::ConvexHull3& hull,
                                                 const PlainHull& plain,
                                                 const UVector3<float>& axis) {
    const std::vector<int> polygon = plainAxisPolygon(hull, axis);
    if (polygon.size() < 3) return std::nullopt;
    const UVector3<double> direction = axis.As<double>();
    const PlainRect rect = plainMinRect(plain.points, direction, polygon);
    PlainBoxRecord record = plainBoxOver(plain, rect, direction, polygon);
    record.area = rect.area;
    if (plainSecure(plain, record) != PlainSecured::kSound) return std::nullopt;
    if (!(record.min[0] <= record.max[0] && record.min[1] <= record.max[1])) return std::nullopt;
    return record;
}

PlainBoxRecord plainDoubleAxisBox(const PlainHull& plain, const UVector3<float>& axis) {
    const UVector3<double> unit = axis.As<double>().GetNormal();
    const auto frame = frameAcross(unit);
    PlanePoints outline = outlineAcross(plain, frame);
    outline = merged(outline, 1e-9 * largerSide(outline));
    PlainBoxRecord record;
    record.origin = plain.points[0];
    record.axes[0] = frame[0];
    if (outline.size() > 1) {
        const UVector2<double> side = leastSide(outline);
        record.axes[0] = (frame[0] * side.x + frame[1] * side.y).GetNormal();
    }
    record.axes[1] = unit * record.axes[0];
    record.axes[2] = axis.As<double>();
    for (int i = 0; i < 3; ++i) {
        record.squaredLengths[i] = record.axes[i] | record.axes[i];
        plainRange(plain, record.origin, record.axes[i], record.min[i], record.max[i]);
    }
    record.area = crossSection(record) * record.axes[2].GetLength();
    return record;
}

PlainBoxRecord plainAxisBox(const gte::ConvexHull3& hull, const UVector3<float>& axis) {
    const PlainHull plain(hull, static_cast<int>(hull.getVertices().size()));
    const std::optional<PlainBoxRecord> single = plainSingleAxisBox(hull, plain, axis);
    const PlainBoxRecord least = plainDoubleAxisBox(plain, axis);
    return single && single->area <= least.area * (1.0 + 1e-6) ? *single : least;
}
