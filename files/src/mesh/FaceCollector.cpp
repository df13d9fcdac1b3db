#include "mesh/FaceCollector.h"

#include "text/Message.h"
#include "triangulate/PolygonCutter.h"

namespace Tesk::files {

PartFileError tooManyTriangles(std::size_t most) {
    return PartFileError(message("is too big: it has more than ", most, " triangles"));
}

void FaceCollector::add(std::span<const std::int32_t> corners) {
    if (corners.size() < 3) {
        ++m_leftOut;
        return;
    }
    m_expected += corners.size() - 2;
    if (m_expected > m_maxTriangles) throw tooManyTriangles(m_maxTriangles);
    if (corners.size() == 3) {
        m_triangles.push_back({corners[0], corners[1], corners[2]});
        return;
    }
    m_polygons.push_back({m_triangles.size(), m_polygonCorners.size(), corners.size()});
    m_polygonCorners.insert(m_polygonCorners.end(), corners.begin(), corners.end());
}

std::vector<FaceCollector::Triangle> FaceCollector::withPolygons(
    std::span<const PartPoint> positions) const {
    std::vector<Triangle> all;
    all.reserve(m_expected);
    PolygonCutter cutter;
    std::size_t taken = 0;
    const auto takeUpTo = [&](std::size_t place) {
        for (; taken < place; ++taken) all.push_back(m_triangles[taken]);
    };
    for (const Polygon& polygon : m_polygons) {
        takeUpTo(polygon.place);
        cutter.cut(std::span(m_polygonCorners).subspan(polygon.firstCorner, polygon.corners),
                   positions, all);
    }
    takeUpTo(m_triangles.size());
    return all;
}

void FaceCollector::finish(PartMesh& mesh, std::vector<PartWarning>& warnings) {
    if (faces() == 0) throw PartFileError("contains no faces");
    mesh.triangles = m_polygons.empty() ? std::move(m_triangles) : withPolygons(mesh.positions);
    if (m_leftOut > 0) {
        warnings.push_back({"small-faces",
                            counted(m_leftOut, "face of fewer than three corners is left out",
                                    "faces of fewer than three corners are left out"),
                            m_leftOut});
    }
    *this = FaceCollector(m_maxTriangles);
}

}  // namespace Tesk::files
