// Any sequence of calls of the C interface, with any sizes, nulls, strides and lifetimes: each must
// return a status that fits, and nothing may be lost. Arrays have exactly the bytes that a call may
// read.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "CInterfaceInput.h"
#include "teskorient.h"

namespace {

constexpr int kMostCalls = 24;
constexpr std::size_t kMostHandles = 4;

struct Callback {
    std::int32_t endsAt;
    bool throws;
};

std::int32_t TESK_CALL report(std::int32_t percent, void* user) {
    const Callback& callback = *static_cast<const Callback*>(user);
    if (percent < 0 || percent > 100) std::abort();
    if (percent < callback.endsAt) return 0;
    if (callback.throws) throw callback.endsAt;
    return 1;
}

/// The sequence: what it has made, and one call after the other.
class Sequence {
 public:
    explicit Sequence(FuzzInput& input) : m_input(input) {}
    ~Sequence() {
        for (tesk_mesh* mesh : m_meshes) tesk_free(mesh);
        for (tesk_part* part : m_parts) tesk_free(part);
    }
    Sequence(const Sequence&) = delete;
    Sequence& operator=(const Sequence&) = delete;

    void run() {
        for (int i = 0; i < kMostCalls && !m_input.isEmpty(); ++i) runOne();
    }

 private:
    void runOne() {
        switch (m_input.take<std::uint8_t>() % 14) {
            case 0:
                return createMesh();
            case 1:
                return freeOne();
            case 2:
                return copyMesh();
            case 3:
                return placeMesh();
            case 4:
                return findPoses();
            case 5:
                return measurePose();
            case 6:
                return rank();
            case 7:
                return layFlat();
            case 8:
                return findBox();
            case 9:
                return findHull();
            case 10:
                return readPart();
            case 11:
                return describePart();
            case 12:
                return takeMeshOfPart();
            default:
                return askVersion();
        }
    }

    /// The status fits what the call left.
    void expect(tesk_status status) {
        if (status < TESK_OK || status >= TESK_INTERNAL_ERROR) std::abort();
        if (status != TESK_OK && *tesk_last_error() == '\0') std::abort();
    }

    template <class Handle>
    void keep(tesk_status status, Handle* handle, std::vector<Handle*>& list) {
        expect(status);
        if ((status == TESK_OK) != (handle != nullptr)) std::abort();
        if (handle == nullptr) return;
        if (list.size() == kMostHandles) {
            tesk_free(list.front());
            list.erase(list.begin());
        }
        list.push_back(handle);
    }

    template <class Handle>
    Handle* take(const std::vector<Handle*>& list) {
        const auto which = m_input.take<std::uint8_t>();
        return list.empty() || which == 255 ? nullptr : list[which % list.size()];
    }

    tesk_call* takeCall() {
        if (takeRarely(m_input)) return nullptr;
        m_call = takeSized<tesk_call>(m_input);
        m_call.threads = takeRarely(m_input) ? -1 : 1 + m_input.take<std::uint8_t>() % 3;
        m_callback = {m_input.take<std::uint8_t>() % 150, takeRarely(m_input)};
        m_call.progress = takeRarely(m_input) ? nullptr : report;
        m_call.user = &m_callback;
        return &m_call;
    }

    const float* takeMatrix() {
        if (takeRarely(m_input)) return nullptr;
        m_matrix.assign(16, 0.0f);
        for (float& value : m_matrix) value = takeNumber(m_input) * 0.1f;
        return m_matrix.data();
    }

    tesk_points takePointsOf(Rows& rows) {
        auto points = takeSized<tesk_points>(m_input);
        rows = takePoints(m_input, points.type);
        points.data = rows.data();
        points.count = tellable(takeOddly(m_input, rows.count), rows.count, true);
        points.stride = takeStride(m_input, rows);
        if (takeRarely(m_input)) points.data = nullptr;
        return points;
    }

    void createMesh() {
        auto arrays = takeSized<tesk_mesh_arrays>(m_input);
        const Rows positions = takePoints(m_input, arrays.position_type);
        const std::int32_t count =
            std::max<std::int32_t>(1, static_cast<std::int32_t>(positions.count));
        const Rows triangles = takeRows(m_input, 12, [&](unsigned char* to) {
            const std::int32_t corner =
                takeOddly<std::int32_t>(m_input, m_input.take<std::uint8_t>() % count);
            std::memcpy(to, &corner, sizeof corner);
        });
        arrays.positions = takeRarely(m_input) ? nullptr : positions.data();
        arrays.position_count =
            tellable(takeOddly(m_input, positions.count), positions.count, true);
        arrays.position_stride = takeStride(m_input, positions);
        arrays.triangles = takeRarely(m_input) ? nullptr : triangles.data();
        arrays.triangle_count =
            tellable(takeOddly(m_input, triangles.count), triangles.count, true);
        arrays.triangle_stride = takeStride(m_input, triangles);
        if (takeRarely(m_input)) arrays.placement = takeMatrix();
        tesk_mesh* mesh = nullptr;
        const tesk_status status = tesk_mesh_create(takeRarely(m_input) ? nullptr : &arrays, &mesh);
        keep(status, mesh, m_meshes);
    }

    void freeOne() {
        if (m_meshes.empty()) return tesk_free(nullptr);
        tesk_free(m_meshes.back());
        m_meshes.pop_back();
    }

    void copyMesh() {
        const tesk_mesh* const mesh = take(m_meshes);
        std::int64_t positions = 0;
        std::int64_t triangles = 0;
        expect(tesk_mesh_counts(mesh, &positions, &triangles));
        const std::int64_t less = m_input.take<std::uint8_t>() % 3;
        std::vector<float> xyz(
            static_cast<std::size_t>(std::max<std::int64_t>(positions - less, 0)) * 3);
        std::vector<std::int32_t> abc(
            static_cast<std::size_t>(std::max<std::int64_t>(triangles - less, 0)) * 3);
        expect(
            tesk_mesh_copy_positions(mesh, xyz.empty() ? nullptr : xyz.data(), positions - less));
        expect(
            tesk_mesh_copy_triangles(mesh, abc.empty() ? nullptr : abc.data(), triangles - less));
    }

    void placeMesh() {
        tesk_mesh* const mesh = take(m_meshes);
        expect(tesk_mesh_set_placement(mesh, takeMatrix()));
    }

    const tesk_goal* takeGoal() {
        if (m_input.take<std::uint8_t>() % 2 == 0) return nullptr;
        m_goal = takeSized<tesk_goal>(m_input);
        if (tesk_goal_init(&m_goal, m_input.take<std::uint8_t>() % 2) != TESK_OK) return &m_goal;
        for (float* field :
             {&m_goal.overhang_angle_deg, &m_goal.support_volume_cost, &m_goal.overhang_area_cost,
              &m_goal.height_cost, &m_goal.build_volume[0], &m_goal.build_volume[1],
              &m_goal.build_volume[2], &m_goal.least_contact_area}) {
            if (m_input.take<std::uint8_t>() > 200) *field = takeNumber(m_input);
        }
        m_rules.resize(m_input.take<std::uint8_t>() % 3);
        for (tesk_keep_off& rule : m_rules) {
            rule = takeSized<tesk_keep_off>(m_input);
            for (float& value : rule.direction) value = takeNumber(m_input);
            rule.angle_deg = takeNumber(m_input);
        }
        m_goal.keep_off = m_rules.data();
        m_goal.keep_off_count =
            takeRarely(m_input) ? -1 : static_cast<std::int32_t>(m_rules.size());
        return &m_goal;
    }

    void findPoses() {
        const tesk_mesh* const mesh = take(m_meshes);
        const tesk_goal* const goal = takeGoal();
        std::vector<tesk_pose> poses(1 + m_input.take<std::uint8_t>() % 14);
        poses[0] = takeSized<tesk_pose>(m_input);
        auto asItLies = takeSized<tesk_pose>(m_input);
        auto summary = takeSized<tesk_pose_summary>(m_input);
        const auto room = static_cast<std::int32_t>(poses.size());
        const std::int32_t capacity = takeRarely(m_input) ? -room : room;
        expect(tesk_find_poses(mesh, goal, takeCall(), takeRarely(m_input) ? nullptr : poses.data(),
                               capacity, takeRarely(m_input) ? nullptr : &asItLies,
                               takeRarely(m_input) ? nullptr : &summary));
    }

    void measurePose() {
        const tesk_mesh* const mesh = take(m_meshes);
        const tesk_goal* const goal = takeGoal();
        auto pose = takeSized<tesk_pose>(m_input);
        expect(tesk_measure_pose(mesh, goal, takeCall(), takeMatrix(),
                                 takeRarely(m_input) ? nullptr : &pose));
    }

    void rank() {
        const tesk_mesh* const mesh = take(m_meshes);
        auto settings = takeSized<tesk_rank_settings>(m_input);
        settings.overhang_angle_deg = takeNumber(m_input);
        settings.support_area_weight = input<std::int8_t>();
        settings.support_volume_weight = input<std::int8_t>();
        settings.height_weight = input<std::int8_t>();
        settings.box_volume_weight = input<std::int32_t>();
        settings.compute_support = input<std::int8_t>();
        settings.base_height = takeNumber(m_input);
        std::vector<tesk_orientation> records(1 + m_input.take<std::uint8_t>() % 14);
        records[0] = takeSized<tesk_orientation>(m_input);
        std::int32_t count = 0;
        expect(tesk_seed(input<std::uint32_t>()));
        expect(tesk_rank(
            mesh, takeRarely(m_input) ? nullptr : &settings, takeCall(), records.data(),
            takeOddly(m_input, 0) < 0 ? -1 : static_cast<std::int32_t>(records.size()), &count));
    }

    void layFlat() {
        const tesk_mesh* const mesh = take(m_meshes);
        float matrix[16];
        expect(tesk_lay_flat(mesh, takeCall(), takeRarely(m_input) ? nullptr : matrix));
    }

    void findBox() {
        Rows rows;
        const tesk_points points = takePointsOf(rows);
        auto box = takeSized<tesk_box>(m_input);
        const auto criterion = static_cast<std::int32_t>(m_input.take<std::uint8_t>() % 7) - 1;
        const float* const axis = takeMatrix();
        expect(tesk_smallest_box(takeRarely(m_input) ? nullptr : &points, criterion, axis,
                                 takeCall(), takeRarely(m_input) ? nullptr : &box));
    }

    void findHull() {
        Rows rows;
        const tesk_points points = takePointsOf(rows);
        tesk_mesh* hull = nullptr;
        std::int32_t dimension = 0;
        const tesk_status status =
            tesk_convex_hull(&points, &hull, takeRarely(m_input) ? nullptr : &dimension);
        keep(status, hull, m_meshes);
    }

    void readPart() {
        std::string text =
            "o a\nv 0 0 0\nv 9 0 0\nv 0 9 0\nv 0 0 9\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n";
        const std::size_t changes = m_input.take<std::uint8_t>() % 4;
        for (std::size_t i = 0; i < changes; ++i) {
            text[m_input.take<std::uint8_t>() % text.size()] = m_input.take<char>();
        }
        text.resize(text.size() - m_input.take<std::uint8_t>() % 16);
        auto options = takeSized<tesk_read_options>(m_input);
        options.keeps_vertices = input<std::int8_t>();
        options.max_triangles = takeRarely(m_input) ? input<std::int8_t>() : 0;
        const std::vector<char> bytes(text.begin(), text.end());
        const auto format = takeRarely(m_input) ? input<std::int8_t>() : std::int8_t{TESK_OBJ};
        const auto size = takeRarely(m_input) ? -1 : static_cast<std::int64_t>(bytes.size());
        tesk_part* part = nullptr;
        const tesk_status status =
            tesk_part_read_bytes(takeRarely(m_input) ? nullptr : bytes.data(), size, format,
                                 takeRarely(m_input) ? nullptr : &options, takeCall(), &part);
        keep(status, part, m_parts);
    }

    void describePart() {
        const tesk_part* const part = take(m_parts);
        auto details = takeSized<tesk_part_details>(m_input);
        expect(tesk_part_describe(part, takeRarely(m_input) ? nullptr : &details));
        const char* code = nullptr;
        const char* text = nullptr;
        const auto index = takeOddly<std::int32_t>(m_input, 0);
        expect(tesk_part_warning(part, index, &code, &text));
        expect(tesk_part_object(part, index, takeRarely(m_input) ? nullptr : &code));
        m_length += code == nullptr ? 0 : std::strlen(code);
    }

    void takeMeshOfPart() {
        const tesk_part* const part = take(m_parts);
        tesk_mesh* mesh = nullptr;
        const tesk_status status = tesk_part_mesh(part, &mesh);
        keep(status, mesh, m_meshes);
    }

    void askVersion() {
        expect(tesk_check_abi(input<std::int8_t>()));
        expect(tesk_part_write(nullptr, take(m_meshes)));
        auto settings = takeSized<tesk_rank_settings>(m_input);
        expect(tesk_rank_settings_init(takeRarely(m_input) ? nullptr : &settings));
    }

    template <class Value>
    Value input() {
        return m_input.take<Value>();
    }

    FuzzInput& m_input;
    std::vector<tesk_mesh*> m_meshes;
    std::vector<tesk_part*> m_parts;
    std::vector<tesk_keep_off> m_rules;
    std::vector<float> m_matrix;
    tesk_goal m_goal{};
    tesk_call m_call{};
    Callback m_callback{};
    std::size_t m_length = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    Sequence(input).run();
    return 0;
}
