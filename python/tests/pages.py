"""Runs the examples of the pages, and compares what comes out. It needs nothing but the package."""

from __future__ import annotations

import doctest
import re
import sys
from pathlib import Path

PAGES = ("README.md", "docs/python.md")


def failures_of(page: str) -> tuple[int, int]:
    """How many examples of a page fail, and how many there are."""
    text = Path(page).read_text(encoding="utf-8")
    blocks = re.findall(r"```python\n(.*?)```", text, flags=re.DOTALL)
    test = doctest.DocTestParser().get_doctest("\n".join(blocks), {}, page, page, None)
    runner = doctest.DocTestRunner()
    runner.run(test)
    return runner.failures, runner.tries


if __name__ == "__main__":
    failed = 0
    for name in PAGES:
        failures, examples = failures_of(name)
        print(f"{name}: {examples} examples, {failures} of them fail")
        failed += failures
    sys.exit(failed > 0)
