"""Sentences about poses, in the program's words."""

from __future__ import annotations

import math

import numpy as np

from teskorient._goals import PoseSettings
from teskorient._pose import PassedOver, Pose, Poses

_SQUARE = float(np.float32(0.9998))  # 1.1 degrees


def _rounded(value: float) -> float:
    """Round to a whole number, halves away from zero."""
    whole = math.floor(abs(value))
    return math.copysign(whole + (abs(value) - whole >= 0.5), value)


def direction_text(direction: tuple[float, float, float]) -> str:
    """A direction to three places."""
    x, y, z = (_rounded(value * 1000.0) / 1000.0 + 0.0 for value in direction)
    return f"({x:.3f}, {y:.3f}, {z:.3f})"


def filament_text(millimetres: float) -> str:
    """A length of filament to two digits: the prediction is good for no more."""
    about = 0.0
    if millimetres >= 1.0:
        unit = math.pow(10.0, math.floor(math.log10(millimetres)) - 1.0)
        about = _rounded(millimetres / unit) * unit
    if about >= 9950.0:
        return f"{about / 1000.0:.0f} m"
    return f"{about / 1000.0:.1f} m" if about >= 995.0 else f"{about:.0f} mm"


def _is_identity(pose: Pose) -> bool:
    return bool((pose.rotation == np.identity(4, np.float32)).all())


def _side(pose: Pose) -> str:
    if _is_identity(pose):
        return "stays as it lies"
    x, y, z = (float(value) for value in pose.up)
    if z > _SQUARE:
        return "stays on its face, turned about Z"
    if z < -_SQUARE:
        return "lies upside down"
    if y < -_SQUARE:
        return "lies on its back"
    if y > _SQUARE:
        return "lies on its front"
    if x < -_SQUARE:
        return "lies on its right side"
    if x > _SQUARE:
        return "lies on its left side"
    return f"lies on the side that looks along {direction_text((-x, -y, -z))}"


def _height(pose: Pose, other: Pose) -> str:
    difference = float(np.float32(pose.measures.height) - np.float32(other.measures.height))
    whole = _rounded(abs(difference))
    if whole == 0.0:
        return "as high"
    return f"{whole:.0f} mm {'higher' if difference > 0.0 else 'lower'}"


def _support(pose: Pose, lies: Pose) -> str:
    own = filament_text(pose.cost.support_filament)
    text = "no support" if own == "0 mm" else f"about {own} of support filament"
    if _is_identity(pose):
        return text
    other = filament_text(lies.cost.support_filament)
    if other == "0 mm":
        other = "none"
    if own != "0 mm" and own.partition(" ")[2] == other.rpartition(" ")[2]:
        other = other.partition(" ")[0]
    return f"{text} instead of {other} as it lies; {_height(pose, lies)}"


def reason_for(poses: Poses) -> str:
    """Why the best pose."""
    pose = poses.best
    stands = (
        f"stands on {pose.measures.contact_area:,.0f} mm²"
        if pose.measures.stands
        else "no pose stands by itself: it needs a brim or a raft"
    )
    return f"Best: {_side(pose)}: {_support(pose, poses.as_it_lies)}; {stands}."


def why_no_pose(settings: PoseSettings, over: PassedOver, misfit: tuple[float, ...]) -> str:
    """Why there is no pose."""
    if over.too_large > 0:
        room = " × ".join(f"{size:g}" for size in settings.build_volume)
        needs = " × ".join(f"{size:.1f}" for size in misfit)
        return f"no pose fits {room} mm; the nearest needs {needs} mm"
    return "no pose keeps keep_off off the plate and support"
