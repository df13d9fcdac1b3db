"""The shared library: where it is, its structs, its constants and its functions.

The declarations are those of ``teskorient.h``, which is their manual. No other module declares any.
"""

from __future__ import annotations

import ctypes
import os
import struct
import sys
from ctypes import (
    POINTER,
    Structure,
    c_char_p,
    c_double,
    c_float,
    c_int32,
    c_int64,
    c_uint32,
    c_void_p,
)
from pathlib import Path
from typing import Any, Final, TypeVar

ABI_VERSION: Final = 1

OK: Final = 0
ABORTED: Final = 1
INVALID_ARGUMENT: Final = 2
OUT_OF_MEMORY: Final = 3
FILE_ERROR: Final = 4
NO_RESULT: Final = 5
CALLBACK_FAILED: Final = 6
INTERNAL_ERROR: Final = 7

FLOAT32: Final = 0
FLOAT64: Final = 1

GOAL_BALANCED: Final = 0
GOAL_LEAST_SUPPORT: Final = 1

BOX_VOLUME: Final = 0
BOX_BASE_AREA: Final = 1
BOX_BASE_HEIGHT: Final = 2
BOX_AROUND_AXIS: Final = 3
BOX_PRINCIPAL: Final = 4

STL: Final = 0
OBJ: Final = 1
PLY: Final = 2
OFF: Final = 3
THREE_MF: Final = 4

# ``tesk_progress``, without its last argument, `user`: the caller cleans up, so a function may ignore
# it, and a generator's ``send``, which takes one argument, can be called without any function between.
ProgressFunction = ctypes.CFUNCTYPE(c_int32, c_int32)


class Call(Structure):
    """``tesk_call``."""

    _fields_ = [
        ("struct_size", c_uint32),
        ("threads", c_int32),
        ("progress", ProgressFunction),
        ("user", c_void_p),
    ]


class MeshArrays(Structure):
    """``tesk_mesh_arrays``."""

    _fields_ = [
        ("struct_size", c_uint32),
        ("position_type", c_int32),
        ("positions", c_void_p),
        ("position_count", c_int64),
        ("position_stride", c_int64),
        ("triangles", c_void_p),
        ("triangle_count", c_int64),
        ("triangle_stride", c_int64),
        ("placement", c_void_p),
    ]


class MeshSurface(Structure):
    """``tesk_mesh_surface``."""

    _fields_ = [
        ("struct_size", c_uint32),
        ("open_edges", c_int32),
        ("non_manifold_edges", c_int32),
        ("inconsistent_edges", c_int32),
        ("degenerate_triangles", c_int64),
        ("volume", c_double),
        ("size", c_double * 3),
    ]


class KeepOff(Structure):
    """``tesk_keep_off``."""

    _fields_ = [("struct_size", c_uint32), ("direction", c_float * 3), ("angle_deg", c_float)]


class Goal(Structure):
    """``tesk_goal``."""

    _fields_ = [
        ("struct_size", c_uint32),
        ("overhang_angle_deg", c_float),
        ("support_volume_cost", c_float),
        ("overhang_area_cost", c_float),
        ("height_cost", c_float),
        ("build_volume", c_float * 3),
        ("least_contact_area", c_float),
        ("keep_off_count", c_int32),
        ("keep_off", POINTER(KeepOff)),
    ]


class Pose(Structure):
    """``tesk_pose``."""

    _fields_ = [
        ("struct_size", c_uint32),
        ("rotation", c_float * 16),
        ("height", c_float),
        ("footprint", c_float * 2),
        ("support_volume", c_float),
        ("overhang_area", c_float),
        ("overhang_area_on_part", c_float),
        ("contact_area", c_float),
        ("contact_islands", c_int32),
        ("tilt_margin_deg", c_float),
        ("lies_flat", c_int32),
        ("stands", c_int32),
        ("support_volume_cost", c_float),
        ("overhang_area_cost", c_float),
        ("height_cost", c_float),
    ]


_POSE_NUMBERS: Final = struct.Struct("=4x23fif2i3f")


def pose_numbers(records: ctypes.Array[Pose], index: int) -> tuple[Any, ...]:
    """Return all numbers of a pose in their order, much quicker than one by one."""
    return _POSE_NUMBERS.unpack_from(records, index * ctypes.sizeof(Pose))


class PoseSummary(Structure):
    """``tesk_pose_summary``."""

    _fields_ = [
        ("struct_size", c_uint32),
        ("pose_count", c_int32),
        ("none_stands", c_int32),
        ("kept_off", c_int32),
        ("too_large", c_int32),
        ("little_contact", c_int32),
        ("cannot_stand", c_int32),
        ("nearest_misfit", c_float * 3),
    ]


class RankSettings(Structure):
    """``tesk_rank_settings``."""

    _fields_ = [
        ("struct_size", c_uint32),
        ("overhang_angle_deg", c_float),
        ("support_area_weight", c_int32),
        ("support_volume_weight", c_int32),
        ("height_weight", c_int32),
        ("box_volume_weight", c_int32),
        ("compute_support", c_int32),
        ("base_height", c_float),
    ]


class Orientation(Structure):
    """``tesk_orientation``."""

    _fields_ = [
        ("struct_size", c_uint32),
        ("axis", c_float * 3),
        ("angle_rad", c_float),
        ("overhang_area", c_float),
        ("support_volume", c_float),
        ("projected_area", c_float),
        ("height", c_float),
        ("box_volume", c_float),
        ("score", c_float),
    ]


class Points(Structure):
    """``tesk_points``."""

    _fields_ = [
        ("struct_size", c_uint32),
        ("type", c_int32),
        ("data", c_void_p),
        ("count", c_int64),
        ("stride", c_int64),
    ]


class Box(Structure):
    """``tesk_box``."""

    _fields_ = [
        ("struct_size", c_uint32),
        ("center", c_float * 3),
        ("axes", (c_float * 3) * 3),
        ("half_extents", c_float * 3),
    ]


class ReadOptions(Structure):
    """``tesk_read_options``."""

    _fields_ = [
        ("struct_size", c_uint32),
        ("keeps_vertices", c_int32),
        ("max_triangles", c_int64),
    ]


class PartDetails(Structure):
    """``tesk_part_details``."""

    _fields_ = [
        ("struct_size", c_uint32),
        ("format", c_int32),
        ("form", c_char_p),
        ("unit", c_char_p),
        ("warning_count", c_int32),
        ("object_count", c_int32),
    ]


_Record = TypeVar("_Record", bound=Structure)


def new(kind: type[_Record], **fields: Any) -> _Record:
    """Make a struct that knows its size, with some fields set and the others zero."""
    return kind(ctypes.sizeof(kind), **fields)


def array_of(kind: type[_Record], count: int) -> ctypes.Array[_Record]:
    """Make an array of structs for the library to fill."""
    records = (kind * count)()
    if count > 0:
        records[0].struct_size = ctypes.sizeof(kind)
    return records


class Handle:
    """A mesh or part that the library keeps, freed with this object.

    Pass ``byref(handle.pointer)`` where the library makes one.
    """

    __slots__ = ("pointer",)

    def __init__(self) -> None:
        self.pointer = c_void_p()

    def __del__(self) -> None:
        if self.pointer:
            _free(self.pointer)


_STATUS = c_int32
_RANK: Final = (
    _STATUS,
    [
        c_void_p,
        POINTER(RankSettings),
        POINTER(Call),
        POINTER(Orientation),
        c_int32,
        POINTER(c_int32),
    ],
)
_PROTOTYPES: dict[str, tuple[Any, list[Any]]] = {
    "tesk_abi_version": (c_int32, []),
    "tesk_check_abi": (_STATUS, [c_int32]),
    "tesk_version": (c_char_p, []),
    "tesk_last_error": (c_char_p, []),
    "tesk_free": (None, [c_void_p]),
    "tesk_mesh_create": (_STATUS, [POINTER(MeshArrays), POINTER(c_void_p)]),
    "tesk_mesh_counts": (_STATUS, [c_void_p, POINTER(c_int64), POINTER(c_int64)]),
    "tesk_mesh_copy_positions": (_STATUS, [c_void_p, c_void_p, c_int64]),
    "tesk_mesh_copy_triangles": (_STATUS, [c_void_p, c_void_p, c_int64]),
    "tesk_mesh_set_placement": (_STATUS, [c_void_p, c_void_p]),
    "tesk_mesh_check": (_STATUS, [c_void_p, POINTER(Call), POINTER(MeshSurface)]),
    "tesk_goal_init": (_STATUS, [POINTER(Goal), c_int32]),
    "tesk_find_poses": (
        _STATUS,
        [
            c_void_p,
            POINTER(Goal),
            POINTER(Call),
            POINTER(Pose),
            c_int32,
            POINTER(Pose),
            POINTER(PoseSummary),
        ],
    ),
    "tesk_measure_pose": (
        _STATUS,
        [c_void_p, POINTER(Goal), POINTER(Call), c_void_p, POINTER(Pose)],
    ),
    "tesk_rank_settings_init": (_STATUS, [POINTER(RankSettings)]),
    "tesk_seed": (_STATUS, [c_uint32]),
    "tesk_rank": _RANK,
    "tesk_rank_all": _RANK,
    "tesk_smallest_box": (
        _STATUS,
        [POINTER(Points), c_int32, c_void_p, POINTER(Call), POINTER(Box)],
    ),
    "tesk_lay_flat": (_STATUS, [c_void_p, POINTER(Call), c_void_p]),
    "tesk_convex_hull": (_STATUS, [POINTER(Points), POINTER(c_void_p), POINTER(c_int32)]),
    "tesk_part_read": (
        _STATUS,
        [c_char_p, POINTER(ReadOptions), POINTER(Call), POINTER(c_void_p)],
    ),
    "tesk_part_read_bytes": (
        _STATUS,
        [c_char_p, c_int64, c_int32, POINTER(ReadOptions), POINTER(Call), POINTER(c_void_p)],
    ),
    "tesk_part_describe": (_STATUS, [c_void_p, POINTER(PartDetails)]),
    "tesk_part_warning": (_STATUS, [c_void_p, c_int32, POINTER(c_char_p), POINTER(c_char_p)]),
    "tesk_part_object": (_STATUS, [c_void_p, c_int32, POINTER(c_char_p)]),
    "tesk_part_mesh": (_STATUS, [c_void_p, POINTER(c_void_p)]),
    "tesk_part_write": (_STATUS, [c_char_p, c_void_p]),
}


def library_path() -> Path:
    """Where the library is: beside this file, or where ``TESKORIENT_LIBRARY`` says."""
    named = os.environ.get("TESKORIENT_LIBRARY")
    if named:
        return Path(named)
    names = {"win32": "teskorient.dll", "darwin": "libteskorient.dylib"}
    return Path(__file__).parent / names.get(sys.platform, "libteskorient.so")


def _load() -> ctypes.CDLL:
    path = library_path()
    try:
        loaded = ctypes.CDLL(str(path))
        for name, (result, arguments) in _PROTOTYPES.items():
            function = getattr(loaded, name)
            function.restype = result
            function.argtypes = arguments
    except (OSError, AttributeError) as error:
        raise ImportError(
            f"teskorient's library cannot be loaded: {error}", path=str(path)
        ) from None
    if loaded.tesk_check_abi(ABI_VERSION) != OK:
        raise ImportError(
            f"{path} has version {loaded.tesk_abi_version()} of the C interface; "
            f"this package needs {ABI_VERSION}",
            path=str(path),
        )
    return loaded


library: Final = _load()
_free: Final = library.tesk_free
