#include "TeskDebug/StopWatchLog.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

/// Puts a sink in place for as long as it lives.
class SinkForTest {
 public:
    explicit SinkForTest(StopWatchLog::Sink sink)
        : m_before(StopWatchLog::setSink(std::move(sink))) {}
    ~SinkForTest() { StopWatchLog::setSink(std::move(m_before)); }
    SinkForTest(const SinkForTest&) = delete;
    SinkForTest& operator=(const SinkForTest&) = delete;

 private:
    StopWatchLog::Sink m_before;
};

TEST(StopWatchLog, WithoutASinkNothingHappens) {
    const SinkForTest none(nullptr);
    StopWatchLog log;
    EXPECT_NO_THROW(log.logElapse("stage"));
}

TEST(StopWatchLog, PassesLabelsInOrderWithTheTimeSinceTheOneBefore) {
    std::vector<std::pair<std::string, double>> stages;
    const SinkForTest sink(
        [&](const char* label, double seconds) { stages.emplace_back(label, seconds); });
    const auto start = std::chrono::steady_clock::now();
    StopWatchLog log;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    log.logElapse("first");
    log.logElapse("second");
    const std::chrono::duration<double> all = std::chrono::steady_clock::now() - start;
    ASSERT_EQ(stages.size(), 2u);
    EXPECT_EQ(stages[0].first, "first");
    EXPECT_GE(stages[0].second, 0.02);
    EXPECT_EQ(stages[1].first, "second");
    EXPECT_GE(stages[1].second, 0.0);
    EXPECT_LE(stages[0].second + stages[1].second, all.count());
}

TEST(StopWatchLog, SettingASinkReturnsTheOneBefore) {
    int first = 0;
    const SinkForTest sink([&](const char*, double) { ++first; });
    int second = 0;
    StopWatchLog::Sink before = StopWatchLog::setSink([&](const char*, double) { ++second; });
    StopWatchLog log;
    log.logElapse("to the second");
    ASSERT_TRUE(before);
    before("to the first", 0.0);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
}

TEST(StopWatchLog, LogsOfSeveralThreadsReachTheSinkOneAtATime) {
    int count = 0;
    const SinkForTest sink([&](const char*, double) { ++count; });
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([] {
            StopWatchLog log;
            for (int i = 0; i < 500; ++i) log.logElapse("stage");
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(count, 2000);
}

}  // namespace
