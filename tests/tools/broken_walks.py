"""Broken walk folders, each with all that the program has to say about it.

    broken_walks.py PROGRAM

Each case spoils a sound walk in one way. The program must leave with exit code 1 and exactly the
messages expected, print nothing else, and touch neither the output that is there nor anything
beside it. What it has to say about a single cell or line is tested with the reader of walk folders:
these are the cases of which each takes another way through the program.
"""

import collections
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

from gait_statistics_test import MEASURED, without_findings

R, F, B, E = "recording.csv", "foot_cycles.csv", "feet_cycles.csv", "exclusions.csv"
VALUES = ",".join("1.125" for _ in MEASURED)

SOUND = {
    R: "foot,sampling_rate,signal_1_samples,signal_2_samples\n"
    "left,100,1000,1000\nright,100,1000,1000\n",
    F: f"foot,index,first_sample,last_sample,{','.join(MEASURED)}\n"
    f"left,0,0,99,{VALUES}\nleft,1,100,199,{VALUES}\n"
    f"right,0,50,149,{VALUES}\nright,1,150,249,{VALUES}\n",
    B: "index,gct,ds,right_index,left_index\n0,1.125,25.5,0,0\n1,1.125,26.5,1,1\n",
    E: "cycles,list,index,reason\nfeet,excluded_1,1,turn\nleft,excluded_2,1,start\n",
}


# ---- Edits: each takes the tables, and changes one


def spoilt(table, old, new):
    """Another text in place of the first of its kind in a table."""

    def edit(walk):
        assert old in walk[table]
        walk[table] = walk[table].replace(old, new, 1)

    return edit


def with_rows(table, rows):
    """More rows below a table."""
    return lambda walk: walk.__setitem__(table, walk[table] + rows)


def content(table, data):
    """Other bytes in place of a table; no file where they are None."""
    return lambda walk: walk.__setitem__(table, data)


def in_place(table, make):
    """Something that is no file: `make` is called with its path."""
    return lambda walk: walk.__setitem__(table, make)


Case = collections.namedtuple("Case", "name edits messages arguments")


def case(name, *edits_and_messages, arguments=()):
    edits = [e for e in edits_and_messages if callable(e)]
    messages = [m for m in edits_and_messages if isinstance(m, str)]
    return Case(name, edits, messages, arguments)


NUMBER = "expected a number or an empty cell"
WHOLE = "expected a whole number"
UTF8 = "found a byte that is not UTF-8, expected UTF-8: save the table as UTF-8"
NUL = "found a NUL byte, expected text"
HEADERS = {table: text[: text.index("\n")] for table, text in SOUND.items()}

# Messages begin with the table, or, about all of the folder, with a colon; the runner puts the
# folder before them.
CASES = [
    case(
        "no table at all",
        *(content(table, None) for table in SOUND),
        ": found neither recording.csv nor foot_cycles.csv, expected a walk folder with both",
    ),
    case(
        "no table of both feet",
        content(B, None),
        f"{B}: found no such file, expected a table: write it, or analyse one foot with --foot",
    ),
    case(
        "a column of another name",
        spoilt(F, "gct", "gct (s)"),
        f"{F}:1: column gct (s): found an unknown column, expected gct: rename it, or leave it "
        "out with --ignore-column",
    ),
    case(
        "a link to the folder",
        in_place(E, lambda path: path.symlink_to(".")),
        f"{E}: found a folder, expected a table",
    ),
    case(
        "a device that ends at once",
        in_place(E, lambda path: path.symlink_to("/dev/null")),
        f"{E}: found an empty file, expected the header line {HEADERS[E]}",
    ),
    case(
        "a device without end",
        in_place(F, lambda path: path.symlink_to("/dev/zero")),
        f"{F}:1: {NUL}",
    ),
    case("a picture", content(F, b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR"), f"{F}:1: {UTF8}"),
    case(
        "a spreadsheet",
        content(F, b"PK\x03\x04\x14\0\x06\0\x08\0\0\0!\0"),
        f"{F}: found an Excel workbook, expected a CSV table: save the sheet as CSV (UTF-8)",
    ),
    case(
        "a web page",
        content(R, b"<!DOCTYPE html>\n<html></html>\n"),
        f'{R}:1: found "<!DOCTYPE html>", expected the header line {HEADERS[R]}',
    ),
    case(
        "UTF-16",
        content(B, SOUND[B].encode("utf-16")),
        f"{B}: found UTF-16 text, expected UTF-8: save the table as UTF-8",
    ),
    case(
        "an end in the middle of a character",
        content(E, (SOUND[E].strip() + "ä").encode()[:-1]),
        f"{E}:3: {UTF8}",
    ),
    case(
        "an error below lines that end in several ways",
        content(E, HEADERS[E].encode() + b'\rfeet,excluded_1,1,"a\nb"\r\n\nfeet,excluded_1,x,\n'),
        f'{E}:5: column index: found "x", {WHOLE}',
    ),
    case(
        "a control character",
        spoilt(B, "25.5", "\x1b[2J25"),
        f'{B}:2: column ds: found "\\x1b[2J25", {NUMBER}',
    ),
    case(
        "a long cell",
        spoilt(B, "25.5", "x" * 100000),
        f'{B}:2: column ds: found "{"x" * 40}...", {NUMBER}',
    ),
    case(
        "every cycle excluded",
        with_rows(E, "feet,excluded_2,0,\n"),
        f'{E}: found all 2 cycles of "feet" excluded, expected at least one to be left',
    ),
    case(
        "every cycle of the one foot excluded",
        with_rows(E, "left,excluded_1,0,\n"),
        f'{E}: found all 2 cycles of "left" excluded, expected at least one to be left',
        arguments=("--foot", "left"),
    ),
    case(
        "more strides than are taken",
        f"{F}: found 2 strides of the left foot, expected at most 1, the limit that was set",
        f"{F}: found 2 strides of the right foot, expected at most 1, the limit that was set",
        f"{B}: found 2 cycles of both feet, expected at most 1, the limit that was set",
        arguments=("--max-strides", "1"),
    ),
    case(
        "an error in every table",
        spoilt(R, "left,100", "left,x"),
        spoilt(F, "1.125", "x"),
        spoilt(B, "25.5", "x"),
        spoilt(E, "1,turn", "x,turn"),
        f'{R}:2: column sampling_rate: found "x", {WHOLE}',
        f'{F}:2: column hs: found "x", {NUMBER}',
        f'{B}:2: column ds: found "x", {NUMBER}',
        f'{E}:2: column index: found "x", {WHOLE}',
    ),
    case(
        "one error in many rows",
        with_rows(E, "feet,excluded_1,x,\n" * 30),
        f'{E}:4: column index: found "x", {WHOLE} (and in 29 more rows: lines 5, 6, 7, 8, 9, ...)',
    ),
    case(
        "more errors than are shown",
        content(
            F,
            SOUND[F]
            .replace("gct", ",".join(f"gct {i}" for i in range(30)))
            .replace(VALUES, VALUES + ",1.125" * 29),
        ),
        *(
            f"{F}:1: column gct {i}: found an unknown column, expected gct: rename it, or leave it "
            "out with --ignore-column"
            for i in range(20)
        ),
        f"{F}: and 10 more",
    ),
    case(
        "exclusions under another name",
        content(E, None),
        in_place("exclusion.csv", lambda path: path.write_text(SOUND[E])),
        f'{E}: found no such file, but "exclusion.csv", expected a table: rename it to {E}, or '
        "move it out of the folder if it is something else",
    ),
]


def write_walk(folder, edits):
    walk = dict(SOUND)
    for edit in edits:
        edit(walk)
    folder.mkdir()
    for table, data in walk.items():
        path = folder / table
        if callable(data):
            data(path)
        elif data is not None:
            path.write_bytes(data if isinstance(data, bytes) else data.encode())


def files_below(folder):
    return sorted(
        os.path.join(path, name)
        for path, folders, files in os.walk(folder)
        for name in folders + files
    )


class BrokenWalks(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="broken_walks_")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.walk = self.folder / "w"
        self.out = self.folder / "out"
        self.out.mkdir()
        self.output = self.out / "report"

    def run_program(self, edits, arguments):
        """What the program did, and whether it wrote or removed anything."""
        write_walk(self.walk, edits)
        self.output.write_text("old")
        before = files_below(self.folder)
        result = subprocess.run(
            [PROGRAM, *arguments, "--output", self.output, self.walk],
            capture_output=True,
            cwd=self.out,
            check=False,
            timeout=60,
        )
        wrote = files_below(self.folder) != before or self.output.read_text() != "old"
        subprocess.run(["rm", "-r", self.walk], check=True)
        return result, wrote

    def test_the_walk_that_they_are_made_of_is_sound(self):
        result, wrote = self.run_program([], [])
        self.assertEqual(
            (result.returncode, result.stdout, without_findings(result.stderr.decode()), wrote),
            (0, b"", [], True),
        )

    def test_are_refused_with_the_message_expected(self):
        for broken in CASES:
            result, wrote = self.run_program(broken.edits, broken.arguments)
            expected = "".join(
                f"{self.walk}{message if message[0] == ':' else '/' + message}\n"
                for message in broken.messages
            )
            with self.subTest(broken.name):
                self.assertEqual(result.stderr.decode(), expected)
                self.assertEqual((result.returncode, result.stdout, wrote), (1, b"", False))


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv[1])
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
