"""Runs every recipe on a copy of examples/project and compares what it prints with expected/. With names, runs those;
with --accept, writes what they print to expected/."""

import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

here = Path(__file__).resolve().parent
project = here.parent.parent / "examples" / "project"


def output_of(recipe: Path) -> str:
    with tempfile.TemporaryDirectory() as folder:
        work = Path(folder) / "project"
        shutil.copytree(project, work)
        run = subprocess.run([sys.executable, str(recipe)], cwd=work, capture_output=True, text=True, timeout=120)
        return run.stdout if run.returncode == 0 else f"exit {run.returncode}\n{run.stderr}"


def main(arguments: list[str]) -> int:
    accepts = "--accept" in arguments
    names = [name for name in arguments if not name.startswith("--")]
    failed = 0
    for recipe in sorted(here.glob("*.py")):
        if recipe.name == "run.py" or (names and recipe.stem not in names):
            continue
        expected = here / "expected" / f"{recipe.stem}.txt"
        output = output_of(recipe)
        if accepts:
            expected.write_text(output)
        elif not expected.exists() or output != expected.read_text():
            print(f"{recipe.name} printed\n{output}")
            failed += 1
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
