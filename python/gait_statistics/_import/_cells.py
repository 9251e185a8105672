"""Cells as numbers and as moments."""

from __future__ import annotations

import datetime
import math
import re
from collections.abc import Callable, Iterable, Sequence
from dataclasses import dataclass
from typing import Any

from ._units import unit_of

# The words that the tables of a walk folder have for it, and pandas'.
_MISSING = {"", "na", "n/a", "#n/a", "nan", "null", "none", "<na>", "nat"}
_NUMBER = re.compile(r"([-+]?(?:\d+\.?\d*|\.\d+)(?:[eE][-+]?\d+)?)\s*(.*)", re.DOTALL)
_PLAIN = re.compile(r"-?[0-9]{1,15}(?:\.[0-9]{0,20})?")
_CLOCK = re.compile(r"(?:(\d{1,3}):)?(\d{1,2}):(\d{1,2}(?:[.,]\d+)?)\s*([ap]m)?", re.IGNORECASE)
_DATE = re.compile(r"\d{4}-\d\d?-\d\d?[ T]\d|\d\d?[./]\d\d?[./]\d{4},? \d")
_COMMA = re.compile(r"[-+]?\d+,\d+(?:[eE][-+]?\d+)?")
_GROUPED_COMMA = re.compile(r"[-+]?\d{1,3}(?:,\d{3})+")
_GROUPED_POINT = re.compile(r"[-+]?\d{1,3}(?:\.\d{3})+")
_DAY = 86400.0


def is_empty(cell: Any) -> bool:
    """Whether a cell holds nothing, or a word for nothing."""
    if cell is None:
        return True
    if isinstance(cell, float):
        return math.isnan(cell)
    return isinstance(cell, str) and cell.strip().casefold() in _MISSING


@dataclass(frozen=True)
class Signs:
    """The decimal sign of a table, and the one between thousands."""

    decimal: str = "."
    thousands: str = ""

    def plain(self, text: str) -> str:
        """A number's text with a decimal point alone."""
        text = text.strip().replace("\u2212", "-").replace("\u00a0", " ").replace("\u202f", " ")
        if self.thousands:
            text = text.replace(self.thousands, "")
        return text.replace(",", ".") if self.decimal == "," else text


_POINT = Signs()


def signs_of(cells: Iterable[Any]) -> Signs | None:
    """The signs that texts of numbers show; None where they could be read in two ways."""
    texts = [cell.strip() for cell in cells if isinstance(cell, str)]
    if not any("," in text for text in texts):
        return Signs()
    both = [text for text in texts if "," in text and "." in text and _NUMBER.match(text)]
    if both:
        last = max("." in text and text.rindex(".") > text.rindex(",") for text in both)
        return Signs(".", ",") if last else Signs(",", ".")
    commas = [text for text in texts if _COMMA.match(text)]
    points = [text for text in texts if re.match(r"[-+]?\d*\.\d+", text)]
    if not commas:
        return Signs()
    if all(_GROUPED_COMMA.fullmatch(text) for text in commas):
        # "1,050" alone may be a thousand and fifty, or a little more than one.
        return Signs(".", ",") if points else None
    if points and all(_GROUPED_POINT.fullmatch(text) for text in points):
        return Signs(",", ".")
    return Signs(",", "") if not points else Signs()


def number_of(cell: Any, signs: Signs) -> tuple[float, str] | None:
    """The number in a cell, and the unit beside it, if there is one; None where it is no number."""
    if isinstance(cell, bool):
        return float(cell), ""
    if isinstance(cell, (int, float)):
        return (float(cell), "") if math.isfinite(cell) else None
    if isinstance(cell, datetime.timedelta):
        return cell.total_seconds(), "s"
    if isinstance(cell, datetime.time):
        return _seconds_of(cell), "s"
    if not isinstance(cell, str):
        try:
            number = float(cell)
        except (TypeError, ValueError):
            return None
        return (number, "") if math.isfinite(number) else None
    if _PLAIN.fullmatch(cell) and signs == _POINT:
        # Most cells are this, and it is much faster.
        return float(cell), ""
    found = _NUMBER.fullmatch(signs.plain(cell))
    if found and (not found[2] or unit_of(found[2]) is not None):
        value = float(found[1])
        return (value, found[2]) if math.isfinite(value) else None
    clock = _CLOCK.fullmatch(cell.strip())
    return (_clock_seconds(clock), "s") if clock and clock[1] is not None else None


def _seconds_of(time: datetime.time | datetime.datetime) -> float:
    return time.hour * 3600 + time.minute * 60 + time.second + time.microsecond / 1e6


def _clock_seconds(found: re.Match[str]) -> float:
    hours = float(found[1] or 0)
    if found[4]:
        hours = hours % 12 + (12 if found[4].casefold() == "pm" else 0)
    return hours * 3600 + float(found[2]) * 60 + float(found[3].replace(",", "."))


@dataclass(frozen=True)
class Moment:
    """A moment: seconds, and from when: "" (the recording), "clock" (midnight) or "date"."""

    seconds: float
    since: str
    unit: str = ""


def moment_of(cell: Any, signs: Signs) -> Moment | None:
    """The moment in a cell: a number, a time of day, or a date with a time."""
    if isinstance(cell, datetime.datetime):
        naive = cell.replace(tzinfo=None) - (cell.utcoffset() or datetime.timedelta())
        return Moment((naive - datetime.datetime(1970, 1, 1)).total_seconds(), "date")
    if isinstance(cell, datetime.time):
        return Moment(_seconds_of(cell), "clock")
    if isinstance(cell, str):
        clock = _CLOCK.fullmatch(cell.strip())
        if clock and clock[1] is not None:
            return Moment(_clock_seconds(clock), "clock")
        if _DATE.match(cell.strip()):
            return _date_of(cell.strip())
    return duration_of(cell, signs)


def duration_of(cell: Any, signs: Signs) -> Moment | None:
    """The number in a cell, as a moment that counts from nowhere."""
    number = number_of(cell, signs)
    return None if number is None else Moment(number[0], "", number[1])


def _date_of(text: str) -> Moment | None:
    import pandas as pd

    try:
        stamp = pd.Timestamp(text) if text[:4].isdigit() else _german(text)
    except (ValueError, OverflowError):
        return None
    plain = stamp.tz_convert(None) if stamp.tzinfo else stamp
    return Moment(plain.value / 1e9, "date")


def _german(text: str) -> Any:
    """A date that begins with its day, as "24.12.2024 10:00:01". With slashes it is not known."""
    import pandas as pd

    if "/" in text:
        raise ValueError(text)
    return pd.to_datetime(text.replace(",", ""), dayfirst=True)


def over_midnight(seconds: Sequence[float]) -> list[float]:
    """Times of day in their order; where they fall by half a day, midnight has passed."""
    result, days = [], 0.0
    for place, value in enumerate(seconds):
        if place and value < seconds[place - 1] - _DAY / 2:
            days += _DAY
        result.append(value + days)
    return result


def is_one_of(cell: Any, words: Iterable[Any], signs: Signs) -> bool:
    """Whether a cell is one of these: numbers by value, words without their case."""
    number = number_of(cell, signs)
    plain = "" if is_empty(cell) and not isinstance(cell, str) else str(cell).strip().casefold()
    for word in words:
        if isinstance(word, (int, float)) and not isinstance(word, bool):
            if number is not None and not number[1] and number[0] == word:
                return True
        elif plain == str(word).strip().casefold():
            return True
    return False


def text_of_cell(cell: Any) -> str:
    """A cell as a text: 1.0 is 1."""
    if is_empty(cell):
        return ""
    if isinstance(cell, float) and cell.is_integer():
        return str(int(cell))
    return " ".join(str(cell).split())


def meets(condition: dict[str, Any], cell: Any, signs: Signs) -> bool:
    """Whether a cell meets all that a condition says of it."""
    number = None if is_empty(cell) else number_of(cell, signs)
    tests: dict[str, Callable[[Any], bool]] = {
        "is": lambda words: is_one_of(cell, words, signs),
        "is_not": lambda words: not is_one_of(cell, words, signs),
        "above": lambda limit: number is not None and number[0] > limit,
        "below": lambda limit: number is not None and number[0] < limit,
        "empty": lambda wanted: is_empty(cell) == wanted,
        "number": lambda wanted: (number is not None) == wanted,
    }
    return all(test(condition[name]) for name, test in tests.items() if name in condition)
