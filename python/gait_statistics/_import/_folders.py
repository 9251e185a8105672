"""Writing walks as folders: all or none."""

from __future__ import annotations

import csv
import math
import os
import re
import shutil
import tempfile
from collections.abc import Iterable, Sequence
from pathlib import Path
from typing import Any

from .._errors import InputError
from ._places import Faults

TABLES = ("recording.csv", "foot_cycles.csv", "feet_cycles.csv", "exclusions.csv", "about.csv")
# Names that some systems keep for devices.
_RESERVED = re.compile(r"(con|prn|aux|nul|com\d|lpt\d)(\..*)?", re.IGNORECASE)


def safe_name(parts: Sequence[str]) -> str:
    """A name for a folder on any system."""
    joined = "_".join(part for part in parts if part)
    name = re.sub(r"[^\w.-]+", "_", joined).strip("._-")[:100] or "walk"
    return f"{name}_" if _RESERVED.fullmatch(name) else name


def folder_names(keys: Iterable[tuple[str, ...]]) -> dict[tuple[str, ...], str]:
    """A name for each walk. Names that differ in case alone would be one folder on some systems."""
    used: set[str] = set()
    names = {}
    for key in keys:
        name = plain = safe_name(key)
        number = 2
        while name.casefold() in used:
            name, number = f"{plain}-{number}", number + 1
        used.add(name.casefold())
        names[key] = name
    return names


def _cell(value: Any) -> str:
    if value is None or (isinstance(value, float) and math.isnan(value)):
        return ""
    if isinstance(value, float) and value.is_integer() and abs(value) < 2**53:
        return str(int(value))
    return repr(value) if isinstance(value, float) else str(value)


def write_table(path: Path, names: Sequence[str], rows: Iterable[Sequence[Any]]) -> None:
    """Writes a table of a walk folder."""
    with path.open("w", encoding="utf-8", newline="") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(names)
        writer.writerows([_cell(value) for value in row] for row in rows)


def foreign_files(folder: Path) -> list[str]:
    """What lies in a folder beside walk folders and their tables."""
    found = []
    for path in sorted(folder.rglob("*")):
        is_table = path.name in TABLES and path.is_file()
        is_folder = path.is_dir() and not path.is_symlink()
        if not is_table and not is_folder:
            found.append(str(path.relative_to(folder)))
    return found


def check_target(folder: Path, replace: bool, faults: Faults) -> None:
    """Says why a folder cannot be written."""
    text = ""
    if folder.is_symlink() or (folder.exists() and not folder.is_dir()):
        text = "found something else than a folder, expected a new name"
    elif folder.is_dir() and any(folder.iterdir()):
        if not replace:
            text = "found a folder that is not empty, expected a new name, or --replace"
        else:
            foreign = foreign_files(folder)
            if foreign:
                text = f'found "{foreign[0]}" in it, expected walk folders alone: --replace deletes'
                text += " what it replaces; choose another name, or move the file"
    if text:
        faults.add(InputError(str(folder), None, None, None, text))


def move_into_place(made: Path, folder: Path) -> None:
    """Puts a folder that was made beside it into the place of another."""
    old = None
    if folder.is_dir():
        old = Path(tempfile.mkdtemp(prefix=f".{folder.name}.", dir=folder.parent))
        os.rename(folder, old / "old")
    try:
        os.rename(made, folder)
    except OSError:
        if old is not None:
            os.rename(old / "old", folder)
        raise
    finally:
        if old is not None:
            shutil.rmtree(old, ignore_errors=True)
