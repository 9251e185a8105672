"""What is wrong with the input, or worth a warning, and where."""

from __future__ import annotations

import warnings
from collections.abc import Iterable
from dataclasses import dataclass

# The tables of a walk folder by the arguments that hold them here.
_ARGUMENT_OF_TABLE = {
    "recording.csv": "walk",
    "foot_cycles.csv": "strides",
    "feet_cycles.csv": "feet",
    "exclusions.csv": "exclusions",
}


@dataclass(frozen=True)
class InputError:
    """One thing that is wrong with a table, or worth a warning.

    Attributes:
        table: the argument, such as "strides", or the file.
        row: the row of a frame, counted from 0 as ``iloc`` counts; None where the table as a whole
            is meant, or a file.
        line: the line of a file, counted from 1; None where the file as a whole is meant, or a
            frame.
        column: the column; None where the row as a whole is meant.
        text: "found ..., expected ...".
    """

    table: str
    row: int | None
    line: int | None
    column: str | None
    text: str

    def __str__(self) -> str:
        """The message: place first, then what was found and expected."""
        place = self.table if self.line is None else f"{self.table}:{self.line}"
        if self.row is not None:
            place += f", row {self.row}"
        if self.column is not None:
            place += (": " if self.row is None else ", ") + f"column {self.column}"
        return f"{place}: {self.text}"

    def as_raw(self) -> tuple[str, int, str, str]:
        """The parts as the reports take them: table, line, column, text."""
        table = self.table if self.row is None else f"{self.table}, row {self.row}"
        return table, self.line or 0, self.column or "", self.text


class WalkError(ValueError):
    """A walk that cannot be read, made or analysed. Its text holds everything that is wrong.

    Attributes:
        errors: each thing that is wrong.
    """

    def __init__(self, errors: Iterable[InputError]) -> None:
        """Takes the errors, at least one."""
        self.errors: tuple[InputError, ...] = tuple(errors)
        super().__init__(self.errors)

    def __str__(self) -> str:
        """Every message on a line of its own."""
        return "\n".join(str(error) for error in self.errors)


class WalkWarning(UserWarning):
    """Something about a walk that is worth a look. It changes no figure.

    ``warnings.simplefilter("error", gait_statistics.WalkWarning)`` makes an exception of it.
    """


def input_errors(
    raw: Iterable[tuple[str, int, str, str]], *, of_files: bool
) -> tuple[InputError, ...]:
    """Makes input errors of what the extension module says."""
    if of_files:
        return tuple(
            InputError(file, None, line or None, column or None, text)
            for file, line, column, text in raw
        )
    # An argument without a row stands in the place of the table.
    return tuple(
        InputError(column, None, None, None, text)
        if file == "recording.csv" and column
        else InputError(
            _ARGUMENT_OF_TABLE[file], line - 1 if line else None, None, column or None, text
        )
        for file, line, column, text in raw
    )


def warn_about(found: Iterable[InputError], stacklevel: int) -> None:
    """Issues a warning for each."""
    for warning in found:
        warnings.warn(str(warning), WalkWarning, stacklevel=stacklevel + 1)
