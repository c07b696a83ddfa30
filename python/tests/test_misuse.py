"""What nobody should do works, or is an exception: odd types, odd strings, forks, broken bytes, callables that fail."""

import copy
import gc
import os
import pickle
import random
import signal
import subprocess
import sys
import threading
import time
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import pytest

import bk_parser
from bk_parser import Document, Entry

from conftest import SCENE


def test_no_object_becomes_one_of_another_type_and_no_type_changes() -> None:
    document = bk_parser.parse(SCENE)
    group = document["sequence"].group
    detached = document["sequence"].remove().group
    objects: list[Any] = [document, group, detached, document["title"], document["title"].values, iter(document)]
    objects += [document.walk(), document.find_all("title"), bk_parser.parse("a 1 @x").problems[0]]
    for one in objects:
        for other in objects:
            if type(one) is not type(other):
                with pytest.raises(TypeError):
                    one.__class__ = type(other)
        with pytest.raises(TypeError):
            type(one).extra = 1
        with pytest.raises(TypeError):
            del type(one).__eq__


def test_an_empty_path_is_not_the_path_of_the_document(scene_file: Path) -> None:
    scene = bk_parser.load(scene_file)
    scene["title"] = "quay"
    for empty in ("", b""):
        with pytest.raises(ValueError, match="names no file"):
            scene.save(empty)  # type: ignore[arg-type]
        with pytest.raises(ValueError, match="names no file"):
            scene.diff(empty)  # type: ignore[arg-type]
    assert scene_file.read_text() == SCENE


STRANGE = ["", "a\0b", "\0", "\r\n\t", "\x1a\x7f", "\ufeff", "\u2028", "\U0010ffff", "\udc80", "caf\udce9", "\udcff\udcfe"]
STRANGE += ["\\udc80", '"', "\\", "//", "#", "yes", "0x00", "x" * 100_000]


def test_strange_strings_travel_in_every_way(tmp_path: Path) -> None:
    for text in STRANGE:
        document = Document()
        document["a"] = text
        assert document.get("a") == text
        path = tmp_path / "strange.bkd"
        document.save(path)
        written = document.to_text()
        ways = [bk_parser.load(path), bk_parser.parse(written), bk_parser.from_json(document.to_json())]
        ways += [bk_parser.parse(written.encode("utf-8", "surrogateescape"))]
        ways += [pickle.loads(pickle.dumps(document)), copy.deepcopy(document)]
        assert all(way == document for way in ways), ascii(text[:20])


def test_the_binary_form_refuses_a_string_with_a_nul() -> None:
    document = bk_parser.parse("a 1 group { b 2 }")
    document["group/b"].values.append("x\0y")
    for part in (document, document["group"], document["group"].group):
        assert part is not None
        with pytest.raises(ValueError, match="no string with a NUL, as in the entry b"):
            part.to_binary()
    assert pickle.loads(pickle.dumps(document)) == document


def test_half_a_surrogate_pair_is_refused() -> None:
    document = bk_parser.parse("a 1")
    for call in (
        lambda: document.__setitem__("a", "\ud800"),
        lambda: document["\ud800"],
        lambda: document.get("\ud800"),
        lambda: setattr(document["a"], "name", "\ud800"),
        lambda: bk_parser.parse("\ud800"),
        lambda: bk_parser.load("\ud800"),
        lambda: bk_parser.from_json("\ud800"),
        lambda: Entry("\ud800"),
    ):
        with pytest.raises(UnicodeEncodeError):
            call()
    assert document == bk_parser.parse("a 1")


def test_representations_of_long_names_are_short() -> None:
    entry = Entry("n" * 100_000, 1)
    entry.template = "t" * 100_000
    assert len(repr(entry)) < 300
    assert repr(entry).startswith("<bk_parser.Entry nnn")


class Raising:
    """Raises whatever is asked of it."""

    def __fspath__(self) -> str:
        raise RuntimeError("asked")

    def __index__(self) -> int:
        raise RuntimeError("asked")

    def __iter__(self) -> Iterator[Any]:
        raise RuntimeError("asked")


def test_what_a_given_object_raises_passes_through(scene_file: Path) -> None:
    document = bk_parser.load(scene_file)
    raising: Any = Raising()

    def two() -> Iterator[Any]:
        yield 1
        raise RuntimeError("asked")

    many: Any = two
    for call in (
        lambda: bk_parser.load(raising),
        lambda: bk_parser.load(scene_file, search=[raising]),
        lambda: bk_parser.load(scene_file, allow=many()),
        lambda: document.save(raising),
        lambda: document.diff(raising),
        lambda: bk_parser.edit(raising).__enter__(),
        lambda: document.__setitem__("title", raising),
        lambda: document.__setitem__("title", many()),
        lambda: document["list"].values.append(raising),
        lambda: document["list"].values.extend(many()),
        lambda: document["list"].values[raising],
        lambda: document.find("list").values.insert(raising, 1),  # type: ignore[union-attr]
        lambda: document.add("x", raising),
        lambda: Entry("x", raising),
    ):
        with pytest.raises((RuntimeError, TypeError)):
            call()
    assert document.to_text() == bk_parser.load(scene_file).to_text()


def test_a_progress_callable_may_load_and_may_raise_anything(scene_file: Path) -> None:
    loaded: list[Document] = []

    def nested(share: float) -> None:
        if len(loaded) < 20:
            loaded.append(bk_parser.load(scene_file))
            bk_parser.load(scene_file, progress=nested)

    assert bk_parser.load(scene_file, progress=nested) == loaded[0]
    assert len(loaded) >= 20
    for error in (KeyboardInterrupt, SystemExit, StopIteration, MemoryError, GeneratorExit):

        def fails(share: float) -> None:
            raise error

        with pytest.raises(error):
            bk_parser.load(scene_file, progress=fails)
        with pytest.raises(error):
            bk_parser.parse(SCENE, progress=fails)


def damaged(data: bytes, numbers: random.Random) -> bytes:
    content = bytearray(data)
    for _ in range(numbers.randint(1, 4)):
        kind = numbers.random()
        if kind < 0.6 and content:
            content[numbers.randrange(len(content))] = numbers.randrange(256)
        elif kind < 0.8:
            del content[numbers.randrange(len(content) + 1) :]
        else:
            at = numbers.randrange(len(content) + 1)
            content[at:at] = numbers.randbytes(4)
    return bytes(content)


def test_damaged_pickles_are_a_value_error_or_a_document() -> None:
    numbers = random.Random(20)
    plain = bk_parser.parse('a 1 { b 2.5 c "text" yes }\nd 0x01FF00010000')
    rich = bk_parser.parse('a<t> 1 { b[3] 2.5, 1, 2 c "text" }')
    ends = {"whole": 0, "refused": 0}
    for document in (plain, rich):
        for part in (document, document["a"], document["a"].group):
            make, arguments = part.__reduce__()  # type: ignore[union-attr,misc]
            for _ in range(60):
                content = damaged(arguments[1], numbers)
                try:
                    made = make(arguments[0], content, *arguments[2:])
                    assert repr(made) and made.to_text() is not None
                    ends["whole"] += 1
                except ValueError:
                    ends["refused"] += 1
    assert min(ends.values()) > 10


def test_what_no_pickle_holds_is_refused() -> None:
    core: Any = bk_parser._core
    for arguments in ((), ("binary", b""), ("text", b"", [1]), ("text", "x", []), (5, 5, 5), ("text", b"a 1", None)):
        with pytest.raises((TypeError, ValueError)):
            core._document_from_state(*arguments)
    with pytest.raises(ValueError):
        core._entry_from_state("text", b"")
    for state in ((), (1,) * 11, (True, b"c", b"m", None, -1, 0, 0, 0, b"", 0, [])):
        with pytest.raises((TypeError, ValueError, IndexError, RuntimeError)):
            core._problem_from_state(state)


@pytest.mark.skipif(not hasattr(os, "fork"), reason="there is no fork here")
def test_a_child_uses_a_document_that_was_saved_when_it_was_forked(tmp_path: Path) -> None:
    document = bk_parser.parse("light { power 60.5 on yes }\n" * 5_000)
    is_over = False

    def save() -> None:
        while not is_over:
            document.save(tmp_path / "copy.bkd", keep_layout=False)

    thread = threading.Thread(target=save)
    thread.start()
    try:
        for _ in range(15):
            time.sleep(0.01)
            child = os.fork()
            if child == 0:
                os._exit(0 if len(document) == 5_000 and document["light/power"].value == 60.5 else 1)
            deadline = time.monotonic() + 60
            ended, status = os.waitpid(child, os.WNOHANG)
            while ended == 0 and time.monotonic() < deadline:
                time.sleep(0.01)
                ended, status = os.waitpid(child, os.WNOHANG)
            if ended == 0:
                os.kill(child, signal.SIGKILL)
                os.waitpid(child, 0)
                pytest.fail("the child waits for a save that never ends there")
            assert status == 0
    finally:
        is_over = True
        thread.join()


def test_what_is_abandoned_in_the_middle_saves_nothing(scene_file: Path) -> None:
    def changes() -> Iterator[Document]:
        with bk_parser.edit(scene_file) as scene:
            scene["title"] = "lost"
            yield scene

    next(changes())
    context = bk_parser.edit(scene_file)
    context.__enter__()["title"] = "lost"
    del context
    gc.collect()
    with pytest.raises(SystemExit):
        with bk_parser.edit(scene_file) as scene:
            scene["title"] = "lost"
            raise SystemExit
    assert scene_file.read_text() == SCENE


def test_a_block_that_is_left_early_is_saved(scene_file: Path) -> None:
    for title in ("one", "two"):
        with bk_parser.edit(scene_file) as scene:
            scene["title"] = title
            break
    assert scene_file.read_text() == SCENE.replace("harbour", "one")


def test_searches_that_are_let_go_in_the_middle_leave_the_others_whole() -> None:
    document = bk_parser.parse("a 1 { b 2 { c 3 } }\n" * 30)
    for left in range(10):
        searches = [document.find_all("**/c") for _ in range(12)]
        for search in searches:
            next(search)
        walk = document.walk()
        next(walk)
        del searches[::3], walk
        document[0].remove()
        del searches[::2]
        document.add("new", left)
        expected = 29 - left
        assert [len(list(search)) for search in searches] == [expected] * len(searches)


def test_comparisons_with_what_is_foreign_are_unequal() -> None:
    document = bk_parser.parse("a 1 2")
    foreign: list[Any] = [None, 5, "a", object(), {}, float("nan"), Entry]
    for one in (document, document["a"], document["a"].values, iter(document)):
        for other in foreign:
            assert one != other and not one == other and not other == one
        with pytest.raises(TypeError):
            one < 5  # type: ignore[operator]
    assert document != document["a"] and document["a"] != document["a"].values
    assert document["a"].values != {1, 2}


def test_another_interpreter_of_the_process_refuses_the_import() -> None:
    script = """
import _xxsubinterpreters as interpreters
other = interpreters.create()
try:
    interpreters.run_string(other, "import bk_parser")
except interpreters.RunFailedError as failure:
    print(failure)
interpreters.destroy(other)
import bk_parser
print(len(bk_parser.parse("a 1")))
"""
    pytest.importorskip("_xxsubinterpreters")
    shown = subprocess.run([sys.executable, "-c", script], capture_output=True, text=True, timeout=60, check=True).stdout
    assert "bk_parser can be imported in the main interpreter only" in shown
    assert shown.endswith("1\n")
