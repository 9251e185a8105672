"""What the walks of a study come from, as the run sees it."""

from __future__ import annotations

from collections.abc import Callable
from dataclasses import dataclass
from typing import Any, Protocol

import pyarrow as pa

from ._batch import Order


@dataclass(frozen=True)
class Task:
    """A batch to compute: ``run(order, *arguments, *pieces)`` gives its part.

    Attributes:
        run: a function that a worker can import.
        order: which walks, and what to do.
        arguments: what else it takes.
        pieces: the numbers of the pieces of the input that it needs, loaded.
    """

    run: Callable[..., bytes]
    order: Order
    arguments: tuple[Any, ...]
    pieces: tuple[int, ...] = ()


class Source(Protocol):
    """The walks of a study, in their order."""

    keys: pa.Schema
    """The columns that go into every row, besides "walk"."""

    def __len__(self) -> int:
        """How many walks there are."""

    def fingerprint(self) -> str:
        """A text that is another one for other walks."""

    def task(self, first: int, stop: int) -> Task:
        """The batch of the walks from one place in the input up to another."""

    def named(self, order: Order) -> Order:
        """The order with the names and keys of its walks, which a task may leave to the worker."""

    def piece(self, number: int) -> tuple[Callable[..., Any], tuple[Any, ...]]:
        """What loads a piece: a function that a worker can import, and its arguments."""
