"""Whatever a table or a map holds, an import ends in walks or in messages."""

from __future__ import annotations

import os
import tempfile
import warnings
from pathlib import Path
from typing import Any

from hypothesis import HealthCheck, example, given, settings
from hypothesis import strategies as st

import gait_statistics as gs
from gait_statistics._import._fields import (
    COLUMN_KEYS,
    CONDITION_KEYS,
    EXCLUDE_KEYS,
    FIELD,
    KEYS,
    Key,
)
from gait_statistics._import._map import FEET
from gait_statistics._import._suggest import suggested_map

EXAMPLES = int(os.environ.get("GAIT_BAD_FRAMES", "100")) // 2
NAMES = ["Side", "Strike", "Stride", "Swing", "Stride (ms)", "L x", "R x", "", "Mean"]
CELLS = st.sampled_from(
    [*"LR01x,;.-", "", "left", "right", "1.05", "1,05", "1.050,5", "12:00:01", "1e400", "NaN"]
    + ["Mean", "-1", "5 ms", "5 kg", "10:99:99", "2024-13-45 10:00:00", '"', "∞", "1_000", "٣"]
) | st.text(max_size=3)
NUMBERS = st.sampled_from(["0.5", "1.05", "2.1", "3.2", "4.2", "5.3", "1e9", "-3", ""])
VALUES: Any = st.recursive(
    st.none()
    | st.booleans()
    | st.integers(-3, 300)
    | st.floats()
    | st.sampled_from(
        [*NAMES, "#1", "#9", "L", "ms", "next", "{foot}", "{file}", "space", "(", ","]
    ),
    lambda inner: st.lists(inner, max_size=3)
    | st.dictionaries(st.sampled_from([key.name for key in (*COLUMN_KEYS, *EXCLUDE_KEYS)]), inner),
    max_leaves=4,
)


RIGHT = {
    "text": st.sampled_from([*NAMES, "ms", "%", "samples", ",", "space", "(x)"]),
    "texts": st.lists(st.sampled_from([*NAMES, "gct", "ds", "{file}", "#2"]), max_size=2),
    "number": st.sampled_from([-1, 0.5, 1, 100, 204.8]),
    "whole": st.integers(0, 3),
    "wholes": st.lists(st.integers(0, 8), max_size=3),
    "truth": st.booleans(),
    "cells": st.lists(CELLS | st.integers(-1, 1), max_size=2),
    "span": st.just([0, 2]),
    "spans": st.just([[0.0, 1.5]]),
}


def value_for(key: Key, is_wild: bool) -> Any:
    """A value of the kind that a key takes, or any."""
    right = st.sampled_from(key.kind.split("|")) if "|" in key.kind else RIGHT[key.kind]
    return right | VALUES if is_wild else right


CONDITION = st.sampled_from(CONDITION_KEYS[1:7])


@st.composite
def maps(draw: Any) -> dict[str, Any]:
    """A map that is nearly right, with a few keys that need not be."""
    is_wild = draw(st.integers(0, 3)) == 0
    columns: dict[str, Any] = {"hs": "Strike", "gct": draw(st.sampled_from(["Stride", "#3"]))}
    for name in draw(st.lists(st.sampled_from(list(FIELD)), max_size=2)):
        column = {"column": draw(st.sampled_from(["#3", "#4", "Swing"]))}
        key = draw(st.sampled_from([key for key in COLUMN_KEYS if key.name not in FEET]))
        columns[name] = {**column, key.name: draw(value_for(key, is_wild))}
    result: dict[str, Any] = {"feet": {"column": "Side"}, "columns": columns}
    if draw(st.integers(0, 4)) == 0:
        result["feet"] = {"only": "left"}
        result["events"] = {"column": "Side", "strike": "left", "lift_off": "right"}
    for key in draw(st.lists(st.sampled_from(KEYS), max_size=3)):
        value = draw(value_for(key, is_wild))
        (result.setdefault(key.section, {}) if key.section else result)[key.name] = value
    for section in draw(st.lists(st.sampled_from(["skip", "exclude"]), max_size=1)):
        key = draw(CONDITION)
        condition = {
            key.name: draw(value_for(key, is_wild)),
            "column": draw(st.sampled_from(NAMES)),
        }
        result[section] = [draw(VALUES) if is_wild else condition]
    return result


@st.composite
def texts(draw: Any) -> str:
    """A table, most of whose rows are strides."""
    separator = draw(st.sampled_from([",", ";", "\t", " "]))
    is_wild = draw(st.booleans())
    rows = [draw(st.permutations(NAMES))[:5] if is_wild and draw(st.booleans()) else NAMES[:4]]
    for number in range(draw(st.integers(0, 6))):
        row = [draw(st.sampled_from(["left", "right"])), f"{number * 0.5 + 0.1:.2f}", "1.05", "38"]
        if is_wild:
            row[1:3] = draw(NUMBERS), draw(NUMBERS)
        if is_wild and draw(st.integers(0, 2)) == 0:
            row[draw(st.integers(0, 3))] = draw(CELLS)
        rows.append(row[: draw(st.integers(3, 4))])
    return "\n".join(separator.join(row) for row in rows)


@settings(
    max_examples=EXAMPLES,
    deadline=None,
    suppress_health_check=[HealthCheck.function_scoped_fixture, HealthCheck.too_slow],
)
@given(texts() | texts() | texts() | st.text(max_size=20) | st.binary(max_size=20), maps())
@example("Side,Strike,Stride\nleft,0.10,1.05", {"feet": {"only": "left"}, "columns": {}})
def test_any_table_and_map_make_walks_or_messages(table: str | bytes, map_: dict[str, Any]) -> None:
    with tempfile.TemporaryDirectory() as folder, warnings.catch_warnings():
        warnings.simplefilter("ignore", gs.WalkWarning)
        path = Path(folder) / "table.csv"
        content = table if isinstance(table, bytes) else table.encode("utf-8", "replace")
        path.write_bytes(content)
        try:
            walks = gs.import_tables(path, map_, Path(folder) / "out")
            assert walks
            assert (Path(folder) / "out").is_dir()
        except gs.WalkError as error:
            assert error.errors
            assert sorted(Path(folder).iterdir()) == [path]
        try:
            assert suggested_map([str(path)])
        except gs.WalkError as error:
            assert error.errors
