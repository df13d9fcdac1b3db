// What breaks while a batch runs: workers, the batch itself, disks, folders.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "BatchProcess.h"
#include "BatchSupport.h"
#include "RunProgram.h"
#include "tools/TestSize.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;

/// What a worker holds once it works on the big part.
constexpr std::size_t kBusyBytes = 60u << 20;

#if defined(__has_feature)
constexpr bool kHasSanitizer = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool kHasSanitizer = false;
#endif

class BatchBreakdown : public testing::Test {
 protected:
    BatchBreakdown() { fs::create_directory(m_in); }

    std::vector<std::string> command(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> words = {"batch",   m_in.string(),  "--results",
                                          m_results, "--output-dir", m_out};
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }
    ProgramResult batch(const std::vector<std::string>& more = {}) const {
        return runTeskOrient(command(more));
    }

    /// A part that takes a second or so, and comes first.
    void makeBigPart(const std::string& name = "a-big.stl") const {
        std::ofstream(m_in / name, std::ios::binary) << bumpyBall(testsAreSmall() ? 350 : 600, 1);
    }

    json lineOf(const std::string& name) const {
        const auto lines = linesByPath(m_results);
        const auto found = lines.find((m_in / name).string());
        EXPECT_NE(found, lines.end()) << name;
        return found == lines.end() ? json() : found->second;
    }

    void expectNothingHalfWritten() const {
        for (const auto& [name, bytes] : filesBelow(m_out)) {
            EXPECT_NE(fs::path(name).extension(), ".tmp") << name;
        }
    }

    /// What an undisturbed run gives.
    std::vector<std::string> undisturbed() const {
        const std::string results = m_folder.file("undisturbed.jsonl");
        runTeskOrient({"batch", m_in.string(), "--results", results, "--output-dir", m_out});
        return comparableLines(results);
    }

    TemporaryFolder m_folder;
    fs::path m_in = m_folder.file("in");
    std::string m_results = m_folder.file("results.jsonl");
    std::string m_out = m_folder.file("out");
};

TEST_F(BatchBreakdown, AWorkerThatIsKilledCostsItsPartOnly) {
    // The first ones are done while the big part is hashed: some must be left for a new worker.
    makeBigPart();
    makeParts(m_in, 40);
    BatchProcess process(command({"--jobs", "1"}));
    const pid_t worker = process.workerWithMemory(kBusyBytes);
    ASSERT_NE(worker, -1);
    EXPECT_LT(linesOf(m_results).size(), 40u);
    kill(worker, SIGKILL);
    EXPECT_EQ(process.waitFor(60.0), 5);
    EXPECT_EQ(linesOf(m_results).size(), 41u);
    json line = lineOf("a-big.stl");
    EXPECT_EQ(line["status"], "crashed");
    EXPECT_EQ(line["error"]["code"], "crashed");
    EXPECT_THAT(line["error"]["text"], HasSubstr("was killed by signal 9"));
    EXPECT_EQ(line["peakMemoryBytes"], nullptr);
    expectNothingHalfWritten();
    EXPECT_EQ(batch({"--resume", "--retry-failed"}).code, 0);
}

TEST_F(BatchBreakdown, AWorkerThatDoesNotListenIsKilledAfterItsTime) {
    makeBigPart();
    makeParts(m_in, 1);
    BatchProcess process(command({"--jobs", "1", "--timeout", testsAreSmall() ? "10" : "4"}));
    const pid_t worker = process.workerWithMemory(kBusyBytes);
    ASSERT_NE(worker, -1);
    kill(worker, SIGSTOP);
    EXPECT_EQ(process.waitFor(60.0), 5);
    EXPECT_EQ(lineOf("a-big.stl")["status"], "timeout");
    EXPECT_EQ(linesOf(m_results).size(), 2u);
    EXPECT_FALSE(isAlive(worker));
}

TEST_F(BatchBreakdown, APartThatNeedsMoreMemoryThanTheLimitFailsAlone) {
    if (kHasSanitizer) GTEST_SKIP() << "sanitizers end the process where memory is exhausted";
    makeBigPart();
    makeParts(m_in, 3);
    EXPECT_EQ(batch({"--memory-limit", "20M", "--jobs", "1"}).code, 5);
    EXPECT_EQ(linesOf(m_results).size(), 4u);
    json line = lineOf("a-big.stl");
    EXPECT_EQ(line["status"], "out-of-memory");
    EXPECT_EQ(line["error"]["code"], "out-of-memory");
    EXPECT_THAT(line["error"]["text"], HasSubstr("not enough memory"));
    EXPECT_EQ(filesBelow(m_out).size(), 3u);
    // Between what the file alone takes and what the work takes.
    fs::remove(m_results);
    const std::string between = testsAreSmall() ? "51M" : "150M";
    EXPECT_EQ(batch({"--memory-limit", between, "--jobs", "1"}).code, 5);
    EXPECT_EQ(lineOf("a-big.stl")["status"], "out-of-memory");
    fs::remove(m_results);
    EXPECT_EQ(batch({"--memory-limit", "4G", "--jobs", "1"}).code, 0);
}

TEST_F(BatchBreakdown, CtrlCLeavesWholeLinesAndNoPartOfAFile) {
    makeParts(m_in, 10);
    for (const char* name : {"x-big.stl", "y-big.stl", "z-big.stl"}) makeBigPart(name);
    BatchProcess process(command({"--jobs", "2"}));
    ASSERT_NE(process.workerWithMemory(kBusyBytes), -1);
    const std::vector<pid_t> workers = process.workers();
    process.signal(SIGINT);
    EXPECT_EQ(process.waitFor(5.0), 130);
    for (const pid_t worker : workers) EXPECT_FALSE(isAlive(worker));
    for (json line : linesOf(m_results)) EXPECT_EQ(line["status"], "ok");
    EXPECT_LT(linesOf(m_results).size(), 13u);
    expectNothingHalfWritten();
    EXPECT_EQ(batch({"--resume"}).code, 0);
    EXPECT_EQ(comparableLines(m_results), undisturbed());
}

TEST_F(BatchBreakdown, WorkersEndWithTheBatch) {
    for (const char* name : {"x-big.stl", "y-big.stl", "z-big.stl"}) makeBigPart(name);
    BatchProcess process(command({"--jobs", "2"}));
    ASSERT_NE(process.workerWithMemory(kBusyBytes), -1);
    const std::vector<pid_t> workers = process.workers();
    EXPECT_EQ(workers.size(), 2u);
    // Held, so that none finishes its part before the batch is gone.
    for (const pid_t worker : workers) kill(worker, SIGSTOP);
    process.signal(SIGKILL);
    EXPECT_EQ(process.wait(), -SIGKILL);
    for (const pid_t worker : workers) kill(worker, SIGCONT);
    for (const pid_t worker : workers) EXPECT_TRUE(becomesTrue([&] { return !isAlive(worker); }));
    EXPECT_EQ(filesBelow(m_out).size(), 0u);
}

TEST_F(BatchBreakdown, WorkersAreNotReachedByTheTerminal) {
    makeBigPart();
    BatchProcess process(command({"--jobs", "1"}));
    const pid_t worker = process.workerWithMemory(kBusyBytes);
    ASSERT_NE(worker, -1);
    EXPECT_EQ(getsid(worker), worker);
    // As a system that stops sends it to all processes.
    kill(worker, SIGINT);
    kill(worker, SIGTERM);
    EXPECT_EQ(process.wait(), 0);
}

TEST_F(BatchBreakdown, ABatchThatIsKilledAgainAndAgainEndsAsOneThatIsNot) {
    makeParts(m_in, testsAreSmall() ? 40 : 200);
    std::ofstream(m_in / "bad.stl") << "no";
    std::ofstream(m_in / "copy.stl", std::ios::binary) << bumpyBall(4, 0);
    const std::vector<std::string> expected = undisturbed();
    const auto files = filesBelow(m_out);
    fs::remove_all(m_out);
    std::mt19937 random(7);
    int kills = 0;
    for (int i = 0; i < 10; ++i) {
        BatchProcess process(command({"--resume", "--quiet"}));
        std::this_thread::sleep_for(std::chrono::milliseconds(5 + random() % 60));
        process.signal(SIGKILL);
        kills += process.wait() == -SIGKILL ? 1 : 0;
        if (i == 3)
            std::ofstream(m_results, std::ios::app | std::ios::binary) << "{\"schema\":\"te";
    }
    EXPECT_GT(kills, 2);
    EXPECT_EQ(batch({"--resume"}).code, 5);
    EXPECT_EQ(comparableLines(m_results), expected);
    EXPECT_EQ(filesBelow(m_out), files);
}

TEST_F(BatchBreakdown, AnOutputFolderThatVanishesIsNotMadeAgain) {
    for (const char* name : {"x-big.stl", "y-big.stl", "z-big.stl"}) makeBigPart(name);
    BatchProcess process(command({"--jobs", "1"}));
    ASSERT_NE(process.workerWithMemory(kBusyBytes), -1);
    fs::remove_all(m_out);
    EXPECT_EQ(process.wait(), 5);
    const auto lines = linesByPath(m_results);
    EXPECT_EQ(lines.size(), 3u);
    int gone = 0;
    for (auto [path, line] : lines) {
        EXPECT_EQ(line["error"]["code"], "cannot-write") << path;
        EXPECT_FALSE(line.contains("output"));
        const std::string text = line["error"].value("text", "");
        gone += text.find("the output folder") != std::string::npos ? 1 : 0;
    }
    EXPECT_EQ(gone, 2);
    EXPECT_FALSE(fs::exists(m_out));
    EXPECT_EQ(batch({"--resume", "--retry-failed"}).code, 0);
    EXPECT_EQ(filesBelow(m_out).size(), 3u);
}

TEST_F(BatchBreakdown, ResultsThatVanishEndTheBatch) {
    makeBigPart();
    makeParts(m_in, 2);
    BatchProcess process(command({"--jobs", "1"}));
    ASSERT_NE(process.workerWithMemory(kBusyBytes), -1);
    fs::remove(m_results);
    EXPECT_EQ(process.wait(), 4);
    EXPECT_FALSE(fs::exists(m_results));
    expectNothingHalfWritten();
    EXPECT_EQ(batch({"--resume"}).code, 0);
    EXPECT_EQ(linesOf(m_results).size(), 3u);
}

/// A disk of a few pages; not there where mounting is not allowed.
class SmallDisk {
 public:
    explicit SmallDisk(const std::string& folder) : m_folder(folder) {
        fs::create_directory(folder);
        m_isThere = mount("none", folder.c_str(), "tmpfs", 0, "size=40k") == 0;
    }
    ~SmallDisk() {
        if (m_isThere) umount2(m_folder.c_str(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool isThere() const { return m_isThere; }

 private:
    std::string m_folder;
    bool m_isThere = false;
};

TEST_F(BatchBreakdown, AFullDiskForTheResultsLosesNothing) {
    const SmallDisk disk(m_folder.file("disk"));
    if (!disk.isThere()) GTEST_SKIP() << "mounting a small disk is not allowed here";
    makeParts(m_in, 40);
    m_results = m_folder.file("disk/results.jsonl");
    const ProgramResult result = batch();
    EXPECT_EQ(result.code, 4);
    EXPECT_THAT(result.error, HasSubstr("results.jsonl: cannot be written: no space left"));
    const std::size_t written = linesOf(m_results).size();
    EXPECT_GT(written, 0u);
    EXPECT_LT(written, 40u);
    expectNothingHalfWritten();
    // With room again it goes on.
    const std::string elsewhere = m_folder.file("moved.jsonl");
    fs::copy_file(m_results, elsewhere);
    m_results = elsewhere;
    EXPECT_EQ(batch({"--resume"}).code, 0);
    EXPECT_EQ(comparableLines(m_results), undisturbed());
}

TEST_F(BatchBreakdown, AFullDiskForTheOutputsIsALineForEach) {
    const SmallDisk disk(m_folder.file("disk"));
    if (!disk.isThere()) GTEST_SKIP() << "mounting a small disk is not allowed here";
    makeParts(m_in, 20);
    m_out = m_folder.file("disk");
    EXPECT_EQ(batch().code, 5);
    const auto lines = linesByPath(m_results);
    EXPECT_EQ(lines.size(), 20u);
    std::size_t failed = 0;
    for (auto [path, line] : lines) {
        if (line["status"] == "ok") continue;
        ++failed;
        EXPECT_EQ(line["error"]["code"], "cannot-write") << path;
    }
    EXPECT_GT(failed, 0u);
    EXPECT_EQ(filesBelow(m_out).size(), 20 - failed);
    expectNothingHalfWritten();
    for (const auto& [name, bytes] : filesBelow(m_out)) {
        EXPECT_EQ(bytes.size(), readAll(m_in / name).size()) << name;
    }
}

TEST_F(BatchBreakdown, AFileSizeLimitIsLikeAFullDisk) {
    makeParts(m_in, 40);
    const ProgramResult result =
        run("/bin/bash", {"-c", "ulimit -f 40; exec \"$0\" \"$@\"", TESK_PROGRAM, "batch",
                          m_in.string(), "--results", m_results});
    EXPECT_EQ(result.code, 4);
    EXPECT_THAT(result.error, HasSubstr("cannot be written: file too large"));
    const std::size_t written = linesOf(m_results).size();
    EXPECT_GT(written, 0u);
    EXPECT_LT(written, 40u);
}

TEST_F(BatchBreakdown, AListComesThroughAPipe) {
    makeParts(m_in, 6);
    fs::rename(m_in / "group0/part00000.stl", m_in / "group0/line\nfeed.stl");
    const ProgramResult result =
        run("/bin/sh", {"-c",
                        "cd \"$2\" && find . -name '*.stl' -print0 | \"$0\" batch - --results "
                        "\"$1\" --output-dir ../out",
                        TESK_PROGRAM, m_results, m_in.string()});
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_EQ(linesOf(m_results).size(), 6u);
    EXPECT_EQ(filesBelow(m_out).count("group0/line\nfeed.stl"), 1u);
    EXPECT_EQ(filesBelow(m_out).size(), 6u);
}

}  // namespace
