"""Draws parts on the build plate with the support that they would need, as SVG: painter's algorithm,
flat shading, Python's standard library only."""
import math
import struct

VIEW = math.radians(-32)  # about Z, of all
TILT = math.radians(28)
LIGHT = (0.05, -0.6, 0.8)
PLATE = 130  # mm
PANEL = (330, 262)  # pixels
SCALE = 1.75  # pixels per mm
PART, SUPPORT = (255, 176, 84), "#3f78a8"
LONGEST = 26  # mm: small pieces are sorted well by their centres
PITCH = 5  # mm between columns of support
OVERHANG = math.cos(math.radians(45))


def read_stl(path):
    with open(path, "rb") as file:
        data = file.read()
    count = struct.unpack_from("<I", data, 80)[0]
    triangles = []
    for i in range(count):
        values = struct.unpack_from("<12f", data, 84 + 50 * i)
        triangles.append([values[3:6], values[6:9], values[9:12]])
    return triangles


def on_plate(triangles, degrees):
    """Turned about Z, and centred on the plate at height 0."""
    c, s = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))
    turned = [[(x * c - y * s, x * s + y * c, z) for x, y, z in t] for t in triangles]
    axes = list(zip(*(p for t in turned for p in t)))
    shift = [(min(a) + max(a)) / 2 for a in axes[:2]] + [min(axes[2])]
    return [[tuple(v - d for v, d in zip(p, shift)) for p in t] for t in turned]


def project(p):
    """Pixels to the right and down, and how far away."""
    x = p[0] * math.cos(VIEW) - p[1] * math.sin(VIEW)
    y = p[0] * math.sin(VIEW) + p[1] * math.cos(VIEW)
    z = p[2]
    return (x, -(z * math.cos(TILT) + y * math.sin(TILT)), y * math.cos(TILT) - z * math.sin(TILT))


def normal_of(a, b, c):
    u = [b[i] - a[i] for i in range(3)]
    v = [c[i] - a[i] for i in range(3)]
    n = [u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]]
    length = math.sqrt(sum(x * x for x in n)) or 1.0
    return [x / length for x in n]


def split(triangle):
    """Halves the longest side until it is short."""
    sides = [(math.dist(triangle[i], triangle[i - 2]), i) for i in range(3)]
    length, i = max(sides)
    if length <= LONGEST:
        return [triangle]
    a, b, c = triangle[i], triangle[i - 2], triangle[i - 1]
    middle = tuple((p + q) / 2 for p, q in zip(a, b))
    return split([a, middle, c]) + split([middle, b, c])


def heights_at(x, y, triangles):
    """Where a vertical line meets the part: (height, whether an overhang), from below."""
    found = []
    for a, b, c in triangles:
        whole = (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0])
        if whole == 0:
            continue
        v = ((x - a[0]) * (c[1] - a[1]) - (y - a[1]) * (c[0] - a[0])) / whole
        w = ((b[0] - a[0]) * (y - a[1]) - (b[1] - a[1]) * (x - a[0])) / whole
        if v >= 0 and w >= 0 and v + w <= 1:
            z = a[2] + v * (b[2] - a[2]) + w * (c[2] - a[2])
            found.append((z, normal_of(a, b, c)[2] < -OVERHANG))
    return sorted(found)


def columns_of(triangles):
    """Vertical lines of support in short pieces: under each overhang, down to what is below."""
    steps = [PITCH * (i + 0.5) for i in range(-PLATE // (2 * PITCH), PLATE // (2 * PITCH))]
    pieces = []
    for x in steps:
        for y in steps:
            floor = 0.0
            for z, hangs in heights_at(x, y, triangles):
                count = math.ceil((z - floor) / LONGEST) if hangs and z - floor > 0.5 else 0
                cuts = [floor + (z - floor) * i / count for i in range(count + 1)] if count else []
                pieces += [[(x, y, low), (x, y, high)] for low, high in zip(cuts, cuts[1:])]
                floor = z
    return pieces


def polygon(points, offset, style):
    text = " ".join(f"{offset[0] + SCALE * x:.1f},{offset[1] + SCALE * y:.1f}" for x, y, _ in points)
    return f'<polygon points="{text}" {style}/>'


def draw_face(triangle, offset):
    points = [project(p) for p in triangle]
    a, b, c = points
    if (b[0] - a[0]) * (c[1] - a[1]) >= (b[1] - a[1]) * (c[0] - a[0]):
        return []  # it faces away
    shade = sum(n * light for n, light in zip(normal_of(*triangle), LIGHT))
    color = "#%02x%02x%02x" % tuple(int((0.45 + 0.5 * max(shade, 0.0)) * v) for v in PART)
    return [polygon(points, offset, f'fill="{color}" stroke="{color}"')]


def draw_columns(pieces, offset):
    """As one path."""
    ends = [[(offset[0] + SCALE * x, offset[1] + SCALE * y) for x, y, _ in map(project, p)] for p in pieces]
    path = "".join(f"M{x:.1f} {low:.1f}V{high:.1f}" for (x, low), (_, high) in ends)
    return [f'<path d="{path}" stroke="{SUPPORT}"/>'] if ends else []


def draw(triangles, left, caption, note):
    offset = (left + PANEL[0] / 2, PANEL[1] - 0.7 * SCALE * PLATE * math.sin(TILT) - 4)
    half = PLATE / 2
    plate = [project(p) for p in [(-half, -half, 0), (half, -half, 0), (half, half, 0), (-half, half, 0)]]
    lines = [polygon(plate, offset, 'fill="#e3e9ef" stroke="#a9b9c8"')]
    pieces = [piece for t in triangles for piece in split(t)] + columns_of(triangles)
    columns = []
    for piece in sorted(pieces, key=lambda piece: -sum(project(p)[2] for p in piece) / len(piece)):
        if len(piece) == 2:
            columns.append(piece)
            continue
        face = draw_face(piece, offset)
        if face:
            lines += draw_columns(columns, offset) + face
            columns = []
    lines += draw_columns(columns, offset)
    middle = left + PANEL[0] / 2
    lines.append(f'<text x="{middle}" y="{PANEL[1] + 16}" font-weight="bold">{caption}</text>')
    lines.append(f'<text x="{middle}" y="{PANEL[1] + 36}">{note}</text>')
    return lines
