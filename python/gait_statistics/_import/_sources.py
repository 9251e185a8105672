"""Reading tables: text of any separator, workbooks, Parquet and frames, each cell with its place."""

from __future__ import annotations

import csv
import itertools
import os
import re
from collections import Counter
from collections.abc import Iterator, Mapping, Sequence
from dataclasses import dataclass, field, replace
from functools import cached_property
from pathlib import Path
from typing import Any

from .._errors import InputError
from ._cells import Signs, is_empty, meets, number_of, signs_of, text_of_cell
from ._map import FEET, TableMap
from ._places import Faults, Origin, counted, listed, nearest, shown
from ._units import unit_of

_TEXT = (".csv", ".tsv", ".txt", ".ts", ".dat", ".asc", ".tab", ".text", "")
_WORKBOOKS = (".xlsx", ".xlsm")
_ARROW = (".parquet", ".pq", ".feather")
_SEPARATORS = {"tab": "\t", "\\t": "\t", "space": " ", " ": " "}
# What a header may stand below, in rows.
_PREAMBLE = 200
# Words of rows that sum a table up, in the first cells of a row.
_TOTALS = re.compile(
    r"(mean|average|avg|mittel|mittelwert|sd|stdev|std|std\.? ?dev\.?|standard deviation|"
    r"standardabweichung|stabw|cv|%cv|cv ?%|median|min|max|minimum|maximum|total|totals|sum|summe|"
    r"gesamt|count|anzahl)\.?:?",
    re.IGNORECASE,
)


@dataclass
class Grid:
    """The cells of a table as they stand, before its names are known."""

    origin: Origin
    rows: list[list[Any]]
    lines: list[int]
    names: list[str] | None = None


@dataclass
class Source:
    """A table: names, and rows of cells, each with its line or row.

    Attributes:
        names: the columns' names; empty ones have none.
        units: the units of a row beneath the names, by column.
    """

    origin: Origin
    names: list[str]
    units: dict[int, str]
    rows: list[list[Any]]
    lines: list[int]
    signs: Signs = field(default_factory=Signs)

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


def plain(name: Any) -> str:
    """A name without its case, and with single blanks."""
    return " ".join(str(name).split()).casefold()


# ---- Files as grids


def _decoded(path: Path, encoding: str | None, faults: Faults, origin: Origin) -> str | None:
    data = path.read_bytes()
    marks = {b"\xef\xbb\xbf": "utf-8-sig", b"\xff\xfe": "utf-16", b"\xfe\xff": "utf-16"}
    marked = [name for mark, name in marks.items() if data.startswith(mark)]
    try:
        if encoding:
            return data.decode(encoding)
        if marked:
            return data.decode(marked[0])
        if b"\0" in data[:4096]:
            text = 'found bytes of 0, expected text: is it UTF-16? [table] encoding = "utf-16-le"'
            faults.add(origin.error(None, None, text))
            return None
        try:
            return data.decode("utf-8")
        except UnicodeDecodeError:
            return data.decode("cp1252")
    except LookupError:
        text = f'found no encoding "{encoding}", expected one as [table] encoding = "utf-8"'
    except UnicodeDecodeError as error:
        text = f"found text that is not {encoding or 'UTF-8 or cp1252'} at byte {error.start}"
        text += ', expected another [table] encoding, such as "utf-16"'
    faults.add(origin.error(None, None, text))
    return None


def _separator_of(lines: Sequence[str]) -> str:
    """The separator that most lines have equally often; a blank stands for any white space."""
    best, most = " ", 0
    for sign in ("\t", ";", "|", ","):
        counts = Counter(len(row) for row in csv.reader(lines, delimiter=sign) if len(row) > 1)
        if counts:
            width, rows = counts.most_common(1)[0]
            # Decimal commas make columns too, but fewer rows agree.
            if rows * 2 > len(lines) * 0.5 and rows * width > most * 1.2:
                best, most = sign, rows * width
    return best


def _text_grid(path: Path, origin: Origin, map_: TableMap, faults: Faults) -> list[Grid]:
    text = _decoded(path, map_.get("table", "encoding"), faults, origin)
    if text is None:
        return []
    lines = text.splitlines()
    given = map_.get("table", "separator")
    hint = re.fullmatch(r"sep=(.)", lines[0].strip()) if lines else None
    separator = _SEPARATORS.get(given, given) if given else hint[1] if hint else None
    if given and len(str(separator)) != 1:
        what = f'[table] separator: found "{given}", expected one character, "tab" or "space"'
        faults.add(map_.error("table", "separator", what))
        return []
    filled = [line for line in lines[:400] if line.strip()]
    separator = separator or _separator_of(filled[-200:])
    comment = map_.get("table", "comment")
    rows: list[list[Any]] = []
    numbers: list[int] = []
    if separator == " ":
        found: Iterator[tuple[list[str], int]] = (
            (line.split(), number) for number, line in enumerate(lines, 1)
        )
    else:
        found = _rows_of(text, separator)
    for row, number in found:
        is_comment = comment and row and row[0].lstrip().startswith(comment)
        if not is_comment and not (hint and number == 1) and any(cell.strip() for cell in row):
            rows.append([cell.strip() for cell in row])
            numbers.append(number)
    return [Grid(origin, rows, numbers)]


def _rows_of(text: str, separator: str) -> Iterator[tuple[list[str], int]]:
    """Rows, each with the line that it begins in."""
    csv.field_size_limit(1 << 24)
    reader = csv.reader(text.splitlines(keepends=True), delimiter=separator)
    line = 1
    for row in reader:
        yield row, line
        line = reader.line_num + 1


def _workbook_grids(path: Path, map_: TableMap, faults: Faults) -> list[Grid]:
    import pandas as pd

    wanted = map_.get("table", "sheet")
    sheets = pd.read_excel(path, sheet_name=None, header=None, dtype=object, keep_default_na=False)
    filled = {str(name): sheet for name, sheet in sheets.items() if sheet.notna().to_numpy().any()}
    by_name = {plain(name): name for name in filled}
    book = Origin(path.name, False, path.stem)
    if wanted is None and map_.feet_by == "sheets":
        wanted = [
            name
            for foot in FEET
            for word in map_.words_of(foot)
            for name in filled
            if plain(name) == plain(word)
        ] or [str(map_.words_of(foot)[0]) for foot in FEET]
    elif wanted is None:
        wanted = list(filled)
        if len(wanted) > 1 and "{sheet}" not in map_.get("", "walk", ()):
            text = f"found {len(wanted)} sheets ({listed(map(shown, wanted))}), expected one: say "
            text += '[table] sheet = "...", or walk = ["{sheet}"] if each is a walk, or '
            text += '[feet] by = "sheets" if each is a foot'
            faults.add(book.error(None, None, text))
            return []
    for name in wanted:
        if plain(name) not in by_name:
            have = f"expected one of: {listed(map(shown, filled))}" if filled else "expected one"
            what = "[table] sheet" if map_.get("table", "sheet") else "[feet] left, right"
            text = f'found no sheet "{name}" with cells in it, {have}; see {what} in the map'
            faults.add(book.error(None, None, text))
    grids = []
    for name in (by_name[plain(name)] for name in wanted if plain(name) in by_name):
        rows = [
            [None if is_empty(cell) and not isinstance(cell, str) else cell for cell in row]
            for row in filled[name].to_numpy().tolist()
        ]
        kept = [number for number, row in enumerate(rows) if not all(map(is_empty, row))]
        origin = Origin(f"{path.name}, sheet {name}", False, path.stem, name)
        grids.append(Grid(origin, [rows[n] for n in kept], [number + 1 for number in kept]))
    return grids


def _frame_grid(frame: Any, origin: Origin) -> Grid:
    """A frame of pandas; names of its index become columns."""
    if any(name is not None for name in frame.index.names):
        frame = frame.reset_index()
    columns = [
        frame.iloc[:, place].astype(object).where(frame.iloc[:, place].notna(), None).tolist()
        for place in range(frame.shape[1])
    ]
    rows = [list(row) for row in zip(*columns, strict=True)]
    names = [
        " ".join(" ".join(map(str, name)).split())
        if isinstance(name, tuple)
        else " ".join(str(name).split())
        for name in frame.columns
    ]
    return Grid(origin, rows, list(range(len(rows))), names)


def _grids_of_file(path: Path, map_: TableMap, faults: Faults) -> list[Grid]:
    import pandas as pd

    ending = path.suffix.casefold()
    origin = Origin(path.name, ending not in (*_WORKBOOKS, *_ARROW), path.stem)
    try:
        if ending in _WORKBOOKS:
            return _workbook_grids(path, map_, faults)
        if ending in _ARROW:
            read = pd.read_feather if ending == ".feather" else pd.read_parquet
            return [_frame_grid(read(path), origin)]
        if ending in _TEXT:
            return _text_grid(path, origin, map_, faults)
        text = f'found a file that ends in "{path.suffix}", expected one of: '
        text += listed([*_TEXT[:4], *_WORKBOOKS, *_ARROW]) + ": save the table as one of these"
    except ImportError as error:
        text = f"cannot be read: {error}. pip install 'gait-statistics[import]'"
    except OSError as error:
        text = f"cannot be read: {error.strerror or error}"
    except Exception as error:
        # A reader of pandas fails with errors of the libraries below it.
        what = str(error).splitlines()[0] if str(error) else type(error).__name__
        text = f"cannot be read as a {ending} file: {what} Save the table as CSV or .xlsx"
    faults.add(origin.error(None, None, text))
    return []


# ---- Grids as tables with names


def _wanted_names(map_: TableMap) -> list[str]:
    names = [
        name for column in map_.columns.values() for foot in FEET for name in column.names[foot]
    ]
    names += map_.get("", "walk", ()) + map_.get("", "breaks", ()) + map_.get("", "fill_down", ())
    names += [map_.get("feet", "column")] if map_.get("feet", "column") else []
    names += [c["column"] for c in (*map_.skip, *map_.exclude) if "column" in c]
    return [name for name in dict.fromkeys(names) if not re.fullmatch(r"#\d+|\{\w+\}", name)]


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
    wanted = _wanted_names(map_)
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


def _has_number(row: Sequence[Any]) -> bool:
    return any(not is_empty(cell) and number_of(cell, Signs()) is not None for cell in row)


def source_of(grid: Grid, map_: TableMap, faults: Faults) -> Source | None:
    if grid.names is not None:
        return Source(grid.origin, grid.names, {}, grid.rows, grid.lines)
    if not grid.rows:
        faults.add(grid.origin.error(None, None, "found no row, expected a table"))
        return None
    named = _named(grid, map_, faults)
    if named is None:
        return None
    names, start = named
    width = max(len(names), *(len(row) for row in grid.rows[start:]), 1)
    names = names + [""] * (width - len(names))
    has_names = any(names)
    units = units_beneath(grid.rows[start]) if has_names and start < len(grid.rows) else {}
    start += bool(units)
    rows, lines = [], []
    header = [plain(name) for name in names]
    for row, line in zip(grid.rows[start:], grid.lines[start:], strict=True):
        cells = list(row) + [None] * (width - len(row))
        # A table that was put together from several repeats its names.
        if not has_names or [plain("" if c is None else c) for c in cells] != header:
            rows.append(cells)
            lines.append(line)
    return Source(grid.origin, names, units, rows, lines)


def _fill_down(source: Source, map_: TableMap) -> None:
    for name in map_.get("", "fill_down", ()):
        for place in source.places(name):
            above = None
            for row in source.rows:
                row[place] = above if is_empty(row[place]) else row[place]
                above = row[place]


def _without_skipped(source: Source, map_: TableMap, faults: Faults) -> int:
    """Takes rows out that [[skip]] names, and says how many."""
    dropped: set[int] = set()
    for condition in map_.skip:
        lines = set(condition.get("lines", ()))
        place = place_of(source, condition["column"], faults) if "column" in condition else None
        if "column" in condition and place is None:
            continue
        for number, row in enumerate(source.rows):
            is_met = place is None or meets(condition, row[place], source.signs)
            if is_met and (not lines or source.lines[number] in lines):
                dropped.add(number)
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
        if total and _has_number(row):
            found.append((line, *total))
    # A column of units has "min" in every row.
    return found if len(found) <= max(4, len(source.rows) / 4) else []


def _find_totals(source: Source, faults: Faults) -> None:
    """Rows that sum the table up would count as strides."""
    for line, place, text in totals_of(source):
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


def _signs(source: Source, map_: TableMap, faults: Faults) -> Signs:
    """The signs of a table's numbers, those of the map first."""
    decimal, thousands = map_.get("table", "decimal"), map_.get("table", "thousands", "")
    if decimal:
        return Signs(decimal, thousands)
    places = {
        place
        for column in map_.columns.values()
        for foot in FEET
        for name in column.names[foot]
        for place in source.places(name)
    }
    cells = [cell for place in sorted(places) for cell in source.cells(place)]
    found = signs_of(cells)
    if found is None:
        example = next(cell for cell in cells if isinstance(cell, str) and "," in cell)
        text = f'found numbers such as "{example}" alone, expected a word on what the comma is: '
        faults.add(source.origin.error(None, None, text + '[table] decimal = "," or "."'))
    found = found or Signs(",")
    return Signs(found.decimal, thousands or found.thousands)


def turned(grid: Grid) -> Grid:
    """A table with a column for each stride, put upright; its rows are the columns' numbers."""
    if grid.names is not None:
        grid.rows.insert(0, list(grid.names))
    rows = [list(row) for row in itertools.zip_longest(*grid.rows)]
    origin = replace(grid.origin, name=f"{grid.origin.name}, turned", is_text=False)
    kept = [number for number, row in enumerate(rows) if not all(map(is_empty, row))]
    return Grid(origin, [rows[n] for n in kept], [number + 1 for number in kept])


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


def all_grids(tables: Sequence[Any], map_: TableMap, faults: Faults) -> list[Grid]:
    grids: list[Grid] = []
    is_turned = map_.get("table", "turned")
    for number, table in enumerate(tables):
        if isinstance(table, tuple):
            name, frame = table
            origin = Origin(name or f"table {number + 1}", False, name)
            grids.append(_frame_grid(frame, origin))
        else:
            grids += _grids_of_file(Path(table), map_, faults)
    return [turned(grid) for grid in grids] if is_turned else grids


def named_tables(tables: Any) -> list[Any]:
    """The tables that an argument names: paths, and frames of pandas with a name each."""
    import narwhals as nw

    if isinstance(tables, (str, os.PathLike)):
        return [os.fsdecode(tables)]
    if isinstance(tables, Mapping):
        named = list(tables.items())
    elif isinstance(tables, Sequence):
        return [one for table in tables for one in named_tables(table)]
    else:
        named = [("", tables)]
    try:
        return [
            (str(name), nw.from_native(frame, eager_only=True).to_pandas()) for name, frame in named
        ]
    except TypeError as error:
        kind = type(named[0][1]).__name__
        expected = "expected paths of tables, or frames of pandas, polars or pyarrow"
        raise TypeError(f"tables: found {kind}, {expected}") from error


def read_sources(
    tables: Sequence[Any], map_: TableMap, faults: Faults
) -> tuple[list[Source], list[str]]:
    """Reads tables, and returns them with notes on what was left out."""
    sources = []
    notes = []
    for grid in all_grids(tables, map_, faults):
        source = source_of(grid, map_, faults)
        if source is None:
            continue
        _fill_down(source, map_)
        source.signs = _signs(source, map_, faults)
        skipped = _without_skipped(source, map_, faults)
        if skipped:
            notes.append(f"{grid.origin.name}: {counted(skipped, 'row')} left out by [[skip]]")
        _find_totals(source, faults)
        if not source.rows:
            text = "found no row below the names, expected a row for each stride"
            faults.add(source.origin.error(None, None, text))
        sources.append(source)
    if not sources and not faults:
        faults.add(InputError("tables", None, None, None, "found none, expected at least one"))
    return sources, notes
