"""What does not fit together in a table is said, with the line of the map that mends it."""

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
TIMES = {"hs": "hs", "gct": "gct"}
SAMPLES = {"first_sample": "start", "last_sample": "end"}


def map_with(columns: dict[str, Any], **keys: Any) -> dict[str, Any]:
    return {"feet": {"column": "foot"}, "columns": columns, **keys}


def errors_of(table: Any, map_: Any) -> list[str]:
    with pytest.raises(gs.WalkError) as raised:
        gs.import_tables(table, map_)
    return [str(error) for error in raised.value.errors]


def warning_of(table: pd.DataFrame, map_: dict[str, Any]) -> str:
    with pytest.warns(gs.WalkWarning) as said:
        gs.import_tables(table, map_)
    (text,) = [str(one.message) for one in said if "durations do not fit" in str(one.message)]
    return text


def suggestion_for(table: pd.DataFrame, folder: Path, name: str = "t.csv") -> str:
    table.to_csv(folder / name, index=False)
    return suggested_map([str(folder / name)])


# ---- Ends


def table_with_ends(late: int) -> pd.DataFrame:
    return pd.DataFrame(
        {
            "foot": STRIDES["foot"],
            "start": STRIDES["first_sample"],
            "end": STRIDES["last_sample"] + late,
        }
    )


def test_an_end_that_is_the_next_first_sample_is_an_error_that_says_add() -> None:
    map_ = map_with(SAMPLES, sampling_rate=100, derive=["gct"])
    (error,) = errors_of(table_with_ends(1), map_)
    assert "column end: found the left foot's next first_sample in it" in error
    assert error.endswith('In the map: last_sample = {column = "end", add = -1}')


def test_an_end_that_belongs_to_its_stride_is_taken_and_so_is_one_with_add() -> None:
    for late, add in ((0, None), (1, -1), (1, 0)):
        column: dict[str, object] = {"column": "end"}
        if add is not None:
            column["add"] = add
        map_ = map_with({**SAMPLES, "last_sample": column}, sampling_rate=100)
        gs.import_tables(table_with_ends(late), map_)


def test_a_suggested_map_takes_one_from_an_end_that_is_the_next_first_sample(
    tmp_path: Path,
) -> None:
    text = suggestion_for(table_with_ends(1), tmp_path)
    assert 'last_sample = {column = "end", add = -1}  # it is the foot\'s next' in text
    assert "# sampling_rate = ???   # fill in" in text
    assert 'last_sample = "end"\n' in suggestion_for(table_with_ends(0), tmp_path)


# ---- Durations


def test_step_times_as_stride_times_are_a_warning() -> None:
    text = warning_of(STRIDES.assign(gct=STRIDES["gct"] / 2), map_with(TIMES))
    assert "found 0.5 times the distance to the foot's next one (hs)" in text
    assert "are they step times" in text


def test_begins_in_milliseconds_that_are_counted_as_samples_are_a_warning() -> None:
    table = STRIDES.assign(time=STRIDES["hs"] * 1000)
    map_ = map_with({"first_sample": "time", "gct": "gct"}, sampling_rate=100)
    text = warning_of(table, map_)
    assert "found 0.1 times" in text
    assert 'hs = {column = ..., unit = "ms"} in place of first_sample' in text


def test_a_wrong_sampling_rate_is_named_where_durations_tell_it() -> None:
    map_ = map_with({"first_sample": "first_sample", "gct": "gct"}, sampling_rate=128)
    assert "is the sampling rate 100 Hz?" in warning_of(STRIDES, map_)


def test_a_walk_with_pauses_and_three_strides_raise_no_doubt() -> None:
    pauses = STRIDES.drop(index=[6, 7, 12, 13])
    gs.import_tables(pauses, map_with(TIMES))
    short = STRIDES[STRIDES["foot"] == "left"].head(3).assign(gct=lambda t: t["gct"] * 1.2)
    gs.import_tables(short, map_with(TIMES))


def test_a_column_of_times_is_not_suggested_as_samples(tmp_path: Path) -> None:
    for name in ("time_ms", "Time", "timestamp"):
        table = pd.DataFrame(
            {
                "foot": STRIDES["foot"],
                name: (STRIDES["hs"] * 1000).round().astype(int),
                "stride_ms": (STRIDES["gct"] * 1000).round().astype(int),
            }
        )
        text = suggestion_for(table, tmp_path)
        assert f'hs = {{column = "{name}", unit = "ms"}}' in text
        (tmp_path / "m.toml").write_text(text)
        (walk,) = gs.import_tables(tmp_path / "t.csv", tmp_path / "m.toml")
        known = STRIDES.sort_values(["foot", "first_sample"])
        assert values_of(walk.strides)["first_sample"] == known["first_sample"].tolist()


def test_a_unit_at_the_end_of_a_name_is_asked_for_where_it_is_another() -> None:
    times = {"start_ms": 1000 * STRIDES["hs"], "gct_s": STRIDES["gct"]}
    table = STRIDES[["foot"]].assign(**times)
    columns: dict[str, Any] = {"hs": "start_ms", "gct": "gct_s"}
    (error,) = errors_of(table, map_with(columns))
    assert 'column start_ms: found a name that ends in "ms", expected a word on' in error
    assert error.endswith('hs = {column = ..., unit = "ms"}, or unit = "s"')
    for said in ({"unit": "ms"}, {"factor": 0.001}):
        (walk,) = gs.import_tables(
            table, map_with({**columns, "hs": {"column": "start_ms", **said}})
        )
        assert values_of(walk.strides)["first_sample"][0] == 100 * STRIDES["hs"][0]


def test_whole_numbers_are_no_coarse_seconds_where_strides_are_too_long_for_seconds() -> None:
    table = STRIDES.assign(start=(1000 * STRIDES["hs"]).round())
    map_ = map_with(
        {"hs": "start"}, rows="footfalls", derive=["gct"], without_checks=["gct_median"]
    )
    with warnings.catch_warnings(record=True) as said:
        warnings.simplefilter("always")
        gs.import_tables(table, map_)
    assert not any("whole seconds" in str(one.message) for one in said)


def test_durations_of_the_stride_before_are_an_error_in_short_passes_and_coarse_times() -> None:
    walk = strides_of_both_feet(40)
    ends = walk.assign(gct=walk.groupby("foot")["gct"].shift(1)).dropna(subset="gct")
    # A pause follows each third strike of a foot.
    passes = ends.groupby("foot").cumcount() // 3
    coarse = (30 * ends["hs"]).round() / 30
    for hs in (ends["hs"] + 4.0 * passes, coarse):
        (error,) = errors_of(in_time_order(ends.assign(hs=hs)), map_with(TIMES))
        assert "column gct: found the distance to the foot's strike before" in error
    for hs in (walk["hs"], (10 * walk["hs"]).round() / 10):
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", gs.WalkWarning)
            gs.import_tables(in_time_order(walk.assign(hs=hs)), map_with(TIMES))


def test_overlaps_of_half_a_stride_are_errors_even_where_durations_are_in_doubt() -> None:
    late = STRIDES.assign(gct=0.9 * STRIDES["gct"])
    warning_of(late, map_with(TIMES))
    late.loc[6, "gct"] = 3.0
    errors = errors_of(late, map_with(TIMES))
    assert any("durations do not fit the begins of strides" in error for error in errors)
    assert any("before the foot's one from" in error for error in errors)


def test_contacts_that_run_backwards_name_breaks_before_sort() -> None:
    passes = pd.concat([STRIDES[["foot", "hs"]]] * 2, ignore_index=True)
    errors = errors_of(passes, map_with({"hs": "hs"}, rows="footfalls", derive=["gct"]))
    assert (
        "its end after its begin; where times begin anew with each pass, breaks = [...]"
        in (errors[0])
    )


# ---- Feet


@pytest.mark.parametrize(
    ("name", "left", "right"),
    [("Foot (1 = left)", 1, 0), ("Side (0=L,1=R)", 0, 1), ("Fuß [2: links]", 2, 1)],
)
def test_a_suggested_map_reads_the_codes_of_feet_in_the_columns_name(
    name: str, left: int, right: int, tmp_path: Path
) -> None:
    codes = STRIDES["foot"].map({"left": left, "right": right})
    text = suggestion_for(STRIDES[["hs", "gct"]].assign(**{name: codes}), tmp_path)
    assert f"\nleft = {left}  # by the column's name\nright = {right}  # by" in text


def test_a_suggested_map_does_not_run_before_someone_says_which_code_is_which_foot(
    tmp_path: Path,
) -> None:
    codes = STRIDES["foot"].map({"left": 2, "right": 1})
    text = suggestion_for(STRIDES[["hs", "gct"]].assign(foot=codes), tmp_path)
    assert "\n# left = 1  # or the other way round: decide" in text
    (tmp_path / "m.toml").write_text(text)
    errors = errors_of(tmp_path / "t.csv", tmp_path / "m.toml")
    assert any('say [feet] left = "1", right = "2", or the other way' in text for text in errors)


@pytest.mark.parametrize(
    "words",
    [
        ("Linker Fuß", "Rechter Fuß"),
        ("LF", "RF"),
        ("G", "D"),
        ("gauche", "droite"),
        ("izquierdo", "derecho"),
    ],
)
def test_a_suggested_map_knows_words_for_feet(words: tuple[str, str], tmp_path: Path) -> None:
    feet = STRIDES["foot"].map(dict(zip(("left", "right"), words, strict=True)))
    text = suggestion_for(STRIDES[["hs", "gct"]].assign(Pied=feet), tmp_path)
    assert f'left = "{words[0]}"\nright = "{words[1]}"\n' in text


def test_files_named_by_lf_and_rf_are_suggested_as_feet(tmp_path: Path) -> None:
    for foot, word in (("left", "LF"), ("right", "RF")):
        table = STRIDES.loc[STRIDES["foot"] == foot, ["hs", "gct"]]
        table.to_csv(tmp_path / f"P7_{word}.csv", index=False)
    paths = [str(tmp_path / f"P7_{word}.csv") for word in ("LF", "RF")]
    text = suggested_map(paths)
    assert 'by = "files"\nleft = "LF"\nright = "RF"\n' in text
    (tmp_path / "m.toml").write_text(text)
    (walk,) = gs.import_tables(paths, tmp_path / "m.toml")
    assert len(values_of(walk.strides)["gct"]) == len(STRIDES)


@pytest.mark.parametrize("form", ["StrideTime{}", "{}StrideTime", "strideTime{}", "stride_{}"])
def test_feet_are_found_in_names_without_spaces(form: str, tmp_path: Path) -> None:
    feet = {foot: STRIDES[STRIDES["foot"] == foot].reset_index() for foot in ("left", "right")}
    columns = {form.format(foot.title()): part["gct"] for foot, part in feet.items()}
    text = suggestion_for(pd.DataFrame(columns), tmp_path)
    assert 'left = "Left"\nright = "Right"\n' in text
    assert f'gct = "{form.format("{foot}")}"' in text


# ---- Rows of means


def rows_with_means(count: int = 10) -> pd.DataFrame:
    left = STRIDES[STRIDES["foot"] == "left"].head(count)
    return left[["foot", "hs", "gct", "speed", "slength"]].round(3).reset_index(drop=True)


ALONE = {
    "times": "end to end",
    "feet": {"only": "left"},
    "columns": {"gct": "gct", "speed": "speed", "slength": "slength"},
}


@pytest.mark.parametrize(
    "word",
    [
        "Ø",
        "MW",
        "Durchschnitt",
        "Moyenne",
        "Media",
        "StdAbw",
        "Mean ± SD",
        "Left mean",
        "Écart-type",
        "SD right",
    ],
)
def test_a_row_is_one_of_means_by_its_word(word: str) -> None:
    table = rows_with_means()
    table.loc[10] = [word, 0.9, 1.3, 1.0, 1.0]
    (error,) = errors_of(table, ALONE)
    assert f'found "{word}", expected a stride; to leave rows of means out: [[skip]]' in error


def test_a_last_row_of_means_without_a_word_is_an_error() -> None:
    table = rows_with_means()
    means = table[["hs", "gct", "speed", "slength"]].mean().round(4)
    table.loc[10] = ["left", *means]
    table.loc[11] = ["left", 0.01, 0.02, 0.03, 0.04]
    (error,) = errors_of(table, ALONE)
    assert "row 10: found the means of the rows above in" in error
    assert error.endswith("expected a stride; to leave it out: [[skip]] lines = [10, 11]")
    gs.import_tables(table, {**ALONE, "skip": [{"lines": [10, 11]}]})


def test_a_last_row_is_a_stride_where_its_values_are_near_the_mean_by_chance() -> None:
    for seed in range(20):
        table = strides_of_both_feet(12, seed).round({"speed": 2, "slength": 2, "gct": 2})
        gs.import_tables(table[table["foot"] == "left"], ALONE)


def test_last_rows_of_means_of_each_foot_are_an_error_for_each(tmp_path: Path) -> None:
    table = STRIDES[["foot", "gct", "speed", "slength"]].round(2)
    means = table.groupby("foot").mean().round(2).reset_index()
    text = pd.concat([table, means]).to_csv(index=False, float_format="%.2f")
    (tmp_path / "t.csv").write_text(text)
    map_ = {**ALONE, "feet": {"column": "foot"}, "pairs": "order"}
    errors = errors_of(tmp_path / "t.csv", map_)
    for foot, line, error in zip(("left", "right"), (26, 27), errors, strict=True):
        assert f"t.csv:{line}: found the means of the {foot} rows above in gct" in error
        assert error.endswith(f"to leave it out: [[skip]] lines = [{line}]")
    gs.import_tables(tmp_path / "t.csv", {**map_, "skip": [{"lines": [26, 27]}]})


def test_last_rows_of_few_digits_are_means_where_those_of_both_feet_are(tmp_path: Path) -> None:
    table = STRIDES[["foot", "gct", "speed"]].round(2)
    means = table.groupby("foot").mean().round(2).reset_index()
    columns = {"gct": "gct", "speed": "speed"}
    map_ = {**ALONE, "columns": columns, "feet": {"column": "foot"}, "pairs": "order"}
    for count in (1, 2):
        text = pd.concat([table, means.head(count)]).to_csv(index=False, float_format="%.2f")
        (tmp_path / "t.csv").write_text(text)
        if count == 1:
            gs.import_tables(tmp_path / "t.csv", map_)
        else:
            assert len(errors_of(tmp_path / "t.csv", map_)) == 2


@pytest.mark.parametrize("last", ["", "all"])
def test_a_last_row_after_the_end_of_a_running_number_is_an_error(last: str) -> None:
    table = rows_with_means().assign(No=[str(n) for n in range(10)])
    table.loc[10] = ["left", 0.9, 1.3, 1.0, 1.0, last]
    (error,) = errors_of(table, ALONE)
    found = f'"{last}"' if last else "an empty cell"
    assert f"row 10, column No: found {found}, expected a number as in all rows above" in error
    assert error.endswith("[[skip]] lines = [10]")


# ---- Zeros


@pytest.mark.parametrize(
    "name", ["speed", "slength", "step_length", "step_time", "cadence", "contact", "swing"]
)
def test_a_zero_is_an_error_until_the_map_says_what_it_means(name: str) -> None:
    values = STRIDES[["foot", "hs", "gct"]].assign(x=[0.0, *[0.5] * (len(STRIDES) - 1)])
    (error,) = errors_of(values, map_with({**TIMES, name: "x"}))
    expected = f'if it means missing: {name} = {{column = "x", missing = [0]}}; if it was'
    assert f"found 0, expected a measurement; {expected}" in error
    assert error.endswith(f"if it was measured: {name} = {{column = ..., missing = []}}")
    for column in ({"column": "x", "missing": [0]}, {"column": "x", "missing": []}):
        map_ = map_with({**TIMES, name: {**column, "unit": "1" if name == "swing" else None}})
        map_["columns"][name] = {k: v for k, v in map_["columns"][name].items() if v is not None}
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", gs.WalkWarning)
            gs.import_tables(values, map_)


def test_a_row_of_means_is_found_by_its_word_where_numbers_have_a_comma(tmp_path: Path) -> None:
    (tmp_path / "t.csv").write_text("Nr;gct\n1;1,05\n2;1,06\n3;1,04\nMW;1,0500\n")
    (error,) = errors_of(tmp_path / "t.csv", {**ALONE, "columns": {"gct": "gct"}})
    assert "t.csv:5: column Nr: found " in error


# ---- Cells


@pytest.mark.parametrize(
    ("cells", "expected"),
    [
        (["1.05, 1.06, 1.07"] * 3, "expected one number in a cell, and so a row for each stride"),
        (["n.d.", "bad", "n.d."], 'if it means missing: missing = ["n.d.", "bad"], if the row'),
    ],
)
def test_cells_that_are_no_numbers_are_one_message_that_says_what_they_may_be(
    cells: list[str], expected: str
) -> None:
    table = pd.DataFrame({"gct": cells})
    (error,) = errors_of(table, {**ALONE, "columns": {"gct": {"column": "gct", "unit": "ms"}}})
    assert expected in error


def test_one_key_says_what_a_comma_is() -> None:
    table = pd.DataFrame({"gct": ["1,050", "1,060"]})
    for key, unit in (({"thousands": ","}, "ms"), ({"decimal": ","}, "s")):
        columns = {"gct": {"column": "gct", "unit": unit}}
        (walk,) = gs.import_tables(table, {**ALONE, "columns": columns, "table": key})
        assert values_of(walk.strides)["gct"] == [1.05, 1.06]
    (error,) = errors_of(table, {**ALONE, "columns": {"gct": "gct"}})
    assert error.endswith('[table] decimal = "," or thousands = ","')


def test_one_key_says_what_a_point_is_beside_whole_numbers_below_a_thousand() -> None:
    table = pd.DataFrame({"gct": ["105", "106", "107"], "length": ["979", "1.017", "0"]})
    columns = {
        "gct": {"column": "gct", "unit": "samples"},
        "slength": {"column": "length", "unit": "mm", "missing": [0]},
    }
    map_ = {**ALONE, "columns": columns, "sampling_rate": 100}
    (error,) = errors_of(table, map_)
    assert error.startswith('table 1: column length: found numbers such as "979" and "1.017", ')
    assert error.endswith('[table] decimal = "." or thousands = "."')
    for key, second in (({"thousands": "."}, 1.017), ({"decimal": "."}, 0.001017)):
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", gs.WalkWarning)
            (walk,) = gs.import_tables(table, {**map_, "table": key})
        assert values_of(walk.strides)["slength"][:2] == pytest.approx([0.979, second])


def test_a_point_is_that_of_decimals_where_another_column_tells() -> None:
    table = pd.DataFrame({"gct": ["1.05", "1.06"], "speed": ["1", "1.017"]})
    columns = {"gct": "gct", "speed": "speed"}
    (walk,) = gs.import_tables(table, {**ALONE, "columns": columns})
    assert values_of(walk.strides)["speed"] == [1, 1.017]


def table_with_moments(texts: list[str]) -> pd.DataFrame:
    return pd.DataFrame({"time": texts, "gct": [1.0, 1.5][: len(texts)]})


MOMENTS = {"feet": {"only": "left"}, "columns": {"hs": "time", "gct": "gct"}}


@pytest.mark.parametrize(
    "texts",
    [
        ["24.12.2024 23:59:59,5", "25.12.2024 00:00:00,5"],
        ["24/12/2024 23:59:59.5", "25/12/2024 00:00:00.5"],
        ["12/24/2024 23:59:59,5", "12/25/2024 00:00:00,5"],
        ["12/24/2024 11:59:59.5 PM", "12/25/2024 12:00:00.5 AM"],
        ["2024-12-24 23:59:59,5", "2024-12-25T00:00:00.5"],
        ["00:59.5", "01:00,5"],
    ],
)
def test_dates_and_times_are_read_in_the_forms_that_people_have(texts: list[str]) -> None:
    map_ = {**MOMENTS, "times": "from the first"}
    (walk,) = gs.import_tables(table_with_moments(texts), map_)
    assert values_of(walk.strides)["first_sample"] == [0, 100]


def test_the_order_of_a_date_is_asked_for_where_no_number_tells_it() -> None:
    table = table_with_moments(["03/04/2025 10:00:00", "03/04/2025 10:00:01"])
    (error,) = errors_of(table, MOMENTS)
    assert 'say [table] dates = "day first" or "month first"' in error
    for order in ("day first", "month first"):
        (walk,) = gs.import_tables(table, {**MOMENTS, "table": {"dates": order}})
        assert values_of(walk.strides)["first_sample"] == [0, 100]


def test_a_suggested_map_asks_for_the_order_of_dates(tmp_path: Path) -> None:
    table = STRIDES[STRIDES["foot"] == "left"][["foot", "gct"]].assign(
        time=[f"03/04/2025 10:00:{second:06.3f}" for second in STRIDES["hs"][::2]]
    )
    text = suggestion_for(table, tmp_path)
    assert '# dates = "day first"   # or "month first": decide' in text
    assert 'hs = "time"' in text


def test_a_date_of_another_form_is_an_error_that_says_which_are_read() -> None:
    table = table_with_moments(["24.12.24 10:00:00", "24.12.24 10:00:01"])
    (error,) = errors_of(table, MOMENTS)
    assert "24.12.2024 10:00:01.5 or 24/12/2024 10:00:01.5 (and in 1 more row" in error
    (error,) = errors_of(table_with_moments(["10:00", "10:01"]), MOMENTS)
    assert "expected a number or a time as h:mm:ss, h:mm:ss PM or mm:ss.s" in error


# ---- What a column is


def test_contacts_that_rise_are_suggested_as_strikes(tmp_path: Path) -> None:
    for name in ("Contact (s)", "Contact time (s)"):
        table = STRIDES[["foot", "gct"]].assign(**{name: STRIDES["hs"]})
        assert f'hs = "{name}"' in suggestion_for(table, tmp_path)
    table = STRIDES[["foot", "gct", "hs"]].assign(**{"Contact (s)": STRIDES["contact"] / 1000})
    assert 'contact = "Contact (s)"' in suggestion_for(table, tmp_path)


def test_a_suggested_map_remarks_constant_durations_and_passes_over_numbers_of_strides(
    tmp_path: Path,
) -> None:
    table = STRIDES[["foot", "hs"]].assign(stride=range(1, len(STRIDES) + 1), cycle=1.05)
    text = suggestion_for(table, tmp_path)
    assert 'gct = "cycle"  # the same in all rows: is it measured?' in text


# ---- Files and maps


@pytest.mark.parametrize(
    ("name", "content", "expected"),
    [
        ("t.csv", b"PK\x03\x04...", "found a workbook or another zip file, expected text"),
        ("t.xlsx", b"<html><table>", "found a page of HTML, expected a workbook"),
        ("t.xlsx", b"foot,hs\nleft,1\n", "found text, expected a workbook"),
        ("t.csv", b"%PDF-1.4", "found a PDF, expected text"),
        ("t.txt", b'[{"foot": "left"}]', "found JSON, expected text"),
    ],
)
def test_a_file_that_is_not_what_its_ending_says_is_called_what_it_is(
    name: str, content: bytes, expected: str, tmp_path: Path
) -> None:
    (tmp_path / name).write_bytes(content)
    (error,) = errors_of(tmp_path / name, map_with(TIMES))
    assert expected in error
    assert f"as its ending {Path(name).suffix} says: " in error


def test_a_map_with_sections_and_keys_in_the_wrong_place_says_where_they_belong(
    tmp_path: Path,
) -> None:
    path = tmp_path / "m.toml"
    path.write_text('[Feet]\nonly = "left"\n[columns]\ngct = "gct"\n[[skip]]\nfirst = 2\n')
    errors = errors_of(STRIDES, path)
    assert (
        f"{path}:1: [Feet]: found an unknown section, expected [feet], in small letters" in errors
    )
    assert f"{path}:6: [skip] first: found it under [[skip]], which takes rows out" in errors[1]
    assert errors[1].endswith("expected it under [[exclude]]")


def test_a_column_that_cannot_be_derived_names_those_between() -> None:
    map_ = map_with({**TIMES, "swing": "swing"}, derive=["ds"])
    (error,) = errors_of(STRIDES, map_)
    assert error.endswith('leads to it by "stance", "contact": name them in derive, too')
    gs.import_tables(STRIDES, {**map_, "derive": ["stance", "contact", "ds"]})
    (error,) = errors_of(STRIDES, map_with(TIMES, derive=["ds"]))
    assert "name them in derive" not in error


# ---- What is no table of strides


def test_step_times_alone_say_what_is_missing(tmp_path: Path) -> None:
    table = pd.DataFrame({"foot": STRIDES["foot"], "Step time": STRIDES["gct"] / 2})
    (error,) = errors_of(table, map_with({"step_time": "Step time"}))
    assert "Step times alone make no strides" in error
    map_ = map_with({"gct": "Step time"}, times="end to end", pairs="none")
    with pytest.warns(gs.WalkWarning, match="found a name of step times for gct"):
        gs.import_tables(table, map_)
    text = suggestion_for(table, tmp_path)
    assert "# Step times alone make no strides" in text
    assert "gct =" not in text


def test_lists_in_cells_say_that_a_row_for_each_stride_is_needed(tmp_path: Path) -> None:
    path = tmp_path / "t.csv"
    path.write_text("walk,stride times\nW1,1.05;1.07;1.04\nW2,1.06;1.07;1.04\n")
    map_ = {**ALONE, "columns": {"gct": "stride times"}}
    (error,) = errors_of(path, map_)
    assert 'found "1.05;1.07;1.04", expected one number in a cell' in error
    text = suggested_map([str(path)])
    assert "several numbers in a cell; a row for each stride is needed" in text
    assert "gct =" not in text.replace("# gct", "")
