"""What the Python package costs: beside the C++ interface, in two threads, and beside other packages.

    bench/python_bench.py [MESH-FOLDER]

Needs the package, built; trimesh, scipy and networkx for the comparison. build/bench/bin/c_interface_bench
measures the same calls from C++.
"""

from __future__ import annotations

import importlib.util
import sys
import threading
import time
from collections.abc import Callable
from pathlib import Path

import numpy as np

sys.path.insert(0, str(Path(__file__).parents[1] / "python/tests"))
import ctypes

import shapes

import teskorient
from teskorient import Part, _library


def fastest(call: Callable[[], object], rounds: int) -> float:
    """Seconds of the fastest of some calls."""
    times = []
    for _ in range(rounds):
        start = time.perf_counter()
        call()
        times.append(time.perf_counter() - start)
    return min(times)


def bare_orient(part: Part) -> Callable[[], object]:
    """The library's own function with everything made ready: what no wrapper can go below."""
    library = _library.library
    records = _library.array_of(_library.Pose, 12)
    lies, summary = _library.new(_library.Pose), _library.new(_library.PoseSummary)
    goal, call = _library.new(_library.Goal), _library.new(_library.Call, threads=1)
    library.tesk_goal_init(ctypes.byref(goal), 0)
    arguments = (
        part._mesh.pointer,
        ctypes.byref(goal),
        ctypes.byref(call),
        records,
        12,
        ctypes.byref(lies),
        ctypes.byref(summary),
    )
    return lambda: library.tesk_find_poses(*arguments)


def bare_box(part: Part) -> Callable[[], object]:
    """The same of boxes."""
    points = _library.new(_library.Points, data=part.vertices.ctypes.data, count=len(part.vertices))
    call, box = _library.new(_library.Call, threads=1), _library.new(_library.Box)
    arguments = (ctypes.byref(points), 0, None, ctypes.byref(call), ctypes.byref(box))
    return lambda: _library.library.tesk_smallest_box(*arguments)


def overhead(name: str, part: Part, rounds: int) -> None:
    """Print what a call from Python takes beyond the library's function."""
    calls = {
        "orient": (lambda: teskorient.orient(part, threads=1), bare_orient(part)),
        "bounding_box": (lambda: teskorient.bounding_box(part, threads=1), bare_box(part)),
    }
    for what, (ours, bare) in calls.items():
        for call in (ours, bare):
            call()
        # In turns, so that what the machine does meanwhile hits both.
        times = [(fastest(ours, 1), fastest(bare, 1)) for _ in range(rounds)]
        a, b = (min(column) for column in zip(*times, strict=True))
        print(f"{name:>22} {what:14} {a * 1e6:12.1f} us, library {b * 1e6:12.1f} us, "
              f"overhead {(a - b) * 1e6:8.1f} us")  # fmt: skip


def two_threads(part: Part) -> None:
    """Print how long two calls take one after the other, and in two threads."""

    def both() -> None:
        workers = [
            threading.Thread(target=teskorient.orient, args=(part,), kwargs={"threads": 1})
            for _ in range(2)
        ]
        for worker in workers:
            worker.start()
        for worker in workers:
            worker.join()

    def in_turn() -> None:
        for _ in range(2):
            teskorient.orient(part, threads=1)

    one, two = fastest(in_turn, 3), fastest(both, 3)
    print(f"two calls of {len(part.faces):,} triangles: {one:.2f} s in turn, {two:.2f} s in two "
          f"threads, ratio {two / one:.2f}")  # fmt: skip


MESH_FILES = {".stl", ".ply", ".obj", ".3mf", ".off"}


def parts_in(folder: Path) -> list[tuple[str, Part]]:
    """Return the parts of a folder, by name."""
    files = sorted(path for path in folder.glob("*") if path.suffix in MESH_FILES)
    return [(path.name, Part.load(path)) for path in files]


def boxes_beside_trimesh(parts: list[tuple[str, Part]]) -> None:
    """Print time and volume of boxes beside trimesh's."""
    import trimesh

    print(
        f"{'boxes of':>24} {'points':>8} {'ours s':>9} {'trimesh s':>9} {'faster':>7} {'volume':>8}"
    )
    for name, part in parts:
        mesh = trimesh.Trimesh(part.vertices, part.faces, process=False)
        begin = time.perf_counter()
        box = teskorient.bounding_box(part)
        middle = time.perf_counter()
        try:
            _, extents = trimesh.bounds.oriented_bounds(mesh)
        except Exception as error:
            print(f"{name:>24} trimesh: {type(error).__name__}: {error}")
            continue
        end = time.perf_counter()
        ours, theirs = middle - begin, end - middle
        print(f"{name:>24} {len(part.vertices):8} {ours:9.4f} {theirs:9.4f} "
              f"{theirs / ours:6.0f}x {box.volume / float(np.prod(extents)):8.4f}")  # fmt: skip


def poses_beside_trimesh(parts: list[tuple[str, Part]]) -> None:
    """Print time and support of poses beside the likeliest of trimesh's stable ones."""
    import trimesh

    print(f"{'poses of':>24} {'points':>8} {'ours s':>9} {'trimesh s':>9} {'faster':>7} "
          f"{'support mm3':>12} {'trimesh':>12}")  # fmt: skip
    for name, part in parts:
        mesh = trimesh.Trimesh(part.vertices, part.faces, process=False)
        begin = time.perf_counter()
        best = teskorient.orient(part).best
        middle = time.perf_counter()
        try:
            transforms, _ = trimesh.poses.compute_stable_poses(mesh)
            end = time.perf_counter()
            support = teskorient.measure(part, transforms[0]).support_volume
        except Exception as error:
            print(f"{name:>24} trimesh: {type(error).__name__}: {error}")
            continue
        ours, theirs = middle - begin, end - middle
        print(f"{name:>24} {len(part.vertices):8} {ours:9.4f} {theirs:9.4f} "
              f"{theirs / ours:6.1f}x {best.measures.support_volume:12.0f} {support:12.0f}")  # fmt: skip


def main() -> None:
    """Measure everything."""
    overhead("12 triangles", Part(*shapes.box()), 500)
    ball = shapes.bumpy_ball(500)
    print("a part of", len(ball[1]), "triangles is made in",
          f"{fastest(lambda: Part(*ball), 5) * 1e3:.1f} ms")  # fmt: skip
    big = Part(*ball)
    overhead(f"{len(big.faces):,} triangles", big, 3)
    two_threads(big)
    if importlib.util.find_spec("trimesh") is None or importlib.util.find_spec("scipy") is None:
        print("trimesh and scipy are not installed: not compared")
        return
    parts = parts_in(Path(sys.argv[1] if len(sys.argv) > 1 else "../shared/meshes"))
    boxes_beside_trimesh(parts)
    poses_beside_trimesh(parts)


if __name__ == "__main__":
    main()
