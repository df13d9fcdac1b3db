"""Calls of the library: statuses become exceptions, progress and Ctrl-C reach Python."""

from __future__ import annotations

import threading
from collections.abc import Callable, Generator
from typing import Final, NoReturn

from teskorient import _library as c
from teskorient.errors import InternalError, PartFileError, TeskError

# Seconds: Windows lets no signal through while a thread waits without a limit; and how long a call that
# is to end is waited for.
_LOOK_AROUND: Final = 0.05
_PATIENCE: Final = 0.5
# Poses of so few triangles take milliseconds.
FEW_TRIANGLES: Final = 2000

Progress = Callable[[int], object]
"""Told how far a call is, in whole percentages that never fall. What it raises ends the call."""


def last_error() -> str:
    """What the last call on this thread said was wrong."""
    text: bytes = c.library.tesk_last_error()
    return text.decode("utf-8", "replace")


def raise_for(status: int, text: str | None = None) -> NoReturn:
    """Raise what stands for a status that is not OK."""
    text = last_error() if text is None else text
    if status == c.INVALID_ARGUMENT:
        raise ValueError(text)
    if status == c.OUT_OF_MEMORY:
        raise MemoryError(text)
    if status == c.FILE_ERROR:
        raise PartFileError(text)
    if status == c.NO_RESULT:
        raise ValueError(text)
    if status == c.INTERNAL_ERROR:
        raise InternalError(text)
    raise TeskError(text)


def check(status: int) -> None:
    """Raise unless a call succeeded."""
    if status != c.OK:
        raise_for(status)


def _reports(progress: Progress | None, raised: list[BaseException]) -> Generator[int, int, None]:
    """Hand on percentages, sent one by one; yield what the library is to be told.

    Python raises what a signal's handler raises where it next enters or resumes Python code. A
    function would be entered outside of its ``try``; a generator is resumed inside.
    """
    answer = 0
    while True:
        try:
            percent = yield answer
            if progress is not None:
                progress(percent)
        except GeneratorExit:
            return
        except BaseException as error:
            raised.append(error)
        answer = 1 if raised else 0


class Running:
    """One call: how many threads it may use, and whom it tells how far it is.

    Parameters
    ----------
    threads : int or None
        None: as many as the machine has.
    progress : callable or None
        Without one a long call still notices Ctrl-C and other signals whose handlers raise.
    is_long : bool
        Whether the call may take longer than a moment. Reports take a microsecond each.
    """

    def __init__(
        self, threads: int | None, progress: Progress | None, is_long: bool = True
    ) -> None:
        if threads is not None and not (isinstance(threads, int) and 1 <= threads <= 1024):
            raise ValueError(f"threads must be a whole number from 1 to 1024, not {threads!r}")
        if progress is not None and not callable(progress):
            raise ValueError(f"progress must be callable, not {progress!r}")
        self._raised: list[BaseException] = []
        self._is_long = is_long
        if progress is None and not is_long:
            self.struct = c.new(c.Call, threads=threads or 0)
            return
        reports = _reports(progress, self._raised)
        next(reports)
        self.struct = c.new(c.Call, threads=threads or 0, progress=c.ProgressFunction(reports.send))

    def check(self, status: int) -> None:
        """Raise what the progress callback raised, or what stands for the status."""
        if self._raised:
            error = self._raised[0]
            self._raised.clear()  # its traceback leads to the list
            raise error
        check(status)

    def watched(self, call: Callable[[], int]) -> None:
        """Make a call whose progress the library may report on a thread of its own, and check it.

        Python handles signals on the main thread only. So a long call is made on another thread,
        while the main one waits for both. Where the library cannot end a call, it goes on behind the
        exception, and the interpreter's end waits for it.
        """
        if not self._is_long or threading.current_thread() is not threading.main_thread():
            self.check(call())
            return
        ended: list[tuple[int, str]] = []
        has_ended = threading.Event()

        def work() -> None:
            try:
                status = call()
                ended.append((status, "" if status == c.OK else last_error()))
            finally:
                has_ended.set()

        threading.Thread(target=work, name="teskorient", daemon=False).start()
        try:
            # Not join(): before Python 3.13 it takes a thread for ended if a signal's handler raises
            # there, and the interpreter does not wait for it any more.
            while not has_ended.wait(_LOOK_AROUND):
                pass
        except BaseException as error:
            self._raised.append(error)  # which the next report finds
            has_ended.wait(_PATIENCE)
            raise
        status, text = ended[0] if ended else (c.INTERNAL_ERROR, "the call failed in Python")
        if self._raised or status == c.OK:
            self.check(status)
        else:
            raise_for(status, text)
