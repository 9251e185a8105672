"""What is wrong with a map, or with what is given as one, is said in words that mend it."""

from __future__ import annotations

from pathlib import Path
from typing import Any

import pandas as pd
import pytest
from conftest import values_of
from tables_to_import import in_time_order, strides_of_both_feet

import gait_statistics as gs
from gait_statistics._import._suggest import suggested_map

STRIDES = in_time_order(strides_of_both_feet())[["foot", "hs", "gct"]]
MAP: dict[str, Any] = {"feet": {"column": "foot"}, "columns": {"hs": "hs", "gct": "gct"}}


def errors_of(table: Any, map_: Any = None, **keys: Any) -> list[str]:
    with pytest.raises(gs.WalkError) as raised:
        gs.import_tables(table, {**MAP, **keys} if map_ is None else map_)
    return [str(error) for error in raised.value.errors]


def notes_of(table: Any, **keys: Any) -> list[str]:
    (walk,) = gs.import_tables(table, {**MAP, **keys})
    assert walk.about is not None
    rows = zip(walk.about["name"], walk.about["value"], strict=True)
    return [str(value) for name, value in rows if name == "note"]


# ---- Maps that are no TOML


@pytest.mark.parametrize(
    ("text", "line", "expected"),
    [
        ("[columns]\nhs = Start (s)", 2, 'a text in quotation marks: hs = "Start (s)"'),
        ("gct = {column = Stride}", 1, "a value after =: a text in quotation marks, gct = "),
        ("gct = “Stride”", 1, 'straight quotation marks: gct = "Stride time"'),
        ("sampling_rate = 102,4", 1, "a number with a decimal point: sampling_rate = 102.4"),
        ("sampling_rate: 100", 1, "=, not a colon, between a name and its value"),
        ("sort = True", 1, "true or false, in small letters: sort = true"),
        ("sort = ", 1, "a value after =: a text in quotation marks"),
        ("[columns\nhs = 'a'", 1, "a section's name in brackets, closed on its line: [columns]"),
        ("[[skip]\nlines = [1]", 1, "as many brackets at the end as at the begin: [[skip]]"),
        ("[skip]\nlines = 1\n[skip]\nlines = 2", 3, "two pairs of brackets, since it may stand"),
        ("[feet]\nby = 'rows'\n[feet]\nleft = 1", 3, "each [section] once, with all its keys"),
        ('gct = "a"\ngct = "b"', 2, "each name once in a section; a list takes several values"),
        ("stride time = 'a'", 1, "a name without blanks, =, and a value"),
        ('gct = "a\nhs = "b"', 1, "a quotation mark at both ends of a text"),
        ("gct = 'a\nhs = 1", 1, "a quotation mark at both ends of a text"),
        ('walk = ["a", \nsort = true', 1, "a ] that closes the list"),
        ('gct = {column = "a"\nunit = "s"}', 1, "a } that closes the braces on the same line"),
        ('pattern = "\\d"', 1, "a text with backslashes in single quotation marks"),
        ('gct = "a" b', 1, "nothing after the value, or a remark after #"),
    ],
)
def test_a_fault_of_toml_names_the_line_and_the_right_form(
    text: str, line: int, expected: str, tmp_path: Path
) -> None:
    path = tmp_path / "m.toml"
    path.write_text(text + "\n", encoding="utf-8")
    (error,) = errors_of(STRIDES, path)
    found = text.splitlines()[line - 1].strip()
    assert error.startswith(f"{path}:{line}: found {found}, expected {expected}")


def test_every_example_of_a_fault_of_toml_is_toml() -> None:
    from gait_statistics._import._toml import _BY_FAULT, _BY_LINE, tables_of

    for _, words in (*_BY_LINE, *_BY_FAULT):
        _, sign, example = words.partition(": ")
        if sign and not example.startswith("a text"):
            assert tables_of("m", example), example


# ---- Sections and keys that are not known


@pytest.mark.parametrize(
    ("map_", "expected"),
    [
        (
            {"foot": {"column": "x"}},
            '[foot]: found an unknown section, expected a known one: is it "[feet]"?',
        ),
        ({"exclusion": [{"first": 1}]}, 'is it "[exclude]"?'),
        ({"zzz": {"a": 1}}, "expected one of: [table], [feet], [events], [columns]"),
        ({"table": {"sampling_rat": 100}}, 'is it "sampling_rate" above the first [section]?'),
        (
            {"seperator": ";"},
            'seperator: found an unknown key, expected a known one: is it "separator" in [table]?',
        ),
        (
            {"feet": {"colum": "foot"}},
            '[feet] colum: found an unknown key, expected a known one: is it "column"?',
        ),
    ],
)
def test_an_unknown_section_or_key_names_the_nearest_one_and_its_place(
    map_: dict[str, Any], expected: str
) -> None:
    assert any(expected in error for error in errors_of(STRIDES, {**MAP, **map_}))


@pytest.mark.parametrize("unit", ["mm:ss", "hh:mm:ss.fff", "YYYY-MM-DD hh:mm", "timestamp"])
def test_the_form_of_a_time_is_no_unit(unit: str) -> None:
    columns = {"hs": {"column": "hs", "unit": unit}, "gct": "gct"}
    (error,) = errors_of(STRIDES, columns=columns)
    assert error.endswith(
        "expected none: times such as 1:05.3, 10:00:01 and dates are recognised without"
    )


# ---- What is given in place of a table or a map


def test_a_folder_is_no_table_and_its_tables_are_named(tmp_path: Path) -> None:
    (error,) = errors_of(tmp_path)
    assert error.endswith("found a folder, expected a table, which is a file: none is in it")
    for name in ("b.csv", "a.xlsx", "notes.md"):
        (tmp_path / name).touch()
    (error,) = errors_of(tmp_path)
    assert error.endswith('which is a file: in it are "a.xlsx", "b.csv"')
    with pytest.raises(gs.WalkError) as raised:
        suggested_map([str(tmp_path)])
    assert [str(one) for one in raised.value.errors] == [error]
    gs.import_tables(STRIDES, MAP, tmp_path / "walk")
    (error,) = errors_of(tmp_path / "walk")
    assert error.endswith(f"it is a walk folder already: gait-statistics {tmp_path / 'walk'}")


def test_a_map_and_a_table_that_are_exchanged_are_told_apart(tmp_path: Path) -> None:
    (tmp_path / "m.toml").write_text("[feet]\n")
    STRIDES.to_csv(tmp_path / "t.csv", index=False)
    (error,) = errors_of(tmp_path / "m.toml", tmp_path / "t.csv")
    assert "t.csv: found a table, expected a map" in error
    assert "gait-import t.csv --map MAP.toml -o FOLDER" in error
    (error,) = errors_of(tmp_path / "m.toml")
    assert error == (
        "m.toml: found a map, expected a table: a map stands after --map: --map m.toml"
    )


def test_the_ways_to_tell_feet_are_named_with_headings() -> None:
    errors = errors_of(STRIDES, {"columns": MAP["columns"]})
    assert '"sheets", "files" or "headings" (lines with the foot\'s word alone)' in errors[0]


# ---- Rows


def test_rows_that_are_there_twice_are_named_as_skip_takes_them(tmp_path: Path) -> None:
    twice = pd.concat([STRIDES, STRIDES.iloc[[4, 7]]], ignore_index=True)
    twice.to_csv(tmp_path / "t.csv", index=False)
    errors = errors_of(tmp_path / "t.csv", sort=True)
    assert errors == [
        "t.csv:26: found the same stride as in line 6, expected it once: [[skip]] lines = [26, 27] "
        "leaves it out here (and in 1 more row: line 27)"
    ]
    assert len(notes_of(tmp_path / "t.csv", sort=True, skip=[{"lines": [26, 27]}])) == 1


def test_a_contact_that_is_there_twice_says_how_to_leave_it_out() -> None:
    twice = pd.concat([STRIDES.iloc[:5], STRIDES.iloc[4:]], ignore_index=True)
    columns = {"hs": "hs"}
    (error,) = errors_of(twice, rows="footfalls", columns=columns, sort=True, derive=["gct"])
    assert error.endswith("is it there twice? [[skip]] lines = [4] leaves it out")


def test_rows_without_a_stride_time_are_named_where_they_end_what_is_known() -> None:
    table = STRIDES.astype({"gct": object})
    table.loc[[6, 22, 23], "gct"] = None
    notes = notes_of(table, feet={"first": "left"}, rows="footfalls")
    assert any("foot is not known (table 1, row 6)" in note for note in notes)
    table.loc[22:, "gct"] = 1.05
    notes = notes_of(table, rows="footfalls")
    assert "1 stride left out: without a stride time (begin: table 1, row 6)" in notes


def files_of_feet(folder: Path) -> list[Path]:
    """A file for each foot; line 4 of the left one has a word in place of a time."""
    folder.mkdir(exist_ok=True)
    paths = []
    for foot in ("left", "right"):
        table = STRIDES[STRIDES["foot"] == foot].astype({"gct": object}).reset_index(drop=True)
        if foot == "left":
            table.loc[2, "gct"] = "n.d."
        paths.append(folder / f"{foot}.csv")
        table[["hs", "gct"]].to_csv(paths[-1], index=False)
    return paths


BY_FILES: dict[str, Any] = {**MAP, "feet": {"by": "files"}}


def test_lines_of_one_table_of_several_are_left_out_in_it_alone(tmp_path: Path) -> None:
    paths = files_of_feet(tmp_path)
    (error,) = errors_of(paths, BY_FILES)
    assert error.endswith('if the row is no stride: [[skip]] table = "left.csv", lines = [4]')
    skip = {"table": "left.csv", "lines": [4]}
    (walk,) = gs.import_tables(paths, {**BY_FILES, "skip": [skip]})
    right = STRIDES[STRIDES["foot"] == "right"]
    begins = values_of(walk.strides)["first_sample"]
    assert begins[-len(right) :] == (100 * right["hs"]).round().tolist()
    assert len(begins) == len(STRIDES) - 1


def test_strides_of_one_table_of_several_are_excluded_in_it_alone(tmp_path: Path) -> None:
    paths = files_of_feet(tmp_path)
    skip = [{"table": "left.csv", "lines": [4]}]
    exclude = [{"table": "right.csv", "lines": [4]}]
    gs.import_tables(paths, {**BY_FILES, "skip": skip, "exclude": exclude}, tmp_path / "walk")
    rows = (tmp_path / "walk/exclusions.csv").read_text().splitlines()
    assert [row for row in rows if row.startswith(("left", "right"))] == ["right,excluded_1,2,"]


def test_a_condition_names_one_of_the_tables_that_are_read(tmp_path: Path) -> None:
    paths = files_of_feet(tmp_path)
    for section in ("skip", "exclude"):
        error, *_ = errors_of(paths, {**BY_FILES, section: [{"table": "a.csv", "lines": [4]}]})
        assert f'[[{section}]] table: found "a.csv", expected one of the tables that are' in error
        assert error.endswith('read: "left.csv", "right.csv"')
    others = files_of_feet(tmp_path / "other")
    skip = [{"table": "left.csv", "lines": [4]}]
    error, *_ = errors_of([*paths, *others], {**BY_FILES, "skip": skip})
    assert error.endswith("expected a name that one table alone has: rename the files")


def test_a_sheet_is_named_in_conditions_as_messages_name_it(tmp_path: Path) -> None:
    with pd.ExcelWriter(tmp_path / "b.xlsx") as book:
        for path in files_of_feet(tmp_path):
            pd.read_csv(path).to_excel(book, sheet_name=path.stem, index=False)
    map_ = {**MAP, "feet": {"by": "sheets"}}
    (error,) = errors_of(tmp_path / "b.xlsx", map_)
    assert error.endswith('[[skip]] table = "b.xlsx, sheet left", lines = [4]')
    skip = [{"table": "b.xlsx, sheet left", "lines": [4]}]
    (walk,) = gs.import_tables(tmp_path / "b.xlsx", {**map_, "skip": skip})
    assert len(values_of(walk.strides)["first_sample"]) == len(STRIDES) - 1


def test_the_longest_of_several_sheets_is_the_example(tmp_path: Path) -> None:
    with pd.ExcelWriter(tmp_path / "b.xlsx") as book:
        STRIDES.head(8).to_excel(book, sheet_name="Short", index=False)
        STRIDES.to_excel(book, sheet_name="Long", index=False)
    (error,) = errors_of(tmp_path / "b.xlsx")
    assert 'found 2 sheets ("Short", "Long")' in error
    assert '[table] sheet = "Long" for one (it has the most rows)' in error


# ---- Walks with the same name


def test_walks_whose_folders_would_be_the_same_are_numbered_and_noted(tmp_path: Path) -> None:
    table = pd.concat([STRIDES.assign(id=name) for name in ("S1 a", "s1/A")])
    walks = gs.import_tables(table, {**MAP, "walk": "id"}, tmp_path / "out")
    assert sorted(path.name for path in (tmp_path / "out").iterdir()) == ["S1_a", "s1_A-2"]
    assert walks[1].about is not None
    assert any('"s1/A" is in the folder s1_A-2' in str(text) for text in walks[1].about["value"])


def test_files_of_the_same_name_are_not_put_into_one_walk(tmp_path: Path) -> None:
    paths = [tmp_path / folder / "t.csv" for folder in ("a", "b")]
    for path, late in zip(paths, (0, 100), strict=True):
        path.parent.mkdir()
        STRIDES.assign(hs=STRIDES["hs"] + late, day=late).to_csv(path, index=False)
    (error,) = errors_of(paths, walk="{file}")
    assert 'walk: found "t" as the name of several files' in error
    walks = gs.import_tables(paths, {**MAP, "walk": ["{file}", "day"]})
    assert [walk.name for walk in walks] == ["t_0", "t_100"]
