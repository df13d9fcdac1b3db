"""Each file has exactly one result, whatever becomes of workers."""

from __future__ import annotations

import json
import os
import signal
from collections import Counter
from pathlib import Path
from typing import Any

import dask
import pytest
from distributed import Client, KilledWorker, LocalCluster

from batch.support import alone, files_in, landscape, skew_box, without_times
from teskorient.distributed import ClusterError, VersionError, orient_files
from teskorient.distributed._inputs import Input
from teskorient.distributed._run import make_batch, run
from teskorient.distributed._settings import make_settings
from teskorient.distributed._spread import Spreader
from teskorient.distributed._work import FetchError, work

PARTS = 2000


def kill_a_worker(client: Client) -> int:
    pid = next(iter(client.run(os.getpid).values()))
    os.kill(pid, signal.SIGKILL)
    return int(pid)


@pytest.mark.skipif(os.name != "posix", reason="kills processes by a signal")
def test_every_part_has_one_result_although_workers_are_killed(
    cluster: LocalCluster, client: Client, tmp_path: Path, request: pytest.FixtureRequest
) -> None:
    folder = tmp_path / "many"
    folder.mkdir()
    for index in range(PARTS):
        (folder / f"{index:04d}.stl").write_bytes(skew_box(index))
    killed = set()
    lines = []
    for result in orient_files(files_in(folder), client):
        lines.append(result)
        if len(lines) in (PARTS // 4, PARTS // 2):
            killed.add(kill_a_worker(client))
    client.wait_for_workers(2, timeout=60)
    assert len(killed) == 2
    assert not killed & set(client.run(os.getpid).values())

    assert Counter(line["input"]["path"] for line in lines) == Counter(files_in(folder))
    assert {line["status"] for line in lines} == {"ok"}
    for line in lines[::50]:
        assert without_times(line) == alone(line["input"]["path"])
    if _has_program(request):
        run_program = request.getfixturevalue("run_program")
        results = tmp_path / "program.jsonl"
        assert run_program(folder, "--results", results) == 0
        expected = [json.loads(line) for line in results.read_bytes().splitlines()]
        assert sorted(map(without_times, lines)) == sorted(map(without_times, expected))


def _has_program(request: pytest.FixtureRequest) -> bool:
    try:
        request.getfixturevalue("program")
    except pytest.skip.Exception:
        return False
    return True


def test_a_url_that_cannot_be_fetched_is_a_result(client: Client) -> None:
    (line,) = orient_files(["nosuchprotocol://a/b.stl"], client)
    assert line["error"]["code"] == "cannot-read"
    assert line["error"]["text"].startswith("nosuchprotocol://a/b.stl: cannot be fetched: ")


def test_a_cluster_that_goes_away_is_an_error(parts: Path) -> None:
    own = LocalCluster(n_workers=1, threads_per_worker=1, dashboard_address="127.0.0.1:0")
    with own, Client(own, set_as_default=False) as connected:
        files = [f"{parts}{'/.' * index}/box0.stl" for index in range(3000)]
        results = orient_files(files, connected)
        next(results)
        own.close()
        with pytest.raises(ClusterError):
            list(results)


def test_other_versions_are_refused(client: Client, parts: Path) -> None:
    batch = make_batch(make_settings())._replace(version="0.0.0")
    with pytest.raises(VersionError, match="but 0.0.0 is needed"):
        list(run(client, batch, [Input(str(parts / "box0.stl"))]))


@pytest.mark.skipif(os.name != "posix", reason="kills processes by a signal")
def test_a_job_that_ends_workers_takes_no_other_job_along(client: Client) -> None:
    def deadly(job: int) -> int:
        if job in (3, 17):
            os.kill(os.getpid(), signal.SIGKILL)
        return job

    outcomes = dict(Spreader(client, deadly, str).run(range(40)))
    assert sorted(outcomes) == list(range(40))
    assert {job for job, outcome in outcomes.items() if isinstance(outcome, KilledWorker)} == {
        3,
        17,
    }


@pytest.mark.skipif(os.name != "posix", reason="kills processes by a signal")
def test_a_part_that_ends_workers_has_crashed(
    client: Client, parts: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    def deadly(job: Any) -> Any:
        if job.path.endswith("box1.stl"):
            os.kill(os.getpid(), signal.SIGKILL)
        return work(job)

    monkeypatch.setattr("teskorient.distributed._run.work", deadly)
    files = [str(parts / f"box{index}.stl") for index in range(4)]
    lines = {line["input"]["path"]: line for line in orient_files(files, client)}
    assert sorted(lines) == files
    crashed = lines.pop(files[1])
    assert all(line["status"] == "ok" for line in lines.values())
    assert crashed["status"] == crashed["error"]["code"] == "crashed"
    assert crashed["error"]["text"] == f"{files[1]}: 3 workers ended while they worked on it"
    assert crashed["input"]["hash"] == json.loads(alone(files[1]))["input"]["hash"]


def test_a_part_that_needs_too_much_memory_ends_its_worker_only(tmp_path: Path) -> None:
    small = [tmp_path / f"{index}.stl" for index in range(5)]
    for index, path in enumerate(small):
        path.write_bytes(skew_box(index))
    large = tmp_path / "large.stl"
    large.write_bytes(landscape(1200))
    with dask.config.set({"distributed.scheduler.allowed-failures": 0}):
        files = [*small[:2], large, *small[2:]]
        results = orient_files(files, memory_limit="500 MiB", workers=1)
        statuses = {line["input"]["path"]: line["status"] for line in results}
    assert statuses.pop(str(large)) == "crashed"
    assert statuses == {str(path): "ok" for path in small}


def test_a_fetch_is_tried_again(client: Client, tmp_path: Path) -> None:
    def shaky(job: Path) -> int:
        with open(job, "a") as file:
            file.write("x")
        tries = job.stat().st_size
        if tries < 3:
            raise FetchError("busy")
        return tries

    assert list(Spreader(client, shaky, str).run([tmp_path / "tries"])) == [(tmp_path / "tries", 3)]


def test_what_is_no_matter_of_one_job_is_raised(client: Client) -> None:
    def wrong(job: int) -> int:
        raise ModuleNotFoundError("no teskorient here")

    with pytest.raises(ModuleNotFoundError, match="no teskorient here"):
        list(Spreader(client, wrong, str).run(range(5)))
