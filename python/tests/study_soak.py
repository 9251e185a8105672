"""Large studies: ten thousand walks, killed and on a cluster, and a hundred thousand bouts.

    study_soak.py GAIT_MAKE_WALK [--walks N] [--bouts N]

Fails at the first thing that is not as it should be. The last line is a summary.
"""

from __future__ import annotations

import argparse
import concurrent.futures
import contextlib
import os
import subprocess
import tempfile
import time
from collections.abc import Callable, Mapping
from pathlib import Path

import pyarrow as pa
import pyarrow.parquet as pq
from dask_processes import Processes
from studies import COMMAND, contents_of, parts_in, strides_of_bouts

BROKEN = 1234

# A worker with this dies over one walk, as one does that has no memory for it.
DEADLY = """
import os
from gait_statistics import _core

# Dask loads this file more than once.
if not hasattr(_core, "plain_read_walk"):
    _core.plain_read_walk = _core.read_walk

def deadly(path, *others):
    if path.endswith("7"):
        os._exit(1)
    return _core.plain_read_walk(path, *others)

_core.read_walk = deadly
"""


def check(condition: object, text: str) -> None:
    if not condition:
        raise SystemExit(f"FAILED: {text}")


def run(*arguments: object) -> tuple[int, float, float]:
    """Runs the command; its exit code, its seconds, and the most memory that it held (MB)."""
    start = time.monotonic()
    process = subprocess.Popen([*COMMAND, *map(str, arguments)])
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    return process.returncode, time.monotonic() - start, usage.ru_maxrss / 1024


def walks_done(out: Path) -> int:
    spans = (name.removesuffix(".part").split("-") for name in parts_in(out))
    return sum(int(stop) - int(first) for first, stop in spans)


def wait_for(out: Path, walks: int, process: subprocess.Popen[bytes]) -> None:
    while walks_done(out) < walks:
        check(process.poll() is None, "the study was over before it could be disturbed")
        time.sleep(0.05)


def disturbed(
    arguments: list[object], out: Path, moments: Mapping[int, Callable[[], object]]
) -> int:
    """Runs the command, and does something each time that so many walks are done."""
    process = subprocess.Popen([*COMMAND, *map(str, arguments), "-o", str(out)])
    for walks, happens in moments.items():
        wait_for(out, walks, process)
        print(f"  at {walks_done(out)} walks: {happens.__name__}", flush=True)
        if happens.__name__ == "kill":
            process.kill()
        else:
            happens()
    return process.wait()


def make_walks(make_walk: str, folder: Path, count: int) -> Path:
    folder.mkdir()

    def make(seed: int) -> None:
        path = folder / f"walk_{seed:06}"
        command = [make_walk, str(path), "--seed", str(seed), "--strides", "40"]
        subprocess.run(command, check=True, capture_output=True)

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        list(pool.map(make, range(count)))
    broken = folder / f"walk_{BROKEN % count:06}/foot_cycles.csv"
    broken.write_bytes(broken.read_bytes()[:2000])
    return folder


def ten_thousand_walks(walks: Path, count: int, out: Path) -> dict[str, bytes]:
    """One broken walk among all; groups of rows of a thousand walks."""
    few = sorted(walks.iterdir())[: count // 10]
    code, _, memory_of_few = run("-o", out.with_name("few"), *few)
    code, seconds, memory = run("-o", out, walks)
    check(code == 1, f"exit code {code}")
    print(f"  {count / seconds:.0f} walks a second; {memory_of_few:.0f} MB for a tenth of them, ")
    print(f"  {memory:.0f} MB for all", flush=True)
    for table, rows in {"walks": 1, "parameters_wide": 1}.items():
        file = pq.ParquetFile(out / f"{table}.parquet")
        sizes = [file.metadata.row_group(n).num_rows for n in range(file.num_row_groups)]
        expected = [min(1000, count - first) * rows for first in range(0, count, 1000)]
        expected[BROKEN % count // 1000] -= 1
        check(sizes == expected, f"groups of {table}: {sizes}")
    errors = pq.read_table(out / "errors.parquet")
    check(set(errors["walk"].to_pylist()) == {f"walk_{BROKEN % count:06}"}, "errors")
    return contents_of(out)


def killed(walks: Path, count: int, out: Path, whole: dict[str, bytes]) -> None:
    """Killed in the middle, and again."""

    def kill() -> None: ...

    for moment in (count // 2, count * 4 // 5):
        code = disturbed([walks], out, {moment: kill})
        check(code == -9 and contents_of(out) == {}, "a file has its name too early")
    code, seconds, _ = run("-o", out, walks, "--batch", 17)
    print(f"  the rest took {seconds:.1f} s")
    check(code == 1 and contents_of(out) == whole, "the tables differ after the kills")


def on_a_cluster(walks: Path, count: int, out: Path, whole: dict[str, bytes]) -> None:
    """A worker is killed, then all, then there are two others."""
    with contextlib.closing(Processes(out.parent)) as cluster:
        cluster.start_workers(4)

        def one_worker_is_killed() -> None:
            cluster.kill_workers(1)

        def all_workers_are_killed() -> None:
            cluster.kill_workers(3)
            time.sleep(5)
            check(contents_of(out) == {}, "a file has its name too early")
            cluster.start_workers(2)

        moments = {count // 4: one_worker_is_killed, count // 2: all_workers_are_killed}
        code = disturbed([walks, "--scheduler", cluster.address], out, moments)
        check(code == 1 and contents_of(out) == whole, "the tables of the cluster differ")


def deadly_walk(walks: Path, out: Path) -> None:
    """Workers die over one walk of twenty."""
    few = sorted(walks.iterdir())[:10]
    preload = out.with_name("deadly.py")
    preload.write_text(DEADLY)
    with contextlib.closing(Processes(out.parent)) as cluster:
        cluster.start_workers(2, "--nanny", "--preload", str(preload))
        code, _, _ = run("-o", out, "--scheduler", cluster.address, "--batch", 4, *few)
    errors = pq.read_table(out / "errors.parquet").to_pylist()
    check([error["walk"] for error in errors] == ["walk_000007"], f"errors: {errors}")
    check(code == 1 and pq.read_table(out / "walks.parquet").num_rows == 9, "the other walks")
    print(f"  {errors[0]['message']}")


def write_bouts(path: Path, bouts: int) -> Path:
    """A table of bouts, written a thousand at a time."""
    some = strides_of_bouts(1000, strides=10)
    writer = None
    for first in range(0, bouts, 1000):
        table = pa.Table.from_pandas(some.assign(bout=some["bout"] + first), preserve_index=False)
        writer = writer or pq.ParquetWriter(path, table.schema)
        writer.write_table(table)
    if writer:
        writer.close()
    return path


def memory_of_bouts(folder: Path, bouts: int) -> str:
    """A hundred thousand bouts in hardly more memory than a thousand."""
    memory = {}
    for count in (1000, bouts // 10, bouts):
        table = write_bouts(folder / "bouts.parquet", count)
        options = ("--by", "subject", "--by", "bout", "--sampling-rate", 100, "--restart")
        code, seconds, memory[count] = run("-o", folder / "bouts", *options, table)
        check(code == 0, f"exit code {code}")
        rate = count / seconds
        print(f"  {count} bouts: {memory[count]:.0f} MB, {rate:.0f} a second", flush=True)
    # Places of walks, and what Parquet lists at the end of a file, are a few hundred bytes each.
    most = 1.15 * memory[1000] + 500 * bouts / 1e6
    check(memory[bouts] < most, f"memory grows: {memory}")
    return " ".join(f"{count}: {peak:.0f} MB" for count, peak in memory.items())


def main() -> None:
    """Runs all."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("make_walk")
    parser.add_argument("--walks", type=int, default=10000)
    parser.add_argument("--bouts", type=int, default=100000)
    arguments = parser.parse_args()
    count = arguments.walks
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        print(f"making {count} walks", flush=True)
        walks = make_walks(arguments.make_walk, folder / "walks", count)
        print(f"{count} walks, one of them broken", flush=True)
        whole = ten_thousand_walks(walks, count, folder / "whole")
        print("killed twice", flush=True)
        killed(walks, count, folder / "killed", whole)
        print("a cluster whose workers are killed", flush=True)
        on_a_cluster(walks, count, folder / "cluster", whole)
        print("a walk over which workers die", flush=True)
        (folder / "deadly").mkdir()
        deadly_walk(walks, folder / "deadly/out")
        print("bouts", flush=True)
        memory = memory_of_bouts(folder, arguments.bouts)
    print(f"{count} walks, killed and on a cluster: the same bytes; memory of bouts: {memory}")


if __name__ == "__main__":
    main()
