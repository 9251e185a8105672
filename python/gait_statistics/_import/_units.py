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

# What pint does not know, or knows as something else: g is a gram there. The words of people for
# each of its units.
_WORDS = {
    "percent": ("%", "prozent", "pct", "perc", "pourcent"),
    "dimensionless": ("1", "fraction", "ratio", "-"),
    "degree": ("°", "grad", "degs", "grados", "gradi"),
    "standard_gravity": ("g",),
    "s": ("sec", "secs", "sek", "sekunde", "sekunden", "seconde", "secondes", "segundos"),
    "ms": ("msec", "msecs", "millis", "millisec", "millisecs", "millisekunden"),
    "m": ("metre", "metres", "mtr", "mètre", "mètres", "metro", "metros"),
    "cm": ("cms", "zentimeter", "centimètres", "centímetros"),
    "mm": ("mms", "millimètres", "milímetros"),
    "m/s": ("mps",),
    "km/h": ("kmh", "kph"),
    "mile/hour": ("mph",),
    "minute": ("mins", "minuten", "minutos"),
    "inch": ("zoll",),
    "step/minute": ("spm",),
    "step": ("steps", "schritt", "schritte", "pas", "pasos", "passi"),
    "stride": ("strides", "cycles", "doppelschritte"),
    "sample": ("samples", "frame", "frames", "sp"),
    "degree/s": ("dps",),
}
_SPELLINGS = {word: unit for unit, words in _WORDS.items() for word in words}
# The units as the page lists them: ours, the unit, how much of ours it is, and other spellings.
UNITS: tuple[tuple[str, str, float, str], ...] = (
    ("s", "s", 1.0, "sec, secs, seconds, Sekunden, secondes"),
    ("s", "ms", 0.001, "msec, millisec, milliseconds, Millisekunden"),
    ("s", "min", 60.0, "minutes, Minuten"),
    ("m", "m", 1.0, "metres, meters, Meter, mètres"),
    ("m", "cm", 0.01, "centimetres, centimeters, Zentimeter"),
    ("m", "mm", 0.001, "millimetres, millimeters, Millimeter"),
    ("m", "in", 0.0254, "inch, inches, Zoll"),
    ("m", "ft", 0.3048, "foot, feet"),
    ("m/s", "m/s", 1.0, "m/sec, m s-1, m·s⁻¹, mps, metres per second"),
    ("m/s", "cm/s", 0.01, "cm/sec, cm./sec."),
    ("m/s", "km/h", 1 / 3.6, "kmh, kph, km/hr"),
    ("m/s", "mph", 0.44704, "mi/h, miles/h, miles per hour"),
    ("m/s", "ft/s", 0.3048, "ft/sec, feet per second"),
    ("deg", "deg", 1.0, "°, degs, degrees, Grad"),
    ("deg", "rad", 57.29577951308232, "radians"),
    ("deg/s", "deg/s", 1.0, "°/s, deg/sec, dps, Grad/s"),
    ("deg/s", "rad/s", 57.29577951308232, "rad/sec, radians per second"),
    ("%", "%", 1.0, "percent, Prozent, pct, % GC, % of stride, % of gait cycle"),
    ("%", "1", 100.0, "fraction, ratio"),
    ("steps/min", "steps/min", 1.0, "spm, steps per minute, Schritte/min, pas/min"),
    ("steps/min", "steps/s", 60.0, "steps/sec, steps per second, Schritte/s"),
    ("steps/min", "strides/min", 2.0, "strides per minute, cycles/min, Doppelschritte/min"),
    ("steps/min", "strides/s", 120.0, "strides per second, cycles/s"),
    ("samples", "samples", 1.0, "sample, frames, frame"),
    ("g", "g", 1.0, "G"),
    ("g", "m/s^2", 1 / 9.80665, "m/s2, m/s², m s-2"),
)
# "% of gait cycle" and "% GC": what it is a share of is the column's, and no unit.
_SHARE = re.compile(r"(?:%|percent|prozent|pct)\s*(?:of |der |des |du |de |del )?[^\W\d_][\w .]*")
_POWERS = str.maketrans("⁻¹²−", "-12-")
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
    """A unit in small letters in pint's spelling: "cm./sec." is cm/s."""
    plain = text.strip().strip("[]()").strip()
    if _SHARE.fullmatch(plain):
        return "percent"
    # The dot of "m.s-1" stands between units, that of "sec." does not.
    plain = re.sub(r"(?<=[a-z°])[.·⋅](?=[a-z])", "*", plain)
    plain = (
        re.sub(r" (per|pro|par|por) ", "/", plain.replace(".", ""))
        .translate(_POWERS)
        .replace("^", "**")
    )
    plain = re.sub(r"(?<=[a-z])(-?\d)", r"**\1", plain)
    whole = _SPELLINGS.get(plain)
    if whole:
        return whole
    return _WORD.sub(lambda word: _SPELLINGS.get(word[0], word[0]), plain)


@functools.cache
def unit_of(text: str) -> Any:
    """The unit that a text names, or None."""
    if not text.strip("[]() ."):
        return None
    try:
        # To pint, "Min" is a million inches. No unit of gait needs its capitals.
        return _registry().parse_units(_spelled(text.casefold()))
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
