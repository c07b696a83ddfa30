"""Pickles and copies documents, groups and entries, as detached ones. Uses the binary form if it carries everything,
else text."""

from typing import Any

from bk_parser import _core
from bk_parser._core import Document, Entry, Group, Problem


def document(form: str, content: bytes, problems: list[Problem]) -> Document:
    return _core._document_from_state(form, content, problems)


def group(form: str, content: bytes) -> Group:
    return _core._group_from_state(form, content)


def entry(form: str, content: bytes) -> Entry:
    return _core._entry_from_state(form, content)


def problem(state: tuple[Any, ...]) -> Problem:
    return _core._problem_from_state(state)


def extend() -> None:
    """Adds the methods to the types that pickle and copy call."""
    makers: list[tuple[Any, Any]] = [(Group, group), (Entry, entry)]
    for cls, make in makers:
        cls.__reduce__ = lambda self, make=make: (make, self._state())
    documents: Any = Document
    documents.__reduce__ = lambda self: (document, (*self._state(), self.problems))
    problems: Any = Problem
    problems.__reduce__ = lambda self: (problem, (self._state(),))
