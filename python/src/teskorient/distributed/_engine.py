"""One part's report: what ``tesk-orient orient --together --json`` prints, or why there is none."""

from __future__ import annotations

from typing import Any

import teskorient
from teskorient import NoPoseError, Part, PartFileError

from ._lines import OUT_OF_MEMORY, display_name
from ._settings import Settings

_EXTENSIONS = (".stl", ".obj", ".ply", ".off", ".3mf")


class Failure(Exception):
    """A code of the lines, and the program's text."""

    def __init__(self, code: str, text: str) -> None:
        super().__init__(text)
        self.code = code
        self.text = text


def version() -> str:
    """The library's version."""
    return teskorient.__version__


def report(path: str, content: bytes | None, settings: Settings, is_url: bool) -> dict[str, Any]:
    """Read a file, or what a URL holds, and orient the part.

    One thread works, as others have parts of their own.
    """
    name = display_name(path)
    try:
        if is_url:
            part = _part_at_url(path, content, settings)
        else:
            part = Part.load(path, settings.unit, threads=1)
    except PartFileError as error:
        raise Failure("cannot-read", _naming_once(name, display_name(str(error)))) from None
    except MemoryError:
        raise Failure(OUT_OF_MEMORY, f"{name}: not enough memory to read it") from None
    _refuse_no_surface(part, name)
    try:
        return teskorient.orient(part, **settings.keywords(), threads=1).to_dict()
    except NoPoseError as error:
        raise Failure("no-pose", f"{name}: {error}") from None


def _part_at_url(url: str, content: bytes | None, settings: Settings) -> Part:
    name = display_name(url)
    extension = _extension_of(url)
    if extension not in _EXTENSIONS:
        trouble = f"unknown file type {extension or '(no extension)'}"
        raise Failure("cannot-read", f"{name}: {trouble}; supported: {', '.join(_EXTENSIONS)}")
    if content is None:
        raise Failure("cannot-read", f"{name}: no such file")
    return Part.from_bytes(content, extension, settings.unit, name=name, threads=1)


def _extension_of(url: str) -> str:
    for text in (url, url.partition("?")[0]):
        file = text.rpartition("/")[2]
        extension = "." + file.rpartition(".")[2].lower() if "." in file else ""
        if extension in _EXTENSIONS:
            break
    return extension


def _naming_once(name: str, text: str) -> str:
    prefix = f"{name}: "
    while text.startswith(prefix):
        text = text[len(prefix) :]
    return prefix + text


def _refuse_no_surface(part: Part, name: str) -> None:
    count = len(part.faces)
    if part.check.degenerate_triangles < count:
        return
    trouble = (
        "its one triangle has no area"
        if count == 1
        else (f"none of its {count} triangles has an area")
    )
    raise Failure("cannot-read", f"{name}: has no surface: {trouble}")
