"""Units as people write them, converted by pint."""

from __future__ import annotations

import functools
import re
from collections.abc import Sequence
from typing import Any

try:
    import pint
except ImportError as missing:
    raise ImportError(f"{missing}: pip install 'gait-statistics[import]'") from missing

from ._fields import CONVERSIONS, FIELD, Conversion

# What pint does not know, or knows as something else: g is a gram there.
_SPELLINGS = {
    "%": "percent",
    "prozent": "percent",
    "pct": "percent",
    "1": "dimensionless",
    "fraction": "dimensionless",
    "ratio": "dimensionless",
    "-": "dimensionless",
    "°": "degree",
    "grad": "degree",
    "g": "standard_gravity",
    "sec": "s",
    "secs": "s",
    "sek": "s",
    "sekunden": "s",
    "msec": "ms",
    "msecs": "ms",
    "metre": "m",
    "metres": "m",
    "mps": "m/s",
    "kmh": "km/h",
    "kph": "km/h",
    "mph": "mile/hour",
    "spm": "step/minute",
    "steps": "step",
    "schritte": "step",
    "strides": "stride",
    "cycles": "stride",
    "doppelschritte": "stride",
    "frames": "sample",
    "frame": "sample",
    "samples": "sample",
    "sp": "sample",
    "dps": "degree/s",
}
_WORD = re.compile(r"[^\W\d_]+|%|°")
_FEET = ("l", "r", "left", "right", "li", "re")
_IN_BRACKETS = re.compile(r"[\[(]([^\[\]()]*)[\])]\s*$")


@functools.cache
def _registry() -> Any:
    registry: Any = pint.UnitRegistry()
    registry.define("sample = [sample]")
    registry.define("step = [step]")
    registry.define("stride = 2 * step")
    return registry


def _spelled(text: str) -> str:
    """The unit in pint's spelling: "cm./sec." is cm/s."""
    plain = text.strip().strip("[]()").strip().replace(".", "").replace(" per ", "/")
    plain = plain.replace("²", "**2").replace("^", "**").replace("·", "*")
    whole = _SPELLINGS.get(plain.casefold())
    if whole:
        return whole
    return _WORD.sub(lambda word: _SPELLINGS.get(word[0].casefold(), word[0]), plain)


@functools.cache
def unit_of(text: str) -> Any:
    """The unit that a text names, or None."""
    if not text.strip("[]() ."):
        return None
    try:
        return _registry().parse_units(_spelled(text))
    except Exception:
        # pint raises errors of many kinds, its tokenizer's and Python's own among them.
        return None


def unit_in_name(name: str) -> str | None:
    """The unit that a column's name ends in, in brackets: "Stride time (ms)"."""
    found = _IN_BRACKETS.search(name)
    if not found or found[1].strip().casefold() in _FEET or unit_of(found[1]) is None:
        return None
    return found[1].strip()


def _is_of_angle(unit: Any) -> bool:
    """Whether a unit has an angle in it, which pint takes for a plain number."""
    return any(word in str(unit) for word in ("degree", "radian", "turn", "arcminute"))


@functools.cache
def factor_to(text: str, target: str) -> float | None:
    """What a value in one unit is multiplied by to be in another; None where it cannot be."""
    unit, aim = unit_of(text), unit_of(target)
    if unit is None or aim is None or unit.dimensionality != aim.dimensionality:
        return None
    if _is_of_angle(unit) != _is_of_angle(aim):
        return None
    try:
        return float((1 * unit).to(aim).magnitude)
    except Exception:
        # Units with an offset, such as degrees of temperature.
        return None


def times(value: float, factor: float) -> float:
    """A value times a factor; by a division where that is exact, so that 1050 ms are 1.05 s."""
    inverse = round(1 / factor) if 0 < factor < 1 else 0
    if inverse and abs(inverse * factor - 1) < 1e-12:
        return value / inverse
    whole = round(factor)
    return value * (whole if whole and abs(factor - whole) < 1e-12 * whole else factor)


def conversion_of(name: str, unit: str) -> Conversion | None:
    """What becomes of a value in this unit that is another quantity than its column's."""
    for conversion in CONVERSIONS:
        if name in conversion.fields and factor_to(unit, conversion.given) is not None:
            return conversion
    return None


def fits(name: str, unit: str) -> bool:
    """Whether a column can be given in a unit."""
    return factor_to(unit, FIELD[name].unit) is not None or conversion_of(name, unit) is not None


def expected_units(name: str) -> Sequence[str]:
    """Units that a column takes, for messages."""
    some = {"s": "s, ms, min", "m": "m, cm, mm", "m/s": "m/s, cm/s, km/h", "deg": "deg, rad"}
    units = [some.get(FIELD[name].unit, FIELD[name].unit)]
    if FIELD[name].unit == "%":
        units.append("1")
    if name == "cadence":
        units.append("strides/min")
    units += [some.get(rule.given, rule.given) for rule in CONVERSIONS if name in rule.fields]
    return units
