"""The examples of the docstrings and of the page run, and say what comes out."""

from __future__ import annotations

import doctest
from importlib import import_module

import pytest
from pages import PAGES, failures_of

MODULES = (
    "gait_statistics",
    *(f"gait_statistics._{name}" for name in ("import._walks", "lists", "result", "walk")),
)


@pytest.mark.parametrize("name", MODULES)
def test_the_examples_of_docstrings_are_right(name: str) -> None:
    outcome = doctest.testmod(import_module(name), raise_on_error=False)
    assert outcome.attempted > 0
    assert outcome.failed == 0


def test_the_examples_of_the_pages_are_right() -> None:
    failed, examples = zip(*(failures_of(page) for page in PAGES), strict=True)
    assert sum(failed) == 0
    assert examples[-1] > 10
