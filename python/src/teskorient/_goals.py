"""What a good pose is."""

from __future__ import annotations

from collections.abc import Iterable
from ctypes import byref
from dataclasses import dataclass
from typing import Any, Final

import numpy as np
from numpy.typing import ArrayLike

from teskorient import _library as c
from teskorient._arrays import vector_of
from teskorient._call import raise_for

_GOALS: Final = {"balanced": c.GOAL_BALANCED, "least-support": c.GOAL_LEAST_SUPPORT}


@dataclass(frozen=True)
class KeepOff:
    """A face that must not face down.

    Attributes
    ----------
    direction : tuple of float
        Its outward normal; any length above zero.
    angle_deg : float or None
        Forbidden within this of straight down; None: the overhang angle.
    """

    direction: tuple[float, float, float]
    angle_deg: float | None = None


@dataclass(frozen=True)
class PoseSettings:
    """What a good pose is. Numbers are those of float32.

    Attributes
    ----------
    goal : str
        ``balanced`` or ``least-support``.
    overhang_angle_deg : float
        Slope from the plate below which a downward surface needs support.
    support_volume_cost, overhang_area_cost, height_cost : float
        mm of filament per mm3 of support, mm2 of overhang, mm of height.
    build_volume : tuple of float
        mm along x, y and z; 0 where there is no limit.
    keep_off : tuple of KeepOff
        Faces to keep off the plate and support.
    """

    goal: str
    overhang_angle_deg: float
    support_volume_cost: float
    overhang_area_cost: float
    height_cost: float
    build_volume: tuple[float, float, float]
    keep_off: tuple[KeepOff, ...]


def goal_of(
    goal: str, overhang_angle: float, fits: ArrayLike | None, keep_off: Iterable[Any] | None
) -> tuple[c.Goal, PoseSettings, object]:
    if goal not in _GOALS:
        raise ValueError(f"goal must be one of {', '.join(_GOALS)}, not {goal!r}")
    if not 0.0 <= overhang_angle <= 90.0:
        raise ValueError(f"overhang_angle must be from 0 to 90 degrees, not {overhang_angle!r}")
    struct = c.new(c.Goal)
    if c.library.tesk_goal_init(byref(struct), _GOALS[goal]) != c.OK:
        raise_for(c.INTERNAL_ERROR)
    struct.overhang_angle_deg = overhang_angle
    if fits is not None:
        sizes = vector_of(fits, "fits")
        if min(sizes) <= 0.0:
            raise ValueError(f"fits: all three sizes must be above zero, not {sizes}")
        struct.build_volume[:] = sizes
    rules = [_rule_of(rule, i) for i, rule in enumerate(keep_off or ())]
    structs = c.array_of(c.KeepOff, len(rules))
    kept: list[KeepOff] = []
    for to, rule in zip(structs, rules, strict=True):
        angle = overhang_angle if rule.angle_deg is None else rule.angle_deg
        to.direction[:] = rule.direction
        to.angle_deg = angle
        x, y, z = to.direction
        kept.append(KeepOff((x, y, z), to.angle_deg))
    struct.keep_off_count = len(rules)
    if rules:
        struct.keep_off = structs
    x, y, z = struct.build_volume
    settings = PoseSettings(
        goal,
        struct.overhang_angle_deg,
        struct.support_volume_cost,
        struct.overhang_area_cost,
        struct.height_cost,
        (x, y, z),
        tuple(kept),
    )
    return struct, settings, structs


def _rule_of(rule: Any, index: int) -> KeepOff:
    name = f"keep_off[{index}]"
    angle: Any = None
    if isinstance(rule, KeepOff):
        direction, angle = rule.direction, rule.angle_deg
    else:
        try:
            direction = rule
            if len(rule) == 2:
                direction, angle = rule
        except TypeError:
            raise ValueError(f"{name}: must be a direction, not {rule!r}") from None
    vector = vector_of(direction, name)
    if not np.any(np.asarray(vector, np.float32)):
        raise ValueError(f"{name}: the direction is zero")
    if angle is not None and not 0.0 <= angle <= 180.0:
        raise ValueError(f"{name}: the angle must be from 0 to 180 degrees, not {angle!r}")
    return KeepOff(vector, None if angle is None else float(angle))
