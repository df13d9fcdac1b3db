#pragma once

#include <cstddef>
#include <functional>

namespace Tesk::files {

/// Whole percentages, each at most once and ascending, handed to a callback on one thread.
class Progress {
 public:
    explicit Progress(const std::function<void(int)>& callback) : m_callback(callback) {}

    /// From now on, 0 to 100 stand for percentages from one to another.
    void setRange(int from, int to) {
        m_from = from;
        m_to = to;
    }

    /// `done` of `total` of the stage that reaches from one percentage to another.
    void report(std::size_t done, std::size_t total, int from, int to) {
        if (!m_callback || total == 0) return;
        const double share = static_cast<double>(done) / static_cast<double>(total);
        const int inStage = from + static_cast<int>(share * (to - from));
        const int percent = m_from + inStage * (m_to - m_from) / 100;
        if (percent <= m_last) return;
        m_last = percent;
        m_callback(percent);
    }

 private:
    const std::function<void(int)>& m_callback;
    int m_from = 0;
    int m_to = 100;
    int m_last = -1;
};

}  // namespace Tesk::files
