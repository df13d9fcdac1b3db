"""The file that a batch appends its lines to, shared with ``tesk-orient batch``."""

from __future__ import annotations

import os
import signal
import threading
from collections.abc import Iterator
from contextlib import contextmanager

from ._lines import Held, held_line

try:
    import fcntl
except ImportError:  # Windows
    fcntl = None  # type: ignore[assignment]


class ResultsError(Exception):
    """The results cannot be read or written. ``exit_code`` is the program's."""

    def __init__(self, exit_code: int, text: str) -> None:
        super().__init__(text)
        self.exit_code = exit_code


_HOLDS_SOMETHING_ELSE = 3
_CANNOT_WRITE = 4


@contextmanager
def _whole_lines() -> Iterator[None]:
    """Ctrl-C waits until a line is written. Only the main thread ever hears of it."""
    if threading.current_thread() is not threading.main_thread():
        yield
        return
    heard: list[int] = []
    before = signal.signal(signal.SIGINT, lambda number, frame: heard.append(number))
    try:
        yield
    finally:
        signal.signal(signal.SIGINT, before)
        if heard and callable(before):
            before(signal.SIGINT, None)


class ResultsFile:
    """Whole lines only. Locked against other batches where the system has such locks.

    Use :meth:`create` or :meth:`resume`, and the object as a context manager.
    """

    def __init__(self, path: str, flags: int) -> None:
        self._path = path
        self._size = 0
        self.held: list[Held] = []
        if os.path.isdir(path):
            raise self._failure("cannot be written: is a folder")
        binary = getattr(os, "O_BINARY", 0) | getattr(os, "O_CLOEXEC", 0)
        try:
            self._file = os.open(path, flags | os.O_RDWR | os.O_CREAT | binary, 0o666)
        except FileExistsError:
            raise self._failure("is there already; --resume goes on with it") from None
        except OSError as error:
            raise self._cannot_be_written(error) from None

    @classmethod
    def create(cls, path: str) -> ResultsFile:
        """A new file. One that is there is not overwritten."""
        file = cls(path, os.O_EXCL)
        file._lock()
        return file

    @classmethod
    def resume(cls, path: str) -> ResultsFile:
        """A file that may be there already. A torn last line is cut off; ``held`` has the others."""
        file = cls(path, 0)
        try:
            file._lock()
            file._read_held()
            os.ftruncate(file._file, file._size)
        except OSError as error:
            file.close()
            raise file._cannot_be_written(error) from None
        except BaseException:
            file.close()
            raise
        return file

    def __enter__(self) -> ResultsFile:
        return self

    def __exit__(self, *error: object) -> None:
        self.close()

    def close(self) -> None:
        if self._file >= 0:
            os.close(self._file)
        self._file = -1

    def append(self, line: bytes) -> None:
        """Writes a line with its line feed. If that fails, nothing of it stays."""
        with _whole_lines():
            self._refuse_if_replaced()
            rest = memoryview(line)
            try:
                os.lseek(self._file, self._size, os.SEEK_SET)
                while rest:
                    rest = rest[os.write(self._file, rest) :]
            except OSError as error:
                os.ftruncate(self._file, self._size)
                raise self._cannot_be_written(error) from None
            self._size += len(line)

    def sync(self) -> None:
        """Waits until all lines are on the disk."""
        try:
            os.fsync(self._file)
        except OSError as error:
            raise self._cannot_be_written(error) from None

    def _lock(self) -> None:
        if fcntl is None:
            return
        try:
            fcntl.flock(self._file, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            self.close()
            raise self._failure("another batch is writing to it") from None
        except OSError:
            pass  # some network file systems have no locks

    def _read_held(self) -> None:
        unread: int | None = None
        with open(self._path, "rb") as file:
            for number, text in enumerate(file, start=1):
                if unread is not None:
                    trouble = f"line {unread} is no result of a batch; nothing was changed"
                    raise self._failure(trouble, _HOLDS_SOMETHING_ELSE)
                line = held_line(text) if text.endswith(b"\n") else None
                if line is None:
                    # Torn, if it is the last one: the system stopped while it was written.
                    unread = number
                    continue
                self.held.append(line)
                self._size += len(text)

    def _refuse_if_replaced(self) -> None:
        try:
            named = os.stat(self._path)
        except (FileNotFoundError, NotADirectoryError):
            trouble = "has vanished; the batch ends, and its lines with it"
            raise self._failure(trouble) from None
        opened = os.fstat(self._file)
        is_same = (named.st_ino, named.st_dev) == (opened.st_ino, opened.st_dev)
        if not is_same or opened.st_size != self._size:
            raise self._failure("was changed by another program; the batch ends, --resume goes on")

    def _failure(self, trouble: str, exit_code: int = _CANNOT_WRITE) -> ResultsError:
        return ResultsError(exit_code, f"{self._path}: {trouble}")

    def _cannot_be_written(self, error: OSError) -> ResultsError:
        return self._failure(f"cannot be written: {error.strerror or error}")
