"""``python -m teskorient.batch`` and the program write one results file."""

from __future__ import annotations

import os
import shutil
import signal
import subprocess
import sys
import time
from collections.abc import Callable
from pathlib import Path
from typing import Any

import dask
import pytest
from distributed import LocalCluster

from batch.support import lines_in, skew_box
from conftest import sample_meshes
from teskorient.batch import main

RunProgram = Callable[..., int]


def command(*arguments: Any) -> list[str]:
    return [sys.executable, "-m", "teskorient.batch", *map(str, arguments)]


def run_python(*arguments: Any, cwd: Path) -> subprocess.CompletedProcess[str]:
    words = command(*arguments)
    return subprocess.run(
        words,
        cwd=cwd,
        capture_output=True,
        text=True,
        encoding="utf-8",
        timeout=120,
    )


@pytest.fixture
def scheduler(cluster: LocalCluster) -> str:
    return str(cluster.scheduler_address)


SETTINGS = (
    "--fits",
    "90x90x90",
    "--keep-off",
    "0,0,1:30",
    "--keep-off=1,0,0",
    "--overhang-angle",
    "50.0",
)


@pytest.mark.parametrize(
    "settings",
    [
        (),
        SETTINGS,
        ("--goal", "least-support", "--units", "cm"),
        ("--include", "**/box*", "--fits=9x9x9"),
    ],
)
def test_the_lines_are_those_of_the_program(
    run_program: RunProgram,
    parts: Path,
    settings: tuple[str, ...],
    monkeypatch: pytest.MonkeyPatch,
) -> None:
    folder = parts.parent
    if os.name == "posix":
        (parts / os.fsdecode(b"b\xff\xe2\x82.stl")).write_bytes(b"x")
    given = ("parts", "absent.stl", "parts/notes.txt", "./parts/deep/")
    run_program(*given, "--results", "program.jsonl", *settings, cwd=folder)

    monkeypatch.chdir(folder)  # the workers of a new cluster are started there, too
    assert main([*given, "--results", "python.jsonl", *settings, "--jobs", "2"]) == 5
    assert lines_in(folder / "python.jsonl") == lines_in(folder / "program.jsonl")


def test_the_sample_meshes_have_the_programs_lines(
    run_program: RunProgram, scheduler: str, tmp_path: Path
) -> None:
    meshes = sample_meshes()
    if not meshes:
        pytest.skip("there are no sample meshes")
    folder = meshes[0].parent
    program, python = tmp_path / "program.jsonl", tmp_path / "python.jsonl"
    expected = run_program(folder, "--results", program)
    assert main([str(folder), "--results", str(python), "--scheduler", scheduler]) == expected
    assert lines_in(python) == lines_in(program)


def test_either_goes_on_with_what_the_other_began(
    scheduler: str, run_program: RunProgram, parts: Path
) -> None:
    folder = parts.parent
    whole, half, other = (folder / name for name in ("whole.jsonl", "half.jsonl", "other.jsonl"))
    (parts / "gone.stl").unlink(missing_ok=True)
    assert run_program(parts, "--results", whole, *SETTINGS) == 5
    lines = whole.read_bytes().splitlines(keepends=True)
    half.write_bytes(b"".join(lines[:7]) + lines[7][:50])
    made = run_python(
        parts, "--results", half, "--resume", "--scheduler", scheduler, *SETTINGS, cwd=folder
    )
    assert made.returncode == 5
    assert f"{len(lines)} parts: {len(lines) - 7} done, 7 in the results already" in made.stdout
    assert lines_in(half) == lines_in(whole)

    shutil.copy(half, other)
    assert run_program(parts, "--results", other, "--resume", *SETTINGS) == 5
    assert other.read_bytes() == half.read_bytes()
    run_program(parts, "--results", other, "--resume", "--retry-failed", *SETTINGS)
    failed = len(other.read_bytes().splitlines()) - len(lines)
    assert failed > 3
    again = run_python(
        *(parts, "--results", half, "--resume", "--retry-failed", "--scheduler", scheduler),
        *SETTINGS,
        cwd=folder,
    )
    assert f" {failed} done, " in again.stdout
    assert lines_in(half) == lines_in(other)


def test_exit_codes(
    scheduler: str, parts: Path, monkeypatch: pytest.MonkeyPatch, capfd: pytest.CaptureFixture[str]
) -> None:
    folder = parts.parent
    monkeypatch.chdir(folder)
    box = parts / "box0.stl"

    def code(*arguments: Any) -> int:
        return main([*map(str, arguments), "--scheduler", scheduler])

    assert code(box, "--results", "a.jsonl") == 0
    assert code(box, "--results", "a.jsonl") == 4
    assert code(box, "--results", "a.jsonl", "--resume") == 0
    assert code(box, "--results", folder / "none" / "a.jsonl") == 4
    assert code(box, "--results", "b.jsonl", "--fits", "3") == 2
    assert code(box, "--results", "b.jsonl", "--retry-failed") == 2
    with pytest.raises(SystemExit) as caught:
        code("--results", "b.jsonl")
    assert caught.value.code == 2
    assert not (folder / "b.jsonl").exists()
    assert code(parts / "cut.stl", "--results", "c.jsonl") == 5
    assert code(parts / "cut.stl", "--results", "c.jsonl", "--resume") == 5
    (folder / "d.jsonl").write_bytes(b"one\ntwo\n")
    assert code(box, "--results", "d.jsonl", "--resume") == 3
    with dask.config.set({"distributed.comm.timeouts.connect": "2s"}):
        lost = ["--results", "e.jsonl", "--scheduler", "tcp://127.0.0.1:9"]
        assert main([str(box), *lost]) == 1
    assert "Traceback" not in capfd.readouterr().err


@pytest.mark.skipif(os.name != "posix", reason="sends a signal to a group of processes")
def test_ctrl_c_leaves_whole_lines_and_resume_goes_on(tmp_path: Path) -> None:
    folder = tmp_path / "parts"
    folder.mkdir()
    count = 400
    for index in range(count):
        (folder / f"{index}.stl").write_bytes(skew_box(index))
    results = tmp_path / "r.jsonl"
    words = command(folder, "--results", results, "--jobs", 2)
    status, said = _interrupted(words, results)
    assert status == 130
    lines = results.read_bytes().splitlines(keepends=True)
    assert 20 <= len(lines) < count
    assert all(line.startswith(b'{"schema":') and line.endswith(b"}\n") for line in lines)
    assert f"aborted; {len(lines):,} lines are written" in said
    assert "Traceback" not in said
    resumed = run_python(folder, "--results", results, "--jobs", 2, "--resume", cwd=tmp_path)
    assert resumed.returncode == 0
    assert f"{len(lines):,} in the results already" in resumed.stdout
    assert len(results.read_bytes().splitlines()) == count


def _interrupted(words: list[str], results: Path) -> tuple[int, str]:
    """Ctrl-C, as a terminal sends it to all processes; the exit code and what was said."""
    # Where the tests' parent ignores it, it would be ignored for good.
    heeds = (
        "import os, signal, sys; signal.signal(signal.SIGINT, signal.SIG_DFL); "
        "os.execv(sys.argv[1], sys.argv[1:])"
    )
    started = subprocess.Popen(
        [sys.executable, "-c", heeds, *words],
        stdout=subprocess.DEVNULL,
        stderr=subprocess.PIPE,
        encoding="utf-8",
        start_new_session=True,
    )
    deadline = time.monotonic() + 60
    while not (results.exists() and results.stat().st_size > 300_000):
        assert started.poll() is None
        if time.monotonic() > deadline:
            os.killpg(started.pid, signal.SIGKILL)
        time.sleep(0.02)
    os.killpg(started.pid, signal.SIGINT)
    said = started.communicate(timeout=60)[1]
    return started.returncode, said
