"""A map for a table that nobody has described yet, from its names and values."""

from __future__ import annotations

import datetime
import itertools
import json
import re
import textwrap
from collections.abc import Sequence
from dataclasses import dataclass, field, replace
from statistics import median
from typing import Any

import numpy as np
import pandas as pd
from numpy.typing import NDArray

from .._errors import InputError
from ._cells import (
    Signs,
    dates_of,
    has_open_date,
    has_several_numbers,
    is_empty,
    moment_of,
    number_of,
    signs_of,
    text_of_cell,
)
from ._doubts import STEPS_ALONE, is_end_of_next, strike_of_durations
from ._events import known_event
from ._fields import FIELD, FOOT_WORDS, MORE_FOOT_WORDS, NEVER_ZERO, SIGNED
from ._grids import Grid, all_grids, named_tables, turned
from ._guess import (
    CODES_FOR_MISSING,
    Known,
    is_count,
    is_numeric,
    is_of_samples,
    median_bounds,
    numbers_of,
    placed_by_name,
    rises,
    said_unit,
    unit_for,
)
from ._map import FEET, TableMap
from ._parts import BLANK_ROW, counts_anew, falls_in, has_blank_above, restart_of, walks_in
from ._places import Faults, counted, listed
from ._rows import OTHER
from ._sources import Source, source_of, totals_of, units_beneath
from ._units import factor_to, unit_in_name

_FOOT_NAME = re.compile(
    r"foot|feet|side|leg|limb|seite|fu(ß|ss)|bein|label|pied|\bpie\b|lado|c[oô]té|jambe|piede|lato",
    re.IGNORECASE,
)
_FOOT_WORDS = {foot: (*FOOT_WORDS[foot], *MORE_FOOT_WORDS[foot]) for foot in FEET}
_WALK_NAME = re.compile(
    r"subject|patient|participant|proband|person|trial|visit|session|walk|bout|recording|"
    r"condition|versuch|durchgang|durchlauf|\b(pass|run|lap|lauf)(\b|_)|\bid\b|wb_id",
    re.IGNORECASE,
)
_EXCLUDE_NAME = re.compile(r"turn|wende|exclu|valid|outlier|artefact|artifact|ausschluss", re.I)
# Rows of which so many come before the one above them are in no order.
_UNSORTED = 0.3
# So many rows may have no foot, such as those of means.
_FEW_ROWS = 6
# A number is no measurement where it is so many times the largest of the others.
_FAR = 3.0
# Dates as texts of a table, and what Excel makes of 1.11: "01. Nov", "Nov 11".
_DATE = re.compile(
    r"\d{1,4}[-./]\d\d?[-./]\d{1,4}\b|\d\d?[-.] ?[^\W\d_]{3}\b|[^\W\d_]{3}[- ]\d\d\b"
)
# No recording lasts so long (s): its times count from elsewhere.
_LONG_AGO = 1e6


# What belongs to a whole stride, and stands where its duration does.
_OF_STRIDES = ("gct", "slength", "speed", "cadence", "swing")


@dataclass
class _Column:
    """A line of [columns]: the table's name, keys as they are written, and a remark."""

    name: str
    keys: dict[str, str] = field(default_factory=dict)
    remark: str = ""

    def add_remark(self, text: str) -> None:
        self.remark += ("; " if self.remark else "") + text

    def __str__(self) -> str:
        text = _quoted(self.name)
        if self.keys:
            keys = ", ".join(f"{name} = {value}" for name, value in self.keys.items())
            text = f"{{column = {text}, {keys}}}"
        return text + (f"  # {self.remark}" if self.remark else "")


@dataclass
class _Suggestion:
    """What was found out about a table.

    Attributes:
        columns: each of our columns that was placed.
        remarks: what the user is to look at.
        missing: what stands for missing in each of our columns.
        places: the table's column for each of ours; of the left foot where each has its own.
        walks: the table's columns that tell walks apart.
    """

    top: dict[str, str] = field(default_factory=dict)
    table: dict[str, str] = field(default_factory=dict)
    feet: dict[str, str] = field(default_factory=dict)
    events: dict[str, str] = field(default_factory=dict)
    has_lift_offs: bool = False
    columns: dict[str, _Column] = field(default_factory=dict)
    remarks: list[str] = field(default_factory=list)
    skip: list[list[str]] = field(default_factory=list)
    used: set[int] = field(default_factory=set)
    missing: dict[str, list[Any]] = field(default_factory=dict)
    numbers: dict[str, list[float]] = field(default_factory=dict)
    places: dict[str, int] = field(default_factory=dict)
    walks: list[int] = field(default_factory=list)

    def add_remark(self, text: str) -> None:
        self.remarks += textwrap.wrap(text, 90, break_on_hyphens=False)


def _quoted(value: Any) -> str:
    return json.dumps(value, ensure_ascii=False)


# ---- The header, without any name that is known


def _is_number(cell: Any) -> bool:
    if is_empty(cell):
        return False
    signs = signs_of([cell])
    if has_several_numbers(cell):
        return True
    return signs is None or moment_of(cell, replace(signs, dates="day first")) is not None


def _is_above_numbers(grid: Grid) -> bool:
    """Whether the first row has a text of its own in each column, one of them above numbers."""
    first, *below = grid.rows
    words = {text_of_cell(cell) for cell in first if not is_empty(cell) and not _is_number(cell)}
    columns = ([row[place] for row in below] for place in range(len(first)))
    return len(words) == len(first) and any(below and all(map(_is_number, one)) for one in columns)


def _header_line(grid: Grid) -> int:
    """The line of the names; 0 where there are none."""
    widths = [sum(not is_empty(cell) for cell in row) for row in grid.rows]
    typical = median(widths)
    best, most = 0, 0
    for number, row in enumerate(grid.rows[:50]):
        filled = [cell for cell in row if not is_empty(cell)]
        if len(filled) < max(2, typical / 2) or any(map(_is_number, filled)):
            if (
                number == 0
                and len(filled) >= typical / 2
                and sum(map(_is_number, filled)) > len(filled) / 2
            ):
                return 0
            continue
        below = grid.rows[number + 1 : number + 4]
        has_numbers = any(sum(map(_is_number, later)) >= 0.3 * len(filled) for later in below)
        is_of_units = number > 0 and best == grid.lines[number - 1] and units_beneath(row)
        # A summary above the table has names, too, but fewer.
        if has_numbers and len(filled) > most and not is_of_units:
            best, most = grid.lines[number], len(filled)
    # A table of words, such as one of events, may have a single column of numbers.
    return best or (grid.lines[0] if _is_above_numbers(grid) else 0)


# ---- Columns


def _reference(source: Source, place: int) -> str:
    """How a map names a column."""
    name = source.names[place]
    return name if name and len(source.places(name)) == 1 else f"#{place + 1}"


def _column(name: str, field_name: str, unit: str, is_said: bool, remark: str) -> _Column:
    is_plain = is_said or unit == FIELD[field_name].unit
    return _Column(name, {} if is_plain else {"unit": _quoted(unit)}, remark)


# ---- Feet


def _foot_of_word(cell: Any) -> str | None:
    word = text_of_cell(cell).casefold()
    for foot in FEET:
        long = "|".join(one for one in _FOOT_WORDS[foot] if len(one) > 3)
        if word in _FOOT_WORDS[foot] or re.search(rf"\b({long})\b", word):
            return foot
    return None


def _feet_in_name(name: str, words: Sequence[str]) -> dict[str, str]:
    """The word for each foot as a name says it: "Foot (1 = left)"."""
    for code, text in re.findall(r"([^\W_]+)\s*[=:]\s*([^\W_]+)", name):
        for word, said in ((code, text), (text, code)):
            foot = _foot_of_word(said)
            if word in words and foot:
                other = next(one for one in words if one != word)
                return {foot: word, OTHER[foot]: other}
    return {}


def _words_of_feet(
    source: Source, sources: Sequence[Source], place: int
) -> tuple[dict[str, str], str] | None:
    """The word of a column for each foot, and a remark; None where it does not say the foot."""
    name = source.names[place]
    alike = [one for one in sources if one.names == source.names]
    texts = [text_of_cell(cell) for one in alike for cell in one.cells(place)]
    words = list(dict.fromkeys(filter(None, texts)))
    without = texts.count("")
    if not 1 <= len(words) <= 2 or without > min(_FEW_ROWS, len(texts) / 4):
        return None
    feet = [_foot_of_word(word) for word in words]
    if all(feet) and len(set(feet)) == len(words):
        return {foot: word for foot, word in zip(feet, words, strict=True) if foot}, ""
    if not _FOOT_NAME.search(name) or len(words) < 2:
        return None
    pairs = _feet_in_name(name, words)
    if pairs:
        return pairs, "  # by the column's name"
    pairs = dict(zip(("# left", "# right"), sorted(words), strict=True))
    return pairs, "  # or the other way round: decide, and take the first # away"


def _changes(source: Source, place: int) -> int:
    return sum(a != b for a, b in itertools.pairwise(map(text_of_cell, source.cells(place))))


def _foot_column(sources: Sequence[Source], said: _Suggestion, count: int) -> bool:
    """Finds the column that says which foot a row is of, with words for so many feet."""
    source = sources[0]
    found = {place: _words_of_feet(source, sources, place) for place in range(source.width)}
    known = {place: one for place, one in found.items() if one and len(one[0]) == count}
    if not known:
        return False
    # Words come before codes. The foot changes more often than a side of the person.
    place = min(known, key=lambda one: ("# left" in known[one][0], -_changes(source, one)))
    pairs, remark = known[place]
    said.feet["column"] = _quoted(_reference(source, place))
    without = sum(map(is_empty, source.cells(place)))
    if without:
        remark_of_rows = f"empty = true  # {counted(without, 'row')} without a foot"
        said.skip.append([f"column = {said.feet['column']}", remark_of_rows])
    is_plain = all(
        word.casefold() in FOOT_WORDS.get(foot, ()) or re.search(rf"\b{foot}\b", word.casefold())
        for foot, word in pairs.items()
    )
    if not is_plain:
        for foot, word in pairs.items():
            is_code = re.fullmatch(r"-?\d+", word)
            said.feet[foot] = (word if is_code else _quoted(word)) + remark
    if count == 1:
        (word,) = pairs.values()
        said.add_remark(
            f"feet: {said.feet['column']} is {_quoted(word)} in every row. Are all rows of that "
            "foot, or is it a side of the person? Then say [feet] first or only instead."
        )
    said.used.add(place)
    return True


def _event_column(source: Source, said: _Suggestion) -> None:
    """Finds the column that says which event a row is, and what it says of feet."""
    for place in range(source.width):
        texts = [text_of_cell(cell) for cell in source.cells(place) if not is_empty(cell)]
        kinds = {word: known_event(word) for word in dict.fromkeys(texts)}
        known = [word for word, kind in kinds.items() if kind]
        if len(kinds) > 12 or sum(text in known for text in texts) < 0.5 * len(source.rows):
            continue
        if "strike" not in kinds.values() or len(known) < 2:
            continue
        name = _reference(source, place)
        if not said.feet:
            name = _events_of_each_foot(source, place, said) or name
        said.events["column"] = _quoted(name)
        said.has_lift_offs = "lift_off" in kinds.values()
        said.used.add(place)
        others = [word for word in kinds if word not in known]
        if others:
            words = f"is = {_quoted(others)}  # other events"
            said.skip.append([f"column = {_quoted(name)}", words])
        if not said.feet:
            _feet_of_events(name, known, said)
        return


def _events_of_each_foot(source: Source, place: int, said: _Suggestion) -> str | None:
    """The name with {foot} of a column of events that the other foot has, too."""
    own = _foot_token(source.names[place])
    tokens = {at: _foot_token(name) for at, name in enumerate(source.names)}
    both = [(at, one) for at, one in tokens.items() if one and own and one[2] == own[2]]
    if own is None or {one[0] for _, one in both} != set(FEET):
        return None
    for at, (foot, word, _) in both:
        said.feet[foot] = _quoted(word)
        said.used.add(at)
    return own[2]


def _feet_of_events(name: str, words: Sequence[str], said: _Suggestion) -> None:
    """The words for each foot where an event's name says it: "LHS"."""
    letters = {"l": "left", "r": "right"}
    feet = {word: _foot_of_word(word) or letters.get(word[0].casefold()) for word in words}
    if set(feet.values()) == set(FEET):
        said.feet["column"] = _quoted(name)
        for foot in FEET:
            own = [word for word in words if feet[word] == foot]
            if not all(re.search(rf"\b{foot}\b", word, re.IGNORECASE) for word in own):
                said.feet[foot] = _quoted(own)


def _times_of_events(source: Source, said: _Suggestion) -> None:
    """The column with the times of events, which may be samples."""
    others = [p for p in range(source.width) if p not in said.used]
    rising = [p for p in others if rises(source, p) and not is_count(source, p)]
    if not {"hs", "first_sample"} & said.columns.keys() and rising:
        said.columns["hs"] = _Column(_reference(source, rising[0]), {}, "by its values: confirm")
        said.places["hs"] = rising[0]
        said.used.add(rising[0])
    counted_as_samples = said.columns.pop("first_sample", None)
    column = counted_as_samples or said.columns.get("hs")
    is_of_samples_too = "hs" in said.places and is_of_samples(source, said.places["hs"])
    if column and (counted_as_samples or is_of_samples_too):
        said.columns["hs"] = _Column(column.name, {"unit": '"samples"'})
        said.top["# sampling_rate"] = "???   # fill in: the table counts samples"


def _foot_token(name: str) -> tuple[str, str, str] | None:
    """The foot that a name says, its word, and the name with {foot} in place of it."""
    event = re.fullmatch(r"([LR])((?:HS|IC|FS|HC|TO|FC|FO)\b.*)", name, re.IGNORECASE)
    if event:
        foot = "left" if event[1].casefold() == "l" else "right"
        return foot, event[1], "{foot}" + event[2]
    for foot in FEET:
        for word in sorted(_FOOT_WORDS[foot], key=len, reverse=True):
            if word in ("g", "d"):
                # These stand for much else in names.
                continue
            # Alone, or with a capital amid others: "Swing left", "SwingLeft", "LeftSwing".
            capital = word.capitalize()
            found = re.search(rf"(?<![A-Za-z]){word}(?![a-z])", name, re.IGNORECASE) or re.search(
                rf"(?<=[a-z0-9]){capital}(?![a-z])|(?<![A-Za-z]){capital}(?=[A-Z][a-z])", name
            )
            if found:
                return foot, found[0], name[: found.start()] + "{foot}" + name[found.end() :]
    return None


def _foot_columns(source: Source, said: _Suggestion) -> dict[str, int]:
    """Names with {foot} for columns that are there for each foot, by the left one's place."""
    found: dict[str, dict[str, tuple[int, str]]] = {}
    for place, name in enumerate(source.names):
        token = _foot_token(name) if name else None
        if token:
            found.setdefault(token[2], {})[token[0]] = (place, token[1])
    both = {name: feet for name, feet in found.items() if len(feet) == 2}
    if not both:
        return _twins(source, said)
    for foot in FEET:
        said.feet[foot] = _quoted(next(iter(both.values()))[foot][1])
    return {name: feet["left"][0] for name, feet in both.items()}


def _twins(source: Source, said: _Suggestion) -> dict[str, int]:
    """Names that come again with ".1", which may be the other foot's."""
    places = {name: place for place, name in enumerate(source.names)}
    twins = {f"{name}{{foot}}": places[name] for name in places if name and f"{name}.1" in places}
    if len(twins) > 1:
        said.remarks.append("feet: columns come again with .1; are these the other foot's?")
        said.feet["# left"] = '""'
        said.feet["# right"] = '".1"   # confirm and take each first # away, or exchange the two'
    return twins if len(twins) > 1 else {}


def _feet_elsewhere(sources: Sequence[Source], said: _Suggestion) -> None:
    for by in ("sheet", "file"):
        names = [getattr(source.origin, by) for source in sources]
        tokens = [_foot_token(name) for name in names]
        if {token[0] for token in tokens if token} != set(FEET):
            # One foot alone: a letter may stand for anything, such as the r of "r_export".
            tokens = [token if token and len(token[1]) > len("re") else None for token in tokens]
        if any(tokens):
            said.feet["by"] = _quoted(by + "s")
            is_sheet_each = by == "sheet" and len(sources) == len(FEET)
            for name, token in zip(names, tokens, strict=True):
                if token:
                    said.feet[token[0]] = _quoted(name if is_sheet_each else token[1])
            return
    said.remarks.append("feet: no column says which foot. Choose one of these")
    said.feet["# first"] = '"left"   # rows alternate, and this is the first of each walk'
    said.feet["# only"] = '"left"   # all rows are of this foot'


# ---- The map


def _median_at(source: Source, place: int | None) -> float | None:
    """The median of a column, without codes for missing values."""
    numbers = [] if place is None else numbers_of(source, place)
    values = [value for value in numbers if value not in CODES_FOR_MISSING]
    return median(values) if values else None


def _known(source: Source, placed: dict[str, int]) -> Known:
    """What the columns that were placed tell of the others' units."""
    known = Known(median_bounds())
    gct, swing, stance = (
        _median_at(source, placed.get(name)) for name in ("gct", "swing", "stance")
    )
    if gct is not None:
        unit, _ = unit_for("gct", source, placed["gct"], known)
        known = replace(known, stride=gct * (factor_to(unit, "s") or 1.0))
    both = swing + stance if swing is not None and stance is not None else None
    return replace(known, shares=both)


def _place_columns(source: Source, said: _Suggestion, pairs: dict[str, int]) -> None:
    own = {place: name for name, place in pairs.items()}
    tokens = {place for place, name in enumerate(source.names) if name and _foot_token(name)}
    twins = {place for place, name in enumerate(source.names) if f"{name[:-2]}{{foot}}" in pairs}
    tokens |= twins if pairs else set()
    said.used |= twins
    # Beside a column that says which foot a row is of, a column of one foot is not that of both.
    has_other_feet = bool(pairs) or "column" in said.feet
    names = [
        (place, own.get(place, name).replace("{foot}", " "))
        for place, name in enumerate(source.names)
        if name and place not in said.used
        if place in own or not has_other_feet or place not in tokens
    ]
    placed = placed_by_name(source, names)
    known = _known(source, placed)
    for field_name in FIELD:
        if field_name not in placed:
            continue
        place = placed[field_name]
        unit, remark = unit_for(field_name, source, place, known)
        by_gaps = _unit_by_gaps(source, place, said, known.stride)
        if field_name in ("hs", "end") and not said_unit(source, place) and by_gaps:
            unit, remark = by_gaps, "" if by_gaps == "s" else "a guess by its distances: confirm"
        above = unit_in_name(source.names[place]) or source.units.get(place)
        is_said = bool(above) and above == unit
        numbers = numbers_of(source, place)
        if field_name == "gct" and len(numbers) > 3 and len(set(numbers)) == 1:
            remark = (f"{remark}; " if remark else "") + "the same in all rows: is it measured?"
        name = own.get(place) or _reference(source, place)
        said.columns[field_name] = _column(name, field_name, unit, is_said, remark)
        scale = factor_to(unit, "s") if field_name == "gct" else None
        said.numbers[field_name] = [v * (scale or 1.0) for v in numbers_of(source, place)]
        said.places[field_name] = place
        if field_name in ("hs", "end"):
            _say_from_the_first(source, place, unit, said)
        said.used.add(place)
        both = {place}
        if pairs and place in own:
            both |= {
                p for p in tokens if (t := _foot_token(source.names[p])) and t[2] == own[place]
            }
        said.used |= both
        for one in sorted(both):
            _look_for_missing(field_name, source, one, said)
    _times_by_value(source, said, known.stride)


def _unit_by_gaps(
    source: Source, place: int, said: _Suggestion, stride: float | None
) -> str | None:
    """The unit in which the distances of a foot's moments are its strides; None: they are none."""
    feet = _feet_of_rows(source, said)
    cells = [moment_of(cell, source.signs) for cell in source.cells(place)]
    moments = [
        [one.seconds for one, foot in zip(cells, feet, strict=True) if one and foot == this]
        for this in dict.fromkeys(feet)
    ]
    gaps = [b - a for values in moments for a, b in itertools.pairwise(values)]
    if stride is None or len(set(gaps)) < 3:
        return None
    for unit in ("s", "ms"):
        if abs(median(gaps) * (factor_to(unit, "s") or 1.0) / stride - 1) < 0.1:
            return unit
    return None


def _times_by_value(source: Source, said: _Suggestion, stride: float | None) -> None:
    """Finds moments of strikes by their distance, which is that of the strides."""
    if stride is None or {"hs", "end", "first_sample"} & said.columns.keys():
        return
    for place in range(source.width):
        unit = None
        if place not in said.used and is_numeric(source, place):
            unit = _unit_by_gaps(source, place, said, stride)
        if unit:
            column = _column(_reference(source, place), "hs", unit, False, "by its values")
            said.columns = {"hs": column, **said.columns}
            said.places["hs"] = place
            said.used.add(place)
            _say_from_the_first(source, place, unit, said)
            return


def _say_from_the_first(source: Source, place: int, unit: str, said: _Suggestion) -> None:
    """Says that times count from the first one, where they count from long ago."""
    cells = (moment_of(cell, source.signs) for cell in source.cells(place))
    first = next((one for one in cells if one), None)
    if first and not first.since and first.seconds * (factor_to(unit, "s") or 1.0) > _LONG_AGO:
        said.top["times"] = '"from the first"'


def _why_unread(cell: Any) -> str | None:
    """Why a cell that is no number may hold a measured value; None: it is a word for missing."""
    text = text_of_cell(cell)
    if isinstance(cell, datetime.date) or _DATE.match(text):
        return "is a date: Excel turned decimals into dates"
    if re.fullmatch(r"\W*\d+([.,]\d+)?\W*", text):
        return "has a mark beside its number"
    # Excel writes a division by zero as #DIV/0!.
    return "has a digit" if re.search(r"\d", text) and text[0] != "#" else None


def _say_unread(source: Source, place: int, said: _Suggestion) -> None:
    """Remarks values that cannot be read, and so are not to be taken for missing."""
    found = [
        (line, text_of_cell(cell), why)
        for line, cell in zip(source.lines, source.cells(place), strict=True)
        if not is_empty(cell) and number_of(cell, source.signs) is None
        if (why := _why_unread(cell))
    ]
    if not found:
        return
    line, text, why = found[0]
    cells = counted(len(found), "cell")
    remark = f"{source.name_of(place)}: {_quoted(text)} {why} ({cells}, the first one in line "
    said.add_remark(f"{remark}{line}). Not read as numbers, and not missing: correct the cells.")


def _is_code(value: float, field_name: str, numbers: Sequence[float]) -> bool:
    """Whether a number of a column stands for what was not measured."""
    if value not in CODES_FOR_MISSING or field_name in SIGNED:
        return False
    if value == 0:
        return field_name in NEVER_ZERO
    # Strides of 976 to 1040 ms may well have a 999 among them.
    largest = max((abs(one) for one in numbers if one not in CODES_FOR_MISSING), default=0.0)
    return value < 0 or value > _FAR * largest


def _look_for_missing(field_name: str, source: Source, place: int, said: _Suggestion) -> None:
    """Values and words that can only stand for what was not measured."""
    if FIELD[field_name].kind != "measured":
        return
    _say_unread(source, place, said)
    numbers = numbers_of(source, place)
    for cell in source.cells(place):
        if is_empty(cell):
            continue
        number = number_of(cell, source.signs)
        if number is None:
            is_missing = not _why_unread(cell)
        else:
            is_missing = _is_code(number[0], field_name, numbers)
        value = text_of_cell(cell) if number is None else int(number[0])
        found = said.missing.setdefault(field_name, [])
        if is_missing and value not in found:
            found.append(value)


def _say_missing(said: _Suggestion) -> None:
    """Values that stand for missing: for all columns where each has them, else for its own."""
    found = [said.missing.get(name, []) for name in said.columns]
    shared = [value for value in found[0] if all(value in one for one in found)] if found else []
    if shared:
        said.top["missing"] = _quoted(shared)
    for name, values in said.missing.items():
        if len(values) > len(shared):
            said.columns[name].keys["missing"] = _quoted(values)


def _seconds(source: Source, place: int, column: _Column, own: str) -> NDArray[np.float64]:
    """The moments or durations of a column (s), row by row."""
    said = said_unit(source, place)
    unit = json.loads(column.keys["unit"]) if "unit" in column.keys else said or own
    moments = [
        None if is_empty(cell) else moment_of(cell, source.signs) for cell in source.cells(place)
    ]
    values = [np.nan if one is None else one.seconds for one in moments]
    return np.array(values) * (factor_to(unit, "s") or np.nan)


def _say_strike_of_durations(source: Source, said: _Suggestion) -> None:
    """Says in which row the duration of a stride stands, where its strikes tell."""
    is_open = {"hs", "gct"} <= said.places.keys() and not {"end", "last_sample"} & {*said.columns}
    if not is_open or "# first" in said.feet:
        return
    hs, gct = (
        _seconds(source, said.places[name], said.columns[name], FIELD[name].unit)
        for name in ("hs", "gct")
    )
    feet = _feet_of_rows(source, said)
    walks = [tuple(text_of_cell(row[place]) for place in said.walks) for row in source.rows]
    keys = list(zip(feet, walks, strict=True))
    rows_of = {key: [at for at, one in enumerate(keys) if one == key] for key in {*keys}}
    found = strike_of_durations([(hs[rows], gct[rows]) for rows in rows_of.values()])
    if found == "previous":
        said.top["rows"] = (
            '"footfalls"  # a stride time stands with the strike that ends its stride'
        )
        for name in _OF_STRIDES:
            if name in said.columns:
                said.columns[name].keys["row"] = '"next of foot"'
                said.columns[name].add_remark(
                    "as gct: confirm" if name != "gct" else "by the distances of hs"
                )
    if found == "neither":
        said.add_remark(
            "The durations of strides (gct) fit the distance of the foot's strikes (hs) neither to "
            "the next nor to the one before: look at their units, and at what they are."
        )


def _say_walks(sources: Sequence[Source], said: _Suggestion) -> None:
    source = sources[0]
    rows = _rows_of_a_foot(source, said)
    names, merged = [], []
    for place, name in enumerate(source.names):
        texts = [text_of_cell(cell) for cell in source.cells(place)]
        is_repeated = 1 < len(set(texts)) <= len(texts) / 4
        is_free = place not in said.used and not counts_anew(source, place, rows)
        if name and is_free and _WALK_NAME.search(name) and is_repeated:
            names.append(name)
            if texts[0] and "" in texts:
                merged.append(name)
            said.walks.append(place)
            said.used.add(place)
    if merged:
        said.top["fill_down"] = _quoted(merged) + "  # their empty cells repeat the cell above"
    if names:
        said.top["walk"] = _quoted(names)
    elif len(sources) > 2 and said.feet.get("by") in ('"files"', '"sheets"'):
        said.top["walk"] = _quoted([f"{{{said.feet['by'][1:-2]}}}"])
    elif len(sources) > 1 and said.feet.get("by") not in ('"sheets"', '"files"'):
        said.top["walk"] = '["{sheet}"]' if sources[0].origin.sheet else '["{file}"]'


def _say_parts(source: Source, said: _Suggestion) -> None:
    """Walks that only a number tells apart which begins anew, or times that do."""
    if "walk" in said.top or not said.places or source.headings:
        return
    feet = _feet_of_rows(source, said)
    rows = _rows_of_a_foot(source, said)
    used = [source.name_of(place) for place in said.places.values()]
    lines = [source.lines[row] for row in rows]
    found = None
    if "hs" in said.places:
        strikes = numbers_of(source, said.places["hs"])
        own = np.array([strikes[row] for row in rows] if len(strikes) == len(feet) else [])
        if np.sum(np.diff(own) < 0) > _UNSORTED * len(own):
            found = _name_of_passes(source, rows, own, used)
            if not found and not _begins_low(own):
                said.top["sort"] = "true  # the rows are not in order of time"
                return
            found = found or restart_of(_reference(source, said.places["hs"]))
    found = found or walks_in(pd.DataFrame({"line": lines}), source, used)
    for name in ("hs", "first_sample", "end"):
        if not found and name in said.places:
            falls = falls_in(source, said.places[name], rows)
            if falls and has_blank_above(source, source.lines[falls[0]], lines):
                found = BLANK_ROW
            elif 0 < len(falls) < len(rows) / 4:
                found = restart_of(_reference(source, said.places[name]))
    if found:
        said.top["walk"] = _quoted([found]) + "  # is each part a walk?"


def _name_of_passes(
    source: Source, rows: Sequence[int], times: NDArray[np.float64], used: Sequence[str]
) -> str | None:
    """A column that changes in those rows of a foot in which its times fall."""
    falls = [row for row, step in zip(rows[1:], np.diff(times), strict=True) if step < 0]
    for place in range(source.width):
        texts = [text_of_cell(source.rows[row][place]) for row in rows]
        changes = [row for row, (a, b) in zip(rows[1:], itertools.pairwise(texts)) if a != b]
        # Where all times fall, each column that counts changes with them.
        is_rare = len(changes) < len(rows) - 1
        if changes == falls and is_rare and source.name_of(place) not in used:
            return _reference(source, place)
    return None


def _begins_low(times: NDArray[np.float64]) -> bool:
    """Whether times fall back to nearly the same start again and again."""
    begins = times[np.flatnonzero(np.diff(times) < 0) + 1]
    return bool(begins.max() < (times.min() + times.max()) / 2)


def _feet_of_rows(source: Source, said: _Suggestion) -> list[str]:
    """The word for the foot of each row; empty where no column has one."""
    if source.headings:
        return [source.headings.get(line, "") for line in source.lines]
    if "column" not in said.feet:
        return [""] * len(source.rows)
    place = source.places(json.loads(said.feet["column"]))[0]
    return [text_of_cell(cell) for cell in source.cells(place)]


def _rows_of_a_foot(source: Source, said: _Suggestion) -> list[int]:
    """The rows of the first row's foot; all where no column has one."""
    feet = _feet_of_rows(source, said)
    return [row for row, foot in enumerate(feet) if foot == feet[0]]


def _is_end_exclusive(source: Source, said: _Suggestion) -> bool:
    """Whether a stride's end is the first sample of the foot's next one."""
    if not {"first_sample", "last_sample"} <= said.places.keys():
        return False
    feet = np.array(_feet_of_rows(source, said))
    first, last = (
        np.array([_number(cell, source) for cell in source.cells(said.places[name])])
        for name in ("first_sample", "last_sample")
    )
    return any(is_end_of_next(first[feet == foot], last[feet == foot]) for foot in set(feet))


def _number(cell: Any, source: Source) -> float:
    found = None if is_empty(cell) else number_of(cell, source.signs)
    return float("nan") if found is None else found[0]


def _say_rate(source: Source, said: _Suggestion) -> None:
    if "first_sample" not in said.columns:
        if "hs" not in said.columns and "end" not in said.columns:
            said.top["# times"] = (
                '"end to end"   # no column says when strides begin: name it as hs, or say this'
            )
        return
    numbers = said.numbers
    first, last, gct = (numbers.get(name, []) for name in ("first_sample", "last_sample", "gct"))
    known = sum(gct)
    is_exclusive = _is_end_exclusive(source, said)
    if is_exclusive:
        said.columns["last_sample"].keys["add"] = "-1"
        said.columns["last_sample"].add_remark("it is the foot's next first_sample")
    if not (first and len(first) == len(last) == len(gct) and known):
        said.top["# sampling_rate"] = "???   # fill in: the table counts samples"
        return
    # Whichever way of counting leads to a rate that is nearer to a whole number.
    length = sum(last) - sum(first)
    rates = {0: (length + len(gct)) / known, -1: length / known}
    add = min(rates, key=lambda way: abs(rates[way] - round(rates[way])))
    said.top["sampling_rate"] = f"{round(rates[add])}  # by samples and durations"
    if add and not is_exclusive:
        said.columns["last_sample"].keys["add"] = "-1"
        said.columns["last_sample"].add_remark("the end is not counted")


def _say_others(source: Source, said: _Suggestion) -> list[str]:
    lines = []
    for place, name in enumerate(source.names):
        if place in said.used or not name:
            continue
        filled = [cell for cell in source.cells(place) if not is_empty(cell)]
        if not filled:
            continue
        if is_numeric(source, place):
            values = numbers_of(source, place)
            what = f"numbers, {min(values):g} to {max(values):g}"
        else:
            words = list(dict.fromkeys(text_of_cell(cell) for cell in filled))
            what = listed(_quoted(word[:20]) for word in words[:3])
            what += ", ..." if len(words) > 3 else ""
        lines.append(f"#   {_quoted(name)}: {what}")
        if all(map(has_several_numbers, filled)):
            lines.append("#     several numbers in a cell; a row for each stride is needed: split")
            lines.append(
                "#     the cells first, with pandas.Series.str.split and DataFrame.explode"
            )
        if _EXCLUDE_NAME.search(name):
            lines.append(f"#     [[exclude]] column = {_quoted(name)}, is = ..., reason = ...")
            lines.append("#     would leave strides out of the statistics")
    return lines


def _relations(source: Source) -> list[str]:
    """What columns without a known name have to do with each other."""
    columns: dict[int, Any] = {}
    for place in range(source.width):
        cells = [number_of(cell, source.signs) for cell in source.cells(place)]
        values = np.array([np.nan if cell is None else cell[0] for cell in cells])
        if np.isfinite(values).mean() > 0.8 and len(columns) < 40:
            columns[place] = values
    lines = []

    def hold(difference: Any, tolerance: float) -> bool:
        there = np.abs(difference[np.isfinite(difference)])
        return len(there) > 4 and bool(np.mean(there <= tolerance) > 0.95)

    for one, two in itertools.combinations(columns, 2):
        both = columns[one] + columns[two]
        names = f"{source.name_of(one)} + {source.name_of(two)}"
        if hold(both - 100, 1.5):
            lines.append(f"#   {names} = 100: swing and stance, in %?")
        for three, total in columns.items():
            if three not in (one, two) and np.nanmedian(total) < 10 and hold(both - total, 0.005):
                lines.append(f"#   {names} = {source.name_of(three)}: swing, stance and stride?")
    return lines


def _derivable(said: _Suggestion) -> list[str]:
    there = set(said.columns)
    if said.events:
        of_lift_offs = ["contact", "stance", "swing"] if said.has_lift_offs else []
        return ["gct", *of_lift_offs, "cadence", "step_time", *["ds"] * said.has_lift_offs]
    wanted = []
    if "gct" not in there and ({"first_sample", "last_sample"} <= there or "hs" in there):
        wanted.append("gct")
    if "contact" not in there and {"stance", "swing", "lift_off"} & there:
        wanted.append("contact")
    for name, needs in (
        ("stance", {"swing", "lift_off", "contact"}),
        ("swing", {"stance"}),
        ("cadence", {"gct"}),
        ("speed", {"slength"}),
        ("slength", {"speed"}),
    ):
        if name not in there and needs & (there | set(wanted)):
            wanted.append(name)
    return wanted


def _section(title: str, values: dict[str, str]) -> list[str]:
    if not values:
        return []
    head = ["", f"[{title}]"] if title else []
    return head + [f"{name} = {value}" for name, value in values.items()]


def _guessed_signs(source: Source) -> Signs:
    """What commas may be that stand before three digits: "700" beside "1,050" is no fraction."""
    for place in range(source.width):
        texts = [cell for cell in source.cells(place) if isinstance(cell, str)]
        has_commas = any(re.fullmatch(r"\d{1,3},\d{3}", text) for text in texts)
        if has_commas and any(re.fullmatch(r"[1-9]\d\d", text) for text in texts):
            return Signs(".", ",")
    return Signs(",")


def _words_of_headings(grid: Grid) -> dict[tuple[str, str], Any]:
    """The words for the feet that stand alone in a line, as a map has them."""
    filled = ([cell for cell in row if not is_empty(cell)] for row in grid.rows)
    alone = dict.fromkeys(text_of_cell(cells[0]) for cells in filled if len(cells) == 1)
    words = {foot: tuple(one for one in alone if _foot_of_word(one) == foot) for foot in FEET}
    is_plain = all(
        one.casefold() in FOOT_WORDS[foot] or re.search(rf"\b{foot}\b", one, re.IGNORECASE)
        for foot in FEET
        for one in words[foot]
    )
    if is_plain or not all(words.values()):
        return {}
    return {("feet", foot): found for foot, found in words.items()}


def _named_source(grid: Grid, said: _Suggestion, faults: Faults) -> Source | None:
    """A table with its names, without knowing any; what the map must say of it is noted."""
    if grid.names is None and len(grid.rows) < 15 and len(grid.rows[0]) > 2 * len(grid.rows):
        grid = turned(grid)
        said.table["turned"] = "true"
    line = 0 if grid.names else _header_line(grid)
    values: dict[tuple[str, str], Any] = {("table", "header"): line}
    at = grid.lines.index(line) if line else 0
    if at:
        names = [text_of_cell(cell) for cell in grid.rows[at] if not is_empty(cell)]
        above = [cell for cell in grid.rows[at - 1] if not is_empty(cell)]
        if len(set(names)) < len(names) and len(above) > 1:
            values = {("table", "header"): grid.lines[at - 1], ("table", "header_rows"): 2}
            said.table["header_rows"] = "2"
    values["feet", "by"] = "headings"
    values |= _words_of_headings(grid)
    source = source_of(grid, TableMap("", values, {}, {}, [], []), faults)
    if source is None or not source.rows:
        return None
    if set(source.headings.values()) == set(FEET):
        said.feet["by"] = _quoted("headings")
        words = {foot: values["feet", foot] for foot in FEET if ("feet", foot) in values}
        said.feet |= {foot: _quoted(list(found)) for foot, found in words.items()}
    found = signs_of(cell for row in source.rows for cell in row)
    dates = dates_of(cell for row in source.rows for cell in row)
    if found is None:
        found = _guessed_signs(source)
        key, other = ("thousands", "decimal") if found.thousands else ("decimal", "thousands")
        said.table[key] = f'","   # a guess; or {other} = ",": confirm'
    source.signs = replace(found, dates=dates or "day first")
    if not dates and any(has_open_date(cell) for row in source.rows[:1] for cell in row):
        said.table["# dates"] = '"day first"   # or "month first": decide'
    if line and len(set(filter(None, source.names))) < len(list(filter(None, source.names))):
        # A column that is named by its place does not lead to the header.
        said.table["header"] = str(values["table", "header"])
    return source


# What a table of strides has, and a summary has not.
_STRIDES = {"gct", "hs", "end", "first_sample", "last_sample"}


def _with_strides(found: list[tuple[Source, _Suggestion]]) -> list[tuple[Source, _Suggestion]]:
    """The sheets that hold strides, the best one first; the map says which they are."""
    if len(found) < 2 or not all(source.origin.sheet for source, _ in found):
        return found

    def fields(source: Source) -> int:
        names = [(place, name) for place, name in enumerate(source.names) if name]
        placed = placed_by_name(source, names).keys()
        return len(placed) if _STRIDES & placed and len(source.rows) > len(FEET) else 0

    best = max(found, key=lambda one: (fields(one[0]), len(one[0].rows)))[0]
    if not fields(best):
        return found
    kept = [one for one in found if one[0].names == best.names and fields(one[0])]
    sheets = [source.origin.sheet for source, _ in kept]
    others = [one.origin.sheet for one, _ in found if one.origin.sheet not in sheets]
    if others:
        said = kept[0][1]
        said.remarks.append(f"sheets that are passed over: {listed(map(_quoted, others))}")
        said.table["sheet"] = _quoted(sheets if len(sheets) > 1 else sheets[0])
    return kept


def _say_totals(source: Source, said: _Suggestion) -> None:
    """Takes rows of means out of the table, and says so."""
    found = totals_of(source)
    if not found:
        return
    lines = {line for line, _, _ in found}
    name = _reference(source, found[0][1])
    words = list(dict.fromkeys(text for _, _, text in found))
    said.skip.append([f"column = {_quoted(name)}", f"is = {_quoted(words)}"])
    kept = [number for number, line in enumerate(source.lines) if line not in lines]
    source.rows = [source.rows[number] for number in kept]
    source.lines = [source.lines[number] for number in kept]


def suggested_map(tables: Sequence[str]) -> str:
    """A map for tables, with remarks on what it could not place.

    Raises:
        WalkError: where a table cannot be read.
    """
    faults = Faults()
    bare = TableMap("", {}, {}, {}, [], [])
    found = []
    for grid in all_grids(named_tables(tables), bare, faults):
        own = _Suggestion()
        named = _named_source(grid, own, faults) if grid.rows else None
        found += [(named, own)] if named else []
    if not found and not faults:
        faults.add(InputError("tables", None, None, None, "found no row, expected a table"))
    faults.raise_any()
    found = _with_strides(found)
    sources = [source for source, _ in found]
    source, said = found[0]
    if not any(source.names):
        said.table["header"] = "0"
        said.remarks.append("the table has no names: columns are #1, #2, ... below")
        source.names = [f"#{place + 1}" for place in range(source.width)]
    _say_totals(source, said)
    pairs: dict[str, int] = {}
    has_feet = bool(said.feet) or _foot_column(sources, said, len(FEET))
    _event_column(source, said)
    if not has_feet and not said.feet:
        pairs = _foot_columns(source, said)
        # Feet of several tables may be told by their names.
        if not pairs and (len(sources) > 1 or not _foot_column(sources, said, 1)):
            _feet_elsewhere(sources, said)
    _place_columns(source, said, pairs)
    _say_walks(sources, said)
    _say_parts(source, said)
    if said.events:
        _times_of_events(source, said)
    else:
        _say_rate(source, said)
        _say_strike_of_durations(source, said)
    _say_missing(said)
    is_open = "hs" in said.columns and not {"gct", "end"} & said.columns.keys()
    if is_open and not said.events:
        said.top["rows"] = '"footfalls"  # strides go from one contact to the next of the foot'
    if "step_time" in said.columns and not _STRIDES & said.columns.keys():
        said.add_remark(STEPS_ALONE)
    derived = _derivable(said)
    if derived:
        said.top["derive"] = _quoted(derived)
    return _as_text(source, sources, said)


def _as_text(source: Source, sources: Sequence[Source], said: _Suggestion) -> str:
    names = listed(dict.fromkeys(one.origin.name for one in sources))
    lines = [f"# A map for {names}, suggested by its names and values. Look at each line."]
    lines += [f"# {remark}" for remark in said.remarks]
    lines += _section("", said.top) + _section("table", said.table)
    columns = {name: str(column) for name, column in said.columns.items()}
    if not columns:
        columns["# gct"] = '"..."   # no column was recognised: docs/import.md lists them all'
    for condition in said.skip:
        lines += ["", "[[skip]]", *condition]
    lines += _section("feet", said.feet) + _section("events", said.events)
    lines += _section("columns", columns)
    others = _say_others(source, said)
    if said.table.get("header") == "0":
        others += _relations(source)
    if others:
        lines += ["", f"# Not placed, of {counted(source.width, 'column')}:", *others]
    return "\n".join(lines) + "\n"
