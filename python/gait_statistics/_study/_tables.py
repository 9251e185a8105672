"""The tables that a study writes: their columns, types and units."""

from __future__ import annotations

from functools import cache
from typing import Any

import numpy as np
import pyarrow as pa

from .. import _core
from .._tables import ColumnIn, ColumnOut

TABLES = ("parameters", "parameters_wide", "walks", "errors")

POSITION = "_position"
"""A walk's place in the input, from 0. Parts have this column, the final tables do not."""

_TYPES = {"number": pa.float64(), "whole": pa.int64(), "truth": pa.bool_(), "text": pa.string()}

_UNIT_OF_ENDING = {"_seconds": "seconds", "_meters": "meters", "_hz": "Hz"}
_STRIDES = "strides"
_PERCENT = "%"
# The statistics that do not have the unit of their parameter.
_UNIT_OF_STATISTIC = {
    "n": _STRIDES,
    "effective_n": _STRIDES,
    "cv": _PERCENT,
    "symmetry_index": _PERCENT,
    "asymmetry": "1",
}


@cache
def _columns_of_any_walk() -> dict[str, list[ColumnOut]]:
    """The tables of a walk of both feet: every walk's tables have these columns."""
    strides: list[ColumnIn] = [
        ("foot", ["left", "right"]),
        ("first_sample", np.array([0, 0])),
        ("last_sample", np.array([1, 1])),
    ]
    links: list[ColumnIn] = [(f"{foot}_index", np.array([0])) for foot in ("right", "left")]
    walk, _, _ = _core.make_walk("", "100", [], strides, links, None, [])
    assert walk is not None
    analysis, _, _ = _core.analyse(walk, None, 0.0, [], [])
    assert analysis is not None
    return {table: analysis.columns(table) for table in ("parameters", "walks")}


@cache
def columns_of_table(table: str) -> tuple[tuple[str, str], ...]:
    """The names and kinds of the columns of "parameters" or "walks", without "walk"."""
    return tuple((name, kind) for name, kind, _, _ in _columns_of_any_walk()[table][1:])


@cache
def pairs() -> dict[tuple[str, str], str]:
    """Every parameter and side that there is, with its unit, in the order of the tables."""
    columns = {name: values for name, _, values, _ in _columns_of_any_walk()["parameters"]}
    names = zip(columns["parameter"], columns["side"], strict=True)
    units = dict(zip(names, columns["unit"], strict=True))
    # The unit of the swing asymmetry names the sampling rate, which is another for other walks.
    units["asymmetry", "both"] = "scaled by the sampling rate"
    return units


def _field(name: str, kind: str, unit: str | None) -> pa.Field:
    return pa.field(name, _TYPES[kind], metadata={"unit": unit} if unit else None)


def _unit_of_column(name: str) -> str | None:
    for ending, unit in _UNIT_OF_ENDING.items():
        if name.endswith(ending):
            return unit
    return None


def _parameter_unit(name: str, kind: str) -> str | None:
    if name in _UNIT_OF_STATISTIC:
        return _UNIT_OF_STATISTIC[name]
    return "that of the column unit" if kind == "number" else _unit_of_column(name)


def _wide_fields(statistics: tuple[str, ...]) -> list[pa.Field]:
    fields = [_field("analysed", "text", None)]
    for (parameter, side), unit in pairs().items():
        for statistic in statistics:
            name = f"{parameter}_{side}_{statistic}".replace(" ", "_")
            kind = "whole" if statistic == "n" else "number"
            fields.append(_field(name, kind, _UNIT_OF_STATISTIC.get(statistic, unit)))
    return fields


def fields_of(table: str, statistics: tuple[str, ...]) -> list[pa.Field]:
    """The columns of a table behind those that say which walk a row is of."""
    if table == "parameters":
        return [_field(n, kind, _parameter_unit(n, kind)) for n, kind in columns_of_table(table)]
    if table == "walks":
        return [_field(n, kind, _unit_of_column(n)) for n, kind in columns_of_table(table)]
    if table == "parameters_wide":
        return _wide_fields(statistics)
    return [_field("message", "text", None)]


def schema_of(table: str, keys: pa.Schema, statistics: tuple[str, ...]) -> pa.Schema:
    """The schema of a table as it is written: the walk, its keys, and what was found."""
    walk = pa.field("walk", pa.string())
    return pa.schema([walk, *keys, *fields_of(table, statistics)])


def check_key_names(names: list[str], statistics: tuple[str, ...], place: str) -> None:
    """Raises ValueError where a column that goes into every row has the name of another."""
    for table in TABLES:
        taken = {field.name for field in fields_of(table, statistics)} | {"walk", POSITION}
        for name in names:
            if name in taken:
                raise ValueError(
                    f"{place}, column {name}: found the name of a column of the table {table}, "
                    "expected another: rename the column"
                )


def key_types(keys: pa.Schema) -> dict[str, str]:
    """The types of the columns that go into every row, as words."""
    return {field.name: str(field.type) for field in keys}


def keys_of_types(types: dict[str, str]) -> pa.Schema:
    """The schema that key_types() made words of; a type without a short word is read as text."""

    def type_of(word: str) -> Any:
        try:
            return pa.type_for_alias(word)
        except ValueError:
            return pa.string()

    return pa.schema([(name, type_of(word)) for name, word in types.items()])
