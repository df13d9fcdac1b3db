"""Threads, progress, Ctrl-C, and what calls leave behind."""

from __future__ import annotations

import gc
import signal
import subprocess
import sys
import threading
import time
from collections.abc import Callable
from pathlib import Path
from typing import Any

import numpy as np
import pytest

import shapes
import teskorient
from teskorient import Part


@pytest.fixture(scope="module")
def ball() -> Part:
    return Part(*shapes.bumpy_ball(120), name="ball")


CALLS: dict[str, Callable[..., Any]] = {
    "orient": teskorient.orient,
    "rank": teskorient.rank,
    "bounding_box": teskorient.bounding_box,
    "lay_flat": teskorient.lay_flat,
}


@pytest.mark.parametrize("name", CALLS)
def test_progress_rises_to_its_end(ball: Part, name: str) -> None:
    told: list[int] = []
    CALLS[name](ball, threads=1, progress=told.append)
    assert told == sorted(told) and told[0] >= 0 and told[-1] <= 100 and len(told) > 1


@pytest.mark.parametrize("name", CALLS)
@pytest.mark.parametrize("kind", [RuntimeError, KeyboardInterrupt, SystemExit, MemoryError])
def test_what_progress_raises_ends_the_call(
    ball: Part, name: str, kind: type[BaseException]
) -> None:
    told: list[int] = []

    def refuse(percent: int) -> None:
        told.append(percent)
        raise kind("enough")

    with pytest.raises(kind, match="enough"):
        CALLS[name](ball, progress=refuse)
    assert len(told) == 1
    assert CALLS[name](ball).to_dict() == CALLS[name](ball).to_dict()  # all is sound


def test_reading_a_file_reports_progress(ball: Part, tmp_path: Path) -> None:
    ball.save(tmp_path / "ball.obj")
    told: list[int] = []
    Part.load(tmp_path / "ball.obj", progress=told.append)
    assert told and told == sorted(told)


def test_progress_may_call_the_library(ball: Part) -> None:
    small = Part(*shapes.box())
    expected = teskorient.orient(small).to_dict()
    found = []
    teskorient.orient(
        ball, progress=lambda percent: found.append(teskorient.orient(small).to_dict())
    )
    assert found and all(result == expected for result in found)


INTERRUPTED = """
import os, signal, sys, threading, time
sys.path.insert(0, {tests!r})
import numpy as np, shapes, teskorient
signal.signal(signal.SIGINT, signal.default_int_handler)  # where the tests' parent ignores it
part = teskorient.Part(*shapes.bumpy_ball(300))
random = np.random.default_rng(1)
points = random.normal(size=(120_000, 3))
points /= np.linalg.norm(points, axis=1, keepdims=True)
sent = []
def interrupt():
    time.sleep(0.3)
    sent.append(time.monotonic())
    os.kill(os.getpid(), signal.SIGINT)
threading.Thread(target=interrupt).start()
try:
    while True:
        {call}
except KeyboardInterrupt:
    print("interrupted after", time.monotonic() - sent[0])
print(teskorient.orient(teskorient.Part(*shapes.box())).best.measures.height)
"""


@pytest.mark.skipif(sys.platform == "win32", reason="only a console can send Ctrl-C")
@pytest.mark.parametrize(
    "call",
    [
        "teskorient.orient(part)",
        "teskorient.orient(part, progress=lambda percent: None)",
        "teskorient.rank(part)",
        "teskorient.bounding_box(points)",
        "teskorient.bounding_box(points, 'base-area')",
        "teskorient.bounding_box(points, 'base-area', threads=1)",
        "teskorient.lay_flat(part)",
    ],
)
def test_ctrl_c_ends_a_call(call: str) -> None:
    script = INTERRUPTED.format(tests=str(Path(__file__).parent), call=call)
    run = subprocess.run(
        [sys.executable, "-c", script], capture_output=True, text=True, timeout=120
    )
    assert run.returncode == 0, run.stderr
    assert run.stderr == ""
    first, second = run.stdout.splitlines()
    # At once, on a machine that does other things beside: the whole call takes longer.
    assert float(first.removeprefix("interrupted after ")) < 1.5
    assert second == "10.0"


def test_the_gil_is_released(ball: Part) -> None:
    passed = [0]
    done = threading.Event()

    def count() -> None:
        while not done.is_set():
            passed[0] += 1
            time.sleep(0)

    counter = threading.Thread(target=count)
    reported: list[int] = []
    counter.start()
    teskorient.orient(ball, threads=1, progress=lambda percent: reported.append(passed[0]))
    done.set()
    counter.join()
    assert reported[-1] - reported[0] > 10


def test_several_threads_get_what_one_gets(ball: Part) -> None:
    table = Part(*shapes.table())
    expected = {name: call(ball).to_dict() for name, call in CALLS.items()}
    smaller = teskorient.orient(table).to_dict()
    wrong: list[str] = []

    def work(name: str) -> None:
        for _ in range(3):
            if CALLS[name](ball, threads=1).to_dict() != expected[name]:
                wrong.append(name)
            if teskorient.orient(table).to_dict() != smaller:
                wrong.append("table")

    workers = [threading.Thread(target=work, args=(name,)) for name in [*CALLS, *CALLS]]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    assert wrong == []


@pytest.mark.parametrize("name", CALLS)
def test_the_number_of_threads_changes_no_bit(ball: Part, name: str) -> None:
    alone = CALLS[name](ball, threads=1).to_dict()
    assert all(CALLS[name](ball, threads=count).to_dict() == alone for count in (None, 2, 5))


@pytest.mark.parametrize("name", CALLS)
@pytest.mark.parametrize("threads", [0, -1, 1025, 1.5, "2"])
def test_a_wrong_number_of_threads_is_refused(ball: Part, name: str, threads: Any) -> None:
    with pytest.raises(ValueError, match="threads must be a whole number from 1 to 1024"):
        CALLS[name](ball, threads=threads)


def test_progress_must_be_callable(ball: Part) -> None:
    with pytest.raises(ValueError, match="progress must be callable, not 5"):
        teskorient.orient(ball, progress=5)  # type: ignore[arg-type]


def resident() -> int:
    """Bytes of this process in memory."""
    pages = Path("/proc/self/statm").read_text().split()[1]
    return int(pages) * 4096


def one_of_each(vertices: Any, faces: Any, progress: Callable[[int], None]) -> None:
    part = Part(vertices, faces)
    poses = teskorient.orient(part, threads=1, progress=progress)
    poses.to_dict()
    teskorient.convex_hull(part)
    teskorient.bounding_box(part, threads=1, progress=progress)
    with pytest.raises(ValueError):
        Part(vertices, [[0, 1, 99]])
    with pytest.raises(OSError):
        Part.load("/nowhere.stl")


@pytest.mark.skipif(not Path("/proc/self/statm").exists(), reason="needs /proc")
def test_ten_thousand_calls_leave_nothing_behind() -> None:
    vertices, faces = shapes.box()

    def progress(percent: int) -> None:
        pass

    def repeat(count: int) -> tuple[int, int, int]:
        for _ in range(count):
            one_of_each(vertices, faces, progress)
        gc.collect()
        references = sum(sys.getrefcount(held) for held in (vertices, faces, progress))
        return resident(), references, len(gc.get_objects())

    repeat(1500)
    before = repeat(10)
    after = repeat(2500)  # of four calls each
    assert after[1] == before[1]
    # One lost in each call would be 10,000; other tests' threads may leave a few hundred meanwhile.
    assert abs(after[2] - before[2]) < 1000
    # A leak of 100 bytes a call would be a million.
    assert after[0] - before[0] < 600_000


def test_an_interrupted_call_keeps_no_reference(ball: Part) -> None:
    def refuse(percent: int) -> None:
        raise RuntimeError

    before = sys.getrefcount(refuse)
    for _ in range(20):
        with pytest.raises(RuntimeError):
            teskorient.orient(ball, progress=refuse)
    gc.collect()
    assert sys.getrefcount(refuse) == before


@pytest.mark.skipif(sys.platform == "win32", reason="there is no such timer")
def test_other_signals_whose_handlers_raise_end_a_call(ball: Part) -> None:
    class Alarm(Exception):
        pass

    def ring(number: int, frame: object) -> None:
        raise Alarm

    before = signal.signal(signal.SIGALRM, ring)
    signal.setitimer(signal.ITIMER_REAL, 0.05)
    try:
        with pytest.raises(Alarm):
            while True:
                teskorient.orient(ball, threads=1)
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, before)
    assert np.isfinite(teskorient.orient(ball).best.matrix).all()
