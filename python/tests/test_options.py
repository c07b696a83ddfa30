"""What load and edit are told, and that other threads run beside them."""

import inspect
import sys
import threading
import time
from collections.abc import Callable
from pathlib import Path

import pytest

import bk_parser


@pytest.fixture
def apart(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Path:
    """A document whose included file is in the working folder, and another one beside it."""
    (tmp_path / "here").mkdir()
    (tmp_path / "here/part.bkd").write_text("part 5\n")
    (tmp_path / "there").mkdir()
    (tmp_path / "there/near.bkd").write_text("near 6\n")
    main = tmp_path / "there/main.bkd"
    main.write_text('#include "part.bkd"\n#include "near.bkd"\nown 1 // kept\n')
    monkeypatch.chdir(tmp_path / "here")
    return main


def names(document: bk_parser.Document) -> list[str]:
    return [entry.name for entry in document]


def test_the_working_folder_is_searched_unless_that_is_off(apart: Path) -> None:
    assert names(bk_parser.load(apart)) == ["part", "near", "own"]
    without = bk_parser.load(apart, working_folder=False)
    assert names(without) == ["near", "own"]
    assert len(without.problems) == 1
    assert names(bk_parser.load(apart, working_folder=False, search=["."])) == ["part", "near", "own"]


def test_the_folder_of_the_including_file_is_searched_unless_that_is_off(apart: Path) -> None:
    assert names(bk_parser.load(apart, beside=False)) == ["part", "own"]
    assert names(bk_parser.load(apart, beside=False, search=[apart.parent])) == ["part", "near", "own"]


def test_includes_are_followed_unless_that_is_off(apart: Path) -> None:
    alone = bk_parser.load(apart, follow_includes=False)
    assert names(alone) == ["own"]
    assert alone.problems == []


def test_edit_takes_the_options_of_a_load(apart: Path) -> None:
    with bk_parser.edit(apart, working_folder=False) as scene:
        assert names(scene) == ["near", "own"]
        scene["own"] = 2
    with bk_parser.edit(apart, working_folder=False, beside=False) as scene:
        assert names(scene) == ["own"]
    assert apart.read_text() == '#include "part.bkd"\n#include "near.bkd"\nown 2 // kept\n'


def test_edit_keeps_the_form_and_the_key(tmp_path: Path) -> None:
    for form in ("binary", "archive", "cipher"):
        path = tmp_path / form
        key = "wren" if form == "cipher" else ""
        bk_parser.parse("a 1 b 2").save(path, form=form, key=key)  # type: ignore[arg-type]
        with bk_parser.edit(path, key=key) as document:
            document["a"] = 7
        changed = bk_parser.load(path, key=key)
        assert changed.form == form
        assert changed.get("a") == 7


def test_places_take_memory_and_may_be_left_out(scene_file: Path) -> None:
    assert bk_parser.load(scene_file)["title"].line is not None
    title = bk_parser.load(scene_file, keep_places=False)["title"]
    assert title.line is None and title.column is None and title.file is None


def runs_meanwhile(call: Callable[[], object]) -> bool:
    """Whether this thread got on while another one made the call. The interpreter takes its lock away from no thread here, so
    that the call must have given it up."""
    begun = threading.Event()
    is_done = False

    def work() -> None:
        nonlocal is_done
        begun.set()
        call()
        is_done = True

    thread = threading.Thread(target=work)
    interval = sys.getswitchinterval()
    sys.setswitchinterval(1000)
    try:
        thread.start()
        begun.wait()
        return not is_done
    finally:
        sys.setswitchinterval(interval)
        thread.join()


def test_other_threads_run_while_a_document_is_loaded_decoded_or_saved(tmp_path: Path) -> None:
    path = tmp_path / "large.bkd"
    path.write_text("light { power 60.5 on yes }\n" * 20_000)
    document = bk_parser.load(path)
    text, data, json = document.to_text(), document.to_binary(), document.to_json()
    calls: list[Callable[[], object]] = [
        lambda: bk_parser.load(path),
        lambda: bk_parser.parse(text),
        lambda: bk_parser.from_binary(data),
        lambda: bk_parser.from_json(json),
        lambda: document.save(tmp_path / "copy.bkd", keep_layout=False),
        lambda: document.diff(tmp_path / "copy.bkd"),
    ]
    # Several times, since the call may be over before this thread is woken.
    assert [any(runs_meanwhile(call) for _ in range(20)) for call in calls] == [True] * len(calls)
    assert not any(runs_meanwhile(lambda: sum(range(10_000))) for _ in range(20))


def test_a_search_begins_before_it_has_found_all() -> None:
    document = bk_parser.parse("light { power 60.5 on yes }\n" * 20_000)

    def seconds(call: Callable[[], object]) -> float:
        begin = time.perf_counter()
        call()
        return time.perf_counter() - begin

    first = min(seconds(lambda: next(document.find_all("**/power"))) for _ in range(5))
    everything = min(seconds(lambda: list(document.find_all("**/power"))) for _ in range(5))
    assert 10 * first < everything


def test_everything_public_says_what_it_is() -> None:
    things = [getattr(bk_parser, name) for name in bk_parser.__all__]
    things = [thing for thing in things if isinstance(thing, type) or inspect.isroutine(thing)]
    assert len(things) == 14
    for cls in [thing for thing in things if isinstance(thing, type)]:
        things += [value for name, value in vars(cls).items() if not name.startswith("_")]
    inherited = {name: getattr(list, name) for name in ("pop", "remove", "reverse")}
    for thing in things:
        name = getattr(thing, "__name__", "")
        said = thing.__doc__ or ""
        if said.startswith(f"{name}("):  # the line of the signature
            said = said.partition("\n\n")[2]
        assert len(said) > 10 or name in inherited, f"{thing} {name}"
