"""Edit a thousand files on all cores. Each is saved by one process, and replaced in one step."""

from concurrent.futures import ProcessPoolExecutor
from pathlib import Path

import bk_parser


def brighten(path: Path) -> float:
    with bk_parser.edit(path) as shot:
        shot["light/power"] = shot.get("light/power", 0.0) * 2
        return shot.get("light/power", 0.0)


if __name__ == "__main__":
    paths = [Path(f"batch_{number:04}.bkd") for number in range(1000)]
    for number, path in enumerate(paths):
        path.write_text(f"// shot {number}\nlight {{\n    power {number}.5 // watts\n}}\n")
    with ProcessPoolExecutor() as pool:
        print(sum(pool.map(brighten, paths, chunksize=50)))
    print(paths[7].read_text(), end="")
