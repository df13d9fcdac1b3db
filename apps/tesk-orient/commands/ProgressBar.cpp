#include "commands/ProgressBar.h"

#include <fmt/format.h>

#include <cstdio>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace App {

namespace {

constexpr int kWidth = 40;

bool isTerminal() {
#if defined(_WIN32)
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

}  // namespace

ProgressBar::ProgressBar(bool isWanted) : m_isShown(isWanted && isTerminal()) {}

ProgressBar::~ProgressBar() {
    if (m_isShown) fmt::print(stderr, "\r{:{}}\r", "", kWidth + 10);
}

void ProgressBar::show(int percent) {
    if (!m_isShown) return;
    const int done = percent * kWidth / 100;
    fmt::print(stderr, "\r[{:#<{}}{: <{}}] {:3} %", "", done, "", kWidth - done, percent);
    std::fflush(stderr);
}

}  // namespace App
