"""Orients many parts on a Dask cluster.

Needs ``pip install teskorient[distributed]``, also where the workers run.

>>> from teskorient.distributed import orient_files
>>> for result in orient_files(["a.stl", "b.stl"]):  # doctest: +SKIP
...     print(result["input"]["path"], result["status"])
"""

from __future__ import annotations

import json
import os
from collections.abc import Generator, Iterable, Iterator, Mapping, Sequence
from typing import Any

try:
    import fsspec as _fsspec  # noqa: F401
    import xxhash as _xxhash  # noqa: F401
    from distributed import Client
except ImportError as error:
    raise ImportError(
        f"teskorient.distributed needs more packages: pip install teskorient[distributed] ({error})"
    ) from None

from ._inputs import Input
from ._lines import held_line
from ._run import Batch, make_batch, run
from ._settings import KeepOff, Number, make_settings
from ._spread import ClientLike, ClusterError, client_of
from ._work import VersionError

__all__ = ["ClusterError", "VersionError", "orient_files"]

Path = str | bytes | os.PathLike[str] | os.PathLike[bytes]


def orient_files(
    files: Iterable[Path],
    client: Client | str | None = None,
    *,
    goal: str | None = None,
    overhang_angle: Number | None = None,
    fits: str | Sequence[Number] | None = None,
    keep_off: str | Iterable[KeepOff] | None = None,
    unit: str | None = None,
    workers: int | None = None,
    memory_limit: str | float | None = "auto",
    finished: Iterable[Mapping[str, Any]] = (),
    retry_failed: bool = False,
) -> Generator[dict[str, Any], None, None]:
    """Orient parts on a cluster and yield their results as they end.

    Each file has exactly one result, in the form of the lines of ``tesk-orient batch --together``:
    the same members with the same values, but for ``seconds`` and ``peakMemoryBytes``. A file that
    is given twice is worked on once. All objects of a 3MF are taken as one part, as they lie.

    A part that cannot be oriented is a result whose ``status`` is not ``ok``. If a worker is lost,
    its parts are worked on by another one; a part that ends one worker after another gets the status
    ``crashed``. To end early, close the generator or leave its loop.

    Parameters
    ----------
    files : iterable of path-like or str
        Paths, and URLs for fsspec such as ``s3://bucket/part.stl``, that mean the same to all
        workers: they read the files. A relative path is relative to the folder that a worker was
        started in. The iterable is read as the work goes on.
    client : distributed.Client, str or None
        A client; the address of a scheduler; or None for a cluster of processes on this machine,
        which ends with the generator. Scripts that use None need the guard
        ``if __name__ == "__main__":``, as these processes import the script.
    goal : {"balanced", "least-support"}, optional
        See :func:`teskorient.orient`; so for the next three.
    overhang_angle : float, optional
        In degrees from the plate.
    fits : (float, float, float) or str, optional
        Build volume in mm, ``(250, 210, 210)`` or ``"250x210x210"``.
    keep_off : iterable, optional
        Directions ``(x, y, z)``, or pairs ``((x, y, z), degrees)``, or texts as the program takes
        them, ``"0,0,1:30"``.
    unit : {"mm", "cm", "m", "inch", "foot", "micron"}, optional
        Unit of the files' numbers. By default what a 3MF states, else millimetres.
    workers : int, optional
        Processes of the local cluster; by default as many as the machine has processors.
    memory_limit : str, float or None
        Memory of each process of the local cluster, as ``"2 GiB"``; by default its share of the
        machine's. A process that exceeds it is replaced. Other clusters have limits of their own.
    finished : iterable of dict
        Results of an earlier run. A file that they answer for, with the same content and settings,
        has no result this time.
    retry_failed : bool
        Whether those of `finished` that failed are tried again.

    Yields
    ------
    dict
        ``schema``, ``input`` (``path``, ``size``, ``hash``), ``settingsHash``, ``status``,
        ``result`` or ``error`` (``code``, ``text``), ``seconds``, ``peakMemoryBytes``.

    Raises
    ------
    ValueError
        At the call, if a setting is not as described.
    VersionError
        If a worker has another version of the library.
    ClusterError
        If the scheduler was lost or the tasks were cancelled.

    Notes
    -----
    The scheduler knows eight tasks for each thread of a worker at once, and results leave the
    workers as they are yielded, so neither a million files nor a slow consumer fills memory. Each
    part is worked on by one thread. On the dashboard, the tasks are named
    ``tesk-orient-<file name>-...``.
    """
    settings = make_settings(goal, overhang_angle, fits, keep_off, unit)
    held = (held_line(json.dumps(line).encode()) for line in finished)
    batch = make_batch(settings, (line for line in held if line is not None), retry_failed)
    return _yielded(batch, _inputs_of(files), client, workers, memory_limit)


def _inputs_of(files: Iterable[Path]) -> Iterator[Input]:
    seen = set()
    for file in files:
        path = os.fsdecode(file)
        if path not in seen:
            seen.add(path)
            yield Input(path)


def _yielded(
    batch: Batch,
    inputs: Iterator[Input],
    client: ClientLike,
    workers: int | None,
    memory_limit: str | float | None,
) -> Generator[dict[str, Any], None, None]:
    with client_of(client, workers, memory_limit) as cluster:
        for answer in run(cluster, batch, inputs):
            if answer.line is not None:
                yield json.loads(answer.line)
