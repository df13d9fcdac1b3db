#include "plain/PlainBoxRecord.h"

#include <algorithm>
#include <cmath>

namespace {

/// The length of the diagonal of the vertices' axis-aligned box.
double diagonalOf(const PlainHull& hull) {
    UVector3<double> low = hull.points[0];
    UVector3<double> high = hull.points[0];
    for (const UVector3<double>& p : hull.points) {
        for (int c = 0; c < 3; ++c) {
            low[c] = std::min(low[c], p[c]);
            high[c] = std::max(high[c], p[c]);
        }
    }
    return (high - low).GetLength();
}

bool isOrthogonalFrame(const PlainBoxRecord& record) {
    for (const double s : record.squaredLengths) {
        if (!(s > 0.0) || !std::isfinite(s)) return false;
    }
    const std::array<std::pair<int, int>, 3> pairs = {{{0, 1}, {0, 2}, {1, 2}}};
    for (const auto& [i, j] : pairs) {
        const double dot = record.axes[i] | record.axes[j];
        if (dot * dot > 1e-18 * record.squaredLengths[i] * record.squaredLengths[j]) return false;
    }
    return true;
}

bool holdsAllVertices(const PlainHull& hull, const PlainBoxRecord& record) {
    const double diagonal = diagonalOf(hull);
    for (const UVector3<double>& p : hull.points) {
        const UVector3<double> d = p - record.origin;
        for (int m = 0; m < 3; ++m) {
            const double slack = 1e-9 * std::sqrt(record.squaredLengths[m]) * diagonal;
            const double x = d | record.axes[m];
            if (!(record.min[m] - slack <= x && x <= record.max[m] + slack)) return false;
        }
    }
    return true;
}

}  // namespace

PlainBoxRecord plainBoxOver(const PlainHull& hull, const PlainRect& rect,
                            const UVector3<double>& direction, const std::vector<int>& outline) {
    const auto at = [&](int side) { return hull.points[outline[rect.support[side]]]; };
    PlainBoxRecord record;
    record.origin = at(0);
    record.axes = {rect.r0, rect.r1, direction};
    record.squaredLengths = {rect.q[0], rect.q[1], direction | direction};
    record.min[0] = (at(3) - record.origin) | record.axes[0];
    record.max[0] = (at(1) - record.origin) | record.axes[0];
    record.min[1] = 0.0;
    record.max[1] = (at(2) - record.origin) | record.axes[1];
    plainRange(hull, record.origin, direction, record.min[2], record.max[2]);
    record.volume = plainVolume(record);
    record.direction = direction;
    return record;
}

void plainRange(const PlainHull& hull, const UVector3<double>& origin, const UVector3<double>& axis,
                double& min, double& max) {
    min = 0.0;
    max = 0.0;
    for (const UVector3<double>& p : hull.points) {
        const double x = (p - origin) | axis;
        if (x < min) {
            min = x;
        } else if (x > max) {
            max = x;
        }
    }
}

double plainVolume(const PlainBoxRecord& r) {
    return ((r.max[1] - r.min[1]) / r.squaredLengths[1]) * (r.max[0] - r.min[0]) *
           ((r.max[2] - r.min[2]) / r.squaredLengths[2]);
}

PlainSecured plainSecure(const PlainHull& hull, PlainBoxRecord& record) {
    if (!isOrthogonalFrame(record)) return PlainSecured::kDropped;
    if (holdsAllVertices(hull, record)) return PlainSecured::kSound;
    for (int m = 0; m < 3; ++m) {
        plainRange(hull, record.origin, record.axes[m], record.min[m], record.max[m]);
    }
    return PlainSecured::kRetaken;
}

OrientedBox3 plainOrientedBox(const PlainBoxRecord& record) {
    OrientedBox3 box;
    UVector3<double> center = record.origin;
    for (int i = 0; i < 3; ++i) {
        const UVector3<double>& u = record.axes[i];
        const double s = record.squaredLengths[i];
        center += u * ((record.min[i] + record.max[i]) * 0.5 / s);
        const double half = (record.max[i] - record.min[i]) * 0.5;
        box.extent[i] = std::sqrt(static_cast<float>(half * half / s));
        const double largest = std::max({std::fabs(u.x), std::fabs(u.y), std::fabs(u.z)});
        box.axis[i] = (u * (1.0 / largest)).As<float>();
        box.axis[i].Normalize();
    }
    box.center = center.As<float>();
    return box;
}
