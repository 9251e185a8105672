"""Compares every output of gait_generate_statistics() with the model's, on random walks.

The driver is the program run_cases, built from run_cases.cpp. Every number is compared bit by bit,
since docs/definitions.md fixes the order of operations, but for three things that the page leaves
open, which model.py marks with OneOf: median, iqr, min and max of a sample with a NaN (anything);
the sign of a zero as min or max of a sample with zeros of both signs; the ratio of a partner that
several entries lead to (that of any of them). All NaNs are one, whatever their sign and payload.

Exit code 1 when anything differs. The case is then written out twice: as JSON, for --replay, and as
the lines that the driver reads.
"""

import argparse
import json
import math
import pathlib
import struct
import subprocess
import sys
import time

sys.dont_write_bytecode = True  # of the files beside this one, which may be anybody's

import walks  # noqa: E402
from model import MISSING, AbsentSignal, OneOf, fresh_outputs, generate_statistics  # noqa: E402

CASES_AT_ONCE = 50
MOST_FAILING_CASES = 3
MOST_DIFFERENCES_SHOWN = 5


# What the driver reads.


def words_of(doubles):
    one_nan = (math.nan if math.isnan(double) else double for double in doubles)
    return struct.pack(f">{len(doubles)}d", *one_nan).hex("\t", 8)


def position(value):
    return -1 if value is None else value


def lines_of(case, number):
    yield ("case", number, case["quality_flags"])
    for key, parameter in case["parameters"].items():
        yield ("parameter", key, *map(text_of, parameter.values()))
    for call in case["calls"]:
        walk = call["walk"]
        yield ("walk", walk["foot_results"], len(walk["feet"]))
        for recording in walk["recordings"]:
            signals = (number for signal in recording["signals"] for number in signal)
            yield ("recording", recording["sampling_rate"], *signals)
        for foot in walk["feet"]:
            yield ("foot", position(foot["recording"]))
            for cycle in foot["cycles"]:
                values = words_of([cycle.get(field, MISSING) for field in walks.MEASURED])
                yield ("cycle", cycle["first_sample"], cycle["last_sample"], cycle["index"], values)
        yield ("sides", position(walk["left_foot"]), position(walk["right_foot"]))
        for cycle in walk["feet_cycles"]:
            links = (cycle["right_cycle"] or (-1, -1)), (cycle["left_cycle"] or (-1, -1))
            yield ("feet_cycle", words_of([cycle["gct"], cycle["ds"]]), *links[0], *links[1])
        for name in ("excluded_1", "excluded_1_fallback", "excluded_2", "excluded_2_fallback"):
            yield ("excluded", *walk[name])
        yield ("call", words_of([walk["settings_value"]]), call["times"])
    yield ("end",)


def driver_input(case, number):
    return "".join("\t".join(map(str, line)) + "\n" for line in lines_of(case, number))


# What the driver prints.


def text_of(value):
    if isinstance(value, float):
        return words_of([value])
    if isinstance(value, str):
        return value
    if isinstance(value, (bool, int)):
        return str(int(value))
    if value and isinstance(value[0], int):
        return "".join(f"{number} " for number in value)
    return words_of(value).replace("\t", "")


def calls_of(lines):
    """For each call, a dict from the name of a line (and the key, if any) to its words."""
    calls = []
    for line in lines:
        name, *words = line.split("\t")
        if name == "called":
            calls.append({})
        elif name == "parameter":
            name = f"parameter {words.pop(0)}"
        calls[-1][name] = words
    return calls


# What the model says.


class Differences:
    """Of one case."""

    def __init__(self):
        self.lines = []
        self.fields = 0
        self.open = 0

    def compare(self, where, expected, found):
        """The members of one line."""
        if found is None or len(found) != len(expected):
            self.lines.append(f"{where}: {found} instead of {list(expected)}")
            return
        self.fields += len(expected)
        for (name, value), text in zip(expected.items(), found):
            if isinstance(value, OneOf):
                self.open += 1
                same = not value or text in map(text_of, value)
            else:
                same = text == text_of(value)
            if not same:
                wanted = f"{value!r} ({shown(text_of(value))})"
                self.lines.append(f"{where}, {name}: {shown(text)} instead of {wanted}")

    def compare_call(self, where, outcome, outputs, found):
        parameters = outputs["parameters"].items()
        expected = {
            "called": {"outcome": outcome},
            "info": outputs["info"],
            **{f"parameter {key}": parameter for key, parameter in parameters},
            "quality_flags": {"value": outputs["quality_flags"]},
        }
        for name, members in expected.items():
            self.compare(f"{where}, {name}", members, found.get(name))
        self.lines += [f"{where}, {name}: unexpected" for name in found.keys() - expected.keys()]


def shown(text):
    """Doubles readable beside their bits."""
    if len(text) == 16 and all(digit in "0123456789abcdef" for digit in text):
        return f"{struct.unpack('>d', bytes.fromhex(text))[0]!r} = {text}"
    return repr(text)


def differences_of(case, printed):
    differences = Differences()
    calls = calls_of(printed)
    if len(calls) != sum(call["times"] for call in case["calls"]):
        differences.lines.append(f"{len(calls)} calls")
        return differences
    outputs = fresh_outputs()
    outputs["parameters"] = {key: dict(parameter) for key, parameter in case["parameters"].items()}
    outputs["quality_flags"] = case["quality_flags"]
    walks_called = [call["walk"] for call in case["calls"] for _ in range(call["times"])]
    for number, (walk, found) in enumerate(zip(walks_called, calls), 1):
        outcome = True
        try:
            generate_statistics(walk, outputs)
        except AbsentSignal as error:
            outcome = str(error)
        differences.compare_call(f"call {number}", outcome, outputs, found)
    return differences


# Running.


def printed_by(driver, cases):
    """What the driver printed of each case, and what it said of one in which it ended too early."""
    text = "".join(driver_input(case, number) for number, case in cases.items())
    result = subprocess.run(
        [driver], input=text, capture_output=True, encoding="utf-8", errors="replace", check=False
    )
    printed, lines = {}, []
    for line in result.stdout.splitlines():
        if line.startswith("end\t"):
            printed[int(line.split("\t")[1])] = lines
            lines = []
        else:
            lines.append(line)
    if result.returncode == 0 and len(printed) == len(cases):
        return printed, None
    return printed, f"the driver ended with code {result.returncode}\n{result.stderr[-4000:]}"


class Comparison:
    def __init__(self, driver, keep, seed):
        self.driver, self.keep, self.seed = driver, keep, seed
        self.cases = self.calls = self.fields = self.open = self.failing = 0

    def run(self, cases):
        printed, failure = printed_by(self.driver, cases)
        for number, lines in printed.items():
            differences = differences_of(cases[number], lines)
            self.cases += 1
            self.calls += sum(call["times"] for call in cases[number]["calls"])
            self.fields += differences.fields
            self.open += differences.open
            if differences.lines:
                self.report(number, cases[number], differences.lines)
        if failure:
            number = next(number for number in cases if number not in printed)
            self.report(number, cases[number], [failure])
            return False
        return self.failing < MOST_FAILING_CASES

    def report(self, number, case, lines):
        self.failing += 1
        if self.failing > MOST_FAILING_CASES:
            return
        print(f"\ncase {number} differs: library instead of model")
        for line in lines[:MOST_DIFFERENCES_SHOWN]:
            print(f"  {line}")
        if len(lines) > MOST_DIFFERENCES_SHOWN:
            print(f"  and {len(lines) - MOST_DIFFERENCES_SHOWN} more")
        if self.keep is None:
            return
        self.keep.mkdir(parents=True, exist_ok=True)
        path = self.keep / f"case_{self.seed}_{number}.json"
        path.write_text(json.dumps(case, indent=1), encoding="utf-8")
        path.with_suffix(".txt").write_text(driver_input(case, number), encoding="utf-8")
        print(f"  again: {sys.executable} {sys.argv[0]} --driver {self.driver} --replay {path}")
        print(f"  alone: {self.driver} < {path.with_suffix('.txt')}")

    def summary(self):
        return (
            f"{self.cases} cases, {self.calls} calls, {self.fields} fields compared "
            f"({self.open} of them left open): {self.failing or 'no'} cases differ"
        )


def main():
    parser = argparse.ArgumentParser(
        description="Compares the library with the model on random walks."
    )
    parser.add_argument("--driver", required=True, help="the program run_cases")
    parser.add_argument(
        "--seed",
        type=int,
        default=time.time_ns() // 1000,
        help="what the walks are made from (the clock)",
    )
    parser.add_argument("--cases", type=int, default=3000, help="how many cases (3000)")
    parser.add_argument(
        "--keep",
        type=pathlib.Path,
        default=pathlib.Path(),
        help="where cases that differ are written to",
    )
    parser.add_argument(
        "--replay", type=pathlib.Path, help="a case that was written out, instead of random ones"
    )
    arguments = parser.parse_args()

    if arguments.replay:
        comparison = Comparison(arguments.driver, None, None)
        comparison.run({0: json.loads(arguments.replay.read_text(encoding="utf-8"))})
    else:
        print(f"seed {arguments.seed}", flush=True)
        comparison = Comparison(arguments.driver, arguments.keep, arguments.seed)
        for first in range(0, arguments.cases, CASES_AT_ONCE):
            numbers = range(first, min(first + CASES_AT_ONCE, arguments.cases))
            cases = {number: walks.case(arguments.seed, number) for number in numbers}
            if not comparison.run(cases):
                break
    print(comparison.summary())
    sys.exit(1 if comparison.failing else 0)


if __name__ == "__main__":
    main()
