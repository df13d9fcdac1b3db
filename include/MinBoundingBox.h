#pragma once

#include <functional>

#include "OrientedBox3.h"
#include "TeskDataBasic/UPoint3.h"
#include "TeskDataBasic/UVector3.h"
#include "TeskSDKTriangleOrientExport.h"

/// Smallest boxes around points, by several criteria. Every box holds all finite points to within
/// the rounding of floats.
///
/// Non-finite points are ignored. Points in a plane give a flat box, points on a line a box without
/// width and height, a single point (repeated or not) a box of size zero with the axes X, Y, Z.
/// Without a finite point (also if n is below 1 or the pointer is null) there is no box: center is
/// (0, 0, 0), and all axes and the extent are (1, 1, 1).
///
/// The result depends neither on the order of the points nor on the thread count, except that
/// generateOBB() sums in the given order.
///
/// Very large and very small parts are scaled before the search, because products of their
/// coordinates would leave the range of a float. Their result is defined as the box of the scaled
/// points, scaled back. If the hull's largest extent along x, y or z is below 2^-17 or at least
/// 2^16, its points are divided by the power of two that brings this extent into [1/2, 1).
/// generateOBB() scales if the largest magnitude of a coordinate is 2^29 or more, and brings that
/// into [2^28, 2^29).
///
/// Threads: a search runs on the calling thread if the thread count is 0 or 1, or exceeds the
/// number of the hull's triangles; otherwise on that many worker threads. operator() uses one more
/// thread for the boxes along edges. Copies share one implementation. One object, its copies
/// included, must not run two operations at once. generateOBB() needs no object.
///
/// Progress: operator(), minBaseAreaBox() and minBaseAreaAndHeightBox() report whole percentages
/// that only grow. The callback ends the computation by throwing Tesk::AbortException; each
/// function says what happens to other exceptions. Once the callback has thrown, it is not called
/// again in that operation, on any thread. The object can be used again afterwards.
class TESK_ORIENT_API MinBoundingBox {
 public:
    /// @param threadCount  worker threads for the searches; 0 and 1 search on the calling thread
    MinBoundingBox(unsigned int threadCount = 1);
    ~MinBoundingBox();

    /// Copies share the callback, the thread count and the working state; the last one frees them.
    MinBoundingBox(const MinBoundingBox& other);
    MinBoundingBox& operator=(const MinBoundingBox& other);

    /// Sets the progress callback of this object and its copies; an empty one turns reports off.
    void setCallBackFunction(std::function<void(int)> callback);

    /// The box of least volume among those with a side flush with a face of the convex hull and
    /// those with sides parallel to three mutually orthogonal hull edges.
    ///
    /// Progress ends near 40. With worker threads the callback runs on them, never on two at once.
    ///
    /// Throws Tesk::AbortException("Aborting...") after an abort, and std::bad_alloc or
    /// std::system_error if memory or threads run out, on whichever thread. If the callback throws
    /// another exception:
    /// - std::bad_alloc, std::system_error and types derived from them leave the call unchanged.
    /// - Any other leaves it as Tesk::AbortException("Aborting...") if the callback ran on the
    ///   calling thread; if it ran on a worker thread, the process ends (std::terminate).
    OrientedBox3 operator()(int n, const UPoint3<float>* points);

    /// The box of least height, measured along a face normal of the convex hull, and of least
    /// footprint along that normal, which is axis[2].
    ///
    /// Reports progress to 100 if it runs on the calling thread. With worker threads it never calls
    /// the callback, and so cannot be aborted.
    ///
    /// Throws a copy of the callback's Tesk::AbortException with the same text (of a derived
    /// exception, a copy of its Tesk::AbortException part), and std::bad_alloc or std::system_error
    /// if memory or threads run out. Exceptions of other types leave the call unchanged.
    OrientedBox3 minBaseAreaAndHeightBox(int n, const UPoint3<float>* points);

    /// The box whose smallest side is as small as possible, among those with axis[2] a face normal
    /// of the convex hull. Progress and exceptions as minBaseAreaAndHeightBox().
    OrientedBox3 minBaseAreaBox(int n, const UPoint3<float>* points);

    /// The box of least cross-section with axis[2] along the given axis, which may have any length
    /// and may run along edges or faces of the part. The cross-section exceeds the least one by at
    /// most a millionth or, if the part seen along the axis is thin, by 1e-8 of the square of its
    /// extent across the axis. Runs on the calling thread, reports no progress and cannot be
    /// aborted. An axis (0, 0, z) other than exactly (0, 0, 1), a zero axis and an axis that is not
    /// finite give no box.
    OrientedBox3 minBaseAreaBoxAroundAxis(int n, const UPoint3<float>* points,
                                          UVector3<float> axis);

    /// The box along the principal axes of the points: quick to compute, but not the smallest. Its
    /// extent holds full side lengths, not halves. There is no box if a point is not finite, or if
    /// a side would be longer than the largest float.
    static OrientedBox3 generateOBB(const UPoint3<float>* points, int n);

 private:
    /// The implementation, and how many handles share it.
    struct Cell;

    Cell* m_cell;
};
