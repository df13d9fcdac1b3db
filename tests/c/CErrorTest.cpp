#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <thread>

#include "HostSide.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

namespace {

constexpr std::int64_t kHuge = std::numeric_limits<std::int64_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

/// Expects a call to be refused, with a text that holds these words.
void expectRefused(tesk_status status, const char* words) {
    EXPECT_EQ(status, TESK_INVALID_ARGUMENT);
    EXPECT_NE(lastError().find(words), std::string::npos) << lastError();
}

class CErrors : public testing::Test {
 protected:
    const Part m_part = makeBracket(30, 40, 5, 12);
    const MeshHandle m_mesh = meshOf(m_part);
    float m_matrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
};

/// What tesk_mesh_create() says of arrays that something is wrong with.
void expectRefusedArrays(const Part& part, const std::function<void(tesk_mesh_arrays&)>& spoil,
                         const char* words) {
    tesk_mesh_arrays arrays = arraysOf(part);
    spoil(arrays);
    int before = 0;
    auto* const untouched = reinterpret_cast<tesk_mesh*>(&before);
    tesk_mesh* mesh = untouched;
    expectRefused(tesk_mesh_create(&arrays, &mesh), words);
    EXPECT_EQ(mesh, untouched);
}

TEST_F(CErrors, ArraysOfAMesh) {
    using Arrays = tesk_mesh_arrays;
    const auto refused = [&](const auto& spoil, const char* words) {
        expectRefusedArrays(m_part, spoil, words);
    };
    for (const unsigned size :
         {0u, 4u, unsigned{sizeof(Arrays)} - 1, unsigned{sizeof(Arrays)} + 8, 0xffffffffu}) {
        refused([&](Arrays& a) { a.struct_size = size; }, "arrays: struct_size is");
    }
    refused([](Arrays& a) { a.position_type = 2; }, "positions: no type of number is 2");
    refused([](Arrays& a) { a.position_type = -1; }, "positions: no type of number is -1");
    refused([](Arrays& a) { a.positions = nullptr; }, "positions: the array is null");
    refused([](Arrays& a) { a.triangles = nullptr; }, "triangles: the array is null");
    for (const std::int64_t count : {std::int64_t{-1}, std::int64_t{1} << 31, kHuge, -kHuge}) {
        refused([&](Arrays& a) { a.position_count = count; }, "positions: the count is");
        refused([&](Arrays& a) { a.triangle_count = count; }, "triangles: the count is");
    }
    for (const std::int64_t stride :
         {std::int64_t{11}, std::int64_t{1}, std::int64_t{-12}, -kHuge}) {
        refused([&](Arrays& a) { a.position_stride = stride; }, "positions: the stride is");
        refused([&](Arrays& a) { a.triangle_stride = stride; }, "triangles: the stride is");
    }
    refused([](Arrays& a) { a.position_stride = kHuge; }, "more than memory has");
    refused([](Arrays& a) { a.triangle_stride = kHuge / 2; }, "more than memory has");
    refused([](Arrays& a) { a.position_type = TESK_FLOAT64, a.position_stride = 23; },
            "less than the 24 of one element");
}

TEST_F(CErrors, IndicesOfAMesh) {
    const auto count = static_cast<std::int32_t>(m_part.positions.size());
    for (const std::int32_t index : {-1, count, kLeast, std::numeric_limits<std::int32_t>::max()}) {
        Part part = m_part;
        part.triangles[3][2] = index;
        expectRefusedArrays(
            part, [](tesk_mesh_arrays&) {}, "triangles: triangle 3 names vertex");
    }
    expectRefusedArrays(
        m_part, [](tesk_mesh_arrays& a) { a.position_count = 0; }, "of 0");
}

TEST_F(CErrors, NullsOfMeshes) {
    const tesk_mesh_arrays arrays = arraysOf(m_part);
    tesk_mesh* mesh = nullptr;
    expectRefused(tesk_mesh_create(nullptr, &mesh), "arrays is null");
    expectRefused(tesk_mesh_create(&arrays, nullptr), "mesh is null");
    std::int64_t count = 0;
    expectRefused(tesk_mesh_counts(nullptr, &count, &count), "mesh is null");
    EXPECT_EQ(tesk_mesh_counts(m_mesh.get(), nullptr, nullptr), TESK_OK);
    float xyz[3];
    std::int32_t abc[3];
    expectRefused(tesk_mesh_copy_positions(nullptr, xyz, 1), "mesh is null");
    expectRefused(tesk_mesh_copy_triangles(nullptr, abc, 1), "mesh is null");
    expectRefused(tesk_mesh_copy_positions(m_mesh.get(), nullptr, 1000), "positions is null");
    expectRefused(tesk_mesh_copy_triangles(m_mesh.get(), nullptr, 1000), "triangles is null");
    auto surface = sized<tesk_mesh_surface>();
    expectRefused(tesk_mesh_check(nullptr, nullptr, &surface), "mesh is null");
    expectRefused(tesk_mesh_check(m_mesh.get(), nullptr, nullptr), "surface is null");
    surface.struct_size = 8;
    expectRefused(tesk_mesh_check(m_mesh.get(), nullptr, &surface), "surface: struct_size is 8");
    expectRefused(tesk_mesh_set_placement(nullptr, m_matrix), "mesh is null");
    expectRefused(tesk_mesh_set_placement(m_mesh.get(), nullptr), "matrix is null");
}

TEST_F(CErrors, ACapacityThatIsTooSmallLeavesTheArraysAlone) {
    std::vector<float> xyz(m_part.positions.size() * 3, 77.0f);
    std::vector<std::int32_t> abc(m_part.triangles.size() * 3, 77);
    const auto positions = static_cast<std::int64_t>(m_part.positions.size());
    const auto triangles = static_cast<std::int64_t>(m_part.triangles.size());
    for (const std::int64_t less : {std::int64_t{1}, positions, positions + 1, kHuge}) {
        expectRefused(tesk_mesh_copy_positions(m_mesh.get(), xyz.data(), positions - less),
                      "there is room for");
        expectRefused(tesk_mesh_copy_triangles(m_mesh.get(), abc.data(), triangles - less),
                      "there is room for");
    }
    EXPECT_EQ(xyz, std::vector<float>(xyz.size(), 77.0f));
    EXPECT_EQ(abc, std::vector<std::int32_t>(abc.size(), 77));
}

TEST_F(CErrors, HandlesOfAnotherKind) {
    const std::string text = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";
    tesk_part* part = nullptr;
    ASSERT_EQ(tesk_part_read_bytes(text.data(), static_cast<std::int64_t>(text.size()), TESK_OBJ,
                                   nullptr, nullptr, &part),
              TESK_OK);
    const PartHandle owner(part);
    auto* const notAMesh = reinterpret_cast<tesk_mesh*>(part);
    auto* const notAPart = reinterpret_cast<tesk_part*>(m_mesh.get());
    auto pose = sized<tesk_pose>();
    auto surface = sized<tesk_mesh_surface>();
    tesk_mesh* mesh = nullptr;
    auto details = sized<tesk_part_details>();
    const char* kind = "of another kind";
    expectRefused(tesk_mesh_counts(notAMesh, nullptr, nullptr), kind);
    expectRefused(tesk_mesh_copy_positions(notAMesh, m_matrix, 5), kind);
    expectRefused(tesk_mesh_copy_triangles(notAMesh, nullptr, 5), kind);
    expectRefused(tesk_mesh_set_placement(notAMesh, m_matrix), kind);
    expectRefused(tesk_mesh_check(notAMesh, nullptr, &surface), kind);
    expectRefused(tesk_find_poses(notAMesh, nullptr, nullptr, nullptr, 0, nullptr, nullptr), kind);
    expectRefused(tesk_measure_pose(notAMesh, nullptr, nullptr, m_matrix, &pose), kind);
    expectRefused(tesk_rank(notAMesh, nullptr, nullptr, nullptr, 0, nullptr), kind);
    expectRefused(tesk_rank_all(notAMesh, nullptr, nullptr, nullptr, 0, nullptr), kind);
    expectRefused(tesk_lay_flat(notAMesh, nullptr, m_matrix), kind);
    expectRefused(tesk_part_write("a.stl", notAMesh), kind);
    expectRefused(tesk_part_mesh(notAPart, &mesh), kind);
    expectRefused(tesk_part_describe(notAPart, &details), kind);
    expectRefused(tesk_part_warning(notAPart, 0, nullptr, nullptr), kind);
    expectRefused(tesk_part_object(notAPart, 0, &kind), kind);
}

TEST_F(CErrors, HowACallIsToRun) {
    for (const int threads : {-1, 1025, kLeast}) {
        const tesk_call call = callOn(threads);
        expectRefused(tesk_lay_flat(m_mesh.get(), &call, m_matrix), "call: threads is");
    }
    tesk_call call = callOn(1);
    call.struct_size = 12;
    auto pose = sized<tesk_pose>();
    auto box = sized<tesk_box>();
    auto surface = sized<tesk_mesh_surface>();
    const tesk_points points = pointsOf(m_part);
    tesk_part* part = nullptr;
    const char* words = "call: struct_size is 12";
    expectRefused(tesk_mesh_check(m_mesh.get(), &call, &surface), words);
    expectRefused(tesk_find_poses(m_mesh.get(), nullptr, &call, nullptr, 0, nullptr, nullptr),
                  words);
    expectRefused(tesk_measure_pose(m_mesh.get(), nullptr, &call, m_matrix, &pose), words);
    expectRefused(tesk_rank(m_mesh.get(), nullptr, &call, nullptr, 0, nullptr), words);
    expectRefused(tesk_lay_flat(m_mesh.get(), &call, m_matrix), words);
    expectRefused(tesk_smallest_box(&points, TESK_BOX_VOLUME, nullptr, &call, &box), words);
    expectRefused(tesk_part_read("a.stl", nullptr, &call, &part), words);
    expectRefused(tesk_part_read_bytes("", 0, TESK_STL, nullptr, &call, &part), words);
}

TEST_F(CErrors, PosesAndGoals) {
    tesk_mesh* const mesh = m_mesh.get();
    auto pose = sized<tesk_pose>();
    auto summary = sized<tesk_pose_summary>();
    expectRefused(tesk_find_poses(nullptr, nullptr, nullptr, &pose, 1, nullptr, nullptr), "mesh");
    expectRefused(tesk_find_poses(mesh, nullptr, nullptr, nullptr, 1, nullptr, nullptr), "poses");
    expectRefused(tesk_find_poses(mesh, nullptr, nullptr, &pose, -1, nullptr, nullptr), "poses");
    expectRefused(tesk_find_poses(mesh, nullptr, nullptr, &pose, kLeast, nullptr, nullptr),
                  "poses");
    pose.struct_size = 8;
    summary.struct_size = 8;
    expectRefused(tesk_find_poses(mesh, nullptr, nullptr, &pose, 1, nullptr, nullptr), "poses");
    expectRefused(tesk_find_poses(mesh, nullptr, nullptr, nullptr, 0, &pose, nullptr),
                  "as_it_lies");
    expectRefused(tesk_find_poses(mesh, nullptr, nullptr, nullptr, 0, nullptr, &summary),
                  "summary");
    expectRefused(tesk_measure_pose(mesh, nullptr, nullptr, m_matrix, &pose), "pose");
    expectRefused(tesk_measure_pose(mesh, nullptr, nullptr, m_matrix, nullptr), "pose is null");
    pose = sized<tesk_pose>();
    expectRefused(tesk_measure_pose(mesh, nullptr, nullptr, nullptr, &pose), "rotation is null");
    expectRefused(tesk_measure_pose(nullptr, nullptr, nullptr, m_matrix, &pose), "mesh is null");

    expectRefused(tesk_goal_init(nullptr, TESK_GOAL_BALANCED), "goal is null");
    auto goal = sized<tesk_goal>();
    expectRefused(tesk_goal_init(&goal, 2), "no goal is 2");
    expectRefused(tesk_goal_init(&goal, -1), "no goal is -1");
    EXPECT_EQ(goal.height_cost, 0.0f);
    goal.struct_size -= 1;
    expectRefused(tesk_goal_init(&goal, TESK_GOAL_BALANCED), "goal: struct_size");
    expectRefused(tesk_find_poses(mesh, &goal, nullptr, nullptr, 0, nullptr, nullptr),
                  "goal: struct");
    expectRefused(tesk_measure_pose(mesh, &goal, nullptr, m_matrix, &pose), "goal: struct");
}

TEST_F(CErrors, FacesToKeepOff) {
    auto goal = sized<tesk_goal>();
    ASSERT_EQ(tesk_goal_init(&goal, TESK_GOAL_BALANCED), TESK_OK);
    const auto refused = [&](const char* words) {
        expectRefused(tesk_find_poses(m_mesh.get(), &goal, nullptr, nullptr, 0, nullptr, nullptr),
                      words);
    };
    goal.keep_off_count = 1;
    refused("keep_off is null");
    auto rule = sized<tesk_keep_off>();
    goal.keep_off = &rule;
    refused("keep_off 0 has no direction");
    rule.direction[1] = std::numeric_limits<float>::infinity();
    refused("keep_off 0 has no direction");
    rule.direction[1] = 1.0f;
    rule.angle_deg = std::numeric_limits<float>::quiet_NaN();
    refused("keep_off 0 has no direction");
    rule.angle_deg = 10.0f;
    EXPECT_EQ(tesk_find_poses(m_mesh.get(), &goal, nullptr, nullptr, 0, nullptr, nullptr), TESK_OK);
    rule.struct_size = 16;
    refused("keep_off: struct_size is 16");
    goal.keep_off_count = -1;
    refused("keep_off: the number of them is -1");
}

TEST_F(CErrors, Rankings) {
    tesk_mesh* const mesh = m_mesh.get();
    auto record = sized<tesk_orientation>();
    std::int32_t count = 77;
    expectRefused(tesk_rank(nullptr, nullptr, nullptr, &record, 1, &count), "mesh is null");
    expectRefused(tesk_rank_all(nullptr, nullptr, nullptr, &record, 1, &count), "mesh is null");
    expectRefused(tesk_rank_all(mesh, nullptr, nullptr, &record, -1, &count), "records");
    expectRefused(tesk_rank(mesh, nullptr, nullptr, nullptr, 1, &count), "records is null");
    expectRefused(tesk_rank(mesh, nullptr, nullptr, &record, -1, &count), "records");
    record.struct_size = 0;
    expectRefused(tesk_rank(mesh, nullptr, nullptr, &record, 1, &count), "records: struct_size");
    auto settings = sized<tesk_rank_settings>();
    settings.struct_size = 0;
    expectRefused(tesk_rank(mesh, &settings, nullptr, nullptr, 0, &count), "settings: struct_size");
    expectRefused(tesk_rank_settings_init(&settings), "settings: struct_size");
    expectRefused(tesk_rank_settings_init(nullptr), "settings is null");
    EXPECT_EQ(count, 77);
    expectRefused(tesk_lay_flat(nullptr, nullptr, m_matrix), "mesh is null");
    expectRefused(tesk_lay_flat(mesh, nullptr, nullptr), "matrix is null");
}

TEST_F(CErrors, BoxesAndHulls) {
    tesk_points points = pointsOf(m_part);
    auto box = sized<tesk_box>();
    tesk_mesh* hull = nullptr;
    expectRefused(tesk_smallest_box(nullptr, 0, nullptr, nullptr, &box), "points is null");
    expectRefused(tesk_smallest_box(&points, 0, nullptr, nullptr, nullptr), "box is null");
    for (const int criterion : {-1, 5, kLeast}) {
        expectRefused(tesk_smallest_box(&points, criterion, m_matrix, nullptr, &box),
                      "no criterion is");
    }
    expectRefused(tesk_smallest_box(&points, TESK_BOX_AROUND_AXIS, nullptr, nullptr, &box), "axis");
    expectRefused(tesk_convex_hull(nullptr, &hull, nullptr), "points is null");
    expectRefused(tesk_convex_hull(&points, nullptr, nullptr), "hull is null");
    points.count = -1;
    expectRefused(tesk_smallest_box(&points, 0, nullptr, nullptr, &box), "points: the count is -1");
    std::int32_t dimension = 77;
    expectRefused(tesk_convex_hull(&points, &hull, &dimension), "points: the count is -1");
    EXPECT_EQ(dimension, 77);
    EXPECT_EQ(hull, nullptr);
    points = pointsOf(m_part);
    points.stride = 4;
    expectRefused(tesk_convex_hull(&points, &hull, nullptr), "points: the stride is 4 bytes");
    points = pointsOf(m_part);
    points.type = 9;
    expectRefused(tesk_convex_hull(&points, &hull, nullptr), "points: no type of number is 9");
    points.struct_size = 1;
    expectRefused(tesk_convex_hull(&points, &hull, nullptr), "points: struct_size is 1");
    points = pointsOf(m_part);
    box.struct_size = 1;
    expectRefused(tesk_smallest_box(&points, 0, nullptr, nullptr, &box), "box: struct_size is 1");
}

TEST_F(CErrors, PartFiles) {
    tesk_part* part = nullptr;
    expectRefused(tesk_part_read(nullptr, nullptr, nullptr, &part), "path is null");
    expectRefused(tesk_part_read("a.stl", nullptr, nullptr, nullptr), "part is null");
    expectRefused(tesk_part_read_bytes(nullptr, 1, TESK_STL, nullptr, nullptr, &part), "bytes");
    expectRefused(tesk_part_read_bytes("", -1, TESK_STL, nullptr, nullptr, &part), "size is -1");
    expectRefused(tesk_part_read_bytes("", 0, TESK_STL, nullptr, nullptr, nullptr), "part is null");
    for (const int format : {-1, 5, kLeast}) {
        expectRefused(tesk_part_read_bytes("", 0, format, nullptr, nullptr, &part), "no format is");
    }
    auto options = sized<tesk_read_options>();
    options.max_triangles = -1;
    expectRefused(tesk_part_read("a.stl", &options, nullptr, &part), "max_triangles is -1");
    options.struct_size = 3;
    expectRefused(tesk_part_read("a.stl", &options, nullptr, &part), "options: struct_size is 3");
    auto details = sized<tesk_part_details>();
    tesk_mesh* mesh = nullptr;
    expectRefused(tesk_part_describe(nullptr, &details), "part is null");
    expectRefused(tesk_part_warning(nullptr, 0, nullptr, nullptr), "part is null");
    const char* name = nullptr;
    expectRefused(tesk_part_object(nullptr, 0, &name), "part is null");
    expectRefused(tesk_part_mesh(nullptr, &mesh), "part is null");
    expectRefused(tesk_part_write(nullptr, m_mesh.get()), "path is null");
    expectRefused(tesk_part_write("a.stl", nullptr), "mesh is null");
}

TEST_F(CErrors, TheVersionCanBeChecked) {
    EXPECT_EQ(tesk_abi_version(), TESK_ABI_VERSION);
    EXPECT_EQ(tesk_check_abi(TESK_ABI_VERSION), TESK_OK);
    for (const std::int32_t version : {0, -1, TESK_ABI_VERSION + 1, kLeast}) {
        expectRefused(tesk_check_abi(version), "the program was compiled for version");
    }
    EXPECT_STREQ(tesk_version(), TESK_EXPECTED_VERSION);
}

TEST_F(CErrors, EveryThreadHasItsOwnLastError) {
    expectRefused(tesk_check_abi(77), "77");
    std::string ofOther = "unset";
    std::thread([&] {
        ofOther = lastError();
        tesk_check_abi(88);
    }).join();
    EXPECT_EQ(ofOther, "");
    EXPECT_NE(lastError().find("77"), std::string::npos);
}

TEST_F(CErrors, ALongTextIsCutBetweenCharacters) {
    std::string path;
    while (path.size() < 2000) path += "ä";
    tesk_part* part = nullptr;
    for (const char* prefix : {"", "x"}) {
        EXPECT_NE(tesk_part_read((prefix + path + ".stl").c_str(), nullptr, nullptr, &part),
                  TESK_OK);
        const std::string text = lastError();
        EXPECT_LT(text.size(), 1024u);
        EXPECT_GT(text.size(), 1000u);
        EXPECT_EQ(text.substr(text.size() - 2), "ä");
    }
}

}  // namespace
