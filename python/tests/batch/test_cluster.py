"""Many files on a cluster: each has exactly one result, whatever becomes of workers."""

from __future__ import annotations

import json
import os
import signal
import time
import urllib.request
from collections import Counter
from collections.abc import Callable, Iterator
from itertools import count
from multiprocessing import active_children
from pathlib import Path
from typing import Any

import dask
import pytest
from distributed import Client, KilledWorker, LocalCluster

from batch.support import landscape, skew_box, without_times
from teskorient.distributed import ClusterError, VersionError, orient_files
from teskorient.distributed._inputs import Input
from teskorient.distributed._run import make_batch, run
from teskorient.distributed._settings import make_settings
from teskorient.distributed._spread import Spreader
from teskorient.distributed._work import FetchError, work

PARTS = 2000


def files_in(folder: Path) -> list[str]:
    return sorted(str(path) for path in folder.rglob("*") if not path.is_dir())


def alone(path: str, **settings: Any) -> str:
    """The result of one file in this process."""
    answer = work(make_batch(make_settings(**settings)).job(path))
    assert answer.line is not None
    return without_times(json.loads(answer.line))


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


def test_broken_parts_are_results(client: Client, parts: Path) -> None:
    files = files_in(parts)
    lines = {line["input"]["path"]: line for line in orient_files(files, client, fits=(90, 90, 90))}
    assert sorted(lines) == files
    for path, line in lines.items():
        assert without_times(line) == alone(path, fits=(90, 90, 90))
    assert lines[str(parts / "box1.stl")]["status"] == "ok"
    error = lines[str(parts / "index.obj")]["error"]
    assert error["code"] == "cannot-read"
    assert error["text"].startswith(f"{parts / 'index.obj'}: line 4: ")
    assert lines[str(parts / "flat.obj")]["error"]["text"].endswith("its one triangle has no area")


def test_a_part_that_no_pose_fits_is_a_result(client: Client, parts: Path) -> None:
    (line,) = orient_files([parts / "box1.stl"], client, fits="9x9x9")
    assert (line["status"], line["error"]["code"]) == ("failed", "no-pose")
    assert "no pose fits 9 × 9 × 9 mm; the nearest needs" in line["error"]["text"]


def test_a_file_that_is_given_twice_is_worked_on_once(client: Client, parts: Path) -> None:
    path = parts / "box0.stl"
    assert len(list(orient_files([path, str(path), os.fsencode(path)], client))) == 1


def test_no_files_are_no_results(client: Client) -> None:
    assert list(orient_files([], client)) == []


def test_files_are_opened_by_fsspec(client: Client, parts: Path) -> None:
    names = ["box0.stl", "index.obj", "absent.stl", "notes.txt"]
    urls = [(parts / name).as_uri() for name in names]
    lines = {line["input"]["path"]: line for line in orient_files(urls, client)}
    assert sorted(lines) == sorted(urls)
    for name, url in zip(names, urls, strict=False):
        expected = json.loads(alone(str(parts / name)))
        line = lines[url]
        assert line["input"]["hash"] == expected["input"]["hash"]
        text = json.dumps(line).replace(url, "FILE")
        assert without_times(json.loads(text)) == json.dumps(expected).replace(
            str(parts / name), "FILE"
        )


def test_a_url_that_cannot_be_fetched_is_a_result(client: Client) -> None:
    (line,) = orient_files(["nosuchprotocol://a/b.stl"], client)
    assert line["error"]["code"] == "cannot-read"
    assert line["error"]["text"].startswith("nosuchprotocol://a/b.stl: cannot be fetched: ")


def test_an_address_does_as_well(cluster: LocalCluster, parts: Path) -> None:
    address = cluster.scheduler_address
    (line,) = orient_files([parts / "box0.stl"], address)
    assert line["status"] == "ok"


def test_without_a_client_a_cluster_is_started_and_ended(parts: Path) -> None:
    others = _children()
    results = orient_files(
        [parts / "box0.stl", parts / "box1.stl"], workers=1, memory_limit="1 GiB"
    )
    assert next(results)["status"] == "ok"
    children = _children() - others
    assert children
    results.close()
    deadline = time.monotonic() + 20
    while any(_is_alive(pid) for pid in children) and time.monotonic() < deadline:
        time.sleep(0.1)
    assert not any(_is_alive(pid) for pid in children)


def _children() -> set[int]:
    return {child.pid for child in active_children() if child.pid is not None}


def _is_alive(pid: int) -> bool:
    try:
        os.kill(pid, 0)
    except OSError:
        return False
    return True


def test_results_that_are_held_are_not_worked_out_again(client: Client, parts: Path) -> None:
    files = [parts / name for name in ("box0.stl", "box1.stl", "index.obj")]
    first = list(orient_files(files, client))
    (parts / "box1.stl").write_bytes(skew_box(99))
    again = list(orient_files(files, client, finished=first))
    assert [line["input"]["path"] for line in again] == [str(parts / "box1.stl")]
    retried = orient_files(files, client, finished=first + again, retry_failed=True)
    assert [line["input"]["path"] for line in retried] == [str(parts / "index.obj")]
    assert len(list(orient_files(files, client, finished=first, goal="balanced"))) == 3


def test_files_are_taken_as_the_work_goes_on(client: Client, parts: Path) -> None:
    taken = count()
    path = parts / "box0.stl"

    def endless() -> Iterator[str]:
        while True:
            yield f"{path}{'/.' * next(taken)}/../box0.stl"

    results = orient_files(endless(), client)
    for _ in range(200):
        next(results)
    results.close()
    assert 200 <= next(taken) < 500


def test_tasks_have_the_names_of_files(client: Client, parts: Path) -> None:
    list(orient_files([parts / "box0.stl", parts / "deep" / "Größe.stl"], client))

    def names(dask_scheduler: Any) -> tuple[list[str], list[str]]:
        seen = [row[0] for row in dask_scheduler.transition_log]
        return [str(key) for key in seen], list(dask_scheduler.task_prefixes)

    keys, prefixes = client.run_on_scheduler(names)
    assert "tesk-orient" in prefixes
    assert any(key.startswith("tesk-orient-box0.stl-") for key in keys)
    assert any(key.startswith("tesk-orient-Größe.stl-") for key in keys)


def test_the_dashboard_has_pages_of_the_tasks(
    cluster: LocalCluster, client: Client, parts: Path
) -> None:
    pytest.importorskip("jinja2")
    results = orient_files([parts / f"box{index}.stl" for index in range(6)], client)
    next(results)  # the others are known to the scheduler until they are taken

    def keys(dask_scheduler: Any) -> list[str]:
        return [str(key) for key in dask_scheduler.tasks]

    known = [key for key in client.run_on_scheduler(keys) if key.startswith("tesk-orient-box")]
    base = cluster.dashboard_link.rsplit("/", 1)[0]
    for key in known:
        with urllib.request.urlopen(f"{base}/info/task/{key}.html", timeout=30) as page:
            assert key in page.read().decode()
    results.close()
    assert known


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


def test_a_client_that_closes_ends_the_results(cluster: LocalCluster, parts: Path) -> None:
    with Client(cluster, set_as_default=False) as connected:
        results = orient_files(files_in(parts), connected)
        next(results)
        results.close()
        assert connected.status == "running"


@pytest.mark.parametrize("settings", [{"goal": "best"}, {"fits": (1, 2)}, {"colour": "red"}])
def test_wrong_settings_are_refused_at_once(settings: dict[str, Any]) -> None:
    call: Callable[..., Any] = orient_files
    with pytest.raises((ValueError, TypeError)):
        call([], **settings)
