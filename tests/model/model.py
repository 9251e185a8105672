"""gait_generate_statistics() a second time, written from docs/definitions.md section by section,
and from nothing else.

A walk is made of plain values, as walks.py makes them:

    {"recordings": [{"sampling_rate": 100, "signals": [[1, 500], [2, 500]]}],
     "feet": [{"recording": 0,
               "cycles": [{"first_sample": 0, "last_sample": 99, "index": 0, "gct": 1.0}]}],
     "foot_results": 1,
     "left_foot": None, "right_foot": None,
     "feet_cycles": [{"gct": 1.0, "ds": 20.0, "right_cycle": [1, 0], "left_cycle": None}],
     "excluded_1": [], "excluded_1_fallback": [], "excluded_2": [], "excluded_2_fallback": [],
     "settings_value": 0.0}

A signal is [identifier, sample count]. "foot_results" says how many of the feet, from the first,
are entries of foot_results. "left_foot" and "right_foot" are positions in "feet", or None for null.
A link is [foot, cycle], or None for null.

A measured field that is not there is missing. The outputs are {"info": ..., "parameters": ...,
"quality_flags": ...} with their members in declaration order.
"""

import csv
import math
import pathlib
import typing

CATALOGUE_FILE = pathlib.Path(__file__).resolve().parent.parent / "static" / "catalogue.inc"

MISSING = -1.0
DOUBLE_EPSILON = 2.220446049250313e-16
NAN = math.nan


class Row(typing.NamedTuple):
    """A parameter: the columns of definitions.md, and when it is built."""

    tag: str
    result: str
    key: str
    description: str
    unit: str
    decimals: int
    has_ratio: bool
    has_cv: bool
    when: str
    field: str

    def is_built(self, two_feet):
        return self.when in ("always", "with_both_feet" if two_feet else "with_one_foot")


def read_catalogue():
    """The catalogue that is typed by hand for the tests. The page's table is printed from the
    library's own: reading it would compare that with itself.
    """
    rows = []
    for line in CATALOGUE_FILE.read_text(encoding="utf-8").splitlines():
        if line.startswith("ROW("):
            cells = line.removeprefix("ROW(").removesuffix(")")
            row = Row(*next(csv.reader([cells], skipinitialspace=True)))
            rows.append(
                row._replace(
                    decimals=int(row.decimals),
                    has_ratio=row.has_ratio == "ratio",
                    has_cv=row.has_cv == "cv",
                    field=row.field.rpartition("::")[2],
                )
            )
    return rows


CATALOGUE = read_catalogue()


class OneOf(tuple):
    """What the page leaves open: any of these values is right."""


ANY = OneOf()
"""An unspecified value: every one is right."""


class AbsentSignal(Exception):
    """What std::out_of_range says in the library."""

    def __init__(self):
        super().__init__("unordered_map::at: key not found")


def fresh_outputs():
    whole = {
        "cycle_count",
        "excluded_count",
        "excluded_2_fallback_count",
        "excluded_2_count",
        "excluded_1_fallback_count",
        "excluded_1_count",
        "included_count",
    }
    names = """recording_duration duration excluded_1_fallback_gct_sum excluded_2_gct_sum
        included_gct_sum included_distance total_distance cycle_count excluded_count cycles
        excluded_2_fallback_count excluded_2_count excluded_1_fallback_count excluded_1_count
        included_count excluded_2_fallback_duration excluded_2_duration
        excluded_1_fallback_duration excluded_1_duration included_duration""".split()
    info = {name: [] if name == "cycles" else 0 if name in whole else 0.0 for name in names}
    return {"info": info, "parameters": {}, "quality_flags": 0}


def fresh_parameter():
    return {
        "valid": False,
        "description": "",
        "unit": "",
        "decimals": 0,
        "values": [],
        "mean": MISSING,
        "median": MISSING,
        "std": MISSING,
        "iqr": MISSING,
        "min": MISSING,
        "max": MISSING,
        "cv": MISSING,
        "asymmetry_enabled": False,
        "asymmetry": MISSING,
    }


# Terms.


def int32(number):
    return (number + 2**31) % 2**32 - 2**31


def uint32(number):
    return number % 2**32


def divided(a, b):
    """a / b as IEEE 754 has it; Python's own refuses a division by zero."""
    if b != 0.0:
        return a / b
    if a == 0.0 or math.isnan(a):
        return NAN
    return math.copysign(math.inf, math.copysign(1.0, a) * math.copysign(1.0, b))


def added_up(values):
    """From 0.0, in order. Python's own sum() rounds otherwise since 3.12."""
    total = 0.0
    for value in values:
        total += value
    return total


def measured(values):
    return [value for value in values if value != MISSING]


def values_over(indices, cycles, value_of):
    return [value_of(cycles[i]) if 0 <= i < len(cycles) else MISSING for i in indices]


def sum_over(indices, cycles, field):
    return added_up(measured(values_over(indices, cycles, lambda cycle: cycle.get(field, MISSING))))


# The whole call.


def generate_statistics(walk, outputs):
    """Changes the outputs as a call with this walk would, on whatever is in them already."""
    if walk["foot_results"] == 0:
        return
    two_feet = walk["foot_results"] > 1
    rate = float(recording_of(walk, 0)["sampling_rate"])
    feet = [walk["left_foot"], walk["right_foot"]] if two_feet else [0]
    # Before anything is written: an absent signal leaves everything as it was.
    recording_duration = divided(float(shortest_signal(walk, feet)), rate)
    cycles = walk["feet_cycles"] if two_feet else walk["feet"][0]["cycles"]
    right = walk["feet"][walk["right_foot"]]["cycles"] if two_feet else cycles

    n = int32(len(cycles))
    selection, took_out_kind_2 = selected(walk, n)
    distance_indices = (
        (lambda chosen: matched(walk, chosen, "right_cycle"))
        if two_feet
        else (lambda chosen: chosen)
    )
    info = {
        "recording_duration": recording_duration,
        "duration": divided(span(walk, feet) + 1.0, rate),
    }
    info["excluded_1_fallback_gct_sum"] = sum_over(walk["excluded_1_fallback"], cycles, "gct")
    info["excluded_2_gct_sum"] = sum_over(
        walk["excluded_2" if took_out_kind_2 else "excluded_2_fallback"], cycles, "gct"
    )
    info["included_gct_sum"] = sum_over(selection, cycles, "gct")
    info["included_distance"] = sum_over(distance_indices(selection), right, "slength")
    info["total_distance"] = sum_over(distance_indices(range(n)), right, "slength")
    info["cycle_count"] = n
    info["excluded_count"] = int32(n - len(selection))
    info["cycles"] = selection
    account_for_lists(info, walk, cycles)
    outputs["info"] = info

    parameters = outputs["parameters"]
    if two_feet:
        for foot, link, suffix in (
            ("right_foot", "right_cycle", "_R"),
            ("left_foot", "left_cycle", "_L"),
        ):
            indices = matched(walk, selection, link)
            build_parameters(
                parameters, walk["feet"][walk[foot]]["cycles"], indices, suffix, cycles, selection
            )
        compare_sides(parameters)
    else:
        build_parameters(parameters, cycles, selection, "")

    outputs["quality_flags"] = quality_flags(walk["settings_value"], n, parameters, two_feet)
    if two_feet:
        index = swing_asymmetry(parameters, int32(n - info["excluded_count"]), rate)
        if abs(index["mean"]) >= 20.0 and index["mean"] != 1.0 and index["std"] != 0.0:
            outputs["quality_flags"] += 128
        parameters.setdefault("asymmetry", index)


def recording_of(walk, foot):
    return walk["recordings"][walk["feet"][foot]["recording"]]


def shortest_signal(walk, feet):
    counts = []
    for foot in feet:
        signals = dict(recording_of(walk, foot)["signals"])
        if 1 not in signals or 2 not in signals:
            raise AbsentSignal
        counts += [signals[1], signals[2]]
    return min(counts)


# Which cycles count.


def selected(walk, n):
    """The included cycles, and whether kind 2 took anything out."""
    kind_1, kind_2 = set(walk["excluded_1"]), set(walk["excluded_2"])
    after_kind_1 = [i for i in range(n) if i not in kind_1]
    after_both = [i for i in after_kind_1 if i not in kind_2]
    return after_both, len(after_both) < len(after_kind_1)


def matched(walk, selection, link):
    links = [walk["feet_cycles"][i][link] for i in selection]
    return [-1 if to is None else walk["feet"][to[0]]["cycles"][to[1]]["index"] for to in links]


# The accounting.


def span(walk, feet):
    first = min(walk["feet"][foot]["cycles"][0]["first_sample"] for foot in feet)
    last = max(walk["feet"][foot]["cycles"][-1]["last_sample"] for foot in feet)
    return float(int32(last - first))


def account_for_lists(info, walk, cycles):
    kind_1, kind_1_fallback = walk["excluded_1"], walk["excluded_1_fallback"]
    kind_2, kind_2_fallback = walk["excluded_2"], walk["excluded_2_fallback"]
    info["excluded_2_fallback_count"] = 0 if kind_2 else 2
    info["excluded_2_count"] = uint32(len(kind_2)) if kind_2 else 2
    info["excluded_1_fallback_count"] = 0 if kind_1 else uint32(len(kind_1_fallback))
    info["excluded_1_count"] = uint32(len(kind_1 or kind_1_fallback))
    info["included_count"] = int32(
        info["cycle_count"] - info["excluded_2_count"] - info["excluded_1_count"]
    )
    info["excluded_2_fallback_duration"] = (
        0.0 if kind_2 else sum_over(kind_2_fallback, cycles, "gct")
    )
    info["excluded_2_duration"] = sum_over(kind_2 or kind_2_fallback, cycles, "gct")
    info["excluded_1_fallback_duration"] = (
        0.0 if kind_1 else sum_over(kind_1_fallback, cycles, "gct")
    )
    info["excluded_1_duration"] = sum_over(kind_1 or kind_1_fallback, cycles, "gct")
    info["included_duration"] = info["duration"] - (
        info["excluded_2_duration"] + info["excluded_1_duration"]
    )


# The parameters.


def build_parameters(parameters, cycles, indices, suffix, feet_cycles=None, feet_indices=None):
    """One side's; with one foot there are no two-feet cycles. An entry that is there stays."""
    two_feet = feet_cycles is not None
    for row in CATALOGUE:
        if not row.is_built(two_feet) or row.key + suffix in parameters:
            continue
        chosen, source = (feet_indices, feet_cycles) if row.result == "feet" else (indices, cycles)
        parameter = described(values_over(chosen, source, value_of(row)), row.has_cv)
        parameter.update(
            description=row.description,
            unit=row.unit,
            decimals=row.decimals,
            asymmetry_enabled=row.has_ratio,
        )
        parameters[row.key + suffix] = parameter


def value_of(row):
    """From a cycle to its value."""
    if row.field == "half_stride":  # a function
        return lambda cycle: cycle.get("slength", MISSING) * 0.5
    return lambda cycle: cycle.get(row.field, MISSING)


# The statistics of a parameter.


def described(values, has_cv):
    parameter = fresh_parameter()
    parameter["values"] = values
    sample = measured(values)
    n = len(sample)
    if n == 0:
        return parameter
    mean = divided(added_up(sample), float(n))
    std = 0.0
    if n > 1:
        std = math.sqrt(divided(added_up((x - mean) * (x - mean) for x in sample), float(n - 1)))
    parameter.update(valid=True, mean=mean, std=std)
    if has_cv and n >= 10 and abs(mean) > DOUBLE_EPSILON:
        parameter["cv"] = divided(100.0 * std, mean)
    if any(math.isnan(x) for x in sample):
        parameter.update(median=ANY, iqr=ANY, min=ANY, max=ANY)
        return parameter
    in_order = in_ascending_order(sample)
    first_quartile, third_quartile = percentiles(in_order, (25.0, 75.0))
    (parameter["median"],) = percentiles(in_order, (50.0,))
    parameter["iqr"] = third_quartile - first_quartile
    parameter["min"] = extreme(in_order[0], sample)
    parameter["max"] = extreme(in_order[-1], sample)
    return parameter


def extreme(value, sample):
    signs = {math.copysign(1.0, x) for x in sample if x == 0.0}
    return OneOf((0.0, -0.0)) if value == 0.0 and len(signs) == 2 else value


# Percentiles.


def percentiles(s, request):
    """Of values in ascending order."""
    n = len(s)
    if n == 1:
        return [s[0] for _ in request]
    half = n // 2
    med = s[half] if n % 2 else (s[half] + s[half - 1]) * 0.5
    lo = 50.0 / n
    hi = ((0.5 + n) + (-1.0)) * 100.0 / n
    if all(abs(p - 50.0) <= min(abs(p), 50.0) * 1e-12 for p in request):
        return [med for _ in request]
    if all(p <= lo for p in request):
        return [s[0] for _ in request]
    if all(p >= hi for p in request):
        return [s[-1] for _ in request]
    return [percentile(s, p, med, lo, hi) for p in request]


def percentile(s, p, med, lo, hi):
    n = len(s)
    if abs(p - 50.0) < 1e-12:
        return med
    if p <= lo:
        return s[0]
    if p >= hi:
        return s[-1]
    r = (p / 100.0) * n - 0.5
    k = math.floor(max(0.0, r))
    if abs(r - k) < 1e-12:
        return s[k]
    f = (p + ((k + 0.5) * (-100.0)) / n) * (n / 100.0)
    return s[k] + (s[k + 1] - s[k]) * f


def in_ascending_order(sample):
    """Only zeros of both signs show in which order a sort left its equals."""
    if 0.0 not in sample:
        return sorted(sample)
    s = list(sample)
    quicksort(s, 0, len(s) - 1)
    return s


def quicksort(a, left, right):
    while left <= right:
        i, j, pivot = left, right, a[(left + right) // 2]
        while i <= j:
            while a[i] < pivot:
                i += 1
            while a[j] > pivot:
                j -= 1
            if i <= j:
                a[i], a[j] = a[j], a[i]
                i, j = i + 1, j - 1
        if j > left:
            quicksort(a, left, j)
        if i >= right:
            return
        left = i


# Left and right.


def compare_sides(parameters):
    ratios_of = {}
    for key, left in parameters.items():
        partner = key.split("_L")[0] + "_R"
        if not left["asymmetry_enabled"] or "_L" not in key or partner not in parameters:
            continue
        mean_l, mean_r = left["mean"], parameters[partner]["mean"]
        ratio = divided(mean_r, mean_l) if mean_l != 0.0 else 0.0
        left["asymmetry"] = divided(1.0, ratio) if mean_r != 0.0 else 0.0
        ratios_of.setdefault(partner, []).append(ratio)
    for partner, ratios in ratios_of.items():
        parameters[partner]["asymmetry"] = ratios[0] if len(ratios) == 1 else OneOf(ratios)


# Swing asymmetry.


def swing_asymmetry(parameters, included, rate):
    index = fresh_parameter()
    index.update(description="Asymmetry", decimals=3, mean=0.0, std=0.0)
    left, right = parameters["swing_L"]["values"], parameters["swing_R"]["values"]
    if not left or not right:
        return index
    pairs = list(zip(left, right))[: max(included, 0)]
    values = [divided((x - y) * rate, x + y) for x, y in pairs if x > 0.0 and y > 0.0]
    k = len(values)
    mean = divided(added_up(values), float(k))
    std = math.sqrt(divided(added_up((a - mean) * (a - mean) for a in values), float(int32(k - 1))))
    index.update(valid=True, values=values, mean=mean, std=std)
    return index


# Quality flags.


def quality_flags(setting, cycle_count, parameters, two_feet):
    flags = 0
    if setting > 0 and (setting < 10 or setting > 34):
        flags += 1
    if cycle_count <= 4:
        flags += 2
    for key, bit in (("speed_R", 8), ("speed_L", 16)) if two_feet else (("speed", 4),):
        if parameters[key]["mean"] < 0.31 or parameters[key]["mean"] > 1.8:
            flags += bit
    return flags
