"""Studies for the tests: folders of walks, the command, and what it writes."""

from __future__ import annotations

import os
import subprocess
import sys
from collections.abc import Callable, Iterator
from contextlib import contextmanager
from pathlib import Path
from typing import Any
from unittest import mock

import pandas as pd

COMMAND = [sys.executable, "-m", "gait_statistics._study_command"]
HELD_COMMAND = [sys.executable, str(Path(__file__).with_name("held_study.py"))]


def write_walks(folder: Path, count: int) -> Path:
    """A folder of walks, from tame to wild; the one with the number 3 cannot be read."""
    from generated_walks import generated_walk

    folder.mkdir(parents=True)
    for seed in range(count):
        generated_walk(seed).write(folder / f"walk_{seed:05}")
    if count > 3:
        (folder / "walk_00003/recording.csv").unlink()
    return folder


def gait_study(*arguments: object, **options: Any) -> tuple[int, str]:
    """Runs the command, and returns its exit code and what it says."""
    finished = subprocess.run(
        [*COMMAND, *map(str, arguments)],
        stderr=subprocess.PIPE,
        encoding="utf-8",
        check=False,
        **options,
    )
    return finished.returncode, finished.stderr


def contents_of(out: Path) -> dict[str, bytes]:
    """Every file of a study by name."""
    return {path.name: path.read_bytes() for path in sorted(out.iterdir()) if path.is_file()}


def parts_in(out: Path) -> list[str]:
    """The parts that a study under way has."""
    folder = out / ".study"
    return sorted(n for n in os.listdir(folder) if n.endswith(".part")) if folder.exists() else []


@contextmanager
def holding_studies(parts: int, hold: Callable[[], object]) -> Iterator[None]:
    """Studies of this process call ``hold`` once they have so many parts, and wait for its end."""
    from gait_statistics._study._work import Work

    plain_store = Work.store

    def store(self: Work, first: int, stop: int, part: bytes) -> None:
        nonlocal parts
        plain_store(self, first, stop, part)
        parts -= 1
        if parts == 0:
            hold()

    with mock.patch.object(Work, "store", store):
        yield


@contextmanager
def held_study(parts: int, *arguments: object) -> Iterator[subprocess.Popen[str]]:
    """The command in a process of its own that has so many parts, and waits to be let go."""
    command = [*HELD_COMMAND, str(parts), *map(str, arguments)]
    pipe = subprocess.PIPE
    with subprocess.Popen(command, stdin=pipe, stdout=pipe, stderr=pipe, text=True) as process:
        assert process.stdout is not None
        assert process.stdout.readline() == "held\n", process.communicate()[1]
        yield process


def let_go(process: subprocess.Popen[str]) -> str:
    """Lets a held study go on, waits for its end, and returns what it says."""
    return process.communicate()[1]


def strides_of_bouts(bouts: int, strides: int = 12) -> pd.DataFrame:
    """A table of strides of both feet: bouts of two subjects."""
    rows = []
    for bout in range(bouts):
        for foot, offset in (("left", 0), ("right", 50)):
            for index in range(strides):
                first = offset + 100 * index
                rows.append(
                    {
                        "subject": f"s{bout % 2}",
                        "bout": bout,
                        "foot": foot,
                        "index": index,
                        "first_sample": first,
                        "last_sample": first + 99,
                        "gct": 1.0 + 0.01 * ((bout + index) % 7),
                        "speed": None if index == 3 else 1.2 + 0.01 * (index % 5),
                    }
                )
    return pd.DataFrame(rows)
