#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "orient/grid/SampleGrid.h"
#include "orient/mesh/FlatMesh.h"
#include "orient/sampling/ColumnHits.h"
#include "orient/turn/TurnedPart.h"
#include "orient/turn/TurnedTriangle.h"

namespace Tesk::orient {

/// Measures the support that a turned part needs, column by column.
///
/// The hits of all triangles on the samples under them are collected and sorted by sample. Then the
/// columns are measured in order, x in the outer loop and y in the inner one, which fixes the order
/// of the sums. If there are very many hits or samples, the grid is measured in pieces, in the same
/// order, which bounds the memory.
class SupportSampler {
 public:
    /// Keeps references to both; `areas` holds the area of every triangle.
    SupportSampler(const FlatMesh& mesh, const std::vector<float>& areas);

    /// Measures one part. Which triangles overhang, isOverhang() tells. The
    /// ground is z = 0.
    ///
    /// @param triangles  ascending; includes all that a sample point may lie under
    SupportMeasures sample(const TurnedPart& part, const SampleGrid& grid, float overhangCosine,
                           std::span<const std::int32_t> triangles);

 private:
    /// A range of columns and a range of rows; the ends are excluded.
    struct Window {
        std::uint32_t firstColumn, endColumn, firstRow, endRow;

        bool isEmpty() const { return firstColumn >= endColumn || firstRow >= endRow; }
        std::uint64_t cells() const;
        Window with(const Window& other) const;
    };

    /// The samples in a triangle's bounding rectangle, seen from above; at least one.
    struct Footprint {
        Window window;
        std::int32_t triangle;
    };

    TurnedTriangle turned(std::int32_t triangle) const;
    Window allSamples() const;
    Window windowUnder(const TurnedTriangle& t) const;
    bool collectAllHits(std::span<const std::int32_t> triangles);
    void sampleWindow(const Window& window, std::span<const Footprint> footprints);
    void sampleHalves(const Window& window, std::span<const Footprint> footprints);
    void collectHits(const Window& window, const Window& samples, const TurnedTriangle& t,
                     std::int32_t triangle);
    void measureHits(std::uint64_t cells);
    void sortHits(std::uint64_t cells);

    const FlatMesh& m_mesh;
    const std::vector<float>& m_areas;
    const TurnedPart* m_part = nullptr;
    const SampleGrid* m_grid = nullptr;
    float m_overhangCosine = 0.0f;
    SupportMeasures m_sums;
    std::vector<ColumnHit> m_hits;  ///< samples are numbered within a window
    std::vector<ColumnHit> m_sortedHits;
    std::vector<std::uint32_t> m_places;
    std::vector<float> m_heights;
};

}  // namespace Tesk::orient
