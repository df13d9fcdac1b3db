#pragma once

#include <cstddef>
#include <functional>

namespace Tesk::files {

/// Whole percentages, each at most once and ascending, handed to a callback on one thread.
class Progress {
 public:
    explicit Progress(const std::function<void(int)>& callback) : m_callback(callback) {}

    /// `done` of `total` of the stage that reaches from one percentage to another.
    void report(std::size_t done, std::size_t total, int from, int to) {
        if (!m_callback || total == 0) return;
        const double share = static_cast<double>(done) / static_cast<double>(total);
        const int percent = from + static_cast<int>(share * (to - from));
        if (percent <= m_last) return;
        m_last = percent;
        m_callback(percent);
    }

 private:
    const std::function<void(int)>& m_callback;
    int m_last = -1;
};

}  // namespace Tesk::files
