"""Settings of a batch, and the hash that stands for them in the lines."""

from __future__ import annotations

import math
from collections.abc import Iterable, Sequence
from dataclasses import dataclass
from typing import Any

import numpy as np
import xxhash

from ._lines import json_text

GOALS = ("balanced", "least-support")
UNITS = ("mm", "cm", "m", "inch", "foot", "micron")

Number = int | float | str
Direction = Sequence[Number]
KeepOff = str | Direction | tuple[Direction, Number]


@dataclass(frozen=True)
class Settings:
    """What decides the results, as the program takes it on its command line."""

    goal: str | None = None
    overhang_angle: str | None = None
    fits: str | None = None
    keep_off: tuple[str, ...] = ()
    unit: str | None = None

    @property
    def arguments(self) -> list[str]:
        """The program's options but for their defaults, sorted by name."""
        single = {"fits": self.fits, "goal": self.goal}
        given = [f"--{name}={value}" for name, value in single.items() if value is not None]
        given += [f"--keep-off={rule}" for rule in self.keep_off]
        if self.overhang_angle is not None:
            given.append(f"--overhang-angle={self.overhang_angle}")
        given.append("--together")
        if self.unit is not None:
            given.append(f"--units={self.unit}")
        return given

    def hash(self, version: str) -> str:
        """As ``tesk-orient batch --together`` of this version with these options has it."""
        settings = {
            "version": version,
            "command": "orient",
            "arguments": self.arguments,
            "writesParts": False,
            "outputExtension": "",
        }
        return content_hash((json_text(settings) + "\n").encode())

    def keywords(self) -> dict[str, Any]:
        """The same as :func:`teskorient.orient` takes it; without the unit."""
        keywords: dict[str, Any] = {"goal": self.goal or "balanced"}
        if self.overhang_angle is not None:
            keywords["overhang_angle"] = float(self.overhang_angle)
        if self.fits is not None:
            keywords["fits"] = tuple(_numbers_in(self.fits, "x"))
        if self.keep_off:
            keywords["keep_off"] = [_rule_in(rule) for rule in self.keep_off]
        return keywords


def content_hash(content: bytes) -> str:
    return "xxh128:" + xxhash.xxh3_128_hexdigest(content)


def make_settings(
    goal: str | None = None,
    overhang_angle: Number | None = None,
    fits: str | Sequence[Number] | None = None,
    keep_off: str | Iterable[KeepOff] | None = None,
    unit: str | None = None,
) -> Settings:
    """Checks settings and brings them into the program's words.

    Texts are kept as they are, as the program keeps those of its command line: ``"55.0"`` and
    ``"55"`` are different settings to both. Numbers get their shortest form: 55.0 becomes ``55``.
    """
    if goal is not None and goal not in GOALS:
        raise ValueError(f"goal {goal!r}: must be one of {', '.join(GOALS)}")
    if unit is not None and unit not in UNITS:
        raise ValueError(f"unit {unit!r}: must be one of {', '.join(UNITS)}")
    angle = None if overhang_angle is None else _text(overhang_angle)
    if angle is not None and not 0.0 <= _float(angle) <= 90.0:
        raise ValueError(f"overhang_angle {angle}: must be from 0 to 90 degrees")
    volume = fits if fits is None or isinstance(fits, str) else "x".join(map(_text, fits))
    if volume is not None:
        _refuse_no_volume(volume)
    rules = [keep_off] if isinstance(keep_off, str) else list(() if keep_off is None else keep_off)
    texts = tuple(_rule_text(rule) for rule in rules)
    for text in texts:
        _rule_in(text)
    return Settings(goal, angle, volume, texts, unit)


def _text(value: Number) -> str:
    if isinstance(value, str):
        return value
    # The shortest form of a float32 is that of its own type, not that of the double.
    number = float(str(value)) if isinstance(value, np.floating) else float(value)
    return str(int(number)) if number.is_integer() and abs(number) < 1e15 else repr(number)


def _float(text: str) -> float:
    try:
        return float(text)
    except ValueError:
        return math.nan


def _numbers_in(text: str, between: str) -> list[float]:
    numbers = [float(np.float32(_float(part))) for part in text.split(between)]
    return numbers if all(map(math.isfinite, numbers)) else []


def _refuse_no_volume(text: str) -> None:
    sizes = _numbers_in(text, "x")
    if len(sizes) != 3 or not all(size > 0.0 for size in sizes):
        raise ValueError(f"fits {text}: not three sizes like 250x210x210")


def _rule_text(rule: KeepOff) -> str:
    if isinstance(rule, str):
        return rule
    if len(rule) == 2 and not isinstance(rule[0], (int, float, str)):
        direction, angle = rule
        return ",".join(map(_text, direction)) + ":" + _text(angle)  # type: ignore[arg-type]
    return ",".join(_text(value) for value in rule)  # type: ignore[arg-type]


def _rule_in(text: str) -> tuple[tuple[float, ...], float | None]:
    """A direction, and the angle around it if one is given."""
    words, colon, angle_text = text.partition(":")
    direction = _numbers_in(words, ",")
    angle = float(np.float32(_float(angle_text))) if colon else None
    is_angle = angle is None or 0.0 <= angle <= 180.0
    if len(direction) != 3 or not any(direction) or not is_angle:
        raise ValueError(f"keep_off {text}: not a direction like 0,0,1 or 0,0,1:30")
    return tuple(direction), angle
