"""pandas: the statistics of many walks, as one CSV table on the standard output."""

import sys
import warnings

import pandas

from pandas_statistics import STATISTICS

warnings.simplefilter("ignore")


def statistics_of(walk):
    strides = pandas.read_csv(walk + "/foot_cycles.csv")
    feet = pandas.read_csv(walk + "/feet_cycles.csv")
    exclusions = pandas.read_csv(walk + "/exclusions.csv")
    out = exclusions[exclusions["cycles"] == "feet"]["index"]
    kept = feet[~feet["index"].isin(out)]
    of_feet = []
    for foot in ("right", "left"):
        own = strides[(strides["foot"] == foot) & strides["index"].isin(kept[foot + "_index"])]
        values = own.drop(columns=["foot", "index", "first_sample", "last_sample"])
        of_feet.append(values.agg(STATISTICS).T.assign(side=foot))
    of_feet.append(kept[["ds"]].agg(STATISTICS).T.assign(side="both"))
    return pandas.concat(of_feet).assign(walk=walk)


pandas.concat(map(statistics_of, sys.argv[1:])).to_csv(sys.stdout)
