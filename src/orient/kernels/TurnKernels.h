#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace Tesk::orient {

/// One coordinate of a turned point: x · fromX + y · fromY + z · fromZ + shift, summed in this
/// order.
struct TurnedCoordinate {
    float fromX = 0.0f;
    float fromY = 0.0f;
    float fromZ = 0.0f;
    float shift = 0.0f;

    bool operator==(const TurnedCoordinate&) const = default;
};

struct CoordinateRange {
    float low = std::numeric_limits<float>::max();
    float high = -std::numeric_limits<float>::max();
};

/// Where a coordinate lies among the samples of a line: value ↦ (value − first) · cellsPerUnit + 1,
/// clamped, comes near i + 1 at sample i, and never crosses i + 1 by more than `slack` on the
/// wrong side of it.
struct SampleScale {
    float first = 0.0f;
    float cellsPerUnit = 0.0f;
    float last = 0.0f;  ///< the upper clamp
    float slack = 0.0f;
};

/// A column's view of a triangle: for each edge, side(y) = alongX · (y − fromY) − across, with the
/// signs of the three sides telling on which side of the edges the point lies.
struct ColumnEdges {
    float alongX[3];
    float fromY[3];
    float across[3];
};

/// A column's view of a triangle's plane: z(y), by Cramer's rule over the edges u and v from a.
struct ColumnPlane {
    double ux, uyTimesDx;  ///< edge u; its y times the column's x − a.x
    double vx, vyTimesDx;  ///< edge v
    double determinant;    ///< not 0
    float ay, az, uz, vz;
};

/// The loops that the evaluation spends its time in, over arrays of vertices and of sample rows.
/// There are several, as wide as a processor can; all give the same bits.
struct TurnKernels {
    const char* name;

    /// Extends a range by x · fromX + y · fromY + z · fromZ, without the shift, of all points. A
    /// NaN is passed over.
    void (*extendRange)(const float* x, const float* y, const float* z, std::size_t count,
                        const TurnedCoordinate& coordinate, CoordinateRange& range);

    /// Tells for every point between which samples it lies: the code's upper half for its column,
    /// the lower for its row. A half is even and the same for points that lie strictly between the
    /// same two samples; it is odd where a point is so near a sample that rounding could decide.
    void (*cellCodes)(const float* x, const float* y, const float* z, std::size_t count,
                      const TurnedCoordinate& column, const TurnedCoordinate& row,
                      const SampleScale& columns, const SampleScale& rows, std::uint32_t* codes);

    /// The places of the rows at which a column's point lies under a triangle (or on the line
    /// through one of its edges), ascending; returns how many.
    std::size_t (*rowsUnder)(const ColumnEdges& edges, const float* rows, std::size_t count,
                             std::uint32_t* found);

    /// The heights of a plane above the given places of the rows.
    void (*heights)(const ColumnPlane& plane, const float* rows, const std::uint32_t* places,
                    std::size_t count, float* z);
};

/// Those that this processor can run, the widest last.
const std::vector<const TurnKernels*>& availableTurnKernels();

/// Those in use: the widest, unless others were chosen.
const TurnKernels& turnKernels();

/// Chooses; for tests. Takes effect with the next evaluation.
void useTurnKernels(const TurnKernels& kernels);

}  // namespace Tesk::orient
