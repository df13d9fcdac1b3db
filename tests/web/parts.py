"""Parts for the tests of report pages, as lists of triangles, and the files that they are written to."""
import math
import struct
import zipfile
from pathlib import Path
from xml.sax.saxutils import quoteattr


def box(x, y, z, at=(0, 0, 0)):
    p = [(at[0] + i * x, at[1] + j * y, at[2] + k * z) for i in (0, 1) for j in (0, 1) for k in (0, 1)]
    quads = [(0, 1, 3, 2), (4, 6, 7, 5), (0, 4, 5, 1), (2, 3, 7, 6), (0, 2, 6, 4), (1, 5, 7, 3)]
    return [t for a, b, c, d in quads for t in ((p[a], p[b], p[c]), (p[a], p[c], p[d]))]


def table():
    """A top on four legs: as it lies, its top hangs over the plate."""
    legs = [(0, 0), (50, 0), (0, 30), (50, 30)]
    return box(60, 40, 6, (0, 0, 34)) + [t for x, y in legs for t in box(10, 10, 34, (x, y, 0))]


def rippled_ball(steps):
    def at(i, j):
        u, v = 2 * math.pi * (i % steps) / steps, math.pi * j / steps
        r = 30 + math.sin(12 * u) * math.sin(v) ** 2 * 2 + math.cos(17 * v)
        return (r * math.cos(u) * math.sin(v), r * math.sin(u) * math.sin(v), r * math.cos(v))
    grid = [[at(i, j) for j in range(steps + 1)] for i in range(steps)]
    triangles = []
    for i in range(steps):
        for j in range(steps):
            a, b = grid[i][j], grid[(i + 1) % steps][j]
            c, d = grid[(i + 1) % steps][j + 1], grid[i][j + 1]
            triangles += [(a, d, c), (a, c, b)]
    return triangles


def write_stl(path, triangles):
    facets = (struct.pack("<12fH", 0, 0, 0, *a, *b, *c, 0) for a, b, c in triangles)
    Path(path).write_bytes(bytes(80) + struct.pack("<I", len(triangles)) + b"".join(facets))


def wedge():
    """A slope of 45 degrees hangs over as it lies."""
    triangles = [((0, 0, 0), (0, 0, 40), (40, 0, 40)), ((0, 30, 0), (40, 30, 40), (0, 30, 40)),
                 ((0, 0, 0), (0, 30, 0), (0, 30, 40)), ((0, 0, 0), (0, 30, 40), (0, 0, 40)),
                 ((0, 0, 40), (0, 30, 40), (40, 30, 40)), ((0, 0, 40), (40, 30, 40), (40, 0, 40)),
                 ((0, 0, 0), (40, 0, 40), (40, 30, 40)), ((0, 0, 0), (40, 30, 40), (0, 30, 0))]
    return [(a, c, b) for a, b, c in triangles]


def mesh_xml(triangles):
    places = {corner: i for i, corner in enumerate(dict.fromkeys(c for t in triangles for c in t))}
    vertices = "".join(f'<vertex x="{x}" y="{y}" z="{z}"/>' for x, y, z in places)
    faces = "".join(f'<triangle v1="{places[a]}" v2="{places[b]}" v3="{places[c]}"/>' for a, b, c in triangles)
    return f"<mesh><vertices>{vertices}</vertices><triangles>{faces}</triangles></mesh>"


def write_plate(path, objects):
    """A 3MF of (name, part number, triangles, [(x, y), ...]) for each object, with an item at each place."""
    resources = "".join(
        f'<object id="{i}" type="model" name={quoteattr(name)} partnumber={quoteattr(number)}>{mesh_xml(mesh)}</object>'
        for i, (name, number, mesh, _) in enumerate(objects, 1))
    items = "".join(f'<item objectid="{i}" transform="1 0 0 0 1 0 0 0 1 {x} {y} 0"/>'
                    for i, (_, _, _, places) in enumerate(objects, 1) for x, y in places)
    model = ('<?xml version="1.0" encoding="UTF-8"?><model unit="millimeter" '
             'xmlns="http://schemas.microsoft.com/3dmanufacturing/core/2015/02">'
             f"<resources>{resources}</resources><build>{items}</build></model>")
    kinds = ('<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">'
             '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
             '<Default Extension="model" ContentType="application/vnd.ms-package.3dmanufacturing-3dmodel+xml"/></Types>')
    links = ('<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">'
             '<Relationship Id="r" Target="/3D/3dmodel.model" '
             'Type="http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel"/></Relationships>')
    with zipfile.ZipFile(path, "w") as package:
        for name, text in (("[Content_Types].xml", kinds), ("_rels/.rels", links), ("3D/3dmodel.model", model)):
            package.writestr(name, text)
