"""Spreads jobs over a Dask cluster, a bounded number at a time, and yields what each came to.

Scheduling, queues, retries and the network are Dask's. This module decides how many tasks the
scheduler knows at once, what they are called, and what becomes of a task that ends workers.
"""

from __future__ import annotations

import logging
import signal
import threading
import uuid
from collections.abc import Callable, Iterable, Iterator
from contextlib import contextmanager
from itertools import islice
from typing import Any

import dask
from distributed import (
    CancelledError,
    Client,
    Future,
    KilledWorker,
    LocalCluster,
    WorkerPlugin,
    as_completed,
)

from ._lines import display_name
from ._work import FetchError

ClientLike = Client | str | None

_TASKS_PER_THREAD = 8
_FEWEST_TASKS = 64
_MOST_TASKS = 8192
# How often Dask runs a task again whose file could not be fetched.
_RETRIES = 2
_LONGEST_NAME = 80
_CHECK_SECONDS = 0.1
_OF_ONE_JOB = (KilledWorker, FetchError)


class ClusterError(RuntimeError):
    """The cluster went away, or somebody cancelled the tasks. What was not yielded is not done."""


@contextmanager
def client_of(
    client: ClientLike,
    workers: int | None,
    memory_limit: str | float | None,
    log_level: int = logging.WARNING,
) -> Iterator[Client]:
    """The given client, one for an address, or one of a new local cluster.

    What was made here is closed. The level is that of a new cluster's log.
    """
    if isinstance(client, Client):
        if client.asynchronous:
            raise ValueError(
                "an asynchronous client does not do: make one without asynchronous=True"
            )
        yield client
        return
    if client is not None:
        with Client(client, set_as_default=False) as connected:
            yield connected
        return
    # A worker is handed a part when it has nothing else: one that ends its process takes no other along.
    with dask.config.set({"distributed.scheduler.worker-saturation": 1.0}):
        cluster = LocalCluster(
            n_workers=workers,
            threads_per_worker=1,
            processes=True,
            memory_limit=memory_limit,
            silence_logs=log_level,
        )
    with cluster, Client(cluster, set_as_default=False) as local:
        local.register_plugin(_NoInterrupts())
        yield local


class _NoInterrupts(WorkerPlugin):
    """Leaves it to the process that started the workers to end them.

    A terminal's Ctrl-C reaches all of them.
    """

    name = "tesk-orient-no-interrupts"

    def setup(self, worker: Any) -> None:
        if threading.current_thread() is threading.main_thread():
            signal.signal(signal.SIGINT, signal.SIG_IGN)


def task_name(path: str) -> str:
    """The file's name, short and printable, as the dashboard shows it."""
    name = display_name(path).replace("\\", "/").rstrip("/").rpartition("/")[2]
    return "".join(c if c.isprintable() else "?" for c in name)[-_LONGEST_NAME:]


class Spreader:
    """One run over one client.

    Parameters
    ----------
    client
        Whose workers work.
    work
        Runs on a worker with one job.
    name_of
        The task's name for people.
    check
        Called about ten times a second while there is nothing to yield. What it raises ends the run.
    """

    def __init__(
        self,
        client: Client,
        work: Callable[[Any], Any],
        name_of: Callable[[Any], str],
        check: Callable[[], None] = lambda: None,
    ) -> None:
        self._client = client
        self._work = work
        self._name_of = name_of
        self._token = uuid.uuid4().hex[:8]
        self._count = 0
        self._pending: dict[str, tuple[Future[Any], Any]] = {}
        self._ended = as_completed([], loop=client.loop)
        self._check = check

    def run(self, jobs: Iterable[Any]) -> Iterator[tuple[Any, Any]]:
        """Each job with its outcome as it ends.

        That is what the work returned, or a KilledWorker, or the FetchError that it ended with on
        every try. Any other exception is no matter of one job and is raised: a package that workers
        lack, a lost scheduler.
        """
        suspects: list[Any] = []
        try:
            for job, outcome in self._run(iter(jobs), self._window):
                if isinstance(outcome, KilledWorker):
                    suspects.append(job)
                else:
                    yield job, outcome
            # A task is blamed for every worker that ends while it holds the task, whichever task it
            # was working on. Alone, nobody else is to blame.
            yield from self._run(iter(suspects), lambda: 1)
        finally:
            if self._pending and self._client.status == "running":
                self._client.cancel([future for future, _ in self._pending.values()])

    def _run(self, jobs: Iterator[Any], window: Callable[[], int]) -> Iterator[tuple[Any, Any]]:
        most = window()
        self._submit(list(islice(jobs, most)))
        while self._pending:
            ended = self._next_batch()
            batch = [self._pending.pop(str(future.key)) for future in ended]
            outcomes = self._outcomes([future for future, _ in batch])
            for future, _ in batch:
                future.release()
            # In portions, as each costs a message. Submitted first, so that the workers are busy
            # whatever the caller does with the outcomes.
            if len(self._pending) <= most // 2:
                most = window()
                self._submit(list(islice(jobs, most - len(self._pending))))
            yield from zip((job for _, job in batch), outcomes, strict=False)

    def _next_batch(self) -> list[Future[Any]]:
        while not self._ended.has_ready():
            if self._ended.is_empty():
                raise ClusterError("the cluster forgot tasks that it was given")
            self._check()
            with self._ended.thread_condition:
                self._ended.thread_condition.wait(timeout=_CHECK_SECONDS)
        return list(self._ended.next_batch())

    def _window(self) -> int:
        threads = int(sum(self._client.nthreads().values()))
        return min(max(_TASKS_PER_THREAD * threads, _FEWEST_TASKS), _MOST_TASKS)

    def _submit(self, jobs: list[Any]) -> None:
        if not jobs:
            return
        keys = []
        for job in jobs:
            self._count += 1
            keys.append(f"tesk-orient-{self._name_of(job)}-{self._token}-{self._count}")
        futures = self._client.map(self._work, jobs, key=keys, retries=_RETRIES, pure=False)
        for future, job in zip(futures, jobs, strict=False):
            self._pending[str(future.key)] = (future, job)
        self._ended.update(futures)

    def _outcomes(self, futures: list[Future[Any]]) -> list[Any]:
        if all(future.status == "finished" for future in futures):
            try:
                return list(self._client.gather(futures))
            except (*_OF_ONE_JOB, CancelledError):
                pass  # a result was lost with its worker, and came to something else the second time
        return [self._outcome(future) for future in futures]

    @staticmethod
    def _outcome(future: Future[Any]) -> Any:
        try:
            return future.result()
        except _OF_ONE_JOB as error:
            return error
        except CancelledError as error:
            raise ClusterError(f"the cluster gave up the work: {error}") from None
