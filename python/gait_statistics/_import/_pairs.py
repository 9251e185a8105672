"""Which strides of two feet belong together, and which are left out of the statistics."""

from __future__ import annotations

from collections.abc import Sequence
from typing import Any

import numpy as np
import pandas as pd

from .._errors import InputError
from .._walk import pair_feet
from ._cells import Signs, moment_of
from ._map import FEET, TableMap
from ._places import Faults, counted, listed
from ._rows import Rows, excluded_by
from ._sources import OF_ROWS
from ._strides import Strides

_DAY = 86400.0

Exclusion = tuple[str, str, int, str]

# The keys of [[exclude]] by what they look at: cells, times, and the ends of the walk.
_GROUPS = (("table", "column", "lines"), ("times",), ("first", "last"))


def _by_row_or_order(frame: pd.DataFrame, columns: list[str]) -> pd.DataFrame:
    """The left stride of each right one's row, or of the same number."""
    left = frame[frame["foot"] == "left"].set_index(columns, drop=False)["index"]
    right = frame[frame["foot"] == "right"]
    keys = list(zip(*(right[column] for column in columns), strict=True))
    return pd.DataFrame(
        {
            "gct": right["gct"].to_numpy() if "gct" in right else np.nan,
            "right_index": right["index"].to_numpy(),
            "left_index": [left.get(key if len(columns) > 1 else key[0]) for key in keys],
        }
    )


def _by_time(frame: pd.DataFrame, strides: Strides) -> pd.DataFrame:
    columns = ["foot", "first_sample", "last_sample", *(["gct"] if "gct" in frame else [])]
    pairs: pd.DataFrame = pair_feet(frame[columns])
    begin = {foot: frame.loc[frame["foot"] == foot, "first_sample"].to_numpy() for foot in FEET}
    end = frame.loc[frame["foot"] == "right", "last_sample"].to_numpy()
    left = np.sort(begin["left"])
    within = np.searchsorted(left, end, "right") - np.searchsorted(left, begin["right"], "left")
    if (within > 1).any():
        strides.notes.append(
            f"{counted(int((within > 1).sum()), 'right stride')} with two left ones within: paired "
            "with the first"
        )
    return pairs[["gct", "right_index", "left_index"]].astype(float)


def pairs_of(strides: Strides, map_: TableMap, faults: Faults) -> pd.DataFrame | None:
    """The cycles of both feet, one for each right stride; None where one foot is there alone."""
    frame = strides.frame
    by = map_.get("", "pairs", "time")
    if frame["foot"].nunique() < 2 or by == "none":
        return None
    if by == "rows":
        pairs = _by_row_or_order(frame, ["source", "place"])
        strides.derived.append("pairs: the left and the right stride of one row")
    elif by == "order":
        pairs = _by_row_or_order(frame, ["index"])
        strides.derived.append("pairs: the left and the right stride of one number")
    elif map_.get("", "times") == "end to end":
        text = "pairs: found none, expected a word on which strides belong together, since there "
        text += 'are no times: "rows", "order", or "none" to analyse feet alone'
        faults.add(map_.error("", "pairs", text))
        return None
    else:
        pairs = _by_time(frame, strides)
        strides.derived.append("pairs: each right stride and the first left one that begins in it")
    right = frame[frame["foot"] == "right"]
    pairs["ds"] = right["ds"].to_numpy() if "ds" in right else np.nan
    is_lonely = pairs["left_index"].isna()
    # Without a left stride the two phases are not both known.
    pairs.loc[is_lonely, "ds"] = np.nan
    if is_lonely.any():
        strides.notes.append(f"{counted(int(is_lonely.sum()), 'right stride')} without a left one")
    return pairs


def _in_walk(moment: Any, strides: Strides) -> float:
    """A moment of [[exclude]] times in seconds of the walk.

    Numbers are seconds as the table counts them; where it has times of day or dates, they count
    from the first strike, as the walk does.
    """
    if isinstance(moment, (int, float)):
        return moment - (0.0 if strides.since else strides.zero)
    found = moment_of(moment, Signs(dates="day first"))
    assert found is not None
    after = found.seconds - strides.zero
    if found.since == "clock":
        # The time of day that is nearest to the begin of the walk, on whichever day.
        return (after + _DAY / 2) % _DAY - _DAY / 2
    return after


def doubts_of_exclusions(
    walks: Sequence[Strides], rows: Rows, map_: TableMap, faults: Faults
) -> list[InputError]:
    """Warns of [[exclude]] times that no stride of any walk touches, and of what none meets."""
    result = []
    for number, condition in enumerate(map_.exclude):
        given = [" and ".join(name for name in group if name in condition) for group in _GROUPS]
        parts = [names for names in given if names]
        if len(parts) > 1 and not any(_met(condition, one, rows, faults).any() for one in walks):
            text = f"found no stride that meets all of it: {listed(parts)}. To leave out what meets"
            text += " one of them, give each an [[exclude]] of its own"
            result.append(map_.doubt_of_condition("exclude", number, text))
        for span in condition.get("times", ()):
            if any(_touching(span, strides).any() for strides in walks):
                continue
            text = f"times: no stride touches {span[0]} to {span[1]}"
            text += " s" if isinstance(span[0], (int, float)) else ""
            text += f"; the walk goes {_span_of(walks[0])}" if len(walks) == 1 else " in any walk"
            result.append(map_.doubt_of_condition("exclude", number, text))
    return result


def _span_of(strides: Strides) -> str:
    """When a walk begins and ends, in the table's own times."""
    begin = strides.frame["first_sample"].min() / strides.rate
    end = (strides.frame["last_sample"].max() + 1) / strides.rate
    if strides.since:
        text = f"from {begin:.6g} to {end:.6g} s, counted from its first strike; the table's own "
        return text + 'times are texts: times = [["10:00:12", "10:00:15.5"]]'
    return f"from {begin + strides.zero:.10g} to {end + strides.zero:.10g} s"


def _touching(span: Any, strides: Strides) -> Any:
    frame = strides.frame
    begin = frame["first_sample"].to_numpy(dtype=float) / strides.rate
    end = (frame["last_sample"].to_numpy(dtype=float) + 1) / strides.rate
    start, stop = (_in_walk(moment, strides) for moment in span)
    return (begin < stop) & (end > start)


def _met(condition: dict[str, Any], strides: Strides, rows: Rows, faults: Faults) -> Any:
    """Which strides meet all that a condition of [[exclude]] says."""
    frame = strides.frame
    result = np.ones(len(frame), dtype=bool)
    if OF_ROWS & condition.keys():
        named = excluded_by(condition, rows, faults)
        result &= [place in named for place in zip(frame["source"], frame["line"], strict=True)]
    if "times" in condition:
        touching = [_touching(span, strides) for span in condition["times"]]
        result &= np.any(touching, axis=0)
    if {"first", "last"} & condition.keys():
        count = frame.groupby("foot")["index"].transform("size").to_numpy()
        index = frame["index"].to_numpy()
        is_first = index < condition.get("first", 0)
        # No stride is at both ends of a walk: the two together mean either end.
        result &= is_first | (index >= count - condition.get("last", 0))
    return result


def exclusions_of(
    strides: Strides, pairs: pd.DataFrame | None, rows: Rows, map_: TableMap, faults: Faults
) -> list[Exclusion]:
    """Rows of ``exclusions.csv``: for each foot, and for the cycles of both that a stride is in."""
    frame = strides.frame
    result: list[Exclusion] = []
    for condition in map_.exclude:
        met = _met(condition, strides, rows, faults)
        list_ = condition.get("list", "excluded_1")
        reason = condition.get("reason", condition.get("column", ""))
        found = {
            foot: frame.loc[met & (frame["foot"] == foot).to_numpy(), "index"].tolist()
            for foot in FEET
        }
        if pairs is not None:
            is_in = pairs["right_index"].isin(found["right"]) | pairs["left_index"].isin(
                found["left"]
            )
            result += [("feet", list_, int(index), reason) for index in np.flatnonzero(is_in)]
        for foot in FEET:
            result += [(foot, list_, int(index), reason) for index in found[foot]]
    # A stride that two conditions name stands in a list once, with the first reason.
    once: dict[tuple[str, str, int], Exclusion] = {}
    for row in result:
        once.setdefault(row[:3], row)
    return list(once.values())
