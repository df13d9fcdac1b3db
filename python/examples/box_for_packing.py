"""Chooses the smallest of some cartons that a part fits into, with room for padding.

python box_for_packing.py part.stl
"""

import sys

import numpy as np

import teskorient

# Inner sizes in mm.
CARTONS = {
    "S": (120, 80, 40),
    "M": (200, 150, 100),
    "L": (320, 240, 160),
    "tube": (620, 75, 75),
}
PADDING = 10.0


def carton_for(extents: np.ndarray) -> str | None:
    """The carton of least volume whose sides, sorted, are all long enough."""
    needed = np.sort(extents + 2 * PADDING)
    fitting = [name for name, size in CARTONS.items() if (needed <= np.sort(size)).all()]
    return min(fitting, key=lambda name: np.prod(CARTONS[name]), default=None)


def main(path: str) -> None:
    """Choose a carton for a part and say how it goes in."""
    part = teskorient.Part.load(path)
    box = teskorient.bounding_box(part)
    as_it_lies = carton_for(np.array(part.size))
    turned = carton_for(box.extents)
    print(f"as it lies: {as_it_lies or 'no carton'}; turned: {turned or 'no carton'}")
    if turned is None:
        # A lower box may do where the one of least volume is too high.
        lowest = teskorient.bounding_box(part, "base-height")
        print(f"its lowest box is {lowest.extents.min():.1f} mm high")
        return
    flat = teskorient.lay_flat(part)
    x, y, z = flat.size_after
    print(f"put it into carton {turned} as {x:.1f} x {y:.1f} x {z:.1f} mm:")
    print(np.array_str(flat.matrix, precision=4, suppress_small=True))


if __name__ == "__main__":
    main(sys.argv[1])
