#include "plain/PlainBaseAreaBox.h"

#include <cmath>

namespace {

float heightKey(const PlainBoxRecord& record) {
    return record.height;
}

float scoreKey(const PlainBoxRecord& record) {
    return record.score;
}

float heightOf(const PlainBoxRecord& record) {
    return static_cast<float>(record.max[2] - record.min[2]) /
           std::sqrt(static_cast<float>(record.direction | record.direction));
}

double areaOf(const PlainBoxRecord& r) {
    return (r.max[0] - r.min[0]) * (r.max[1] - r.min[1]) / r.squaredLengths[1];
}

/// The three face areas of a box: across U2, then U1 by U2, then U0 by U2.
std::array<float, 3> faceAreas(const std::array<double, 3>& ranges,
                               const std::array<double, 3>& squaredLengths) {
    std::array<float, 3> sides{};
    for (int i = 0; i < 3; ++i) {
        sides[i] = static_cast<float>(ranges[i]) / static_cast<float>(std::sqrt(squaredLengths[i]));
    }
    return {sides[0] * sides[1], sides[1] * sides[2], sides[0] * sides[2]};
}

std::array<float, 3> faceAreas(const PlainBoxRecord& r) {
    return faceAreas({r.max[0] - r.min[0], r.max[1] - r.min[1], r.max[2] - r.min[2]},
                     r.squaredLengths);
}

float smallest(const std::array<float, 3>& areas) {
    float least = -1.0f;
    for (const float area : areas) {
        if (least == -1.0f || least > area) least = area;
    }
    return least;
}

/// The rectangle of the run that gives the smallest side, with that side's area as its score.
PlainRect leastScored(const PlainHull& hull, const UVector3<double>& d,
                      const std::vector<int>& outline) {
    std::vector<PlainRect> run = plainRun(hull.points, d, outline);
    const auto at = [&](int position) { return hull.points[outline[position]]; };
    double min2 = 0.0;
    double max2 = 0.0;
    plainRange(hull, at(run[0].support[0]), d, min2, max2);
    PlainRect best;
    for (PlainRect& rect : run) {
        const auto& [base, right, top, left] = rect.support;
        const double range0 = (at(right) - at(left)) | rect.r0;
        const double range1 = (at(top) - at(base)) | rect.r1;
        rect.score =
            smallest(faceAreas({range0, range1, max2 - min2}, {rect.q[0], rect.q[1], d | d}));
        if (best.score == -1.0f || best.score > rect.score) best = rect;
    }
    return best;
}

}  // namespace

PlainBoxRecord plainLowestBox(const PlainHull& hull, const UVector3<double>& d,
                              const std::vector<int>& outline) {
    const PlainRect rect = plainMinRect(hull.points, d, outline);
    PlainBoxRecord record = plainBoxOver(hull, rect, d, outline);
    record.area = rect.area;
    record.height = heightOf(record);
    return record;
}

PlainBoxRecord plainLeastSideBox(const PlainHull& hull, const UVector3<double>& d,
                                 const std::vector<int>& outline) {
    const PlainRect rect = leastScored(hull, d, outline);
    PlainBoxRecord record = plainBoxOver(hull, rect, d, outline);
    record.area = rect.area;
    record.score = rect.score;
    record.faceFlag = -1.0f;
    const std::array<float, 3> areas = faceAreas(record);
    for (int i = 0; i < 3; ++i) {
        if (areas[i] < record.score) {
            record.score = areas[i];
            record.faceFlag = i == 0 ? 0.0f : 1.0f;
        }
    }
    return record;
}

PlainBoxRecord plainLeastHeight(const PlainHull& hull, int threadCount) {
    const auto remeasure = [](PlainBoxRecord& record) {
        record.volume = plainVolume(record);
        record.area = areaOf(record);
        record.height = heightOf(record);
    };
    const auto offer = [&](int face, const std::vector<int>& outline, PlainBoxRecord& best) {
        const PlainBoxRecord record = plainLowestBox(hull, hull.normals[face], outline);
        return plainOffer(hull, record, heightKey, remeasure, best);
    };
    return plainBestOfFaces(hull, threadCount, hull.pointCount, heightKey, offer);
}

PlainBoxRecord plainLeastBaseArea(const PlainHull& hull, int threadCount) {
    const auto remeasure = [](PlainBoxRecord& record) {
        record.volume = plainVolume(record);
        record.area = areaOf(record);
        record.score = smallest(faceAreas(record));
        record.faceFlag = record.score == faceAreas(record)[0] ? 0.0f : 1.0f;
    };
    const auto offer = [&](int face, const std::vector<int>& outline, PlainBoxRecord& best) {
        const PlainBoxRecord record = plainLeastSideBox(hull, hull.normals[face], outline);
        return plainOffer(hull, record, scoreKey, remeasure, best);
    };
    return plainBestOfFaces(hull, threadCount, hull.pointCount, scoreKey, offer);
}
