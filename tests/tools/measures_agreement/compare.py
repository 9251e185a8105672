"""Compares the measures of random walks with numpy's, and with the formulas of docs/measures.md.

usage: compare.py PRINT_MEASURES

PRINT_MEASURES is the program of that name in this folder. Both sides get the same walks in every
run. They sum in different orders of operations, and agree but for the last bits.
"""

import subprocess
import sys

import numpy

WALKS = 1500
RELATIVE_TOLERANCE = 1e-10
MISSING = -1.0
FIGURES = [
    "q1",
    "q3",
    "p5",
    "p95",
    "effective_strides",
    "standard_error",
    "symmetry_index",
    "n",
    "mean",
    "sd",
]


def random_walks(random):
    """Positions with gaps, and values of both sides: 1 to 150 strides that resemble those before
    them, by chance the reverse of them, drifting, or rounded with many ties; some not measured."""
    for _ in range(WALKS):
        n = int(random.integers(1, 151))
        gaps = random.choice([0.0, 0.1, 0.6])
        positions = numpy.cumsum(1 + random.geometric(1.0 - gaps, n) - 1) * random.integers(1, 4)
        center = random.choice([1.1, -40.0, 0.3])
        sides = []
        for _ in range(2):
            values = resembling(random, n, random.choice([-0.6, 0.0, 0.4, 0.9]))
            values += random.choice([0.0, 3.0]) * numpy.linspace(-1.0, 1.0, n)
            values = center + values * random.choice([0.05, 0.5])
            values = numpy.round(values, 2) if random.random() < 0.3 else values
            values[random.random(n) < random.choice([0.0, 0.2])] = MISSING
            if (values == MISSING).all():
                values[0] = center
            sides.append(values)
        yield positions, *sides


def resembling(random, n, r):
    """A series of autocorrelation r at a lag of one."""
    values = random.normal(size=n)
    for i in range(1, n):
        values[i] = r * values[i - 1] + numpy.sqrt(1.0 - r * r) * values[i]
    return values


def effective_strides(positions, values):
    """n over the summed autocorrelation: by the formula, stride by stride."""
    deviations = {int(p): v - values.mean() for p, v in zip(positions, values)}
    squares = sum(d * d for d in deviations.values())

    def pairs(lag):
        return [d * deviations[p + lag] for p, d in deviations.items() if p + lag in deviations]

    total = 1.0 + sum(pairs(1)) / squares
    for lag in range(2, max(deviations) - min(deviations) + 1, 2):
        both = pairs(lag) + pairs(lag + 1)
        if both and sum(both) <= 0.0:
            break
        total += sum(both) / squares
    return min(len(values) / (2.0 * total - 1.0) if total > 0.5 else numpy.inf, len(values))


def expected_of(positions, right, left):
    is_measured = right != MISSING
    measured = right[is_measured]
    figures = dict.fromkeys(FIGURES, numpy.nan)
    figures["q1"], figures["q3"] = numpy.percentile(measured, [25, 75], method="hazen")
    if len(measured) >= 20:
        figures["p5"], figures["p95"] = numpy.percentile(measured, [5, 95], method="hazen")
        if measured.min() != measured.max():
            effective = effective_strides(positions[is_measured], measured)
            figures["effective_strides"] = effective
            figures["standard_error"] = measured.std(ddof=1) / numpy.sqrt(effective)
    means = measured.mean(), left[left != MISSING].mean()
    if means[0] * means[1] > 0.0:
        figures["symmetry_index"] = 100.0 * (means[0] - means[1]) / numpy.mean(means)
    both = (right > 0.0) & (left > 0.0)
    swing = 100.0 * (left[both] - right[both]) / (left[both] + right[both])
    figures["n"] = len(swing)
    if len(swing) > 0:
        figures["mean"] = swing.mean()
    if len(swing) > 1:
        figures["sd"] = swing.std(ddof=1)
    return numpy.array([figures[name] for name in FIGURES])


def list_of(numbers):
    return ",".join(float(number).hex() for number in numbers)


def main():
    random = numpy.random.default_rng(38)
    walks = list(random_walks(random))
    lines = "".join(" ".join(map(list_of, walk)) + "\n" for walk in walks)
    finished = subprocess.run(sys.argv[1:], input=lines, capture_output=True, text=True, check=True)
    printed = finished.stdout.splitlines()
    if len(printed) != len(walks):
        sys.exit(f"{len(walks)} walks went in, {len(printed)} lines came out")

    disagreements = 0
    given = numpy.zeros(len(FIGURES), dtype=int)
    for walk, line in zip(walks, printed):
        got = numpy.array([float.fromhex(number) for number in line.split()])
        expected = expected_of(*walk)
        given += ~numpy.isnan(expected)
        scale = numpy.maximum(numpy.abs(expected), numpy.abs(walk[1]).max())
        agrees = (numpy.abs(got - expected) <= RELATIVE_TOLERANCE * scale) | (
            numpy.isnan(got) & numpy.isnan(expected)
        )
        if not agrees.all():
            disagreements += 1
            print(f"positions {walk[0].tolist()}\n right {walk[1].tolist()}")
            print(f" left {walk[2].tolist()}")
            for name, ours, theirs in zip(FIGURES, got, expected):
                print(f"  {name}: library {ours}, numpy {theirs}")
    print(f"{len(walks)} walks compared with numpy {numpy.__version__}, {disagreements} disagree")
    print("figures given: " + ", ".join(f"{name} {n}" for name, n in zip(FIGURES, given)))
    sys.exit(1 if disagreements or not given.all() else 0)


main()
