#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

/// Runs two pieces of work in turn, so that a change of the machine's speed meets both, and keeps
/// the medians of their times and of the ratio of each pair.
struct PairedTimes {
    double baselineSeconds = 0.0;
    double shippedSeconds = 0.0;
    double ratio = 0.0;  ///< baseline / shipped
};

inline double medianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

template <class Work>
double secondsOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

template <class Baseline, class Shipped>
PairedTimes timeInTurn(int runs, Baseline baseline, Shipped shipped) {
    std::vector<double> baselineTimes;
    std::vector<double> shippedTimes;
    std::vector<double> ratios;
    for (int run = 0; run < runs; ++run) {
        baselineTimes.push_back(secondsOf(baseline));
        shippedTimes.push_back(secondsOf(shipped));
        ratios.push_back(baselineTimes.back() / shippedTimes.back());
    }
    return {medianOf(baselineTimes), medianOf(shippedTimes), medianOf(ratios)};
}
