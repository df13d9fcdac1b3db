#include "minbox/workers/FaceWorkers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <system_error>
#include <utility>

using namespace Tesk::minbox;

namespace {

std::vector<std::pair<int, int>> split(int faces, std::uint32_t threads) {
    std::vector<std::pair<int, int>> ranges;
    for (const FaceRange& range : splitFaces(faces, threads)) {
        ranges.emplace_back(range.first, range.last);
    }
    return ranges;
}

using Ranges = std::vector<std::pair<int, int>>;

TEST(FaceWorkers, TheLastRangeTakesTheRemainder) {
    EXPECT_EQ(split(10, 3), (Ranges{{0, 3}, {3, 6}, {6, 10}}));
}

TEST(FaceWorkers, FewerFacesThanThreadsStayOnTheCallingThread) {
    EXPECT_EQ(split(3, 4), (Ranges{{0, 3}}));
    EXPECT_EQ(split(4, 4).size(), 4u);
    EXPECT_EQ(split(0, 4), (Ranges{{0, 0}}));
}

TEST(FaceWorkers, NoneAndOneThreadStayOnTheCallingThread) {
    EXPECT_EQ(split(12, 0), (Ranges{{0, 12}}));
    EXPECT_EQ(split(12, 1), (Ranges{{0, 12}}));
}

TEST(FaceWorkers, MoreThreadsThanAnIntegerHoldsStayOnTheCallingThread) {
    EXPECT_EQ(split(12, 0xffffffffu).size(), 1u);
}

TEST(FaceWorkers, JoinsInOrderAfterAllWork) {
    std::vector<int> done(7, 0);
    std::vector<std::size_t> joined;
    runWorkers(
        7, [&](std::size_t t) { done[t] = 1; },
        [&](std::size_t t) {
            EXPECT_EQ(done[t], 1);
            joined.push_back(t);
        },
        [] { FAIL() << "no thread failed to start"; });
    EXPECT_EQ(joined, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5, 6}));
}

/// A thread of which the third cannot be started.
class ThirdFails {
 public:
    template <class Work>
    explicit ThirdFails(Work work) {
        if (++started == 3) {
            throw std::system_error(
                std::make_error_code(std::errc::resource_unavailable_try_again));
        }
        m_thread = std::thread(work);
    }
    void join() { m_thread.join(); }

    static inline int started = 0;

 private:
    std::thread m_thread;
};

TEST(FaceWorkers, AThreadThatCannotStartEndsTheOthersAndIsReported) {
    std::atomic<bool> isGivenUp = false;
    std::atomic<int> ended = 0;
    ThirdFails::started = 0;
    try {
        runWorkers<ThirdFails>(
            5,
            [&](std::size_t) {
                while (!isGivenUp) std::this_thread::yield();
                ++ended;
            },
            [](std::size_t) { FAIL() << "nothing is whole"; }, [&] { isGivenUp = true; });
        FAIL() << "expected a system error";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::resource_unavailable_try_again);
    }
    EXPECT_EQ(ended, 2);
    EXPECT_EQ(ThirdFails::started, 3);
}

TEST(FaceWorkers, AFailureOfMemoryOrThreadsIsCarriedOutOfItsThread) {
    std::vector<std::size_t> joined;
    std::atomic<int> givenUp = 0;
    const auto work = [](std::size_t t) {
        if (t == 1) throw std::system_error(std::make_error_code(std::errc::no_lock_available));
        if (t == 2) throw std::bad_array_new_length();
    };
    EXPECT_THROW(runWorkers(
                     4, work, [&](std::size_t t) { joined.push_back(t); }, [&] { ++givenUp; }),
                 std::system_error);
    EXPECT_EQ(givenUp, 2);
    EXPECT_EQ(joined, (std::vector<std::size_t>{0, 1, 2, 3}));
}

TEST(FaceWorkersDeathTest, AnyOtherExceptionEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto work = [](std::size_t t) {
        if (t == 1) throw 7;
    };
    EXPECT_DEATH(runWorkers(
                     2, work, [](std::size_t) {}, [] {}),
                 "");
}

}  // namespace
