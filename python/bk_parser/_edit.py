"""`with edit(path) as document`: load, change, save."""

from collections.abc import Callable, Iterable, Iterator
from contextlib import contextmanager

from bk_parser._core import Document, load
from bk_parser._types import StrPath


@contextmanager
def edit(
    path: StrPath,
    *,
    search: Iterable[StrPath] = (),
    progress: Callable[[float], object] | None = None,
    key: str = "",
    beside: bool = True,
    working_folder: bool = True,
    trusted: bool = False,
    allow: Iterable[str] = (),
    lossy: bool = False,
    into_includes: bool = True,
) -> Iterator[Document]:
    """Loads a document, and saves it at the end of the `with` block, keeping its layout.

    When the block raises an exception, nothing is saved. A file that did not change is not written. The arguments are those of
    `load` and `Document.save`.
    """
    document = load(
        path,
        search=search,
        progress=progress,
        key=key,
        beside=beside,
        working_folder=working_folder,
        trusted=trusted,
        allow=allow,
    )
    yield document
    document.save(lossy=lossy, into_includes=into_includes)
