#pragma once

#include <array>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

#include "TeskPartFiles/PartFiles.h"
#include "mesh/PositionTable.h"
#include "mesh/Progress.h"
#include "mesh/Workers.h"

namespace Tesk::files {

/// The result of putting points into a table.
struct TableFill {
    std::unique_ptr<PositionTable> table;
    std::size_t distinct = 0;
    std::size_t firstBad = SIZE_MAX;  ///< the first point that is not finite, if any
};

inline bool isFinite(const PartPoint& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

constexpr std::size_t kPointsPerBlock = 48;
constexpr std::size_t kPointsPerCount = 128 * kPointsPerBlock;
constexpr std::size_t kPointsPerWorker = 50'000;

/// Puts the points that `load(i)` returns into a table, and writes their slots to slots[i].
template <class Load>
class TableFiller {
 public:
    TableFiller(std::size_t points, const Load& load, std::uint32_t* slots, Progress& progress)
        : m_points(points), m_load(load), m_slots(slots), m_progress(progress) {}

    /// @param guess  the likely number of distinct points; if there are more, a second pass uses a
    ///               table with room for all points
    TableFill run(std::size_t guess, unsigned threads) {
        const unsigned workers = workersFor(m_points, kPointsPerWorker, threads);
        for (const std::size_t room : {guess + guess / 2 + 64, m_points + m_points / 2 + 64}) {
            TableFill fill;
            fill.table = std::make_unique<PositionTable>(room);
            m_distinct = 0;
            m_mostDistinct = room - room / 5;
            m_isFull = false;
            inShares(m_points, workers, [&](std::size_t first, std::size_t last, unsigned worker) {
                fillShare(fill, first, last, worker == 0);
            });
            fill.distinct = m_distinct;
            if (!m_isFull) return fill;
        }
        throw std::bad_alloc();  // not to be reached: the second table has room for every point
    }

 private:
    void fillShare(TableFill& fill, std::size_t first, std::size_t last, bool reports) {
        std::array<PartPoint, kPointsPerBlock> block;
        std::size_t news = 0;
        for (std::size_t start = first; start < last; start += kPointsPerBlock) {
            const std::size_t count = std::min(kPointsPerBlock, last - start);
            for (std::size_t k = 0; k < count; ++k) {
                block[k] = m_load(start + k);
                fill.table->prefetch(block[k]);
            }
            for (std::size_t k = 0; k < count; ++k) {
                if (!isFinite(block[k])) {
                    noteBad(fill, start + k);
                    return;
                }
                m_slots[start + k] = fill.table->slotOf(block[k], news);
                if (m_slots[start + k] == PositionTable::kNoRoom) {
                    m_isFull = true;
                    return;
                }
            }
            if ((start - first) % kPointsPerCount != 0) continue;
            if (!countNews(news)) return;
            if (reports) m_progress.report(start - first, last - first, 0, 70);
        }
        countNews(news);
    }

    void noteBad(TableFill& fill, std::size_t point) {
        const std::lock_guard lock(m_mutex);
        fill.firstBad = std::min(fill.firstBad, point);
    }

    /// Returns whether the table has room for more. Called rarely, as all threads write to the same
    /// variable here.
    bool countNews(std::size_t& news) {
        if (m_distinct.fetch_add(news, std::memory_order_relaxed) + news > m_mostDistinct) {
            m_isFull.store(true, std::memory_order_relaxed);
        }
        news = 0;
        return !m_isFull.load(std::memory_order_relaxed);
    }

    std::size_t m_points;
    const Load& m_load;
    std::uint32_t* m_slots;
    Progress& m_progress;
    std::mutex m_mutex;
    std::size_t m_mostDistinct = 0;
    alignas(64) std::atomic<std::size_t> m_distinct = 0;  // apart from what all threads read
    std::atomic<bool> m_isFull = false;
};

/// Numbers the slots in the order in which the triangles' corners first refer to them, and replaces
/// each corner by the number of its slot. `slotOf(corner)` returns the slot for a corner's old
/// value.
template <class SlotOf>
void numberCorners(PartMesh& mesh, TableFill& fill, const SlotOf& slotOf, Progress& progress) {
    constexpr std::size_t kAhead = 8;
    mesh.positions.clear();
    mesh.positions.reserve(fill.distinct);
    const std::size_t count = mesh.triangles.size();
    for (std::size_t t = 0; t < count; ++t) {
        if (t + kAhead < count) {
            for (const std::int32_t corner : mesh.triangles[t + kAhead]) {
                fill.table->prefetch(slotOf(corner));
            }
        }
        for (std::int32_t& corner : mesh.triangles[t]) {
            const std::uint32_t slot = slotOf(corner);
            const auto next = static_cast<std::uint32_t>(mesh.positions.size());
            const std::uint32_t number = fill.table->numberOf(slot, next);
            if (number == next) mesh.positions.push_back(fill.table->position(slot));
            corner = static_cast<std::int32_t>(number);
        }
        if (t % 65536 == 0) progress.report(t, count, 70, 100);
    }
}

/// Makes a mesh of separate triangles: `load(i)` returns the position of corner i. Depending on the
/// options, the mesh is welded, or each triangle has three vertices of its own.
///
/// If a corner is not finite, throws what `describe(i)` returns for the first such corner.
template <class Load, class Describe>
PartMesh soupOf(std::size_t triangles, const Load& load, const Describe& describe,
                const ReadOptions& options, Progress& progress) {
    PartMesh mesh;
    mesh.triangles.resize(triangles);
    if (!options.weldsVertices) {
        mesh.positions.reserve(triangles * 3);
        for (std::size_t i = 0; i < triangles * 3; ++i) {
            mesh.positions.push_back(load(i));
            if (!isFinite(mesh.positions.back())) throw describe(i);
            mesh.triangles[i / 3][i % 3] = static_cast<std::int32_t>(i);
        }
        return mesh;
    }
    // The slots are stored in the memory of the indices that will replace them.
    auto* const slots = reinterpret_cast<std::uint32_t*>(mesh.triangles.data());
    TableFiller filler(triangles * 3, load, slots, progress);
    // A closed surface has half as many vertices as triangles.
    TableFill fill = filler.run(triangles / 2, options.threads);
    if (fill.firstBad != SIZE_MAX) throw describe(fill.firstBad);
    numberCorners(
        mesh, fill, [](std::int32_t corner) { return static_cast<std::uint32_t>(corner); },
        progress);
    return mesh;
}

/// The error for a point, counted from 0, that is not finite.
PartFileError notFinite(std::size_t point);

/// Welds a mesh in place; see Tesk::weld().
void weldMesh(PartMesh& mesh, unsigned threads, Progress& progress);

}  // namespace Tesk::files
