#include "minbox/box/Vector.h"

#include <cmath>

namespace Tesk::minbox {

Vector anyOrthogonal(const Vector& v) {
    // The product with the coordinate axis of the smallest component is the longest.
    const Vector size{std::fabs(v.x), std::fabs(v.y), std::fabs(v.z)};
    if (size.x <= size.y && size.x <= size.z) return v * Vector(1, 0, 0);
    if (size.y <= size.z) return v * Vector(0, 1, 0);
    return v * Vector(0, 0, 1);
}

}  // namespace Tesk::minbox
