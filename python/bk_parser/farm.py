"""Edits thousands of documents on the workers of a dask.distributed cluster.

    from dask.distributed import Client
    from bk_parser import farm

    def brighten(scene):
        for power in scene.find_all("**/light/power"):
            power.value *= 2

    with Client(scheduler) as client:
        for result in farm.edit(client, brighten, paths):
            print(result.path, result.error or "done")

The workers must see the files under the given paths, as on a farm with a shared disk.
"""

import hashlib
import os
import pickle
import shutil
import tempfile
from collections.abc import Callable, Iterable, Iterator
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

import bk_parser
from bk_parser import Document, Problem


@dataclass(frozen=True)
class Result:
    """The result for one document."""

    path: Path | None
    """The path of the file; None when the document itself was sent to the worker."""
    value: Any = None
    """What the function returned."""
    problems: list[Problem] = field(default_factory=list)
    """The problems of the load."""
    error: str = ""
    """Why the file was not edited; it is then as it was. Empty on success."""


def edit(
    client: Any,
    function: Callable[[Document], Any],
    paths: Iterable[str | os.PathLike[str]],
    *,
    share: int = 20,
    progress: bool = False,
    timeout: float | None = None,
    **options: Any,
) -> Iterator[Result]:
    """Calls a function with each document on the workers, and saves the documents that the function changed.

    Yields the results in the order of the paths, each as soon as it and those before it are known. Sends `share` files
    to a worker at a time. `options` are those of `bk_parser.edit`. Included files are not changed, so that only one
    worker writes each file.

    When a worker dies, another one repeats its share. A file that was saved already is not edited twice, because a
    worker records what it is about to save. When a function kills its worker each time, only the result of that file
    has an error. Without `timeout`, the call waits for ever for a cluster that has lost all its workers. With it,
    raises TimeoutError when the next share in order takes so many seconds longer.
    """
    files = [Path(os.path.abspath(path)) for path in paths]
    if len(set(files)) != len(files):
        raise ValueError("a file is given twice")
    options = {"into_includes": False, **options}
    journal = tempfile.mkdtemp(prefix=".bk_parser_farm_", dir=files[0].parent if files else None)
    try:
        jobs = [(str(file), function, options, journal) for file in files]
        yield from _ordered(client, _edit_file, jobs, share, progress, timeout)
    finally:
        shutil.rmtree(journal, ignore_errors=True)


def apply(
    client: Any,
    function: Callable[[Document], Any],
    documents: Iterable[Document],
    *,
    share: int = 20,
    progress: bool = False,
    timeout: float | None = None,
) -> Iterator[Result]:
    """Calls a function with each document. Sends the documents themselves to the workers, in the binary form if that
    carries them. Saves nothing: to get a changed document back, return it from the function."""
    jobs = [(function, document) for document in documents]
    yield from _ordered(client, _apply_one, jobs, share, progress, timeout)


def _ordered(
    client: Any, work: Callable[..., Result], jobs: list[Any], share: int, progress: bool, timeout: float | None
) -> Iterator[Result]:
    shares = [jobs[i : i + share] for i in range(0, len(jobs), share)]
    futures = [client.submit(_do_share, _Share(work, part), pure=False) for part in shares]
    bar = _bar(len(jobs)) if progress else None
    try:
        for part, future in zip(shares, futures):
            for result in _results(client, work, part, future, timeout):
                if bar is not None:
                    bar.update()
                yield result
    finally:
        client.cancel(futures)
        if bar is not None:
            bar.close()


def _bar(total: int) -> Any:
    from tqdm import tqdm

    return tqdm(total=total, unit="file")


@dataclass(frozen=True)
class _Share:
    """Jobs that one worker gets together. The scheduler does not see the single jobs."""

    work: Callable[..., Result]
    jobs: list[Any]


def _do_share(share: _Share) -> list[Result]:
    return [share.work(*job) for job in share.jobs]


def _results(
    client: Any, work: Callable[..., Result], part: list[Any], future: Any, timeout: float | None
) -> list[Result]:
    """The results of one share. When its workers died, tries its files one by one: the scheduler blames every share
    that waits on a worker that dies."""
    from distributed import KilledWorker

    try:
        done: list[Result] = future.result(timeout=timeout)
        return done
    except TimeoutError:
        workers = len(client.scheduler_info()["workers"])
        raise TimeoutError(
            f"no result from {_name(part[0])} on after {timeout:g} seconds; the cluster has {workers} workers"
        ) from None
    except KilledWorker:
        if len(part) == 1:
            path = Path(part[0][0]) if isinstance(part[0][0], str) else None  # else a document that was sent
            return [Result(path, error="the worker died each time it was tried")]
    alone = (([job], client.submit(_do_share, _Share(work, [job]), pure=False)) for job in part)
    return [result for jobs, one in alone for result in _results(client, work, jobs, one, timeout)]


def _name(job: tuple[Any, ...]) -> str:
    return job[0] if isinstance(job[0], str) else "a document"


def _digest(path: Path) -> str:
    return hashlib.sha256(path.read_bytes()).hexdigest()


def _edit_file(name: str, function: Callable[[Document], Any], options: dict[str, Any], journal: str) -> Result:
    path = Path(name)
    record = Path(journal) / hashlib.sha256(name.encode("utf-8", "surrogateescape")).hexdigest()
    try:
        before = _digest(path)
        if record.exists():
            recorded_before, result = pickle.loads(record.read_bytes())
            if recorded_before != before:  # saved by a worker that died before it could tell
                return Result(path, *result)
        with bk_parser.edit(path, **options) as document:
            value = function(document)
            result = (value, document.problems)
            unfinished = record.with_name(f"{record.name}.{os.getpid()}")
            unfinished.write_bytes(pickle.dumps((before, result)))
            os.replace(unfinished, record)
        return Result(path, *result)
    except Exception as error:
        return Result(path, problems=getattr(error, "problems", []), error=f"{type(error).__name__}: {error}")


def _apply_one(function: Callable[[Document], Any], document: Document) -> Result:
    try:
        return Result(None, function(document), document.problems)
    except Exception as error:
        return Result(None, error=f"{type(error).__name__}: {error}")
