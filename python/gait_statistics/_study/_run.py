"""Batches computed in threads, or on a Dask cluster; both take the same tasks."""

from __future__ import annotations

import asyncio
import concurrent.futures
import os
import time
from collections.abc import Callable, Iterable, Iterator
from contextlib import contextmanager
from typing import Any, Protocol

from ._batch import left_out
from ._source import Source, Task
from ._work import Work

_LARGEST_BATCH = 50
_BATCHES_OF_A_CORE = 4

Load = tuple[Callable[..., Any], tuple[Any, ...]]


class Executor(Protocol):
    """What computes. A future that is handed to submit() comes to the function as its result."""

    def cores(self) -> int:
        """How many batches it computes at a time."""

    def load(self, load: Load) -> Any:
        """A future of a piece of the input."""

    def submit(self, function: Callable[..., Any], *arguments: Any) -> Any:
        """A future of the function's result."""

    def done(self, futures: Iterable[Any]) -> set[Any]:
        """Those of the futures that are done, as soon as there is one."""

    def result(self, future: Any) -> Any:
        """The result of a future that is done, or the error that it ended in.

        Raises:
            ConnectionError: as done() does, where what computes has gone.
        """

    def killed_workers(self, error: BaseException) -> bool:
        """Whether an error says that workers died over a task, again and again."""

    def close(self) -> None:
        """Gives up what is not begun, and ends."""


def _with_results(function: Callable[..., Any], arguments: tuple[Any, ...]) -> Any:
    return function(
        *(one.result() if isinstance(one, concurrent.futures.Future) else one for one in arguments)
    )


class Threads:
    """Computes in threads of this process."""

    def __init__(self, jobs: int) -> None:
        """Takes the number of threads."""
        self._jobs = jobs
        self._pool = concurrent.futures.ThreadPoolExecutor(jobs, "gait-study")

    def cores(self) -> int:
        """The number of threads."""
        return self._jobs

    def load(self, load: Load) -> Any:
        """Loads in a thread; what waits for it was submitted later, so a thread is free for it."""
        run, arguments = load
        return self._pool.submit(run, *arguments)

    def submit(self, function: Callable[..., Any], *arguments: Any) -> Any:
        """Computes in a thread."""
        return self._pool.submit(_with_results, function, arguments)

    def done(self, futures: Iterable[Any]) -> set[Any]:
        """Waits for the first one."""
        return concurrent.futures.wait(futures, return_when=concurrent.futures.FIRST_COMPLETED).done

    def result(self, future: Any) -> Any:
        """It is here."""
        return future.result()

    def killed_workers(self, error: BaseException) -> bool:
        """Threads do not die alone."""
        return False

    def close(self) -> None:
        """Waits for the batches that are being computed."""
        self._pool.shutdown(cancel_futures=True)


@contextmanager
def _lost_scheduler() -> Iterator[None]:
    """Says in words what Dask says in several ways."""
    from distributed.comm.core import CommClosedError

    try:
        yield
    except (asyncio.CancelledError, concurrent.futures.CancelledError, CommClosedError) as error:
        text = "the scheduler has gone; the same study goes on with another one"
        raise ConnectionError(text) from error


class Cluster:
    """Computes on the workers of a Dask cluster."""

    _SECONDS_BETWEEN_COUNTS = 5.0

    def __init__(self, client: Any, *, owns_client: bool) -> None:
        """Takes a client of ``dask.distributed``."""
        self._client = client
        self._owns_client = owns_client
        self._cores = 0
        self._counted = -self._SECONDS_BETWEEN_COUNTS

    def cores(self) -> int:
        """The threads of all workers. They come and go, so they are counted now and then."""
        if time.monotonic() > self._counted + self._SECONDS_BETWEEN_COUNTS:
            self._cores = max(1, sum(self._client.ncores().values()))
            self._counted = time.monotonic()
        return self._cores

    def load(self, load: Load) -> Any:
        """Loads on a worker."""
        run, arguments = load
        if len(arguments) == 1 and hasattr(arguments[0], "dask"):
            return self._client.compute(arguments[0])
        return self._client.submit(run, *arguments, pure=False)

    def submit(self, function: Callable[..., Any], *arguments: Any) -> Any:
        """Computes on a worker; on another one if that one dies."""
        return self._client.submit(function, *arguments, pure=False)

    def done(self, futures: Iterable[Any]) -> set[Any]:
        """Waits for the first one."""
        import distributed

        wait: Callable[..., Any] = distributed.wait
        with _lost_scheduler(), self._client.as_current():
            return set(wait(list(futures), return_when="FIRST_COMPLETED").done)

    def result(self, future: Any) -> Any:
        """Fetches it from the worker."""
        with _lost_scheduler():
            return future.result()

    def killed_workers(self, error: BaseException) -> bool:
        """Dask gives a task up after it was on several workers that died."""
        import distributed

        return isinstance(error, distributed.KilledWorker)

    def close(self) -> None:
        """Leaves the cluster as it was. Futures that nobody holds are given up."""
        if self._owns_client:
            self._client.close()


def processors() -> int:
    """How many processors this process may use."""
    return len(os.sched_getaffinity(0))


def batch_size(count: int, cores: int, batch: int | None) -> int:
    """How many walks are computed at a time: few enough that every core has some of its own."""
    return batch or max(1, min(_LARGEST_BATCH, count // (cores * _BATCHES_OF_A_CORE)))


def _ranges(gaps: list[tuple[int, int]], size: int) -> Iterator[tuple[int, int]]:
    for first, stop in gaps:
        for begin in range(first, stop, size):
            yield begin, min(begin + size, stop)


def run_all(
    executor: Executor, function: Callable[..., Any], loads: list[Load], *arguments: Any
) -> list[Any]:
    """A function of every piece, in their order."""
    futures = [executor.submit(function, executor.load(load), *arguments) for load in loads]
    return [executor.result(future) for future in futures]


class Run:
    """Computes what is missing of a study, with few batches at a time."""

    def __init__(
        self,
        source: Source,
        work: Work,
        executor: Executor,
        done: Callable[[int], object],
    ) -> None:
        """Takes what is called with the number of walks of each batch that is done."""
        self._source = source
        self._work = work
        self._executor = executor
        self._done = done
        self._tasks: dict[Any, Task] = {}
        self._pieces: dict[int, Any] = {}

    def run(self, batch: int | None) -> None:
        """Computes every walk that no part has yet."""
        gaps = self._work.gaps(len(self._source))
        size = batch_size(sum(stop - first for first, stop in gaps), self._executor.cores(), batch)
        for first, stop in _ranges(gaps, size):
            while len(self._tasks) >= 2 * self._executor.cores() + 2:
                self._collect()
            self._submit(self._source.task(first, stop))
        while self._tasks:
            self._collect()

    def _submit(self, task: Task) -> None:
        for number in task.pieces:
            if number not in self._pieces:
                self._pieces[number] = self._executor.load(self._source.piece(number))
        pieces = [self._pieces[number] for number in task.pieces]
        future = self._executor.submit(task.run, task.order, *task.arguments, *pieces)
        self._tasks[future] = task
        # Batches come in order: none will need what lies before this one.
        for number in [n for n in self._pieces if task.pieces and n < task.pieces[0]]:
            del self._pieces[number]

    def _collect(self) -> None:
        for future in self._executor.done(self._tasks):
            task = self._tasks.pop(future)
            try:
                part = self._executor.result(future)
            except Exception as error:
                if not self._executor.killed_workers(error):
                    raise
                part = self._again_in_halves(task)
            if part is not None:
                first = task.order.first
                self._work.store(first, first + len(task.order.names), part)
                self._done(len(task.order.names))

    def _again_in_halves(self, task: Task) -> bytes | None:
        """Looks for the walk over which workers die; that one is left out."""
        first = task.order.first
        stop = first + len(task.order.names)
        if stop - first == 1:
            return left_out(
                self._source.named(task.order),
                "found workers that died while they computed it, expected a result: is there "
                "memory enough for so long a walk?",
            )
        self._pieces.clear()
        middle = (first + stop) // 2
        self._submit(self._source.task(first, middle))
        self._submit(self._source.task(middle, stop))
        return None
