"""Every number and text is that of the program, to the last bit."""

from __future__ import annotations

import json
import subprocess
from collections.abc import Callable, Iterator
from pathlib import Path
from typing import Any

import numpy as np
import pytest

import shapes
import teskorient
from conftest import sample_meshes
from teskorient import Part, _page

MESHES = sample_meshes()


def differences(ours: Any, programs: Any, where: str = "") -> Iterator[str]:
    """Where two values of JSON differ in a name, an order, a type or a bit."""
    if isinstance(ours, dict) and isinstance(programs, dict) and list(ours) == list(programs):
        for key in ours:
            yield from differences(ours[key], programs[key], f"{where}/{key}")
    elif isinstance(ours, list) and isinstance(programs, list) and len(ours) == len(programs):
        for i, (mine, other) in enumerate(zip(ours, programs, strict=True)):
            yield from differences(mine, other, f"{where}/{i}")
    elif repr(ours) != repr(programs):
        yield f"{where}: {ours!r}, but {programs!r}"


def run(program: Path, command: str, part: Path, *options: str) -> Any:
    together = ["--together"] if part.suffix == ".3mf" else []
    text = subprocess.run(
        [program, command, part, "--json", "--quiet", *together, *options],
        capture_output=True,
        check=True,
    ).stdout
    return json.loads(text)


def expect_the_same(ours: dict[str, Any], programs: Any) -> None:
    assert list(differences(ours, programs)) == []


Case = tuple[str, tuple[str, ...], Callable[[Part], dict[str, Any]]]

CASES: dict[str, Case] = {
    "orient": ("orient", (), lambda part: teskorient.orient(part).to_dict()),
    "least-support": (
        "orient",
        ("--goal", "least-support", "--overhang-angle", "45.5", "--keep-off", "0,0.6,0.8"),
        lambda part: teskorient.orient(
            part, "least-support", 45.5, keep_off=[(0, 0.6, 0.8)]
        ).to_dict(),
    ),
    "rank": ("orient", ("--goal", "weights"), lambda part: teskorient.rank(part).to_dict()),
    "rank-weights": (
        "orient",
        ("--height-weight", "3", "--support-volume-weight", "2", "--seed", "7",
         "--base-height", "0.7", "--overhang-angle", "40.1"),
        lambda part: teskorient.rank(
            part, 40.1, height_weight=3, support_volume_weight=2, base_height=0.7, seed=7
        ).to_dict(),
    ),
    "box": ("box", (), lambda part: teskorient.bounding_box(part).to_dict()),
    "box-base-height": (
        "box",
        ("--criterion", "base-height"),
        lambda part: teskorient.bounding_box(part, "base-height").to_dict(),
    ),
    "box-base-area": (
        "box",
        ("--criterion", "base-area"),
        lambda part: teskorient.bounding_box(part, "base-area").to_dict(),
    ),
    "box-around-axis": (
        "box",
        ("--criterion", "around-axis", "--axis", "1,2.5,-0.1"),
        lambda part: teskorient.bounding_box(part, "around-axis", (1, 2.5, -0.1)).to_dict(),
    ),
    "box-around-z": (
        "box",
        ("--criterion", "around-axis", "--axis", "0,0,-3"),
        lambda part: teskorient.bounding_box(part, "around-axis", (0, 0, -3)).to_dict(),
    ),
    "box-principal": (
        "box",
        ("--criterion", "principal"),
        lambda part: teskorient.bounding_box(part, "principal").to_dict(),
    ),
    "lay-flat": ("lay-flat", (), lambda part: teskorient.lay_flat(part).to_dict()),
}  # fmt: skip


@pytest.mark.skipif(not MESHES, reason="there are no sample meshes")
@pytest.mark.parametrize("name", CASES)
@pytest.mark.parametrize("mesh", MESHES, ids=lambda path: path.name)
def test_sample_meshes(program: Path, mesh: Path, name: str) -> None:
    command, options, ours = CASES[name]
    expect_the_same(ours(Part.load(mesh)), run(program, command, mesh, *options))


@pytest.fixture(scope="module")
def made(tmp_path_factory: pytest.TempPathFactory) -> dict[str, Path]:
    """Parts with all that the reports warn of."""
    folder = tmp_path_factory.mktemp("parts")
    corners, sides = shapes.bumpy_ball(12)
    cube, faces = shapes.box(0.5, 0.25, 0.125)
    arrays = {
        "table.stl": shapes.turned(shapes.table(), 2.0, (1, 2, 3)),
        "open.off": (corners, sides[3:]),
        "inside-out.obj": (corners, sides[:, ::-1]),
        "inconsistent.ply": (corners, np.concatenate((sides[:40, ::-1], sides[40:]))),
        "tiny.stl": (cube, faces),
        "huge.3mf": (corners * 1e4, sides),
        "doubled.obj": shapes.joined([shapes.box(), shapes.box(20, 30, -10)]),
        "sliver.off": (corners, np.concatenate((sides, ((5, 5, 9), (1, 2, 1))))),
    }
    paths = {}
    for name, (positions, triangles) in arrays.items():
        paths[name] = folder / name
        Part(positions, triangles).save(paths[name])
    return paths


@pytest.mark.parametrize("case", CASES)
def test_made_parts(program: Path, made: dict[str, Path], case: str) -> None:
    command, options, ours = CASES[case]
    warned = set()
    for path in made.values():
        result = ours(Part.load(path))
        expect_the_same(result, run(program, command, path, *options))
        warned |= {warning["code"] for warning in result["input"]["warnings"]}
    assert warned >= {"open-edges", "inconsistent-winding", "inside-out", "unusual-size",
                      "degenerate-triangles"}  # fmt: skip


@pytest.mark.parametrize("unit", ["cm", "m", "inch", "foot", "micron"])
def test_units(program: Path, made: dict[str, Path], unit: str) -> None:
    path = made["tiny.stl"]
    ours = teskorient.orient(Part.load(path, unit)).to_dict()
    expect_the_same(ours, run(program, "orient", path, "--units", unit))


def test_a_build_volume(program: Path, made: dict[str, Path]) -> None:
    ours = teskorient.orient(Part.load(made["table.stl"]), fits=(85, 60, 60.3)).to_dict()
    expect_the_same(ours, run(program, "orient", made["table.stl"], "--fits", "85x60x60.3"))


def test_no_pose_says_what_the_program_says(program: Path, made: dict[str, Path]) -> None:
    path = made["table.stl"]
    run = subprocess.run([program, "orient", path, "--fits", "9x9x10"], capture_output=True)
    with pytest.raises(teskorient.NoPoseError) as caught:
        teskorient.orient(Part.load(path), fits=(9, 9, 10))
    assert run.stderr.decode().rstrip().endswith(f"{path}: {caught.value}")
    assert caught.value.passed_over is not None and caught.value.passed_over.too_large > 0
    assert caught.value.as_it_lies is not None and caught.value.as_it_lies.measures.height > 0


def test_turned_parts_are_those_that_the_program_writes(
    program: Path, made: dict[str, Path], tmp_path: Path
) -> None:
    part = Part.load(made["table.stl"])
    turned = {
        "orient": teskorient.orient(part).best.apply(),
        "lay-flat": teskorient.lay_flat(part).apply(),
    }
    for command, ours in turned.items():
        run(program, command, made["table.stl"], "--output", str(tmp_path / "theirs.ply"))
        ours.save(tmp_path / "ours.ply")
        assert (tmp_path / "ours.ply").read_bytes() == (tmp_path / "theirs.ply").read_bytes()


def test_broken_files_are_refused_in_the_programs_words(program: Path, tmp_path: Path) -> None:
    broken = {
        "missing.stl": None,
        "empty.stl": b"",
        "index.obj": b"v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 9\n",
        "cut.ply": b"ply\nformat ascii 1.0\nelement vertex 3\n",
        "what.xyz": b"1 2 3",
        "bad.3mf": b"PK no archive",
        "none.off": b"OFF\n0 0 0\n",
    }
    for name, content in broken.items():
        path = tmp_path / name
        if content is not None:
            path.write_bytes(content)
        said = subprocess.run([program, "orient", path], capture_output=True).stderr.decode()
        with pytest.raises(teskorient.PartFileError) as caught:
            Part.load(path)
        assert said.splitlines()[-1] == f"tesk-orient: {caught.value}"
        assert caught.value.filename == str(path)


def page_parts(text: str) -> tuple[str, Any, str]:
    """A page before, of and after its data."""
    begin = text.index('id="data">') + len('id="data">')
    end = text.index("</script>", begin)
    return text[:begin], json.loads(text[begin:end]), text[end:]


def expect_the_programs_page(program: Path, path: Path, folder: Path) -> None:
    run(program, "orient", path, "--report", str(folder / "page.html"))
    with open(folder / "page.html", newline="", encoding="utf-8") as file:
        before, data, after = page_parts(file.read())
    ours = page_parts(_page.page(teskorient.orient(Part.load(path))))
    assert (ours[0], ours[2]) == (before, after)
    expect_the_same(ours[1], data)


def needs_page_files() -> None:
    try:
        _page._assets()
    except _page.NoPageError as reason:
        pytest.skip(str(reason))


def test_pages_of_made_parts(program: Path, made: dict[str, Path], tmp_path: Path) -> None:
    needs_page_files()
    for path in made.values():
        expect_the_programs_page(program, path, tmp_path)


@pytest.mark.skipif(not MESHES, reason="there are no sample meshes")
@pytest.mark.parametrize("mesh", MESHES, ids=lambda path: path.name)
def test_pages_of_sample_meshes(program: Path, mesh: Path, tmp_path: Path) -> None:
    needs_page_files()
    part = Part.load(mesh)
    if len(part.faces) > _page.MOST_TRIANGLES:
        pytest.skip("is thinned out, by another version of meshoptimizer")
    expect_the_programs_page(program, mesh, tmp_path)
