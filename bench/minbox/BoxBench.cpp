// Times the hull and the searches for boxes against the plain versions, one thread each and in
// turn, and the least-volume box on one core and on two; prints ratios and result hashes, and fails
// where two results differ in a bit.

#include <fmt/format.h>

#ifdef __linux__
#include <sched.h>
#endif

#include <CLI/CLI.hpp>
#include <functional>
#include <limits>

#include "MinBoundingBox.h"
#include "TeskSDKCommonTools/ConvexHull3.h"
#include "plain/PlainBaseAreaBox.h"
#include "plain/PlainPrincipalBox.h"
#include "plain/PlainVolumeBox.h"
#include "support/BenchPoints.h"
#include "support/PairedTimer.h"

namespace {

struct Options {
    int runs = 3;
};

int countOf(const Points& points) {
    return static_cast<int>(points.size());
}

OrientedBox3 leastVolume(const Points& points, unsigned int threads) {
    MinBoundingBox calculator(threads);
    return calculator(countOf(points), points.data());
}

PlainHull plainHullOf(const Points& points) {
    return PlainHull(gte::ConvexHull3(points.data(), countOf(points), 3), countOf(points));
}

#ifdef __linux__
/// Keeps this thread, and those that it starts, on one core.
class OnOneCore {
 public:
    OnOneCore() {
        sched_getaffinity(0, sizeof m_before, &m_before);
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(sched_getcpu(), &one);
        sched_setaffinity(0, sizeof one, &one);
    }
    ~OnOneCore() { sched_setaffinity(0, sizeof m_before, &m_before); }
    OnOneCore(const OnOneCore&) = delete;
    OnOneCore& operator=(const OnOneCore&) = delete;

 private:
    cpu_set_t m_before{};
};
#else
struct OnOneCore {};
#endif

struct Search {
    const char* name;
    std::function<OrientedBox3(const Points&)> plain;
    std::function<OrientedBox3(const Points&)> shipped;
    std::size_t mostPlainEdges;  ///< of a hull; the plain version takes hours beyond
};

/// The plain searches look at all edges for each face, or for each pair of edges.
constexpr std::size_t kMostForCubic = 3000;
constexpr std::size_t kMostForSquare = 50'000;

std::vector<Search> searches() {
    return {{"volume",
             [](const Points& points) {
                 const PlainHull hull = plainHullOf(points);
                 return plainOrientedBox(
                     plainLeastVolume(plainFaceSearch(hull, 1), plainEdgeSearch(hull)));
             },
             [](const Points& points) { return leastVolume(points, 1); }, kMostForCubic},
            {"base area",
             [](const Points& points) {
                 return plainOrientedBox(plainLeastBaseArea(plainHullOf(points), 1));
             },
             [](const Points& points) {
                 MinBoundingBox calculator;
                 return calculator.minBaseAreaBox(countOf(points), points.data());
             },
             kMostForSquare},
            {"height",
             [](const Points& points) {
                 return plainOrientedBox(plainLeastHeight(plainHullOf(points), 1));
             },
             [](const Points& points) {
                 MinBoundingBox calculator;
                 return calculator.minBaseAreaAndHeightBox(countOf(points), points.data());
             },
             kMostForSquare},
            {"axes", [](const Points& points) { return plainPrincipalBox(points); },
             [](const Points& points) {
                 return MinBoundingBox::generateOBB(points.data(), countOf(points));
             },
             std::numeric_limits<std::size_t>::max()}};
}

/// Prints one line per search; false where results differ.
bool benchPoints(const NamedPoints& set, const Options& options) {
    const Points& points = set.points;
    double hullSeconds = 0.0;
    std::size_t vertices = 0;
    std::size_t edges = 0;
    const PairedTimes threads = timeInTurn(
        options.runs,
        [&] {
            [[maybe_unused]] const OnOneCore scope;  // the edges' thread, too
            leastVolume(points, 1);
        },
        [&] { leastVolume(points, 2); });
    hullSeconds = timeInTurn(
                      options.runs, [] {},
                      [&] {
                          const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
                          vertices = hull.getVertices().size();
                          edges = hull.getHullEdges().size();
                      })
                      .shippedSeconds;
    fmt::print(
        "{:<20} {:>8} points, hull of {:>6} vertices {:>9.2f} ms; volume on 2 cores "
        "{:.2f} times faster\n",
        set.name, points.size(), vertices, hullSeconds * 1e3, threads.ratio);
    bool isSame = true;
    for (const Search& search : searches()) {
        if (edges > search.mostPlainEdges) {
            OrientedBox3 box;
            const PairedTimes times = timeInTurn(
                options.runs, [] {}, [&] { box = search.shipped(points); });
            fmt::print("    {:<10} {:>12} {:>12.2f} {:>8}  {:016x}\n", search.name, "hours",
                       times.shippedSeconds * 1e3, "", hashOf(box));
            continue;
        }
        OrientedBox3 plain;
        OrientedBox3 shipped;
        const PairedTimes times = timeInTurn(
            options.runs, [&] { plain = search.plain(points); },
            [&] { shipped = search.shipped(points); });
        const bool agrees = hashOf(plain) == hashOf(shipped);
        fmt::print("    {:<10} {:>12.2f} {:>12.2f} {:>8.1f}  {:016x}{}\n", search.name,
                   times.baselineSeconds * 1e3, times.shippedSeconds * 1e3, times.ratio,
                   hashOf(shipped), agrees ? "" : "  DIFFERS from the plain version");
        isSame = isSame && agrees;
    }
    std::fflush(stdout);
    return isSame;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    std::size_t maxPoints = 2'000'000;
    CLI::App app("Times convex hulls and smallest boxes");
    app.add_option("--runs", options.runs, "Runs of each")->check(CLI::Range(1, 1000));
    app.add_option("--max-points", maxPoints, "Leave out bigger sets");
    CLI11_PARSE(app, argc, argv);
    fmt::print(
        "Searches for boxes, hull included (axes: along the principal axes, without a hull), one "
        "thread: the\nplain version and the shipped one in turn. Medians of {}.\n\n    {:<10} "
        "{:>12} {:>12} {:>8}  {}\n\n",
        options.runs, "search", "plain ms", "shipped ms", "ratio", "result hash");
    bool isSame = true;
    for (const NamedPoints& set : benchPointSets(maxPoints)) {
        isSame = benchPoints(set, options) && isSame;
    }
    return isSame ? 0 : 1;
}
