"""Tables as walks: the whole import, from what is read to what is written."""

from __future__ import annotations

import os
import re
import shutil
import tempfile
import warnings
from collections import Counter
from collections.abc import Callable, Mapping, Sequence
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

import numpy as np
import pandas as pd

from .._errors import InputError, WalkError, WalkWarning
from .._result import Finding, analyse
from .._walk import Foot, Walk, read_walk
from ._fields import FIELD
from ._folders import check_target, folder_names, move_into_place, safe_name, write_table
from ._grids import named_tables
from ._map import FEET, TableMap, read_map
from ._pairs import Exclusion, doubts_of_exclusions, exclusions_of, pairs_of
from ._places import Faults, Origin, counted, listed
from ._rows import Rows, read_rows
from ._sources import read_sources
from ._strides import Strides, strides_of

# What a guess of a data check means as a unit of the map.
_UNITS_GUESSED = {
    "milliseconds": "ms",
    "seconds": "s",
    "minutes": "min",
    "samples": "samples",
    "a fraction": "1",
    "centimetres": "cm",
    "millimetres": "mm",
    "feet": "ft",
    "km/h": "km/h",
    "miles/h": "mph",
    "cm/s": "cm/s",
    "mm/s": "mm/s",
    "strides/min": "strides/min",
    "radians": "rad",
    "m/s2": "m/s^2",
}
_RATE_GUESSED = "a sampling rate of "
_LINES_NAMED = 5


@dataclass
class ImportedWalk:
    """A walk that was made of tables, and what is to be said about it."""

    strides: Strides
    pairs: pd.DataFrame | None
    exclusions: list[Exclusion]
    walk: Walk | None = None
    left_out: tuple[str, ...] = ()
    findings: list[InputError] = field(default_factory=list)
    warnings: list[InputError] = field(default_factory=list)


@dataclass
class Imported:
    """All walks of an import, and what was done."""

    walks: list[ImportedWalk]
    notes: list[str]
    warnings: list[InputError] = field(default_factory=list)


# ---- The user's words for what our tables say


@dataclass(frozen=True)
class _Words:
    """Says where a stride stands in the user's tables."""

    strides: Strides
    rows: Rows

    def lines_of(self, places: Sequence[int]) -> tuple[Origin, list[int]] | None:
        """The table and the lines of some strides, by their place in the frame."""
        if not places:
            return None
        frame = self.strides.frame
        source = int(frame["source"].iloc[places[0]])
        lines = [int(frame["line"].iloc[at]) for at in places if frame["source"].iloc[at] == source]
        return self.rows.sources[source].origin, list(dict.fromkeys(lines))

    def place(self, foot: str | None, index: int) -> int | None:
        """Where a stride, or the right one of a cycle of both feet, is in the frame."""
        frame = self.strides.frame
        found = np.flatnonzero((frame["foot"] == (foot or "right")) & (frame["index"] == index))
        return int(found[0]) if len(found) else None

    def columns(self, name: str, places: Sequence[int]) -> list[str]:
        """The user's columns that one of ours is made from."""
        frame = self.strides.frame[["source", "foot"]]
        frame = frame.iloc[list(places)] if places else frame
        keys = set(zip(frame["source"].tolist(), frame["foot"].tolist(), strict=True))
        names = [
            self.rows.columns[source, name, foot]
            for source, foot in sorted(keys)
            if (source, name, foot) in self.rows.columns
        ]
        return list(dict.fromkeys(names))

    def table(self, name: str, places: Sequence[int]) -> tuple[Origin, str | None]:
        """The table, and the user's column for one of ours."""
        found = self.lines_of(places) or self.lines_of([0])
        assert found is not None
        columns = self.columns(name, places)
        return found[0], listed(columns, " and ") if columns else None


def _map_of_guess(finding: Finding) -> str:
    """What to change in the map for the mistake that a factor gave away."""
    guess = (finding.guess or "").rstrip("?")
    if guess.startswith(_RATE_GUESSED):
        return f"sampling_rate = {guess.removeprefix(_RATE_GUESSED).split()[0]}"
    for words, unit in _UNITS_GUESSED.items():
        if guess == words:
            return f'{finding.column} = {{column = ..., unit = "{unit}"}}'
        column = guess.split(" ")[0]
        if column in FIELD and guess == f"{column} in {words}":
            return f'{column} = {{column = ..., unit = "{unit}"}}'
    if guess.startswith("fractions"):
        return f'{finding.column} = {{column = ..., unit = "1"}}'
    if finding.check == "strides_in_time_order":
        return "sort = true"
    if finding.check == "one_sample_too_many":
        return "last_sample = {column = ..., add = -1}"
    if "swapped" in guess:
        return "left and right exchanged under [feet]"
    return ""


def _finding_in_words(finding: Finding, words: _Words) -> InputError:
    """A finding with the user's own columns and rows."""
    found = [words.place(place.foot, place.index) for place in finding.places]
    places = [at for at in found if at is not None]
    origin, column = words.table(finding.column, places)
    lines = words.lines_of(places)
    text = f"{finding.check}: {finding.text}"
    text += f", in {finding.broken} of {finding.compared} {finding.counted}"
    if lines:
        text += f" ({origin.rows_in_words(lines[1])})"
    text += f": {finding.guess}" if finding.guess else "."
    mend = _map_of_guess(finding)
    if not mend and lines:
        some = origin.lines_in_map("exclude", lines[1][:_LINES_NAMED])
        mend = f"correct the cells, or leave strides out: {some}"
    ours = finding.column if column is None or column != finding.column else ""
    said = f"{ours} (derived)" if column is None else column
    text += f" Usually: {finding.usual_cause}. In the map: "
    text += (f"{mend}; or " if mend else "") + f'without_checks = ["{finding.check}"]'
    name = f"{said} ({ours})" if column is not None and ours else said
    return origin.error(None, name, text)


_LINE_OF_TABLE = {"foot_cycles.csv": None, "feet_cycles.csv": "right"}


def _error_in_words(error: InputError, words: _Words) -> InputError:
    """What the reader of walk folders says, with the user's own columns and rows."""
    table = Path(error.table).name
    if table not in _LINE_OF_TABLE:
        return InputError(words.strides.name, None, None, error.column, error.text)
    foot = _LINE_OF_TABLE[table]
    at = None if error.line is None else error.line - 2
    place = at if foot is None or at is None else words.place(foot, at)
    if place is None or not 0 <= place < len(words.strides.frame):
        origin, column = words.table(error.column or "", [])
        return origin.error(None, column or error.column, error.text)

    def users_line(line: str) -> str:
        at = int(line) - 2 if foot is None else words.place(foot, int(line) - 2)
        found = None if at is None else words.lines_of([at])
        return line if found is None else str(found[1][0])

    text = re.sub(
        r"(?<=\bline )\d+|(?<=\blines )\d+(?:, \d+)*",
        lambda lines: ", ".join(map(users_line, lines[0].split(", "))),
        error.text,
    )
    origin, column = words.table(error.column or "", [place])
    lines = words.lines_of([place])
    assert lines is not None
    return origin.error(lines[1][0], column or error.column, text)


# ---- Writing


def _about_rows(made: ImportedWalk, rows: Rows, map_: TableMap) -> list[tuple[str, str]]:
    strides = made.strides
    result = list(map_.about.items())
    used = dict.fromkeys(strides.frame["source"].tolist())
    result += [("source", rows.sources[number].origin.name) for number in used]
    result.append(("map", map_.name))
    names = map_.get("", "walk", ())
    result += [
        (name, value)
        for name, value in zip(names, strides.key, strict=False)
        if not name.startswith("{")
    ]
    result += [("derived", text) for text in strides.derived]
    result += [("note", text) for text in strides.notes]
    result += [("check left out", name) for name in map_.without_checks]
    return result


def _write(made: ImportedWalk, folder: Path, rows: Rows, map_: TableMap) -> None:
    """Writes the tables of a walk."""
    folder.mkdir()
    strides, frame = made.strides, made.strides.frame
    seconds = map_.get("", "recording_duration")
    length = None if seconds is None else round(seconds * strides.rate)
    feet = [foot for foot in ("left", "right") if (frame["foot"] == foot).any()]
    names = ["foot", "sampling_rate", "signal_1_samples"]
    write_table(folder / "recording.csv", names, [(foot, strides.rate, length) for foot in feet])
    stored = [
        name
        for name, field in FIELD.items()
        if name in frame and name not in ("end", "lift_off", "ds")
    ]
    columns = ["foot", "index", *stored]
    write_table(folder / "foot_cycles.csv", columns, frame[columns].astype(object).to_numpy())
    if made.pairs is not None:
        pairs = made.pairs.assign(index=range(len(made.pairs)))
        order = ["index", "gct", "ds", "right_index", "left_index"]
        write_table(folder / "feet_cycles.csv", order, pairs[order].astype(object).to_numpy())
    if made.exclusions:
        names = ["cycles", "list", "index", "reason"]
        write_table(folder / "exclusions.csv", names, made.exclusions)
    write_table(folder / "about.csv", ["name", "value"], _about_rows(made, rows, map_))


def _only_foot(made: ImportedWalk) -> Foot | None:
    """The foot that a walk without cycles of both feet is read for."""
    if made.pairs is not None:
        return None
    feet = set(made.strides.frame["foot"])
    return "left" if "left" in feet else "right"


def _read_back(made: ImportedWalk, folder: Path, rows: Rows, faults: Faults) -> None:
    """Reads a walk that was written, so that what any reader would say is said now."""
    words = _Words(made.strides, rows)
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", WalkWarning)
        try:
            made.walk = read_walk(folder, _only_foot(made))
        except WalkError as error:
            for one in error.errors:
                faults.add(_error_in_words(one, words))
            return
    said = [_error_in_words(one, words) for one in made.walk.warnings]
    made.warnings = [*made.strides.doubts, *said]


def _check(made: ImportedWalk, rows: Rows, map_: TableMap, faults: Faults) -> None:
    """Runs the data checks."""
    if made.walk is None:
        return
    words = _Words(made.strides, rows)
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", WalkWarning)
        feet: list[Foot | None] = [None]
        if made.pairs is None:
            feet = [foot for foot in FEET if foot in set(made.strides.frame["foot"])]
        for foot in feet:
            try:
                result = analyse(made.walk, foot, without_checks=map_.without_checks)
            except WalkError as error:
                for one in error.errors:
                    faults.add(_error_in_words(one, words))
                continue
            made.findings += [_finding_in_words(finding, words) for finding in result.findings]


# ---- The whole


def _walk_frames(rows: Rows) -> dict[tuple[str, ...], pd.DataFrame]:
    groups: Any = rows.frame.groupby("walk", sort=False, dropna=False)
    return {key: frame.reset_index(drop=True) for key, frame in groups}


def _made_walks(rows: Rows, map_: TableMap, name: str, faults: Faults) -> list[ImportedWalk]:
    frames = _walk_frames(rows)
    names = folder_names(frames)
    made = []
    for key, frame in frames.items():
        strides = strides_of(names[key] if key else name, key, frame, rows, map_, faults)
        if strides is None or faults:
            continue
        if key and names[key] != safe_name(key):
            text = f'"{" ".join(key)}" is in the folder {names[key]}: the name of another walk '
            strides.notes.append(text + "differs in capitals or signs alone")
        pairs = pairs_of(strides, map_, faults)
        excluded = exclusions_of(strides, pairs, rows, map_, faults)
        left_out = map_.without_checks
        made.append(ImportedWalk(strides, pairs, excluded, left_out=left_out))
    return made


def _all_read(
    made: list[ImportedWalk], at: Path, rows: Rows, map_: TableMap, faults: Faults
) -> None:
    """Writes walks into a folder, reads them back and checks them."""
    for one in made:
        folder = at / one.strides.name if one.strides.key else at
        if one.strides.key or not folder.exists():
            _write(one, folder, rows, map_)
        _read_back(one, folder, rows, faults)
        _check(one, rows, map_, faults)


def import_and_check(
    tables: Any,
    map: str | os.PathLike[str] | Mapping[str, Any],
    folder: str | os.PathLike[str] | None,
    *,
    settings: Sequence[str] = (),
    replace: bool = False,
    strict: bool = False,
) -> Imported:
    """What :func:`import_tables` does, with all that is to be said about it."""
    map_ = read_map(map, settings)
    faults = Faults()
    target = None if folder is None else Path(os.fsdecode(folder))
    if target is not None:
        target = Path(os.path.abspath(target))
        check_target(target, replace, faults)
    sources, notes, doubts = read_sources(named_tables(tables), map_, faults)
    rows = read_rows(sources, map_, faults)
    faults.raise_any()
    name = target.name if target is not None else sources[0].origin.file or "walk"
    made = _made_walks(rows, map_, name, faults)
    faults.raise_any()
    walks = [one.strides for one in made]
    doubts += [*rows.doubts, *doubts_of_exclusions(walks, rows, map_, faults)]
    if target is not None:
        target.parent.mkdir(parents=True, exist_ok=True)
    beside = tempfile.mkdtemp(
        prefix=f".{target.name}." if target else "gait-import-", dir=target and target.parent
    )
    try:
        at = Path(beside) / name
        if any(one.strides.key for one in made):
            at.mkdir()
        _all_read(made, at, rows, map_, faults)
        if strict:
            all_said = [said for one in made for said in (*one.findings, *one.warnings)]
            for said in (*doubts, *all_said):
                faults.add(said)
        faults.raise_any()
        if target is not None:
            # What a folder of the system's for temporary files may not show, a walk may.
            os.chmod(at, 0o777 & ~_umask())
            move_into_place(at, target)
        for one in made:
            _settle(one, target)
    finally:
        shutil.rmtree(beside, ignore_errors=True)
    return Imported(made, [*rows.notes, *notes], doubts)


def _settle(made: ImportedWalk, target: Path | None) -> None:
    """Makes the walk that of the folder it was written to, or of none."""
    if target is None:
        assert made.walk is not None
        restored, (name, _, *parts) = made.walk.__reduce__()
        made.walk = restored(name, "", *parts)
        return
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", WalkWarning)
        folder = target / made.strides.name if made.strides.key else target
        made.walk = read_walk(folder, _only_foot(made))


def _umask() -> int:
    mask = os.umask(0)
    os.umask(mask)
    return mask


def import_tables(
    tables: Any,
    map: str | os.PathLike[str] | Mapping[str, Any],
    folder: str | os.PathLike[str] | None = None,
    *,
    settings: Sequence[str] = (),
    replace: bool = False,
    strict: bool = False,
) -> list[Walk]:
    """Makes walks of tables, by a map that says which column is which.

    Args:
        tables: the path of a table, or several of them: text of any separator, workbooks, Parquet;
            or a frame of pandas, polars or pyarrow; or frames with names: ``{"left": frame, ...}``.
        map: the path of a map, the name of one that comes along (``gait-import --list-maps``), or
            its keys as a dict. ``docs/import.md`` has all keys.
        folder: where the walk folder is written: one, or a folder of them where the map's ``walk``
            tells walks apart. None: nothing is written.
        settings: keys to set in the map: ``["sampling_rate=128"]``.
        replace: replaces a folder that is there.
        strict: makes errors of findings of data checks and of warnings.

    Returns:
        The walks, in the order of the tables.

    Raises:
        WalkError: with everything that is wrong, each with the user's own table, row and column.
            Nothing is written then.
        OSError: where the folder cannot be written.

    Warns:
        WalkWarning: findings of data checks, and what is worth a look.

    >>> import pandas as pd
    >>> table = pd.DataFrame({"Side": ["L", "L", "L"], "Start (s)": [0.0, 1.05, 2.11],
    ...                       "Stride time (ms)": [1050, 1060, 1070]})
    >>> import_tables(table, {
    ...     "feet": {"column": "Side"}, "derive": ["cadence"],
    ...     "columns": {"hs": "Start (s)", "gct": "Stride time (ms)"}})
    [<Walk walk: 3 left strides>]
    """
    imported = import_and_check(
        tables, map, folder, settings=settings, replace=replace, strict=strict
    )
    for said in (
        *(str(one) for one in imported.warnings),
        *said_once(imported.walks, lambda made: made.warnings),
        *said_once(imported.walks, lambda made: made.findings),
    ):
        warnings.warn(said, WalkWarning, stacklevel=2)
    return [made.walk for made in imported.walks if made.walk is not None]


def said_once(
    walks: Sequence[ImportedWalk], of: Callable[[ImportedWalk], Sequence[InputError]]
) -> list[str]:
    """Findings or warnings; what several walks share is said of the first, with their number."""
    found: dict[tuple[str | None, str], list[tuple[str, InputError]]] = {}
    for made in walks:
        for one in of(made):
            name = made.strides.name if made.strides.key else ""
            kind = one.text.partition(": ")[0]
            found.setdefault((one.column, kind), []).append((name, one))
    result = []
    for group in found.values():
        name, first = group[0]
        walks_of = dict.fromkeys(name for name, _ in group)
        text = f"{name}: {first}" if name else str(first)
        if len(walks_of) > 1:
            text += f" (and in {counted(len(walks_of) - 1, 'more walk')})"
        result += [text] if name else [str(one) for _, one in group]
    return result


def counts_in_words(made: ImportedWalk) -> str:
    """ "40 left, 41 right strides; 41 cycles of both feet; excluded: 5 turn"."""
    feet = Counter(made.strides.frame["foot"])
    text = listed(f"{feet[foot]} {foot}" for foot in ("left", "right") if feet[foot]) + " strides"
    if made.pairs is not None:
        text += f"; {counted(len(made.pairs), 'cycle')} of both feet"
        linked = int(made.pairs[["right_index", "left_index"]].notna().all(axis=1).sum())
        text += f", {linked} of them linked" if linked < len(made.pairs) else ""
    reasons = Counter(row[3] or "no reason" for row in made.exclusions if row[0] != "feet")
    if reasons:
        text += f"; excluded: {listed(f'{n} {reason}' for reason, n in reasons.items())}"
    return text
