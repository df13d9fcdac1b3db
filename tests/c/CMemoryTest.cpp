// Every allocation of every function fails once: the call then says so, and nothing is lost.

#include <gtest/gtest.h>

#include "HostSide.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"
#include "tools/FailingAllocations.h"

namespace {

/// Runs a call with its first allocation failing, then its second, and so on until it succeeds.
template <class Call>
void expectCodes(const Call& call) {
    ASSERT_EQ(call(), TESK_OK) << lastError();
    for (std::int64_t allowed = 0;; ++allowed) {
        const std::int64_t before = blocksHeld;
        allocationsLeft = allowed;
        const tesk_status status = call();
        const bool wasEnough = allocationsLeft > 0;
        allocationsLeft = kNever;
        if (status == TESK_OK && wasEnough) return;
        // A lack of memory that cost no more than time is no error.
        ASSERT_TRUE(status == TESK_OUT_OF_MEMORY || status == TESK_OK) << status << lastError();
        if (status != TESK_OK) {
            ASSERT_EQ(lastError(), "out of memory");
        }
        ASSERT_EQ(blocksHeld, before);
        if (allowed > 200) allowed += allowed / 10;  // the later ones are much alike
    }
}

class CMemory : public testing::Test {
 protected:
    const Part m_part = makeBox({0, 0, 0}, {3, 4, 5});
    const MeshHandle m_mesh = meshOf(m_part);
    const tesk_call m_call = callOn(1);
};

TEST_F(CMemory, Meshes) {
    const tesk_mesh_arrays arrays = arraysOf(m_part);
    expectCodes([&] {
        tesk_mesh* mesh = nullptr;
        const tesk_status status = tesk_mesh_create(&arrays, &mesh);
        tesk_free(mesh);
        return status;
    });
}

TEST_F(CMemory, Checks) {
    auto surface = sized<tesk_mesh_surface>();
    expectCodes([&] { return tesk_mesh_check(m_mesh.get(), &m_call, &surface); });
}

TEST_F(CMemory, Poses) {
    expectCodes([&] {
        return tesk_find_poses(m_mesh.get(), nullptr, &m_call, nullptr, 0, nullptr, nullptr);
    });
    const float matrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    auto pose = sized<tesk_pose>();
    expectCodes([&] { return tesk_measure_pose(m_mesh.get(), nullptr, &m_call, matrix, &pose); });
}

TEST_F(CMemory, Rankings) {
    expectCodes([&] { return tesk_rank(m_mesh.get(), nullptr, &m_call, nullptr, 0, nullptr); });
    expectCodes([&] { return tesk_rank_all(m_mesh.get(), nullptr, &m_call, nullptr, 0, nullptr); });
    float matrix[16];
    expectCodes([&] { return tesk_lay_flat(m_mesh.get(), &m_call, matrix); });
}

TEST_F(CMemory, BoxesAndHulls) {
    const tesk_points points = pointsOf(m_part);
    const float axis[3] = {1, 1, 1};
    auto box = sized<tesk_box>();
    for (int criterion = TESK_BOX_VOLUME; criterion <= TESK_BOX_PRINCIPAL; ++criterion) {
        expectCodes([&] { return tesk_smallest_box(&points, criterion, axis, &m_call, &box); });
    }
    expectCodes([&] {
        tesk_mesh* hull = nullptr;
        const tesk_status status = tesk_convex_hull(&points, &hull, nullptr);
        tesk_free(hull);
        return status;
    });
}

TEST_F(CMemory, PartFiles) {
    const std::string text = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";
    expectCodes([&] {
        tesk_part* part = nullptr;
        const tesk_status status = tesk_part_read_bytes(
            text.data(), static_cast<std::int64_t>(text.size()), TESK_OBJ, nullptr, &m_call, &part);
        tesk_free(part);
        return status;
    });
}

TEST_F(CMemory, AText) {
    EXPECT_EQ(tesk_check_abi(7), TESK_INVALID_ARGUMENT);
    allocationsLeft = 0;
    const tesk_status status = tesk_check_abi(7);
    allocationsLeft = kNever;
    EXPECT_EQ(status, TESK_OUT_OF_MEMORY);
}

}  // namespace
