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

    /// Reserves memory for a number of faces that the file is large enough to hold.
    void reserve(std::size_t faces) { m_triangles.reserve(faces); }

    /// Takes a face; one of fewer than three corners is counted and left out. Throws PartFileError
    /// if there are too many triangles.
    void add(std::span<const std::int32_t> corners);

    std::size_t faces() const { return m_triangles.size() + m_polygons.size(); }

    /// Puts the triangles into the mesh, whose positions are complete, and adds a warning if faces
    /// were left out. Throws PartFileError if there is no face. Leaves the collector empty.
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
