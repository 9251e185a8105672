#!/usr/bin/env python3
"""Measures gait-statistics on many walks: how many a second, and in how much memory.

    many_walks.py BUILD [speed|memory]... [--beside PROGRAM] [--rounds N]

BUILD is the folder of a build with the programs. --beside names another build of the program to
compare with: by processor time, in turn within each round, and by instructions where valgrind is
installed. A ratio is that of two measurements of the same round; shown is the median of the rounds'
ratios, with the smallest and the largest in brackets.
"""

import argparse
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent


def python_with_pandas():
    """The Python that runs this, or Debian's own; None where neither has pandas."""
    for python in (sys.executable, "/usr/bin/python3"):
        if (
            subprocess.run(
                [python, "-c", "import pandas"], capture_output=True, check=False
            ).returncode
            == 0
        ):
            return python
    return None


def make_walks(make_walk, folder, count, strides):
    """So many walk folders; of more than a thousand, files are the same by links."""
    folder.mkdir()
    walks = []
    for number in range(count):
        walk = folder / f"walk_{number:05}"
        if number < 1000:
            subprocess.run(
                [
                    make_walk,
                    walk,
                    "--strides",
                    str(strides),
                    "--seed",
                    str(number),
                    "--turns",
                    str(int(strides > 50)),
                ],
                check=True,
                capture_output=True,
            )
        else:
            shutil.copytree(walks[number % 1000], walk, copy_function=os.link)
        walks.append(walk)
    return walks


def run(*command):
    """How long a command takes (s), its processor time (s), and the most memory it held (MB)."""
    start = time.monotonic()
    with subprocess.Popen(
        [str(part) for part in command], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL
    ) as process:
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"exit code {process.returncode}: {command[:8]}")
    return time.monotonic() - start, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def run_two(first, second):
    """How long two commands take beside each other (s)."""
    start = time.monotonic()
    processes = [
        subprocess.Popen([str(part) for part in command], stdout=subprocess.DEVNULL)
        for command in (first, second)
    ]
    if any(process.wait() != 0 for process in processes):
        sys.exit("a program failed")
    return time.monotonic() - start


def instructions(*command):
    """The instructions that a command takes, as valgrind counts them; None without valgrind."""
    if not shutil.which("valgrind"):
        return None
    with tempfile.NamedTemporaryFile() as counts:
        result = subprocess.run(
            [
                "valgrind",
                "--tool=callgrind",
                f"--callgrind-out-file={counts.name}",
                *map(str, command),
            ],
            stdout=subprocess.DEVNULL,
            stderr=subprocess.PIPE,
            text=True,
            check=True,
        )
    return int(re.search(r"refs:\s+([\d,]+)", result.stderr)[1].replace(",", ""))


def ratio(theirs, ours):
    ratios = [one / other for one, other in zip(theirs, ours)]
    return f"{statistics.median(ratios):.2f} ({min(ratios):.2f} to {max(ratios):.2f})"


def measure_speed(program, walks, beside, rounds):
    half = len(walks) // 2
    one_job = [program, "--jobs", 1, "--format", "csv"]
    two_jobs = [program, "--jobs", 2, "--format", "csv"]
    python = python_with_pandas()
    times = {}
    for _ in range(rounds):
        wall, processor, _ = run(*one_job, *walks)
        times.setdefault("one", []).append(wall)
        times.setdefault("one, processor", []).append(processor)
        times.setdefault("two", []).append(run(*two_jobs, *walks)[0])
        times.setdefault("two processes", []).append(
            run_two([*one_job, *walks[:half]], [*one_job, *walks[half:]])
        )
        if python:
            # It takes long enough with a tenth of the walks.
            script = HERE / "peers" / "pandas_walks.py"
            some = walks[: max(1, len(walks) // 10)]
            times.setdefault("pandas", []).append(
                run(python, script, *some)[1] * len(walks) / len(some)
            )
        if beside:
            times.setdefault("beside", []).append(run(beside, "--format", "csv", *walks)[1])
    print(f"{len(walks)} walks of 100 strides a foot, --format csv, {rounds} rounds\n")
    print("| | |\n|---|---|")
    for name, key in (("walks a second, one job", "one"), ("walks a second, two jobs", "two")):
        print(f"| {name} | {len(walks) / statistics.median(times[key]):.0f} |")
    print(
        f"| two jobs, by two processes beside each other | "
        f"{ratio(times['two processes'], times['two'])} |"
    )
    if python:
        print(
            f"| processor time of pandas, by ours | "
            f"{ratio(times['pandas'], times['one, processor'])} |"
        )
    if beside:
        print(
            f"| our processor time, by that of the other program | "
            f"{ratio(times['one, processor'], times['beside'])} |"
        )
        some = walks[:40]
        ours, theirs = instructions(*one_job, *some), instructions(beside, "--format", "csv", *some)
        if ours and theirs:
            print(f"| our instructions, by those of the other program | {ours / theirs:.2f} |")


def measure_memory(program, walks):
    counts = [count for count in (100, 1000, 10000) if count <= len(walks)]
    print(
        f"\nThe most memory (MB), with --jobs 2, walks of 20 strides a foot\n\n"
        f"| walks | {' | '.join(map(str, counts))} |\n|---|{' ---: |' * len(counts)}"
    )
    folder = walks[0].parent
    forms = [("table", ".txt"), ("csv", ".csv"), ("json", ".json"), ("html", "/")]
    for form, ending in forms:
        used = []
        for count in counts:
            output = f"{folder}/output_{form}{ending}"
            options = ["--jobs", 2, "--format", form, "-o", output]
            used.append(f"{run(program, *options, *walks[:count])[2]:.0f}")
            remove(pathlib.Path(output))
        name = "html, a folder of pages" if form == "html" else form
        print(f"| {name} | {' | '.join(used)} |", flush=True)


def remove(path):
    if path.is_dir():
        shutil.rmtree(path)
    else:
        path.unlink()


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("parts", nargs="*", metavar="speed|memory")
    parser.add_argument("--beside", help="another build of the program")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--walks", type=int, default=1000, help="to measure the speed with")
    parser.add_argument("--most", type=int, default=10000, help="to measure the memory with")
    arguments = parser.parse_args()
    program = arguments.build / "tools/program/gait-statistics"
    make_walk = arguments.build / "tools/make_walk/gait-make-walk"
    parts = arguments.parts or ["speed", "memory"]
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        if "speed" in parts:
            walks = make_walks(make_walk, folder / "hundred", arguments.walks, 100)
            measure_speed(program, walks, arguments.beside, arguments.rounds)
        if "memory" in parts:
            walks = make_walks(make_walk, folder / "twenty", arguments.most, 20)
            measure_memory(program, walks)


if __name__ == "__main__":
    main()
