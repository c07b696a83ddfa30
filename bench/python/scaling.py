"""Edits the same files in one process, and on clusters of more and more processes. Prints seconds, and files a second.

Usage: scaling.py [files] [most processes]
"""

import os
import sys
import tempfile
import time
from pathlib import Path

import bk_parser
from bk_parser import Document, farm
from content import as_bkd, objects
from distributed import Client, LocalCluster


def double(scene: Document) -> None:
    for count in scene.find_all("*/count"):
        count.value *= 2


def main() -> None:
    files = int(sys.argv[1]) if len(sys.argv) > 1 else 2000
    most = int(sys.argv[2]) if len(sys.argv) > 2 else (os.cpu_count() or 1)
    with tempfile.TemporaryDirectory() as folder:
        paths = [Path(folder) / f"scene_{number:05}.bkd" for number in range(files)]
        for path in paths:
            path.write_text(as_bkd(objects(200)))
        print(f"{files} files of {paths[0].stat().st_size} bytes\n\n| | seconds | files a second |\n|---|---|---|")
        begin = time.perf_counter()
        for path in paths:
            with bk_parser.edit(path, into_includes=False) as scene:
                double(scene)
        show("one process, a loop", files, time.perf_counter() - begin)
        for count in range(1, most + 1):
            with LocalCluster(n_workers=count, threads_per_worker=1, dashboard_address=None) as cluster:
                with Client(cluster) as client:
                    client.wait_for_workers(count)
                    begin = time.perf_counter()
                    assert not any(result.error for result in farm.edit(client, double, paths))
                    show(f"a cluster of {count}", files, time.perf_counter() - begin)


def show(what: str, files: int, seconds: float) -> None:
    print(f"| {what} | {seconds:.1f} | {files / seconds:.0f} |")


if __name__ == "__main__":
    main()
