"""Where something stands in a user's table or map, and what is said about it."""

from __future__ import annotations

import difflib
import json
from collections.abc import Iterable, Sequence
from dataclasses import dataclass, field

from .._errors import InputError, WalkError

_LINES_NAMED = 5
_SHOWN = 60
# Stand for the cells that were found and for their lines, in what is expected in their place.
FOUND = "\0"
LINES = "\1"
_LINES_TO_SAY = 20


def shown(value: object) -> str:
    """A cell in a message."""
    text = str(value)
    return f'"{text if len(text) <= _SHOWN else text[:_SHOWN] + "..."}"'


def listed(words: Iterable[object], last: str = ", ") -> str:
    """Words with commas between them."""
    texts = [str(word) for word in words]
    return last.join([", ".join(texts[:-1]), texts[-1]]) if len(texts) > 1 else "".join(texts)


def counted(number: int, what: str) -> str:
    """ "1 row", "2 rows"."""
    return f"{number} {what}" + "s" * (number != 1)


def nearest(word: str, known: Iterable[str]) -> str:
    """The known word that is most like this one; empty where none is."""
    by_case = {name.casefold(): name for name in known}
    found = difflib.get_close_matches(word.casefold(), by_case, n=1, cutoff=0.5)
    return by_case[found[0]] if found else ""


@dataclass(frozen=True)
class Origin:
    """A table of the user's.

    Attributes:
        name: the file, and the sheet of a workbook.
        is_text: whether it has lines, as a text file has, in place of rows.
        file: the file's name without its ending.
        sheet: the sheet's name, empty where there is none.
        is_alone: whether no other table is read with it.
    """

    name: str
    is_text: bool
    file: str
    sheet: str = ""
    is_alone: bool = True

    def error(self, line: int | None, column: str | None, text: str) -> InputError:
        """Something that is wrong in it."""
        row, line = (None, line) if self.is_text else (line, None)
        return InputError(self.name, row, line, column, text)

    def lines_in_map(self, section: str = "skip", lines: Sequence[int] = ()) -> str:
        """What to write into the map about lines of this table; the fault's own without any."""
        table = "" if self.is_alone else f"table = {json.dumps(self.name, ensure_ascii=False)}, "
        return f"[[{section}]] {table}lines = {list(lines) or LINES}"

    def rows_in_words(self, lines: Sequence[int]) -> str:
        """ "line 3" or "rows 3, 4, 5, ..."."""
        word = ("line" if self.is_text else "row") + "s" * (len(lines) > 1)
        more = ", ..." if len(lines) > _LINES_NAMED else ""
        return f"{word} {listed(lines[:_LINES_NAMED])}{more}"


@dataclass
class Faults:
    """Collects what is wrong; the same thing in many rows is said once."""

    _of_cells: dict[tuple[Origin, str | None, str], list[tuple[int, str]]] = field(
        default_factory=dict
    )
    _errors: list[InputError] = field(default_factory=list)

    def add(self, error: InputError) -> None:
        """Adds one thing."""
        if error not in self._errors:
            self._errors.append(error)

    def add_cell(
        self, origin: Origin, line: int, column: str | None, found: str, expected: str
    ) -> None:
        """Adds what is wrong with a cell."""
        self._of_cells.setdefault((origin, column, expected), []).append((line, found))

    def __bool__(self) -> bool:
        """Whether there is any."""
        return bool(self._errors or self._of_cells)

    def errors(self) -> tuple[InputError, ...]:
        """All of them."""
        result = list(self._errors)
        for (origin, column, expected), found in self._of_cells.items():
            (line, first), others = found[0], [other for other, _ in found[1:]]
            kinds = list(dict.fromkeys(other for _, other in found))
            some = kinds[:_LINES_NAMED] + ["..."] * (len(kinds) > _LINES_NAMED)
            lines = list(dict.fromkeys([line, *(other for other, _ in found[1:])]))
            said = lines[:_LINES_TO_SAY] + ["..."] * (len(lines) > _LINES_TO_SAY)
            expected = expected.replace(FOUND, listed(some)).replace(LINES, f"[{listed(said)}]")
            text = f"found {first}, expected {expected}"
            if others:
                rows = counted(len(others), "more row")
                text += f" (and in {rows}: {origin.rows_in_words(others)})"
            result.append(origin.error(line, column, text))
        return tuple(result)

    def raise_any(self) -> None:
        """Raises all of them, if there is one."""
        if self:
            raise WalkError(self.errors())
