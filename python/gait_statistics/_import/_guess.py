"""What a column may hold, by its name and its values."""

from __future__ import annotations

import itertools
import re
from collections.abc import Iterable, Sequence
from dataclasses import dataclass
from statistics import median

from .. import _core
from ._cells import is_empty, moment_of, units_beside
from ._fields import ANGLES, FIELD, FIELDS, FOOT_WORDS, MORE_FOOT_WORDS
from ._sources import Source
from ._units import factor_to, fits, unit_in_name

# Units that columns of a quantity come in, the likeliest first.
_UNITS = {
    "s": ("s", "ms"),
    "ms": ("ms", "s", "%"),
    "m": ("m", "cm", "mm"),
    "m/s": ("m/s", "cm/s", "km/h"),
    "%": ("%", "1", "s", "ms"),
    "deg": ("deg", "rad"),
    "deg/s": ("deg/s", "rad/s"),
    "g": ("g", "m/s^2"),
    "steps/min": ("steps/min", "strides/min"),
}
# Words at the end of a name that are its unit without brackets, as in "time_ms".
_UNIT_WORDS = (
    *("s", "sec", "secs", "seconds", "ms", "msec", "milliseconds", "sek", "sekunden"),
    *("m", "cm", "mm", "metres", "meters", "centimetres", "centimeters"),
    *("m/s", "cm/s", "km/h", "mps", "kmh", "deg/s", "rad/s", "dps", "m/s^2", "m/s²", "m/s2"),
    *("deg", "degrees", "rad", "radians", "%", "pct", "percent", "spm", "steps/min", "strides/min"),
    *("samples", "frames"),
)
_FEET = {
    word for foot in (FOOT_WORDS, MORE_FOOT_WORDS) for words in foot.values() for word in words
}
# Words that say that a column holds times.
_TIME_WORDS = ("time", "timestamp", "zeit", "uhrzeit", "clock", "seconds", "milliseconds")
# Words with which a name is that of another quantity: "Max. velocity" is no velocity of strides.
_OTHER_QUANTITY = re.compile(
    r"max(im\w*)?|min(im\w*)?|peak|initial|terminal|single|simple|double|sd|std|stdev|cv"
)
# How near to 100 % the medians of swing and stance are together.
_WHOLE = 3.0
# What is not measured, as numbers.
CODES_FOR_MISSING = (0.0, -1.0, -999.0, 999.0, -9999.0, 9999.0)


def median_bounds() -> dict[str, tuple[float, float]]:
    """Within what the median of a column lies, from the table of data checks."""
    columns = {name: values for name, _, values, _ in _core.checks()}
    result = {}
    for check, tolerance in zip(columns["check"], columns["tolerance"], strict=True):
        if check.endswith("_median"):
            low, high = re.findall(r"-?\d+(?:\.\d+)?", tolerance)[:2]
            result[check.removesuffix("_median")] = (float(low), float(high))
    return result


def numbers_of(source: Source, place: int) -> list[float]:
    """The numbers of a column; moments in seconds."""
    found = (moment_of(cell, source.signs) for cell in source.cells(place) if not is_empty(cell))
    return [moment.seconds for moment in found if moment is not None]


def is_numeric(source: Source, place: int) -> bool:
    filled = [cell for cell in source.cells(place) if not is_empty(cell)]
    return bool(filled) and len(numbers_of(source, place)) >= 0.7 * len(filled)


def plain_words(name: str) -> str:
    spaced = re.sub(r"(?<=[a-zäöü])(?=[A-Z])", " ", name)
    return " ".join(re.sub(r"[\W_]+", " ", spaced.casefold()).split())


def _other_quantities(words: Iterable[str]) -> set[str]:
    """What words say of a quantity that makes it another one; those of one meaning are one."""
    found = (_OTHER_QUANTITY.fullmatch(word) for word in words)
    return {"max" if one[0] == "peak" else one[0][:3] for one in found if one}


def _has_group(group: str, words: str, compact: str, begins: Sequence[int]) -> bool:
    """Whether a group of words is in a name, each from the beginning of one of its words."""
    parts = group.split()
    if len(parts) > 1:
        return all(f" {part}" in words for part in parts)
    if len(group) < 5:
        return f" {group} " in words
    # "heelstrike" is "Heel strike", too; but the end of "distance" is no "stance".
    return any(compact.startswith(group, begin) for begin in begins)


def _score(field_name: str, name: str) -> int:
    """How well a column's name fits a field: the letters of the words that are in it."""
    words = plain_words(name)
    begins = [0, *itertools.accumulate(map(len, words.split()))]
    without_unit = plain_words(re.sub(r"[\[(].*", "", name)).split()
    alone = [word for word in without_unit if word not in _FEET]
    own = FIELD[field_name]
    others = _other_quantities(without_unit) - _other_quantities(
        # The "min" of "steps/min" is a unit.
        plain_words(f"{own.name} {own.meaning} {own.unit}").split()
    )
    best = 0
    for group in (*own.words, field_name.replace("_", " ")):
        parts = group.removeprefix("=").split()
        is_there = (
            alone == parts
            if group[0] == "="
            else _has_group(group, f" {words} ", words.replace(" ", ""), begins)
        )
        if is_there and others <= _other_quantities(parts):
            best = max(best, sum(map(len, parts)))
    return best


def placed_by_name(source: Source, names: Sequence[tuple[int, str]]) -> dict[str, int]:
    """The best column for each field, by names alone."""
    scores = sorted(
        (
            (-_score(one.name, name), order, place, one.name)
            for place, name in names
            for order, one in enumerate(FIELDS)
            if _score(one.name, name) and _can_be(one.name, source, place)
        ),
    )
    result: dict[str, int] = {}
    used: set[int] = set()
    for _, _, place, field_name in scores:
        if field_name not in result and place not in used and is_numeric(source, place):
            if is_count(source, place) or (field_name == "gct" and rises(source, place)):
                # The number of the stride.
                continue
            field_of_kind = _by_kind(field_name, source, place)
            if field_of_kind not in result:
                result[field_of_kind] = place
                used.add(place)
    return result


def _can_be(field_name: str, source: Source, place: int) -> bool:
    """Whether the unit in a column's name is one that the field can have."""
    said = unit_in_name(source.names[place]) or source.units.get(place)
    return not said or fits(field_name, said)


def rises(source: Source, place: int) -> bool:
    """Whether a column has places or numbers in order, and no durations."""
    values = numbers_of(source, place)
    steps = [b - a for a, b in itertools.pairwise(values)]
    return len(steps) > 3 and sum(step >= 0 for step in steps) >= 0.9 * len(steps) > 0 < max(steps)


def is_count(source: Source, place: int) -> bool:
    """Whether a column numbers rows or strides, and may begin anew."""
    found = (moment_of(cell, source.signs) for cell in source.cells(place) if not is_empty(cell))
    # Times of day and dates may be whole seconds.
    values = [moment.seconds for moment in found if moment is not None and not moment.since]
    steps = [b - a for a, b in itertools.pairwise(values)]
    is_by_one = all(step in (0, 1) for step in steps if step >= 0)
    is_rare = sum(step < 0 for step in steps) <= 0.1 * len(steps)
    return len(steps) > 2 and is_by_one and is_rare and steps.count(1) >= 0.4 * len(steps)


def is_of_samples(source: Source, place: int) -> bool:
    """Whether a column's name says that it counts samples."""
    words = {*plain_words(source.names[place]).split()}
    return bool(words & {"sample", "samples", "index", "frame", "frames"})


def _unit_word(name: str) -> str | None:
    """The unit that a name ends in without brackets, as "time_ms" does."""
    share = re.search(r"%\s*(of\s+|des\s+|du\s+)?[^\W\d_]+(\s+[^\W\d_]+)?\s*$", name)
    if share:
        return "%"
    words = [word for word in re.split(r"[\s_,;:(\[]+", name.casefold()) if word]
    last = words[-1].strip("])").rstrip(".") if len(words) > 1 else ""
    return last if last in _UNIT_WORDS else None


def said_unit(source: Source, place: int) -> str | None:
    """The unit that a column's name, the row beneath it or its cells say."""
    name = source.names[place]
    said = unit_in_name(name) or source.units.get(place) or _unit_word(name)
    return said or next(filter(None, units_beside(source.cells(place), source.signs)), None)


def _by_kind(field_name: str, source: Source, place: int) -> str:
    """A begin or an end as samples where the values are large whole numbers."""
    if field_name == "contact" and rises(source, place):
        # The moment of a contact, not how long it lasts.
        return "hs"
    pairs = {"hs": "first_sample", "end": "last_sample"}
    back = {sample: moment for moment, sample in pairs.items()}
    if field_name not in pairs and field_name not in back:
        return field_name
    values = numbers_of(source, place)
    said = said_unit(source, place) or ""
    is_time = bool(said) and factor_to(said, "s") is not None
    words = plain_words(source.names[place]).split()
    is_time |= bool({*words} & {*_TIME_WORDS}) and not is_of_samples(source, place)
    is_whole = all(value == int(value) for value in values) and max(values, default=0) > 300
    if is_whole and not is_time and max(values) < 1e8:
        return pairs.get(field_name, field_name)
    return back.get(field_name, field_name)


@dataclass(frozen=True)
class Known:
    """What is known of a table when the unit of a column is guessed.

    Attributes:
        bounds: within what the median of each of our columns lies.
        stride: the median duration of strides (s).
        shares: the medians of swing and stance together, as they stand.
    """

    bounds: dict[str, tuple[float, float]]
    stride: float | None = None
    shares: float | None = None


def _said_for(field_name: str, source: Source, place: int) -> tuple[str, str] | None:
    """The unit that a name, the row beneath it or the cells say, and a remark; else None."""
    said = unit_in_name(source.names[place]) or source.units.get(place)
    if said and fits(field_name, said):
        return said, ""
    own = FIELD[field_name].unit
    word = _unit_word(source.names[place])
    beside = next(filter(None, units_beside(source.cells(place), source.signs)), None)
    for unit, remark in ((word, f"unit by its name: {word}"), (beside, "unit beside the numbers")):
        if unit and fits(field_name, unit):
            return (own, "") if factor_to(unit, own) == 1.0 else (unit, remark)
    return None


def _to_own(field_name: str, unit: str, stride: float | None) -> float | None:
    """What a value in a unit is multiplied by to be in the field's; shares are of the stride."""
    own = FIELD[field_name].unit
    factor = factor_to(unit, own)
    if factor is not None or stride is None:
        return factor
    if own == "%":
        seconds = factor_to(unit, "s")
        return 100 * seconds / stride if seconds else None
    return 10 * stride if (field_name, unit) == ("contact", "%") else None


def unit_for(field_name: str, source: Source, place: int, known: Known) -> tuple[str, str]:
    """The unit of a column, and a remark: said by the table, or else guessed by its values."""
    own = FIELD[field_name].unit
    said = _said_for(field_name, source, place)
    if said:
        return said
    values = [v for v in numbers_of(source, place) if v not in CODES_FOR_MISSING]
    if FIELD[field_name].kind == "moment" and values and max(values) > 300:
        if all(value == int(value) for value in values):
            return "ms", "a guess by its whole numbers: confirm"
    if field_name not in known.bounds or not values:
        return own, ""
    middle = median(values)
    if field_name in ANGLES:
        # Both fit: an angle of 0.4 may be degrees. The largest one tells.
        possible = ["rad"] if max(map(abs, values)) < 3.2 else ["deg"]
    else:
        possible = _possible(field_name, middle, known)
    if not possible:
        what = f"its median {middle:g} is no {FIELD[field_name].meaning} in any unit"
        return own, what
    words = plain_words(source.names[place]).split()
    if "s" in possible and own == "%" and {*words} & {"time", "duration", "dauer", "zeit", "temps"}:
        return "s", ""
    others = "".join(f', or "{unit}"' for unit in possible[1:])
    is_sure = possible[0] == own and not others
    return possible[0], "" if is_sure else f"a guess by the median {middle:g}{others}: confirm"


def _possible(field_name: str, middle: float, known: Known) -> list[str]:
    """The units in which a median is one of the field, the likeliest first."""
    low, high = known.bounds[field_name]
    factors = {
        unit: _to_own(field_name, unit, known.stride)
        for unit in _UNITS.get(FIELD[field_name].unit, (FIELD[field_name].unit,))
    }
    fitting = {
        unit: factor
        for unit, factor in factors.items()
        if factor is not None and low <= abs(middle) * factor <= high
    }
    # Swing and stance together are the stride, unless each has a unit of its own.
    shares = known.shares if known.shares and field_name in ("swing", "stance") else None
    whole = [
        unit for unit, factor in fitting.items() if shares and abs(shares * factor - 100) < _WHOLE
    ]
    return whole or list(fitting)
