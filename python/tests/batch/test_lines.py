"""Lines have the bytes that the program writes."""

from __future__ import annotations

import math
import random
import struct

import pytest

from teskorient.distributed._lines import held_line, input_member, json_text
from teskorient.distributed._numbers import number_text


# As the program's JSON writer prints them; repr() prints the last group otherwise.
@pytest.mark.parametrize(
    ("value", "text"),
    [
        (0.0, "0.0"),
        (-0.0, "-0.0"),
        (1.0, "1.0"),
        (12.5, "12.5"),
        (0.10000000149011612, "0.10000000149011612"),
        (0.0001, "0.0001"),
        (0.00001, "1e-05"),
        (123456789012345.0, "123456789012345.0"),
        (1e100, "1e+100"),
        (5e-324, "5e-324"),
        (1.7976931348623157e308, "1.7976931348623157e+308"),
        (math.nan, "null"),
        (math.inf, "null"),
        (1e15, "1e+15"),
        (9007199254740993.0, "9.007199254740992e+15"),
        (9007199254740994.0, "9.007199254740994e+15"),
        (208.46023559570312, "208.46023559570313"),
        (139473.2870261598, "139473.28702615979"),
        (15.8027325929761, "15.802732592976099"),
    ],
)
def test_a_number_has_the_programs_digits(value: float, text: str) -> None:
    assert number_text(value) == text


def test_every_number_reads_back() -> None:
    random_bits = random.Random(7)
    for _ in range(20000):
        (value,) = struct.unpack("<d", random_bits.randbytes(8))
        if math.isfinite(value):
            assert float(number_text(value)) == value


def test_texts_are_escaped_as_the_program_does() -> None:
    assert json_text({"a\n": ['\x01\x7f"\\/', "Größe", True, None, -3]}) == (
        '{"a\\n":["\\u0001\x7f\\"\\\\/","Größe",true,null,-3]}'
    )


def test_a_name_that_is_not_utf8_keeps_its_bytes() -> None:
    path = b"b\xff\xe2\x82 .stl".decode("utf-8", "surrogateescape")
    assert input_member(path, None) == {
        "path": "b\ufffd\ufffd .stl",
        "pathBytes": "b%FF%E2%82%20.stl",
        "size": None,
        "hash": None,
    }


@pytest.mark.parametrize(
    "line",
    [b"", b"{", b"null", b"[1]", b'{"schema":"tesk-orient/batch/1"}', b'{"schema":"x","input":{}}'],
)
def test_what_is_no_line_is_none(line: bytes) -> None:
    assert held_line(line) is None


def test_a_held_line_has_the_bytes_of_its_path() -> None:
    line = (
        b'{"schema":"tesk-orient/batch/1","input":{"path":"?","pathBytes":"%FFa","size":null,'
        b'"hash":null},"settingsHash":"s","status":"failed"}\n'
    )
    held = held_line(line)
    assert held is not None
    assert (held.path, held.hash, held.settings_hash, held.status) == (b"\xffa", "", "s", "failed")
