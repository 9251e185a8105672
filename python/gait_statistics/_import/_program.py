"""gait-import: tables as walk folders, from the command line."""

from __future__ import annotations

import argparse
import os
import sys
from collections.abc import Sequence

from .. import __version__
from .._errors import WalkError
from ._places import listed

_DESCRIPTION = """\
Makes walk folders of tables, by a map that says which column is which. Nothing is written where
something is wrong. docs/import.md shows maps for tables of many forms.
"""
_EPILOG = """\
Exit code: 0 done; 1 something is wrong with a table or the map; 2 wrong arguments.
"""


def _parser() -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(
        prog="gait-import",
        description=_DESCRIPTION,
        epilog=_EPILOG,
        formatter_class=argparse.RawDescriptionHelpFormatter,
        allow_abbrev=False,
    )
    parser.add_argument(
        "tables", nargs="*", metavar="TABLE", help="text, .xlsx, .parquet or .jsonl"
    )
    parser.add_argument(
        "--map", metavar="MAP", help="a map's file, or the name of one of --list-maps"
    )
    parser.add_argument("-o", "--output", metavar="FOLDER", help="where the walk folder is written")
    parser.add_argument(
        "--set",
        dest="settings",
        action="append",
        default=[],
        metavar="KEY=VALUE",
        help="sets a key of the map: sampling_rate=128, feet.first=left; may be repeated",
    )
    parser.add_argument("--replace", action="store_true", help="replace a folder that is there")
    parser.add_argument(
        "--strict", action="store_true", help="write nothing where there is a finding or a warning"
    )
    parser.add_argument(
        "--suggest", action="store_true", help="print a map for the tables, to be finished"
    )
    parser.add_argument("--list-maps", action="store_true", help="print the maps that come along")
    parser.add_argument("--version", action="version", version=f"gait-import {__version__}")
    return parser


def _list_maps() -> None:
    from ._map import read_map, shipped_maps

    for name in shipped_maps():
        print(f"{name}\n  {read_map(name).get('', 'about', '')}")


def _suggest(tables: Sequence[str]) -> None:
    from ._suggest import suggested_map

    print(suggested_map(tables), end="")


def _import(arguments: argparse.Namespace) -> None:
    from ._walks import counts_in_words, import_and_check, said_once

    imported = import_and_check(
        arguments.tables,
        arguments.map,
        arguments.output,
        settings=arguments.settings,
        replace=arguments.replace,
        strict=arguments.strict,
    )
    said: dict[str, list[str]] = {}
    checks: set[str] = set()
    for made in imported.walks:
        name = made.strides.name
        path = os.path.join(arguments.output, name) if made.strides.key else arguments.output
        print(f"{path}: {counts_in_words(made)}")
        for text in made.strides.derived:
            said.setdefault(f"derived: {text}", []).append(name)
        for text in made.strides.notes:
            said.setdefault(f"note: {text}", []).append(name)
        checks.update(made.left_out)
    for text, names in said.items():
        where = "" if len(names) == len(imported.walks) else f" ({_some(names)})"
        print(text + where)
    for text in imported.notes:
        print(f"note: {text}")
    doubts = said_once(imported.walks, lambda made: made.warnings)
    for warning in (*map(str, imported.warnings), *doubts):
        print(f"warning: {warning}", file=sys.stderr)
    for finding in said_once(imported.walks, lambda made: made.findings):
        print(f"finding: {finding}", file=sys.stderr)
    many = any(made.strides.key for made in imported.walks)
    without = "".join(f" --without-check {name}" for name in sorted(checks))
    recursive = " --recursive" if many else ""
    if any(made.findings for made in imported.walks):
        print("next: where a finding points to the map, change it, and run again with --replace")
    print(f"next: gait-statistics{recursive}{without} {arguments.output}")


def _some(names: Sequence[str]) -> str:
    more = f", and {len(names) - 3} more" if len(names) > 3 else ""
    return listed(names[:3]) + more


def _run(arguments: argparse.Namespace, parser: argparse.ArgumentParser) -> None:
    if arguments.list_maps:
        _list_maps()
        return
    if not arguments.tables:
        parser.error("no TABLE is given")
    if arguments.suggest:
        _suggest(arguments.tables)
        return
    if not arguments.map:
        parser.error(
            "--map is missing; --suggest writes one, --list-maps prints those that come along"
        )
    if not arguments.output:
        parser.error("-o FOLDER is missing")
    _import(arguments)


def main(given: Sequence[str] | None = None) -> int:
    """Runs the program, and returns its exit code."""
    parser = _parser()
    arguments = parser.parse_args(given)
    try:
        _run(arguments, parser)
        sys.stdout.flush()
    except WalkError as error:
        print(f"error: {error}".replace("\n", "\nerror: "), file=sys.stderr)
        print("Nothing was written.", file=sys.stderr)
        return 1
    except ImportError as error:
        print(f"error: {error}", file=sys.stderr)
        return 1
    except BrokenPipeError:
        # The reader, such as head, has enough; what Python still holds goes nowhere.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
    except OSError as error:
        place = f"{error.filename}: " if error.filename else ""
        print(f"error: {place}{error.strerror or error}", file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        # What was begun has been removed on the way here. The shell's code for it.
        return 130
    return 0
