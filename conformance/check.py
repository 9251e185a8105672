#!/usr/bin/env python3
"""Compares what an implementation computed with what is expected, bit by bit.

    check.py FOLDER

FOLDER holds a file for each walk of this set, of the same name, with the object that stands under
"expected" there: "info", "parameters" and "quality_flags". Every number that differs is named, with
both values and their distance in units in the last place. The exit code is 1 if any does, or if a
file or a figure is missing.
"""

import argparse
import json
import math
import pathlib
import struct
import sys

SET = pathlib.Path(__file__).resolve().parent
NOT_FINITE = {"NaN": math.nan, "Infinity": math.inf, "-Infinity": -math.inf}
MOST_SHOWN = 10


def bits(number):
    """The bits of a number; of every NaN the same ones."""
    return struct.pack(">d", math.nan if number != number else number)


def distance(a, b):
    """How many doubles lie from a to b, as a text; empty where one is not finite."""
    if not (math.isfinite(a) and math.isfinite(b)):
        return ""
    places = []
    for number in (a, b):
        place = struct.unpack(">q", bits(number))[0]
        places.append(place if place >= 0 else -(2**63) - place)
    units = abs(places[0] - places[1])
    return f" ({units} unit{'' if units == 1 else 's'} in the last place)"


def is_number(value):
    return (
        isinstance(value, (int, float))
        and not isinstance(value, bool)
        or (isinstance(value, str) and value in NOT_FINITE)
    )


def number(value):
    return NOT_FINITE[value] if isinstance(value, str) else value


def differences(expected, found, where=""):
    """What differs, as texts that name the place."""
    if isinstance(expected, dict) and isinstance(found, dict):
        for key in [*expected, *(key for key in found if key not in expected)]:
            place = f"{where}.{key}" if where else key
            if key not in found:
                yield f"{place}: found nothing, expected it"
            elif key not in expected:
                yield f"{place}: found it, expected nothing"
            else:
                yield from differences(expected[key], found[key], place)
    elif isinstance(expected, list) and isinstance(found, list):
        if len(expected) != len(found):
            yield f"{where}: found {len(found)} entries, expected {len(expected)}"
        else:
            for i, (one, other) in enumerate(zip(expected, found)):
                yield from differences(one, other, f"{where}[{i}]")
    elif is_number(expected) and is_number(found):
        one, other = float(number(expected)), float(number(found))
        if bits(one) != bits(other):
            yield f"{where}: found {other!r}, expected {one!r}{distance(one, other)}"
    elif type(expected) is not type(found) or expected != found:
        yield f"{where}: found {found!r}, expected {expected!r}"


def count_numbers(value):
    if isinstance(value, dict):
        return sum(map(count_numbers, value.values()))
    if isinstance(value, list):
        return sum(map(count_numbers, value))
    return int(is_number(value))


def check(folder):
    """Prints what differs, and returns whether anything does."""
    wrong = numbers = 0
    walks = sorted(SET.glob("*.json"))
    for path in walks:
        expected = json.loads(path.read_text(encoding="utf-8"))["expected"]
        computed = folder / path.name
        try:
            found = list(differences(expected, json.loads(computed.read_text(encoding="utf-8"))))
        except (OSError, ValueError) as error:
            found = [f"cannot be read: {error}"]
        numbers += count_numbers(expected)
        wrong += bool(found)
        for line in found[:MOST_SHOWN]:
            print(f"{computed}: {line}")
        if len(found) > MOST_SHOWN:
            print(f"{computed}: and {len(found) - MOST_SHOWN} more")
    differ = "walk differs" if wrong == 1 else "walks differ"
    print(f"{len(walks)} walks, {numbers} figures: {wrong or 'no'} {differ}")
    return wrong > 0


if __name__ == "__main__":
    parser = argparse.ArgumentParser(
        description="Compares what an implementation computed with what is expected, bit by bit."
    )
    parser.add_argument("folder", type=pathlib.Path, metavar="FOLDER", help="of computed files")
    sys.exit(check(parser.parse_args().folder))
