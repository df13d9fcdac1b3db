#include "SupportSampling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "TeskDataBasic/UPoint2.h"
#include "TeskDataBasic/UVector2.h"

namespace {

/// A window with more samples under rectangles than this, or more samples, is measured in halves.
constexpr std::uint64_t kMostHits = 1u << 20;
constexpr std::uint64_t kMostCells = 1u << 22;

UPoint2<float> fromAbove(const UPoint3<float>& p) {
    return {p.x, p.y};
}

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

/// A turned triangle.
struct SupportSampler::Corners {
    UPoint3<float> a, b, c;

    /// The upward part of the unit normal.
    float normalZ() const { return ((b - a) * (c - b)).GetNormal().z; }

    /// The edges as the column at x sees them. A point is under the triangle where it lies on the
    /// same side of all three, for either winding, or exactly on the line through one: within the
    /// triangle's rectangle, that counts too.
    ColumnEdges edgesAt(float x) const {
        ColumnEdges edges{};
        const std::array<const UPoint3<float>*, 4> loop = {&a, &b, &c, &a};
        for (std::size_t k = 0; k < 3; ++k) {
            const UVector2<float> along = fromAbove(*loop[k + 1]) - fromAbove(*loop[k]);
            edges.alongX[k] = along.x;
            edges.fromY[k] = loop[k]->y;
            edges.across[k] = along.y * (x - loop[k]->x);
        }
        return edges;
    }

    /// The plane over the edges from a; its determinant is 0 where the triangle stands upright.
    ColumnPlane planeAt(float x) const {
        const UVector3<float> u = b - a;
        const UVector3<float> v = c - a;
        const auto ux = static_cast<double>(u.x);
        const auto uy = static_cast<double>(u.y);
        const auto vx = static_cast<double>(v.x);
        const auto vy = static_cast<double>(v.y);
        const auto dx = static_cast<double>(x - a.x);
        return {ux, uy * dx, vx, dx * vy, ux * vy - uy * vx, a.y, a.z, u.z, v.z};
    }
};

std::uint64_t SupportSampler::Window::cells() const {
    if (isEmpty()) return 0;
    return static_cast<std::uint64_t>(endColumn - firstColumn) * (endRow - firstRow);
}

SupportSampler::Window SupportSampler::Window::with(const Window& other) const {
    return {std::max(firstColumn, other.firstColumn), std::min(endColumn, other.endColumn),
            std::max(firstRow, other.firstRow), std::min(endRow, other.endRow)};
}

SupportSampler::Corners SupportSampler::cornersOf(std::int32_t triangle) const {
    const auto& [a, b, c] = m_mesh.corners[static_cast<std::size_t>(triangle)];
    return {m_part->point(m_mesh, a), m_part->point(m_mesh, b), m_part->point(m_mesh, c)};
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
        const Window window = windowUnder(cornersOf(triangle));
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
SupportSampler::Window SupportSampler::windowUnder(const Corners& t) const {
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
        const Corners t = cornersOf(triangle);
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
        collectHits(window, samples, cornersOf(footprint.triangle), footprint.triangle);
    }
    measureHits(cells);
}

void SupportSampler::measureHits(std::uint64_t cells) {
    sortHits(cells);
    for (std::size_t first = 0; first < m_hits.size();) {
        std::size_t end = first + 1;
        while (end < m_hits.size() && m_hits[end].sample == m_hits[first].sample) ++end;
        measureColumn(std::span(m_hits).subspan(first, end - first));
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

void SupportSampler::collectHits(const Window& window, const Window& samples, const Corners& t,
                                 std::int32_t triangle) {
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
        for (const Hit& hit : m_hits) ++starts[((hit.sample >> shift) & kDigit) + 1];
        for (std::size_t digit = 1; digit < starts.size(); ++digit) {
            starts[digit] += starts[digit - 1];
        }
        for (const Hit& hit : m_hits) {
            m_sortedHits[starts[(hit.sample >> shift) & kDigit]++] = hit;
        }
        m_hits.swap(m_sortedHits);
    }
}

/// Adds one column: between the ground and the lowest hit, and between the following pairs, lies
/// what is open below a triangle. Hits at the same height are one; where they do not come in pairs
/// then, only the column's own area counts.
void SupportSampler::measureColumn(std::span<Hit> hits) {
    if (hits.size() < 2) return;
    m_sums.projectedArea += m_grid->cellArea;
    const auto isUpright = [](const Hit& hit) { return !std::isfinite(hit.z); };
    const auto finiteEnd = std::remove_if(hits.begin(), hits.end(), isUpright);
    std::sort(hits.begin(), finiteEnd, [](const Hit& a, const Hit& b) {
        return a.z != b.z ? a.z < b.z : a.triangle < b.triangle;
    });
    auto end =
        std::unique(hits.begin(), finiteEnd, [](const Hit& a, const Hit& b) { return a.z == b.z; });
    if ((end - hits.begin()) % 2 != 0) end = hits.begin();
    float length = 0.0f;
    float below = 0.0f;
    for (auto hit = hits.begin(); hit != end; hit += 2) {
        if ((hit->triangle & 1) != 0) {
            length += std::fabs(hit->z - below);
            m_sums.overhangArea += m_areas[hit->triangle / 2];
        }
        below = (hit + 1)->z;
    }
    m_sums.supportVolume += length * m_grid->cellArea;
}
