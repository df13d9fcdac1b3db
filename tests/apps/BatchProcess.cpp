#include "BatchProcess.h"

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

#include <fcntl.h>

#include "RunProgram.h"

namespace {

constexpr int kRunning = -1000;

/// What follows a name in /proc/PROCESS/status.
std::string statusOf(pid_t process, const std::string& name) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(name + ":", 0) == 0) return line.substr(name.size() + 1);
    }
    return {};
}

}  // namespace

BatchProcess::BatchProcess(const std::vector<std::string>& arguments) {
    std::vector<char*> argv = {const_cast<char*>(TESK_PROGRAM)};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    m_child = fork();
    if (m_child != 0) return;
    for (const int number : {SIGINT, SIGTERM}) std::signal(number, SIG_DFL);
    const int nowhere = open("/dev/null", O_RDWR);
    for (int stream = 0; stream < 2; ++stream) dup2(nowhere, stream);
    execv(TESK_PROGRAM, argv.data());
    _exit(127);
}

BatchProcess::~BatchProcess() {
    if (m_code != kRunning) return;
    signal(SIGKILL);
    wait();
}

void BatchProcess::signal(int number) const {
    kill(m_child, number);
}

int BatchProcess::wait() {
    int status = 0;
    if (m_code == kRunning && waitpid(m_child, &status, 0) == m_child) {
        m_code = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    return m_code;
}

int BatchProcess::waitFor(double seconds) {
    siginfo_t info{};
    becomesTrue(
        [&] {
            info.si_pid = 0;
            waitid(P_PID, static_cast<id_t>(m_child), &info, WEXITED | WNOHANG | WNOWAIT);
            return info.si_pid == m_child;
        },
        seconds);
    return info.si_pid == m_child ? wait() : kRunning;
}

std::vector<pid_t> BatchProcess::workers() const {
    const std::string process = std::to_string(m_child);
    std::istringstream children(readAll("/proc/" + process + "/task/" + process + "/children"));
    std::vector<pid_t> workers;
    for (pid_t child = 0; children >> child;) {
        if (isAlive(child)) workers.push_back(child);
    }
    return workers;
}

pid_t BatchProcess::workerWithMemory(std::size_t bytes) {
    pid_t found = -1;
    becomesTrue(
        [&] {
            for (const pid_t worker : workers()) {
                if (std::strtoull(statusOf(worker, "VmRSS").c_str(), nullptr, 10) * 1024 >= bytes)
                    found = worker;
            }
            return found != -1 || waitFor(0.0) != kRunning;
        },
        60.0);
    return found;
}

bool becomesTrue(const std::function<bool()>& condition, double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

bool isAlive(pid_t process) {
    const std::string state = statusOf(process, "State");
    return !state.empty() && state.find('Z') == std::string::npos;
}
