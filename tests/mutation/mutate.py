"""Puts faults into a copy of the sources, one at a time, and asks whether a test notices.

    mutate.py [--check] [--jobs J] [--only TEXT] [LIST...]

A list (library.toml, walk_folder.toml; none named: both) holds the faults. --check only looks whether each can still be
put in. --only takes the faults whose file or lines contain TEXT. Exits with 1 when a fault is noticed by no test and
not explained, or explained and noticed.
"""

import argparse
import os
import pathlib
import subprocess
import sys
import tempfile
import time
import tomllib

HERE = pathlib.Path(__file__).resolve().parent
SOURCES = HERE.parent.parent
TIMEOUT = 600  # seconds for the tests; a fault may well make a loop endless

# Asked in turn until one notices: what to build, and the folder of tests to run. What notices most is asked first.
EVERYTHING = ("all", ".")
STAGES = {
    "library": [("run_cases", "tests/model"), ("tests/library/all", "tests/library"), EVERYTHING],
    "walk_folder": [("tests/tools/all", "tests/tools"), EVERYTHING],
}


def mutants_of(lists, only):
    mutants = []
    for name in lists:
        for mutant in tomllib.loads((HERE / f"{name}.toml").read_text())["mutant"]:
            mutant["list"] = name
            if only in mutant["file"] or only in mutant["from"] or only in mutant["to"]:
                mutants.append(mutant)
    return mutants


def mutated(tree, mutant):
    """The file's text with the fault; ends the program if there is no one place for it."""
    text = (tree / mutant["file"]).read_text()
    found = text.count(mutant["from"])
    if found != 1:
        sys.exit(f"{mutant['list']}.toml: {mutant['file']} holds {found} times, expected once:\n{mutant['from']}")
    return text.replace(mutant["from"], mutant["to"])


def run(arguments, log, timeout=None):
    """Whether a command succeeds in time."""
    try:
        return subprocess.run(arguments, stdout=log, stderr=log, stdin=subprocess.DEVNULL, timeout=timeout).returncode == 0
    except subprocess.TimeoutExpired:
        return False


class Project:
    """A copy of the sources that are under version control, with a build folder."""

    def __init__(self, folder, jobs):
        self.tree = folder / "sources"
        self.build = folder / "build"
        self.jobs = str(jobs)
        self.log = (folder / "log.txt").open("w+")
        files = subprocess.run(["git", "-c", f"safe.directory={SOURCES}", "ls-files", "-z"], cwd=SOURCES, check=True, capture_output=True)
        for file in files.stdout.decode().split("\0")[:-1]:
            target = self.tree / file
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes((SOURCES / file).read_bytes())
            target.chmod((SOURCES / file).stat().st_mode)
        launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if os.environ.get("CMAKE_CXX_COMPILER_LAUNCHER") else []
        configured = run(["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                          "-DCMAKE_CXX_FLAGS=-O0 -D_GLIBCXX_ASSERTIONS", "-DGAIT_MODEL_CASES=600", *launcher], self.log)
        if not configured or not self.builds("all") or not self.passes("."):
            self.log.seek(0)
            sys.exit("".join(self.log.readlines()[-60:]) + "\nThe sources do not build and pass without a fault.")

    def builds(self, target):
        return run(["cmake", "--build", self.build, "--parallel", self.jobs, "--target", target], self.log)

    def passes(self, folder):
        return run(["ctest", "--test-dir", self.build / folder, "--parallel", self.jobs, "--stop-on-failure", "--label-exclude", ".",
                    "--no-tests=error"], self.log, TIMEOUT)

    def verdict(self, mutant):
        """What notices the fault, or None."""
        file = self.tree / mutant["file"]
        sound = file.read_text()
        file.write_text(mutated(self.tree, mutant))
        try:
            for target, tests in STAGES[mutant["list"]]:
                if not self.builds(target):
                    return "compiler"
                if not self.passes(tests):
                    return "tests"
            return None
        finally:
            file.write_text(sound)


def judge(mutant, verdict):
    """A line about a fault, and whether all is well with it."""
    explained = mutant.get("equivalent")
    if verdict is None:
        return (f"explained ({explained})", True) if explained else ("NOTICED BY NO TEST", False)
    return (f"noticed by the {verdict}, although explained", False) if explained else (f"noticed by the {verdict}", True)


def show(number, mutant, line, seconds):
    change = f"{mutant['from'].strip()!r} -> {mutant['to'].strip()!r}"
    print(f"{number:3} {mutant['file']}: {change}: {line} ({seconds:.0f} s)", flush=True)


def main():
    parser = argparse.ArgumentParser(description="Puts faults into a copy of the sources and asks whether a test notices.")
    parser.add_argument("--check", action="store_true", help="only look whether each fault can still be put in")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--only", default="", metavar="TEXT", help="only faults whose file or lines contain TEXT")
    parser.add_argument("lists", nargs="*", choices=[[], *STAGES], default=[], metavar="LIST")
    options = parser.parse_args()
    mutants = mutants_of(options.lists or STAGES, options.only)
    for mutant in mutants:
        mutated(SOURCES, mutant)
    if options.check:
        print(f"{len(mutants)} faults can be put in")
        return 0

    count = {"compiler": 0, "tests": 0, None: 0}
    unwell = 0
    with tempfile.TemporaryDirectory(prefix="gait_mutants_") as folder:
        project = Project(pathlib.Path(folder), options.jobs)
        for number, mutant in enumerate(mutants, 1):
            start = time.monotonic()
            verdict = project.verdict(mutant)
            line, well = judge(mutant, verdict)
            count[verdict] += 1
            unwell += not well
            show(number, mutant, line, time.monotonic() - start)
    print(f"{len(mutants)} faults: {count['tests']} noticed by tests, {count['compiler']} by the compiler, "
          f"{count[None]} by neither; {unwell} without an explanation")
    return 1 if unwell else 0


if __name__ == "__main__":
    sys.exit(main())
