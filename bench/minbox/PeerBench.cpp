// Times hulls and least-volume boxes against the libraries that one would otherwise take, one
// thread each and in turn: Qhull for hulls, CGAL's oriented bounding box (which searches at random)
// for boxes. Prints medians, ratios, the boxes' volumes and our result hash.

#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/optimal_bounding_box.h>
#include <fmt/format.h>
#include <libqhull_r/qhull_ra.h>

#include <CLI/CLI.hpp>

#include "MinBoundingBox.h"
#include "TeskSDKCommonTools/ConvexHull3.h"
#include "support/BenchPoints.h"
#include "support/PairedTimer.h"

namespace {

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;

struct Options {
    int runs = 3;
    std::size_t maxPoints = 2'000'000;
    std::string only;
};

/// Sums over the sets for the closing lines.
struct Totals {
    double peerSeconds = 0.0;
    double ourSeconds = 0.0;
    int slower = 0;
};

std::size_t qhullVertices(const Points& points) {
    std::vector<double> coordinates;
    coordinates.reserve(points.size() * 3);
    for (const UPoint3<float>& p : points) coordinates.insert(coordinates.end(), {p.x, p.y, p.z});
    qhT state;
    qh_zero(&state, stderr);
    char command[] = "qhull Qt";
    const int failure = qh_new_qhull(&state, 3, static_cast<int>(points.size()), coordinates.data(),
                                     False, command, nullptr, stderr);
    const auto vertices = static_cast<std::size_t>(failure == 0 ? state.num_vertices : 0);
    qh_freeqhull(&state, !qh_ALL);
    int currentLong = 0;
    int totalLong = 0;
    qh_memfreeshort(&state, &currentLong, &totalLong);
    return vertices;
}

double cgalVolume(const Points& points) {
    std::vector<Kernel::Point_3> all;
    all.reserve(points.size());
    for (const UPoint3<float>& p : points) all.emplace_back(p.x, p.y, p.z);
    std::array<Kernel::Point_3, 8> corners;
    CGAL::oriented_bounding_box(all, corners);
    const auto length = [&](int a, int b) {
        return std::sqrt(CGAL::squared_distance(corners[static_cast<std::size_t>(a)],
                                                corners[static_cast<std::size_t>(b)]));
    };
    return length(0, 1) * length(0, 3) * length(0, 5);
}

void benchSet(const NamedPoints& set, const Options& options, Totals& totals) {
    const Points& points = set.points;
    const int count = static_cast<int>(points.size());
    std::size_t vertices = 0;
    const PairedTimes hull = timeInTurn(
        options.runs, [&] { qhullVertices(points); },
        [&] { vertices = gte::ConvexHull3(points.data(), count, 3).getVertices().size(); });
    double peerVolume = 0.0;
    OrientedBox3 box;
    const PairedTimes boxes = timeInTurn(
        options.runs, [&] { peerVolume = cgalVolume(points); },
        [&] {
            MinBoundingBox calculator(1);
            box = calculator(count, points.data());
        });
    const double volume = 8.0 * static_cast<double>(box.extent.x) *
                          static_cast<double>(box.extent.y) * static_cast<double>(box.extent.z);
    fmt::print(
        "{:<28} {:>8} {:>7} {:>9.2f} {:>9.2f} {:>6.1f} {:>10.2f} {:>10.2f} {:>6.1f} "
        "{:>8.4f}  {:016x}\n",
        set.name.substr(0, 28), points.size(), vertices, hull.baselineSeconds * 1e3,
        hull.shippedSeconds * 1e3, hull.ratio, boxes.baselineSeconds * 1e3,
        boxes.shippedSeconds * 1e3, boxes.ratio, peerVolume / volume, hashOf(box));
    std::fflush(stdout);
    totals.peerSeconds += boxes.baselineSeconds;
    totals.ourSeconds += boxes.shippedSeconds;
    totals.slower += boxes.ratio < 1.0 ? 1 : 0;
}

/// A set whose box would take too long: the hull alone.
void benchHull(const NamedPoints& set, const Options& options) {
    std::size_t vertices = 0;
    const int count = static_cast<int>(set.points.size());
    const PairedTimes hull = timeInTurn(
        options.runs, [&] { qhullVertices(set.points); },
        [&] { vertices = gte::ConvexHull3(set.points.data(), count, 3).getVertices().size(); });
    fmt::print("{:<28} {:>8} {:>7} {:>9.2f} {:>9.2f} {:>6.1f}\n", set.name, count, vertices,
               hull.baselineSeconds * 1e3, hull.shippedSeconds * 1e3, hull.ratio);
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Times hulls and boxes against Qhull and CGAL");
    app.add_option("--runs", options.runs, "Runs of each")->check(CLI::Range(1, 1000));
    app.add_option("--max-points", options.maxPoints, "Leave out bigger sets");
    app.add_option("--only", options.only, "The one set of this name");
    CLI11_PARSE(app, argc, argv);
    fmt::print(
        "Hulls against Qhull, least-volume boxes with their hulls against CGAL, in turn. (Ours "
        "searches edges\non a thread of its own: to compare one core's work, run this on one.) "
        "Medians of {}.\n\n{:<28} {:>8} {:>7} {:>9} {:>9} {:>6} {:>10} "
        "{:>10} {:>6} {:>8}  {}\n",
        options.runs, "points", "count", "hull", "Qhull ms", "ours ms", "ratio", "CGAL ms",
        "ours ms", "ratio", "volumes", "result hash");
    Totals totals;
    for (const NamedPoints& set : benchPointSets(options.maxPoints)) {
        if (!options.only.empty() && set.name != options.only) continue;
        benchSet(set, options, totals);
    }
    constexpr std::size_t kMillion = 1'000'000;
    if (options.only.empty() && options.maxPoints >= kMillion) {
        TestRandom random(1);
        benchHull({"sphere 1M", pointsOnSphere(kMillion, random)}, options);
    }
    Totals parts;
    for (const NamedPoints& set : samplePointSets(options.maxPoints)) {
        if (!options.only.empty() && set.name != options.only) continue;
        benchSet(set, options, parts);
    }
    if (parts.ourSeconds > 0.0) {
        fmt::print(
            "\nBoxes of the sample parts, together: CGAL {:.2f} s, ours {:.2f} s, ratio "
            "{:.1f}\n",
            parts.peerSeconds, parts.ourSeconds, parts.peerSeconds / parts.ourSeconds);
    }
    fmt::print("Sets on which ours is the slower: {}\n", totals.slower + parts.slower);
    return 0;
}
