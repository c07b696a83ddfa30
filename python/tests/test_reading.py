"""Loading, asking, problems."""

import json
import os
from pathlib import Path

import pytest

import bk_parser
from bk_parser import Document, Entry, Group


@pytest.fixture
def scene(scene_file: Path) -> Document:
    return bk_parser.load(scene_file)


def test_a_path_finds_an_entry_with_its_fields(scene: Document, scene_file: Path) -> None:
    camera = scene['sequence/shot["010"]/camera']
    assert camera.name == "camera"
    assert camera.kind == "entry"
    assert camera.template is None
    assert list(camera.values) == [1, 2, 3]
    assert camera.value == 1
    assert camera.group is None
    assert camera.parent is scene['sequence/shot["010"]']
    assert camera.path == 'sequence/shot["010"]/camera'
    assert camera.line == 5
    assert camera.column == 9
    assert camera.file == scene_file
    assert camera.document is scene


def test_values_have_their_types(scene: Document) -> None:
    assert scene.get("**/light<spot>/power") == 60.0
    assert isinstance(scene.get("**/light<spot>/power"), float)
    assert isinstance(scene.get("**/light<point>/power"), int)
    assert scene.get("**/light<spot>/on") is True
    assert scene.get("title") == "harbour"
    assert scene.get("data") == b"\x01\xff"
    assert isinstance(scene["sequence"].value, Group)
    assert scene.get("nowhere") is None
    assert scene.get("nowhere", 5) == 5


def test_a_document_is_a_list_of_its_entries(scene: Document) -> None:
    assert [entry.name for entry in scene] == ["sequence", "list", "weights", "title", "data"]
    assert len(scene) == 5
    assert scene[0].name == "sequence"
    assert scene[-1].name == "data"
    assert [entry.name for entry in scene[1:3]] == ["list", "weights"]
    with pytest.raises(IndexError):
        scene[5]
    assert "sequence/shot" in scene
    assert "sequence/boat" not in scene
    assert scene["title"] in scene
    assert scene["sequence/shot"] not in scene
    with pytest.raises(KeyError):
        scene["sequence/boat"]


def test_an_entry_without_entries_is_true_all_the_same(scene: Document) -> None:
    assert len(scene["title"]) == 0
    assert scene["title"]


def test_one_object_stands_for_an_entry(scene: Document) -> None:
    assert scene["title"] is not scene["list"]
    title = scene["title"]
    assert scene[3] is title
    assert next(scene.find_all("title")) is title


def test_find_all_is_lazy(scene: Document) -> None:
    found = scene.find_all("**/light")
    assert iter(found) is found
    assert [light.template for light in found] == ["spot", "point"]
    assert next(found, None) is None


def test_walk_comes_to_every_entry_and_leaves_groups_out(scene: Document) -> None:
    names = [entry.name for entry in scene.walk()]
    assert names[:5] == ["sequence", "shot", "camera", "light", "power"]
    assert len(names) == 15
    walk = scene.walk()
    names = []
    for entry in walk:
        names.append(entry.name)
        if entry.name == "shot":
            walk.skip_groups()
    assert names == ["sequence", "shot", "shot", "list", "weights", "title", "data"]


def test_walk_enters_every_group_of_an_entry() -> None:
    document = bk_parser.parse("a { b 1 } e 4")
    second = document["a"].add_group()
    second["c/d"] = 3
    assert second.parent is document["a"]
    assert [entry.name for entry in document.walk()] == ["a", "b", "c", "d", "e"]


def test_a_malformed_path_says_what_is_wrong(scene: Document) -> None:
    with pytest.raises(bk_parser.PathError, match="unexpected"):
        scene["light power"]
    with pytest.raises(ValueError):
        scene.find_all("a[")
    with pytest.raises(TypeError):
        scene[None]  # type: ignore[call-overload]


def test_problems_say_where(tmp_path: Path) -> None:
    path = tmp_path / "bad.bkd"
    path.write_text("power 5\non true\n")
    document = bk_parser.load(path)
    (problem,) = document.problems
    assert (problem.line, problem.column, problem.code, problem.severity) == (2, 1, "not-a-boolean", "error")
    assert problem.file == path
    assert str(problem) == (
        f"{path}:2:1: error: 'on' has no value, and 'true' is skipped: booleans are yes and no [not-a-boolean]"
    )
    assert document.get("power") == 5


def test_only_what_cannot_be_read_at_all_is_an_exception(tmp_path: Path) -> None:
    with pytest.raises(bk_parser.LoadError, match="nothing.bkd") as caught:
        bk_parser.load(tmp_path / "nothing.bkd")
    assert caught.value.problems[0].severity == "error"
    empty = tmp_path / "empty.bkd"
    empty.write_text("")
    assert len(bk_parser.load(empty)) == 0
    with pytest.raises(bk_parser.LoadError):
        bk_parser.parse('{"json": 1}')


def test_paths_may_be_text_or_path_like(scene_file: Path) -> None:
    assert bk_parser.load(str(scene_file)) == bk_parser.load(scene_file)
    assert bk_parser.load(os.fsencode(scene_file)) == bk_parser.load(scene_file)  # type: ignore[arg-type]


def test_includes_are_searched_for(tmp_path: Path) -> None:
    (tmp_path / "library").mkdir()
    (tmp_path / "library" / "part.bkd").write_text("part 5\n")
    main = tmp_path / "main.bkd"
    main.write_text('#include "part.bkd"\nown 1\n')
    assert bk_parser.load(main).problems[0].code
    document = bk_parser.load(main, search=[tmp_path / "library"])
    if document.problems:
        pytest.fail(str(document.problems[0]))
    assert document["part"].file == tmp_path / "library" / "part.bkd"
    assert document.dependencies == [tmp_path / "library" / "part.bkd"]


def test_progress_is_told_and_cancels(scene_file: Path) -> None:
    shares: list[float] = []
    bk_parser.load(scene_file, progress=shares.append)
    assert shares[-1] == 1.0
    with pytest.raises(bk_parser.LoadCancelled):
        bk_parser.load(scene_file, progress=lambda share: False)

    def fails(share: float) -> None:
        raise RuntimeError("stop here")

    with pytest.raises(RuntimeError, match="stop here"):
        bk_parser.load(scene_file, progress=fails)


def test_bytes_that_are_no_utf8_come_back_as_they_were() -> None:
    document = bk_parser.parse(b'name "caf\xe9"\n')
    text = document.get("name")
    assert text == "caf\udce9"
    document["copy"] = text
    assert document.to_text().encode("utf-8", "surrogateescape").count(b"caf\xe9") == 2


def test_representations_are_short(scene: Document, scene_file: Path) -> None:
    assert repr(scene) == f"<bk_parser.Document '{scene_file}', 5 entries>"
    assert repr(scene["**/light"]) == "<bk_parser.Entry light<spot> {2 entries}>"
    assert repr(scene["title"]) == "<bk_parser.Entry title 'harbour'>"
    assert repr(scene["sequence"].group) == "<bk_parser.Group, 2 entries>"
    assert len(repr(Entry("many", *range(1000)))) < 120


def test_frame_gives_rows(scene: Document) -> None:
    rows = scene.frame("**/light", columns=["power", "colour"], default=0)
    assert rows == [{"power": 60.0, "colour": 0}, {"power": 40, "colour": 0}]
    rows = scene.frame("**/shot", {"shot": "@0", "x": "camera", "where": lambda shot: shot.path})
    assert rows[1] == {"shot": "020", "x": 4, "where": 'sequence/shot["020"]'}


def test_frame_gives_rows_to_pandas(scene: Document) -> None:
    pandas = pytest.importorskip("pandas")
    table = pandas.DataFrame(scene.frame("**/light", ["power", "on"]))
    assert table["power"].tolist() == [60.0, 40.0]


def test_json_goes_both_ways(scene: Document) -> None:
    assert bk_parser.from_json(scene.to_json()) == scene
    assert bk_parser.from_json(scene.to_json(shape="lines")) == scene
    content = scene.to_dict()
    assert content["title"] == "harbour"
    assert content["weights"] == [0.5, 0.25, 0.125]
    with pytest.raises(bk_parser.LoadError):
        bk_parser.from_json("[")


def test_html_folds_and_escapes(scene: Document) -> None:
    scene["title"] = "<script>"
    html = scene._repr_html_()
    assert html.count("<details") == html.count("</details>") == 6
    assert "<script>" not in html


def test_a_dict_has_what_the_plain_json_has() -> None:
    document = bk_parser.parse(
        'name "caf\xe9" "q\\"" mixed 1 2.5 yes { x 1.50 } again 1 again 2 { y } none { } big 1e400 -7 0x00FF0000\n'
    )
    content = document.to_dict()
    assert content == json.loads(document.to_json(shape="plain"))
    assert content["mixed"] == [1, 2.5, True, {"x": 1.5}]
    assert [type(value) for value in content["mixed"]] == [int, float, bool, dict]
    assert document["mixed"].to_dict() == {"x": 1.5}
    assert Entry("empty").to_dict() == {}


def test_compact_text_is_one_line_that_reads_back(scene: Document) -> None:
    text = scene.to_text(compact=True)
    assert text.count("\n") == 1 and len(text) < len(scene.to_text())
    assert bk_parser.parse(text) == scene
    assert Entry("empty").to_text(compact=True) == Entry("empty").to_text() == ""
    sequence = scene["sequence"].group
    assert sequence is not None and sequence.to_text(compact=True).startswith('shot "010" {')


def test_text_says_its_version_so_that_strings_read_back() -> None:
    document = Document()
    document["q"] = "line\nquote\" backslash\\ tab\t"
    assert document.to_text() == '#Brellwick_Serial_Version 1.2\nq "line\\nquote\\" backslash\\\\ tab\\t"\n'
    assert bk_parser.parse(document.to_text()) == document
    assert bk_parser.parse(document.to_text(compact=True)) == document


def test_a_document_from_memory_has_no_files() -> None:
    assert bk_parser.parse("a 1").files == []
    assert Document().files == []


def test_folders_and_codes_come_from_any_iterable(tmp_path: Path, scene_file: Path) -> None:
    (tmp_path / "library").mkdir()
    (tmp_path / "library" / "part.bkd").write_text("part 5\n")
    scene_file.write_text('#include "part.bkd"\n')
    folders = {str(tmp_path / "library"): None}
    assert bk_parser.load(scene_file, search=folders).get("part") == 5
    assert bk_parser.load(scene_file, search=(name for name in folders)).get("part") == 5
    for wrong in (str(tmp_path), tmp_path, b"library", 5):
        with pytest.raises(TypeError, match="search"):
            bk_parser.load(scene_file, search=wrong)  # type: ignore[arg-type]
        with pytest.raises(TypeError, match="search"):
            bk_parser.parse("a 1", search=wrong)  # type: ignore[arg-type]
    for wrong_codes in ("not-utf-8", 5):
        with pytest.raises(TypeError, match="allow"):
            bk_parser.load(scene_file, allow=wrong_codes)  # type: ignore[arg-type]


def test_a_path_with_a_nul_is_no_path() -> None:
    with pytest.raises(ValueError, match="null"):
        bk_parser.load("a\0b")
    with pytest.raises(TypeError, match="not int"):
        bk_parser.load(5)  # type: ignore[arg-type]


def test_bytes_come_from_whatever_shows_them() -> None:
    data = bk_parser.parse("a 1").to_binary()
    for make in (bytes, bytearray, memoryview):
        assert bk_parser.parse(make(b"a 1")) == bk_parser.parse("a 1")
        assert bk_parser.from_binary(make(data)) == bk_parser.parse("a 1")
        assert bk_parser.from_json(make(b'{"a": 1}')) == bk_parser.parse("a 1")
    for wrong in (5, None, ["a"]):
        for call in (bk_parser.parse, bk_parser.from_binary, bk_parser.from_json):
            with pytest.raises(TypeError):
                call(wrong)  # type: ignore[operator]


def test_a_column_of_values_has_a_number(scene: Document) -> None:
    for column in ("@x", "@-1", "@", "@1.5"):
        with pytest.raises(ValueError, match="number of a value"):
            scene.frame("**/shot", [column])


def test_html_of_a_large_document_is_bounded() -> None:
    wide = bk_parser.parse(("g { " + "h { x 1 } " * 300 + "} ") * 300)
    deep = bk_parser.parse("g { " * 50_000 + "x 1" + " }" * 50_000)
    for document in (wide, deep):
        html = document._repr_html_()
        assert html.count("<details") == html.count("</details>") == 2001
        assert len(html) < 1_000_000
        assert " more</li>" in html
