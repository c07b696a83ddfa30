"""Nothing that Python does with entries, buffers and threads crashes; the address sanitizer runs these, too."""

import array
import ctypes
import gc
import pickle
import threading
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import pytest

import bk_parser
from bk_parser import Document, Entry

from conftest import SCENE


def many(count: int) -> Document:
    return bk_parser.parse("".join(f"e{i} {{ v {i} }}\n" for i in range(count)))


def test_the_current_entry_may_be_removed_while_a_group_is_iterated() -> None:
    document = many(20)
    names = []
    for entry in document:
        names.append(entry.name)
        entry.remove()
    assert names == [f"e{i}" for i in range(20)]
    assert len(document) == 0


def test_entries_may_be_added_while_a_group_is_iterated() -> None:
    document = many(3)
    for count, entry in enumerate(document):
        if count < 10:
            document.add(f"x{count}")
    assert len(document) == 13


def test_an_entry_that_moves_within_its_group_is_followed() -> None:
    document = many(5)
    names = []
    for entry in document:
        names.append(entry.name)
        if entry.name == "e1":
            document.append(entry)
    assert names == ["e0", "e1"]


def test_a_group_that_goes_while_it_is_walked_is_walked_to_its_end() -> None:
    document = bk_parser.parse("a { b 1 c 2 } d 3")
    names = []
    for entry in document.walk():
        names.append(entry.name)
        if entry.name == "b":
            document["a"].remove()
            gc.collect()
    assert names == ["a", "b", "c", "d"]


def test_everything_may_go_while_it_is_walked() -> None:
    document = many(50)
    for entry in document.walk():
        document.clear()
        assert entry.name
    assert len(document) == 0


def test_a_search_gives_what_was_there_before_the_edit() -> None:
    document = many(10)
    found = document.find_all("**/v")
    assert next(found).value == 0
    document.clear()
    assert [v.value for v in found] == list(range(1, 10))


def test_searches_end_in_any_order() -> None:
    document = many(10)
    searches = [document.find_all("**/v") for _ in range(5)]
    for search in searches:
        next(search)
    del searches[2]
    del searches[0]
    document["e5"].remove()
    assert [len(list(search)) for search in searches] == [9, 9, 9]
    unfinished = document.find_all("**/v")
    del document
    assert next(unfinished).value == 0


def test_an_iterator_outlives_its_document() -> None:
    def parts() -> list[Iterator[Entry]]:
        document = many(3)
        return [iter(document), document.walk(), document.find_all("**/v"), iter(document["e1"])]

    gc.collect()
    assert [len(list(part)) for part in parts()] == [3, 6, 3, 1]


def test_values_outlive_their_entry() -> None:
    values = many(3)["e2/v"].values
    gc.collect()
    assert values == [2]
    values.append("x")
    assert values == [2, "x"]


def test_a_finalizer_may_edit_the_tree_while_values_are_read() -> None:
    document = bk_parser.parse("a " + " ".join(str(i) for i in range(2000)))
    entry = document["a"]

    class Cycle:
        def __init__(self) -> None:
            self.cycle = self

        def __del__(self) -> None:
            if len(entry.values) > 1:
                del entry.values[len(entry.values) // 2 :]

    gc.collect()
    threshold = gc.get_threshold()
    gc.set_threshold(1)
    try:
        for _ in range(10):
            Cycle()
            assert all(isinstance(value, int) for value in entry.values)
            entry.values.tolist()
    finally:
        gc.set_threshold(*threshold)


def test_a_conversion_may_edit_the_tree() -> None:
    document = bk_parser.parse("a 1 2 3\nb 5\n")
    a = document["a"]

    class Evil:
        def __index__(self) -> int:
            document.clear()
            a.values.clear()
            return 7

    with pytest.raises(IndexError):
        a.values[2] = Evil()
    a.values = [Evil(), 2]
    assert a.values == [7, 2]
    document["a"] = Evil()
    assert document.get("a") == 7
    with pytest.raises(IndexError):
        a.values[Evil()]
    document.insert(Evil(), a)  # type: ignore[arg-type]


def test_a_buffer_keeps_the_values_and_is_kept_from_changes() -> None:
    document = bk_parser.parse("w 0.5 0.25 0.125\nl 1 2 3\nm 1 2.5\n")
    view = memoryview(document["w"].values)
    assert view.tolist() == [0.5, 0.25, 0.125]
    assert view.readonly and view.format == "d"
    for change in (
        lambda: document["w"].values.append(1.0),
        lambda: document["w"].values.__setitem__(0, 1.0),
        lambda: document["w"].values.clear(),
        lambda: document.__setitem__("w", 1.0),
        lambda: document.__setitem__("w/x", 1.0),
        lambda: document.add("w/x", 1.0),
        lambda: document.move("l", "w/x"),
        lambda: document["w"].add_group(),
        lambda: document["w"].append(Entry("x")),
    ):
        with pytest.raises(BufferError):
            change()
    document["w"].remove()
    document.clear()
    del document
    gc.collect()
    assert view.tolist() == [0.5, 0.25, 0.125]
    view.release()
    with pytest.raises(BufferError):
        memoryview(bk_parser.parse("m 1 2.5")["m"].values)
    with pytest.raises(BufferError):
        memoryview(bk_parser.parse("m { }")["m"].values)


def test_threads_share_a_document(scene_file: Path) -> None:
    document = bk_parser.load(scene_file)
    for i in range(200):
        document.add("extra", i, "text", 2.5)
    failures: list[BaseException] = []
    walk = document.walk()

    def work(number: int) -> None:
        try:
            for round in range(30):
                if number == 0:
                    document.save(scene_file.with_name("copy.bkd"), keep_layout=False)
                elif number == 1:
                    document["title"] = f"title {round}"
                    document.append(document["extra"])
                elif number == 2:
                    document.add("late", round).remove()
                elif number == 3:
                    document.diff(keep_layout=False)
                else:
                    for entry in document.walk():
                        entry.values.tolist()
                    try:
                        next(walk, None)
                    except ValueError:
                        pass
        except BaseException as error:
            failures.append(error)

    threads = [threading.Thread(target=work, args=(number,)) for number in range(6)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert failures == []
    assert len(list(document.find_all("extra"))) == 200


def test_loads_run_beside_each_other(scene_file: Path) -> None:
    results: list[Document] = []
    threads = [threading.Thread(target=lambda: results.append(bk_parser.load(scene_file))) for _ in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert all(result == results[0] for result in results) and len(results) == 8


def test_a_million_groups_are_loaded_compared_and_let_go() -> None:
    depth = 200_000
    text = "g { " * depth + "x 1" + " }" * depth
    document = bk_parser.parse(text, keep_places=False)
    assert sum(1 for _ in document.walk()) == depth + 1
    assert document == bk_parser.parse(text, keep_places=False)
    deepest = document["**/x"]
    document["g"].remove()
    assert deepest.value == 1
    assert deepest.document is None


def test_types_cannot_be_made_or_derived_by_mistake() -> None:
    for cls in (type(bk_parser.Document().walk()), bk_parser.Group, bk_parser.Values):
        with pytest.raises(TypeError):
            cls()  # type: ignore[misc]
    for base in (Entry, Document, bk_parser.Group, bk_parser.Values):
        with pytest.raises(TypeError):
            type("Derived", (base,), {})
    for arguments in ((), (5,), ("a b",), ("a/b",), ("yes",)):
        with pytest.raises((TypeError, ValueError)):
            Entry(*arguments)  # type: ignore[arg-type]


def test_methods_refuse_what_is_of_another_type() -> None:
    document = bk_parser.parse(SCENE)
    for call in (
        lambda: bk_parser.Group.get(5, "a"),  # type: ignore[arg-type]
        lambda: Entry.remove(document),  # type: ignore[arg-type]
        lambda: document.append(document),  # type: ignore[arg-type]
        lambda: document.append(None),  # type: ignore[arg-type]
        lambda: Document.save(document["sequence"].group),  # type: ignore[arg-type]
        lambda: Document.problems.fget(document["title"]),  # type: ignore[attr-defined]
        lambda: bk_parser.Values.append(document, 1),  # type: ignore[arg-type]
        lambda: bk_parser.Values.tolist(None),  # type: ignore[arg-type]
        lambda: Entry.copy("x"),  # type: ignore[arg-type]
    ):
        with pytest.raises(TypeError):
            call()


def test_what_is_about_groups_refuses_an_entry() -> None:
    for entry in (Entry("x"), bk_parser.parse("a { b 1 }")["a"]):
        with pytest.raises(TypeError):
            bk_parser.Group.clear(entry)  # type: ignore[arg-type]
        with pytest.raises(IndexError):
            del Entry("x")[0]


def test_a_view_that_was_released_is_refused() -> None:
    class Bytes(ctypes.Structure):
        _fields_ = [("x", ctypes.c_double)]

    document = bk_parser.parse("a 1 2 3")
    for make in (lambda: array.array("d", [1.0, 2.0]), lambda: (Bytes * 3)(), lambda: bytearray(5), numbers):
        view = memoryview(make())  # type: ignore[arg-type]
        view.release()
        gc.collect()
        with pytest.raises(ValueError, match="released"):
            document["a"] = view
        with pytest.raises(ValueError, match="released"):
            document["a"].values.append(view)
    assert document.to_text() == "#Brellwick_Serial_Version 1.2\na 1 2 3\n"


def numbers() -> object:
    """Its letters go with it."""
    return pytest.importorskip("numpy").zeros(5)


def test_a_problem_is_made_by_a_load_alone() -> None:
    for make in (bk_parser.Problem, lambda: bk_parser.Problem.__new__(bk_parser.Problem)):
        with pytest.raises(TypeError):
            make()
    problem = bk_parser.parse("a 1 @x").problems[0]
    assert not hasattr(problem, "__setstate__")
    assert pickle.loads(pickle.dumps([problem, problem])) == [problem, problem]


def test_every_method_withstands_every_argument() -> None:
    document = bk_parser.parse("a 1 { b 2 } c 3")
    entry = document["a"]
    classes = [bk_parser.Group, Document, Entry, bk_parser.Values, bk_parser.Problem]
    classes += [type(document.walk()), type(document.find_all("a")), type(iter(document))]
    many_arguments: list[tuple[object, ...]] = [(), (5,), (None,), (document,), (entry,), (Entry("x"),), (entry.values,)]
    many_arguments += [(document.walk(),), (iter(document),), (document.find_all("a"),), (document, None), (entry, entry)]
    many_arguments += [(Entry("x"), None), (Entry("x"), 0), (Entry("x"), "a"), (Entry("x"), "a", "b"), (document, entry)]
    many_arguments += [(entry.values, 0), (entry.values, -9), (document, "a", "b"), (Entry("x"), document), (document, 0)]
    calls = 0
    for cls in classes:
        for name in set(dir(cls)) - {"__class__", "__init_subclass__", "__subclasshook__", "save"}:
            attribute = getattr(cls, name)
            call = attribute if callable(attribute) else getattr(attribute, "__get__", None)
            for arguments in many_arguments if call is not None else []:
                calls += 1
                try:
                    call(*arguments)
                except Exception:
                    pass
    assert calls > 1000
    assert bk_parser.parse("a 1")["a"].value == 1


def test_what_nests_deep_is_asked_changed_and_sent() -> None:
    depth = 100_000
    text = "g { " * depth + "x 1" + " }" * depth
    document = bk_parser.parse(text)
    deepest = document["**/x"]
    assert len(repr(document)) < 100 and len(repr(deepest.parent)) < 100
    assert pickle.loads(pickle.dumps(document)) == document
    assert document["g"].copy() == document["g"]
    assert bk_parser.from_binary(document.to_binary()) == document
    assert len(deepest.path) == 2 * depth + 1
    content: Any = document.to_dict()
    for _ in range(depth):
        content = content["g"]
    assert content == {"x": 1}
    assert len(document.to_json()) > len(document.to_json(indent=0)) > 6 * depth
    assert len(document.to_text(compact=True)) > 4 * depth
    with pytest.raises(OverflowError, match="more than 4 GiB"):
        document.to_text()
    with pytest.raises(ValueError, match="into itself"):
        deepest.append(document["g"])
    assert deepest.group is None
