"""The programs of docs/python.md run, one after the other, on a copy of the example project; its lines for schedulers run with
a scheduler that does every task here."""

import json
import os
import re
import shutil
import subprocess
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


SBATCH = """#!/bin/bash
# sbatch --array=FIRST-LAST --wrap COMMAND: does the tasks one after the other, and notes their exit codes.
[[ $# -eq 3 && $1 =~ ^--array=([0-9]+)-([0-9]+)$ && $2 == --wrap ]] || exit 64
for ((task = BASH_REMATCH[1]; task <= BASH_REMATCH[2]; ++task)); do
    SLURM_ARRAY_TASK_ID=$task /bin/sh -c "$3"
    echo "$task $?" >> tasks.txt
done
"""


def tool() -> Path:
    return Path(os.environ.get("BKDOC", ROOT / "build/bkdoc"))


def lines_for_schedulers() -> tuple[str, str, str]:
    """How the list of files is made, and the commands for Slurm and for GNU parallel."""
    page = (ROOT / "docs/python.md").read_text(encoding="utf-8")
    (block,) = (block for block in re.findall(r"^```sh text\n(.*?)^```$", page, re.M | re.S) if "sbatch" in block)
    listing, slurm, parallel = re.split(r"^# (?:Slurm|GNU parallel).*\n", block, flags=re.M)
    return listing, slurm, parallel


def shots(folder: Path) -> None:
    """250 documents, of which the last one of the list that `find` makes is left open."""
    (folder / "shots").mkdir()
    for number in range(250):
        (folder / "shots" / f"shot {number:03}.bkd").write_text(f"light {{ power {number}.5 }}\n")


def run(command: str, folder: Path) -> int:
    path = f"{folder / 'bin'}:{os.environ['PATH']}"
    return subprocess.run(["/bin/bash", "-c", command], cwd=folder, env={**os.environ, "PATH": path}).returncode


@pytest.fixture
def farm_folder(tmp_path: Path) -> Path:
    (tmp_path / "bin").mkdir()
    (tmp_path / "bin/bkdoc").symlink_to(tool().resolve(strict=True))
    (tmp_path / "bin/sbatch").write_text(SBATCH)
    (tmp_path / "bin/sbatch").chmod(0o755)
    shots(tmp_path)
    return tmp_path


def test_the_lines_for_slurm_check_every_file_once(farm_folder: Path) -> None:
    listing, slurm, _ = lines_for_schedulers()
    assert run(listing, farm_folder) == 0
    names = (farm_folder / "files.txt").read_text().splitlines()
    assert len(names) == 250
    (farm_folder / names[-1]).write_text("light {\n")
    assert run(slurm, farm_folder) == 0
    answers = [json.loads((farm_folder / f"check_{task}.json").read_text()) for task in range(3)]
    assert not (farm_folder / "check_3.json").exists()
    assert [answer["files"] for answer in answers] == [100, 100, 50]
    assert [problem["file"] for answer in answers for problem in answer["problems"]] == [names[-1]]
    assert (farm_folder / "tasks.txt").read_text().splitlines() == ["0 0", "1 0", "2 1"]


@pytest.mark.skipif(shutil.which("parallel") is None, reason="GNU parallel is not installed")
def test_the_line_for_parallel_checks_every_file_once(farm_folder: Path) -> None:
    listing, _, parallel = lines_for_schedulers()
    assert run(listing, farm_folder) == 0
    assert run(f"{parallel.strip()} > answers.json", farm_folder) == 0
    answers = (farm_folder / "answers.json").read_text()
    assert sorted(int(count) for count in re.findall(r'"files": (\d+)', answers)) == [50, 100, 100]
