"""Which parts a batch is to work on: files, folders, lists of both, and URLs."""

from __future__ import annotations

import os
import re
import stat
from collections.abc import Iterable, Iterator, Sequence
from dataclasses import dataclass

_FORMATS = ("*.stl", "*.obj", "*.ply", "*.off", "*.3mf")
_URL = re.compile(r"[A-Za-z][A-Za-z0-9+.-]*(://|::)")


@dataclass(frozen=True)
class Input:
    """A file or URL. ``problem`` says why it cannot be worked on; empty if it can."""

    path: str
    problem: str = ""


def is_url(text: str) -> bool:
    return _URL.match(text) is not None


def names_in(listing: bytes) -> list[str]:
    """The names of a list: separated by NUL if there is any, else by line feeds."""
    separator = b"\0" if b"\0" in listing else b"\n"
    return [os.fsdecode(name) for name in listing.split(separator) if name]


def glob_pattern(pattern: str) -> re.Pattern[str]:
    """``*`` stays within a folder, ``**`` does not; the case of ASCII letters does not matter."""
    tokens = re.findall(r"\*\*|\*|\?|\[[!^]?.[^\]]*\]|.", pattern, re.DOTALL)
    return re.compile(
        "".join(map(_expression_of, tokens)) + r"\Z", re.DOTALL | re.IGNORECASE | re.ASCII
    )


def _expression_of(token: str) -> str:
    plain = {"**": ".*", "*": "[^/]*", "?": "[^/]"}
    if token in plain:
        return plain[token]
    if len(token) < 3 or token[0] != "[":
        return re.escape(token)
    is_negated = token[1] in "!^"
    members = token[2 if is_negated else 1 : -1]
    text = re.sub(r"[\\\[\]^&~|]", r"\\\g<0>", members)
    return f"(?!/)[{'^' if is_negated else ''}{text}]"


class _Wanted:
    """Whether the files of a folder count."""

    def __init__(self, include: Sequence[str]) -> None:
        self._patterns = [p for text in include or _FORMATS for p in _alternatives(text)]

    def __call__(self, below: str) -> bool:
        name = below.rpartition("/")[2]
        return any(
            pattern.match(below if has_folders else name) for has_folders, pattern in self._patterns
        )


def _alternatives(text: str) -> list[tuple[bool, re.Pattern[str]]]:
    has_folders = "/" in text
    # "**/" is any number of folders, none as well.
    texts = [text, text[3:]] if text.startswith("**/") else [text]
    return [(has_folders, glob_pattern(t)) for t in texts]


def list_inputs(
    given: Iterable[str],
    include: Sequence[str] = (),
    results: str | None = None,
) -> list[Input]:
    """The files, each once, in the order given; those of a folder by their names' bytes.

    Folders are searched to any depth, but not through links to folders. A URL with ``*``, ``?`` or
    ``[`` is a pattern, one that ends in ``/`` a folder; fsspec lists both. What is named and is not
    there is in the list all the same, and fails when it is worked on.
    """
    wanted = _Wanted(include)
    seen = {os.path.abspath(results)} if results else set()
    inputs = []
    for text in given:
        for one in _listed_url(text, wanted) if is_url(text) else _listed(text, wanted):
            key = one.path if is_url(one.path) else os.path.abspath(one.path)
            if key not in seen:
                seen.add(key)
                inputs.append(one)
    return inputs


def _listed_url(url: str, wanted: _Wanted) -> Iterator[Input]:
    import fsspec

    if not (url.endswith("/") or any(c in url for c in "*?[")):
        yield Input(url)
        return
    files, root = fsspec.core.url_to_fs(url)
    if url.endswith("/"):
        root = root.rstrip("/")
        for path in sorted(files.find(root)):
            if wanted(path[len(root) :].lstrip("/")):
                yield Input(files.unstrip_protocol(path))
        return
    for path in sorted(path for path in files.glob(root) if files.isfile(path)):
        yield Input(files.unstrip_protocol(path))


def _listed(path: str, wanted: _Wanted) -> Iterator[Input]:
    mode = _mode_of(path)
    if mode is not None and stat.S_ISDIR(mode):
        yield from _searched(path, "", wanted)
        return
    # Pipes and devices may never end.
    is_sound = mode is None or stat.S_ISREG(mode)
    yield Input(path, "" if is_sound else "is not a regular file")


def _mode_of(path: str) -> int | None:
    try:
        return os.stat(path).st_mode
    except (OSError, ValueError):
        return None


def _searched(folder: str, below: str, wanted: _Wanted) -> Iterator[Input]:
    try:
        with os.scandir(folder) as entries:
            found = sorted(entries, key=lambda entry: os.fsencode(entry.name))
    except OSError as error:
        yield Input(folder, f"the folder cannot be read: {error.strerror}")
        return
    for entry in found:
        path = os.path.join(folder, entry.name)
        name = below + entry.name
        mode = _mode_of(path)
        if mode is not None and stat.S_ISDIR(mode):
            if not entry.is_symlink():
                yield from _searched(path, name + "/", wanted)
        # A link that leads nowhere is a part that is missing.
        elif (mode is None or stat.S_ISREG(mode)) and wanted(name):
            yield Input(path)
