#include "pose/work/PoseWork.h"

#include <algorithm>
#include <cstdint>

#include "TeskDebug/Exception.h"

namespace Tesk::pose {

void PoseWork::run(std::size_t count, const std::function<void(std::size_t)>& piece) {
    if (count == 0) return;
    const int threads = Tesk::threadsFor(static_cast<std::int64_t>(count), /*share=*/1);
    Tesk::withTeam(threads, [&](Tesk::Team& team) { runOn(team, count, piece); });
    if (m_isAborted) throw Tesk::AbortException("Aborting...");
}

void PoseWork::runOn(Tesk::Team& team, std::size_t count,
                     const std::function<void(std::size_t)>& piece) {
    const auto threads = static_cast<std::size_t>(team.size());
    const std::size_t reports = (count + threads - 1) / threads;
    m_reports = 0;
    team.forPieces(static_cast<std::int64_t>(count), /*piece=*/1,
                   [&](std::int64_t i, std::int64_t, int thread) {
                       if (m_isAborted) return;
                       piece(static_cast<std::size_t>(i));
                       if (thread == 0) report(reports);
                   });
    while (m_reports < reports && !m_isAborted) report(reports);
}

void PoseWork::report(std::size_t reports) {
    if (m_reports >= reports) return;
    ++m_reports;
    if (!m_progress || m_isAborted) return;
    const std::size_t span = static_cast<std::size_t>(m_last - m_first) * m_reports / reports;
    try {
        m_progress(m_first + static_cast<int>(span));
    } catch (const Tesk::AbortException&) {
        m_isAborted = true;
    }
}

}  // namespace Tesk::pose
