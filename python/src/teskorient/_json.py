"""Results in the program's JSON form: the same members, in its order, with the same numbers.

Nothing here reads or writes anything: each function makes a dictionary of results.
"""

from __future__ import annotations

import json
import math
from typing import Any, Final

import numpy as np

from teskorient._arrays import Float32s
from teskorient._turns import Turn
from teskorient.boxes import Box, LayFlat
from teskorient.part import Part
from teskorient.poses import Pose, PoseMeasures, Poses, PoseSettings
from teskorient.ranking import Orientation, Ranking

Json = dict[str, Any]

MATRIX_CONVENTION: Final = "4 rows; row vectors in mm: [x y z 1] * matrix; the translation is row 4"


def text_of(value: Json) -> str:
    """One line of JSON, as the program writes it: null where a number is not finite."""
    return json.dumps(_finite(value), separators=(",", ":"), ensure_ascii=False)


def _finite(value: Any) -> Any:
    if isinstance(value, dict):
        return {key: _finite(member) for key, member in value.items()}
    if isinstance(value, list):
        return [_finite(member) for member in value]
    return None if isinstance(value, float) and not math.isfinite(value) else value


def _vector(values: Float32s) -> list[float]:
    """Three numbers; -0 becomes 0, which programs and people find easier to compare."""
    return [float(value) + 0.0 for value in values]


def _matrix(matrix: Float32s) -> list[list[float]]:
    return [_vector(row) for row in matrix.T]


def _turn(turn: Turn) -> Json:
    return {
        "axis": _vector(turn.axis),
        "angleRad": turn.angle_rad,
        "angleDeg": turn.angle_deg,
    }


def input_dict(part: Part, purpose: str = "support") -> Json:
    """What was read, with its warnings; `purpose` as of `Part.warnings_for`."""
    return {
        "file": part.name,
        "format": part.format,
        "form": part.form,
        "unit": part.unit,
        "unitFromFile": part.unit_from_file,
        "triangles": len(part.faces),
        "vertices": len(part.vertices),
        "sizeMm": list(part.size),
        "warnings": [
            {"code": warning.code, "count": warning.count, "text": warning.text}
            for warning in part.warnings_for(purpose)
        ],
    }


def pose_settings(settings: PoseSettings) -> Json:
    """What poses were asked for."""
    return {
        "goal": settings.goal,
        "overhangAngleDeg": settings.overhang_angle_deg,
        "supportVolumeCost": settings.support_volume_cost,
        "overhangAreaCost": settings.overhang_area_cost,
        "heightCost": settings.height_cost,
        "buildVolumeMm": list(settings.build_volume),
        "keepOff": [
            {"direction": _vector(np.array(rule.direction)), "angleDeg": rule.angle_deg}
            for rule in settings.keep_off
        ],
    }


def _measures(m: PoseMeasures) -> Json:
    return {
        "heightMm": m.height,
        "footprintMm": list(m.footprint),
        "supportVolumeMm3": m.support_volume,
        "overhangAreaMm2": m.overhang_area,
        "overhangAreaOnPartMm2": m.overhang_area_on_part,
        "contactAreaMm2": m.contact_area,
        "contactIslands": m.contact_islands,
        "tiltMarginDeg": m.tilt_margin_deg,
        "liesFlat": m.lies_flat,
        "stands": m.stands,
    }


def pose_dict(pose: Pose) -> Json:
    """A pose, without its rank."""
    return _measures(pose.measures) | {
        "cost": {
            "totalMm": pose.cost.total,
            "supportVolumeMm": pose.cost.support_volume,
            "overhangAreaMm": pose.cost.overhang_area,
            "heightMm": pose.cost.height,
        },
        "supportFilamentMm": pose.cost.support_filament,
        "up": _vector(pose.up),
        "turn": _turn(pose.turn),
        "matrix": _matrix(pose.matrix),
    }


def poses_dict(poses: Poses) -> Json:
    """``tesk-orient/orient/2``."""
    over = poses.passed_over
    return {
        "schema": "tesk-orient/orient/2",
        "input": input_dict(poses.part),
        "settings": pose_settings(poses.settings),
        "conventions": {
            "matrix": MATRIX_CONVENTION,
            "up": "the direction of the part that the pose turns to +Z",
            "cost": "mm of filament; lower is better",
            "supportFilamentMm": "what the support is predicted to take, filament of 1.75 mm",
        },
        "chosenRank": 1,
        "noneStands": poses.none_stands,
        "passedOver": {
            "keptOff": over.kept_off,
            "tooLarge": over.too_large,
            "littleContact": over.little_contact,
            "cannotStand": over.cannot_stand,
        },
        "asItLies": pose_dict(poses.as_it_lies),
        "poses": [{"rank": pose.rank} | pose_dict(pose) for pose in poses],
    }


def _orientation(o: Orientation) -> Json:
    return {
        "rank": o.rank,
        "score": o.score,
        "axis": _vector(o.unit_axis),
        "angleRad": o.angle_rad,
        "angleDeg": o.angle_deg,
        "up": _vector(o.up),
        "matrix": _matrix(o.matrix),
        "heightMm": o.height,
        "supportVolumeMm3": o.support_volume,
        "overhangAreaMm2": o.overhang_area,
        "projectedAreaMm2": o.projected_area,
        "boxVolumeMm3": o.box_volume,
    }


def ranking_dict(ranking: Ranking) -> Json:
    """``tesk-orient/orient/1``."""
    settings = ranking.settings
    return {
        "schema": "tesk-orient/orient/1",
        "input": input_dict(ranking.part),
        "settings": {
            "overhangAngleDeg": settings.overhang_angle_deg,
            "heightWeight": settings.height_weight,
            "supportVolumeWeight": settings.support_volume_weight,
            "supportAreaWeight": settings.support_area_weight,
            "boxVolumeWeight": settings.box_volume_weight,
            "computeSupport": settings.compute_support,
            "baseHeightMm": settings.base_height,
            "seed": settings.seed,
        },
        "conventions": {
            "matrix": MATRIX_CONVENTION,
            "axis": "unit vector, right-handed; zero if no turn is needed",
            "up": "the direction of the part that the orientation turns to +Z",
            "score": "lower is better",
        },
        "chosenRank": 1,
        "orientations": [_orientation(o) for o in ranking],
    }


def box_dict(box: Box) -> Json:
    """``tesk-orient/box/1``."""
    settings: Json = {"criterion": box.criterion}
    if box._axis is not None:
        settings["axis"] = _vector(np.array(box._axis))
    part = box._part
    return {
        "schema": "tesk-orient/box/1",
        **({} if part is None else {"input": input_dict(part, "box")}),
        "settings": settings,
        "conventions": {
            "axes": "three unit vectors, orthogonal, right-handed",
            "sizeMm": "full lengths along the axes",
            "halfExtentsMm": "half-lengths along the axes",
            "partVolumeMm3": "null where the mesh is not closed and consistently wound",
            "fillRatio": "partVolumeMm3 / volumeMm3, null where there is none",
            "turn": "brings axes 1, 2, 3 to X, Y, Z; right-handed",
            "matrix": f"the same about the box's centre: {MATRIX_CONVENTION}",
        },
        "box": {
            "centerMm": _vector(box.center),
            "axes": [_vector(axis) for axis in box.axes],
            "sizeMm": [float(size) for size in box.extents],
            "halfExtentsMm": [float(half) for half in box.half_extents],
            "volumeMm3": box.volume,
            "partVolumeMm3": None if part is None else part.volume,
            "fillRatio": box.fill_ratio,
            "turn": _turn(box.turn),
            "matrix": _matrix(box.matrix),
        },
    }


def lay_flat_dict(flat: LayFlat) -> Json:
    """``tesk-orient/lay-flat/1``."""
    return {
        "schema": "tesk-orient/lay-flat/1",
        "input": input_dict(flat._part, "box"),
        "conventions": {
            "matrix": MATRIX_CONVENTION,
            "placement": (
                "longest side of the smallest box along X, shortest along Z, lowest point at z = 0"
            ),
            "turn": "right-handed; the matrix also moves the part",
        },
        "sizeBeforeMm": list(flat.size_before),
        "sizeAfterMm": list(flat.size_after),
        "turn": _turn(flat.turn),
        "matrix": _matrix(flat.matrix),
    }
