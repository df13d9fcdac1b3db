#include "orient/sampling/SupportSampling.h"

#include <algorithm>
#include <array>
#include <limits>

#include "TeskCommon/Assert.h"

namespace Tesk::orient {
namespace {

/// A window that has more samples than this, or may have more hits, is measured in halves.
constexpr std::uint64_t kMaxHits = 1u << 20;
constexpr std::uint64_t kMaxCells = 1u << 22;

/// The least and the greatest of three numbers, NaN ignored.
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

SupportSampler::SupportSampler(const FlatMesh& mesh, const std::vector<float>& areas)
    : m_mesh(mesh), m_areas(areas) {
    TESK_ASSERT(areas.size() == mesh.corners.size());
}

TurnedTriangle SupportSampler::turned(std::int32_t triangle) const {
    return {m_mesh, *m_part, triangle};
}

SupportMeasures SupportSampler::sample(const TurnedPart& part, const SampleGrid& grid,
                                       float overhangCosine,
                                       std::span<const std::int32_t> triangles) {
    TESK_ASSERT(std::ranges::is_sorted(triangles));
    m_part = &part;
    m_grid = &grid;
    m_overhangCosine = overhangCosine;
    m_sums = {};
    const Window all = allSamples();
    if (all.isEmpty()) return m_sums;
    if (all.cells() <= kMaxCells && collectAllHits(triangles)) {
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

/// The samples in a triangle's bounding rectangle.
SupportSampler::Window SupportSampler::windowUnder(const TurnedTriangle& t) const {
    const Bounds x(t.a.x, t.b.x, t.c.x);
    const Bounds y(t.a.y, t.b.y, t.c.y);
    return {static_cast<std::uint32_t>(m_grid->columns.countBelow(x.low)),
            static_cast<std::uint32_t>(m_grid->columns.countUpTo(x.high)),
            static_cast<std::uint32_t>(m_grid->rows.countBelow(y.low)),
            static_cast<std::uint32_t>(m_grid->rows.countUpTo(y.high))};
}

/// Collects the hits of the whole grid. False if they are too many; then the list is incomplete.
bool SupportSampler::collectAllHits(std::span<const std::int32_t> triangles) {
    m_hits.clear();
    const Window all = allSamples();
    for (const std::int32_t triangle : triangles) {
        const TurnedTriangle t = turned(triangle);
        const Window samples = windowUnder(t);
        if (samples.isEmpty()) continue;
        collectHits(all, samples, t, triangle);
        if (m_hits.size() > kMaxHits) return false;
    }
    return true;
}

void SupportSampler::sampleWindow(const Window& window, std::span<const Footprint> footprints) {
    const std::uint64_t cells = window.cells();
    if (cells == 0 || footprints.empty()) return;
    std::uint64_t possibleHits = 0;
    for (const Footprint& footprint : footprints) {
        possibleHits += footprint.window.with(window).cells();
    }
    if (cells > 1 && (possibleHits > kMaxHits || cells > kMaxCells)) {
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
    TESK_ASSERT(window.cells() > 1);
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
    TESK_ASSERT(!samples.isEmpty() && samples.cells() == samples.with(window).cells());
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

/// Sorts the hits by sample, all of which are below `cells`, with a stable radix sort. The hits of
/// a sample stay in the order of the triangles.
void SupportSampler::sortHits(std::uint64_t cells) {
    TESK_ASSERT(std::ranges::all_of(m_hits, [&](const auto& hit) { return hit.sample < cells; }));
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
