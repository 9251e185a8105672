"""The catalogue of parameters, the table of data checks, and percentiles."""

from __future__ import annotations

from collections.abc import Sequence
from typing import Any, overload

import numpy as np
from numpy.typing import ArrayLike, NDArray

from . import _core
from ._tables import FrameKind, frame_of


def parameters(frame: FrameKind = "pandas") -> Any:
    """The catalogue of gait parameters as a frame, a row each: key, unit, meaning and more.

    >>> table = parameters()
    >>> table.loc[table["key"] == "swing", "unit"].item()
    '% of gait cycle'
    """
    return frame_of(_core.parameters(), frame)


def checks(frame: FrameKind = "pandas") -> Any:
    """The data checks as a frame, a row each: what is compared, tolerance, source and more.

    >>> len(checks()) > 20
    True
    """
    return frame_of(_core.checks(), frame)


@overload
def percentile(values: ArrayLike, percentages: float) -> float: ...
@overload
def percentile(
    values: ArrayLike, percentages: Sequence[float] | NDArray[Any]
) -> NDArray[np.float64]: ...


def percentile(
    values: ArrayLike, percentages: float | Sequence[float] | NDArray[Any]
) -> float | NDArray[np.float64]:
    """Percentiles by the definition of every quartile here.

    That is definition 5 of R. J. Hyndman and Y. Fan, "Sample quantiles in statistical packages",
    The American Statistician 50(4), 1996, 361-365: "hazen" in numpy, type 5 in R. Most tools
    default to definition 7.

    Args:
        values: numbers in one dimension; NaN stands for a missing one, which is left out.
        percentages: from 0 to 100 (%): one, or several in one dimension.

    Returns:
        The percentile, or an array with one for each percentage.

    Raises:
        ValueError: where no value is left, one is infinite, or a percentage is out of range.

    >>> percentile([1.0, 2.0, 3.0, 4.0], [25, 50, 75]).tolist()
    [1.5, 2.5, 3.5]
    """
    numbers = np.ascontiguousarray(values, dtype=np.float64)
    asked = np.ascontiguousarray(percentages, dtype=np.float64)
    if numbers.ndim != 1 or np.ndim(percentages) > 1:
        raise ValueError("found more than one dimension, expected one")
    numbers = np.ascontiguousarray(numbers[~np.isnan(numbers)])
    if numbers.size == 0:
        raise ValueError("values: found none that is measured, expected at least one")
    if np.isinf(numbers).any():
        raise ValueError("values: found an infinite one, expected finite numbers")
    if not ((asked >= 0.0) & (asked <= 100.0)).all():
        raise ValueError("percentages: found one out of range, expected 0 to 100")
    found = _core.percentiles(numbers, np.atleast_1d(asked))
    return float(found[0]) if np.ndim(percentages) == 0 else found
