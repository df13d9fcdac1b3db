"""The worked examples of the guide run and do what they say."""

from __future__ import annotations

import json
import subprocess
import sys
from pathlib import Path
from typing import Any

import numpy as np
import pytest

import teskorient

EXAMPLES = Path(__file__).parents[1] / "examples"


def run(name: str, *arguments: Any) -> str:
    """What an example prints."""
    words = [sys.executable, str(EXAMPLES / name), *map(str, arguments)]
    ended = subprocess.run(words, capture_output=True, encoding="utf-8", timeout=120)
    assert ended.returncode == 0, ended.stderr
    return ended.stdout


def plate(x: float, y: float, z: float) -> teskorient.Part:
    corners = [(a, b, c) for c in (0, z) for b in (0, y) for a in (0, x)]
    faces = [(0, 2, 1), (1, 2, 3), (4, 5, 6), (5, 7, 6), (0, 1, 4), (1, 5, 4)]
    faces += [(2, 6, 3), (3, 6, 7), (0, 4, 2), (2, 4, 6), (1, 3, 5), (3, 7, 5)]
    return teskorient.Part(corners, faces)


def turned(part: teskorient.Part, degrees: float) -> teskorient.Part:
    """The part turned about x and then z."""
    c, s = np.cos(np.radians(degrees)), np.sin(np.radians(degrees))
    about_x = np.array([[1, 0, 0, 0], [0, c, -s, 0], [0, s, c, 0], [0, 0, 0, 1]])
    about_z = np.array([[c, -s, 0, 0], [s, c, 0, 0], [0, 0, 1, 0], [0, 0, 0, 1]])
    return part.moved(about_z @ about_x)


def test_a_trimesh_part_becomes_a_turned_stl(tmp_path: Path) -> None:
    pytest.importorskip("trimesh")
    output = tmp_path / "turned.stl"
    said = run("trimesh_to_turned_stl.py", output)
    assert "Best: lies upside down: no support instead of" in said
    assert abs(float(said.rsplit(": ", 1)[1].split()[0])) < 0.001
    funnel = teskorient.Part.load(output)
    # It stands on its wide end.
    assert funnel.size == pytest.approx((60.0, 60.0, 20.0), abs=0.5)
    low = funnel.vertices[funnel.vertices[:, 2] < 0.001]
    assert np.ptp(low[:, 0]) > 55.0


def test_a_folder_is_oriented_on_a_local_cluster(tmp_path: Path) -> None:
    pytest.importorskip("distributed")
    turned(plate(40, 30, 5), 30).save(tmp_path / "tilted.stl")
    plate(10, 20, 30).save(tmp_path / "block.stl")
    (tmp_path / "broken.stl").write_bytes(b"solid\n")
    said = sorted(run("folder_on_local_cluster.py", tmp_path).splitlines())
    assert len(said) == 4
    assert said[0].startswith("All supports together take about 0.0 m")
    assert said[1].startswith("block.stl: 10.0 mm high, 0 mm of support")
    assert said[2].startswith(f"broken.stl: {tmp_path / 'broken.stl'}: ")
    assert said[3].startswith("tilted.stl: 5.0 mm high, 0 mm of support")


def test_the_notebook_shows_the_poses() -> None:
    nbclient = pytest.importorskip("nbclient")
    nbformat = pytest.importorskip("nbformat")
    pytest.importorskip("ipykernel")
    path = EXAMPLES / "picture_in_notebook.ipynb"
    notebook = nbformat.read(path, 4)
    assert all(not cell.get("outputs") for cell in notebook.cells), "outputs are not committed"
    nbclient.NotebookClient(notebook, timeout=120, kernel_name="python3").execute()
    outputs = [output for cell in notebook.cells for output in cell.get("outputs", [])]
    assert any("no support instead of" in output.get("text", "") for output in outputs)
    picture = outputs[-1]["data"]["text/html"]
    has_page = (Path(teskorient.__file__).parent / "page").is_dir()
    assert picture.startswith("<iframe" if has_page else "<table")
    assert json.loads(path.read_text("utf-8"))["nbformat"] == 4


@pytest.mark.parametrize(
    ("size", "as_it_lies", "chosen"),
    [((90, 60, 15), "M", "S"), ((590, 40, 30), "no carton", "tube"), ((90, 60, 55), "M", "M")],
)
def test_a_box_for_packing(
    tmp_path: Path, size: tuple[float, float, float], as_it_lies: str, chosen: str
) -> None:
    path = tmp_path / "part.stl"
    turned(plate(*size), 25).save(path)
    said = run("box_for_packing.py", path)
    assert f"as it lies: {as_it_lies}; turned: {chosen}" in said
    a, b, c = sorted(map(float, size), reverse=True)
    assert f"into carton {chosen} as {a:.1f} x {b:.1f} x {c:.1f} mm" in said


def test_what_fits_no_carton_has_its_lowest_box_named(tmp_path: Path) -> None:
    path = tmp_path / "part.stl"
    plate(700, 300, 200).save(path)
    assert "its lowest box is 200.0 mm high" in run("box_for_packing.py", path)
