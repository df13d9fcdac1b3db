"""Numbers as tesk-orient's JSON writer prints them, digit for digit.

The program prints a double by Florian Loitsch's Grisu2 ("Printing Floating-Point Numbers Quickly and
Accurately with Integers", PLDI 2010). Some numbers get a digit more than in the shortest form that
Python's ``repr`` finds, and one float32 in fifteen another last digit, so ``repr`` does not do. Both
forms read back to the same double.
"""

from __future__ import annotations

import math
from functools import lru_cache
from typing import NamedTuple

_MASK = (1 << 64) - 1

# Grisu2 scales a number by a power of ten, such that the exponent of the product is from _ALPHA to
# _ALPHA + 28. Powers are kept for every eighth exponent.
_ALPHA = -60
_LEAST_POWER = -300
_POWER_STEP = 8

# Numbers from 1e-4 up to 1e15 are written without an exponent.
_LEAST_FIXED = -4
_MOST_FIXED = 15


class _Scaled(NamedTuple):
    """``digits * 2**exponent``, with 64 bits of digits."""

    digits: int
    exponent: int


def _power_of_ten(exponent: int) -> _Scaled:
    """The nearest number with exactly 64 bits."""
    numerator = 10 ** max(exponent, 0)
    denominator = 10 ** max(-exponent, 0)
    shift = numerator.bit_length() - denominator.bit_length() - 64
    while True:
        above = numerator << max(-shift, 0)
        below = denominator << max(shift, 0)
        digits = (2 * above + below) // (2 * below)
        if digits >> 64:
            shift += 1
        elif digits >> 63 == 0:
            shift -= 1
        else:
            return _Scaled(digits, shift)


_POWERS = [_power_of_ten(k) for k in range(_LEAST_POWER, 325, _POWER_STEP)]


def _product(a: int, b: int) -> int:
    """The upper 64 bits, rounded. What lies below bit 32 takes no part in the rounding."""
    low = (a & 0xFFFFFFFF) * (b & 0xFFFFFFFF)
    return (a * b - (low & 0xFFFFFFFF) + (1 << 63)) >> 64


def _nearest(digits: list[int], distance: int, delta: int, rest: int, unit: int) -> None:
    """Lowers the last digit as long as that brings the decimal nearer to the number."""
    while (
        rest < distance
        and delta - rest >= unit
        and (rest + unit < distance or distance - rest > rest + unit - distance)
    ):
        digits[-1] -= 1
        rest += unit


def _generate(low: int, number: int, high: int, exponent: int) -> tuple[list[int], int]:
    """Digits of a decimal from ``low`` to ``high``, near ``number``, and its exponent of ten."""
    delta = high - low
    distance = high - number
    bits = -exponent
    fraction_mask = (1 << bits) - 1
    whole = high >> bits
    fraction = high & fraction_mask
    digits: list[int] = []
    left = len(str(whole))
    unit = 10 ** (left - 1)
    while left > 0:
        digit, whole = divmod(whole, unit)
        digits.append(digit)
        left -= 1
        rest = (whole << bits) + fraction
        if rest <= delta:
            _nearest(digits, distance, delta, rest, unit << bits)
            return digits, left
        unit //= 10
    behind = 0
    while True:
        fraction *= 10
        digits.append(fraction >> bits)
        fraction &= fraction_mask
        behind += 1
        delta *= 10
        distance *= 10
        if fraction <= delta:
            _nearest(digits, distance, delta, fraction, 1 << bits)
            return digits, -behind


def _digits_of(value: float) -> tuple[str, int]:
    """The digits of a positive number, and the exponent of ten of the last one."""
    mantissa, exponent = math.frexp(value)
    significand = int(math.ldexp(mantissa, 53))
    exponent -= 53
    is_denormal = exponent < -1074
    if is_denormal:
        significand >>= -1074 - exponent
        exponent = -1074
    # Below a power of two the next number is half as far.
    is_power = significand == 1 << 52 and exponent > -1074
    shift = 64 - (2 * significand + 1).bit_length()
    scale = exponent - 1 - shift
    upper = (2 * significand + 1) << shift
    middle = (2 * significand) << shift
    lower = (4 * significand - 1) << (shift - 1) if is_power else (2 * significand - 1) << shift

    wanted = _ALPHA - scale - 1
    power = int(wanted * 78913 / (1 << 18)) + (1 if wanted > 0 else 0)
    index = (-_LEAST_POWER + power + _POWER_STEP - 1) // _POWER_STEP
    factor = _POWERS[index]
    digits, ten = _generate(
        _product(lower, factor.digits) + 1,
        _product(middle, factor.digits),
        _product(upper, factor.digits) - 1,
        factor.exponent + scale + 64,
    )
    exponent_of_factor = _LEAST_POWER + _POWER_STEP * index
    return "".join(map(str, digits)), ten - exponent_of_factor


@lru_cache(maxsize=4096)
def _positive_text(value: float) -> str:
    digits, exponent = _digits_of(value)
    count = len(digits)
    point = count + exponent
    if count <= point <= _MOST_FIXED:
        return digits + "0" * (point - count) + ".0"
    if 0 < point <= _MOST_FIXED:
        return digits[:point] + "." + digits[point:]
    if _LEAST_FIXED < point <= 0:
        return "0." + "0" * -point + digits
    mantissa = digits if count == 1 else digits[0] + "." + digits[1:]
    sign = "-" if point - 1 < 0 else "+"
    return f"{mantissa}e{sign}{abs(point - 1):02d}"


def number_text(value: float) -> str:
    """A double as the program writes it; ``null`` where it is not finite."""
    if not math.isfinite(value):
        return "null"
    sign = "-" if math.copysign(1.0, value) < 0 else ""
    return sign + ("0.0" if value == 0 else _positive_text(abs(value)))
