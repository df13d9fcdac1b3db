#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "OptimizeOrient.h"
#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UVector3.h"
#include "TeskMeshData/MeshKernel.h"
#include "TeskSDKTriangleOrientExport.h"

namespace OptimizeOrient {

/// Seeds the random numbers that calculateOrients() draws on the calling thread: the same seed
/// before the same call gives the same result. The library never seeds them itself. With
/// Microsoft's C library this is srand(); elsewhere every thread starts as if seeded with 1.
TESK_ORIENT_API void seedRandom(std::uint32_t seed);

}  // namespace OptimizeOrient

/// Chooses build orientations and placements. Has no state; calls are independent of each other.
class TESK_ORIENT_API OrientOptimizer {
 public:
    OrientOptimizer() = default;
    OrientOptimizer(const OrientOptimizer&) = default;
    OrientOptimizer& operator=(const OrientOptimizer&) noexcept { return *this; }
    OrientOptimizer& operator=(OrientOptimizer&&) noexcept { return *this; }

    /// Ranks 18 to 58 candidate build directions of a placed mesh.
    ///
    /// @param mesh         not null. Its topology and triangle normals are refreshed in place;
    ///                     otherwise it is only read. A mesh without triangles or with non-finite
    ///                     vertices is not an error.
    /// @param config       weights and limits.
    /// @param axis, angle  receive the best candidate's axis (not normalised) and angle (radians).
    /// @param orientations null, or receives the best record, ten spread over the ranking and the
    ///                     worst: 12 in all, in ascending order of score. Equal scores keep
    ///                     candidate order; NaN scores come last.
    /// @param progress     empty, or called on the calling thread with whole percentages that never
    ///                     fall: 3, 10, 10..90, 90, 95, 100. It ends the computation by throwing
    ///                     Tesk::AbortException, or anything else; it is not called again then.
    ///
    /// Throws what the callback threw, and std::bad_alloc. While candidates are measured (from the
    /// second 10 to the report before the last 90), a Tesk::AbortException or an exception derived
    /// from it leaves the call as a new Tesk::AbortException("Aborting..."), and any other
    /// exception unchanged: both once every thread has finished its current candidate. At the other
    /// reports (3, 10, 90, 95, 100) every exception leaves the call unchanged and at once. After an
    /// exception at 90 or before, the outputs are untouched; at 95, `orientations` holds every
    /// candidate, unsorted and with a score of 0 or its own, and `axis` and `angle` are untouched;
    /// at 100 everything is complete.
    ///
    /// Runs on as many OpenMP threads as the caller's setting allows (omp_set_num_threads); the
    /// result does not depend on how many. Different meshes may be ranked at once by different
    /// threads. Cost: linear in the triangle count, and in the number of sample columns, about
    /// 1600 times the aspect ratio of the turned part's footprint.
    static void calculateOrients(MeshKernel* mesh, OptimizeOrient::Configure config,
                                 UVector3<float>& axis, float& angle,
                                 std::vector<OptimizeOrient::OptOrientation>* orientations,
                                 std::function<void(int)> progress);

    /// Lays a placed mesh flat in its box of least volume: longest side along X, middle side along
    /// Y, shortest along Z.
    ///
    /// @param mesh      not null; only read. Every vertex in its list counts, including those
    ///                  marked as deleted.
    /// @param matrix    receives the rotation about the centre of the mesh's box, to be applied
    ///                  after the mesh's current matrix, which it does not include. Always rigid;
    ///                  the identity for a mesh without finite vertices.
    /// @param progress  empty, or called on the calling thread with whole percentages that only
    ///                  grow, up to about 40. It ends the computation by throwing
    ///                  Tesk::AbortException; it is not called again then.
    ///
    /// Throws Tesk::AbortException("Aborting...") after an abort, and std::bad_alloc or
    /// std::system_error if memory or threads run out. If the callback throws another exception,
    /// std::bad_alloc, std::system_error and types derived from them leave the call unchanged, and
    /// any other type as Tesk::AbortException("Aborting..."). In all of these cases `matrix` is
    /// untouched.
    static void calculateOrients_minBoundingBox(MeshKernel* mesh, UMatrix4<float>& matrix,
                                                std::function<void(int)> progress);
};
