"""Give a material another name, where it is made and wherever it is used."""

import bk_parser

old, new = "quay_granite", "quay_basalt"

with bk_parser.edit("harbour.bkd", search=["library", "shots"]) as scene:
    assert f'**/material["{new}"]' not in scene
    for entry in scene.walk():
        for index, value in enumerate(entry.values):
            if value == old:
                entry.values[index] = new
                assert entry.file is not None
                print(f"{entry.file.name}:{entry.line}: {entry.path}")
