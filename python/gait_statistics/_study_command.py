"""The command gait-study."""

from __future__ import annotations

import argparse
import contextlib
import importlib
import logging
import os
import signal
import sys
from typing import Any, NoReturn

from . import _core

EXIT_FINE, EXIT_LEFT_OUT, EXIT_USAGE = 0, 1, 2

_DESCRIPTION = "Computes the statistics of many walks, and writes them as tables into a folder."
_EPILOG = """\
A run that was interrupted goes on where it was when it is started again with the same walks and
options. docs/study.md describes the tables.

Examples:
  gait-study -o tables/ study/
  gait-study -o tables/ --format csv manifest.csv
  gait-study -o tables/ --by subject --by bout --sampling-rate 100 strides.parquet
  gait-study -o tables/ --scheduler tcp://head:8786 study/

Exit codes:
  0  every walk was computed, and its statistics are in the tables
  1  a walk was left out (the table errors says why), or the study could not be computed
  2  the command line, a manifest or a table of strides is wrong, or the folder holds another study
"""


def _parser() -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(
        prog="gait-study",
        description=_DESCRIPTION,
        epilog=_EPILOG,
        formatter_class=argparse.RawDescriptionHelpFormatter,
        allow_abbrev=False,
    )
    add = parser.add_argument
    add(
        "walks",
        nargs="+",
        metavar="WALK",
        help="walk folders, folders of walk folders, or patterns; or one manifest (CSV or Parquet "
        "with a column walk); or with --by one table of strides (Parquet)",
    )
    add("-o", "--output", required=True, metavar="OUT", help="folder for the tables")
    add(
        "--by",
        action="append",
        metavar="COLUMN",
        help="column of a table of strides that names the walk (may be repeated)",
    )
    add("--sampling-rate", type=float, metavar="HZ", help="of a table of strides")
    add("--foot", choices=("left", "right"), help="analyse this foot alone")
    add(
        "--settings-value",
        type=float,
        default=0.0,
        metavar="V",
        help="setting of the analysis that made the walks",
    )
    add("--strict", action="store_true", help="leave out walks with a finding or a warning")
    add(
        "--without-check",
        action="append",
        default=[],
        metavar="NAME",
        help="leave out a data check (may be repeated)",
    )
    add(
        "--ignore-column",
        action="append",
        default=[],
        metavar="NAME",
        help='leave out a column of the input (may be repeated); "all": every unknown one',
    )
    add("--max-strides", type=int, metavar="N", help="leave out walks with more strides of a foot")
    add(
        "--statistics",
        metavar="LIST",
        default="n,mean,median,std,cv",
        help='those in the table parameters_wide, with commas; "all" (default: %(default)s)',
    )
    add("--format", choices=("parquet", "csv"), default="parquet", help="(default: %(default)s)")
    add("--jobs", type=int, metavar="N", help="threads (default: as many as there are processors)")
    add("--scheduler", metavar="ADDRESS", help="compute on a Dask cluster")
    add("--batch", type=int, metavar="N", help="walks computed and kept at a time (default: to 50)")
    add("--restart", action="store_true", help="discard what OUT holds of a study")
    add("--version", action="version", version=f"%(prog)s {_core.version}")
    return parser


def _keywords(arguments: argparse.Namespace) -> dict[str, Any]:
    """The arguments of study() by those of the command."""
    renamed = {
        "output": "out",
        "without_check": "without_checks",
        "ignore_column": "ignore_columns",
    }
    keywords = {renamed.get(name, name): value for name, value in vars(arguments).items()}
    keywords["statistics"] = keywords["statistics"].split(",")
    return keywords


def _say(message: object) -> None:
    for line in str(message).splitlines():
        print(f"gait-study: {line}", file=sys.stderr)


def _end_at_once(number: int, _: object) -> NoReturn:
    """Ends as the shell expects it. What is done is on the disk, as after any other end."""
    print(file=sys.stderr)
    _say("interrupted; the same command goes on where it was")
    os._exit(128 + number)


def _quieten_dask() -> None:
    """Leaves it to this command to say what goes wrong. Dask sets its levels when it is loaded."""
    with contextlib.suppress(ImportError):
        importlib.import_module("distributed")
        logging.getLogger("distributed").setLevel(logging.CRITICAL)
        logging.getLogger("distributed.client").setLevel(logging.CRITICAL)


def main() -> int:
    """Runs the command, and returns its exit code."""
    arguments = _parser().parse_args()
    try:
        from ._study import study
    except ImportError as error:
        _say(error)
        return EXIT_USAGE
    for number in (signal.SIGINT, signal.SIGTERM):
        signal.signal(number, _end_at_once)
    if arguments.scheduler is not None:
        _quieten_dask()
    try:
        result = study(**_keywords(arguments))
    except (ValueError, TypeError, ImportError) as error:
        _say(error)
        return EXIT_USAGE
    except OSError as error:
        # A file's name stands in the whole message alone.
        _say(error if error.filename or not error.strerror else error.strerror)
        return EXIT_LEFT_OUT
    except RuntimeError as error:
        _say(error)
        return EXIT_LEFT_OUT
    if result._was_complete:
        _say("this study was complete already; --restart computes it anew")
    _say(result.summary())
    return EXIT_LEFT_OUT if result.left_out else EXIT_FINE


if __name__ == "__main__":
    sys.exit(main())
