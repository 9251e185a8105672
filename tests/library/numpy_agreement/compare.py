"""Compares the library's statistics of random samples with numpy's.

usage: compare.py PRINT_STATISTICS

PRINT_STATISTICS is the program of that name in this folder. Both sides get the same samples in
every run. They sum and interpolate in different orders of operations, and agree but for the last
bits.
"""

import subprocess
import sys

import numpy

SAMPLES = 3000
RELATIVE_TOLERANCE = 1e-12


def random_samples(random):
    """1 to 120 values each: bell-shaped, skewed, rounded with many ties, or of either sign."""
    for _ in range(SAMPLES):
        n = int(random.integers(1, 121))
        shape = random.integers(4)
        if shape == 0:
            sample = random.normal(1.1, 0.05, n)
        elif shape == 1:
            sample = random.lognormal(0.0, 1.5, n)
        elif shape == 2:
            sample = numpy.round(random.normal(0.0, 3.0, n) * 2.0) / 2.0 + 0.25
        else:
            sample = random.normal(-40.0, 25.0, n)
        yield sample[sample != -1.0] if (sample != -1.0).any() else numpy.array([1.0])


def random_percentages(random):
    """Both ends, the quartiles, the median, and a few anywhere."""
    return numpy.concatenate([[0.0, 25.0, 50.0, 75.0, 100.0], random.uniform(0.0, 100.0, 5)])


def expected_of(sample, percentages):
    percentiles = numpy.percentile(sample, percentages, method="hazen")
    quartiles = numpy.percentile(sample, [25.0, 75.0], method="hazen")
    deviation = numpy.std(sample, ddof=1) if len(sample) > 1 else 0.0
    median = numpy.percentile(sample, 50.0, method="hazen")
    statistics = [sample.mean(), deviation, median, quartiles[1] - quartiles[0]]
    return numpy.concatenate([statistics, [sample.min(), sample.max()], percentiles])


def hexadecimal(numbers):
    return ",".join(float(number).hex() for number in numbers)


def main():
    random = numpy.random.default_rng(20)
    cases = [(random_percentages(random), sample) for sample in random_samples(random)]
    lines = "".join(
        f"{hexadecimal(percentages)} {hexadecimal(sample)}\n" for percentages, sample in cases
    )
    finished = subprocess.run(sys.argv[1:], input=lines, capture_output=True, text=True, check=True)
    printed = finished.stdout.splitlines()
    if len(printed) != len(cases):
        sys.exit(f"{len(cases)} samples went in, {len(printed)} lines came out")

    disagreements = 0
    for (percentages, sample), line in zip(cases, printed):
        valid, *numbers = line.split()
        got = numpy.array([float.fromhex(number) for number in numbers])
        expected = expected_of(sample, percentages)
        tolerance = RELATIVE_TOLERANCE * numpy.abs(sample).max()
        agrees = (
            valid == "1"
            and got.shape == expected.shape
            and (numpy.abs(got - expected) <= tolerance).all()
        )
        if not agrees:
            disagreements += 1
            print(f"sample {sample.tolist()}\n at {percentages.tolist()}")
            print(f" library {got.tolist()}\n numpy   {expected.tolist()}")
    print(f"{len(cases)} samples compared with numpy {numpy.__version__}, {disagreements} disagree")
    sys.exit(1 if disagreements else 0)


main()
