"""Tables with a row for each event of a foot: strikes and lift-offs."""

from __future__ import annotations

import re
from collections.abc import Iterable
from typing import Any

import numpy as np
import pandas as pd

from ._cells import Signs, is_empty, is_one_of, text_of_cell
from ._fields import EVENT_WORDS, FOOT_WORDS, MORE_FOOT_WORDS
from ._map import FEET, TableMap
from ._places import FOUND, Faults, counted, shown
from ._sources import Source, place_of

_FOOT_WORDS = {word for foot in FEET for word in (*FOOT_WORDS[foot], *MORE_FOOT_WORDS[foot])}
_IN_WORDS = {"strike": "strike", "lift_off": "lift-off"}


def _spellings(cell: Any) -> set[str]:
    """The words of a cell, with and without those for a foot: "LHS" is "hs", too."""
    spaced = re.sub(r"(?<=[a-z])(?=[A-Z])", " ", text_of_cell(cell))
    words = re.sub(r"[\W_]+", " ", spaced).casefold().split()
    plain = " ".join(words)
    without_foot = " ".join(word for word in words if word not in {*_FOOT_WORDS, "foot"})
    return {plain, without_foot, plain[1:].strip() if plain[:1] in ("l", "r") else plain}


def known_event(cell: Any) -> str | None:
    """The event that a cell names in words that are known: "strike" or "lift_off"."""
    spellings = _spellings(cell)
    return next((kind for kind, words in EVENT_WORDS.items() if spellings & {*words}), None)


def _event_of(cell: Any, signs: Signs, map_: TableMap) -> str | None:
    for kind in EVENT_WORDS:
        words = map_.get("events", kind)
        if words is not None and is_one_of(cell, words, signs):
            return kind
    kind = known_event(cell) or ""
    # Words of the map take the place of those that are known.
    return kind if kind and map_.get("events", kind) is None else None


def events_of(source: Source, map_: TableMap, foot: str, faults: Faults) -> list[str | None]:
    """The event of each row; None in tables of strides, and where a foot's own column is empty."""
    name = map_.column_of_events(foot)
    is_own = "{foot}" in map_.get("events", "column", "")
    place = place_of(source, name, faults) if name else None
    if place is None:
        return [None] * len(source.rows)
    cells = source.cells(place)
    kinds = {text_of_cell(cell): _event_of(cell, source.signs, map_) for cell in cells}
    events = [kinds[text_of_cell(cell)] for cell in cells]
    expected = "a strike or a lift-off of a foot: say [events] strike = ..., lift_off = ...; "
    expected += f'[[skip]] column = "{name}", is = [{FOUND}] leaves other events out'
    for cell, event, line in zip(cells, events, source.lines, strict=True):
        if event is None and not (is_own and is_empty(cell)):
            faults.add_cell(source.origin, line, name, shown(text_of_cell(cell)), expected)
    return events


def has_order(frame: pd.DataFrame, sources: list[Source], faults: Faults) -> bool:
    """Whether each event has a time, which is after that of the one above of its kind."""
    frame = frame.assign(
        above=frame.groupby(["source", "breaks", "foot", "event"], sort=False)["hs"].shift(1)
    )
    for at in np.flatnonzero(frame["hs"].isna()):
        origin = sources[int(frame["source"].iloc[at])].origin
        expected = f"the time of the event; {origin.lines_in_map()} leaves rows out"
        faults.add_cell(origin, int(frame["line"].iloc[at]), None, "a missing time", expected)
    for at in np.flatnonzero(frame["hs"] <= frame["above"]):
        row = frame.iloc[at]
        what = f"a {row['foot']} {_IN_WORDS[row['event']]}"
        found = f"{what} at {row['hs']:g} s, which is not after the one above it"
        expected = "events of a foot in order of time: walk = [...] tells several walks apart; "
        expected += "sort = true puts those of one walk in order"
        origin = sources[int(row["source"])].origin
        faults.add_cell(origin, int(row["line"]), None, found, expected)
    return bool((frame["hs"] > frame["above"]).eq(frame["above"].notna()).all())


def _strikes_of(part: pd.DataFrame) -> pd.DataFrame:
    """The strikes of a foot, each with its lift-off; a new break where a strike is missing."""
    part = part.sort_values("hs", kind="stable")
    strikes = part[part["event"] == "strike"]
    off = part.loc[part["event"] == "lift_off", "hs"].to_numpy(dtype=float)
    first = np.searchsorted(off, strikes["hs"].to_numpy(dtype=float), "right")
    between = np.diff(np.append(first, len(off)))
    padded = np.append(off, np.nan)
    # After its last strike, a foot may be lifted more than once.
    is_lost = (between > 1) & (np.arange(len(between)) < len(between) - 1)
    after = np.concatenate([[0], np.cumsum(is_lost)[:-1]]) if len(strikes) else np.array([])
    breaks = [(*key, int(n)) for key, n in zip(strikes["breaks"], after, strict=True)]
    return strikes.assign(
        lift_off=np.where(between == 1, padded[first], np.nan),
        breaks=pd.Series(breaks, dtype=object, index=strikes.index),
        lost=is_lost,
    )


def contacts_of(frame: pd.DataFrame) -> tuple[pd.DataFrame, list[str]]:
    """Contacts of feet out of their events, in order of time, and what is to be said about them.

    Between two strikes of a foot there is one lift-off. Where there is none, it is missing; where
    there are more, a strike is missing, and no stride goes over it.
    """
    groups: Iterable[Any] = frame.groupby(["source", "breaks", "foot"], sort=False, dropna=False)
    parts = [_strikes_of(part) for _, part in groups]
    result = pd.concat(parts).sort_values(["source", "hs"], kind="stable").reset_index(drop=True)
    notes = []
    if result["lost"].any():
        lost = counted(int(result["lost"].sum()), "stride")
        notes.append(f"{lost} left out: several lift-offs of the foot, and so a strike is missing")
    last = result.groupby(["source", "breaks", "foot"], sort=False).cumcount(ascending=False) == 0
    without = int((result["lift_off"].isna() & ~result["lost"] & ~last).sum())
    if without and result["lift_off"].notna().any():
        notes.append(f"{counted(without, 'stride')} without a lift-off")
    return result.drop(columns=["lost"]), notes
