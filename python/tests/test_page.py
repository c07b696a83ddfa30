"""The programs of docs/python.md run, one after the other, on a copy of the example project."""

import re
import shutil
from pathlib import Path

import pytest

import bk_parser

ROOT = Path(__file__).resolve().parents[2]


def test_the_programs_of_the_page_run(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    shutil.copytree(ROOT / "examples/project", tmp_path, dirs_exist_ok=True)
    monkeypatch.chdir(tmp_path)
    before = bk_parser.load("harbour.bkd", search=["library", "shots"])
    page = (ROOT / "docs/python.md").read_text(encoding="utf-8")
    programs = re.findall(r"^```python\n(.*?)^```$", page, re.MULTILINE | re.DOTALL)
    assert len(programs) >= 2
    names: dict[str, object] = {"bk_parser": bk_parser}
    for program in programs:
        exec(program, names)
    after = bk_parser.load("harbour.bkd", search=["library", "shots"])
    powers = [[power.value for power in scene.find_all("**/light/power")] for scene in (before, after)]
    assert powers[0]
    assert powers[1] == pytest.approx([1.1 * power for power in powers[0]])
