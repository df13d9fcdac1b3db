#include "commands/ProgressBar.h"

#include <fmt/format.h>

#include <cstdio>

#include "Terminal.h"

namespace App {

namespace {

constexpr int kWidth = 40;

}  // namespace

ProgressBar::ProgressBar(bool isWanted) : m_isShown(isWanted && isErrorTerminal()) {}

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
