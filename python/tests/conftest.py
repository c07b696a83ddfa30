from pathlib import Path

import pytest

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
