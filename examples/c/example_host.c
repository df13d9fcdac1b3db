/* A small host in C: reads a part, or takes a bracket of its own, asks how it should be built, and
 * finds the smallest box around it.
 *
 *     example_host_c [PART.stl]
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "teskorient.h"

/* An angle bracket: its L-shaped profile at y = 0 and y = 20, standing on the short side. */
static const float bracket_positions[12][3] = {{0, 0, 0},   {15, 0, 0}, {15, 0, 4},  {4, 0, 4},
                                               {4, 0, 60},  {0, 0, 60}, {0, 20, 0},  {15, 20, 0},
                                               {15, 20, 4}, {4, 20, 4}, {4, 20, 60}, {0, 20, 60}};
static const int32_t bracket_triangles[20][3] = {
    {0, 1, 2},   {0, 2, 3},  {0, 3, 4},  {0, 4, 5},   {8, 7, 6},  {9, 8, 6}, {10, 9, 6},
    {11, 10, 6}, {0, 6, 1},  {1, 6, 7},  {1, 7, 2},   {2, 7, 8},  {2, 8, 3}, {3, 8, 9},
    {3, 9, 4},   {4, 9, 10}, {4, 10, 5}, {5, 10, 11}, {5, 11, 0}, {0, 11, 6}};

static int32_t TESK_CALL show_progress(int32_t percent, void* user) {
    int32_t* const shown = user;
    if (percent / 25 > *shown / 25) fprintf(stderr, "%d %%\n", (int)percent);
    *shown = percent;
    return 0; /* anything else would end the call */
}

static tesk_status make_bracket(tesk_mesh** mesh) {
    tesk_mesh_arrays arrays;
    memset(&arrays, 0, sizeof arrays);
    arrays.struct_size = sizeof arrays;
    arrays.positions = bracket_positions;
    arrays.position_count = 12;
    arrays.triangles = bracket_triangles;
    arrays.triangle_count = 20;
    return tesk_mesh_create(&arrays, mesh);
}

static tesk_status read_mesh(const char* path, tesk_mesh** mesh) {
    tesk_part* part = NULL;
    tesk_status status = tesk_part_read(path, NULL, NULL, &part);
    if (status == TESK_OK) status = tesk_part_mesh(part, mesh);
    tesk_free(part);
    return status;
}

/* Holes and triangles that face the wrong way make the figures doubtful. */
static tesk_status print_doubts(const tesk_mesh* mesh) {
    tesk_mesh_surface surface;
    tesk_status status;
    surface.struct_size = sizeof surface;
    status = tesk_mesh_check(mesh, NULL, &surface);
    if (status != TESK_OK) return status;
    if (surface.open_edges > 0) printf("the surface has %d open edges\n", (int)surface.open_edges);
    if (surface.inconsistent_edges > 0) printf("triangles face opposite ways\n");
    if (surface.volume < 0) printf("the surface is inside out\n");
    return TESK_OK;
}

static tesk_status print_poses(const tesk_mesh* mesh) {
    int32_t shown = 0;
    tesk_call call = {sizeof call, 0, show_progress, &shown};
    tesk_pose poses[3];
    tesk_pose_summary summary;
    tesk_status status;
    int i;
    memset(poses, 0, sizeof poses);
    poses[0].struct_size = sizeof poses[0];
    summary.struct_size = sizeof summary;
    status = tesk_find_poses(mesh, NULL, &call, poses, 3, NULL, &summary);
    if (status != TESK_OK) return status;
    printf("%10s %10s %10s %10s\n", "height", "overhang", "support", "cost");
    for (i = 0; i < 3 && i < summary.pose_count; ++i) {
        const tesk_pose* const p = &poses[i];
        printf("%10.2f %10.2f %10.2f %10.2f\n", p->height, p->overhang_area, p->support_volume,
               p->support_volume_cost + p->overhang_area_cost + p->height_cost);
    }
    return TESK_OK;
}

static tesk_status print_smallest_box(const tesk_mesh* mesh) {
    tesk_points points;
    tesk_box box;
    tesk_status status;
    float* xyz;
    memset(&points, 0, sizeof points);
    points.struct_size = sizeof points;
    box.struct_size = sizeof box;
    status = tesk_mesh_counts(mesh, &points.count, NULL);
    if (status != TESK_OK) return status;
    xyz = malloc((size_t)points.count * 3 * sizeof *xyz);
    if (xyz == NULL) return TESK_OUT_OF_MEMORY;
    points.data = xyz;
    status = tesk_mesh_copy_positions(mesh, xyz, points.count);
    if (status == TESK_OK) status = tesk_smallest_box(&points, TESK_BOX_VOLUME, NULL, NULL, &box);
    free(xyz);
    if (status == TESK_OK) {
        printf("smallest box: %g x %g x %g\n", 2 * box.half_extents[0], 2 * box.half_extents[1],
               2 * box.half_extents[2]);
    }
    return status;
}

int main(int argc, char** argv) {
    tesk_mesh* mesh = NULL;
    tesk_status status = tesk_check_abi(TESK_ABI_VERSION);
    if (status == TESK_OK) status = argc > 1 ? read_mesh(argv[1], &mesh) : make_bracket(&mesh);
    if (status == TESK_OK) status = print_doubts(mesh);
    if (status == TESK_OK) status = print_poses(mesh);
    if (status == TESK_OK) status = print_smallest_box(mesh);
    tesk_free(mesh);
    if (status == TESK_OK) return 0;
    fprintf(stderr, "example_host_c: %s\n", tesk_last_error());
    return 1;
}
