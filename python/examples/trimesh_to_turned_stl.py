"""Takes a mesh that trimesh made, and writes it as an STL in the pose that is best to print.

python trimesh_to_turned_stl.py turned.stl
"""

import sys

import trimesh

import teskorient


def funnel() -> trimesh.Trimesh:
    """A cone that stands on its tip."""
    cone = trimesh.creation.cone(radius=30.0, height=20.0)
    return cone.apply_transform(trimesh.transformations.rotation_matrix(3.14159265, [1, 0, 0]))


def main(output: str) -> None:
    """Turn the part and write it."""
    mesh = funnel()
    part = teskorient.Part.from_any(mesh, name="funnel")
    poses = teskorient.orient(part, fits=(250, 210, 210))
    print(poses.reason)

    # Either the library moves and writes the part ...
    poses.best.apply().save(output)

    # ... or trimesh does.
    mesh.apply_transform(poses.best.matrix)
    print("lowest point:", round(float(mesh.bounds[0][2]), 3), "mm")


if __name__ == "__main__":
    main(sys.argv[1])
