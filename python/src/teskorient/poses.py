"""Build poses: in which orientation a part is built at least cost."""

from __future__ import annotations

import ctypes
import math
from collections.abc import Iterable
from ctypes import byref
from typing import Any, Final

import numpy as np
from numpy.typing import ArrayLike

from teskorient import _library as c
from teskorient._arrays import Float32s
from teskorient._call import FEW_TRIANGLES, Progress, Running, last_error
from teskorient._goals import KeepOff, PoseSettings, goal_of
from teskorient._pose import PassedOver, Pose, PoseCost, PoseMeasures, Poses, poses_of
from teskorient.errors import NoPoseError
from teskorient.part import Part

__all__ = [
    "KeepOff",
    "PassedOver",
    "Pose",
    "PoseCost",
    "PoseMeasures",
    "PoseSettings",
    "Poses",
    "measure",
    "orient",
]

_MOST_POSES: Final = 12


def orient(
    part: Part,
    goal: str = "balanced",
    overhang_angle: float = 55.0,
    fits: ArrayLike | None = None,
    keep_off: Iterable[Any] | None = None,
    threads: int | None = None,
    progress: Progress | None = None,
) -> Poses:
    """Find the poses of least cost in which a part can be built.

    Parameters
    ----------
    part : Part
        Or anything that `Part.from_any` takes.
    goal : {'balanced', 'least-support'}
        Support and time in balance, or as little support as can be.
    overhang_angle : float
        Slope from the plate, in degrees, below which a downward surface needs support: 0 to 90.
    fits : array_like of 3 float, optional
        Pass over poses larger than this build volume: mm along x, y and z. A footprint may be turned
        by 90 degrees.
    keep_off : iterable, optional
        Faces that must not be set down on the plate or on support: directions (x, y, z), pairs of a
        direction and an angle in degrees, or `KeepOff`. What lies within the angle of the direction
        is kept off, too; by default that is the overhang angle.
    threads : int, optional
        How many threads to use; by default as many as the machine has. Results are the same bits.
    progress : callable, optional
        Called with whole percentages on this thread. What it raises ends the call, as Ctrl-C does
        with and without it.

    Returns
    -------
    Poses
        One to twelve.

    Raises
    ------
    NoPoseError
        If no pose is within the limits.
    ValueError
        If an argument is wrong, or the part has no surface.

    Notes
    -----
    The GIL is released. Several calls may run in several threads, also for one part.
    """
    part = Part.from_any(part)
    goal_struct, settings, _kept = goal_of(goal, overhang_angle, fits, keep_off)
    how = Running(threads, progress, is_long=part._counts[1] > FEW_TRIANGLES)
    records = c.array_of(c.Pose, _MOST_POSES)
    lies, summary = c.array_of(c.Pose, 1), c.new(c.PoseSummary)
    status = c.library.tesk_find_poses(
        part._mesh.pointer,
        byref(goal_struct),
        byref(how.struct),
        records,
        _MOST_POSES,
        lies,
        byref(summary),
    )
    if status == c.NO_RESULT:
        raise _no_pose(settings, _as_it_lies(lies, part), summary, last_error())
    how.check(status)
    return Poses(
        part,
        settings,
        tuple(poses_of(records, part, summary.pose_count)),
        _as_it_lies(lies, part),
        bool(summary.none_stands),
        _passed_over(summary),
    )


def measure(
    part: Part,
    rotation: ArrayLike,
    overhang_angle: float = 55.0,
    threads: int | None = None,
) -> PoseMeasures:
    """Measure one pose of a part.

    Parameters
    ----------
    part : Part
        Or anything that `Part.from_any` takes.
    rotation : array_like, shape (3, 3) or (4, 4)
        For column vectors: ``p' = rotation @ p``. A rotation, to within 1e-3; a translation does not
        count.
    overhang_angle : float
        Slope from the plate, in degrees, below which a downward surface needs support: 0 to 90.
    threads : int, optional
        How many threads to use; by default as many as the machine has.

    Returns
    -------
    PoseMeasures

    Raises
    ------
    ValueError
        If the matrix is no rotation, or another argument is wrong.
    """
    part = Part.from_any(part)
    matrix = np.zeros((4, 4), np.float32)
    matrix[:3, :3] = _rotation_of(rotation)
    matrix[3, 3] = 1.0
    matrix = np.ascontiguousarray(matrix.T)
    goal_struct, _settings, _kept = goal_of("balanced", overhang_angle, None, None)
    how, record = Running(threads, None, is_long=False), c.array_of(c.Pose, 1)
    how.check(
        c.library.tesk_measure_pose(
            part._mesh.pointer,
            byref(goal_struct),
            byref(how.struct),
            matrix.ctypes.data,
            record,
        )
    )
    return poses_of(record, part, 1)[0].measures


def _rotation_of(rotation: ArrayLike) -> Float32s:
    try:
        given = np.asarray(rotation, np.float64)
    except (ValueError, TypeError):
        given = np.empty(0)
    if given.shape not in ((3, 3), (4, 4)):
        raise ValueError(f"rotation: the shape must be (3, 3) or (4, 4), not {given.shape}")
    turn = given[:3, :3]
    is_rotation = (
        np.isfinite(turn).all()
        and np.abs(turn @ turn.T - np.identity(3)).max() < 1e-3
        and np.linalg.det(turn) > 0
    )
    if not is_rotation:
        raise ValueError("rotation: the matrix is not that of a rotation")
    return turn.astype(np.float32)


def _passed_over(summary: c.PoseSummary) -> PassedOver:
    return PassedOver(
        summary.kept_off, summary.too_large, summary.little_contact, summary.cannot_stand
    )


def _as_it_lies(record: ctypes.Array[c.Pose], part: Part) -> Pose:
    return poses_of(record, part, 1, first=0)[0]


def _no_pose(settings: PoseSettings, lies: Pose, summary: c.PoseSummary, text: str) -> NoPoseError:
    from teskorient import _texts

    over = _passed_over(summary)
    if over.too_large or over.kept_off:
        text = _texts.why_no_pose(settings, over, tuple(summary.nearest_misfit))
    return NoPoseError(text, over, lies if math.isfinite(lies.measures.height) else None)
