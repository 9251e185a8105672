"""A suggested map asks about what it cannot tell, and takes no column for another quantity."""

from __future__ import annotations

import re
from datetime import datetime
from pathlib import Path

import numpy as np
import pandas as pd
import pytest
from tables_to_import import in_time_order, strides_of_both_feet

from gait_statistics._import._suggest import suggested_map

STRIDES = in_time_order(strides_of_both_feet())
PLAIN = STRIDES[["foot", "hs", "gct"]]


def suggested(folder: Path, table: pd.DataFrame) -> str:
    """The map for a table, its remarks in one line; both stand in the folder."""
    table.to_csv(folder / "t.csv", index=False)
    text = suggested_map([str(folder / "t.csv")])
    (folder / "m.toml").write_text(text)
    return joined(text)


def joined(text: str) -> str:
    return text.replace("\n# ", " ")


def column_for(field: str, text: str) -> str | None:
    """The table's column that a map has for one of ours."""
    found = re.search(rf'^{field} = (?:{{column = )?"([^"]*)"', text, re.MULTILINE)
    return found[1] if found else None


# ---- What stands for missing


@pytest.mark.parametrize(
    ("cell", "why"),
    [
        ("1.20 x", '"1.20 x" has a digit (2 cells, the first one in line 5)'),
        ("*1.20", '"*1.20" has a mark beside its number (2 cells, the first one in line 5)'),
        ("01. Nov", '"01. Nov" is a date: Excel turned decimals into dates (2 cells, the first'),
    ],
)
def test_values_that_cannot_be_read_are_not_missing(cell: str, why: str, tmp_path: Path) -> None:
    speed = STRIDES["speed"].astype(object)
    speed[[3, 7]] = cell
    speed[9] = "n.d."
    text = suggested(tmp_path, PLAIN.assign(speed=speed))
    assert f" speed: {why}" in text
    assert 'speed = {column = "speed", missing = ["n.d."]}' in text


def test_dates_of_a_workbook_are_not_missing(tmp_path: Path) -> None:
    speed = STRIDES["speed"].astype(object)
    speed[4] = datetime(2024, 11, 1)
    PLAIN.assign(speed=speed).to_excel(tmp_path / "t.xlsx", index=False)
    text = suggested_map([str(tmp_path / "t.xlsx")])
    assert "Excel turned decimals into dates (1 cell, the first one in line 6)" in joined(text)
    assert "missing =" not in text


@pytest.mark.parametrize(("usual", "is_code"), [(1000, False), (330, True)])
def test_a_999_is_missing_where_it_lies_far_from_the_others(
    usual: int, is_code: bool, tmp_path: Path
) -> None:
    times = (STRIDES["gct"] / STRIDES["gct"].max() * usual).round()
    times[5] = 999
    text = suggested(tmp_path, PLAIN.assign(**{"Contact time (ms)": times}))
    assert ('"Contact time (ms)", missing = [999]' in text) == is_code


# ---- Names


@pytest.mark.parametrize(
    ("field", "wrong", "right"),
    [
        ("speed", "Max. velocity", "Stride velocity"),
        ("speed", "Velocity SD", "Velocity mean"),
        ("ds", "Initial double support (%)", "Double support (%)"),
        ("stance", "Step distance", "Stance"),
        ("stance", "Single stance (%)", "Stance (%)"),
        ("lift_off", "Terminal lift off time", "Lift off time"),
    ],
)
def test_a_column_of_another_quantity_is_not_placed(
    field: str, wrong: str, right: str, tmp_path: Path
) -> None:
    table = PLAIN.assign(**{wrong: STRIDES["speed"]})
    text = suggested(tmp_path, table)
    assert column_for(field, text) is None
    assert f'  "{wrong}": numbers' in text
    text = suggested(tmp_path, table.assign(**{right: STRIDES["speed"]}))
    assert column_for(field, text) == right


@pytest.mark.parametrize(
    ("field", "name"),
    [
        ("hs", "Initial contact (s)"),
        ("peakswing", "Peak angular velocity (deg/s)"),
        ("max_hc", "Maximum heel clearance"),
        ("min_tc", "Minimum toe clearance"),
        ("cadence", "cadence_steps_min"),
        ("swing", "SwingPhase"),
        ("hs", "HeelStrike"),
        ("speed", "Ganggeschwindigkeit"),
    ],
)
def test_a_word_that_belongs_to_the_quantity_places_its_column(
    field: str, name: str, tmp_path: Path
) -> None:
    table = STRIDES[["foot", "gct"]].assign(**{name: STRIDES["hs"]})
    assert column_for(field, suggested(tmp_path, table)) == name


# ---- Feet and walks


@pytest.mark.parametrize(
    ("affected", "code"),
    [
        (["right"] * 20 + ["left"] * 4, {"left": "L", "right": "R"}),
        (["right"] * 24, {"left": 1, "right": 2}),
    ],
)
def test_a_side_of_the_person_is_not_the_foot_of_rows(
    affected: list[str], code: dict[str, str | int], tmp_path: Path
) -> None:
    table = pd.DataFrame({"Affected side": affected, "Foot": STRIDES["foot"].map(code)})
    text = suggested(tmp_path, table.join(STRIDES[["hs", "gct"]]))
    assert '[feet]\ncolumn = "Foot"' in text


def test_a_side_of_the_person_does_not_hide_columns_for_each_foot(tmp_path: Path) -> None:
    table = pd.DataFrame({"Affected side": ["right"] * 12})
    for foot in ("left", "right"):
        own = STRIDES[STRIDES["foot"] == foot]
        table[[f"{foot} strike", f"{foot} stride time"]] = own[["hs", "gct"]].to_numpy()
    text = suggested(tmp_path, table)
    assert 'gct = "{foot} stride time"' in text
    assert '"Affected side"' not in text.split("Not placed")[0]


def test_a_constant_foot_is_asked_about(tmp_path: Path) -> None:
    text = suggested(tmp_path, STRIDES[STRIDES["foot"] == "left"][["foot", "hs", "gct"]])
    assert ' feet: "foot" is "left" in every row. Are all rows of that foot, or' in text
    assert '[feet]\ncolumn = "foot"' in text


def test_a_number_of_strides_tells_no_walks_apart(tmp_path: Path) -> None:
    one = PLAIN.head(12)
    table = pd.concat([one] * 3)
    table["Subject"] = np.repeat(["S1", "S2", "S3"], len(one))
    table["Stride ID"] = table.groupby(["Subject", "foot"]).cumcount() + 1
    assert 'walk = ["Subject"]' in suggested(tmp_path, table)


@pytest.mark.parametrize(
    ("name", "walk"),
    [("Pass", "Pass"), ("Bahn", "Bahn"), (None, "{restart of hs}")],
)
def test_passes_whose_times_begin_anew_are_not_sorted(
    name: str | None, walk: str, tmp_path: Path
) -> None:
    short = STRIDES[["foot", "hs"]].head(8 if name == "Pass" else 4)
    table = pd.concat([short] * 5)
    if name:
        table[name] = np.repeat(range(1, 6), len(short))
    text = suggested(tmp_path, table)
    assert f'walk = ["{walk}"]' in text
    assert "sort" not in text


def test_names_are_found_above_a_single_column_of_numbers(tmp_path: Path) -> None:
    strikes = STRIDES[["foot", "hs"]].assign(subject="S1", event="heel strike")
    offs = strikes.assign(hs=strikes["hs"] + 0.66, event="toe off")
    table = pd.concat([strikes, offs]).sort_values("hs")
    assert '[events]\ncolumn = "event"' in suggested(tmp_path, table)
