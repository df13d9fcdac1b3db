#pragma once

namespace Tesk::hull {

/// A point in a plane.
struct PlanePoint {
    double x;
    double y;
};

/// 1 if a, b, c turn left (counter-clockwise), −1 if they turn right, 0 if they are collinear.
/// Exact as long as no product overflows or underflows.
int turnOf(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c);

}  // namespace Tesk::hull
