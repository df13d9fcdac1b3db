#include "Welding.h"

#include <bit>
#include <cstddef>

namespace App {

namespace {

constexpr std::int32_t kEmpty = -1;

std::uint64_t hashOf(const UPoint3<float>& p) {
    // Adding +0 makes +0 of -0.
    const std::uint64_t x = std::bit_cast<std::uint32_t>(p.x + 0.0f);
    const std::uint64_t y = std::bit_cast<std::uint32_t>(p.y + 0.0f);
    const std::uint64_t z = std::bit_cast<std::uint32_t>(p.z + 0.0f);
    std::uint64_t hash = (x << 32 | y) * 0x9e3779b97f4a7c15u;
    hash ^= hash >> 29;
    hash = (hash + z) * 0xbf58476d1ce4e5b9u;
    return hash ^ hash >> 32;
}

/// An open-addressing table of the positions met so far.
class PositionTable {
 public:
    PositionTable(std::vector<UPoint3<float>>& positions, std::size_t most)
        : m_positions(positions), m_slots(std::bit_ceil(most * 2 + 2), kEmpty) {}

    std::int32_t indexOf(const UPoint3<float>& p) {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t slot = static_cast<std::size_t>(hashOf(p)) & mask;
        while (m_slots[slot] != kEmpty) {
            const UPoint3<float>& other = m_positions[static_cast<std::size_t>(m_slots[slot])];
            if (other.x == p.x && other.y == p.y && other.z == p.z) return m_slots[slot];
            slot = (slot + 1) & mask;
        }
        m_slots[slot] = static_cast<std::int32_t>(m_positions.size());
        m_positions.emplace_back(p.x + 0.0f, p.y + 0.0f, p.z + 0.0f);
        return m_slots[slot];
    }

 private:
    std::vector<UPoint3<float>>& m_positions;
    std::vector<std::int32_t> m_slots;
};

}  // namespace

TriangleMesh weld(const TriangleMesh& mesh) {
    TriangleMesh welded;
    welded.triangles.reserve(mesh.triangles.size());
    PositionTable table(welded.positions, mesh.positions.size());
    for (const auto& corners : mesh.triangles) {
        std::array<std::int32_t, 3> merged{};
        for (std::size_t k = 0; k < 3; ++k) {
            merged[k] = table.indexOf(mesh.positions[static_cast<std::size_t>(corners[k])]);
        }
        welded.triangles.push_back(merged);
    }
    return welded;
}

}  // namespace App
