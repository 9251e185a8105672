"""Every figure is that of the program, to the last bit."""

from __future__ import annotations

import json
import os
import struct
import warnings
from collections import defaultdict
from pathlib import Path
from typing import Any

import pandas as pd
import polars as pl
import pyarrow as pa
import pytest
from conftest import KINDS, Count, Program, rows_of_csv, values_of, walk_of_frames
from generated_walks import GeneratedWalk, Table, generated_walk

import gait_statistics as gs

TABLES = ("parameters", "strides", "walks")
FEET = (None, "left", "right")
GENERATED_WALKS = int(os.environ.get("GAIT_GENERATED_WALKS", "60"))


def is_same(cell: str, value: Any) -> bool:
    """Whether a value is the one that stands in a cell, to the bit."""
    if value is None or cell == "":
        # A frame has NaN for what is missing, so a NaN that was computed is None here, too.
        return cell in ("", "NaN") and (value is None or value == "")
    if isinstance(value, bool):
        return cell == ("TRUE" if value else "FALSE")
    if isinstance(value, float):
        return struct.pack("d", float(cell)) == struct.pack("d", value)
    return cell == str(value)


def differences(rows: list[dict[str, str]], frame: Any, ignored: set[str]) -> tuple[list[str], int]:
    """Where a frame is not the program's table, and how many cells were compared."""
    values = values_of(frame)
    assert list(values) == list(rows[0]), "the columns are not those of the program"
    wrong = []
    compared = 0
    for name in values.keys() - ignored:
        assert len(values[name]) == len(rows)
        for place, (row, value) in enumerate(zip(rows, values[name], strict=True)):
            compared += 1
            if not is_same(row[name], value):
                wrong.append(f"{name}, row {place}: program {row[name]!r}, frame {value!r}")
    return wrong, compared


def analysed(walk: gs.Walk, foot: Any) -> gs.Result | None:
    """The result, or None where the walk does not have the foot."""
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", gs.WalkWarning)
        try:
            return gs.analyse(walk, foot)
        except gs.WalkError:
            return None


def read(folder: Path, **options: Any) -> gs.Walk:
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", gs.WalkWarning)
        return gs.read_walk(folder, **options)


@pytest.mark.parametrize("foot", FEET)
def test_a_walk_read_from_a_folder_has_the_figures_of_the_program(
    folder: Path, kind: Any, foot: Any, program: Program, count_cells: Count
) -> None:
    result = analysed(read(folder, frame=kind), foot)
    if result is None:
        return
    arguments = ["--foot", foot] if foot else []
    for table in TABLES:
        rows = rows_of_csv(program("--table", table, *arguments, folder))
        wrong, compared = differences(rows, getattr(result, table), set())
        assert not wrong
        assert compared > 0
        count_cells(compared)


@pytest.mark.parametrize("foot", FEET)
def test_a_walk_made_of_frames_has_the_figures_of_the_program(
    folder: Path, kind: Any, foot: Any, program: Program, count_cells: Count
) -> None:
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", gs.WalkWarning)
        result = analysed(walk_of_frames(folder, kind), foot)
    if result is None:
        return
    arguments = ["--foot", foot] if foot else []
    for table in TABLES:
        rows = rows_of_csv(program("--table", table, *arguments, folder))
        wrong, compared = differences(rows, getattr(result, table), {"line", "about"})
        assert not wrong
        assert compared > 0
        count_cells(compared)


def frame_of_values(table: Table | None, kind: str) -> Any:
    """A frame of a table of Python values."""
    if table is None:
        return None
    if kind == "polars":
        return pl.DataFrame(table)
    return pa.table(table) if kind == "pyarrow" else pd.DataFrame(table)


def walk_of_values(walk: GeneratedWalk, kind: str) -> gs.Walk:
    return gs.Walk(
        frame_of_values(walk.strides, kind),
        walk.sampling_rate,
        frame_of_values(walk.feet, kind),
        frame_of_values(walk.exclusions, kind),
        walk.samples,
        walk.name,
    )


def test_generated_walks_have_the_figures_of_the_program(
    program: Program, tmp_path: Path, count_cells: Count
) -> None:
    walks = [generated_walk(seed) for seed in range(GENERATED_WALKS)]
    for walk in walks:
        walk.write(tmp_path / walk.name)
    rows_of_walk = defaultdict(list)
    for table in TABLES:
        for row in rows_of_csv(program("--table", table, "--recursive", tmp_path)):
            rows_of_walk[row["walk"], table].append(row)
    wrong = []
    compared = 0
    for walk in walks:
        for kind in KINDS:
            with warnings.catch_warnings():
                warnings.simplefilter("ignore", gs.WalkWarning)
                result = gs.analyse(walk_of_values(walk, kind))
            for table in TABLES:
                rows = rows_of_walk[walk.name, table]
                # A note on a frame names an argument and its row, not a file and its line.
                ignored = {"line", "notes"}
                differing, cells = differences(rows, getattr(result, table), ignored)
                wrong += [f"{walk.name}, {kind}, {table}: {text}" for text in differing]
                compared += cells
    assert not wrong
    assert compared > 1000 * GENERATED_WALKS
    count_cells(compared)


@pytest.mark.parametrize("foot", FEET)
def test_the_json_is_that_of_the_program(folder: Path, foot: Any, program: Program) -> None:
    result = analysed(read(folder), foot)
    if result is not None:
        arguments = ["--foot", foot] if foot else []
        assert result.to_json() == program("--format", "json", *arguments, folder)


@pytest.mark.parametrize("foot", FEET)
def test_the_page_is_that_of_the_program(
    folder: Path, foot: Any, program: Program, tmp_path: Path
) -> None:
    result = analysed(read(folder), foot)
    if result is not None:
        arguments = ["--foot", foot] if foot else []
        result.to_html(tmp_path / "report.html")
        page = (tmp_path / "report.html").read_text(encoding="utf-8")
        assert page == program("--format", "html", *arguments, folder) == result.to_html()


def test_info_findings_and_notes_are_those_of_the_document(folder: Path) -> None:
    result = analysed(read(folder), None)
    assert result is not None
    (document,) = json.loads(result.to_json())["walks"]
    for field in gs.Info.__dataclass_fields__:
        value = getattr(result.info, field)
        assert document["accounting"][field] == (list(value) if field == "cycles" else value)
    assert [finding.sentence for finding in result.findings] == [
        finding["sentence"] for finding in document["findings"]
    ]
    assert [(note.name, note.text, note.source) for note in result.notes] == [
        (note["name"], note["text"], note["source"]) for note in document["notes"]
    ]
    assert int(result.quality_flags) == document["quality_flags"]
    assert list(result.quality_flags_in_words) == document["quality_flags_in_words"]
