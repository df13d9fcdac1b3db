"""A batch over a cluster: inputs go in, and an answer for each comes out."""

from __future__ import annotations

from collections.abc import Callable, Iterable, Iterator, Mapping
from typing import Any, NamedTuple

from distributed import Client, KilledWorker

from . import _engine
from ._inputs import Input
from ._lines import Held, Identity, display_name, failure, path_bytes
from ._settings import Settings
from ._spread import Spreader, task_name
from ._work import Answer, FetchError, Job, answer, identify, work

_NOTHING: Mapping[str, str] = {}


class HeldLines:
    """Which contents of which files are answered for already, with these settings."""

    def __init__(self, lines: Iterable[Held], settings_hash: str, retry_failed: bool) -> None:
        # A later line takes the place of an earlier one, also where it takes its status.
        statuses: dict[tuple[bytes, str], str] = {}
        for line in lines:
            if line.settings_hash == settings_hash and line.hash:
                statuses[line.path, line.hash] = line.status
        self._of: dict[bytes, dict[str, str]] = {}
        for (path, content), status in statuses.items():
            if status == "ok" or not retry_failed:
                self._of.setdefault(path, {})[content] = status

    def of(self, path: str) -> Mapping[str, str]:
        return self._of.get(path_bytes(path), _NOTHING) if self._of else _NOTHING


class Batch(NamedTuple):
    """What is the same for all files of a run."""

    settings: Settings
    settings_hash: str
    version: str
    held: HeldLines

    def job(self, path: str) -> Job:
        return Job(path, self.settings, self.settings_hash, self.version, self.held.of(path))


def make_batch(settings: Settings, held: Iterable[Held] = (), retry_failed: bool = False) -> Batch:
    version = _engine.version()
    settings_hash = settings.hash(version)
    return Batch(settings, settings_hash, version, HeldLines(held, settings_hash, retry_failed))


def run(
    client: Client,
    batch: Batch,
    inputs: Iterable[Input],
    check: Callable[[], None] = lambda: None,
) -> Iterator[Answer]:
    """One answer for each input, in the order in which they end; `check` as of `Spreader`."""
    refused: list[Answer] = []

    def jobs() -> Iterator[Job]:
        for one in inputs:
            job = batch.job(one.path)
            if one.problem:
                text = f"{display_name(one.path)}: {one.problem}"
                refused.append(answer(job, None, failure("cannot-read", text)))
            else:
                yield job

    spreader = Spreader(client, work, lambda job: task_name(job.path), check)
    for job, outcome in spreader.run(jobs()):
        yield from _taken(refused)
        yield outcome if isinstance(outcome, Answer) else _answer_for(client, job, outcome)
    yield from _taken(refused)


def _taken(answers: list[Any]) -> Iterator[Any]:
    while answers:
        yield answers.pop(0)


def _answer_for(client: Client, job: Job, error: Exception) -> Answer:
    name = display_name(job.path)
    if isinstance(error, FetchError):
        return answer(job, None, failure("cannot-read", f"{name}: {error}"))
    assert isinstance(error, KilledWorker)
    count = error.allowed_failures + 1
    text = f"{name}: {count} workers ended while they worked on it"
    return answer(job, _identity_there(client, job), failure("crashed", text))


def _identity_there(client: Client, job: Job) -> Identity | None:
    """Where the workers are, as the file may be nowhere else."""
    try:
        found: Identity | None = client.submit(identify, job.path, pure=False).result()
        return found
    except Exception:
        return None
