#include "minbox/bound/DirectionOrder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "TeskCommon/Assert.h"

namespace Tesk::minbox {
namespace {

/// The place of a unit vector along the curve, with 10 bits per coordinate.
std::uint32_t placeOnCurve(const Vector& unit) {
    constexpr int kBits = 10;
    std::array<std::uint32_t, 3> cell;
    for (int axis = 0; axis < 3; ++axis) {
        const double inCells = (unit[axis] + 1.0) * 0.5 * ((1 << kBits) - 1);
        cell[static_cast<std::size_t>(axis)] = static_cast<std::uint32_t>(inCells);
    }
    std::uint32_t place = 0;
    for (int bit = kBits - 1; bit >= 0; --bit) {
        for (const std::uint32_t coordinate : cell) place = place << 1 | (coordinate >> bit & 1);
    }
    return place;
}

}  // namespace

void orderByDirection(const std::vector<Vector>& directions, std::vector<int>& indices) {
    std::vector<std::pair<std::uint32_t, int>> places;
    places.reserve(indices.size());
    for (const int index : indices) {
        TESK_ASSERT(index >= 0 && static_cast<std::size_t>(index) < directions.size());
        const Vector unit = directions[static_cast<std::size_t>(index)].GetNormal();
        places.emplace_back(placeOnCurve(unit), index);
    }
    std::sort(places.begin(), places.end());
    for (std::size_t i = 0; i < places.size(); ++i) indices[i] = places[i].second;
}

}  // namespace Tesk::minbox
