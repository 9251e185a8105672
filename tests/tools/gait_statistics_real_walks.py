"""Runs gait-statistics over every walk folder below a folder, both feet and each foot.

    gait_statistics_real_walks.py PROGRAM FOLDER

Ends with 77, which CTest counts as skipped, when FOLDER is empty.
"""

import csv
import io
import json
import pathlib
import subprocess
import sys


def run(program, *arguments):
    result = subprocess.run([program, *map(str, arguments)], capture_output=True,
                            encoding="utf-8", check=False)
    assert result.returncode == 0, f"{arguments}: exit code {result.returncode}\n{result.stderr}"
    return result.stdout


def rows_of(report):
    """The lines of the report's table, which is wide enough for one block, without its headings."""
    lines = report.splitlines()
    first = next(i for i, line in enumerate(lines) if line.startswith("  Parameter "))
    end = lines.index("", first)
    return [line for line in lines[first:end] if not line.startswith(("  Parameter ", "     "))]


def check_accounting(walk):
    info = walk["info"]
    assert 0 < len(info["cycles"]) <= info["cycle_count"]
    assert info["excluded_count"] == info["cycle_count"] - len(info["cycles"])
    excluded = info["excluded_1_count"] + info["excluded_2_count"]
    assert info["included_count"] == info["cycle_count"] - excluded
    assert info["cycles"] == sorted(set(info["cycles"]))
    assert info["cycles"][-1] < info["cycle_count"]
    assert 0 < info["duration"] <= info["recording_duration"]
    assert 0 < info["included_gct_sum"] and info["included_duration"] <= info["duration"]
    assert 0 <= info["included_distance"] <= info["total_distance"]


def check_statistics(parameter):
    mean, low, high = parameter["mean"], parameter["min"], parameter["max"]
    assert parameter["n"] == sum(value is not None for value in parameter["values"]), parameter
    is_asymmetry = parameter["parameter"] == "asymmetry"
    assert parameter["valid"] == (parameter["n"] > 0 or is_asymmetry), parameter
    if low is not None:
        assert low <= parameter["median"] <= high and low - 1e-9 <= mean <= high + 1e-9, parameter
        assert parameter["std"] >= 0 and parameter["iqr"] >= 0, parameter


def check_no_missing_number(walk, table, report):
    """A statistic that is null is an empty cell in CSV and a dash in the report, and never -1."""
    for row in csv.DictReader(io.StringIO(table)):
        for column in ("mean", "median", "std", "iqr", "min", "max", "cv", "asymmetry"):
            assert row[column] != "-1", row
    shown = rows_of(report)
    measured = {p["description"]: [] for p in walk["parameters"].values()
                if p["parameter"] != "asymmetry"}
    for parameter in walk["parameters"].values():
        if parameter["parameter"] != "asymmetry":
            measured[parameter["description"]].append(parameter)
    measured = {name: sides for name,
                sides in measured.items() if any(side["valid"] for side in sides)}
    assert len(shown) == len(measured), (len(shown), len(measured))
    statistics = ["mean", "std", "median", "iqr", "min", "max",
                  "cv"] + (["asymmetry"] if walk["analysed"] == "both feet" else [])
    for line, (name, sides) in zip(shown, measured.items()):
        assert line.startswith("  " + name), (line, name)
        expected = [side[statistic] is None for statistic in statistics for side in sides]
        cells = line.split()[-len(expected):]
        assert [cell == "-" for cell in cells] == expected, line


def check(program, walk, *arguments):
    data = json.loads(run(program, "--format", "json", *arguments, walk))["walks"][0]
    check_accounting(data)
    for parameter in data["parameters"].values():
        check_statistics(parameter)
    check_no_missing_number(data, run(program, "--format", "csv", *arguments, walk),
                            run(program, "--width", "1000", *arguments, walk))
    print(f"{walk.name}: {data['analysed']}, {data['info']['cycle_count']} cycles, "
          f"{len(data['info']['cycles'])} in the statistics")


def main(program, folder):
    if not folder:
        print("skipped: no folder of measured walks is given (GAIT_REAL_WALKS)")
        return 77
    walks = sorted(file.parent for file in pathlib.Path(folder).glob("**/recording.csv"))
    assert walks, f"{folder} holds no walk"
    for walk in walks:
        check(program, walk)
        recording = (walk / "recording.csv").read_text(encoding="utf-8-sig")
        feet = {row["foot"] for row in csv.DictReader(io.StringIO(recording))}
        for foot in sorted(feet):
            check(program, walk, "--foot", foot)
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
