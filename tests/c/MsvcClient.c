/* Calls every function of the C interface and prints what it answers, floats as their bits: once as
 * a program of this machine, once as one that Clang made for the MSVC target, without any C
 * runtime. Both must print the same.
 */
#include "MsvcClient.h"
#include "teskorient.h"

static void say_bits(const char* what, const float* values, int count) {
    int i;
    say(what);
    for (i = 0; i < count; ++i) {
        union {
            float value;
            uint32_t bits;
        } both;
        both.value = values[i];
        say(" ");
        say_hex(both.bits);
    }
    say("\n");
}

static void say_double(const char* what, double value) {
    union {
        double value;
        uint64_t bits;
    } both;
    both.value = value;
    say(what);
    say(" ");
    say_hex((uint32_t)(both.bits >> 32));
    say_hex((uint32_t)both.bits);
    say("\n");
}

static void say_int(const char* what, int64_t value) {
    say(what);
    say(" ");
    say_hex((uint32_t)value);
    say("\n");
}

static void say_status(const char* what, tesk_status status) {
    say_int(what, status);
    if (status == TESK_OK) return;
    say("    ");
    say(tesk_last_error());
    say("\n");
}

/* An angle bracket, tilted. */
static const double bracket_profile[6][2] = {{0, 0}, {15, 0}, {15, 4}, {4, 4}, {4, 60}, {0, 60}};
static const int32_t bracket_triangles[20][3] = {
    {0, 1, 2},   {0, 2, 3},  {0, 3, 4},  {0, 4, 5},   {8, 7, 6},  {9, 8, 6}, {10, 9, 6},
    {11, 10, 6}, {0, 6, 1},  {1, 6, 7},  {1, 7, 2},   {2, 7, 8},  {2, 8, 3}, {3, 8, 9},
    {3, 9, 4},   {4, 9, 10}, {4, 10, 5}, {5, 10, 11}, {5, 11, 0}, {0, 11, 6}};
static const float placement[16] = {0.8f, 0.6f, 0, 0, -0.6f, 0.8f, 0, 0, 0, 0, 1, 0, 10, 20, 30, 1};
static const char tetrahedron[] =
    "o lid\nv 0 0 0\nv 10 0 0\nv 0 10 0\nv 0 0 10\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n";

static double bracket[12][3];

static void fill_bracket(void) {
    int i;
    for (i = 0; i < 12; ++i) {
        bracket[i][0] = bracket_profile[i % 6][0] + 0.1 * (i / 6);
        bracket[i][1] = i < 6 ? 0 : 20;
        bracket[i][2] = bracket_profile[i % 6][1] + 0.3 * bracket[i][0];
    }
}

static tesk_mesh* make_bracket(void) {
    tesk_mesh* mesh = 0;
    tesk_mesh_arrays arrays = {0};
    arrays.struct_size = sizeof arrays;
    arrays.position_type = TESK_FLOAT64;
    arrays.positions = bracket;
    arrays.position_count = 12;
    arrays.triangles = bracket_triangles;
    arrays.triangle_count = 20;
    say_status("mesh_create", tesk_mesh_create(&arrays, &mesh));
    return mesh;
}

static void say_mesh(const tesk_mesh* mesh) {
    static float xyz[64 * 3];
    static int32_t abc[64 * 3];
    int64_t positions = 0;
    int64_t triangles = 0;
    int64_t i;
    say_status("mesh_counts", tesk_mesh_counts(mesh, &positions, &triangles));
    say_status("mesh_copy_positions", tesk_mesh_copy_positions(mesh, xyz, 64));
    say_status("mesh_copy_triangles", tesk_mesh_copy_triangles(mesh, abc, 64));
    say_bits("positions", xyz, (int)positions * 3);
    for (i = 0; i < triangles * 3; ++i) say_int("corner", abc[i]);
}

static void say_surface(const tesk_mesh* mesh) {
    tesk_mesh_surface surface = {sizeof surface};
    int i;
    say_status("mesh_check", tesk_mesh_check(mesh, 0, &surface));
    say_int("open edges", surface.open_edges);
    say_int("non-manifold edges", surface.non_manifold_edges);
    say_int("inconsistent edges", surface.inconsistent_edges);
    say_int("degenerate triangles", surface.degenerate_triangles);
    say_double("volume", surface.volume);
    for (i = 0; i < 3; ++i) say_double("size", surface.size[i]);
}

/* Ends a call at a percentage. */
struct ending {
    int32_t at;
    int32_t has_ended;
    int32_t calls_after;
};

static int32_t TESK_CALL end_at(int32_t percent, void* user) {
    struct ending* const ending = user;
    if (ending->has_ended) ++ending->calls_after;
    if (percent >= ending->at) ending->has_ended = 1;
    return ending->has_ended;
}

static tesk_call call_until(struct ending* ending, int32_t at) {
    tesk_call call = {0};
    ending->at = at;
    ending->has_ended = 0;
    ending->calls_after = 0;
    call.struct_size = sizeof call;
    call.threads = 2;
    call.progress = end_at;
    call.user = ending;
    return call;
}

static void say_pose(const tesk_pose* pose) {
    say_bits("pose", pose->rotation, 16);
    say_bits("measures", &pose->height, 7);
    say_int("islands", pose->contact_islands);
    say_bits("tilt margin", &pose->tilt_margin_deg, 1);
    say_int("lies flat", pose->lies_flat);
    say_int("stands", pose->stands);
    say_bits("costs", &pose->support_volume_cost, 3);
}

static void try_poses(const tesk_mesh* mesh) {
    tesk_pose poses[12] = {{sizeof poses[0]}};
    tesk_pose measured = {sizeof measured};
    tesk_pose_summary summary = {sizeof summary};
    tesk_keep_off rule = {sizeof rule, {0, 1, 0}, 30};
    tesk_goal goal = {sizeof goal};
    int i;
    say_status("goal_init", tesk_goal_init(&goal, TESK_GOAL_LEAST_SUPPORT));
    goal.keep_off_count = 1;
    goal.keep_off = &rule;
    say_status("find_poses", tesk_find_poses(mesh, &goal, 0, poses, 12, &measured, &summary));
    say_int("poses", summary.pose_count);
    say_int("kept off", summary.kept_off);
    say_pose(&measured);
    for (i = 0; i < summary.pose_count; ++i) say_pose(&poses[i]);
    say_status("measure_pose", tesk_measure_pose(mesh, &goal, 0, poses[0].rotation, &measured));
    say_pose(&measured);
    goal.build_volume[0] = 1;
    say_status("find_poses, none", tesk_find_poses(mesh, &goal, 0, 0, 0, 0, &summary));
    say_bits("misfit", summary.nearest_misfit, 3);
}

static void say_ranking(const tesk_mesh* mesh) {
    static tesk_orientation all[58] = {{sizeof all[0]}};
    tesk_orientation records[12] = {{sizeof records[0]}};
    tesk_rank_settings settings = {sizeof settings};
    int32_t count = 0;
    int i;
    say_status("rank_settings_init", tesk_rank_settings_init(&settings));
    settings.support_area_weight = 2;
    say_status("seed", tesk_seed(5));
    say_status("rank", tesk_rank(mesh, &settings, 0, records, 12, &count));
    for (i = 0; i < count; ++i) say_bits("record", records[i].axis, 10);
    say_status("seed", tesk_seed(5));
    say_status("rank_all", tesk_rank_all(mesh, &settings, 0, all, 58, &count));
    for (i = 0; i < count; ++i) say_bits("record", all[i].axis, 10);
}

static void try_boxes(void) {
    const float axis[3] = {1, 2, 3};
    tesk_points points = {sizeof points, TESK_FLOAT64, bracket, 12, 24};
    tesk_box box = {sizeof box};
    tesk_mesh* hull = 0;
    int32_t dimension = 0;
    int32_t criterion;
    for (criterion = TESK_BOX_VOLUME; criterion <= TESK_BOX_PRINCIPAL; ++criterion) {
        say_status("smallest_box", tesk_smallest_box(&points, criterion, axis, 0, &box));
        say_bits("box", box.center, 15);
    }
    say_status("convex_hull", tesk_convex_hull(&points, &hull, &dimension));
    say_int("dimension", dimension);
    say_mesh(hull);
    tesk_free(hull);
}

static void try_part(const tesk_part* part) {
    tesk_part_details details = {sizeof details};
    tesk_mesh* mesh = 0;
    const char* code = "";
    const char* text = "";
    const char* name = "";
    say_status("part_describe", tesk_part_describe(part, &details));
    say_int("format", details.format);
    say(details.form);
    say(details.unit);
    say_status("part_warning", tesk_part_warning(part, 0, &code, &text));
    say_status("part_object", tesk_part_object(part, 0, &name));
    say(name);
    say("\n");
    say_status("part_mesh", tesk_part_mesh(part, &mesh));
    say_mesh(mesh);
    tesk_free(mesh);
}

static void try_files(const tesk_mesh* mesh, const char* path) {
    tesk_read_options options = {sizeof options, 1, 0};
    tesk_part* part = 0;
    say_status("part_read_bytes", tesk_part_read_bytes(tetrahedron, sizeof tetrahedron - 1,
                                                       TESK_OBJ, &options, 0, &part));
    try_part(part);
    tesk_free(part);
    say_status("part_write", tesk_part_write(path, mesh));
    say_status("part_read", tesk_part_read(path, 0, 0, &part));
    try_part(part);
    tesk_free(part);
    say_status("part_read, none", tesk_part_read("nowhere.stl", 0, 0, &part));
}

static void try_aborts(const tesk_mesh* mesh) {
    tesk_points points = {sizeof points, TESK_FLOAT64, bracket, 12, 24};
    tesk_box box = {sizeof box};
    struct ending ending;
    float matrix[16];
    int32_t at;
    for (at = 0; at < 40; at += 13) {
        tesk_call call = call_until(&ending, at);
        say_status("rank, aborted", tesk_rank(mesh, 0, &call, 0, 0, 0));
        call = call_until(&ending, at);
        say_status("find_poses, aborted", tesk_find_poses(mesh, 0, &call, 0, 0, 0, 0));
        call = call_until(&ending, at);
        say_status("lay_flat, aborted", tesk_lay_flat(mesh, &call, matrix));
        call = call_until(&ending, at);
        say_status("smallest_box, aborted", tesk_smallest_box(&points, 0, 0, &call, &box));
        say_int("called after the abort", ending.calls_after);
    }
}

/* What one of several threads does: everything on one handle, some of it until an abort. */
struct worker {
    const tesk_mesh* mesh;
    int32_t number;
    int32_t failures;
    float heights[12];
};

static void work(void* user) {
    struct worker* const worker = user;
    tesk_orientation records[12] = {{sizeof records[0]}};
    tesk_pose pose = {sizeof pose};
    struct ending ending;
    int i;
    for (i = 0; i < 4; ++i) {
        tesk_call call = call_until(&ending, 20 + worker->number);
        if (tesk_find_poses(worker->mesh, 0, &call, 0, 0, 0, 0) != TESK_ABORTED) ++worker->failures;
        call.threads = 1 + worker->number % 3;
        call.progress = 0;
        if (tesk_seed(5) != TESK_OK) ++worker->failures;
        if (tesk_rank(worker->mesh, 0, &call, records, 12, 0) != TESK_OK) ++worker->failures;
        if (tesk_find_poses(worker->mesh, 0, &call, &pose, 1, 0, 0) != TESK_OK) ++worker->failures;
    }
    for (i = 0; i < 11; ++i) worker->heights[i] = records[i].score;
    worker->heights[11] = pose.height;
}

static void try_threads(const tesk_mesh* mesh) {
    static struct worker workers[8];
    void* users[8];
    int i;
    for (i = 0; i < 8; ++i) {
        workers[i].mesh = mesh;
        workers[i].number = i;
        users[i] = &workers[i];
    }
    run_threads(work, users, 8);
    for (i = 0; i < 8; ++i) {
        say_int("failures", workers[i].failures);
        say_bits("on a thread", workers[i].heights, 12);
    }
}

void run_client(const char* path) {
    float matrix[16] = {0};
    tesk_mesh* mesh;
    fill_bracket();
    say_int("abi_version", tesk_abi_version());
    say_status("check_abi", tesk_check_abi(TESK_ABI_VERSION));
    say_status("check_abi, wrong", tesk_check_abi(99));
    say(tesk_version());
    say("\n");
    mesh = make_bracket();
    say_mesh(mesh);
    say_surface(mesh);
    say_status("mesh_set_placement", tesk_mesh_set_placement(mesh, placement));
    try_poses(mesh);
    say_ranking(mesh);
    say_status("lay_flat", tesk_lay_flat(mesh, 0, matrix));
    say_bits("flat", matrix, 16);
    try_boxes();
    try_files(mesh, path);
    try_aborts(mesh);
    try_threads(mesh);
    tesk_free(mesh);
    say("done\n");
}
