"""The types in the signatures of this package, for annotations of one's own."""

import os
from collections.abc import Iterable
from typing import Any, Literal, Protocol, SupportsIndex, TypeAlias

from bk_parser._core import Group


class Numbers(Protocol):
    """What shows a buffer of numbers: NumPy arrays, array.array, memoryview."""

    def tolist(self) -> Any: ...


Value: TypeAlias = bool | int | float | str | bytes | Group | None
"""What an entry holds; None for a value without content."""
NewValue: TypeAlias = bool | int | float | str | bytes | bytearray | memoryview | SupportsIndex
NewValues: TypeAlias = NewValue | Iterable[NewValue] | Numbers
Form: TypeAlias = Literal["text"] | Literal["binary"] | Literal["cipher"] | Literal["archive"]
StrPath: TypeAlias = str | os.PathLike[str]
