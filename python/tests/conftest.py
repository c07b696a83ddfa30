import faulthandler
import os
from collections.abc import Iterator
from pathlib import Path

import pytest

# A copy, because pytest captures the descriptor 2 while a test runs.
_messages = os.fdopen(os.dup(2), "w")


@pytest.fixture(autouse=True)
def a_test_that_hangs_ends_with_where_it_hangs() -> Iterator[None]:
    faulthandler.dump_traceback_later(240, exit=True, file=_messages)
    yield
    faulthandler.cancel_dump_traceback_later()


SCENE = """#Brellwick_Serial_Version 1.2
// lights of the set
sequence {
    shot "010" { // opening
        camera 1 2 3
        light<spot> { power 60.0 on yes }
        light<point> { power 40 on no }
    }
    shot "020" { camera 4 5 6 }
}
list[3] = 7, 8, 9
weights 0.5 0.25 0.125
title "harbour"
data 0x01FF00010000
"""


@pytest.fixture
def scene_file(tmp_path: Path) -> Path:
    path = tmp_path / "scene.bkd"
    path.write_text(SCENE)
    return path
