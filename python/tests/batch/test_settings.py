"""Settings in Python stand for the same as those of the program's command line."""

from __future__ import annotations

from typing import Any

import numpy as np
import pytest

from teskorient.distributed._settings import make_settings


@pytest.mark.parametrize(
    ("keywords", "arguments"),
    [
        ({}, ["--together"]),
        ({"overhang_angle": 55.0}, ["--overhang-angle=55", "--together"]),
        ({"overhang_angle": "55.0"}, ["--overhang-angle=55.0", "--together"]),
        ({"overhang_angle": np.float32(52.1)}, ["--overhang-angle=52.1", "--together"]),
        ({"fits": (250, 210.5, "9")}, ["--fits=250x210.5x9", "--together"]),
        (
            {"unit": "inch", "goal": "balanced", "keep_off": [(0, 0, 1), ((1, 0, 0), 30)]},
            [
                "--goal=balanced",
                "--keep-off=0,0,1",
                "--keep-off=1,0,0:30",
                "--together",
                "--units=inch",
            ],
        ),
        ({"keep_off": "0,0,1:30"}, ["--keep-off=0,0,1:30", "--together"]),
        ({"keep_off": np.eye(3)[2:]}, ["--keep-off=0,0,1", "--together"]),
    ],
)
def test_settings_are_the_programs_arguments(
    keywords: dict[str, Any], arguments: list[str]
) -> None:
    assert make_settings(**keywords).arguments == arguments


@pytest.mark.parametrize(
    "keywords",
    [
        {"goal": "weights"},
        {"goal": ""},
        {"unit": "furlong"},
        {"overhang_angle": 91},
        {"overhang_angle": "x"},
        {"overhang_angle": float("nan")},
        {"fits": (1, 2)},
        {"fits": (1, 2, 0)},
        {"fits": "1x2x-3"},
        {"fits": ""},
        {"keep_off": [(0, 0, 0)]},
        {"keep_off": ["0,0"]},
        {"keep_off": ["0,0,1:181"]},
        {"keep_off": ["0,0,1:"]},
    ],
)
def test_wrong_settings_are_refused(keywords: dict[str, Any]) -> None:
    with pytest.raises(ValueError):
        make_settings(**keywords)


def test_keywords_are_those_of_orient() -> None:
    settings = make_settings("least-support", 50, "250x210x210", [(0, 0, 1), "1,0,0:30"])
    assert settings.keywords() == {
        "goal": "least-support",
        "overhang_angle": 50.0,
        "fits": (250.0, 210.0, 210.0),
        "keep_off": [((0.0, 0.0, 1.0), None), ((1.0, 0.0, 0.0), 30.0)],
    }
