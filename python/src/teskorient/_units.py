"""Units of length."""

from __future__ import annotations

from typing import Final

import numpy as np

from teskorient._arrays import Float32s

UNITS: Final = {
    "mm": 1.0,
    "cm": 10.0,
    "m": 1000.0,
    "inch": 25.4,
    "foot": 304.8,
    "micron": 0.001,
}
_LONG_NAMES: Final = {"millimeter": "mm", "centimeter": "cm", "meter": "m"}


def unit_named(name: str) -> str:
    """Return the short name of a unit of length."""
    short = _LONG_NAMES.get(name, name)
    if short not in UNITS:
        raise ValueError(f"unit must be one of {', '.join(UNITS)}, not {name!r}")
    return short


def scaled(positions: Float32s, unit: str) -> Float32s:
    """Positions in a unit, in millimetres: each rounded once, as those of files are."""
    with np.errstate(over="ignore"):
        return (positions.astype(np.float64) * UNITS[unit]).astype(np.float32)
