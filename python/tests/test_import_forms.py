"""Tables of many forms become the same walk, or say which key of the map they need."""

from __future__ import annotations

import datetime
from pathlib import Path
from typing import Any

import numpy as np
import pandas as pd
import pytest
from conftest import values_of
from tables_to_import import in_time_order, strides_of_both_feet

import gait_statistics as gs

STRIDES = in_time_order(strides_of_both_feet())
COLUMNS = {"hs": "Strike", "gct": "Stride"}
MAP: dict[str, Any] = {"feet": {"column": "Side"}, "columns": COLUMNS}

Rows = list[list[str]]


def rows_by_name() -> Any:
    return STRIDES.itertuples()


def rows_of(number: str = "{:.2f}", stride: str = "{:.2f}") -> Rows:
    """The rows of a table with a foot column, a strike and a duration."""
    return [[row.foot, number.format(row.hs), stride.format(row.gct)] for row in rows_by_name()]


def text_of(rows: Rows, separator: str = ",", header: str | None = "Side,Strike,Stride") -> str:
    lines = [separator.join(row) for row in rows]
    head = [] if header is None else [header.replace(",", separator)]
    return "\n".join([*head, *lines]) + "\n"


def imported(path: Path, content: str | bytes, map_: Any = None, **settings: Any) -> gs.Walk:
    """The one walk of a text."""
    path.write_bytes(content if isinstance(content, bytes) else content.encode())
    (walk,) = gs.import_tables(path, {**MAP, **(map_ or {}), **settings})
    return walk


def errors_of(path: Path, content: str | bytes, map_: Any = None, **settings: Any) -> list[str]:
    with pytest.raises(gs.WalkError) as raised:
        imported(path, content, map_, **settings)
    return [str(error) for error in raised.value.errors]


def assert_same(walk: gs.Walk, shift: int = 0, columns: tuple[str, ...] = ("gct",)) -> None:
    """The strides are those of the walk that the tables are made of."""
    found = values_of(walk.strides)
    known = STRIDES.sort_values(["foot", "first_sample"])
    assert found["foot"] == known["foot"].tolist()
    for name in ("first_sample", "last_sample"):
        assert found[name] == (known[name] - shift).tolist()
    for name in columns:
        assert found[name] == pytest.approx(known[name].tolist(), abs=1e-9)


@pytest.fixture
def csv(tmp_path: Path) -> Path:
    return tmp_path / "export.csv"


@pytest.mark.parametrize("separator", [",", ";", "\t", "|", "  "])
def test_a_text_of_any_separator(csv: Path, separator: str) -> None:
    assert_same(imported(csv, text_of(rows_of(), separator)))


def test_decimal_commas_with_points_between_thousands(csv: Path) -> None:
    rows = [
        [foot, hs.replace(".", ","), f"{round(1000 * float(gct)):,}".replace(",", ".") + ",0"]
        for foot, hs, gct in rows_of()
    ]
    map_ = {"columns": {"hs": "Strike", "gct": {"column": "Stride", "unit": "ms"}}}
    assert_same(imported(csv, text_of(rows, ";"), map_))
    without_fraction = [[foot, hs, gct.removesuffix(",0")] for foot, hs, gct in rows]
    assert_same(imported(csv, text_of(without_fraction, ";"), map_))


def test_commas_that_may_be_either_sign_are_asked_about(csv: Path) -> None:
    rows = [[foot, hs, f"1,0{40 + n}"] for n, (foot, hs, _) in enumerate(rows_of())]
    map_ = {"columns": {"gct": "Stride"}, "times": "end to end", "pairs": "order"}
    (error,) = errors_of(csv, text_of(rows, ";"), map_)
    assert error.startswith('export.csv: found numbers such as "1,040" alone')
    walk = imported(csv, text_of(rows, ";"), map_, table={"decimal": ","})
    assert sorted(values_of(walk.strides)["gct"])[-1] == 1.063


@pytest.mark.parametrize("encoding", ["utf-8", "utf-8-sig", "utf-16", "cp1252"])
def test_encodings_are_recognised(csv: Path, encoding: str) -> None:
    text = text_of(rows_of(), header="Fuß,Strike,Stride")
    assert_same(imported(csv, text.encode(encoding), feet={"column": "Fuß"}))


def test_an_encoding_without_a_mark_is_named_in_the_map(csv: Path) -> None:
    content = text_of(rows_of()).encode("utf-16-le")
    (error,) = errors_of(csv, content)
    assert 'encoding = "utf-16-le"' in error
    assert_same(imported(csv, content, table={"encoding": "utf-16-le"}))


def test_a_row_of_units_beneath_the_names(csv: Path) -> None:
    rows = [["", "[s]", "(ms)"], *rows_of(stride="{:.5f}")]
    rows[1:] = [[foot, hs, str(round(1000 * float(gct)))] for foot, hs, gct in rows[1:]]
    assert_same(imported(csv, text_of(rows)))


def test_names_over_two_lines(csv: Path) -> None:
    header = "Gait,,\nSide,Strike,Stride\n"
    map_ = {
        "table": {"header_rows": 2},
        "feet": {"column": "Gait Side"},
        "columns": {"hs": "Gait Strike", "gct": "Gait Stride"},
    }
    assert_same(imported(csv, header + text_of(rows_of(), header=None), map_))
    del map_["table"]
    (error,) = errors_of(csv, header + text_of(rows_of(), header=None), map_)
    assert "header_rows = 2" in error


@pytest.mark.parametrize(
    ("left", "right", "said"),
    [("0", "1", (0, 1)), ("L", "R", None), ("links", "rechts", ("links", "rechts"))],
)
def test_words_and_numbers_for_the_feet(csv: Path, left: str, right: str, said: Any) -> None:
    rows = [[left if foot == "left" else right, *rest] for foot, *rest in rows_of()]
    feet = {"column": "Side"}
    if said is None:
        assert_same(imported(csv, text_of(rows), feet=feet))
        return
    (error,) = errors_of(csv, text_of(rows), feet=feet)
    assert error.startswith("export.csv:2: column Side: found")
    assert f'left = "{left}", right = "{right}"' in error
    assert_same(imported(csv, text_of(rows), feet={**feet, "left": said[0], "right": said[1]}))


def test_clock_times_count_from_the_first_one(csv: Path) -> None:
    def clock(seconds: float) -> str:
        whole = datetime.timedelta(seconds=round(seconds + 86395, 2))
        hundredths = round(whole.total_seconds() * 100) % 8640000
        minutes, rest = divmod(hundredths, 6000)
        return f"{minutes // 60:02}:{minutes % 60:02}:{rest / 100:05.2f}"

    rows = [[foot, clock(float(hs)), gct] for foot, hs, gct in rows_of()]
    assert rows[0][1].startswith("23:59")
    assert rows[-1][1].startswith("00:00")
    assert_same(imported(csv, text_of(rows)), shift=int(STRIDES["first_sample"].min()))


@pytest.mark.parametrize("form", ["%Y-%m-%d %H:%M:%S.%f", "%d.%m.%Y %H:%M:%S.%f"])
def test_dates_count_from_the_first_one(csv: Path, form: str) -> None:
    begin = datetime.datetime(2024, 12, 3, 10, 0)
    rows = [
        [foot, (begin + datetime.timedelta(seconds=float(hs))).strftime(form), gct]
        for foot, hs, gct in rows_of()
    ]
    assert_same(imported(csv, text_of(rows)), shift=int(STRIDES["first_sample"].min()))


def test_blank_rows_and_columns_and_names_that_come_again_are_passed_over(csv: Path) -> None:
    rows = [[*row[:1], "", *row[1:], "", ""] for row in rows_of()]
    head = ["Side", "", "Strike", "Stride", "", ""]
    rows = [*rows[:4], [""] * 6, head, *rows[4:], [""] * 6]
    assert_same(imported(csv, "\n\n" + text_of(rows, header=",".join(head))))


def test_lines_above_the_names_are_passed_over(csv: Path) -> None:
    preamble = 'Gait report;v2\n"Date; time";"3 December"\n\nStride;parameters;list\n'
    assert_same(imported(csv, preamble + text_of(rows_of(), ";")))
    assert_same(imported(csv, "sep=;\n" + text_of(rows_of(), ";")))


def test_rows_of_means_are_an_error_until_they_are_left_out(csv: Path) -> None:
    rows = [[*row, str(number)] for number, row in enumerate(rows_of())]
    rows += [["left", "5.0", "1.05", "Mean"], ["left", "0.5", "0.02", "SD"]]
    text = text_of(rows, header="Side,Strike,Stride,Number")
    (error,) = errors_of(csv, text)
    assert error.startswith('export.csv:26: column Number: found "Mean"')
    assert '[[skip]] column = "Number"' in error
    skip = [{"column": "Number", "is": ["Mean", "SD"]}]
    assert_same(imported(csv, text, skip=skip))
    assert_same(imported(csv, text, skip=[{"column": "Number", "number": False}]))


def test_a_name_that_is_there_twice_is_named_by_its_place(csv: Path) -> None:
    rows = [[*row, "9"] for row in rows_of()]
    text = text_of(rows, header="Side,Strike,Stride,Stride")
    (error,) = errors_of(csv, text)
    assert error == (
        'export.csv: column Stride: found it 2 times, expected once: name it by its place, "#3" '
        'or "#4"'
    )
    assert_same(imported(csv, text, columns={"hs": "Strike", "gct": "#3"}))


def test_a_table_without_names(csv: Path) -> None:
    map_ = {"feet": {"column": "#1"}, "columns": {"hs": "#2", "gct": "#3"}}
    assert_same(imported(csv, text_of(rows_of(), header=None), map_))


def test_values_and_words_for_missing(csv: Path) -> None:
    rows = [[*row, f"{36 + number / 10}"] for number, row in enumerate(rows_of())]
    rows[3][3], rows[5][3], rows[6][3] = "-1", "n.d.", ""
    text = text_of(rows, header="Side,Strike,Stride,Swing")
    columns = {**COLUMNS, "swing": "Swing"}
    errors = errors_of(csv, text, columns=columns)
    assert any("missing = [-1]" in error for error in errors)
    assert any('missing = ["n.d."]' in error for error in errors)
    walk = imported(csv, text, columns=columns, missing=[-1, "n.d."])
    assert values_of(walk.strides)["swing"].count(None) == 3


def test_units_beside_numbers(csv: Path) -> None:
    rows = [[foot, hs + " s", str(round(1000 * float(gct))) + " ms"] for foot, hs, gct in rows_of()]
    assert_same(imported(csv, text_of(rows)))


def test_a_file_for_each_foot(tmp_path: Path) -> None:
    for foot in ("left", "right"):
        rows = [row for row in rows_of() if row[0] == foot]
        (tmp_path / f"walk7_{foot}.csv").write_text(text_of(rows))
    tables = sorted(tmp_path.glob("*.csv"))
    (walk,) = gs.import_tables(tables, {**MAP, "feet": {"by": "files"}})
    assert_same(walk)
    (walk,) = gs.import_tables(tables, {**MAP, "feet": {"by": "files"}, "walk": "{file}"})
    assert walk.name == "walk7"


def test_rows_that_alternate(csv: Path) -> None:
    assert_same(imported(csv, text_of(rows_of()), feet={"first": "left"}))


def test_a_rate_that_is_not_whole_rescales_samples(csv: Path) -> None:
    rows = [
        [row.foot, f"{round(row.first_sample * 2.048)}", f"{round(row.last_sample * 2.048)}"]
        for row in rows_by_name()
    ]
    columns = {"first_sample": "Strike", "last_sample": "Stride"}
    walk = imported(csv, text_of(rows), columns=columns, sampling_rate=204.8)
    assert walk.sampling_rate == 205
    first = np.array(sorted(values_of(walk.strides)["first_sample"]))
    known = np.rint(np.rint(STRIDES["first_sample"] * 2.048) * 205 / 204.8)
    assert first.tolist() == known.tolist()
    (error,) = errors_of(csv, text_of(rows), columns=columns)
    assert "sampling_rate" in error


def test_footfalls_make_strides_from_one_contact_to_the_next(csv: Path) -> None:
    # The duration stands in the row of the contact that ends the stride.
    rows, before = [], {"left": "", "right": ""}
    for foot, hs, gct in rows_of():
        rows.append([foot, hs, before[foot]])
        before[foot] = gct
    columns = {"hs": "Strike", "gct": {"column": "Stride", "row": "next of foot"}}
    walk = imported(csv, text_of(rows), columns=columns, rows="footfalls")
    known = STRIDES.groupby("foot").head(11).sort_values(["foot", "first_sample"])
    assert values_of(walk.strides)["last_sample"] == known["last_sample"].tolist()
    assert values_of(walk.strides)["gct"] == pytest.approx(known["gct"].tolist())


def test_a_workbook_with_times_and_merged_cells(tmp_path: Path) -> None:
    table = pd.DataFrame(
        {
            "Person": ["P1"] + [None] * (len(STRIDES) - 1),
            "Side": STRIDES["foot"],
            "Strike": [
                (datetime.datetime(2024, 1, 1, 9) + datetime.timedelta(seconds=hs)).time()
                for hs in STRIDES["hs"]
            ],
            "Stride": STRIDES["gct"],
        }
    )
    path = tmp_path / "book.xlsx"
    with pd.ExcelWriter(path) as book:
        table.to_excel(book, sheet_name="Data", index=False, startrow=2, startcol=1)
        pd.DataFrame({"x": [1]}).to_excel(book, sheet_name="Info", index=False)
    with pytest.raises(gs.WalkError) as raised:
        gs.import_tables(path, {**MAP, "walk": "Person"})
    assert 'found 2 sheets ("Data", "Info")' in str(raised.value)
    map_ = {**MAP, "walk": "Person", "table": {"sheet": "Data"}}
    with pytest.raises(gs.WalkError) as raised:
        gs.import_tables(path, map_)
    assert str(raised.value).startswith(
        "book.xlsx, sheet Data, row 5, column Person: found an empty"
    )
    (walk,) = gs.import_tables(path, {**map_, "fill_down": "Person"})
    assert walk.name == "P1"
    assert_same(walk, shift=int(STRIDES["first_sample"].min()))


def test_frames_of_any_kind_and_a_frame_for_each_foot(kind: str) -> None:
    from conftest import as_kind

    table = STRIDES[["foot", "hs", "gct"]]
    map_: dict[str, Any] = {"feet": {"column": "foot"}, "columns": {"hs": "hs", "gct": "gct"}}
    (walk,) = gs.import_tables(as_kind(table, kind), map_)
    assert_same(walk)
    both = {
        f"{foot}_sensor": as_kind(table[table["foot"] == foot], kind) for foot in ("left", "right")
    }
    (walk,) = gs.import_tables(both, {**map_, "feet": {"by": "files"}})
    assert_same(walk)


def test_a_line_with_the_word_for_a_foot_above_its_rows(csv: Path) -> None:
    parts = []
    for foot in ("left", "right"):
        rows = [row[1:] for row in rows_of() if row[0] == foot]
        parts.append(f"{foot.title()} foot\n" + text_of(rows, header="Strike,Stride"))
    text = "\n".join(parts)
    assert_same(imported(csv, text, feet={"by": "headings"}))
    errors = errors_of(csv, text, feet={"only": "left"})
    assert any('[feet] by = "headings"' in error for error in errors)
