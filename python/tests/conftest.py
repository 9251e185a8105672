"""The walks and the program that the tests compare with."""

from __future__ import annotations

import csv
import io
import math
import os
import subprocess
from collections.abc import Callable
from pathlib import Path
from typing import Any

import hypothesis
import narwhals as nw
import pandas as pd
import pytest

import gait_statistics as gs

ROOT = Path(__file__).resolve().parents[2]
KINDS = ("pandas", "polars", "pyarrow")

# The parser that is exact to the last bit is the default from pandas 3.1 on.
VERSION = tuple(int(number) for number in pd.__version__.split(".")[:2])
EXACT: dict[str, Any] = {} if VERSION >= (3, 1) else {"float_precision": "round_trip"}

Program = Callable[..., str]
Count = Callable[[int], None]

# Every run takes the same examples; those that are asked for in large numbers are new ones.
hypothesis.settings.register_profile("same", derandomize="GAIT_BAD_FRAMES" not in os.environ)
hypothesis.settings.load_profile("same")

CELLS = pytest.StashKey[int]()


def walk_folders() -> list[Path]:
    """The example walks, those of the program's tests, and the measured ones, if there are any."""
    folders = [*(ROOT / "examples/walks").iterdir()]
    folders += (ROOT / "tests/tools/gait_statistics_walks").iterdir()
    real = os.environ.get("GAIT_REAL_WALKS")
    if real:
        folders += [table.parent for table in Path(real).rglob("foot_cycles.csv")]
    return sorted(folder for folder in folders if folder.is_dir())


def pytest_generate_tests(metafunc: pytest.Metafunc) -> None:
    """Runs a test for every walk, and for every kind of frame."""
    if "folder" in metafunc.fixturenames:
        metafunc.parametrize("folder", walk_folders(), ids=lambda folder: str(folder.name))
    if "kind" in metafunc.fixturenames:
        metafunc.parametrize("kind", KINDS)


@pytest.fixture
def count_cells(request: pytest.FixtureRequest) -> Count:
    """Counts cells that were compared with the program's, for the summary."""
    stash = request.config.stash

    def count(cells: int) -> None:
        stash[CELLS] = stash.get(CELLS, 0) + cells

    return count


def pytest_sessionfinish(session: pytest.Session) -> None:
    """Hands the count of a process of pytest-xdist to the one that writes the summary."""
    output = getattr(session.config, "workeroutput", None)
    if output is not None:
        output["cells"] = session.config.stash.get(CELLS, 0)


@pytest.hookimpl(optionalhook=True)
def pytest_testnodedown(node: Any) -> None:
    """Adds the count of a process of pytest-xdist."""
    stash = node.config.stash
    stash[CELLS] = stash.get(CELLS, 0) + node.workeroutput["cells"]


def pytest_terminal_summary(terminalreporter: Any, config: pytest.Config) -> None:
    """Says how much was compared."""
    if CELLS in config.stash:
        cells = f"{config.stash[CELLS]:,}"
        terminalreporter.write_line(f"{cells} cells of tables compared with the program's")


@pytest.fixture(autouse=True)
def at_the_root(monkeypatch: pytest.MonkeyPatch) -> None:
    """Runs every test in the project's folder, so that its paths are those of the pages."""
    monkeypatch.chdir(ROOT)


@pytest.fixture(scope="session")
def program() -> Program:
    """Runs gait-statistics, and returns what it writes."""
    path = os.environ.get("GAIT_STATISTICS_PROGRAM")
    if not path:
        pytest.skip("GAIT_STATISTICS_PROGRAM does not name the program")

    def run(*arguments: str | Path) -> str:
        finished = subprocess.run([path, *arguments], capture_output=True, check=False)
        if finished.returncode != 0:
            raise RuntimeError(finished.stderr.decode())
        return finished.stdout.decode()

    return run


def rows_of_csv(text: str) -> list[dict[str, str]]:
    """The rows of a table by column."""
    return list(csv.DictReader(io.StringIO(text)))


def values_of(frame: Any) -> dict[str, list[Any]]:
    """The columns of a frame; None for what is missing."""
    table = nw.from_native(frame, eager_only=True)
    values: dict[str, list[Any]] = {}
    for column in table.iter_columns():
        cells = column.to_list()
        if column.dtype.is_float():
            cells = [None if value is None or math.isnan(value) else value for value in cells]
        values[column.name] = [
            None if type(value).__name__ == "NAType" else value for value in cells
        ]
    return values


def as_kind(frame: pd.DataFrame, kind: str) -> Any:
    """A frame of pandas as one of another library."""
    if kind == "polars":
        import polars as pl

        return pl.from_pandas(frame)
    if kind == "pyarrow":
        import pyarrow as pa

        return pa.Table.from_pandas(frame, preserve_index=False)
    return frame


def walk_of_frames(folder: Path, kind: str) -> gs.Walk:
    """A walk made of frames that somebody else's reader made of the tables."""
    recording = pd.read_csv(folder / "recording.csv")
    samples: dict[Any, Any] = {}
    for row in recording.to_dict("records"):
        counts = [row.get(f"signal_{signal}_samples") for signal in (1, 2)]
        samples[row["foot"]] = tuple(
            None if count is None or pd.isna(count) else int(count) for count in counts
        )

    def table(name: str) -> Any:
        path = folder / name
        if not path.exists() or len(path.read_text().splitlines()) < 2:
            return None
        return as_kind(pd.read_csv(path, **EXACT), kind)

    return gs.Walk(
        table("foot_cycles.csv"),
        int(recording["sampling_rate"][0]),
        table("feet_cycles.csv"),
        table("exclusions.csv"),
        samples,
        folder.name,
    )


def strides_of_one_foot(**columns: Any) -> pd.DataFrame:
    """Three strides of the left foot, with columns added or replaced."""
    return pd.DataFrame(
        {
            "foot": "left",
            "first_sample": [0, 100, 200],
            "last_sample": [99, 199, 299],
            "gct": [1.0, 1.0, 1.0],
            **columns,
        }
    )
