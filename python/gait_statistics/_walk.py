"""Walks: read from folders, made of frames, written to folders."""

from __future__ import annotations

from collections.abc import Mapping, Sequence
from os import PathLike
from typing import Any, Literal, Union

import numpy as np

from . import _core
from ._arguments import (
    FEET,
    checked_folder,
    checked_foot,
    checked_limit,
    checked_names,
    checked_text,
)
from ._errors import InputError, WalkError, input_errors, warn_about
from ._tables import ColumnIn, ColumnOut, FrameKind, again_as_input, columns_of, frame_of

Foot = Literal["left", "right"]
SampleCount = Union[float, tuple[Union[float, None], Union[float, None]], None]
Samples = Union[SampleCount, Mapping[Foot, SampleCount], Mapping[str, SampleCount]]

_STORED_TABLES = ("recording", "strides", "feet", "exclusions", "about")


def _cell_of(number: Any) -> str:
    """A whole number as the cell of a table; 100.0 is one."""
    if number is None:
        return ""
    is_whole = isinstance(number, (float, np.floating)) and float(number).is_integer()
    return str(int(number)) if is_whole else str(number)


def _recording_cells(samples: Samples) -> list[tuple[str, str, str]]:
    """The foot, empty for all, and the lengths of both signals as cells of a table."""

    def cells_of(count: SampleCount) -> tuple[str, str]:
        is_pair = isinstance(count, (tuple, list)) and len(count) == 2
        first, second = count if is_pair else (count, None)  # type: ignore[misc]
        return _cell_of(first), _cell_of(second)

    if isinstance(samples, Mapping):
        return [(str(foot) or repr(foot), *cells_of(count)) for foot, count in samples.items()]
    return [] if samples is None else [("", *cells_of(samples))]


class Walk:
    """The strides of a recorded walk, checked. Nothing changes it.

    Args:
        strides: a frame with one row a stride, of pandas, polars or pyarrow. Its columns are those
            of ``foot_cycles.csv``: ``foot`` ("left" or "right"), ``first_sample`` and
            ``last_sample`` are needed; ``index``, ``gct`` (s), ``swing`` (%), ``slength`` (m) and
            the others are read where they are there. A missing value is one that was not measured.
        sampling_rate: samples per second (Hz), a whole number.
        feet: a frame with one row a cycle of both feet, as ``feet_cycles.csv``. It is needed to
            analyse two feet together; :func:`pair_feet` makes one.
        exclusions: a frame with one row an excluded cycle, as ``exclusions.csv``: ``cycles``,
            ``list``, ``index``, ``reason``.
        samples: the length of the recording in samples: one number, a pair of them for the two
            signals, or either for each foot: ``{"left": 5000, "right": 5100}``. None: not known.
        name: what the walk is called in reports.
        ignore_columns: names of columns to leave out; "all" stands for every unknown one.

    Raises:
        WalkError: with everything that is wrong, each with its row and column.
        TypeError: where a frame is none.

    Warns:
        WalkWarning: what is worth a look.

    >>> import pandas as pd
    >>> strides = pd.DataFrame({"foot": "left", "first_sample": [0, 105, 211],
    ...                         "last_sample": [104, 210, 318], "gct": [1.05, 1.06, 1.08]})
    >>> Walk(strides, sampling_rate=100, name="corridor")
    <Walk corridor: 3 left strides>
    """

    __slots__ = ("_core", "_frame", "_warnings")

    def __init__(
        self,
        strides: Any,
        sampling_rate: float,
        feet: Any = None,
        exclusions: Any = None,
        samples: Samples = None,
        name: str = "",
        *,
        ignore_columns: Sequence[str] = (),
    ) -> None:
        """Checks the frames, and keeps a copy of what they hold."""
        stride_columns, kind = columns_of(strides, "strides")
        made = _core.make_walk(
            checked_text(name, "name"),
            "None" if sampling_rate is None else _cell_of(sampling_rate),
            _recording_cells(samples),
            stride_columns,
            None if feet is None else columns_of(feet, "feet")[0],
            None if exclusions is None else columns_of(exclusions, "exclusions")[0],
            checked_names(ignore_columns, "ignore_columns"),
        )
        self._take(made, kind, of_files=False)

    def _take(
        self,
        made: tuple[_core.Walk | None, list[_core.RawError], list[_core.RawError]],
        kind: FrameKind,
        *,
        of_files: bool,
    ) -> None:
        walk, errors, warned = made
        if walk is None:
            raise WalkError(input_errors(errors, of_files=of_files))
        self._core = walk
        self._frame: FrameKind = kind
        self._warnings = input_errors(warned, of_files=of_files)
        warn_about(self._warnings, stacklevel=3)

    @property
    def name(self) -> str:
        """What the walk is called in reports."""
        return self._core.name

    @property
    def warnings(self) -> tuple[InputError, ...]:
        """What is worth a look about the tables."""
        return self._warnings

    @property
    def strides(self) -> Any:
        """The strides as a frame, with every column of ``foot_cycles.csv``; left before right."""
        return self._frame_of("strides")

    @property
    def feet(self) -> Any:
        """The cycles of both feet as a frame, with the columns of ``feet_cycles.csv``."""
        return self._frame_of("feet")

    @property
    def exclusions(self) -> Any:
        """The excluded cycles as a frame, with the columns of ``exclusions.csv``."""
        return self._frame_of("exclusions")

    @property
    def about(self) -> Any:
        """What ``about.csv`` says of the walk, as a frame."""
        return self._frame_of("about")

    @property
    def sampling_rate(self) -> int:
        """Samples per second (Hz)."""
        return int(self._column("recording", "sampling_rate")[2][0])

    @property
    def samples(self) -> dict[str, tuple[int | None, int | None]]:
        """The lengths of both signals of each foot, in samples; None where one is not known."""
        feet: list[str] = self._column("recording", "foot")[2]

        def lengths(name: str) -> list[int | None]:
            _, _, values, is_there = self._column("recording", name)
            known = zip(values, is_there, strict=True)
            return [int(value) if there else None for value, there in known]

        both = zip(lengths("signal_1_samples"), lengths("signal_2_samples"), strict=True)
        return dict(zip(feet, both, strict=True))

    def _frame_of(self, table: str) -> Any:
        return frame_of(self._core.columns(table), self._frame)

    def _column(self, table: str, name: str) -> ColumnOut:
        return next(column for column in self._core.columns(table) if column[0] == name)

    def __repr__(self) -> str:
        """The name, and how many strides there are."""
        feet = self._column("strides", "foot")[2]
        counts = ", ".join(f"{feet.count(foot)} {foot}" for foot in FEET if foot in feet)
        return f"<Walk {self.name}: {counts} strides>"

    def __reduce__(self) -> tuple[Any, ...]:
        """Takes the walk apart for pickle."""
        return _restored, (
            self._core.name,
            self._core.folder,
            {t: (self._core.columns(t), self._core.lines(t)) for t in _STORED_TABLES},
            self._frame,
            self._warnings,
        )


def checked_walk(walk: object) -> Walk:
    """A walk."""
    if not isinstance(walk, Walk):
        raise TypeError(
            f"walk: found {type(walk).__name__}, expected a Walk: Walk(strides, sampling_rate) "
            "makes one of a frame, read_walk(folder) of a folder"
        )
    return walk


def _restored(
    name: str,
    folder: str,
    tables: dict[str, tuple[list[ColumnOut], list[int]]],
    frame: FrameKind,
    warnings: tuple[InputError, ...],
) -> Walk:
    """The walk that was taken apart, checked again."""
    walk = Walk.__new__(Walk)
    walk._core = _core.restore_walk(
        name,
        folder,
        {table: (again_as_input(columns), lines) for table, (columns, lines) in tables.items()},
    )
    walk._frame = frame
    walk._warnings = warnings
    return walk


def read_walk(
    folder: str | PathLike[str],
    foot: Foot | None = None,
    *,
    frame: FrameKind = "pandas",
    ignore_columns: Sequence[str] = (),
    max_strides: int | None = None,
) -> Walk:
    """Reads and checks a walk folder.

    Args:
        folder: the folder that holds ``recording.csv``, ``foot_cycles.csv`` and the other tables.
        foot: the foot for which the walk is read; ``feet_cycles.csv`` may be absent then.
        frame: the library whose frames the walk and its results give.
        ignore_columns: names of columns to leave out; "all" stands for every unknown one.
        max_strides: refuses walks with more strides of a foot.

    Raises:
        WalkError: with everything that is wrong, each with its file, line and column.

    Warns:
        WalkWarning: what is worth a look.

    >>> read_walk("examples/walks/two_feet_turn")
    <Walk two_feet_turn: 39 left, 39 right strides>
    """
    walk = Walk.__new__(Walk)
    frame_of([], frame)
    made = _core.read_walk(
        checked_folder(folder),
        checked_foot(foot),
        checked_names(ignore_columns, "ignore_columns"),
        checked_limit(max_strides, "max_strides"),
    )
    walk._take(made, frame, of_files=True)
    return walk


def write_walk(walk: Walk, folder: str | PathLike[str]) -> None:
    """Writes a walk as a folder, which :func:`read_walk` reads back as the same walk.

    The folder is made where it is not there. Tables in it are replaced once all are written.

    Raises:
        OSError: where the folder cannot be written.
        ValueError: for a text that no table can hold, such as one with a NUL character.

    >>> import tempfile
    >>> walk = read_walk("examples/walks/two_feet_turn")
    >>> with tempfile.TemporaryDirectory() as folder:
    ...     write_walk(walk, folder + "/copy")
    ...     read_walk(folder + "/copy")
    <Walk copy: 39 left, 39 right strides>
    """
    _core.write_walk(checked_walk(walk)._core, checked_folder(folder))


def pair_feet(strides: Any) -> Any:
    """Pairs the strides of two feet into cycles of both feet.

    There is one cycle for each right stride. Its left stride is the first one that begins within
    it; none may. ``gct`` is the duration of the right stride (s). ``ds``, the double support, is
    not computed: fill the column in where you have it.

    Args:
        strides: the strides of both feet, as :class:`Walk` takes them.

    Returns:
        A frame of the same kind with the columns of ``feet_cycles.csv``: ``index``, ``gct``,
        ``ds``, ``right_index``, ``left_index``.

    Raises:
        WalkError: where the strides are wrong, or are not those of two feet.

    >>> import pandas as pd
    >>> strides = pd.DataFrame({"foot": ["right", "right", "left", "left"],
    ...                         "first_sample": [0, 105, 52, 158],
    ...                         "last_sample": [104, 210, 157, 262]})
    >>> pair_feet(strides)[["right_index", "left_index"]].values.tolist()
    [[0, 0], [1, 1]]
    """
    columns, kind = columns_of(strides, "strides")
    return frame_of(pairs_of(columns), kind)


def pairs_of(columns: list[ColumnIn]) -> list[ColumnOut]:
    """The pairs of :func:`pair_feet` as columns."""
    # The rate has no part in the pairs.
    walk, errors, _ = _core.make_walk("", "1", [], columns, None, None, ["all"])
    if walk is None:
        raise WalkError(input_errors(errors, of_files=False))
    column = {name: (values, is_there) for name, _, values, is_there in walk.columns("strides")}
    is_right = np.array([foot == "right" for foot in column["foot"][0]])
    if is_right.all() or not is_right.any():
        found = "right" if is_right.all() else "left"
        text = f'found "{found}" alone, expected strides of both feet'
        raise WalkError([InputError("strides", None, None, "foot", text)])
    begin, end = column["first_sample"][0], column["last_sample"][0]
    left_begin = begin[~is_right]
    in_time = np.argsort(left_begin, kind="stable")
    place = np.searchsorted(left_begin, begin[is_right], sorter=in_time)
    left = in_time[np.minimum(place, len(in_time) - 1)]
    begins_within = (left_begin[left] >= begin[is_right]) & (left_begin[left] <= end[is_right])
    duration, is_measured = column["gct"]
    right = np.arange(is_right.sum(), dtype=np.int64)
    everywhere = np.ones(len(right), dtype=bool)
    return [
        ("index", "whole", right, everywhere),
        ("gct", "number", duration[is_right], is_measured[is_right]),
        ("ds", "number", np.zeros(len(right)), ~everywhere),
        ("right_index", "whole", right, everywhere),
        ("left_index", "whole", left.astype(np.int64), begins_within),
    ]
