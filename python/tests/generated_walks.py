"""Random walks, from tame to wild, as tables of Python values: for frames and for files."""

from __future__ import annotations

import csv
import math
import random
from dataclasses import dataclass
from pathlib import Path
from typing import Any

from walks import MEASURED

FEW = [0.0, -0.0, 0.5, 1.0, 3.0, -2.0, -1.0]
ODD = [*FEW, 5e-324, 1e-300, 1e300, -1e300, 2.0**53 + 2, math.nextafter(-1.0, 0.0), 0.1 + 0.2]
REASONS = ["", "turn", "stop", "Wende, lang", 'a "stop"', "arrêt", "停"]

Table = dict[str, list[Any]]


@dataclass
class GeneratedWalk:
    """The tables of a walk; None stands for what was not measured."""

    name: str
    sampling_rate: int
    samples: dict[str, tuple[int | None, int | None]]
    strides: Table
    feet: Table | None
    exclusions: Table | None

    def write(self, folder: Path) -> None:
        """Writes the walk folder. ``repr`` gives a number's shortest text."""
        folder.mkdir()
        recording = [(foot, self.sampling_rate, *lengths) for foot, lengths in self.samples.items()]
        names = ("foot", "sampling_rate", "signal_1_samples", "signal_2_samples")
        write_table(
            folder / "recording.csv",
            {name: [row[place] for row in recording] for place, name in enumerate(names)},
        )
        write_table(folder / "foot_cycles.csv", self.strides)
        if self.feet is not None:
            write_table(folder / "feet_cycles.csv", self.feet)
        if self.exclusions is not None:
            write_table(folder / "exclusions.csv", self.exclusions)


def write_table(path: Path, table: Table) -> None:
    with path.open("w", encoding="utf-8", newline="") as file:
        writer = csv.writer(file)
        writer.writerow(table)
        writer.writerows(zip(*table.values(), strict=True))


def measured_values(rng: random.Random, typical: tuple[float, float], count: int) -> list[Any]:
    kind = rng.randrange(8)
    if kind == 0:
        values = [rng.choice(FEW) for _ in range(count)]
    elif kind == 1:
        values = [rng.choice(ODD) for _ in range(count)]
    elif kind == 2:
        values = [rng.gauss(*typical)] * count
    elif kind == 3:
        values = [round(rng.gauss(*typical), 1) for _ in range(count)]
    else:
        values = [rng.gauss(*typical) for _ in range(count)]
    missing = rng.choice([0.0, 0.0, 0.05, 0.5, 1.0])
    return [None if rng.random() < missing else value for value in values]


def strides_of(rng: random.Random, counts: dict[str, int], columns: list[str]) -> Table:
    table: Table = {name: [] for name in ("foot", "first_sample", "last_sample", *columns)}
    for foot, count in counts.items():
        first = rng.randrange(200)
        for _ in range(count):
            last = first + rng.randrange(60, 160)
            table["foot"].append(foot)
            table["first_sample"].append(first)
            table["last_sample"].append(last)
            first = last + rng.choice([0, 1, 1, 1, 200])
        for name in columns:
            table[name] += measured_values(rng, MEASURED[name], count)
    return table


def feet_of(rng: random.Random, counts: dict[str, int]) -> Table:
    """Cycles of both feet, a few of which lack a stride of one foot."""
    count = min(counts.values())

    def links(foot: str) -> list[int | None]:
        shift = rng.randrange(counts[foot] - count + 1)
        return [None if rng.random() < 0.05 else index + shift for index in range(count)]

    return {
        "gct": measured_values(rng, (1.1, 0.05), count),
        "ds": measured_values(rng, (24.0, 3.0), count),
        "right_index": links("right"),
        "left_index": links("left"),
    }


def exclusions_of(rng: random.Random, counts: dict[str, int]) -> Table:
    table: Table = {"cycles": [], "list": [], "index": [], "reason": []}
    lists = ["excluded_1", "excluded_2", "excluded_1_fallback", "excluded_2_fallback"]
    fewest = min(counts.values())
    for _ in range(rng.randrange(1, 2 + fewest // 2)):
        # The first cycle always stays.
        table["cycles"].append("feet" if len(counts) > 1 else next(iter(counts)))
        table["list"].append(rng.choice(lists))
        table["index"].append(rng.choice([rng.randrange(1, fewest), fewest + 5, -3]))
        table["reason"].append(rng.choice(REASONS))
    return table


def generated_walk(seed: int) -> GeneratedWalk:
    """The walk of a seed."""
    rng = random.Random(seed)
    sides = rng.choice([["left"], ["right"], ["left", "right"], ["right", "left"]])
    most = rng.choice([4, 12, 40, 120])
    counts = {foot: rng.randrange(2, most) for foot in sides}
    columns = [name for name in MEASURED if rng.random() < rng.choice([0.5, 0.95])]
    strides = strides_of(rng, counts, columns)
    end = max(strides["last_sample"]) + 1
    return GeneratedWalk(
        f"walk_{seed}",
        rng.choice([1, 64, 100, 128, 300]),
        {foot: rng.choice([(None, None), (end, None), (end, end + 7)]) for foot in sides},
        strides,
        feet_of(rng, counts) if len(sides) == 2 else None,
        exclusions_of(rng, counts) if rng.random() < 0.6 else None,
    )
