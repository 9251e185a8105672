"""A map's text as tables, with the line of each key, and its faults in plain words."""

from __future__ import annotations

import re
import sys
from typing import Any

from .._errors import InputError, WalkError

if sys.version_info >= (3, 11):
    import tomllib
else:
    import tomli as tomllib

_AT = re.compile(r" \(at (?:line (\d+), column (\d+)|end of document)\)$")
# What is expected where a line cannot be read, with an example of the right form: by what stands in
# the line, and then by what the reader of TOML says of it. The first that fits counts.
_BY_LINE = (
    (r"[=\[{,]\s*[“”„‟«»‘’]", 'straight quotation marks: gct = "Stride time"'),
    (r"=\s*[-+]?\d+,\d+\s*(#.*)?$", "a number with a decimal point: sampling_rate = 102.4"),
    (r"^\s*[^\s=\[#]+\s*:", '=, not a colon, between a name and its value: gct = "Stride time"'),
    (
        r"=\s*(True|TRUE|False|FALSE|yes|no|on|off)\s*(#.*)?$",
        "true or false, in small letters: sort = true",
    ),
    (r"^\s*\[[^\]]*$", "a section's name in brackets, closed on its line: [columns]"),
    (r"^\s*\[\[[^\]]*\]\s*$", "as many brackets at the end as at the begin: [[skip]]"),
    (r"^\s*\[(skip|exclude)\]", "two pairs of brackets, since it may stand twice: [[skip]]"),
)
_BY_FAULT = (
    ("Invalid initial character", "a name, =, and a value: sampling_rate = 128"),
    ("Expected '=' after a key", 'a name without blanks, =, and a value: gct = "Stride time"'),
    (
        "Cannot overwrite a value",
        "each name once in a section; a list takes several values: missing = [0, -1]",
    ),
    ("Cannot declare|Cannot mutate|Cannot overwrite", "each [section] once, with all its keys"),
    ("Duplicate inline table key", "each key once in the braces"),
    ("Unclosed array", 'a ] that closes the list: walk = ["subject", "trial"]'),
    (
        "Unclosed inline table|inline table",
        'a } that closes the braces on the same line: gct = {column = "Stride", unit = "ms"}',
    ),
    (
        r"Unescaped '\\'|hex",
        "a text with backslashes in single quotation marks: pattern = '\\d: (\\w+)'",
    ),
    (
        'Illegal character|Unterminated string|Expected "\'"',
        'a quotation mark at both ends of a text: gct = "Stride time"',
    ),
    (
        "Expected newline|Expected end|after a statement",
        "nothing after the value, or a remark after #; a text stands in quotation marks",
    ),
    (
        "Invalid value",
        'a value after =: a text in quotation marks, gct = "Stride time"; a number, '
        "sampling_rate = 128; true or false",
    ),
)


def map_error(name: str, line: int | None, text: str) -> WalkError:
    """Something that is wrong with a map as a whole, or with one of its lines."""
    return WalkError([InputError(name, None, line, None, text)])


def _line_that_is_open(what: str, lines: list[str]) -> int:
    """The line of a list or a text that goes on to the end of the map."""
    is_list = what == "Unclosed array"
    numbers = [
        number
        for number, line in enumerate(lines, 1)
        if (line.count("[") > line.count("]") if is_list else line.count("'") % 2)
    ]
    return numbers[-1 if is_list else 0] if numbers else len(lines)


def _fault_in_words(error: str, text: str) -> tuple[int | None, str]:
    """The line of a fault, and what is found and expected there."""
    at = _AT.search(error)
    lines = text.splitlines()
    what = _AT.sub("", error)
    number = int(at[1]) if at and at[1] else _line_that_is_open(what, lines)
    line = lines[number - 1].strip() if 0 < number <= len(lines) else ""
    above = lines[number - 2].strip() if number > 1 else ""
    if what == "Invalid value" and above.endswith((",", "[")):
        number, line, what = number - 1, above, "Unclosed array"
    bare = re.fullmatch(r"([\w-]+)\s*=\s*([^\W\d][^\"'\[\]{}#]*)", line)
    expected = next((words for sign, words in _BY_LINE if re.search(sign, line)), "")
    if not expected and bare and what == "Invalid value":
        expected = f'a text in quotation marks: {bare[1]} = "{bare[2].strip()}"'
    expected = expected or next((words for sign, words in _BY_FAULT if re.search(sign, what)), what)
    return number or None, f"found {line or 'nothing'}, expected {expected}"


def tables_of(name: str, text: str) -> dict[str, Any]:
    """The tables of a map's text.

    Raises:
        WalkError: where it is no TOML.
    """
    try:
        return tomllib.loads(text)
    except tomllib.TOMLDecodeError as error:
        line, message = _fault_in_words(str(error), text)
        raise map_error(name, line, message) from error


def value_of(text: str) -> Any:
    """A value as a map has it; the text itself where it is none."""
    try:
        return tomllib.loads(f"v = {text}")["v"]
    except tomllib.TOMLDecodeError:
        return text.strip()


def lines_of_keys(text: str) -> dict[tuple[str, str], int]:
    """The line of each key and section of a map."""
    lines: dict[tuple[str, str], int] = {}
    section = ""
    for number, line in enumerate(text.splitlines(), 1):
        header = re.match(r"\s*\[\[?\s*([\w-]+)\s*\]", line)
        key = re.match(r"\s*[\"']?([\w-]+)[\"']?\s*=", line)
        if header:
            section = header[1]
            lines.setdefault((section, ""), number)
            if section in ("skip", "exclude"):
                count = sum(of == section and key.startswith("#") for of, key in lines)
                lines[section, f"#{count}"] = number
        elif key:
            lines.setdefault((section, key[1]), number)
    return lines
