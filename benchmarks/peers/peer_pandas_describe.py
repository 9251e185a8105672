"""pandas: groupby and describe. Its quartiles are of definition 7, the only one that it has."""

import sys

import pandas

from peer_clock import print_time_of

strides = pandas.read_csv(sys.argv[1] + "/foot_cycles.csv").drop(
    columns=["index", "first_sample", "last_sample"]
)
feet = pandas.read_csv(sys.argv[1] + "/feet_cycles.csv")[["ds"]]


def describe():
    table = strides.groupby("foot").describe()
    both = feet.describe()
    for name in strides.columns[1:]:
        table[(name, "iqr")] = table[(name, "75%")] - table[(name, "25%")]
        table[(name, "cv")] = 100 * table[(name, "std")] / table[(name, "mean")]
    return table, both


print_time_of(describe)
