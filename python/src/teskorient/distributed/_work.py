"""What a worker does with one file."""

from __future__ import annotations

import os
import stat
import time
from collections.abc import Mapping
from dataclasses import dataclass
from typing import Any, NamedTuple

import fsspec
import xxhash

from . import _engine
from ._inputs import is_url
from ._lines import OUT_OF_MEMORY, Identity, display_name, entry, failure, json_text, success
from ._settings import Settings, content_hash

_PIECE = 1 << 20


@dataclass(frozen=True)
class Job:
    """A file, and what is to be done with it."""

    path: str
    settings: Settings
    settings_hash: str
    version: str
    # Hashes of the contents for which a line is held already, with its status.
    held: Mapping[str, str]


class Answer(NamedTuple):
    """A line with its line feed, or none if one is held already. The other members are for progress."""

    status: str
    line: bytes | None
    error: str = ""


class FetchError(Exception):
    """A file could not be fetched, and may be at the next try. The text says why."""


class VersionError(Exception):
    """A worker has another version of the library, so its results would differ."""


def work(job: Job) -> Answer:
    """The line of one file. What is wrong with the file is a line, too."""
    version = _engine.version()
    if version != job.version:
        raise VersionError(f"a worker has teskorient {version}, but {job.version} is needed")
    start = time.monotonic()
    _reset_peak_memory()
    content, identity = _content_of(job.path)
    if identity is not None and identity.hash in job.held:
        return Answer(job.held[identity.hash], None)
    outcome = _outcome(job, content)
    seconds = time.monotonic() - start
    return answer(job, identity, outcome, seconds, _peak_memory())


def answer(
    job: Job,
    identity: Identity | None,
    outcome: Mapping[str, Any],
    seconds: float | None = None,
    peak_memory: int | None = None,
) -> Answer:
    """The line of a file that came to this outcome."""
    line = entry(job.path, identity, job.settings_hash, outcome, seconds, peak_memory)
    error = outcome["error"]["text"] if "error" in outcome else ""
    return Answer(outcome["status"], (json_text(line) + "\n").encode(), error)


def identify(path: str) -> Identity | None:
    """Size and hash of a file or of what a URL holds; None if it cannot be read. Keeps little of it."""
    try:
        with _opened(path) as file:
            state = xxhash.xxh3_128()
            size = 0
            while piece := file.read(_PIECE):
                state.update(piece)
                size += len(piece)
    except (OSError, ValueError):
        return None
    return Identity(size, "xxh128:" + state.hexdigest())


def _opened(path: str) -> Any:
    if is_url(path):
        return fsspec.open(path, "rb")
    # Pipes and devices may never end.
    if not stat.S_ISREG(os.stat(path).st_mode):
        raise OSError("is not a regular file")
    return open(path, "rb")


def _content_of(path: str) -> tuple[bytes | None, Identity | None]:
    """What a URL holds; of a file, which the library reads itself, only the identity."""
    if not is_url(path):
        return None, identify(path)
    try:
        with _opened(path) as file:
            content: bytes = file.read()
    except (FileNotFoundError, IsADirectoryError, PermissionError):
        return None, None
    except MemoryError:
        return None, None
    except Exception as error:
        # Storages have exceptions of their own, which may not be known where the results go.
        raise FetchError(f"cannot be fetched: {type(error).__name__}: {error}") from None
    return content, Identity(len(content), content_hash(content))


def _outcome(job: Job, content: bytes | None) -> dict[str, Any]:
    name = display_name(job.path)
    try:
        return success(_engine.report(job.path, content, job.settings, is_url(job.path)))
    except _engine.Failure as error:
        return failure(error.code, error.text)
    except MemoryError:
        return failure(OUT_OF_MEMORY, f"{name}: not enough memory")
    except Exception as error:
        return failure("internal", f"{name}: {error}")


def _reset_peak_memory() -> None:
    try:
        with open("/proc/self/clear_refs", "w") as file:
            file.write("5")
    except OSError:
        pass


def _peak_memory() -> int | None:
    """The most memory that this process held since the last reset; on macOS since it was started."""
    try:
        with open("/proc/self/status", "rb") as file:
            for line in file:
                if line.startswith(b"VmHWM:"):
                    return int(line.split()[1]) * 1024
    except OSError:
        pass
    try:
        import resource
    except ImportError:  # Windows
        return None
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
