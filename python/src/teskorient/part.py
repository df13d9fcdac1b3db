"""Parts: triangles in millimetres, from arrays, files or other packages' meshes."""

from __future__ import annotations

import os
from ctypes import byref, c_int64
from functools import cached_property
from typing import Any

import numpy as np
from numpy.typing import ArrayLike

from teskorient import _library as c
from teskorient._arrays import (
    Float32s,
    Int32s,
    Rows,
    first_not_finite,
    frozen,
    positions_of,
    triangles_of,
)
from teskorient._call import Progress, Running, check
from teskorient._checks import MeshCheck, mesh_warnings
from teskorient._files import FORMATS, PartWarning, naming, object_name, unit_in_file, warning_of
from teskorient._foreign import arrays_in
from teskorient._units import UNITS, scaled, unit_named
from teskorient.errors import PartFileError

__all__ = ["Part", "PartWarning"]


class Part:
    """A part as a mesh of triangles, in millimetres.

    The library keeps a copy of its own, made once. `Part.vertices` and `Part.faces` are views of the
    arrays given, where these are float32 and int32 and in millimetres: do not change them later.

    Parameters
    ----------
    vertices : array_like, shape (n, 3)
        x, y, z of each vertex, finite. float32 and float64 in native byte order are read where they
        lie; other numbers and byte orders, and arrays whose rows are not contiguous, are converted
        first. Results are those of float32: float64 is rounded to it.
    faces : array_like, shape (m, 3)
        Three indices of vertices each, counter-clockwise as seen from outside. int32 in native byte
        order is read where it lies; other integers are converted first. Triangles share an edge
        where they name the same two vertices: equal positions are not joined.
    unit : {'mm', 'cm', 'm', 'inch', 'foot', 'micron'}
        Unit of `vertices`. Any but millimetres takes a copy.
    name : str
        What reports call the part.

    Raises
    ------
    ValueError
        If a shape, a type, a coordinate or an index is not as described; the text says which.

    See Also
    --------
    Part.load, Part.from_bytes, Part.from_any

    Examples
    --------
    >>> import teskorient
    >>> corners = [[0, 0, 0], [9, 0, 0], [0, 9, 0], [0, 0, 9]]
    >>> sides = [[0, 2, 1], [0, 1, 3], [1, 2, 3], [2, 0, 3]]
    >>> part = teskorient.Part(corners, sides, name="corner")
    >>> part
    Part('corner', 4 triangles, 4 vertices, 9.0 x 9.0 x 9.0 mm)
    """

    def __init__(
        self, vertices: ArrayLike, faces: ArrayLike, unit: str = "mm", *, name: str = ""
    ) -> None:
        positions = positions_of(vertices, "vertices")
        triangles = triangles_of(faces, len(positions.array), "faces")
        short = unit_named(unit)
        if short != "mm":
            positions = Rows(scaled(positions.array.astype(np.float32), short))
            bad = first_not_finite(positions.array)
            if bad is not None:
                raise ValueError(f"vertices: row {bad} is not finite in millimetres")
        self._take(_mesh_of(positions, triangles), name, short)
        # The arrays themselves, where they are what the properties promise.
        if positions.array.dtype == np.float32:
            self.__dict__["vertices"] = frozen(positions.array)
        self.__dict__["faces"] = frozen(triangles.array)

    def _take(self, mesh: c.Handle, name: str, unit: str) -> None:
        self._mesh = mesh
        self._file_warnings: tuple[PartWarning, ...] = ()
        self.name = name
        """What reports call the part: of a file, its path as it was given."""
        self.unit = unit
        """The unit that the file's numbers, or `vertices`, were taken to be in."""
        self.format = ""
        """``STL``, ``OBJ``, ``PLY``, ``OFF`` or ``3MF``; empty if the part is from no file."""
        self.form = ""
        """``binary`` or ``ASCII``; empty of formats with one form."""
        self.unit_from_file = False
        """Whether the file states the unit."""
        self.object_names: tuple[str, ...] = ()
        """Solids of an STL, objects of an OBJ, in the file's order."""

    @classmethod
    def load(
        cls,
        path: str | bytes | os.PathLike[Any],
        unit: str | None = None,
        *,
        threads: int | None = None,
        progress: Progress | None = None,
    ) -> Part:
        """Read an STL, OBJ, PLY, OFF or 3MF file, told apart by its name's extension.

        Corners at equal positions become one vertex. All items of a 3MF come as one part.

        Parameters
        ----------
        path : path-like
            The file.
        unit : {'mm', 'cm', 'm', 'inch', 'foot', 'micron'}, optional
            Unit of its numbers. By default what a 3MF states, and otherwise millimetres.
        threads : int, optional
            How many threads to use; by default as many as the machine has.
        progress : callable, optional
            Called with percentages; what it raises ends the reading.

        Raises
        ------
        PartFileError
            If the file cannot be read.
        """
        file, how, options = c.Handle(), Running(threads, progress), c.new(c.ReadOptions)
        name = os.fsdecode(path)
        encoded = os.fsencode(path)
        if b"\0" in encoded:
            raise ValueError("path: holds a null character")
        with naming(name):
            how.check(
                c.library.tesk_part_read(
                    encoded, byref(options), byref(how.struct), byref(file.pointer)
                )
            )
            return cls._of_file(file, name, unit)

    @classmethod
    def from_bytes(
        cls,
        data: bytes,
        format: str,
        unit: str | None = None,
        *,
        name: str = "",
        threads: int | None = None,
        progress: Progress | None = None,
    ) -> Part:
        """Read a part from what a file holds.

        Parameters
        ----------
        data : bytes
            The file's content.
        format : {'STL', 'OBJ', 'PLY', 'OFF', '3MF'}
            Its format; in lower case and with a dot, as of a file's name, too.
        unit, threads, progress
            As of `load`.
        name : str
            What errors and reports call the file.

        Raises
        ------
        PartFileError
            If the data are no such file.
        """
        data = bytes(data)
        wanted = format.upper().removeprefix(".")
        number = next((k for k, known in FORMATS.items() if known == wanted), None)
        if number is None:
            raise ValueError(f"format must be one of {', '.join(FORMATS.values())}, not {format!r}")
        file, how, options = c.Handle(), Running(threads, progress), c.new(c.ReadOptions)
        with naming(name):
            how.check(
                c.library.tesk_part_read_bytes(
                    data, len(data), number, byref(options), byref(how.struct), byref(file.pointer)
                )
            )
            return cls._of_file(file, name, unit)

    @classmethod
    def _of_file(cls, file: c.Handle, name: str, unit: str | None) -> Part:
        details = c.new(c.PartDetails)
        check(c.library.tesk_part_describe(file.pointer, byref(details)))
        stated = (details.unit or b"").decode("utf-8", "replace")
        warnings = [warning_of(file, i) for i in range(details.warning_count)]
        if unit is not None:
            short = unit_named(unit)
        else:
            short = unit_in_file(stated, warnings)
        mesh = c.Handle()
        check(c.library.tesk_part_mesh(file.pointer, byref(mesh.pointer)))
        if short != "mm":
            mesh = _scaled_mesh(mesh, short)
        part = cls._of_mesh(mesh, name, short)
        part._file_warnings = tuple(warnings)
        part.format = FORMATS[details.format]
        part.form = (details.form or b"").decode()
        part.unit_from_file = bool(stated) and unit is None
        part.object_names = tuple(object_name(file, i) for i in range(details.object_count))
        return part

    @classmethod
    def _of_mesh(cls, mesh: c.Handle, name: str = "", unit: str = "mm") -> Part:
        part = cls.__new__(cls)
        part._take(mesh, name, unit)
        return part

    @classmethod
    def from_any(cls, mesh: Any, unit: str = "mm", *, name: str = "") -> Part:
        """Take a mesh of another package.

        Parameters
        ----------
        mesh : object
            Anything with vertices and triangles: ``.vertices`` or ``.points``, and ``.faces``,
            ``.triangles`` or meshio's ``.cells_dict``, as of trimesh, Open3D and meshio; or a pair
            of arrays. A `Part` is returned as it is.
        unit, name
            As of `Part`.

        Raises
        ------
        ValueError
            If the object is no mesh of triangles, or its arrays are not as `Part` needs them.
        """
        if isinstance(mesh, cls):
            return mesh
        vertices, faces = arrays_in(mesh)
        return cls(vertices, faces, unit, name=name)

    def save(self, path: str | bytes | os.PathLike[Any]) -> None:
        """Write an STL, OBJ, PLY, OFF or 3MF file in millimetres, told apart by its extension.

        The file appears under its name only when it is complete.

        Raises
        ------
        PartFileError
            If it cannot be written, or the extension is of no known format.
        """
        encoded = os.fsencode(path)
        if b"\0" in encoded:
            raise ValueError("path: holds a null character")
        with naming(os.fsdecode(path)):
            check(c.library.tesk_part_write(encoded, self._mesh.pointer))

    def moved(self, matrix: ArrayLike) -> Part:
        """Return the part with its vertices taken through a matrix, such as a pose's.

        Parameters
        ----------
        matrix : array_like, shape (4, 4)
            Affine, for column vectors: ``p' = matrix @ [x, y, z, 1]``. Used as float32.
        """
        m = np.asarray(matrix, dtype=np.float32)
        if m.shape != (4, 4) or not np.isfinite(m).all() or not (m[3] == (0, 0, 0, 1)).all():
            raise ValueError("matrix: must be 4 x 4, finite, and its last row (0, 0, 0, 1)")
        part = Part(moved_positions(self.vertices, m), self.faces, name=self.name)
        return part

    @cached_property
    def vertices(self) -> Float32s:
        """Positions in millimetres: float32, shape (n, 3), read-only."""
        array = np.empty((self._counts[0], 3), np.float32)
        check(c.library.tesk_mesh_copy_positions(self._mesh.pointer, array.ctypes.data, len(array)))
        return frozen(array)

    @cached_property
    def faces(self) -> Int32s:
        """Three indices of vertices each: int32, shape (m, 3), read-only."""
        array = np.empty((self._counts[1], 3), np.int32)
        check(c.library.tesk_mesh_copy_triangles(self._mesh.pointer, array.ctypes.data, len(array)))
        return frozen(array)

    @cached_property
    def _counts(self) -> tuple[int, int]:
        positions, triangles = c_int64(), c_int64()
        check(c.library.tesk_mesh_counts(self._mesh.pointer, byref(positions), byref(triangles)))
        return positions.value, triangles.value

    @cached_property
    def bounds(self) -> Float32s:
        """The lowest and the highest corner of the part's box: float32, shape (2, 3)."""
        if self._counts[0] == 0:
            return frozen(np.zeros((2, 3), np.float32))
        # A zero is +0 whatever it came from.
        low, high = self.vertices.min(axis=0), self.vertices.max(axis=0)
        return frozen(np.stack([low, high]) + np.float32(0))

    @property
    def size(self) -> tuple[float, float, float]:
        """Extents along x, y and z in mm."""
        x, y, z = (float(high) - float(low) for low, high in zip(*self.bounds, strict=True))
        return x, y, z

    @cached_property
    def check(self) -> MeshCheck:
        """How sound the surface is, counted once."""
        return MeshCheck.of(self._mesh)

    @property
    def volume(self) -> float | None:
        """Enclosed volume in mm3; None if the surface is not closed and consistently wound."""
        return self.check.volume

    @property
    def warnings(self) -> tuple[PartWarning, ...]:
        """What may make poses doubtful: the file's warnings, then those of the mesh."""
        return self.warnings_for("support")

    def warnings_for(self, purpose: str) -> tuple[PartWarning, ...]:
        """Warnings with the consequences for poses (``support``) or for boxes (``box``)."""
        found = mesh_warnings(self.check, self.size, self.unit, UNITS, purpose == "support")
        return self._file_warnings + tuple(PartWarning(*warning) for warning in found)

    def __repr__(self) -> str:
        vertices, triangles = self._counts
        x, y, z = self.size
        return (
            f"Part({self.name!r}, {triangles} triangles, {vertices} vertices, "
            f"{x:.1f} x {y:.1f} x {z:.1f} mm)"
        )

    def __getstate__(self) -> dict[str, Any]:
        kept = ("name", "unit", "format", "form", "unit_from_file", "object_names")
        state = {key: getattr(self, key) for key in kept}
        return state | {
            "arrays": (np.array(self.vertices), np.array(self.faces)),
            "_file_warnings": self._file_warnings,
        }

    def __setstate__(self, state: dict[str, Any]) -> None:
        vertices, faces = state.pop("arrays")
        Part.__init__(self, vertices, faces)
        self.__dict__.update(state)


def moved_positions(positions: Float32s, m: Float32s) -> Float32s:
    """Take positions through a matrix for column vectors, rounding after each step as C++ does."""
    x, y, z = positions[:, 0], positions[:, 1], positions[:, 2]
    moved = np.empty((len(positions), 3), np.float32)
    for row in range(3):
        moved[:, row] = x * m[row, 0] + y * m[row, 1] + z * m[row, 2] + m[row, 3]
    return moved


def _mesh_of(positions: Rows, triangles: Rows) -> c.Handle:
    mesh = c.Handle()
    arrays = c.new(
        c.MeshArrays,
        position_type=c.FLOAT32 if positions.array.dtype == np.float32 else c.FLOAT64,
        positions=positions.address,
        position_count=len(positions.array),
        position_stride=positions.stride,
        triangles=triangles.address,
        triangle_count=len(triangles.array),
        triangle_stride=triangles.stride,
    )
    check(c.library.tesk_mesh_create(byref(arrays), byref(mesh.pointer)))
    return mesh


def _scaled_mesh(mesh: c.Handle, unit: str) -> c.Handle:
    held = Part._of_mesh(mesh)
    positions = scaled(held.vertices, unit)
    bad = first_not_finite(positions)
    if bad is not None:
        numbers = ", ".join(f"{value:g}" for value in positions[bad])
        raise PartFileError(
            f"vertex {bad + 1} has a coordinate that is not finite in millimetres: ({numbers})"
        )
    return _mesh_of(Rows(positions), Rows(held.faces))
