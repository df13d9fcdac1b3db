"""What several tests share."""

from __future__ import annotations

import os
from pathlib import Path

import pytest

ROOT = Path(__file__).parents[2]


@pytest.fixture(scope="session")
def root() -> Path:
    return ROOT


@pytest.fixture(scope="session")
def program() -> Path:
    """The program tesk-orient of this tree, or that which TESK_ORIENT names."""
    named = os.environ.get("TESK_ORIENT")
    path = Path(named) if named else ROOT / "build/release/bin/tesk-orient"
    if not path.exists():
        if named:
            raise FileNotFoundError(path)
        pytest.skip(f"{path} has not been built")
    return path


def sample_meshes() -> list[Path]:
    """Part files made by others; none where their folder is absent."""
    folder = Path(os.environ.get("TESK_MESH_DIR", ROOT.parent / "shared/meshes"))
    kinds = {".stl", ".obj", ".ply", ".off", ".3mf"}
    return sorted(path for path in folder.glob("*") if path.suffix in kinds)


def pytest_report_header() -> str:
    count = len(sample_meshes())
    return f"sample meshes: {count or 'none, so tests that read them are skipped'}"
