"""Tables as reports and devices write them are seen by a suggested map, and become the walk."""

from __future__ import annotations

import json
from pathlib import Path
from typing import Any

import pandas as pd
import pytest
from conftest import values_of
from tables_to_import import in_time_order, strides_of_both_feet

import gait_statistics as gs
from gait_statistics._import._suggest import suggested_map

STRIDES = in_time_order(strides_of_both_feet())
ROWS: Any = list(STRIDES.itertuples())
LEFT, RIGHT = (
    STRIDES[STRIDES["foot"] == foot].reset_index(drop=True) for foot in ("left", "right")
)


def first_samples_by_suggestion(path: Path) -> list[int]:
    """The first samples of the strides that a suggested map makes, left ones first."""
    path.with_name("m.toml").write_text(suggested_map([str(path)]), encoding="utf-8")
    (walk,) = gs.import_tables(path, path.with_name("m.toml"))
    assert values_of(walk.strides)["gct"]
    return list(values_of(walk.strides)["first_sample"])


def known(count: int = 12) -> list[int]:
    """The first samples of so many strides of each foot."""
    return [
        sample for foot in (LEFT, RIGHT) for sample in foot["first_sample"].head(count).tolist()
    ]


def lines_of(rows: Any, separator: str) -> str:
    return "".join(separator.join(map(str, row)) + "\n" for row in rows)


def test_contacts_with_a_begin_and_an_end_are_footfalls(tmp_path: Path) -> None:
    rows = (
        ("LI" if row.foot == "left" else "RE", round(row.hs * 1000), round(row.lift_off * 1000))
        for row in ROWS
    )
    head = "Insole export\tno. 42\nRate [Hz]:\t100\n\n"
    names = "Side\tContact start [ms]\tContact end [ms]\n"
    (tmp_path / "t.txt").write_text(head + names + lines_of(rows, "\t"))
    # The last contact of each foot begins no stride.
    assert first_samples_by_suggestion(tmp_path / "t.txt") == known(11)


@pytest.mark.parametrize("columns", [{"end": "off"}, {"last_sample": "off"}])
def test_the_end_of_a_contact_as_that_of_the_stride_is_a_warning(columns: dict[str, str]) -> None:
    is_sample = "last_sample" in columns
    table = pd.DataFrame({"foot": STRIDES["foot"], "on": STRIDES["hs"], "off": STRIDES["lift_off"]})
    if is_sample:
        table[["on", "off"]] = (table[["on", "off"]] * 100).round().astype(int)
    columns = {"first_sample" if is_sample else "hs": "on", **columns}
    map_ = {"feet": {"column": "foot"}, "columns": columns, "sampling_rate": 100, "pairs": "none"}
    with pytest.warns(gs.WalkWarning, match="does it end the contact.*lift_off = {column"):
        gs.import_tables(table, map_)


def test_a_summary_above_the_strides_is_not_taken_for_them(tmp_path: Path) -> None:
    preamble = [
        *(["Treadmill report"], ["Subject", "P7"], ["Belt speed", "4,2 km/h"], ["Summary"]),
        *(["Value", "Left", "Right"], ["Stride time, s", "1,05", "1,06"], ["Stance, %", 62, 61]),
    ]
    rows = (
        (number, row.foot, f"{row.hs:.2f}".replace(".", ","), f"{row.gct:.2f}".replace(".", ","))
        for number, row in enumerate(ROWS, 1)
    )
    names = [("No", "Side", "Initial contact, s", "Stride time, s")]
    text = lines_of([*preamble, *names, *rows], ";")
    (tmp_path / "t.csv").write_text(text)
    assert first_samples_by_suggestion(tmp_path / "t.csv") == known()


def test_merged_names_over_names_over_units(tmp_path: Path) -> None:
    head = [
        ["Stride", "Left foot", None, "Right foot", None],
        [None, "Strike", "Stride time", "Strike", "Stride time"],
        ["#", "s", "ms", "s", "ms"],
    ]
    values = zip(
        range(12), LEFT["hs"], LEFT["gct"] * 1000, RIGHT["hs"], RIGHT["gct"] * 1000, strict=True
    )
    table = pd.DataFrame([*head, *values], dtype=object)
    table.to_excel(tmp_path / "t.xlsx", header=False, index=False)
    assert first_samples_by_suggestion(tmp_path / "t.xlsx") == known()


def test_names_that_come_again_with_a_suffix_are_asked_about(tmp_path: Path) -> None:
    columns = {"ic_time": "hs", "stride_time": "gct"}
    parts = [
        foot[[*columns.values()]].set_axis([name + suffix for name in columns], axis=1)
        for foot, suffix in ((LEFT, ""), (RIGHT, ".1"))
    ]
    pd.concat(parts, axis=1).to_csv(tmp_path / "t.csv", index=False)
    text = suggested_map([str(tmp_path / "t.csv")])
    assert 'gct = "stride_time{foot}"' in text
    (tmp_path / "m.toml").write_text(text)
    with pytest.raises(gs.WalkError):
        gs.import_tables(tmp_path / "t.csv", tmp_path / "m.toml")
    (tmp_path / "m.toml").write_text(text.replace("# left", "left").replace("# right", "right"))
    (walk,) = gs.import_tables(tmp_path / "t.csv", tmp_path / "m.toml")
    assert values_of(walk.strides)["first_sample"] == known()


def test_names_in_french(tmp_path: Path) -> None:
    rows = (
        [
            {"left": "Gauche", "right": "Droit"}[row.foot],
            *(f"{value:.2f}".replace(".", ",") for value in (row.hs, row.gct, row.stance)),
            f"{row.speed:.3f}".replace(".", ","),
        ]
        for row in ROWS
    )
    names = "Côté;Contact initial (s);Durée du cycle (s);Phase d'appui (% du cycle);Vitesse (m/s)\n"
    (tmp_path / "t.csv").write_text(names + lines_of(rows, ";"), encoding="cp1252")
    assert first_samples_by_suggestion(tmp_path / "t.csv") == known()
    text = suggested_map([str(tmp_path / "t.csv")])
    assert 'stance = "Phase d\'appui (% du cycle)"' in text
    assert 'speed = "Vitesse (m/s)"' in text


@pytest.mark.parametrize("ending", [".jsonl", ".json"])
def test_records_of_json(ending: str, tmp_path: Path) -> None:
    records = [
        {"side": row.foot, "ic": row.hs, "params": {"stride_time_s": row.gct}} for row in ROWS
    ]
    text = json.dumps(records) if ending == ".json" else "\n".join(map(json.dumps, records))
    path = tmp_path / f"t{ending}"
    path.write_text(text)
    assert first_samples_by_suggestion(path) == known()


def test_json_that_is_no_table_is_an_error(tmp_path: Path) -> None:
    path = tmp_path / "t.json"
    for text in ('{"subject": "P7"}', "[1, 2]", "{", ""):
        path.write_text(text)
        with pytest.raises(gs.WalkError, match=r"t\.json: cannot be read as a \.json file"):
            gs.import_tables(path, {"feet": {"only": "left"}, "columns": {"gct": "x"}})


def test_a_running_number_is_no_moment(tmp_path: Path) -> None:
    table = STRIDES[["foot", "hs"]].rename(columns={"hs": "Time"})
    for numbers in (range(1, 25), [1 + n // 2 for n in range(24)]):
        table.assign(Contact=numbers).to_csv(tmp_path / "t.csv", index=False)
        assert first_samples_by_suggestion(tmp_path / "t.csv") == known(11)
    events = table.assign(Event="HS", Zeit=STRIDES["hs"]).drop(columns="Time")
    events.insert(0, "Nr", range(1, 25))
    events.loc[23, "Event"] = "TO"
    events.to_csv(tmp_path / "t.csv", index=False)
    assert 'hs = "Zeit"' in suggested_map([str(tmp_path / "t.csv")])


def test_a_letter_in_the_name_of_one_file_is_no_foot(tmp_path: Path) -> None:
    for name, is_foot in (("r_export", False), ("walk_right", True)):
        RIGHT[["hs", "gct"]].to_csv(tmp_path / f"{name}.csv", index=False)
        text = suggested_map([str(tmp_path / f"{name}.csv")])
        assert ('by = "files"' in text) == is_foot
        assert ("feet: no column says which foot" in text) != is_foot


def test_a_footer_without_a_foot_hides_no_foot_column(tmp_path: Path) -> None:
    rows = [
        [n, "Links" if row.foot == "left" else "Rechts", row.hs, row.gct]
        for n, row in enumerate(ROWS, 1)
    ]
    footer = [["Standardabw.", "", "", 0.02], ["Bereich", "", "", 0.1]]
    names = [("Zyklus", "Seite", "Initialer Kontakt (s)", "Zyklusdauer (s)")]
    (tmp_path / "t.csv").write_text(lines_of([*names, *rows, *footer], ";"))
    assert first_samples_by_suggestion(tmp_path / "t.csv") == known()
    text = suggested_map([str(tmp_path / "t.csv")])
    assert 'column = "Seite"\nempty = true  # 1 row without a foot' in text
    assert 'is = ["Standardabw."]' in text


def test_headings_in_german_are_seen(tmp_path: Path) -> None:
    parts = [
        f"{heading};;\nNr;Auftritt (s);Dauer (s)\n"
        + lines_of(zip(range(1, 13), foot["hs"], foot["gct"], strict=True), ";")
        for heading, foot in (("Linker Fuß", LEFT), ("Rechter Fuß", RIGHT))
    ]
    (tmp_path / "t.csv").write_text("\n".join(parts), encoding="utf-8")
    assert first_samples_by_suggestion(tmp_path / "t.csv") == known()


def test_records_in_the_columns_of_a_parquet_file(tmp_path: Path) -> None:
    table = pd.DataFrame(
        {
            foot: [
                {"ic": hs, "stride": {"time": gct}}
                for hs, gct in zip(part["hs"], part["gct"], strict=True)
            ]
            for foot, part in (("left", LEFT), ("right", RIGHT))
        }
    )
    table.assign(subject="A").to_parquet(tmp_path / "t.parquet")
    assert first_samples_by_suggestion(tmp_path / "t.parquet") == known()


def test_merged_cells_that_name_walks_are_filled_down(tmp_path: Path) -> None:
    parts = [
        STRIDES[["foot", "hs", "gct"]].assign(Subject=pd.Series([name], dtype=object))
        for name in ("P1", "P2")
    ]
    pd.concat(parts).to_excel(tmp_path / "t.xlsx", index=False)
    text = suggested_map([str(tmp_path / "t.xlsx")])
    assert 'fill_down = ["Subject"]  # their empty cells repeat the cell above' in text
    (tmp_path / "m.toml").write_text(text)
    walks = gs.import_tables(tmp_path / "t.xlsx", tmp_path / "m.toml")
    assert [(walk.name, len(values_of(walk.strides)["gct"])) for walk in walks] == [
        *(("P1", 24), ("P2", 24))
    ]


def test_columns_for_the_events_of_each_foot(tmp_path: Path) -> None:
    events = {"LHS": LEFT["hs"], "LTO": LEFT["lift_off"], "RHS": RIGHT["hs"]}
    table = pd.DataFrame({**events, "RTO": RIGHT["lift_off"]})
    table.to_csv(tmp_path / "t.csv", index=False)
    assert first_samples_by_suggestion(tmp_path / "t.csv") == known(11)
    text = suggested_map([str(tmp_path / "t.csv")])
    assert 'hs = "{foot}HS"' in text
    assert 'lift_off = "{foot}TO"' in text
