"""Many files on a cluster: each has exactly one result, that of the program."""

from __future__ import annotations

import json
import os
import time
import urllib.request
from collections.abc import Callable, Iterator
from itertools import count
from multiprocessing import active_children
from pathlib import Path
from typing import Any

import pytest
from distributed import Client, LocalCluster

from batch.support import alone, files_in, skew_box, without_times
from teskorient.distributed import orient_files


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
