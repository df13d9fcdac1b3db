#include "minbox/workers/ProgressRecord.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace Tesk::minbox;

namespace {

std::vector<int> reportsOf(int total, int steps) {
    std::vector<int> reports;
    ProgressRecord record(0, total, [&](int percent) { reports.push_back(percent); });
    for (int i = 0; i < steps; ++i) record.step();
    return reports;
}

TEST(ProgressRecord, ReportsAPercentageOnlyWhenItGrows) {
    const std::vector<int> reports = reportsOf(200, 200);
    ASSERT_EQ(reports.size(), 100u);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(reports[static_cast<std::size_t>(i)], i + 1);
}

TEST(ProgressRecord, NeverReportsZero) {
    EXPECT_EQ(reportsOf(1000, 9), std::vector<int>());
    EXPECT_EQ(reportsOf(1000, 10), std::vector<int>{1});
}

TEST(ProgressRecord, CutsFractionsOff) {
    EXPECT_EQ(reportsOf(3, 3), (std::vector<int>{33, 66, 100}));
}

TEST(ProgressRecord, StartsAtTheFirstPercentage) {
    std::vector<int> reports;
    ProgressRecord record(40, 4, [&](int percent) { reports.push_back(percent); });
    record.step();
    EXPECT_EQ(reports, std::vector<int>{65});
}

TEST(ProgressRecord, CountsWithoutACallback) {
    ProgressRecord record(0, 4, nullptr);
    EXPECT_NO_THROW(record.step());
}

TEST(ProgressRecord, AfterAReportThatThrewNoneFollows) {
    int calls = 0;
    ProgressRecord record(0, 1000, [&](int) {
        if (++calls == 2) throw std::runtime_error("no");
    });
    for (int i = 0; i < 19; ++i) EXPECT_TRUE(record.step());
    EXPECT_THROW(record.step(), std::runtime_error);
    for (int i = 0; i < 30; ++i) EXPECT_FALSE(record.step());
    EXPECT_EQ(calls, 2);
}

TEST(ProgressRecord, AReportThatThrewLetsNoWaitingThreadReport) {
    constexpr int kThreads = 7;
    std::atomic<int> waiting = 0;
    int calls = 0;
    ProgressRecord record(0, kThreads, [&](int) {
        ++calls;
        // The others are about to wait for the record by now.
        while (waiting < kThreads) std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        throw std::runtime_error("no");
    });
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&] {
            ++waiting;
            try {
                EXPECT_FALSE(record.step());
            } catch (const std::runtime_error&) {
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(calls, 1);
}

TEST(ProgressRecord, StepsOfManyThreadsAreCountedAndReportedInOrder) {
    std::vector<int> reports;
    ProgressRecord record(0, 4000, [&](int percent) { reports.push_back(percent); });
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 1000; ++i) record.step();
        });
    }
    for (std::thread& thread : threads) thread.join();
    ASSERT_EQ(reports.size(), 100u);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(reports[static_cast<std::size_t>(i)], i + 1);
}

TEST(ProgressRecord, KnowsTheThreadThatMadeIt) {
    const ProgressRecord record(0, 1, nullptr);
    EXPECT_TRUE(record.isOwnedByThisThread());
    bool isOwned = true;
    std::thread([&] { isOwned = record.isOwnedByThisThread(); }).join();
    EXPECT_FALSE(isOwned);
}

}  // namespace
