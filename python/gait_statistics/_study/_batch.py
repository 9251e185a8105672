"""Computing a batch of walks: what runs in a thread or on a worker, and the part that it gives."""

from __future__ import annotations

import itertools
from collections.abc import Callable, Sequence
from dataclasses import dataclass, field
from typing import Any

import numpy as np
import pyarrow as pa

from .. import _core
from .._errors import InputError, WalkError, input_errors
from .._tables import ColumnOut
from ._options import Options
from ._tables import POSITION, TABLES, columns_of_table, fields_of, pairs

Made = tuple[_core.Walk, "list[_core.RawError]"]
"""A walk, and the warnings of reading it."""


@dataclass(frozen=True)
class Order:
    """What a batch is to do.

    Attributes:
        first: the place in the input of its first walk.
        names: what its walks are called.
        keys: a row for each walk: the columns that go into every row of the tables.
        options: the options of the study.
        version: the version of the library that the study is made with.
    """

    first: int
    names: list[str]
    keys: pa.Table
    options: Options
    version: str


@dataclass
class _Rows:
    """The rows of a table: of which walk they are, and their columns, walk by walk."""

    positions: list[int] = field(default_factory=list)
    columns: list[list[ColumnOut]] = field(default_factory=list)

    def add(self, position: int, columns: list[ColumnOut]) -> None:
        self.positions.append(position)
        # The first column has the walk's name, which the study gives.
        self.columns.append(columns[1:])

    def each_position(self) -> Any:
        counts = [len(columns[0][2]) for columns in self.columns]
        return np.repeat(np.array(self.positions, dtype=np.int64), counts)

    def arrays(self, table: str) -> list[pa.Array]:
        arrays = []
        for place, (_, kind) in enumerate(columns_of_table(table)):
            values = [columns[place][2] for columns in self.columns]
            if kind == "text":
                arrays.append(pa.array(list(itertools.chain(*values)), pa.string()))
            elif not values:
                arrays.append(pa.array([], fields_of(table, ())[place].type))
            else:
                there = [columns[place][3] for columns in self.columns]
                absent = None if there[0] is None else ~np.concatenate(there)
                arrays.append(pa.array(np.concatenate(values), mask=absent))
        return arrays


def _wide_arrays(parameters: _Rows, statistics: tuple[str, ...]) -> list[pa.Array]:
    """A row for each walk of what the long table has a row for each parameter and side."""
    place_of_pair = {pair: place for place, pair in enumerate(pairs())}
    place_of_name = {name: place for place, (name, _) in enumerate(columns_of_table("parameters"))}
    shape = (len(parameters.columns), len(place_of_pair))
    values = {s: np.zeros(shape, np.int64 if s == "n" else np.float64) for s in statistics}
    absent = {s: np.ones(shape, bool) for s in statistics}
    analysed = []
    for row, columns in enumerate(parameters.columns):
        names, sides = (columns[place_of_name[name]][2] for name in ("parameter", "side"))
        where = [place_of_pair[pair] for pair in zip(names, sides, strict=True)]
        analysed.append(columns[place_of_name["analysed"]][2][0])
        for statistic in statistics:
            _, _, found, is_there = columns[place_of_name[statistic]]
            values[statistic][row, where] = found
            absent[statistic][row, where] = ~is_there
    arrays = [pa.array(analysed, pa.string())]
    for place in place_of_pair.values():
        arrays += [pa.array(values[s][:, place], mask=absent[s][:, place]) for s in statistics]
    return arrays


def _table(
    order: Order, name: str, positions: Sequence[int] | Any, arrays: list[pa.Array]
) -> pa.Table:
    """A table with the walk and its keys in front, and the walk's place behind."""
    positions = np.asarray(positions, dtype=np.int64)
    rows = positions - order.first
    walk = pa.array(order.names, pa.string()).take(pa.array(rows))
    keys = order.keys.take(pa.array(rows))
    names = ["walk", *order.keys.column_names]
    names += [field.name for field in fields_of(name, order.options.statistics)] + [POSITION]
    return pa.table([walk, *keys.columns, *arrays, pa.array(positions)], names=names)


def _checked_analysis(made: Made, options: Options, of_files: bool) -> _core.Analysis:
    walk, of_reading = made
    analysis, errors, warned = _core.analyse(
        walk, options.foot, options.settings_value, options.without_checks, of_reading
    )
    if analysis is None:
        raise WalkError(input_errors(errors, of_files=of_files))
    if options.strict:
        found = list(input_errors([*of_reading, *warned], of_files=of_files))
        for finding in analysis.findings():
            text = str(finding["sentence"])
            found.append(InputError(str(finding["check"]), None, None, None, text))
        if found:
            raise WalkError(found)
    return analysis


def _messages(error: Exception) -> list[str]:
    if isinstance(error, WalkError):
        return [str(one) for one in error.errors]
    return [f"{type(error).__name__}: {error}"]


def computed(order: Order, make: Callable[[int], Made], *, of_files: bool) -> bytes:
    """Computes the walks of a batch. One that cannot be had leaves its messages, and no more.

    Args:
        order: what to do.
        make: reads or makes the walk of a place in the batch, and raises WalkError.
        of_files: whether walks come from files, for the messages.
    """
    check_version(order.version)
    parameters, walks = _Rows(), _Rows()
    positions: list[int] = []
    messages: list[str] = []
    for place in range(len(order.names)):
        try:
            analysis = _checked_analysis(make(place), order.options, of_files)
            columns = {name: analysis.columns(name) for name in ("parameters", "walks")}
        # One walk must not cost the others, whatever is wrong with it.
        except Exception as error:
            found = _messages(error)
            positions += [order.first + place] * len(found)
            messages += [message.encode("utf-8", "replace").decode() for message in found]
        else:
            parameters.add(order.first + place, columns["parameters"])
            walks.add(order.first + place, columns["walks"])
    statistics = order.options.statistics
    of_table = {
        "parameters": (parameters.each_position(), parameters.arrays("parameters")),
        "parameters_wide": (walks.positions, _wide_arrays(parameters, statistics)),
        "walks": (walks.positions, walks.arrays("walks")),
        "errors": (positions, [pa.array(messages, pa.string())]),
    }
    return _as_part([_table(order, name, *of_table[name]) for name in TABLES])


def left_out(order: Order, message: str) -> bytes:
    """The part of a batch none of whose walks can be had."""

    def make(_: int) -> Made:
        raise WalkError([InputError("walk", None, None, None, message)])

    return computed(order, make, of_files=False)


def check_version(version: str) -> None:
    """Raises RuntimeError where the worker has another version of the library than the study."""
    if version != _core.version:
        raise RuntimeError(
            f"found gait_statistics {_core.version} on a worker, expected {version}, which the "
            "study is made with: install the same version everywhere"
        )


def _as_part(tables: list[pa.Table]) -> bytes:
    """Tables, one after the other, as one sequence of bytes."""
    sink = pa.BufferOutputStream()
    options = pa.ipc.IpcWriteOptions(compression="zstd")
    for table in tables:
        with pa.ipc.new_stream(sink, table.schema, options=options) as writer:
            writer.write_table(table)
    return bytes(sink.getvalue())


def tables_of_part(source: Any) -> dict[str, pa.Table]:
    """The tables of a part, by name."""
    return {name: pa.ipc.open_stream(source).read_all() for name in TABLES}
