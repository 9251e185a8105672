"""pandas: groupby and agg, with the interquartile range of the definition that the library has."""

import sys
import warnings

import pandas

from pandas_statistics import STATISTICS
from peer_clock import print_time_of

warnings.simplefilter("ignore")

strides = pandas.read_csv(sys.argv[1] + "/foot_cycles.csv").drop(
    columns=["index", "first_sample", "last_sample"]
)
feet = pandas.read_csv(sys.argv[1] + "/feet_cycles.csv")[["ds"]]

print_time_of(lambda: (strides.groupby("foot").agg(STATISTICS), feet.agg(STATISTICS)))
