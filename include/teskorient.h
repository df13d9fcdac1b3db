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
 * Structs. Set the first field, struct_size, to sizeof the struct: it tells the library which
 * version of the struct the caller was compiled with. Later versions add fields at the end and
 * still serve callers that know fewer; a size that the library does not know is
 * TESK_INVALID_ARGUMENT. In an array of structs only the first one's struct_size is read; it is
 * also the distance in bytes from one struct to the next. The library sets struct_size in every
 * struct that it fills. Zero the other fields of a struct that goes in: 0 means the default, unless
 * the field's comment says otherwise.
 *
 * Memory. The library reads input arrays during the call only, and keeps no pointer to them.
 * Structs must be aligned, arrays of numbers need not be. Results go into the caller's memory, or
 * into a handle (tesk_mesh, tesk_part) that tesk_free() frees. Nothing else needs to be freed.
 *
 * Frames and units. Lengths are millimetres where a unit matters. Matrices have 16 floats, row by
 * row, for row vectors: p' = p * M, with the translation in the last row. Libraries that store
 * matrices for column vectors column by column, as OpenGL does, have the same floats in the same
 * order; for others that use column vectors, transpose the matrix.
 *
 * Threads. All functions may be called from several threads at once, and several threads may use
 * one handle at once. The exceptions are tesk_free() and tesk_mesh_set_placement(): nothing else
 * may use the handle meanwhile. Each thread has its own last error and its own random numbers.
 * Results do not depend on the number of threads, and have the same bits on every platform. The
 * library keeps its worker threads for later calls, and so stays loaded until the process ends,
 * even if the host unloads it.
 *
 * Callbacks. A callback has to return: no exception and no longjmp() may leave it. If a C++
 * exception does, the library catches it, and the call returns TESK_CALLBACK_FAILED; on Windows it
 * can catch only those of code compiled with MinGW, and any other ends the process. A callback may
 * call every function of the library, even with the handle that the interrupted call uses, except
 * for tesk_free() and tesk_mesh_set_placement() with that handle.
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

/* Raised when programs compiled with an older header would no longer work. */
#define TESK_ABI_VERSION 1

typedef int32_t tesk_status;
enum {
    TESK_OK = 0,
    TESK_ABORTED = 1,          /* the progress callback returned nonzero */
    TESK_INVALID_ARGUMENT = 2, /* a null pointer, a count, an index, a struct size, a value */
    TESK_OUT_OF_MEMORY = 3,
    TESK_FILE_ERROR = 4,      /* a part file cannot be read or written */
    TESK_NO_RESULT = 5,       /* there is no such pose or box; a mesh that cannot be measured */
    TESK_CALLBACK_FAILED = 6, /* an exception left the progress callback */
    TESK_INTERNAL_ERROR = 7   /* a defect of this library, or threads that cannot be started */
};

/* The TESK_ABI_VERSION of the loaded library. */
TESK_C_API int32_t TESK_CALL tesk_abi_version(void);

/* TESK_OK if the loaded library serves a program compiled with this TESK_ABI_VERSION, otherwise
 * TESK_INVALID_ARGUMENT. Call it once after loading. */
TESK_C_API tesk_status TESK_CALL tesk_check_abi(int32_t abi_version);

/* The library's version, such as "0.1.0". */
TESK_C_API const char* TESK_CALL tesk_version(void);

/* What was wrong with the last call on this thread that did not return TESK_OK: one line of UTF-8,
 * empty before the first. Valid until the next call on this thread. */
TESK_C_API const char* TESK_CALL tesk_last_error(void);

/* ---- Calls ---- */

/* Receives the progress of a call in whole percentages that never fall. If it returns nonzero, the
 * call ends with TESK_ABORTED and does not call back again. Runs on the thread that made the call;
 * tesk_smallest_box() may use another thread, but never two at once. */
typedef int32_t(TESK_CALL* tesk_progress)(int32_t percent, void* user);

/* How a call is to run. Functions that take one accept NULL: threads is 0, and no progress is
 * reported. */
typedef struct tesk_call {
    uint32_t struct_size;
    int32_t threads;        /* 0..1024; 0: OpenMP's default, which is one for each processor */
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

/* A direction of the placed part that must not face down, neither onto the plate nor onto support.
 */
typedef struct tesk_keep_off {
    uint32_t struct_size;
    float direction[3]; /* outward normal of the face; any length above zero */
    float angle_deg;    /* how near to straight down; negative: the goal's overhang angle */
} tesk_keep_off;

enum { TESK_GOAL_BALANCED = 0, TESK_GOAL_LEAST_SUPPORT = 1 };

/* Costs and limits; tesk_goal_init() fills in the defaults. Zero is a value like any other here: a
 * cost of 0 is no cost. */
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

/* A pose: a rotation, to be applied after the placement, and the measures of the part that is
 * turned so and set down on the plate. */
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
    float tilt_margin_deg;     /* the tilt that tips it over; negative: it tips over by itself */
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
    /* How many poses were passed over, each counted by the first limit that it broke: */
    int32_t kept_off;        /* a face of goal.keep_off would face down */
    int32_t too_large;       /* for the build volume */
    int32_t little_contact;  /* less than least_contact_area */
    int32_t cannot_stand;    /* while others can */
    float nearest_misfit[3]; /* footprint and height of the one nearest to fitting; or 0 */
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

/* What counts, and how much; tesk_rank_settings_init() fills in the defaults. Zero is a value like
 * any other here: a weight of 0 does not count. */
typedef struct tesk_rank_settings {
    uint32_t struct_size;
    float overhang_angle_deg;
    int32_t support_area_weight;
    int32_t support_volume_weight;
    int32_t height_weight;
    int32_t box_volume_weight;
    int32_t compute_support; /* nonzero: measure support even if both of its weights are 0 */
    float base_height; /* z at which the part's lowest point is put; -1 or less: it is not moved */
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
 * in ascending order of score. Threads that rank the same mesh wait for one another at first, while
 * it is prepared.
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
 * call   TESK_BOX_VOLUME reports progress and can be aborted, TESK_BOX_BASE_AREA and
 *        TESK_BOX_BASE_HEIGHT only if threads is 1; the other two never call back */
TESK_C_API tesk_status TESK_CALL tesk_smallest_box(const tesk_points* points, int32_t criterion,
                                                   const float* axis, const tesk_call* call,
                                                   tesk_box* box);

/* The rotation that lays a placed mesh flat in its box of least volume: longest side along X,
 * shortest along Z. It turns about the centre of the placed mesh's axis-aligned box, and is to be
 * applied after the placement. The identity for a mesh without finite positions. */
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
