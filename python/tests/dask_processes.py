"""A cluster of Dask for tests: a scheduler and workers, each a process of its own."""

from __future__ import annotations

import subprocess
import sys
import time
from pathlib import Path
from typing import Any


class Processes:
    """A scheduler and its workers."""

    def __init__(self, folder: Path) -> None:
        self._file = folder / "scheduler.json"
        self._log = (folder / "log").open("wb")
        self.workers: list[subprocess.Popen[bytes]] = []
        self._scheduler = self._start("scheduler", "--host", "127.0.0.1", "--port", "0")
        import distributed

        client: Any = distributed.Client
        end = time.monotonic() + 60
        while not self._file.exists() and time.monotonic() < end:
            time.sleep(0.05)
        self.client = client(scheduler_file=str(self._file))
        self.address = self.client.scheduler.address

    def _start(self, *arguments: str) -> subprocess.Popen[bytes]:
        command = [sys.executable, "-m", "distributed.cli.dask_" + arguments[0], *arguments[1:]]
        command += ["--scheduler-file", str(self._file), "--no-dashboard"]
        return subprocess.Popen(
            command,
            stdout=self._log,
            stderr=self._log,
        )

    def start_workers(self, count: int, *more: str) -> None:
        """Starts workers with further arguments, and waits for them."""
        more = (*(more or ("--no-nanny",)), "--nthreads", "1", "--host", "127.0.0.1")
        self.workers += [self._start("worker", *more) for _ in range(count)]
        self.client.wait_for_workers(len(self.workers), timeout=60)

    def kill_workers(self, count: int) -> None:
        """Kills workers."""
        for _ in range(count):
            worker = self.workers.pop()
            worker.kill()
            worker.wait()

    def kill_scheduler(self) -> None:
        """Kills the scheduler, after which there is no cluster."""
        self.client.close()
        self._scheduler.kill()
        self._scheduler.wait()

    def close(self) -> None:
        """Ends everything."""
        self.client.close()
        for process in (*self.workers, self._scheduler):
            process.kill()
            process.wait()
        self._log.close()
