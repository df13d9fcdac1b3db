"""The declarations of the library are those of teskorient.h, whose layout tests/c/golden has."""

from __future__ import annotations

import ctypes
import os
import re
import subprocess
import sys
from pathlib import Path

import pytest

from teskorient import _library

STRUCTS = {
    "tesk_call": _library.Call,
    "tesk_mesh_arrays": _library.MeshArrays,
    "tesk_mesh_surface": _library.MeshSurface,
    "tesk_keep_off": _library.KeepOff,
    "tesk_goal": _library.Goal,
    "tesk_pose": _library.Pose,
    "tesk_pose_summary": _library.PoseSummary,
    "tesk_rank_settings": _library.RankSettings,
    "tesk_orientation": _library.Orientation,
    "tesk_points": _library.Points,
    "tesk_box": _library.Box,
    "tesk_read_options": _library.ReadOptions,
    "tesk_part_details": _library.PartDetails,
}


def layout(root: Path) -> list[str]:
    return (root / "tests/c/golden/layout.txt").read_text().splitlines()


def test_structs_have_the_committed_layout(root: Path) -> None:
    declared = []
    for name, struct in STRUCTS.items():
        declared.append(f"{name} {ctypes.sizeof(struct)}")
        for field_name, *_ in struct._fields_:
            field = getattr(struct, field_name)
            declared.append(f"{field.offset:7} {field.size:3} {field_name}")
    assert declared == [line for line in layout(root) if not line.startswith("TESK_")]


def test_constants_have_the_committed_values(root: Path) -> None:
    committed = dict(line.split() for line in layout(root) if line.startswith("TESK_"))
    for name, value in committed.items():
        ours = {"3MF": "THREE_MF"}.get(name[5:], name[5:])
        assert getattr(_library, ours) == int(value), name


def test_every_function_is_declared(root: Path) -> None:
    exports = (root / "tests/c/golden/exports.txt").read_text().split()
    assert sorted(_library._PROTOTYPES) == exports


def test_functions_have_as_many_parameters_as_in_the_header(root: Path) -> None:
    header = re.sub(r"/\*.*?\*/", "", (root / "include/teskorient.h").read_text(), flags=re.S)
    found = re.findall(r"TESK_CALL (tesk_\w+)\(([^;]*)\);", header)
    assert len(found) == len(_library._PROTOTYPES)
    for name, parameters in found:
        count = 0 if parameters == "void" else parameters.count(",") + 1
        assert len(_library._PROTOTYPES[name][1]) == count, name


def test_a_library_that_is_missing_is_an_import_error() -> None:
    run = subprocess.run(
        [sys.executable, "-c", "import teskorient"],
        env=os.environ | {"TESKORIENT_LIBRARY": "nowhere.so"},
        capture_output=True,
        text=True,
    )
    assert run.returncode == 1
    assert "ImportError: teskorient's library cannot be loaded: " in run.stderr


def test_a_library_of_another_version_is_an_import_error(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(_library, "ABI_VERSION", 99)
    with pytest.raises(
        ImportError, match="has version 1 of the C interface; this package needs 99"
    ):
        _library._load()
