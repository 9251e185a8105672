"""The command gait-study that waits after so many parts until its standard input ends."""

from __future__ import annotations

import sys

from studies import holding_studies

from gait_statistics._study_command import main


def hold() -> None:
    """Says that the parts are there, and waits."""
    print("held", flush=True)
    sys.stdin.read()


if __name__ == "__main__":
    with holding_studies(int(sys.argv.pop(1)), hold):
        sys.exit(main())
