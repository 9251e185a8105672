"""What does not fit together in the strides of a walk, and which line of the map may be why."""

from __future__ import annotations

import re
from collections.abc import Sequence

import numpy as np
import pandas as pd
from numpy.typing import NDArray

from .._errors import InputError
from ._fields import FIELD
from ._guess import median_bounds
from ._map import FEET, TableMap
from ._places import Faults, Origin, counted
from ._rows import Rows

Numbers = NDArray[np.float64]

# So many strides that follow each other tell how a table counts.
_ENOUGH = 4
# Durations and the distances of strikes may differ by so much.
_TOLERANCE = 0.05
# Ends that equal the next begin in so many of the joined strides are not counted.
_NEARLY_ALL = 0.9

# Half of what times and durations to the hundredth of a second (s) are rounded by.
_HALF_HUNDREDTH = 0.005
# What is left of equal decimals after a subtraction (s).
_SAME = 1e-6
# Strides of a foot may overlap by so many samples, or so much of a stride.
_FEW_SAMPLES = 3
_OVERLAP = 0.25
_OVERLAP_IN_DOUBT = 0.5

# A stride that is so many times as long as the median has a contact that was not found in it.
_LONG = 1.8

# What is missing where a table has steps and no strides.
STEPS_ALONE = (
    "Step times alone make no strides, which go from a foot's strike to its next: add the moment "
    'of each contact and its foot to the table, with rows = "footfalls"'
)


def is_end_of_next(first: Numbers, last: Numbers) -> bool:
    """Whether the end of a foot's stride is the first sample of its next one."""
    gaps = first[1:] - last[:-1]
    joined = gaps[np.abs(gaps) <= 1]
    return len(joined) >= _ENOUGH and bool(np.mean(joined == 0) >= _NEARLY_ALL)


def _stretches(frame: pd.DataFrame) -> list[pd.DataFrame]:
    """The strides of each foot, between breaks, in order of time."""
    groups = frame.groupby(["foot", "source", "breaks"], sort=False, dropna=False)
    return [part for _, part in groups]


def check_ends(frame: pd.DataFrame, rows: Rows, map_: TableMap, faults: Faults) -> None:
    """Finds ends that do not belong to their stride; ``add`` says that they were looked at."""
    column = map_.columns.get("last_sample")
    counts = [rows.units.get(name) == "samples" for name in ("first_sample", "last_sample")]
    if column is None or column.add is not None or not all(counts):
        return
    for foot in FEET:
        part = frame[frame["foot"] == foot].sort_values("first_sample", kind="stable")
        first, last = (part[name].to_numpy(dtype=float) for name in ("first_sample", "last_sample"))
        if not is_end_of_next(first, last):
            continue
        number = int(part["source"].iloc[0])
        name = rows.columns[number, "last_sample", foot]
        text = f"found the {foot} foot's next first_sample in it, expected the last sample that "
        text += "belongs to the stride, which is one less. In the map: "
        text += f'last_sample = {{column = "{name}", add = -1}}'
        faults.add(rows.sources[number].origin.error(None, name, text))
        return


def strike_of_durations(parts: Sequence[Sequence[Numbers]]) -> str:
    """To which strike of the foot durations lead: "next", "previous" or "neither" of the two.

    Args:
        parts: the strikes and the durations (s) of a foot, row by row; falling times part walks.

    Returns:
        The strike, or an empty text where too few strides tell.
    """
    steps = [np.where(np.diff(hs) > 0, np.diff(hs), np.nan) for hs, _ in parts]
    known = [gaps[np.isfinite(gaps)] for gaps in steps]
    # Gaps that are much longer lie between two passes.
    longest = _LONG * float(np.median(np.concatenate(known))) if any(map(len, known)) else 0.0
    to_next, to_previous = [], []
    for (_, gct), every in zip(parts, steps, strict=True):
        gaps = np.where(every <= longest, every, np.nan)
        to_next.append((gct[:-1] - gaps)[1:])
        to_previous.append((gct[1:] - gaps)[:-1])
    next_, previous = (
        np.abs(np.concatenate(found)) if found else np.array([]) for found in (to_next, to_previous)
    )
    there = np.isfinite(next_) & np.isfinite(previous)
    next_, previous = next_[there], previous[there]
    if len(next_) < _ENOUGH:
        return ""
    more = int(np.sum(next_ > previous + _SAME)) - int(np.sum(previous > next_ + _SAME))
    differ = int(np.sum(np.abs(next_ - previous) > _SAME))
    # Times may be coarse: the medians differ, and by more strides than chance makes of that.
    is_clear = np.median(next_) > max(_HALF_HUNDREDTH, 2 * np.median(previous))
    if is_clear and more >= 2 * np.sqrt(differ):
        return "previous"
    usual = np.nanmedian(np.concatenate([gct for _, gct in parts]))
    if min(np.median(next_), np.median(previous)) > _TOLERANCE * usual:
        return "neither"
    return "next"


def check_strike_of_durations(
    frame: pd.DataFrame, rows: Rows, map_: TableMap, faults: Faults
) -> None:
    """Finds durations that stand in the row of the strike which ends their stride."""
    column = map_.columns.get("gct")
    is_open = not {"end", "last_sample"} & map_.columns.keys() and "hs" in map_.columns
    if column is None or column.row != "this" or not is_open or "gct" not in frame:
        return
    parts = [part.sort_values("hs", kind="stable") for part in _stretches(frame)]
    both = [[part[name].to_numpy(dtype=float) for name in ("hs", "gct")] for part in parts]
    if strike_of_durations(both) != "previous":
        return
    number, foot = int(frame["source"].iloc[0]), str(frame["foot"].iloc[0])
    name = rows.columns.get((number, "gct", foot), "...")
    text = "found the distance to the foot's strike before, expected that to its next one, since a "
    text += 'stride begins in its row. In the map: rows = "footfalls" and gct = {column = '
    text += f'"{name}", row = "next of foot"}}, and so with what else is of that stride, such as '
    text += "its length"
    faults.add(rows.sources[number].origin.error(None, name, text))


def check_overlaps(
    frame: pd.DataFrame, rows: Rows, rate: float, doubt: InputError | None, faults: Faults
) -> None:
    """Finds strides that begin before the foot's stride before them has ended.

    Where durations are in doubt, only half of a stride is too much, and the doubt is said as well.
    """
    share = _OVERLAP if doubt is None else _OVERLAP_IN_DOUBT
    for part in _stretches(frame):
        part = part.sort_values("first_sample", kind="stable")
        first, last = (part[name].to_numpy(dtype=float) for name in ("first_sample", "last_sample"))
        allowed = max(_FEW_SAMPLES, share * float(np.median(last - first + 1)))
        overlaps = np.flatnonzero(last[:-1] + 1 - first[1:] > allowed) + 1
        if doubt is not None and 2 * len(overlaps) >= len(part):
            # The doubt, such as one about the unit, says what is wrong with all of them.
            continue
        for at in overlaps:
            above, row = part.iloc[at - 1], part.iloc[at]
            origin: Origin = rows.sources[int(row["source"])].origin
            if (first[at], last[at]) == (first[at - 1], last[at - 1]):
                found = f"the same stride as in {origin.rows_in_words([int(above['line'])])}"
                expected = f"it once: {origin.lines_in_map()} leaves it out here"
            else:
                found = f"a {row['foot']} stride from {first[at] / rate:g} s, before the foot's "
                found += f"one from {first[at - 1] / rate:g} s has ended"
                expected = "the strides of a foot one after the other: is the foot of a row wrong, "
                expected += (
                    f"or a duration? Correct the cells; {origin.lines_in_map()} leaves rows "
                )
                expected += "out; where these are several walks, walk = [...] parts them"
            faults.add_cell(origin, int(row["line"]), None, found, expected)
            if doubt is not None:
                faults.add(doubt)


def _reason(ratio: float, length: str, rows: Rows, rate: float) -> str:
    """What may be wrong where durations are so many times the distance of strikes."""

    def is_about(value: float) -> bool:
        return abs(ratio / value - 1) <= _TOLERANCE

    if length != "gct" and 0.5 < ratio < 0.8:
        unit = ', unit = "samples"' if length == "last_sample" else ""
        return (
            "does it end the contact, and not the stride? In the map: lift_off = {column = ..."
            f'{unit}}} in place of {length}, with rows = "footfalls" and hs'
        )
    is_in_samples = "samples" in (rows.units.get("first_sample"), rows.units.get("hs"))
    if is_in_samples and rows.units.get("gct") == "s":
        if is_about(rate / 1000):
            return (
                "do strides begin in milliseconds, not in samples? In the map: hs = {column = "
                '..., unit = "ms"} in place of first_sample'
            )
        return (
            f"is the sampling rate {rate / ratio:.4g} Hz? Or do strides begin in another unit than "
            "samples?"
        )
    if 0.4 < ratio < 0.6:
        return (
            "are they step times, from one foot's strike to the other's? In the map: no gct, but "
            'rows = "footfalls" and derive = ["gct"], which take stride times from the strikes'
        )
    if 1.8 < ratio < 2.2:
        return "are strikes of both feet taken for strides of one? Look at [feet]"
    for unit, factor in (("ms", 1000.0), ("min", 1 / 60)):
        if is_about(factor):
            return f'are they in {unit}? In the map: gct = {{column = ..., unit = "{unit}"}}'
        if is_about(1 / factor):
            return f'are the strikes in {unit}? In the map: hs = {{column = ..., unit = "{unit}"}}'
    return "is one of them in another unit, or not what the map says?"


def _durations(frame: pd.DataFrame, length: str, rate: float) -> Numbers:
    """The durations of strides (s) by the column that says them."""
    if length == "gct":
        return frame["gct"].to_numpy(dtype=float)
    samples = frame["last_sample"] - frame["first_sample"] + 1
    return samples.to_numpy(dtype=float) / rate


def doubt_of_durations(
    frame: pd.DataFrame, rows: Rows, map_: TableMap, rate: float
) -> InputError | None:
    """A warning where durations are not the distances between the strikes of a foot."""
    begins = [name for name in ("hs", "first_sample") if name in map_.columns]
    lengths = [name for name in ("last_sample", "gct", "end") if name in map_.columns]
    if not begins or not lengths or map_.get("", "times") == "end to end":
        return None
    length = lengths[0]
    found = []
    for part in _stretches(frame):
        part = part.sort_values("first_sample", kind="stable")
        distance = np.diff(part["first_sample"].to_numpy(dtype=float)) / rate
        gct = _durations(part, length, rate)[:-1]
        there = np.isfinite(gct) & (distance > 0) & (gct > 0)
        found.append(gct[there] / distance[there])
    ratios = np.concatenate(found) if found else np.array([])
    if len(ratios) < _ENOUGH or abs(np.median(ratios) - 1) <= _TOLERANCE:
        return None
    ratio = float(np.median(ratios))
    number, foot = int(frame["source"].iloc[0]), str(frame["foot"].iloc[0])
    origin: Origin = rows.sources[number].origin
    name = rows.columns.get((number, length, foot))
    begin = rows.columns.get((number, begins[0], foot), begins[0])
    text = f"durations do not fit the begins of strides: found {ratio:.3g} times the distance to "
    text += f"the foot's next one ({begin}), expected the same (median of {len(ratios)} strides): "
    return origin.error(None, name, text + _reason(ratio, length, rows, rate))


def doubts_of_step_times(frame: pd.DataFrame, rows: Rows) -> list[InputError]:
    """A warning where a column of steps is taken for strides, and no time tells."""
    for number, foot in dict.fromkeys(zip(frame["source"], frame["foot"], strict=True)):
        name = rows.columns.get((int(number), "gct", foot), "")
        words = " ".join(re.sub(r"[\W_]+", " ", name).casefold().split())
        if any(re.search(rf"\b{word}", words) for word in FIELD["step_time"].words):
            text = (
                f"found a name of step times for gct, expected durations of strides. {STEPS_ALONE}"
            )
            return [rows.sources[int(number)].origin.error(None, name, text)]
    return []


def doubt_of_coarse_times(frame: pd.DataFrame, rows: Rows, rate: float) -> InputError | None:
    """A warning where the strikes are known to the second alone."""
    if rows.units.get("hs") != "s" or len(frame) <= _ENOUGH:
        return None
    hs = frame["hs"].to_numpy(dtype=float)
    strides = frame["last_sample"] - frame["first_sample"] + 1
    # Strides as long as these tell that the unit is another, which the data checks say.
    is_of_seconds = float(np.median(strides)) <= rate * median_bounds()["gct"][1]
    if (hs % 1.0 != 0).any() or not is_of_seconds:
        return None
    number, foot = int(frame["source"].iloc[0]), str(frame["foot"].iloc[0])
    text = (
        "found times in whole seconds alone, expected hundredths: what is made of their distances"
    )
    text += ", such as durations and cadence, is as coarse as they are"
    name = rows.columns.get((number, "hs", foot))
    return rows.sources[number].origin.error(None, name, text)


def doubt_of_long_strides(frame: pd.DataFrame, rows: Rows) -> InputError | None:
    """A warning where contacts of a foot are too far apart for one stride."""
    hs, end = (frame[name].to_numpy(dtype=float) for name in ("hs", "end"))
    if not len(frame):
        return None
    usual = float(np.median(end - hs))
    long = np.flatnonzero(end - hs > _LONG * usual)
    if not len(long):
        return None
    at = int(long[0])
    origin: Origin = rows.sources[int(frame["source"].iloc[at])].origin
    text = f"found a stride from {hs[at]:.4g} to {end[at]:.4g} s, expected about {usual:.3g} s, "
    text += f"the median ({counted(len(long), 'stride')} of {len(frame)}): is a contact missing, "
    text += "or is there a pause? In the map: [[exclude]] times = "
    text += f"[[{hs[at]:.4g}, {end[at]:.4g}]] leaves it out; breaks = [...] names columns over "
    text += "whose change no stride goes"
    return origin.error(int(frame["line"].iloc[at]), None, text)
