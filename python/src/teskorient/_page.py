"""The report's page: the program's template, filled with the same data as the program fills it with."""

from __future__ import annotations

import base64
import hashlib
import os
from dataclasses import dataclass
from functools import cache
from html import escape
from pathlib import Path
from typing import Any, Final

import numpy as np
from numpy.typing import NDArray

from teskorient import _json, _library, _table, _texts
from teskorient._arrays import Float32s
from teskorient.part import Part
from teskorient.poses import Poses

MOST_TRIANGLES: Final = 200_000
_LAST_NUMBER: Final = 65535.0
_FOLDER: Final = Path(__file__).parent / "page"

_Corners = NDArray[np.uint32]


class NoPageError(Exception):
    """There is no page, and why; a notebook shows a table instead."""


@dataclass(frozen=True)
class _Assets:
    """What every page holds, as the build put it beside this file."""

    template: str
    style: str
    three: str
    script: str
    licence: str
    revision: str


@cache
def _assets() -> _Assets:
    names = ("page.html", "page.css", "three.js", "page.js", "licence.txt", "revision.txt")
    try:
        return _Assets(*(_FOLDER.joinpath(name).read_bytes().decode() for name in names))
    except FileNotFoundError:
        raise NoPageError("This build of teskorient has no three.js to draw with.") from None


def page(poses: Poses) -> str:
    """Return the page that ``tesk-orient orient --together --report`` writes of these poses.

    Parts of more than 200,000 triangles are thinned out by the package meshoptimizer, whose version
    may differ from the program's.

    Raises
    ------
    NoPageError
        If what pages are made of was not there when the package was built, or meshoptimizer is
        needed and missing.
    """
    assets = _assets()
    marks = {
        "TITLE": escape(_title(poses)).replace("&#x27;", "'"),
        "POLICY": _policy(assets),
        "STYLE": assets.style,
        "THREE": assets.three,
        "LICENCE": escape(assets.licence).replace("&#x27;", "'"),
        "DATA": _json.text_of(data_of(poses)).replace("<", "\\u003c"),
        "SCRIPT": assets.script,
    }
    parts = assets.template.split("@")
    return "".join(
        part if i % 2 == 0 else marks.get(part, f"@{part}@") for i, part in enumerate(parts)
    )


def data_of(poses: Poses) -> _json.Json:
    """Return the page's data: ``tesk-orient/page/1``."""
    result = _json.poses_dict(poses)
    members = ("input", "chosenRank", "noneStands", "passedOver", "asItLies", "poses")
    # Pages are sent to others, and where the file lay is not theirs to know.
    del result["input"]["file"]
    title = _title(poses)
    version: bytes = _library.library.tesk_version()
    return {
        "schema": "tesk-orient/page/1",
        "title": title,
        "program": {"name": "tesk-orient", "version": version.decode()},
        "three": _assets().revision,
        "units": {"length": "mm", "mass": "g"},
        "filament": {"material": "PLA", "diameterMm": 1.75, "densityGPerCm3": 1.24},
        "settings": result["settings"],
        "warnings": [],
        "objects": [
            {
                "name": title,
                "partNumber": "",
                "copies": 1,
                "reason": _texts.reason_for(poses),
                **{member: result[member] for member in members},
                "mesh": mesh_data(poses.part),
            }
        ],
    }


def _title(poses: Poses) -> str:
    return os.path.basename(poses.part.name)


def _policy(assets: _Assets) -> str:
    def source(text: str) -> str:
        digest = base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()
        return f"'sha256-{digest}'"

    return (
        f"default-src 'none'; script-src {source(assets.three)} {source(assets.script)}; "
        f"style-src {source(assets.style)}; base-uri 'none'; form-action 'none'"
    )


def mesh_data(part: Part, limit: int = MOST_TRIANGLES) -> _json.Json:
    """Return a mesh as a page holds it: see ``PageMesh.h``."""
    corners, deviation = _thinned(part, limit)
    used, corners = _renumbered(corners)
    kept = part.vertices[used]
    scales = [_scale(kept[:, axis]) for axis in range(3)]
    numbers = np.empty(kept.shape, "<u2")
    for axis, (origin, step) in enumerate(scales):
        numbers[:, axis] = _numbers(kept[:, axis], origin, step)
    bits = 16 if len(used) <= 65536 else 32
    return {
        "vertices": len(used),
        "triangles": len(corners) // 3,
        "sourceTriangles": len(part.faces),
        "deviationMm": deviation,
        "originMm": [origin for origin, _ in scales],
        "stepMm": [step for _, step in scales],
        "positions": _base64(numbers),
        "indexBits": bits,
        "indices": _base64(corners.astype("<u2" if bits == 16 else "<u4")),
    }


def _base64(array: NDArray[Any]) -> str:
    return base64.b64encode(array.tobytes()).decode()


def _thinned(part: Part, limit: int) -> tuple[_Corners, float]:
    """The corners that remain, and about how far the surface moved."""
    whole = np.ascontiguousarray(part.faces, np.uint32).reshape(-1)
    if len(part.faces) <= limit:
        return whole, 0.0
    try:
        import meshoptimizer
    except ImportError:
        raise NoPageError(
            f"The part has {len(part.faces):,} triangles: for pictures of more than {limit:,}, "
            "install meshoptimizer, as pip install 'teskorient[notebook]' does."
        ) from None
    points = np.ascontiguousarray(part.vertices)
    kept, error = np.empty_like(whole), np.zeros(1, np.float32)
    arguments = {"target_index_count": limit * 3, "target_error": 1.0, "result_error": error}
    left = meshoptimizer.simplify(kept, whole, points, **arguments)
    if left > limit * 3 + limit // 2:  # edge by edge ends far above the limit: cell by cell
        left = meshoptimizer.simplify_sloppy(kept, whole, points, **arguments)
    scale = np.float32(meshoptimizer.simplify_scale(points))
    return kept[:left], float(error[0] * scale)


def _renumbered(corners: _Corners) -> tuple[NDArray[np.intp], _Corners]:
    """The vertices in the order of their first use, and corners that name them by it."""
    used, first, inverse = np.unique(corners, return_index=True, return_inverse=True)
    order = np.argsort(first)
    number = np.empty(len(used), np.uint32)
    number[order] = np.arange(len(used), dtype=np.uint32)
    return used[order].astype(np.intp), number[inverse.reshape(-1)]


def _scale(values: Float32s) -> tuple[float, float]:
    """Where the numbers of an axis begin, and how far apart they are."""
    if len(values) == 0:
        return 0.0, 0.0
    low, high = float(values[values.argmin()]), float(values.max())
    return low, (high - low) / _LAST_NUMBER


def _numbers(values: Float32s, origin: float, step: float) -> NDArray[np.uint16]:
    if not step > 0.0:
        return np.zeros(len(values), np.uint16)
    steps = (values.astype(np.float64) - origin) / step
    return np.clip(np.floor(steps + 0.5), 0.0, _LAST_NUMBER).astype(np.uint16)


def notebook_html(poses: Poses) -> str:
    """Return what a notebook shows: the page in a frame of its own, or else a table."""
    try:
        content = page(poses)
    except NoPageError as reason:
        return _table.table_html(poses, str(reason))
    title = escape(f"Build poses of {_title(poses) or 'the part'}")
    return (
        f'<iframe title="{title}" sandbox="allow-scripts" loading="lazy" '
        f'style="width:100%;height:50em;border:0" srcdoc="{escape(content)}"></iframe>'
    )
