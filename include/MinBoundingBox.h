#pragma once

#include <functional>

#include "OrientedBox3.h"
#include "TeskDataBasic/UPoint3.h"
#include "TeskDataBasic/UVector3.h"
#include "TeskSDKTriangleOrientExport.h"

/// Smallest boxes around points, by several criteria. Every box holds all finite points to within
/// the rounding of floats.
///
/// Non-finite points are ignored. Points in a plane give a flat box, points on a line
/// a segment box, one point (repeated or not) a point box with the axes X, Y, Z. Without a finite
/// point (n below 1 and a null pointer included) there is no box: center (0, 0, 0), all axes and
/// the extent (1, 1, 1).
///
/// The result depends neither on the order of the points nor on the thread count (but
/// generateOBB() sums in the given order).
///
/// Progress: operator(), minBaseAreaBox() and minBaseAreaAndHeightBox() report whole percentages
/// that only grow; see there. The callback ends the computation by throwing Tesk::AbortException;
/// one that throws anything else from a worker thread ends the process. After an abort the object
/// is as good as new.
///
/// Threads: copies share one implementation. One object, its copies included, must not run two
/// operations at once. generateOBB() needs no object.
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
    /// Throws Tesk::AbortException("Aborting...") after an abort, and the standard library's
    /// exceptions for memory and threads.
    OrientedBox3 operator()(int n, const UPoint3<float>* points);

    /// The box of least height, measured along a face normal of the convex hull, and of least
    /// footprint along that normal, which is axis[2].
    ///
    /// Reports progress to 100 where it runs on the calling thread, none with worker threads.
    /// Throws a copy of the callback's Tesk::AbortException, and the standard library's exceptions
    /// for memory and threads.
    OrientedBox3 minBaseAreaAndHeightBox(int n, const UPoint3<float>* points);

    /// The box whose smallest side is as small as possible, among those with axis[2] a face normal
    /// of the convex hull. Progress and exceptions as minBaseAreaAndHeightBox().
    OrientedBox3 minBaseAreaBox(int n, const UPoint3<float>* points);

    /// The box of least cross-section with axis[2] along the given axis (any length). Runs on the
    /// calling thread, reports no progress and cannot be aborted. The axes (0, 0, z) other than
    /// (0, 0, 1) exactly, the zero axis and axes that are not finite give no box.
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
