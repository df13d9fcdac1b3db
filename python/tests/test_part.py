"""Parts: files, other packages' meshes, copies."""

from __future__ import annotations

import os
import pickle
from pathlib import Path
from types import SimpleNamespace

import numpy as np
import pytest

import shapes
import teskorient
from teskorient import Part

FORMATS = ["stl", "obj", "ply", "off", "3mf"]


@pytest.fixture
def part() -> Part:
    return Part(*shapes.table(), name="table")


@pytest.mark.parametrize("extension", FORMATS)
def test_files_hold_what_was_saved(part: Part, tmp_path: Path, extension: str) -> None:
    path = (
        tmp_path / f"größe \udcff.{extension}"
        if os.name == "posix"
        else tmp_path / f"größe.{extension}"
    )
    part.save(path)
    read = Part.load(path)
    assert read.name == str(path)
    assert read.format == extension.upper()
    assert read.unit_from_file == (extension == "3mf")
    assert read.size == part.size
    assert len(read.faces) == len(part.faces)
    # Those of an STL come in the order of the triangles.
    assert np.array_equal(read.vertices[read.faces], part.vertices[part.faces])


@pytest.mark.parametrize("extension", FORMATS)
def test_bytes_are_read_as_files_are(part: Part, tmp_path: Path, extension: str) -> None:
    path = tmp_path / f"part.{extension}"
    part.save(path)
    for name in (extension, extension.upper(), f".{extension}"):
        read = Part.from_bytes(path.read_bytes(), name, name=str(path))
        assert teskorient.orient(read).to_dict() == teskorient.orient(Part.load(path)).to_dict()


def test_broken_bytes_are_named() -> None:
    with pytest.raises(teskorient.PartFileError, match=r"^s3://bucket/a\.stl: .*empty") as caught:
        Part.from_bytes(b"", "stl", name="s3://bucket/a.stl")
    assert caught.value.filename == "s3://bucket/a.stl"
    again = pickle.loads(pickle.dumps(caught.value))
    assert (str(again), again.filename) == (str(caught.value), caught.value.filename)
    with pytest.raises(ValueError, match="format must be one of STL, OBJ, PLY, OFF, 3MF, not 'x'"):
        Part.from_bytes(b"", "x")


def test_a_file_that_cannot_be_written_is_an_os_error(part: Part, tmp_path: Path) -> None:
    with pytest.raises(OSError, match="no-folder"):
        part.save(tmp_path / "no-folder" / "part.stl")
    with pytest.raises(teskorient.PartFileError, match="part.what"):
        part.save(tmp_path / "part.what")
    with pytest.raises(ValueError, match="null character"):
        part.save("a\0.stl")
    with pytest.raises(ValueError, match="null character"):
        Part.load("a\0.stl")


def test_units_scale(part: Part) -> None:
    inches = Part(part.vertices, part.faces, unit="inch")
    assert inches.size == tuple(float(np.float32(size * 25.4)) for size in part.size)
    assert Part(part.vertices, part.faces, unit="meter").unit == "m"
    with pytest.raises(
        ValueError, match="unit must be one of mm, cm, m, inch, foot, micron, not 'x'"
    ):
        Part(part.vertices, part.faces, unit="x")
    with pytest.raises(ValueError, match="vertices: row 1 is not finite in millimetres"):
        Part(np.array([[0, 0, 0], [1e38, 0, 0]]), [], unit="m")


def test_numbers_that_a_unit_makes_too_large_are_the_files_error(tmp_path: Path) -> None:
    path = tmp_path / "far.off"
    path.write_text("OFF\n3 1 0\n0 0 0\n1e38 0 0\n0 1 0\n3 0 1 2\n")
    with pytest.raises(teskorient.PartFileError) as caught:
        Part.load(path, "m")
    text = "vertex 2 has a coordinate that is not finite in millimetres: (inf, 0, 0)"
    assert str(caught.value) == f"{path}: {text}"


def test_a_unit_that_3mf_does_not_know_is_a_warning(tmp_path: Path) -> None:
    import zipfile

    Part(*shapes.box()).save(tmp_path / "a.3mf")
    with (
        zipfile.ZipFile(tmp_path / "a.3mf") as old,
        zipfile.ZipFile(tmp_path / "b.3mf", "w") as new,
    ):
        for name in old.namelist():
            new.writestr(name, old.read(name).replace(b'unit="millimeter"', b'unit="cubit"'))
    part = Part.load(tmp_path / "b.3mf")
    assert [warning.code for warning in part.warnings] == ["unknown-unit"]
    assert part.unit == "mm"


@pytest.mark.parametrize(
    "mesh",
    [
        SimpleNamespace(vertices="v", faces="f"),
        SimpleNamespace(vertices="v", triangles="f"),
        SimpleNamespace(points="v", cells_dict={"triangle": "f", "line": []}),
        ("v", "f"),
    ],
)
def test_meshes_of_other_packages(mesh: object, part: Part) -> None:
    arrays = {"v": part.vertices, "f": part.faces}
    if isinstance(mesh, SimpleNamespace):
        for key, value in vars(mesh).items():
            if key == "cells_dict":
                mesh.cells_dict["triangle"] = part.faces
            else:
                setattr(mesh, key, arrays[value])
    else:
        mesh = (part.vertices, part.faces)
    taken = Part.from_any(mesh)
    assert np.array_equal(taken.faces, part.faces)
    assert np.shares_memory(taken.vertices, part.vertices)
    assert teskorient.orient(mesh).best.cost == teskorient.orient(part).best.cost  # type: ignore[arg-type]


def test_what_is_no_mesh_is_refused() -> None:
    with pytest.raises(ValueError, match="a dict has no triangles"):
        Part.from_any({})
    with pytest.raises(ValueError, match=r"needs \.vertices and \.faces"):
        Part.from_any(SimpleNamespace(vertices=[]))


def test_trimesh_parts() -> None:
    trimesh = pytest.importorskip("trimesh")
    part = Part.from_any(trimesh.creation.box((20, 30, 10)), name="box")
    assert part.size == (20, 30, 10) and part.volume == 6000


def test_parts_can_be_pickled(part: Part, tmp_path: Path) -> None:
    part.save(tmp_path / "part.stl")
    read = Part.load(tmp_path / "part.stl")
    again = pickle.loads(pickle.dumps(read))
    assert repr(again) == repr(read)
    assert teskorient.orient(again).to_dict() == teskorient.orient(read).to_dict()


def test_results_can_be_pickled(part: Part) -> None:
    poses = teskorient.orient(part)
    again = pickle.loads(pickle.dumps(poses))
    assert again.to_dict() == poses.to_dict()


def test_moved_parts(part: Part) -> None:
    turn = [[0, -1, 0, 5], [1, 0, 0, 6], [0, 0, 1, 7], [0, 0, 0, 1]]
    x, y, z = part.vertices.T
    assert np.array_equal(part.moved(turn).vertices, np.stack((5 - y, 6 + x, z + 7), axis=1))
    for bad in (np.identity(3), np.full((4, 4), np.nan), np.ones((4, 4))):
        with pytest.raises(ValueError, match="matrix: must be 4 x 4, finite"):
            part.moved(bad)


def test_a_part_says_what_it_is(part: Part) -> None:
    assert repr(part) == "Part('table', 60 triangles, 40 vertices, 80.0 x 50.0 x 39.0 mm)"
    assert part.volume == 80 * 50 * 5 + 4 * 6 * 6 * 35
    assert part.check.is_sound and part.warnings == ()
    empty = Part(np.empty((0, 3)), np.empty((0, 3)))
    assert empty.size == (0.0, 0.0, 0.0)


def test_warnings_say_what_is_doubtful() -> None:
    vertices, faces = shapes.box()
    codes = [warning.code for warning in Part(vertices, faces[1:]).warnings]
    assert codes == ["open-edges"]
    warning = Part(vertices, faces[1:]).warnings[0]
    assert warning.count == 3
    assert warning.text == (
        "the surface is not closed: 3 open edges; support figures are approximate"
    )
    assert Part(vertices, faces[1:]).volume is None
    assert [w.code for w in Part(vertices, faces[:, ::-1]).warnings] == ["inside-out"]


def test_triangles_with_corners_of_their_own_are_closed_all_the_same() -> None:
    vertices, faces = shapes.box()
    assert Part(vertices[faces].reshape(-1, 3), np.arange(36).reshape(-1, 3)).warnings == ()
