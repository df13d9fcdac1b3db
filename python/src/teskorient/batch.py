"""``python -m teskorient.batch``: many parts on a Dask cluster, into one results file.

The file is that of ``tesk-orient batch --together``: either of the two goes on with what the other
began.
"""

from __future__ import annotations

import argparse
import logging
import signal
import sys
import time
from collections.abc import Sequence
from dataclasses import dataclass

from teskorient.distributed import ClusterError, VersionError
from teskorient.distributed._inputs import Input, list_inputs, names_in
from teskorient.distributed._results import ResultsError, ResultsFile
from teskorient.distributed._run import Batch, make_batch, run
from teskorient.distributed._settings import GOALS, UNITS, Settings, make_settings
from teskorient.distributed._spread import client_of
from teskorient.distributed._work import Answer

_INTERNAL = 1
_USAGE = 2
_SOME_FAILED = 5
_ABORTED = 130

# Workers that end or are replaced are no news: each part's line says what became of it.
_LOG_LEVEL = logging.CRITICAL

_SYNC_SECONDS = 1.0
_PROGRESS_SECONDS = 10.0

_EPILOG = """\
exit codes: 0 all parts are done; 1 internal error, or the cluster was lost; 2 invalid command line;
3 the file for the results holds something else; 4 the results cannot be written; 5 some parts failed;
130 aborted
"""


def _parser() -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(
        prog="python -m teskorient.batch",
        description="Orient many parts on a Dask cluster. Takes the objects of a 3MF as one part, as "
        "tesk-orient batch --together does, and writes the same lines.",
        epilog=_EPILOG,
    )
    add = parser.add_argument
    add(
        "inputs",
        metavar="INPUT",
        nargs="+",
        help="files, folders, URLs, URL patterns such as "
        "s3://parts/*.stl, URL folders that end in /, or - for a list of them on standard input",
    )
    add("--results", required=True, metavar="FILE", help="gets one line of JSON for each part")
    add(
        "--scheduler",
        metavar="ADDRESS",
        help="of a Dask cluster, as tcp://head:8786; without it, processes on this machine",
    )
    add(
        "--resume",
        action="store_true",
        help="skip parts that the results hold for the same content and settings",
    )
    add("--retry-failed", action="store_true", help="with --resume: but not those that failed")
    add(
        "--include",
        action="append",
        default=[],
        metavar="PATTERN",
        help="take the files of folders that match, as '*.stl' or 'left/**/v?.obj'",
    )
    add("--jobs", type=_positive, metavar="N", help="processes on this machine [all processors]")
    add(
        "--memory-limit",
        default="auto",
        metavar="SIZE",
        help="of each of them, as 2GiB; one that "
        "exceeds it is replaced [its share of the machine's]",
    )
    add("-q", "--quiet", action="store_true", help="no progress and no failures on the screen")
    part = parser.add_argument_group("settings, as of tesk-orient orient")
    part.add_argument("--goal", choices=GOALS)
    part.add_argument("--overhang-angle", metavar="DEGREES")
    part.add_argument("--fits", metavar="XxYxZ")
    part.add_argument("--keep-off", action="append", default=[], metavar="X,Y,Z[:ANGLE]")
    part.add_argument("--units", choices=UNITS)
    part.add_argument("--together", action="store_true", help="always so; for the program's sake")
    return parser


def _positive(text: str) -> int:
    number = int(text)
    if number < 1:
        raise ValueError
    return number


def _settings_of(options: argparse.Namespace) -> Settings:
    if options.retry_failed and not options.resume:
        raise ValueError("--retry-failed goes with --resume only")
    return make_settings(
        options.goal, options.overhang_angle, options.fits, options.keep_off, options.units
    )


@dataclass
class _Counts:
    total: int
    done: int = 0
    skipped: int = 0
    failed: int = 0

    def take(self, answer: Answer) -> None:
        if answer.line is None:
            self.skipped += 1
        else:
            self.done += 1
        self.failed += answer.status != "ok"


class _Screen:
    """Progress and failures on standard error."""

    def __init__(self, is_quiet: bool) -> None:
        self._is_quiet = is_quiet
        self._start = time.monotonic()
        self._shown = self._start

    def failure(self, text: str) -> None:
        if not self._is_quiet:
            printable = "".join(c if c.isprintable() else ascii(c)[1:-1] for c in text)
            _say(printable)

    def progress(self, counts: _Counts) -> None:
        now = time.monotonic()
        if self._is_quiet or now < self._shown + _PROGRESS_SECONDS:
            return
        self._shown = now
        ended = counts.done + counts.skipped
        rate = counts.done / (now - self._start)
        left = f", {(counts.total - ended) / rate:.0f} s left" if rate > 0 else ""
        print(
            f"{ended:,} of {counts.total:,}, {counts.failed:,} failed, {rate:.1f}/s{left}",
            file=sys.stderr,
        )

    def summary(self, counts: _Counts) -> str:
        seconds = time.monotonic() - self._start
        parts = "part" if counts.total == 1 else "parts"
        skipped = f", {counts.skipped:,} in the results already" if counts.skipped else ""
        return (
            f"{counts.total:,} {parts}: {counts.done:,} done{skipped}, {counts.failed:,} failed; "
            f"{seconds:.1f} s"
        )


def _say(text: str) -> None:
    encoding = sys.stderr.encoding or "utf-8"
    line = f"teskorient.batch: {text}".encode(encoding, "replace").decode(encoding)
    print(line, file=sys.stderr, flush=True)


def _inputs_of(options: argparse.Namespace) -> list[Input]:
    given = [text for text in options.inputs if text != "-"]
    if "-" in options.inputs:
        given += names_in(sys.stdin.buffer.read())
    return list_inputs(given, options.include, options.results)


class _Interrupts:
    """Ctrl-C, heard where nothing is left half done. The second one ends the command at once."""

    def __enter__(self) -> _Interrupts:
        self._is_heard = False
        self._before = signal.signal(signal.SIGINT, self._hear)
        return self

    def __exit__(self, *error: object) -> None:
        signal.signal(signal.SIGINT, self._before)

    def _hear(self, number: int, frame: object) -> None:
        if self._is_heard:
            raise KeyboardInterrupt
        self._is_heard = True

    def check(self) -> None:
        if self._is_heard:
            raise KeyboardInterrupt


def _write_all(
    options: argparse.Namespace, batch: Batch, inputs: list[Input], results: ResultsFile
) -> _Counts:
    counts = _Counts(len(inputs))
    screen = _Screen(options.quiet)
    synced = time.monotonic()
    try:
        where = (options.scheduler, options.jobs, options.memory_limit, _LOG_LEVEL)
        with _Interrupts() as interrupts, client_of(*where) as client:
            for answer in run(client, batch, inputs, interrupts.check):
                interrupts.check()
                if answer.line is not None:
                    results.append(answer.line)
                    if answer.status != "ok":
                        screen.failure(answer.error)
                counts.take(answer)
                screen.progress(counts)
                if time.monotonic() > synced + _SYNC_SECONDS:
                    results.sync()
                    synced = time.monotonic()
    except KeyboardInterrupt:
        results.sync()
        written = "1 line is" if counts.done == 1 else f"{counts.done:,} lines are"
        _say(f"aborted; {written} written, and whole. --resume goes on")
        raise
    results.sync()
    print(screen.summary(counts))
    return counts


def _run(options: argparse.Namespace, settings: Settings) -> int:
    inputs = _inputs_of(options)
    open_results = ResultsFile.resume if options.resume else ResultsFile.create
    with open_results(options.results) as results:
        batch = make_batch(settings, results.held, options.retry_failed)
        results.held.clear()
        counts = _write_all(options, batch, inputs, results)
    if counts.failed == 0:
        return 0
    _say(f"{counts.failed} of {counts.total} failed; {options.results} says why")
    return _SOME_FAILED


def main(arguments: Sequence[str] | None = None) -> int:
    """Run the command and return its exit code."""
    options = _parser().parse_args(arguments)
    logging.getLogger("distributed").setLevel(_LOG_LEVEL)
    try:
        settings = _settings_of(options)
    except ValueError as error:
        _say(f"{error}; see --help")
        return _USAGE
    try:
        return _run(options, settings)
    except ResultsError as error:
        _say(str(error))
        return error.exit_code
    except (ClusterError, VersionError, OSError) as error:
        _say(str(error))
        return _INTERNAL
    except KeyboardInterrupt:
        return _ABORTED


if __name__ == "__main__":
    sys.exit(main())
