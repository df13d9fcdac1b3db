#include "orient/sampling/SupportSampling.h"

#include <algorithm>
#include <array>
#include <limits>

namespace Tesk::orient {
namespace {

/// A window with more samples under rectangles than this, or more samples, is measured in halves.
constexpr std::uint64_t kMostHits = 1u << 20;
constexpr std::uint64_t kMostCells = 1u << 22;

/// Least and greatest of three numbers; a NaN is passed over.
struct Bounds {
    float low = std::numeric_limits<float>::max();
    float high = -std::numeric_limits<float>::max();

    Bounds(float a, float b, float c) {
        for (const float value : {a, b, c}) {
            low = value < low ? value : low;
            high = value > high ? value : high;
        }
    }
};

}  // namespace

std::uint64_t SupportSampler::Window::cells() const {
    if (isEmpty()) return 0;
    return static_cast<std::uint64_t>(endColumn - firstColumn) * (endRow - firstRow);
}

SupportSampler::Window SupportSampler::Window::with(const Window& other) const {
    return {std::max(firstColumn, other.firstColumn), std::min(endColumn, other.endColumn),
            std::max(firstRow, other.firstRow), std::min(endRow, other.endRow)};
}

TurnedTriangle SupportSampler::turned(std::int32_t triangle) const {
    return {m_mesh, *m_part, triangle};
}

SupportMeasures SupportSampler::sample(const TurnedPart& part, const SampleGrid& grid,
                                       float overhangCosine,
                                       std::span<const std::int32_t> triangles) {
    m_part = &part;
    m_grid = &grid;
    m_overhangCosine = overhangCosine;
    m_sums = {};
    const Window all = allSamples();
    if (all.isEmpty()) return m_sums;
    if (all.cells() <= kMostCells && collectAllHits(triangles)) {
        measureHits(all.cells());
        return m_sums;
    }
    std::vector<Footprint> footprints;
    for (const std::int32_t triangle : triangles) {
        const Window window = windowUnder(turned(triangle));
        if (!window.isEmpty()) footprints.push_back({window, triangle});
    }
    sampleWindow(all, footprints);
    return m_sums;
}

SupportSampler::Window SupportSampler::allSamples() const {
    return {0, static_cast<std::uint32_t>(m_grid->columns.size()), 0,
            static_cast<std::uint32_t>(m_grid->rows.size())};
}

/// The samples in a triangle's rectangle.
SupportSampler::Window SupportSampler::windowUnder(const TurnedTriangle& t) const {
    const Bounds x(t.a.x, t.b.x, t.c.x);
    const Bounds y(t.a.y, t.b.y, t.c.y);
    return {static_cast<std::uint32_t>(m_grid->columns.countBelow(x.low)),
            static_cast<std::uint32_t>(m_grid->columns.countUpTo(x.high)),
            static_cast<std::uint32_t>(m_grid->rows.countBelow(y.low)),
            static_cast<std::uint32_t>(m_grid->rows.countUpTo(y.high))};
}

/// Gathers the hits of the whole grid; false, without any, where they are too many.
bool SupportSampler::collectAllHits(std::span<const std::int32_t> triangles) {
    m_hits.clear();
    const Window all = allSamples();
    for (const std::int32_t triangle : triangles) {
        const TurnedTriangle t = turned(triangle);
        const Window samples = windowUnder(t);
        if (samples.isEmpty()) continue;
        collectHits(all, samples, t, triangle);
        if (m_hits.size() > kMostHits) return false;
    }
    return true;
}

void SupportSampler::sampleWindow(const Window& window, std::span<const Footprint> footprints) {
    const std::uint64_t cells = window.cells();
    if (cells == 0 || footprints.empty()) return;
    std::uint64_t most = 0;
    for (const Footprint& footprint : footprints) most += footprint.window.with(window).cells();
    if (cells > 1 && (most > kMostHits || cells > kMostCells)) {
        sampleHalves(window, footprints);
        return;
    }
    m_hits.clear();
    for (const Footprint& footprint : footprints) {
        const Window samples = footprint.window.with(window);
        if (samples.isEmpty()) continue;
        collectHits(window, samples, turned(footprint.triangle), footprint.triangle);
    }
    measureHits(cells);
}

void SupportSampler::measureHits(std::uint64_t cells) {
    sortHits(cells);
    for (std::size_t first = 0; first < m_hits.size();) {
        std::size_t end = first + 1;
        while (end < m_hits.size() && m_hits[end].sample == m_hits[first].sample) ++end;
        measureColumn(std::span(m_hits).subspan(first, end - first), m_areas, m_grid->cellArea,
                      m_sums);
        first = end;
    }
}

void SupportSampler::sampleHalves(const Window& window, std::span<const Footprint> footprints) {
    std::array<Window, 2> halves = {window, window};
    if (window.endColumn - window.firstColumn > 1) {
        halves[0].endColumn = (window.firstColumn + window.endColumn) / 2;
        halves[1].firstColumn = halves[0].endColumn;
    } else {
        halves[0].endRow = (window.firstRow + window.endRow) / 2;
        halves[1].firstRow = halves[0].endRow;
    }
    for (const Window& half : halves) {
        std::vector<Footprint> within;
        for (const Footprint& footprint : footprints) {
            if (!footprint.window.with(half).isEmpty()) within.push_back(footprint);
        }
        sampleWindow(half, within);
    }
}

void SupportSampler::collectHits(const Window& window, const Window& samples,
                                 const TurnedTriangle& t, std::int32_t triangle) {
    const TurnKernels& kernels = turnKernels();
    const std::size_t rowCount = samples.endRow - samples.firstRow;
    const float* rows = m_grid->rows.data() + samples.firstRow;
    if (m_places.size() < rowCount) {
        m_places.resize(m_grid->rows.size());
        m_heights.resize(m_grid->rows.size());
    }
    const std::size_t before = m_hits.size();
    for (std::uint32_t column = samples.firstColumn; column < samples.endColumn; ++column) {
        const float x = m_grid->columns[column];
        const std::size_t count = kernels.rowsUnder(t.edgesAt(x), rows, rowCount, m_places.data());
        if (count == 0) continue;
        const ColumnPlane plane = t.planeAt(x);
        if (plane.determinant == 0.0) {
            std::fill_n(m_heights.begin(), count, std::numeric_limits<float>::quiet_NaN());
        } else {
            kernels.heights(plane, rows, m_places.data(), count, m_heights.data());
        }
        const std::uint32_t firstSample =
            (column - window.firstColumn) * (window.endRow - window.firstRow) + samples.firstRow -
            window.firstRow;
        const auto code = static_cast<std::uint32_t>(triangle) * 2;
        for (std::size_t i = 0; i < count; ++i) {
            m_hits.push_back({firstSample + m_places[i], code, m_heights[i]});
        }
    }
    if (m_hits.size() == before || !(t.normalZ() < -m_overhangCosine)) return;
    for (std::size_t i = before; i < m_hits.size(); ++i) ++m_hits[i].triangle;
}

/// Sorts the hits by sample, one of `cells`, and those of one sample by triangle as they came:
/// digit by digit.
void SupportSampler::sortHits(std::uint64_t cells) {
    constexpr unsigned kBits = 11;
    constexpr std::uint32_t kDigit = (1u << kBits) - 1;
    m_sortedHits.resize(m_hits.size());
    for (unsigned shift = 0; (cells - 1) >> shift != 0; shift += kBits) {
        std::array<std::uint32_t, kDigit + 2> starts{};
        for (const ColumnHit& hit : m_hits) ++starts[((hit.sample >> shift) & kDigit) + 1];
        for (std::size_t digit = 1; digit < starts.size(); ++digit) {
            starts[digit] += starts[digit - 1];
        }
        for (const ColumnHit& hit : m_hits) {
            m_sortedHits[starts[(hit.sample >> shift) & kDigit]++] = hit;
        }
        m_hits.swap(m_sortedHits);
    }
}

}  // namespace Tesk::orient
