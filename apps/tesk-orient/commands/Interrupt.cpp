#include "commands/Interrupt.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <system_error>
#include <thread>

#if defined(_WIN32)
#include <windows.h>
#else
#include <csignal>
#endif

#include "Failure.h"

namespace App {

namespace {

constexpr std::chrono::milliseconds kPatience{70};

std::atomic<bool> isInterrupted = false;
std::atomic<bool> isReported = false;
std::mutex temporaryMutex;
std::filesystem::path temporaryFile;

/// Runs on a thread of its own.
void handleInterrupt() {
    isInterrupted = true;
    std::this_thread::sleep_for(kPatience);
    Interrupt::report();
    Interrupt::endAtOnce(static_cast<int>(ExitCode::kAborted));
}

}  // namespace

#if defined(_WIN32)

Interrupt::Interrupt() {
    const auto handler = [](DWORD) -> BOOL {
        handleInterrupt();
        return TRUE;
    };
    SetConsoleCtrlHandler(handler, TRUE);
}

#else

namespace {

/// As a shell leaves SIGINT for a job that it runs in the background: such a job is not to end.
bool isIgnored(int signal) {
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

Interrupt::Interrupt() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM}) {
        if (!isIgnored(signal)) sigaddset(&signals, signal);
    }
    // Blocked here and so in every later thread: only the thread that waits gets them.
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals] {
        int signal = 0;
        sigwait(&signals, &signal);
        handleInterrupt();
    }).detach();
}

#endif

bool Interrupt::isRequested() {
    return isInterrupted;
}

void Interrupt::report() {
    if (isReported.exchange(true)) return;
    std::fputs("\ntesk-orient: aborted\n", stderr);
}

std::unique_lock<std::mutex> Interrupt::hold() {
    return std::unique_lock(temporaryMutex);
}

void Interrupt::setTemporaryFile(const std::filesystem::path& file) {
    const std::lock_guard lock(temporaryMutex);
    temporaryFile = file;
}

void Interrupt::endAtOnce(int code) {
    // Held to the end, so that no temporary file appears any more.
    const std::lock_guard lock(temporaryMutex);
    std::error_code ignored;
    if (!temporaryFile.empty()) std::filesystem::remove(temporaryFile, ignored);
    std::_Exit(code);
}

}  // namespace App
