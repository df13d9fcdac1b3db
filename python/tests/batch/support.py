"""Generated parts, and lines to compare."""

from __future__ import annotations

import json
import os
import struct
from pathlib import Path
from typing import Any

import numpy as np

from teskorient.distributed._run import make_batch
from teskorient.distributed._settings import make_settings
from teskorient.distributed._work import work

_BOX = [
    (0, 2, 1), (1, 2, 3), (4, 5, 6), (5, 7, 6), (0, 1, 4), (1, 5, 4),
    (2, 6, 3), (3, 6, 7), (0, 4, 2), (2, 4, 6), (1, 3, 5), (3, 7, 5),
]  # fmt: skip


def skew_box(index: int) -> bytes:
    """A binary STL of a box with three different edges that lean; another one for every index."""
    a = 10.0 + index % 41
    b = 20.0 + 0.5 * (index % 37)
    c = 5.0 + 0.25 * (index % 89)
    edges = [(a, 0.1 * index % 7, 0.3), (0.2, b, 0.01 * index), (0.4 * (index % 11), 1.5, c)]
    corners = [
        tuple(sum(edges[e][axis] for e in range(3) if corner >> e & 1) for axis in range(3))
        for corner in range(8)
    ]
    triangles = b"".join(
        struct.pack("<12fH", 0, 0, 0, *corners[i], *corners[j], *corners[k], 0) for i, j, k in _BOX
    )
    return b"\0" * 80 + struct.pack("<I", len(_BOX)) + triangles


def landscape(side: int) -> bytes:
    """A binary STL of a rough surface with two triangles for each of side x side squares."""
    x, y = np.meshgrid(np.arange(side + 1.0), np.arange(side + 1.0), indexing="ij")
    points = np.stack([x, y, np.sin(x * 0.7) * np.cos(y * 0.3)], axis=-1)
    a, b, c, d = points[:-1, :-1], points[1:, :-1], points[1:, 1:], points[:-1, 1:]
    corners = np.stack([np.stack([a, b, c], 2), np.stack([a, c, d], 2)], 2).reshape(-1, 9)
    records = np.zeros(len(corners), [("normal", "<3f4"), ("corners", "<9f4"), ("end", "<u2")])
    records["corners"] = corners
    return b"\0" * 80 + struct.pack("<I", len(records)) + records.tobytes()


def without_times(line: dict[str, Any]) -> str:
    """A result as text, without the two members that differ from run to run."""
    return json.dumps({**line, "seconds": None, "peakMemoryBytes": None})


def lines_in(results: Path) -> list[bytes]:
    """The lines of a results file in order of their bytes, each cut off before its times."""
    lines = results.read_bytes().splitlines(keepends=True)
    assert all(line.endswith(b"}\n") for line in lines)
    return sorted(line[: line.rindex(b',"seconds":')] for line in lines)


def write_broken(folder: Path) -> None:
    (folder / "cut.stl").write_bytes(skew_box(1)[:300])
    (folder / "empty.stl").write_bytes(b"")
    (folder / "flat.obj").write_bytes(b"v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 2 3\n")
    (folder / "index.obj").write_bytes(b"v 0 0 0\nv 1 0 0\nv 2 1 0\nf 1 2 7\n")
    (folder / "word.ply").write_bytes(b"ply\nformat ascii 1.0\nelement ???\n")
    (folder / "none.3mf").write_bytes(b"PK\x03\x04")
    (folder / "notes.txt").write_bytes(b"no part")
    if os.name == "posix":
        (folder / "gone.stl").symlink_to("nowhere")


def files_in(folder: Path) -> list[str]:
    return sorted(str(path) for path in folder.rglob("*") if not path.is_dir())


def alone(path: str, **settings: Any) -> str:
    """The result of one file in this process."""
    answer = work(make_batch(make_settings(**settings)).job(path))
    assert answer.line is not None
    return without_times(json.loads(answer.line))
