#pragma once

#include "orient/kernels/FloatPack.h"
#include "orient/kernels/TurnKernels.h"

namespace Tesk::orient {

// The kernels, for a vector of any width. Each source file that includes this header gets its own
// copies, compiled for its processor.
namespace {

template <class Pack>
Pack turnedSum(Pack x, Pack y, Pack z, const TurnedCoordinate& c) {
    return x * Pack::all(c.fromX) + y * Pack::all(c.fromY) + z * Pack::all(c.fromZ);
}

template <class Pack>
void extendRange(const float* x, const float* y, const float* z, std::size_t count,
                 const TurnedCoordinate& c, CoordinateRange& range) {
    // Two independent ranges, so that the processor can update both at once.
    constexpr std::size_t kStep = 2 * Pack::kLanes;
    Pack low0 = Pack::all(range.low);
    Pack high0 = Pack::all(range.high);
    Pack low1 = low0;
    Pack high1 = high0;
    const auto sumAt = [&](std::size_t i) {
        return turnedSum(Pack::load(x + i), Pack::load(y + i), Pack::load(z + i), c);
    };
    std::size_t i = 0;
    for (; i + kStep <= count; i += kStep) {
        const Pack s0 = sumAt(i);
        const Pack s1 = sumAt(i + Pack::kLanes);
        low0 = s0.orLess(low0);
        high0 = s0.orGreater(high0);
        low1 = s1.orLess(low1);
        high1 = s1.orGreater(high1);
    }
    float lows[Pack::kLanes];
    float highs[Pack::kLanes];
    low0.orLess(low1).store(lows);
    high0.orGreater(high1).store(highs);
    for (std::size_t k = 0; k < Pack::kLanes; ++k) {
        range.low = lows[k] < range.low ? lows[k] : range.low;
        range.high = highs[k] > range.high ? highs[k] : range.high;
    }
    for (; i < count; ++i) {
        const float sum = turnedSum(FloatPack1{x[i]}, FloatPack1{y[i]}, FloatPack1{z[i]}, c).v;
        range.low = sum < range.low ? sum : range.low;
        range.high = sum > range.high ? sum : range.high;
    }
}

/// Twice the number of samples below the value; one more if a sample is too near to tell.
template <class Pack>
typename Pack::Ints lineCode(Pack value, const SampleScale& line) {
    const Pack place =
        (value - Pack::all(line.first)) * Pack::all(line.cellsPerUnit) + Pack::all(1.0f);
    const Pack clamped = place.orGreater(Pack::all(0.25f)).orLess(Pack::all(line.last));
    const Pack slack = Pack::all(line.slack);
    return Pack::sum((clamped - slack).truncated(), (clamped + slack).truncated());
}

template <class Pack>
void cellCodesAt(const float* x, const float* y, const float* z, const TurnedCoordinate& column,
                 const TurnedCoordinate& row, const SampleScale& columns, const SampleScale& rows,
                 std::uint32_t* codes) {
    const Pack px = Pack::load(x);
    const Pack py = Pack::load(y);
    const Pack pz = Pack::load(z);
    const Pack across = turnedSum(px, py, pz, column) + Pack::all(column.shift);
    const Pack along = turnedSum(px, py, pz, row) + Pack::all(row.shift);
    Pack::storeInts(Pack::highAndLow(lineCode(across, columns), lineCode(along, rows)), codes);
}

template <class Pack>
void cellCodes(const float* x, const float* y, const float* z, std::size_t count,
               const TurnedCoordinate& column, const TurnedCoordinate& row,
               const SampleScale& columns, const SampleScale& rows, std::uint32_t* codes) {
    std::size_t i = 0;
    for (; i + Pack::kLanes <= count; i += Pack::kLanes) {
        cellCodesAt<Pack>(x + i, y + i, z + i, column, row, columns, rows, codes + i);
    }
    for (; i < count; ++i) {
        cellCodesAt<FloatPack1>(x + i, y + i, z + i, column, row, columns, rows, codes + i);
    }
}

template <class Pack>
unsigned lanesUnder(const ColumnEdges& edges, const float* rows) {
    const Pack y = Pack::load(rows);
    const auto side = [&](int k) {
        return Pack::all(edges.alongX[k]) * (y - Pack::all(edges.fromY[k])) -
               Pack::all(edges.across[k]);
    };
    const Pack ab = side(0);
    const Pack bc = side(1);
    const Pack ca = side(2);
    return ab.isZero() | bc.isZero() | ca.isZero() |
           (ab.isNegative() & bc.isNegative() & ca.isNegative()) |
           (ab.isPositive() & bc.isPositive() & ca.isPositive());
}

template <class Pack>
std::size_t rowsUnder(const ColumnEdges& edges, const float* rows, std::size_t count,
                      std::uint32_t* found) {
    std::size_t foundCount = 0;
    std::size_t i = 0;
    for (; i + Pack::kLanes <= count; i += Pack::kLanes) {
        unsigned lanes = lanesUnder<Pack>(edges, rows + i);
        for (std::size_t k = i; lanes != 0; ++k, lanes >>= 1) {
            found[foundCount] = static_cast<std::uint32_t>(k);
            foundCount += lanes & 1;
        }
    }
    for (; i < count; ++i) {
        if (lanesUnder<FloatPack1>(edges, rows + i) != 0) {
            found[foundCount++] = static_cast<std::uint32_t>(i);
        }
    }
    return foundCount;
}

// The ratios are computed in double, where products of two floats are exact; the height is summed
// in float. The compiler vectorises this loop by itself.
template <class Pack>
void heights(const ColumnPlane& plane, const float* rows, const std::uint32_t* places,
             std::size_t count, float* z) {
    for (std::size_t i = 0; i < count; ++i) {
        const auto dy = static_cast<double>(rows[places[i]] - plane.ay);
        const auto s = static_cast<float>((plane.vyTimesDx - dy * plane.vx) / plane.determinant);
        const auto r = static_cast<float>((plane.ux * dy - plane.uyTimesDx) / plane.determinant);
        z[i] = plane.az + plane.uz * s + plane.vz * r;
    }
}

template <class Pack>
constexpr TurnKernels kernelsOf(const char* name) {
    return {name, extendRange<Pack>, cellCodes<Pack>, rowsUnder<Pack>, heights<Pack>};
}

}  // namespace

}  // namespace Tesk::orient
