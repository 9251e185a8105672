"""Reading tables as cells: text of any separator, workbooks, Parquet and frames."""

from __future__ import annotations

import csv
import itertools
import json
import os
import re
from collections import Counter
from collections.abc import Iterator, Mapping, Sequence
from dataclasses import dataclass, field, replace
from pathlib import Path
from typing import Any

from ._cells import is_empty
from ._map import FEET, TableMap
from ._places import Faults, Origin, listed, shown

_TEXT = (".csv", ".tsv", ".txt", ".ts", ".dat", ".asc", ".tab", ".text", "")
_WORKBOOKS = (".xlsx", ".xlsm")
_ARROW = (".parquet", ".pq", ".feather")
_JSON = (".jsonl", ".ndjson", ".json")
# What files begin with that are no text: what to call it, and what to do.
_BEGINNINGS = (
    (b"PK\x03\x04", "a workbook or another zip file", "if it is a workbook, name it .xlsx"),
    (b"\xd0\xcf\x11\xe0", "an old workbook (.xls)", "save it as .xlsx or CSV"),
    (b"PAR1", "a Parquet file", "name it .parquet"),
    (b"%PDF", "a PDF", "save the table itself as CSV or .xlsx"),
    (b"\x89PNG", "a picture", "save the table itself as CSV or .xlsx"),
    (b"\xff\xd8\xff", "a picture", "save the table itself as CSV or .xlsx"),
    (b"<table", "a page of HTML", "open it in a spreadsheet and save it as CSV or .xlsx"),
    (b"<html", "a page of HTML", "open it in a spreadsheet and save it as CSV or .xlsx"),
    (b"<!doctype html", "a page of HTML", "open it in a spreadsheet and save it as CSV or .xlsx"),
    (b"[{", "JSON", "name it .json"),
    (b'{"', "JSON", "name it .jsonl if each line is a record, .json otherwise"),
)
# So many files of a folder are named.
_NAMED = 8
_SEPARATORS = {"tab": "\t", "\\t": "\t", "space": " ", " ": " "}


@dataclass
class Grid:
    """The cells of a table as they stand, before its names are known.

    Attributes:
        blanks: the lines that hold nothing.
        separator: what separates the cells of a text; empty where it is none.
    """

    origin: Origin
    rows: list[list[Any]]
    lines: list[int]
    names: list[str] | None = None
    blanks: list[int] = field(default_factory=list)
    separator: str = ""


def plain(name: Any) -> str:
    """A name without its case, and with single blanks."""
    return " ".join(str(name).split()).casefold()


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


def _other_content(path: Path, ending: str) -> str:
    """What a file holds in place of what its ending says; empty where it is that."""
    with path.open("rb") as file:
        data = file.read(512).lstrip(b"\xef\xbb\xbf \t\r\n").lower()
    found = next((one for one in _BEGINNINGS if data.startswith(one[0].lower())), None)
    if ending in _WORKBOOKS and (found is None or not found[1].startswith("a workbook")):
        what, todo = found[1:] if found else ("text", "if it is a table, name it .csv")
        return f"found {what}, expected a workbook, as its ending {ending} says: {todo}"
    if ending in _TEXT and found:
        return f"found {found[1]}, expected text, as its ending {ending} says: {found[2]}"
    return ""


def _separator_of(lines: Sequence[str]) -> str:
    """The separator that most lines have equally often; a blank stands for any white space."""
    signs = ("\t", ";", "|", ",")
    widths = {sign: [len(row) for row in csv.reader(lines, delimiter=sign)] for sign in signs}
    # A sign that makes every line as wide beats one that makes a list of a cell.
    is_even = {sign: len(set(found)) == 1 and found[0] > 1 for sign, found in widths.items()}
    best, most = " ", 0
    for sign, found in widths.items():
        counts = Counter(width for width in found if width > 1)
        if counts and is_even[sign] == any(is_even.values()):
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
    blanks: list[int] = []
    if separator == " ":
        found: Iterator[tuple[list[str], int]] = (
            (line.split(), number) for number, line in enumerate(lines, 1)
        )
    else:
        found = _rows_of(text, separator)
    for row, number in found:
        is_comment = comment and row and row[0].lstrip().startswith(comment)
        if is_comment or (hint and number == 1):
            continue
        if any(cell.strip() for cell in row):
            rows.append([cell.strip() for cell in row])
            numbers.append(number)
        else:
            blanks.append(number)
    return [Grid(origin, rows, numbers, blanks=blanks, separator=str(separator))]


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
        words = [str(word) for foot in FEET for word in map_.words_of(foot)]
        wanted = [name for word in words for name in filled if plain(name) == plain(word)]
        wanted = wanted or [name for name in filled if map_.foot_in(name)]
        wanted = wanted or [str(map_.words_of(foot)[0]) for foot in FEET]
    elif wanted is None:
        wanted = list(filled)
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
        lines = [number + 1 for number in kept]
        blanks = sorted({*range(1, len(rows) + 1)} - {*lines})
        grids.append(Grid(origin, [rows[n] for n in kept], lines, blanks=blanks))
    return grids


def _flat(frame: Any) -> Any:
    """A frame whose columns of records are columns of their values: "left.stride.time"."""
    import pandas as pd

    columns = [frame.iloc[:, place] for place in range(frame.shape[1])]
    if not any(isinstance(cell, dict) for column in columns for cell in column.dropna()[:1]):
        return frame
    parts = []
    for column in columns:
        records = [cell if isinstance(cell, dict) else {} for cell in column]
        flat = pd.json_normalize(records).set_axis(column.index).add_prefix(f"{column.name}.")
        parts.append(flat if any(records) else column)
    return pd.concat(parts, axis=1)


def _frame_grid(frame: Any, origin: Origin) -> Grid:
    """A frame of pandas; names of its index become columns."""
    if any(name is not None for name in frame.index.names):
        frame = frame.reset_index()
    frame = _flat(frame)
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


def _json_frame(path: Path) -> Any:
    """The records of JSON, one in each line or all in a list; what is nested has names with dots.

    Raises:
        ValueError: where it holds something else.
    """
    import pandas as pd

    text = path.read_text(encoding="utf-8-sig")
    records = (
        json.loads(text)
        if path.suffix.casefold() == ".json"
        else [json.loads(line) for line in text.splitlines() if line.strip()]
    )
    if isinstance(records, list) and all(isinstance(one, dict) for one in records):
        return pd.json_normalize(records)
    if isinstance(records, dict) and all(isinstance(one, list) for one in records.values()):
        return pd.DataFrame(records)
    raise ValueError("expected a record for each row, [{...}, {...}], or a list for each column.")


def _folder_in_words(path: Path) -> str:
    """What to say of a folder that is given as a table."""
    endings = (*_TEXT[:-1], *_WORKBOOKS, *_ARROW, *_JSON)
    names = sorted(one.name for one in path.iterdir() if one.suffix.casefold() in endings)
    text = "found a folder, expected a table, which is a file"
    if "foot_cycles.csv" in names:
        return f"{text}: it is a walk folder already: gait-statistics {path}"
    more = f", and {len(names) - _NAMED} more" if len(names) > _NAMED else ""
    have = f": in it are {listed(map(shown, names[:_NAMED]))}{more}" if names else ": none is in it"
    return text + have


def _grids_of_file(path: Path, map_: TableMap, faults: Faults) -> list[Grid]:
    import pandas as pd

    ending = path.suffix.casefold()
    origin = Origin(path.name, ending not in (*_WORKBOOKS, *_ARROW, *_JSON), path.stem)
    if path.is_dir():
        faults.add(origin.error(None, None, _folder_in_words(path)))
        return []
    if ending == ".toml":
        text = f"found a map, expected a table: a map stands after --map: --map {path.name}"
        faults.add(origin.error(None, None, text))
        return []
    try:
        other = _other_content(path, ending) if path.is_file() else ""
        if other:
            faults.add(origin.error(None, None, other))
            return []
        if ending in _WORKBOOKS:
            return _workbook_grids(path, map_, faults)
        if ending in _ARROW:
            read = pd.read_feather if ending == ".feather" else pd.read_parquet
            return [_frame_grid(read(path), origin)]
        if ending in _JSON:
            return [_frame_grid(_json_frame(path), origin)]
        if ending in _TEXT:
            return _text_grid(path, origin, map_, faults)
        text = f'found a file that ends in "{path.suffix}", expected one of: '
        text += (
            listed([*_TEXT[:4], *_WORKBOOKS, *_ARROW, *_JSON]) + ": save the table as one of these"
        )
    except ImportError:
        reader = "openpyxl" if ending in _WORKBOOKS else "pyarrow"
        text = f"cannot be read without {reader}: pip install 'gait-statistics[import]'"
    except OSError as error:
        text = f"cannot be read: {error.strerror or error}"
    except Exception as error:
        # A reader of pandas fails with errors of the libraries below it.
        what = str(error).splitlines()[0] if str(error) else type(error).__name__
        text = f"cannot be read as a {ending} file: {what} Save the table as CSV or .xlsx"
    faults.add(origin.error(None, None, text))
    return []


def turned(grid: Grid) -> Grid:
    """A table with a column for each stride, put upright; its rows are the columns' numbers."""
    if grid.names is not None:
        grid.rows.insert(0, list(grid.names))
    rows = [list(row) for row in itertools.zip_longest(*grid.rows)]
    origin = replace(grid.origin, name=f"{grid.origin.name}, turned", is_text=False)
    kept = [number for number, row in enumerate(rows) if not all(map(is_empty, row))]
    return Grid(origin, [rows[n] for n in kept], [number + 1 for number in kept])


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
