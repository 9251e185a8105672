"""numpy: one array per parameter and side, missing values left out by a mask."""

import sys

import numpy

from peer_clock import print_time_of


def read_columns(folder):
    table = numpy.genfromtxt(
        folder + "/foot_cycles.csv", delimiter=",", names=True, dtype=None, encoding="utf-8"
    )
    feet = numpy.genfromtxt(folder + "/feet_cycles.csv", delimiter=",", names=True)
    columns = []
    for foot in ("right", "left"):
        rows = table[table["foot"] == foot]
        columns += [rows[name].astype(float) for name in table.dtype.names[4:]]
        columns.append(feet["ds"])
    return columns


def describe(column):
    sample = column[~numpy.isnan(column)]
    mean = numpy.mean(sample)
    deviation = numpy.std(sample, ddof=1)
    first, third = numpy.percentile(sample, [25, 75], method="hazen")
    return {
        "n": sample.size,
        "mean": mean,
        "median": numpy.median(sample),
        "std": deviation,
        "iqr": third - first,
        "min": numpy.min(sample),
        "max": numpy.max(sample),
        "cv": 100 * deviation / mean,
    }


columns = read_columns(sys.argv[1])
print_time_of(lambda: [describe(column) for column in columns])
