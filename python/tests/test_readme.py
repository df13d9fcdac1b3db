"""What the READMEs say runs."""

from __future__ import annotations

import re
import subprocess
from pathlib import Path

import pytest

import shapes
from teskorient import Part


def python_in(text: str) -> str:
    blocks = re.findall(r"```python\n(.*?)```", text, flags=re.S)
    assert blocks
    return "\n".join(blocks)


@pytest.mark.parametrize("name", ["README.md", "python/README.md"])
def test_its_python_runs(root: Path, name: str, tmp_path: Path) -> None:
    Part(*shapes.turned(shapes.table(), 1.0, (1, 1, 0))).save(tmp_path / "bracket.stl")
    text = (root / name).read_text()
    names: dict[str, object] = {}
    with pytest.MonkeyPatch.context() as patch:
        patch.chdir(tmp_path)
        exec(python_in(text), names)
    part = Part.load(tmp_path / "bracket-turned.stl")
    assert part.size[2] < 40 and part.bounds[0, 2] == 0


def test_its_packages_are_those_that_the_scripts_install(root: Path) -> None:
    section = (root / "README.md").read_text().partition("## In Python")[2]
    line = re.search(r"apt-get install (.*)", section)
    assert line is not None
    script = "source scripts/lib/common.sh; source scripts/lib/packages.sh; packages_for python"
    listed = subprocess.run(
        ["bash", "-c", script], cwd=root, capture_output=True, text=True, check=True
    ).stdout
    assert [entry.split("|")[0] for entry in listed.splitlines()] == line.group(1).split()
