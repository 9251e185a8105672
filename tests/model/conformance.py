"""Writes the walks of conformance/, and checks the library and the model against them.

    conformance.py check --driver RUN_CASES     both implementations, against the published figures
    conformance.py write --driver RUN_CASES --make-walk GAIT_MAKE_WALK
                                                the set anew, with the figures of the library

docs/conformance.md describes the form of the files.
"""

import argparse
import importlib.util
import json
import math
import pathlib
import re
import struct
import sys
import tempfile

sys.dont_write_bytecode = True  # of the files beside this one, which may be anybody's

import compare  # noqa: E402
import model  # noqa: E402
import published_walks  # noqa: E402

SET = published_walks.PROJECT / "conformance"
PAGE = published_walks.PROJECT / "docs" / "conformance.md"


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
        **{name: walk[name] for name in published_walks.EXCLUSIONS},
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
    for name, about, walk in published_walks.walks_of_set(make_walk):
        document = {"about": about, "walk": published(walk)}
        document["expected"] = published(by_library(driver, case_of(document["walk"])))
        (SET / f"{name}.json").write_text(as_text(document) + "\n", encoding="utf-8")
    page = PAGE.read_text(encoding="utf-8")
    PAGE.write_text(re.sub(r"\d+ walks, \d+ figures", size_of_set(), page), encoding="utf-8")


def size_of_set():
    """In the words of check.py."""
    paths = list(SET.glob("*.json"))
    expected = [json.loads(path.read_text(encoding="utf-8"))["expected"] for path in paths]
    numbers = sum(map(published_check().count_numbers, expected))
    return f"{len(paths)} walks, {numbers} figures"


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
    size = size_of_set()
    if size not in PAGE.read_text(encoding="utf-8"):
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
