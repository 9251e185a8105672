#!/usr/bin/env python3
"""Runs this library and its peers in turn on the same walks, and prints how many times longer each
peer takes.

Every round runs every program once on every size; a ratio is that of two times of the same round.
The table shows the median of the rounds' ratios, with the smallest and the largest in brackets.
"""

import argparse
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
OURS = "gait_statistics"


def find_python():
    """A python that has numpy: the one that runs this, or Debian's own."""
    for python in (sys.executable, "/usr/bin/python3"):
        if subprocess.run([python, "-c", "import numpy"], capture_output=True).returncode == 0:
            return python
    return None


def has_module(python, module):
    return (
        python
        and subprocess.run([python, "-c", "import " + module], capture_output=True).returncode == 0
    )


def find_programs(build):
    """The command of every program by its name; None where what it needs is not installed."""
    python = find_python()
    r = shutil.which("Rscript")
    built = {name: build / f"peer_{name}" for name in (OURS, "gsl", "boost_math")}
    programs = {name: [str(path)] if path.exists() else None for name, path in built.items()}
    programs["numpy"] = [python, str(HERE / "peer_numpy.py")] if python else None
    for name in ("pandas_agg", "pandas_describe"):
        programs[name] = (
            [python, str(HERE / f"peer_{name}.py")] if has_module(python, "pandas") else None
        )
    programs["r"] = [r, str(HERE / "peer_r.R")] if r else None
    return programs


def make_walk(make_walk_program, folder, strides):
    walk = folder / f"walk_{strides}"
    subprocess.run(
        [make_walk_program, str(walk), "--strides", str(strides), "--turns", "0"],
        check=True,
        capture_output=True,
    )
    # Every peer takes all cycles.
    (walk / "exclusions.csv").write_text("cycles,list,index,reason\n")
    return walk


def time_of(command, walk):
    return float(
        subprocess.run(command + [str(walk)], check=True, capture_output=True, text=True).stdout
    )


def show_seconds(seconds):
    return (
        f"{seconds * 1e6:.0f} us"
        if seconds < 1e-3
        else f"{seconds * 1e3:.1f} ms"
        if seconds < 1
        else f"{seconds:.2f} s"
    )


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build", type=pathlib.Path, help="folder with the built peers")
    parser.add_argument("make_walk", help="the program gait-make-walk")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--sizes", type=int, nargs="+", default=[20, 100, 400, 1000, 4000, 10000])
    arguments = parser.parse_args()

    programs = find_programs(arguments.build)
    absent = [name for name, command in programs.items() if command is None]
    present = {name: command for name, command in programs.items() if command is not None}
    if OURS not in present:
        sys.exit("The library's own program is not built: run scripts/benchmark.")
    times = {}
    with tempfile.TemporaryDirectory() as folder:
        walks = {
            size: make_walk(arguments.make_walk, pathlib.Path(folder), size)
            for size in arguments.sizes
        }
        for _ in range(arguments.rounds):
            for size, walk in walks.items():
                for name, command in present.items():
                    times.setdefault((name, size), []).append(time_of(command, walk))

    print(
        "| cycles a foot | one call of ours | "
        + " | ".join(name for name in present if name != OURS)
        + " |"
    )
    print("| ---: | ---: |" + " ---: |" * (len(present) - 1))
    for size in arguments.sizes:
        ours = times[OURS, size]
        cells = [str(size), show_seconds(statistics.median(ours))]
        for name in present:
            if name != OURS:
                ratios = [theirs / our for theirs, our in zip(times[name, size], ours)]
                cells.append(
                    f"{statistics.median(ratios):.2f} ({min(ratios):.2f} to {max(ratios):.2f})"
                )
        print("| " + " | ".join(cells) + " |")
    for name in absent:
        print(f"\n{name}: not installed, left out.")


if __name__ == "__main__":
    main()
