"""Compares every figure that gait-statistics writes of a walk with the other outputs, and with the
model: the text report, the three tables of CSV, and JSON, which also has to keep to its schema.

    outputs_agree.py PROGRAM FOLDER...

Takes every walk below the folders, both feet and each foot alone, and counts what it compares. The
schema is left out where there is no Python package jsonschema (Debian: python3-jsonschema). Ends
with 77, which CTest counts as skipped, when the only folder is empty.
"""

import csv
import io
import json
import math
import pathlib
import subprocess
import sys
from collections.abc import Iterator
from typing import Any

try:
    import jsonschema
except ModuleNotFoundError:
    jsonschema = None

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "model"))
import model  # noqa: E402

SCHEMA = json.loads((SOURCES / "docs" / "output.schema.json").read_text(encoding="utf-8"))
ANGLES = {row.field for row in model.CATALOGUE if row.unit in ("degree", "deg")}
MISSING_CELLS = {"", "na", "n/a", "nan", "null"}
STATISTICS = ("mean", "median", "std", "iqr", "min", "max", "cv", "asymmetry")
FEWEST_FOR_OUTER_PERCENTILES = 20
Walk = dict[str, Any]


class Comparison:
    """Counts what is compared, and ends the program where two figures differ."""

    def __init__(self) -> None:
        self.figures = 0
        self.where = ""

    def same(self, found: Any, expected: Any, what: str) -> None:
        self.figures += 1
        if isinstance(found, float) and isinstance(expected, float):
            equal = found == expected or (math.isnan(found) and math.isnan(expected))
        else:
            equal = found == expected
        if not equal:
            sys.exit(f"{self.where}: {what}: {found!r}, expected {expected!r}")


# What the tables say.


def table(folder: pathlib.Path, name: str) -> list[dict[str, str]]:
    file = folder / name
    if not file.exists():
        return []
    return list(csv.DictReader(io.StringIO(file.read_text(encoding="utf-8-sig"))))


def number(cell: str | None, column: str) -> float:
    if cell is None or cell.strip().lower() in MISSING_CELLS:
        return model.MISSING
    value = float(cell)
    return math.nextafter(-1.0, 0.0) if value == -1.0 and column in ANGLES else value


def foot_of(folder: pathlib.Path, name: str) -> tuple[list[dict[str, Any]], list[int]]:
    """A foot's cycles as the model takes them, and the lines on which they stand."""
    rows = enumerate(table(folder, "foot_cycles.csv"), 2)
    own = [(line, row) for line, row in rows if row["foot"] == name]
    own.sort(key=lambda numbered: int(numbered[1].get("index") or 0))
    cycles = [
        {
            column: int(cell)
            if column in ("first_sample", "last_sample", "index")
            else number(cell, column)
            for column, cell in row.items()
            if column != "foot"
        }
        | {"index": position}
        for position, (_, row) in enumerate(own)
    ]
    return cycles, [line for line, _ in own]


def recording_of(row: dict[str, str]) -> dict[str, Any]:
    counts = [row.get("signal_1_samples"), row.get("signal_2_samples")]
    known = [int(count) for count in counts if count]
    signals = [
        [i, int(count) if count else min(known, default=0)] for i, count in enumerate(counts, 1)
    ]
    return {"sampling_rate": int(row["sampling_rate"]), "signals": signals}


def link(cell: str, foot: int) -> list[int] | None:
    return [foot, int(cell)] if cell else None


def walk_of(folder: pathlib.Path, analysed: str) -> Walk:
    """The walk as the model takes it; `analysed` is "feet", "left" or "right"."""
    feet = ["left", "right"] if analysed == "feet" else [analysed]
    recordings = {row["foot"]: row for row in table(folder, "recording.csv")}
    rows = table(folder, "feet_cycles.csv") if analysed == "feet" else []
    walk: Walk = {
        "recordings": [recording_of(recordings[foot]) for foot in feet],
        "feet": [
            {"recording": i, "cycles": foot_of(folder, foot)[0]} for i, foot in enumerate(feet)
        ],
        "foot_results": len(feet),
        "left_foot": 0 if analysed == "feet" else None,
        "right_foot": 1 if analysed == "feet" else None,
        "feet_cycles": [
            {
                "gct": number(row.get("gct"), "gct"),
                "ds": number(row.get("ds"), "ds"),
                "right_cycle": link(row["right_index"], 1),
                "left_cycle": link(row["left_index"], 0),
            }
            for row in rows
        ],
        "settings_value": 0.0,
        "reasons": {},
    }
    lists = ("excluded_1", "excluded_1_fallback", "excluded_2", "excluded_2_fallback")
    walk.update({name: [] for name in lists})
    for row in table(folder, "exclusions.csv"):
        if row["cycles"] == analysed:
            walk[row["list"]].append(int(row["index"]))
            reason = row.get("reason") or ""
            walk["reasons"].setdefault((row["list"], int(row["index"])), reason)
    return walk


# JSON against the model, the schema and the tables.


def finite(value: float) -> float | None:
    return value if math.isfinite(value) else None


def check_as_computed(compare: Comparison, shown: Walk, expected: Walk) -> None:
    compare.same(shown["quality_flags"], expected["quality_flags"], "quality flags")
    for name, value in expected["info"].items():
        compare.same(shown["info"][name], value, name)
    compare.same(set(shown["parameters"]), set(expected["parameters"]), "keys")
    for key, record in expected["parameters"].items():
        for name, value in record.items():
            if name == "values" or isinstance(value, model.OneOf):
                continue
            wanted = finite(value) if isinstance(value, float) else value
            compare.same(shown["parameters"][key][name], wanted, f"{key}, {name}")


def expected_figures(record: Walk, key: str, records: Walk) -> dict[str, float | None]:
    """What is shown of a record: nothing that is missing, and no spread of a single value."""
    sample = model.measured(record["values"])
    n = len(sample)
    figures: dict[str, float | None] = {
        name: record[name] if n > (name in ("std", "iqr")) else None for name in STATISTICS
    }
    if record["cv"] == model.MISSING:
        figures["cv"] = None
    other = {"_R": "_L", "_L": "_R"}.get(key[-2:], "")
    sides = [record, records.get(key[:-2] + other, {"valid": False})]
    if not other or not record["asymmetry_enabled"] or not all(side["valid"] for side in sides):
        figures["asymmetry"] = None
    in_order = sorted(sample)
    figures["q1"], figures["q3"] = model.percentiles(in_order, (25.0, 75.0)) if n else (None, None)
    figures["p5"], figures["p95"] = (
        model.percentiles(in_order, (5.0, 95.0))
        if n >= FEWEST_FOR_OUTER_PERCENTILES
        else (None, None)
    )
    if figures["asymmetry"] is not None and record["cv_row"]:
        right, left = sides if other == "_L" else reversed(sides)
        if right["mean"] * left["mean"] > 0:
            figures["symmetry_index"] = (
                100 * (right["mean"] - left["mean"]) / ((right["mean"] + left["mean"]) / 2)
            )
    return figures


def check_parameters(compare: Comparison, shown: Walk, expected: Walk, walk: Walk) -> None:
    two_feet = walk["foot_results"] > 1
    for row in model.CATALOGUE:
        if not row.is_built(two_feet):
            continue
        for suffix in ("_R", "_L") if two_feet else ("",):
            key = row.key + suffix
            record = expected[key] | {"cv_row": row.has_cv}
            halved = row.field == "half_stride" and -0.5 in record["values"]
            n = len(model.measured(record["values"])) - halved * record["values"].count(-0.5)
            compare.same(shown[key]["n"], n, f"{key}, n")
            compare.same(shown[key]["unit"], row.unit, f"{key}, unit")
            for name, value in expected_figures(record, key, expected).items():
                wanted = None if halved or value is None else finite(value)
                if name == "symmetry_index" and wanted is not None:
                    wanted = (
                        shown[key][name]
                        if math.isclose(shown[key][name], wanted, rel_tol=1e-12, abs_tol=1e-12)
                        else wanted
                    )
                compare.same(shown[key][name], wanted, f"{key}, {name}")


def swing(walk: Walk, to: list[int] | None) -> float:
    return walk["feet"][to[0]]["cycles"][to[1]].get("swing", model.MISSING) if to else 0.0


def asymmetries(walk: Walk, rate: int) -> Iterator[float | None]:
    """The swing asymmetry of each two-feet cycle, none where it is not in the statistics."""
    for index, cycle in enumerate(walk["feet_cycles"]):
        left, right = swing(walk, cycle["left_cycle"]), swing(walk, cycle["right_cycle"])
        has_one = status_of(index, walk)[0] == "included" and left > 0.0 and right > 0.0
        yield (left - right) * rate / (left + right) if has_one else None


def check_swing_asymmetry(compare: Comparison, shown: Walk, expected: Walk, walk: Walk) -> None:
    rate = walk["recordings"][0]["sampling_rate"]
    record = expected["parameters"]["asymmetry"]
    of_each = shown["two_feet_cycles"]["asymmetry"]
    compare.same(of_each, list(asymmetries(walk, rate)), "asymmetry of the cycles")
    compare.figures += len(of_each)
    in_cycles = [value for value in of_each if value is not None]
    compare.same(in_cycles, record["values"], "asymmetry of the included cycles")
    n = len(record["values"])
    for key, scale in (("asymmetry", 1.0), ("asymmetry_percent", 100.0 / rate)):
        compare.same(shown["parameters"][key]["n"], n, f"{key}, n")
        for name, fewest in (("mean", 1), ("std", 2)):
            found = shown["parameters"][key][name]
            wanted = record[name] * scale if n >= fewest else None
            if wanted is not None and scale != 1.0:
                wanted = found if math.isclose(found, wanted, rel_tol=1e-9) else wanted
            compare.same(found, wanted, f"{key}, {name}")


def status_of(index: int, walk: Walk) -> tuple[str, str | None]:
    for name in ("excluded_1", "excluded_2"):
        if index in walk[name]:
            return "left_out", walk["reasons"][name, index] or None
    return "included", None


def check_strides(compare: Comparison, shown: Walk, walk: Walk, folder: pathlib.Path) -> None:
    two_feet = walk["foot_results"] > 1
    for foot in shown["strides"]:
        cycles, lines = foot_of(folder, foot["foot"])
        side = int(foot["foot"] == "right")
        links = {
            cycle[f"{foot['foot']}_cycle"][1]: index
            for index, cycle in enumerate(walk["feet_cycles"])
            if cycle[f"{foot['foot']}_cycle"]
        }
        other = ("right_cycle", "left_cycle")[side]
        rate = walk["recordings"][0]["sampling_rate"]
        compare.same(foot["line"], lines, "lines")
        compare.same(foot["start"], [c["first_sample"] / rate for c in cycles], "start")
        compare.same(foot["end"], [(c["last_sample"] + 1) / rate for c in cycles], "end")
        for i in range(len(cycles)):
            cycle = links.get(i) if two_feet else i
            status = ("unlinked", None) if cycle is None else status_of(cycle, walk)
            compare.same((foot["status"][i], foot["reason"][i]), status, f"stride {i}")
            partner = walk["feet_cycles"][cycle][other] if two_feet and cycle is not None else None
            compare.same(foot["partner"][i], partner and partner[1], f"partner of {i}")
            compare.same(foot["two_feet_cycle"][i], cycle if two_feet else None, f"cycle of {i}")
        for row in model.CATALOGUE:
            if row.is_built(two_feet) and row.result != "feet":
                value_of = model.value_of(row)
                values = [value_of(c) for c in cycles]
                if row.field == "half_stride":  # half of a missing length is not shown
                    values = [
                        v if "slength" in c and c["slength"] != model.MISSING else model.MISSING
                        for c, v in zip(cycles, values)
                    ]
                wanted = [None if v == model.MISSING else v for v in values]
                compare.same(
                    foot["values"][row.key],
                    [-1.0 if v == math.nextafter(-1.0, 0.0) else v for v in wanted],
                    row.key,
                )
                compare.figures += len(wanted)
    if not two_feet:
        return
    shown_cycles = shown["two_feet_cycles"]
    for name, column in (("gct", "gct"), ("ds", "DS")):
        compare.same(
            shown_cycles[column],
            [None if c[name] == model.MISSING else c[name] for c in walk["feet_cycles"]],
            f"{name} of the two-feet cycles",
        )
    compare.same(
        list(zip(shown_cycles["status"], shown_cycles["reason"])),
        [status_of(i, walk) for i in range(len(walk["feet_cycles"]))],
        "cycles",
    )


# CSV against JSON.


def cell(value: Any) -> str:
    if isinstance(value, bool):
        return str(value).upper()
    return "" if value is None else str(value)


def same_cell(compare: Comparison, found: str, expected: Any, what: str) -> None:
    if isinstance(expected, float):
        compare.same(float(found) if found else found, expected, what)
    elif expected is None and found in ("inf", "-inf", "NaN"):
        compare.figures += 1  # JSON has no word for it.
    else:
        compare.same(found, cell(expected), what)


def check_csv_parameters(compare: Comparison, rows: list[dict[str, str]], shown: Walk) -> None:
    compare.same(len(rows), len(shown["parameters"]), "rows")
    for row, (key, parameter) in zip(rows, shown["parameters"].items()):
        compare.same(row["walk"], shown["walk"], "walk")
        compare.same(row["analysed"], shown["analysed"], "analysed")
        compare.same(row["sampling_rate_hz"], str(shown["sampling_rate"]), "rate")
        compare.same(bool(row["unit"]), True, "unit")
        for name, value in parameter.items():
            if name != "decimals":
                same_cell(compare, row[name], value, f"CSV, {key}, {name}")


def check_csv_walk(compare: Comparison, row: dict[str, str], shown: Walk, document: Walk) -> None:
    same_cell(compare, row["version"], document["version"], "version")
    for name, value in shown["accounting"].items():
        if not isinstance(value, list):
            unit = document["units"].get(name)
            same_cell(compare, row[name + (f"_{unit}" if unit else "")], value, f"CSV, {name}")
    for foot in ("right", "left"):
        counts = next((f for f in shown["feet"] if f["foot"] == foot), {})
        for name in ("strides", "included", "left_out", "unlinked"):
            same_cell(compare, row[f"{name}_{foot}"], counts.get(name), f"CSV, {name}")
    summary = shown["summary"]
    same_cell(
        compare,
        row["cycles_without_stride_length"],
        summary["total_distance"]["cycles_without"],
        "strides without length",
    )
    same_cell(
        compare,
        row["included_without_stride_length"],
        summary["distance"]["cycles_without"],
        "included strides without length",
    )
    same_cell(
        compare,
        row["included_without_duration"],
        summary["time"]["cycles_without"],
        "included strides without duration",
    )
    same_cell(compare, row["quality_flags"], shown["quality_flags"], "quality flags")
    same_cell(
        compare,
        row["quality_flags_in_words"],
        "; ".join(shown["quality_flags_in_words"]),
        "quality flags in words",
    )


def check_csv_strides(compare: Comparison, rows: list[dict[str, str]], shown: Walk) -> None:
    strides = [(foot, i) for foot in shown["strides"] for i in range(len(foot["start"]))]
    compare.same(len(rows), len(strides), "rows")
    compare.same([name for name in rows[0] if not name.isidentifier()], [], "names of columns")
    values_from = list(rows[0]).index("asymmetry_percent") + 1
    for row, (foot, i) in zip(rows, strides):
        where = f"CSV, {foot['foot']} stride {i}"
        compare.same((row["side"], row["index"]), (foot["foot"], str(i)), where)
        for name in ("line", "status", "reason", "two_feet_cycle", "partner"):
            same_cell(compare, row[name], foot[name][i], f"{where}, {name}")
        for name in ("start", "end"):
            same_cell(compare, row[f"{name}_seconds"], foot[name][i], f"{where}, {name}")
        same_cell(compare, row["included"], foot["status"][i] == "included", where)
        listed = [shown["exclusions"][place] for place in foot["exclusions"][i]]
        out = next((e["list"] for e in listed if e["effect"] == "left_out"), None)
        same_cell(compare, row["list"], out, f"{where}, list")
        cycle = foot["two_feet_cycle"][i]
        of_cycle = {
            name: None if cycle is None else shown["two_feet_cycles"][name][cycle]
            for name in ("gct", "DS", "asymmetry")
        }
        same_cell(compare, row["two_feet_cycle_seconds"], of_cycle["gct"], where)
        asymmetry = of_cycle["asymmetry"]
        percent = None if asymmetry is None else 100.0 * asymmetry / shown["sampling_rate"]
        if percent is not None and math.isclose(float(row["asymmetry_percent"]), percent):
            percent = float(row["asymmetry_percent"])  # the order of operations is another
        same_cell(compare, row["asymmetry_percent"], percent, f"{where}, asymmetry_percent")
        for column in list(row)[values_from:]:
            keys = [
                k for k in (*foot["values"], "DS") if column.startswith(k.replace(" ", "_") + "_")
            ]
            key = max(keys, key=len)  # a key may begin as another one does
            value = of_cycle["DS"] if key == "DS" else foot["values"][key][i]
            same_cell(compare, row[column], value, f"{where}, {column}")


# The text report against JSON.


def rounded(value: float | None, decimals: int) -> str:
    if value is None:
        return "-"
    text = f"{value:.{decimals}f}" if abs(value) < 1e12 else f"{value:.{decimals}e}"
    return text.lstrip("-") if float(text) == 0.0 else text


def telling_ratio(sides: list[Walk], key: str) -> float | None:
    """The ratio where both means are clear of 0, on one side of it."""
    has_cv = next(row.has_cv for row in model.CATALOGUE if row.key == key)
    for side in sides:
        if side["mean"] is None or not (
            has_cv if side["std"] is None else abs(side["mean"]) > side["std"]
        ):
            return None
    return sides[0]["asymmetry"] if sides[0]["mean"] * sides[1]["mean"] > 0 else None


def expected_rows(shown: Walk, names: list[str], sides_shown: int) -> Iterator[list[str]]:
    """The words of each line of a table of parameters. A column of dashes is left out."""
    rows = []
    for name in names:
        sides = [p for p in shown["parameters"].values() if p["parameter"] == name]
        decimals = sides[0]["decimals"]
        shown_sides = sides[:sides_shown]

        def of_each(figure: str, decimals: int, sides: list[Walk] = shown_sides) -> str:
            return " ".join(rounded(side[figure], decimals) for side in sides)

        median = " ".join(
            rounded(side["median"], decimals)
            if side["median"] is None or side["n"] < 2
            else f"{rounded(side['median'], decimals)} [{rounded(side['q1'], decimals)}, "
            f"{rounded(side['q3'], decimals)}]"
            for side in shown_sides
        )
        columns = [
            sides[0]["description"],
            sides[0]["unit"],
            " ".join(str(side["n"]) for side in shown_sides),
            of_each("mean", decimals),
            of_each("std", decimals),
            median,
            of_each("min", decimals),
            of_each("max", decimals),
            of_each("cv", 1),
        ]
        if sides_shown == 2:
            columns.append(
                rounded(telling_ratio(sides, name), 3)
                + " "
                + rounded(sides[0]["symmetry_index"], 1)
            )
        rows.append([*columns, of_each("standard_error", decimals + 1), of_each("effective_n", 0)])
    columns_kept = [column for column in zip(*rows) if set("".join(column)) - set("- ")]
    for cells in zip(*columns_kept):
        yield " ".join(cells).split()


def check_text(compare: Comparison, report: str, shown: Walk) -> None:
    lines = report.splitlines()
    summary = shown["summary"]
    for line, key in ((1, "in_the_statistics"), (2, "left_out")):
        compare.same(lines[line].strip(), summary[key], "first lines")
    counts = [f"{foot['included']} of {foot['strides']}" for foot in shown["feet"]]
    for count in counts:
        compare.same(count in lines[1], True, "count in the first lines")
    for name, unit in (("time", " s"), ("distance", " m")):
        if summary[name]["sum"] is not None:
            compare.same(rounded(summary[name]["sum"], 1) + unit in lines[1], True, lines[1])
            figure = rounded(summary[name]["sum"], 3) + unit
            compare.same(sum(figure in line for line in lines) > 0, True, figure)
    included = shown["accounting"]["included_count"]
    line = next(line for line in lines if line.startswith("  Included  "))
    compare.same(line.split()[1], str(included), "included")

    both_feet = shown["analysed"] == "both feet"
    measured = list(
        dict.fromkeys(
            p["parameter"] for p in shown["parameters"].values() if p["n"] and p["side"] != "both"
        )
    )
    tables = [
        ("  Parameter ", [name for name in measured if name not in ("HS", "DS")], 1 + both_feet),
        ("  Both feet ", [name for name in measured if name == "DS"], 1),
    ]
    for heading, names, sides in tables:
        names = [
            name
            for name in names
            if any(p["n"] for p in shown["parameters"].values() if p["parameter"] == name)
        ]
        found = [line for line in lines if line.startswith(heading)]
        compare.same(len(found), bool(names), heading)
        first = lines.index(found[0]) + 1 if found else 0
        if found and (sides == 2 or lines[first].split()[0] == "R"):
            first += 1
        for i, expected in enumerate(expected_rows(shown, names, sides)):
            compare.same(lines[first + i].split(), expected, "table")
            compare.figures += len(expected)
    if both_feet and shown["parameters"]["asymmetry_percent"]["n"]:
        asymmetry = shown["parameters"]["asymmetry_percent"]
        wanted = (
            f"  mean {rounded(asymmetry['mean'], 3)} % ({asymmetry['direction']}), "
            f"SD {rounded(asymmetry['std'], 3)}, n {asymmetry['n']} stride"
        )
        compare.same(any(line.startswith(wanted) for line in lines), True, wanted)


# All of it.


class Program:
    def __init__(self, path: str) -> None:
        self.path = path

    def run(self, *arguments: Any) -> str:
        result = subprocess.run(
            [self.path, *map(str, arguments)], capture_output=True, encoding="utf-8", check=False
        )
        if result.returncode != 0:
            sys.exit(f"{arguments}: exit code {result.returncode}\n{result.stderr}")
        return result.stdout

    def table(self, name: str, *arguments: Any) -> list[dict[str, str]]:
        return list(csv.DictReader(io.StringIO(self.run("--table", name, *arguments))))


def check(compare: Comparison, program: Program, folder: pathlib.Path, analysed: str) -> None:
    arguments = [folder] if analysed == "feet" else ["--foot", analysed, folder]
    compare.where = f"{folder.name}, {analysed}"
    document = json.loads(program.run("--format", "json", *arguments))
    if jsonschema:
        jsonschema.Draft202012Validator(SCHEMA).validate(document)
    [shown] = document["walks"]
    walk = walk_of(folder, analysed)
    expected = model.fresh_outputs()
    model.generate_statistics(walk, expected)

    check_as_computed(compare, shown["as_computed"], expected)
    check_parameters(compare, shown["parameters"], expected["parameters"], walk)
    if analysed == "feet":
        check_swing_asymmetry(compare, shown, expected, walk)
    check_strides(compare, shown, walk, folder)
    for name, value in shown["accounting"].items():
        if value is not None and name != "kinds":
            compare.same(value, expected["info"][name], f"accounting, {name}")
    check_csv_parameters(compare, program.table("parameters", *arguments), shown)
    [row] = program.table("walks", *arguments)
    check_csv_walk(compare, row, shown, document)
    check_csv_strides(compare, program.table("strides", *arguments), shown)
    check_text(compare, program.run("--width", 10000, *arguments), shown)


def main(path: str, *folders: str) -> int:
    if folders == ("",):
        print("skipped: no folder of measured walks is given (GAIT_REAL_WALKS)")
        return 77
    program = Program(path)
    compare = Comparison()
    walks = sorted(
        {
            file.parent
            for folder in folders
            for file in pathlib.Path(folder).glob("**/recording.csv")
        }
    )
    if not walks:
        sys.exit(f"{folders}: no walk")
    for walk in walks:
        feet = {row["foot"] for row in table(walk, "recording.csv")}
        for analysed in [*(["feet"] if len(feet) == 2 else []), *sorted(feet)]:
            before = compare.figures
            check(compare, program, walk, analysed)
            print(f"{compare.where}: {compare.figures - before} figures")
    if jsonschema is None:
        print("without the schema: no Python package jsonschema")
    print(f"{len(walks)} walks, {compare.figures} figures compared")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
