"""The rows of tables as strides in our columns and units, each with its place in the table."""

from __future__ import annotations

import re
from collections import Counter
from collections.abc import Sequence
from dataclasses import dataclass, field, replace
from typing import Any

import numpy as np
import pandas as pd

from .._errors import InputError
from ._cells import (
    Moment,
    condition_in_words,
    duration_of,
    is_empty,
    is_one_of,
    moment_of,
    over_midnight,
    text_of_cell,
    units_beside,
    why_no_number,
)
from ._events import events_of
from ._fields import FIELD, MORE_FOOT_WORDS, NEVER_ZERO, SIGNED
from ._guess import said_unit
from ._map import FEET, ColumnMap, TableMap
from ._parts import column_of, is_part, parts_of
from ._places import FOUND, Faults, listed, shown
from ._sources import OF_ROWS, Source, foot_of_cell, place_of, rows_meeting, word_of_cell
from ._units import conversion_of, expected_units, factor_to, fits, times, unit_in_name

OTHER = {"left": "right", "right": "left"}


@dataclass
class Rows:
    """Rows of tables.

    Attributes:
        frame: a row each, in the order of the tables: a column for each of the map's, in the unit
            that ``units`` has for it; "foot", "walk", "breaks"; and its place: "source", "line".
        columns: the user's column for each of ours and each foot, by source.
        units: the unit that each of our columns stands in, before what needs other columns.
        missing: the lines whose cells are filled and missing by the map, by source and column.
        notes: what was done.
        doubts: what is worth a look.
    """

    frame: pd.DataFrame
    sources: list[Source]
    columns: dict[tuple[int, str, str], str] = field(default_factory=dict)
    units: dict[str, str] = field(default_factory=dict)
    missing: dict[tuple[int, str], set[int]] = field(default_factory=dict)
    notes: list[str] = field(default_factory=list)
    doubts: list[InputError] = field(default_factory=list)


# ---- Feet and walks


def _words_to_say(words: Sequence[str]) -> str:
    """What to say about two words that are not known."""
    known = {word: foot for foot in FEET for word in MORE_FOOT_WORDS[foot]}
    feet = {known.get(word.casefold(), ""): word for word in words}
    if set(feet) == set(FEET):
        return f'say [feet] left = "{feet["left"]}", right = "{feet["right"]}"'
    left, right = sorted(words)
    return f'say [feet] left = "{left}", right = "{right}", or the other way round'


def _feet_by_column(source: Source, map_: TableMap, faults: Faults) -> list[str | None]:
    """The foot of each row, by its cell."""
    name = map_.get("feet", "column")
    if not name:
        text = '[feet] column: found none, expected the column that says which foot: column = "..."'
        faults.add(map_.error("feet", "", text))
        return [None] * len(source.rows)
    place = place_of(source, name, faults)
    if place is None:
        return [None] * len(source.rows)
    cells = [word_of_cell(cell, map_.get("feet", "pattern")) for cell in source.cells(place)]
    known = {repr(cell): cell for cell in cells}
    feet_of = {key: foot_of_cell(cell, source.signs, map_) for key, cell in known.items()}
    feet = [feet_of[repr(cell)] for cell in cells]
    others = Counter(
        text_of_cell(cell) for cell, foot in zip(cells, feet, strict=True) if foot is None
    )
    words = [word for word, _ in others.most_common(2) if word]
    used = [str(map_.words_of(foot)[0]) for foot in FEET]
    expected = f'"{used[0]}" or "{used[1]}": '
    expected += (
        _words_to_say(words)
        if len(words) == 2 and not map_.has_foot_words
        else "say [feet] left = ..., right = ..."
    )
    blank = f'a foot; [[skip]] column = "{name}", empty = true leaves such rows out'
    for cell, foot, line in zip(cells, feet, source.lines, strict=True):
        if foot is None:
            text = text_of_cell(cell)
            found = shown(text) if text else "an empty cell"
            faults.add_cell(source.origin, line, name, found, expected if text else blank)
    return feet


def _feet_by_heading(source: Source, faults: Faults) -> list[str | None]:
    """The foot of the heading above each row."""
    for line in source.lines:
        if line not in source.headings:
            expected = "a line with the word for a foot alone above it"
            faults.add_cell(source.origin, line, None, "a row without a foot", expected)
    return [source.headings.get(line) for line in source.lines]


def _foot_of_name(source: Source, map_: TableMap, faults: Faults) -> str | None:
    """The foot that a sheet or a file is for."""
    by = map_.feet_by
    name = source.origin.sheet if by == "sheets" else source.origin.file
    foot = map_.foot_in(name)
    if foot is None:
        what = "sheet" if by == "sheets" else "file"
        used = listed((shown(word) for one in FEET for word in map_.words_of(one)), " or ")
        text = f'found the {what} name "{name}", expected one that holds one of {used}: say '
        text += "[feet] left = ..., right = ..."
        faults.add(source.origin.error(None, None, text))
    return foot


def _without_foot(name: str, map_: TableMap) -> str:
    """A name without the word for the foot, so that both feet's files or sheets make one walk."""
    for foot in FEET:
        for word in sorted(map(str, map_.words_of(foot)), key=len, reverse=True):
            pattern = rf"[_\-. ]*(?<![^\W\d_]){re.escape(word)}(?![^\W\d_])"
            name = re.sub(pattern, "", name, flags=re.IGNORECASE)
    return name.strip("_-. ")


def _key_texts(
    source: Source, section: str, feet: Sequence[str | None], map_: TableMap, faults: Faults
) -> list[tuple[str, ...]]:
    """What the columns of ``walk`` or ``breaks`` say in each row.

    {file} and {sheet} are the table's own name; {blank row} and {restart of ...} count its parts.
    """
    names = map_.get("", section, ())
    columns: list[list[str]] = []
    for name in names:
        if is_part(name):
            parts = parts_of(source, name, list(zip(feet, *columns, strict=True)), faults)
            columns += [] if parts is None else [parts]
        elif name in ("{file}", "{sheet}"):
            text = source.origin.file if name == "{file}" else source.origin.sheet
            is_of_foot = map_.feet_by == f"{name[1:-1]}s"
            columns.append([_without_foot(text, map_) if is_of_foot else text] * len(source.rows))
        else:
            place = place_of(source, name, faults)
            if place is None:
                continue
            texts = [text_of_cell(cell) for cell in source.cells(place)]
            columns.append(texts)
            if section == "walk":
                expected = f'a value that tells walks apart; fill_down = ["{name}"] repeats the '
                expected += "cell above, [[skip]] leaves such rows out"
                for text, line in zip(texts, source.lines, strict=True):
                    if not text:
                        faults.add_cell(source.origin, line, name, "an empty cell", expected)
    if len(columns) < len(names) or not names:
        return [()] * len(source.rows)
    return list(zip(*columns, strict=True))


# ---- Values


def _ask_for_unit(name: str, column: ColumnMap, source: Source, place: int, faults: Faults) -> None:
    """Finds a unit at the end of a column's name that no brackets tell from a word of it."""
    word = said_unit(source, place)
    if word is None or column.factor is not None or not fits(name, word):
        return
    if factor_to(word, FIELD[name].unit) != 1.0:
        text = f'found a name that ends in "{word}", expected a word on whether that is the unit: '
        text += f'{name} = {{column = ..., unit = "{word}"}}, or unit = "{FIELD[name].unit}"'
        faults.add(source.origin.error(None, source.name_of(place), text))


def _unit_of(
    name: str, column: ColumnMap, source: Source, place: int, faults: Faults
) -> tuple[str, bool]:
    """The unit of a column, and whether more than its cells says it.

    The map's counts first, then that of the column's name, of the row beneath, and of the cells.
    """
    if column.unit is not None:
        return column.unit, True
    said = unit_in_name(source.names[place]) or source.units.get(place)
    beside = said or next(filter(None, units_beside(source.cells(place), source.signs)), None)
    if beside is None:
        _ask_for_unit(name, column, source, place, faults)
        return FIELD[name].unit, True
    if not fits(name, beside):
        expected = listed(expected_units(name), " or ")
        text = f'found the unit "{beside}", expected {expected} for {name}: say it in the map, '
        text += f'{name} = {{column = ..., unit = "..."}}'
        faults.add(source.origin.error(None, source.name_of(place), text))
    return beside, said is not None


@dataclass(frozen=True)
class _Reader:
    """Reads the cells of a column for one of ours, in one unit.

    Attributes:
        is_said: whether the map or the table's names have the unit, and not the cells alone.
    """

    name: str
    column: ColumnMap
    unit: str
    is_said: bool
    source: Source
    place: int
    faults: Faults

    def fault(self, line: int, found: str, expected: str) -> None:
        name = self.source.name_of(self.place)
        self.faults.add_cell(self.source.origin, line, name, found, expected)

    def moment(self, cell: Any, line: int) -> Moment:
        """What a cell holds; NaN where that is no number."""
        read = moment_of if FIELD[self.name].kind == "moment" else duration_of
        found = read(cell, self.source.signs)
        if found is None:
            text = text_of_cell(cell)
            expected = f"a number; if it means missing: missing = [{FOUND}], if the row is no "
            expected += f"stride: {self.source.origin.lines_in_map()}"
            self.fault(line, shown(text), why_no_number(text) or expected)
            return Moment(np.nan, "")
        if _stands_for_missing(self.name, found.seconds, self.column):
            value = f"{found.seconds:g}"
            expected = f"a measurement; if it means missing: {self.in_map(value)}; if it was "
            expected += f"measured: {self.name} = {{column = ..., missing = []}}"
            self.fault(line, value, expected)
        return found

    def in_map(self, missing: str) -> str:
        """The line of the map with a code for missing in this column: others may measure it."""
        is_one = self.column.names["left"] == self.column.names["right"]
        name = shown(self.source.name_of(self.place)) if is_one else "..."
        unit = f', unit = "{self.column.unit}"' if self.column.unit else ""
        return f"{self.name} = {{column = {name}{unit}, missing = [{missing}]}}"

    def in_unit(self, found: Moment, line: int) -> float:
        """The number in the column's unit; clocks and spans of time count seconds."""
        beside = "s" if found.since else found.unit
        factor = factor_to(beside, self.unit) if beside else 1.0
        if factor is None:
            expected = f"one that can be {self.unit}, or {self.name} = {{unit = ...}} in the map"
            self.fault(line, f'the unit "{beside}"', expected)
        return times(found.seconds, factor or 1.0)

    def has_right_unit(self, cell: Any, beside: str, line: int) -> bool:
        """Whether a cell has the column's unit beside it, or none where more than cells say it."""
        if beside and factor_to(beside, self.unit) != 1.0:
            expected = f'"{self.unit}", as '
            expected += (
                f"the column has it; if the cells are right: {self.name} = {{column = ..., unit = "
                f'"{beside}"}}'
                if self.is_said
                else "beside the first number: give all cells the same unit"
            )
        elif not beside and not self.is_said:
            expected = f'"{self.unit}" beside it, as beside others; if that is its unit: '
            expected += f'{self.name} = {{column = ..., unit = "{self.unit}"}}'
        else:
            return True
        self.fault(line, shown(cell), expected)
        return False

    def numbers(self, missing: Sequence[Any]) -> tuple[list[float], str]:
        """All of them, NaN for what is missing, and since when moments count."""
        result: list[float] = []
        since: set[str] = set()
        is_moment = FIELD[self.name].kind == "moment"
        cells = self.source.cells(self.place)
        units = units_beside(cells, self.source.signs)
        has_units = any(units)
        for cell, beside, line in zip(cells, units, self.source.lines, strict=True):
            is_plain = type(cell) is float and cell > 0 and not is_moment
            if is_plain and not missing and not has_units:
                result.append(cell)
            elif is_empty(cell) or (missing and is_one_of(cell, missing, self.source.signs)):
                result.append(np.nan)
            else:
                found = self.moment(cell, line)
                since.add(found.since)
                if has_units and not (
                    np.isnan(found.seconds) or self.has_right_unit(cell, beside, line)
                ):
                    result.append(np.nan)
                else:
                    result.append(self.in_unit(found, line))
        if len(since) > 1 and is_moment:
            text = "found numbers, times of day and dates together, expected one of them"
            name = self.source.name_of(self.place)
            self.faults.add(self.source.origin.error(None, name, text))
        return result, max(since, default="")


def _stands_for_missing(name: str, value: float, column: ColumnMap) -> bool:
    """Whether a number can only be a code for what was not measured."""
    if column.valid is not None or column.missing is not None:
        return False
    return value == -1 and name not in SIGNED or value == 0 and name in NEVER_ZERO


def _values(
    name: str, column: ColumnMap, source: Source, place: int, map_: TableMap, faults: Faults
) -> tuple[list[float], str, str]:
    """The values of a column, the unit they are in, and since when moments count."""
    said, is_said = _unit_of(name, column, source, place, faults)
    conversion = None if factor_to(said, FIELD[name].unit) else conversion_of(name, said)
    target = FIELD[name].unit if conversion is None else conversion.given
    missing = map_.get("", "missing", ()) if column.missing is None else column.missing
    reader = _Reader(name, column, said, is_said, source, place, faults)
    values, since = reader.numbers(missing)
    scale = factor_to(said, target) or 1.0
    array = np.array(over_midnight(values) if since == "clock" and scale == 1.0 else values)
    if column.factor is not None:
        array = array * column.factor
    if column.add is not None:
        array = array + column.add
    if column.valid is not None:
        with np.errstate(invalid="ignore"):
            array[(array < column.valid[0]) | (array > column.valid[1])] = np.nan
    result: list[float] = array.tolist()
    return [times(value, scale) for value in result] if scale != 1.0 else result, target, since


def _place_for(
    name: str, column: ColumnMap, foot: str, source: Source, map_: TableMap, faults: Faults
) -> int | None:
    """Where the column is; the first of several names that is there."""
    names = column.names[foot]
    there = [candidate for candidate in names if source.places(candidate)]
    if not there and (map_.get("", "optional") or not names):
        return None
    if not there and len(names) > 1:
        text = f"found none of {listed(map(shown, names))}, expected one of them for {name}"
        faults.add(source.origin.error(None, None, text))
        return None
    return place_of(source, (there or list(names))[0], faults)


def _parsed(
    number: int, source: Source, foot: str, map_: TableMap, rows: Rows, faults: Faults
) -> tuple[dict[str, list[float]], dict[str, str]]:
    """The values of one table, for the columns of one foot."""
    values: dict[str, list[float]] = {}
    since: dict[str, str] = {}
    for name, column in map_.columns.items():
        place = _place_for(name, column, foot, source, map_, faults)
        if place is None:
            continue
        values[name], unit, since[name] = _values(name, column, source, place, map_, faults)
        rows.columns[number, name, foot] = source.name_of(place)
        nothing = np.flatnonzero(np.isnan(values[name]))
        taken = {source.lines[at] for at in nothing if not is_empty(source.rows[at][place])}
        rows.missing.setdefault((number, source.name_of(place)), set()).update(taken)
        before = rows.units.setdefault(name, unit)
        if before != unit:
            text = f"found {unit} for {name}, expected {before}, as in the table before it"
            faults.add(source.origin.error(None, source.name_of(place), text))
    return values, since


def _frame_of_source(
    number: int, source: Source, map_: TableMap, rows: Rows, faults: Faults
) -> pd.DataFrame:
    count = len(source.rows)
    by = map_.feet_by
    feet: list[str | None] = [None] * count
    if by == "column":
        feet = _feet_by_column(source, map_, faults)
    elif by == "headings":
        feet = _feet_by_heading(source, faults)
    elif by in ("sheets", "files"):
        feet = [_foot_of_name(source, map_, faults)] * count
    elif by == "only":
        feet = [map_.get("feet", "only")] * count
    common = {
        "walk": _key_texts(source, "walk", feet, map_, faults),
        "breaks": _key_texts(source, "breaks", feet, map_, faults),
        "source": [number] * count,
        "line": source.lines,
        "place": list(range(count)),
    }
    has_own_events = by == "columns" and map_.column_of_events("left") != map_.column_of_events(
        "right"
    )
    if not has_own_events:
        common["event"] = events_of(source, map_, "left", faults)
    frames = []
    if by not in ("columns", "rows") and map_.has_columns_of_feet:
        # Rows of one foot each, and columns of one foot each: a row has its values in its foot's.
        for one in FEET:
            own = [at for at, foot in enumerate(feet) if foot == one]
            part = replace(
                source, rows=[source.rows[n] for n in own], lines=[source.lines[n] for n in own]
            )
            values, since = _parsed(number, part, one, map_, rows, faults) if own else ({}, {})
            frame = pd.DataFrame({**common, "foot": one}, index=range(count)).iloc[own]
            frames.append(frame.assign(**values))
            rows.frame.attrs.setdefault("since", {}).update({n: s for n, s in since.items() if s})
        return pd.concat(frames).sort_values("place", kind="stable").reset_index(drop=True)
    for foot in FEET if by == "columns" else ("",):
        names_of = foot or "left"
        values, since = _parsed(number, source, names_of, map_, rows, faults)
        frame = pd.DataFrame({**common, **values}, index=range(count))
        frame["foot"] = foot or pd.Series(feet, dtype=object, index=range(count))
        if has_own_events:
            events = pd.Series(events_of(source, map_, foot, faults), dtype=object)
            frame = frame.assign(event=events)[events.notna()]
        frame.attrs = {}
        rows.frame.attrs.setdefault("since", {}).update({n: s for n, s in since.items() if s})
        frames.append(frame)
        if not foot:
            for name in values:
                rows.columns[number, name, "right"] = rows.columns[number, name, "left"]
    return pd.concat(frames, ignore_index=True)


def _not_read(rows: Rows, map_: TableMap) -> None:
    """Notes which columns no part of the map names."""
    special = {map_.get("feet", "column"), *map(map_.column_of_events, FEET)}
    special |= {column_of(name) for key in ("walk", "breaks") for name in map_.get("", key, ())}
    special |= {condition.get("column") for condition in (*map_.skip, *map_.exclude)}
    seen = set()
    for number, source in enumerate(rows.sources):
        used = {name for (n, _, _), name in rows.columns.items() if n == number}
        places = {place for name in special if name for place in source.places(name)}
        others = tuple(
            source.name_of(place)
            for place in range(source.width)
            if source.name_of(place) not in used
            and place not in places
            and not all(is_empty(row[place]) for row in source.rows)
        )
        if others and others not in seen:
            seen.add(others)
            more = f", and {len(others) - 12} more" if len(others) > 12 else ""
            rows.notes.append(
                f"{source.origin.name}: columns that the map does not name: "
                f"{listed(others[:12])}{more}"
            )


def _note_missing(rows: Rows) -> None:
    """Notes how many cells ``missing`` and ``valid`` took away, and from which columns."""
    taken: Counter[str] = Counter()
    there: Counter[str] = Counter()
    for (number, name), lines in rows.missing.items():
        taken[name] += len(lines)
        there[name] += len(rows.sources[number].rows)
    columns = [f"{name} ({count} of {there[name]})" for name, count in taken.items() if count]
    if columns:
        count = taken.total()
        text = "cell is" if count == 1 else "cells are"
        rows.notes.append(f"{count} {text} missing by the map: {listed(columns)}")


def _check_feet(map_: TableMap, sources: Sequence[Source], faults: Faults) -> None:
    by = map_.feet_by
    text = ""
    if not by:
        text = "found no word on feet, expected a section [feet] with column = ..., by = "
        text += '"columns", "sheets", "files" or "headings" (lines with the foot\'s word alone), '
        text += "first = ... for alternating rows, or only = ..."
    elif by == "rows" and not map_.get("feet", "first"):
        text = 'first: found none, expected the foot of each walk\'s first row: first = "left" or '
        text += '"right" (--set feet.first=left)'
    elif by == "rows" and map_.has_columns_of_feet:
        text = "by: found rows that alternate, and columns for each foot: expected one of them"
    elif by == "columns" and not map_.has_columns_of_feet:
        text = "by: found no column with {foot} in its name, expected one, such as gct = "
        text += '"{foot} stride time", or gct = {left = ..., right = ...}'
    if text:
        faults.add(map_.error("feet", "", f"[feet] {text}"))
    if len(sources) > 1 and all(is_part(name) for name in map_.get("", "walk", ())):
        words = {str(word).casefold() for foot in FEET for word in map_.words_of(foot)}
        is_said = by == "sheets" and words >= {one.origin.sheet.casefold() for one in sources}
        is_one = is_said or (by in ("sheets", "files") and len(sources) == 2)
        if not is_one:
            text = f"walk: found {len(sources)} tables, expected a word on which walk each is: "
            each = "{sheet}" if sources[0].origin.sheet else "{file}"
            text += f'walk = ["{each}"] for a walk each, or the columns that tell walks apart'
            faults.add(map_.error("", "walk", text))


def _check_names_of_walks(rows: Rows, map_: TableMap, faults: Faults) -> None:
    """Finds walks that are one because files in several folders have the same name."""
    if "{file}" not in map_.get("", "walk", ()) or rows.frame.empty:
        return
    parts = rows.frame[["walk", "source"]].drop_duplicates()
    origins = [rows.sources[number].origin for number in parts["source"]]
    keys = list(zip(parts["walk"], [(one.file, one.sheet) for one in origins], strict=True))
    twice = next((one for one, key in zip(origins, keys, strict=True) if keys.count(key) > 1), None)
    if twice is not None:
        text = f'walk: found "{twice.file}" as the name of several files, expected another for each'
        text += ' walk: rename them, or name columns that tell walks apart, walk = ["{file}", ...]'
        faults.add(map_.error("", "walk", text))


def read_rows(sources: list[Source], map_: TableMap, faults: Faults) -> Rows:
    """The rows of all tables."""
    _check_feet(map_, sources, faults)
    rows = Rows(pd.DataFrame(), sources)
    frames = [
        _frame_of_source(number, source, map_, rows, faults)
        for number, source in enumerate(sources)
        if source.rows
    ]
    since = rows.frame.attrs.get("since", {})
    if frames:
        rows.frame = pd.concat(frames, ignore_index=True)
        rows.frame.attrs = {"since": since}
    _check_names_of_walks(rows, map_, faults)
    _note_missing(rows)
    _not_read(rows, map_)
    for number, condition in enumerate(map_.exclude):
        is_of_rows = bool(OF_ROWS & condition.keys())
        if is_of_rows and not faults and not excluded_by(condition, rows, faults):
            said = map_.doubt_of_condition("exclude", number, condition_in_words(condition))
            rows.doubts.append(said)
    return rows


def excluded_by(condition: dict[str, Any], rows: Rows, faults: Faults) -> set[tuple[int, int]]:
    """The rows (source, line) that a condition of [[exclude]] names by a table, cell or line."""
    return {
        (number, source.lines[row])
        for number, source in enumerate(rows.sources)
        for row in rows_meeting(condition, source, faults)
    }
