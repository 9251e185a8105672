"""The final tables out of the parts, a thousand walks at a time."""

from __future__ import annotations

import os
from collections.abc import Callable, Iterator
from concurrent.futures import ThreadPoolExecutor
from contextlib import ExitStack
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

import numpy as np
import pyarrow as pa
import pyarrow.csv
import pyarrow.parquet

from ._batch import tables_of_part
from ._options import Options
from ._tables import POSITION, TABLES, schema_of
from ._work import Work

WALKS_OF_A_GROUP = 1000
_SHOWN = 3

Tables = dict[str, pa.Table]


def _split(tables: Tables, position: int) -> tuple[Tables, Tables]:
    """The rows of the walks before a place in the input, and the others."""
    head, rest = {}, {}
    for name, table in tables.items():
        row = int(np.searchsorted(table[POSITION].to_numpy(), position))
        head[name], rest[name] = table.slice(0, row), table.slice(row)
    return head, rest


def _joined(pending: list[Tables]) -> Tables:
    """The tables of all, which are given up: one group of walks is held at a time."""
    joined = {
        name: pa.concat_tables([tables[name] for tables in pending]).combine_chunks()
        for name in TABLES
    }
    pending.clear()
    return joined


def _groups(work: Work, read: Callable[[int], object]) -> Iterator[Tables]:
    """The rows of a thousand walks at a time, however the work was cut."""
    pending: list[Tables] = []
    end = WALKS_OF_A_GROUP
    for first, stop, path in work.parts():
        with pa.OSFile(os.fspath(path)) as file:
            tables = tables_of_part(file)
        read(stop - first)
        while stop >= end:
            head, tables = _split(tables, end)
            pending.append(head)
            yield _joined(pending)
            end += WALKS_OF_A_GROUP
        pending.append(tables)
    if pending:
        yield _joined(pending)


class _Parquet:
    """Writes a group of rows for each group of walks."""

    def __init__(self, path: Path, schema: pa.Schema) -> None:
        # Limits of each column in each group would fill the file's end, and the memory with it.
        # Measured values hardly ever occur twice, so a dictionary of them costs and saves nothing.
        texts = [field.name for field in schema if not pa.types.is_floating(field.type)]
        self._writer = pyarrow.parquet.ParquetWriter(
            path, schema, compression="zstd", write_statistics=["walk"], use_dictionary=texts
        )

    def write(self, table: pa.Table) -> None:
        self._writer.write_table(table, row_group_size=len(table))

    def close(self) -> None:
        self._writer.close()


class _Csv:
    """Writes text: each number is the shortest that reads back as the same bits."""

    def __init__(self, path: Path, schema: pa.Schema) -> None:
        self._writer = pyarrow.csv.CSVWriter(path, schema)

    def write(self, table: pa.Table) -> None:
        self._writer.write_table(table)

    def close(self) -> None:
        self._writer.close()


@dataclass
class LeftOut:
    """Walks that are not in the tables: how many, and the names of the first ones."""

    count: int = 0
    names: list[str] = field(default_factory=list)

    def add(self, errors: pa.Table) -> None:
        """Counts the walks of a table of errors, in which a walk may have several rows."""
        rows = np.unique(errors[POSITION].to_numpy(), return_index=True)[1]
        self.count += len(rows)
        wanted = rows[: _SHOWN - len(self.names)]
        self.names += errors["walk"].take(pa.array(wanted)).to_pylist()


def write_tables(
    work: Work, keys: pa.Schema, options: Options, read: Callable[[int], object]
) -> tuple[list[Path], LeftOut]:
    """Writes the tables into the study's own folder, and nothing if one cannot be written.

    Args:
        work: the study, all of whose parts are there.
        keys: the columns that go into every row.
        options: the options of the study.
        read: is called with the number of walks of each part that is read.

    Returns:
        Their files, and which walks are left out.
    """
    files = {name: work.folder / f"{name}.{options.format}" for name in TABLES}
    schemas = {name: schema_of(name, keys, options.statistics) for name in TABLES}
    try:
        left_out = _written(work, files, schemas, read)
        for path in files.values():
            with path.open("rb") as file:
                os.fsync(file.fileno())
    except BaseException:
        for path in files.values():
            path.unlink(missing_ok=True)
        raise
    return list(files.values()), left_out


def _written(
    work: Work,
    files: dict[str, Path],
    schemas: dict[str, pa.Schema],
    read: Callable[[int], object],
) -> LeftOut:
    left_out = LeftOut()
    with ExitStack() as stack:
        writers = {}
        for name, path in files.items():
            make: Any = _Parquet if path.suffix == ".parquet" else _Csv
            writers[name] = make(path, schemas[name])
            stack.callback(writers[name].close)
        pool = stack.enter_context(ThreadPoolExecutor(len(TABLES), "gait-study-table"))

        def write(name: str, table: pa.Table) -> None:
            if len(table):
                writers[name].write(table.drop_columns([POSITION]).cast(schemas[name]))

        for tables in _groups(work, read):
            list(pool.map(write, tables.keys(), tables.values()))
            left_out.add(tables["errors"])
            tables.clear()
            pa.default_memory_pool().release_unused()
    return left_out
