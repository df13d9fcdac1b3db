#include "PlainAxisBox.h"

#include <algorithm>

#include "TeskSDKCommonTools/ConvexHull2.h"

std::vector<int> plainAxisPolygon(const gte::ConvexHull3& hull, const UVector3<float>& axis) {
    const UVector3<float> u = axis.GetNormal();
    UVector3<float> e1 = (u * UVector3<float>(0, 0, 1)).GetNormal();
    if (e1.IsZeroLength()) e1 = (u * u) * UVector3<float>(1, 0, 0);
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
    std::vector<UVector3<double>> points;
    for (const UPoint3<float>& p : hull.getVertices()) {
        points.push_back((p - UPoint3<float>()).As<double>());
    }
    plainRemoveSteep(points, axis.As<double>(), polygon);
    return polygon;
}

PlainBoxRecord plainAxisBox(const PlainHull& hull, const UVector3<float>& axis,
                            const std::vector<int>& polygon) {
    const UVector3<double> direction = axis.As<double>();
    const PlainRect rect = plainMinRect(hull.points, direction, polygon);
    PlainBoxRecord record = plainBoxOver(hull, rect, direction, polygon);
    record.area = rect.area;
    PlainBoxRecord best;
    plainOffer(
        hull, record, [](const PlainBoxRecord& r) { return r.volume; },
        [](PlainBoxRecord& r) { r.volume = plainVolume(r); }, best);
    return best;
}
