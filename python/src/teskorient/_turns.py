"""Rotations and where a part comes to lie, rounded step by step as the C++ program does.

Matrices are float32 and for column vectors; all but `rotation_about` and `turn_in` are 4 x 4.
"""

from __future__ import annotations

import math
from dataclasses import dataclass

import numpy as np
from numpy.typing import ArrayLike

from teskorient._arrays import Float32s, frozen
from teskorient.part import Part


@dataclass(frozen=True)
class Turn:
    """A right-handed turn by an angle about an axis.

    Attributes
    ----------
    axis : ndarray, shape (3,)
        Unit vector, float32; zero if no turn is needed.
    angle_rad : float
        0 to pi.
    """

    axis: Float32s
    angle_rad: float

    @property
    def angle_deg(self) -> float:
        """The angle in degrees."""
        return degrees(self.angle_rad)


def degrees(radians: float) -> float:
    """Convert an angle, as reports do."""
    return radians * 180.0 / math.pi


def column_matrix(values: ArrayLike) -> Float32s:
    """16 numbers of the library, for row vectors, as a matrix for column vectors."""
    matrix: Float32s = np.array(values, np.float32).reshape(4, 4).T.copy()
    return matrix


def product(a: Float32s, b: Float32s) -> Float32s:
    """``a @ b``, each entry summed in order in float32; BLAS may sum in another."""
    total = a[:, 0:1] * b[0:1, :]
    for k in range(1, 4):
        total = total + a[:, k : k + 1] * b[k : k + 1, :]
    return total


def translation(x: float, y: float, z: float) -> Float32s:
    """The move by a vector."""
    m = np.identity(4, np.float32)
    m[:3, 3] = (x, y, z)
    return m


def center_of(part: Part) -> Float32s:
    """The centre of the part's box."""
    low, high = part.bounds
    center: Float32s = (low + high) * np.float32(0.5)
    return center


def about(center: Float32s, rotation: Float32s) -> Float32s:
    """A rotation about a point."""
    x, y, z = center
    return product(translation(x, y, z), product(rotation, translation(-x, -y, -z)))


def set_down(part: Part, m: Float32s, height: float = 0.0) -> Float32s:
    """A transform, and then the move that brings the part's lowest point to a height."""
    p = part.vertices
    z = p[:, 0] * m[2, 0] + p[:, 1] * m[2, 1] + p[:, 2] * m[2, 2] + m[2, 3]
    lift = np.float32(height) - z.min()
    return product(translation(0.0, 0.0, lift), m)


def on_plate(part: Part, rotation: Float32s) -> Float32s:
    """A rotation about the centre of the part's box, and then the move down to z = 0."""
    return frozen(set_down(part, about(center_of(part), rotation)))


def turn_in(matrix: Float32s) -> Turn:
    """The turn that a rigid matrix makes."""
    m = matrix[:3, :3].astype(np.float64).T.tolist()  # for row vectors, as in Turn.cpp
    wx, wy, wz = m[1][2] - m[2][1], m[2][0] - m[0][2], m[0][1] - m[1][0]
    sxy, sxz, syz = m[0][1] + m[1][0], m[0][2] + m[2][0], m[1][2] + m[2][1]
    # The quaternion w, x, y, z times four times each of its components: the largest loses no digits.
    rows = (
        (1 + m[0][0] + m[1][1] + m[2][2], wx, wy, wz),
        (wx, 1 + m[0][0] - m[1][1] - m[2][2], sxy, sxz),
        (wy, sxy, 1 - m[0][0] + m[1][1] - m[2][2], syz),
        (wz, sxz, syz, 1 - m[0][0] - m[1][1] + m[2][2]),
    )
    largest = 0
    for k in range(1, 4):
        if rows[k][k] > rows[largest][largest]:
            largest = k
    w, x, y, z = rows[largest]
    if w < 0.0:
        w, x, y, z = -w, -x, -y, -z
    length = math.sqrt(x * x + y * y + z * z)
    angle = 2.0 * math.atan2(length, w)
    return Turn(unit_vector((x, y, z)), float(np.float32(angle)))


def unit_vector(vector: ArrayLike) -> Float32s:
    """A vector divided by its length in double, each component rounded once; zero stays zero."""
    x, y, z = np.asarray(vector, np.float64).tolist()
    length = math.sqrt(x * x + y * y + z * z)
    if length != 0.0:
        x, y, z = x / length, y / length, z / length
    return frozen(np.array((x, y, z), np.float32))


def rotation_about(angle_rad: float, axis: Float32s) -> Float32s:
    """The rotation by an angle about an axis of any length, 4 x 4; zero gives the identity."""
    m = np.identity(4, np.float32)
    x, y, z = np.asarray(axis, np.float64).tolist()
    length = math.sqrt(x * x + y * y + z * z)
    if length == 0.0:
        return m
    x, y, z = x / length, y / length, z / length
    co, si = cosine(angle_rad), sine(angle_rad)
    rest = 1.0 - co
    m[:3, :3] = np.array(
        (
            (co + x * x * rest, x * y * rest - z * si, x * z * rest + y * si),
            (x * y * rest + z * si, co + y * y * rest, y * z * rest - x * si),
            (x * z * rest - y * si, y * z * rest + x * si, co + z * z * rest),
        )
    ).astype(np.float32)
    return m


# Sine and cosine with the library's bits, which those of C libraries need not be: see
# TeskDataBasic/Transcendental.h.


def _sine_small(r: float) -> float:
    square = r * r
    total = 0.0
    for n in range(19, 2, -2):
        total = (1.0 + total) * (-square / (n * (n - 1)))
    return r + r * total


def _cosine_small(r: float) -> float:
    square = r * r
    total = 0.0
    for n in range(20, 3, -2):
        total = (1.0 + total) * (-square / (n * (n - 1)))
    return 1.0 - (0.5 * square) * (1.0 + total)


def _reduced(angle: float) -> tuple[int, float]:
    turns = math.floor(angle * (2.0 / math.pi) + 0.5)
    first = float.fromhex("0x1.921fb544p+0")
    second = float.fromhex("0x1.0b4611a6p-34")
    third = float.fromhex("0x1.3198a2e037073p-69")
    rest = ((angle - turns * first) - turns * second) - turns * third
    return turns % 4, rest


def cosine(angle: float) -> float:
    """cos(angle)."""
    quadrant, rest = _reduced(angle)
    value = _cosine_small(rest) if quadrant % 2 == 0 else _sine_small(rest)
    return -value if quadrant in (1, 2) else value


def sine(angle: float) -> float:
    """sin(angle)."""
    quadrant, rest = _reduced(angle)
    value = _sine_small(rest) if quadrant % 2 == 0 else _cosine_small(rest)
    return -value if quadrant >= 2 else value
