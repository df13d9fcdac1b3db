#pragma once

#include <cstddef>
#include <numeric>
#include <span>
#include <utility>
#include <vector>

#include "TeskCommon/Assert.h"

namespace Tesk {

/// Items in numbered groups, stored one group after another. Within a group they keep their order.
template <class Item>
class Groups {
 public:
    Groups() = default;

    /// @param forEach  calls visit(group, item) for every item; called twice
    template <class ForEach>
    Groups(std::size_t groupCount, const ForEach& forEach) : m_first(groupCount + 2, 0) {
        // Counted two places up, so that m_first[g] is the start of group g once all are placed.
        forEach([&](std::size_t group, const Item&) { ++m_first[group + 2]; });
        std::partial_sum(m_first.begin(), m_first.end(), m_first.begin());
        m_items.resize(m_first.back());
        forEach([&](std::size_t group, const Item& item) { m_items[m_first[group + 1]++] = item; });
    }

    std::span<const Item> operator[](std::size_t group) const {
        TESK_ASSERT(group + 1 < m_first.size());
        return {m_items.data() + m_first[group], m_first[group + 1] - m_first[group]};
    }
    std::span<Item> operator[](std::size_t group) {
        const std::span<const Item> items = std::as_const(*this)[group];
        return {m_items.data() + m_first[group], items.size()};
    }

 private:
    std::vector<std::size_t> m_first;
    std::vector<Item> m_items;
};

}  // namespace Tesk
