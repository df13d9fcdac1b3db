#include "orient/BusyProcessors.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

[[noreturn]] void computeWhileChildOf(pid_t parent) {
    // Volatile, so that the loop is not optimised away.
    constexpr int kRoundsBetweenLooks = 1 << 20;
    volatile int rounds = 0;
    while (getppid() == parent) {
        for (int i = 0; i < kRoundsBetweenLooks; ++i) rounds = i;
    }
    static_cast<void>(rounds);
    _exit(0);
}

}  // namespace

BusyProcessors::BusyProcessors(int processes) {
    const pid_t parent = getpid();
    for (int i = 0; i < processes; ++i) {
        const pid_t child = fork();
        if (child == 0) computeWhileChildOf(parent);
        if (child > 0) m_processes.push_back(child);
    }
}

BusyProcessors::~BusyProcessors() {
    for (const pid_t process : m_processes) kill(process, SIGKILL);
    for (const pid_t process : m_processes) waitpid(process, nullptr, 0);
}
