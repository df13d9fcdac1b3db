// What becomes of an exception that is no Tesk::AbortException when a progress callback throws it,
// for each exported function that has one.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "HostMesh.h"
#include "MinBoundingBox.h"

namespace {

using Callback = std::function<void(int)>;
using Points = std::vector<UPoint3<float>>;

/// An exception of the host's own kind.
struct HostError {
    std::string text;
};

/// A request to abort that carries something of the host's.
class HostAbort : public Tesk::AbortException {
 public:
    using AbortException::AbortException;
};

/// Calls back at the `report`-th report, from 1.
Callback atReport(int report, const std::function<void()>& fail) {
    return [left = report, fail](int) mutable {
        if (--left == 0) fail();
    };
}

void throwHostError() {
    throw HostError{"the host's own"};
}
void throwBadAlloc() {
    throw std::bad_alloc();
}
void throwSystemError() {
    throw std::system_error(std::make_error_code(std::errc::io_error));
}
void throwHostAbort() {
    throw HostAbort("the host gives up");
}

Points boxCorners() {
    Points points;
    for (int i = 0; i < 8; ++i) {
        points.emplace_back((i & 1) != 0 ? 20.0f : 0.0f, (i & 2) != 0 ? 30.0f : 0.0f,
                            (i & 4) != 0 ? 80.0f : 0.0f);
    }
    return points;
}

using Search = OrientedBox3 (MinBoundingBox::*)(int, const UPoint3<float>*);

constexpr Search kVolume = &MinBoundingBox::operator();
constexpr Search kBaseAreaSearches[] = {&MinBoundingBox::minBaseAreaBox,
                                        &MinBoundingBox::minBaseAreaAndHeightBox};

/// A search of a box, whose hull has 12 triangles.
void search(Search operation, unsigned int threads, const Callback& callback) {
    const Points points = boxCorners();
    MinBoundingBox calculator(threads);
    calculator.setCallBackFunction(callback);
    (calculator.*operation)(static_cast<int>(points.size()), points.data());
}

void rank(HostResult& result, const Callback& callback) {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    OptimizeOrient::seedRandom(1);
    OrientOptimizer::calculateOrients(&box, {}, result.axis, result.angle, &result.orientations,
                                      callback);
}

void place(UMatrix4<float>& matrix, const Callback& callback) {
    MeshKernel box = hostBox(80.0f, 20.0f, 30.0f);
    OrientOptimizer::calculateOrients_minBoundingBox(&box, matrix, callback);
}

/// How many reports a call makes that is let run.
int reportsOfRanking() {
    int reports = 0;
    HostResult result;
    rank(result, [&](int) { ++reports; });
    return reports;
}

/// The text of the abort with which a call ended; nothing where it did not.
std::optional<std::string> abortTextOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const HostAbort&) {
        return "the host's own type";
    } catch (const Tesk::AbortException& exception) {
        return exception.what();
    }
    return std::nullopt;
}

// calculateOrients: at every report, within the candidate loop and outside it.

TEST(CallbackException, OfTheHostsOwnTypeLeavesARankingAsItIsAtEveryReport) {
    const int reports = reportsOfRanking();
    for (int report = 1; report <= reports; ++report) {
        HostResult result;
        result.angle = 4.0f;
        int calls = 0;
        const auto fail = [&](int) {
            if (++calls == report) throwHostError();
        };
        try {
            rank(result, fail);
            FAIL() << "report " << report << " did not end the call";
        } catch (const HostError& error) {
            EXPECT_EQ(error.text, "the host's own");
        }
        EXPECT_EQ(calls, report) << "reported afterwards";
        if (report + 2 <= reports) {
            EXPECT_TRUE(result.orientations.empty()) << "report " << report;
        }
        if (report < reports) {
            EXPECT_EQ(result.angle, 4.0f) << "report " << report;
        }
    }
}

TEST(CallbackException, OfMemoryOrSystemLeavesARankingAsItIs) {
    const int reports = reportsOfRanking();
    for (const int report : {1, 2, 3, 7, reports - 2, reports - 1, reports}) {
        HostResult result;
        EXPECT_THROW(rank(result, atReport(report, throwBadAlloc)), std::bad_alloc);
        EXPECT_THROW(rank(result, atReport(report, throwSystemError)), std::system_error);
    }
}

TEST(CallbackException, OfATypeDerivedFromAbortExceptionCountsAsAnAbortWhileCandidatesAreMeasured) {
    HostResult result;
    EXPECT_EQ(abortTextOf([&] { rank(result, atReport(5, throwHostAbort)); }), "Aborting...");
    EXPECT_EQ(abortTextOf([&] { rank(result, atReport(1, throwHostAbort)); }),
              "the host's own type");
}

// operator(): on the calling thread, and on workers.

TEST(CallbackException, OfTheHostsOwnTypeEndsAVolumeSearchOnTheCallingThreadAsAnAbort) {
    for (const unsigned int threads : {0u, 1u, 13u}) {  // more threads than triangles: none
        for (const int report : {1, 6, 12}) {
            EXPECT_EQ(
                abortTextOf([&] { search(kVolume, threads, atReport(report, throwHostError)); }),
                "Aborting...");
            EXPECT_EQ(
                abortTextOf([&] { search(kVolume, threads, atReport(report, throwHostAbort)); }),
                "Aborting...");
        }
    }
}

TEST(CallbackException, OfMemoryOrSystemLeavesAVolumeSearchAsItIsFromEveryThread) {
    for (const unsigned int threads : {0u, 1u, 2u, 5u, 13u}) {
        for (const int report : {1, 6, 12}) {
            EXPECT_THROW(search(kVolume, threads, atReport(report, throwBadAlloc)), std::bad_alloc);
            EXPECT_THROW(search(kVolume, threads, atReport(report, throwSystemError)),
                         std::system_error);
            const auto failInFiles = [] {
                throw std::filesystem::filesystem_error(
                    "no such file", std::make_error_code(std::errc::no_such_file_or_directory));
            };
            EXPECT_THROW(search(kVolume, threads, atReport(report, failInFiles)),
                         std::filesystem::filesystem_error);
        }
    }
}

TEST(CallbackException, OfATypeDerivedFromAbortExceptionIsAnAbortOnAWorker) {
    for (const unsigned int threads : {2u, 5u}) {
        EXPECT_EQ(abortTextOf([&] { search(kVolume, threads, atReport(6, throwHostAbort)); }),
                  "Aborting...");
    }
}

TEST(CallbackException, OfMemoryOnAWorkerEndsTheReports) {
    for (int i = 0; i < 50; ++i) {
        int reports = 0;
        const auto fail = [&](int) {
            if (++reports == 3) throwBadAlloc();
        };
        EXPECT_THROW(search(kVolume, 7, fail), std::bad_alloc);
        EXPECT_EQ(reports, 3);
    }
}

TEST(CallbackExceptionDeathTest, OfTheHostsOwnTypeOnAWorkerOfAVolumeSearchEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            try {
                search(kVolume, 2, atReport(1, throwHostError));
            } catch (...) {  // does not get here
            }
        },
        "");
}

// minBaseAreaBox, minBaseAreaAndHeightBox: on the calling thread; workers report nothing.

TEST(CallbackException, LeavesABaseAreaSearchOnTheCallingThreadAsItIs) {
    for (const Search operation : kBaseAreaSearches) {
        for (const unsigned int threads : {0u, 1u, 13u}) {
            for (const int report : {1, 6, 12}) {
                EXPECT_THROW(search(operation, threads, atReport(report, throwHostError)),
                             HostError);
                EXPECT_THROW(search(operation, threads, atReport(report, throwBadAlloc)),
                             std::bad_alloc);
                EXPECT_THROW(search(operation, threads, atReport(report, throwSystemError)),
                             std::system_error);
            }
        }
    }
}

TEST(CallbackException, OfABaseAreaSearchIsCopiedWhereItIsAnAbort) {
    for (const Search operation : kBaseAreaSearches) {
        EXPECT_EQ(abortTextOf([&] { search(operation, 1, atReport(6, throwHostAbort)); }),
                  "the host gives up");
    }
}

TEST(CallbackException, IsNeverThrownOnWorkersOfABaseAreaSearchAsTheyReportNothing) {
    for (const Search operation : kBaseAreaSearches) {
        for (const unsigned int threads : {2u, 7u, 12u}) {
            int reports = 0;
            EXPECT_NO_THROW(search(operation, threads, [&](int) {
                ++reports;
                throwHostError();
            }));
            EXPECT_EQ(reports, 0);
        }
    }
}

// calculateOrients_minBoundingBox: as a volume search on the calling thread.

TEST(CallbackException, LeavesAPlacementAsItLeavesAVolumeSearchOnTheCallingThread) {
    UMatrix4<float> matrix;
    matrix.at(0, 1) = 7.0f;
    for (const int report : {1, 6, 12}) {
        EXPECT_EQ(abortTextOf([&] { place(matrix, atReport(report, throwHostError)); }),
                  "Aborting...");
        EXPECT_EQ(abortTextOf([&] { place(matrix, atReport(report, throwHostAbort)); }),
                  "Aborting...");
        EXPECT_THROW(place(matrix, atReport(report, throwBadAlloc)), std::bad_alloc);
        EXPECT_THROW(place(matrix, atReport(report, throwSystemError)), std::system_error);
    }
    EXPECT_EQ(matrix.at(0, 1), 7.0f);
    EXPECT_EQ(matrix.at(0, 0), 1.0f);
}

}  // namespace
