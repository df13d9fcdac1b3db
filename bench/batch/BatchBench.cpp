// Times a batch of small parts with one job and with two against single calls of the program, and
// prints the ratios and a hash of the results, which must not depend on the number of jobs. With
// --kill it is killed again and again instead, and must end with the lines of an undisturbed run.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <random>
#include <thread>

#include "batch/ProgramRuns.h"
#include "shapes/BatchParts.h"
#include "support/PairedTimer.h"
#include "tools/FloatBits.h"

namespace {

namespace fs = std::filesystem;

constexpr double kLeastGain = 1.7;   ///< of two jobs
constexpr double kLeastShare = 0.9;  ///< of a job's time that goes into the parts' own work

struct Options {
    int runs = 3;
    int parts = 400;
    int rings = 18;
    int kills = 0;
    unsigned seed = 1;
};

std::uint64_t hashOf(const std::vector<std::string>& lines) {
    BitHash hash;
    for (const std::string& line : lines) {
        for (const char c : line) hash.add(std::uint32_t{static_cast<unsigned char>(c)});
    }
    return hash.value();
}

/// The folder's parts, one call after another.
void callForEach(const fs::path& folder, const std::vector<std::string>& command) {
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file()) continue;
        std::vector<std::string> words = command;
        words.push_back(entry.path().string());
        waitForProgram(startProgram(words));
    }
}

std::vector<std::string> batchOf(const fs::path& folder, const fs::path& results) {
    return {"batch", folder.string(), "--results", results.string(), "--quiet"};
}

struct Times {
    double own = 0.0;  ///< the single calls' work without their start
    double one = 0.0;
    double two = 0.0;
};

Times measure(const fs::path& folder, const fs::path& results, std::vector<std::uint64_t>& hashes) {
    Times times;
    // What does not get to read the part: the time that a call takes to start and end.
    const double start = secondsOf([&] {
        callForEach(folder, {"orient", "--threads", "1", "-o", "none.txt"});
    });
    const double calls = secondsOf([&] {
        callForEach(folder, {"orient", "--threads", "1", "--json", "--quiet"});
    });
    times.own = calls - start;
    for (double* const time : {&times.one, &times.two}) {
        std::vector<std::string> words = batchOf(folder, results);
        words.insert(words.end(), {"--jobs", time == &times.one ? "1" : "2"});
        *time = secondsOf([&] { waitForProgram(startProgram(words)); });
        hashes.push_back(hashOf(comparableLines(results)));
        fs::remove(results);
    }
    return times;
}

bool compare(const Options& options) {
    const ScratchFolder scratch;
    makeParts("in", options.parts, options.rings);
    std::vector<std::uint64_t> hashes;
    std::vector<double> gains, shares, ones, twos, owns;
    for (int run = 0; run < options.runs; ++run) {
        const Times times = measure("in", "results", hashes);
        ones.push_back(options.parts / times.one);
        twos.push_back(options.parts / times.two);
        owns.push_back(options.parts / times.own);
        gains.push_back(times.one / times.two);
        shares.push_back(times.own / times.one);
    }
    const bool isSame = std::all_of(hashes.begin(), hashes.end(),
                                    [&](std::uint64_t hash) { return hash == hashes.front(); });
    const double gain = medianOf(gains), share = medianOf(shares);
    fmt::print(
        "{} parts, parts per second: the single calls' own work {:.1f}, a batch of one job "
        "{:.1f}, of two {:.1f}\n",
        options.parts, medianOf(owns), medianOf(ones), medianOf(twos));
    fmt::print(
        "two jobs to one: {:.2f} (at least {}); one job to the calls' own work: {:.2f} (at "
        "least {})\nresults: {:016x}{}\n",
        gain, kLeastGain, share, kLeastShare, hashes.front(), isSame ? "" : ", but not always");
    return isSame && gain >= kLeastGain && share >= kLeastShare;
}

/// Kills a batch at random moments and resumes it. True where it ends as if nothing had been.
bool killAgainAndAgain(const Options& options) {
    const ScratchFolder scratch;
    makeParts("in", options.parts, options.rings);
    const fs::path results = "results", undisturbed = "undisturbed";
    const double whole =
        secondsOf([&] { waitForProgram(startProgram(batchOf("in", undisturbed))); });
    std::vector<std::string> words = batchOf("in", results);
    words.push_back("--resume");
    std::mt19937 random(options.seed);
    const double most = 1.5 * whole / (options.kills + 1);
    int killed = 0;
    for (int i = 0; i < options.kills; ++i) {
        const pid_t batch = startProgram(words);
        const double wait = most * (random() % 1000) / 1000.0;
        std::this_thread::sleep_for(std::chrono::duration<double>(wait));
        kill(batch, SIGKILL);
        const bool isKilled = waitForProgram(batch) == -SIGKILL;
        killed += isKilled ? 1 : 0;
        const auto size = fs::exists(results) ? fs::file_size(results) : 0;
        fmt::print("{} after {:.2f} s, {} bytes of results\n", isKilled ? "killed" : "ended", wait,
                   size);
    }
    const int code = waitForProgram(startProgram(words));
    const auto lines = comparableLines(results), expected = comparableLines(undisturbed);
    const bool isSame = code == 0 && lines == expected &&
                        expected.size() == static_cast<std::size_t>(options.parts);
    fmt::print(
        "{} parts, undisturbed in {:.1f} s; killed {} times: {} lines, {}\n"
        "results: {:016x}, undisturbed: {:016x}\n",
        options.parts, whole, killed, lines.size(), isSame ? "the same" : "NOT THE SAME",
        hashOf(lines), hashOf(expected));
    return isSame && killed > 0;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Times batches, or kills them");
    app.add_option("--runs", options.runs, "Odd number of runs")->capture_default_str();
    app.add_option("--parts", options.parts, "Parts")->capture_default_str();
    app.add_option("--rings", options.rings, "Size of the parts")->capture_default_str();
    app.add_option("--kill", options.kills, "Kill a batch this often instead");
    app.add_option("--seed", options.seed, "Of the moments")->capture_default_str();
    CLI11_PARSE(app, argc, argv);
    return (options.kills > 0 ? killAgainAndAgain(options) : compare(options)) ? 0 : 1;
}
