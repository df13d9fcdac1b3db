#include "checks/HullChecks.h"

#include <map>
#include <set>
#include <utility>

#include "checks/CellHull.h"

namespace {

std::string faultOfVertices(const CellHull& s) {
    for (std::size_t i = 0; i < s.vertices.size(); ++i) {
        if (!std::binary_search(s.points.begin(), s.points.end(), s.vertices[i]) ||
            !s.grid.isOnGrid(s.hull.getVertices()[i])) {
            return "a vertex is none of the rounded points";
        }
        if (i > 0 && !(s.vertices[i - 1] < s.vertices[i])) return "vertices are out of order";
    }
    return "";
}

/// Points and lines have vertices only.
std::string faultOfEnds(const CellHull& s) {
    if (!s.hull.getTriangles().empty() || !s.hull.getHullEdges().empty()) return "it has faces";
    if (s.points.empty()) return s.vertices.empty() ? "" : "there are vertices, but no points";
    // On a line the ends are the lowest and the highest of the points.
    std::vector<Cell> ends = {s.points.front()};
    if (s.points.size() > 1) ends.push_back(s.points.back());
    return s.vertices == ends ? "" : "the ends are not the vertices";
}

std::string faultOfTriangles(const CellHull& s) {
    const int count = static_cast<int>(s.vertices.size());
    for (int t = 0; t < s.triangleCount(); ++t) {
        for (const int corner : s.triangle(t)) {
            if (corner < 0 || corner >= count) return "a corner is no vertex";
        }
        const Wide normal = s.normal(t);
        if (isZero(normal)) return "a triangle has no area";
        const Cell& corner = s.vertex(s.triangle(t)[0]);
        for (const Cell& p : s.points) {
            if (dot(normal, minus(p, corner)) > 0) return "a point lies outside";
        }
    }
    return "";
}

std::string faultOfSides(const CellHull& s) {
    std::map<std::pair<int, int>, int> sides;
    for (const auto& t : s.hull.getTriangles()) {
        for (std::size_t k = 0; k < 3; ++k) ++sides[{t[k], t[(k + 1) % 3]}];
    }
    // Flat hulls have each diagonal twice: once on either side.
    const int allowed = s.hull.getDimension() == 2 ? 2 : 1;
    for (const auto& [side, count] : sides) {
        if (count > allowed) return "an edge has too many triangles";
        const auto back = sides.find({side.second, side.first});
        if (back == sides.end() || back->second != count) return "the surface is open";
    }
    return "";
}

/// Whether a triangle of this number has the side.
bool runsAlong(const CellHull& s, int triangle, int from, int to) {
    if (triangle < 0 || triangle >= s.triangleCount()) return false;
    const auto& t = s.triangle(triangle);
    for (std::size_t k = 0; k < 3; ++k) {
        if (t[k] == from && t[(k + 1) % 3] == to) return true;
    }
    return false;
}

std::string faultOfNumbers(const CellHull& s) {
    const std::size_t edges = s.hull.getHullEdges().size();
    const std::size_t triangles = s.hull.getTriangles().size();
    if (edges * 2 != triangles * 3) return "E is not 3F/2";
    return s.vertices.size() + triangles == edges + 2 ? "" : "the Euler number is not 2";
}

std::string faultOfEdges(const CellHull& s) {
    std::string fault = faultOfSides(s);
    if (fault.empty()) fault = faultOfNumbers(s);
    if (!fault.empty()) return fault;
    std::set<std::pair<int, int>> seen;  // triangle and the vertex where its side begins
    std::pair<int, int> before(-1, -1);
    for (const gte::HullEdge& edge : s.hull.getHullEdges()) {
        if (edge.a >= edge.b) return "an edge is listed upside down";
        if (!runsAlong(s, edge.f0, edge.a, edge.b) || !runsAlong(s, edge.f1, edge.b, edge.a)) {
            return "an edge's triangles do not run along it";
        }
        if (!seen.insert({edge.f0, edge.a}).second || !seen.insert({edge.f1, edge.b}).second) {
            return "a side stands in two edges";
        }
        const std::pair now(edge.a, edge.b);
        if (now < before) return "edges are out of order";
        before = now;
    }
    return "";
}

/// The outline of a flat hull: the edges between its two sides.
std::string faultOfOutline(const CellHull& s) {
    if (s.hull.getDimension() != 2) return "";
    std::size_t count = 0;
    for (const gte::HullEdge& edge : s.hull.getHullEdges()) {
        const Wide normal = s.normal(edge.f0);
        if (!pointOppositeWays(normal, s.normal(edge.f1))) continue;
        ++count;
        const Wide inward = cross(normal, minus(s.vertex(edge.b), s.vertex(edge.a)));
        for (const Cell& p : s.points) {
            if (dot(inward, minus(p, s.vertex(edge.a))) < 0) return "a point lies beside the hull";
        }
    }
    return count == s.vertices.size() ? "" : "the outline is no polygon";
}

std::string faultOfFans(const CellHull& s) {
    std::vector<int> fanOf;  // each triangle's fan, by its first triangle
    for (int t = 0; t < s.triangleCount(); ++t) {
        const auto& now = s.triangle(t);
        if (now[0] > now[1] || now[0] > now[2]) return "a fan is not about its lowest vertex";
        if (t > 0) {
            const auto& before = s.triangle(t - 1);
            if (now[0] == before[0] && now[1] == before[2] &&
                pointTheSameWay(s.normal(t), s.normal(t - 1))) {
                fanOf.push_back(fanOf.back());
                continue;
            }
            const auto& first = s.triangle(fanOf.back());
            if (std::pair(now[0], now[1]) <= std::pair(first[0], first[1])) {
                return "faces are out of order";
            }
        }
        fanOf.push_back(t);
    }
    for (const gte::HullEdge& edge : s.hull.getHullEdges()) {
        const bool isInside =
            fanOf[static_cast<std::size_t>(edge.f0)] == fanOf[static_cast<std::size_t>(edge.f1)];
        if (isInside != pointTheSameWay(s.normal(edge.f0), s.normal(edge.f1))) {
            return "a plane has two fans";
        }
    }
    return "";
}

/// A vertex inside a face of a solid has triangles in one plane only; one inside an edge has
/// neighbours on both sides in line with it.
std::string faultOfCorners(const CellHull& s) {
    std::vector<std::vector<Wide>> normals(s.vertices.size());
    std::vector<std::set<int>> neighbours(s.vertices.size());
    for (int t = 0; t < s.triangleCount(); ++t) {
        const auto& corners = s.triangle(t);
        for (std::size_t k = 0; k < 3; ++k) {
            const auto v = static_cast<std::size_t>(corners[k]);
            normals[v].push_back(s.normal(t));
            neighbours[v].insert({corners[(k + 1) % 3], corners[(k + 2) % 3]});
        }
    }
    for (std::size_t v = 0; v < s.vertices.size(); ++v) {
        const auto isInPlane = [&](const Wide& n) { return pointTheSameWay(n, normals[v][0]); };
        if (std::all_of(normals[v].begin(), normals[v].end(), isInPlane)) {
            return "a vertex lies inside a face";
        }
        for (const int i : neighbours[v]) {
            const Wide there = minus(s.vertex(i), s.vertices[v]);
            for (const int j : neighbours[v]) {
                if (pointOppositeWays(there, minus(s.vertex(j), s.vertices[v]))) {
                    return "a vertex lies inside an edge";
                }
            }
        }
    }
    return "";
}

std::string faultOfEdgeAngles(const CellHull& s) {
    for (const gte::HullEdge& edge : s.hull.getHullEdges()) {
        const Wide normal = s.normal(edge.f0);
        if (isZero(normal) || isZero(s.normal(edge.f1))) return "a triangle has no area";
        for (const int corner : s.triangle(edge.f1)) {
            if (dot(normal, minus(s.vertex(corner), s.vertex(edge.a))) > 0) {
                return "an edge is concave";
            }
        }
    }
    return "";
}

template <class... Checks>
std::string firstFault(const CellHull& subject, Checks... checks) {
    std::string fault;
    ((fault.empty() ? fault = checks(subject) : fault), ...);
    return fault;
}

}  // namespace

std::string faultOf(const gte::ConvexHull3& hull, const Points& points) {
    const CellHull subject(hull, points);
    if (hull.getDimension() != spanOf(subject.points)) return "its dimension is not theirs";
    if (hull.getDimension() < 2) return firstFault(subject, faultOfVertices, faultOfEnds);
    return firstFault(subject, faultOfVertices, faultOfTriangles, faultOfEdges, faultOfOutline,
                      faultOfFans, faultOfCorners);
}

std::string faultOfLargeSolid(const gte::ConvexHull3& hull, const Points& points) {
    if (hull.getDimension() != 3) return "it is no solid";
    return firstFault(CellHull(hull, points), faultOfVertices, faultOfNumbers, faultOfEdgeAngles);
}
