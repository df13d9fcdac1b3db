"""Arrays of every shape, type, stride and byte order: a clear error or a right answer."""

from __future__ import annotations

from typing import Any

import numpy as np
import pytest
from hypothesis import HealthCheck, given, settings
from hypothesis import strategies as st
from hypothesis.extra import numpy as hnp
from numpy.typing import NDArray

import shapes
import teskorient
from teskorient import Part, _arrays

SETTINGS = settings(
    max_examples=150, deadline=None, suppress_health_check=[HealthCheck.too_slow], derandomize=True
)

NUMBERS = st.one_of(
    hnp.floating_dtypes(endianness="?"),
    hnp.integer_dtypes(endianness="?"),
    hnp.unsigned_integer_dtypes(endianness="?"),
)
ANYTHING = st.one_of(
    NUMBERS,
    hnp.boolean_dtypes(),
    hnp.complex_number_dtypes(),
    hnp.byte_string_dtypes(),
    hnp.unicode_string_dtypes(),
    hnp.datetime64_dtypes(),
)


@st.composite
def views(draw: st.DrawFn, array: NDArray[Any]) -> NDArray[Any]:
    """The same numbers, laid out in memory in another way."""
    rows, columns = array.shape
    how = draw(st.sampled_from(["own", "fortran", "padded", "every second", "reversed", "odd"]))
    if how == "fortran":
        array = np.asfortranarray(array)
    elif how == "padded":
        wide = np.zeros((rows, columns + 2), array.dtype)
        wide[:, 1 : columns + 1] = array
        array = wide[:, 1 : columns + 1]
    elif how == "every second":
        wide = np.zeros((2 * rows, columns), array.dtype)
        wide[::2] = array
        array = wide[::2]
    elif how == "reversed":
        array = array[::-1].copy()[::-1]
    elif how == "odd":  # at an address that no number may have by itself
        raw = np.zeros(array.nbytes + 1, np.uint8)
        odd = raw[1:].view(np.uint8)[: array.nbytes].view(array.dtype).reshape(array.shape)
        odd[...] = array
        array = odd
    if draw(st.booleans()):
        array = array.view()
        array.flags.writeable = False
    return array


SHAPES = st.one_of(
    st.tuples(st.integers(0, 12), st.just(3)),
    hnp.array_shapes(min_dims=0, max_dims=3, min_side=0, max_side=5),
)


@SETTINGS
@given(st.data(), ANYTHING, SHAPES)
def test_points_of_any_kind(data: st.DataObject, kind: np.dtype[Any], shape: Any) -> None:
    points = data.draw(hnp.arrays(kind, shape))
    is_right_shape = points.ndim == 2 and points.shape[1] == 3 or points.shape == (0,)
    if points.ndim == 2:
        points = data.draw(views(points))
    before = points.copy()
    with np.errstate(all="ignore"):
        is_good = (
            is_right_shape
            and points.dtype.kind in "fiu"
            and bool(np.isfinite(points.astype(np.float64).astype(np.float32)).all())
        )
    try:
        hull = teskorient.convex_hull(points)
        box = teskorient.bounding_box(points, threads=1) if len(points) else None
    except ValueError as error:
        assert not is_good, error
        assert str(error).startswith("points: ")
        return
    assert is_good
    assert before.tobytes() == points.tobytes()
    wide = points.reshape(-1, 3).astype(np.float32).astype(np.float64)
    expect_among(hull.vertices, wide)
    if box is not None:
        expect_inside(wide, box)


def expect_among(vertices: NDArray[np.float32], points: NDArray[np.float64]) -> None:
    """A hull's vertices are points, on a grid as fine as the floats of the largest coordinate."""
    slack = 2.0**-24 * np.abs(points).max(initial=0.0)
    for vertex in vertices.astype(np.float64):
        assert np.abs(points - vertex).max(axis=1).min() <= slack


def expect_inside(wide: NDArray[np.float64], box: teskorient.Box) -> None:
    along = (wide - box.center.astype(np.float64)) @ box.axes.astype(np.float64).T
    # Rounding: of the box's own floats, and of the coordinates that it lies among.
    slack = 4e-6 * (np.abs(wide).max() + float(box.half_extents.max())) + 1e-30
    if np.isfinite(box.half_extents).all():
        assert (np.abs(along) <= box.half_extents + slack).all()


@SETTINGS
@given(st.data(), NUMBERS)
def test_layout_and_type_do_not_change_the_box(data: st.DataObject, kind: np.dtype[Any]) -> None:
    small = st.integers(0, 100)
    points = data.draw(
        hnp.arrays(np.float32, st.tuples(st.integers(1, 20), st.just(3)), elements=small)
    )
    plain = teskorient.bounding_box(points, threads=1)
    other = teskorient.bounding_box(data.draw(views(points.astype(kind))), threads=1)
    assert plain.center.tobytes() == other.center.tobytes()
    assert plain.axes.tobytes() == other.axes.tobytes()
    assert plain.half_extents.tobytes() == other.half_extents.tobytes()


@SETTINGS
@given(st.data(), ANYTHING, SHAPES)
def test_faces_of_any_kind(data: st.DataObject, kind: np.dtype[Any], shape: Any) -> None:
    vertices, _ = shapes.box()
    elements = st.integers(0, 9) if kind.kind in "iu" and data.draw(st.booleans()) else None
    faces = data.draw(hnp.arrays(kind, shape, elements=elements))
    is_right_shape = faces.ndim == 2 and faces.shape[1] == 3 or faces.shape == (0,)
    if faces.ndim == 2:
        faces = data.draw(views(faces))
    is_empty = faces.size == 0 and faces.dtype.kind == "f"
    is_good = (
        is_right_shape
        and (faces.dtype.kind in "iu" or is_empty)
        and bool(((faces >= 0) & (faces < 8)).all())
    )
    try:
        part = Part(vertices, faces)
    except ValueError as error:
        assert not is_good, error
        assert str(error).startswith("faces: ")
        return
    assert is_good
    assert (part.faces == faces.reshape(-1, 3)).all()
    try:
        poses = teskorient.orient(part, threads=1)
    except ValueError:
        return
    assert len(poses) >= 1 and np.isfinite(poses.best.matrix).all()


@SETTINGS
@given(st.data(), NUMBERS, st.sampled_from(["int32", ">i4", "uint8", "int64", ">u2"]))
def test_a_part_is_the_same_however_its_arrays_lie(
    data: st.DataObject, kind: np.dtype[Any], indices: str
) -> None:
    vertices, faces = shapes.box(20, 30, 10)
    plain = teskorient.orient(Part(vertices, faces), threads=1).to_dict()
    part = Part(data.draw(views(vertices.astype(kind))), data.draw(views(faces.astype(indices))))
    assert teskorient.orient(part, threads=1).to_dict() == plain
    assert not part.vertices.flags.writeable and not part.faces.flags.writeable


@pytest.mark.parametrize(
    ("vertices", "faces", "reason"),
    [
        ([[0, 0]], [[0, 0, 0]], "vertices: the shape must be (n, 3), not (1, 2)"),
        ([[0, 0, 0], [1, 2]], [[0, 0, 0]], "vertices: not an array: "),
        (5, [[0, 0, 0]], "vertices: the shape must be (n, 3), not ()"),
        ([["a", "b", "c"]], [[0, 0, 0]], "vertices: the numbers must be real, not <U1"),
        ([[0, 0, 1j]], [[0, 0, 0]], "vertices: the numbers must be real, not complex128"),
        ([[0, 0, 0], [0, np.nan, 1]], [], "vertices: row 1 is not finite as float32: (0, nan, 1)"),
        ([[0, 0, 1e39]], [], "vertices: row 0 is not finite as float32: (0, 0, 1e+39)"),
        ([[0, 0, 0]], [[0, 0, 1]], "faces: row 0 is (0, 0, 1), but there are 1 vertices"),
        ([[0, 0, 0]], [[0, 0, 0], [0, -1, 0]], "faces: row 1 is (0, -1, 0), but there are 1"),
        ([[0, 0, 0]], [[0, 0, 0.5]], "faces: the indices must be integers, not float64"),
        ([[0, 0, 0]], [[0, 0, 0, 0]], "faces: the shape must be (n, 3), not (1, 4)"),
        (np.ma.masked_equal([[0, 0, 7]], 7), [], "vertices: some values are masked"),
    ],
)
def test_the_error_says_what_is_wrong(vertices: Any, faces: Any, reason: str) -> None:
    with pytest.raises(ValueError) as caught:
        Part(vertices, faces)
    assert str(caught.value).startswith(reason)


def test_large_finite_numbers_are_no_error() -> None:
    rows = _arrays.positions_of(np.full((4, 3), 3e38, np.float32), "points")
    assert rows.array.dtype == np.float32


def test_contiguous_arrays_of_floats_are_read_where_they_lie() -> None:
    for kind in (np.float32, np.float64):
        wide = np.zeros((10, 5), kind)
        for array in (np.zeros((10, 3), kind), wide[:, 1:4], wide[::2, :3], wide[:1, 2:]):
            rows = _arrays.positions_of(array, "points")
            assert np.shares_memory(rows.array, array)
            assert rows.address == array.ctypes.data
    faces = np.zeros((10, 3), np.int32)
    assert np.shares_memory(_arrays.triangles_of(faces, 1, "faces").array, faces)


def test_a_part_shows_the_arrays_that_it_was_made_of() -> None:
    vertices, faces = shapes.box()
    part = Part(vertices, faces)
    assert np.shares_memory(part.vertices, vertices) and np.shares_memory(part.faces, faces)
    assert vertices.flags.writeable  # only the part's own view of it is not


def test_a_part_does_not_change_with_its_arrays() -> None:
    vertices, faces = shapes.table()
    part = Part(vertices, faces)
    before = [pose.cost for pose in teskorient.orient(part)]
    vertices *= 3
    faces[:] = 0
    assert [pose.cost for pose in teskorient.orient(part)] == before
