"""The study: what it is of, where it is computed, and what it leaves."""

from __future__ import annotations

import os
from collections.abc import Callable, Iterator, Sequence
from contextlib import contextmanager
from dataclasses import asdict
from os import PathLike
from pathlib import Path
from typing import Any

import pyarrow as pa
from tqdm import tqdm

from .. import _core
from .._arguments import checked_limit
from .._tables import FrameKind, frame_of
from .._walk import Foot
from ._assembly import write_tables
from ._folders import folders, manifest, manifest_file
from ._options import Options, checked_options
from ._result import Study
from ._run import Cluster, Executor, Run, Threads, processors, run_all
from ._source import Source
from ._strides import as_arrow, is_dask_frame, stride_dask, stride_files, stride_frame
from ._tables import key_types
from ._work import Record, Work, errors_of


def _paths(walks: Any) -> list[str] | None:
    """The paths that are given, or None where a table is."""
    if isinstance(walks, (str, os.PathLike)):
        return [os.fsdecode(walks)]
    if isinstance(walks, Sequence) and all(isinstance(w, (str, os.PathLike)) for w in walks):
        return [os.fsdecode(walk) for walk in walks]
    return None


def _source_of_paths(
    paths: list[str], by: str | Sequence[str] | None, rate: float | None, options: Options
) -> Source:
    if not paths:
        raise ValueError("walks: found none, expected folders, a manifest or a table of strides")
    if by is not None:
        if len(paths) != 1:
            raise ValueError(f"walks: found {len(paths)}, expected one table of strides: by is set")
        return stride_files(_existing(paths[0]), by, rate, options)
    if rate is not None:
        raise ValueError("sampling_rate: found one, expected it with by alone: folders have theirs")
    files = [path for path in paths if os.path.isfile(path)]
    if files and len(paths) > 1:
        raise ValueError(
            f"walks: found the file {files[0]} among others, expected folders, or one manifest"
        )
    return manifest_file(Path(files[0]), options) if files else folders(paths, options)


def _existing(path: str) -> Path:
    if not os.path.exists(path):
        raise ValueError(f"{path}: found nothing, expected a Parquet file, or a folder of them")
    return Path(path)


def _source(
    walks: Any,
    by: str | Sequence[str] | None,
    rate: float | None,
    options: Options,
    executor: Executor,
) -> Source:
    """What the walks are, of everything that they can be."""
    paths = _paths(walks)
    if paths is not None:
        return _source_of_paths(paths, by, rate, options)
    if is_dask_frame(walks):
        if by is None:
            raise ValueError("by: found None, expected the columns of the frame that name the walk")
        return stride_dask(
            walks, by, rate, options, lambda *arguments: run_all(executor, *arguments)
        )
    try:
        table = as_arrow(walks)
    except TypeError as error:
        raise TypeError(
            f"walks: found {type(walks).__name__}, expected paths of walk folders, a manifest, or "
            "a table of strides: a frame of pandas, polars, pyarrow or Dask"
        ) from error
    except pa.ArrowException as error:
        raise ValueError(f"walks: {error}") from error
    if by is None:
        return manifest(table, "the manifest", os.curdir, options)
    return stride_frame(table, by, rate, options)


@contextmanager
def _executor(jobs: int | None, client: Any, scheduler: str | None) -> Iterator[Executor]:
    executor: Executor
    if client is None and scheduler is None:
        executor = Threads(jobs or processors())
    else:
        try:
            import distributed
        except ImportError as error:
            raise ImportError(f"{error}: pip install 'gait-statistics[cluster]'") from error
        connect: Callable[..., Any] = distributed.Client
        client = client or connect(scheduler, set_as_default=False)
        executor = Cluster(client, owns_client=scheduler is not None)
    try:
        yield executor
    finally:
        executor.close()


def _plan(source: Source, options: Options) -> Record:
    """What makes two runs one study."""
    return {
        "version": _core.version,
        "walks": len(source),
        "fingerprint": source.fingerprint(),
        "options": {name: _plain(value) for name, value in asdict(options).items()},
    }


def _plain(value: Any) -> Any:
    """A value as JSON gives it back."""
    return list(value) if isinstance(value, tuple) else value


def _bar(total: int, done: int, what: str, progress: bool | None) -> Any:
    """Progress with rate and time left, on a terminal unless it is asked for or not wanted."""
    hidden = None if progress is None else not progress
    return tqdm(total=total, initial=done, desc=what, unit=" walks", smoothing=0.05, disable=hidden)


def _compute(
    source: Source, work: Work, executor: Executor, batch: int | None, progress: bool | None
) -> None:
    missing = sum(stop - first for first, stop in work.gaps(len(source)))
    with _bar(len(source), len(source) - missing, "computed", progress) as bar:
        Run(source, work, executor, bar.update).run(batch)


def _finish(source: Source, work: Work, options: Options, progress: bool | None) -> None:
    with errors_of(work.out), _bar(len(source), 0, "written", progress) as bar:
        tables, left_out = write_tables(work, source.keys, options, bar.update)
        found = {"left_out": left_out.count, "left_out_first": left_out.names}
        work.finish(tables, {**found, "keys": key_types(source.keys)})


def _check_apart(paths: list[str] | None, by: object, out: Path) -> None:
    """Raises ValueError where the study would be written among the files of its table."""
    if paths and by is not None and out.resolve().is_relative_to(Path(paths[0]).resolve()):
        raise ValueError(f"out: found {out}, which is in the table of strides, expected another")


def study(
    walks: Any,
    out: str | PathLike[str],
    by: str | Sequence[str] | None = None,
    *,
    foot: Foot | None = None,
    settings_value: float = 0.0,
    sampling_rate: float | None = None,
    without_checks: Sequence[str] = (),
    ignore_columns: Sequence[str] = (),
    max_strides: int | None = None,
    strict: bool = False,
    statistics: Sequence[str] = ("n", "mean", "median", "std", "cv"),
    format: str = "parquet",
    jobs: int | None = None,
    client: Any = None,
    scheduler: str | None = None,
    batch: int | None = None,
    restart: bool = False,
    progress: bool | None = None,
    frame: FrameKind = "pandas",
) -> Study:
    """Computes the statistics of many walks, and writes them as tables into a folder.

    A walk that cannot be read or computed is left out, and the table of errors says why. The tables
    do not depend on threads, workers or batches, to the last bit. A call that was interrupted, by
    whatever, is made again to go on where it was.

    Args:
        walks: walk folders: one path or a list; a folder of walk folders, at any depth, or a
            pattern such as ``"study/*/walk_?"`` stands for all of them. Or a manifest: a CSV or
            Parquet file, or a frame, with a column ``walk`` of paths, relative to the file; its
            other columns go into every row of the tables. Or, with ``by``, one table of strides: a
            frame of pandas, polars, pyarrow or Dask, a Parquet file, or a folder of such, with the
            columns of :class:`Walk`.
        out: the folder for the tables. It may be there; it must not hold another study.
        by: the columns of the table of strides that name the walk. They go into every row.
        foot: the foot to analyse alone; None: both feet, or the one that a walk has.
        settings_value: a setting of the analysis that made the walks, for a quality flag.
        sampling_rate: samples per second (Hz) of a table of strides; None: its column
            ``sampling_rate`` has it. Walk folders have theirs.
        without_checks: names of data checks to leave out.
        ignore_columns: names of columns to leave out; "all" stands for every unknown one.
        max_strides: leaves out walks with more strides of a foot.
        strict: leaves out walks with a finding or a warning.
        statistics: those in the wide table; ``["all"]``: all of the long one.
        format: "parquet" or "csv".
        jobs: threads; None: as many as there are processors. A cluster has its own.
        client: a client of ``dask.distributed``: the study is computed on its workers, which see
            the walks at the same paths.
        scheduler: the address of a Dask scheduler, in place of a client.
        batch: walks that are computed and kept at a time; None: up to 50.
        restart: discards what ``out`` holds of a study.
        progress: whether to show progress on the standard error; None: on a terminal.
        frame: the library whose frames the tables are read as.

    Returns:
        The study: its tables, read from the files on request.

    Raises:
        ValueError: for arguments that cannot be meant, and where ``out`` holds another study.
        RuntimeError: where another process is at ``out``, or a worker has another version.
        OSError: where ``out`` cannot be written, such as on a full disk.

    >>> import tempfile
    >>> with tempfile.TemporaryDirectory() as out:
    ...     result = study("examples/walks", out)
    ...     wide = result.parameters_wide.set_index("walk")
    >>> round(float(wide.loc["two_feet_turn", "swing_right_mean"]), 2)
    38.55
    """
    if client is not None and scheduler is not None:
        raise ValueError("client, scheduler: found both, expected one of them")
    frame_of([], frame)
    options = checked_options(
        foot=foot,
        settings_value=settings_value,
        without_checks=without_checks,
        ignore_columns=ignore_columns,
        max_strides=max_strides,
        strict=strict,
        statistics=statistics,
        format=format,
    )
    batch, jobs = checked_limit(batch, "batch"), checked_limit(jobs, "jobs")
    _check_apart(_paths(walks), by, Path(out))
    with _executor(jobs, client, scheduler) as executor:
        source = _source(walks, by, sampling_rate, options, executor)
        with Work(Path(out), _plan(source, options), restart=restart) as work:
            was_complete = work.is_complete
            if not was_complete:
                _compute(source, work, executor, batch, progress)
                _finish(source, work, options, progress)
    result = Study(out, frame)
    result._was_complete = was_complete
    return result
