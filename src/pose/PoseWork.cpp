#include "pose/PoseWork.h"

#include <omp.h>

#include <algorithm>

#include "TeskDebug/Exception.h"

namespace Tesk::pose {

void PoseWork::run(std::size_t count, const std::function<void(std::size_t)>& piece) {
    if (count == 0) return;
#pragma omp parallel
    runShare(static_cast<std::size_t>(omp_get_thread_num()),
             static_cast<std::size_t>(omp_get_num_threads()), count, piece);
    if (m_failure) std::rethrow_exception(m_failure);
    if (m_isAborted) throw Tesk::AbortException("Aborting...");
}

// An exception must not leave the parallel region: the first one is kept and ends the work.
void PoseWork::runShare(std::size_t thread, std::size_t threads, std::size_t count,
                        const std::function<void(std::size_t)>& piece) {
    try {
        for (std::size_t i = thread; i < count && !m_isAborted; i += threads) {
            piece(i);
            if (thread == 0) report(std::min(i + threads, count), count);
        }
    } catch (const Tesk::AbortException&) {
        m_isAborted = true;
    } catch (...) {
#pragma omp critical(tesk_pose_failure)
        if (!m_failure) m_failure = std::current_exception();
        m_isAborted = true;
    }
}

void PoseWork::report(std::size_t done, std::size_t count) {
    if (!m_progress || m_isAborted) return;
    const std::size_t span = static_cast<std::size_t>(m_last - m_first) * done / count;
    m_progress(m_first + static_cast<int>(span));
}

}  // namespace Tesk::pose
