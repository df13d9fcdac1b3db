#include "minbox/edges/DirectionIndex.h"

#include <algorithm>

namespace Tesk::minbox {
namespace {

/// Two directions per cell on average: a query visits all cells along a circle.
int sizeFor(std::size_t count) {
    return std::clamp(static_cast<int>(std::sqrt(static_cast<double>(count) / 6.0)), 1, 1024);
}

int largestComponent(const Vector& v) {
    const Vector size{std::fabs(v.x), std::fabs(v.y), std::fabs(v.z)};
    if (size.x >= size.y && size.x >= size.z) return 0;
    return size.y >= size.z ? 1 : 2;
}

}  // namespace

DirectionIndex::DirectionIndex(const std::vector<Vector>& directions)
    : m_size(sizeFor(directions.size())) {
    std::vector<std::size_t> cells;
    cells.reserve(directions.size());
    for (const Vector& direction : directions) cells.push_back(cellOf(direction));
    const std::size_t cellCount =
        3 * static_cast<std::size_t>(m_size) * static_cast<std::size_t>(m_size);
    m_members = {cellCount, [&](auto visit) {
                     for (std::size_t i = 0; i < cells.size(); ++i) {
                         visit(cells[i], Member{directions[i], static_cast<int>(i)});
                     }
                 }};
}

std::size_t DirectionIndex::cellOf(const Vector& direction) const {
    const int face = largestComponent(direction);
    const double scale = direction[face];
    const auto place = [&](int axis) {
        const int i = static_cast<int>(inCells(direction[(face + axis) % 3] / scale));
        return std::clamp(i, 0, m_size - 1);
    };
    return cell(face, place(1), place(2));
}

}  // namespace Tesk::minbox
