"""Poses and what they are like."""

from __future__ import annotations

import ctypes
from collections.abc import Iterator, Sequence
from dataclasses import dataclass, field
from functools import cached_property
from typing import Any, TypeVar, overload

import numpy as np

from teskorient import _library as c
from teskorient._arrays import Float32s, frozen
from teskorient._goals import PoseSettings
from teskorient._turns import Turn, on_plate, turn_in
from teskorient.part import Part


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


_Instance = TypeVar("_Instance")


def _made(kind: type[_Instance], **fields: Any) -> _Instance:
    """Make an instance of a frozen dataclass without a call for each field."""
    instance = object.__new__(kind)
    instance.__dict__.update(fields)
    return instance


def poses_of(records: ctypes.Array[c.Pose], part: Part, count: int, first: int = 1) -> list[Pose]:
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
