"""The walks of conformance/, without their figures: examples, modelled walks, and made-up ones.

conformance.py writes them into files, in the form that docs/conformance.md describes.
"""

import csv
import math
import pathlib
import random
import subprocess
import tempfile

import walks
from model import DOUBLE_EPSILON, MISSING

PROJECT = pathlib.Path(__file__).resolve().parents[2]
EXCLUSIONS = ("excluded_1", "excluded_1_fallback", "excluded_2", "excluded_2_fallback")
WHOLE = ("first_sample", "last_sample", "index")


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


def with_setting(walk, value):
    walk["settings_value"] = value
    return walk


def swings(*asymmetries):
    """Columns of both feet with these asymmetries at 128 Hz; the swings of a stride add to 100."""
    shares = [asymmetry * 50.0 / 128.0 for asymmetry in asymmetries]
    return {
        "left": {"swing": [50.0 + share for share in shares]},
        "right": {"swing": [50.0 - share for share in shares]},
    }


def walks_of_set(make_walk):
    """Name, what it is about, and the walk.

    Each group has a random generator of its own, so that a walk at the end of one changes no other.
    """
    yield from example_walks(make_walk)
    yield from walks_of_the_definitions(random.Random(1))
    yield from walks_of_flags(random.Random(2))
    yield from walks_of_swing_asymmetry(random.Random(3))
    yield from walks_of_recordings(random.Random(4))
    yield from walks_of_lists(random.Random(5))
    yield from walks_of_numbers(random.Random(6))


def example_walks(make_walk):
    examples = PROJECT / "examples" / "walks"
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


def walks_of_the_definitions(rng):
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
    flagged = two_feet(rng, 6, left={"swing": [55.0] * 6, "speed": [0.25] * 6})
    for column in flagged["feet_cycles"].values():
        del column[4:]
    yield (
        "quality_flags",
        "Few cycles, although the feet have six strides; slow, uneven, a setting out of its range.",
        with_setting(flagged, 40.0),
    )
    apart = [1e16, 1.0, -1e16, 1e-8, 3.0, 1e16, -1e16, 0.1, 0.2, 0.3, 0.7]
    yield (
        "order_of_sums",
        "Sums whose last bits depend on the order of what is added.",
        one_foot(rng, 11, peakswing=apart, impact_vert=[abs(value) for value in apart]),
    )


def walks_of_flags(rng):
    """At a limit and beyond it; `settings_value` is a float, and so are these values."""
    yield (
        "fast_and_setting_too_small",
        "One foot faster than 1.8 m/s, and a setting below 10: flags 4 and 1.",
        with_setting(one_foot(rng, 5, speed=[2.0] * 5), 9.75),
    )
    yield (
        "slow_and_setting_too_large",
        "One foot slower than 0.31 m/s, and a setting above 34: flags 4 and 1.",
        with_setting(one_foot(rng, 5, speed=[0.25] * 5), 34.25),
    )
    yield (
        "least_speed_and_setting",
        "One foot at 0.31 m/s, and a setting of 10: no flag.",
        with_setting(one_foot(rng, 5, speed=[0.31] * 5), 10.0),
    )
    yield (
        "greatest_speed_and_setting",
        "One foot at 1.8 m/s, and a setting of 34: no flag.",
        with_setting(one_foot(rng, 5, speed=[1.8] * 5), 34.0),
    )
    yield (
        "negative_setting",
        "A setting below 0 raises no flag.",
        with_setting(one_foot(rng, 5), -5.0),
    )
    yield (
        "speed_not_measured",
        "One foot whose speed was never measured: the missing value raises flag 4.",
        one_foot(rng, 5, speed=[MISSING] * 5),
    )
    yield (
        "fast_right_foot",
        "The right foot faster than 1.8 m/s, the left one not: flag 8.",
        two_feet(rng, 5, right={"speed": [2.0] * 5}),
    )
    yield (
        "slow_right_fast_left",
        "The right foot slower than 0.31 m/s, the left one faster than 1.8: flags 8 and 16.",
        two_feet(rng, 5, left={"speed": [2.0] * 5}, right={"speed": [0.25] * 5}),
    )
    yield (
        "feet_at_the_limits",
        "The right foot at 0.31 m/s, the left one at 1.8: no flag.",
        two_feet(rng, 5, left={"speed": [1.8] * 5}, right={"speed": [0.31] * 5}),
    )
    yield (
        "feet_at_the_other_limits",
        "The right foot at 1.8 m/s, the left one at 0.31: no flag.",
        two_feet(rng, 5, left={"speed": [0.31] * 5}, right={"speed": [1.8] * 5}),
    )


def walks_of_swing_asymmetry(rng):
    """The rate of two_feet is 128 Hz, at which swings() gives the asymmetries exactly."""
    yield (
        "asymmetry_of_20",
        "A mean swing asymmetry of exactly 20: flag 128.",
        two_feet(rng, 5, **swings(10.0, 30.0, 10.0, 30.0, 20.0)),
    )
    yield (
        "asymmetry_of_minus_20",
        "A mean swing asymmetry of exactly -20: flag 128.",
        two_feet(rng, 5, **swings(-10.0, -30.0, -10.0, -30.0, -20.0)),
    )
    yield (
        "asymmetry_below_20",
        "A mean swing asymmetry of 19.9: no flag.",
        two_feet(rng, 5, **swings(10.0, 30.0, 10.0, 30.0, 19.5)),
    )
    yield (
        "equal_asymmetries",
        "A swing asymmetry of 24 in every stride, without a deviation: no flag.",
        two_feet(rng, 5, **swings(24.0, 24.0, 24.0, 24.0, 24.0)),
    )
    missing = [MISSING] * 4
    yield (
        "one_asymmetry_of_24",
        "A single stride has the swings of both feet, and its deviation is NaN: flag 128.",
        two_feet(rng, 5, left={"swing": [*missing, 59.375]}, right={"swing": [*missing, 40.625]}),
    )
    left = [38.5, 0.0, 39.0, -38.0, 38.0, -0.0, 0.0, 40.0]
    right = [38.0, 38.0, 0.0, 38.5, -37.0, 39.0, 0.0, 38.5]
    yield (
        "swings_of_zero",
        "A swing that is zero or negative on either side has no asymmetry.",
        two_feet(rng, 8, left={"swing": left}, right={"swing": right}),
    )


def walks_of_recordings(rng):
    walk = one_foot(rng, 5)
    walk["feet"][0]["signal_2_samples"] = 800
    yield ("shorter_second_signal", "One foot: the second signal is the shorter one.", walk)
    walk = two_feet(rng, 5)
    walk["feet"][0]["signal_2_samples"] = 800
    yield ("shorter_left_signal", "Two feet: the left foot's second signal is the shortest.", walk)
    walk = two_feet(rng, 5)
    walk["feet"].reverse()
    walk["feet"][0]["sampling_rate"] = 100
    walk["feet"][1]["signal_2_samples"] = 800
    yield (
        "right_foot_first",
        "The rate is feet[0]'s, the right foot's; the left foot's second signal is the shortest.",
        walk,
    )
    walk = two_feet(rng, 5)
    walk["feet"][0]["sampling_rate"] = 200
    walk["feet"][1]["signal_1_samples"] = 800
    yield (
        "left_foot_first",
        "The rate is feet[0]'s, the left foot's; the right foot's first signal is the shortest.",
        walk,
    )


def walks_of_lists(rng):
    yield (
        "listed_by_both_kinds",
        "Kind 2 lists what kind 1 has taken out: its fallback list enters `excluded_2_gct_sum`.",
        with_lists(one_foot(rng, 6), excluded_1=[4], excluded_2=[4], excluded_2_fallback=[0]),
    )
    yield (
        "second_kind_takes_nothing",
        "Two feet: kind 2 lists what kind 1 has taken out, and what is not there.",
        with_lists(
            two_feet(rng, 6), excluded_1=[4, 2], excluded_2=[2, 6, -1], excluded_2_fallback=[0, 5]
        ),
    )
    # 1e16 + 1.0 + 1.0 is 1e16, and 1.0 + 1.0 + 1e16 is not: the doubles around are 2.0 apart.
    durations = [1e16, 1.0, 1.0] * 4
    yield (
        "sums_in_list_order",
        "The sums over the lists depend on the order of their entries.",
        with_lists(
            one_foot(rng, 12, gct=durations),
            excluded_1=[1, 2, 0],
            excluded_1_fallback=[7, 8, 6],
            excluded_2=[4, 5, 3],
        ),
    )
    yield (
        "fallback_sums_in_list_order",
        "The sums over the fallback lists depend on the order of their entries.",
        with_lists(
            one_foot(rng, 12, gct=durations),
            excluded_1_fallback=[1, 2, 0],
            excluded_2_fallback=[4, 5, 3],
        ),
    )
    walk = two_feet(rng, 6, right={"slength": [1e16, 1.0, 1.0, 1.25, 6.0, 1.5]})
    walk["feet_cycles"]["right_index"] = [2, 1, 0, 4, 4, 3]
    walk["feet_cycles"]["left_index"] = [5, 4, 3, 2, 1, 1]
    yield (
        "links_in_any_order",
        "The distances are sums in the order of the cycles of both feet, whose links are unsorted.",
        walk,
    )


def walks_of_numbers(rng):
    yield (
        "negative_zero",
        "One stride: a single -0.0 has the mean 0.0.",
        one_foot(rng, 1, top=[-0.0], peakswing=[-0.0]),
    )
    yield (
        "zeros_of_both_signs",
        "Medians and quartiles whose sign depends on the steps of the sort; sums of -0.0 alone.",
        one_foot(
            rng,
            7,
            ta=[0.0, 2.0, -0.0, -2.0, -0.0, -0.0, 0.0],
            top=[0.0, 0.0, -2.0, 2.0, 0.0, 0.0, -0.0],
            hsp=[0.0, -0.0, 0.0, 2.0, 0.0, -2.0, MISSING],
            peakswing=[-2.0, -0.0, 2.0, 0.0, 0.0, 0.0, MISSING],
            strike_eversion=[-0.0] * 7,
        ),
    )
    at_limit = [0.5 * DOUBLE_EPSILON, 1.5 * DOUBLE_EPSILON] * 5
    above = [1.0 * DOUBLE_EPSILON, 1.5 * DOUBLE_EPSILON] * 5
    yield (
        "means_near_zero",
        "No coefficient of variation for a mean of 2^-52 or -2^-52; one for 1.25 times as much.",
        one_foot(
            rng,
            10,
            top=at_limit,
            hsp=above,
            impact_vert=[-value for value in at_limit],
            impact_hor=[-value for value in above],
        ),
    )
    finite = [38.0, 39.5, 37.0, 40.0, 38.5]
    yield (
        "infinite_values",
        "One infinite value: the mean is infinite, the deviation NaN, the quartiles are finite.",
        one_foot(rng, 6, swing=[*finite, math.inf], stance=[-math.inf, *finite]),
    )
