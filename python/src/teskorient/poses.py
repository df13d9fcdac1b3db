"""Build poses: in which orientation a part is built at least cost."""

from __future__ import annotations

import ctypes
import math
from collections.abc import Iterable, Iterator, Sequence
from ctypes import byref
from dataclasses import dataclass, field
from functools import cached_property
from typing import Any, Final, TypeVar, overload

import numpy as np
from numpy.typing import ArrayLike

from teskorient import _library as c
from teskorient._arrays import Float32s, frozen, vector_of
from teskorient._call import Progress, Running, last_error, raise_for
from teskorient._turns import Turn, on_plate, turn_in
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


@dataclass(frozen=True)
class PoseMeasures:
    """What a part is like in a pose, with its lowest point on the plate.

    Attributes
    ----------
    height : float
        mm.
    footprint : tuple of float
        mm along x and y.
    support_volume : float
        mm3 between overhangs and what lies below.
    overhang_area : float
        mm2 more than 0.2 mm above the plate.
    overhang_area_on_part : float
        mm2 of it whose support rests on the part itself.
    contact_area : float
        mm2 within 0.2 mm of the plate.
    contact_islands : int
        How many separate areas of contact there are.
    tilt_margin_deg : float
        Tilt at which the part falls over; negative: it does.
    lies_flat : bool
        Whether a face of the convex hull lies on the plate.
    stands : bool
        Whether the part stands by itself.
    """

    height: float
    footprint: tuple[float, float]
    support_volume: float
    overhang_area: float
    overhang_area_on_part: float
    contact_area: float
    contact_islands: int
    tilt_margin_deg: float
    lies_flat: bool
    stands: bool


@dataclass(frozen=True)
class PoseCost:
    """What a pose costs, in mm of filament of 1.75 mm.

    Attributes
    ----------
    support_volume, overhang_area, height : float
        Its parts.
    """

    support_volume: float
    overhang_area: float
    height: float

    # Sums of floats, rounded as the library does.
    @property
    def support_filament(self) -> float:
        """What the support is predicted to take."""
        return float(np.float32(self.support_volume) + np.float32(self.overhang_area))

    @property
    def total(self) -> float:
        """The cost: lower is better."""
        return float(np.float32(self.support_filament) + np.float32(self.height))


@dataclass(frozen=True, eq=False)
class Pose:
    """A pose of a part.

    Attributes
    ----------
    rank : int
        From 1, the best; 0 of the part as it lies.
    rotation : ndarray, shape (4, 4)
        float32, for column vectors: ``p' = rotation @ [x, y, z, 1]``. It has no translation, and is
        the identity if the part may stay as it lies. The C and C++ interfaces, and the program's
        JSON, have matrices for row vectors: the transpose.
    measures : PoseMeasures
        What the part is like.
    cost : PoseCost
        What it costs.
    """

    rank: int
    rotation: Float32s = field(repr=False)
    measures: PoseMeasures
    cost: PoseCost
    _part: Part = field(repr=False)

    @cached_property
    def matrix(self) -> Float32s:
        """The rotation about the centre of the part's box, then the move down to z = 0.

        float32, shape (4, 4), for column vectors: ``part.moved(pose.matrix)`` is the part in this
        pose.
        """
        return on_plate(self._part, self.rotation)

    @property
    def up(self) -> Float32s:
        """The direction of the part that the pose turns to +Z."""
        return frozen(self.rotation[2, :3])

    @cached_property
    def turn(self) -> Turn:
        """Axis and angle of the rotation."""
        return turn_in(self.rotation)

    def apply(self) -> Part:
        """Return the part in this pose, with its lowest point at z = 0."""
        return self._part.moved(self.matrix)

    def __repr__(self) -> str:
        x, y, z = (round(float(value), 3) + 0.0 for value in self.up)
        m = self.measures
        return (
            f"Pose(rank {self.rank}: up ({x:.3f}, {y:.3f}, {z:.3f}), cost {self.cost.total:.0f}, "
            f"{self.cost.support_filament:.0f} mm of support filament, {m.height:.2f} mm high"
            f"{'' if m.stands else ', does not stand'})"
        )


@dataclass(frozen=True)
class PassedOver:
    """How many poses were passed over, by the first rule that each broke."""

    kept_off: int
    too_large: int
    little_contact: int
    cannot_stand: int


@dataclass(frozen=True, eq=False)
class Poses(Sequence[Pose]):
    """The poses of least cost, the best first: a sequence of one to twelve.

    Attributes
    ----------
    part : Part
        Whose poses they are.
    settings : PoseSettings
        What was asked for.
    poses : tuple of Pose
        The best first.
    as_it_lies : Pose
        The part without any turn, measured alike.
    none_stands : bool
        Whether poses are listed although none of them stands by itself.
    passed_over : PassedOver
        How many poses were passed over.
    """

    part: Part
    settings: PoseSettings
    poses: tuple[Pose, ...]
    as_it_lies: Pose
    none_stands: bool
    passed_over: PassedOver

    @property
    def best(self) -> Pose:
        """The pose of least cost."""
        return self.poses[0]

    @property
    def reason(self) -> str:
        """Why the best pose, in one sentence."""
        from teskorient import _texts

        return _texts.reason_for(self)

    def __len__(self) -> int:
        return len(self.poses)

    @overload
    def __getitem__(self, index: int) -> Pose: ...

    @overload
    def __getitem__(self, index: slice) -> tuple[Pose, ...]: ...

    def __getitem__(self, index: int | slice) -> Pose | tuple[Pose, ...]:
        return self.poses[index]

    def __iter__(self) -> Iterator[Pose]:
        return iter(self.poses)

    def __repr__(self) -> str:
        count = len(self.poses)
        return f"Poses({count} {'pose' if count == 1 else 'poses'} of {self.part.name!r}: {self.reason})"

    def to_dict(self) -> dict[str, Any]:
        """Return what ``tesk-orient orient --together --json`` prints.

        Its matrices are lists of four rows for row vectors, as its ``conventions`` say: the
        transpose of `Pose.matrix`.
        """
        from teskorient import _json

        return _json.poses_dict(self)

    def _repr_html_(self) -> str:
        from teskorient import _page

        return _page.notebook_html(self)


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
    goal_struct, settings, _kept = _goal_of(goal, overhang_angle, fits, keep_off)
    how = Running(threads, progress)
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
        tuple(_poses_of(records, part, summary.pose_count)),
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
    goal_struct, _settings, _kept = _goal_of("balanced", overhang_angle, None, None)
    how, record = Running(threads, None), c.array_of(c.Pose, 1)
    how.check(
        c.library.tesk_measure_pose(
            part._mesh.pointer,
            byref(goal_struct),
            byref(how.struct),
            matrix.ctypes.data,
            record,
        )
    )
    return _poses_of(record, part, 1)[0].measures


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


def _goal_of(
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


_Instance = TypeVar("_Instance")


def _made(kind: type[_Instance], **fields: Any) -> _Instance:
    """Make an instance of a frozen dataclass without a call for each field."""
    instance = object.__new__(kind)
    instance.__dict__.update(fields)
    return instance


def _poses_of(records: ctypes.Array[c.Pose], part: Part, count: int, first: int = 1) -> list[Pose]:
    """Turn the first of some records into poses, with ranks from a number on."""
    # For row vectors: a record is 31 numbers of four bytes, and the rotation begins at the second.
    numbers = np.frombuffer(memoryview(records).cast("B"), np.float32).reshape(len(records), -1)
    rotations = numbers[:, 1:17].reshape(-1, 4, 4).transpose(0, 2, 1).copy()
    rotations.flags.writeable = False
    return [_pose_of(records, i, rotations[i], part, first + i) for i in range(count)]


def _pose_of(
    records: ctypes.Array[c.Pose], i: int, rotation: Float32s, part: Part, rank: int
) -> Pose:
    numbers = c.pose_numbers(records, i)[16:]
    height, x, y, volume, area, area_on_part, contact, islands, tilt, flat, stands = numbers[:11]
    measures = _made(
        PoseMeasures,
        height=height,
        footprint=(x, y),
        support_volume=volume,
        overhang_area=area,
        overhang_area_on_part=area_on_part,
        contact_area=contact,
        contact_islands=islands,
        tilt_margin_deg=tilt,
        lies_flat=flat != 0,
        stands=stands != 0,
    )
    cost = _made(
        PoseCost, support_volume=numbers[11], overhang_area=numbers[12], height=numbers[13]
    )
    return _made(Pose, rank=rank, rotation=rotation, measures=measures, cost=cost, _part=part)


def _passed_over(summary: c.PoseSummary) -> PassedOver:
    return PassedOver(
        summary.kept_off, summary.too_large, summary.little_contact, summary.cannot_stand
    )


def _as_it_lies(record: ctypes.Array[c.Pose], part: Part) -> Pose:
    return _poses_of(record, part, 1, first=0)[0]


def _no_pose(settings: PoseSettings, lies: Pose, summary: c.PoseSummary, text: str) -> NoPoseError:
    from teskorient import _texts

    over = _passed_over(summary)
    if over.too_large or over.kept_off:
        text = _texts.why_no_pose(settings, over, tuple(summary.nearest_misfit))
    return NoPoseError(text, over, lies if math.isfinite(lies.measures.height) else None)
