"""The numbers in which two versions of a scene differ, as a table."""

import csv
import sys

import bk_parser


def numbers(path: str) -> dict[str, list[object]]:
    scene = bk_parser.load(path, search=["library", "shots"])
    return {entry.path: [v for v in entry.values if isinstance(v, (int, float))] for entry in scene.walk()}


before = numbers("harbour.bkd")
with bk_parser.edit("harbour.bkd", search=["library", "shots"]) as scene:
    scene["world/wind/speed"] = 9.5
    scene["harbour/quay/fenders"] = 20
after = numbers("harbour.bkd")

table = csv.writer(sys.stdout, lineterminator="\n")
table.writerow(["path", "before", "after"])
for path in sorted(before.keys() | after.keys()):
    if before.get(path) != after.get(path):
        table.writerow([path, *before.get(path, []), *after.get(path, [])])
