#include "batch/workers/ProcessMemory.h"

#include <fstream>
#include <limits>
#include <string>

#if defined(_WIN32)
#include <windows.h>
// After windows.h.
#include <psapi.h>
#else
#include <sys/resource.h>
#endif

namespace App {

#if defined(_WIN32)

bool limitMemory(std::uint64_t bytes) {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof(counters);
    if (GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters)) == 0) return false;
    // Stays open, and the limit with it, as long as the process.
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    if (job == nullptr) return false;
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_PROCESS_MEMORY;
    limits.ProcessMemoryLimit = static_cast<SIZE_T>(counters.PagefileUsage + bytes);
    return SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits,
                                   sizeof(limits)) != 0 &&
           AssignProcessToJobObject(job, GetCurrentProcess()) != 0;
}

void volunteerWhenMemoryRunsOut() {}

void resetPeakMemory() {}

std::optional<std::uint64_t> peakMemoryBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof(counters);
    if (GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters)) == 0) return {};
    return counters.PeakWorkingSetSize;
}

#else

namespace {

/// A line of /proc/self/status such as "VmHWM:  12345 kB".
std::optional<std::uint64_t> statusBytes(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":")) return std::stoull(line.substr(name.size() + 1)) * 1024;
    }
    return std::nullopt;
}

}  // namespace

bool limitMemory(std::uint64_t bytes) {
    const std::uint64_t now = statusBytes("VmSize").value_or(0);
    if (bytes > std::numeric_limits<rlim_t>::max() - now) return true;
    rlimit limit{};
    if (getrlimit(RLIMIT_AS, &limit) != 0) return false;
    const rlim_t wanted = now + bytes;
    if (limit.rlim_max != RLIM_INFINITY && limit.rlim_max < wanted) return true;
    limit = {wanted, wanted};
    return setrlimit(RLIMIT_AS, &limit) == 0;
}

void volunteerWhenMemoryRunsOut() {
    std::ofstream("/proc/self/oom_score_adj") << "500";
}

void resetPeakMemory() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

std::optional<std::uint64_t> peakMemoryBytes() {
    if (const auto bytes = statusBytes("VmHWM")) return bytes;
    rusage usage{};
    if (getrusage(RUSAGE_SELF, &usage) != 0) return std::nullopt;
    return static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
}

#endif

}  // namespace App
