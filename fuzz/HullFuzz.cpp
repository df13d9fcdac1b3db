// Any points: the hulls must be exact.

#include <cstdio>
#include <cstdlib>

#include "HullChecks.h"
#include "PointsInput.h"
#include "TeskSDKCommonTools/ConvexHull2.h"
#include "TeskSDKCommonTools/ConvexHull3.h"

namespace {

void checkPlane(const std::vector<UPoint3<float>>& points) {
    std::vector<double> coordinates;
    for (const UPoint3<float>& p : points) {
        coordinates.push_back(static_cast<double>(p.x));
        coordinates.push_back(static_cast<double>(p.y));
    }
    const std::vector<int> corners =
        gte::ConvexHull2(coordinates, static_cast<int>(points.size())).getIndices();
    for (const int corner : corners) {
        if (corner < 0 || corner >= static_cast<int>(points.size())) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const std::vector<UPoint3<float>> points = takePoints(input);
    const gte::ConvexHull3 hull(points.data(), static_cast<int>(points.size()), 3);
    const std::string fault = faultOf(hull, points);
    if (!fault.empty()) {
        std::fprintf(stderr, "%s\n", fault.c_str());
        std::abort();
    }
    checkPlane(points);
    return 0;
}
