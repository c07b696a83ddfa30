"""Check every document of a folder: what the library finds wrong, and rules of one's own."""

from pathlib import Path

import bk_parser

Path("broken.bkd").write_text("light { power }\nlamp { power -5 }\n")

bad = 0
for path in sorted(Path(".").rglob("*.bkd")):
    try:
        document = bk_parser.load(path, search=["library", "shots"])
    except bk_parser.LoadError as error:
        print(error)
        bad += 1
        continue
    for problem in document.problems:
        print(problem)
    negative = [power for power in document.find_all("**/power[@0<0]")]
    for power in negative:
        print(f"{power.file}:{power.line}: error: power below zero")
    bad += bool(document.problems or negative)
print(bad, "bad documents")
