"""The page on imports says what is so: its tables, its examples, and what they print."""

from __future__ import annotations

import contextlib
import io
import re
import shlex
import warnings
from pathlib import Path
from typing import Any

import pandas as pd
import pytest
from conftest import ROOT, values_of
from pages import failures_of
from print_import_page import PAGE, with_tables
from tables_to_import import in_time_order, strides_of_both_feet

import gait_statistics as gs
from gait_statistics._import._program import main

TEXT = PAGE.read_text(encoding="utf-8")
BLOCKS = re.findall(r"^```(\w+) ?([^\n]*)\n(.*?)^```", TEXT, re.MULTILINE | re.DOTALL)


def test_the_tables_of_the_page_are_those_of_the_reader() -> None:
    assert with_tables(TEXT) == TEXT, "run python/tests/print_import_page.py"


def test_the_examples_for_python_are_right() -> None:
    failed, examples = failures_of("docs/import.md")
    assert (failed, examples) == (0, 6)


def cells_of(text: str) -> list[list[str]]:
    return [[cell.strip() for cell in line.split("|")] for line in text.splitlines()]


def as_numbers(rows: list[list[str]]) -> pd.DataFrame:
    frame = pd.DataFrame(rows[1:], columns=rows[0])
    for name in frame:
        with contextlib.suppress(ValueError):
            frame[name] = pd.to_numeric(frame[name])
    return frame


def make_files(folder: Path) -> None:
    """The tables and maps of the page."""
    sheets: dict[str, dict[str, Any]] = {}
    for language, name, text in BLOCKS:
        if language not in ("text", "toml") or not name:
            continue
        file, _, sheet = name.partition(" ")
        if file.endswith(".xlsx"):
            sheets.setdefault(file, {})[sheet] = pd.DataFrame(cells_of(text))
        elif file.endswith(".parquet"):
            as_numbers(cells_of(text)).to_parquet(folder / file)
        else:
            (folder / file).write_text(text, encoding="utf-8")
    for file, frames in sheets.items():
        with pd.ExcelWriter(folder / file) as book:
            for sheet, frame in frames.items():
                frame.to_excel(book, sheet_name=sheet, index=False, header=False)


def test_the_commands_of_the_page_print_what_it_says(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    make_files(tmp_path)
    monkeypatch.chdir(tmp_path)
    commands = [text for language, _, text in BLOCKS if language == "console"]
    assert len(commands) == 7
    for text in commands:
        command, _, expected = text.partition("\n")
        said = io.StringIO()
        with contextlib.redirect_stdout(said), contextlib.redirect_stderr(said):
            main(shlex.split(command.removeprefix("$ gait-import")))
        assert said.getvalue() == expected


def test_no_map_of_the_page_is_longer_than_fifteen_lines() -> None:
    maps = [text for language, name, text in BLOCKS if language == "toml" and name]
    assert len(maps) == 6
    assert max(len(text.splitlines()) for text in maps) <= 15


def test_the_map_of_the_page_for_a_parquet_file_takes_forty_walks(tmp_path: Path) -> None:
    make_files(tmp_path)
    tables = [
        in_time_order(strides_of_both_feet(10, seed)).assign(
            subject=f"S{seed // 4:02}", trial=seed % 4 + 1
        )
        for seed in range(40)
    ]
    renamed = {"first_sample": "begin", "last_sample": "end", "gct": "duration"}
    table = pd.concat(tables).drop(columns="end").rename(columns=renamed)
    table.to_parquet(tmp_path / "forty.parquet")
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        walks = gs.import_tables(
            tmp_path / "forty.parquet", tmp_path / "study.toml", tmp_path / "out"
        )
    assert len(walks) == 40
    assert len(list((tmp_path / "out").iterdir())) == 40
    for walk, known in zip(walks, tables, strict=True):
        known = known.sort_values(["foot", "first_sample"])
        assert values_of(walk.strides)["first_sample"] == known["first_sample"].tolist()


def test_the_page_stands_among_the_docs() -> None:
    assert "(import.md)" in (ROOT / "docs/python.md").read_text(encoding="utf-8")
