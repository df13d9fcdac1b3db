#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TeskPartFiles/PartFiles.h"

namespace Tesk::files {

/// Collects the faces of a file in their order. Those of more than three corners wait until all
/// positions are known, and are cut then.
class FaceCollector {
 public:
    explicit FaceCollector(std::size_t maxTriangles) : m_maxTriangles(maxTriangles) {}

    /// Makes room where a sound file promises so many faces.
    void reserve(std::size_t faces) { m_triangles.reserve(faces); }

    /// Takes a face; one of fewer than three corners is counted and left out. Throws PartFileError
    /// where the triangles become too many.
    void add(std::span<const std::int32_t> corners);

    std::size_t faces() const { return m_triangles.size() + m_polygons.size(); }

    /// Puts the triangles into the mesh, whose positions are complete, and a warning into the list
    /// where faces were left out. Throws PartFileError where there is no face. The collector is
    /// empty after that.
    void finish(PartMesh& mesh, std::vector<PartWarning>& warnings);

 private:
    using Triangle = std::array<std::int32_t, 3>;

    struct Polygon {
        std::size_t place;  ///< how many triangles come before it
        std::size_t firstCorner;
        std::size_t corners;
    };

    std::vector<Triangle> withPolygons(std::span<const PartPoint> positions) const;

    std::size_t m_maxTriangles;
    std::size_t m_expected = 0;
    std::int64_t m_leftOut = 0;
    std::vector<Triangle> m_triangles;
    std::vector<Polygon> m_polygons;
    std::vector<std::int32_t> m_polygonCorners;
};

/// The error for a file with more triangles than are wanted.
PartFileError tooManyTriangles(std::size_t most);

}  // namespace Tesk::files
