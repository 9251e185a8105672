"""Tables with the names of their columns, each cell with its place."""

from __future__ import annotations

import re
from collections.abc import Sequence
from dataclasses import dataclass, field, replace
from functools import cached_property
from itertools import groupby
from typing import Any

import numpy as np
from numpy.typing import NDArray

from .._errors import InputError
from ._cells import (
    Signs,
    condition_in_words,
    dates_of,
    has_decimal_point,
    is_empty,
    is_one_of,
    meets,
    number_of,
    open_points,
    signs_of,
    text_of_cell,
)
from ._grids import Grid, all_grids, plain
from ._map import FEET, TableMap
from ._places import Faults, Origin, counted, listed, nearest, shown
from ._units import unit_of

# What a condition of [[skip]] or [[exclude]] says of rows.
OF_ROWS = {"table", "column", "lines"}
# What a header may stand below, in rows.
_PREAMBLE = 200
# Words of rows that sum a table up, in the first cells of a row.
_TOTAL = (
    r"(mean|average|avg|mittel|mittelwert|durchschnitt|mw|ø|⌀|x̄|moyenne|media|promedio|"
    r"sd|stdev|std|std\.? ?(dev|abw)\.?|standard ?(deviation|error|abweichung|abw\.?)|"
    r"stabw|stdabw|sem|cv|%cv|cv ?%|vk|variationskoeffizient|"
    r"[eé]cart[- ]?type|desviaci[oó]n( est[aá]ndar)?|median|m[eé]diane?|mediana|min|max|minimum|"
    r"maximum|totals?|sum|summe|gesamt|count|anzahl|n)"
)
_OF_FOOT = r"(left|right|links|rechts|gauche|droite|l|r|both|all|alle)"
_TOTALS = re.compile(
    rf"({_OF_FOOT}[ _]+)?{_TOTAL}(\s*(±|\+/-|\+-|/|\()\s*{_TOTAL}\)?)?([ _]+{_OF_FOOT})?\.?:?",
    re.IGNORECASE,
)
# The last rows of a table that are looked at for means, and how likely it may be by chance that
# a stride has the mean's values.
_LAST_ROWS = 6
_BY_CHANCE = 1e-4
# The same for the last rows of both feet, which are looked at once.
_BOTH_BY_CHANCE = 1e-3
# Means of tables with more rows than these are not looked for without a word: it takes too long.
_MANY_ROWS = 3_000

# A number and how many decimals it has.
_Printed = tuple[float, int] | None


@dataclass
class Source:
    """A table: names, and rows of cells, each with its line or row.

    Attributes:
        names: the columns' names; empty ones have none.
        units: the units of a row beneath the names, by column.
        headings: the foot of each line, where a line above it names one.
        blanks: the lines that hold nothing.
        uneven: how many cells each line of a text has that has more or fewer than the names.
        separator: what separates the cells of a text.
    """

    origin: Origin
    names: list[str]
    units: dict[int, str]
    rows: list[list[Any]]
    lines: list[int]
    signs: Signs = field(default_factory=Signs)
    headings: dict[int, str] = field(default_factory=dict)
    blanks: list[int] = field(default_factory=list)
    uneven: dict[int, int] = field(default_factory=dict)
    separator: str = ""

    @cached_property
    def _places(self) -> dict[str, list[int]]:
        places: dict[str, list[int]] = {}
        for place, name in enumerate(self.names):
            places.setdefault(plain(name), []).append(place)
        return places

    def places(self, name: str) -> list[int]:
        """Where a column of this name is; "#3" is the third one."""
        if re.fullmatch(r"#[1-9]\d*", name):
            place = int(name[1:]) - 1
            return [place] if place < self.width else []
        found = self._places.get(plain(name), [])
        exact = [place for place in found if self.names[place] == " ".join(name.split())]
        return exact or found

    @property
    def width(self) -> int:
        """How many columns there are."""
        return len(self.names)

    def cells(self, place: int) -> list[Any]:
        """The cells of a column."""
        return [row[place] for row in self.rows]

    def name_of(self, place: int) -> str:
        """A column's name for messages."""
        return self.names[place] or f"#{place + 1}"


# ---- Names


def _joined(rows: Sequence[Sequence[Any]]) -> list[str]:
    """Names over several rows; in all but the last, an empty cell repeats the one to its left."""
    width = max(map(len, rows))
    parts: list[list[str]] = []
    for number, row in enumerate(rows):
        texts = [text_of_cell(cell) for cell in row] + [""] * (width - len(row))
        if number < len(rows) - 1:
            for place in range(1, width):
                texts[place] = texts[place] or texts[place - 1]
        parts.append(texts)
    return [" ".join(" ".join(column).split()) for column in zip(*parts, strict=True)]


def _header_at(grid: Grid, wanted: Sequence[str], depth: int) -> tuple[int, int]:
    """The row with most of the names, and how many there are."""
    names = {plain(name) for name in wanted}
    best, most = 0, 0
    for number in range(min(len(grid.rows) - depth + 1, _PREAMBLE)):
        found = names.intersection(map(plain, _joined(grid.rows[number : number + depth])))
        if len(found) > most:
            best, most = number, len(found)
    return best, most


def _named(grid: Grid, map_: TableMap, faults: Faults) -> tuple[list[str], int] | None:
    """The names of a grid's columns, and the number of rows above the first of the table."""
    wanted = map_.names
    given = map_.get("table", "header")
    depth = max(1, map_.get("table", "header_rows", 1))
    width = max(map(len, grid.rows), default=0)
    if given == 0 or (given is None and not wanted):
        return [""] * width, 0
    if given is not None:
        if given not in grid.lines:
            text = f"[table] header: found {given}, expected a line of {grid.origin.name} "
            faults.add(map_.error("table", "header", text + "that is not empty"))
            return None
        start = grid.lines.index(given)
        return _joined(grid.rows[start : start + depth]), start + depth
    start, found = _header_at(grid, wanted, depth)
    form = _form_in_words(grid, wanted) if found < min(2, len(wanted)) else ""
    if form:
        text = f"found {found} of the map's columns in a line, expected {len(wanted)}: {form}"
        faults.add(grid.origin.error(None, None, text))
        return None
    deeper = _header_at(grid, wanted, depth + 1)[1] if len(grid.rows) > depth else 0
    if deeper > found:
        text = f"found {found} of the map's columns, expected {len(set(map(plain, wanted)))}; "
        text += f"{deeper} are there when names stand in {depth + 1} lines: say [table] "
        faults.add(grid.origin.error(None, None, text + f"header_rows = {depth + 1}"))
        return None
    if not found:
        first = listed(shown(cell) for cell in grid.rows[0] if not is_empty(cell))
        where = grid.origin.rows_in_words(grid.lines[:1])
        text = f"found none of the columns that the map names; {where} holds {first or 'nothing'}. "
        text += "Expected their names as the table has them, or #1, #2, ... by place"
        text += "; [table] sheet names the sheets to read" if grid.origin.sheet else ""
        faults.add(grid.origin.error(None, None, text))
        return None
    return _joined(grid.rows[start : start + depth]), start + depth


def units_beneath(row: Sequence[Any]) -> dict[int, str]:
    """The units of a row that has nothing else in it."""
    texts = {place: str(cell).strip() for place, cell in enumerate(row) if not is_empty(cell)}
    units = {
        place: text
        for place, text in texts.items()
        if not re.fullmatch(r"[\d.,+-]+", text.strip("[]()")) and unit_of(text) is not None
    }
    words = [text for place, text in texts.items() if place not in units]
    others = [text for text in words if text.strip("[]()-/ .#")]
    return units if units and len(others) <= len(units) and not _has_number(row) else {}


def _has_number(row: Sequence[Any], signs: Signs | None = None) -> bool:
    signs = signs or Signs()
    return any(not is_empty(cell) and number_of(cell, signs) is not None for cell in row)


def word_of_cell(cell: Any, pattern: str | None) -> Any:
    """The part of a cell that is the word for the foot; None where the pattern does not fit."""
    if pattern is None or is_empty(cell):
        return cell
    found = re.search(pattern, text_of_cell(cell))
    return (found[found.lastindex or 0] if found else None) or None


def foot_of_cell(cell: Any, signs: Signs, map_: TableMap) -> str | None:
    """The foot that a cell names: one of the map's words, or "left" as in "Left foot"."""
    feet = [foot for foot in FEET if is_one_of(cell, map_.words_of(foot), signs)]
    if not feet and not map_.has_foot_words and isinstance(cell, str):
        feet = [foot for foot in FEET if re.search(rf"\b{foot}\b", cell, re.IGNORECASE)]
    return feet[0] if len(feet) == 1 else None


def _without_headings(grid: Grid, map_: TableMap, faults: Faults) -> tuple[Grid, dict[int, str]]:
    """Takes out the lines that hold the word for a foot alone, and says whose they are."""
    kept: list[int] = []
    feet: dict[int, str] = {}
    headings: list[tuple[int, str]] = []
    for number, (row, line) in enumerate(zip(grid.rows, grid.lines, strict=True)):
        filled = [cell for cell in row if not is_empty(cell)]
        foot = foot_of_cell(filled[0], Signs(), map_) if len(filled) == 1 else None
        if foot:
            headings.append((line, foot))
        else:
            kept.append(number)
            if headings:
                feet[line] = headings[-1][1]
    if map_.feet_by == "headings":
        rows, lines = [grid.rows[n] for n in kept], [grid.lines[n] for n in kept]
        return replace(grid, rows=rows, lines=lines), feet
    if map_.feet_by != "column" and {foot for _, foot in headings} == set(FEET):
        found = "the word for a foot alone in a line"
        for line, _ in headings:
            faults.add_cell(grid.origin, line, None, found, 'the map to say [feet] by = "headings"')
    return grid, {}


def source_of(grid: Grid, map_: TableMap, faults: Faults) -> Source | None:
    if grid.names is not None:
        return Source(grid.origin, grid.names, {}, grid.rows, grid.lines)
    if not grid.rows:
        faults.add(grid.origin.error(None, None, "found no row, expected a table"))
        return None
    grid, headings = _without_headings(grid, map_, faults)
    named = _named(grid, map_, faults)
    if named is None:
        return None
    names, start = named
    named_width = _filled_width(names)
    width = max(len(names), *(len(row) for row in grid.rows[start:]), 1)
    names = names + [""] * (width - len(names))
    has_names = any(names)
    units = units_beneath(grid.rows[start]) if has_names and start < len(grid.rows) else {}
    start += bool(units)
    rows, lines = [], []
    header = [plain(name) for name in names]
    first = next((place for place, name in enumerate(header) if name), 0)
    for row, line in zip(grid.rows[start:], grid.lines[start:], strict=True):
        cells = list(row) + [None] * (width - len(row))
        # A table that was put together from several repeats its names.
        may_be = has_names and cells[first] is not None and plain(cells[first]) == header[first]
        if not may_be or [plain("" if cell is None else cell) for cell in cells] != header:
            rows.append(cells)
            lines.append(line)
    uneven = {}
    if grid.separator and named_width:
        for row, line in zip(grid.rows[start:], grid.lines[start:], strict=True):
            if len(row) < named_width or _filled_width(row) > named_width:
                uneven[line] = len(row)
    return Source(
        grid.origin,
        names,
        units,
        rows,
        lines,
        headings=headings,
        blanks=grid.blanks,
        uneven=uneven,
        separator=grid.separator,
    )


def _filled_width(row: Sequence[Any]) -> int:
    """How many cells a row has without the empty ones at its end."""
    return max((place for place, cell in enumerate(row, 1) if text_of_cell(cell)), default=0)


def _mapped_places(source: Source, map_: TableMap) -> set[int]:
    """The places of the columns that the map names."""
    return {
        place
        for column in map_.columns.values()
        for foot in FEET
        for name in column.names[foot]
        for place in source.places(name)
    }


def _check_widths(source: Source, map_: TableMap, faults: Faults) -> None:
    """Finds rows with more or fewer cells than there are names: their values may be shifted."""
    if not source.uneven:
        return
    used = _mapped_places(source, map_)
    width = _filled_width(source.names)
    hint = {",": ": a decimal comma in a table separated by commas?"}.get(source.separator, "")
    for row, line in zip(source.rows, source.lines, strict=True):
        cells = source.uneven.get(line)
        if cells is None or all(is_empty(row[place]) for place in used):
            continue
        more = hint if cells > width else f"; {source.origin.lines_in_map()} leaves rows out"
        found = f"{cells} cell" + "s" * (cells != 1)
        faults.add_cell(source.origin, line, None, found, f"{width}{more}")


def _fill_down(source: Source, map_: TableMap) -> None:
    for name in map_.get("", "fill_down", ()):
        for place in source.places(name):
            above = None
            for row in source.rows:
                row[place] = above if is_empty(row[place]) else row[place]
                above = row[place]


def rows_meeting(condition: dict[str, Any], source: Source, faults: Faults) -> list[int]:
    """The rows of a table that a condition names by the table, a cell or a line."""
    if condition.get("table", source.origin.name) != source.origin.name:
        return []
    lines = set(condition.get("lines", ()))
    place = place_of(source, condition["column"], faults) if "column" in condition else None
    if "column" in condition and place is None:
        return []
    return [
        number
        for number, (row, line) in enumerate(zip(source.rows, source.lines, strict=True))
        if (place is None or meets(condition, row[place], source.signs))
        and (not lines or line in lines)
    ]


def _without_skipped(source: Source, map_: TableMap, met: set[int], faults: Faults) -> int:
    """Takes rows out that [[skip]] names, and says how many; notes which conditions are met."""
    dropped: set[int] = set()
    for which, condition in enumerate(map_.skip):
        found = rows_meeting(condition, source, faults)
        dropped.update(found)
        met.update([which] * bool(found))
    source.rows = [row for number, row in enumerate(source.rows) if number not in dropped]
    source.lines = [line for number, line in enumerate(source.lines) if number not in dropped]
    return len(dropped)


def totals_of(source: Source) -> list[tuple[int, int, str]]:
    """Rows that sum the table up: line, and the place and the text of the cell that says so."""
    found = []
    for row, line in zip(source.rows, source.lines, strict=True):
        words = [
            (place, cell)
            for place, cell in enumerate(row)
            if isinstance(cell, str) and cell and not cell[0].isdigit()
        ]
        total = next((word for word in words[:3] if _TOTALS.fullmatch(word[1].strip())), None)
        if total and _has_number(row, source.signs):
            found.append((line, *total))
    # A column of units has "min" in every row.
    return found if len(found) <= max(4, len(source.rows) / 4) else []


def _printed(cell: Any, signs: Signs) -> _Printed:
    """The number in a cell, and how many decimals it has."""
    found = None if is_empty(cell) or isinstance(cell, bool) else number_of(cell, signs)
    if found is None or found[1]:
        return None
    text = signs.plain(cell) if isinstance(cell, str) else repr(float(cell)).removesuffix(".0")
    return (found[0], len(text.partition(".")[2])) if "e" not in text.casefold() else None


def _numbers(source: Source, place: int) -> NDArray[np.float64]:
    found = (
        cell if type(cell) is float else None if is_empty(cell) else number_of(cell, source.signs)
        for cell in source.cells(place)
    )
    return np.array([one[0] if isinstance(one, tuple) else one for one in found], dtype=float)


def _is_same(one: NDArray[np.float64], two: NDArray[np.float64]) -> bool:
    """Whether one column is all but a multiple of another."""
    there = np.isfinite(one) & np.isfinite(two)
    return there.sum() > 2 and bool(abs(np.corrcoef(one[there], two[there])[0, 1]) > 0.98)


def _means_in(
    source: Source, columns: Sequence[NDArray[np.float64]], above: Sequence[int], at: int
) -> tuple[list[int], float]:
    """The columns in which a row has the mean of those above it, and how likely that is by chance.

    One column alone tells nothing.
    """
    chance = 1.0
    places: list[int] = []
    for place, column in enumerate(columns):
        cell = source.rows[at][place]
        here, values = _printed(cell, source.signs), column[above]
        values = values[np.isfinite(values)]
        if here is None or len(values) < _LAST_ROWS or abs(here[0] - values.mean()) > 0.5001:
            continue
        decimals = here[1]
        if decimals == 0 or not isinstance(cell, str):
            # A number has no trailing zeros: those of the rows above tell.
            last = [_printed(source.rows[row][place], source.signs) for row in above[-20:]]
            decimals = max(decimals, *(one[1] for one in last if one is not None), 0)
        spread, step = float(values.std(ddof=1)), 10.0**-decimals
        if spread > 0 and abs(values.mean() - here[0]) <= 0.5001 * step:
            # What another column tells already, as stance does of swing, is no more chance.
            is_told = any(_is_same(column[above], columns[one][above]) for one in places)
            places.append(place)
            chance *= 1.0 if is_told else min(1.0, step / (2 * spread))
    return (places, chance) if len(places) > 1 else ([], 1.0)


def _rows_of_feet(source: Source, map_: TableMap) -> dict[str, list[int]]:
    """The rows of each foot, where a column or a heading says which it is."""
    feet: list[str | None] = [None] * len(source.rows)
    places = source.places(map_.get("feet", "column", ""))
    if map_.feet_by == "headings":
        feet = [source.headings.get(line) for line in source.lines]
    elif map_.feet_by == "column" and len(places) == 1:
        words = [
            word_of_cell(cell, map_.get("feet", "pattern")) for cell in source.cells(places[0])
        ]
        feet = [foot_of_cell(word, source.signs, map_) for word in words]
    return {one: [row for row, foot in enumerate(feet) if foot == one] for one in FEET}


def _last_means(
    source: Source, columns: Sequence[NDArray[np.float64]], rows: Sequence[int], known: set[int]
) -> tuple[int, list[int]]:
    """The first of the last of some rows that holds means, and in which columns; none: no row."""
    for number in range(max(_LAST_ROWS, len(rows) - _LAST_ROWS), len(rows)):
        if source.lines[rows[number]] not in known:
            places, chance = _means_in(source, columns, rows[:number], rows[number])
            if chance < _BY_CHANCE:
                return number, places
    return len(rows), []


def _means_of_both(
    source: Source, columns: Sequence[NDArray[np.float64]], feet: dict[str, list[int]]
) -> dict[str, tuple[int, list[int]]]:
    """The last row of each foot, where both hold means: one alone may be chance, and both not."""
    result = {}
    both = 1.0
    for foot, rows in feet.items():
        places, chance = _means_in(source, columns, rows[:-1], rows[-1]) if rows else ([], 1.0)
        result[foot] = len(rows) - 1, places
        both *= chance
    return result if all(places for _, places in result.values()) and both < _BOTH_BY_CHANCE else {}


def _find_last_means(source: Source, map_: TableMap, known: set[int], faults: Faults) -> bool:
    """Last rows, of the table or of a foot, that hold means and have no word that says so."""
    if len(source.rows) > _MANY_ROWS:
        return False
    columns = [_numbers(source, place) for place in range(source.width)]
    feet = _rows_of_feet(source, map_)
    groups = {"": [*range(len(source.rows))], **feet}
    begins = {foot: _last_means(source, columns, rows, known) for foot, rows in groups.items()}
    if not any(places for _, places in begins.values()) and not known:
        begins = _means_of_both(source, columns, feet)
    found: set[int] = set()
    for foot, (number, places) in begins.items():
        lines = [source.lines[row] for row in groups[foot][number:]]
        lines = [line for line in lines if line not in known | found]
        if places and lines:
            found |= set(lines)
            names = listed((source.name_of(place) for place in places), " and ")
            whose = f"{foot} rows" if foot else "rows"
            what = f"the means of the {whose} above in {names}"
            expected = f"a stride; to leave it out: {source.origin.lines_in_map('skip', lines)}"
            faults.add_cell(source.origin, lines[0], None, what, expected)
    return bool(found)


def _find_rows_after_count(source: Source, known: set[int], faults: Faults) -> None:
    """Last rows in which a running number has ended."""
    for place in range(source.width):
        at = _end_of_count(source, place)
        if at < len(source.rows) and not known & set(source.lines[at:]):
            lines = source.lines[at:]
            text = text_of_cell(source.rows[at][place])
            found = shown(text) if text else "an empty cell"
            expected = "a number as in all rows above; if the row is no stride: "
            expected += source.origin.lines_in_map("skip", lines)
            faults.add_cell(source.origin, lines[0], source.name_of(place), found, expected)
            return


def _end_of_count(source: Source, place: int) -> int:
    """Where a column that counts the rows ends, if a few rows follow; else the number of rows."""
    cells = source.cells(place)
    if not cells or (not is_empty(cells[-1]) and number_of(cells[-1], source.signs) is not None):
        return len(cells)
    values = [None if is_empty(cell) else number_of(cell, source.signs) for cell in cells]
    end = len(values)
    while end and values[end - 1] is None:
        end -= 1
    counts = [value[0] if value else None for value in values[:end]]
    first = counts[0] if counts else None
    is_count = first is not None and counts == [first + n for n in range(end)]
    is_few = _LAST_ROWS <= end and len(values) - end <= _LAST_ROWS
    return end if is_count and is_few else len(values)


def _find_totals(source: Source, map_: TableMap, faults: Faults) -> None:
    """Rows that sum the table up would count as strides."""
    found = totals_of(source)
    known = {line for line, _, _ in found}
    if not _find_last_means(source, map_, known, faults):
        _find_rows_after_count(source, known, faults)
    for line, place, text in found:
        name = source.name_of(place)
        expected = f'a stride; to leave rows of means out: [[skip]] column = "{name}", is = the '
        expected += "words in them"
        faults.add_cell(source.origin, line, name, shown(text), expected)


def place_of(source: Source, name: str, faults: Faults) -> int | None:
    """Where a column is; a fault where it is not there, or more than once."""
    found = source.places(name)
    if len(found) == 1:
        return found[0]
    if found:
        numbers = listed((f'"#{place + 1}"' for place in found), " or ")
        text = f"found it {len(found)} times, expected once: name it by its place, {numbers}"
    else:
        names = list(dict.fromkeys(filter(None, source.names)))
        near = nearest(name, names)
        have = f'is it "{near}"?' if near else f"expected one of: {listed(names[:12])}"
        text = f"found no such column; {have}"
    faults.add(source.origin.error(None, name, text))
    return None


def _ask_for_points(source: Source, places: Sequence[int], faults: Faults) -> None:
    """Finds columns whose points may be between thousands."""
    for place in places:
        pair = listed(map(shown, open_points(source.cells(place))), " and ")
        if pair:
            text = f"found numbers such as {pair}, expected a word on what the point is: "
            text += '[table] decimal = "." or thousands = "."'
            faults.add(source.origin.error(None, source.name_of(place), text))


def _signs(source: Source, map_: TableMap, faults: Faults) -> Signs:
    """The signs of a table's numbers, those of the map first."""
    decimal, thousands = map_.get("table", "decimal"), map_.get("table", "thousands", "")
    if thousands in (".", ",") and not decimal:
        decimal = "," if thousands == "." else "."
    places = _mapped_places(source, map_)
    cells = [cell for place in sorted(places) for cell in source.cells(place)]
    dates = map_.get("table", "dates") or dates_of(cells)
    if decimal:
        return Signs(decimal, thousands, dates)
    found = signs_of(cells)
    if found == Signs() and not thousands and not any(map(has_decimal_point, cells)):
        _ask_for_points(source, sorted(places), faults)
    if found is None:
        example = next(cell for cell in cells if isinstance(cell, str) and "," in cell)
        text = f'found numbers such as "{example}" alone, expected a word on what the comma is: '
        faults.add(
            source.origin.error(None, None, text + '[table] decimal = "," or thousands = ","')
        )
    found = found or Signs(",")
    return Signs(found.decimal, thousands or found.thousands, dates)


def _form_in_words(grid: Grid, wanted: Sequence[str]) -> str:
    """What form a table has whose names are not in its header; empty where that is not known."""
    names = {plain(name) for name in wanted}
    for place in range(max(map(len, grid.rows))):
        cells = [plain(row[place]) for row in grid.rows if place < len(row)]
        found = names.intersection(cells)
        if len(found) > 1:
            if len(cells) > 2 * len(found) + 20 or max(map(cells.count, found)) > 1:
                return "they stand in the cells of a column, one value a row: pivot the table first"
            return "they stand one below the other: say [table] turned = true"
    return ""


def _with_word_on_sheets(grids: list[Grid], map_: TableMap, faults: Faults) -> list[Grid]:
    """Leaves out the sheets of a workbook that has several, where the map does not say which."""
    is_said = map_.get("table", "sheet") or map_.feet_by == "sheets"
    if is_said or "{sheet}" in map_.get("", "walk", ()):
        return grids
    kept = []
    for file, found in groupby(grids, key=lambda grid: grid.origin.file):
        book = list(found)
        if len(book) == 1 or not book[0].origin.sheet:
            kept += book
            continue
        most = [_header_at(grid, map_.names, 1)[1] for grid in book]
        fitting = [g for g, n in zip(book, most, strict=True) if n and n == max(most)] or book
        names = [shown(grid.origin.sheet) for grid in fitting]
        longest = shown(max(fitting, key=lambda grid: len(grid.rows)).origin.sheet)
        text = f"found {len(book)} sheets ({listed(shown(grid.origin.sheet) for grid in book)}), "
        text += "expected a word on which to read: "
        if len(names) == 1:
            text += f"{names[0]} alone has the map's columns: [table] sheet = {names[0]}"
        else:
            text += f"[table] sheet = {longest} for one (it has the most rows); where each is a "
            text += "walk, [table] sheet = "
            text += f'[{listed(names)}] with walk = ["{{sheet}}"]'
            if not map_.feet_by:
                text += '; where each is a foot, [feet] by = "sheets" with left = '
                text += f"{names[0]}, right = {names[1]}"
        name = book[0].origin.name.removesuffix(f", sheet {book[0].origin.sheet}")
        faults.add(Origin(name, False, file).error(None, None, text))
    return kept


def _grids_of(tables: Sequence[Any], map_: TableMap, faults: Faults) -> list[Grid]:
    """The tables to read; faults where a condition of the map is about none or several of them."""
    grids = _with_word_on_sheets(all_grids(tables, map_, faults), map_, faults)
    if faults:
        return grids
    names = [grid.origin.name for grid in grids]
    for section, conditions in (("skip", map_.skip), ("exclude", map_.exclude)):
        for number, name in enumerate(condition.get("table") for condition in conditions):
            if name is None or names.count(name) == 1:
                continue
            expected = f"one of the tables that are read: {listed(map(shown, names))}"
            if name in names:
                expected = "a name that one table alone has: rename the files"
            text = f"table: found {shown(name)}, expected {expected}"
            faults.add(map_.doubt_of_condition(section, number, text))
    return [replace(grid, origin=replace(grid.origin, is_alone=len(names) == 1)) for grid in grids]


def read_sources(
    tables: Sequence[Any], map_: TableMap, faults: Faults
) -> tuple[list[Source], list[str], list[InputError]]:
    """Reads tables, and returns them with notes on what was left out, and doubts about it."""
    sources = []
    notes = []
    met: set[int] = set()
    for grid in _grids_of(tables, map_, faults):
        source = source_of(grid, map_, faults)
        if source is None:
            continue
        _fill_down(source, map_)
        source.signs = _signs(source, map_, faults)
        skipped = _without_skipped(source, map_, met, faults)
        if skipped:
            notes.append(f"{grid.origin.name}: {counted(skipped, 'row')} left out by [[skip]]")
        _check_widths(source, map_, faults)
        _find_totals(source, map_, faults)
        if not source.rows:
            text = "found no row below the names, expected a row for each stride"
            faults.add(source.origin.error(None, None, text))
        sources.append(source)
    if not sources and not faults:
        faults.add(InputError("tables", None, None, None, "found none, expected at least one"))
    doubts = [
        map_.doubt_of_condition("skip", number, condition_in_words(condition))
        for number, condition in enumerate(map_.skip)
        if number not in met and {"is", "lines"} & condition.keys()
    ]
    return sources, notes, doubts
