"""Which materials does nothing use?"""

import bk_parser

scene = bk_parser.load("harbour.bkd", search=["library", "shots"])
made = {entry.value: entry for entry in scene.find_all("library/materials/material")}
definitions = [id(entry) for entry in made.values()]
used = {
    value
    for entry in scene.walk()
    if id(entry) not in definitions
    for value in entry.values
    if isinstance(value, str)
}
for name, entry in made.items():
    if name not in used:
        assert entry.file is not None
        print(f"{entry.file.name}:{entry.line}: {name} is not used")
print(len(made), "materials,", len(used & made.keys()), "in use")
