#include "plain/PlainVolumeBox.h"

namespace {

double volumeOf(const PlainBoxRecord& record) {
    return record.volume;
}

/// The third axis is as long as the product of the other two, so its squared length drops out.
double edgeVolume(const PlainBoxRecord& r) {
    return ((r.max[0] - r.min[0]) / r.squaredLengths[0]) *
           ((r.max[1] - r.min[1]) / r.squaredLengths[1]) * (r.max[2] - r.min[2]);
}

PlainBoxRecord edgeBox(const PlainHull& hull, const UVector3<double>& u0,
                       const UVector3<double>& u1, const UVector3<double>& u2) {
    PlainBoxRecord record;
    record.origin = hull.points[hull.triangles[0][0]];
    record.axes = {u0, u1, u2};
    const double s0 = u0 | u0;
    const double s1 = u1 | u1;
    record.squaredLengths = {s0, s1, s0 * s1};
    for (int m = 0; m < 3; ++m) {
        plainRange(hull, record.origin, record.axes[m], record.min[m], record.max[m]);
    }
    record.volume = edgeVolume(record);
    return record;
}

}  // namespace

PlainBoxRecord plainFaceSearch(const PlainHull& hull, int threadCount) {
    const auto offer = [&](int face, const std::vector<int>& outline, PlainBoxRecord& best) {
        const UVector3<double>& n = hull.normals[face];
        const PlainRect rect = plainMinRect(hull.points, n, outline);
        return plainOffer(
            hull, plainBoxOver(hull, rect, n, outline), volumeOf,
            [](PlainBoxRecord& r) { r.volume = plainVolume(r); }, best);
    };
    return plainBestOfFaces(hull, threadCount, static_cast<int>(hull.points.size()), volumeOf,
                            offer);
}

PlainBoxRecord plainEdgeSearch(const PlainHull& hull, PlainThirdAxis thirdAxis) {
    PlainBoxRecord best;
    std::vector<UVector3<double>> d;
    for (const gte::HullEdge& edge : hull.edges) {
        d.push_back(hull.points[edge.b] - hull.points[edge.a]);
    }
    const int edges = static_cast<int>(d.size());
    for (int i = 0; i < edges; ++i) {
        // Edge i at first, then the third axis of the last triple with it.
        UVector3<double> w = d[i];
        for (int j = i + 1; j < edges; ++j) {
            if ((d[j] | w) != 0.0) continue;
            for (int k = j + 1; k < edges; ++k) {
                if ((d[k] | d[j]) != 0.0 || (d[k] | w) != 0.0) continue;
                const UVector3<double> u0 = d[k];
                const UVector3<double> u1 = d[j];
                w = u0 * u1;
                PlainBoxRecord record = edgeBox(hull, u0, u1, w);
                const bool isLess = best.volume == -1.0 || best.volume > record.volume;
                if (isLess && (u0 | (u1 * w)) < 0.0) {
                    w = w * -1.0;
                    record.axes[2] = w;
                }
                plainOffer(
                    hull, record, volumeOf, [](PlainBoxRecord& r) { r.volume = edgeVolume(r); },
                    best);
                if (thirdAxis == PlainThirdAxis::kFirstEdge) w = d[i];
            }
        }
    }
    return best;
}

PlainBoxRecord plainLeastVolume(const PlainBoxRecord& face, const PlainBoxRecord& edge) {
    if (edge.volume != -1.0 && (face.volume == -1.0 || face.volume > edge.volume)) return edge;
    return face;
}
