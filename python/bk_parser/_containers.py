"""Methods of Group, Document, Entry and Values that are written in Python."""

from collections.abc import Callable, Iterable, Mapping, MutableSequence
from html import escape
from typing import Any

from bk_parser._core import Entry, Group, Values

Column = str | Callable[[Entry], Any]
_MOST_SHOWN = 200  # entries of one group in a notebook
_MOST_OPENED = 2000  # groups of a notebook's tree whose entries are shown


def frame(
    self: Group | Entry, path: str, columns: Iterable[str] | Mapping[str, Column], default: Any = None
) -> list[dict[str, Any]]:
    """Returns a row for each entry that a path finds: a dict from the names of the columns to values.

    A column is a path that begins at the entry found, "@0" for a value of that entry itself, or a callable that gets
    the entry. The keys of a mapping are the names of the columns. `pandas.DataFrame(rows)` and `csv.DictWriter` take
    the rows without a conversion.
    """
    if isinstance(columns, str):
        raise TypeError('columns are a list, such as ["power"]')
    named = columns if isinstance(columns, Mapping) else {name: name for name in columns}
    readers = {name: _reader(column, default) for name, column in named.items()}
    return [{name: read(entry) for name, read in readers.items()} for entry in self.find_all(path)]


def _reader(column: Column, default: Any) -> Callable[[Entry], Any]:
    if not isinstance(column, str):
        return column
    path = column
    if path.startswith("@"):
        if not path[1:].isdecimal():
            raise ValueError(f'"@" stands before the number of a value, as in "@0": "{path}"')
        index = int(path[1:])
        return lambda entry: entry.values[index] if index < len(entry.values) else default
    return lambda entry: entry.get(path, default)


def _head(entry: Entry) -> str:
    template = f"&lt;{escape(entry.template)}&gt;" if entry.template else ""
    words = [escape(repr(value))[:80] for value in entry.values[:12] if not isinstance(value, Group)]
    return f"<b>{escape(entry.name)}</b>{template} {' '.join(words)}"


def _summary(container: Group | Entry, is_open: bool) -> str:
    title = _head(container) if isinstance(container, Entry) else escape(repr(container))
    return f"<details{' open' if is_open else ''}><summary>{title}</summary><ul>"


def repr_html(self: Group | Entry) -> str:
    """Returns HTML with a tree that folds, for notebooks. Of a large document, shows only the beginning."""
    # The stack holds what is not written yet: entries, and the ends of open lists.
    out = [_summary(self, True)]
    stack: list[Entry | str] = ["</ul></details>", *reversed(_shown(self))]
    opened = 0
    while stack:
        item = stack.pop()
        if isinstance(item, str):
            out.append(item)
        elif item.group is None:
            out.append(f"<li>{_head(item)}</li>")
        elif opened == _MOST_OPENED:
            out.append(f"<li>{_head(item)} with {len(item)} more</li>")
        else:
            opened += 1
            out.append("<li>" + _summary(item, False))
            stack.append("</ul></details></li>")
            stack.extend(reversed(_shown(item)))
    return "".join(out)


def _shown(container: Group | Entry) -> list[Entry | str]:
    shown: list[Entry | str] = list(container[:_MOST_SHOWN])
    left = len(container) - len(shown)
    return [*shown, f"<li>and {left} more</li>"] if left > 0 else shown


def extend(cls: Any) -> None:
    cls.frame = frame
    cls._repr_html_ = repr_html


def _add(self: Values, other: Any) -> Any:
    return self.tolist() + list(other) if isinstance(other, (list, tuple, Values)) else NotImplemented


def _add_to(self: Values, other: Any) -> Any:
    return list(other) + self.tolist() if isinstance(other, (list, tuple)) else NotImplemented


def extend_values(cls: Any) -> None:
    """Adds the methods of a list that Values lacks."""
    MutableSequence.register(cls)
    for name in ("__iadd__", "__reversed__", "pop", "remove", "reverse"):
        setattr(cls, name, getattr(MutableSequence, name))
    cls.__add__ = _add
    cls.__radd__ = _add_to
    cls.__reduce__ = lambda self: (list, (self.tolist(),))
