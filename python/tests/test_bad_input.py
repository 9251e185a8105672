"""Whatever a frame holds, the library is reached only by what it can use."""

from __future__ import annotations

import os
import warnings
from typing import Any

import pandas as pd
import polars as pl
import pyarrow as pa
from conftest import KINDS, as_kind
from hypothesis import given, settings
from hypothesis import strategies as st

import gait_statistics as gs

EXAMPLES = int(os.environ.get("GAIT_BAD_FRAMES", "100"))
WHOLE = st.integers(-3, 6) | st.sampled_from([-(2**31), 2**31 - 1, 2**31, 2**62, -(2**62)])
NUMBERS = st.floats() | st.integers(-2, 200).map(float)
ANY = st.none() | WHOLE | NUMBERS | st.text(max_size=3) | st.booleans() | st.binary(max_size=2)


def column_of(cells: Any, rows: int) -> Any:
    return st.lists(cells, min_size=rows, max_size=rows) | st.lists(
        ANY, min_size=rows, max_size=rows
    )


@st.composite
def frames(draw: Any, columns: dict[str, Any]) -> pd.DataFrame:
    rows = draw(st.integers(0, 5))
    names = [name for name in columns if draw(st.integers(0, 9)) > 0]
    return pd.DataFrame({name: draw(column_of(columns[name], rows)) for name in names})


STRIDES = {
    "foot": st.sampled_from(["left", "right", "L", "r"]),
    "index": WHOLE,
    "first_sample": st.integers(0, 400),
    "last_sample": st.integers(0, 400),
    "gct": NUMBERS,
    "hsp": NUMBERS,
    "slength": NUMBERS,
    "swing": NUMBERS,
}
FEET = {"index": WHOLE, "right_index": WHOLE, "left_index": WHOLE, "gct": NUMBERS, "ds": NUMBERS}
EXCLUSIONS = {
    "cycles": st.sampled_from(["feet", "left", "right"]),
    "list": st.sampled_from(["excluded_1", "excluded_2", "excluded_1_fallback"]),
    "index": WHOLE,
    "reason": st.text(max_size=4),
}


def of_kind(frame: pd.DataFrame | None, kind: str) -> Any:
    """The frame as one of another library, where that has a type for every column."""
    try:
        return None if frame is None else as_kind(frame, kind)
    except (pa.ArrowException, pl.exceptions.PolarsError, OverflowError, TypeError, ValueError):
        return frame


@settings(max_examples=EXAMPLES, deadline=None)
@given(
    frames(STRIDES),
    st.integers(-1, 300) | NUMBERS | st.none(),
    st.none() | frames(FEET),
    st.none() | frames(EXCLUSIONS),
    st.none() | st.integers(-1, 500),
    st.sampled_from(KINDS),
)
def test_any_frames_make_a_walk_or_a_walk_error(
    strides: Any, rate: Any, feet: Any, exclusions: Any, samples: Any, kind: str
) -> None:
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", gs.WalkWarning)
        try:
            tables = [of_kind(table, kind) for table in (strides, feet, exclusions)]
            walk = gs.Walk(tables[0], rate, tables[1], tables[2], samples)
            result = gs.analyse(walk)
        except gs.WalkError as error:
            assert all(isinstance(found, gs.InputError) for found in error.errors)
            assert error.errors
            return
        assert len(result.strides) <= len(strides)
        assert result.to_json()
