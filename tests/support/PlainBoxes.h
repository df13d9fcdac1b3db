#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "MinBoundingBox.h"
#include "TeskSDKCommonTools/ConvexHull3.h"

/// The box searches as one would write them down first: every edge and every triple looked at, no
/// geometry kept from one step to the next. Slow; the shipped ones must give the same bits.
namespace Plain {

using Vec = UVector3<double>;

/// A hull as the searches read it.
struct Hull {
    explicit Hull(const gte::ConvexHull3& hull);

    std::vector<Vec> points;
    std::vector<std::array<int, 3>> triangles;
    std::vector<gte::HullEdge> edges;
};

struct Candidate {
    Vec origin;
    Vec axes[3];
    double squaredLengths[3] = {};
    double min[3] = {};
    double max[3] = {};
    double volume = -1.0;
    double area = -1.0;
    float score = -1.0f;
    float height = -1.0f;
};

struct Rect {
    Vec r0;
    Vec r1;
    int support[4] = {};  ///< base, right, top, left
    double q0 = 0.0;
    double q1 = 0.0;
    double area = 0.0;
};

/// The hull's silhouette seen along a direction, by a look at every edge.
std::vector<int> outlineAlong(const Hull& hull, const Vec& direction);

void removeCollinear(const Hull& hull, const Vec& direction, std::vector<int>& outline);

/// The rectangle of least area.
Rect minRect(const Hull& hull, const Vec& direction, const std::vector<int>& outline);

/// The best box flush with a face, with the faces split over a number of threads.
Candidate searchFaces(const Hull& hull, int threads);

/// The best box along three orthogonal edges: three nested loops.
Candidate searchEdges(const Hull& hull);

/// Both, merged.
Candidate searchVolume(const Hull& hull, int threads);

Candidate searchBaseArea(const Hull& hull, int threads);
Candidate searchHeight(const Hull& hull, int threads);

/// Around an axis; nothing where the projection has no area.
std::optional<Candidate> searchAroundAxis(const gte::ConvexHull3& hull,
                                          const UVector3<float>& axis);

OrientedBox3 toBox(const Candidate& candidate);

OrientedBox3 principalAxesBox(const std::vector<UPoint3<float>>& points);

}  // namespace Plain
