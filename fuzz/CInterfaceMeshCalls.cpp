#include <algorithm>
#include <cstring>

#include "CInterfaceSequence.h"

void Sequence::createMesh() {
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
    arrays.position_count = tellable(takeOddly(m_input, positions.count), positions.count, true);
    arrays.position_stride = takeStride(m_input, positions);
    arrays.triangles = takeRarely(m_input) ? nullptr : triangles.data();
    arrays.triangle_count = tellable(takeOddly(m_input, triangles.count), triangles.count, true);
    arrays.triangle_stride = takeStride(m_input, triangles);
    if (takeRarely(m_input)) arrays.placement = takeMatrix();
    tesk_mesh* mesh = nullptr;
    const tesk_status status = tesk_mesh_create(takeRarely(m_input) ? nullptr : &arrays, &mesh);
    keep(status, mesh, m_meshes);
}

void Sequence::freeOne() {
    if (m_meshes.empty()) return tesk_free(nullptr);
    tesk_free(m_meshes.back());
    m_meshes.pop_back();
}

void Sequence::copyMesh() {
    const tesk_mesh* const mesh = take(m_meshes);
    std::int64_t positions = 0;
    std::int64_t triangles = 0;
    expect(tesk_mesh_counts(mesh, &positions, &triangles));
    const std::int64_t less = m_input.take<std::uint8_t>() % 3;
    std::vector<float> xyz(static_cast<std::size_t>(std::max<std::int64_t>(positions - less, 0)) *
                           3);
    std::vector<std::int32_t> abc(
        static_cast<std::size_t>(std::max<std::int64_t>(triangles - less, 0)) * 3);
    expect(tesk_mesh_copy_positions(mesh, xyz.empty() ? nullptr : xyz.data(), positions - less));
    expect(tesk_mesh_copy_triangles(mesh, abc.empty() ? nullptr : abc.data(), triangles - less));
}

void Sequence::placeMesh() {
    tesk_mesh* const mesh = take(m_meshes);
    expect(tesk_mesh_set_placement(mesh, takeMatrix()));
}

void Sequence::findHull() {
    Rows rows;
    const tesk_points points = takePointsOf(rows);
    tesk_mesh* hull = nullptr;
    std::int32_t dimension = 0;
    const tesk_status status =
        tesk_convex_hull(&points, &hull, takeRarely(m_input) ? nullptr : &dimension);
    keep(status, hull, m_meshes);
}

void Sequence::checkMesh() {
    const tesk_mesh* const mesh = take(m_meshes);
    auto surface = takeSized<tesk_mesh_surface>(m_input);
    const bool isGiven = !takeRarely(m_input);
    const tesk_status status = tesk_mesh_check(mesh, takeCall(), isGiven ? &surface : nullptr);
    expect(status);
    if (status != TESK_OK) return;
    std::int64_t triangles = 0;
    expect(tesk_mesh_counts(mesh, nullptr, &triangles));
    const std::int64_t edges =
        std::int64_t{surface.open_edges} + surface.non_manifold_edges + surface.inconsistent_edges;
    if (edges < 0 || edges > 3 * triangles) std::abort();
    if (surface.degenerate_triangles < 0 || surface.degenerate_triangles > triangles) std::abort();
}
