// How long a call goes on after its callback has asked for an end: from the exception to the moment
// that the call has left, for reports early, in the middle and late.

#include <fmt/format.h>
#include <omp.h>

#include <CLI/CLI.hpp>
#include <atomic>
#include <functional>
#include <optional>

#include "OrientOptimizer.h"
#include "TeskDebug/Exception.h"
#include "shapes/Shapes.h"
#include "support/BenchPoints.h"
#include "support/PairedTimer.h"

namespace {

using Clock = std::chrono::steady_clock;
using Progress = std::function<void(int)>;

/// Runs a call that aborts at the given report; the seconds that it then went on, or none where it
/// ended before.
std::optional<double> latencyAt(int report, const std::function<void(const Progress&)>& call) {
    std::atomic<int> reports = 0;
    Clock::time_point thrown;
    try {
        call([&](int) {
            if (reports++ != report) return;
            thrown = Clock::now();
            throw Tesk::AbortException("enough");
        });
    } catch (const Tesk::AbortException&) {
        return std::chrono::duration<double>(Clock::now() - thrown).count();
    }
    return std::nullopt;
}

/// Prints the longest latency over reports spread through the call.
void printLatency(const std::string& name, const std::function<void(const Progress&)>& call) {
    int all = 0;
    const double whole = secondsOf([&] {
        std::atomic<int> reports = 0;
        call([&](int) { ++reports; });
        all = reports;
    });
    double longest = 0.0;
    int measured = 0;
    constexpr int kPlaces = 12;
    for (int i = 0; i < kPlaces && i < all; ++i) {
        const int report = all <= kPlaces ? i : i * (all - 1) / (kPlaces - 1);
        const std::optional<double> latency = latencyAt(report, call);
        if (!latency) continue;
        longest = std::max(longest, *latency);
        ++measured;
    }
    fmt::print("{:<44} {:>10.1f} {:>8} {:>6} {:>14.1f}\n", name, whole * 1e3, all, measured,
               longest * 1e3);
    std::fflush(stdout);
}

void printOrientation(int threads) {
    const Part part = makeSphere(30.0f, 1'000'000);
    MeshKernel mesh = part.kernel();
    omp_set_num_threads(threads);
    printLatency(fmt::format("orientations, 1M triangles, {} threads", threads),
                 [&](const Progress& progress) {
                     UVector3<float> axis;
                     float angle = 0.0f;
                     std::vector<OptimizeOrient::OptOrientation> records;
                     OrientOptimizer::calculateOrients(&mesh, {}, axis, angle, &records, progress);
                 });
}

void printBoxes(const NamedPoints& set, unsigned int threads) {
    const int count = static_cast<int>(set.points.size());
    const auto* points = set.points.data();
    const auto print = [&](const char* operation, auto run) {
        printLatency(fmt::format("{}, {}, {} threads", operation, set.name, threads),
                     [&](const Progress& progress) {
                         MinBoundingBox calculator(threads);
                         calculator.setCallBackFunction(progress);
                         run(calculator);
                     });
    };
    print("volume", [&](MinBoundingBox& b) { b(count, points); });
    constexpr std::size_t kMany = 20'000;  // the others take minutes
    if (set.points.size() > kMany) return;
    print("base area", [&](MinBoundingBox& b) { b.minBaseAreaBox(count, points); });
    print("height", [&](MinBoundingBox& b) { b.minBaseAreaAndHeightBox(count, points); });
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t maxPoints = 200'000;
    CLI::App app("Tells how soon a call ends after its callback has asked for it");
    app.add_option("--max-points", maxPoints, "Leave out bigger sets");
    CLI11_PARSE(app, argc, argv);
    fmt::print("{:<44} {:>10} {:>8} {:>6} {:>14}\n", "call", "whole ms", "reports", "aborts",
               "longest ms");
    for (const int threads : {1, 2}) printOrientation(threads);
    for (const NamedPoints& set : benchPointSets(maxPoints)) {
        if (set.points.size() < 1000) continue;
        for (const unsigned int threads : {1u, 2u}) printBoxes(set, threads);
    }
    return 0;
}
