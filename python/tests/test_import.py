"""What an import makes, derives, finds wrong, and writes."""

from __future__ import annotations

import os
import subprocess
import sys
from pathlib import Path
from typing import Any

import numpy as np
import pandas as pd
import pytest
from conftest import values_of
from tables_to_import import in_time_order, strides_of_both_feet

import gait_statistics as gs
from gait_statistics._import._fields import FIELD
from gait_statistics._import._map import read_map, shipped_maps
from gait_statistics._import._program import main

STRIDES = in_time_order(strides_of_both_feet())
TABLE = STRIDES[["foot", "hs", "gct", "stance", "swing", "slength", "speed"]]
MAP: dict[str, Any] = {
    "feet": {"column": "foot"},
    "columns": {name: name for name in TABLE.columns if name != "foot"},
}


def errors_of(tables: Any, map_: Any, *arguments: Any, **named: Any) -> list[str]:
    with pytest.raises(gs.WalkError) as raised:
        gs.import_tables(tables, map_, *arguments, **named)
    return [str(error) for error in raised.value.errors]


def about_of(walk: gs.Walk) -> list[tuple[str, str]]:
    about = values_of(walk.about)
    return list(zip(about["name"], about["value"], strict=True))


# ---- Maps


def test_every_mistake_of_a_map_is_said_at_once_with_its_line(tmp_path: Path) -> None:
    path = tmp_path / "my.toml"
    path.write_text(
        "sampling_rat = 100\n"
        'derive = ["cadense"]\n'
        "[feet]\n"
        'colum = "Side"\n'
        "[columns]\n"
        'stride_time = "Stride"\n'
        'gct = {column = "Stride", unit = "m"}\n'
        "missing = [0]\n"
        'swing = {column = "Swing", row = "last"}\n'
    )
    assert errors_of(TABLE, path) == [
        f"{path}:1: sampling_rat: found an unknown key, expected a known one: is it "
        '"sampling_rate"?',
        f'{path}:4: [feet] colum: found an unknown key, expected a known one: is it "column"?',
        f"{path}:6: [columns] stride_time: found an unknown column, expected a known one: is it "
        '"gct"?',
        f'{path}:7: [columns] gct: found the unit "m", expected s, ms, min or samples',
        f"{path}:8: [columns] missing: found it in a section, expected it above the first "
        "[section] of the map",
        f"{path}:9: [columns] swing: row: found 'last', expected one of: "
        '"this", "next", "previous", '
        '"next of foot", "previous of foot"',
        f'{path}:2: derive: found "cadense", expected a known one: is it "cadence"?',
    ]


def test_a_map_that_is_no_toml_is_an_error_with_its_line(tmp_path: Path) -> None:
    path = tmp_path / "my.toml"
    path.write_text("[columns]\ngct = Stride time\n")
    (error,) = errors_of(TABLE, path)
    assert error.startswith(f"{path}:2: found ")
    (error,) = errors_of(TABLE, "gaitmab")
    assert error.endswith('is it "gaitmap"?')


@pytest.mark.parametrize("name", shipped_maps())
def test_a_shipped_map_is_right_and_says_what_it_is_for(name: str) -> None:
    map_ = read_map(name)
    assert map_.get("", "about")
    assert map_.feet_by


def test_a_map_can_fill_every_column_of_the_strides() -> None:
    walk = gs.read_walk("examples/walks/two_feet_turn")
    assert {*walk.strides.columns, *walk.feet.columns} - FIELD.keys() == {
        *("foot", "index", "right_index", "left_index")
    }


# ---- What is derived


def test_what_is_derived_is_what_the_table_left_out_and_is_recorded() -> None:
    table = STRIDES[["foot", "hs", "end", "lift_off"]]
    map_ = {
        "feet": {"column": "foot"},
        "columns": {name: name for name in ("hs", "end", "lift_off")},
        "derive": ["gct", "contact", "stance", "swing", "cadence", "step_time", "ds"],
    }
    (walk,) = gs.import_tables(table, map_)
    found = values_of(walk.strides)
    known = STRIDES.sort_values(["foot", "first_sample"])
    for name in ("first_sample", "last_sample", "gct", "contact", "stance", "swing", "cadence"):
        assert found[name] == pytest.approx(known[name].tolist())
    derived = [value for name, value in about_of(walk) if name == "derived"]
    for one in ("gct: end - hs", "contact: lift_off - hs", "swing: 100 - stance", "cadence: 120"):
        assert any(text.startswith(one) for text in derived)
    assert any("100 Hz, since only times are known" in text for text in derived)


def test_double_support_is_both_phases_and_missing_where_one_is_not_known() -> None:
    map_ = {**MAP, "derive": ["contact", "ds"]}
    (walk,) = gs.import_tables(TABLE, map_)
    feet, strides = values_of(walk.feet), STRIDES.set_index("foot")
    left, right = strides.loc["left"].reset_index(), strides.loc["right"].reset_index()
    # The left foot leads: the left stride within right stride n is n + 1.
    for n in range(len(right) - 1):
        phases = (left["lift_off"][n] - right["hs"][n]) + (right["lift_off"][n] - left["hs"][n + 1])
        assert feet["ds"][n] == pytest.approx(100 * phases / right["gct"][n])
    assert feet["ds"][len(right) - 1] is None
    assert feet["left_index"] == [*range(1, len(right)), None]


def test_a_step_ends_with_the_strike_that_names_it() -> None:
    (walk,) = gs.import_tables(TABLE, {**MAP, "derive": ["step_time"]})
    found = values_of(walk.strides)["step_time"]
    left = STRIDES.loc[STRIDES["foot"] == "left", "hs"].to_numpy()
    right = STRIDES.loc[STRIDES["foot"] == "right", "hs"].to_numpy()
    assert found[0] is None
    assert found[1:12] == pytest.approx((left[1:] - right[:-1]).tolist())
    assert found[12:] == pytest.approx((right - left).tolist())


def test_nothing_is_derived_that_the_map_does_not_name() -> None:
    (walk,) = gs.import_tables(TABLE, MAP)
    values = values_of(walk.strides)
    assert set(values["cadence"]) == {None}
    assert set(values_of(walk.feet)["ds"]) == {None}


@pytest.mark.parametrize(
    ("name", "unit", "factor"),
    [
        ("gct", "ms", 1000),
        ("gct", "samples", 100),
        ("slength", "cm", 100),
        ("slength", "in", 1 / 0.0254),
        ("speed", "km/h", 3.6),
        ("speed", "cm./sec.", 100),
        ("stance", "1", 0.01),
    ],
)
def test_units_are_converted(name: str, unit: str, factor: float) -> None:
    table = TABLE.assign(**{name: TABLE[name] * factor})
    columns = {**MAP["columns"], name: {"column": name, "unit": unit}}
    (walk,) = gs.import_tables(table, {**MAP, "columns": columns, "sampling_rate": 100})
    known = TABLE.sort_values(["foot", "hs"])[name].tolist()
    assert values_of(walk.strides)[name] == pytest.approx(known, rel=1e-12)


@pytest.mark.parametrize(
    ("name", "unit"), [("stance", "deg"), ("hsp", "%"), ("gct", "m"), ("speed", "s")]
)
def test_a_unit_of_another_quantity_is_an_error(name: str, unit: str) -> None:
    columns = {**MAP["columns"], name: {"column": "gct", "unit": unit}}
    (error,) = errors_of(TABLE, {**MAP, "columns": columns})
    assert error.startswith(f'map: [columns] {name}: found the unit "{unit}", expected ')


def test_shares_that_are_given_as_times_are_divided_by_the_stride() -> None:
    table = TABLE.assign(swing=TABLE["swing"] * TABLE["gct"] / 100)
    columns = {**MAP["columns"], "swing": {"column": "swing", "unit": "s"}}
    (walk,) = gs.import_tables(table, {**MAP, "columns": columns})
    known = TABLE.sort_values(["foot", "hs"])["swing"].tolist()
    assert values_of(walk.strides)["swing"] == pytest.approx(known)
    assert ("derived", "swing: 100 x its time / gct") in about_of(walk)


def test_a_value_of_the_row_before_is_missing_where_that_stride_does_not_join() -> None:
    table = STRIDES[["foot", "hs", "gct", "hsp"]]
    known = table["hsp"][table["foot"] == "left"].tolist()
    lost = table.drop(index=table.index[table["foot"] == "left"][4])
    columns = {"hs": "hs", "gct": "gct", "hsp": {"column": "hsp", "row": "previous of foot"}}
    map_ = {"feet": {"column": "foot"}, "columns": columns}
    (walk,) = gs.import_tables(lost, map_)
    found = values_of(walk.strides)["hsp"][:11]
    assert found == [None, *known[:3], None, *known[5:11]]


# ---- Exclusions


def test_strides_are_left_out_for_each_foot_and_for_both() -> None:
    table = TABLE.assign(turn=np.where(TABLE["hs"].between(4.0, 5.0), 2, 0))
    exclude = [
        {"column": "turn", "above": 0, "reason": "turn"},
        {"first": 1, "list": "excluded_2", "reason": "start"},
        {"times": [[11.9, 12.0]], "reason": "stop"},
    ]
    (walk,) = gs.import_tables(table, {**MAP, "exclude": exclude})
    rows = values_of(walk.exclusions)
    found = list(zip(rows["cycles"], rows["list"], rows["index"], rows["reason"], strict=True))
    assert [row for row in found if row[0] == "left"] == [
        ("left", "excluded_1", 4, "turn"),
        ("left", "excluded_2", 0, "start"),
        ("left", "excluded_1", 10, "stop"),
    ]
    assert [row[2] for row in found if row[0] == "right"] == [3, 0, 10]
    # Left stride n is in the two-feet cycle n - 1, which is that of right stride n - 1.
    assert [row[2] for row in found if row[0] == "feet"] == [3, 0, 9, 10]


def excluded_by(**condition: Any) -> list[tuple[str, int]]:
    """The strides that one [[exclude]] leaves out."""
    table = TABLE.assign(turn=np.where(TABLE["hs"].between(2.0, 5.0), 2, 0))
    (walk,) = gs.import_tables(table, {**MAP, "exclude": [condition]})
    rows = values_of(walk.exclusions) if walk.exclusions is not None else {"cycles": []}
    found = zip(rows["cycles"], rows.get("index", []), strict=True)
    return [(foot, index) for foot, index in found if foot != "feet"]


def test_all_that_an_exclusion_says_must_hold() -> None:
    turn = excluded_by(column="turn", **{"is": 2})
    early = excluded_by(times=[[0.0, 3.5]])
    both = excluded_by(column="turn", times=[[0.0, 3.5]], **{"is": 2})
    assert both == [one for one in turn if one in early]
    assert 0 < len(both) < min(len(turn), len(early))
    assert excluded_by(times=[[0.0, 3.5]], first=1) == [("left", 0), ("right", 0)]
    ends = [("left", 0), ("left", 11), ("right", 0), ("right", 11)]
    assert excluded_by(first=1, last=1) == ends
    assert excluded_by(first=1, last=1, lines=[0, 1]) == [("left", 0), ("right", 0)]


def test_an_exclusion_that_no_stride_meets_as_a_whole_is_a_warning() -> None:
    with pytest.warns(gs.WalkWarning, match="no stride that meets all of it: column, first"):
        assert excluded_by(column="turn", first=1, **{"is": 2}) == []


# ---- What is wrong with a table


def test_every_fault_of_a_table_is_said_at_once(tmp_path: Path) -> None:
    path = tmp_path / "bad.csv"
    lines = TABLE.round(3).to_csv(index=False).splitlines()
    lines[3] = "left,abc,1.05,62,38,1.2,1.1"
    lines[5] = "left,3.0,1.05,x,38,1.2,1.1"
    lines[6] = "up,3.0,1.05,62,38,1.2,1.1"
    path.write_text("\n".join(lines))
    columns = {**MAP["columns"], "hsp": "strike angle"}
    found = errors_of(path, {**MAP, "columns": columns})
    assert len(found) == 4
    assert found[0].startswith("bad.csv: column strike angle: found no such column")
    assert found[1].startswith('bad.csv:7: column foot: found "up", expected "left" or "right"')
    assert found[2].startswith('bad.csv:4: column hs: found "abc", expected a number')
    assert found[3].startswith('bad.csv:6: column stance: found "x", expected a number')


def test_two_walks_in_one_table_are_an_error_until_they_are_told_apart() -> None:
    table = pd.concat([TABLE.assign(trial=n) for n in (1, 2)])
    (error,) = [e for e in errors_of(table, MAP) if "left" in e]
    assert "row 24" in error
    assert 'walk = ["trial"] parts walks' in error
    walks = gs.import_tables(table, {**MAP, "walk": "trial"})
    assert [walk.name for walk in walks] == ["1", "2"]
    assert ("trial", "2") in about_of(walks[1])


def test_several_tables_need_a_word_on_walks(tmp_path: Path) -> None:
    paths = [tmp_path / f"{name}.csv" for name in ("a", "b")]
    for path in paths:
        TABLE.to_csv(path, index=False)
    (error,) = errors_of(paths, MAP)
    assert 'walk = ["{file}"]' in error
    walks = gs.import_tables(paths, {**MAP, "walk": "{file}"})
    assert [walk.name for walk in walks] == ["a", "b"]


def test_a_table_without_times_says_what_is_needed() -> None:
    columns = {"gct": "gct"}
    (error,) = errors_of(TABLE, {**MAP, "columns": columns})
    assert 'times = "end to end"' in error
    without = {**MAP, "columns": columns, "times": "end to end"}
    (error,) = errors_of(TABLE, without)
    assert error.startswith("map: pairs: found none")
    (walk,) = gs.import_tables(TABLE, {**without, "pairs": "order"})
    assert values_of(walk.feet)["left_index"] == list(range(12))
    left = values_of(walk.strides)
    assert left["first_sample"][1] == left["last_sample"][0] + 1


def test_a_finding_names_the_users_column_and_rows(tmp_path: Path) -> None:
    path = tmp_path / "export.csv"
    table = TABLE.rename(columns={"gct": "Stride time"})
    table["Stride time"] *= 1000
    table.to_csv(path, index=False)
    map_ = {**MAP, "columns": {"hs": "hs", "gct": "Stride time", "swing": "swing"}}
    with pytest.warns(gs.WalkWarning) as caught:
        gs.import_tables(path, map_)
    said = [str(one.message) for one in caught]
    assert any(
        text.startswith("export.csv: column Stride time (gct): gct_median: found a median of")
        and 'gct = {column = ..., unit = "ms"}' in text
        for text in said
    )
    table["Stride time"] /= 1000
    table.loc[5, "swing"] = 380.0
    table.to_csv(path, index=False)
    with pytest.warns(gs.WalkWarning, match=r"column swing: swing_bounds: found 380.*\(line 7\)"):
        gs.import_tables(path, map_)
    (error,) = errors_of(path, map_, strict=True)
    assert "swing_bounds" in error


# ---- Writing


def test_nothing_is_written_where_one_walk_has_a_fault(tmp_path: Path) -> None:
    table = pd.concat([TABLE.assign(trial=n) for n in (1, 2)], ignore_index=True)
    table.loc[40, "gct"] = None
    (error,) = errors_of(table, {**MAP, "walk": "trial"}, tmp_path / "out")
    assert "row 40" in error
    assert list(tmp_path.iterdir()) == []


def test_a_folder_that_is_there_is_replaced_on_request_alone(tmp_path: Path) -> None:
    folder = tmp_path / "walk"
    gs.import_tables(TABLE, MAP, folder)
    before = (folder / "foot_cycles.csv").read_bytes()
    (error,) = errors_of(TABLE[2:], MAP, folder)
    assert "--replace" in error
    assert (folder / "foot_cycles.csv").read_bytes() == before
    gs.import_tables(TABLE[2:], MAP, folder, replace=True)
    assert (folder / "foot_cycles.csv").read_bytes() != before
    (folder / "notes.txt").touch()
    (error,) = errors_of(TABLE, MAP, folder, replace=True)
    assert "notes.txt" in error
    assert [path.name for path in tmp_path.iterdir()] == ["walk"]


def test_names_of_walks_are_safe_and_never_the_same(tmp_path: Path) -> None:
    names = ["a/b", "a b", "A b", "..", "con", "été 1"]
    table = pd.concat([TABLE.assign(id=name) for name in names])
    walks = gs.import_tables(table, {**MAP, "walk": "id"}, tmp_path / "out")
    written = sorted(path.name for path in (tmp_path / "out").iterdir())
    assert written == sorted(["a_b", "a_b-2", "A_b-3", "walk", "con_", "été_1"])
    assert [value for walk in walks for name, value in about_of(walk) if name == "id"] == names


def test_what_is_written_is_read_by_the_program_without_a_finding(
    program: Any, tmp_path: Path
) -> None:
    map_ = {**MAP, "derive": ["contact", "cadence", "ds", "step_time"]}
    (walk,) = gs.import_tables(TABLE, map_, tmp_path / "walk")
    assert gs.analyse(walk).findings == ()
    assert gs.analyse(walk).to_json() == gs.analyse(gs.read_walk(tmp_path / "walk")).to_json()
    assert "None broken" in program(tmp_path / "walk")


# ---- The command


def run(capsys: pytest.CaptureFixture[str], *arguments: Any) -> tuple[int, str, str]:
    try:
        code = main([str(argument) for argument in arguments])
    except SystemExit as error:
        code = int(error.code or 0)
    out, err = capsys.readouterr()
    return code, out, err


def test_cells_that_are_missing_by_the_map_are_counted(
    tmp_path: Path, capsys: pytest.CaptureFixture[str]
) -> None:
    table = TABLE.copy()
    table.loc[[3, 5], "speed"] = 0
    table.loc[[4], "stance"] = 162.0
    table.loc[[6], "swing"] = None
    table.to_csv(tmp_path / "t.csv", index=False)
    (tmp_path / "m.toml").write_text(
        'missing = [0]\n[feet]\ncolumn = "foot"\n[columns]\nhs = "hs"\ngct = "gct"\n'
        'speed = "speed"\nswing = "swing"\nstance = {column = "stance", valid = [0, 100]}\n'
    )
    arguments = (tmp_path / "t.csv", "--map", tmp_path / "m.toml", "-o", tmp_path / "out")
    _, out, _ = run(capsys, *arguments)
    assert "note: 3 cells are missing by the map: speed (2 of 24), stance (1 of 24)\n" in out


def test_exit_codes(tmp_path: Path, capsys: pytest.CaptureFixture[str]) -> None:
    table, map_ = tmp_path / "t.csv", tmp_path / "m.toml"
    TABLE.to_csv(table, index=False)
    map_.write_text('[feet]\ncolumn = "foot"\n[columns]\nhs = "hs"\ngct = "gct"\n')
    code, out, err = run(capsys, table, "--map", map_, "-o", tmp_path / "out")
    assert (code, err) == (0, "")
    assert "12 left, 12 right strides; 12 cycles of both feet" in out
    assert run(capsys, table, "--map", map_, "-o", tmp_path / "out")[0] == 1
    assert run(capsys, table, "--map", map_)[0] == 2
    assert run(capsys, "--map", map_, "-o", tmp_path / "x")[0] == 2
    assert run(capsys, table, "-o", tmp_path / "x")[0] == 2
    code, out, err = run(capsys, tmp_path / "none.csv", "--map", map_, "-o", tmp_path / "x")
    assert code == 1
    assert err.startswith("error: none.csv: cannot be read: No such file")
    assert err.endswith("Nothing was written.\n")
    assert not (tmp_path / "x").exists()


def test_the_list_of_maps(capsys: pytest.CaptureFixture[str]) -> None:
    code, out, _ = run(capsys, "--list-maps")
    assert code == 0
    assert [line for line in out.splitlines() if not line.startswith(" ")] == list(shipped_maps())


def test_a_reader_that_has_enough_ends_the_list_of_maps_without_a_word() -> None:
    program = "import sys; from gait_statistics._import._program import main; sys.exit(main())"
    reader, writer = os.pipe()
    os.close(reader)
    ended = subprocess.run(
        [sys.executable, "-c", program, "--list-maps"],
        stdout=writer,
        stderr=subprocess.PIPE,
        text=True,
        check=False,
    )
    os.close(writer)
    assert (ended.returncode, ended.stderr) == (0, "")


def test_a_suggested_map_works_where_names_and_values_are_telling(
    tmp_path: Path, capsys: pytest.CaptureFixture[str]
) -> None:
    table = pd.DataFrame(
        {
            "Subject": "S1",
            "Side": STRIDES["foot"].str[0].str.upper(),
            "Start": STRIDES["first_sample"],
            "End": STRIDES["last_sample"] + 1,
            "Stride time": (STRIDES["gct"] * 1000).round(),
            "Stride length": STRIDES["slength"] * 100,
            "Velocity (km/h)": STRIDES["speed"] * 3.6,
            "Stance": STRIDES["stance"],
            "Remark": "good",
        }
    )
    path, map_ = tmp_path / "t.csv", tmp_path / "m.toml"
    table.to_csv(path, index=False)
    code, out, err = run(capsys, path, "--suggest")
    assert (code, err) == (0, "")
    assert '#   "Remark"' in out
    map_.write_text(out)
    (walk,) = gs.import_tables(path, map_)
    known = STRIDES.sort_values(["foot", "first_sample"])
    for name in ("first_sample", "last_sample", "gct", "slength", "speed", "stance"):
        assert values_of(walk.strides)[name] == pytest.approx(known[name].tolist(), rel=1e-9)


# ---- The maps that come along


def frame_like_gaitmap(foot: str, kind: str) -> pd.DataFrame:
    one = STRIDES[STRIDES["foot"] == foot]
    closing = one["hsp"].shift(-1).fillna(21.0)
    middle = one["first_sample"] + 40
    return pd.DataFrame(
        {
            "s_id": range(len(one)),
            "start": middle if kind == "min_vel" else one["first_sample"],
            "end": middle + 105 if kind == "min_vel" else one["last_sample"] + 1,
            "pre_ic": one["first_sample"],
            "ic": one["last_sample"] + 1 if kind == "min_vel" else one["first_sample"],
            "tc": (one["lift_off"] * 100).round(),
            "stride_time": one["gct"],
            "swing_time": one["swing"] * one["gct"] / 100,
            "stance_time": one["contact"] / 1000,
            "stride_length": one["slength"],
            "gait_velocity": one["speed"],
            "arc_length": one["slength"] * 1.1,
            "ic_angle": closing if kind == "min_vel" else one["hsp"],
        }
    ).set_index("s_id")


@pytest.mark.parametrize("strides", ["min_vel", "ic"])
def test_the_maps_for_gaitmap(strides: str) -> None:
    tables = {f"{foot}_sensor": frame_like_gaitmap(foot, strides) for foot in ("left", "right")}
    name = "gaitmap" if strides == "min_vel" else "gaitmap-ic"
    if strides == "ic":
        tables = {foot: table.drop(columns="pre_ic") for foot, table in tables.items()}
    (walk,) = gs.import_tables(tables, name, settings=["sampling_rate=100"])
    found = values_of(walk.strides)
    known = STRIDES.sort_values(["foot", "first_sample"])
    for column in ("first_sample", "last_sample", "gct", "swing", "stance", "contact", "slength"):
        assert found[column] == pytest.approx(known[column].tolist())
    assert found["path_length"] == pytest.approx([110.0] * 24)
    hsp = known["hsp"].tolist()
    if strides == "min_vel":
        hsp[0] = hsp[12] = None
    # The strike that opens a stride is the one that closes the stride before it.
    assert found["hsp"] == pytest.approx(hsp) if strides == "ic" else found["hsp"] == hsp


def test_the_maps_for_mobgap() -> None:
    table = pd.DataFrame(
        {
            "wb_id": 0,
            "s_id": [f"0_{n}" for n in range(24)],
            "start": STRIDES["first_sample"],
            "end": STRIDES["last_sample"] + 1,
            "lr_label": STRIDES["foot"],
            "stride_duration_s": STRIDES["gct"],
            "cadence_spm": STRIDES["cadence"] * 1.2,
            "stride_length_m": STRIDES["slength"],
            "walking_speed_mps": STRIDES["speed"],
        }
    ).set_index(["wb_id", "s_id"])
    (walk,) = gs.import_tables(table, "mobgap", settings=["sampling_rate=100"])
    assert walk.name == "0"
    known = STRIDES.sort_values(["foot", "first_sample"])
    assert values_of(walk.strides)["last_sample"] == known["last_sample"].tolist()
    assert ("check left out", "cadence_and_duration") in about_of(walk)
    reference = pd.DataFrame(
        {
            "wb_id": 1,
            "start": STRIDES["first_sample"],
            "end": STRIDES["last_sample"] + 2,
            "duration_s": STRIDES["gct"],
            "length_m": STRIDES["slength"],
            "speed_mps": STRIDES["speed"],
            "stance_time_s": STRIDES["contact"] / 1000,
            "swing_time_s": STRIDES["gct"] - STRIDES["contact"] / 1000,
            "lr_label": STRIDES["foot"].where(STRIDES.index != 7, None),
        }
    )
    (walk,) = gs.import_tables(reference, "mobgap-reference", settings=["sampling_rate=100"])
    found = values_of(walk.strides)
    assert len(found["foot"]) == 23
    known = STRIDES.drop(index=7).sort_values(["foot", "first_sample"])
    for column in ("last_sample", "stance", "swing", "contact"):
        assert found[column] == pytest.approx(known[column].tolist())


def test_the_map_for_scikit_digital_health() -> None:
    next_strike = STRIDES["hs"].shift(-1)
    table = pd.DataFrame(
        {
            "Day N": 1,
            "Bout N": 3,
            "IC Time": pd.Timestamp("2024-05-01 10:00:00") + pd.to_timedelta(STRIDES["hs"], "s"),
            "stride time": STRIDES["gct"].where(STRIDES.index < 22),
            "stance time": STRIDES["contact"] / 1000,
            "swing time": STRIDES["gct"] - STRIDES["contact"] / 1000,
            "step time": next_strike - STRIDES["hs"],
            "cadence": 60 / (next_strike - STRIDES["hs"]),
            "Turn": [1 if n in (5, 6) else 0 for n in range(24)],
        }
    )
    table["step length"] = STRIDES["slength"] / 2
    with pytest.raises(gs.WalkError, match=r"feet\.first"):
        gs.import_tables(table, "scikit-digital-health")
    (walk,) = gs.import_tables(table, "scikit-digital-health", settings=["feet.first=left"])
    found = values_of(walk.strides)
    known = STRIDES.groupby("foot").head(11).sort_values(["foot", "first_sample"])
    for column in ("gct", "stance", "swing", "contact", "cadence"):
        assert found[column] == pytest.approx(known[column].tolist())
    before = (STRIDES["hs"] - STRIDES["hs"].shift(1))[known.index].tolist()
    assert found["step_time"][0] is None
    assert found["step_time"][1:] == pytest.approx(before[1:])
    reasons = values_of(walk.exclusions)
    assert [i for i, c in zip(reasons["index"], reasons["cycles"], strict=True) if c != "feet"] == [
        3,
        2,
    ]


def walkway(unit: str = "") -> pd.DataFrame:
    """Footfalls: what ends with a contact stands in its row, and what begins there, too."""
    before = STRIDES.groupby("foot").shift(1)
    return pd.DataFrame(
        {
            f"First Contact{unit}": STRIDES["hs"],
            f"Stride Length{unit and ' (cm.)'}": before["slength"] * 100,
            f"Stride Velocity{unit and ' (cm./sec.)'}": before["speed"] * 100,
            "swing": before["swing"] * before["gct"] / 100,
            "gct": before["gct"],
            "contact": STRIDES["contact"] / 1000,
            "step": STRIDES["hs"].diff(),
        }
    )


def test_the_map_for_footfalls_of_a_walkway(tmp_path: Path) -> None:
    table = (
        walkway()
        .fillna(0)
        .rename(
            columns={
                "First Contact": "First Contact Time",
                "swing": "Swing Time",
                "gct": "Stride Time",
                "contact": "Stance Time",
                "step": "Step Time",
            }
        )
    )
    table["Test Record #"] = 7
    table["Left/Right Foot"] = (STRIDES["foot"] == "right").astype(int)
    table["Pass Number"] = 1
    path = tmp_path / "full.csv"
    table.rename(columns=lambda name: name + " ").to_csv(path, index=False)
    (walk,) = gs.import_tables(path, "walkway-footfalls")
    found = values_of(walk.strides)
    known = STRIDES.groupby("foot").head(11).sort_values(["foot", "first_sample"])
    for column in ("last_sample", "gct", "swing", "contact", "slength", "speed", "stance"):
        assert found[column] == pytest.approx(known[column].tolist())


def test_the_map_for_contacts_of_a_walkway(tmp_path: Path) -> None:
    table = walkway(" (sec.)").rename(
        columns={
            "swing": "Swing Time (sec.)",
            "gct": "Gait Cycle Time (sec.)",
            "contact": "Stance Time (sec.)",
            "step": "Step Time (sec.)",
        }
    )
    names = ["Contact", "Footfall", *table.columns]
    rows: list[list[Any]] = [["Report"], ["Walk", "3"], names, ["#Samples", "", *[24] * 7]]
    rows += [["Mean", "Left", *[1.0] * 7], ["SD", "Left", *[0.1] * 7]]
    for number, values in enumerate(table.itertuples(index=False), 1):
        foot = STRIDES["foot"][number - 1].title()
        rows.append([number, f"{'1: ' if number == 1 else ''}{foot} {number}", *values])
    path = tmp_path / "contacts.xlsx"
    pd.DataFrame(rows).to_excel(path, index=False, header=False)
    (walk,) = gs.import_tables(path, "walkway-contacts")
    known = STRIDES.groupby("foot").head(11).sort_values(["foot", "first_sample"])
    for column in ("last_sample", "gct", "contact", "slength", "speed"):
        assert values_of(walk.strides)[column] == pytest.approx(known[column].tolist())


def rows_like_gaitndd(strides: pd.DataFrame, feet: pd.DataFrame) -> pd.DataFrame:
    left = strides[strides["foot"] == "left"].reset_index()
    right = strides[strides["foot"] == "right"].reset_index()
    columns: dict[str, Any] = {"time": (left["hs"] + left["gct"]).round(4)}
    for name in ("gct", "swing_s", "swing", "stance_s", "stance"):
        for side, one in (("left", left), ("right", right)):
            values = {
                "swing_s": one["swing"] * one["gct"] / 100,
                "stance_s": one["contact"] / 1000,
            }
            columns[f"{name} {side}"] = values.get(name, one.get(name))
    columns["ds_s"] = feet["ds"] * right["gct"] / 100
    # The table has values outside of 0 to 100 % where it went wrong.
    columns["ds"] = feet["ds"].fillna(-3.0)
    return pd.DataFrame(columns)


@pytest.mark.parametrize("name", ["control4", "park9", "hunt13"])
def test_a_gaitndd_table_equals_the_walk_folder_that_was_made_of_it(
    name: str, tmp_path: Path
) -> None:
    real = os.environ.get("GAIT_REAL_WALKS")
    folders = [path for path in Path(real).rglob(name) if path.is_dir()] if real else []
    if not folders:
        pytest.skip("GAIT_REAL_WALKS does not name a folder with this measured walk")
    known = gs.read_walk(folders[0])
    path = tmp_path / f"{name}.ts"
    rows_like_gaitndd(known.strides, known.feet).to_csv(path, sep="\t", header=False, index=False)
    (walk,) = gs.import_tables(path, "gaitndd")
    made = gs.Walk(walk.strides, walk.sampling_rate, walk.feet, known.exclusions, walk.samples)
    found, expected = gs.analyse(made).parameters, gs.analyse(known).parameters
    assert found["n"].tolist() == expected["n"].tolist()
    # The folder's cadence is rounded to three decimals.
    is_rounded = (expected["parameter"] == "cadence").to_numpy()
    for column in ("mean", "median", "std", "iqr", "min", "max", "cv", "asymmetry"):
        difference = (found[column] - expected[column]).abs().to_numpy()
        assert np.nanmax(difference[~is_rounded], initial=0) < 1e-9
        assert np.nanmax(difference[is_rounded], initial=0) < 6e-4
