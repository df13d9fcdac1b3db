#pragma once

#include <csignal>

namespace App {

/// While it lives, what goes wrong with a pipe or a file is told by the call that meets it alone: a
/// worker that ends while it is written to, or a file that reaches a size limit, does not end this
/// process by a signal.
class IgnoredSignals {
 public:
#if defined(_WIN32)
    IgnoredSignals() {}   // there are none
    ~IgnoredSignals() {}  // not "= default": the object has a purpose elsewhere
#else
    IgnoredSignals()
        : m_pipe(std::signal(SIGPIPE, SIG_IGN)), m_fileSize(std::signal(SIGXFSZ, SIG_IGN)) {}
    ~IgnoredSignals() {
        (void)std::signal(SIGPIPE, m_pipe);
        (void)std::signal(SIGXFSZ, m_fileSize);
    }
#endif
    IgnoredSignals(const IgnoredSignals&) = delete;
    IgnoredSignals& operator=(const IgnoredSignals&) = delete;

#if !defined(_WIN32)
 private:
    void (*m_pipe)(int);
    void (*m_fileSize)(int);
#endif
};

}  // namespace App
