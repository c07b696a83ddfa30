"""Thousands of documents on a cluster of processes, of which one is killed."""

import os
import signal
from collections.abc import Iterator
from functools import partial
from pathlib import Path
from typing import Any

import pytest

import bk_parser
from bk_parser import Document, farm

dask = pytest.importorskip("dask")
distributed = pytest.importorskip("distributed")


# Two deaths in place of four end a try: each costs the start of a process. A worker that does not start within the time
# for connections is never started again, and one that is away for longer than 15 seconds is given up; on a machine under load
# a start takes longer than both.
CONFIGURATION = {
    "distributed.scheduler.allowed-failures": 1,
    "distributed.comm.timeouts.connect": "120s",
    "distributed.comm.timeouts.tcp": "120s",
    "distributed.deploy.lost-worker-timeout": "120s",
}
# So that a test of which the cluster died fails with the number of its workers.
edit = partial(farm.edit, timeout=180)


@pytest.fixture(scope="module")
def client(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Any]:
    folder = tmp_path_factory.mktemp("cluster")
    with dask.config.set(CONFIGURATION), distributed.LocalCluster(
        n_workers=3, threads_per_worker=1, processes=True, dashboard_address=None, local_directory=str(folder)
    ) as cluster, distributed.Client(cluster) as connected:
        yield connected


def make_files(folder: Path, count: int) -> list[Path]:
    folder.mkdir()
    paths = [folder / f"shot_{number:03}.bkd" for number in range(count)]
    for number, path in enumerate(paths):
        path.write_text(f"// shot {number}\nlight {{ power {number}.5 }} // kept\n")
    return paths


def brighten(scene: Document) -> float:
    power = scene["light/power"]
    power.value *= 2
    return float(power.value)


def brighten_and_die(flag: str, moment: str, scene: Document) -> float:
    """Dies once, in the middle of the batch: before the save, or when it is done but not told."""
    if scene.path is not None and scene.path.name == "shot_030.bkd" and not os.path.exists(flag):
        if moment == "saved":
            scene["light/power"].value *= 2
            farm.os.replace = partial(replace_and_die, flag, os.replace, scene)  # type: ignore[attr-defined]
            return float(scene.get("light/power", 0.0))
        Path(flag).touch()
        os.kill(os.getpid(), signal.SIGKILL)
    return brighten(scene)


def replace_and_die(flag: str, replace: Any, scene: Document, source: Path, target: Path) -> None:
    replace(source, target)
    scene.save()
    Path(flag).touch()
    os.kill(os.getpid(), signal.SIGKILL)


@pytest.mark.parametrize("moment", ["unsaved", "saved"])
def test_a_killed_worker_loses_nothing_and_nothing_is_done_twice(client: Any, tmp_path: Path, moment: str) -> None:
    paths = make_files(tmp_path / "farm", 60)
    flag = tmp_path / "died"
    results = list(edit(client, partial(brighten_and_die, str(flag), moment), paths, share=5))
    assert flag.exists()

    expected = make_files(tmp_path / "alone", 60)
    values = []
    for path in expected:
        with bk_parser.edit(path) as scene:
            values.append(brighten(scene))
    assert [result.path for result in results] == paths
    assert [result.error for result in results] == [""] * 60
    assert [result.value for result in results] == values
    assert [path.read_bytes() for path in paths] == [path.read_bytes() for path in expected]
    assert sorted(path.name for path in (tmp_path / "farm").iterdir()) == [path.name for path in paths]


def brighten_or_die(scene: Document) -> float:
    if scene.path is not None and scene.path.name == "shot_002.bkd":
        os.kill(os.getpid(), signal.SIGKILL)
    return brighten(scene)


def test_a_file_that_kills_every_worker_is_an_error_of_that_file(client: Any, tmp_path: Path) -> None:
    paths = make_files(tmp_path / "farm", 4)
    results = list(edit(client, brighten_or_die, paths, share=4))
    assert [bool(result.error) for result in results] == [False, False, True, False]
    assert paths[2].read_text() == "// shot 2\nlight { power 2.5 } // kept\n"
    assert paths[3].read_text() == "// shot 3\nlight { power 7.0 } // kept\n"


def test_what_fails_leaves_its_file_and_says_why(client: Any, tmp_path: Path) -> None:
    paths = make_files(tmp_path / "farm", 3)
    paths[1].unlink()
    paths[2].write_text("nothing 1\n")
    results = list(edit(client, brighten, paths))
    assert [result.error.split(":")[0] for result in results] == ["", "FileNotFoundError", "KeyError"]
    assert paths[2].read_text() == "nothing 1\n"
    with pytest.raises(ValueError, match="twice"):
        next(farm.edit(client, brighten, [paths[0], paths[0]]))


def test_documents_travel_themselves(client: Any) -> None:
    documents = [bk_parser.parse(f"light {{ power {number}.5 }}") for number in range(10)]
    results = list(farm.apply(client, brighten, documents, share=3, progress=True, timeout=180))
    assert [result.value for result in results] == [number * 2 + 1.0 for number in range(10)]


def test_a_cluster_without_workers_ends_with_a_message(tmp_path: Path) -> None:
    paths = make_files(tmp_path / "farm", 2)
    with distributed.LocalCluster(n_workers=0, processes=False, dashboard_address=":0") as cluster:
        with distributed.Client(cluster) as connected:
            with pytest.raises(TimeoutError, match=r"shot_000\.bkd on after 0\.2 seconds; the cluster has 0 workers"):
                list(farm.edit(connected, brighten, paths, timeout=0.2))
            with pytest.raises(TimeoutError, match="a document on after 0.2 seconds"):
                list(farm.apply(connected, brighten, [Document()], timeout=0.2))
    assert sorted(path.name for path in (tmp_path / "farm").iterdir()) == ["shot_000.bkd", "shot_001.bkd"]
