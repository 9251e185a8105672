"""What arguments must be before the extension module sees them."""

from __future__ import annotations

import operator
import os
from collections.abc import Sequence

FEET = ("left", "right")


def text_of(text: str) -> str:
    """A text with characters alone: a lone surrogate is none."""
    return text if text.isascii() else text.encode("utf-8", "replace").decode("utf-8")


def checked_text(value: object, argument: str) -> str:
    """A text."""
    if not isinstance(value, str):
        raise TypeError(f"{argument}: found {value!r}, expected a text")
    return text_of(value)


def checked_names(names: Sequence[str], argument: str) -> list[str]:
    """A list of names; a single one is not taken apart into letters."""
    if isinstance(names, str):
        raise TypeError(f"{argument}: found the text {names!r}, expected a list: [{names!r}]")
    return [checked_text(name, argument) for name in names]


def checked_limit(limit: int | None, argument: str) -> int | None:
    """A whole number from 1, or None."""
    if limit is None:
        return None
    try:
        number = operator.index(limit)
    except TypeError:
        number = 0
    if not 1 <= number < 2**63:
        raise ValueError(f"{argument}: found {limit!r}, expected a whole number from 1, or None")
    return number


def checked_folder(folder: str | os.PathLike[str]) -> str:
    """The path of a folder."""
    path = os.fsdecode(folder)
    if "\0" in path:
        raise ValueError(f"folder: found {path!r}, expected no NUL character in it")
    return path


def checked_foot(foot: str | None) -> str | None:
    """The foot that an argument names, or None."""
    if foot is not None and foot not in FEET:
        raise ValueError(f'foot: found {foot!r}, expected "left", "right" or None')
    return foot
