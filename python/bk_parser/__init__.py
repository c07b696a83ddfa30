"""Structured documents: load them, read and change values, and save them keeping their layout.

    import bk_parser

    with bk_parser.edit("harbour.bkd", search=["library"]) as scene:
        for light in scene.find_all("**/light"):
            light["power"] = light.get("power", 0.0) * 2

docs/python.md is the guide.
"""

import os as _os

from bk_parser import _interpreter as _interpreter  # first: it may refuse
from bk_parser import _containers, _core, _pickling
from bk_parser._core import (
    Document,
    Entry,
    Group,
    LoadCancelled,
    LoadError,
    PathError,
    Problem,
    SaveError,
    Values,
    from_binary,
    from_json,
    load,
    parse,
)
from bk_parser._edit import edit
from bk_parser._types import Form, NewValue, NewValues, Value

_containers.extend(Group)
_containers.extend(Entry)
_pickling.extend()
_containers.extend_values(Values)
_core._seal_types()
if hasattr(_os, "register_at_fork"):
    _os.register_at_fork(before=_core._wait_for_saves, after_in_child=_core._begin_forked)

__all__ = [
    "Document",
    "Entry",
    "Form",
    "Group",
    "LoadCancelled",
    "LoadError",
    "NewValue",
    "NewValues",
    "PathError",
    "Problem",
    "SaveError",
    "Value",
    "Values",
    "edit",
    "from_binary",
    "from_json",
    "load",
    "parse",
]
