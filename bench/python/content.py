"""The same content in every format: objects with a place, a flag, a name and a count."""

import json
from pathlib import Path
from typing import Any


def objects(count: int) -> dict[str, dict[str, Any]]:
    return {
        f"node_{i}": {"position": [i * 0.5, i * 1.25, i * 2.75], "visible": i % 3 == 0, "name": f"object {i}", "count": i}
        for i in range(count)
    }


def as_bkd(content: dict[str, dict[str, Any]]) -> str:
    lines = ["#Brellwick_Serial_Version 1.2\n"]
    for name, node in content.items():
        x, y, z = node["position"]
        lines.append(
            f"{name} {{\n    position {x} {y} {z} // metres\n    visible {'yes' if node['visible'] else 'no'}\n"
            f"    name \"{node['name']}\"\n    count {node['count']}\n}}\n"
        )
    return "".join(lines)


def as_toml(content: dict[str, dict[str, Any]]) -> str:
    return "".join(
        f"[{name}]\nposition = {node['position']} # metres\nvisible = {str(node['visible']).lower()}\n"
        f"name = \"{node['name']}\"\ncount = {node['count']}\n"
        for name, node in content.items()
    )


def as_yaml(content: dict[str, dict[str, Any]]) -> str:
    return "".join(
        f"{name}:\n  position: {node['position']} # metres\n  visible: {str(node['visible']).lower()}\n"
        f"  name: {node['name']}\n  count: {node['count']}\n"
        for name, node in content.items()
    )


def as_xml(content: dict[str, dict[str, Any]]) -> str:
    nodes = "".join(
        f"<{name}>\n  <position>" + "".join(f"<v>{v}</v>" for v in node["position"]) + "</position><!-- metres -->\n"
        f"  <visible>{str(node['visible']).lower()}</visible>\n  <name>{node['name']}</name>\n"
        f"  <count>{node['count']}</count>\n</{name}>\n"
        for name, node in content.items()
    )
    return f"<scene>\n{nodes}</scene>\n"


def write_all(folder: Path, count: int) -> None:
    content = objects(count)
    (folder / "scene.json").write_text(json.dumps(content, indent=2))
    (folder / "scene.bkd").write_text(as_bkd(content))
    (folder / "scene.toml").write_text(as_toml(content))
    (folder / "scene.yaml").write_text(as_yaml(content))
    (folder / "scene.xml").write_text(as_xml(content))
