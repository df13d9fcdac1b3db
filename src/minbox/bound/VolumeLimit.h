#pragma once

#include <atomic>
#include <limits>

/// The least volume found so far, told by the searches of one call to each other: a box that is not
/// smaller need not be looked for. It speeds up and decides nothing, so the result does not depend
/// on when a thread hears of it.
class VolumeLimit {
 public:
    double get() const { return m_volume.load(std::memory_order_relaxed); }

    void lowerTo(double volume) {
        double known = get();
        while (volume < known && !m_volume.compare_exchange_weak(known, volume)) {
        }
    }

 private:
    std::atomic<double> m_volume = std::numeric_limits<double>::infinity();
};
