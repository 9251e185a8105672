"""Walks that are folders: given by path, by pattern, or by a manifest."""

from __future__ import annotations

import glob
import hashlib
import os
import re
from collections import Counter
from collections.abc import Callable, Iterable, Iterator, Sequence
from pathlib import Path
from typing import Any

import pyarrow as pa
import pyarrow.csv
import pyarrow.parquet

from .. import _core
from .._errors import WalkError, input_errors
from ._batch import Made, Order, computed
from ._options import Options
from ._source import Task
from ._tables import check_key_names

_TABLES = ("recording.csv", "foot_cycles.csv")
# Nearly the name of the table that every walk has: reading such a folder says what is wrong.
_NEARLY_A_TABLE = re.compile(r"foot[ _-]*cycles?(\.(csv|txt|tsv|part))*", re.IGNORECASE)


def _is_walk(files: Iterable[str]) -> bool:
    return any(
        name.removesuffix(".part") in _TABLES or _NEARLY_A_TABLE.fullmatch(name) for name in files
    )


def walk_folders_in(folder: str) -> Iterator[str]:
    """Every walk folder in a folder and below, sorted by path; the folder if there is none."""
    found = False
    # A folder that cannot be looked into counts, so that no walk is passed over without a word.
    unreadable: list[str] = []
    for path, below, files in os.walk(folder, onerror=lambda e: unreadable.append(e.filename)):
        below.sort()
        for walk in [*unreadable, *([path] if _is_walk(files) else [])]:
            found = True
            yield walk
        unreadable.clear()
    yield from unreadable or ([] if found else [folder])


def _expanded(given: str) -> list[str]:
    """The folders that an argument means: itself, or what matches the pattern that it is."""
    if os.path.lexists(given) or not glob.has_magic(given):
        return [given]
    matching = sorted(glob.glob(given, recursive=True), key=lambda path: path.split(os.sep))
    folders = [path for path in matching if os.path.isdir(path)]
    if not folders:
        raise ValueError(f"walks: found no folder that matches {given!r}, expected at least one")
    return folders


def _absolute(path: str) -> str:
    return os.path.normpath(os.path.abspath(path))


def _utf8(text: str) -> str:
    """The text, with what is no character replaced."""
    return text.encode("utf-8", "replace").decode()


class FolderWalks:
    """Walk folders, with a row of further columns for each."""

    def __init__(self, names: list[str], paths: list[str], keys: pa.Table, options: Options):
        """Takes names and absolute paths, and keeps them as few bytes."""
        self._names = pa.array(map(_utf8, names), pa.string())
        self._paths = pa.array(map(os.fsencode, paths), pa.binary())
        self._keys = keys
        self._options = options
        self.keys: pa.Schema = keys.schema

    def __len__(self) -> int:
        """How many folders there are."""
        return len(self._names)

    def fingerprint(self) -> str:
        """Of the names, paths, and further columns."""
        digest = hashlib.blake2b(digest_size=16)
        for first in range(0, len(self), 1000):
            rows = slice(first, first + 1000)
            digest.update(repr(self._names[rows].to_pylist()).encode())
            digest.update(repr(self._paths[rows].to_pylist()).encode())
            digest.update(repr(self._keys.slice(first, 1000).to_pylist()).encode())
        return digest.hexdigest()

    def task(self, first: int, stop: int) -> Task:
        """The batch of the folders from one place up to another."""
        rows = pa.array(range(first, stop), pa.int64())
        # Taken, not sliced: a slice would be sent to a worker with all that it is a slice of.
        names = self._names[first:stop].to_pylist()
        order = Order(first, names, self._keys.take(rows), self._options, _core.version)
        return Task(compute_folders, order, (self._paths[first:stop].to_pylist(),))

    def named(self, order: Order) -> Order:
        """As it is."""
        return order

    def piece(self, number: int) -> tuple[Callable[..., Any], tuple[Any, ...]]:
        """There are none: a worker reads the folders itself."""
        raise IndexError(number)


def compute_folders(order: Order, paths: list[bytes]) -> bytes:
    """Reads and computes a batch of walk folders."""
    options = order.options

    def make(place: int) -> Made:
        walk, errors, warned = _core.read_walk(
            os.fsdecode(paths[place]), options.foot, options.ignore_columns, options.max_strides
        )
        if walk is None:
            raise WalkError(input_errors(errors, of_files=True))
        return walk, warned

    return computed(order, make, of_files=True)


def _each_once(paths: Iterable[str]) -> Iterator[str]:
    seen = set()
    for path in paths:
        if (absolute := _absolute(path)) not in seen:
            seen.add(absolute)
            yield path


def folders(given: Sequence[str], options: Options) -> FolderWalks:
    """The walk folders that paths and patterns mean; one that is given twice counts once.

    A walk is called by its folder's name, and by its path where another one has that name.
    """
    meant = (folder for one in given for folder in _expanded(one))
    paths = list(_each_once(path for folder in meant for path in walk_folders_in(folder)))
    names = [os.path.basename(_absolute(path)) for path in paths]
    counts = Counter(names)
    names = [
        name if counts[name] == 1 else os.path.normpath(path)
        for name, path in zip(names, paths, strict=True)
    ]
    no_keys = pa.table({"walk": pa.array(names, pa.string())}).select([])
    return FolderWalks(names, [_absolute(path) for path in paths], no_keys, options)


def _read_manifest(path: Path) -> pa.Table:
    """A manifest; what stands in the cells of CSV stays as it is, 007 among it."""
    try:
        if path.suffix.lower() in (".parquet", ".pq"):
            return pa.parquet.read_table(path)
        with path.open("rb") as file:
            head = pa.csv.open_csv(file, parse_options=pa.csv.ParseOptions()).schema.names
        types = {name: pa.string() for name in head}
        return pa.csv.read_csv(
            path,
            convert_options=pa.csv.ConvertOptions(
                column_types=types, null_values=[""], strings_can_be_null=True
            ),
        )
    except pa.ArrowException as error:
        raise ValueError(f"{path}: {error}") from error


def _is_text(place: str) -> bool:
    return place.lower().endswith(".csv")


def _place_of_row(place: str, row: int) -> str:
    """A row as messages name it: by its line in a file of text, counted from 1."""
    return f"{place}:{row + 2}: " if _is_text(place) else f"{place}, row {row}, "


def _row_in_words(place: str, row: int) -> str:
    return f"line {row + 2}" if _is_text(place) else f"row {row}"


def manifest(table: pa.Table, place: str, beside: str, options: Options) -> FolderWalks:
    """The walks of a manifest: its column ``walk`` has the paths, which may be relative.

    Args:
        table: the manifest.
        place: what it is called in messages.
        beside: the folder from which relative paths lead.
        options: the options of the study.
    """
    if len(set(table.column_names)) != len(table.column_names):
        raise ValueError(f"{place}: found two columns of the same name, expected each once")
    if "walk" not in table.column_names:
        found = ", ".join(table.column_names)
        raise ValueError(
            f"{place}: found no column walk among {found}, expected one with the folders' paths"
        )
    given = table["walk"].cast(pa.string()).to_pylist()
    for row, path in enumerate(given):
        if not path:
            where = _place_of_row(place, row)
            raise ValueError(f"{where}column walk: found nothing, expected a path")
    keys = table.drop_columns(["walk"]).combine_chunks()
    check_key_names(keys.column_names, options.statistics, place)
    paths = [_absolute(os.path.join(beside, path)) for path in given]
    first_row: dict[str, int] = {}
    for row, path in enumerate(paths):
        before = first_row.setdefault(path, row)
        if before != row:
            raise ValueError(
                f"{_place_of_row(place, row)}column walk: found {given[row]!r}, which "
                f"{_row_in_words(place, before)} has too, expected each walk once"
            )
    return FolderWalks(given, paths, keys.replace_schema_metadata(None), options)


def manifest_file(path: Path, options: Options) -> FolderWalks:
    """The walks of a manifest file."""
    return manifest(_read_manifest(path), str(path), str(path.parent), options)
