"""The folder of a study: its lock, its plan, the parts that are done, and the record at the end.

It holds:

    OUT/parameters.parquet ...   the tables, each whole as soon as it has this name
    OUT/study.json               what they are, written last
    OUT/.study/                  while the study is under way: lock, plan.json, parts
"""

from __future__ import annotations

import fcntl
import json
import os
import re
import shutil
from collections.abc import Iterator
from contextlib import contextmanager
from pathlib import Path
from types import TracebackType
from typing import Any

from ._tables import TABLES

_PART = re.compile(r"(\d{10})-(\d{10})\.part")
RECORD = "study.json"

Record = dict[str, Any]


def _sync_folder(folder: Path) -> None:
    descriptor = os.open(folder, os.O_RDONLY)
    try:
        os.fsync(descriptor)
    finally:
        os.close(descriptor)


@contextmanager
def whole_file(path: Path, beside: Path) -> Iterator[Path]:
    """A name to write to; afterwards the file has its own, whole and on the disk, or is not there.

    ``beside`` is the folder, on the same disk, in which it is written.
    """
    temporary = beside / f"{path.name}.tmp"
    try:
        yield temporary
        with temporary.open("rb") as file:
            os.fsync(file.fileno())
        os.replace(temporary, path)
        _sync_folder(path.parent)
    except BaseException:
        temporary.unlink(missing_ok=True)
        raise


@contextmanager
def errors_of(out: Path) -> Iterator[None]:
    """Says of an error of the disk which study it is of, and what becomes of that."""
    try:
        yield
    except OSError as error:
        reason = os.strerror(error.errno) if error.errno else str(error)
        text = f"{out}: {reason}; what is done is kept, and the same study goes on with it"
        raise OSError(error.errno, text) from error


def _write_record(path: Path, record: Record, beside: Path) -> None:
    with whole_file(path, beside) as temporary:
        temporary.write_text(json.dumps(record, indent=1) + "\n", encoding="utf-8")


def read_record(path: Path) -> Record | None:
    """A record, or None where there is none."""
    try:
        record = json.loads(path.read_text(encoding="utf-8"))
    except FileNotFoundError:
        return None
    except ValueError as error:
        raise ValueError(f"{path}: found no record of a study ({error})") from error
    if not isinstance(record, dict):
        raise ValueError(f"{path}: found no record of a study")
    return record


def _differences(found: Record, expected: Record) -> str:
    """What is not the same in two plans, in words."""
    words = []
    if (
        found.get("walks") != expected["walks"]
        or found.get("fingerprint") != expected["fingerprint"]
    ):
        words.append("other walks")
    if found.get("version") != expected["version"]:
        words.append(f"version {found.get('version')} instead of {expected['version']}")
    options = found.get("options", {})
    for name, value in expected["options"].items():
        if options.get(name) != value:
            words.append(f"{name} {options.get(name)} instead of {value}")
    return ", ".join(words)


class Work:
    """The folder of a study, while it is under way. Nobody else can be at it meanwhile."""

    def __init__(self, out: Path, plan: Record, *, restart: bool) -> None:
        """Makes or takes over the folder.

        Args:
            out: the folder.
            plan: the walks, options and version of the study; JSON gives it back as it is.
            restart: discards what is there of another study, or of this one.

        Raises:
            ValueError: where there is something else, and ``restart`` is not set.
            RuntimeError: where another process is at it.
        """
        self.out = out
        self.folder = out / ".study"
        self.is_complete = False
        self._plan = plan
        self._lock = -1
        if out.exists() and not out.is_dir():
            raise ValueError(f"{out}: found a file, expected a folder, or nothing yet")
        self.folder.mkdir(parents=True, exist_ok=True)
        self._take_lock()
        try:
            self._prepare(restart)
        except BaseException:
            self.close()
            raise

    def _take_lock(self) -> None:
        path = self.folder / "lock"
        while True:
            self.folder.mkdir(exist_ok=True)
            self._lock = os.open(path, os.O_RDWR | os.O_CREAT | os.O_CLOEXEC, 0o666)
            try:
                fcntl.flock(self._lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
                # Whoever had it may have ended, and taken the file away.
                if os.stat(path).st_ino == os.fstat(self._lock).st_ino:
                    return
            except FileNotFoundError:
                pass
            except BlockingIOError:
                os.close(self._lock)
                raise RuntimeError(f"{self.out}: another process is at this study") from None
            os.close(self._lock)

    def _prepare(self, restart: bool) -> None:
        path = self.folder / "plan.json"
        under_way = read_record(path)
        found = under_way or read_record(self.out / RECORD)
        if not restart:
            self._check(found)
        if found is not None and under_way is None and not restart:
            self.is_complete = True
            self.clear()
        elif under_way is None or restart:
            self.clear()
            _write_record(path, self._plan, self.folder)

    def _check(self, found: Record | None) -> None:
        if found is None:
            names = [f"{table}.{self._plan['options']['format']}" for table in TABLES]
            there = [name for name in names if (self.out / name).exists()]
            if there:
                raise ValueError(
                    f"{self.out}: found {', '.join(there)} of no study, expected a folder without: "
                    "name another one, or restart (--restart) to replace them"
                )
        elif different := _differences(found, self._plan):
            raise ValueError(
                f"{self.out}: found another study ({different}), expected this one, to go on with "
                "it: name another folder, or restart (--restart) to discard it"
            )

    def clear(self) -> None:
        """Takes everything away but the lock; the plan first, so no part is taken for whole."""
        (self.folder / "plan.json").unlink(missing_ok=True)
        for path in self.folder.iterdir():
            if path.name != "lock":
                path.unlink()

    def parts(self) -> list[tuple[int, int, Path]]:
        """The parts that are done: from which walk, up to which, and the file; in order."""
        found = ((_PART.fullmatch(path.name), path) for path in self.folder.iterdir())
        return sorted((int(m[1]), int(m[2]), path) for m, path in found if m)

    def gaps(self, count: int) -> list[tuple[int, int]]:
        """The walks that no part has yet, of so many."""
        gaps, at = [], 0
        for first, stop, _ in self.parts():
            if first > at:
                gaps.append((at, first))
            at = stop
        return [*gaps, (at, count)] if at < count else gaps

    def store(self, first: int, stop: int, part: bytes) -> None:
        """Keeps a part."""
        path = self.folder / f"{first:010}-{stop:010}.part"
        with errors_of(self.out), whole_file(path, self.folder) as temporary:
            temporary.write_bytes(part)

    def finish(self, tables: list[Path], found: Record) -> None:
        """Gives tables that are whole their names, and ends the study."""
        for table in tables:
            os.replace(table, self.out / table.name)
        _sync_folder(self.out)
        _write_record(self.out / RECORD, {**self._plan, **found}, self.folder)
        self.clear()
        self.is_complete = True

    def close(self) -> None:
        """Lets others at the folder."""
        if self.is_complete:
            shutil.rmtree(self.folder, ignore_errors=True)
        elif not (self.folder / "plan.json").exists():
            # Refused: leave nothing behind that was not there.
            shutil.rmtree(self.folder, ignore_errors=True)
            if not any(self.out.iterdir()):
                self.out.rmdir()
        os.close(self._lock)

    def __enter__(self) -> Work:
        """Itself."""
        return self

    def __exit__(
        self,
        kind: type[BaseException] | None,
        error: BaseException | None,
        traceback: TracebackType | None,
    ) -> None:
        """Closes it."""
        self.close()
