/* teskorient.h - the C interface: build orientations and smallest boxes of parts for 3D printing.
 *
 * One library for every compiler and language: teskorient.dll, libteskorient.so. C99 and C++.
 *
 *     tesk_mesh_arrays arrays = {sizeof arrays};
 *     arrays.positions = xyz;           arrays.position_count = n;
 *     arrays.triangles = abc;           arrays.triangle_count = m;
 *     tesk_mesh* mesh = NULL;
 *     tesk_pose poses[12] = {{sizeof(tesk_pose)}};
 *     if (tesk_mesh_create(&arrays, &mesh) == TESK_OK &&
 *         tesk_find_poses(mesh, NULL, NULL, poses, 12, NULL, NULL) == TESK_OK)
 *         turn_the_part(poses[0].rotation);
 *     else
 *         show(tesk_last_error());
 *     tesk_free(mesh);
 *
 * Statuses. Every function that can fail returns a tesk_status. Where it is not TESK_OK,
 * tesk_last_error() says what was wrong, and outputs are untouched unless a function says
 * otherwise.
 *
 * Structs. The first field, struct_size, is the size that the caller compiled with: set it to
 * sizeof. Later versions add fields at the end and still serve callers that know fewer. A size that
 * this version does not know is TESK_INVALID_ARGUMENT. In an array of structs the first one's
 * struct_size counts, and is the distance from one to the next. Every struct that the library fills
 * gets its struct_size. Fields that are zero mean what a zeroed struct should mean: the default,
 * unless a field's comment says otherwise.
 *
 * Memory. Input arrays are borrowed for the call; arrays of numbers may lie at any address, structs
 * have to be aligned. Results go into the caller's memory, or into a handle (tesk_mesh, tesk_part)
 * that tesk_free() frees. Nothing else needs to be freed.
 *
 * Frames and units. Lengths are millimetres where a unit matters. Matrices have 16 floats, row by
 * row, for row vectors: p' = p * M, with the translation in the last row. Graphics libraries that
 * multiply column vectors from the right use the transpose.
 *
 * Threads. All functions may be called from several threads at once. A handle may be used by
 * several threads at once; tesk_free() and tesk_mesh_set_placement() need it alone. The last error
 * and the seed are the calling thread's own. Results do not depend on the number of threads, and
 * are the same bits on every platform. The library keeps its worker threads for later calls, and so
 * stays loaded until the process ends, even if the host unloads it.
 *
 * Callbacks must return; exceptions and longjmp must not leave them. A C++ exception that does is
 * caught and becomes TESK_CALLBACK_FAILED (on Windows: one of MinGW's; others end the process). A
 * callback may call any function of the library, also on the handle that is being worked on, except
 * for the two that need it alone.
 */
#ifndef TESKORIENT_H
#define TESKORIENT_H

#include <stdint.h>

#if defined(_WIN32)
#define TESK_CALL __cdecl
#else
#define TESK_CALL
#endif

#if defined(TESKORIENT_STATIC)
#define TESK_C_API
#elif defined(_WIN32) && defined(TESKORIENT_BUILDING)
#define TESK_C_API __declspec(dllexport)
#elif defined(_WIN32)
#define TESK_C_API __declspec(dllimport)
#else
#define TESK_C_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Versions and errors ---- */

/* Grows when a program compiled with an older header would no longer work. */
#define TESK_ABI_VERSION 1

typedef int32_t tesk_status;
enum {
    TESK_OK = 0,
    TESK_ABORTED = 1,          /* the progress callback returned nonzero */
    TESK_INVALID_ARGUMENT = 2, /* a null pointer, a count, an index, a struct size, a value */
    TESK_OUT_OF_MEMORY = 3,
    TESK_FILE_ERROR = 4,      /* a part file cannot be read or written */
    TESK_NO_RESULT = 5,       /* nothing to answer with: no pose, no box */
    TESK_CALLBACK_FAILED = 6, /* an exception left the progress callback */
    TESK_INTERNAL_ERROR = 7   /* a defect of this library, or threads that cannot be started */
};

/* TESK_ABI_VERSION of the library that was loaded. */
TESK_C_API int32_t TESK_CALL tesk_abi_version(void);

/* Whether the loaded library serves a program compiled with this TESK_ABI_VERSION: TESK_OK, or
 * TESK_INVALID_ARGUMENT. To be called once after loading. */
TESK_C_API tesk_status TESK_CALL tesk_check_abi(int32_t abi_version);

/* The library's version, such as "0.1.0". */
TESK_C_API const char* TESK_CALL tesk_version(void);

/* What was wrong with the last call on this thread that did not return TESK_OK: one line of UTF-8,
 * empty before the first. Valid until the next call on this thread. */
TESK_C_API const char* TESK_CALL tesk_last_error(void);

/* ---- Calls ---- */

/* Told how far a computation is, in whole percentages that never fall. Nonzero aborts it: the call
 * then returns TESK_ABORTED, and does not call again. Called on the calling thread;
 * tesk_smallest_box() may call it on another one, but never on two at once. */
typedef int32_t(TESK_CALL* tesk_progress)(int32_t percent, void* user);

/* How a computation is to run. NULL where one is asked for: all threads, no progress. */
typedef struct tesk_call {
    uint32_t struct_size;
    int32_t threads;        /* 0..1024; 0: as many as the machine has, or as OpenMP is told */
    tesk_progress progress; /* may be NULL */
    void* user;             /* handed to progress */
} tesk_call;

/* Frees a handle of any kind, which must not be in use; NULL is ignored. */
TESK_C_API void TESK_CALL tesk_free(void* handle);

/* ---- Meshes ---- */

enum { TESK_FLOAT32 = 0, TESK_FLOAT64 = 1 };

/* Triangles as flat arrays. */
typedef struct tesk_mesh_arrays {
    uint32_t struct_size;
    int32_t position_type;   /* TESK_FLOAT32 or TESK_FLOAT64, which is rounded to float */
    const void* positions;   /* x, y, z of every vertex; may be NULL if there is none */
    int64_t position_count;  /* 0..2147483647 */
    int64_t position_stride; /* bytes from one vertex to the next; 0: they follow one another */
    const void* triangles;  /* three int32 vertex indices of each, counter-clockwise from outside */
    int64_t triangle_count; /* 0..2147483647 */
    int64_t triangle_stride; /* bytes from one triangle to the next; 0: they follow one another */
    const float* placement;  /* 16 floats that take the part into the build space; NULL: none */
} tesk_mesh_arrays;

/* A mesh that the library keeps. */
typedef struct tesk_mesh tesk_mesh;

/* Copies a mesh. Indices out of range are TESK_INVALID_ARGUMENT; coordinates that are not finite
 * are not, but such a mesh has no poses. Corners at equal positions are not joined. */
TESK_C_API tesk_status TESK_CALL tesk_mesh_create(const tesk_mesh_arrays* arrays, tesk_mesh** mesh);

TESK_C_API tesk_status TESK_CALL tesk_mesh_counts(const tesk_mesh* mesh, int64_t* positions,
                                                  int64_t* triangles);

/* Copy the mesh out, without its placement: 3 floats per vertex, 3 indices per triangle.
 * `capacity` is the number of vertices or triangles that there is room for; too small is
 * TESK_INVALID_ARGUMENT. */
TESK_C_API tesk_status TESK_CALL tesk_mesh_copy_positions(const tesk_mesh* mesh, float* positions,
                                                          int64_t capacity);
TESK_C_API tesk_status TESK_CALL tesk_mesh_copy_triangles(const tesk_mesh* mesh, int32_t* triangles,
                                                          int64_t capacity);

/* Replaces the placement. */
TESK_C_API tesk_status TESK_CALL tesk_mesh_set_placement(tesk_mesh* mesh, const float matrix[16]);

/* The surface of a mesh: what may make results doubtful, and how large it is. A sound mesh has none
 * of the three kinds of edges; its volume is negative if it is inside out. */
typedef struct tesk_mesh_surface {
    uint32_t struct_size;
    int32_t open_edges;           /* with one triangle */
    int32_t non_manifold_edges;   /* with three triangles or more */
    int32_t inconsistent_edges;   /* whose two triangles face opposite ways */
    int64_t degenerate_triangles; /* without area: corners coincide or lie on a line, exactly */
    double volume;  /* enclosed; negative if triangles face inward; means nothing if open */
    double size[3]; /* along x, y and z */
} tesk_mesh_surface;

/* Checks the surface of a mesh, without its placement. For this, corners at equal positions are
 * joined, whatever the mesh's arrays say; a triangle that names a position twice has no edges.
 * Reports no progress. TESK_NO_RESULT if a coordinate is not finite. */
TESK_C_API tesk_status TESK_CALL tesk_mesh_check(const tesk_mesh* mesh, const tesk_call* call,
                                                 tesk_mesh_surface* surface);

/* ---- Build poses: an answer ---- */

/* A direction of the placed part that must not face down. */
typedef struct tesk_keep_off {
    uint32_t struct_size;
    float direction[3]; /* outward normal of the face; any length above zero */
    float angle_deg;    /* forbidden within this of straight down; below 0: the overhang angle */
} tesk_keep_off;

enum { TESK_GOAL_BALANCED = 0, TESK_GOAL_LEAST_SUPPORT = 1 };

/* Costs and limits; tesk_goal_init() fills in the defaults. Fields mean what they say: a cost of 0
 * is no cost. */
typedef struct tesk_goal {
    uint32_t struct_size;
    float overhang_angle_deg;  /* from the plate; a face is an overhang if n.z < -cos(angle) */
    float support_volume_cost; /* mm of filament per mm3 of support */
    float overhang_area_cost;  /* mm of filament per mm2 of overhanging surface */
    float height_cost;         /* mm of filament per mm of height */
    float build_volume[3];     /* mm along x, y, z; 0: no limit along this axis */
    float least_contact_area;  /* mm2 that must touch the plate */
    int32_t keep_off_count;
    const tesk_keep_off* keep_off; /* may be NULL if there are none */
} tesk_goal;

/* Sets every field of a goal but struct_size, which must be set. */
TESK_C_API tesk_status TESK_CALL tesk_goal_init(tesk_goal* goal, int32_t which);

/* A pose: a rotation that follows the placement, and what the part is like in it, with its lowest
 * point on the plate. */
typedef struct tesk_pose {
    uint32_t struct_size;
    float rotation[16];          /* no translation; the identity if the part may stay as it lies */
    float height;                /* mm */
    float footprint[2];          /* mm along x and y */
    float support_volume;        /* mm3 between overhangs and what lies below */
    float overhang_area;         /* mm2 more than 0.2 mm above the plate */
    float overhang_area_on_part; /* mm2 of it whose support rests on the part itself */
    float contact_area;          /* mm2 within 0.2 mm of the plate */
    int32_t contact_islands;
    float tilt_margin_deg;     /* at which it falls over; negative: it does */
    int32_t lies_flat;         /* 1 if a face of the convex hull lies on the plate */
    int32_t stands;            /* 1 if it stands by itself */
    float support_volume_cost; /* mm of filament; the cost is the sum of the three */
    float overhang_area_cost;
    float height_cost;
} tesk_pose;

typedef struct tesk_pose_summary {
    uint32_t struct_size;
    int32_t pose_count;  /* found, at most 12, whatever there was room for */
    int32_t none_stands; /* 1 if poses are listed, but none of them stands */
    int32_t kept_off;    /* how many poses were passed over, by the first rule broken */
    int32_t too_large;
    int32_t little_contact;
    int32_t cannot_stand;
    float nearest_misfit[3]; /* size of the pose that comes nearest to the build volume; or 0 */
} tesk_pose_summary;

/* Finds the poses of least cost in which a mesh can be built, the best first. The same mesh gives
 * the same poses at every call.
 *
 * goal        NULL: balanced
 * poses       receives the first `capacity` of them; may be NULL if capacity is 0
 * as_it_lies  receives the part without any turn, measured alike; may be NULL
 * summary     may be NULL
 *
 * TESK_NO_RESULT if no pose is allowed or the mesh cannot be measured: `as_it_lies` and `summary`
 * are filled all the same. */
TESK_C_API tesk_status TESK_CALL tesk_find_poses(const tesk_mesh* mesh, const tesk_goal* goal,
                                                 const tesk_call* call, tesk_pose* poses,
                                                 int32_t capacity, tesk_pose* as_it_lies,
                                                 tesk_pose_summary* summary);

/* Measures one pose of a mesh. The goal's limits are ignored. Reports no progress. */
TESK_C_API tesk_status TESK_CALL tesk_measure_pose(const tesk_mesh* mesh, const tesk_goal* goal,
                                                   const tesk_call* call, const float rotation[16],
                                                   tesk_pose* pose);

/* ---- Ranking by weights ---- */

/* What counts, and how much; tesk_rank_settings_init() fills in the defaults. */
typedef struct tesk_rank_settings {
    uint32_t struct_size;
    float overhang_angle_deg;
    int32_t support_area_weight;
    int32_t support_volume_weight;
    int32_t height_weight;
    int32_t box_volume_weight;
    int32_t compute_support; /* nonzero: measure support even if both its weights are 0 */
    float base_height; /* z of the part's lowest point; -1 or less: where the turn leaves it */
} tesk_rank_settings;

TESK_C_API tesk_status TESK_CALL tesk_rank_settings_init(tesk_rank_settings* settings);

/* One ranked orientation: turning by angle_rad about the axis brings the chosen direction to +Z. */
typedef struct tesk_orientation {
    uint32_t struct_size;
    float axis[3];   /* not normalised; zero if no turn is needed */
    float angle_rad; /* 0 to pi */
    float overhang_area;
    float support_volume;
    float projected_area;
    float height;
    float box_volume;
    float score; /* lower is better; comparable within one call only */
} tesk_orientation;

/* Seeds the random numbers that tesk_rank() draws on the calling thread: the same seed before the
 * same call gives the same result. */
TESK_C_API tesk_status TESK_CALL tesk_seed(uint32_t seed);

/* Ranks 18 to 58 candidate directions: the best record, ten spread over the ranking and the worst,
 * in ascending order of score. Threads that rank one mesh take turns.
 *
 * settings  NULL: the defaults
 * records   receives the first `capacity` of them; may be NULL if capacity is 0
 * count     receives how many there are, at most 12; may be NULL */
TESK_C_API tesk_status TESK_CALL tesk_rank(const tesk_mesh* mesh,
                                           const tesk_rank_settings* settings,
                                           const tesk_call* call, tesk_orientation* records,
                                           int32_t capacity, int32_t* count);

/* The same, with a record for every candidate. After the same tesk_seed(), those that tesk_rank()
 * returns are among them, with the same bits.
 *
 * count  receives how many there are, at most 58; may be NULL */
TESK_C_API tesk_status TESK_CALL tesk_rank_all(const tesk_mesh* mesh,
                                               const tesk_rank_settings* settings,
                                               const tesk_call* call, tesk_orientation* records,
                                               int32_t capacity, int32_t* count);

/* ---- Boxes and hulls ---- */

typedef struct tesk_points {
    uint32_t struct_size;
    int32_t type;     /* TESK_FLOAT32 or TESK_FLOAT64, which is rounded to float */
    const void* data; /* x, y, z of every point; may be NULL if there is none */
    int64_t count;    /* 0..2147483647 */
    int64_t stride;   /* bytes from one point to the next; 0: they follow one another */
} tesk_points;

enum {
    TESK_BOX_VOLUME = 0,      /* least volume */
    TESK_BOX_BASE_AREA = 1,   /* smallest side as small as possible */
    TESK_BOX_BASE_HEIGHT = 2, /* least height, then least footprint */
    TESK_BOX_AROUND_AXIS = 3, /* least cross-section along a given axis */
    TESK_BOX_PRINCIPAL = 4    /* along the principal axes: quick, not the smallest */
};

/* The points center + t[0] axes[0] + t[1] axes[1] + t[2] axes[2] with |t[i]| <= half_extents[i]. */
typedef struct tesk_box {
    uint32_t struct_size;
    float center[3];
    float axes[3][3]; /* unit vectors, orthogonal to one another */
    float half_extents[3];
} tesk_box;

/* The smallest box around points by one criterion. Points that are not finite are ignored (none may
 * be for TESK_BOX_PRINCIPAL). TESK_NO_RESULT without a finite point.
 *
 * axis   3 floats, for TESK_BOX_AROUND_AXIS; otherwise NULL
 * call   TESK_BOX_AROUND_AXIS and TESK_BOX_PRINCIPAL report no progress, TESK_BOX_BASE_AREA and
 *        TESK_BOX_BASE_HEIGHT only if threads is 1; the others cannot be aborted */
TESK_C_API tesk_status TESK_CALL tesk_smallest_box(const tesk_points* points, int32_t criterion,
                                                   const float* axis, const tesk_call* call,
                                                   tesk_box* box);

/* The rotation about the centre of the placed mesh's box that lays it flat in its box of least
 * volume: longest side along X, shortest along Z. It follows the placement, and is the identity for
 * a mesh without finite positions. */
TESK_C_API tesk_status TESK_CALL tesk_lay_flat(const tesk_mesh* mesh, const tesk_call* call,
                                               float matrix[16]);

/* The exact convex hull, as a mesh.
 *
 * dimension  3 a solid, 2 a polygon covered on both sides, 1 a segment, 0 a point, -1 nothing; may
 *            be NULL */
TESK_C_API tesk_status TESK_CALL tesk_convex_hull(const tesk_points* points, tesk_mesh** hull,
                                                  int32_t* dimension);

/* ---- Part files ---- */

enum { TESK_STL = 0, TESK_OBJ = 1, TESK_PLY = 2, TESK_OFF = 3, TESK_3MF = 4 };

/* What a file held. */
typedef struct tesk_part tesk_part;

typedef struct tesk_read_options {
    uint32_t struct_size;
    int32_t keeps_vertices; /* nonzero: corners at equal positions are not joined */
    int64_t max_triangles;  /* a file with more is refused; 0: 700 million */
} tesk_read_options;

/* Reads an STL, OBJ, PLY, OFF or 3MF file, told apart by its name's extension (or by `format`). All
 * items of a 3MF come as one mesh. Coordinates stay in the file's unit.
 *
 * path     UTF-8
 * options  may be NULL */
TESK_C_API tesk_status TESK_CALL tesk_part_read(const char* path, const tesk_read_options* options,
                                                const tesk_call* call, tesk_part** part);
TESK_C_API tesk_status TESK_CALL tesk_part_read_bytes(const void* bytes, int64_t size,
                                                      int32_t format,
                                                      const tesk_read_options* options,
                                                      const tesk_call* call, tesk_part** part);

/* Texts are valid as long as the part; empty, never NULL, where there is none. */
typedef struct tesk_part_details {
    uint32_t struct_size;
    int32_t format;
    const char* form; /* "binary" or "ASCII"; empty for formats with one form */
    const char* unit; /* as a 3MF states it: "millimeter"; empty for other formats */
    int32_t warning_count;
    int32_t object_count; /* names of solids (STL) and objects (OBJ); 0 for other formats */
} tesk_part_details;

TESK_C_API tesk_status TESK_CALL tesk_part_describe(const tesk_part* part,
                                                    tesk_part_details* details);

/* Something that the reader passed over or put right: a fixed short code and a sentence. */
TESK_C_API tesk_status TESK_CALL tesk_part_warning(const tesk_part* part, int32_t index,
                                                   const char** code, const char** text);

/* The name of a solid or object, in the file's order. */
TESK_C_API tesk_status TESK_CALL tesk_part_object(const tesk_part* part, int32_t index,
                                                  const char** name);

/* A copy of the part's mesh. */
TESK_C_API tesk_status TESK_CALL tesk_part_mesh(const tesk_part* part, tesk_mesh** mesh);

/* Writes a placed mesh; the format is that of the name's extension. The file appears under its name
 * only when it is complete. */
TESK_C_API tesk_status TESK_CALL tesk_part_write(const char* path, const tesk_mesh* mesh);

#ifdef __cplusplus
}
#endif

#endif
