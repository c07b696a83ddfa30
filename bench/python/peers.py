"""The steps of each library: read one value, read all values, change one value and save."""

import json
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import bk_parser


def values_of(node: Any) -> Iterator[Any]:
    """Yields the single values in dicts and lists."""
    stack = [node]
    while stack:
        item = stack.pop()
        if isinstance(item, dict):
            stack.extend(item.values())
        elif isinstance(item, list):
            stack.extend(item)
        else:
            yield item


class BkParser:
    name = "bk_parser"
    keeps_layout = True

    def __init__(self, folder: Path) -> None:
        self.path = folder / "scene.bkd"

    def first(self, key: str) -> Any:
        return bk_parser.load(self.path, keep_places=False).get(f"{key}/count")

    def walk(self) -> int:
        count = 0
        for entry in bk_parser.load(self.path, keep_places=False).walk():
            for value in entry.values:
                if type(value) is not bk_parser.Group:
                    count += 1
        return count

    def change(self, key: str, value: int) -> None:
        with bk_parser.edit(self.path) as document:
            document[f"{key}/count"] = value


class OfDicts:
    """A library whose tree consists of dicts and lists. A subclass defines how to read and write files."""

    path: Path

    def load(self) -> Any:
        raise NotImplementedError

    def store(self, content: Any) -> None:
        raise NotImplementedError

    def first(self, key: str) -> Any:
        return self.load()[key]["count"]

    def walk(self) -> int:
        return sum(1 for _ in values_of(self.load()))

    def change(self, key: str, value: int) -> None:
        content = self.load()
        content[key]["count"] = value
        self.store(content)


class Json(OfDicts):
    name = "json"
    keeps_layout = False

    def __init__(self, folder: Path) -> None:
        self.path = folder / "scene.json"

    def load(self) -> Any:
        return json.loads(self.path.read_bytes())

    def store(self, content: Any) -> None:
        self.path.write_text(json.dumps(content, indent=2))


class Orjson(Json):
    name = "orjson"

    def __init__(self, folder: Path) -> None:
        super().__init__(folder)
        import orjson

        self.orjson = orjson

    def load(self) -> Any:
        return self.orjson.loads(self.path.read_bytes())

    def store(self, content: Any) -> None:
        self.path.write_bytes(self.orjson.dumps(content, option=self.orjson.OPT_INDENT_2))


class Lxml:
    name = "lxml"
    keeps_layout = True

    def __init__(self, folder: Path) -> None:
        from lxml import etree

        self.etree = etree
        self.path = folder / "scene.xml"

    def first(self, key: str) -> Any:
        return int(self.etree.parse(str(self.path)).findtext(f"{key}/count"))

    def walk(self) -> int:
        """XML has only texts. Converts those that are numbers."""
        count = 0
        for element in self.etree.parse(str(self.path)).iter(self.etree.Element):
            if len(element) == 0:
                text = element.text
                if element.tag == "v":
                    text = float(text)
                elif element.tag == "count":
                    text = int(text)
                count += 1
        return count

    def change(self, key: str, value: int) -> None:
        tree = self.etree.parse(str(self.path))
        tree.find(f"{key}/count").text = str(value)
        tree.write(str(self.path))


class Tomlkit(OfDicts):
    name = "tomlkit"
    keeps_layout = True

    def __init__(self, folder: Path) -> None:
        import tomlkit

        self.tomlkit = tomlkit
        self.path = folder / "scene.toml"

    def load(self) -> Any:
        return self.tomlkit.parse(self.path.read_text())

    def store(self, content: Any) -> None:
        self.path.write_text(self.tomlkit.dumps(content))


class RuamelYaml(OfDicts):
    name = "ruamel.yaml"
    keeps_layout = True

    def __init__(self, folder: Path) -> None:
        from ruamel.yaml import YAML

        self.yaml = YAML()
        self.path = folder / "scene.yaml"

    def load(self) -> Any:
        return self.yaml.load(self.path.read_text())

    def store(self, content: Any) -> None:
        with self.path.open("w") as file:
            self.yaml.dump(content, file)


PEERS: list[type[Any]] = [BkParser, Json, Orjson, Lxml, Tomlkit, RuamelYaml]
