"""Studies on a cluster of Dask: a scheduler and workers, each a process of its own."""

from __future__ import annotations

import contextlib
import os
import subprocess
import threading
import time
from collections.abc import Callable, Iterator
from concurrent.futures import Future, ThreadPoolExecutor
from pathlib import Path

import pytest
from dask_processes import Processes
from studies import (
    COMMAND,
    contents_of,
    held_study,
    holding_studies,
    let_go,
    strides_of_bouts,
    write_walks,
)

pytest.importorskip("pyarrow")
pytest.importorskip("tqdm")
pytest.importorskip("distributed")

import gait_statistics as gs


@pytest.fixture(scope="module")
def cluster(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Processes]:
    """A scheduler with one worker."""
    processes = Processes(tmp_path_factory.mktemp("cluster"))
    with contextlib.closing(processes):
        processes.start_workers(1)
        yield processes


@pytest.fixture(scope="module")
def walks(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """Enough walks to kill workers among."""
    return write_walks(tmp_path_factory.mktemp("study") / "walks", 60)


@pytest.fixture(scope="module")
def whole(walks: Path, tmp_path_factory: pytest.TempPathFactory) -> dict[str, bytes]:
    """The files of their study on this machine."""
    return contents_of(gs.study(walks, tmp_path_factory.mktemp("study") / "out").out)


@contextlib.contextmanager
def disturbed_study(
    cluster: Processes, walks: Path, out: Path, disturb: Callable[[], object]
) -> Iterator[Future[gs.Study]]:
    """A study in a thread of its own, disturbed when five walks are done; over afterwards."""
    disturbed = threading.Event()

    def hold() -> None:
        disturb()
        disturbed.set()

    with holding_studies(5, hold), ThreadPoolExecutor(1) as pool:
        study = pool.submit(gs.study, walks, out, client=cluster.client, batch=1)
        assert disturbed.wait(120), "the study does not come so far"
        yield study
        study.result()


def test_one_worker_gives_the_same_files(
    cluster: Processes, walks: Path, whole: dict[str, bytes], tmp_path: Path
) -> None:
    assert contents_of(gs.study(walks, tmp_path / "out", client=cluster.client).out) == whole


def test_tables_of_strides_give_the_same_files(cluster: Processes, tmp_path: Path) -> None:
    frames = pytest.importorskip("dask.dataframe", exc_type=ImportError)
    strides = strides_of_bouts(12)
    strides.to_parquet(tmp_path / "strides.parquet", row_group_size=50)
    spread = frames.from_pandas(strides, npartitions=5, sort=False)
    by = ["subject", "bout"]
    expected = gs.study(strides, tmp_path / "out", by, sampling_rate=100)
    for name, table in {
        "frame": strides,
        "file": tmp_path / "strides.parquet",
        "dask": spread,
    }.items():
        done = gs.study(
            table, tmp_path / name, by, sampling_rate=100, batch=2, client=cluster.client
        )
        for file in ("parameters", "parameters_wide", "walks", "errors"):
            assert done.files[file].read_bytes() == expected.files[file].read_bytes()


def test_four_workers_of_which_two_are_killed_give_the_same_files(
    cluster: Processes, walks: Path, whole: dict[str, bytes], tmp_path: Path
) -> None:
    cluster.start_workers(3)
    with disturbed_study(cluster, walks, tmp_path / "out", lambda: cluster.kill_workers(2)):
        pass
    assert contents_of(tmp_path / "out") == whole


def test_a_study_waits_while_all_workers_are_gone(
    cluster: Processes, walks: Path, whole: dict[str, bytes], tmp_path: Path
) -> None:
    out = tmp_path / "out"

    def kill_all() -> None:
        cluster.kill_workers(len(cluster.workers))

    with disturbed_study(cluster, walks, out, kill_all) as study:
        time.sleep(1)
        assert not study.done()
        assert contents_of(out) == {}
        cluster.start_workers(1)
    assert contents_of(out) == whole


def test_a_study_ends_where_the_scheduler_has_gone_and_goes_on_without(
    cluster: Processes, walks: Path, whole: dict[str, bytes], tmp_path: Path
) -> None:
    out = tmp_path / "out"
    scheduler = ["--scheduler", cluster.address, "--batch", 1]
    with held_study(5, *scheduler, "-o", out, walks) as process:
        cluster.kill_scheduler()
        said = let_go(process)
    assert process.returncode == 1
    assert said == ("gait-study: the scheduler has gone; the same study goes on with another one\n")
    assert contents_of(gs.study(walks, out).out) == whole


def test_a_scheduler_that_is_not_there_is_named(tmp_path: Path) -> None:
    command = [*COMMAND, "--scheduler", "tcp://127.0.0.1:9", "-o", str(tmp_path / "out"), "x"]
    environment = {**os.environ, "DASK_DISTRIBUTED__COMM__TIMEOUTS__CONNECT": "1s"}
    finished = subprocess.run(
        command, capture_output=True, encoding="utf-8", check=False, env=environment
    )
    assert finished.returncode == 1
    assert "gait-study: " in finished.stderr
    assert "tcp://127.0.0.1:9" in finished.stderr
    assert "Traceback" not in finished.stderr
