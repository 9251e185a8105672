"""The statistics that the pandas peers compute of each column."""

import numpy


def iqr(values):
    """By the definition of percentiles that the library has."""
    first, third = numpy.percentile(values.dropna(), [25, 75], method="hazen")
    return third - first


def cv(values):
    return 100 * values.std() / values.mean()


STATISTICS = ["count", "mean", "median", "std", iqr, "min", "max", cv]
