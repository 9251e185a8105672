"""Measures the package beside the bare call of the library, beside pandas, and in two threads.

Every round runs everything once in turn; a ratio is that of two times of the same round. What is
printed is the median of the rounds, for ratios with the smallest and the largest in brackets.
"""

from __future__ import annotations

import argparse
import statistics
import subprocess
import tempfile
import time
import warnings
from collections.abc import Callable
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path
from typing import Any

import numpy as np
import pandas as pd
import polars as pl
import pyarrow as pa

import gait_statistics as gs

AS_KIND: dict[str, Callable[[pd.DataFrame], Any]] = {
    "pandas": lambda frame: frame,
    "polars": pl.from_pandas,
    "pyarrow": lambda frame: pa.Table.from_pandas(frame, preserve_index=False),
}


def seconds_of(run: Callable[[], object]) -> float:
    """The median time of a call, over a fifth of a second and at least three calls."""
    times: list[float] = []
    end = time.perf_counter() + 0.2
    while time.perf_counter() < end or len(times) < 3:
        start = time.perf_counter()
        run()
        times.append(time.perf_counter() - start)
    return statistics.median(times)


def make_walk(make_walk_program: str, folder: Path, strides: int) -> Path:
    """A walk of both feet, of which every cycle is included."""
    walk = folder / f"walk_{strides}"
    arguments = [str(walk), "--strides", str(strides), "--turns", "0"]
    subprocess.run([make_walk_program, *arguments], check=True, capture_output=True)
    (walk / "exclusions.csv").write_text("cycles,list,index,reason\n")
    return walk


def iqr(values: pd.Series[float]) -> float:
    """The interquartile range by the definition that the library has."""
    first, third = np.percentile(values.dropna(), [25, 75], method="hazen")
    return float(third - first)


def cv(values: pd.Series[float]) -> float:
    """The coefficient of variation (%)."""
    return float(100 * values.std() / values.mean())


def in_pandas(strides: pd.DataFrame, feet: pd.DataFrame) -> object:
    """The same statistics of the same values."""
    wanted: list[Any] = ["count", "mean", "median", "std", iqr, "min", "max", cv]
    values = strides.drop(columns=["index", "first_sample", "last_sample"])
    return values.groupby("foot").agg(wanted), feet[["ds"]].agg(wanted)


def ways_of(walk: Path, bare_program: str) -> dict[str, Callable[[], float]]:
    """What is measured of a walk: the time of each by its name."""
    strides = pd.read_csv(walk / "foot_cycles.csv")
    feet = pd.read_csv(walk / "feet_cycles.csv")

    def bare() -> float:
        finished = subprocess.run([bare_program, str(walk)], check=True, capture_output=True)
        return float(finished.stdout)

    def of_frames(kind: str) -> Callable[[], float]:
        frames = AS_KIND[kind](strides), AS_KIND[kind](feet)
        return lambda: seconds_of(lambda: gs.analyse(gs.Walk(frames[0], 100, frames[1])))

    ways: dict[str, Callable[[], float]] = {"bare": bare}
    ways |= {kind: of_frames(kind) for kind in AS_KIND}
    result = gs.analyse(gs.Walk(strides, 100, feet))
    ways["result.parameters"] = lambda: seconds_of(lambda: result.parameters)
    ways["same in pandas"] = lambda: seconds_of(lambda: in_pandas(strides, feet))
    return ways


def measure_walks(walks: dict[int, Path], bare_program: str, rounds: int) -> None:
    """Prints a table with a row for each length of a walk."""
    ways = {size: ways_of(walk, bare_program) for size, walk in walks.items()}
    times: dict[tuple[int, str], list[float]] = {}
    for _ in range(rounds):
        for size, of_walk in ways.items():
            for name, run in of_walk.items():
                times.setdefault((size, name), []).append(run())
    names = [name for name in next(iter(ways.values())) if name != "bare"]
    print("| strides a foot | bare call | 3 x bare + 0.5 ms | " + " | ".join(names) + " |")
    print("| ---: |" + " ---: |" * (len(names) + 2))
    for size in ways:
        bare = times[size, "bare"]
        cells = [f"{statistics.median(bare) * 1e3:.2f} ms"]
        cells.append(f"{(3 * statistics.median(bare) + 0.5e-3) * 1e3:.2f} ms")
        for name in names:
            ratios = [ours / theirs for ours, theirs in zip(times[size, name], bare, strict=True)]
            seconds = statistics.median(times[size, name])
            cells.append(
                f"{seconds * 1e3:.2f} ms: {statistics.median(ratios):.2f} "
                f"({min(ratios):.2f} to {max(ratios):.2f})"
            )
        print(f"| {size} | " + " | ".join(cells) + " |")


def measure_threads(folder: Path, rounds: int) -> None:
    """Prints how many times as fast two threads are as one."""
    walk = gs.read_walk(folder)
    calls = 40
    ratios = []
    with ThreadPoolExecutor(2) as pool:
        for _ in range(rounds):
            start = time.perf_counter()
            for _ in range(calls):
                gs.analyse(walk)
            middle = time.perf_counter()
            list(pool.map(gs.analyse, [walk] * calls))
            ratios.append((middle - start) / (time.perf_counter() - middle))
    print(
        f"\nTwo threads are {statistics.median(ratios):.2f} times as fast as one "
        f"({min(ratios):.2f} to {max(ratios):.2f})."
    )


def main() -> None:
    """Measures, and prints."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("bare", help="the program peer_gait_statistics")
    parser.add_argument("make_walk", help="the program gait-make-walk")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--sizes", type=int, nargs="+", default=[20, 100, 400, 1000])
    arguments = parser.parse_args()
    warnings.simplefilter("ignore")
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        walks = {size: make_walk(arguments.make_walk, folder, size) for size in arguments.sizes}
        measure_walks(walks, arguments.bare, arguments.rounds)
        measure_threads(walks[max(walks)], arguments.rounds)


if __name__ == "__main__":
    main()
