"""A bar for one large document, and one for many."""

import sys
from pathlib import Path

import bk_parser
from tqdm import tqdm

with tqdm(total=100, unit="%", file=sys.stderr) as bar:
    scene = bk_parser.load(
        "harbour.bkd", search=["library", "shots"], progress=lambda share: bar.update(round(share * 100) - bar.n)
    )
print(bar.n, "percent of", len(scene.files), "files")

entries = 0
for path in tqdm(sorted(Path("shots").glob("*.bkd")), file=sys.stderr):
    entries += sum(1 for _ in bk_parser.load(path).walk())
print(entries, "entries")
