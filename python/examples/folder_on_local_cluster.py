"""Orients all STL files of a folder on all processors of this machine.

python folder_on_local_cluster.py parts
"""

import sys
from pathlib import Path

from teskorient.distributed import orient_files


def main(folder: str) -> None:
    """Orient the parts and print what each came to."""
    files = sorted(Path(folder).glob("**/*.stl"))
    filament = 0.0
    for result in orient_files(files, workers=2, overhang_angle=50):
        name = Path(result["input"]["path"]).name
        if result["status"] != "ok":
            print(f"{name}: {result['error']['text']}")
            continue
        best = result["result"]["poses"][0]
        filament += best["supportFilamentMm"]
        print(
            f"{name}: {best['heightMm']:.1f} mm high, {best['supportFilamentMm']:.0f} mm of support"
        )
    print(f"All supports together take about {filament / 1000:.1f} m of filament.")


# The processes of the cluster import this file: it must not start clusters in them.
if __name__ == "__main__":
    main(sys.argv[1])
