"""What results are made of, arguments that are refused, and what notebooks show."""

from __future__ import annotations

import dataclasses
import json
from html.parser import HTMLParser
from typing import Any

import numpy as np
import pytest

import shapes
import teskorient
from teskorient import Part, _json, _page, _table


@pytest.fixture(scope="module")
def part() -> Part:
    return Part(*shapes.turned(shapes.table(), 2.0, (1, 2, 3)), name="dir/<table>.stl")


@pytest.mark.parametrize(
    ("arguments", "reason"),
    [
        ({"goal": "cheap"}, "goal must be one of balanced, least-support, not 'cheap'"),
        ({"overhang_angle": 90.5}, "overhang_angle must be from 0 to 90 degrees, not 90.5"),
        ({"overhang_angle": float("nan")}, "overhang_angle must be from 0 to 90 degrees, not nan"),
        ({"fits": (1, 2)}, "fits: must be three finite numbers, not (1, 2)"),
        ({"fits": (1, 2, 0)}, "fits: all three sizes must be above zero, not (1.0, 2.0, 0.0)"),
        ({"fits": "250x210x210"}, "fits: must be three finite numbers, not '250x210x210'"),
        ({"keep_off": [(0, 0, 0)]}, "keep_off[0]: the direction is zero"),
        ({"keep_off": [(0, 0, 1), 5]}, "keep_off[1]: must be a direction, not 5"),
        ({"keep_off": [((0, 0, 1), 181)]}, "keep_off[0]: the angle must be from 0 to 180 degrees"),
    ],
)
def test_wrong_arguments_of_orient(part: Part, arguments: dict[str, Any], reason: str) -> None:
    with pytest.raises(ValueError) as caught:
        teskorient.orient(part, **arguments)
    assert str(caught.value).startswith(reason)


@pytest.mark.parametrize(
    "arguments",
    [
        {"height_weight": -1},
        {"support_area_weight": 1.5},
        {"box_volume_weight": 1_000_001},
        {"base_height": -2.0},
        {"seed": -1},
        {"seed": 2**32},
        {"overhang_angle": 91.0},
    ],
)
def test_wrong_arguments_of_rank(part: Part, arguments: dict[str, Any]) -> None:
    name = next(iter(arguments))
    with pytest.raises(ValueError, match=f"^{name} must be "):
        teskorient.rank(part, **arguments)


@pytest.mark.parametrize(
    ("arguments", "reason"),
    [
        ({"criterion": "weight"}, "criterion must be one of volume, base-area"),
        ({"criterion": "around-axis"}, "criterion='around-axis' needs an axis"),
        ({"criterion": "around-axis", "axis": (0, 0, 0)}, "axis: the direction is zero"),
        ({"axis": (0, 0, 1)}, "axis goes with criterion='around-axis' only"),
    ],
)
def test_wrong_arguments_of_boxes(part: Part, arguments: dict[str, Any], reason: str) -> None:
    with pytest.raises(ValueError) as caught:
        teskorient.bounding_box(part, **arguments)
    assert str(caught.value).startswith(reason)


def test_boxes_need_a_point() -> None:
    with pytest.raises(ValueError, match="points: there is none"):
        teskorient.bounding_box(np.empty((0, 3)))
    hull = teskorient.convex_hull([])
    assert (hull.dimension, len(hull.vertices), len(hull.faces)) == (-1, 0, 0)


def test_a_part_without_surface_has_no_poses() -> None:
    with pytest.raises(ValueError, match="no triangles"):
        teskorient.orient(Part([[0, 0, 0]], []))


def test_measure_gives_what_orient_gives(part: Part) -> None:
    for pose in teskorient.orient(part):
        assert teskorient.measure(part, pose.rotation) == pose.measures
        assert teskorient.measure(part, pose.rotation[:3, :3].tolist()) == pose.measures


@pytest.mark.parametrize(
    "matrix", [np.ones((3, 3)), np.diag((1, 1, -1)), np.full((3, 3), np.nan), np.identity(2), "x"]
)
def test_measure_wants_a_rotation(part: Part, matrix: Any) -> None:
    with pytest.raises(ValueError, match="^rotation: "):
        teskorient.measure(part, matrix)


def test_matrices_are_for_column_vectors(part: Part) -> None:
    pose = teskorient.orient(part).best
    homogeneous = np.column_stack((part.vertices, np.ones(len(part.vertices), np.float32)))
    moved = (pose.matrix @ homogeneous.T).T[:, :3]
    assert np.allclose(moved, pose.apply().vertices, atol=1e-3)
    assert abs(moved[:, 2].min()) < 1e-3
    assert np.allclose(pose.rotation[:3, :3] @ pose.up, (0, 0, 1), atol=1e-6)
    assert np.allclose(moved[:, 2].max(), pose.measures.height, atol=1e-3)
    rows = pose._part and _json.pose_dict(pose)["matrix"]
    assert np.array_equal(np.array(rows, np.float32).T, pose.matrix)


def test_results_are_frozen(part: Part) -> None:
    poses = teskorient.orient(part)
    box = teskorient.bounding_box(part)
    for result, name in ((poses, "part"), (poses.best, "rank"), (box, "center")):
        with pytest.raises(dataclasses.FrozenInstanceError):
            setattr(result, name, None)
    for array in (poses.best.rotation, poses.best.matrix, box.axes, part.vertices):
        with pytest.raises(ValueError, match="read-only"):
            array[0] = 0
    assert dataclasses.replace(poses.best.measures, height=1.0).height == 1.0


def test_results_say_what_they_are(part: Part) -> None:
    poses = teskorient.orient(part)
    assert repr(poses).startswith(f"Poses({len(poses)} poses of 'dir/<table>.stl': Best: lies on ")
    assert repr(poses[0]).startswith("Pose(rank 1: up (")
    assert repr(poses.as_it_lies).startswith("Pose(rank 0: up (0.000, 0.000, 1.000), cost ")
    assert repr(teskorient.bounding_box(part)).startswith("Box(80.000 x 50.000 x 39.000 mm, ")
    assert repr(teskorient.rank(part)) == "Ranking(12 orientations of 'dir/<table>.stl')"
    for result in (poses, poses[0], teskorient.lay_flat(part), teskorient.convex_hull(part)):
        assert len(repr(result)) < 300


def test_every_candidate_is_among_the_records(part: Part) -> None:
    twelve, every = teskorient.rank(part), teskorient.rank(part, every=True)
    assert len(twelve) == 12 and 18 <= len(every) <= 58
    scores = [o.score for o in every]
    assert scores == sorted(scores)
    assert {o.matrix.tobytes() for o in twelve} <= {o.matrix.tobytes() for o in every}


def test_a_box_has_its_corners(part: Part) -> None:
    box = teskorient.bounding_box(part)
    assert np.allclose(np.linalg.norm(box.corners - box.center, axis=1),
                       np.linalg.norm(box.half_extents), rtol=1e-5)  # fmt: skip
    assert box.volume == pytest.approx(80 * 50 * 39, rel=1e-4)
    assert box.fill_ratio == pytest.approx((part.volume or 0) / box.volume)
    assert teskorient.bounding_box(part.vertices).fill_ratio is None
    assert "input" not in teskorient.bounding_box(part.vertices).to_dict()


def test_json_has_no_number_that_is_none() -> None:
    assert _json.text_of({"a": [float("nan"), -0.0, 1e22], "b": "ä<"}) == (
        '{"a":[null,-0.0,1e+22],"b":"ä<"}'
    )


class Outline(HTMLParser):
    """Which elements there are, and whether each is closed."""

    def __init__(self, text: str) -> None:
        super().__init__()
        self.names: list[str] = []
        self.open: list[str] = []
        self.attributes: dict[str, str | None] = {}
        self.feed(text)

    def handle_starttag(self, tag: str, attrs: list[tuple[str, str | None]]) -> None:
        self.names.append(tag)
        self.open.append(tag)
        self.attributes.update(attrs)

    def handle_endtag(self, tag: str) -> None:
        assert self.open.pop() == tag


def test_the_table_is_whole_and_escaped(part: Part) -> None:
    poses = teskorient.orient(part)
    outline = Outline(_table.table_html(poses, "a & b <i>"))
    assert outline.open == [] and "i" not in outline.names and "table" in outline.names
    assert outline.names.count("tr") == len(poses) + 2
    assert outline.names.count("caption") == 1


def test_notebooks_show_the_page_in_a_frame(part: Part) -> None:
    poses = teskorient.orient(part)
    try:
        page = _page.page(poses)
    except _page.NoPageError:
        assert poses._repr_html_() == _table.table_html(
            poses, "This build of teskorient has no three.js to draw with."
        )
        return
    outline = Outline(poses._repr_html_())
    assert outline.names == ["iframe"]
    assert outline.attributes["sandbox"] == "allow-scripts"
    assert outline.attributes["srcdoc"] == page
    data = page.partition('id="data">')[2].partition("</script>")[0]
    assert json.loads(data) == json.loads(_json.text_of(_page.data_of(poses)))


def test_large_parts_are_thinned_out_for_pages() -> None:
    part = Part(*shapes.bumpy_ball(40))
    with pytest.MonkeyPatch.context() as patch:
        patch.setitem(__import__("sys").modules, "meshoptimizer", None)
        with pytest.raises(_page.NoPageError, match="install meshoptimizer"):
            _page.mesh_data(part, 1000)
    pytest.importorskip("meshoptimizer")
    mesh = _page.mesh_data(part, 1000)
    assert 500 < mesh["triangles"] <= 1500 and mesh["sourceTriangles"] == len(part.faces)
    assert 0 < mesh["deviationMm"] < 3
