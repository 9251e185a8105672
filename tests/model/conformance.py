"""Writes the walks of conformance/, and checks the library and the model against them.

    conformance.py check --driver RUN_CASES     both implementations, against the published figures
    conformance.py write --driver RUN_CASES --make-walk GAIT_MAKE_WALK
                                                the set anew, with the figures of the library

docs/conformance.md describes the form of the files.
"""

import argparse
import csv
import importlib.util
import json
import math
import pathlib
import random
import struct
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True  # of the files beside this one, which may be anybody's

import compare  # noqa: E402
import model  # noqa: E402
import walks  # noqa: E402

PROJECT = pathlib.Path(__file__).resolve().parents[2]
SET = PROJECT / "conformance"
EXCLUSIONS = ("excluded_1", "excluded_1_fallback", "excluded_2", "excluded_2_fallback")
WHOLE = ("first_sample", "last_sample", "index")
MISSING = model.MISSING


# The published form of a walk, and the model's, which is the driver's too.


def number(value):
    return {"NaN": math.nan, "Infinity": math.inf, "-Infinity": -math.inf}.get(value, value)


def published(value):
    """A value as JSON has it: what is not finite, as a text."""
    if isinstance(value, float) and not math.isfinite(value):
        return "NaN" if math.isnan(value) else "Infinity" if value > 0.0 else "-Infinity"
    if isinstance(value, dict):
        return {key: published(item) for key, item in value.items()}
    return [published(item) for item in value] if isinstance(value, list) else value


def case_of(walk):
    """The model's case of a published walk."""
    feet, recordings, sides = [], [], {}
    for position, foot in enumerate(walk["feet"]):
        columns = foot["cycles"]
        rows = zip(*columns.values())
        cycles = [dict(zip(columns, map(number, row))) for row in rows]
        feet.append({"recording": position, "cycles": cycles})
        signals = [[1, foot["signal_1_samples"]], [2, foot["signal_2_samples"]]]
        recordings.append({"sampling_rate": foot["sampling_rate"], "signals": signals})
        sides[foot["side"]] = position
    columns = walk["feet_cycles"]
    feet_cycles = []
    for row in zip(*columns.values()):
        cycle = dict(zip(columns, map(number, row)))
        for side in ("right", "left"):
            index = cycle.pop(f"{side}_index")
            cycle[f"{side}_cycle"] = None if index is None else [sides[side], index]
        feet_cycles.append(cycle)
    two_feet = len(feet) > 1
    result = {
        "recordings": recordings,
        "feet": feet,
        "foot_results": len(feet),
        "left_foot": sides["left"] if two_feet else None,
        "right_foot": sides["right"] if two_feet else None,
        "feet_cycles": feet_cycles,
        **{name: walk[name] for name in EXCLUSIONS},
        "settings_value": walk["settings_value"],
    }
    return {"parameters": {}, "quality_flags": 0, "calls": [{"walk": result, "times": 1}]}


# What the implementations compute of it.


def value_of(text, like):
    """The value that the driver printed, of the type of another."""
    if isinstance(like, float):
        return struct.unpack(">d", bytes.fromhex(text))[0]
    if isinstance(like, bool):
        return text == "1"
    return int(text) if isinstance(like, int) else text


def record_of(words, like):
    record = {}
    for (name, value), text in zip(like.items(), words):
        if name == "cycles":
            record[name] = [int(index) for index in text.split()]
        elif name == "values":
            record[name] = [value_of(text[i : i + 16], 0.0) for i in range(0, len(text), 16)]
        else:
            record[name] = value_of(text, value)
    return record


def by_library(driver, case):
    printed, failure = compare.printed_by(driver, {0: case})
    if failure:
        raise SystemExit(failure)
    (call,) = compare.calls_of(printed[0])
    parameters = {
        name.split(" ", 1)[1]: record_of(words, model.fresh_parameter())
        for name, words in call.items()
        if name.startswith("parameter ")
    }
    return {
        "info": record_of(call["info"], model.fresh_outputs()["info"]),
        "parameters": dict(sorted(parameters.items())),
        "quality_flags": int(call["quality_flags"][0]),
    }


def by_model(case):
    outputs = model.fresh_outputs()
    model.generate_statistics(case["calls"][0]["walk"], outputs)
    return outputs


# The walks of the set.


def cells(path):
    with open(path, encoding="utf-8", newline="") as file:
        return list(csv.DictReader(file))


def measured(cell):
    return float(cell) if cell else MISSING


def walk_of_folder(folder, analysed):
    """The walk of a walk folder that gait-make-walk wrote."""
    tables = {name: cells(folder / f"{name}.csv") for name in ("recording", "foot_cycles")}
    walk = empty_walk()
    for row in tables["recording"]:
        whole = ("sampling_rate", "signal_1_samples", "signal_2_samples")
        strides = [cycle for cycle in tables["foot_cycles"] if cycle["foot"] == row["foot"]]
        columns = {name: [int(stride[name]) for stride in strides] for name in WHOLE}
        for name in walks.MEASURED:
            columns[name] = [measured(stride[name]) for stride in strides]
        walk["feet"].append(
            {"side": row["foot"], **{name: int(row[name]) for name in whole}, "cycles": columns}
        )
    if analysed == "feet":
        rows = cells(folder / "feet_cycles.csv")
        for name in ("gct", "ds"):
            walk["feet_cycles"][name] = [measured(row[name]) for row in rows]
        for name in ("right_index", "left_index"):
            walk["feet_cycles"][name] = [int(row[name]) if row[name] else None for row in rows]
    for row in cells(folder / "exclusions.csv"):
        if row["cycles"] == analysed:
            walk[row["list"]].append(int(row["index"]))
    return walk


def empty_walk():
    feet_cycles = {name: [] for name in ("gct", "ds", "right_index", "left_index")}
    lists = {name: [] for name in EXCLUSIONS}
    return {"settings_value": 0.0, "feet": [], "feet_cycles": feet_cycles, **lists}


def made_walk(make_walk, analysed, *options):
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "walk"
        subprocess.run([make_walk, path, *options], check=True)
        return walk_of_folder(path, analysed)


def foot(rng, side, strides, **columns):
    """A foot of plausible values, at 128 Hz; `columns` take the place of those of a field."""
    cycles = {
        "first_sample": [64 + 138 * i for i in range(strides)],
        "last_sample": [64 + 138 * i + 137 for i in range(strides)],
        "index": list(range(strides)),
    }
    for field, (size, spread) in walks.MEASURED.items():
        cycles[field] = [round(rng.gauss(size, spread), 3) for _ in range(strides)]
    cycles.update(columns)
    samples = 64 + 138 * strides + 100
    counts = {"signal_1_samples": samples, "signal_2_samples": samples + 3}
    return {"side": side, "sampling_rate": 128, **counts, "cycles": cycles}


def one_foot(rng, strides, **columns):
    walk = empty_walk()
    walk["feet"] = [foot(rng, "right", strides, **columns)]
    return walk


def two_feet(rng, strides, left=None, right=None):
    walk = empty_walk()
    walk["feet"] = [
        foot(rng, "left", strides, **(left or {})),
        foot(rng, "right", strides, **(right or {})),
    ]
    walk["feet_cycles"] = {
        "gct": [round(rng.gauss(1.1, 0.05), 3) for _ in range(strides)],
        "ds": [round(rng.gauss(24.0, 1.0), 3) for _ in range(strides)],
        "right_index": list(range(strides)),
        "left_index": list(range(strides)),
    }
    return walk


def with_lists(walk, **lists):
    walk.update(lists)
    return walk


def walks_of_set(make_walk):
    """Name, what it is about, and the walk."""
    examples = PROJECT / "examples" / "walks"
    rng = random.Random(1)
    yield (
        "two_feet_turn",
        "The example walk: both feet, a turn, a stumble, a pause, two strides not found.",
        walk_of_folder(examples / "two_feet_turn", "feet"),
    )
    yield (
        "one_foot_short",
        "The example walk of one foot: fourteen strides, start and stop excluded.",
        walk_of_folder(examples / "one_foot_short", "right"),
    )
    yield (
        "two_feet_many_gaps",
        "Both feet, 60 strides, where every fourth value was not measured.",
        made_walk(make_walk, "feet", "--strides=60", "--seed=31", "--turns=2", "--outliers=2",
                  "--lost=4", "--missing=0.25", "--rate=200"),
    )  # fmt: skip
    yield ("one_stride", "One foot, one stride: no spread.", one_foot(rng, 1))
    yield ("four_strides", "One foot, four strides, none excluded.", one_foot(rng, 4))
    yield (
        "nine_and_ten_values",
        "A coefficient of variation needs ten values: swing has nine, stance has ten.",
        one_foot(rng, 10, swing=[MISSING, *(round(rng.gauss(38, 2), 3) for _ in range(9))]),
    )
    yield (
        "equal_values",
        "Many equal values, for the percentiles.",
        one_foot(rng, 24, gct=[1.0, 1.25, 1.25, 1.125] * 6, cadence=[110.0] * 24),
    )
    yield (
        "nothing_included",
        "Every cycle is excluded, by one kind or the other.",
        with_lists(two_feet(rng, 5), excluded_1=[0, 2, 4], excluded_2=[1, 3]),
    )
    yield (
        "fallback_lists",
        "Fallback lists take nothing out, and enter the accounting where their kind is empty.",
        with_lists(
            one_foot(rng, 12), excluded_1_fallback=[4, 5, 6], excluded_2_fallback=[0, 1, 11]
        ),
    )
    yield (
        "lists_in_any_order",
        "Exclusions unsorted, twice, of both kinds at once, and out of range.",
        with_lists(
            two_feet(rng, 12),
            excluded_1=[7, 3, 7, 40, -1],
            excluded_1_fallback=[2],
            excluded_2=[11, 3, 0, 0],
            excluded_2_fallback=[5, 99],
        ),
    )
    walk = two_feet(rng, 14)
    walk["feet_cycles"]["right_index"][3] = None
    walk["feet_cycles"]["left_index"][6] = None
    walk["feet_cycles"]["left_index"][9] = 2
    yield ("links", "Cycles without one foot's stride, and two with the same stride.", walk)
    yield (
        "no_swing_of_both_feet",
        "The left swing was never measured: the swing asymmetry has no value.",
        two_feet(rng, 11, left={"swing": [MISSING] * 11}),
    )
    yield (
        "one_swing_of_both_feet",
        "A single stride has the swings of both feet: its deviation is NaN.",
        two_feet(rng, 11, left={"swing": [MISSING] * 10 + [38.5]}),
    )
    yield (
        "ratio_by_zero",
        "The mean of a side is 0: what stands in place of the ratio.",
        two_feet(rng, 10, left={"gct": [0.0] * 10}, right={"cadence": [0.0] * 10}),
    )
    yield (
        "missing_stride_length",
        "One foot: a missing stride length is halved like any other.",
        one_foot(rng, 12, slength=[1.25, MISSING, 1.3, MISSING] * 3),
    )
    yield (
        "not_far_from_missing",
        "Only -1 is missing: values beside it, and other negative ones, are measurements.",
        one_foot(rng, 12, ta=[-1.0, -0.999, math.nextafter(-1.0, 0.0), -2.0, -0.0, 5.0] * 2),
    )
    flagged = two_feet(rng, 6, left={"swing": [45.0] * 6, "speed": [0.25] * 6})
    flagged["settings_value"] = 40.0
    yield ("quality_flags", "Few strides, slow, uneven, and a setting out of its range.", flagged)
    apart = [1e16, 1.0, -1e16, 1e-8, 3.0, 1e16, -1e16, 0.1, 0.2, 0.3, 0.7]
    yield (
        "order_of_sums",
        "Sums whose last bits depend on the order of what is added.",
        one_foot(rng, 11, peakswing=apart, impact_vert=[abs(value) for value in apart]),
    )


# Files.


def as_text(value, indent=0):
    """JSON with each member of a record on a line, and a list of numbers on one."""
    margin = " " * (indent + 1)
    if isinstance(value, dict):
        members = [f"{json.dumps(key)}: {as_text(item, indent + 1)}" for key, item in value.items()]
        brackets = "{}"
    elif isinstance(value, list) and value and isinstance(value[0], dict):
        members = [as_text(item, indent + 1) for item in value]
        brackets = "[]"
    else:
        return json.dumps(value, allow_nan=False)
    lines = f",\n{margin}".join(members)
    return f"{brackets[0]}\n{margin}{lines}\n{margin[1:]}{brackets[1]}"


def write(driver, make_walk):
    for old in SET.glob("*.json"):
        old.unlink()
    for name, about, walk in walks_of_set(make_walk):
        document = {"about": about, "walk": published(walk)}
        document["expected"] = published(by_library(driver, case_of(document["walk"])))
        (SET / f"{name}.json").write_text(as_text(document) + "\n", encoding="utf-8")


def published_check():
    specification = importlib.util.spec_from_file_location("check", SET / "check.py")
    module = importlib.util.module_from_spec(specification)
    specification.loader.exec_module(module)
    return module


def last_bit_off(document):
    """The same figures, but for the last bit of one."""
    record = document["parameters"][min(document["parameters"])]
    record["mean"] = math.nextafter(record["mean"], math.inf)
    return document


def check(driver):
    """Whether the library or the model differ from the set, or a wrong bit goes unseen."""
    comparison = published_check()
    implementations = {
        "library": lambda case: by_library(driver, case),
        "model": by_model,
    }
    failed = False
    paths = sorted(SET.glob("*.json"))
    cases = {path: case_of(json.loads(path.read_text(encoding="utf-8"))["walk"]) for path in paths}
    for name, compute in implementations.items():
        with tempfile.TemporaryDirectory() as folder:
            for path, case in cases.items():
                figures = json.dumps(published(compute(case)), allow_nan=False)
                (pathlib.Path(folder) / path.name).write_text(figures, encoding="utf-8")
            print(f"{name}: ", end="")
            failed |= comparison.check(pathlib.Path(folder))
    expected = json.loads(paths[0].read_text(encoding="utf-8"))["expected"]
    changed = last_bit_off(json.loads(json.dumps(expected)))
    found = list(comparison.differences(expected, changed))
    if len(found) != 1 or "(1 unit in the last place)" not in found[0]:
        print(f"one last bit is wrong, and check.py says: {found}")
        failed = True
    numbers = sum(
        comparison.count_numbers(json.loads(path.read_text(encoding="utf-8"))["expected"])
        for path in paths
    )
    size = f"{len(paths)} walks, {numbers} figures"
    if size not in (PROJECT / "docs" / "conformance.md").read_text(encoding="utf-8"):
        print(f"docs/conformance.md does not say {size}")
        failed = True
    return failed or not paths


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("what", choices=["check", "write"])
    parser.add_argument("--driver", required=True, help="the program run_cases")
    parser.add_argument("--make-walk", help="the program gait-make-walk, to write")
    arguments = parser.parse_args()
    if arguments.what == "check":
        sys.exit(check(arguments.driver))
    write(arguments.driver, arguments.make_walk)


if __name__ == "__main__":
    main()
