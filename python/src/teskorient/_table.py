"""A table of poses for notebooks that needs no script."""

from __future__ import annotations

from html import escape
from typing import Final

from teskorient import _texts
from teskorient.poses import Pose, Poses

_HEADINGS: Final = (
    ("Rank", ""),
    ("Support", "filament, about"),
    ("Contact", "mm²"),
    ("Height", "mm"),
    ("Cost", "low is better"),
    ("Direction of the part that points up", ""),
)


def _row(mark: str, pose: Pose) -> str:
    m = pose.measures
    x, y, z = (float(value) for value in pose.up)
    cells = (
        _texts.filament_text(pose.cost.support_filament),
        f"{m.contact_area:,.0f}",
        f"{m.height:.2f}",
        f"{pose.cost.total:.0f}",
        _texts.direction_text((x, y, z)) + ("" if m.stands else ", does not stand"),
    )
    body = "".join(f"<td>{escape(cell)}</td>" for cell in cells)
    return f'<tr><th scope="row">{escape(mark)}</th>{body}</tr>'


def table_html(poses: Poses, note: str = "") -> str:
    """Return a table of all poses, and a remark under it."""
    head = "".join(
        f'<th scope="col">{escape(name)}{f" <small>{escape(unit)}</small>" if unit else ""}</th>'
        for name, unit in _HEADINGS
    )
    rows = [_row(str(pose.rank), pose) for pose in poses]
    rows.append(_row("as it lies", poses.as_it_lies))
    reason = escape(_texts.reason_for(poses))
    more = f"<p><small>{escape(note)}</small></p>" if note else ""
    return (
        f"<table><caption>Build poses of {escape(poses.part.name) or 'the part'}. {reason}</caption>"
        f"<thead><tr>{head}</tr></thead><tbody>{''.join(rows)}</tbody></table>{more}"
    )
