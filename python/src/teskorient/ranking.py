"""Ranking of candidate orientations by weights."""

from __future__ import annotations

from collections.abc import Iterator, Sequence
from ctypes import byref, c_int32
from dataclasses import dataclass, field
from functools import cached_property
from typing import Any, Final, overload

import numpy as np

from teskorient import _library as c
from teskorient._arrays import Float32s, frozen
from teskorient._call import FEW_TRIANGLES, Progress, Running, check
from teskorient._turns import about, center_of, degrees, rotation_about, set_down, unit_vector
from teskorient.part import Part

__all__ = ["Orientation", "Ranking", "RankSettings", "rank"]

_MOST_RECORDS: Final = 58


@dataclass(frozen=True)
class RankSettings:
    """What counts in a ranking, and how much.

    Attributes
    ----------
    overhang_angle_deg : float
        Slope from the plate below which a downward surface needs support.
    height_weight, support_volume_weight, support_area_weight, box_volume_weight : int
        Weights, 0 to 1,000,000.
    compute_support : bool
        Whether support is measured even if both its weights are 0.
    base_height : float
        z of the part's lowest point; -1: where the turn leaves it.
    seed : int
        Of the candidate directions that are drawn.
    """

    overhang_angle_deg: float
    height_weight: int
    support_volume_weight: int
    support_area_weight: int
    box_volume_weight: int
    compute_support: bool
    base_height: float
    seed: int


@dataclass(frozen=True, eq=False)
class Orientation:
    """A ranked orientation: turning by an angle about an axis brings its direction to +Z.

    Attributes
    ----------
    rank : int
        From 1, the best.
    axis : ndarray, shape (3,)
        float32, not normalised; zero if no turn is needed.
    angle_rad : float
        0 to pi.
    overhang_area, projected_area : float
        mm2.
    support_volume, box_volume : float
        mm3.
    height : float
        mm.
    score : float
        Lower is better; comparable within one ranking only.
    """

    rank: int
    axis: Float32s = field(repr=False)
    angle_rad: float
    overhang_area: float
    support_volume: float
    projected_area: float
    height: float
    box_volume: float
    score: float
    _part: Part = field(repr=False)
    _base_height: float = field(repr=False)

    @property
    def angle_deg(self) -> float:
        """The angle in degrees."""
        return degrees(self.angle_rad)

    @property
    def unit_axis(self) -> Float32s:
        """The axis as a unit vector."""
        return unit_vector(self.axis)

    @cached_property
    def rotation(self) -> Float32s:
        """The turn, without translation: float32, shape (4, 4), for column vectors."""
        return frozen(rotation_about(self.angle_rad, self.axis))

    @property
    def up(self) -> Float32s:
        """The direction of the part that the turn brings to +Z."""
        return frozen(self.rotation[2, :3])

    @cached_property
    def matrix(self) -> Float32s:
        """The turn about the centre of the part's box, then the move to the base height.

        float32, shape (4, 4), for column vectors.
        """
        turned = about(center_of(self._part), self.rotation)
        if self._base_height > -1.0:
            turned = set_down(self._part, turned, self._base_height)
        return frozen(turned)

    def apply(self) -> Part:
        """Return the part in this orientation."""
        return self._part.moved(self.matrix)


@dataclass(frozen=True, eq=False)
class Ranking(Sequence[Orientation]):
    """Ranked orientations in ascending order of score.

    Attributes
    ----------
    part : Part
        Whose they are.
    settings : RankSettings
        What was asked for.
    orientations : tuple of Orientation
        The records, the best first.
    """

    part: Part
    settings: RankSettings
    orientations: tuple[Orientation, ...] = field(repr=False)

    @property
    def best(self) -> Orientation:
        """The orientation of the lowest score."""
        return self.orientations[0]

    def __len__(self) -> int:
        return len(self.orientations)

    @overload
    def __getitem__(self, index: int) -> Orientation: ...

    @overload
    def __getitem__(self, index: slice) -> tuple[Orientation, ...]: ...

    def __getitem__(self, index: int | slice) -> Orientation | tuple[Orientation, ...]:
        return self.orientations[index]

    def __iter__(self) -> Iterator[Orientation]:
        return iter(self.orientations)

    def __repr__(self) -> str:
        return f"Ranking({len(self)} orientations of {self.part.name!r})"

    def to_dict(self) -> dict[str, Any]:
        """Return what ``tesk-orient orient --together --goal weights --json`` prints.

        Its matrices are for row vectors: the transpose of `Orientation.matrix`.
        """
        from teskorient import _json

        return _json.ranking_dict(self)


def rank(
    part: Part,
    overhang_angle: float = 45.0,
    height_weight: int | None = None,
    support_volume_weight: int | None = None,
    support_area_weight: int | None = None,
    box_volume_weight: int | None = None,
    compute_support: bool = False,
    base_height: float | None = None,
    seed: int = 1,
    every: bool = False,
    threads: int | None = None,
    progress: Progress | None = None,
) -> Ranking:
    """Rank candidate orientations of a part by weights.

    Parameters
    ----------
    part : Part
        Or anything that `Part.from_any` takes.
    overhang_angle : float
        Slope from the plate, in degrees, below which a downward surface needs support: 0 to 90.
    height_weight, support_volume_weight, support_area_weight, box_volume_weight : int, optional
        Weights, 0 to 1,000,000; by default the library's.
    compute_support : bool
        Measure support even if both its weights are 0.
    base_height : float, optional
        z of the part's lowest point in mm; -1: where the turn leaves it. By default the library's.
    seed : int
        Seed of the candidate directions that are drawn, below 2**32: the same seed gives the same
        ranking.
    every : bool
        Return a record of every candidate, 18 to 58, and not only the program's twelve: the best, ten
        spread over the ranking and the worst.
    threads, progress
        As of `orient`.

    Returns
    -------
    Ranking

    Raises
    ------
    ValueError
        If an argument is wrong.
    """
    part = Part.from_any(part)
    settings = _settings(
        overhang_angle,
        {
            "height_weight": height_weight,
            "support_volume_weight": support_volume_weight,
            "support_area_weight": support_area_weight,
            "box_volume_weight": box_volume_weight,
        },
        compute_support,
        base_height,
    )
    if not 0 <= seed < 2**32:
        raise ValueError(f"seed must be from 0 to 4294967295, not {seed!r}")
    how = Running(threads, progress, is_long=part._counts[1] > FEW_TRIANGLES)
    records, count = c.array_of(c.Orientation, _MOST_RECORDS), c_int32()
    check(c.library.tesk_seed(seed))
    find = c.library.tesk_rank_all if every else c.library.tesk_rank
    how.check(
        find(
            part._mesh.pointer,
            byref(settings),
            byref(how.struct),
            records,
            _MOST_RECORDS,
            byref(count),
        )
    )
    base = settings.base_height
    return Ranking(
        part,
        RankSettings(
            settings.overhang_angle_deg,
            settings.height_weight,
            settings.support_volume_weight,
            settings.support_area_weight,
            settings.box_volume_weight,
            bool(settings.compute_support),
            base,
            seed,
        ),
        tuple(_orientation(records[i], i + 1, part, base) for i in range(count.value)),
    )


def _settings(
    overhang_angle: float,
    weights: dict[str, int | None],
    compute_support: bool,
    base_height: float | None,
) -> c.RankSettings:
    settings = c.new(c.RankSettings)
    check(c.library.tesk_rank_settings_init(byref(settings)))
    if not 0.0 <= overhang_angle <= 90.0:
        raise ValueError(f"overhang_angle must be from 0 to 90 degrees, not {overhang_angle!r}")
    settings.overhang_angle_deg = overhang_angle
    for name, weight in weights.items():
        if weight is None:
            continue
        if not (0 <= weight <= 1_000_000 and weight == int(weight)):
            raise ValueError(f"{name} must be a whole number from 0 to 1000000, not {weight!r}")
        setattr(settings, name, int(weight))
    settings.compute_support = int(compute_support)
    if base_height is not None:
        if not -1.0 <= base_height <= 1e6:
            raise ValueError(f"base_height must be from -1 to 1000000 mm, not {base_height!r}")
        settings.base_height = base_height
    return settings


def _orientation(record: c.Orientation, rank: int, part: Part, base: float) -> Orientation:
    return Orientation(
        rank,
        frozen(np.array(record.axis, np.float32)),
        record.angle_rad,
        record.overhang_area,
        record.support_volume,
        record.projected_area,
        record.height,
        record.box_volume,
        record.score,
        part,
        base,
    )
