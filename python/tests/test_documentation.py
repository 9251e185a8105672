"""The examples of the docstrings and of the page run, and say what comes out."""

from __future__ import annotations

import doctest
import re
from importlib import import_module
from pathlib import Path

import pytest

MODULES = ("gait_statistics", *(f"gait_statistics._{name}" for name in ("lists", "result", "walk")))


@pytest.mark.parametrize("name", MODULES)
def test_the_examples_of_docstrings_are_right(name: str) -> None:
    outcome = doctest.testmod(import_module(name), raise_on_error=False)
    assert outcome.attempted > 0
    assert outcome.failed == 0


def test_the_examples_of_the_page_are_right(tmp_path: Path) -> None:
    page = Path("docs/python.md").read_text(encoding="utf-8")
    blocks = re.findall(r"```python\n(.*?)```", page, flags=re.DOTALL)
    assert blocks
    names: dict[str, object] = {"folder": tmp_path}
    runner = doctest.DocTestRunner()
    test = doctest.DocTestParser().get_doctest("\n".join(blocks), names, "python.md", None, None)
    runner.run(test)
    assert test.examples
    assert runner.summarize().failed == 0
