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
};

struct CoordinateRange {
    float low = std::numeric_limits<float>::max();
    float high = -std::numeric_limits<float>::max();
};

/// Maps a coordinate to its position among the samples of a line: (value − first) · cellsPerUnit +
/// 1, clamped. Sample i maps to about i + 1. Rounding may put a value on the wrong side of i + 1,
/// but by no more than `slack`.
struct SampleScale {
    float first = 0.0f;
    float cellsPerUnit = 0.0f;
    float last = 0.0f;  ///< the upper clamp
    float slack = 0.0f;
};

/// A triangle's edges as seen by the column of samples at one x. For each edge,
/// side(y) = alongX · (y − fromY) − across is positive on one side of the edge, negative on the
/// other and 0 on its line.
struct ColumnEdges {
    float alongX[3];
    float fromY[3];
    float across[3];
};

/// A triangle's plane as seen by the column of samples at one x: z(y), by Cramer's rule over the
/// edges u and v from corner a.
struct ColumnPlane {
    double ux, uyTimesDx;  ///< edge u; its y times the column's x − a.x
    double vx, vyTimesDx;  ///< edge v
    double determinant;    ///< not 0
    float ay, az, uz, vz;
};

/// The inner loops of the evaluation, over arrays of vertices and of sample rows. There is one set
/// for each vector width; all give the same bits.
struct TurnKernels {
    const char* name;

    /// Extends a range by x · fromX + y · fromY + z · fromZ of every point, without the shift. NaN
    /// is ignored.
    void (*extendRange)(const float* x, const float* y, const float* z, std::size_t count,
                        const TurnedCoordinate& coordinate, CoordinateRange& range);

    /// Computes a code for every point that says between which samples it lies: in the upper 16
    /// bits between which columns, in the lower 16 between which rows. Points between the same two
    /// columns (or rows) get the same even number there. The number is odd if the point is so near
    /// a sample that rounding could decide on which side it lies.
    void (*cellCodes)(const float* x, const float* y, const float* z, std::size_t count,
                      const TurnedCoordinate& column, const TurnedCoordinate& row,
                      const SampleScale& columns, const SampleScale& rows, std::uint32_t* codes);

    /// Finds the rows at which the column's point lies under the triangle, or on the line through
    /// one of its edges. Writes their indices in ascending order and returns how many there are.
    std::size_t (*rowsUnder)(const ColumnEdges& edges, const float* rows, std::size_t count,
                             std::uint32_t* found);

    /// Computes the height of the plane at the rows with the given indices.
    void (*heights)(const ColumnPlane& plane, const float* rows, const std::uint32_t* places,
                    std::size_t count, float* z);
};

/// The kernels that this processor can run, the widest last. Never empty.
const std::vector<const TurnKernels*>& availableTurnKernels();

/// The kernels in use: the widest, unless others were chosen.
const TurnKernels& turnKernels();

/// Chooses among availableTurnKernels(), for tests. Takes effect with the next evaluation.
void useTurnKernels(const TurnKernels& kernels);

}  // namespace Tesk::orient
