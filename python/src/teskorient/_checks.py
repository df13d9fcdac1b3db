"""What may make a result doubtful: the warnings about a mesh, in the program's words."""

from __future__ import annotations

from collections.abc import Mapping
from ctypes import byref
from dataclasses import dataclass

from teskorient import _library as c
from teskorient._call import Running

# Parts below the one and above the other are rare, in millimetres.
_SMALL_PART = 3.0
_LARGE_PART = 2000.0
# A unit is worth proposing where it makes the part this large.
_LEAST_USUAL = 10.0
_MOST_USUAL = 1500.0

Found = tuple[str, str, int]


@dataclass(frozen=True)
class MeshCheck:
    """How sound a surface is, with corners at equal positions joined.

    Attributes
    ----------
    open_edges : int
        Edges of one triangle.
    non_manifold_edges : int
        Edges of more than two.
    inconsistent_edges : int
        Edges across which triangles face opposite ways.
    degenerate_triangles : int
        Triangles whose corners coincide or lie on a line.
    signed_volume : float
        mm3 that a closed surface encloses, negative if its triangles face inward.
    """

    open_edges: int
    non_manifold_edges: int
    inconsistent_edges: int
    degenerate_triangles: int
    signed_volume: float

    @classmethod
    def of(cls, mesh: c.Handle) -> MeshCheck:
        """Check a mesh of the library."""
        surface = c.new(c.MeshSurface)
        how = Running(None, None, is_long=False)
        status = c.library.tesk_mesh_check(mesh.pointer, byref(how.struct), byref(surface))
        how.check(status)
        return cls(
            surface.open_edges,
            surface.non_manifold_edges,
            surface.inconsistent_edges,
            surface.degenerate_triangles,
            surface.volume,
        )

    @property
    def is_sound(self) -> bool:
        """Whether the surface is closed and consistently wound."""
        return not (self.open_edges or self.non_manifold_edges or self.inconsistent_edges)

    @property
    def volume(self) -> float | None:
        """Enclosed volume in mm3; None of a surface that is not sound."""
        return abs(self.signed_volume) if self.is_sound else None


def _counted(count: int, one: str, many: str) -> str:
    return f"{count} {one if count == 1 else many}"


def _edges(check: MeshCheck, is_for_support: bool) -> list[Found]:
    def consequence(text: str) -> str:
        return text if is_for_support else ""

    found: list[Found] = []
    doubt = consequence("; support figures are approximate")
    if check.open_edges > 0:
        edges = _counted(check.open_edges, "open edge", "open edges")
        found.append(("open-edges", f"the surface is not closed: {edges}{doubt}", check.open_edges))
    if check.non_manifold_edges > 0:
        edges = _counted(check.non_manifold_edges, "edge is shared", "edges are shared")
        text = f"{edges} by more than two triangles{doubt}"
        found.append(("non-manifold-edges", text, check.non_manifold_edges))
    if check.inconsistent_edges > 0:
        edges = _counted(check.inconsistent_edges, "edge", "edges")
        doubt = consequence("; overhangs may be missed or counted twice")
        text = f"triangles face opposite ways across {edges}{doubt}"
        found.append(("inconsistent-winding", text, check.inconsistent_edges))
    return found


def _proposals(largest_in_file: float, taken: str, units: Mapping[str, float]) -> str:
    text = ""
    for name in list(units)[:4]:
        size = largest_in_file * units[name]
        if name == taken or size < _LEAST_USUAL or size > _MOST_USUAL:
            continue
        text += f"{' or ' if text else ''}--units {name} ({size:.4g} mm)"
    return f"if that is wrong, try {text}" if text else "check the file's unit"


def mesh_warnings(
    check: MeshCheck,
    size: tuple[float, float, float],
    unit: str,
    units: Mapping[str, float],
    is_for_support: bool,
) -> list[Found]:
    """Return code, text and count of each warning about a mesh.

    Parameters
    ----------
    size
        Extents in millimetres.
    unit
        What the file's numbers were taken to be.
    units
        Millimetres of each unit, the usual ones first.
    is_for_support
        Whether consequences for support are named.
    """
    found = _edges(check, is_for_support)
    if check.is_sound and check.signed_volume < 0.0:
        consequence = ", so top surfaces are counted as overhangs" if is_for_support else ""
        text = f"the surface is inside out: its triangles face inward{consequence}"
        found.append(("inside-out", text, 0))
    if count := check.degenerate_triangles:
        text = _counted(count, "triangle has no area", "triangles have no area")
        found.append(("degenerate-triangles", text, count))
    largest = max(size)
    if not _SMALL_PART <= largest <= _LARGE_PART:
        which = "small" if largest < _SMALL_PART else "large"
        text = (
            f"if the unit is {unit}, the part is {largest:.4g} mm long, which is unusually {which}; "
            f"{_proposals(largest / units[unit], unit, units)}"
        )
        found.append(("unusual-size", text, 0))
    return found
