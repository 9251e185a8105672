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
_DATE = re.compile(r"\d{4}-\d\d?-\d\d?[ T]\d|\d\d?[./]\d\d?[./]\d{4}[, T]+\d")
_DAY_AND_MONTH = re.compile(r"(\d\d?)([./])(\d\d?)[./](\d{4})[, T]+(.*)")
_COMMA = re.compile(r"[-+]?\d+,\d+(?:[eE][-+]?\d+)?")
_GROUPED = re.compile(r"[-+]?\d{1,3}(?P<sign>[ '])\d{3}(?:(?P=sign)\d{3})*(?:[.,]\d*)?")
_GROUPED_COMMA = re.compile(r"[-+]?\d{1,3}(?:,\d{3})+")
_GROUPED_POINT = re.compile(r"[-+]?\d{1,3}(?:\.\d{3})+")
# What "1.017" may be beside "979": more than a thousand of something.
_ABOVE_THOUSAND = re.compile(r"[1-9]\d{0,2}\.\d{3}")
_BELOW_THOUSAND = re.compile(r"[1-9]\d{0,2}")
_DAY = 86400.0
# Signs that look alike: a minus, blanks of other widths, and an apostrophe.
_ALIKE = str.maketrans("\u2212\u00a0\u202f\u2009\u2019", "-   '")


def is_empty(cell: Any) -> bool:
    """Whether a cell holds nothing, or a word for nothing."""
    if cell is None:
        return True
    if isinstance(cell, float):
        return math.isnan(cell)
    return isinstance(cell, str) and cell.strip().casefold() in _MISSING


@dataclass(frozen=True)
class Signs:
    """The decimal sign of a table, the one between thousands, and the order of its dates."""

    decimal: str = "."
    thousands: str = ""
    dates: str = ""

    def plain(self, text: str) -> str:
        """A number's text with a decimal point alone."""
        text = text.strip().translate(_ALIKE)
        if self.thousands:
            text = text.replace(self.thousands.translate(_ALIKE), "")
        return text.replace(",", ".") if self.decimal == "," else text


def _without_unit(cell: str) -> str:
    """The number's part of a cell such as "1,055 ms"."""
    text = cell.translate(_ALIKE).strip()
    return text if text[-1:].isdigit() else re.sub(r"\s*(?:[^\W\d_][^,;:]*|[%°].*)$", "", text)


def signs_of(cells: Iterable[Any]) -> Signs | None:
    """The signs that texts of numbers show; None where they could be read in two ways."""
    texts = [_without_unit(cell) for cell in cells if isinstance(cell, str)]
    between = {found["sign"] for text in texts if (found := _GROUPED.fullmatch(text))}
    if len(between) == 1:
        # Neither comma nor point is between thousands, then.
        is_comma = any(_COMMA.search(text) for text in texts)
        return Signs("," if is_comma else ".", between.pop())
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


def has_decimal_point(cell: Any) -> bool:
    """Whether a cell is a text of a number whose point cannot be between thousands."""
    text = _without_unit(cell) if isinstance(cell, str) else ""
    return re.fullmatch(r"[-+]?\d*\.\d+", text) is not None and not _ABOVE_THOUSAND.fullmatch(
        text.lstrip("-+")
    )


def open_points(cells: Iterable[Any]) -> list[str]:
    """Two texts of a column, such as "979" and "1.017", whose point may be between thousands.

    Empty where there is another form of a number. Zeros and negative numbers tell nothing: they
    may stand for what is missing.
    """
    texts = [_without_unit(cell) for cell in cells if isinstance(cell, str) and not is_empty(cell)]
    texts = [text for text in texts if not re.match(r"-|0$", text)]
    below = [text for text in texts if _BELOW_THOUSAND.fullmatch(text)]
    above = [text for text in texts if _ABOVE_THOUSAND.fullmatch(text)]
    is_open = below and above and len(below) + len(above) == len(texts)
    return [below[0], above[0]] if is_open else []


def dates_of(cells: Iterable[Any]) -> str:
    """What the first number of dates such as 03/24/2025 is; empty where none is above 12."""
    found = [_DAY_AND_MONTH.match(cell.strip()) for cell in cells if isinstance(cell, str)]
    days = {int(date[1]) > 12 for date in found if date and date[2] == "/"}
    months = {int(date[3]) > 12 for date in found if date and date[2] == "/"}
    return "day first" * (True in days) or "month first" * (True in months)


def has_open_date(cell: Any) -> bool:
    """Whether a cell is a date with slashes, whose order the other cells must tell."""
    found = _DAY_AND_MONTH.match(cell.strip()) if isinstance(cell, str) else None
    return found is not None and found[2] == "/"


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
    if signs.decimal == "." and not signs.thousands and _PLAIN.fullmatch(cell):
        # Most cells are this, and it is much faster.
        return float(cell), ""
    found = _NUMBER.fullmatch(signs.plain(cell))
    if found and (not found[2] or unit_of(found[2]) is not None):
        value = float(found[1])
        return (value, found[2]) if math.isfinite(value) else None
    clock = _CLOCK.fullmatch(cell.strip())
    return (_clock_seconds(clock), "s") if clock and _is_whole_clock(clock) else None


def units_beside(cells: Sequence[Any], signs: Signs) -> list[str]:
    """The unit that each cell has beside its number; empty where it has none."""
    texts = [cell if isinstance(cell, str) and not cell[-1:].isdigit() else "" for cell in cells]
    found = [_NUMBER.fullmatch(signs.plain(text)) if text else None for text in texts]
    return [one[2] if one and unit_of(one[2]) is not None else "" for one in found]


def _seconds_of(time: datetime.time | datetime.datetime) -> float:
    return time.hour * 3600 + time.minute * 60 + time.second + time.microsecond / 1e6


def _is_whole_clock(found: re.Match[str]) -> bool:
    """Whether it is h:mm:ss, or mm:ss.s, which its decimals tell from h:mm."""
    return found[1] is not None or (not found[4] and re.search("[.,]", found[3]) is not None)


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
            return _date_of(cell.strip(), signs.dates)
    return duration_of(cell, signs)


def duration_of(cell: Any, signs: Signs) -> Moment | None:
    """The number in a cell, as a moment that counts from nowhere."""
    number = number_of(cell, signs)
    return None if number is None else Moment(number[0], "", number[1])


def _date_of(text: str, order: str) -> Moment | None:
    import pandas as pd

    by_day = _DAY_AND_MONTH.fullmatch(text)
    try:
        if by_day:
            return _by_day(by_day, order)
        stamp = pd.Timestamp(text.replace(",", "."))
    except (ValueError, OverflowError):
        return None
    plain = stamp.tz_convert(None) if stamp.tzinfo else stamp
    return Moment(plain.value / 1e9, "date")


def _by_day(found: re.Match[str], order: str) -> Moment | None:
    """A date such as "24.12.2024 10:00:01"; with slashes its order must be known."""
    clock = _CLOCK.fullmatch(found[5])
    if clock is None or clock[1] is None or (found[2] == "/" and not order):
        return None
    is_month_first = found[2] == "/" and order == "month first"
    day, month = (int(found[place]) for place in ((3, 1) if is_month_first else (1, 3)))
    days = (datetime.date(int(found[4]), month, day) - datetime.date(1970, 1, 1)).days
    return Moment(days * _DAY + _clock_seconds(clock), "date")


_SEVERAL = re.compile(r"[\[({]?\s*[-+\d.]+(?:\s*[,;|\s]\s*[-+\d.]+){2,}\s*[\])}]?")


def has_several_numbers(cell: Any) -> bool:
    """Whether a cell is a list of numbers."""
    return isinstance(cell, str) and _SEVERAL.fullmatch(cell.strip()) is not None


def why_no_number(text: str) -> str:
    """What a text may be that is no number, and the key that reads it; empty where unknown."""
    plain = text.translate(_ALIKE).strip()
    between = _GROUPED.fullmatch(plain)
    if between:
        return f'a number: say [table] thousands = "{between["sign"]}"'
    date = _DAY_AND_MONTH.match(plain)
    if date and date[2] == "/":
        return 'a date whose order is known: say [table] dates = "day first" or "month first"'
    if re.match(r"\d{1,4}[-./]\d\d?[-./]\d{1,4}\b", plain):
        return (
            "a number or a date with a time: 2024-12-24 10:00:01.5, 24.12.2024 10:00:01.5 or "
            "24/12/2024 10:00:01.5"
        )
    if re.fullmatch(r"\d\d?:\d\d(:\d\d.*)?(\s*[ap]\.?m\.?)?", plain, re.IGNORECASE):
        return "a number or a time as h:mm:ss, h:mm:ss PM or mm:ss.s"
    if has_several_numbers(plain):
        return "one number in a cell, and so a row for each stride: there are several in it"
    return ""


def over_midnight(seconds: Sequence[float]) -> list[float]:
    """Times of day in their order; where they fall by half a day, midnight has passed."""
    result, days = [], 0.0
    for place, value in enumerate(seconds):
        if place and value < seconds[place - 1] - _DAY / 2:
            days += _DAY
        result.append(value + days)
    return result


def condition_in_words(condition: dict[str, Any]) -> str:
    """ "column "Turn": no cell is "x"", for a condition that no row meets."""
    quoted = {str: lambda word: f'"{word}"'}
    tests = []
    for name in ("is", "is_not", "above", "below", "empty", "number"):
        if name in condition:
            value = condition[name]
            words = value if isinstance(value, tuple) else (value,)
            texts = [quoted.get(type(word), str)(word) for word in words]
            tests.append(f"{name} = {', '.join(texts)}")
    if "lines" in condition:
        tests.append("lines = " + ", ".join(map(str, condition["lines"])))
    table = f"{condition['table']}: " if "table" in condition else ""
    column = f'column "{condition["column"]}": ' if "column" in condition else ""
    return f"{table}{column}found no row with {' and '.join(tests)}"


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
