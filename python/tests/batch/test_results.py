"""The results file stays whole whatever happens."""

from __future__ import annotations

import os
from pathlib import Path

import pytest

from teskorient.distributed._results import ResultsError, ResultsFile

LINE = b'{"schema":"tesk-orient/batch/1","input":{"path":"a","size":1,"hash":"h"},"status":"ok"}\n'


def test_lines_are_appended_and_read_again(tmp_path: Path) -> None:
    path = tmp_path / "r.jsonl"
    with ResultsFile.create(str(path)) as results:
        results.append(LINE)
        results.append(LINE)
        results.sync()
    with ResultsFile.resume(str(path)) as results:
        assert [line.path for line in results.held] == [b"a", b"a"]
        results.append(LINE)
    assert path.read_bytes() == 3 * LINE


@pytest.mark.parametrize("torn", [b"{", LINE[:-1], b"{\n", b"\0\0\0\n"])
def test_a_torn_last_line_is_cut_off(tmp_path: Path, torn: bytes) -> None:
    path = tmp_path / "r.jsonl"
    path.write_bytes(LINE + torn)
    with ResultsFile.resume(str(path)) as results:
        assert len(results.held) == 1
        results.append(LINE)
    assert path.read_bytes() == 2 * LINE


def test_a_file_of_something_else_stays_as_it_is(tmp_path: Path) -> None:
    path = tmp_path / "r.jsonl"
    path.write_bytes(LINE + b"a letter\n" + LINE)
    with pytest.raises(ResultsError, match="line 2 is no result of a batch") as caught:
        ResultsFile.resume(str(path))
    assert caught.value.exit_code == 3
    assert path.read_bytes() == LINE + b"a letter\n" + LINE


def test_a_file_that_is_there_is_not_overwritten(tmp_path: Path) -> None:
    path = tmp_path / "r.jsonl"
    path.write_bytes(b"")
    with pytest.raises(ResultsError, match="is there already") as caught:
        ResultsFile.create(str(path))
    assert caught.value.exit_code == 4


@pytest.mark.skipif(os.name != "posix", reason="no lock is taken there")
def test_only_one_batch_writes(tmp_path: Path) -> None:
    path = str(tmp_path / "r.jsonl")
    with ResultsFile.create(path):
        with pytest.raises(ResultsError, match="another batch is writing to it"):
            ResultsFile.resume(path)
    ResultsFile.resume(path).close()


def test_a_file_that_vanishes_or_changes_ends_the_batch(tmp_path: Path) -> None:
    path = tmp_path / "r.jsonl"
    with ResultsFile.create(str(path)) as results:
        path.write_bytes(LINE)
        with pytest.raises(ResultsError, match="was changed by another program"):
            results.append(LINE)
        path.unlink()
        with pytest.raises(ResultsError, match="has vanished"):
            results.append(LINE)
