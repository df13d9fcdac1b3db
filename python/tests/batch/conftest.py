"""The program to compare with, and a cluster for all tests of this folder."""

from __future__ import annotations

import importlib.util
import struct
import subprocess
from collections.abc import Callable, Iterator
from pathlib import Path
from typing import TYPE_CHECKING, Any

import pytest

if TYPE_CHECKING:
    from distributed import Client, LocalCluster

# Without the extra that these tests are about there is nothing to collect.
if importlib.util.find_spec("distributed") is None:
    collect_ignore_glob = ["test_*.py"]


@pytest.fixture(scope="session")
def run_program(program: Path) -> Callable[..., int]:
    """Runs the program's batch and returns its exit code."""

    def run(*arguments: Any, cwd: Path | None = None) -> int:
        words = [str(program), "batch", "--together", "--quiet", *map(str, arguments)]
        return subprocess.run(words, cwd=cwd, stdout=subprocess.DEVNULL, timeout=300).returncode

    return run


@pytest.fixture(scope="session")
def cluster() -> Iterator[LocalCluster]:
    """Two worker processes; a task may end two of them, and the third is the last straw."""
    import dask
    from distributed import LocalCluster

    with dask.config.set({"distributed.scheduler.allowed-failures": 2}):
        made = LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address="127.0.0.1:0")
    with made:
        yield made


@pytest.fixture
def client(cluster: LocalCluster) -> Iterator[Client]:
    from distributed import Client

    with Client(cluster, set_as_default=False) as connected:
        connected.wait_for_workers(2, timeout=60)
        yield connected


@pytest.fixture
def parts(tmp_path: Path) -> Path:
    """A folder with sound and broken parts, some with names that need care."""
    from batch.support import skew_box, write_broken

    folder = tmp_path / "parts"
    (folder / "deep").mkdir(parents=True)
    for index in range(6):
        (folder / f"box{index}.stl").write_bytes(skew_box(index))
    (folder / "deep" / "a b.STL").write_bytes(skew_box(7))
    (folder / "deep" / "Größe.stl").write_bytes(skew_box(8))
    (folder / "open.stl").write_bytes(
        skew_box(9)[:80] + struct.pack("<I", 11) + skew_box(9)[84:-50]
    )
    write_broken(folder)
    return folder
