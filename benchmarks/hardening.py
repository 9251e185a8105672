#!/usr/bin/env python3
"""What hardening costs: a call of the library, and the program on a walk, from two build trees that
differ in nothing else, in turn.

A ratio is that of the hardened time by the plain one of the same round; the table shows the median
of the rounds' ratios, with the smallest and the largest in brackets. The plain tree runs a second
time in each round: what that differs by is noise.
"""

import argparse
import pathlib
import resource
import statistics
import subprocess
import tempfile

PEER = "benchmarks/peers/peer_gait_statistics"


def make_walk(build, folder, strides):
    walk = folder / f"walk_{strides}"
    program = build / "tools/make_walk/gait-make-walk"
    subprocess.run([program, walk, "--strides", str(strides)], check=True)
    return walk


def call_time(build, walk):
    """The median time of a call, as the peer program prints it (s)."""
    return float(subprocess.run([build / PEER, walk], check=True, capture_output=True).stdout)


def program_time(build, walk):
    """The processor time of twenty runs of the program (s)."""
    start = resource.getrusage(resource.RUSAGE_CHILDREN)
    for _ in range(20):
        program = build / "tools/program/gait-statistics"
        subprocess.run([program, "--format", "csv", walk], check=True, capture_output=True)
    end = resource.getrusage(resource.RUSAGE_CHILDREN)
    return (end.ru_utime - start.ru_utime) + (end.ru_stime - start.ru_stime)


def shown(ratios):
    return f"{statistics.median(ratios):.3f} ({min(ratios):.3f} to {max(ratios):.3f})"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("hardened", type=pathlib.Path, help="build tree with GAIT_HARDENING")
    parser.add_argument("plain", type=pathlib.Path, help="build tree without")
    parser.add_argument("--rounds", type=int, default=11)
    arguments = parser.parse_args()
    print("| | time, plain | hardened by plain | plain again by plain |")
    print("|---|---:|---:|---:|")
    with tempfile.TemporaryDirectory() as folder:
        for strides in (20, 100, 1000):
            walk = make_walk(arguments.plain, pathlib.Path(folder), strides)
            measures = [("one call", call_time)]
            if strides == 100:
                measures.append(("20 runs of the program", program_time))
            for name, measure in measures:
                rounds = [
                    [measure(build, walk)
                     for build in (arguments.plain, arguments.hardened, arguments.plain)]
                    for _ in range(arguments.rounds)
                ]  # fmt: skip
                plain = statistics.median(first for first, _, _ in rounds)
                hardened = shown([middle / first for first, middle, _ in rounds])
                again = shown([last / first for first, _, last in rounds])
                time = f"{plain * 1e3:.3g} ms"
                print(f"| {name}, {strides} strides a foot | {time} | {hardened} | {again} |")


if __name__ == "__main__":
    main()
