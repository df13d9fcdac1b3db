#include "TeskThreads/Team.h"

#include <gtest/gtest.h>

#include <array>
#include <mutex>
#include <new>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr std::array kThreadCounts = {1, 2, 3, 7, 16};

TEST(Team, HasTheThreadsAskedForAndTheCallingOneIsItsMaster) {
    const std::thread::id caller = std::this_thread::get_id();
    for (const int threads : kThreadCounts) {
        int size = 0;
        bool isMaster = false;
        Tesk::withTeam(threads, [&](Tesk::Team& team) {
            size = team.size();
            team.run([&](int thread) {
                if (thread == 0) isMaster = std::this_thread::get_id() == caller;
            });
        });
        EXPECT_EQ(size, threads);
        EXPECT_TRUE(isMaster);
    }
}

TEST(Team, PiecesCoverEverythingOnceWhateverTheirSize) {
    for (const int threads : kThreadCounts) {
        Tesk::withTeam(threads, [&](Tesk::Team& team) {
            for (const std::int64_t count : {0, 1, 6, 7, 8, 1000, 4097}) {
                std::vector<int> visits(static_cast<std::size_t>(count));
                team.forPieces(count, 7, [&](std::int64_t first, std::int64_t end, int thread) {
                    EXPECT_LE(end - first, 7);
                    EXPECT_LT(thread, threads);
                    for (std::int64_t i = first; i < end; ++i) {
                        ++visits[static_cast<std::size_t>(i)];
                    }
                });
                ASSERT_EQ(visits, std::vector<int>(static_cast<std::size_t>(count), 1));
            }
        });
    }
}

TEST(Team, AThreadGetsAscendingPieces) {
    Tesk::withTeam(3, [&](Tesk::Team& team) {
        std::vector<std::int64_t> last(3, -1);
        team.forPieces(10'000, 3, [&](std::int64_t first, std::int64_t, int thread) {
            std::int64_t& before = last[static_cast<std::size_t>(thread)];
            EXPECT_GT(first, before);
            before = first;
        });
    });
}

TEST(Team, ALoopSeesWhatTheOneBeforeItWroteOnAnyThread) {
    Tesk::withTeam(4, [&](Tesk::Team& team) {
        std::vector<std::int64_t> values(2000);
        for (std::int64_t round = 0; round < 200; ++round) {
            const auto last = static_cast<std::int64_t>(values.size()) - 1;
            team.forPieces(last + 1, 50, [&](std::int64_t first, std::int64_t end, int) {
                for (std::int64_t i = first; i < end; ++i) {
                    ASSERT_EQ(values[static_cast<std::size_t>(i)], round);
                    values[static_cast<std::size_t>(i)] = round + 1;
                }
            });
            // In other pieces than before, on this thread.
            for (const std::int64_t value : values) ASSERT_EQ(value, round + 1);
        }
    });
}

TEST(Team, AllThreadsTakePartWhereThereIsTimeForIt) {
    std::mutex mutex;
    std::set<int> seen;
    const auto allHaveCome = [&] {
        const std::lock_guard lock(mutex);
        return seen.size() == 3;
    };
    Tesk::withTeam(3, [&](Tesk::Team& team) {
        team.run([&](int thread) {
            {
                const std::lock_guard lock(mutex);
                EXPECT_TRUE(seen.insert(thread).second);
            }
            while (!allHaveCome()) std::this_thread::yield();
        });
    });
    EXPECT_EQ(seen, (std::set{0, 1, 2}));
}

TEST(Team, WhatAPieceThrowsLeavesOnTheCallingThreadAndTheTeamGoesOn) {
    for (const int threads : kThreadCounts) {
        Tesk::withTeam(threads, [&](Tesk::Team& team) {
            for (int round = 0; round < 20; ++round) {
                EXPECT_THROW(team.forPieces(1000, 1,
                                            [](std::int64_t first, std::int64_t, int) {
                                                if (first >= 100) throw std::bad_alloc();
                                            }),
                             std::bad_alloc);
                std::atomic<int> pieces = 0;
                team.forPieces(100, 1, [&](std::int64_t, std::int64_t, int) { ++pieces; });
                ASSERT_EQ(pieces, 100);
            }
        });
    }
}

TEST(Team, AfterAnExceptionNoPieceBegins) {
    std::atomic<int> pieces = 0;
    Tesk::withTeam(3, [&](Tesk::Team& team) {
        EXPECT_THROW(team.forPieces(1'000'000, 1,
                                    [&](std::int64_t, std::int64_t, int) {
                                        ++pieces;
                                        throw std::runtime_error("no");
                                    }),
                     std::runtime_error);
    });
    EXPECT_LE(pieces, 3);
}

TEST(Team, WhatTheMasterThrowsLeavesTheRegion) {
    for (const int threads : kThreadCounts) {
        std::string text;
        try {
            Tesk::withTeam(threads, [](Tesk::Team&) { throw std::string("mine"); });
        } catch (const std::string& thrown) {
            text = thrown;
        }
        EXPECT_EQ(text, "mine");
    }
}

TEST(Team, ManyShortRegionsEnd) {
    std::atomic<std::int64_t> sum = 0;
    for (int round = 0; round < 300; ++round) {
        Tesk::withTeam(1 + round % 5, [&](Tesk::Team& team) {
            team.forPieces(10, 1, [&](std::int64_t i, std::int64_t, int) { sum += i; });
        });
    }
    EXPECT_EQ(sum, 300 * 45);
}

TEST(Team, ThreadsFollowTheWorkUpToTheCallersSetting) {
    const int before = Tesk::mostThreads();
    omp_set_num_threads(4);
    EXPECT_EQ(Tesk::threadsFor(0, 100), 1);
    EXPECT_EQ(Tesk::threadsFor(199, 100), 1);
    EXPECT_EQ(Tesk::threadsFor(200, 100), 2);
    EXPECT_EQ(Tesk::threadsFor(1'000'000, 100), 4);
    omp_set_num_threads(before);
}

}  // namespace
