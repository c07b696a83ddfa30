"""What bkdoc converts to JSON fits the schemas of documents, and what is no such document does not."""

import glob, json, os, subprocess, sys
from jsonschema import Draft202012Validator

def load(name):
    with open("schemas/" + name, encoding="utf-8") as file:
        schema = json.load(file)
    Draft202012Validator.check_schema(schema)
    return schema

document = load("document.schema.json")
lossless = Draft202012Validator(document)
line = Draft202012Validator({**document, "$ref": "#/$defs/entries"})
plain = Draft202012Validator(load("document_plain.schema.json"))
failed = 0

def fail(text):
    global failed
    failed += 1
    print(text, file=sys.stderr)

def converted(path, shape):
    run = subprocess.run([os.environ["BKDOC"], "convert", path, "-", "--to", shape, "--key", "lantern"],
                         stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    return run.stdout.decode("utf-8") if run.returncode < 2 else None

def expect_fit(validator, value, what):
    error = next(validator.iter_errors(value), None)
    if error is not None:
        fail(f"{what}: {error.message}")

count = 0
patterns = ["tests/data/*", "examples/*.bkd", "examples/*/**/*.bkd", "fuzz/corpus/*/*"]
for path in sorted(set(sum((glob.glob(pattern, recursive=True) for pattern in patterns), []))):
    if not os.path.isfile(path) or (text := converted(path, "json")) is None:
        continue
    count += 1
    expect_fit(lossless, json.loads(text), path)
    expect_fit(plain, json.loads(converted(path, "json-plain")), path + " (plain)")
    for row in converted(path, "ndjson").splitlines():
        expect_fit(line, json.loads(row), path + " (line)")
if count < 100:
    fail(f"only {count} documents were converted")

# Inputs that from_json refuses and that a schema can refuse, too.
for text in ['1', '[1]', '[[]]', '{"a": null}', '{"a": [[1]]}', '{"$a": 1}', '{"a": {"$foo": 1}}',
             '{"a": {"$int": true}}', '{"a": {"$binary": "AQI"}}', '{"a": {"$kind": "call"}}',
             '{"a": {"$kind": "cal", "$values": []}}', '{"a": {"$array": -1, "$values": []}}',
             '{"a": {"$array": 4294967295, "$values": []}}', '{"a": {"$array": 1, "b": 1, "$values": 1}}',
             '{"a": [{"$array": 1, "$values": 1}]}', '{"a": {"$group": "g"}}', '{"a": {"$type": 7}}',
             '{"a": {"$string": "\\\\q"}}', '{"a": {"b": 1, "$int": 2}}']:
    if lossless.is_valid(json.loads(text)):
        fail(f"the schema takes {text}")
    run = subprocess.run([os.environ["BKDOC"], "convert", "-", "-", "--from", "json", "--to", "json"],
                         input=text.encode(), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    if run.returncode != 2:
        fail(f"bkdoc takes {text}")
if plain.is_valid([]) or plain.is_valid(1):
    fail("the schema of the plain shape takes what is no object")

print(f"{count} documents fit")
sys.exit(1 if failed else 0)
