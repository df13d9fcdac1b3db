"""Meshes of other packages."""

from __future__ import annotations

from typing import Any

from numpy.typing import ArrayLike


def arrays_in(mesh: Any) -> tuple[ArrayLike, ArrayLike]:
    """Return the vertices and triangles of anything that has them."""
    if isinstance(mesh, (tuple, list)) and len(mesh) == 2:
        return mesh[0], mesh[1]
    vertices = getattr(mesh, "vertices", None)
    if vertices is None:
        vertices = getattr(mesh, "points", None)
    faces = getattr(mesh, "cells_dict", {}).get("triangle")
    for name in ("faces", "triangles"):  # trimesh has both
        if faces is None:
            faces = getattr(mesh, name, None)
    if vertices is None or faces is None:
        raise ValueError(
            f"a {type(mesh).__name__} has no triangles: Part.from_any() needs .vertices and .faces"
        )
    return vertices, faces
