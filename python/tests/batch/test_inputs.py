"""Which files a batch takes."""

from __future__ import annotations

import os
from pathlib import Path

import pytest

from teskorient.distributed._inputs import glob_pattern, is_url, list_inputs, names_in


@pytest.mark.parametrize(
    ("pattern", "name", "matches"),
    [
        ("*.stl", "A.STL", True),
        ("*.stl", "a/b.stl", False),
        ("**.stl", "a/b.stl", True),
        ("v?.obj", "v1.obj", True),
        ("v?.obj", "v/.obj", False),
        ("[a-c]x", "Bx", True),
        ("[!a-c]x", "bx", False),
        ("[!a-c]x", "/x", False),
        ("[]]x", "]x", True),
        ("[x", "[x", True),
        ("a.b", "a+b", False),
        ("left/**/v*", "left/a/b/v1", True),
    ],
)
def test_patterns(pattern: str, name: str, matches: bool) -> None:
    assert (glob_pattern(pattern).match(name) is not None) == matches


def test_lists_are_separated_by_null_or_line_feeds() -> None:
    assert names_in(b"a b\n\nc") == ["a b", "c"]
    assert names_in(b"a\nb\0c\0") == ["a\nb", "c"]


def test_what_is_a_url() -> None:
    assert is_url("s3://bucket/a.stl") and is_url("simplecache::s3://b/a.stl")
    assert not is_url("C:\\parts\\a.stl") and not is_url("parts/a:b.stl") and not is_url("/a.stl")


def test_a_folder_is_searched_in_order_and_each_file_taken_once(tmp_path: Path) -> None:
    for name in ["b.stl", "B.OFF", "a/c.ply", "a-.obj", "n.txt", "a/x.gcode"]:
        path = tmp_path / name
        path.parent.mkdir(exist_ok=True)
        path.write_bytes(b"")
    folder = str(tmp_path)
    found = list_inputs([folder, folder + "/b.stl", folder + "/n.txt"])
    names = [os.path.relpath(one.path, folder).replace(os.sep, "/") for one in found]
    assert names == ["B.OFF", "a/c.ply", "a-.obj", "b.stl", "n.txt"]


def test_patterns_choose_the_files_of_folders(tmp_path: Path) -> None:
    for name in ["a/v1.obj", "a/b/v2.obj", "v3.obj", "w.obj"]:
        (tmp_path / name).parent.mkdir(parents=True, exist_ok=True)
        (tmp_path / name).write_bytes(b"")
    names = [Path(one.path).name for one in list_inputs([str(tmp_path)], ["**/v*.obj"])]
    assert sorted(names) == ["v1.obj", "v2.obj", "v3.obj"]
    assert len(list_inputs([str(tmp_path)], ["a/*"])) == 1


def test_urls_are_listed_by_fsspec() -> None:
    fsspec = pytest.importorskip("fsspec")
    files = fsspec.filesystem("memory")
    for name in ["/parts/a.stl", "/parts/deep/b.obj", "/parts/c.txt"]:
        files.pipe(name, b"")
    try:
        assert [one.path for one in list_inputs(["memory://parts/*.stl"])] == [
            "memory:///parts/a.stl"
        ]
        found = [one.path for one in list_inputs(["memory://parts/", "memory://parts/none.stl"])]
        assert found == [
            "memory:///parts/a.stl",
            "memory:///parts/deep/b.obj",
            "memory://parts/none.stl",
        ]
    finally:
        files.rm("/parts", recursive=True)
