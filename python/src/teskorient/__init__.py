"""In which orientation should a 3D-printed part be built, and what is the smallest box around it?

>>> import teskorient
>>> part = teskorient.Part.load("bracket.stl")        # doctest: +SKIP
>>> poses = teskorient.orient(part)                   # doctest: +SKIP
>>> poses.best.apply().save("bracket-turned.stl")     # doctest: +SKIP

Lengths are in millimetres, angles in degrees where a name does not say otherwise. Matrices are 4 x 4
float32 for column vectors, ``p' = M @ [x, y, z, 1]``: the transpose of those in the C and C++
interfaces and in the program's JSON, which are for row vectors. The same input gives the same bits
with any number of threads, on every platform, and as the program ``tesk-orient`` gives.
"""

from teskorient import _library
from teskorient.boxes import Box, Hull, LayFlat, bounding_box, convex_hull, lay_flat
from teskorient.errors import InternalError, NoPoseError, PartFileError, TeskError
from teskorient.part import Part, PartWarning
from teskorient.poses import (
    KeepOff,
    PassedOver,
    Pose,
    PoseCost,
    PoseMeasures,
    Poses,
    PoseSettings,
    measure,
    orient,
)
from teskorient.ranking import Orientation, Ranking, RankSettings, rank

__all__ = [
    "Box",
    "Hull",
    "InternalError",
    "KeepOff",
    "LayFlat",
    "NoPoseError",
    "Orientation",
    "Part",
    "PartFileError",
    "PartWarning",
    "PassedOver",
    "Pose",
    "PoseCost",
    "PoseMeasures",
    "PoseSettings",
    "Poses",
    "RankSettings",
    "Ranking",
    "TeskError",
    "__version__",
    "bounding_box",
    "convex_hull",
    "lay_flat",
    "measure",
    "orient",
    "rank",
]

__version__: str = _library.library.tesk_version().decode()
