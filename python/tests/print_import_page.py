"""Prints the tables of docs/import.md from those that the reader of maps visits.

Run it after a change of them: python python/tests/print_import_page.py
"""

from __future__ import annotations

from collections.abc import Sequence
from pathlib import Path

from gait_statistics._import._fields import (
    COLUMN_KEYS,
    CONVERSIONS,
    DERIVATIONS,
    EXCLUDE_KEYS,
    FIELDS,
    KEYS,
    Key,
)
from gait_statistics._import._map import read_map, shipped_maps
from gait_statistics._import._units import UNITS

PAGE = Path(__file__).resolve().parents[2] / "docs/import.md"


def table(head: Sequence[str], rows: Sequence[Sequence[str]]) -> str:
    lines = [head, ["---"] * len(head), *rows]
    return "".join("| " + " | ".join(cells) + " |\n" for cells in lines).replace("|  |", "| |")


def rows_of(keys: Sequence[Key]) -> list[list[str]]:
    """The rows of keys; what one takes is seen from its example and its words."""
    rows = []
    for key in keys:
        words = key.kind.split("|") if "|" in key.kind and len(key.kind) > 3 else []
        choice = f" ({', '.join(f'`{word}`' for word in words)})" if words else ""
        name = f"`{key.name}`" if not key.section else f"[{key.section}] `{key.name}`"
        rows.append([name, key.meaning.replace("|", "\\|") + choice, f"`{key.example}`"])
    return rows


def others_of(spellings: str) -> str:
    return ", ".join(f"`{one}`" for one in spellings.split(", "))


def printed() -> dict[str, str]:
    head = ["key", "meaning", "example"]
    return {
        "keys": table(head, rows_of(KEYS)),
        "column keys": table(head, rows_of(COLUMN_KEYS)),
        "conditions": table(head, rows_of(EXCLUDE_KEYS)),
        "columns": table(
            ["column", "unit", "content"],
            [[f"`{field.name}`", field.unit, field.meaning] for field in FIELDS],
        ),
        "derivations": table(
            ["column", "from"], [[f"`{one.name}`", "; else ".join(one.ways)] for one in DERIVATIONS]
        ),
        "conversions": table(
            ["columns", "given in", "becomes"],
            [
                [", ".join(f"`{name}`" for name in one.fields), one.given, one.words]
                for one in CONVERSIONS
            ],
        ),
        "units": table(
            ["unit", "is", "also written"],
            [
                [f"`{unit}`", f"{factor:.6g} {own}" if unit != own else "", others_of(others)]
                for own, unit, factor, others in UNITS
            ],
        ),
        "maps": table(
            ["map", "for"],
            [[f"`{name}`", read_map(name).get("", "about")] for name in shipped_maps()],
        ),
    }


def with_tables(page: str) -> str:
    for name, text in printed().items():
        begin, end = f"<!-- printed: {name} -->\n", "<!-- end -->"
        before, found, rest = page.partition(begin)
        if not found:
            raise ValueError(f"{PAGE.name} has no place for {name}")
        page = before + begin + text + end + rest.partition(end)[2]
    return page


if __name__ == "__main__":
    PAGE.write_text(with_tables(PAGE.read_text(encoding="utf-8")), encoding="utf-8")
