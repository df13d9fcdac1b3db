"""Parts for tests, made here."""

from __future__ import annotations

import math
from collections.abc import Iterable

import numpy as np
from numpy.typing import NDArray

Arrays = tuple[NDArray[np.float32], NDArray[np.int32]]

_SIDES = (
    (0, 2, 3), (0, 3, 1), (4, 5, 7), (4, 7, 6), (0, 1, 5), (0, 5, 4),
    (2, 6, 7), (2, 7, 3), (0, 4, 6), (0, 6, 2), (1, 3, 7), (1, 7, 5),
)  # fmt: skip


def box(x: float = 20.0, y: float = 30.0, z: float = 10.0) -> Arrays:
    """A box with one corner at the origin."""
    corners = [((i & 1) * x, (i >> 1 & 1) * y, (i >> 2 & 1) * z) for i in range(8)]
    return np.array(corners, np.float32), np.array(_SIDES, np.int32)


def joined(parts: Iterable[Arrays]) -> Arrays:
    """Several parts as one."""
    vertices, faces, count = [], [], 0
    for positions, triangles in parts:
        vertices.append(positions)
        faces.append(triangles + np.int32(count))
        count += len(positions)
    return np.concatenate(vertices), np.concatenate(faces)


def table() -> Arrays:
    """A plate on four legs: it needs no support upside down."""
    top, legs = box(80, 50, 5), box(6, 6, 35)
    parts = [(top[0] + np.array((0, 0, 34), np.float32), top[1])]
    for x in (0, 74):
        for y in (0, 44):
            parts.append((legs[0] + np.array((x, y, 0), np.float32), legs[1]))
    return joined(parts)


def bumpy_ball(rows: int = 20, radius: float = 15.0, seed: int = 1) -> Arrays:
    """A closed ball with an uneven surface of about 4 rows squared triangles."""
    random = np.random.default_rng(seed)
    columns = 2 * rows
    points = [(0.0, 0.0, radius)]
    for i in range(1, rows):
        for k in range(columns):
            tilt, turn = math.pi * i / rows, 2 * math.pi * k / columns
            r = radius * (1 + 0.1 * random.random())
            points.append(
                (
                    r * math.sin(tilt) * math.cos(turn),
                    r * math.sin(tilt) * math.sin(turn),
                    r * math.cos(tilt),
                )
            )
    points.append((0.0, 0.0, -radius))
    last = len(points) - 1

    def at(i: int, k: int) -> int:
        return 1 + (i - 1) * columns + k % columns

    faces = []
    for k in range(columns):
        faces.append((0, at(1, k), at(1, k + 1)))
        faces.append((last, at(rows - 1, k + 1), at(rows - 1, k)))
        for i in range(1, rows - 1):
            faces.append((at(i, k), at(i + 1, k), at(i + 1, k + 1)))
            faces.append((at(i, k), at(i + 1, k + 1), at(i, k + 1)))
    return np.array(points, np.float32), np.array(faces, np.int32)


def turned(arrays: Arrays, angle: float, axis: tuple[float, float, float]) -> Arrays:
    """A part turned about an axis through the origin."""
    x, y, z = np.array(axis) / np.linalg.norm(axis)
    cross = np.array(((0, -z, y), (z, 0, -x), (-y, x, 0)))
    turn = np.identity(3) + math.sin(angle) * cross + (1 - math.cos(angle)) * cross @ cross
    return (arrays[0].astype(np.float64) @ turn.T).astype(np.float32), arrays[1]
