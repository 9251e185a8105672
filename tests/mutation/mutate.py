"""Puts faults into a copy of the sources, one at a time, and asks whether a test notices.

    mutate.py [--check] [--jobs J] [--only TEXT] [LIST...]

The lists beside this program hold the faults; none named: all. --check only looks whether each can
still be put in. --only takes the faults whose file or lines contain TEXT. Exits with 1 when a fault
is noticed by no test and not explained, or explained and noticed.
"""

import argparse
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

try:
    import tomllib
except ModuleNotFoundError:
    sys.exit("mutate.py needs Python 3.11 or later")

HERE = pathlib.Path(__file__).resolve().parent
SOURCES = HERE.parent.parent
TIMEOUT = 600  # seconds for a run of tests; a fault may well make a loop endless

# Tests that look at the clock may fail on a busy machine, and would hide a fault that none notices.
CTEST = [
    "ctest",
    "--parallel",
    str(os.cpu_count()),
    "--stop-on-failure",
    "--timeout",
    "120",
    "--no-tests=error",
    "--label-exclude",
    ".",
    "--exclude-regex",
    "ExpectedTime|Interruption|LongWalk",
    "--test-dir",
]

# Asked in turn until one notices: what to build, and what to run. What notices most is asked first.
EVERYTHING = ("all", [*CTEST, "."])


def only(program):
    """A test program of the tools, alone."""
    return program, [f"tests/tools/{program}", "--gtest_brief=1", "--gtest_fail_fast"]


THE_PROGRAM = (
    "gait-statistics",
    [*CTEST, "tests/tools", "--tests-regex", "^gait_statistics_program[.]"],
)

STAGES = {
    "library": [
        ("run_cases", [*CTEST, "tests/model"]),
        ("tests/library/all", [*CTEST, "tests/library"]),
        EVERYTHING,
    ],
    "walk_folder": [only("walk_folder_test"), EVERYTHING],
    "walk_checks": [only("walk_checks_test"), only("report_test"), EVERYTHING],
    "walk_measures": [only("walk_measures_test"), only("parameter_measures_test"), EVERYTHING],
    "charts": [only("charts_test"), EVERYTHING],
    "page": [
        (
            "gait-statistics",
            [*CTEST, "tests/tools", "--tests-regex", r"^gait_statistics_program[.]Report$"],
        ),
        only("html_report_test"),
        EVERYTHING,
    ],
    "report": [only("report_test"), ("tests/tools/all", [*CTEST, "tests/tools"]), EVERYTHING],
    "program": [THE_PROGRAM, EVERYTHING],
}


def mutants_of(lists, only):
    mutants = []
    for name in lists:
        for file, faults in tomllib.loads((HERE / f"{name}.toml").read_text()).items():
            for fault in faults:
                if only in file or only in fault["from"] or only in fault["to"]:
                    mutants.append({"list": name, "file": file, **fault})
    return mutants


def mutated(tree, mutant):
    """The file's text with the fault; ends the program if there is no one place for it.

    Where clang-format breaks a line does not matter: between two words any white space will do, and
    elsewhere none is needed.
    """
    text = (tree / mutant["file"]).read_text()
    places = list(re.finditer(any_layout(mutant["from"]), text))
    if len(places) != 1:
        sys.exit(
            f"{mutant['list']}.toml: {mutant['file']} holds {len(places)} times, expected once:\n"
            f"{mutant['from']}"
        )
    return text[: places[0].start()] + mutant["to"] + text[places[0].end() :]


def any_layout(code):
    """A regular expression for the code, wherever its lines break."""
    tokens = re.findall(r"\s+|\w+|[^\w\s]", code.strip())
    pattern = ""
    for before, token, after in zip(["", *tokens], tokens, [*tokens[1:], ""]):
        if token.isspace():
            between_words = before[-1:].isalnum() and after[:1].isalnum()
            pattern += r"\s+" if between_words else r"\s*"
        else:
            pattern += re.escape(token) + ("" if after.isspace() or not after else r"\s*")
    return pattern


def run(arguments, folder, timeout=None):
    """Whether a command succeeds in time, and what it printed. What it has started ends with it."""
    process = subprocess.Popen(
        arguments,
        cwd=folder,
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
        errors="replace",
        start_new_session=True,
    )
    try:
        output, _ = process.communicate(timeout=timeout)
        return process.returncode == 0, output
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        return False, process.communicate()[0]


def failed_test(output):
    """The first test that failed, in the words of ctest or of GoogleTest."""
    found = re.search(r"^\s*\d+ - (\S+) \(\w|^\[  FAILED  \] ([\w.]+)", output, re.MULTILINE)
    return found[1] or found[2] if found else "a run that did not end"


class Project:
    """A copy of the sources that are under version control, with a build folder."""

    def __init__(self, folder, jobs):
        self.tree = folder / "sources"
        self.build = folder / "build"
        self.jobs = str(jobs)
        files = subprocess.run(
            ["git", "-c", f"safe.directory={SOURCES}", "ls-files", "-z"],
            cwd=SOURCES,
            check=True,
            capture_output=True,
        )
        for file in files.stdout.decode().split("\0")[:-1]:
            target = self.tree / file
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes((SOURCES / file).read_bytes())
            target.chmod((SOURCES / file).stat().st_mode)
        launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
        # A fault may leave a variable without a use: that is not what is asked. Most faults are
        # noticed by a program that runs alone, for which ctest need not know its tests.
        self.require(
            run(
                [
                    "cmake",
                    "-S",
                    self.tree,
                    "-B",
                    self.build,
                    "-G",
                    "Ninja",
                    "-DCMAKE_BUILD_TYPE=None",
                    "-DCMAKE_CXX_FLAGS=-O0 -D_GLIBCXX_ASSERTIONS",
                    "-DGAIT_WARNINGS_AS_ERRORS=OFF",
                    "-DGAIT_MODEL_CASES=600",
                    "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST",
                    *launcher,
                ],
                folder,
            )
        )
        self.require(self.make("all"))
        self.require(run(EVERYTHING[1], self.build, TIMEOUT))

    @staticmethod
    def require(outcome):
        succeeded, output = outcome
        if not succeeded:
            sys.exit(f"{output[-4000:]}\nWithout a fault, the sources do not build and pass.")

    def make(self, target):
        return run(
            ["cmake", "--build", self.build, "--parallel", self.jobs, "--target", target],
            self.build,
        )

    def verdict(self, mutant):
        """What notices the fault, or None."""
        file = self.tree / mutant["file"]
        sound = file.read_text()
        file.write_text(mutated(self.tree, mutant))
        try:
            for target, tests in STAGES[mutant["list"]]:
                if not self.make(target)[0]:
                    return "the compiler"
                passed, output = run(tests, self.build, TIMEOUT)
                if not passed:
                    return failed_test(output)
            return None
        finally:
            file.write_text(sound)


def judge(mutant, verdict):
    """A line about a fault, and whether all is well with it."""
    explained = mutant.get("equivalent")
    if verdict is None:
        return (f"explained ({explained})", True) if explained else ("NOTICED BY NO TEST", False)
    return (
        (f"noticed by {verdict}, although explained", False)
        if explained
        else (f"noticed by {verdict}", True)
    )


def show(number, mutant, line, seconds):
    change = f"{mutant['from'].strip()!r} -> {mutant['to'].strip()!r}"
    print(f"{number:3} {mutant['file']}: {change}: {line} ({seconds:.0f} s)", flush=True)


def main():
    parser = argparse.ArgumentParser(
        description="Puts faults into a copy of the sources and asks whether a test notices."
    )
    parser.add_argument(
        "--check", action="store_true", help="only look whether each fault can still be put in"
    )
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument(
        "--only", default="", metavar="TEXT", help="only faults whose file or lines contain TEXT"
    )
    parser.add_argument("lists", nargs="*", choices=[[], *STAGES], default=[], metavar="LIST")
    options = parser.parse_args()
    mutants = mutants_of(options.lists or STAGES, options.only)
    for mutant in mutants:
        mutated(SOURCES, mutant)
    if options.check:
        print(f"{len(mutants)} faults can be put in")
        return 0

    verdicts = []
    unwell = 0
    with tempfile.TemporaryDirectory(prefix="gait_mutants_") as folder:
        pathlib.Path(folder).chmod(0o755)  # some tests run the program as somebody else
        project = Project(pathlib.Path(folder), options.jobs)
        for number, mutant in enumerate(mutants, 1):
            start = time.monotonic()
            verdict = project.verdict(mutant)
            line, well = judge(mutant, verdict)
            verdicts.append(verdict)
            unwell += not well
            show(number, mutant, line, time.monotonic() - start)
    compiler, nobody = verdicts.count("the compiler"), verdicts.count(None)
    print(
        f"{len(mutants)} faults: {len(mutants) - compiler - nobody} noticed by tests, "
        f"{compiler} by the compiler, {nobody} by neither; {unwell} not as expected"
    )
    return 1 if unwell else 0


if __name__ == "__main__":
    sys.exit(main())
