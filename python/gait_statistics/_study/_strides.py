"""Walks that are rows of one table of strides: a frame, Parquet files, or a Dask frame."""

from __future__ import annotations

import hashlib
import re
from collections import Counter
from collections.abc import Callable, Sequence
from dataclasses import dataclass, replace
from pathlib import Path
from typing import Any

import narwhals as nw
import numpy as np
import pandas as pd
import pyarrow as pa
import pyarrow.parquet
from numpy.typing import NDArray

from .. import _core
from .._errors import InputError, WalkError, input_errors
from .._tables import ColumnIn, _values_of, again_as_input
from .._walk import _cell_of, pairs_of
from ._batch import Made, Order, computed
from ._options import Options
from ._source import Task
from ._tables import check_key_names

RATE = "sampling_rate"
# As much as Dask sends in one go without a warning.
_ROWS_OF_A_PIECE = 1 << 14

_COLUMNS_OF_PAIRS = ("foot", "index", "first_sample", "last_sample", "gct")
_NAMELESS_INDEX = re.compile(r"__index_level_\d+__")

Indices = NDArray[np.int64]
Load = tuple[Callable[..., Any], tuple[Any, ...]]


# ---- Pieces of the table


@dataclass(frozen=True)
class _Piece:
    """A part of the table, in its order: how to load it, whole or the columns of ``by`` alone."""

    load: Load
    load_by: Load


def _plain(column: pa.ChunkedArray) -> pa.ChunkedArray:
    """A column whose texts are texts of one type, categories among them."""
    if pa.types.is_dictionary(column.type):
        column = column.cast(column.type.value_type)
    is_text = pa.types.is_large_string(column.type) or str(column.type) == "string_view"
    return column.cast(pa.string()) if is_text else column


def as_arrow(frame: Any) -> pa.Table:
    """A frame of any library as a table; the nameless index of pandas has no part in it."""
    table = frame if isinstance(frame, pa.Table) else nw.from_native(frame).to_arrow()
    names = [name for name in table.column_names if not _NAMELESS_INDEX.fullmatch(name)]
    return pa.table([_plain(table[name]) for name in names], names=names).combine_chunks()


def _row_group(path: str, number: int, columns: list[str] | None) -> pa.Table:
    with pyarrow.parquet.ParquetFile(path) as file:
        return as_arrow(file.read_row_group(number, columns))


def _itself(table: pa.Table) -> pa.Table:
    return table


def _of_dask(delayed: Any) -> Any:
    """Computes a part of a Dask frame here, where there is no cluster."""
    return delayed.compute(scheduler="synchronous")


def _parquet_pieces(files: list[Path], by: list[str]) -> tuple[list[_Piece], pa.Schema]:
    pieces = []
    schema: pa.Schema | None = None
    for path in files:
        with pyarrow.parquet.ParquetFile(path) as file:
            if schema is None:
                schema = file.schema_arrow.remove_metadata()
            elif not schema.equals(file.schema_arrow.remove_metadata()):
                raise ValueError(
                    f"{path}: found other columns or types than in {files[0]}, expected the same"
                )
            for number in range(file.num_row_groups):
                load: Load = (_row_group, (str(path), number, None))
                pieces.append(_Piece(load, (_row_group, (str(path), number, by))))
    assert schema is not None
    return pieces, schema


def _frame_pieces(table: pa.Table, by: list[str]) -> list[_Piece]:
    pieces = []
    for first in range(0, len(table), _ROWS_OF_A_PIECE):
        rows = table.slice(first, _ROWS_OF_A_PIECE)
        # Taken: a slice would be sent to a worker with all that it is a slice of.
        rows = rows.take(pa.array(np.arange(len(rows))))
        pieces.append(_Piece((_itself, (rows,)), (_itself, (rows.select(by),))))
    return pieces


def is_dask_frame(frame: Any) -> bool:
    """Whether a table is a frame of Dask, which need not be installed."""
    module = type(frame).__module__
    return module.split(".")[0] in ("dask", "dask_expr") and hasattr(frame, "to_delayed")


def _dask_pieces(frame: Any, by: list[str]) -> list[_Piece]:
    both = zip(frame.to_delayed(), frame[by].to_delayed(), strict=True)
    return [_Piece((_of_dask, (whole,)), (_of_dask, (keys,))) for whole, keys in both]


# ---- Which rows are a walk


@dataclass(frozen=True)
class Runs:
    """Rows that stand together and have the same keys: where they begin, and the keys there."""

    rows: int
    starts: Indices
    keys: pa.Table


def _codes(column: pa.ChunkedArray) -> Indices:
    """A number for each value of a column, another for what is missing."""
    encoded = column.combine_chunks()
    if isinstance(encoded, pa.ChunkedArray):
        encoded = pa.concat_arrays(encoded.chunks) if encoded.num_chunks else pa.array([])
    codes: Indices = pd.factorize(np.asarray(encoded.to_pandas()), use_na_sentinel=True)[0]
    return codes.astype(np.int64)


def runs_of(frame: Any, by: list[str]) -> Runs:
    """The runs of a piece."""
    table = as_arrow(frame).select(by)
    changes = np.zeros(len(table), dtype=bool)
    changes[:1] = True
    for column in table.columns:
        codes = _codes(column)
        changes[1:] |= codes[1:] != codes[:-1]
    starts = np.flatnonzero(changes)
    return Runs(len(table), starts, table.take(pa.array(starts)))


def _digests(keys: pa.Table) -> list[bytes]:
    """Sixteen bytes for each row of keys."""
    rows = zip(*(column.to_pylist() for column in keys.columns), strict=True)
    return [hashlib.blake2b(repr(row).encode(), digest_size=16).digest() for row in rows]


@dataclass(frozen=True)
class _Plan:
    """Where every piece and every walk begins, in rows of the whole table; the end behind them."""

    pieces: Indices
    walks: Indices
    digests: NDArray[Any]
    key_schema: pa.Schema


def _plan(runs: list[Runs]) -> _Plan:
    """Joins the runs of all pieces; a walk may reach over the edge of one."""
    pieces = [0]
    walks: list[Indices] = []
    digests: list[bytes] = []
    last = b""
    for run in runs:
        of_run = _digests(run.keys)
        joined = 1 if of_run and of_run[0] == last and walks else 0
        walks.append(run.starts[joined:] + pieces[-1])
        digests += of_run[joined:]
        last = of_run[-1] if of_run else last
        pieces.append(pieces[-1] + run.rows)
    walks.append(np.array([pieces[-1]]))
    all_digests = np.frombuffer(b"".join(digests), dtype="V16")
    return _Plan(np.array(pieces), np.concatenate(walks), all_digests, runs[0].keys.schema)


def _check_together(plan: _Plan, by: list[str], place: str) -> None:
    """Raises ValueError where the rows of a walk stand in two places."""
    order = np.argsort(plan.digests, kind="stable")
    in_order = plan.digests[order]
    again = np.flatnonzero(in_order[1:] == in_order[:-1])
    if len(again):
        first, second = (int(plan.walks[order[again[0] + more]]) for more in (0, 1))
        raise ValueError(
            f"{place}, row {second}: found a walk that has rows from row {first} on, with others "
            f"between them, expected the rows of a walk together: sort the table by {', '.join(by)}"
        )


def _together(table: pa.Table, by: list[str]) -> tuple[pa.Table, Indices | None]:
    """The rows of a table, each walk's together; and which rows these were, if they moved."""
    codes = pd.DataFrame({name: _codes(table[name]) for name in by})
    walk: Indices = codes.groupby(by, sort=False).ngroup().to_numpy()
    if (walk[1:] >= walk[:-1]).all():
        return table, None
    order: Indices = np.argsort(walk, kind="stable")
    return table.take(pa.array(order)), order


# ---- The walks


def _checked_by(by: str | Sequence[str], schema: pa.Schema, place: str) -> list[str]:
    names = [by] if isinstance(by, str) else list(by)
    if not names:
        raise ValueError("by: found no column, expected those that name the walk")
    for name in names:
        if name not in schema.names:
            found = ", ".join(schema.names)
            raise ValueError(f"by: found {name!r}, expected columns of {place}: {found}")
    if len(set(names)) != len(names):
        raise ValueError(f"by: found {names!r}, expected each column once")
    return names


def _check_columns(schema: pa.Schema, others: set[str], ignored: Sequence[str], place: str) -> None:
    """Raises ValueError where a column is unknown, once for the whole table."""
    sound = {"foot": "left", "index": "0", "first_sample": "0", "last_sample": "1"}
    row: list[ColumnIn] = [
        (name, [sound.get(name.lower(), "")]) for name in schema.names if name not in others
    ]
    _, errors, _ = _core.make_walk("", "1", [], row, None, None, ignored)
    if errors:
        found = [replace(e, table=place, row=None) for e in input_errors(errors, of_files=False)]
        raise ValueError("\n".join(map(str, found)))


class StrideWalks:
    """The walks of a table of strides."""

    def __init__(
        self,
        pieces: list[_Piece],
        plan: _Plan,
        by: list[str],
        rate: float | None,
        options: Options,
        *,
        digest: str,
        moved: Indices | None = None,
    ) -> None:
        """Takes what the table was found to be."""
        self._pieces = pieces
        self._plan = plan
        self._by = by
        self._rate = rate
        self._options = options
        self._digest = digest
        self._moved = moved
        self.keys: pa.Schema = pa.schema([f for f in plan.key_schema if f.name != "walk"])

    def __len__(self) -> int:
        """How many walks there are."""
        return len(self._plan.walks) - 1

    def fingerprint(self) -> str:
        """Of the walks, the table, and the sampling rate."""
        digest = hashlib.blake2b(self._plan.digests.tobytes(), digest_size=16)
        digest.update(self._plan.walks.tobytes())
        digest.update(f"{self._by} {self._rate} {self._digest}".encode())
        return digest.hexdigest()

    def task(self, first: int, stop: int) -> Task:
        """The batch of the walks from one place up to another."""
        starts = self._plan.walks[first : stop + 1]
        low, high = int(starts[0]), int(starts[-1])
        begin = int(np.searchsorted(self._plan.pieces, low, side="right")) - 1
        end = int(np.searchsorted(self._plan.pieces, high, side="left"))
        moved = None if self._moved is None else self._moved[low:high]
        offset = low - int(self._plan.pieces[begin])
        # The names and the keys of the walks are in the rows, which the worker has.
        order = Order(first, [""] * (stop - first), None, self._options, _core.version)
        arguments = (starts - low, offset, low, moved, self._by, self._rate)
        return Task(compute_strides, order, arguments, tuple(range(begin, end)))

    def named(self, order: Order) -> Order:
        """Looks the keys of the walks up in the table."""
        starts = self._plan.walks[order.first : order.first + len(order.names)]
        pieces = np.searchsorted(self._plan.pieces, starts, side="right") - 1
        rows = []
        for number in np.unique(pieces):
            run, arguments = self._pieces[number].load_by
            first = starts[pieces == number] - self._plan.pieces[number]
            rows.append(as_arrow(run(*arguments)).select(self._by).take(pa.array(first)))
        return _with_keys(order, pa.concat_tables(rows))

    def piece(self, number: int) -> Load:
        """What loads a piece of the table."""
        return self._pieces[number].load


class _Columns:
    """The columns of a batch, cut into walks. A walk's do not depend on the batch it is in."""

    def __init__(self, table: pa.Table):
        self._whole: list[ColumnIn | None] = []
        self._table = table
        for name, column in zip(table.column_names, table.columns, strict=True):
            # Whole numbers of which some are missing become numbers with decimals, in that walk.
            alike = column.null_count == 0 or not pa.types.is_integer(column.type)
            self._whole.append((name, _values_of(column, "pyarrow")) if alike else None)

    def of_rows(self, first: int, stop: int) -> list[ColumnIn]:
        columns: list[ColumnIn] = []
        for place, whole in enumerate(self._whole):
            if whole is None:
                rows = self._table.column(place).slice(first, stop - first)
                columns.append((self._table.column_names[place], _values_of(rows, "pyarrow")))
            else:
                columns.append((whole[0], whole[1][first:stop]))
        return columns


def _strides_of_feet(columns: list[ColumnIn]) -> Counter[str]:
    """How many strides each foot has: "l" and "r"."""
    feet = next((values for name, values in columns if name.lower() == "foot"), [])
    counts: Counter[str] = Counter()
    for foot, count in Counter(feet).items():
        counts[str(foot).strip().lower()[:1]] += count
    return counts


def _check_length(strides: Counter[str], most: int | None) -> None:
    longest = max(strides.values(), default=0)
    if most is not None and longest > most:
        text = f"found {longest} strides of a foot, expected at most {most}, the limit that was set"
        raise WalkError([InputError("strides", None, None, None, text)])


def _pairs(columns: list[ColumnIn]) -> list[ColumnIn] | None:
    """The cycles of both feet; None where they cannot be had, and the strides are to blame."""
    try:
        return again_as_input(pairs_of([c for c in columns if c[0].lower() in _COLUMNS_OF_PAIRS]))
    except WalkError:
        return None


def _in_the_table(error: InputError, rows: Indices) -> InputError:
    """The error with the row of the whole table in place of the walk's."""
    return error if error.row is None else replace(error, row=int(rows[error.row]))


def _one_rate(values: list[Any]) -> Any:
    found = set(values)
    if len(found) != 1 or None in found:
        shown = ", ".join(sorted(map(str, found)))
        text = f"found {shown}, expected one rate for all strides of a walk"
        raise WalkError([InputError("strides", None, None, RATE, text)])
    return found.pop()


def _with_keys(order: Order, keys: pa.Table) -> Order:
    """The order with the names of its walks, which are made of their keys."""
    rows = zip(*(column.to_pylist() for column in keys.columns), strict=True)
    names = ["/".join("" if value is None else str(value) for value in row) for row in rows]
    others = keys.drop_columns(["walk"]) if "walk" in keys.column_names else keys
    return replace(order, names=names, keys=others)


def compute_strides(
    order: Order,
    starts: Indices,
    offset: int,
    low: int,
    moved: Indices | None,
    by: list[str],
    rate: float | None,
    *pieces: Any,
) -> bytes:
    """Makes and computes the walks of a batch.

    Args:
        order: which walks; their names and keys are found here.
        starts: where each walk begins in the batch's rows, and the end.
        offset: where the batch's rows begin in the first piece.
        low: where they begin in the whole table.
        moved: which rows of the caller's table they are, where rows were put together.
        by: the columns that name the walk.
        rate: the sampling rate (Hz); None: the column has it.
        pieces: the pieces of the table.
    """
    table = pa.concat_tables([as_arrow(piece) for piece in pieces])
    table = table.slice(offset, int(starts[-1])).combine_chunks()
    keys = table.select(by).take(pa.array(starts[:-1]))
    order = _with_keys(order, keys)
    rates = table[RATE].to_pylist() if rate is None else []
    rows = np.arange(low, low + len(table)) if moved is None else moved
    columns = _Columns(table.drop_columns([*by, *([RATE] if rate is None else [])]))
    options = order.options

    def make(place: int) -> Made:
        first, stop = int(starts[place]), int(starts[place + 1])
        missing = [name for name in by if not keys[name][place].is_valid]
        if missing:
            text = "found nothing, expected what names the walk"
            row = int(rows[first])
            raise WalkError([InputError("strides", row, None, n, text) for n in missing])
        hertz = _cell_of(_one_rate(rates[first:stop]) if rate is None else rate)
        return _made(columns.of_rows(first, stop), hertz, order.names[place], rows[first:stop])

    def _made(strides: list[ColumnIn], hertz: str, name: str, rows: Indices) -> Made:
        ignored = options.ignore_columns
        feet = None
        try:
            counts = _strides_of_feet(strides)
            _check_length(counts, options.max_strides)
            if options.foot is None and {"l", "r"} <= counts.keys():
                feet = _pairs(strides)
            walk, errors, warned = _core.make_walk(name, hertz, [], strides, feet, None, ignored)
            if walk is None:
                raise WalkError(input_errors(errors, of_files=False))
        except WalkError as error:
            raise WalkError([_in_the_table(one, rows) for one in error.errors]) from None
        return walk, warned

    return computed(order, make, of_files=False)


# ---- What a table may be


def _runs_here(pieces: list[_Piece], by: list[str]) -> list[Runs]:
    return [runs_of(run(*arguments), by) for run, arguments in (p.load_by for p in pieces)]


def _content_of(table: pa.Table) -> str:
    """A text that is another one for a table with other content."""
    digest = hashlib.blake2b(str(table.schema.remove_metadata()).encode(), digest_size=16)
    for first in range(0, len(table), _ROWS_OF_A_PIECE):
        rows = table.slice(first, _ROWS_OF_A_PIECE)
        sink = pa.BufferOutputStream()
        with pa.ipc.new_stream(sink, table.schema) as writer:
            writer.write_table(rows)
        digest.update(sink.getvalue())
    return digest.hexdigest()


def _checked(
    schema: pa.Schema, by: str | Sequence[str], rate: float | None, options: Options, place: str
) -> list[str]:
    """The columns that name the walk, if the table can be one of strides."""
    names = _checked_by(by, schema, place)
    check_key_names([name for name in names if name != "walk"], options.statistics, place)
    if rate is None and RATE not in schema.names:
        raise ValueError(
            f"sampling_rate: found none, and no column {RATE} in {place}, expected samples per "
            "second (Hz)"
        )
    if rate is not None and RATE in schema.names:
        raise ValueError(
            f"sampling_rate: found {rate}, and a column {RATE} in {place}, expected one"
        )
    _check_columns(schema, {*names, RATE}, options.ignore_columns, place)
    return names


def _has_rows(plan: _Plan, place: str) -> _Plan:
    if len(plan.walks) < 2:
        raise ValueError(f"{place}: found no rows, expected strides")
    return plan


def stride_frame(
    frame: Any, by: str | Sequence[str], rate: float | None, options: Options
) -> StrideWalks:
    """The walks of a frame in memory, in the order in which each is first named."""
    table = as_arrow(frame)
    names = _checked(table.schema, by, rate, options, "the table of strides")
    table, moved = _together(table, names)
    pieces = _frame_pieces(table, names)
    if not pieces:
        raise ValueError("the table of strides: found no rows, expected strides")
    plan = _plan(_runs_here(pieces, names))
    return StrideWalks(pieces, plan, names, rate, options, digest=_content_of(table), moved=moved)


def stride_files(
    path: Path, by: str | Sequence[str], rate: float | None, options: Options
) -> StrideWalks:
    """The walks of a Parquet file, or of the files in a folder in the order of their paths."""
    files = [path] if path.is_file() else sorted(path.rglob("*.parquet"))
    if not files:
        raise ValueError(f"{path}: found no .parquet file, expected a table of strides")
    try:
        first = as_arrow(pyarrow.parquet.ParquetFile(files[0]).schema_arrow.empty_table())
        names = _checked(first.schema, by, rate, options, str(path))
        pieces, _ = _parquet_pieces(files, names)
    except pa.ArrowException as error:
        raise ValueError(f"{path}: {error}") from error
    plan = _has_rows(_plan(_runs_here(pieces, names)), str(path))
    _check_together(plan, names, str(path))
    states = [(str(file.resolve()), file.stat()) for file in files]
    digest = repr([(name, state.st_size, state.st_mtime_ns) for name, state in states])
    return StrideWalks(pieces, plan, names, rate, options, digest=digest)


def stride_dask(
    frame: Any,
    by: str | Sequence[str],
    rate: float | None,
    options: Options,
    run_all: Callable[..., list[Runs]],
) -> StrideWalks:
    """The walks of a Dask frame. ``run_all`` computes a function of each piece where they are."""
    place = "the table of strides"
    schema = as_arrow(frame._meta).schema
    names = _checked(schema, by, rate, options, place)
    pieces = _dask_pieces(frame, names)
    plan = _has_rows(_plan(run_all(runs_of, [piece.load_by for piece in pieces], names)), place)
    _check_together(plan, names, place)
    return StrideWalks(pieces, plan, names, rate, options, digest="dask")
