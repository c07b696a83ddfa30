"""Runs bkdoc with --json in many ways, and compares what it writes with the schemas."""

import copy
import json
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

import jsonschema

SCHEMAS = Path("schemas").resolve()
EXAMPLES = Path("examples").resolve()
FOLDERS = ["-I", str(EXAMPLES / "project/library"), "-I", str(EXAMPLES / "project/shots")]
HARBOUR = str(EXAMPLES / "project/harbour.bkd")
LAMP = str(EXAMPLES / "lamp.bkd")

FILES = {
    "part.bkd": "mesh \"hull\" { points 1 2.5 3 }\nbad @ 1\n",
    "top.bkd": "#units \"metre\"\n#include \"part.bkd\"\n#include \"gone.bkd\"\nlight<key> \"a\" { power 60.0 on yes } \n"
               "mask 0x01FF00010000\ncall(1, 2)\nlist[3] 1 2 3\n",
    "other.bkd": "#include \"part.bkd\"\n\xff 1\n",
    "left.bkd": "a 1 b { c 2 d 3 } e \"x\" f { g 1 h 2 i 3 }\n",
    "right.bkd": "b { d 3 c 3 } e \"y\" k 4 m { g 1 h 2 i 3 }\n",
    "empty.bkd": "",
    "before/a.bkd": "a 1\n",
    "before/gone.bkd": "a 1\n",
    "after/a.bkd": "a 2\n",
    "more/a.bkd": "a 1\n",
    "more/added.bkd": "a 1\n",
    "more/gone.bkd": "a 1\n",
}

# Verb, arguments and exit code.
RUNS = [
    ("check", ["top.bkd"], 1),
    ("check", ["top.bkd", "other.bkd", "part.bkd"], 1),
    ("check", ["--max-problems", "1", "top.bkd"], 1),
    ("check", ["gone.bkd", LAMP], 2),
    ("check", [LAMP], 0),
    ("check", ["damaged.bin"], 1),
    ("info", [LAMP, "top.bkd", "binary.bin", "words.archive", "empty.bkd"], 1),
    ("info", [*FOLDERS, HARBOUR], 0),
    ("info", ["gone.bkd"], 2),
    ("same", ["left.bkd", "left.bkd"], 0),
    ("same", ["left.bkd", "right.bkd"], 1),
    ("same", ["--content", "left.bkd", "empty.bkd"], 1),
    ("diff", ["left.bkd", "right.bkd"], 1),
    ("diff", ["left.bkd", "left.bkd"], 0),
    ("diff", ["left.bkd", "binary.bin"], None),
    ("diff", ["before", "after"], 1),
    ("diff", ["before", "more"], 1),
    ("diff", ["more", "before"], 1),
    ("diff", ["before", "before"], 0),
    ("deps", ["top.bkd", "other.bkd"], 1),
    ("deps", [*FOLDERS, HARBOUR], 0),
    ("get", ["**", "left.bkd"], 0),
    ("get", ["**", "top.bkd"], None),
    ("get", ["**", "binary.bin"], 0),
    ("get", ["nothing", "left.bkd"], 1),
    ("grep", ["[a-z]", "left.bkd", "top.bkd"], None),
    ("grep", ["nothing", "left.bkd"], 1),
    ("stats", [LAMP, "binary.bin"], 0),
    ("stats", ["--by", "name", "--top", "2", "left.bkd"], 0),
    ("stats", ["--by", "type", "empty.bkd"], 0),
]


def run(tool, folder, *words):
    return subprocess.run([tool, *words], cwd=folder, capture_output=True, timeout=60)


def prepare(tool, folder):
    for name, text in FILES.items():
        (folder / name).parent.mkdir(exist_ok=True)
        (folder / name).write_bytes(text.encode("latin-1"))
    for form, name in (("binary", "binary.bin"), ("archive", "words.archive")):
        made = run(tool, folder, "convert", "--to", form, LAMP, name)
        assert made.returncode == 0, made.stderr
    whole = (folder / "binary.bin").read_bytes()
    (folder / "damaged.bin").write_bytes(whole[:-5])


def spoiled(value):
    """The same with one thing changed, for each object in it."""
    if isinstance(value, dict):
        for key in value:
            without = copy.deepcopy(value)
            del without[key]
            yield "without " + key, without, key
        yield "with a key more", {**value, "surplus": 1}, None
    elif isinstance(value, list):
        for i, element in enumerate(value[:1]):
            for what, other, key in spoiled(element):
                yield what, [other, *value[1:]], key


def refuses_others(validator, answer):
    """A key more is refused, and so is the lack of some key."""
    changes = list(spoiled(answer))
    refused = [what for what, other, _ in changes if not validator.is_valid(other)]
    return not changes or ("with a key more" in refused and len(refused) > 1)


def main():
    tool = sys.argv[1]
    failures = 0
    used = set()
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        prepare(tool, folder)
        for verb, words, code in RUNS:
            schema = json.loads((SCHEMAS / f"{verb}.schema.json").read_text())
            jsonschema.Draft202012Validator.check_schema(schema)
            validator = jsonschema.Draft202012Validator(schema)
            used.add(f"{verb}.schema.json")
            ended = run(tool, folder, verb, "--json", *words)
            told = f"bkdoc {verb} --json {' '.join(words)}: "
            if code is not None and ended.returncode != code:
                print(f"{told}exit code {ended.returncode}, not {code}: {ended.stderr.decode()}")
                failures += 1
                continue
            try:
                answer = json.loads(ended.stdout.decode("utf-8"))
            except ValueError as fault:
                print(f"{told}no JSON: {fault}")
                failures += 1
                continue
            for fault in validator.iter_errors(answer):
                print(f"{told}{fault.json_path}: {fault.message}")
                failures += 1
            if not refuses_others(validator, answer):
                print(f"{told}the schema refuses nothing")
                failures += 1
    help_text = run(tool, ".", "--help").stdout.decode()
    verbs = set(re.findall(r"^  ([a-z]+) ", help_text, re.MULTILINE))
    unused = {path.name for path in SCHEMAS.glob("*.schema.json") if path.name.split(".")[0] in verbs} - used
    for name in sorted(unused):
        print(f"{name}: no run of bkdoc is compared with it")
    return 1 if failures or unused else 0


if __name__ == "__main__":
    os.environ.pop("BKDOC_KEY", None)
    sys.exit(main())
