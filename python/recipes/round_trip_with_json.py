"""Hand a scene to a tool that speaks JSON, and take it back."""

import json

import bk_parser

scene = bk_parser.load("harbour.bkd", search=["library", "shots"])

plain = scene.to_dict()  # names are keys: what a tool that only asks wants
print(plain["world"]["wind"]["speed"])

text = scene.to_json()  # everything, with types and templates
json.loads(text)
print(bk_parser.from_json(text) == scene)
