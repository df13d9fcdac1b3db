"""Smallest boxes, laying flat, and convex hulls."""

from __future__ import annotations

from ctypes import byref, c_int32
from dataclasses import dataclass, field
from functools import cached_property
from typing import Any, Final

import numpy as np
from numpy.typing import ArrayLike

from teskorient import _library as c
from teskorient._arrays import Float32s, Int32s, frozen, points_struct, positions_of, vector_of
from teskorient._call import Progress, Running, check
from teskorient._turns import Turn, column_matrix, product, set_down, translation, turn_in
from teskorient.part import Part, moved_positions

__all__ = ["Box", "Hull", "LayFlat", "bounding_box", "convex_hull", "lay_flat"]

_CRITERIA: Final = {
    "volume": c.BOX_VOLUME,
    "base-area": c.BOX_BASE_AREA,
    "base-height": c.BOX_BASE_HEIGHT,
    "around-axis": c.BOX_AROUND_AXIS,
    "principal": c.BOX_PRINCIPAL,
}
# Boxes of so few points take milliseconds.
_FEW_POINTS: Final = 500


@dataclass(frozen=True, eq=False)
class Box:
    """A box in space: ``center + t @ axes`` with ``|t| <= half_extents``.

    Attributes
    ----------
    center : ndarray, shape (3,)
        float32, as all of these.
    axes : ndarray, shape (3, 3)
        Three unit vectors, one a row: orthogonal and right-handed.
    half_extents : ndarray, shape (3,)
        Half-lengths along the axes.
    criterion : str
        What the box is smallest in.
    """

    center: Float32s
    axes: Float32s
    half_extents: Float32s
    criterion: str
    _axis: tuple[float, float, float] | None = field(repr=False, default=None)
    _part: Part | None = field(repr=False, default=None)

    @property
    def extents(self) -> Float32s:
        """Full lengths along the axes."""
        return frozen(np.float32(2) * self.half_extents)

    @property
    def volume(self) -> float:
        """Volume in mm3."""
        volume = 8.0
        for half in self.half_extents:
            volume *= float(half)
        return volume

    @property
    def fill_ratio(self) -> float | None:
        """The part's share of the volume; None of points, or if its volume is not known."""
        own = None if self._part is None else self._part.volume
        return own / self.volume if own is not None and self.volume > 0.0 else None

    @property
    def corners(self) -> Float32s:
        """The eight corners: float32, shape (8, 3)."""
        corners = np.empty((8, 3), np.float32)
        for i in range(8):
            p = self.center
            for k in range(3):
                half = self.half_extents[k]
                p = p + self.axes[k] * (half if i >> k & 1 else -half)
            corners[i] = p
        return frozen(corners)

    @cached_property
    def matrix(self) -> Float32s:
        """The turn about the box's centre that brings its axes to X, Y and Z.

        float32, shape (4, 4), for column vectors: the transpose of the program's.
        """
        x, y, z = self.center
        turn = np.identity(4, np.float32)
        turn[:3, :3] = self.axes
        return frozen(product(translation(x, y, z), product(turn, translation(-x, -y, -z))))

    @property
    def turn(self) -> Turn:
        """Axis and angle of that turn."""
        return turn_in(self.matrix)

    def __repr__(self) -> str:
        x, y, z = self.extents
        return f"Box({x:.3f} x {y:.3f} x {z:.3f} mm, {self.volume:.6g} mm3, by {self.criterion})"

    def to_dict(self) -> dict[str, Any]:
        """Return what ``tesk-orient box --together --json`` prints; of points, without ``input``."""
        from teskorient import _json

        return _json.box_dict(self)


@dataclass(frozen=True, eq=False)
class LayFlat:
    """How a part lies flat in its box of least volume: longest side along X, shortest along Z.

    Attributes
    ----------
    matrix : ndarray, shape (4, 4)
        float32, for column vectors: the turn about the box's centre, then the move down to z = 0.
    size_before, size_after : tuple of float
        Extents along x, y and z in mm.
    """

    matrix: Float32s = field(repr=False)
    size_before: tuple[float, float, float]
    size_after: tuple[float, float, float]
    _part: Part = field(repr=False)

    @property
    def turn(self) -> Turn:
        """Axis and angle of the matrix's rotation."""
        return turn_in(self.matrix)

    def apply(self) -> Part:
        """Return the part as it lies flat."""
        return self._part.moved(self.matrix)

    def to_dict(self) -> dict[str, Any]:
        """Return what ``tesk-orient lay-flat --together --json`` prints."""
        from teskorient import _json

        return _json.lay_flat_dict(self)


@dataclass(frozen=True, eq=False)
class Hull:
    """A convex hull as a mesh.

    Attributes
    ----------
    vertices : ndarray, shape (n, 3)
        float32; some of the points, on a grid as fine as the floats of the largest coordinate.
    faces : ndarray, shape (m, 3)
        int32; counter-clockwise as seen from outside.
    dimension : int
        3 a solid, 2 a polygon covered on both sides, 1 a segment, 0 a point, -1 nothing.
    """

    vertices: Float32s
    faces: Int32s
    dimension: int

    def __repr__(self) -> str:
        return (
            f"Hull({len(self.vertices)} vertices, {len(self.faces)} triangles, "
            f"dimension {self.dimension})"
        )


def bounding_box(
    points: ArrayLike | Part,
    criterion: str = "volume",
    axis: ArrayLike | None = None,
    threads: int | None = None,
    progress: Progress | None = None,
) -> Box:
    """Find the smallest box around points, or around a part.

    Parameters
    ----------
    points : array_like, shape (n, 3), or Part
        At least one point; arrays as `Part` takes vertices.
    criterion : {'volume', 'base-area', 'base-height', 'around-axis', 'principal'}
        Least volume; smallest side as small as possible; least height, then least footprint; least
        cross-section along `axis`; or along the principal axes, which is quick, but not the
        smallest.
    axis : array_like of 3 float, optional
        For ``around-axis``: a direction of any length above zero.
    threads, progress
        As of `orient`, but `progress` may be called on another thread. Only ``volume``, and with one
        thread ``base-area`` and ``base-height``, report progress.

    Returns
    -------
    Box

    Raises
    ------
    ValueError
        If an argument is wrong, or there is no point.
    """
    if criterion not in _CRITERIA:
        raise ValueError(f"criterion must be one of {', '.join(_CRITERIA)}, not {criterion!r}")
    part = points if isinstance(points, Part) else None
    rows = positions_of(part.vertices if part else points, "points")  # type: ignore[arg-type]
    if len(rows.array) == 0:
        raise ValueError("points: there is none")
    direction, usable = _axis_of(axis, criterion)
    how = Running(threads, progress, is_long=len(rows.array) > _FEW_POINTS)
    record, given = c.new(c.Box), points_struct(rows)
    how.watched(
        lambda: c.library.tesk_smallest_box(
            byref(given),
            _CRITERIA[criterion],
            None if usable is None else usable.ctypes.data,
            byref(how.struct),
            byref(record),
        )
    )
    axes = np.array(record.axes, np.float32)
    if _is_left_handed(axes):
        # The box is the same, and the third axis stays the one that was asked for.
        axes[0] = np.float32(0) - axes[0]
    return Box(
        frozen(np.array(record.center, np.float32)),
        frozen(axes),
        frozen(np.array(record.half_extents, np.float32)),
        criterion,
        direction,
        part,
    )


def _axis_of(
    axis: ArrayLike | None, criterion: str
) -> tuple[tuple[float, float, float] | None, Float32s | None]:
    """The axis that was asked for, and as the library wants it: along Z it takes (0, 0, 1) only."""
    if criterion != "around-axis":
        if axis is not None:
            raise ValueError("axis goes with criterion='around-axis' only")
        return None, None
    if axis is None:
        raise ValueError("criterion='around-axis' needs an axis")
    given = np.array(vector_of(axis, "axis"), np.float32)
    if not given.any():
        raise ValueError("axis: the direction is zero")
    x, y, z = (float(value) for value in given)
    length = np.sqrt(x * x + y * y + z * z)
    if np.float32(x / length) == 0 and np.float32(y / length) == 0:
        return (x, y, z), np.array((0, 0, 1), np.float32)
    return (x, y, z), given


def _is_left_handed(axes: Float32s) -> bool:
    (ax, ay, az), (bx, by, bz), (cx, cy, cz) = axes
    cross = (ay * bz - az * by, az * bx - ax * bz, ax * by - ay * bx)
    return bool(cross[0] * cx + cross[1] * cy + cross[2] * cz < 0)


def lay_flat(part: Part, threads: int | None = None, progress: Progress | None = None) -> LayFlat:
    """Lay a part flat in its box of least volume.

    Parameters
    ----------
    part : Part
        Or anything that `Part.from_any` takes.
    threads, progress
        As of `orient`.

    Returns
    -------
    LayFlat
    """
    part = Part.from_any(part)
    if len(part.vertices) == 0:
        raise ValueError("the part has no vertices")
    how = Running(threads, progress, is_long=len(part.vertices) > _FEW_POINTS)
    found = np.empty(16, np.float32)
    how.watched(
        lambda: c.library.tesk_lay_flat(part._mesh.pointer, byref(how.struct), found.ctypes.data)
    )
    matrix = set_down(part, column_matrix(found))
    placed = moved_positions(part.vertices, matrix).astype(np.float64)
    x, y, z = (placed.max(axis=0) - placed.min(axis=0)).tolist()
    return LayFlat(frozen(matrix), part.size, (x, y, z), part)


def convex_hull(points: ArrayLike | Part) -> Hull:
    """Compute the exact convex hull of points.

    Parameters
    ----------
    points : array_like, shape (n, 3), or Part
        Arrays as `Part` takes vertices.

    Returns
    -------
    Hull

    Raises
    ------
    ValueError
        If the array is not as described.
    """
    given = points.vertices if isinstance(points, Part) else points
    rows = positions_of(given, "points")
    mesh, dimension, struct = c.Handle(), c_int32(), points_struct(rows)
    check(c.library.tesk_convex_hull(byref(struct), byref(mesh.pointer), byref(dimension)))
    hull = Part._of_mesh(mesh)
    return Hull(hull.vertices, hull.faces, dimension.value)
