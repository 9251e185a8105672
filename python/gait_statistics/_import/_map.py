"""Reading a map: what a user says about a table."""

from __future__ import annotations

import copy
import datetime
import os
import re
from collections.abc import Callable, Iterable, Mapping, Sequence
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any, Literal

from .. import _core
from .._errors import InputError
from ._cells import Signs, moment_of
from ._fields import (
    CHECKS_OF_TIMES,
    COLUMN_KEYS,
    CONDITION_KEYS,
    DERIVED_NAMES,
    EXCLUDE_KEYS,
    FIELD,
    FOOT_WORDS,
    KEYS,
    SECTIONS,
    SYNONYMS,
    Key,
)
from ._places import Faults, listed, nearest, shown
from ._toml import lines_of_keys, map_error, tables_of, value_of
from ._units import expected_units, fits

MAPS = Path(__file__).with_name("maps")
# A file that ends so is no map. Text of any other ending may be one.
_TABLES = (".csv", ".tsv", ".xlsx", ".xlsm", ".parquet", ".pq", ".feather", ".json", ".jsonl")
# Forms of times, which need no unit: "mm:ss", "YYYY-MM-DD", "timestamp".
_FORM_OF_TIME = re.compile(r".*:.*|yyyy.*|dd.*|iso.*|date.*|timestamp|clock", re.IGNORECASE)
FEET: tuple[Literal["left"], Literal["right"]] = ("left", "right")


@dataclass(frozen=True)
class ColumnMap:
    """Where the values of one column come from.

    Attributes:
        names: names of the column in the table, for each foot; the first that is there counts.
        unit: the unit that the map names, or None.
        missing: what stands for missing; None: what the map says for all columns.
        row: which row has the value.
    """

    names: Mapping[str, tuple[str, ...]]
    unit: str | None = None
    factor: float | None = None
    add: float | None = None
    missing: tuple[Any, ...] | None = None
    valid: tuple[float, float] | None = None
    row: str = "this"


@dataclass
class TableMap:
    """A map whose keys and values have been checked. ``values`` holds those of ``KEYS``."""

    name: str
    values: dict[tuple[str, str], Any]
    columns: dict[str, ColumnMap]
    about: dict[str, str]
    skip: list[dict[str, Any]]
    exclude: list[dict[str, Any]]
    lines: dict[tuple[str, str], int] = field(default_factory=dict)

    def get(self, section: str, name: str, default: Any = None) -> Any:
        """The value of a key."""
        return self.values.get((section, name), default)

    def error(self, section: str, name: str, text: str) -> InputError:
        """Something that is wrong with a key, or for want of it."""
        line = self.lines.get((section, name)) or self.lines.get((section, ""))
        return InputError(self.name, None, line, None, text)

    def doubt_of_condition(self, section: str, number: int, text: str) -> InputError:
        """A warning about one of the conditions of [[skip]] or [[exclude]]."""
        return self.error(section, f"#{number}", f"[[{section}]] {text}")

    @property
    def without_checks(self) -> tuple[str, ...]:
        """Data checks that do not apply."""
        given = tuple(self.get("", "without_checks", ()))
        made_up = CHECKS_OF_TIMES if self.get("", "times") == "end to end" else ()
        return tuple(dict.fromkeys((*given, *made_up)))

    @property
    def feet_by(self) -> str:
        """How feet are told."""
        if ("feet", "by") in self.values:
            return str(self.values["feet", "by"])
        for key, by in (("only", "only"), ("first", "rows"), ("column", "column")):
            if ("feet", key) in self.values:
                return by
        return "columns" if self.has_columns_of_feet else ""

    @property
    def has_columns_of_feet(self) -> bool:
        """Whether a column has another name for each foot."""
        differ = (column.names["left"] != column.names["right"] for column in self.columns.values())
        return any(differ) or self.column_of_events("left") != self.column_of_events("right")

    def column_of_events(self, foot: str) -> str:
        """The column that says which event of a foot a row is; empty where there is none."""
        name: str = self.get("events", "column", "")
        return name.replace("{foot}", str(self.words_of(foot)[0]))

    @property
    def names(self) -> list[str]:
        """The names of columns that it has, without places ("#3") and what stands for others."""
        names = [
            name for column in self.columns.values() for foot in FEET for name in column.names[foot]
        ]
        for key in ("walk", "breaks", "fill_down"):
            names += self.get("", key, ())
        columns = (self.get("feet", "column"), *map(self.column_of_events, FEET))
        names += [name for name in columns if name]
        names += [c["column"] for c in (*self.skip, *self.exclude) if "column" in c]
        return [name for name in dict.fromkeys(names) if not re.fullmatch(r"#\d+|\{.*\}", name)]

    def words_of(self, foot: str) -> tuple[Any, ...]:
        """The words for a foot."""
        return tuple(self.get("feet", foot) or FOOT_WORDS[foot])

    def foot_in(self, name: str) -> str | None:
        """The foot whose word a sheet or a file has for its name, or in it."""
        words = [(foot, str(word)) for foot in FEET for word in self.words_of(foot)]
        found = {foot for foot, word in words if name.casefold() == word.casefold()}
        if not found:
            # The longest word in the name: "right" in "walk1_right", not the r of "trial".
            inside = [
                (len(word), foot)
                for foot, word in words
                if re.search(rf"(?<![^\W\d_]){re.escape(word)}(?![^\W\d_])", name, re.IGNORECASE)
            ]
            found = {foot for length, foot in inside if length == max(inside)[0]}
        return found.pop() if len(found) == 1 else None

    @property
    def has_foot_words(self) -> bool:
        """Whether the map has words for the feet."""
        return ("feet", "left") in self.values or ("feet", "right") in self.values


def _is_number(value: Any) -> bool:
    return isinstance(value, (int, float)) and not isinstance(value, bool)


def _is_text(value: Any) -> bool:
    return isinstance(value, str) and bool(value)


def _is_cell(value: Any) -> bool:
    return isinstance(value, (str, int, float))


def _all(is_one: Callable[[Any], bool]) -> Callable[[Any], bool]:
    return lambda value: isinstance(value, list) and all(map(is_one, value))


def _one_or_all(is_one: Callable[[Any], bool]) -> Callable[[Any], bool]:
    return lambda value: is_one(value) or _all(is_one)(value)


def _is_whole(value: Any) -> bool:
    return isinstance(value, int) and not isinstance(value, bool) and value >= 0


def _is_span(value: Any) -> bool:
    return _all(_is_number)(value) and len(value) == 2 and value[0] <= value[1]


def _is_moment(value: Any) -> bool:
    """Whether it is a number, or a text or a TOML value that is a time of day or a date."""
    if isinstance(value, str):
        found = moment_of(value, Signs(dates="day first"))
        return found is not None and bool(found.since)
    return _is_number(value) or isinstance(value, (datetime.datetime, datetime.time))


def _is_interval(value: Any) -> bool:
    if not (_all(_is_moment)(value) and len(value) == 2):
        return False
    return _is_span(value) if all(map(_is_number, value)) else type(value[0]) is type(value[1])


def _is_section(value: Any) -> bool:
    """Whether a map has it as [name] or [[name]]."""
    return isinstance(value, dict) or (
        bool(value) and _all(lambda one: isinstance(one, dict))(value)
    )


def _is_any_text(value: Any) -> bool:
    return isinstance(value, str)


# What a key takes: the words for it, whether a value is that, and whether it becomes a tuple.
KINDS: dict[str, tuple[str, Callable[[Any], bool], bool]] = {
    "text": ("a text in quotation marks", _is_any_text, False),
    "texts": ("a text or a list of them", _one_or_all(_is_text), True),
    "number": ("a number", _is_number, False),
    "whole": ("a whole number from 0", _is_whole, False),
    "wholes": ("a list of whole numbers", _one_or_all(_is_whole), True),
    "truth": ("true or false", lambda value: isinstance(value, bool), False),
    "cells": ("a number, a text or a list of them", _one_or_all(_is_cell), True),
    "span": ("two numbers, the smaller first: [0, 100]", _is_span, False),
    "spans": (
        'a list of pairs: [[12.0, 15.5]], or [["10:00:12", "10:00:15.5"]]',
        _all(_is_interval),
        False,
    ),
}


def expected_by(key: Key) -> str:
    """What a key takes, in words."""
    if "|" in key.kind:
        return "one of: " + listed(f'"{word}"' for word in key.kind.split("|"))
    return KINDS[key.kind][0]


def _place_of_key(name: str) -> str:
    """A key that belongs to another section, or a section, in words."""
    if name in SECTIONS:
        return f"the section [{name}]"
    section = next(key.section for key in KEYS if key.name == name)
    return f'"{name}" {f"in [{section}]" if section else "above the first [section]"}'


class _Reader:
    """Checks a map, and collects everything that is wrong with it."""

    def __init__(self, name: str, lines: dict[tuple[str, str], int]) -> None:
        self.name = name
        self.lines = lines
        self.faults = Faults()

    def fault(self, section: str, name: str, text: str) -> None:
        line = self.lines.get((section, name)) or self.lines.get((section, ""))
        place = " ".join(filter(None, [section and f"[{section}]", name])) + ": "
        self.faults.add(InputError(self.name, None, line, None, place + text))

    def value_of(self, key: Key, value: Any, section: str, of: str = "") -> Any:
        """The value of a key; None where it is wrong."""
        if "|" in key.kind:
            if value in key.kind.split("|"):
                return value
        else:
            _, is_right, becomes_tuple = KINDS[key.kind]
            if is_right(value):
                if not becomes_tuple:
                    return value
                return tuple(value) if isinstance(value, list) else (value,)
        text = f"found {value!r}, expected {expected_by(key)}"
        self.fault(section, of or key.name, f"{key.name}: {text}" if of else text)
        return None

    def unknown(
        self, section: str, name: str, known: Iterable[str], what: str, of: str = ""
    ) -> None:
        """Says where an unknown key belongs, or which one it is like."""
        if what == "section":
            near = nearest(name, SECTIONS)
            expected = f'a known one: is it "[{near}]"?' if near else "one of: "
            expected += "" if near else listed(f"[{one}]" for one in SECTIONS)
            if name.casefold() in SECTIONS:
                expected = f"[{name.casefold()}], in small letters"
            self.fault(name, "", f"found an unknown section, expected {expected}")
            return
        if section == "skip" and name in {key.name for key in EXCLUDE_KEYS}:
            text = "found it under [[skip]], which takes rows out that are no strides, expected it "
            self.fault(section, name, text + "under [[exclude]]")
            return
        elsewhere = [key for key in KEYS if key.name == name and key.section != section]
        known = list(known)
        near = SYNONYMS.get(name, "") if what == "column" else ""
        others = [] if what == "column" or of else [*(key.name for key in KEYS), *SECTIONS]
        near = near or nearest(name, [*others, *known])
        text = f"found an unknown {what}, expected one of those of docs/import.md"
        if elsewhere and not elsewhere[0].section:
            text = "found it in a section, expected it above the first [section] of the map"
        elif elsewhere:
            text = f"found it here, expected it in the section [{elsewhere[0].section}]"
        elif near:
            near = f'"{near}"' if near in known else _place_of_key(near)
            text = f"found an unknown {what}, expected a known one: is it {near}?"
        self.fault(section, of or name, f"{name}: {text}" if of else text)

    def keys_of(
        self, table: dict[str, Any], keys: Sequence[Key], section: str, of: str = ""
    ) -> dict[str, Any]:
        """The values of a table's keys; what is unknown or wrong is left out."""
        known = {key.name: key for key in keys}
        result = {}
        for name, value in table.items():
            if name not in known:
                is_section = not section and (_is_section(value) or name.casefold() in SECTIONS)
                self.unknown(section, name, known, "section" if is_section else "key", of)
            else:
                checked = self.value_of(known[name], value, section, of)
                if checked is not None:
                    result[name] = checked
        return result

    def column(self, name: str, value: Any, feet: dict[str, Any]) -> ColumnMap | None:
        """What a map says about one column."""
        if isinstance(value, (str, list)):
            value = {"column": value}
        if not isinstance(value, dict):
            text = f"found {value!r}, expected a column's name, or {{column = ..., unit = ...}}"
            self.fault("columns", name, text)
            return None
        keys = self.keys_of(value, COLUMN_KEYS, "columns", name)
        names = self.names_of(name, keys, feet)
        unit = keys.get("unit")
        if unit is not None and not fits(name, unit):
            expected = listed(expected_units(name), " or ")
            if FIELD[name].unit in ("s", "samples") and _FORM_OF_TIME.fullmatch(unit):
                expected = "none: times such as 1:05.3, 10:00:01 and dates are recognised without"
            self.fault("columns", name, f'found the unit "{unit}", expected {expected}')
        if names is None:
            return None
        return ColumnMap(
            names,
            unit,
            keys.get("factor"),
            keys.get("add"),
            keys.get("missing"),
            tuple(keys["valid"]) if "valid" in keys else None,
            keys.get("row", "this"),
        )

    def names_of(
        self, name: str, keys: dict[str, Any], feet: dict[str, Any]
    ) -> dict[str, tuple[str, ...]] | None:
        """The names of a column for each foot."""
        if bool(keys.get("column")) == ("left" in keys or "right" in keys):
            text = (
                "found no column or too many, expected column = ..., or left = ... and right = ..."
            )
            self.fault("columns", name, text)
            return None
        if "column" not in keys:
            return {foot: (keys[foot],) if foot in keys else () for foot in FEET}

        def filled(foot: str) -> tuple[str, ...]:
            words = [str(word) for word in feet.get(foot) or (foot,)]
            return tuple(
                text.replace("{foot}", word)
                for text in keys["column"]
                for word in (words if "{foot}" in text else words[:1])
            )

        return {foot: filled(foot) for foot in FEET}

    def conditions(self, found: Any, keys: Sequence[Key], section: str) -> list[dict[str, Any]]:
        """The tables of [[skip]] or [[exclude]]."""
        if not _all(lambda table: isinstance(table, dict))(found):
            text = f"found one table, expected [[{section}]] in two pairs of brackets"
            self.fault(section, "", text)
            return []
        result = []
        for table in found:
            condition = self.keys_of(table, keys, section)
            tests = condition.keys() & {"is", "is_not", "above", "below", "empty", "number"}
            others = condition.keys() & {"lines", "times", "first", "last"}
            if bool(tests) != ("column" in condition) or not (tests or others):
                text = "found no condition, expected column = ... with is, is_not, above, below, "
                text += "empty or number; or lines"
                text += ", times, first or last" if section == "exclude" else ""
                self.fault(section, "", text)
            else:
                result.append(condition)
        return result

    def names_are_known(self, name: str, found: Sequence[str], known: Sequence[str]) -> None:
        """Says which names in a list nobody knows."""
        for word in found:
            if word not in known:
                near = nearest(word, known)
                expected = f'a known one: is it "{near}"?' if near else f"one of: {listed(known)}"
                self.fault("", name, f"found {shown(word)}, expected {expected}")

    def read(self, found: dict[str, Any]) -> TableMap:
        """The map of a file's tables."""
        values: dict[tuple[str, str], Any] = {}
        sections = {name: found[name] for name in SECTIONS if name in found}
        for section in ("table", "feet", "events", "columns", "about"):
            if section == "about" and isinstance(found.get("about"), str):
                continue
            if section in sections and not isinstance(sections[section], dict):
                self.fault("", section, f"found a value, expected a section [{section}]")
                sections[section] = {}
        top = {name: value for name, value in found.items() if name not in SECTIONS}
        if isinstance(found.get("about"), str):
            top["about"] = sections.pop("about")
        named = ("table", "feet", "events")
        for section, tables in (("", top), *((name, sections.get(name, {})) for name in named)):
            keys = [key for key in KEYS if key.section == section]
            for name, value in self.keys_of(tables, keys, section).items():
                values[section, name] = value
        columns = self.columns(sections.get("columns", {}), values)
        if "events" in sections:
            self.check_events(values, columns)
        about = sections.get("about", {})
        for name, text in about.items():
            if not isinstance(text, str):
                self.fault("about", name, f"found {text!r}, expected a text in quotation marks")
        skip = self.conditions(sections.get("skip", []), CONDITION_KEYS, "skip")
        exclude = self.conditions(sections.get("exclude", []), EXCLUDE_KEYS, "exclude")
        self.names_are_known("derive", values.get(("", "derive"), ()), DERIVED_NAMES)
        checks = values.get(("", "without_checks"), ())
        self.names_are_known("without_checks", checks, _check_names())
        try:
            re.compile(values.get(("feet", "pattern"), ""))
        except re.error as error:
            text = f"found {error}, expected a regular expression"
            self.fault("feet", "pattern", text)
        rate = values.get(("", "sampling_rate"))
        if rate is not None and not 1 <= rate <= 1e6:
            self.fault("", "sampling_rate", f"found {rate}, expected samples per second, 1 or more")
        self.faults.raise_any()
        return TableMap(self.name, values, columns, about, skip, exclude, self.lines)

    def check_events(
        self, values: dict[tuple[str, str], Any], columns: dict[str, ColumnMap]
    ) -> None:
        """Finds what does not go with a row for each event."""
        if ("events", "column") not in values:
            self.fault("events", "column", "found none, expected the column that says which event")
        if "hs" not in columns:
            self.fault("columns", "hs", "found none, expected the column with the events' times")
        if "lift_off" in columns:
            text = "found it beside [events], whose rows have it, expected none"
            self.fault("columns", "lift_off", text)
        if ("feet", "first") in values:
            text = "found it beside [events], expected the column that says which foot"
            self.fault("feet", "first", text)

    def columns(
        self, found: dict[str, Any], values: dict[tuple[str, str], Any]
    ) -> dict[str, ColumnMap]:
        """The section [columns]."""
        if not found:
            self.fault("columns", "", "found none, expected at least one column: gct = ...")
        feet: dict[str, Any] = {foot: values.get(("feet", foot), (foot,)) for foot in FEET}
        result = {}
        for name, value in found.items():
            if name not in FIELD:
                self.unknown("columns", name, FIELD, "column")
                continue
            column = self.column(name, value, feet)
            if column is not None:
                result[name] = column
        return result


def _check_names() -> list[str]:
    return next(values for name, _, values, _ in _core.checks() if name == "check")


def shipped_maps() -> dict[str, Path]:
    """The maps that come along, by name."""
    return {path.stem: path for path in sorted(MAPS.glob("*.toml"), key=lambda path: path.stem)}


def _text_of_map(given: str | os.PathLike[str]) -> tuple[str, str]:
    """The name and the text of a map's file."""
    name = os.fsdecode(given)
    path = Path(name)
    if path.suffix.casefold() in _TABLES:
        text = "found a table, expected a map, which is a TOML file; tables stand before --map: "
        raise map_error(name, None, f"{text}gait-import {path.name} --map MAP.toml -o FOLDER")
    if not path.is_file() and name in shipped_maps():
        path = shipped_maps()[name]
    try:
        return name, path.read_text(encoding="utf-8-sig")
    except UnicodeDecodeError:
        text = "found text that is not UTF-8, expected a map in UTF-8: save it with this encoding"
    except OSError as error:
        near = nearest(name, shipped_maps())
        hint = f'; is it "{near}"?' if near else ""
        text = (
            f"cannot be read: {error.strerror}. --list-maps prints the maps that come along{hint}"
        )
    raise map_error(name, None, text)


def _set(tables: dict[str, Any], setting: str) -> None:
    """Puts one value into a map: "feet.first=left"."""
    path, sign, value = setting.partition("=")
    names = path.strip().split(".")
    if not sign or not all(names):
        raise map_error("--set", None, f'found "{setting}", expected KEY=VALUE: sampling_rate=128')
    for name in names[:-1]:
        tables = tables.setdefault(name, {})
        if not isinstance(tables, dict):
            raise map_error("--set", None, f'found "{setting}", expected a key of a section')
    tables[names[-1]] = value_of(value)


def read_map(
    given: str | os.PathLike[str] | Mapping[str, Any], settings: Sequence[str] = ()
) -> TableMap:
    """Reads and checks a map.

    Args:
        given: the path of a map, the name of one that comes along, or its tables.
        settings: keys to set in it, as "feet.first=left".

    Raises:
        WalkError: with everything that is wrong, each with its line.
    """
    if isinstance(given, Mapping):
        name, lines, tables = "map", {}, copy.deepcopy(dict(given))
    else:
        name, text = _text_of_map(given)
        tables, lines = tables_of(name, text), lines_of_keys(text)
    for setting in settings:
        _set(tables, setting)
    return _Reader(name, lines).read(tables)
