"""What can go wrong, beside ``ValueError`` for arguments and ``MemoryError``."""

from __future__ import annotations

from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from teskorient.poses import PassedOver, Pose

__all__ = ["InternalError", "NoPoseError", "PartFileError", "TeskError"]


class TeskError(Exception):
    """The base of this package's own exceptions."""


class PartFileError(TeskError, OSError):
    """A part file that cannot be read or written.

    Its text is that of the program, one line such as ``part.obj: line 23: a face refers to vertex
    12, but the file has 8``. It is an `OSError`, so that code which expects those of files catches
    it; `errno` is None, as most of these files are there but broken.

    Attributes
    ----------
    filename : str or None
        The file's name as it was given; None of bytes in memory.
    """

    def __init__(self, text: str, filename: str | None = None) -> None:
        super().__init__(text)
        self.text = text
        self.filename = filename

    def __str__(self) -> str:
        return self.text

    def __reduce__(self) -> tuple[object, ...]:
        return PartFileError, (self.text, self.filename)


class NoPoseError(TeskError, ValueError):
    """No pose of a part is within the goal's limits.

    Attributes
    ----------
    passed_over : PassedOver or None
        How many poses were passed over, by the first rule that each broke.
    as_it_lies : Pose or None
        The part without any turn.
    """

    def __init__(
        self,
        text: str,
        passed_over: PassedOver | None = None,
        as_it_lies: Pose | None = None,
    ) -> None:
        super().__init__(text)
        self.passed_over = passed_over
        self.as_it_lies = as_it_lies


class InternalError(TeskError, RuntimeError):
    """A defect of the library, or threads that cannot be started."""
