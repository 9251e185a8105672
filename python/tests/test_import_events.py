"""Tables with a row for each event become strides, from strike to strike of a foot."""

from __future__ import annotations

from pathlib import Path
from typing import Any

import pandas as pd
import pytest
from conftest import values_of
from tables_to_import import in_time_order, strides_of_both_feet

import gait_statistics as gs
from gait_statistics._import._events import known_event
from gait_statistics._import._suggest import suggested_map

STRIDES = in_time_order(strides_of_both_feet())
KNOWN = STRIDES.sort_values(["foot", "hs"])
DERIVED = ["gct", "contact", "stance", "swing"]
MAP: dict[str, Any] = {
    "feet": {"column": "foot"},
    "events": {"column": "event"},
    "columns": {"hs": "time"},
    "derive": DERIVED,
}


def events_of(strides: pd.DataFrame = STRIDES) -> pd.DataFrame:
    """The events of strides; those that end the last strides of each foot are there, too."""
    last = strides.groupby("foot").tail(1)
    parts = [
        pd.DataFrame({"foot": table["foot"], "event": word, "time": table[column]})
        for table, word, column in (
            (strides, "heel strike", "hs"),
            (strides, "toe off", "lift_off"),
            (last, "heel strike", "end"),
        )
    ]
    return pd.concat(parts).sort_values("time").reset_index(drop=True)


def walk_of(table: pd.DataFrame, **keys: Any) -> gs.Walk:
    (walk,) = gs.import_tables(table, {**MAP, **keys})
    return walk


def errors_of(table: pd.DataFrame, **keys: Any) -> list[str]:
    with pytest.raises(gs.WalkError) as raised:
        walk_of(table, **keys)
    return [str(error) for error in raised.value.errors]


def assert_known(walk: gs.Walk, names: tuple[str, ...] = tuple(DERIVED)) -> None:
    found = values_of(walk.strides)
    for name in ("first_sample", "last_sample", *names):
        assert found[name] == pytest.approx(KNOWN[name].tolist())


def notes_of(walk: gs.Walk) -> list[str]:
    rows = values_of(walk.about)
    pairs = zip(rows["name"], rows["value"], strict=True)
    return [value for name, value in pairs if name == "note"]


def test_strides_go_from_strike_to_strike_with_the_lift_off_between() -> None:
    assert_known(walk_of(events_of()))


def test_events_may_stand_in_any_order_of_feet_and_kinds() -> None:
    assert_known(
        walk_of(events_of().sort_values(["event", "foot", "time"], ascending=[False, True, True]))
    )
    shuffled = events_of().sample(frac=1.0, random_state=1)
    assert any("is not after the one above it" in error for error in errors_of(shuffled))
    assert_known(walk_of(shuffled, sort=True))


@pytest.mark.parametrize(
    ("strike", "lift_off"),
    [
        ("HS", "TO"),
        ("IC", "FC"),
        ("Initial contact", "Final contact"),
        ("foot_strike", "foot_off"),
        ("HeelStrike", "ToeOff"),
        ("Fersenkontakt", "Zehenablösung"),
        ("Left heel strike", "right toe-off"),
        ("LHS", "RTO"),
        ("contact initial gauche", "décollement des orteils"),
    ],
)
def test_words_for_events_are_known(strike: str, lift_off: str) -> None:
    assert (known_event(strike), known_event(lift_off)) == ("strike", "lift_off")


@pytest.mark.parametrize("word", ["turn", "mid stance", "foot flat", "", "12", "stop"])
def test_other_words_are_no_events(word: str) -> None:
    assert known_event(word) is None


def test_the_maps_own_words_take_the_place_of_those_that_are_known() -> None:
    table = events_of()
    table["event"] = table["event"].map({"heel strike": 1, "toe off": 2})
    errors = errors_of(table)
    assert errors[0].startswith('table 1, row 0, column event: found "1", expected a strike or')
    assert "[events] strike = ..., lift_off = ..." in errors[0]
    assert_known(walk_of(table, events={"column": "event", "strike": 1, "lift_off": 2}))
    swapped = {"column": "event", "strike": "toe off"}
    assert 'found "heel strike"' in errors_of(events_of(), events=swapped)[0]


def test_other_events_are_errors_until_they_are_left_out() -> None:
    turn = pd.DataFrame({"foot": ["left"], "event": ["turn"], "time": [6.0]})
    table = pd.concat([events_of(), turn], ignore_index=True)
    (error,) = errors_of(table)
    assert error.endswith('[[skip]] column = "event", is = ["turn"] leaves other events out')
    assert_known(walk_of(table, skip=[{"column": "event", "is": "turn"}]))


def test_feet_may_be_told_by_the_events() -> None:
    letters = {"heel strike": "HS", "toe off": "TO"}
    table = events_of()
    table["event"] = table["foot"].str[0].str.upper() + table["event"].map(letters)
    feet = {"column": "event", "left": ["LHS", "LTO"], "right": ["RHS", "RTO"]}
    assert_known(walk_of(table.drop(columns="foot"), feet=feet))


def test_strikes_alone_make_strides_without_phases() -> None:
    strikes = events_of().query("event == 'heel strike'")
    assert_known(walk_of(strikes, derive=["gct"]), ("gct",))


def test_a_lift_off_that_is_missing_leaves_the_stride_without_phases() -> None:
    table = events_of()
    lost = table.index[(table["event"] == "toe off") & (table["foot"] == "left")][3]
    walk = walk_of(table.drop(index=lost))
    contact = values_of(walk.strides)["contact"]
    assert [at for at, value in enumerate(contact) if value is None] == [3]
    assert "1 stride without a lift-off" in notes_of(walk)


def test_no_stride_goes_over_a_strike_that_is_missing() -> None:
    table = events_of()
    lost = table.index[(table["event"] == "heel strike") & (table["foot"] == "left")][3]
    walk = walk_of(table.drop(index=lost))
    found = values_of(walk.strides)["first_sample"][:10]
    known = STRIDES[STRIDES["foot"] == "left"]["first_sample"].tolist()
    assert found == [*known[:2], *known[4:]]
    assert any("several lift-offs of the foot" in note for note in notes_of(walk))


def test_a_stride_over_a_pause_is_a_warning() -> None:
    table = events_of()
    table["time"] += 5.0 * (table["time"] > 7.0)
    with pytest.warns(gs.WalkWarning, match="is a contact missing, or is there a pause"):
        walk_of(table)


def test_each_foot_may_have_its_own_column_of_events(tmp_path: Path) -> None:
    table = events_of()
    for foot in ("left", "right"):
        table[f"{foot.title()} event"] = table["event"].where(table["foot"] == foot)
    table = table.drop(columns=["foot", "event"])
    feet = {"left": "Left", "right": "Right"}
    assert_known(walk_of(table, feet=feet, events={"column": "{foot} event"}))
    table.to_csv(tmp_path / "t.csv", index=False)
    text = suggested_map([str(tmp_path / "t.csv")])
    assert '[events]\ncolumn = "{foot} event"' in text
    (tmp_path / "m.toml").write_text(text)
    (walk,) = gs.import_tables(tmp_path / "t.csv", tmp_path / "m.toml")
    assert_known(walk)
    table.loc[3, "Left event"] = "turn"
    (error,) = errors_of(table, feet=feet, events={"column": "{foot} event"})
    assert 'column Left event: found "turn"' in error


def test_times_that_begin_anew_are_an_error_until_walks_are_told_apart() -> None:
    table = pd.concat([events_of().assign(trial=trial) for trial in (1, 2)], ignore_index=True)
    (error,) = errors_of(table)
    assert "found a left strike at 0.52 s, which is not after the one above it" in error
    for walk in gs.import_tables(table, {**MAP, "walk": "trial"}):
        assert_known(walk)


def test_what_does_not_go_with_events_is_an_error_of_the_map() -> None:
    map_ = {"feet": {"first": "left"}, "events": {"strike": "HS"}, "columns": {"lift_off": "x"}}
    with pytest.raises(gs.WalkError) as raised:
        gs.import_tables(events_of(), map_)
    said = [str(error) for error in raised.value.errors]
    assert [error.partition(": found")[0] for error in said] == [
        "map: [events] column",
        "map: [columns] hs",
        "map: [columns] lift_off",
        "map: [feet] first",
    ]


@pytest.mark.parametrize("form", ["words", "letters", "samples"])
def test_a_suggested_map_sees_a_list_of_events(form: str, tmp_path: Path) -> None:
    table = events_of()
    if form == "letters":
        letters = {"heel strike": "IC", "toe off": "FC"}
        table["event"] = table["foot"].str[0].str.upper() + table["event"].map(letters)
        table = table.drop(columns="foot")
    elif form == "samples":
        table["time"] = (table["time"] * 100).round().astype(int)
        table = table.rename(columns={"time": "Sample"})
    table.to_csv(tmp_path / "t.csv", index=False)
    (tmp_path / "m.toml").write_text(suggested_map([str(tmp_path / "t.csv")]))
    rate = ["sampling_rate=100"] if form == "samples" else []
    (walk,) = gs.import_tables(tmp_path / "t.csv", tmp_path / "m.toml", settings=rate)
    assert_known(walk)
