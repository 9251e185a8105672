"""Walks that no column names: blank rows, and numbers that begin anew."""

from __future__ import annotations

import warnings
from pathlib import Path
from typing import Any

import pandas as pd
import pytest
from tables_to_import import in_time_order, strides_of_both_feet

import gait_statistics as gs
from gait_statistics._import._suggest import suggested_map

STRIDES = in_time_order(strides_of_both_feet())[["foot", "hs", "gct"]]
NUMBERED = STRIDES.assign(No=STRIDES.groupby("foot").cumcount() + 1)
MAP: dict[str, Any] = {"feet": {"column": "foot"}, "columns": {"hs": "hs", "gct": "gct"}}


def walks_of(table: Any, **keys: Any) -> dict[str, int]:
    """How many strides each walk has."""
    walks = gs.import_tables(table, {**MAP, **keys})
    return {walk.name: len(walk.strides["index"]) for walk in walks}


def errors_of(table: Any, **keys: Any) -> list[str]:
    with pytest.raises(gs.WalkError) as raised:
        walks_of(table, **keys)
    return [str(error) for error in raised.value.errors]


def twice(table: pd.DataFrame) -> pd.DataFrame:
    return pd.concat([table, table], ignore_index=True)


def with_blank_rows(folder: Path) -> str:
    """A text with two walks, blank rows between them, and some more."""
    head, rows = STRIDES.to_csv(index=False).split("\n", 1)
    (folder / "t.csv").write_text(f"\n{head}\n{rows}\n,,\n{rows}\n\n")
    return str(folder / "t.csv")


def walks_by_suggestion(path: str) -> dict[str, int]:
    Path(path).with_name("m.toml").write_text(suggested_map([path]))
    walks = gs.import_tables(path, Path(path).with_name("m.toml"))
    return {walk.name: len(walk.strides["index"]) for walk in walks}


@pytest.mark.parametrize("column", ["No", "hs"])
@pytest.mark.parametrize("order", [["hs"], ["foot", "hs"]])
def test_walks_begin_where_a_foots_number_begins_anew(column: str, order: list[str]) -> None:
    table = twice(NUMBERED.sort_values(order))
    found = walks_of(table, walk=f"{{restart of {column}}}")
    assert found == {"walk_1": 24, "walk_2": 24}


def test_parts_are_counted_for_each_subject() -> None:
    table = pd.concat([twice(NUMBERED).assign(subject=name) for name in ("S1", "S2")])
    found = walks_of(table, walk=["subject", "{restart of No}"])
    assert list(found) == ["S1_walk_1", "S1_walk_2", "S2_walk_1", "S2_walk_2"]


def test_a_stride_before_a_restart_may_be_missing() -> None:
    table = twice(NUMBERED)
    table.loc[30, "No"] = None
    assert walks_of(table, walk="{restart of No}") == {"walk_1": 24, "walk_2": 24}


def test_walks_begin_after_blank_rows(tmp_path: Path) -> None:
    path = with_blank_rows(tmp_path)
    assert walks_of(path, walk="{blank row}") == {"walk_1": 24, "walk_2": 24}
    assert walks_by_suggestion(path) == {"walk_1": 24, "walk_2": 24}
    assert 'where another walk begins, walk = ["{blank row}"] parts walks' in errors_of(path)[0]


def test_walks_begin_after_blank_rows_of_a_workbook(tmp_path: Path) -> None:
    blank = pd.DataFrame([[None] * 3] * 2, columns=STRIDES.columns, dtype=object)
    table = pd.concat([STRIDES.astype(object), blank, STRIDES.astype(object)])
    table.to_excel(tmp_path / "t.xlsx", index=False)
    assert walks_of(tmp_path / "t.xlsx", walk="{blank row}") == {"walk_1": 24, "walk_2": 24}


def test_times_that_begin_anew_name_what_begins_anew_with_them() -> None:
    assert 'walk = ["{restart of No}"] parts walks' in errors_of(twice(NUMBERED))[0]
    assert 'walk = ["{restart of hs}"] parts walks' in errors_of(twice(STRIDES))[0]


@pytest.mark.parametrize(("table", "name"), [(NUMBERED, "No"), (STRIDES, "hs")])
def test_a_suggested_map_sees_what_begins_anew(
    table: pd.DataFrame, name: str, tmp_path: Path
) -> None:
    twice(table).to_csv(tmp_path / "t.csv", index=False)
    assert walks_by_suggestion(str(tmp_path / "t.csv")) == {"walk_1": 24, "walk_2": 24}
    assert f'walk = ["{{restart of {name}}}"]' in suggested_map([str(tmp_path / "t.csv")])
    table.sort_values(["foot", "hs"]).to_csv(tmp_path / "t.csv", index=False)
    assert "walk =" not in suggested_map([str(tmp_path / "t.csv")])


def test_a_number_that_begins_anew_without_times_is_a_warning() -> None:
    keys = {"columns": {"gct": "gct"}, "times": "end to end", "pairs": "order"}
    table = NUMBERED.drop(columns="hs")
    with pytest.warns(gs.WalkWarning, match=r"No: found a number that begins anew.*\{restart of"):
        walks_of(twice(table), **keys)
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        walks_of(table.sort_values("foot"), **keys)
        walks_of(twice(table), **keys, breaks="{restart of No}")


def test_parts_of_several_files_are_not_taken_for_the_same_walks(tmp_path: Path) -> None:
    for name in ("a.csv", "b.csv"):
        twice(NUMBERED).to_csv(tmp_path / name, index=False)
    paths = [tmp_path / "a.csv", tmp_path / "b.csv"]
    assert "walk: found 2 tables" in errors_of(paths, walk="{restart of No}")[0]
    assert list(walks_of(paths, walk=["{file}", "{restart of No}"])) == [
        *("a_walk_1", "a_walk_2", "b_walk_1", "b_walk_2")
    ]


def test_a_column_that_is_not_there_cannot_begin_anew() -> None:
    errors = errors_of(STRIDES, walk="{restart of Nr}")
    assert errors[0].startswith("table 1: column Nr: found no such column")


def test_midnight_and_a_heading_for_a_foot_begin_no_walk(tmp_path: Path) -> None:
    begin = pd.Timestamp("2024-12-24 23:59:55")
    times = [f"{begin + pd.Timedelta(seconds=hs):%H:%M:%S.%f}" for hs in STRIDES["hs"]]
    STRIDES.assign(hs=times).to_csv(tmp_path / "t.csv", index=False)
    assert "walk =" not in suggested_map([str(tmp_path / "t.csv")])
    parts = [
        f"{foot} foot\n"
        + NUMBERED.query(f"foot == '{foot}'")[["No", "hs", "gct"]].to_csv(index=False)
        for foot in ("left", "right")
    ]
    (tmp_path / "t.csv").write_text("".join(parts))
    assert "walk =" not in suggested_map([str(tmp_path / "t.csv")])
