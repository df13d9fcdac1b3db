#include "CInterfaceSequence.h"

const tesk_goal* Sequence::takeGoal() {
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
    m_goal.keep_off_count = takeRarely(m_input) ? -1 : static_cast<std::int32_t>(m_rules.size());
    return &m_goal;
}

void Sequence::findPoses() {
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

void Sequence::measurePose() {
    const tesk_mesh* const mesh = take(m_meshes);
    const tesk_goal* const goal = takeGoal();
    auto pose = takeSized<tesk_pose>(m_input);
    expect(tesk_measure_pose(mesh, goal, takeCall(), takeMatrix(),
                             takeRarely(m_input) ? nullptr : &pose));
}

void Sequence::rank(Ranking function, std::int32_t most) {
    const tesk_mesh* const mesh = take(m_meshes);
    auto settings = takeSized<tesk_rank_settings>(m_input);
    settings.overhang_angle_deg = takeNumber(m_input);
    settings.support_area_weight = m_input.take<std::int8_t>();
    settings.support_volume_weight = m_input.take<std::int8_t>();
    settings.height_weight = m_input.take<std::int8_t>();
    settings.box_volume_weight = m_input.take<std::int32_t>();
    settings.compute_support = m_input.take<std::int8_t>();
    settings.base_height = takeNumber(m_input);
    std::vector<tesk_orientation> records(1 + m_input.take<std::uint8_t>() % (most + 2));
    records[0] = takeSized<tesk_orientation>(m_input);
    std::int32_t count = 0;
    expect(tesk_seed(m_input.take<std::uint32_t>()));
    const auto room = static_cast<std::int32_t>(records.size());
    const tesk_status status = function(mesh, takeRarely(m_input) ? nullptr : &settings, takeCall(),
                                        records.data(), takeRarely(m_input) ? -1 : room, &count);
    expect(status);
    if (status == TESK_OK && (count < 1 || count > most)) std::abort();
}

void Sequence::layFlat() {
    const tesk_mesh* const mesh = take(m_meshes);
    float matrix[16];
    expect(tesk_lay_flat(mesh, takeCall(), takeRarely(m_input) ? nullptr : matrix));
}

void Sequence::findBox() {
    Rows rows;
    const tesk_points points = takePointsOf(rows);
    auto box = takeSized<tesk_box>(m_input);
    const auto criterion = static_cast<std::int32_t>(m_input.take<std::uint8_t>() % 7) - 1;
    const float* const axis = takeMatrix();
    expect(tesk_smallest_box(takeRarely(m_input) ? nullptr : &points, criterion, axis, takeCall(),
                             takeRarely(m_input) ? nullptr : &box));
}
