"""Analysing a walk, and what comes out of it."""

from __future__ import annotations

import enum
import html
import math
from collections.abc import Callable, Sequence
from dataclasses import dataclass
from functools import cache, partial
from os import PathLike
from pathlib import Path
from typing import Any, overload

from . import _core
from ._arguments import checked_foot, checked_names
from ._errors import InputError, WalkError, input_errors, warn_about
from ._tables import ColumnOut, FrameKind, frame_of
from ._walk import Foot, Walk, checked_walk

_LARGEST_FLOAT = 3.4028234663852886e38


class QualityFlag(enum.IntFlag):
    """What is implausible about a walk. ``docs/quality-flags.md`` has the limits."""

    SETTING = 1
    """The settings value is not plausible."""
    FEW_CYCLES = 2
    """The walk has few cycles."""
    SPEED = 4
    """The mean speed of the one foot is not plausible, or was not measured."""
    SPEED_RIGHT = 8
    """The mean speed of the right foot is not plausible, or was not measured."""
    SPEED_LEFT = 16
    """The mean speed of the left foot is not plausible, or was not measured."""
    SWING_ASYMMETRY = 128
    """The mean swing asymmetry is large."""


@dataclass(frozen=True)
class Info:
    """The cycle accounting: times in seconds, distances in metres; None where not measured.

    ``docs/definitions.md`` defines every field.
    """

    recording_duration: float | None
    duration: float | None
    excluded_1_fallback_gct_sum: float | None
    excluded_2_gct_sum: float | None
    included_gct_sum: float | None
    included_distance: float | None
    total_distance: float | None
    cycle_count: int
    excluded_count: int
    cycles: tuple[int, ...]
    excluded_2_fallback_count: int
    excluded_2_count: int
    excluded_1_fallback_count: int
    excluded_1_count: int
    included_count: int
    excluded_2_fallback_duration: float | None
    excluded_2_duration: float | None
    excluded_1_fallback_duration: float | None
    excluded_1_duration: float | None
    included_duration: float | None


@dataclass(frozen=True)
class Place:
    """A stride that breaks a data check.

    Attributes:
        foot: "right" or "left"; None for a cycle of both feet.
        index: the index of the stride or cycle, from 0.
        line: its line of the table; None where the walk was not read from a folder.
    """

    foot: str | None
    index: int
    line: int | None


@dataclass(frozen=True)
class Finding:
    """A data check that the walk breaks. ``str()`` of it is a sentence.

    Attributes:
        check: the check's name; :func:`checks` lists them all.
        table: the table to look at, by its name in a walk folder.
        column: the column to look at first.
        broken: strides that break the check.
        compared: strides that have the values that it needs.
        counted: what these are.
        text: "found ..., expected ..." of the first one.
        guess: the mistake that a factor gives away, such as "milliseconds?".
        usual_cause: what breaking the check usually means.
        sentence: all of it in words.
        places: the first strides that break it.
    """

    check: str
    table: str
    column: str
    broken: int
    compared: int
    counted: str
    text: str
    guess: str | None
    usual_cause: str
    sentence: str
    places: tuple[Place, ...]

    def __str__(self) -> str:
        """The sentence."""
        return self.sentence


@dataclass(frozen=True)
class Note:
    """A remark about the figures; nothing is wrong with the data.

    Attributes:
        name: by which the note is known.
        text: a sentence or two.
        source: the paper behind it; None where there is none.
    """

    name: str
    text: str
    source: str | None

    def __str__(self) -> str:
        """The sentence."""
        return self.text


def _findings_of(analysis: _core.Analysis) -> tuple[Finding, ...]:
    def finding(fields: dict[str, Any]) -> Finding:
        places = tuple(Place(*place) for place in fields["places"])
        return Finding(**{**fields, "places": places})

    return tuple(finding(fields) for fields in analysis.findings())


# What a result holds, each computed when it is first asked for.
_PARTS: dict[str, Callable[[_core.Analysis], Any]] = {
    "name": lambda analysis: analysis.name,
    "analysed": lambda analysis: analysis.analysed,
    "parameters": lambda analysis: analysis.columns("parameters"),
    "strides": lambda analysis: analysis.columns("strides"),
    "walks": lambda analysis: analysis.columns("walks"),
    "info": lambda analysis: Info(**analysis.info()),  # type: ignore[arg-type]
    "quality_flags": lambda analysis: QualityFlag(analysis.quality_flags),
    "quality_flags_in_words": lambda analysis: tuple(analysis.quality_flags_in_words()),
    "findings": _findings_of,
    "notes": lambda analysis: tuple(Note(*note) for note in analysis.notes()),
    "summary": lambda analysis: tuple(analysis.summary()),
}


def _written(text: str, path: str | PathLike[str] | None) -> str | None:
    """Writes a text to a file, if one is named, and returns it otherwise."""
    if path is None:
        return text
    Path(path).write_text(text, encoding="utf-8", newline="\n")
    return None


class Page:
    """A report that a notebook displays in a frame of its own. :meth:`Result.show` makes it."""

    __slots__ = ("_height", "_html")

    def __init__(self, page: str, height: int) -> None:
        """Takes the page, and the height of its frame in pixels."""
        self._html = page
        self._height = int(height)

    def _repr_html_(self) -> str:
        """A frame. What the page's style and script do stays in it."""
        return (
            f'<iframe srcdoc="{html.escape(self._html)}" sandbox="allow-scripts" width="100%" '
            f'height="{self._height}" frameborder="0" title="Report of a walk"></iframe>'
        )

    def __repr__(self) -> str:
        """What to do with it outside of a notebook."""
        return "<Page: a report, which a notebook displays; to_html(path) writes it to a file>"


class Result:
    """The statistics of a walk. :func:`analyse` makes it.

    It keeps all that it needs, whatever becomes of the walk, and can be pickled: the figures are
    stored, and not computed anew. Data checks run when findings are first asked for, by a frame or
    a report, too.

    >>> from gait_statistics import read_walk
    >>> result = analyse(read_walk("examples/walks/two_feet_turn"))
    >>> result.analysed, len(result.strides), len(result.walks)
    ('both feet', 78, 1)
    >>> result.to_html().startswith("<!DOCTYPE html>")
    True
    """

    __slots__ = ("_again", "_analysis", "_frame", "_parts", "_version", "_warnings")

    _analysis: _core.Analysis | None
    _again: Callable[[], _core.Analysis]
    _frame: FrameKind
    _parts: dict[str, Any]
    _version: str
    _warnings: tuple[InputError, ...]

    def _part(self, name: str) -> Any:
        if name not in self._parts:
            self._parts[name] = _PARTS[name](self._whole())
        return self._parts[name]

    def _whole(self) -> _core.Analysis:
        """What writes reports. A result that was pickled computes it again."""
        if self._analysis is None:
            if self._version != _core.version:
                raise RuntimeError(
                    f"found a result of gait_statistics {self._version}, expected one of "
                    f"{_core.version} to write a report of: analyse the walk again"
                )
            self._analysis = self._again()
        return self._analysis

    def _frame_of(self, name: str) -> Any:
        columns: list[ColumnOut] = self._part(name)
        return frame_of(columns, self._frame)

    @property
    def name(self) -> str:
        """The walk's name."""
        return str(self._part("name"))

    @property
    def analysed(self) -> str:
        """Which cycles were analysed: "both feet", "left foot" or "right foot"."""
        return str(self._part("analysed"))

    @property
    def parameters(self) -> Any:
        """The statistics as a frame: a row for each parameter and side.

        The columns are those of ``gait-statistics --table parameters``.
        """
        return self._frame_of("parameters")

    @property
    def strides(self) -> Any:
        """Every stride as a frame: whether it is included, why not, and its values.

        The columns are those of ``gait-statistics --table strides``.
        """
        return self._frame_of("strides")

    @property
    def walks(self) -> Any:
        """The walk as a frame of one row: counts, the accounting, quality flags.

        The columns are those of ``gait-statistics --table walks``.
        """
        return self._frame_of("walks")

    @property
    def info(self) -> Info:
        """The cycle accounting."""
        info: Info = self._part("info")
        return info

    @property
    def quality_flags(self) -> QualityFlag:
        """What is implausible about the walk."""
        flags: QualityFlag = self._part("quality_flags")
        return flags

    @property
    def quality_flags_in_words(self) -> tuple[str, ...]:
        """A sentence for each quality flag that is raised."""
        words: tuple[str, ...] = self._part("quality_flags_in_words")
        return words

    @property
    def findings(self) -> tuple[Finding, ...]:
        """The data checks that the walk breaks."""
        findings: tuple[Finding, ...] = self._part("findings")
        return findings

    @property
    def notes(self) -> tuple[Note, ...]:
        """What so few strides mean for the figures."""
        notes: tuple[Note, ...] = self._part("notes")
        return notes

    @property
    def summary(self) -> tuple[str, ...]:
        """What a reader asks first, in sentences: how many strides, how long, what was left out."""
        summary: tuple[str, ...] = self._part("summary")
        return summary

    @property
    def warnings(self) -> tuple[InputError, ...]:
        """What is worth a look about this analysis of the walk."""
        return self._warnings

    @property
    def version(self) -> str:
        """The version of the library that computed the result."""
        return self._version

    @overload
    def to_json(self) -> str: ...
    @overload
    def to_json(self, path: str | PathLike[str]) -> None: ...

    def to_json(self, path: str | PathLike[str] | None = None) -> str | None:
        """Everything as the JSON document that ``gait-statistics --format json`` writes.

        Args:
            path: the file to write it to; None: it is returned.

        Raises:
            OSError: where the file cannot be written.
            RuntimeError: for a pickled result that another version computed.
        """
        return _written(self._whole().json(), path)

    @overload
    def to_html(self) -> str: ...
    @overload
    def to_html(self, path: str | PathLike[str]) -> None: ...

    def to_html(self, path: str | PathLike[str] | None = None) -> str | None:
        """The report as the page that ``gait-statistics --format html`` writes.

        The page needs no other file, and no network.

        Args:
            path: the file to write it to; None: it is returned.

        Raises:
            OSError: where the file cannot be written.
            RuntimeError: for a pickled result that another version computed.
        """
        return _written(self._whole().html(), path)

    def show(self, height: int = 800) -> Page:
        """The report in a frame of a notebook: what a cell ends with is displayed.

        In a loop, ``IPython.display.display(result.show())`` displays it.

        Args:
            height: of the frame, in pixels of CSS.

        Raises:
            RuntimeError: for a pickled result that another version computed.
        """
        return Page(self._whole().html(), height)

    def _lines(self) -> list[str]:
        """The short summary."""
        lines = [f"Walk {self.name} ({self.analysed})", *self.summary]
        lines += self.quality_flags_in_words
        count = len(self.findings)
        if count:
            names = ", ".join(dict.fromkeys(finding.check for finding in self.findings))
            lines.append(f"Data checks broken: {names}.")
        return lines

    def __repr__(self) -> str:
        """A short summary."""
        return "\n".join(self._lines())

    def _repr_html_(self) -> str:
        """A short summary for a notebook, without any style."""
        first, *others = (html.escape(line) for line in self._lines())
        return f"<p><b>{first}</b><br>{'<br>'.join(others)}</p>"

    def __getstate__(self) -> dict[str, Any]:
        """Takes the result apart for pickle: its figures, and what reports are made of."""
        return {
            "parts": {name: self._part(name) for name in _PARTS},
            "again": self._again,
            "frame": self._frame,
            "version": self._version,
            "warnings": self._warnings,
        }

    def __setstate__(self, state: dict[str, Any]) -> None:
        """Puts the result together again."""
        self._analysis = None
        self._parts = state["parts"]
        self._again = state["again"]
        self._frame = state["frame"]
        self._version = state["version"]
        self._warnings = state["warnings"]


@cache
def _names_of_checks() -> frozenset[str]:
    return frozenset(
        name for column in _core.checks() if column[0] == "check" for name in column[2]
    )


def _known_checks(without_checks: Sequence[str]) -> list[str]:
    names = checked_names(without_checks, "without_checks")
    for name in names:
        if name not in _names_of_checks():
            nearest = _core.nearest_check(name)
            hint = f": did you mean {nearest!r}?" if nearest else ": checks() lists them all"
            raise ValueError(f"without_checks: found {name!r}, expected the name of a check{hint}")
    return names


def _analysed(
    walk: Walk, foot: str | None, settings_value: float, without_checks: list[str]
) -> tuple[_core.Analysis, tuple[InputError, ...]]:
    of_files = walk._core.folder != ""
    of_reading = [warning.as_raw() for warning in walk._warnings]
    analysis, errors, warned = _core.analyse(
        walk._core, foot, settings_value, without_checks, of_reading
    )
    if analysis is None:
        raise WalkError(input_errors(errors, of_files=of_files))
    return analysis, input_errors(warned, of_files=of_files)


def _analysis_again(
    walk: Walk, foot: str | None, settings_value: float, without_checks: list[str]
) -> _core.Analysis:
    return _analysed(walk, foot, settings_value, without_checks)[0]


def analyse(
    walk: Walk,
    foot: Foot | None = None,
    settings_value: float = 0.0,
    *,
    without_checks: Sequence[str] = (),
) -> Result:
    """Computes the statistics of a walk, and looks for data that cannot be right.

    The interpreter's lock is released meanwhile, so several threads compute at once. The time grows
    with the square of the strides.

    Args:
        walk: the walk.
        foot: the foot to analyse alone; None: both feet, or the one that the walk has.
        settings_value: a setting of the analysis that made the walk, for one of the quality flags.
        without_checks: names of data checks to leave out.

    Raises:
        WalkError: where the foot is not there, no cycle is left to include, or two feet are not
            paired.
        ValueError: for a settings value that is not finite, or a check of no known name.

    Warns:
        WalkWarning: exclusions that do not act on this analysis.

    >>> from gait_statistics import read_walk
    >>> result = analyse(read_walk("examples/walks/two_feet_turn"))
    >>> result.info.included_count
    31
    >>> bool(result.quality_flags)
    False
    """
    if not (math.isfinite(settings_value) and abs(settings_value) <= _LARGEST_FLOAT):
        raise ValueError(f"settings_value: found {settings_value}, expected a finite number")
    names = _known_checks(without_checks)
    result = Result.__new__(Result)
    result._parts = {}
    result._frame = checked_walk(walk)._frame
    result._version = _core.version
    result._analysis, result._warnings = _analysed(
        walk, checked_foot(foot), float(settings_value), names
    )
    result._again = partial(_analysis_again, walk, foot, float(settings_value), names)
    warn_about(result._warnings, stacklevel=2)
    return result
