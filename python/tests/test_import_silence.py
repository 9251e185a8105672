"""What would give wrong figures is never passed over without a word."""

from __future__ import annotations

import warnings
from pathlib import Path
from typing import Any

import pandas as pd
import pytest
from conftest import values_of
from tables_to_import import in_time_order, strides_of_both_feet

import gait_statistics as gs
from gait_statistics._import._suggest import suggested_map

STRIDES = in_time_order(strides_of_both_feet())
MAP: dict[str, Any] = {"feet": {"column": "foot"}, "columns": {"hs": "hs", "gct": "gct"}}


def said_of(table: Any, **keys: Any) -> tuple[gs.Walk, list[str]]:
    with warnings.catch_warnings(record=True) as said:
        warnings.simplefilter("always")
        (walk,) = gs.import_tables(table, {**MAP, **keys})
    return walk, [str(one.message) for one in said]


def excluded(walk: gs.Walk) -> int:
    return 0 if walk.exclusions is None else len(values_of(walk.exclusions)["index"])


# ---- Exclusions that leave nothing out


def test_times_are_those_of_the_table_where_the_walk_counts_from_the_first() -> None:
    own, _ = said_of(STRIDES, exclude=[{"times": [[3.0, 4.0]]}])
    late = STRIDES.assign(hs=STRIDES["hs"] + 100)
    for keys in ({}, {"times": "from the first"}):
        walk, said = said_of(late, exclude=[{"times": [[103.0, 104.0]]}], **keys)
        assert excluded(walk) == excluded(own) > 0
        assert not said
    walk, said = said_of(late, exclude=[{"times": [[3.0, 4.0]]}], times="from the first")
    assert excluded(walk) == 0
    assert said[0].startswith("map: [[exclude]] times: no stride touches 3.0 to 4.0 s; the walk ")
    assert "the walk goes from 100.52 to " in said[0]


@pytest.mark.parametrize("span", [["10:00:03", "10:00:04"], [2.5, 3.5]])
def test_times_of_a_day_are_texts_and_numbers_count_from_the_first(span: list[Any]) -> None:
    clock = (pd.Timestamp("2024-12-24 10:00") + pd.to_timedelta(STRIDES["hs"], unit="s")).dt
    table = STRIDES.assign(hs=clock.strftime("%H:%M:%S.%f"))
    own, _ = said_of(STRIDES, exclude=[{"times": [[3.0, 4.0]]}])
    walk, said = said_of(table, exclude=[{"times": [span]}])
    assert (excluded(walk), said) == (excluded(own), [])
    _, said = said_of(table, exclude=[{"times": [[103, 104]]}])
    assert "counted from its first strike; the table's own times are texts" in said[0]


@pytest.mark.parametrize("section", ["skip", "exclude"])
def test_a_condition_that_no_row_meets_is_a_warning(section: str) -> None:
    _, said = said_of(STRIDES, **{section: [{"column": "foot", "is": "turn"}]})
    assert said == [f'map: [[{section}]] column "foot": found no row with is = "turn"']


# ---- Times


def test_durations_come_from_the_samples_of_the_table_at_a_rate_that_is_not_whole() -> None:
    table = STRIDES[["foot", "first_sample", "last_sample"]]
    columns = {"first_sample": "first_sample", "last_sample": "last_sample"}
    walk, _ = said_of(table, columns=columns, derive=["gct", "hs"], sampling_rate=204.8)
    known = table.sort_values(["foot", "first_sample"])
    length = known["last_sample"] - known["first_sample"] + 1
    assert values_of(walk.strides)["gct"] == (length / 204.8).tolist()
    assert values_of(walk.strides)["hs"] == (known["first_sample"] / 204.8).tolist()


def test_dates_keep_their_hundredths() -> None:
    times = pd.Timestamp("2024-12-24 10:00:00.52") + pd.to_timedelta(STRIDES["hs"], unit="s")
    walk, _ = said_of(STRIDES.assign(hs=times.dt.strftime("%Y-%m-%d %H:%M:%S.%f")))
    found = values_of(walk.strides)["hs"]
    assert found == [round(value, 2) for value in found]


# ---- Rows that do not fit each other


def errors_of(table: Any, **keys: Any) -> list[str]:
    with pytest.raises(gs.WalkError) as raised:
        gs.import_tables(table, {**MAP, **keys})
    return [str(error) for error in raised.value.errors]


def test_durations_in_the_row_of_the_strike_that_ends_them_are_an_error() -> None:
    before = STRIDES.groupby("foot")["gct"].shift(1)
    table = STRIDES.assign(gct=before)
    (error,) = errors_of(table[before.notna()])
    assert 'rows = "footfalls" and gct = {column = "gct", row = "next of foot"}' in error
    columns = {"hs": "hs", "gct": {"column": "gct", "row": "next of foot"}}
    walk, _ = said_of(table, columns=columns, rows="footfalls")
    known = STRIDES[STRIDES["foot"] == "left"]["gct"].tolist()[:-1]
    assert values_of(walk.strides)["gct"][: len(known)] == known


@pytest.mark.parametrize("scale", [1, 1000])
def test_a_suggested_map_takes_durations_from_the_strike_that_ends_them(
    scale: int, tmp_path: Path
) -> None:
    before = STRIDES.groupby("foot")[["gct", "slength"]].shift(1) * scale
    unit = {1: "", 1000: " (ms)"}[scale]
    table = STRIDES[["foot", "hs"]].assign(**{f"Stride time{unit}": before["gct"]})
    table["Stride length"] = before["slength"]
    table.to_csv(tmp_path / "t.csv", index=False)
    text = suggested_map([str(tmp_path / "t.csv")])
    assert 'rows = "footfalls"' in text
    (tmp_path / "m.toml").write_text(text)
    (walk,) = gs.import_tables(tmp_path / "t.csv", tmp_path / "m.toml")
    known = STRIDES.groupby("foot").head(11).sort_values(["foot", "first_sample"])
    for name in ("gct", "slength"):
        assert values_of(walk.strides)[name] == pytest.approx(known[name].tolist())


def test_a_suggested_map_remarks_durations_that_fit_no_strikes(tmp_path: Path) -> None:
    for factor, is_said in ((1.0, False), (0.5, True)):
        table = STRIDES[["foot", "hs"]].assign(stride=STRIDES["gct"] * factor)
        table.to_csv(tmp_path / "t.csv", index=False)
        text = suggested_map([str(tmp_path / "t.csv")])
        assert ("fit the distance of the foot's strikes (hs) neither" in text) == is_said
        assert "footfalls" not in text


def test_a_suggested_map_proposes_missing_values_for_their_columns(tmp_path: Path) -> None:
    table = STRIDES[["foot", "hs", "gct", "speed", "stance"]].copy()
    table.loc[3, "speed"] = 0
    table.loc[[4, 5], "stance"] = -1
    table.to_csv(tmp_path / "t.csv", index=False)
    text = suggested_map([str(tmp_path / "t.csv")])
    assert 'speed = {column = "speed", missing = [0]}' in text
    assert 'stance = {column = "stance", missing = [-1]}' in text
    assert "\nmissing = " not in text
    (tmp_path / "m.toml").write_text(text)
    (walk,) = gs.import_tables(tmp_path / "t.csv", tmp_path / "m.toml")
    assert values_of(walk.strides)["stance"].count(None) == 2
    both = table.assign(gct=["n.d.", *table["gct"][1:]], speed=["n.d.", *table["speed"][1:]])
    both[["gct", "speed"]].to_csv(tmp_path / "t.csv", index=False)
    text = suggested_map([str(tmp_path / "t.csv")])
    assert 'missing = ["n.d."]\n' in text
    assert 'speed = {column = "speed", missing = ["n.d.", 0]}' in text


def test_a_row_takes_the_column_of_its_foot() -> None:
    own = STRIDES[["foot", "hs", "gct"]].copy()
    is_left = own["foot"] == "left"
    own["L speed"] = STRIDES["speed"].where(is_left, 9.0)
    own["R speed"] = STRIDES["speed"].where(~is_left, 0.0)
    speed = {"left": "L speed", "right": "R speed"}
    walk, _ = said_of(own, columns={**MAP["columns"], "speed": speed})
    known = STRIDES.sort_values(["foot", "first_sample"])
    for name in ("first_sample", "gct", "speed"):
        assert values_of(walk.strides)[name] == pytest.approx(known[name].tolist())
    columns = {"hs": "hs", "gct": "gct", "speed": speed}
    (error,) = errors_of(own, columns=columns, feet={"first": "left"})
    assert "found rows that alternate, and columns for each foot" in error


def test_a_file_of_each_foot_may_name_its_columns_by_the_foot() -> None:
    tables = {
        foot: STRIDES[STRIDES["foot"] == foot][["hs", "gct"]].add_prefix(f"{foot} ")
        for foot in ("left", "right")
    }
    columns = {"hs": "{foot} hs", "gct": "{foot} gct"}
    (walk,) = gs.import_tables(tables, {"feet": {"by": "files"}, "columns": columns})
    known = STRIDES.sort_values(["foot", "first_sample"])
    assert values_of(walk.strides)["gct"] == known["gct"].tolist()


def test_a_suggested_map_takes_no_column_of_one_foot_for_both(tmp_path: Path) -> None:
    table = STRIDES[["foot", "hs", "gct"]].assign(**{"Step length left": 0.6})
    table["Step length right"] = 0.7
    table.to_csv(tmp_path / "t.csv", index=False)
    assert "step_length = " not in suggested_map([str(tmp_path / "t.csv")])


@pytest.mark.parametrize("order", ["newest first", "any"])
def test_contacts_in_no_order_are_put_into_it_on_request(order: str, tmp_path: Path) -> None:
    newest = STRIDES[["foot", "hs"]].sort_values("hs", ascending=False)
    table = newest if order == "newest first" else newest.sample(frac=1, random_state=3)
    keys = {"columns": {"hs": "hs"}, "rows": "footfalls", "derive": ["gct"]}
    assert any("sort = true puts rows in order of time" in one for one in errors_of(table, **keys))
    walk, said = said_of(table, **keys, sort=True)
    known = STRIDES.groupby("foot").head(11).sort_values(["foot", "first_sample"])
    assert values_of(walk.strides)["first_sample"] == known["first_sample"].tolist()
    assert not said
    table.to_csv(tmp_path / "t.csv", index=False)
    assert "sort = true  # the rows are not in order" in suggested_map([str(tmp_path / "t.csv")])


def test_strides_that_fall_name_sort_in_their_finding() -> None:
    _, said = said_of(STRIDES.iloc[::-1])
    assert all("In the map: sort = true; or" in one for one in said if "time_order" in one)
    assert any("time_order" in one for one in said)


def test_times_in_whole_seconds_are_a_warning() -> None:
    begin = pd.Timestamp("2026-03-04T10:00:00")
    times = [f"{begin + pd.Timedelta(seconds=hs):%Y-%m-%dT%H:%M:%S}" for hs in STRIDES["hs"]]
    keys = {"columns": {"hs": "hs"}, "rows": "footfalls", "derive": ["gct"], "pairs": "none"}
    _, said = said_of(STRIDES.assign(hs=times), **keys)
    assert any("hs: found times in whole seconds alone" in one for one in said)


def test_strides_of_a_foot_that_overlap_are_an_error() -> None:
    table = STRIDES.copy()
    table.loc[[6, 7], "foot"] = table.loc[[7, 6], "foot"].tolist()
    errors = errors_of(table)
    assert "before the foot's one from" in errors[0]
    assert "is the foot of a row wrong" in errors[0]


def test_strides_whose_times_are_made_up_may_overlap() -> None:
    """As those of a map that gives both strides of a row the end of the left one."""
    table = pd.DataFrame({"end": [2.0, 3.0, 4.0], "left": 1.0, "right": [1.0, 1.0, 1.5]})
    map_ = {
        "feet": {"by": "columns"},
        "columns": {"end": "end", "gct": {"left": "left", "right": "right"}},
        "pairs": "rows",
    }
    with pytest.raises(gs.WalkError, match="before the foot's one from"):
        gs.import_tables(table, map_)
    checks = ["strides_in_time_order", "linked_strides_overlap", "left_opens_within_right"]
    (walk,) = gs.import_tables(table, {**map_, "without_checks": checks})
    assert len(values_of(walk.strides)["gct"]) == 6


def test_a_row_that_is_there_twice_is_an_error() -> None:
    twice = pd.concat([STRIDES, STRIDES.iloc[[4]]], ignore_index=True)
    (error,) = errors_of(twice, sort=True)
    assert "found the same stride as in row 4, expected it once: [[skip]] lines = [24]" in error


@pytest.mark.parametrize(
    ("row", "text"),
    [
        ("left,2.62,1,05", "4 cells, expected 3: a decimal comma in a table separated by commas?"),
        ("left,2.62", "2 cells, expected 3; [[skip]] lines = [4] leaves rows out"),
    ],
)
def test_a_row_with_more_or_fewer_cells_than_names_is_an_error(
    tmp_path: Path, row: str, text: str
) -> None:
    path = tmp_path / "t.csv"
    rows = ["foot,hs,gct", "left,0.52,1.04,,", "left,1.56,1.06", row, "", "Printed by a program"]
    path.write_text("\n".join(rows))
    assert f"t.csv:4: found {text}" in errors_of(path, skip=[{"lines": [6]}])
    said_of(path, skip=[{"lines": [4, 6]}])


def test_a_number_with_a_mark_is_not_suggested_as_missing(tmp_path: Path) -> None:
    speed = [f"{value:.2f}" for value in STRIDES["speed"]]
    table = STRIDES[["foot", "hs", "gct"]].assign(speed=["*1.26", *speed[1:]])
    table.to_csv(tmp_path / "t.csv", index=False)
    text = suggested_map([str(tmp_path / "t.csv")])
    assert '# speed: "*1.26" has a mark beside its number' in text
    assert "missing = " not in text
