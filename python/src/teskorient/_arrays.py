"""Arrays as the library takes them, copied only where they have to be."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

from teskorient import _library as c

MOST_ELEMENTS = 2**31 - 1

Float32s = NDArray[np.float32]
Int32s = NDArray[np.int32]


@dataclass(frozen=True, slots=True)
class Rows:
    """Three numbers each, at a distance that the library can follow.

    Attributes
    ----------
    array : ndarray
        What keeps the memory alive: shape (n, 3), native byte order.
    """

    array: NDArray[Any]

    @property
    def address(self) -> int | None:
        """Where the first row lies; None of no rows."""
        return int(self.array.ctypes.data) if len(self.array) else None

    @property
    def stride(self) -> int:
        """Bytes from one row to the next; 0 where there is at most one."""
        return int(self.array.strides[0]) if len(self.array) > 1 else 0


def _given(values: ArrayLike, name: str) -> NDArray[Any]:
    if np.ma.is_masked(values):
        raise ValueError(f"{name}: some values are masked")
    try:
        array = np.asarray(values)
    except (ValueError, TypeError) as error:
        raise ValueError(f"{name}: not an array: {error}") from None
    if array.ndim == 1 and array.size == 0:
        array = array.reshape(0, 3)
    if array.ndim != 2 or array.shape[1] != 3:
        raise ValueError(f"{name}: the shape must be (n, 3), not {array.shape}")
    if len(array) > MOST_ELEMENTS:
        raise ValueError(f"{name}: {len(array)} rows are more than {MOST_ELEMENTS}")
    return array


def _reachable(array: NDArray[Any], kind: np.dtype[Any]) -> Rows:
    """Rows of numbers of this kind: the array itself where the library can read it as it lies."""
    array = np.asarray(array, dtype=kind)
    width = kind.itemsize
    follows = array.strides[1] == width and array.strides[0] >= 3 * width
    if len(array) > 1 and not follows or len(array) == 1 and array.strides[1] != width:
        array = np.ascontiguousarray(array)
    return Rows(array)


def first_not_finite(array: NDArray[Any]) -> int | None:
    """Index of the first row with a number that is not finite."""
    # A sum is finite if all are and it does not overflow: then, and only then, look at each.
    with np.errstate(all="ignore"):
        if np.isfinite(array.sum(dtype=np.float64)):
            return None
    finite = np.isfinite(array).all(axis=1)
    return None if finite.all() else int(np.argmin(finite))


def positions_of(values: ArrayLike, name: str) -> Rows:
    """Take positions or points: (n, 3) numbers, all finite as float32.

    float32 and float64 in native byte order are read where they lie, whatever the distance between
    rows, if the three numbers of a row follow one another. Everything else is converted: other
    strides and byte orders to contiguous arrays, float16, integers and other real numbers to float64.
    """
    array = _given(values, name)
    if array.dtype.kind not in "fiu":
        raise ValueError(f"{name}: the numbers must be real, not {array.dtype}")
    is_single = array.dtype.kind == "f" and array.dtype.itemsize == 4
    rows = _reachable(array, np.dtype(np.float32 if is_single else np.float64))
    bad = first_not_finite(rows.array)
    if bad is None and not is_single:
        with np.errstate(over="ignore"):
            largest = np.abs(rows.array).max(initial=0.0)
            if np.isinf(np.float32(largest)):
                bad = first_not_finite(rows.array.astype(np.float32))
    if bad is not None:
        numbers = ", ".join(f"{value:g}" for value in rows.array[bad])
        raise ValueError(f"{name}: row {bad} is not finite as float32: ({numbers})")
    return rows


def triangles_of(values: ArrayLike, vertex_count: int, name: str) -> Rows:
    """Take triangles: (m, 3) whole numbers from 0 to the number of vertices, less one.

    int32 in native byte order is read where it lies; other integers are converted.
    """
    array = _given(values, name)
    if array.size == 0 and array.dtype.kind == "f":
        array = array.astype(np.int32)
    if array.dtype.kind not in "iu":
        raise ValueError(f"{name}: the indices must be integers, not {array.dtype}")
    if len(array) and not (0 <= array.min() and array.max() < vertex_count):
        wrong = ((array < 0) | (array >= vertex_count)).any(axis=1)
        row = int(np.argmax(wrong))
        indices = ", ".join(str(index) for index in array[row])
        raise ValueError(f"{name}: row {row} is ({indices}), but there are {vertex_count} vertices")
    return _reachable(array, np.dtype(np.int32))


def vector_of(values: ArrayLike, name: str) -> tuple[float, float, float]:
    """Take three finite numbers."""
    try:
        array = np.asarray(values, dtype=np.float64)
    except (ValueError, TypeError):
        array = np.empty(0)
    if array.shape != (3,) or not np.isfinite(array.astype(np.float32)).all():
        raise ValueError(f"{name}: must be three finite numbers, not {values!r}")
    x, y, z = (float(value) for value in array)
    return x, y, z


def frozen(array: NDArray[Any]) -> NDArray[Any]:
    """Return a view that cannot be written to."""
    view = array.view(np.ndarray)
    view.flags.writeable = False
    return view


def points_struct(rows: Rows) -> c.Points:
    """``tesk_points`` of rows, which must outlive the call."""
    kind = c.FLOAT32 if rows.array.dtype == np.float32 else c.FLOAT64
    return c.new(c.Points, type=kind, data=rows.address, count=len(rows.array), stride=rows.stride)
