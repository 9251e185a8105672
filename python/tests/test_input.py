"""What goes in is checked: everything that is wrong is said at once, with its row and column."""

from __future__ import annotations

import warnings
from pathlib import Path
from typing import Any

import numpy as np
import pandas as pd
import pytest
from conftest import as_kind, strides_of_one_foot, values_of

import gait_statistics as gs
from gait_statistics import _core


def errors_of(*arguments: Any, **named: Any) -> list[str]:
    with pytest.raises(gs.WalkError) as raised:
        gs.Walk(*arguments, **named)
    assert str(raised.value) == "\n".join(map(str, raised.value.errors))
    return [str(error) for error in raised.value.errors]


def test_all_errors_are_said_at_once_with_row_and_column(kind: str) -> None:
    strides = strides_of_one_foot(
        foot=["left", "up", "left"],
        last_sample=[99, 199, 150],
        gct=[1.0, np.inf, 1.0],
    )
    assert errors_of(as_kind(strides, kind), 99.9) == [
        'sampling_rate: found "99.9", expected a whole number without decimals: give the nearest '
        "whole rate, and multiply first_sample, last_sample, signal_1_samples and "
        "signal_2_samples by new rate / old rate",
        'strides, row 1, column foot: found "up", expected one of: left, right',
        'strides, row 1, column gct: found "inf", expected a finite number or an empty cell',
        'strides, row 2, column last_sample: found "150", less than first_sample (200), expected '
        "at least as much",
    ]


def test_an_error_that_many_rows_have_is_said_once() -> None:
    (error,) = errors_of(strides_of_one_foot(gct=["1,0", "1,5", "2,0"]), 100)
    assert error == (
        'strides, row 0, column gct: found "1,0" with a decimal comma, expected a decimal point '
        "(and in 2 more rows: rows 1, 2)"
    )


def test_an_unknown_column_is_an_error_until_it_is_ignored() -> None:
    strides = strides_of_one_foot(swing_time=0.4)
    (error,) = errors_of(strides, 100)
    assert "swing_time" in error
    assert "ignore_columns" in error
    assert gs.Walk(strides, 100, ignore_columns=["swing_time"]).sampling_rate == 100
    assert gs.Walk(strides, 100, ignore_columns=["all"]).sampling_rate == 100


def test_a_missing_column_is_an_error() -> None:
    (error,) = errors_of(strides_of_one_foot().drop(columns="last_sample"), 100)
    assert error == (
        "strides: column last_sample: found no such column, expected it in the columns"
    )


@pytest.mark.parametrize(
    "index", [[0, 1, 1], [0, 1, 3], [-1, 0, 1], [0, 1, 2**40], [0.0, 0.5, 1.0], [0, 1, None]]
)
def test_an_index_that_the_library_could_not_use_is_an_error(index: list[Any], kind: str) -> None:
    (error,) = errors_of(as_kind(strides_of_one_foot(index=index), kind), 100)
    assert "column index" in error


@pytest.mark.parametrize("link", [-1, 1, 2**31, 2**62, 0.5])
def test_a_link_to_a_stride_that_is_not_there_is_an_error(link: float, kind: str) -> None:
    strides = pd.DataFrame(
        {"foot": ["left", "right"], "first_sample": [0, 50], "last_sample": [99, 149]}
    )
    feet = pd.DataFrame({"right_index": [0], "left_index": [link]})
    (error,) = errors_of(as_kind(strides, kind), 100, as_kind(feet, kind))
    assert error.startswith("feet, row 0, column left_index: found ")


@pytest.mark.parametrize("rate", [0, -100, 2**31, "fast", None, True, float("nan")])
def test_a_rate_that_is_none_is_an_error(rate: Any) -> None:
    (error,) = errors_of(strides_of_one_foot(), rate)
    assert error.startswith("sampling_rate: found ")


def test_errors_of_every_argument_are_said_at_once() -> None:
    strides = strides_of_one_foot(gct=[1.0, np.inf, 1.0])
    feet = pd.DataFrame({"right_index": [0]})
    exclusions = pd.DataFrame({"cycles": ["left"], "list": ["turns"], "index": [1]})
    errors = errors_of(strides, 99.5, feet, exclusions, {"up": 3})
    arguments = [error.partition(":")[0].partition(",")[0] for error in errors]
    assert sorted(set(arguments)) == ["exclusions", "feet", "samples", "sampling_rate", "strides"]


def test_whole_numbers_may_come_as_floats() -> None:
    walk = gs.Walk(strides_of_one_foot(), 100.0, samples=np.float64(400))
    assert walk.sampling_rate == 100
    assert walk.samples == {"left": (400, None)}


def test_a_recording_shorter_than_its_strides_is_a_warning() -> None:
    with pytest.warns(gs.WalkWarning, match=r"strides, row 2, column last_sample: found \"299\""):
        walk = gs.Walk(strides_of_one_foot(), 100, samples=299)
    assert [warning.row for warning in walk.warnings] == [2]


@pytest.mark.parametrize(
    ("samples", "word"),
    [
        (-1, "-1"),
        (1.5, "1.5"),
        ((1, 2, 3), "(1, 2, 3)"),
        ({"right": 300}, "right"),
        ({"up": 3}, "up"),
        ({"": 3}, "''"),
    ],
)
def test_samples_of_no_use_are_an_error(samples: Any, word: str) -> None:
    (error,) = errors_of(strides_of_one_foot(), 100, samples=samples)
    assert error.startswith("samples: ")
    assert word in error


def test_a_frame_without_rows_or_columns_is_an_error(kind: str) -> None:
    (error,) = errors_of(as_kind(strides_of_one_foot().iloc[:0], kind), 100)
    assert error == "strides: found no row, expected one for each stride"
    assert errors_of(as_kind(pd.DataFrame(), kind), 100)


@pytest.mark.parametrize("frame", [None, 3, "strides.csv", [1, 2], {"foot": ["left"]}])
def test_what_is_no_frame_is_refused(frame: Any) -> None:
    with pytest.raises(TypeError, match="strides: found .*, expected a pandas or polars"):
        gs.Walk(frame, 100)


def test_numbers_may_come_in_any_type() -> None:
    strides = strides_of_one_foot(first_sample=[0, 50, 120], last_sample=[49, 119, 127])
    expected = gs.analyse(gs.Walk(strides, 100)).parameters
    for types in (
        {"first_sample": "int8", "last_sample": "uint16", "gct": "float32"},
        {"first_sample": "float64", "last_sample": "Int64", "gct": "Float64"},
        {"first_sample": "str", "last_sample": "object", "gct": "str"},
        {"foot": "category"},
    ):
        walk = gs.Walk(strides.astype(types), 100)
        pd.testing.assert_frame_equal(gs.analyse(walk).parameters, expected)


def test_a_measured_minus_one_stays_one_and_a_missing_value_stays_missing(kind: str) -> None:
    walk = gs.Walk(as_kind(strides_of_one_foot(hsp=[-1.0, None, 12.0]), kind), 100)
    assert values_of(walk.strides)["hsp"] == [-1.0, None, 12.0]
    assert values_of(gs.analyse(walk).strides)["HSP_degree"] == [-1.0, None, 12.0]


def test_two_feet_need_pairs_unless_one_is_analysed(kind: str) -> None:
    strides = as_kind(pd.read_csv("examples/walks/two_feet_turn/foot_cycles.csv"), kind)
    walk = gs.Walk(strides, 100)
    with pytest.raises(gs.WalkError, match=r"^feet: found no cycle of both feet.*pair_feet"):
        gs.analyse(walk)
    assert gs.analyse(walk, "left").analysed == "left foot"
    paired = gs.Walk(strides, 100, gs.pair_feet(strides))
    assert gs.analyse(paired).analysed == "both feet"


def test_feet_are_paired_as_those_of_the_example_walk(kind: str) -> None:
    folder = Path("examples/walks/two_feet_turn")
    pairs = gs.pair_feet(as_kind(pd.read_csv(folder / "foot_cycles.csv"), kind))
    expected = pd.read_csv(folder / "feet_cycles.csv").dropna(subset="right_index")
    assert values_of(pairs)["right_index"] == expected["right_index"].to_list()
    left = expected["left_index"].to_list()
    assert values_of(pairs)["left_index"] == [None if v != v else v for v in left]


def test_strides_of_one_foot_cannot_be_paired() -> None:
    with pytest.raises(gs.WalkError, match='found "left" alone, expected strides of both feet'):
        gs.pair_feet(strides_of_one_foot())


def test_a_foot_that_the_walk_does_not_have_is_an_error() -> None:
    walk = gs.Walk(strides_of_one_foot(), 100)
    with pytest.raises(gs.WalkError, match="found no right foot"):
        gs.analyse(walk, "right")
    with pytest.raises(ValueError, match="foot: found 'both'"):
        gs.analyse(walk, "both")  # type: ignore[arg-type]


@pytest.mark.parametrize("value", [float("nan"), float("inf"), 1e39])
def test_a_settings_value_that_is_no_float_is_refused(value: float) -> None:
    with pytest.raises(ValueError, match="settings_value: found"):
        gs.analyse(gs.Walk(strides_of_one_foot(), 100), settings_value=value)


def test_a_check_of_no_known_name_is_refused() -> None:
    walk = gs.Walk(strides_of_one_foot(), 100)
    name = gs.checks()["check"][0]
    assert gs.analyse(walk, without_checks=[name])
    with pytest.raises(ValueError, match=f"did you mean '{name}'"):
        gs.analyse(walk, without_checks=[name + "s"])


def test_exclusions_leave_strides_out(kind: str) -> None:
    exclusions = pd.DataFrame(
        {"cycles": ["left"], "list": ["excluded_1"], "index": [1], "reason": ["turn"]}
    )
    walk = gs.Walk(as_kind(strides_of_one_foot(), kind), 100, exclusions=as_kind(exclusions, kind))
    assert gs.analyse(walk).info.cycles == (0, 2)


def test_exclusions_of_cycles_that_are_not_analysed_are_a_warning() -> None:
    exclusions = pd.DataFrame({"cycles": ["feet"], "list": ["excluded_1"], "index": [1]})
    with pytest.warns(gs.WalkWarning):
        walk = gs.Walk(strides_of_one_foot(), 100, exclusions=exclusions)
    with pytest.warns(gs.WalkWarning, match="exclusions: column cycles: found exclusions, but"):
        gs.analyse(walk)


def test_a_folder_with_errors_names_file_line_and_column(tmp_path: Path) -> None:
    (tmp_path / "recording.csv").write_text("foot,sampling_rate\nleft,100\n")
    (tmp_path / "foot_cycles.csv").write_text(
        "foot,first_sample,last_sample,gct\nleft,0,99,one\nleft,100,50,1\n"
    )
    with pytest.raises(gs.WalkError) as raised:
        gs.read_walk(tmp_path)
    first, second = raised.value.errors
    assert (first.line, first.row, first.column) == (2, None, "gct")
    assert str(first).startswith(f"{tmp_path}/foot_cycles.csv:2: column gct: found ")
    assert second.line == 3


def test_a_folder_that_is_not_there_is_an_error(tmp_path: Path) -> None:
    with pytest.raises(gs.WalkError, match="no_such"):
        gs.read_walk(tmp_path / "no_such")


def test_a_walk_survives_its_folder(folder: Path, tmp_path: Path) -> None:
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", gs.WalkWarning)
        walk = gs.read_walk(folder)
        gs.write_walk(walk, tmp_path / folder.name)
        again = gs.read_walk(tmp_path / folder.name)
        for table in ("strides", "feet", "exclusions", "about"):
            pd.testing.assert_frame_equal(getattr(again, table), getattr(walk, table))
        assert gs.analyse(again).info == gs.analyse(walk).info


def test_a_folder_that_cannot_be_written_is_an_os_error(tmp_path: Path) -> None:
    (tmp_path / "file").write_text("")
    with pytest.raises(OSError, match="file"):
        gs.write_walk(gs.Walk(strides_of_one_foot(), 100), tmp_path / "file")


@pytest.mark.parametrize(
    ("named", "message"),
    [
        ({"name": 5}, "name: found 5, expected a text"),
        ({"ignore_columns": "all"}, "ignore_columns: found the text 'all', expected a list"),
        ({"ignore_columns": [1]}, "ignore_columns: found 1, expected a text"),
    ],
)
def test_arguments_of_another_type_are_refused(named: Any, message: str) -> None:
    with pytest.raises(TypeError, match=message):
        gs.Walk(strides_of_one_foot(), 100, **named)


@pytest.mark.parametrize("limit", [0, -1, 1.5, "many"])
def test_a_limit_that_is_none_is_refused(limit: Any) -> None:
    with pytest.raises(ValueError, match="max_strides: found .*, expected a whole number from 1"):
        gs.read_walk("examples/walks/two_feet_turn", max_strides=limit)


def test_a_frame_is_no_walk() -> None:
    with pytest.raises(TypeError, match=r"walk: found DataFrame, expected a Walk: Walk\(strides"):
        gs.analyse(strides_of_one_foot())  # type: ignore[arg-type]


def test_what_is_no_character_is_replaced() -> None:
    strides = strides_of_one_foot(unknown=1.0)
    strides.columns = pd.Index([*strides.columns[:-1], "\ud800"], dtype=object)
    (error,) = errors_of(strides, 100)
    assert 'unknown column ("?")' in error
    assert gs.Walk(strides_of_one_foot(), 100, name="\ud800").name == "?"


def test_the_parts_of_the_extension_module_cannot_be_made_by_hand() -> None:
    with pytest.raises(TypeError, match="no constructor"):
        _core.Walk()
