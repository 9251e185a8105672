"""What parts a table into walks where no column names them: blank rows, and what begins anew."""

from __future__ import annotations

import bisect
import itertools
import re
from collections.abc import Sequence
from typing import Any

import pandas as pd

from ._cells import is_empty, moment_of, text_of_cell
from ._places import Faults
from ._sources import Source, place_of

BLANK_ROW = "{blank row}"
_RESTART = re.compile(r"\{restart of (.+)\}")


def is_part(name: str) -> bool:
    """Whether a name stands for parts of a table."""
    return name == BLANK_ROW or _RESTART.fullmatch(name) is not None


def restart_of(name: str) -> str:
    """How a map names the parts that a column begins anew in."""
    return f"{{restart of {name}}}"


def column_of(name: str) -> str:
    """The column that a name of ``walk`` or ``breaks`` looks at."""
    found = _RESTART.fullmatch(name)
    return found[1] if found else name


def _value(source: Source, place: int, row: int) -> float | None:
    cell = source.rows[row][place]
    found = None if is_empty(cell) else moment_of(cell, source.signs)
    return None if found is None else found.seconds


def parts_of(source: Source, name: str, groups: Sequence[Any], faults: Faults) -> list[str] | None:
    """The part that each row is in; a column begins anew for each group, such as a foot, alone."""
    if name == BLANK_ROW:
        # How many blank rows are above a row, and then the number of each such number.
        above = [bisect.bisect(source.blanks, line) for line in source.lines]
        order = {count: number for number, count in enumerate(dict.fromkeys(above), 1)}
        return [f"walk_{order[count]}" for count in above]
    found = _RESTART.fullmatch(name)
    place = place_of(source, found[1], faults) if found else None
    if place is None:
        return None
    last: dict[Any, float] = {}
    number: dict[Any, int] = {}
    result = []
    for row, group in enumerate(groups):
        value = _value(source, place, row)
        if value is not None:
            number[group] = number.get(group, 1) + (value < last.get(group, value))
            last[group] = value
        result.append(f"walk_{number.get(group, 1)}")
    return result


def counts_anew(source: Source, place: int, rows: Sequence[int]) -> bool:
    """Whether a column counts some rows, and begins at its first number again."""
    values = [_value(source, place, row) for row in rows]
    numbers = [value for value in values if value is not None]
    if len(numbers) < len(values):
        return False
    pairs = list(itertools.pairwise(numbers))
    begins = numbers[:1] + [b for a, b in pairs if b < a]
    is_count = all(b != a for a, b in pairs)
    return is_count and 1 < len(begins) <= len(numbers) / 2 and len(set(begins)) == 1


def falls_in(source: Source, place: int, rows: Sequence[int]) -> list[int]:
    """The rows in which a column falls by so much that it begins anew."""
    moments = [moment_of(source.rows[row][place], source.signs) for row in rows]
    if any(one is not None and one.since for one in moments):
        # Times of day begin anew at midnight.
        return []
    known = [(row, one.seconds) for row, one in zip(rows, moments, strict=True) if one]
    steps = [(later[0], later[1] - one[1]) for one, later in itertools.pairwise(known)]
    rises = sorted(step for _, step in steps if step > 0)
    usual = rises[len(rises) // 2] if rises else 0.0
    return [row for row, step in steps if usual and step < -3 * usual]


def has_blank_above(source: Source, line: int, lines: Sequence[int]) -> bool:
    """Whether a blank row stands between a line and the one before it of some lines."""
    before = max((one for one in lines if one < line), default=line)
    return any(before < blank < line for blank in source.blanks)


def changes_at(source: Source, line: int, lines: Sequence[int], used: Sequence[str]) -> str | None:
    """A column that says another word from a line on, and the same one before it."""
    row_of = {one: row for row, one in enumerate(source.lines)}
    for place in range(source.width):
        texts = [text_of_cell(source.rows[row_of[one]][place]) for one in lines]
        at = lines.index(line)
        before, after = set(texts[:at]), texts[at]
        changes = sum(a != b for a, b in itertools.pairwise(texts))
        is_rare = 0 < changes <= len(texts) / 4 and "" not in texts
        if source.name_of(place) not in used and is_rare and at and after not in before:
            return source.name_of(place)
    return None


def walks_in(frame: pd.DataFrame, source: Source, used: Sequence[str]) -> str | None:
    """What parts the rows of one foot into walks, as a map says it; None where nothing does.

    Args:
        frame: rows of the table, of one foot, with their "line".
        used: columns that the map names already.
    """
    row_of = {line: row for row, line in enumerate(source.lines)}
    rows = [row_of[line] for line in frame["line"] if line in row_of]
    for place in range(source.width):
        if source.name_of(place) not in used and len(rows) > 1 and counts_anew(source, place, rows):
            return restart_of(source.name_of(place))
    return None
