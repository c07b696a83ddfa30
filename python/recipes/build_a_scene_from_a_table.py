"""Make a document out of the rows of a spreadsheet."""

import csv
import io

import bk_parser

TABLE = """name,kind,x,y,z,power
key,spot,1.5,3,0,800
fill,area,-2,2.5,1,250.5
rim,spot,0,4,-3,400
"""

scene = bk_parser.Document()
lights = scene.add("lights")
for row in csv.DictReader(io.StringIO(TABLE)):
    light = lights.add(f"light<{row['kind']}>", row["name"])
    light["position"] = [float(row[axis]) for axis in "xyz"]
    light["power"] = float(row["power"])
scene.save("lights.bkd")
print(bk_parser.load("lights.bkd").to_text(), end="")
