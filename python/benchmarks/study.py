"""Measures studies: in one thread, in two, on a cluster of two workers, and beside pandas.

Two processes that do half of the walks each show what the machine has to give at that time. Every
round runs everything once in turn. What is printed is the median of the rounds, with the
smallest and the largest in brackets; a ratio is that of two times of the same round. Processor time
is that of this process, and hardly depends on what else the machine does.
"""

from __future__ import annotations

import argparse
import contextlib
import multiprocessing
import statistics
import subprocess
import tempfile
import time
import warnings
from collections.abc import Callable, Iterator
from concurrent.futures import ProcessPoolExecutor
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any
from unittest import mock

import numpy as np
import pandas as pd
from distributed import Client, LocalCluster

import gait_statistics as gs
from gait_statistics._study import _study
from gait_statistics._study._work import Work

PLAIN: list[Any] = ["count", "mean", "median", "std", "min", "max"]


def first_quartile(values: pd.Series[float]) -> float:
    """The first quartile by the definition that the library has."""
    return float(np.percentile(values.dropna(), 25, method="hazen"))


def third_quartile(values: pd.Series[float]) -> float:
    """The third quartile by the definition that the library has."""
    return float(np.percentile(values.dropna(), 75, method="hazen"))


def cv(values: pd.Series[float]) -> float:
    """The coefficient of variation (%)."""
    return float(100 * values.std() / values.mean())


def make_walks(make_walk_program: str, folder: Path, walks: int, strides: int) -> Path:
    """Folders of walks of both feet."""
    folder.mkdir()
    for seed in range(1, walks + 1):
        arguments = [str(folder / f"walk_{seed:06}"), "--seed", str(seed)]
        subprocess.run(
            [make_walk_program, *arguments, "--strides", str(strides)],
            check=True,
            capture_output=True,
        )
    return folder


def table_of(folder: Path) -> pd.DataFrame:
    """The strides of all walks of a folder."""
    tables = [
        pd.read_csv(walk / "foot_cycles.csv").assign(walk=walk.name)
        for walk in sorted(folder.iterdir())
    ]
    return pd.concat(tables, ignore_index=True)


def grouped(table: pd.DataFrame, wanted: list[Any]) -> pd.DataFrame:
    """Statistics of each walk and foot in pandas."""
    values = table.drop(columns=["index", "first_sample", "last_sample"])
    return values.groupby(["walk", "foot"], sort=False).agg(wanted)


@dataclass
class Shares:
    """What the process that writes the tables does itself, in processor seconds of a round."""

    storing: float = 0.0
    tables: float = 0.0
    bytes_of_parts: int = 0
    of_rounds: list[tuple[float, float, int]] = field(default_factory=list)

    @contextlib.contextmanager
    def measured(self) -> Iterator[None]:
        """Measures a round."""
        store, finish = Work.store, _study._finish

        def timed_store(work: Work, first: int, stop: int, part: bytes) -> None:
            start = time.process_time()
            store(work, first, stop, part)
            self.storing += time.process_time() - start
            self.bytes_of_parts += len(part)

        def timed_finish(*arguments: Any) -> None:
            start = time.process_time()
            finish(*arguments)
            self.tables += time.process_time() - start

        self.storing = self.tables = 0.0
        self.bytes_of_parts = 0
        patched = mock.patch.object
        with patched(Work, "store", timed_store), patched(_study, "_finish", timed_finish):
            yield
        self.of_rounds.append((self.storing, self.tables, self.bytes_of_parts))


def shown(values: list[float], form: str) -> str:
    """The median, and the smallest and the largest."""
    middle, low, high = statistics.median(values), min(values), max(values)
    return f"{middle:{form}} ({low:{form}} to {high:{form}})"


@dataclass
class Times:
    """What a way took in each round: seconds, and processor seconds."""

    wall: list[float] = field(default_factory=list)
    processor: list[float] = field(default_factory=list)

    def add(self, run: Callable[[], object]) -> None:
        """Runs it once."""
        wall, processor = time.perf_counter(), time.process_time()
        run()
        self.wall.append(time.perf_counter() - wall)
        self.processor.append(time.process_time() - processor)


def study_in_one_thread(walks: list[Path], out: Path) -> None:
    """A study, for a process of its own."""
    gs.study(walks, out, jobs=1, restart=True, progress=False)


def measure(
    walks: Path, out: Path, client: Any, pool: ProcessPoolExecutor, rounds: int
) -> tuple[dict[str, Times], Shares]:
    """The times of every way, and what one process alone does."""
    table = table_of(walks)
    shares = Shares()

    def study(source: Any, **keywords: Any) -> Callable[[], object]:
        return lambda: gs.study(source, out, restart=True, progress=False, **keywords)

    def one_thread() -> None:
        with shares.measured():
            study(walks, jobs=1)()

    def two_studies() -> None:
        each = sorted(walks.iterdir())
        halves = [each[: len(each) // 2], each[len(each) // 2 :]]
        list(pool.map(study_in_one_thread, halves, [out / "first", out / "second"]))

    frame: dict[str, Any] = {"by": "walk", "sampling_rate": 100}
    ways: dict[str, Callable[[], object]] = {
        "folders, one thread": one_thread,
        "folders, two threads": study(walks, jobs=2),
        "folders, half of them in each of two processes": two_studies,
        "folders, cluster of two workers": study(walks, client=client),
        "folders, pandas, same statistics": lambda: grouped(
            table_of(walks), [*PLAIN, first_quartile, third_quartile, cv]
        ),
        "frame, one thread": study(table, jobs=1, **frame),
        "frame, two threads": study(table, jobs=2, **frame),
        "frame, pandas, same statistics": lambda: grouped(
            table, [*PLAIN, first_quartile, third_quartile, cv]
        ),
        "frame, pandas, built-in statistics alone": lambda: grouped(table, PLAIN),
    }
    times = {name: Times() for name in ways}
    for name in list(ways)[:4]:
        ways[name]()
    shares.of_rounds.clear()
    for _ in range(rounds):
        for name, run in ways.items():
            times[name].add(run)
    return times, shares


def print_rates(times: dict[str, Times], walks: int) -> None:
    """A row for each way."""
    print("| | walks a second | time, by that of one thread | processor time of a walk (ms) |")
    print("|---|---:|---:|---:|")
    for name, own in times.items():
        base = times[name.split(",")[0] + ", one thread"]
        ratios = [mine / one for mine, one in zip(own.wall, base.wall, strict=True)]
        rates = shown([walks / seconds for seconds in own.wall], ".0f")
        processor = shown([1e3 * seconds / walks for seconds in own.processor], ".2f")
        # Other processes are not measured.
        cost = "" if "two processes" in name or "cluster" in name else processor
        print(f"| {name} | {rates} | {shown(ratios, '.2f')} | {cost} |")


def print_hundred_cores(times: dict[str, Times], shares: Shares, walks: int) -> None:
    """What a hundred cores would do, by calculation."""
    storing, tables, size = (
        statistics.median(share) / walks for share in zip(*shares.of_rounds, strict=True)
    )
    one = statistics.median(times["folders, one thread"].processor) / walks
    computing = one - storing - tables
    hour = 3600.0
    # The one process stores parts while the others compute, and writes the tables afterwards.
    together = hour / (max(computing / 100, storing) + tables)
    print(
        f"\nOf the {one * 1e3:.2f} ms of a walk: computing {computing * 1e3:.2f} ms, storing its "
        f"part {storing * 1e3:.3f} ms, writing its rows {tables * 1e3:.3f} ms. Its part has "
        f"{size / 1e3:.1f} kB."
    )
    print(
        f"In an hour a hundred cores compute {100 * hour / computing / 1e6:.1f} million walks; the "
        f"one process that stores and writes has time for {hour / (storing + tables) / 1e6:.1f} "
        f"million; computing first and writing then, it is {together / 1e6:.1f} million."
    )


def main() -> None:
    """Measures, and prints."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("make_walk", help="the program gait-make-walk")
    parser.add_argument("--walks", type=int, default=1000)
    parser.add_argument("--strides", type=int, default=100)
    parser.add_argument("--rounds", type=int, default=3)
    arguments = parser.parse_args()
    warnings.simplefilter("ignore")
    cluster: Callable[..., Any] = LocalCluster
    connect: Callable[..., Any] = Client
    with contextlib.ExitStack() as stack:
        folder = Path(stack.enter_context(tempfile.TemporaryDirectory()))
        walks = make_walks(
            arguments.make_walk, folder / "walks", arguments.walks, arguments.strides
        )
        workers = {"n_workers": 2, "threads_per_worker": 1, "dashboard_address": None}
        client = stack.enter_context(connect(stack.enter_context(cluster(**workers))))
        pool = stack.enter_context(ProcessPoolExecutor(2, multiprocessing.get_context("spawn")))
        times, shares = measure(walks, folder / "out", client, pool, arguments.rounds)
    print(f"{arguments.walks} walks of {arguments.strides} strides a foot\n")
    print_rates(times, arguments.walks)
    print_hundred_cores(times, shares, arguments.walks)


if __name__ == "__main__":
    main()
