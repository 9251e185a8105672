"""Frames as columns for the extension module, and its columns as frames."""

from __future__ import annotations

import importlib
from collections.abc import Callable, Iterable
from typing import Any, Literal, Union

import narwhals as nw
import numpy as np
from numpy.typing import NDArray

from ._arguments import text_of

FrameKind = Literal["pandas", "polars", "pyarrow"]
"""The libraries whose tables go in and come out."""

ColumnIn = tuple[str, Union[NDArray[np.float64], NDArray[np.int64], list[str]]]
ColumnOut = tuple[str, str, Any, Any]
"""Name, kind ("number", "whole", "truth" or "text"), values, and for numbers a mask of those that
are there. A text that is not there is None."""

_EXPECTED = "expected a pandas or polars data frame, or a pyarrow table"
_KINDS: tuple[FrameKind, ...] = ("pandas", "polars", "pyarrow")


# ---- In


def _text_of(value: Any) -> str:
    """A value as the text that a table of CSV would hold; empty where there is none."""
    if isinstance(value, str):
        return text_of(value)
    if value is None or type(value).__name__ in ("NAType", "NaTType"):
        return ""
    if isinstance(value, (float, np.floating)):
        return "" if np.isnan(value) else repr(float(value))
    return str(value)


def _texts_of(values: list[Any]) -> list[str]:
    return [
        value if type(value) is str and value.isascii() else _text_of(value) for value in values
    ]


def _as_numbers(numbers: NDArray[Any]) -> NDArray[np.float64] | NDArray[np.int64] | None:
    """Numbers in one of the two types that cross the border; None where neither holds them."""
    if numbers.dtype.kind == "f":
        return np.ascontiguousarray(numbers, dtype=np.float64)
    if numbers.dtype.kind == "i" or numbers.dtype.kind == "u" and numbers.dtype.itemsize < 8:
        return np.ascontiguousarray(numbers, dtype=np.int64)
    return None


def _is_plain(native: Any, kind: FrameKind) -> bool:
    """Whether a column hands over its numbers as they lie in memory, NaN for what is missing.

    narwhals would look at the values first, which takes longer than the statistics.
    """
    if kind == "pandas":
        return isinstance(native.dtype, np.dtype) and native.dtype.kind in "fiu"
    if kind == "polars":
        kept = native.dtype.is_float() or native.dtype.is_integer() and native.null_count() == 0
        return bool(kept)
    name = str(native.type)
    return name in ("double", "float") or name in ("int64", "int32") and native.null_count == 0


def _values_of(native: Any, kind: FrameKind) -> NDArray[np.float64] | NDArray[np.int64] | list[str]:
    if _is_plain(native, kind):
        numbers = _as_numbers(native.to_numpy())
        if numbers is not None:
            return numbers
    if kind == "pandas" and native.dtype == object:
        return _texts_of(native.to_list())
    if kind == "pyarrow" and str(native.type) in ("string", "large_string"):
        # Its own lists are made of scalars first, one by one.
        return _texts_of(native.to_numpy().tolist())
    series: nw.Series[Any] = nw.from_native(native, series_only=True)
    if series.dtype.is_numeric() and not series.dtype.is_decimal():
        numbers = _as_numbers(series.to_numpy())
        if numbers is not None:
            return numbers
    return _texts_of(series.to_list())


# All columns at once: asking pandas for each by its name takes four times as long.
_NATIVE_COLUMNS: dict[FrameKind, Callable[[Any], Iterable[Any]]] = {
    "pandas": lambda frame: (column for _, column in frame.items()),
    "polars": lambda frame: frame.iter_columns(),
    "pyarrow": lambda frame: frame.itercolumns(),
}


def columns_of(frame: Any, argument: str) -> tuple[list[ColumnIn], FrameKind]:
    """The columns of a frame, and the library that it belongs to.

    Numbers stay numbers; everything else becomes the text that a table would hold, so that it is
    read by the same rules.
    """
    try:
        table = nw.from_native(frame, eager_only=True)
    except TypeError as error:
        raise TypeError(f"{argument}: found {type(frame).__name__}, {_EXPECTED}") from error
    except Exception as error:
        # Two columns of one name, for example.
        raise ValueError(f"{argument}: {error}") from error
    kind = table.implementation.value
    if kind not in _KINDS:
        raise TypeError(f"{argument}: found a table of {kind}, {_EXPECTED}")
    natives = zip(table.columns, _NATIVE_COLUMNS[kind](frame), strict=True)
    return [(text_of(str(name)), _values_of(native, kind)) for name, native in natives], kind


def again_as_input(columns: list[ColumnOut]) -> list[ColumnIn]:
    """Columns that came out, to go in again."""
    result: list[ColumnIn] = []
    for name, kind, values, is_there in columns:
        if kind == "text":
            result.append((name, [value or "" for value in values]))
        elif kind == "whole" and is_there.all():
            result.append((name, values))
        else:
            result.append((name, np.where(is_there, values, np.nan).astype(np.float64)))
    return result


# ---- Out


def _library(kind: FrameKind) -> Any:
    try:
        return importlib.import_module(kind)
    except ImportError as error:
        raise ImportError(
            f"{kind} is not installed: pip install 'gait-statistics[{kind}]'"
        ) from error


def _pandas_frame(columns: list[ColumnOut], pandas: Any) -> Any:
    def values_of(kind: str, values: Any, is_there: Any) -> Any:
        if kind == "number":
            return np.where(is_there, values, np.nan)
        if kind == "whole":
            return pandas.arrays.IntegerArray(values, ~is_there)
        return pandas.array(values, dtype="string") if kind == "text" else values

    return pandas.DataFrame(
        {name: values_of(kind, values, is_there) for name, kind, values, is_there in columns}
    )


def _arrow_table(columns: list[ColumnOut], arrow: Any) -> Any:
    def values_of(kind: str, values: Any, is_there: Any) -> Any:
        if kind == "text":
            return arrow.array(values, arrow.string())
        return arrow.array(values, mask=None if is_there is None else ~is_there)

    return arrow.table(
        {name: values_of(kind, values, is_there) for name, kind, values, is_there in columns}
    )


def _polars_frame(columns: list[ColumnOut], polars: Any) -> Any:
    def series_of(name: str, kind: str, values: Any, is_there: Any) -> Any:
        if kind == "text":
            return polars.Series(name, values, dtype=polars.String)
        series = polars.Series(name, values)
        absent = [] if is_there is None else np.flatnonzero(~is_there).tolist()
        return series.scatter(absent, None) if absent else series

    return polars.DataFrame([series_of(*column) for column in columns])


def frame_of(columns: list[ColumnOut], kind: FrameKind) -> Any:
    """A frame of columns.

    What is missing is null; in pandas, numbers with decimals have NaN for it. Whole numbers are
    ``Int64`` and texts ``string`` in pandas, also where nothing is missing, so that a column has
    the same type for every walk.
    """
    if kind not in _KINDS:
        raise ValueError(f'frame: found {kind!r}, expected "pandas", "polars" or "pyarrow"')
    library = _library(kind)
    if kind == "pandas":
        return _pandas_frame(columns, library)
    return _arrow_table(columns, library) if kind == "pyarrow" else _polars_frame(columns, library)
