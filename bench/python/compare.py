"""Times what scripts do with a document, and with the same content in other formats. Prints medians in milliseconds.
All libraries take turns in each round.

Usage: compare.py [objects] [rounds]
"""

import statistics
import sys
import tempfile
import time
from collections import defaultdict
from collections.abc import Callable
from pathlib import Path
from typing import Any

import bk_parser
from content import write_all
from peers import PEERS


def present(folder: Path) -> list[Any]:
    peers = []
    for cls in PEERS:
        try:
            peers.append(cls(folder))
        except ImportError:
            print(f"{cls.name} is not installed")
    return peers


def seconds_of(action: Callable[[], Any]) -> tuple[float, Any]:
    begin = time.perf_counter()
    result = action()
    return time.perf_counter() - begin, result


def race(count: int, rounds: int, folder: Path) -> dict[tuple[str, str], list[float]]:
    write_all(folder, count)
    peers = present(folder)
    print("| library | load, read one value | load, read every value | change one value, save | layout |")
    print("|---|---|---|---|---|")
    times: dict[tuple[str, str], list[float]] = defaultdict(list)
    middle = f"node_{count // 2}"
    for number in range(rounds):
        for peer in peers:
            seconds, _ = seconds_of(lambda: peer.change(middle, 1000 + number))
            times[peer.name, "change"].append(seconds)
            seconds, found = seconds_of(lambda: peer.first(middle))
            assert found == 1000 + number, (peer.name, found)
            times[peer.name, "first"].append(seconds)
            seconds, values = seconds_of(peer.walk)
            assert values == count * 6, (peer.name, values)
            times[peer.name, "walk"].append(seconds)
    for peer in peers:
        medians = {what: statistics.median(times[peer.name, what]) * 1e3 for what in ("first", "walk", "change")}
        layout = "kept" if peer.keeps_layout else "lost"
        print(f"| {peer.name} | {medians['first']:.1f} | {medians['walk']:.1f} | {medians['change']:.1f} | {layout} |")
    return times


def show_arrays() -> None:
    """Makes an array of a million numbers: in place, and by way of a list."""
    import numpy

    values = bk_parser.parse("w " + " ".join(f"{i}.5" for i in range(1_000_000)))["w"].values
    numpy.asarray(values)  # converts the numbers from their spelling
    for what, make in (
        ("numpy.asarray(values), no copy", lambda: numpy.asarray(values)),
        ("numpy.array(values), one copy", lambda: numpy.array(values)),
        ("numpy.array(list(values))", lambda: numpy.array(list(values))),
    ):
        print(f"| {what} | {statistics.median(seconds_of(make)[0] for _ in range(5)) * 1e3:.3f} |")


def main() -> None:
    count = int(sys.argv[1]) if len(sys.argv) > 1 else 2000
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 7
    with tempfile.TemporaryDirectory() as folder:
        print(f"{count} objects, {count * 6} values, {rounds} rounds; medians in ms\n")
        times = race(count, rounds, Path(folder))
    for what, other in (("walk", "json"), ("change", "tomlkit")):
        ratio = statistics.median(times[other, what]) / statistics.median(times["bk_parser", what])
        print(f"{what}: {ratio:.1f} times as fast as {other}")
    print("\n| a list of 1,000,000 floats | ms |\n|---|---|")
    show_arrays()


if __name__ == "__main__":
    main()
