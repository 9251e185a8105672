"""Workbooks whose sheets differ: which are read, and what is said where nobody says it."""

from __future__ import annotations

from pathlib import Path
from typing import Any

import pandas as pd
import pytest
from tables_to_import import in_time_order, strides_of_both_feet

import gait_statistics as gs
from gait_statistics._import._suggest import suggested_map

STRIDES = in_time_order(strides_of_both_feet())[["foot", "hs", "gct"]]
SUMMARY = pd.DataFrame({"Parameter": ["gct", "stance"], "Mean": [1.05, 61.0]})
INFO = pd.DataFrame({"Patient": ["Name", "Date"], "P7": ["x", "2024-01-02"]})
MAP: dict[str, Any] = {"columns": {"hs": "hs", "gct": "gct"}}


def of_foot(foot: str) -> pd.DataFrame:
    return STRIDES[STRIDES["foot"] == foot].drop(columns="foot")


def book_of(path: Path, sheets: dict[str, pd.DataFrame]) -> str:
    with pd.ExcelWriter(path / "b.xlsx") as book:
        for name, table in sheets.items():
            table.to_excel(book, sheet_name=name, index=False)
    return str(path / "b.xlsx")


def strides_by_suggestion(book: str, folder: Path) -> dict[str, int]:
    """How many strides each walk has that the suggested map makes."""
    (folder / "m.toml").write_text(suggested_map([book]), encoding="utf-8")
    walks = gs.import_tables(book, folder / "m.toml")
    return {walk.name: len(walk.strides["index"]) for walk in walks}


def error_of(book: str, **keys: Any) -> str:
    with pytest.raises(gs.WalkError) as raised:
        gs.import_tables(book, {**MAP, **keys})
    return str(raised.value.errors[0])


def test_the_only_sheet_with_the_maps_columns_is_named(tmp_path: Path) -> None:
    book = book_of(tmp_path, {"Info": INFO, "Summary": SUMMARY, "Data": STRIDES})
    assert error_of(book, feet={"column": "foot"}) == (
        'b.xlsx: found 3 sheets ("Info", "Summary", "Data"), expected a word on which to read: '
        '"Data" alone has the map\'s columns: [table] sheet = "Data"'
    )
    assert strides_by_suggestion(book, tmp_path) == {"b": 24}
    text = suggested_map([book])
    assert '# sheets that are passed over: "Info", "Summary"\n' in text
    assert '[table]\nsheet = "Data"\n' in text


def test_sheets_that_may_be_walks_or_feet_are_asked_about(tmp_path: Path) -> None:
    book = book_of(tmp_path, {"Summary": SUMMARY, "A": of_foot("left"), "B": of_foot("right")})
    error = error_of(book)
    assert '[table] sheet = "A" for one' in error
    assert '[table] sheet = ["A", "B"] with walk = ["{sheet}"]' in error
    assert error.endswith('where each is a foot, [feet] by = "sheets" with left = "A", right = "B"')


def test_sheets_for_feet_are_seen_beside_a_summary(tmp_path: Path) -> None:
    feet = {"Left leg": of_foot("left"), "Right leg": of_foot("right")}
    book = book_of(tmp_path, {"Summary": SUMMARY, **feet})
    assert strides_by_suggestion(book, tmp_path) == {"b": 24}


def test_sheets_for_walks_are_seen_beside_a_summary(tmp_path: Path) -> None:
    book = book_of(tmp_path, {"Overview": SUMMARY, "Trial 1": STRIDES, "Trial 2": STRIDES})
    assert strides_by_suggestion(book, tmp_path) == {"Trial_1": 24, "Trial_2": 24}


def test_a_sheet_for_each_foot_of_each_walk(tmp_path: Path) -> None:
    sheets = {f"T{walk} {foot}": of_foot(foot) for walk in (1, 2) for foot in ("left", "right")}
    book = book_of(tmp_path, sheets)
    assert strides_by_suggestion(book, tmp_path) == {"T1": 24, "T2": 24}
    assert 'walk = ["{sheet}"]' in error_of(book, feet={"by": "sheets"})


def test_a_sheet_without_the_maps_columns_says_how_to_leave_it_out(tmp_path: Path) -> None:
    book = book_of(tmp_path, {"Info": INFO, "Trial 1": STRIDES})
    error = error_of(book, feet={"column": "foot"}, walk="{sheet}")
    assert error.startswith("b.xlsx, sheet Info: found none of the columns")
    assert error.endswith("[table] sheet names the sheets to read")
