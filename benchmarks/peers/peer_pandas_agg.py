"""pandas: groupby and agg, with the interquartile range of the definition that the library has."""

import sys
import warnings

import numpy
import pandas

from peer_clock import print_time_of

warnings.simplefilter("ignore")

strides = pandas.read_csv(sys.argv[1] + "/foot_cycles.csv").drop(
    columns=["index", "first_sample", "last_sample"]
)
feet = pandas.read_csv(sys.argv[1] + "/feet_cycles.csv")[["ds"]]


def iqr(values):
    first, third = numpy.percentile(values.dropna(), [25, 75], method="hazen")
    return third - first


def cv(values):
    return 100 * values.std() / values.mean()


statistics = ["count", "mean", "median", "std", iqr, "min", "max", cv]
print_time_of(lambda: (strides.groupby("foot").agg(statistics), feet.agg(statistics)))
