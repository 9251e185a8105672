"""Units as people write them, in names and beside numbers, and signs between thousands."""

from __future__ import annotations

from pathlib import Path
from typing import Any

import pandas as pd
import pytest
from conftest import values_of
from tables_to_import import in_time_order, strides_of_both_feet

import gait_statistics as gs
from gait_statistics._import._fields import FIELDS
from gait_statistics._import._suggest import suggested_map
from gait_statistics._import._units import UNITS, factor_to, fits, unit_in_name

STRIDES = in_time_order(strides_of_both_feet())
ALONE: dict[str, Any] = {"feet": {"only": "left"}, "times": "end to end"}

# Each spelling is one of the unit on its left.
SPELLINGS = {
    "%": "% GC|%GC|% of gait cycle|% stride|percent of stride|Prozent|% Gangzyklus|% du cycle",
    "s": "s.|sec|sec.|secs|seconds|Sekunden|secondes",
    "ms": "ms.|msec|millisec|milliseconds|Millisekunden",
    "m": "Meter|metres|meters|mètres",
    "cm": "cm.|centimetres|centimeters|Zentimeter",
    "deg": "°|degs|degrees|Grad",
    "deg/s": "°/s|deg/sec|degrees per second|deg s-1|deg·s⁻¹|Grad/s|dps",
    "m/s": "m/sec|m/s.|m s-1|m.s-1|m·s⁻¹|m s^-1|metres per second|mps",
    "cm/s": "cm./sec.|cm/sec",
    "km/h": "kmh|KM/H|km.h-1",
    "m/s^2": "m/s²|m/s2|m.s-2",
    "steps/min": "steps per minute|Schritte/Min.|pas/min|spm",
}


@pytest.mark.parametrize("unit", SPELLINGS)
def test_a_unit_is_known_in_all_its_spellings(unit: str) -> None:
    for spelling in SPELLINGS[unit].split("|"):
        assert factor_to(spelling, unit) == pytest.approx(1.0), spelling
        assert unit_in_name(f"Column ({spelling})") == spelling


@pytest.mark.parametrize(("own", "unit", "factor", "others"), UNITS)
def test_a_unit_of_the_page_is_understood_in_each_spelling(
    own: str, unit: str, factor: float, others: str
) -> None:
    for spelling in (unit, *others.split(", ")):
        assert factor_to(spelling, own) == pytest.approx(factor, rel=1e-12), spelling
        assert factor_to(spelling.upper(), own) == pytest.approx(factor, rel=1e-12), spelling


@pytest.mark.parametrize(("name", "own"), [(field.name, field.unit) for field in FIELDS])
def test_the_page_lists_a_unit_for_every_column(name: str, own: str) -> None:
    listed = [unit for _, unit, _, _ in UNITS if factor_to(unit, own)]
    assert listed
    assert all(fits(name, unit) for unit in listed)


def test_a_share_of_something_else_is_no_length() -> None:
    assert factor_to("% height", "m") is None


def walk_of(cells: list[Any], name: str = "gct", **column: Any) -> gs.Walk:
    """A walk whose durations stand in these cells."""
    columns = {"gct": {"column": name, **column}}
    (walk,) = gs.import_tables(pd.DataFrame({name: cells}), {**ALONE, "columns": columns})
    return walk


def errors_of(cells: list[Any], name: str = "gct", **column: Any) -> list[str]:
    with pytest.raises(gs.WalkError) as raised:
        walk_of(cells, name, **column)
    return [str(error) for error in raised.value.errors]


def test_a_unit_beside_all_numbers_is_that_of_the_column() -> None:
    assert values_of(walk_of(["1050 ms", "1060ms", ""]).strides)["gct"][:2] == [1.05, 1.06]
    assert values_of(walk_of(["1,05 s", "1,063 s"]).strides)["gct"] == [1.05, 1.063]
    for name, column in (("gct (s)", {}), ("gct", {"unit": "sec"})):
        walk = walk_of(["1.05 s", "1.06"], name, **column)
        assert values_of(walk.strides)["gct"] == [1.05, 1.06]


def test_a_comma_beside_a_unit_is_asked_about_where_it_may_be_either() -> None:
    (error,) = errors_of(["1,050 ms", "1,060 ms"])
    assert error.endswith('[table] decimal = "," or thousands = ","')


def test_units_that_differ_are_an_error() -> None:
    (error,) = errors_of(["1.05 s", "1060 ms", "1.07 s"])
    assert error == (
        'table 1, row 1, column gct: found "1060 ms", expected "s", as beside the first number: '
        "give all cells the same unit"
    )
    (error,) = errors_of(["1.05 s", 1060.0])
    assert 'found "1060.0", expected "s" beside it, as beside others; if that is its' in error
    assert errors_of(["1.05 s", 1060.0], missing=[-1]) == [error]


@pytest.mark.parametrize(("name", "column"), [("gct (s)", {}), ("gct", {"unit": "s"})])
def test_a_unit_beside_numbers_that_is_not_the_columns_is_an_error(
    name: str, column: dict[str, str]
) -> None:
    (error,) = errors_of(["1050 ms", "1060 ms"], name, **column)
    assert 'found "1050 ms", expected "s", as the column has it' in error
    assert error.endswith('gct = {column = ..., unit = "ms"} (and in 1 more row: row 1)')


def test_codes_for_missing_need_no_unit() -> None:
    table = pd.DataFrame({"gct": ["1.05 s", "1.06 s"], "speed": ["1.2 m/s", "-1"]})
    columns = {"gct": "gct", "speed": "speed"}
    (walk,) = gs.import_tables(table, {**ALONE, "columns": columns, "missing": [-1]})
    assert values_of(walk.strides)["speed"] == [1.2, None]


@pytest.mark.parametrize("sign", [" ", "\u00a0", "\u202f", "'", "\u2019"])
def test_blanks_and_apostrophes_between_thousands_are_seen(sign: str, tmp_path: Path) -> None:
    cells = [f"1{sign}050", f"1{sign}060,5", "990"]
    assert values_of(walk_of(cells, unit="ms").strides)["gct"] == [1.05, 1.0605, 0.99]
    path = tmp_path / "t.csv"
    rows = "".join(f"left;{cell}\n" for cell in cells)
    path.write_text("foot;Stride time\n" + rows, encoding="utf-8")
    assert 'gct = {column = "Stride time", unit = "ms"}' in suggested_map([str(path)])


def test_several_signs_between_thousands_are_asked_about() -> None:
    first, second = errors_of(["1 050", "1'060"], unit="ms")
    assert 'found "1 050", expected a number: say [table] thousands = " "' in first
    assert second.endswith('thousands = "\'"')


def test_a_suggested_map_has_the_units_of_names_and_cells(tmp_path: Path) -> None:
    table = pd.DataFrame(
        {
            "foot": ["left", "right"] * 3,
            "Strike": ["0.52 s", "1.05 s", "1.56 s", "2.10 s", "2.62 s", "3.16 s"],
            "Stride time": ["1040 ms", "1050 ms", "1060 ms", "1060 ms", "1050 ms", "1040 ms"],
            "Swing % GC": [38.1, 38.2, 38.3, 38.4, 38.5, 38.6],
            "Velocity cm/s": [119.8, 119.1, 119.2, 117.8, 118.5, 119.0],
        }
    )
    table.to_csv(tmp_path / "t.csv", index=False)
    text = suggested_map([str(tmp_path / "t.csv")])
    assert 'hs = "Strike"\n' in text
    assert 'gct = {column = "Stride time", unit = "ms"}  # unit beside the numbers\n' in text
    assert 'swing = "Swing % GC"\n' in text
    assert 'speed = {column = "Velocity cm/s", unit = "cm/s"}  # unit by its name: cm/s' in text


def test_a_suggested_map_says_that_it_guesses_what_a_comma_is(tmp_path: Path) -> None:
    rows = "".join(f"left;{number},520;1,05{number}\n" for number in range(5))
    (tmp_path / "t.csv").write_text("foot;Strike;Stride time\n" + rows)
    text = suggested_map([str(tmp_path / "t.csv")])
    assert 'decimal = ","   # a guess; or thousands = ",": confirm' in text


# ---- Units that nobody says, guessed by values


def suggestion_for(folder: Path, **columns: pd.Series[float]) -> str:
    """The suggested map for a walk with more columns."""
    table = STRIDES[["foot", "hs"]].assign(**columns)
    table.to_csv(folder / "t.csv", index=False)
    return suggested_map([str(folder / "t.csv")])


@pytest.mark.parametrize(
    ("scale", "expected"),
    [
        (0.001, '{column = "Contact time", unit = "s"}  # a guess by the median 0.65: confirm'),
        (1.0, '"Contact time"'),
        (0.1 / 1.05, '{column = "Contact time", unit = "%"}  # a guess by the median 61.9'),
    ],
)
def test_the_unit_of_a_contact_is_guessed_by_its_values(
    scale: float, expected: str, tmp_path: Path
) -> None:
    columns = {"Stride": STRIDES["gct"], "Contact time": STRIDES["contact"] * scale}
    assert f"contact = {expected}" in suggestion_for(tmp_path, **columns)


def test_swing_and_stance_are_shares_or_times_by_their_sum(tmp_path: Path) -> None:
    stance, swing, gct = STRIDES["stance"], STRIDES["swing"], STRIDES["gct"]
    shares = {"Stride": gct, "Stance": stance / 100, "Swing": swing / 100}
    text = suggestion_for(tmp_path, **shares)
    assert 'stance = {column = "Stance", unit = "1"}  # a guess by the median' in text
    times = {"Stride": gct, "Stance": stance / 100 * gct, "Swing": swing / 100 * gct}
    text = suggestion_for(tmp_path, **times)
    assert 'stance = {column = "Stance", unit = "s"}  # a guess by the median 0.65: confirm' in text
    alone = suggestion_for(tmp_path, **{"Stride": gct, "Stance": stance / 100})
    assert 'unit = "1"}  # a guess by the median 0.619048, or "s": confirm' in alone
    mixed = suggestion_for(tmp_path, **{**shares, "Swing": swing})
    assert 'stance = {column = "Stance", unit = "1"}' in mixed
    assert 'swing = "Swing"' in mixed


def test_the_unit_of_strikes_is_guessed_by_their_distances(tmp_path: Path) -> None:
    since_1970 = (STRIDES["hs"] + 1.7e9) * 1000 + 0.5
    text = suggestion_for(tmp_path, hs=since_1970, gct=STRIDES["gct"])
    assert 'hs = {column = "hs", unit = "ms"}  # a guess by its distances: confirm' in text
    assert 'times = "from the first"' in text


def test_a_whole_number_beside_commas_tells_that_they_are_between_thousands(
    tmp_path: Path,
) -> None:
    (tmp_path / "t.csv").write_text('foot,Strike (ms)\nleft,"700"\nleft,"1,755"\nleft,"2,817"\n')
    text = suggested_map([str(tmp_path / "t.csv")])
    assert 'thousands = ","   # a guess; or decimal = ",": confirm' in text
