"""Studies that are killed, that fill the disk, or that meet another process."""

from __future__ import annotations

import os
import signal
import subprocess
import sys
from pathlib import Path
from typing import Any

import pytest
from studies import (
    COMMAND,
    contents_of,
    gait_study,
    held_study,
    let_go,
    parts_in,
    write_walks,
)

pytest.importorskip("pyarrow")
pytest.importorskip("tqdm")

import gait_statistics as gs
from gait_statistics._study._folders import FolderWalks, compute_folders
from gait_statistics._study._run import Threads
from gait_statistics._study._source import Task
from gait_statistics._study._work import Work


@pytest.fixture(scope="module")
def walks(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """Enough walks to be killed among."""
    return write_walks(tmp_path_factory.mktemp("study") / "walks", 40)


@pytest.fixture(scope="module")
def whole(walks: Path, tmp_path_factory: pytest.TempPathFactory) -> dict[str, bytes]:
    """The files of their study, which nothing disturbed."""
    return contents_of(gs.study(walks, tmp_path_factory.mktemp("study") / "out").out)


@pytest.mark.parametrize("number", [signal.SIGKILL, signal.SIGINT])
def test_a_study_that_is_killed_goes_on_where_it_was(
    number: signal.Signals,
    walks: Path,
    whole: dict[str, bytes],
    tmp_path: Path,
    monkeypatch: pytest.MonkeyPatch,
) -> None:
    out = tmp_path / "out"
    with held_study(5, "--batch", 1, "--jobs", 2, "-o", out, walks) as process:
        process.send_signal(number)
        process.wait()
        said = let_go(process)
    assert process.returncode == (-number if number == signal.SIGKILL else 128 + number)
    if number == signal.SIGINT:
        assert "gait-study: interrupted; the same command goes on where it was" in said
    done = {int(name.split("-")[0]) for name in parts_in(out)}
    assert len(done) == 5
    assert contents_of(out) == {}

    computed: list[int] = []

    def store(work: Work, first: int, stop: int, part: bytes) -> None:
        computed.extend(range(first, stop))
        plain_store(work, first, stop, part)

    plain_store = Work.store
    monkeypatch.setattr(Work, "store", store)
    gs.study(walks, out, batch=3)
    assert sorted([*done, *computed]) == list(range(40))
    assert contents_of(out) == whole


# Kills a child at the nth thing that it does to the file system, for every n.
KILLED_EVERYWHERE = """
import os, sys
import gait_statistics as gs
gs.study

CHANGES = {"os.rename", "os.remove", "os.mkdir", "os.rmdir", "os.truncate"}

def is_change(event, arguments):
    writes = event == "open" and isinstance(arguments[2], int) and arguments[2] & 3
    return (event in CHANGES or writes) and str(arguments[0]).startswith(OUT)

def child(death):
    seen = 0
    def hook(event, arguments):
        nonlocal seen
        if is_change(event, arguments):
            seen += 1
            if seen == death:
                os.kill(os.getpid(), 9)
    process = os.fork()
    if process == 0:
        sys.addaudithook(hook)
        gs.study(WALKS, OUT, jobs=1, batch=2, progress=False, statistics=["n"])
        os._exit(0)
    return os.waitpid(process, 0)[1] == 0

def contents():
    folder = os.scandir(OUT) if os.path.exists(OUT) else []
    return {e.name: open(e.path, "rb").read() for e in folder if e.is_file()}

WALKS, OUT = sys.argv[1], sys.argv[2] + "/whole"
assert child(0)
whole = contents()
assert len(whole) == 5
deaths = 1
while True:
    OUT = sys.argv[2] + f"/{deaths}"
    lived = child(deaths)
    found = contents()
    assert all(whole[name] == content for name, content in found.items()), (deaths, [*found])
    if lived:
        break
    assert child(0) and contents() == whole, deaths
    assert not os.path.exists(OUT + "/.study"), deaths
    deaths += 1
print(deaths - 1)
"""


def test_a_study_may_be_killed_at_any_moment(tmp_path: Path) -> None:
    write_walks(tmp_path / "walks", 4)
    finished = subprocess.run(
        [sys.executable, "-c", KILLED_EVERYWHERE, tmp_path / "walks", tmp_path],
        capture_output=True,
        encoding="utf-8",
        check=False,
    )
    assert finished.returncode == 0, finished.stderr
    # A rename for each part, table and record, and what is around them.
    assert int(finished.stdout) > 20


def test_two_processes_are_not_at_one_study(walks: Path, tmp_path: Path) -> None:
    out = tmp_path / "out"
    with held_study(1, "--batch", 1, "-o", out, walks) as process:
        code, said = gait_study(walks, "-o", out, "--restart")
        let_go(process)
    assert (code, said) == (1, f"gait-study: {out}: another process is at this study\n")
    assert process.returncode == 1
    assert "study.json" in contents_of(out)


def on_a_small_disk(disk: Path, script: str, *arguments: object) -> str:
    """Runs a script of the shell where ``disk`` is a disk of 200 KB."""
    disk.mkdir()
    as_root = [] if os.geteuid() == 0 else ["--map-root-user"]
    mount = 'mount -t tmpfs -o size=200k tmpfs "$1" || exit 77\n'
    finished = subprocess.run(
        ["unshare", *as_root, "--mount", "sh", "-c", mount + script, "sh", str(disk)]
        + [str(argument) for argument in arguments],
        capture_output=True,
        encoding="utf-8",
        check=False,
    )
    if finished.returncode == 77 or "unshare" in finished.stderr:
        pytest.skip("no small disk can be mounted here")
    return finished.stdout + finished.stderr


def test_a_full_disk_leaves_what_is_done(
    walks: Path, whole: dict[str, bytes], tmp_path: Path
) -> None:
    script = """
        disk=$1 copy=$2; shift 2
        "$@" -o "$disk/out"; echo "exit code $?"
        find "$disk/out" -type f | grep -cv '[.]part$'; find "$disk/out" -name '*.part' | wc -l
        mount -o remount,size=100m "$disk" || exit 77
        "$@" -o "$disk/out"; echo "exit code $?"
        cp -r "$disk/out" "$copy"
    """
    command = [*COMMAND, "--batch", 4, walks]
    said = on_a_small_disk(tmp_path / "disk", script, tmp_path / "out", *command).splitlines()
    # The lock and the plan are there besides the parts.
    assert said[:2] == ["exit code 1", "2"]
    assert 1 <= int(said[2]) <= 10
    assert said[3] == "exit code 1"
    assert said[4] == (
        f"gait-study: {tmp_path}/disk/out: No space left on device; what is done is kept, and the "
        "same study goes on with it"
    )
    assert contents_of(tmp_path / "out") == whole


def test_a_folder_that_cannot_be_made_is_named(walks: Path, tmp_path: Path) -> None:
    (tmp_path / "file").write_text("x")
    code, said = gait_study(walks, "-o", tmp_path / "file")
    assert (code, said) == (
        2,
        f"gait-study: {tmp_path}/file: found a file, expected a folder, or nothing yet\n",
    )
    code, said = gait_study(walks, "-o", tmp_path / "file/out")
    assert code == 1
    assert "Not a directory" in said


class Died(Exception):
    """A worker died over a task again and again."""


def test_a_walk_over_which_workers_die_costs_itself(
    walks: Path, tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    def deadly(order: Any, paths: list[bytes]) -> bytes:
        if any(path.endswith(b"walk_00017") for path in paths):
            raise Died
        return compute_folders(order, paths)

    def task(self: FolderWalks, first: int, stop: int) -> Any:
        made = plain_task(self, first, stop)
        return Task(deadly, made.order, made.arguments, made.pieces)

    plain_task = FolderWalks.task
    monkeypatch.setattr(FolderWalks, "task", task)
    monkeypatch.setattr(Threads, "killed_workers", lambda _, error: isinstance(error, Died))
    done = gs.study(walks, tmp_path / "out", batch=10, jobs=2)
    messages = done.errors.set_index("walk")["message"]
    assert "found workers that died" in messages["walk_00017"]
    monkeypatch.undo()
    plain = gs.study(walks, tmp_path / "plain").walks
    others = plain[plain["walk"] != "walk_00017"]
    assert list(done.walks["walk"]) == list(others["walk"])
