#pragma once

namespace Tesk::hull {

/// A point in a plane.
struct PlanePoint {
    double x;
    double y;
};

/// 1 where a, b, c turn to the left (counter-clockwise), −1 to the right, 0 where they are in line:
/// exact, as long as no product overflows or underflows.
int turnOf(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c);

}  // namespace Tesk::hull
