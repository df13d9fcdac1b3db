#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>

#include "HostSide.h"
#include "TeskPartFiles/PartFiles.h"
#include "orient/OmpThreads.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

namespace {

/// What a callback was told, and what it is to do.
struct Listener {
    int last = -1;
    int reports = 0;
    int endsAt = 1000;  ///< the percentage from which on it ends the call
    bool throws = false;
    bool hasFallen = false;
    bool isCalledAfterwards = false;
    bool hasEnded = false;
    std::atomic<int> inside = 0;
    bool isTwiceAtOnce = false;
};

std::int32_t TESK_CALL listen(std::int32_t percent, void* user) {
    Listener& listener = *static_cast<Listener*>(user);
    if (++listener.inside > 1) listener.isTwiceAtOnce = true;
    listener.hasFallen |= percent < listener.last;
    listener.isCalledAfterwards |= listener.hasEnded;
    listener.last = percent;
    ++listener.reports;
    listener.hasEnded = percent >= listener.endsAt;
    --listener.inside;
    if (listener.hasEnded && listener.throws) throw std::runtime_error("not for the library");
    return listener.hasEnded ? -5 : 0;
}

/// Every function that reports progress, on one part.
class Calls {
 public:
    explicit Calls(const Part& part)
        : m_part(part), m_mesh(meshOf(part)), m_points(pointsOf(m_part)) {
        Tesk::PartMesh mesh;
        for (const UPoint3<float>& p : part.positions) mesh.positions.push_back({p.x, p.y, p.z});
        mesh.triangles = part.triangles;
        m_file = encodePart(mesh, Tesk::PartFormat::kObj);
    }

    static constexpr int kCount = 7;

    tesk_status run(int which, const tesk_call& call) const {
        float matrix[16];
        auto box = sized<tesk_box>();
        tesk_part* part = nullptr;
        switch (which) {
            case 0:
                return rank(call);
            case 1:
                return tesk_find_poses(m_mesh.get(), nullptr, &call, nullptr, 0, nullptr, nullptr);
            case 2:
                return tesk_lay_flat(m_mesh.get(), &call, matrix);
            case 3: {
                const tesk_status status =
                    tesk_part_read_bytes(m_file.data(), static_cast<std::int64_t>(m_file.size()),
                                         TESK_OBJ, nullptr, &call, &part);
                tesk_free(part);
                return status;
            }
            default:
                return tesk_smallest_box(&m_points, which - 4, nullptr, &call, &box);
        }
    }

    tesk_status rank(const tesk_call& call, float* heights = nullptr) const {
        tesk_orientation records[12] = {sized<tesk_orientation>()};
        tesk_seed(3);
        const tesk_status status = tesk_rank(m_mesh.get(), nullptr, &call, records, 12, nullptr);
        for (int i = 0; heights != nullptr && i < 12; ++i) heights[i] = records[i].height;
        return status;
    }

    const tesk_mesh* mesh() const { return m_mesh.get(); }

 private:
    Part m_part;
    MeshHandle m_mesh;
    tesk_points m_points;
    std::string m_file;
};

TEST(CCallbacks, PercentagesNeverFall) {
    const Calls calls(makeRandomAssembly(3));
    for (int which = 0; which < Calls::kCount; ++which) {
        for (const int threads : {1, 3}) {
            Listener listener;
            ASSERT_EQ(calls.run(which, callOn(threads, listen, &listener)), TESK_OK) << which;
            EXPECT_FALSE(listener.hasFallen) << which;
            EXPECT_FALSE(listener.isTwiceAtOnce) << which;
            EXPECT_LE(listener.last, 100) << which;
            if (threads == 1 || which < 5) {
                EXPECT_GT(listener.reports, 0) << which;
            }
        }
    }
}

TEST(CCallbacks, NonzeroAborts) {
    const Calls calls(makeRandomAssembly(3));
    for (int which = 0; which < Calls::kCount; ++which) {
        for (const int threads : {1, 3}) {
            if (threads > 1 && which >= 5) continue;  // base areas: reports on one thread only
            for (const int percent : {0, 20, 30}) {
                Listener listener;
                listener.endsAt = percent;
                EXPECT_EQ(calls.run(which, callOn(threads, listen, &listener)), TESK_ABORTED)
                    << which;
                EXPECT_EQ(lastError(), "aborted by the progress callback");
                EXPECT_TRUE(listener.hasEnded);
                EXPECT_FALSE(listener.isCalledAfterwards) << which;
            }
        }
    }
}

TEST(CCallbacks, AnExceptionIsCaughtWhereverItIsThrown) {
    const Calls calls(makeRandomAssembly(3));
    for (int which = 0; which < Calls::kCount; ++which) {
        for (const int threads : {1, 3}) {
            if (threads > 1 && which >= 5) continue;
            for (const int percent : {0, 20, 30}) {
                Listener listener;
                listener.endsAt = percent;
                listener.throws = true;
                EXPECT_EQ(calls.run(which, callOn(threads, listen, &listener)),
                          TESK_CALLBACK_FAILED)
                    << which;
                EXPECT_EQ(lastError(), "an exception left the progress callback");
                EXPECT_FALSE(listener.isCalledAfterwards) << which;
            }
        }
    }
}

TEST(CCallbacks, AnAbortLeavesOutputsAlone) {
    const MeshHandle mesh = meshOf(makeRandomAssembly(3));
    Listener listener;
    listener.endsAt = 0;
    const tesk_call call = callOn(2, listen, &listener);
    auto pose = sized<tesk_pose>();
    auto summary = sized<tesk_pose_summary>();
    EXPECT_EQ(tesk_find_poses(mesh.get(), nullptr, &call, &pose, 1, &pose, &summary), TESK_ABORTED);
    EXPECT_EQ(pose.height, 0.0f);
    EXPECT_EQ(summary.pose_count, 0);
    auto record = sized<tesk_orientation>();
    std::int32_t count = 77;
    EXPECT_EQ(tesk_rank(mesh.get(), nullptr, &call, &record, 1, &count), TESK_ABORTED);
    EXPECT_EQ(record.height, 0.0f);
    EXPECT_EQ(count, 77);
}

std::int32_t TESK_CALL useTheMesh(std::int32_t percent, void* user) {
    const Calls& calls = *static_cast<const Calls*>(user);
    std::int64_t triangles = 0;
    if (tesk_mesh_counts(calls.mesh(), nullptr, &triangles) != TESK_OK || triangles == 0) return 1;
    if (percent > 15) return 0;
    for (int which = 0; which < Calls::kCount; ++which) {
        if (calls.run(which, callOn(2)) != TESK_OK) return 1;
    }
    return 0;
}

TEST(CCallbacks, TheyMayCallTheLibraryOnTheSameHandle) {
    Calls calls(makeTable());
    for (int which = 0; which < Calls::kCount; ++which) {
        EXPECT_EQ(calls.run(which, callOn(2, useTheMesh, &calls)), TESK_OK) << which;
    }
}

TEST(CCallbacks, TheThreadCountOfACallEndsWithIt) {
    const Calls calls(makeTable());
    const OmpThreads four(4);
    for (int which = 0; which < Calls::kCount; ++which) {
        ASSERT_EQ(calls.run(which, callOn(2)), TESK_OK);
        EXPECT_EQ(omp_get_max_threads(), 4) << which;
    }
}

/// Runs a function on eight threads at once.
template <class Body>
void onEightThreads(const Body& body) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) threads.emplace_back(body, i);
    for (std::thread& thread : threads) thread.join();
}

/// Counts what goes wrong while eight threads use their meshes: some to the end, some until an
/// abort.
int troublesOnEightThreads(const std::vector<const Calls*>& calls,
                           const std::vector<float>& heights) {
    std::atomic<int> troubles = 0;
    onEightThreads([&](int thread) {
        const Calls& mine = *calls[static_cast<std::size_t>(thread) % calls.size()];
        for (int round = 0; round < 2 * Calls::kCount; ++round) {
            const int which = (thread + round) % Calls::kCount;
            Listener listener;
            if ((thread + round) % 3 == 0) listener.endsAt = 12;
            listener.throws = thread % 2 == 0;
            const tesk_status status = mine.run(which, callOn(1 + round % 3, listen, &listener));
            const tesk_status aborted = listener.throws ? TESK_CALLBACK_FAILED : TESK_ABORTED;
            if (status != (listener.hasEnded ? aborted : TESK_OK)) ++troubles;
            if (listener.isTwiceAtOnce || listener.isCalledAfterwards) ++troubles;
            float found[12];
            mine.rank(callOn(1 + round % 2), found);
            if (!std::equal(heights.begin(), heights.end(), found)) ++troubles;
            auto surface = sized<tesk_mesh_surface>();
            if (tesk_mesh_check(mine.mesh(), nullptr, &surface) != TESK_OK) ++troubles;
        }
    });
    return troubles;
}

TEST(CCallbacks, EightThreadsUseOneHandle) {
    const Calls calls(makeColumnWithArm());
    std::vector<float> heights(12);
    calls.rank(callOn(1), heights.data());
    EXPECT_EQ(troublesOnEightThreads({&calls}, heights), 0);
}

TEST(CCallbacks, EightThreadsUseHandlesOfTheirOwn) {
    std::vector<std::unique_ptr<Calls>> owners;
    std::vector<const Calls*> calls;
    for (int i = 0; i < 8; ++i) {
        owners.push_back(std::make_unique<Calls>(makeColumnWithArm()));
        calls.push_back(owners.back().get());
    }
    std::vector<float> heights(12);
    owners[0]->rank(callOn(1), heights.data());
    EXPECT_EQ(troublesOnEightThreads(calls, heights), 0);
}

}  // namespace
