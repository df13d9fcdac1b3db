#include "batch/BatchProgress.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdio>

#include "Terminal.h"

namespace App {

namespace {

constexpr int kWidth = 30;
constexpr double kBarSeconds = 0.1;
constexpr double kLineSeconds = 10.0;

/// 12345 as 12,345, whatever the locale.
std::string grouped(std::size_t count) {
    if (count < 1000) return fmt::format("{}", count);
    return fmt::format("{},{:03}", grouped(count / 1000), count % 1000);
}

std::string durationText(double seconds) {
    const auto whole = static_cast<long long>(std::ceil(seconds));
    if (whole < 120) return fmt::format("{} s", whole);
    if (whole < 7200) return fmt::format("{} min", (whole + 59) / 60);
    return fmt::format("{} h {} min", whole / 3600, whole % 3600 / 60);
}

std::string rateText(double perSecond) {
    return perSecond >= 0.1 ? fmt::format("{:.1f}/s", perSecond)
                            : fmt::format("{:.1f}/min", perSecond * 60.0);
}

}  // namespace

std::string progressText(const BatchCounts& counts, double seconds, int width) {
    const std::size_t ended = counts.done + counts.skipped;
    std::string text;
    if (width > 0) {
        const auto filled =
            counts.total == 0
                ? width
                : static_cast<int>(ended * static_cast<std::size_t>(width) / counts.total);
        text = fmt::format("[{:#<{}}{: <{}}] ", "", filled, "", width - filled);
    }
    text += fmt::format("{} of {}, {} failed", grouped(ended), grouped(counts.total),
                        grouped(counts.failed));
    if (counts.done == 0 || !(seconds > 0.0)) return text;
    const double perSecond = static_cast<double>(counts.done) / seconds;
    return text + fmt::format(", {}, {} left", rateText(perSecond),
                              durationText(static_cast<double>(counts.left()) / perSecond));
}

std::string summaryText(const BatchCounts& counts, double seconds) {
    std::string text = fmt::format("{} {}: {} done", grouped(counts.total),
                                   counts.total == 1 ? "part" : "parts", grouped(counts.done));
    if (counts.skipped > 0) {
        text += fmt::format(", {} in the results already", grouped(counts.skipped));
    }
    text += fmt::format(", {} failed; {:.1f} s", grouped(counts.failed), seconds);
    if (counts.done > 0 && seconds > 0.0) {
        text += ", " + rateText(static_cast<double>(counts.done) / seconds);
    }
    return text + "\n";
}

std::string printable(const std::string& text) {
    std::string line;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n') {
            line += "\\n";
        } else if (byte < 0x20 || byte == 0x7f) {
            line += fmt::format("\\x{:02x}", byte);
        } else {
            line += c;
        }
    }
    return line;
}

BatchProgress::BatchProgress(bool isWanted)
    : m_isWanted(isWanted),
      m_isTerminal(isErrorTerminal()),
      m_shownAt(m_isTerminal ? -kBarSeconds : 0.0) {}

BatchProgress::~BatchProgress() {
    clearBar();
}

void BatchProgress::clearBar() {
    if (m_barLength > 0) fmt::print(stderr, "\r{:{}}\r", "", m_barLength);
    m_barLength = 0;
}

void BatchProgress::failure(const std::string& text) {
    if (!m_isWanted) return;
    clearBar();
    fmt::print(stderr, "tesk-orient: {}\n", printable(text));
}

void BatchProgress::show(const BatchCounts& counts, double seconds) {
    if (!m_isWanted || seconds < m_shownAt + (m_isTerminal ? kBarSeconds : kLineSeconds)) return;
    m_shownAt = seconds;
    const std::string text = progressText(counts, seconds, m_isTerminal ? kWidth : 0);
    if (!m_isTerminal) {
        fmt::print(stderr, "{}\n", text);
        return;
    }
    // What was longer before goes.
    fmt::print(stderr, "\r{:<{}}", text, m_barLength);
    std::fflush(stderr);
    m_barLength = text.size();
}

}  // namespace App
