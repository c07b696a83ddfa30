"""Checks the recipes in this folder as far as that goes without the package managers: run in the source tree."""

import fnmatch
import json
import pathlib
import re
import sys
import types
from unittest import mock

tree = pathlib.Path(__file__).resolve().parent.parent
project = re.search(r"project\(bk_parser VERSION (\S+)", (tree / "CMakeLists.txt").read_text()).group(1)
faults = []


def expect(holds, what):
    if not holds:
        faults.append(what)


def check_port():
    port = json.loads((tree / "packaging/vcpkg/bk-parser/vcpkg.json").read_text())
    expect(port["version"] == project, f"vcpkg.json says version {port['version']}, the project {project}")
    expect(re.fullmatch(r"[a-z0-9]+(-[a-z0-9]+)*", port["name"]), "vcpkg.json: the name is none for vcpkg")
    dependencies = port["dependencies"] + [d for f in port["features"].values() for d in f.get("dependencies", [])]
    for dependency in dependencies:
        name = dependency if isinstance(dependency, str) else dependency["name"]
        expect(re.fullmatch(r"[a-z0-9-]+", name), f"vcpkg.json: {name} is no name of a port")


def load_recipe(path):
    """The recipe, with stand-ins for what it imports from Conan."""
    names = ("conan", "conan.errors", "conan.tools", "conan.tools.build", "conan.tools.cmake", "conan.tools.files")
    modules = {name: mock.MagicMock() for name in names}
    modules["conan"].ConanFile = object
    copied = []
    modules["conan.tools.files"].copy = lambda recipe, pattern, src, dst: copied.append((pattern, src))
    recipe = types.ModuleType("recipe")
    with mock.patch.dict(sys.modules, modules):
        exec(compile(path.read_text(), str(path), "exec"), recipe.__dict__)
    return recipe, copied


def check_conan():
    module, copied = load_recipe(tree / "packaging/conan/conanfile.py")
    recipe = module.BkParserRecipe()
    expect(recipe.version == project, f"conanfile.py says version {recipe.version}, the project {project}")
    recipe.recipe_folder = str(tree / "packaging/conan")
    recipe.export_sources_folder = "export"
    recipe.export_sources()
    files = [str(p.relative_to(tree)) for p in tree.rglob("*") if "build" not in p.parts[len(tree.parts):][:1]]
    for pattern, source in copied:
        expect(pathlib.Path(source).resolve() == tree, f"conanfile.py copies from {source}")
        expect(any(fnmatch.fnmatch(name, pattern) for name in files), f"conanfile.py: no file is {pattern}")
    taken = {name.split("/")[0] for name in files if any(fnmatch.fnmatch(name, p) for p, _ in copied)}
    floors = re.search(r"set\(bk_parser_floors ([^)]*)\)", (tree / "CMakeLists.txt").read_text()).group(1).split()
    needed = {"CMakeLists.txt", "LICENSE", "README.md", "CHANGELOG.md", "SECURITY.md", "cmake", *floors, "tools"}
    needed |= {"docs", "abi", "examples"}
    expect(needed <= taken, f"conanfile.py leaves out {sorted(needed - taken)}")
    test, _ = load_recipe(tree / "packaging/conan/test_package/conanfile.py")
    expect(hasattr(test.BkParserTest, "test"), "the test of the Conan package tests nothing")


check_port()
check_conan()
for fault in faults:
    print(fault)
sys.exit(bool(faults))
