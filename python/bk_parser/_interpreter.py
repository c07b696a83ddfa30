"""Refuses interpreters other than the main one.

The extension keeps one state for the whole process, and its first import in another interpreter would wait for ever for the lock of
the main one.
"""

import importlib
from types import ModuleType


def _interpreters() -> ModuleType | None:
    for name in ("_interpreters", "_xxsubinterpreters"):  # Python 3.13, and before
        try:
            return importlib.import_module(name)
        except ImportError:
            pass
    return None


def _is_main() -> bool:
    interpreters = _interpreters()
    if interpreters is None:
        return True

    def number(interpreter: object) -> object:
        return interpreter[0] if isinstance(interpreter, tuple) else interpreter

    return number(interpreters.get_current()) == number(interpreters.get_main())


if not _is_main():
    raise ImportError("bk_parser can be imported in the main interpreter only")
