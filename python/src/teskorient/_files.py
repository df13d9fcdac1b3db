"""What a part file says beside its mesh, and errors that name the file."""

from __future__ import annotations

import re
from ctypes import byref, c_char_p
from dataclasses import dataclass
from typing import Final

from teskorient import _library as c
from teskorient._call import check
from teskorient._units import unit_named
from teskorient.errors import PartFileError

FORMATS: Final = {c.STL: "STL", c.OBJ: "OBJ", c.PLY: "PLY", c.OFF: "OFF", c.THREE_MF: "3MF"}
# The warnings of readers whose text begins with, or contains first, how many there are.
_COUNTED: Final = {"small-faces", "not-built", "several-items", "extra-bytes", "bad-normals"}


@dataclass(frozen=True)
class PartWarning:
    """Something that makes a result doubtful, or that a reader passed over or put right.

    Attributes
    ----------
    code : str
        Short and fixed, for programs: ``open-edges``.
    text : str
        One sentence.
    count : int
        How many there are, where that makes sense; otherwise 0.
    """

    code: str
    text: str
    count: int = 0


def unit_in_file(stated: str, warnings: list[PartWarning]) -> str:
    """Return the unit that a file states, or millimetres; a strange one is a warning more."""
    if not stated:
        return "mm"
    try:
        return unit_named(stated)
    except ValueError:
        pass
    text = f'the file gives its unit as "{stated}", which 3MF does not know; millimetres are taken'
    warnings.append(PartWarning("unknown-unit", text))
    return "mm"


def warning_of(file: c.Handle, index: int) -> PartWarning:
    """Return a warning of the reader."""
    code, text = c_char_p(), c_char_p()
    check(c.library.tesk_part_warning(file.pointer, index, byref(code), byref(text)))
    name = (code.value or b"").decode()
    sentence = (text.value or b"").decode("utf-8", "replace")
    found = re.search(r"\d+", sentence) if name in _COUNTED else None
    return PartWarning(name, sentence, int(found.group()) if found else 0)


def object_name(file: c.Handle, index: int) -> str:
    """Return the name of a solid or object."""
    name = c_char_p()
    check(c.library.tesk_part_object(file.pointer, index, byref(name)))
    return (name.value or b"").decode("utf-8", "replace")


class naming:
    """Puts a file's name in front of errors that lack it."""

    def __init__(self, name: str) -> None:
        self._name = name

    def __enter__(self) -> None:
        pass

    def __exit__(self, kind: object, error: BaseException | None, trace: object) -> None:
        if isinstance(error, PartFileError) and error.filename is None:
            text = error.text
            if self._name and not text.startswith(self._name + ":"):
                text = f"{self._name}: {text}"
            raise PartFileError(text, self._name or None) from None
