"""The lines of a results file, as ``tesk-orient batch`` writes and reads them.

docs/farm.md describes the format. Everything here gives the same bytes as the program.
"""

from __future__ import annotations

import json
import re
from collections.abc import Mapping
from json.encoder import encode_basestring
from typing import Any, NamedTuple
from urllib.parse import unquote_to_bytes

from ._numbers import number_text

SCHEMA = "tesk-orient/batch/1"
OUT_OF_MEMORY = "out-of-memory"

_PLAIN_BYTES = frozenset(b"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/")
_SURROGATE = re.compile("[\ud800-\udfff]")


class Identity(NamedTuple):
    """A file's content."""

    size: int
    hash: str


class Held(NamedTuple):
    """What a later run needs to know of a line."""

    path: bytes
    hash: str  # empty if the file could not be read
    settings_hash: str
    status: str


def path_bytes(path: str) -> bytes:
    """The bytes of a file's name or URL; names that are not UTF-8 come as ``os.fsdecode`` gives them."""
    return path.encode("utf-8", "surrogateescape")


def display_name(path: str) -> str:
    """The name for people: U+FFFD where it is not UTF-8."""
    if _SURROGATE.search(path) is None:
        return path
    return path.encode("utf-8", "surrogateescape").decode("utf-8", "replace")


def percent_encoded(name: bytes) -> str:
    return "".join(chr(b) if b in _PLAIN_BYTES else f"%{b:02X}" for b in name)


def json_text(value: Any) -> str:
    """JSON on one line. Members keep their order."""
    if isinstance(value, str):
        return encode_basestring(display_name(value))
    if value is None:
        return "null"
    if value is True:
        return "true"
    if value is False:
        return "false"
    if isinstance(value, int):
        return str(value)
    if isinstance(value, float):
        return number_text(value)
    if isinstance(value, Mapping):
        members = (f"{encode_basestring(name)}:{json_text(v)}" for name, v in value.items())
        return "{" + ",".join(members) + "}"
    return "[" + ",".join(map(json_text, value)) + "]"


def input_member(path: str, identity: Identity | None) -> dict[str, Any]:
    member: dict[str, Any] = {"path": display_name(path)}
    if member["path"] != path:
        member["pathBytes"] = percent_encoded(path_bytes(path))
    member["size"] = identity.size if identity else None
    member["hash"] = identity.hash if identity else None
    return member


def entry(
    path: str,
    identity: Identity | None,
    settings_hash: str,
    outcome: Mapping[str, Any],
    seconds: float | None = None,
    peak_memory: int | None = None,
) -> dict[str, Any]:
    """One line's object. The outcome is what :func:`success` or :func:`failure` made."""
    return {
        "schema": SCHEMA,
        "input": input_member(path, identity),
        "settingsHash": settings_hash,
        **outcome,
        "seconds": seconds,
        "peakMemoryBytes": peak_memory,
    }


def success(result: Mapping[str, Any]) -> dict[str, Any]:
    return {"status": "ok", "result": result}


def failure(code: str, text: str) -> dict[str, Any]:
    """``crashed`` and ``out-of-memory`` are statuses of their own; the other codes are failures."""
    status = code if code in ("crashed", OUT_OF_MEMORY) else "failed"
    return {"status": status, "error": {"code": code, "text": display_name(text)}}


def _text_at(value: Any, name: str) -> str:
    text = value.get(name) if isinstance(value, dict) else None
    return text if isinstance(text, str) else ""


def held_line(line: bytes) -> Held | None:
    """What a line says; None if it is no line of a results file."""
    try:
        value = json.loads(line)
    except (ValueError, RecursionError):
        return None
    if _text_at(value, "schema") != SCHEMA or "input" not in value:
        return None
    given = value["input"]
    encoded = _text_at(given, "pathBytes")
    path = (
        unquote_to_bytes(encoded) if encoded else _text_at(given, "path").encode("utf-8", "replace")
    )
    return Held(
        path, _text_at(given, "hash"), _text_at(value, "settingsHash"), _text_at(value, "status")
    )
