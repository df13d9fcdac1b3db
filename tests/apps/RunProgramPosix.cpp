#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <stdexcept>
#include <thread>

#include "RunProgram.h"

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;

/// The signals that the child gets with their default action, whatever this process does with them.
sigset_t defaultSignals(InheritedSigint inherited) {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    if (inherited == InheritedSigint::kEnds) sigaddset(&signals, SIGINT);
    return signals;
}

pid_t spawn(const std::string& program, char** argv, const posix_spawn_file_actions_t& actions,
            InheritedSigint inherited) {
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    const sigset_t defaults = defaultSignals(inherited);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    const auto former =
        inherited == InheritedSigint::kIgnored ? std::signal(SIGINT, SIG_IGN) : SIG_ERR;
    pid_t child = 0;
    const int failure = posix_spawn(&child, program.c_str(), &actions, &attributes, argv, environ);
    if (former != SIG_ERR) std::signal(SIGINT, former);
    posix_spawnattr_destroy(&attributes);
    if (failure != 0) throw std::runtime_error("cannot start " + program);
    return child;
}

pid_t start(const std::string& program, const std::vector<std::string>& arguments,
            const std::string& out, const std::string& error, InheritedSigint inherited) {
    std::vector<char*> argv = {const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    constexpr int kCreate = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), kCreate, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, error.c_str(), kCreate, 0600);
    const pid_t child = spawn(program, argv.data(), actions, inherited);
    posix_spawn_file_actions_destroy(&actions);
    return child;
}

/// Waits until the process has come so far that it handles signals itself: it blocks them for all
/// threads but one. SIGTERM is looked at, as SIGINT may be ignored.
void waitUntilReady(pid_t child) {
    const std::string status = "/proc/" + std::to_string(child) + "/status";
    for (int i = 0; i < 10'000; ++i) {
        const std::string text = readAll(status);
        const std::size_t mask = text.find("SigBlk:");
        if (mask == std::string::npos) return;
        if ((std::stoull(text.substr(mask + 7), nullptr, 16) & (1u << (SIGTERM - 1))) != 0) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

}  // namespace

ProgramResult run(const std::string& program, const std::vector<std::string>& arguments,
                  int interruptAfterMs, InheritedSigint inherited) {
    const TemporaryFolder folder;
    const pid_t child =
        start(program, arguments, folder.file("out"), folder.file("error"), inherited);
    auto since = Clock::now();
    if (interruptAfterMs >= 0) {
        waitUntilReady(child);
        std::this_thread::sleep_for(std::chrono::milliseconds(interruptAfterMs));
        since = Clock::now();
        kill(child, SIGINT);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ProgramResult result;
    result.seconds = std::chrono::duration<double>(Clock::now() - since).count();
    result.code = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    result.out = readAll(folder.file("out"));
    result.error = readAll(folder.file("error"));
    return result;
}

bool canInterrupt() {
    return true;
}
