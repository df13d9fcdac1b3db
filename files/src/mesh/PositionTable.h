#pragma once

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>

#include "TeskPartFiles/PartFiles.h"

namespace Tesk::files {

/// An open-addressing table of distinct positions, of fixed size, that any number of threads fill
/// at once without locks. Equal positions always share a slot; which slot that is depends on
/// timing. Once the table is filled, one thread numbers the slots.
class PositionTable {
 public:
    static constexpr std::uint32_t kNoRoom = 0xffffffffu;

    /// Holds at most `capacity` positions, and is fast while up to three quarters of the slots are
    /// taken. `capacity` is more than 0 and less than 2^32 - 1.
    explicit PositionTable(std::size_t capacity)
        : m_capacity(capacity),
          // Zeroed pages come from the system when they are touched, by whichever thread.
          m_slots(static_cast<Slot*>(std::calloc(capacity, sizeof(Slot)))) {
        if (m_slots == nullptr) throw std::bad_alloc();
    }

    std::size_t capacity() const { return m_capacity; }

    /// Fetches what slotOf() will need.
    void prefetch(const PartPoint& position) const {
#if defined(__GNUC__)
        __builtin_prefetch(&m_slots[firstSlot(plainZeros(position))], 1);
#endif
    }

    /// Fetches what numberOf() will need.
    void prefetch(std::uint32_t slot) const {
#if defined(__GNUC__)
        __builtin_prefetch(&m_slots[slot], 1);
#endif
    }

    /// The slot of a finite position. A new position is stored there and counted in `news`. Returns
    /// kNoRoom if every slot is taken.
    std::uint32_t slotOf(const PartPoint& position, std::size_t& news) {
        const PartPoint p = plainZeros(position);
        std::size_t slot = firstSlot(p);
        for (std::size_t probes = 0; probes < m_capacity; ++probes) {
            if (claimOrMatch(m_slots[slot], p, news)) return static_cast<std::uint32_t>(slot);
            if (++slot == m_capacity) slot = 0;
        }
        return kNoRoom;
    }

    /// The number of a used slot. A slot that has none yet gets `next`.
    std::uint32_t numberOf(std::uint32_t slot, std::uint32_t next) {
        std::uint32_t& state = m_slots[slot].state;
        if (state == kReady) state = kFirstNumber + next;
        return state - kFirstNumber;
    }

    /// The position in a used slot, its zeros all positive.
    const PartPoint& position(std::uint32_t slot) const {
        return m_slots[slot].position;
    }

 private:
    static constexpr std::uint32_t kEmpty = 0;
    static constexpr std::uint32_t kBusy = 1;
    static constexpr std::uint32_t kReady = 2;
    static constexpr std::uint32_t kFirstNumber = 3;

    struct Slot {
        PartPoint position;
        std::uint32_t state;
    };

    struct Free {
        void operator()(Slot* slots) const { std::free(slots); }
    };

    static PartPoint plainZeros(const PartPoint& p) {
        return {p.x + 0.0f, p.y + 0.0f, p.z + 0.0f};
    }

    std::size_t firstSlot(const PartPoint& p) const {
        const std::uint64_t x = std::bit_cast<std::uint32_t>(p.x);
        const std::uint64_t y = std::bit_cast<std::uint32_t>(p.y);
        const std::uint64_t z = std::bit_cast<std::uint32_t>(p.z);
        std::uint64_t hash = (x << 32 | y) * 0x9e3779b97f4a7c15u;
        hash ^= hash >> 29;
        hash = (hash + z) * 0xbf58476d1ce4e5b9u;
        hash ^= hash >> 32;
        return static_cast<std::size_t>((hash & 0xffffffffu) * m_capacity >> 32);
    }

    static bool claimOrMatch(Slot& slot, const PartPoint& p, std::size_t& news) {
        const std::atomic_ref state(slot.state);
        std::uint32_t seen = state.load(std::memory_order_acquire);
        if (seen == kEmpty &&
            state.compare_exchange_strong(seen, kBusy, std::memory_order_acquire)) {
            slot.position = p;
            state.store(kReady, std::memory_order_release);
            ++news;
            return true;
        }
        while (seen == kBusy) seen = state.load(std::memory_order_acquire);
        return slot.position == p;
    }

    std::size_t m_capacity;
    std::unique_ptr<Slot[], Free> m_slots;
};

}  // namespace Tesk::files
