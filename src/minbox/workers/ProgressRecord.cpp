#include "minbox/workers/ProgressRecord.h"

#include <utility>

#include "TeskCommon/Assert.h"

namespace Tesk::minbox {

ProgressRecord::ProgressRecord(std::int32_t first, std::int32_t total,
                               std::function<void(int)> callback)
    : m_first(first),
      m_total(total),
      m_callback(std::move(callback)),
      m_ownerThread(std::this_thread::get_id()) {}

bool ProgressRecord::step() {
    TESK_ASSERT(m_total > 0);
    const std::lock_guard lock(m_mutex);
    if (m_hasThrown) return false;
    ++m_counter;
    const float done = static_cast<float>(m_counter) * 100.0f / static_cast<float>(m_total);
    const int percent = static_cast<int>(done + static_cast<float>(m_first));
    if (m_lastReported < percent && m_callback) {
        m_hasThrown = true;  // until it returns
        m_callback(percent);
        m_hasThrown = false;
        m_lastReported = percent;
    }
    return true;
}

}  // namespace Tesk::minbox
