"""The rows of a walk as strides: samples, what needs other columns, and what is derived by name."""

from __future__ import annotations

from collections.abc import Callable, Sequence
from dataclasses import dataclass, field
from itertools import groupby

import numpy as np
import pandas as pd
from numpy.typing import NDArray

from .._errors import InputError
from ._doubts import (
    STEPS_ALONE,
    check_ends,
    check_overlaps,
    check_strike_of_durations,
    doubt_of_coarse_times,
    doubt_of_durations,
    doubt_of_long_strides,
    doubts_of_step_times,
)
from ._events import contacts_of, has_order
from ._fields import CONVERSIONS, DERIVATION, DERIVATIONS, FIELD
from ._map import FEET, TableMap
from ._parts import BLANK_ROW, changes_at, column_of, has_blank_above, is_part, restart_of, walks_in
from ._places import Faults, Origin, counted, listed, shown
from ._rows import OTHER, Rows

Numbers = NDArray[np.float64]

# The library has 100 Hz where only times are known: 10 ms are finer than they tend to be.
DEFAULT_RATE = 100.0
# What the library counts samples with ends here.
_LAST_SAMPLE = 2**31 - 1
# Strides that follow each other join within this time (s), or within 1.5 samples.
_JOIN = 0.02
# Times that begin after so many seconds count from long before the recording.
_LONG_AGO = 1e6
# What a map says where times run backwards from one contact to the next.
_PASSES = (
    "; where times begin anew with each pass, breaks = [...] names the column of the pass, or "
    "walk = [...] makes walks of them; in one walk, sort = true puts rows in order of time"
)
# A stride that begins so many strides before the one above it belongs to another walk.
_FALL = 3.0


@dataclass
class Strides:
    """The strides of a walk.

    Attributes:
        frame: a row each, left before right and in order: "foot", "index", "source", "line",
            "place", and columns in the units of a walk folder.
        rate: samples per second, a whole number.
        given_rate: samples per second as the table counts them.
        zero: the moment of the table (s) that is 0 s of the walk.
        since: since when the moments of the table count: "", "clock" or "date".
        doubt_of_ends: a warning where durations do not fit the begins of strides.
        derived: what was computed, and from what.
        notes: what was left out.
        doubts: what is worth a look.
    """

    name: str
    key: tuple[str, ...]
    frame: pd.DataFrame
    rate: int = 100
    given_rate: float = DEFAULT_RATE
    zero: float = 0.0
    since: str = ""
    doubt_of_ends: InputError | None = None
    derived: list[str] = field(default_factory=list)
    notes: list[str] = field(default_factory=list)
    doubts: list[InputError] = field(default_factory=list)


def _column(frame: pd.DataFrame, name: str) -> Numbers:
    if name not in frame:
        return np.full(len(frame), np.nan)
    return frame[name].to_numpy(dtype=float)


def _origin(rows: Rows, frame: pd.DataFrame, at: int) -> tuple[Origin, int]:
    return rows.sources[int(frame["source"].iloc[at])].origin, int(frame["line"].iloc[at])


def _places_in_words(frame: pd.DataFrame, rows: Rows) -> str:
    """The tables and the lines of some rows."""
    lines: dict[Origin, list[int]] = {}
    for at in range(len(frame)):
        origin, line = _origin(rows, frame, at)
        lines.setdefault(origin, []).append(line)
    return listed(f"{one.name}, {one.rows_in_words(found)}" for one, found in lines.items())


def _alternate(frame: pd.DataFrame, first: str, rows: Rows, strides: Strides) -> pd.DataFrame:
    """Gives rows feet in turn, anew after each break; a missing duration ends what is sure."""
    has_duration = ~np.isnan(_column(frame, "gct")) | ("gct" not in frame)
    stretches = list(zip(frame["source"], frame["breaks"], strict=True))
    feet: list[str] = []
    is_sure: list[bool] = []
    without: list[int] = []
    for _, stretch in groupby(range(len(frame)), key=lambda at: stretches[at]):
        places = list(stretch)
        # The contact after one without a duration may belong to either foot. The last two of a
        # stretch have none, because no later contact closes their strides.
        unknown = [at for at in places[:-2] if not has_duration[at]]
        end = unknown[0] if unknown else places[-1]
        without += unknown[:1]
        is_sure += [at <= end for at in places]
        feet += [first if number % 2 == 0 else OTHER[first] for number in range(len(places))]
    lost = len(frame) - sum(is_sure)
    if lost:
        where = _places_in_words(frame.iloc[without], rows)
        strides.notes.append(
            f"{counted(lost, 'row')} left out: after a row without a stride time their foot is not "
            f"known ({where})"
        )
    return frame.assign(foot=feet)[is_sure].reset_index(drop=True)


def _shifted(frame: pd.DataFrame, name: str, row: str) -> Numbers:
    """A column with the values of the rows before or after."""
    values = pd.Series(_column(frame, name), index=frame.index)
    by = [frame["source"], frame["breaks"]]
    if row.endswith("of foot"):
        by.append(frame["foot"])
    step = -1 if row.startswith("next") else 1
    return values.groupby(by, sort=False).shift(step).to_numpy(dtype=float)


def _joins_neighbour(frame: pd.DataFrame, row: str, rate: int) -> NDArray[np.bool_]:
    """Whether the foot's stride before, or after, touches this one."""
    first, last = _column(frame, "first_sample"), _column(frame, "last_sample")
    other_first = _shifted(frame, "first_sample", row)
    other_last = _shifted(frame, "last_sample", row)
    gap = other_first - last - 1 if row.startswith("next") else first - other_last - 1
    result: NDArray[np.bool_] = np.abs(gap) <= max(1.5, _JOIN * rate)
    return result


def _without_empty(frame: pd.DataFrame, names: list[str]) -> pd.DataFrame:
    """Rows with a value; a table with both feet side by side has rows with one alone."""
    if not names:
        return frame
    return frame[frame[names].notna().any(axis=1)].reset_index(drop=True)


def _moments(frame: pd.DataFrame, rows: Rows, map_: TableMap, strides: Strides) -> None:
    """Puts moments into seconds of the recording."""
    names = [name for name in ("hs", "end", "lift_off") if name in frame]
    for name in names:
        if rows.units.get(name) == "samples":
            frame[name] = frame[name] / strides.given_rate
    since = {rows.frame.attrs.get("since", {}).get(name, "") for name in names}
    if names and (since - {""} or map_.get("", "times") == "from the first"):
        zero = float(np.nanmin(frame[names].to_numpy(dtype=float))) if len(frame) else 0.0
        # Since 1970, seconds are as fine as a quarter of a microsecond: the rest is noise.
        digits = 6 if abs(zero) > _LONG_AGO else 9
        for name in names:
            frame[name] = (frame[name] - zero).round(digits)
        strides.zero, strides.since = zero, max(since)
        strides.derived.append("times: counted from the first one of the walk")


def _footfalls(frame: pd.DataFrame, rows: Rows, strides: Strides) -> pd.DataFrame:
    """Strides from one contact of a foot to its next."""
    frame["end"] = _shifted(frame, "hs", "next of foot")
    is_stride = frame["end"].notna() & frame["hs"].notna()
    lost = int((~is_stride).sum())
    if lost:
        strides.notes.append(f"{counted(lost, 'contact')} left out: no stride begins there")
    if "gct" in frame:
        without = frame[is_stride & frame["gct"].isna()]
        if len(without):
            what = counted(len(without), "stride")
            where = _places_in_words(without, rows)
            strides.notes.append(f"{what} left out: without a stride time (begin: {where})")
        is_stride &= frame["gct"].notna()
    strides.derived.append("end of a stride: the next contact of the foot")
    return frame[is_stride].reset_index(drop=True)


def _end_to_end(frame: pd.DataFrame, strides: Strides) -> None:
    """Begins each stride where the foot's one before it ends."""
    end = frame.groupby("foot")["gct"].cumsum()
    frame["hs"], frame["end"] = end - frame["gct"], end
    strides.derived.append("first_sample, last_sample: durations of the foot, end to end from 0")


def _doubt_of_one_walk(frame: pd.DataFrame, rows: Rows, map_: TableMap, strides: Strides) -> None:
    """Warns where a number begins anew in a table whose times cannot tell walks apart."""
    keys = (*map_.get("", "walk", ()), *map_.get("", "breaks", ()))
    if any(map(is_part, keys)):
        return
    for _, part in frame.groupby(["source", "foot"], sort=False):
        source = rows.sources[int(part["source"].iloc[0])]
        used = {name for (one, _, _), name in rows.columns.items() if source is rows.sources[one]}
        found = walks_in(part, source, [*used, *keys])
        if found:
            text = "found a number that begins anew, expected one walk: in the map, walk = "
            text += (
                f'["{found}"] makes walks of the parts; breaks = ["{found}"] says that they are '
            )
            text += "one"
            strides.doubts.append(source.origin.error(None, column_of(found), text))
            return


def _in_samples(frame: pd.DataFrame, name: str, rows: Rows, strides: Strides) -> Numbers:
    values = _column(frame, name)
    if rows.units.get(name) == "s":
        return values * strides.rate
    return values * (strides.rate / strides.given_rate)


def _samples(frame: pd.DataFrame, rows: Rows, strides: Strides) -> None:
    """Fills first_sample and last_sample from what is known."""
    given = frame[[name for name in ("first_sample", "last_sample") if name in frame]].copy()
    hs, end, gct = (_column(frame, name) for name in ("hs", "end", "gct"))
    first = _in_samples(frame, "first_sample", rows, strides)
    last = _in_samples(frame, "last_sample", rows, strides)
    if "last_sample" in frame and rows.units.get("last_sample") == "s":
        last = last - 1
    begin = np.where(np.isnan(hs), end - gct, hs) * strides.rate
    close = np.where(np.isnan(end), begin / strides.rate + gct, end) * strides.rate - 1
    is_from_times = np.isnan(first).any() or np.isnan(last).any()
    first = np.where(np.isnan(first), begin, first)
    # Where the first sample alone is known, the duration leads to the last one.
    close = np.where(np.isnan(close), first + gct * strides.rate - 1, close)
    last = np.where(np.isnan(last), close, last)
    frame["first_sample"], frame["last_sample"] = np.rint(first), np.rint(last)
    # What is derived comes from the samples as the table counts them, before they are rounded to
    # a whole rate.
    back = strides.given_rate / strides.rate
    for name in ("first_sample", "last_sample"):
        made = frame[name].to_numpy(dtype=float) * back
        own = _column(given, name) if rows.units.get(name) == "samples" else made
        frame[f"own_{name.removesuffix('_sample')}"] = np.where(np.isnan(own), made, own)
    if is_from_times:
        strides.derived.append(f"samples: times x {strides.rate} Hz, rounded; the last one - 1")


def _set_rate(frame: pd.DataFrame, rows: Rows, map_: TableMap, strides: Strides) -> bool:
    """Sets the sampling rate; False where samples have none."""
    given = map_.get("", "sampling_rate")
    in_samples = [name for name, unit in rows.units.items() if unit == "samples"]
    if given is None and in_samples:
        return False
    strides.given_rate = float(given or DEFAULT_RATE)
    strides.rate = max(1, round(strides.given_rate))
    if given is None:
        strides.derived.append(f"sampling rate: {strides.rate} Hz, since only times are known")
    elif strides.rate != strides.given_rate:
        what = "samples and lengths" if in_samples else "samples"
        strides.derived.append(
            f"sampling rate: {given} Hz is not whole; {what} counted at {strides.rate} Hz"
        )
    return True


def _convert(frame: pd.DataFrame, rows: Rows, strides: Strides) -> None:
    """Puts shares that were given as times, and the like, into the units of a walk folder."""
    done = set()
    for rule in CONVERSIONS:
        for name in rule.fields:
            kind = FIELD[name].kind
            is_done = kind != "measured" or name == "gct"
            if is_done or name not in frame or rows.units.get(name) != rule.given:
                continue
            values = _column(frame, name)
            if rule.base == "rate":
                frame[name] = values / strides.given_rate
            elif name == "contact":
                frame[name] = values / 100 * _column(frame, "gct") * 1000
            elif rule.base == "contact":
                frame[name] = 100 * values / (_column(frame, "contact") / 1000)
            else:
                frame[name] = 100 * values / _column(frame, rule.base)
            done.add(f"{name}: {rule.words}")
    strides.derived += sorted(done)


# ---- Derived by name


def _spanning_begin(frame: pd.DataFrame) -> Numbers:
    """When the other foot's stride began that goes on at this strike (s)."""
    hs, end = _column(frame, "hs"), _end_of(frame)
    foot = frame["foot"].to_numpy()
    result = np.full(len(frame), np.nan)
    for one in FEET:
        own, other = np.flatnonzero(foot == one), np.flatnonzero(foot == OTHER[one])
        order = other[np.argsort(hs[other], kind="stable")]
        if not len(order):
            continue
        before = np.searchsorted(hs[order], hs[own]) - 1
        there = before >= 0
        stride = order[np.maximum(before, 0)]
        spans = there & (hs[stride] < hs[own]) & (hs[own] <= end[stride])
        result[own] = np.where(spans, hs[stride], np.nan)
    return result


def _end_of(frame: pd.DataFrame) -> Numbers:
    return _column(frame, "hs") + _column(frame, "gct")


def _lift_off(frame: pd.DataFrame) -> Numbers:
    known = _column(frame, "lift_off")
    from_contact = _column(frame, "hs") + _column(frame, "contact") / 1000
    return np.where(np.isnan(known), from_contact, known)


def _double_support(frame: pd.DataFrame) -> Numbers:
    """Both phases, in the rows of the right foot (%)."""
    hs, end, off = _column(frame, "hs"), _end_of(frame), _lift_off(frame)
    gct = _column(frame, "gct")
    foot = frame["foot"].to_numpy()
    result = np.full(len(frame), np.nan)
    left = np.flatnonzero(foot == "left")
    left = left[np.argsort(hs[left], kind="stable")]
    for right in np.flatnonzero(foot == "right"):
        at = int(np.searchsorted(hs[left], hs[right]))
        if not 0 < at < len(left):
            continue
        before, within = left[at - 1], left[at]
        joins = abs(end[before] - hs[within]) <= _JOIN
        in_order = hs[right] < off[before] < hs[within] < off[right] < end[right]
        if joins and in_order:
            phases = (off[before] - hs[right]) + (off[right] - hs[within])
            result[right] = 100 * phases / gct[right]
    return result


Column = Callable[[str], Numbers]

# How each is made, in the order of the ways of DERIVATIONS.
_WAYS: dict[str, tuple[Callable[[Column, Strides], Numbers], ...]] = {
    "gct": (
        lambda c, s: c("end") - c("hs"),
        lambda c, s: (c("own_last") - c("own_first") + 1) / s.given_rate,
    ),
    "hs": (lambda c, s: c("end") - c("gct"), lambda c, s: c("own_first") / s.given_rate),
    "contact": (
        lambda c, s: 1000 * (c("lift_off") - c("hs")),
        lambda c, s: 10 * c("stance") * c("gct"),
    ),
    "stance": (lambda c, s: c("contact") / (10 * c("gct")), lambda c, s: 100 - c("swing")),
    "swing": (lambda c, s: 100 - c("stance"),),
    "cadence": (lambda c, s: 120 / c("gct"),),
    "slength": (lambda c, s: c("speed") * c("gct"),),
    "speed": (lambda c, s: c("slength") / c("gct"),),
    "step_time": (lambda c, s: c("hs") - _spanning_begin(s.frame),),
    "ds": (lambda c, s: _double_support(s.frame),),
}


def _fill(name: str, words: Sequence[str], strides: Strides) -> bool:
    """Fills a column where it has no value, and says whether it did."""
    frame = strides.frame
    has_filled = False
    for how, way in zip(words, _WAYS[name], strict=True):
        known = _column(frame, name)
        with np.errstate(divide="ignore", invalid="ignore"):
            made = way(lambda column: _column(frame, column), strides)
        filled = np.isnan(known) & np.isfinite(made)
        if filled.any():
            frame[name] = np.where(filled, made, known)
            is_all = filled.all() or name == "ds"
            count = "" if is_all else f" (in {filled.sum()} of {len(frame)} strides)"
            strides.derived.append(f"{name}: {how}{count}")
            has_filled = True
    return has_filled


def _way_to(name: str, known: set[str], above: tuple[str, ...] = ()) -> list[str] | None:
    """What to derive for a column, in order; None where what is known does not lead to it."""
    if name in known:
        return []
    if name in above or name not in DERIVATION:
        return None
    ways = []
    for needs in DERIVATION[name].needs:
        parts = [_way_to(need, known, (*above, name)) for need in needs]
        steps = [step for part in parts if part is not None for step in part]
        if None not in parts:
            ways.append([*dict.fromkeys(steps), name])
    return min(ways, key=len, default=None)


def _derive(map_: TableMap, strides: Strides, faults: Faults) -> None:
    """Fills what ``derive`` names; what is filled later may fill what comes before it."""
    wanted = [one for one in DERIVATIONS if one.name in map_.get("", "derive", ())]
    while any([_fill(one.name, one.ways, strides) for one in wanted]):
        pass
    for one in wanted:
        if np.isnan(_column(strides.frame, one.name)).all() and not map_.get("", "optional"):
            text = f'derive: found "{one.name}", expected what it is made from: '
            text += "; or ".join(one.ways)
            frame = strides.frame
            known = {name for name in FIELD if not np.isnan(_column(frame, name)).all()}
            way = _way_to(one.name, known)
            missing = [name for name in way or () if name not in map_.get("", "derive")]
            if missing:
                names = listed(f'"{name}"' for name in missing)
                which = "it" if len(missing) == 1 else "them"
                text += f". The table leads to it by {names}: name {which} in derive, too"
            faults.add(map_.error("", "derive", text))


# ---- Order and what must be there


def _check_places(
    frame: pd.DataFrame, rows: Rows, map_: TableMap, strides: Strides, faults: Faults
) -> bool:
    """Whether every stride has a begin and an end."""
    first, last = _column(frame, "first_sample"), _column(frame, "last_sample")
    lost = np.flatnonzero(np.isnan(first) | np.isnan(last))
    if len(lost) == len(frame):
        text = "[columns]: found no word on when a stride begins and ends, expected hs (its strike)"
        text += " and gct or end; or first_sample and last_sample; or, where there are durations "
        text += 'alone, times = "end to end" at the top of the map'
        if "step_time" in frame and "gct" not in frame:
            text += f". {STEPS_ALONE}"
        faults.add(map_.error("columns", "", text))
        return False
    names = [name for name in ("hs", "end", "gct", "first_sample", "last_sample") if name in frame]
    for at in lost:
        origin, line = _origin(rows, frame, at)
        empty = [name for name in names if np.isnan(frame[name].iloc[at])]
        name = next((n for n in empty if n in map_.columns), empty[0] if empty else "hs")
        key = (int(frame["source"].iloc[at]), name, str(frame["foot"].iloc[at]))
        expected = f"{name} of a stride; {origin.lines_in_map()} leaves rows out that are none"
        faults.add_cell(origin, line, rows.columns.get(key), "a missing value", expected)
    before_zero = np.flatnonzero(first < 0)
    for at in before_zero:
        origin, line = _origin(rows, frame, at)
        found = f"a stride that begins at {first[at] / strides.rate:g} s"
        expected = 'times from 0: say times = "from the first"'
        faults.add_cell(origin, line, None, found, expected)
    too_late = np.flatnonzero(last > _LAST_SAMPLE)
    for at in too_late:
        origin, line = _origin(rows, frame, at)
        found = f"a stride that begins at {first[at] / strides.rate:.0f} s"
        expected = 'times from the start of the recording: say times = "from the first"'
        faults.add_cell(origin, line, None, found, expected)
    for at in np.flatnonzero(last < first):
        origin, line = _origin(rows, frame, at)
        found = f"a stride from {first[at] / strides.rate:g} to {(last[at] + 1) / strides.rate:g} s"
        is_twice = last[at] == first[at] - 1
        more = f": is it there twice? {origin.lines_in_map()} leaves it out"
        if not is_twice:
            is_footfalls = map_.get("", "rows") == "footfalls"
            more = _PASSES if is_footfalls else ""
        faults.add_cell(origin, line, None, found, f"its end after its begin{more}")
    return not len(lost) and not len(before_zero) and not len(too_late)


def _what_parts(foot: pd.DataFrame, falls: Sequence[int], rows: Rows, map_: TableMap) -> str:
    """What a map says to begin walks at some rows: columns, or what begins anew there."""
    number = int(foot["source"].iloc[falls[0]])
    source = rows.sources[number]
    lines_of_falls = [foot["line"].tolist()[at] for at in falls]
    foot = foot[foot["source"] == number]
    lines = foot["line"].tolist()
    used = [name for (one, _, _), name in rows.columns.items() if one == number]
    changed = [changes_at(source, line, lines, used) for line in lines_of_falls if line in lines]
    found = sorted({name for name in changed if name}, key=lambda name: source.places(name))
    if not found and has_blank_above(source, lines_of_falls[0], lines):
        found = [BLANK_ROW]
    if not found:
        times = ("hs", "first_sample", "end", "last_sample")
        name = next((name for name in times if name in map_.columns), "hs")
        name = rows.columns.get((number, name, foot["foot"].iloc[0]), name)
        found = [walks_in(foot, source, used) or restart_of(name)]
    return listed(shown(name) for name in dict.fromkeys([*map_.get("", "walk", ()), *found]))


def _in_order(frame: pd.DataFrame, rows: Rows, map_: TableMap, faults: Faults) -> pd.DataFrame:
    """Left before right; in order of time where the map says so."""
    is_right = frame["foot"] == "right"
    if map_.get("", "sort"):
        order = np.lexsort((_column(frame, "first_sample"), is_right))
        ordered: pd.DataFrame = frame.iloc[order].reset_index(drop=True)
        return ordered
    frame = frame.iloc[np.argsort(is_right.to_numpy(), kind="stable")].reset_index(drop=True)
    for foot in FEET:
        part = np.flatnonzero(frame["foot"] == foot)
        first = _column(frame, "first_sample")[part]
        duration = np.nanmedian(_column(frame, "last_sample")[part] - first) if len(part) else 0.0
        falls = (np.flatnonzero(np.diff(first) < -_FALL * duration) + 1).tolist()
        how = _what_parts(frame.iloc[part], falls, rows, map_) if falls else ""
        expected = f"strides in order of time: where another walk begins, walk = [{how}] parts "
        expected += "walks, or the columns that tell them apart; where times begin anew within a "
        expected += "walk, breaks; sort = true puts strides of one walk in order"
        if len(falls) > len(part) / 3:
            expected = "strides in order of time: sort = true puts them in order"
        for at in falls:
            origin, line = _origin(rows, frame, int(part[at]))
            found = f"a {foot} stride that begins before the one above it"
            faults.add_cell(origin, line, None, found, expected)
    return frame


# What says when a stride is, and so which strides join.
_EVENTS = ("hs", "end", "lift_off", "first_sample", "last_sample", "gct")


def _with_events(
    frame: pd.DataFrame, rows: Rows, map_: TableMap, strides: Strides, faults: Faults
) -> pd.DataFrame | None:
    """The strides with their samples; None where something is missing for it."""
    if not _set_rate(frame, rows, map_, strides):
        text = "sampling_rate: found none, expected samples per second, since the table counts "
        text += "samples: sampling_rate = 128 in the map, or --set sampling_rate=128"
        faults.add(map_.error("", "sampling_rate", text))
        return None
    _moments(frame, rows, map_, strides)
    is_of_events = map_.get("events", "column") is not None
    is_footfalls = is_of_events or map_.get("", "rows") == "footfalls"
    if is_footfalls and map_.get("", "sort") and "hs" in frame:
        # What a stride ends with is the contact that comes next in time, and not in the table.
        frame = frame.sort_values("hs", kind="stable").reset_index(drop=True)
    if is_of_events:
        if not has_order(frame, rows.sources, faults):
            return None
        frame, notes = contacts_of(frame)
        strides.derived.append("lift_off: the event between two strikes of a foot")
        strides.notes += notes
    for name, column in map_.columns.items():
        if column.row != "this" and name in frame and (is_footfalls or name in _EVENTS):
            frame[name] = _shifted(frame, name, column.row)
    if is_footfalls and "hs" not in frame:
        text = 'rows = "footfalls": found no hs, expected the moment of each contact as hs'
        faults.add(map_.error("", "rows", text))
        return None
    if is_footfalls:
        frame = _footfalls(frame, rows, strides)
    if rows.units.get("gct") == "samples":
        frame["gct"] = frame["gct"] / strides.given_rate
    if map_.get("", "times") == "end to end" and "gct" in frame:
        _doubt_of_one_walk(frame, rows, map_, strides)
        strides.doubts += doubts_of_step_times(frame, rows)
        _end_to_end(frame, strides)
    check_ends(frame, rows, map_, faults)
    if len(frame) and map_.get("", "times") != "end to end":
        check_strike_of_durations(frame, rows, map_, faults)
    _samples(frame, rows, strides)
    doubts = [doubt_of_durations(frame, rows, map_, strides.rate)]
    strides.doubt_of_ends = doubts[0]
    if doubts[0] is None:
        doubts.append(doubt_of_coarse_times(frame, rows, strides.rate))
    if is_footfalls and "gct" not in map_.columns:
        doubts.append(doubt_of_long_strides(frame, rows))
    strides.doubts += [doubt for doubt in doubts if doubt is not None]
    if not len(frame):
        text = f"walk {strides.name}: found no stride in it, expected at least one"
        faults.add(map_.error("", "", text))
        return None
    return frame


def _shift_values(frame: pd.DataFrame, map_: TableMap, strides: Strides) -> None:
    """Takes values from the rows that have them, where that stride joins this one."""
    if map_.get("", "rows") == "footfalls":
        return
    for name, column in map_.columns.items():
        if column.row != "this" and name in frame and name not in _EVENTS:
            moved = _shifted(frame, name, column.row)
            if column.row.endswith("of foot"):
                joins = _joins_neighbour(frame, column.row, strides.rate)
                moved = np.where(joins, moved, np.nan)
            frame[name] = moved


def strides_of(
    name: str, key: tuple[str, ...], frame: pd.DataFrame, rows: Rows, map_: TableMap, faults: Faults
) -> Strides | None:
    """The strides of a walk; None where it has a fault."""
    strides = Strides(name, key, frame)
    frame = _without_empty(frame, [column for column in FIELD if column in frame])
    if map_.feet_by == "rows":
        frame = _alternate(frame, map_.get("feet", "first"), rows, strides)
    with_events = _with_events(frame, rows, map_, strides, faults)
    if with_events is None or not _check_places(with_events, rows, map_, strides, faults):
        return None
    _shift_values(with_events, map_, strides)
    _convert(with_events, rows, strides)
    strides.frame = with_events
    _derive(map_, strides, faults)
    strides.frame = _in_order(strides.frame, rows, map_, faults)
    are_in_order = "strides_in_time_order" not in map_.without_checks
    if are_in_order and not faults:
        check_overlaps(strides.frame, rows, strides.rate, strides.doubt_of_ends, faults)
    strides.frame["index"] = strides.frame.groupby("foot", sort=False).cumcount()
    return strides
