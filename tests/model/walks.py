"""Random walks, from tame to wild, within what gait/generate_statistics.h requires.

A case is what happens to one gait_result: entries and flags that the caller put there, then walks
that are analysed into the same outputs, each once or several times:

    {"parameters": {key: record}, "quality_flags": 0, "calls": [{"walk": walk, "times": 2}]}

model.py describes a walk. A case holds nothing but lists, dicts with texts as keys, texts, numbers,
true, false and null, so that it can be kept as JSON.
"""

import math
import random
import struct

from model import CATALOGUE, MISSING, fresh_parameter

# Every measured field in declaration order, with the size of a plausible value, and of its spread.
MEASURED = {
    "hs": (20.0, 9.0),
    "gct": (1.1, 0.05),
    "swing": (38.0, 2.0),
    "stance": (62.0, 2.0),
    "contact": (680.0, 30.0),
    "cadence": (110.0, 5.0),
    "ldr": (12.0, 2.0),
    "ffr": (55.0, 4.0),
    "pur": (33.0, 3.0),
    "slength": (1.3, 0.1),
    "swidth": (0.04, 0.02),
    "path_length": (104.0, 1.0),
    "speed": (1.2, 0.4),
    "ta": (0.0, 6.0),
    "peakswing": (420.0, 30.0),
    "top": (65.0, 5.0),
    "hsp": (22.0, 4.0),
    "step_time": (0.55, 0.03),
    "step_length": (0.65, 0.05),
    "strike_eversion": (4.0, 3.0),
    "max_hc": (0.25, 0.02),
    "min_tc": (0.02, 0.01),
    "max_tc1": (0.06, 0.01),
    "max_tc2": (0.12, 0.02),
    "mtc_speed": (4.0, 0.5),
    "impact_vert": (2.5, 0.8),
    "impact_hor": (1.5, 0.5),
}

INT_MIN, INT_MAX = -(2**31), 2**31 - 1
EPSILON = 2.220446049250313e-16
LARGEST, SMALLEST, SMALLEST_NORMAL = 1.7976931348623157e308, 5e-324, 2.2250738585072014e-308
SPECIAL = [
    0.0,
    -0.0,
    1.0,
    MISSING,
    -0.999,
    -2.0,
    math.nextafter(-1.0, 0.0),
    math.nextafter(-1.0, -2.0),
    20.0,
    -20.0,
    EPSILON,
    -EPSILON,
    SMALLEST,
    -SMALLEST,
    SMALLEST_NORMAL,
    LARGEST,
    -LARGEST,
    1e300,
    -1e-300,
    math.inf,
    -math.inf,
    math.nan,
]


# Values of one field over the cycles of a foot: (random, (size, spread), n) -> n values.


def plausible(rng, typical, n):
    return [rng.gauss(*typical) for _ in range(n)]


def rounded(rng, typical, n):
    return [round(rng.gauss(*typical), 1) for _ in range(n)]


def equal(rng, typical, n):
    return [rng.gauss(*typical)] * n


def last_bit_apart(rng, typical, n):
    value = rng.gauss(*typical)
    neighbours = [math.nextafter(value, math.inf), math.nextafter(value, -math.inf)]
    return rng.choices([value, *neighbours], k=n)


def few(rng, _, n):
    return rng.choices([-2.0, -1.0, -0.5, -0.0, 0.0, 0.5, 1.0, 3.0], k=n)


def zeros(rng, _, n):
    return rng.choices([0.0, -0.0], k=n)


def speed_limits(rng, _, n):
    limit = rng.choice([0.31, 1.8])
    return [rng.choice([limit, math.nextafter(limit, 0.0), math.nextafter(limit, 2.0)])] * n


def mean_near_epsilon(rng, _, n):
    """Means on both sides of the least that has a coefficient of variation."""
    means = [EPSILON, math.nextafter(EPSILON, 1.0), math.nextafter(EPSILON, 0.0), 1e-17]
    mean = rng.choice([-1.0, 1.0]) * rng.choice(means)
    if rng.random() < 0.5:
        return [mean] * n
    return [mean + rng.choice([-mean, mean]) for _ in range(n)]


def huge(rng, _, n):
    return [rng.choice([-1.0, 1.0]) * 10.0 ** rng.uniform(150.0, 308.2) for _ in range(n)]


def denormal(rng, _, n):
    return [rng.randrange(-40, 41) * SMALLEST for _ in range(n)]


def special(rng, _, n):
    return rng.choices(SPECIAL, k=n)


def not_a_number_among_others(rng, typical, n):
    return [math.nan if rng.random() < 0.1 else value for value in plausible(rng, typical, n)]


def any_magnitude(rng, _, n):
    return [rng.choice([-1.0, 1.0]) * 10.0 ** rng.uniform(-320.0, 308.0) for _ in range(n)]


def any_bits(rng, _, n):
    """No payloads: nobody promises that NaNs keep theirs."""
    values = struct.unpack(f"<{n}d", rng.randbytes(8 * n))
    return [math.nan if math.isnan(value) else value for value in values]


STYLES = (
    plausible,
    plausible,
    plausible,
    rounded,
    equal,
    last_bit_apart,
    few,
    zeros,
    speed_limits,
    mean_near_epsilon,
    huge,
    denormal,
    special,
    not_a_number_among_others,
    any_magnitude,
    any_bits,
)


class Temper:
    """What a walk is like: which values its fields take, how many are missing, and how sound."""

    def __init__(self, rng):
        self.rng = rng
        self.kind = rng.choices(["tame", "mixed", "wild"], [5, 4, 1])[0]
        self.odd = self.kind != "tame" and rng.random() < 0.5
        self.shares_missing = [0.0, 0.0, 0.0, 0.1, 0.5, 1.0]
        if self.kind == "tame":
            self.shares_missing = [0.0, 0.0, 0.05]

    def values(self, field, n):
        style = plausible
        if self.kind == "mixed":
            style = self.rng.choice(STYLES)
        elif self.kind == "wild":
            style = self.rng.choice([special, any_magnitude, any_bits])
        share_missing = self.rng.choice(self.shares_missing)
        values = style(self.rng, MEASURED.get(field, (20.0, 4.0)), n)
        return [
            MISSING if share_missing and self.rng.random() < share_missing else value
            for value in values
        ]


def number_of_cycles(rng, least):
    most = rng.choices([1, 3, 12, 30, 130, 400], [6, 14, 50, 25, 4.8, 0.2])[0]
    return rng.randint(least, most)


def positions(rng, n, count):
    """Indices into a list of n, some of them out of range."""
    return [
        rng.choice([INT_MIN, INT_MAX, -1, n]) if rng.random() < 0.1 else rng.randint(-2, n + 2)
        for _ in range(count)
    ]


def foot(rng, temper, n):
    columns = {field: temper.values(field, n) for field in MEASURED if rng.random() < 0.95}
    if rng.random() < 0.1:
        columns["speed"] = speed_limits(rng, None, n)
    lengths = [rng.randint(60, 200) for _ in range(n)]
    starts = [sum(lengths[:i]) for i in range(n)]
    indices = list(range(n))
    if temper.odd:
        indices = rng.choice([indices, indices[::-1], rng.sample(indices, n), positions(rng, n, n)])
    cycles = []
    for i in range(n):
        cycle = {
            "first_sample": starts[i],
            "last_sample": starts[i] + lengths[i] - 1,
            "index": indices[i],
        }
        cycle.update(
            (field, values[i]) for field, values in columns.items() if values[i] != MISSING
        )
        cycles.append(cycle)
    if temper.odd and n > 0:
        edges = [0, -1, 1, 100, INT_MIN, INT_MAX]
        cycles[0]["first_sample"], cycles[-1]["last_sample"] = rng.choice(edges), rng.choice(edges)
    return cycles


def limp(rng, cycles_left, cycles_right):
    """Swings whose asymmetry at 100 Hz is near, or to the bit, where its flag is raised."""
    sign = rng.choice([-1.0, 1.0])
    half = rng.choice([[10.0], [9.5, 10.5], [9.5, 10.0, 10.5], [9.5, 10.25]])
    for i, (left, right) in enumerate(zip(cycles_left, cycles_right)):
        left["swing"] = 50.0 + sign * half[i % len(half)]
        right["swing"] = 50.0 - sign * half[i % len(half)]


def links(rng, temper, feet, own, n):
    """[foot, cycle] or None for each of n two-feet cycles; straight ones are of the foot `own`."""
    straight = [[own, k] if k < len(feet[own]["cycles"]) else None for k in range(n)]
    if not temper.odd:
        return [None if rng.random() < 0.03 else link for link in straight]
    anywhere = [[f, k] for f, other in enumerate(feet) for k in range(len(other["cycles"]))]
    shared = rng.choice(anywhere)
    wild = [rng.choice([None, *anywhere]) for _ in range(n)]
    return rng.choice([straight, straight[::-1], [shared] * n, [None] * n, wild])


def recording(rng, temper):
    rate = rng.choice([100, 100, 100, 64, 128, 200, 300])
    counts = [rng.randint(0, 20000), rng.randint(0, 20000)]
    if temper.odd:
        # At 0 Hz, durations are infinite or NaN.
        rate = rng.choice([rate, 1, 3, -7, 0, INT_MAX, INT_MIN])
        counts = rng.choices([0, 1, 12345, 2**53 + 1, 2**63 - 1, 2**63, 2**64 - 1], k=2)
    signals = [[1, counts[0]], [2, counts[1]]]
    if rng.random() < 0.2:
        signals += [[identifier, rng.randint(0, 5)] for identifier in (0, -1, 3, INT_MAX)]
    if rng.random() < 0.02:
        del signals[rng.randrange(2)]
    return {"sampling_rate": rate, "signals": rng.sample(signals, len(signals))}


def exclusions(rng, n):
    if rng.random() < 0.4:
        return []
    indices = positions(rng, n, rng.randint(0, max(2, n // 3)))
    if rng.random() < 0.3:
        indices += indices[:2]
    if rng.random() < 0.03:
        indices += range(n)
    return indices


def setting(rng):
    if rng.random() < 0.5:
        return 0.0
    edges = [
        9.999999,
        10.0,
        34.0,
        34.000004,
        1e-45,
        -0.0,
        -5.0,
        3e38,
        math.inf,
        math.nan,
        rng.uniform(-5.0, 50.0),
    ]
    return struct.unpack("<f", struct.pack("<f", rng.choice(edges)))[0]


def walk(rng):
    temper = Temper(rng)
    entries = rng.choices([0, 1, 2, 3, 5], [2, 40, 50, 6, 2])[0]
    two_feet = entries > 1
    recordings = [recording(rng, temper) for _ in range(rng.randint(1, 3))]
    feet = []
    n = number_of_cycles(rng, 1)
    # Feet beyond the entries stand elsewhere; right_foot and left_foot may point at those too.
    for i in range(max(1, entries) + (rng.random() < 0.1)):
        near = (
            number_of_cycles(rng, 1) if temper.odd else max(1, n + rng.choice([0, 0, 0, -1, 1, 2]))
        )
        feet.append(
            {
                "recording": rng.randrange(len(recordings)),
                "cycles": foot(rng, temper, n if i == 0 else near),
            }
        )
    left, right = rng.sample(range(len(feet)), 2) if two_feet else (None, None)
    if two_feet and temper.odd and rng.random() < 0.1:
        left = right
    for i, other in enumerate(feet):
        if i not in (0, left, right) and rng.random() < 0.3:
            other["recording"] = None
        if two_feet and i not in (left, right) and rng.random() < 0.3:
            other["cycles"] = []
    if two_feet and left != right and rng.random() < 0.25:
        limp(rng, feet[left]["cycles"], feet[right]["cycles"])

    count = n
    if not two_feet and rng.random() < 0.9:
        count = 0
    elif temper.odd:
        count = number_of_cycles(rng, 0)
    columns = {field: temper.values(field, count) for field in ("gct", "ds")}
    sides = {"right_cycle": right if two_feet else 0, "left_cycle": left if two_feet else 0}
    columns.update({link: links(rng, temper, feet, own, count) for link, own in sides.items()})
    feet_cycles = [{name: column[i] for name, column in columns.items()} for i in range(count)]
    analysed = count if two_feet else n
    lists = {
        name: exclusions(rng, analysed)
        for name in ("excluded_1", "excluded_1_fallback", "excluded_2", "excluded_2_fallback")
    }
    return {
        "recordings": recordings,
        "feet": feet,
        "foot_results": entries,
        "left_foot": left,
        "right_foot": right,
        "feet_cycles": feet_cycles,
        **lists,
        "settings_value": setting(rng),
    }


def parameters_of_the_caller(rng):
    """Entries that are in the map before the first call."""
    if rng.random() < 0.8:
        return {}
    temper = Temper(rng)
    names = [
        row.key + suffix
        for row in CATALOGUE
        if row.is_built(two_feet=True)
        for suffix in ("", "_R", "_L")
    ]
    # Keys that lead to partners in unusual ways, or to one that others lead to.
    names += ["own_L", "own_R", "_L", "_R", "a_L_L", "a_R", "gct_Left", "b_Lx_R", "b_R", "c_L"]
    often = ["asymmetry", "speed", "speed_R", "speed_L", "swing_R", "swing_L", "own_L", "own_R"]
    names = rng.sample(names, rng.randint(1, 12)) + rng.sample(often, 3)
    parameters = {}
    for name in names:
        parameters[name] = fresh_parameter()
        statistics = ("mean", "median", "std", "iqr", "min", "max", "cv", "asymmetry")
        parameters[name].update(zip(statistics, temper.values("speed", len(statistics))))
        parameters[name].update(
            valid=rng.random() < 0.5,
            description="kept",
            unit="one of the caller's",
            decimals=rng.randint(-1, 9),
            values=temper.values("swing", number_of_cycles(rng, 0)),
            asymmetry_enabled=rng.random() < 0.7,
        )
    return parameters


def case(seed, number):
    """Every case has a generator of its own, so that each can be made without those before it."""
    rng = random.Random(f"{seed} {number}")
    calls = [
        {"walk": walk(rng), "times": rng.choices([1, 2, 3], [6, 4, 1])[0]}
        for _ in range(rng.choices([1, 2, 3], [8, 3, 1])[0])
    ]
    return {
        "parameters": parameters_of_the_caller(rng),
        "quality_flags": rng.choice([0, 0, 1, 255, INT_MIN]),
        "calls": calls,
    }
