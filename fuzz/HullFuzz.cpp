// Any points: the hulls must be exact.

#include <cstdio>
#include <cstdlib>

#include "PointsInput.h"
#include "TeskSDKCommonTools/ConvexHull2.h"
#include "TeskSDKCommonTools/ConvexHull3.h"
#include "checks/HullChecks.h"
#include "checks/PolygonChecks.h"

namespace {

void expectNone(const std::string& fault) {
    if (fault.empty()) return;
    std::fprintf(stderr, "%s\n", fault.c_str());
    std::abort();
}

void checkPlane(const Points& points) {
    std::vector<double> coordinates;
    PlanePoints plane;
    for (const UPoint3<float>& p : points) {
        plane.push_back({static_cast<double>(p.x), static_cast<double>(p.y)});
        coordinates.insert(coordinates.end(), plane.back().begin(), plane.back().end());
    }
    const gte::ConvexHull2 hull(coordinates, static_cast<int>(points.size()));
    expectNone(faultOfPolygon(hull.getIndices(), plane));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const Points points = takePoints(input);
    const gte::ConvexHull3 hull(points.data(), static_cast<int>(points.size()), 3);
    expectNone(faultOf(hull, points));
    checkPlane(points);
    return 0;
}
