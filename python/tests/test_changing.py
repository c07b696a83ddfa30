"""Assigning, adding, removing, moving, saving."""

import copy
import pickle
from pathlib import Path

import pytest

import bk_parser
from bk_parser import Document, Entry

from conftest import SCENE


@pytest.fixture
def scene() -> Document:
    return bk_parser.parse(SCENE)


def test_assignment_keeps_number_types(scene: Document) -> None:
    scene["**/light<spot>/power"] = 66
    assert isinstance(scene.get("**/light<spot>/power"), float)
    scene["**/light<point>/power"] = 66.0
    assert isinstance(scene.get("**/light<point>/power"), int)
    scene["**/light<point>/power"] = 66.5
    assert scene.get("**/light<point>/power") == 66.5


def test_a_path_that_is_missing_is_made(scene: Document) -> None:
    scene['sequence/shot["030"]/camera'] = [1, 2]
    assert list(scene["sequence"][-1]["camera"].values) == [1, 2]
    assert scene["sequence"][-1].value == "030"
    scene["title/note"] = "made"
    assert scene["title"].group is not None


def test_what_cannot_be_made_is_refused_and_changes_nothing(scene: Document) -> None:
    before = scene.to_text()
    for path in ("nothing/*", "a[5]/x", "list/**/x", "title@3", "two words"):
        with pytest.raises(ValueError):
            scene[path] = 1
    with pytest.raises(ValueError):
        scene["title"]["a[5]"] = 1
    with pytest.raises(ValueError):
        scene["sequence"] = 5
    with pytest.raises(ValueError):
        scene["title"] = float("nan")
    with pytest.raises(OverflowError):
        scene["title"] = 2**80
    for value in (None, {}, object(), [1, None], [[1]], scene):
        with pytest.raises(TypeError):
            scene["title"] = value  # type: ignore[assignment]
    assert scene.to_text() == before


def test_values_are_a_list(scene: Document) -> None:
    values = scene["list"].values
    values[0] *= 2  # type: ignore[operator]
    values[-1] = 10
    assert values == [14, 8, 10]
    values.append(11)
    values.insert(1, 0)
    values.extend([1, 2])
    assert values == [14, 0, 8, 10, 11, 1, 2]
    assert scene["list"].array_count == 7
    del values[0]
    del values[-2:]
    assert values == [0, 8, 10, 11]
    values[1:3] = [5]
    assert values == (0, 5, 11)
    assert 5 in values
    assert values.index(11) == 2
    assert values.count(5) == 1
    assert list(reversed(values)) == [11, 5, 0]
    assert values[::-1] == [11, 5, 0]
    with pytest.raises(IndexError):
        values[3]
    with pytest.raises(IndexError):
        values[3] = 1
    values.clear()
    assert len(values) == 0
    assert scene["list"].value is None


def test_values_of_every_kind_are_stored() -> None:
    entry = Entry("all", True, 7, 2.5, "text", b"\x00\xff")
    assert entry.values == [True, 7, 2.5, "text", b"\x00\xff"]
    assert [type(value) for value in entry.values] == [bool, int, float, str, bytes]
    entry.values = (value for value in "ab")
    assert entry.values == ["a", "b"]
    entry.value = 2**40
    assert entry.values == [float(2**40), "b"]


def test_names_and_templates_change(scene: Document) -> None:
    light = scene["**/light"]
    light.name = "lamp"
    light.template = "area"
    assert scene["**/lamp<area>"] is light
    light.template = None
    assert light.template is None
    for name in ("two words", "#keyword", "", "x[2]"):
        with pytest.raises(ValueError):
            light.name = name
    with pytest.raises(TypeError):
        light.name = 5  # type: ignore[assignment]
    with pytest.raises(AttributeError):
        del light.name


def test_an_entry_that_was_removed_lives_on(scene: Document) -> None:
    shot = scene["sequence/shot"]
    power = shot["light/power"]
    assert shot.remove() is shot
    assert shot.parent is None and shot.document is None
    assert power.parent is not None and power.parent.parent is shot
    power.value = 5
    assert shot.get("light/power") == 5.0
    assert power.path == "shot/light<spot>/power"
    assert len(scene["sequence"]) == 1
    assert shot.remove() is shot
    del scene
    assert shot.get("camera@2") == 3


def test_an_entry_outlives_its_document() -> None:
    light = bk_parser.parse(SCENE)["**/light"]
    assert light.document is not None
    assert len(light.document) == 5
    assert light.document is not None


def test_entries_move(scene: Document) -> None:
    light = scene["**/light"]
    scene.append(light)
    assert scene[-1] is light
    assert light.parent is None
    assert light.path == "light"
    scene.insert(0, light)
    assert scene[0] is light
    scene["title"].append(light)
    assert scene["title"][0] is light
    scene.move("title/light", "sequence/lamps/lamp")
    assert scene["sequence/lamps/lamp"] is light
    assert light.parent is scene["sequence/lamps"]
    other = Document()
    other.append(light)
    assert light.document is other
    assert "**/lamp" not in scene


def test_no_entry_moves_into_itself(scene: Document) -> None:
    sequence = scene["sequence"]
    for inside in (sequence, sequence["shot"], sequence["shot/light"]):
        with pytest.raises(ValueError):
            inside.append(sequence)
    detached = sequence.remove()
    with pytest.raises(ValueError):
        detached["shot"].append(detached)
    with pytest.raises(ValueError):
        scene.move("title", "title/x")


def test_what_is_removed_from_values_lives_on() -> None:
    document = bk_parser.parse("a 5 { b 1 c { d 2 } }")
    group = document["a"].group
    d = document["a/c/d"]
    assert group is not None
    del document["a"].values[1]
    assert document["a"].values == [5]
    assert group.parent is None
    assert [entry.name for entry in group.walk()] == ["b", "c", "d"]
    assert d.parent is group["c"]
    group["b"] = 7
    assert group.get("b") == 7


def test_remove_all_and_del(scene: Document) -> None:
    kept = scene["**/light<point>"]
    assert scene.remove_all("**/light") == 2
    assert kept.get("power") == 40
    assert "**/light" not in scene
    del scene["sequence/shot[1]"]
    del scene[0]
    del scene["list@1"]
    assert scene["list"].values == [7, 9]
    with pytest.raises(KeyError):
        del scene["nothing"]
    with pytest.raises(IndexError):
        del scene[10]
    scene.clear()
    assert len(scene) == 0


def test_numbers_of_a_path_count_before_anything_is_removed() -> None:
    document = bk_parser.parse("x 1 x 2 x 3")
    second = document["x[1]"]
    assert document.remove_all("x[1]") == 1
    assert [x.value for x in document] == [1, 3]
    assert second.value == 2


def test_copies_are_detached_and_equal(scene: Document) -> None:
    light = scene["**/light"]
    for made in (light.copy(), copy.copy(light), copy.deepcopy(light), pickle.loads(pickle.dumps(light))):
        assert made == light and made is not light
        assert made.document is None
        made["power"] = 1
        assert made != light
    for document in (copy.deepcopy(scene), pickle.loads(pickle.dumps(scene))):
        assert document == scene and document is not scene
    group = scene["sequence"].group
    assert pickle.loads(pickle.dumps(group)) == group


def test_equality_is_about_content() -> None:
    assert bk_parser.parse("a 1.50 { b 2 }") == bk_parser.parse("a 1.5 { b 2 }")
    for other in ("a 1 { b 2 }", "a 1.5 { b 3 }", "a 1.5 { b 2 } c 1", "a 1.5", "a<t> 1.5 { b 2 }", "a 1.5 { c 2 }"):
        assert bk_parser.parse("a 1.5 { b 2 }") != bk_parser.parse(other)
    assert bk_parser.parse("a { x 1 } { }") != bk_parser.parse("a { } { x 1 }")
    with pytest.raises(TypeError):
        hash(Document())


def test_pickles_are_small_where_the_binary_form_carries_all() -> None:
    plain = bk_parser.parse("a 1 { b 2.5 }")
    assert plain.__reduce__()[1][0] == "binary"  # type: ignore[index]
    assert bk_parser.parse("a<t> 1").__reduce__()[1][0] == "text"  # type: ignore[index]
    assert bk_parser.from_binary(plain.to_binary()) == plain
    with pytest.raises(ValueError):
        bk_parser.from_binary(plain.to_binary()[:-3])


def test_edit_saves_keeping_the_layout(scene_file: Path) -> None:
    with bk_parser.edit(scene_file) as scene:
        for light in scene.find_all("**/light"):
            light["power"] = light.get("power", 0.0) * 2
    assert scene_file.read_text() == SCENE.replace("60.0", "120.0").replace("40", "80")


def test_edit_saves_nothing_when_an_exception_passes(scene_file: Path) -> None:
    with pytest.raises(RuntimeError):
        with bk_parser.edit(scene_file) as scene:
            scene["title"] = "lost"
            raise RuntimeError
    assert scene_file.read_text() == SCENE


def test_a_save_that_is_refused_says_why(scene_file: Path) -> None:
    scene = bk_parser.load(scene_file)
    scene["title"] = "quay"
    assert "+title \"quay\"" in scene.diff()
    scene_file.write_text(SCENE + "late 1\n")
    with pytest.raises(bk_parser.SaveError, match="changed on the disk"):
        scene.save()
    assert scene_file.read_text() == SCENE + "late 1\n"


def test_every_form_is_saved_and_loaded(scene: Document, tmp_path: Path) -> None:
    with pytest.raises(bk_parser.SaveError) as caught:
        scene.save(tmp_path / "scene.bkb", form="binary")
    assert caught.value.losses
    plain = bk_parser.parse("a 1 { b 2.5 }")
    for form in ("text", "binary", "archive"):
        path = tmp_path / form
        assert plain.save(path, form=form) == [path]  # type: ignore[arg-type]
        assert bk_parser.load(path) == plain
        assert bk_parser.load(path).form == form
    plain.save(tmp_path / "secret", form="cipher", key="wren")
    assert bk_parser.load(tmp_path / "secret", key="wren") == plain


def test_what_comes_from_another_document_is_saved_as_new(tmp_path: Path) -> None:
    one, other = tmp_path / "one.bkd", tmp_path / "other.bkd"
    one.write_text("a 1 // first\nb 2 // second\n")
    other.write_text("c 3 // third\nd 4 // fourth\n")
    with bk_parser.edit(one) as target:
        source = bk_parser.load(other)
        target.append(source["c"])
        target.append(target["a"].copy())
    assert one.read_text() == "a 1 // first\nb 2 // second\nc 3\na 1\n"


def test_what_is_refused_says_why_and_leaves_no_empty_group() -> None:
    document = bk_parser.parse("a 1\nb { c 2 }\n")
    before = document.to_text()
    for number in (float("nan"), float("inf"), 2**53 + 1):
        for call in (
            lambda: document.__setitem__("new", number),
            lambda: document.__setitem__("a", number),
            lambda: document.add("a/new", number),
            lambda: document["a"].add("new", number),
            lambda: Entry("new", number),
        ):
            with pytest.raises(ValueError, match="no value holds that"):
                call()
    with pytest.raises(ValueError, match="a group stands there"):
        document["b"] = 5
    with pytest.raises(ValueError, match="cannot be made"):
        document["a"].add("x[5]", 1)
    with pytest.raises(ValueError, match="into itself"):
        document["a"].append(document["a"])
    for value in (object(), 1j):
        with pytest.raises(TypeError, match="a value is a bool, int, float, str or bytes, not"):
            document["a"] = value  # type: ignore[assignment]
    with pytest.raises(TypeError, match="a str is wanted, not bytes"):
        document["a"].name = b"bytes"  # type: ignore[assignment]
    assert document.to_text() == before


def test_a_template_is_a_name() -> None:
    entry = Entry("light")
    for name in ("a[1]", "a b", "1a", "\0", "a<b>", "yes", "#a"):
        with pytest.raises(ValueError, match="no name for a template"):
            entry.template = name
    entry.template = "spot.2"
    assert entry.template == "spot.2"
    entry.template = None
    assert entry.template is None


def test_a_str_where_a_list_is_wanted_is_not_taken_letter_by_letter(scene_file: Path) -> None:
    for arguments in ({"search": "library"}, {"allow": "unexpected-word"}):
        with pytest.raises(TypeError, match="is a list of str"):
            with bk_parser.edit(scene_file, **arguments):  # type: ignore[arg-type]
                pass
    with pytest.raises(TypeError, match="are a list"):
        bk_parser.load(scene_file).frame("**/light", "power")


def test_an_insert_counts_the_entries_after_its_own_was_taken_out() -> None:
    document = bk_parser.parse("a 1 b 2 c 3 d 4")
    document.insert(3, document["a"])
    assert [entry.name for entry in document] == ["b", "c", "d", "a"]


def test_a_tree_with_templates_and_escapes_travels() -> None:
    document = bk_parser.parse('#Brellwick_Serial_Version 1.2\na<t> "x\\ny\\"z" { b[2] "\\t" 1 }\n')
    assert document.get("a") == 'x\ny"z'
    assert pickle.loads(pickle.dumps(document)) == document
    assert pickle.loads(pickle.dumps(document["a"])) == document["a"]
    assert copy.deepcopy(document["a"].group) == document["a"].group


def test_values_change_as_a_list_does() -> None:
    entry = Entry("v", 1, 2, 3, 2)
    values = entry.values
    assert values.pop() == 2
    assert values.pop(0) == 1
    values.remove(3)
    assert values == [2]
    values += [3, 4]
    assert values == [2, 3, 4]
    entry.values += (5,)
    assert entry.values == [2, 3, 4, 5]
    values.reverse()
    assert values == [5, 4, 3, 2]
    assert values + [1] == values + (1,) == [5, 4, 3, 2, 1]
    assert [6] + values == (6,) + values == [6, 5, 4, 3, 2]
    assert values + values == 2 * values.tolist()
    with pytest.raises(TypeError):
        values + 1  # type: ignore[operator]
    assert values.index(4, 1) == 1
    assert values.index(2, -1) == 3
    for call in (lambda: values.index(5, 1), lambda: values.index(2, 0, 3), lambda: values.remove(9)):
        with pytest.raises(ValueError):
            call()
    with pytest.raises(TypeError, match="takes one value"):
        values.insert(0, [8, 9])  # type: ignore[arg-type]
    with pytest.raises(IndexError):
        Entry("v").values.pop()
    assert values == [5, 4, 3, 2]


def test_values_with_a_group_are_assigned_to_their_own_entry() -> None:
    document = bk_parser.parse("a 1 { b 2 }")
    group = document["a"].group
    document["a"].values = document["a"].values
    document["a"].values += [5]
    assert document["a"].values == [1, group, 5]
    assert document["a"].group is group


def test_values_are_copied_and_pickled_as_a_list() -> None:
    values = bk_parser.parse('v 1 2.5 yes "x" { b 2 }')["v"].values
    for made in (copy.copy(values), copy.deepcopy(values), pickle.loads(pickle.dumps(values))):
        assert type(made) is list
        assert made == list(values)


def test_problems_travel_with_their_document() -> None:
    document = bk_parser.parse("a 1 @\n")
    assert [problem.code for problem in document.problems] == ["unexpected-word"]
    assert pickle.loads(pickle.dumps(document)).problems == document.problems
    assert copy.deepcopy(document).problems == document.problems


def test_a_slice_that_is_assigned_leaves_the_others_as_they_are() -> None:
    entry = bk_parser.parse("v 1 2.0 3 { b 2 }")["v"]
    entry.values.append(5)
    group = entry.group
    values = entry.values
    values[0:1] = []
    assert values == [2.0, 3, group, 5] and type(values[0]) is float
    values[0:2] = [7, 8, "x"]
    assert values == [7, 8, "x", group, 5] and type(values[0]) is float
    values[4:] = [1.5]
    assert values == [7, 8, "x", group, 1.5]
    values[1:1] = (n for n in (5, 6))
    assert values == [7, 5, 6, 8, "x", group, 1.5]
    values[:4:2] = [1, 2]
    values[1::-1] = [3, 4]
    assert values == [4, 3, 2, 8, "x", group, 1.5]
    for place in (slice(5, 6), slice(None, None, -1), slice(None), slice(5, None)):
        with pytest.raises(ValueError):
            values[place] = [9] * 7
    for wrong in ([float("nan")], [[1]], 5):
        with pytest.raises((TypeError, ValueError)):
            values[0:1] = wrong  # type: ignore[assignment]
    with pytest.raises(ValueError):
        values[::2] = [1]
    assert values == [4, 3, 2, 8, "x", group, 1.5]
    del values[4::-2]
    assert values == [3, 8, group, 1.5]
    del values[1:3]
    assert values == [3, 1.5] and group is not None and group.get("b") == 2
    values[:] = values
    values[2:] = values
    assert values == [3, 1.5, 3, 1.5]


def test_many_values_are_removed_in_one_go() -> None:
    entry = Entry("v")
    entry.values = range(100_000)
    del entry.values[1::2]
    assert entry.values[:3] == [0, 2, 4] and len(entry.values) == 50_000
    entry.values[1:-1] = [7]
    assert entry.values == [0, 7, 99_998]
    entry.values = range(100_000)
    entry.values.clear()
    assert entry.values == []
