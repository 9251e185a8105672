"""What a study is asked for: the options that act on every walk."""

from __future__ import annotations

import math
from collections.abc import Sequence
from dataclasses import dataclass

from .._arguments import checked_foot, checked_limit, checked_names
from .._result import _LARGEST_FLOAT, _known_checks

STATISTICS = (
    "n",
    "mean",
    "median",
    "std",
    "iqr",
    "min",
    "max",
    "cv",
    "asymmetry",
    "q1",
    "q3",
    "p5",
    "p95",
    "effective_n",
    "standard_error",
    "symmetry_index",
)
"""The statistics that the wide table can hold, in the order of the table of parameters."""

FORMATS = ("parquet", "csv")


@dataclass(frozen=True)
class Options:
    """The options, checked. They go to every worker, and into the record of the study."""

    foot: str | None
    settings_value: float
    without_checks: tuple[str, ...]
    ignore_columns: tuple[str, ...]
    max_strides: int | None
    strict: bool
    statistics: tuple[str, ...]
    format: str


def _checked_statistics(statistics: Sequence[str]) -> tuple[str, ...]:
    names = checked_names(statistics, "statistics")
    if names == ["all"]:
        return STATISTICS
    for name in names:
        if name not in STATISTICS:
            known = ", ".join(STATISTICS)
            raise ValueError(f'statistics: found {name!r}, expected "all" or some of: {known}')
    return tuple(name for name in STATISTICS if name in names)


def checked_options(
    *,
    foot: str | None,
    settings_value: float,
    without_checks: Sequence[str],
    ignore_columns: Sequence[str],
    max_strides: int | None,
    strict: bool,
    statistics: Sequence[str],
    format: str,
) -> Options:
    """The options, if all of them can be meant."""
    if not (math.isfinite(settings_value) and abs(settings_value) <= _LARGEST_FLOAT):
        raise ValueError(f"settings_value: found {settings_value}, expected a finite number")
    if format not in FORMATS:
        raise ValueError(f'format: found {format!r}, expected "parquet" or "csv"')
    return Options(
        foot=checked_foot(foot),
        settings_value=float(settings_value),
        without_checks=tuple(_known_checks(without_checks)),
        ignore_columns=tuple(checked_names(ignore_columns, "ignore_columns")),
        max_strides=checked_limit(max_strides, "max_strides"),
        strict=bool(strict),
        statistics=_checked_statistics(statistics),
        format=format,
    )
