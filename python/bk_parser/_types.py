"""The types in the signatures of this package, for annotations in your code."""

import os
from collections.abc import Iterable
from typing import Any, Literal, Protocol, SupportsIndex, TypeAlias

from bk_parser._core import Group


class Numbers(Protocol):
    """An object with a buffer of numbers: a NumPy array, an array.array, a memoryview."""

    def tolist(self) -> Any: ...


Value: TypeAlias = bool | int | float | str | bytes | Group | None
"""A value of an entry; None for a value without content."""
NewValue: TypeAlias = bool | int | float | str | bytes | bytearray | memoryview | SupportsIndex
NewValues: TypeAlias = NewValue | Iterable[NewValue] | Numbers
Form: TypeAlias = Literal["text"] | Literal["binary"] | Literal["cipher"] | Literal["archive"]
StrPath: TypeAlias = str | os.PathLike[str]
