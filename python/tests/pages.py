"""Runs the examples of the pages, and compares what comes out. It needs nothing but the package.

`folder` stands for a folder that is empty. What the pages write lies there, too.
"""

from __future__ import annotations

import doctest
import re
import sys
import tempfile
from pathlib import Path

PAGES = ("README.md", "docs/python.md")
WRITTEN = r'"(tables|bouts|report\.html)"(?=[,)])'


def failures_of(page: str, fence: str = "python") -> tuple[int, int]:
    """How many examples of a page's blocks fail, and how many there are."""
    text = Path(page).read_text(encoding="utf-8")
    blocks = re.findall(rf"```{fence}\n(.*?)```", text, flags=re.DOTALL)
    runner = doctest.DocTestRunner()
    with tempfile.TemporaryDirectory() as folder:
        names = {"folder": Path(folder)}
        examples = re.sub(WRITTEN, r'folder / "\1"', "\n".join(blocks))
        runner.run(doctest.DocTestParser().get_doctest(examples, names, page, page, None))
    return runner.failures, runner.tries


if __name__ == "__main__":
    failed = 0
    for name in PAGES:
        failures, examples = failures_of(name)
        print(f"{name}: {examples} examples, {failures} of them fail")
        failed += failures
    sys.exit(failed > 0)
