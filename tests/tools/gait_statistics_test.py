"""What a user sees of gait-statistics: reports, formats, options, exit codes, terminals, files.

    gait_statistics_test.py PROGRAM [TestCase...]

With GAIT_UPDATE_GOLDEN=1 in the environment the reports in golden/ are written anew instead of
compared.
"""

import csv
import fcntl
import functools
import html.parser
import io
import itertools
import json
import os
import pathlib
import pty
import re
import resource
import shutil
import signal
import stat
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unittest

PROGRAM = ""
HERE = pathlib.Path(__file__).resolve().parent
WALKS = HERE / "gait_statistics_walks"
GOLDEN = HERE / "golden"
BOTH_FEET = str(WALKS / "both_feet")
LEFT_FOOT = str(WALKS / "left_foot")
EXAMPLES = HERE.parent.parent / "examples" / "walks"

with open(WALKS / "both_feet" / "foot_cycles.csv", encoding="utf-8") as foot_cycles:
    FOOT_CYCLES = foot_cycles.readline().strip()
MEASURED = FOOT_CYCLES.split(",")[4:]  # after foot, index, first_sample and last_sample


def environment(**changes):
    """The environment without anything that bears on the output, and with the changes."""
    plain = {k: v for k, v in os.environ.items() if k not in ("NO_COLOR", "TERM", "COLUMNS")}
    return {**plain, "TERM": "xterm", **changes}


def run(*arguments, **options):
    return subprocess.run(
        [PROGRAM, *map(str, arguments)],
        stdout=options.pop("stdout", subprocess.PIPE),
        stderr=options.pop("stderr", subprocess.PIPE),
        encoding=options.pop("encoding", "utf-8"),
        env=options.pop("env", environment()),
        check=False,
        **options,
    )


def without_findings(messages):
    """The messages without the findings: many of the walks here have numbers that no walk has."""
    return [line for line in messages.splitlines() if not line.startswith("finding: ")]


def strides(count=6, **values):
    """Strides of one foot: each value is one for all strides, or a list with one for each.

    None stands for a value that was not measured.
    """
    defaults = {"gct": 1.0, "swing": 36.0, "slength": 1.3, "speed": 1.3}
    values = {**defaults, **values}
    return [
        {name: value[i] if isinstance(value, list) else value for name, value in values.items()}
        for i in range(count)
    ]


def write_walk(folder, left=None, right=None, exclusions=(), rate=100):
    """A walk folder; the two-feet cycles, if any, pair the strides of the same index."""
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True)
    feet = [(name, foot) for name, foot in (("left", left), ("right", right)) if foot]

    def write(table, header, rows):
        with open(folder / table, "w", encoding="utf-8", newline="") as file:
            csv.writer(file, lineterminator="\n").writerows([header.split(","), *rows])

    write(
        "recording.csv",
        "foot,sampling_rate,signal_1_samples,signal_2_samples",
        [[name, rate, 100000, 100000] for name, _ in feet],
    )
    write(
        "foot_cycles.csv",
        FOOT_CYCLES,
        [
            [name, i, 100 * i, 100 * i + 99] + [stride.get(m) for m in MEASURED]
            for name, foot in feet
            for i, stride in enumerate(foot)
        ],
    )
    if left and right:
        write(
            "feet_cycles.csv",
            "index,gct,ds,right_index,left_index",
            [[i, 1.0, 25.0, i, i] for i in range(min(len(left), len(right)))],
        )
    write("exclusions.csv", "cycles,list,index,reason", exclusions)
    return str(folder)


class ProgramTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="gait_statistics_")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def walk(self, name="walk", **parts):
        return write_walk(self.folder / name, **parts)

    def output(self, *arguments, **options):
        """What the program prints, when all goes well and there is nothing to warn of."""
        result = run(*arguments, **options)
        self.assertEqual((result.returncode, without_findings(result.stderr)), (0, []))
        return result.stdout

    def json_walk(self, *arguments):
        return json.loads(self.output("--format", "json", *arguments))["walks"][0]

    def csv_rows(self, *arguments):
        return list(csv.DictReader(io.StringIO(self.output("--format", "csv", *arguments))))

    def table_row(self, description, *arguments):
        """The cells of a parameter in a report that is wide enough for one block."""
        report = self.output("--width", "400", *arguments)
        rows = [
            line.split()
            for line in report.splitlines()
            if line.startswith("  " + description + "  ")
        ]
        self.assertEqual(len(rows), 1, report)
        return rows[0][len(description.split()) :]


class Words(html.parser.HTMLParser):
    """What a page says, a line for each row of a table, each text of a drawing, and each block.

    Headings have their level before them, and what is only shown on demand its text in brackets.
    """

    HEADINGS = {f"h{level}": "#" * level for level in range(1, 7)}
    ROWS = (*HEADINGS, "p", "li", "tr", "dt", "dd", "text", "title", "summary")

    def __init__(self, page):
        super().__init__()
        self.lines = []
        self._is_hidden = False
        self.feed(page)

    def handle_starttag(self, tag, attributes):
        self._is_hidden = tag in ("style", "script")
        if tag in self.ROWS or tag == "div":
            self.lines.append(self.HEADINGS.get(tag, ""))
        if title := dict(attributes).get("title"):
            self.lines[-1:] = [" ".join([*self.lines[-1:], f"[{title}]"]).strip()]

    def handle_data(self, data):
        if not self._is_hidden and data.strip():
            self.lines[-1:] = [" ".join([*self.lines[-1:], *data.split()]).strip()]

    def handle_endtag(self, tag):
        self._is_hidden = False
        if tag in self.ROWS:
            self.lines.append("")

    def text(self):
        return "".join(f"{line}\n" for line in self.lines if line)


class Report(ProgramTest):
    def check_golden(self, name, *arguments):
        self.check_text(name, self.output(*arguments))

    def check_page(self, name, *arguments):
        page = self.output("--format", "html", *arguments)
        self.check_text(f"{name}_page", Words(page).text())

    def check_drawings(self, name, *arguments):
        page = self.output("--format", "html", *arguments)
        drawings = re.findall("<svg.*?</svg>", page, re.DOTALL)
        self.check_text(f"{name}_drawings", "\n".join(drawings).replace("><", ">\n<") + "\n")

    def check_text(self, name, report):
        golden = GOLDEN / f"gait_statistics_{name}.txt"
        if os.environ.get("GAIT_UPDATE_GOLDEN"):
            golden.write_text(report, encoding="utf-8")
        self.assertEqual(report, golden.read_text(encoding="utf-8"))

    def test_of_both_feet_on_a_pipe(self):
        self.check_golden("both_feet", BOTH_FEET)

    def test_of_both_feet_in_a_narrow_width(self):
        self.check_golden("both_feet_narrow", "--width", 50, BOTH_FEET)

    def test_of_both_feet_in_a_wide_width(self):
        self.check_golden("both_feet_wide", "--width", 200, BOTH_FEET)

    def test_of_the_only_foot(self):
        self.check_golden("left_foot", LEFT_FOOT)

    def test_of_one_foot_of_two(self):
        self.check_golden(
            "right_of_both_feet", "--foot", "right", "--settings-value", "40", BOTH_FEET
        )

    def test_of_the_parameters(self):
        self.check_golden("list_parameters", "--list-parameters")

    def test_as_a_page_of_both_feet(self):
        self.check_page("both_feet", BOTH_FEET)

    def test_in_drawings_of_both_feet(self):
        self.check_drawings("both_feet", BOTH_FEET)

    def test_as_an_index_of_walks(self):
        self.output("-o", f"{self.folder}/", BOTH_FEET, LEFT_FOOT)
        page = (self.folder / "index.html").read_text(encoding="utf-8")
        self.check_text("index", Words(page).text())

    def test_as_a_page_of_one_foot_of_two(self):
        self.check_page("right_of_both_feet", "--foot", "right", BOTH_FEET)

    def test_as_a_page_of_strides_that_were_lost(self):
        self.check_page("two_feet_turn", EXAMPLES / "two_feet_turn")

    def test_puts_several_walks_one_after_the_other_and_says_once_how_to_cite_it(self):
        first, citation = self.output(BOTH_FEET).split("\nMade by ")
        self.assertIn("To cite it: ", citation)
        self.assertEqual(self.output(BOTH_FEET, LEFT_FOOT), first + "\n" + self.output(LEFT_FOOT))

    def test_keeps_within_its_width(self):
        for width in (45, 60, 80, 100, 132, 200):
            for arguments in ([BOTH_FEET], [LEFT_FOOT]):
                for line in self.output("--width", width, *arguments).splitlines():
                    self.assertLessEqual(len(line), width, line)

    def test_shows_a_mean_of_minus_one_as_a_number(self):
        walk = self.walk(left=strides(2, ta=[-0.5, -1.5]))
        self.assertEqual(self.table_row("Turning angle", walk)[:3], ["degree", "2", "-1.0"])
        row = next(row for row in self.csv_rows(walk) if row["parameter"] == "TA")
        self.assertEqual((row["mean"], row["median"]), ("-1", "-1"))
        self.assertEqual(self.json_walk(walk)["parameters"]["TA"]["mean"], -1.0)

    def test_shows_a_swing_asymmetry_of_minus_one_as_a_number(self):
        walk = self.walk(left=strides(6, swing=49.5), right=strides(6, swing=50.5))
        self.assertIn(
            "mean -1.000 % (right swing longer), SD 0.000, n 6 strides", self.output(walk)
        )
        as_json = self.json_walk(walk)
        asymmetry = as_json["parameters"]["asymmetry"]
        self.assertEqual((asymmetry["mean"], asymmetry["n"]), (-1.0, 6))
        self.assertEqual(as_json["two_feet_cycles"]["asymmetry"], [-1.0] * 6)
        self.assertIsNone(asymmetry["median"])
        row = next(row for row in self.csv_rows(walk) if row["parameter"] == "asymmetry")
        self.assertEqual(
            [
                row[c]
                for c in (
                    "side",
                    "unit",
                    "n",
                    "mean",
                    "median",
                    "std",
                    "iqr",
                    "min",
                    "max",
                    "cv",
                    "asymmetry",
                    "direction",
                )
            ],
            [
                "both",
                "% x 100 Hz / 100 Hz",
                "6",
                "-1",
                "",
                "0",
                "",
                "",
                "",
                "",
                "",
                "right swing longer",
            ],
        )

    def test_shows_no_minus_in_front_of_a_zero(self):
        walk = self.walk(left=strides(1, ta=-0.04))
        self.assertEqual(self.table_row("Turning angle", walk)[2], "0.0")

    def test_shows_the_parameters_own_decimals(self):
        walk = self.walk(left=strides(2, gct=1.23456, swing=36.789, contact=712.6, ta=3.14159))
        means = [
            self.table_row(name, walk)
            for name in ("Cycle duration", "Swing", "Contact", "Turning angle")
        ]
        self.assertEqual(
            ["1.235" in means[0], "36.79" in means[1], "713" in means[2], "3.1" in means[3]],
            [True] * 4,
        )

    def test_shows_no_ratio_near_a_mean_of_zero(self):
        walk = self.walk(left=strides(6, ta=0.0), right=strides(6, ta=2.0))
        self.assertEqual(self.table_row("Turning angle", walk)[-2:], ["-", "-"])
        rows = {
            row["side"]: row["asymmetry"] for row in self.csv_rows(walk) if row["parameter"] == "TA"
        }
        self.assertEqual(rows, {"right": "0", "left": "inf"})
        parameters = self.json_walk(walk)["parameters"]
        self.assertEqual(
            (parameters["TA_R"]["asymmetry"], parameters["TA_L"]["asymmetry"]), (0.0, None)
        )

    def ratio(self, **of_the_right_foot):
        """The ratio and the symmetry index of the turning angles, and of the lift-off angles."""
        walk = self.walk(
            f"walk {of_the_right_foot}",
            left=strides(2, ta=[1.0, 3.0], top=[-4, -6]),
            right=strides(2, **of_the_right_foot),
        )
        return (
            self.table_row("Turning angle", walk)[-2:],
            self.table_row("Lift-off Angle", walk)[-2:],
        )

    def test_shows_a_ratio_of_means_that_are_clear_of_zero_on_one_side_of_it(self):
        self.assertEqual(
            self.ratio(ta=[4.0, 4.0], top=[-5.0, -7.0]), (["2.000", "-"], ["1.200", "18.2"])
        )
        self.assertEqual(self.ratio(ta=[-4.0, -4.0], top=[5.0, 7.0]), (["-", "-"], ["-", "-"]))
        self.assertEqual(self.ratio(ta=[0.0, 4.0], top=-5.0), (["-", "-"], ["1.000", "0.0"]))

    def test_shows_no_ratio_to_a_side_that_was_not_measured(self):
        walk = self.walk(left=strides(6), right=strides(6, ta=2.0))
        self.assertEqual(self.table_row("Turning angle", walk)[-2:], ["-", "-"])
        self.assertEqual(
            [row["asymmetry"] for row in self.csv_rows(walk) if row["parameter"] == "TA"], ["", ""]
        )
        self.assertIsNone(self.json_walk(walk)["parameters"]["TA_R"]["asymmetry"])

    def test_shows_no_spread_of_a_single_stride(self):
        walk = self.walk(left=strides(1, gct=[1.25], ta=2.0), right=strides(1, gct=[1.5], ta=3.0))
        self.assertEqual(self.table_row("Turning angle", walk)[-2:], ["-", "-"])
        self.assertEqual(
            self.table_row("Cycle duration", walk),
            [
                "seconds",
                "1",
                "1",
                "1.500",
                "1.250",
                "1.500",
                "1.250",
                "1.500",
                "1.250",
                "1.500",
                "1.250",
                "1.200",
                "18.2",
            ],
        )
        self.assertIn("SD -, n 1 stride\n", self.output(walk))
        for row in self.csv_rows(walk):
            if row["n"] == "1":
                self.assertEqual((row["std"], row["iqr"]), ("", ""), row)

    def test_shows_nothing_of_a_swing_asymmetry_that_no_stride_has(self):
        walk = self.walk(left=strides(6, swing=None), right=strides(6))
        for row in self.csv_rows(walk)[-2:]:
            self.assertEqual(
                (row["n"], row["mean"], row["std"], row["direction"]), ("0", "", "", "")
            )

    def test_shows_no_time_that_was_not_measured(self):
        walk = self.walk(left=strides(6, gct=None), exclusions=[["left", "excluded_1", 1, "turn"]])
        report = self.output(walk)
        self.assertIn("; duration unknown, 6.5 m\n", report)
        self.assertRegex(report, "(?m)^  In the statistics +durations not measured$")
        self.assertRegex(report, "(?m)^  Excluded: turn +1 +-  1 of 1 cycle without duration$")
        self.assertRegex(report, "(?m)^  Included +3 +-  walk less excluded")
        accounting = self.json_walk(walk)["accounting"]
        self.assertEqual(
            [name for name, value in accounting.items() if value is None],
            ["included_gct_sum", "excluded_1_duration", "included_duration"],
        )
        walk = self.walk(
            "second",
            left=strides(gct=[None] + [1.0] * 5),
            exclusions=[["left", "excluded_2", 0, "start"]],
        )
        accounting = self.json_walk(walk)["accounting"]
        self.assertEqual(
            [name for name, value in accounting.items() if value is None],
            ["excluded_2_gct_sum", "excluded_2_duration", "included_duration"],
        )

    def test_says_when_no_stride_has_a_swing_on_both_sides(self):
        walk = self.walk(left=strides(6, swing=None), right=strides(6))
        self.assertIn("No stride has a swing on both sides.", self.output(walk))

    def test_names_the_scale_of_the_swing_asymmetry(self):
        report = " ".join(self.output(self.walk(left=strides(), right=strides(), rate=300)).split())
        self.assertIn(
            "100 (left - right) / (left + right) of the two swings of each two-feet "
            "cycle. The library has the sampling rate, 300 Hz, in place of 100: mean ",
            report,
        )

    def test_lists_parameters_without_any_value_instead_of_rows(self):
        report = self.output("--width", 400, self.walk(left=strides(), right=strides(ds=None)))
        self.assertNotRegex(report, "(?m)^  Cadence")
        self.assertIn("  Not measured: Stance, Contact, Cadence, Loading, Foot-flat,", report)

    def test_says_nothing_of_unmeasured_parameters_when_all_are_measured(self):
        report = self.output(self.walk(left=strides(**{name: 2.0 for name in MEASURED})))
        self.assertNotIn("Not measured", report)
        self.assertNotIn("\n\n\n", report)

    def test_says_when_no_stride_length_was_measured(self):
        report = self.output(self.walk(left=strides(slength=None), right=strides(slength=None)))
        self.assertRegex(report, "(?m)^  Distance, walk +not measured$")
        self.assertRegex(report, "(?m)^  Distance, statistics +not measured$")
        self.assertNotIn("0.000 m", report)
        self.assertIn("; 6.0 s, distance unknown\n", report)

    def test_says_how_many_cycles_have_no_stride_length(self):
        report = self.output(
            self.walk(
                left=strides(6, slength=[1.0, None, 1.0, None, 1.0, 1.0]),
                exclusions=[["left", "excluded_1", 1, "turn"]],
            )
        )
        self.assertRegex(
            report, "(?m)^  Distance, walk +4.000 m  2 of 6 cycles without stride length$"
        )
        self.assertRegex(
            report, "(?m)^  Distance, statistics +4.000 m  1 of 5 cycles without stride length$"
        )

    WHY_NONE = (
        "It is half of the stride length, which 1 of 6 included strides does not have; "
        "the library counts that as -0.5 m. Therefore there are no statistics of it."
    )

    def test_leaves_out_a_step_length_that_missing_stride_lengths_were_halved_into(self):
        walk = self.walk(left=strides(slength=[None] + [1.3] * 5))
        self.assertIn("Step length: " + self.WHY_NONE, " ".join(self.output(walk).split()))
        row = next(row for row in self.csv_rows(walk) if row["parameter"] == "StepLength")
        self.assertEqual((row["n"], row["note"]), ("5", self.WHY_NONE))
        figures = (*Formats.STATISTICS, "q1", "q3", "p5", "p95", "effective_n", "standard_error")
        self.assertEqual({row[figure] for figure in figures}, {""})
        as_json = self.json_walk(walk)
        parameter = as_json["parameters"]["StepLength"]
        self.assertEqual({parameter[figure] for figure in figures}, {None})
        self.assertEqual(parameter["note"], self.WHY_NONE)
        self.assertEqual(as_json["strides"][0]["values"]["StepLength"], [None] + [0.65] * 5)
        self.assertLess(as_json["as_computed"]["parameters"]["StepLength"]["mean"], 0.65)

    def test_counts_a_step_length_that_no_stride_has_as_not_measured(self):
        walk = self.walk(left=strides(slength=None))
        self.assertIn("Step length, Impact vertical", " ".join(self.output(walk).split()))

    def test_leaves_no_step_length_of_both_feet_out(self):
        walk = self.walk(left=strides(), right=strides(slength=[None] + [1.3] * 5, step_length=0.6))
        self.assertEqual(self.table_row("Step length", walk)[1:4], ["6", "0", "0.600"])

    def test_answers_first_how_many_strides_how_long_and_what_was_left_out(self):
        turn, start = ["feet", "excluded_1", 1, "turn"], ["feet", "excluded_2", 0, "start"]
        walk = self.walk(left=strides(7), right=strides(), exclusions=[turn, start])
        self.assertEqual(
            self.output(walk).splitlines()[:4],
            [
                "Walk walk",
                "  In the statistics: 4 of 6 right, 4 of 7 left strides; 4.0 s, 5.2 m",
                "  Left out: right 1 start, 1 turn; left 1 start, 1 turn, 1 unlinked",
                "",
            ],
        )
        even = self.walk("even", left=strides(), right=strides(), exclusions=[turn, start])
        self.assertEqual(
            self.output(even).splitlines()[1:3],
            [
                "  In the statistics: 4 of 6 strides of each foot; 4.0 s, 5.2 m",
                "  Left out of each foot: 1 start, 1 turn",
            ],
        )
        alone = self.walk("alone", left=strides(), exclusions=[["left", "excluded_1", 1, ""]])
        self.assertEqual(
            self.output(alone).splitlines()[1:3],
            [
                "  In the statistics: 5 of 6 left strides; 5.0 s, 6.5 m",
                "  Left out: 1 no reason given",
            ],
        )
        self.assertIn("  Left out: none\n", self.output(self.walk("whole", left=strides())))

    def test_counts_the_strides_that_no_two_feet_cycle_links(self):
        walk = self.walk(left=strides(7), right=strides())
        self.assertRegex(self.output(walk), "(?m)^  Unlinked +0 +1  in no two-feet cycle$")
        rows = list(csv.DictReader(io.StringIO(self.output("--table", "strides", walk))))
        self.assertEqual(
            [
                (row["side"], row["index"], row["status"])
                for row in rows
                if row["included"] == "FALSE"
            ],
            [("left", "6", "unlinked")],
        )

    def test_counts_the_two_feet_cycles_that_lack_a_stride(self):
        folder = pathlib.Path(self.walk(left=strides(), right=strides()))
        table = folder / "feet_cycles.csv"
        table.write_text(table.read_text().replace(",5,5\n", ",5,\n"))
        self.assertIn(
            "6 two-feet cycles: 5 link a right and a left stride, 1 has no left stride.",
            " ".join(self.output(folder).split()),
        )

    def differs(self, report):
        return re.search("The accounting has [^.]*[.]|$", " ".join(report.split())).group()

    def test_says_that_a_sum_lacks_some_of_its_strides(self):
        walk = self.walk(left=strides(gct=[None] + [1.0] * 5, slength=[1.3] * 5 + [None]))
        self.assertIn("6 of 6 left strides; at least 5.0 s, at least 6.5 m\n", self.output(walk))
        excluded = self.walk(
            "excluded",
            left=strides(gct=[None] + [1.0] * 5),
            exclusions=[["left", "excluded_1", 0, "turn"], ["left", "excluded_1", 1, "bump"]],
        )
        self.assertRegex(
            self.output(excluded),
            "(?m)^  Excluded: turn, bump +2 +1.000 s  1 turn, "
            "1 bump; 1 of 2 cycles without duration$",
        )

    def test_says_which_exclusions_come_from_a_fallback_list(self):
        report = self.output(
            self.walk(
                left=strides(),
                exclusions=[
                    ["left", "excluded_1_fallback", 3, "outlier"],
                    ["left", "excluded_2", 0, "start"],
                ],
            )
        )
        self.assertRegex(
            report, "(?m)^  Excluded: outlier +1 +1.000 s  counted, but in the statistics$"
        )
        self.assertRegex(report, "(?m)^  Excluded: start +1 +1.000 s$")
        self.assertEqual(
            self.differs(report),
            "The accounting has 4 included where 5 cycles are in the statistics, "
            "because it subtracts the cycles of excluded_1_fallback, which stay in "
            "the statistics.",
        )

    def test_says_that_an_empty_kind_2_counts_as_two_cycles(self):
        bare = self.output(self.walk("bare", left=strides()))
        self.assertRegex(bare, "(?m)^  Excluded: none listed +2 +0.000 s  counted as two cycles$")
        self.assertEqual(
            self.differs(bare),
            "The accounting has 4 included where 6 cycles are in the statistics, "
            "because it subtracts two cycles for excluded_2, which is empty.",
        )
        listed = self.output(
            self.walk(
                left=strides(),
                exclusions=[
                    ["left", "excluded_2_fallback", 0, "first"],
                    ["left", "excluded_2_fallback", 5, ""],
                ],
            )
        )
        self.assertIn(
            "Excluded: 2 reasons 2 2.000 s 1 first, 1 no reason given: "
            "counted as two cycles, but in the statistics",
            " ".join(listed.split()),
        )

    def test_says_why_a_cycle_of_both_kinds_counts_twice(self):
        report = self.output(
            self.walk(
                left=strides(),
                exclusions=[["left", "excluded_1", 0, ""], ["left", "excluded_2", 0, ""]],
            )
        )
        self.assertEqual(
            self.differs(report),
            "The accounting has 4 included where 5 cycles are in the statistics, "
            "because it subtracts 1 entry that names a cycle again.",
        )

    def test_says_that_exclusions_outside_of_the_walk_count(self):
        walk = self.walk(
            left=strides(),
            exclusions=[
                ["left", "excluded_1", -1, "a"],
                ["left", "excluded_1", 6, "b"],
                ["left", "excluded_2", 0, "c"],
            ],
        )
        self.assertTrue(
            self.differs(run(walk).stdout).endswith(
                "because it subtracts 2 entries that name no cycle of the walk."
            )
        )
        walk = self.walk(
            "second",
            left=strides(),
            exclusions=[["left", "excluded_1", 6, "b"], ["left", "excluded_2_fallback", 7, "c"]],
        )
        self.assertTrue(
            self.differs(run(walk).stdout).endswith(
                "because it subtracts 1 entry that names no cycle of the walk; two cycles for "
                "excluded_2, which is empty."
            )
        )

    def test_says_nothing_where_the_accounting_and_the_statistics_agree(self):
        walk = self.walk(left=strides(), exclusions=[["left", "excluded_2", 0, "start"]])
        self.assertEqual(self.differs(self.output(walk)), "")

    def test_counts_many_reasons_in_place_of_a_long_label(self):
        walk = self.walk(
            left=strides(),
            exclusions=[
                ["left", "excluded_1", 0, "a bump in the floor"],
                ["left", "excluded_2", 1, "start"],
                ["left", "excluded_2", 2, "start"],
                ["left", "excluded_2", 3, "a stop"],
            ],
        )
        report = self.output("--width", 200, walk)
        self.assertRegex(report, "(?m)^  Excluded: 1 reason +1 +1.000 s  1 a bump in the floor$")
        self.assertRegex(report, "(?m)^  Excluded: start, a stop +3 +3.000 s  2 start, 1 a stop$")

    OUTSIDE = (
        "The stride velocity of the {} foot is not plausible: its mean is outside 0.31 to 1.8 m/s."
    )

    def flags(self, *arguments):
        walk = self.json_walk(*arguments)
        report = " ".join(self.output(*arguments).split())
        for words in walk["quality_flags_in_words"]:
            self.assertIn("! " + words, report)
        return walk["quality_flags"], walk["quality_flags_in_words"]

    def test_names_each_quality_flag_in_words(self):
        self.assertEqual(
            self.flags("--settings-value", "40.5", self.walk("setting", left=strides(6))),
            (1, ["The settings value, 40.5, is not within 10 to 34."]),
        )
        self.assertEqual(
            self.flags(self.walk("short", left=strides(4))),
            (2, ["The walk has 4 cycles or fewer."]),
        )
        outside = self.OUTSIDE
        self.assertEqual(
            self.flags(self.walk("slow", left=strides(6, speed=0.3))), (4, [outside.format("left")])
        )
        self.assertEqual(
            self.flags(self.walk("fast", left=strides(6, speed=1.9), right=strides(6, speed=1.9))),
            (24, [outside.format("right"), outside.format("left")]),
        )
        self.assertEqual(
            self.flags(
                self.walk(
                    "unequal",
                    left=strides(6, swing=[60.0] * 5 + [61.0]),
                    right=strides(6, swing=20.0),
                )
            ),
            (
                128,
                [
                    (
                        "The swing asymmetry is large: as the library scales it, by the "
                        "sampling rate of 100 Hz, its mean is 20 or more, or -20 or "
                        "less. That is 20.0 %."
                    )
                ],
            ),
        )

    def test_tells_an_unmeasured_speed_from_an_implausible_one(self):
        self.assertEqual(
            self.flags(self.walk(left=strides(6, speed=None), right=strides(6, speed=0.1))),
            (
                24,
                [
                    self.OUTSIDE.format("right"),
                    "The stride velocity of the left foot was not measured.",
                ],
            ),
        )

    def test_shows_a_number_too_long_for_a_column_in_scientific_notation(self):
        self.assertEqual(
            self.table_row("Turning angle", self.walk(left=strides(1, ta=1e300)))[2], "1.0e+300"
        )

    def test_replaces_what_would_steer_a_terminal(self):
        walk = self.walk(
            "red\x1b[31m\u009bwalk",
            left=strides(),
            exclusions=[["left", "excluded_1", 0, "a\x07b"]],
        )
        report = self.output(walk)
        self.assertIn("Walk red?[31m?walk\n", report)
        self.assertIn("1 a?b\n", report)
        self.assertNotRegex(report, "[\x00-\x09\x0b-\x1f\x7f-\x9f]")


class Formats(ProgramTest):
    STATISTICS = ("mean", "median", "std", "iqr", "min", "max", "cv", "asymmetry")
    MEASURES = ("q1", "q3", "p5", "p95", "effective_n", "standard_error", "symmetry_index")

    def test_csv_tells_the_same_as_json_to_the_bit(self):
        for arguments in ([BOTH_FEET], ["--foot", "left", BOTH_FEET], [LEFT_FOOT]):
            parameters = list(self.json_walk(*arguments)["parameters"].values())
            rows = self.csv_rows(*arguments)
            self.assertEqual(len(rows), len(parameters))
            for row, parameter in zip(rows, parameters):
                for column in ("parameter", "side", "description", "unit", "n"):
                    self.assertEqual(row[column], str(parameter[column]))
                for column in ("note", "direction"):
                    self.assertEqual(row[column], parameter[column] or "")
                for column in (*self.STATISTICS, *self.MEASURES):
                    # JSON has no word for what is not finite.
                    cell = None if row[column] in ("", "NaN", "inf") else float(row[column])
                    self.assertEqual(cell, parameter[column], (column, row))

    def test_walks_of_the_same_name_are_told_apart_by_their_paths(self):
        for part in ("monday", "tuesday"):
            write_walk(self.folder / part / "walk", left=strides())
        rows = csv.DictReader(
            io.StringIO(
                self.output(
                    "--format", "csv", LEFT_FOOT, "monday/walk", "tuesday/walk/", cwd=self.folder
                )
            )
        )
        self.assertEqual(
            list(dict.fromkeys(row["walk"] for row in rows)),
            [pathlib.Path(LEFT_FOOT).name, "monday/walk", "tuesday/walk/"],
        )

    def test_csv_has_one_header_for_all_walks(self):
        text = self.output("--format", "csv", BOTH_FEET, LEFT_FOOT)
        self.assertEqual(text.count("walk,parameter,side"), 1)
        walks = [row["walk"] for row in csv.DictReader(io.StringIO(text))]
        self.assertEqual([walk for walk, _ in itertools.groupby(walks)], ["both_feet", "left_foot"])

    def test_csv_quotes_a_name_with_commas_and_quotation_marks(self):
        walk = self.walk('a "b", c', left=strides())
        self.assertEqual({row["walk"] for row in self.csv_rows(walk)}, {'a "b", c'})

    def test_parameters_come_in_the_order_of_the_catalogue(self):
        catalogue = json.loads(self.output("--list-parameters", "--format", "json"))
        keys = [row["key"] for row in catalogue if row["analysed"] != "one foot"]
        rows = self.csv_rows(BOTH_FEET)
        self.assertEqual(
            [row["parameter"] for row in rows],
            [*(key for key in keys for _ in range(2)), "asymmetry", "asymmetry_percent"],
        )
        self.assertEqual(
            [row["side"] for row in rows], ["right", "left"] * len(keys) + ["both"] * 2
        )

    def test_json_holds_the_version_and_every_walk(self):
        document = json.loads(self.output("--format", "json", BOTH_FEET, LEFT_FOOT))
        self.assertEqual("gait-statistics " + document["version"] + "\n", self.output("--version"))
        self.assertEqual(
            [(w["walk"], w["analysed"]) for w in document["walks"]],
            [("both_feet", "both feet"), ("left_foot", "left foot")],
        )

    def test_json_says_what_the_walk_is(self):
        walk = self.json_walk(BOTH_FEET)
        self.assertEqual(
            [(foot["foot"], foot["strides"]) for foot in walk["feet"]],
            [("right", 14), ("left", 13)],
        )
        self.assertEqual(walk["sampling_rate"], 100)
        self.assertEqual(walk["accounting"]["cycle_count"], 14)
        self.assertEqual(walk["accounting"]["cycles"], [1, 2, 3, 4, 7, 8, 9, 10, 11, 12, 13])
        summary = walk["summary"]
        self.assertEqual(
            [
                (summary[sum]["cycles"], summary[sum]["cycles_without"])
                for sum in ("total_distance", "distance")
            ],
            [(14, 1), (11, 1)],
        )

    def test_json_is_valid_for_a_name_that_is_no_utf_8(self):
        walk = os.fsencode(self.folder) + b"/caf\xe9"
        os.rename(self.walk(left=strides()), walk)
        result = subprocess.run(
            [os.fsencode(PROGRAM), b"--format", b"json", walk], stdout=subprocess.PIPE, check=True
        )
        self.assertEqual(json.loads(result.stdout)["walks"][0]["walk"], "caf\ufffd")

    def test_the_list_of_parameters_is_the_same_in_every_format(self):
        as_json = json.loads(self.output("--list-parameters", "--format", "json"))
        self.assertEqual(
            as_json[0],
            {
                "key": "gct",
                "description": "Cycle duration",
                "unit": "seconds",
                "decimals": 3,
                "ratio": True,
                "cv": True,
                "analysed": "always",
            },
        )
        as_csv = list(
            csv.DictReader(io.StringIO(self.output("--list-parameters", "--format", "csv")))
        )
        yes_or_no = {True: "yes", False: "no"}
        self.assertEqual(
            as_csv,
            [
                {
                    key: yes_or_no[cell] if isinstance(cell, bool) else str(cell)
                    for key, cell in row.items()
                }
                for row in as_json
            ],
        )
        table = self.output("--list-parameters", "--width", 200).splitlines()
        self.assertEqual(len(table), 1 + len(as_json))
        for line, row in zip(table[1:], as_json):
            self.assertEqual(
                line.split(),
                (
                    f"{row['description']} {row['key']} {row['unit']} {row['decimals']} "
                    f"{yes_or_no[row['ratio']]} {yes_or_no[row['cv']]} "
                    f"{row['analysed']}"
                ).split(),
            )


class CommandLine(ProgramTest):
    def test_help_names_every_option_the_exit_codes_and_an_example(self):
        text = self.output("--help")
        for word in (
            "--foot",
            "--settings-value",
            "--format",
            "--table",
            "--output",
            "--width",
            "--max-strides",
            "--list-parameters",
            "--version",
            "--help",
            "--recursive",
            "--ignore-column",
            "--strict",
            "--without-check",
            "--list-checks",
            "Exit codes:",
            "Examples:",
            "docs/walk-folder.md",
            "docs/checks.md",
            "JSON holds everything",
        ):
            self.assertIn(word, text)
        self.assertEqual(self.output("-h"), text)

    def test_a_table_is_one_of_csv(self):
        rows = self.output("--table", "strides", LEFT_FOOT)
        self.assertTrue(rows.startswith("walk,analysed,side,index,line,start_seconds,"))
        for options in (["--format", "csv"], ["-o", "-"]):
            self.assertEqual(self.output("--table", "strides", *options, LEFT_FOOT), rows)
        for name in ("strides.csv", "strides.txt", "strides"):
            self.output("--table", "strides", "-o", self.folder / name, LEFT_FOOT)
            self.assertEqual((self.folder / name).read_text(), rows)
        self.assertEqual(
            self.output("--table", "parameters", LEFT_FOOT),
            self.output("--format", "csv", LEFT_FOOT),
        )

    def test_a_table_of_both_feet_and_of_one_have_the_same_columns(self):
        for table in ("parameters", "walks", "strides"):
            header = self.output("--table", table, BOTH_FEET).splitlines()[0]
            self.assertEqual(self.output("--table", table, LEFT_FOOT).splitlines()[0], header)

    def test_version(self):
        self.assertRegex(self.output("--version"), r"^gait-statistics \d+\.\d+\.\d+\n$")

    def test_a_walk_of_one_foot_needs_no_option(self):
        self.assertEqual(self.json_walk(LEFT_FOOT), self.json_walk("--foot", "left", LEFT_FOOT))

    def test_takes_every_walk_below_a_folder_sorted_by_path(self):
        for name in ("b/first", "a/second", "a/first"):
            self.walk(name, left=strides())
        report = self.output("--recursive", self.folder)
        self.assertEqual(
            report.replace(str(self.folder) + "/", ""),
            self.output("a/first", "a/second", "b/first", cwd=self.folder),
        )

    def test_words_may_be_written_as_in_tables(self):
        left = self.output("--foot", "left", "--format", "csv", BOTH_FEET)
        for word in ("L", "l", "Left", "LEFT"):
            self.assertEqual(self.output("--foot", word, "--format", "CSV", BOTH_FEET), left)

    def test_help_says_that_an_option_takes_one_name(self):
        self.assertRegex(self.output("--help"), r"--ignore-column NAME  +\S")

    def test_an_option_of_one_name_does_not_take_the_walk_for_another(self):
        walk = pathlib.Path(self.walk(left=strides()))
        table = walk / "foot_cycles.csv"
        table.write_text("".join(f"{line},x,y\n" for line in table.read_text().splitlines()))
        self.output("--ignore-column", "X", "--ignore-column", "Y", walk)

    def test_a_walk_that_is_given_twice_is_reported_once(self):
        walk = self.walk(left=strides())
        result = run(walk, walk + "/", LEFT_FOOT, cwd=self.folder)
        self.assertEqual(result.returncode, 0)
        self.assertEqual(
            without_findings(result.stderr),
            [f"note: {walk}/: the same walk as {walk}, reported once"],
        )
        self.assertEqual(result.stdout, self.output(walk, LEFT_FOOT))

    def test_settings_value_may_be_negative(self):
        self.assertEqual(
            self.json_walk("--settings-value", "-5", BOTH_FEET)["settings_value"], -5.0
        )
        self.assertEqual(self.json_walk("--settings-value=-5", BOTH_FEET)["quality_flags"], 0)

    def test_settings_value_is_a_float(self):
        for value, flags in (("10", 0), ("34", 0), ("9.99", 1), ("34.01", 1), ("0", 0)):
            self.assertEqual(
                self.json_walk("--settings-value", value, BOTH_FEET)["quality_flags"], flags, value
            )
        self.assertEqual(
            self.json_walk("--settings-value", "0.1", BOTH_FEET)["settings_value"],
            struct.unpack("f", struct.pack("f", 0.1))[0],
        )

    def test_options_may_follow_the_walks(self):
        self.assertEqual(
            self.output(LEFT_FOOT, "--format", "csv"), self.output("--format", "csv", LEFT_FOOT)
        )

    def test_a_walk_s_name_may_begin_with_a_dash(self):
        self.walk("-walk", left=strides())
        self.assertIn("Walk -walk\n", self.output("--", "-walk", cwd=self.folder))

    def test_the_folder_that_one_is_in_is_a_walk_too(self):
        self.assertIn("Walk left_foot\n", self.output(".", cwd=LEFT_FOOT))

    def test_the_locale_does_not_matter(self):
        for locale in ("C", "C.UTF-8", "de_DE.UTF-8"):
            self.assertEqual(
                self.output("--settings-value", "12.5", BOTH_FEET, env=environment(LC_ALL=locale)),
                self.output("--settings-value", "12.5", BOTH_FEET),
            )


class ExitCode(ProgramTest):
    def refused(self, *arguments):
        result = run(*arguments)
        self.assertEqual((result.returncode, result.stdout), (2, ""))
        self.assertRegex(result.stderr, r"^gait-statistics: .+\nTry gait-statistics --help.\n$")
        return result.stderr

    def test_2_when_no_walk_is_given(self):
        self.assertIn("no WALK given", self.refused())
        self.assertIn("no WALK given", self.refused("--format", "csv"))

    def test_2_for_a_wrong_command_line(self):
        for arguments in (
            ["--feet", "left"],
            ["--foot", "both"],
            ["--foot", "feet"],
            ["--foot"],
            ["--format", "xml"],
            ["--table", "feet"],
            ["--settings-value", "12,5"],
            ["--settings-value", "nan"],
            ["--settings-value", "inf"],
            ["--settings-value", "1e99"],
            ["--settings-value", ""],
            ["--width", "5"],
            ["--width", "-80"],
            ["--width", "wide"],
            ["--output", ""],
            ["--output", "a", "--output", "b"],
            ["--output", "a.xlsx"],
            ["--ignore-column"],
            ["--max-strides", "0"],
            ["--jobs", "0"],
            ["--jobs", "2000"],
            ["--jobs", "all"],
            ["--jobs"],
        ):
            with self.subTest(arguments=arguments):
                self.refused(BOTH_FEET, *arguments)

    def test_2_for_a_table_of_another_format(self):
        for options in (["--format", "json"], ["--format", "table"], ["-o", "strides.json"]):
            self.assertIn(
                "--table names a table of CSV, and the format is ",
                self.refused("--table", "strides", *options, BOTH_FEET),
            )

    def test_2_for_walks_beside_the_list_of_parameters(self):
        self.assertIn(
            "--list-parameters takes no WALK", self.refused("--list-parameters", BOTH_FEET)
        )

    def test_2_for_an_output_that_is_a_table_of_a_walk(self):
        walk = self.folder / "walk"
        write_walk(walk, left=strides())
        (self.folder / "link").symlink_to(walk / "exclusions.csv")
        before = (walk / "foot_cycles.csv").read_text()
        for output in (walk / "foot_cycles.csv", walk / "about.csv", self.folder / "link"):
            result = run("--output", output, LEFT_FOOT, walk)
            self.assertEqual((result.returncode, result.stdout), (2, ""))
            self.assertEqual(
                result.stderr,
                f'gait-statistics: --output: "{output}" is a table of a walk, '
                "expected another file\n",
            )
        self.assertEqual((walk / "foot_cycles.csv").read_text(), before)

    def test_0_with_a_warning_when_all_exclusions_are_those_of_another_analysis(self):
        walk = self.folder / "walk"
        write_walk(
            walk, left=strides(), right=strides(), exclusions=[("left", "excluded_1", 2, "turn")]
        )
        for arguments, cycles in (([], "feet"), (["--foot", "right"], "right")):
            result = run(*arguments, walk)
            self.assertEqual(result.returncode, 0)
            self.assertEqual(
                result.stderr,
                f"warning: {walk}/exclusions.csv: column cycles: found exclusions, "
                f'but none of "{cycles}", the cycles that are analysed: nothing is '
                "excluded\n",
            )
        self.assertEqual(run("--foot", "left", walk).stderr, "")

    def test_1_for_a_loop_of_links_and_the_other_walks_are_reported(self):
        loop = self.folder / "loop"
        loop.symlink_to(loop)
        result = run(loop, LEFT_FOOT)
        self.assertEqual(result.returncode, 1)
        self.assertTrue(result.stderr.startswith(f"{loop}: found no such folder"), result.stderr)
        self.assertIn("Walk " + pathlib.Path(LEFT_FOOT).name, result.stdout)

    def test_1_for_a_walk_that_cannot_be_read(self):
        nowhere = self.folder / "nowhere"
        result = run(nowhere)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertEqual(
            result.stderr, f"{nowhere}: found no such folder, expected a walk folder\n"
        )

    def test_1_with_a_message_that_does_not_steer_a_terminal(self):
        result = run(self.folder / "red\x1b[31m")
        self.assertEqual(
            result.stderr, f"{self.folder}/red?[31m: found no such folder, expected a walk folder\n"
        )

    def test_0_for_one_foot_without_a_table_of_both(self):
        walk = pathlib.Path(self.walk(left=strides(), right=strides()))
        (walk / "feet_cycles.csv").unlink()
        self.output("--foot", "left", walk)

    def test_1_for_a_foot_that_the_walk_does_not_have(self):
        result = run("--foot", "right", LEFT_FOOT)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertEqual(
            result.stderr,
            f"{LEFT_FOOT}/recording.csv: column foot: found no right foot, expected "
            "the foot that is to be analysed\n",
        )

    def test_1_when_one_of_several_walks_is_bad_and_the_rest_goes_on(self):
        for form in ("table", "csv", "json"):
            result = run("--format", form, BOTH_FEET, self.folder / "nowhere", LEFT_FOOT)
            self.assertEqual(result.returncode, 1)
            self.assertEqual(result.stdout, self.output("--format", form, BOTH_FEET, LEFT_FOOT))
            self.assertEqual(
                without_findings(result.stderr)[1:],
                [
                    "gait-statistics: 2 of 3 walks reported, 1 left out: "
                    + str(self.folder / "nowhere")
                ],
            )

    def test_0_with_a_warning(self):
        walk = pathlib.Path(self.walk(left=strides(6, swing=[-1.0] + [36.0] * 5)))
        result = run(walk)
        self.assertEqual(result.returncode, 0)
        self.assertTrue(
            result.stderr.startswith(f"warning: {walk}/foot_cycles.csv:"), result.stderr
        )
        self.assertEqual(result.stderr.count("\n"), 1)


class ManyAtOnce(ProgramTest):
    """Several walks at a time, which nobody should notice but by the clock."""

    def setUp(self):
        super().setUp()
        good = [str(walk) for walk in sorted(EXAMPLES.iterdir())] + [BOTH_FEET, LEFT_FOOT]
        short = [self.walk(f"{i}/walk", left=strides(6 + i), right=strides(5)) for i in range(12)]
        self.broken = [
            str(self.folder / "nowhere"),
            self.walk("broken", left=strides(gct=["x"] * 6)),
        ]
        self.walks = [*good[:2], self.broken[0], *short[:6], self.broken[1], *good[2:], *short[6:]]

    FORMS = (
        ["--format", "table"],
        ["--table", "parameters"],
        ["--table", "walks"],
        ["--table", "strides"],
        ["--format", "json"],
        ["--format", "html"],
    )

    def run_with(self, jobs, *arguments):
        result = run("--jobs", jobs, *arguments, *self.walks)
        return result.returncode, result.stdout, result.stderr

    def test_write_the_bytes_of_one_at_a_time(self):
        for form in self.FORMS:
            one = self.run_with(1, *form)
            self.assertEqual(one[0], 1)
            for jobs in (2, 7):
                self.assertEqual(self.run_with(jobs, *form), one, (jobs, form))

    def test_write_the_same_file(self):
        files = {jobs: self.folder / f"result_{jobs}.json" for jobs in (1, 4)}
        for jobs, file in files.items():
            self.assertEqual(self.run_with(jobs, "-o", file)[:2], (1, ""))
        self.assertEqual(files[4].read_bytes(), files[1].read_bytes())
        self.assertEqual(files[4].read_text(), self.run_with(4, "--format", "json")[1])

    def test_write_the_same_folder_of_pages(self):
        pages = {}
        for jobs in (1, 4):
            folder = self.folder / f"pages_{jobs}"
            self.run_with(jobs, "-o", f"{folder}/")
            pages[jobs] = {page.name: page.read_bytes() for page in folder.iterdir()}
        self.assertEqual(len(pages[1]), len(self.walks) - len(self.broken) + 1)
        self.assertEqual(pages[4], pages[1])

    def test_are_all_processors_use_when_nothing_is_said(self):
        result = run("--format", "csv", *self.walks)
        self.assertEqual(
            (result.returncode, result.stdout, result.stderr), self.run_with(1, "--format", "csv")
        )

    def test_close_a_document_whose_last_walk_fails(self):
        result = run("--jobs", 2, "--format", "json", BOTH_FEET, LEFT_FOOT, self.broken[0])
        self.assertEqual(
            [walk["walk"] for walk in json.loads(result.stdout)["walks"]],
            ["both_feet", "left_foot"],
        )
        self.assertEqual(result.returncode, 1)

    def test_end_with_a_line_that_names_those_left_out(self):
        for jobs in (1, 3):
            last = self.run_with(jobs)[2].splitlines()[-1]
            self.assertEqual(
                last,
                f"gait-statistics: {len(self.walks) - 2} of {len(self.walks)} "
                f"walks reported, 2 left out: {', '.join(self.broken)}",
            )
        nowhere = [f"nowhere_{i}" for i in range(12)]
        last = run(*nowhere, BOTH_FEET).stderr.splitlines()[-1]
        self.assertEqual(
            last,
            f"gait-statistics: 1 of 13 walks reported, 12 left out: {', '.join(nowhere[:10])}, ...",
        )

    def test_do_not_wait_for_each_other_when_nobody_reads_the_output(self):
        waiting = self.folder / "waiting"
        waiting.mkdir()
        os.mkfifo(waiting / "recording.csv")  # which nobody will ever write
        for form in ("csv", "json"):
            reader, writer = os.pipe()
            os.close(reader)
            result = run(
                "--jobs", 2, "--format", form, LEFT_FOOT, waiting, stdout=writer, timeout=20
            )
            os.close(writer)
            self.assertEqual(result.returncode, -signal.SIGPIPE)


class DataChecks(ProgramTest):
    def setUp(self):
        super().setUp()
        self.broken = self.walk("broken", left=strides(swing=[36.0] * 5 + [150.0]))

    FOUND = "column swing: swing_bounds: found 150, expected 0 to 100 %, in 1 of 6 included strides"

    def test_name_a_finding_on_the_standard_error_and_change_no_exit_code(self):
        result = run(self.broken)
        self.assertEqual(result.returncode, 0)
        self.assertTrue(
            result.stderr.startswith(f"finding: {self.broken}/foot_cycles.csv: {self.FOUND} ("),
            result.stderr,
        )
        self.assertEqual(result.stderr.count("\n"), 1)

    def test_show_a_finding_in_every_output(self):
        self.assertIn(
            "! foot_cycles.csv: " + self.FOUND, " ".join(self.output(self.broken).split())
        )
        self.assertEqual({row["findings"] for row in self.csv_rows(self.broken)}, {"swing_bounds"})
        [finding] = self.json_walk(self.broken)["findings"]
        self.assertEqual(
            [
                finding[key]
                for key in (
                    "check",
                    "table",
                    "column",
                    "broken",
                    "compared",
                    "counted",
                    "text",
                    "guess",
                )
            ],
            [
                "swing_bounds",
                "foot_cycles.csv",
                "swing",
                1,
                6,
                "included strides",
                "found 150, expected 0 to 100 %",
                None,
            ],
        )
        [place] = finding["places"]
        self.assertEqual((place["foot"], place["index"]), ("left", 5))

    def test_change_no_figure(self):
        with_check, without = (
            self.json_walk(*options, self.broken)
            for options in ([], ["--without-check", "swing_bounds"])
        )
        self.assertEqual((len(with_check.pop("findings")), without.pop("findings")), (1, []))
        self.assertEqual(with_check, without)

    def test_say_that_none_is_broken(self):
        walk = self.walk(left=strides())
        self.assertIn("Data checks\n  None broken.\n", self.output(walk))
        self.assertEqual(run(walk).stderr, "")
        self.assertEqual({row["findings"] for row in self.csv_rows(walk)}, {""})

    def test_are_left_out_by_their_names(self):
        walk = self.walk(left=strides(swing=[36.0] * 5 + [150.0], gct=[1.0] * 5 + [999.0]))
        result = run(walk, "--without-check", "swing_bounds", "--without-check", "gct_bounds")
        self.assertEqual(result.returncode, 0)
        self.assertNotIn("_bounds", result.stdout + result.stderr)

    def test_that_nobody_knows_are_refused_with_the_nearest_name(self):
        result = run(self.broken, "--without-check", "swing_bound")
        self.assertEqual((result.returncode, result.stdout), (2, ""))
        self.assertIn('"swing_bound" is not a check; did you mean swing_bounds?', result.stderr)

    def test_leave_a_walk_out_when_they_are_strict(self):
        result = run("--strict", self.broken, self.walk("sound", left=strides()))
        self.assertEqual(result.returncode, 1)
        self.assertTrue(
            result.stderr.startswith(f"{self.broken}/foot_cycles.csv: {self.FOUND} ("),
            result.stderr,
        )
        self.assertTrue(result.stdout.startswith("Walk sound\n"), result.stdout)

    def test_leave_a_walk_with_a_warning_out_when_they_are_strict(self):
        walk = self.walk(
            left=strides(), right=strides(), exclusions=[("left", "excluded_1", 2, "turn")]
        )
        result = run("--strict", walk)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertTrue(
            result.stderr.startswith(f"{walk}/exclusions.csv: column cycles: "), result.stderr
        )
        note = json.loads(run("--format", "json", walk).stdout)["walks"][0]["notes"][0]
        self.assertEqual((note["name"], note["source"]), ("warning", None))
        self.assertTrue(note["text"].startswith("exclusions.csv: column cycles: "), note["text"])

    def test_add_notes_that_are_no_findings(self):
        walk = self.walk(left=strides())
        result = run("--strict", walk)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn(
            "Note: Mean from 6 strides, fewer than 10: read with care. (König et al.,",
            " ".join(result.stdout.split()),
        )
        [note] = self.json_walk(walk)["notes"]
        self.assertEqual(
            (note["name"], note["text"]),
            ("few_strides_for_means", "Mean from 6 strides, fewer than 10: read with care."),
        )
        self.assertIn("2014", note["source"])

    def test_are_listed_the_same_in_every_format(self):
        as_json = json.loads(self.output("--list-checks", "--format", "json"))
        as_csv = list(csv.DictReader(io.StringIO(self.output("--list-checks", "--format", "csv"))))
        self.assertEqual(as_csv, as_json)
        self.assertEqual(as_json[0]["check"], "swing_and_stance")
        as_text = self.output("--list-checks", "--width", 10000)
        for row in as_json:
            self.assertIn(
                f"\n  {row['check']}: {row['compared']}; tolerance: {row['tolerance']}. "
                f"Usually: {row['usual_cause']}. Source: {row['source']}.\n",
                as_text,
            )
        for line in self.output("--list-checks", "--width", 60).splitlines():
            self.assertLessEqual(len(line), 60)

    def test_are_listed_alone(self):
        for arguments in ([BOTH_FEET], ["--list-parameters"]):
            result = run("--list-checks", *arguments)
            self.assertEqual((result.returncode, result.stdout), (2, ""))


class Terminal(ProgramTest):
    def on_terminal(self, *arguments, columns=80, **changes):
        """What the program prints on a terminal of that width.

        The terminal's own line ends are taken back.
        """
        primary, secondary = pty.openpty()
        fcntl.ioctl(secondary, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        with subprocess.Popen(
            [PROGRAM, *map(str, arguments)],
            stdout=secondary,
            stderr=subprocess.PIPE,
            env=environment(**changes),
        ) as process:
            os.close(secondary)
            text = b""
            while True:
                try:
                    part = os.read(primary, 65536)
                except OSError:  # the last writer has closed the terminal
                    break
                if not part:
                    break
                text += part
            os.close(primary)
            self.assertEqual(
                (process.wait(), without_findings(process.stderr.read().decode())), (0, [])
            )
        return text.decode().replace("\r\n", "\n")

    def test_gets_the_report_in_its_width(self):
        for columns in (60, 80, 132):
            self.assertEqual(
                self.on_terminal(BOTH_FEET, columns=columns, NO_COLOR="1"),
                self.output("--width", columns, BOTH_FEET),
            )

    def test_gets_bold_headings(self):
        report = self.on_terminal(BOTH_FEET)
        self.assertIn("\x1b[1mWalk both_feet\x1b[0m\n", report)
        self.assertIn("\x1b[1mQuality flags\x1b[0m\n", report)
        self.assertEqual(re.sub("\x1b\\[[01]m", "", report), self.output("--width", 80, BOTH_FEET))

    def test_gets_no_escape_codes_if_it_does_not_want_them(self):
        self.assertNotIn("\x1b", self.on_terminal(BOTH_FEET, NO_COLOR="1"))
        self.assertNotIn("\x1b", self.on_terminal(BOTH_FEET, TERM="dumb"))

    def test_is_overruled_by_a_width(self):
        self.assertEqual(
            self.on_terminal("--width", 200, BOTH_FEET, NO_COLOR="1"),
            self.output("--width", 200, BOTH_FEET),
        )

    def test_without_a_size_counts_as_100_wide(self):
        self.assertEqual(
            self.on_terminal(BOTH_FEET, columns=0, NO_COLOR="1"), self.output(BOTH_FEET)
        )

    def test_narrower_than_a_column_gets_one_group_a_block(self):
        report = self.on_terminal(BOTH_FEET, columns=10, NO_COLOR="1")
        self.assertEqual(report.count("  Parameter"), 11)

    def messages_on_terminal(self, arguments, columns=80, meanwhile=lambda: None, **changes):
        """What the program says, when its standard error is a terminal."""
        primary, secondary = pty.openpty()
        fcntl.ioctl(secondary, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        with subprocess.Popen(
            [PROGRAM, *map(str, arguments)],
            stdout=subprocess.DEVNULL,
            stderr=secondary,
            env=environment(**changes),
        ) as process:
            os.close(secondary)
            meanwhile()
            text = b""
            while True:
                try:
                    text += os.read(primary, 65536)
                except OSError:  # the last writer has closed the terminal
                    break
            os.close(primary)
            process.wait()
        return text.decode().replace("\r\n", "\n")

    def slow_walk(self):
        """A walk, and a function that keeps the program waiting for it for more than a second."""
        slow = pathlib.Path(self.walk("slow", left=strides()))
        recording = (slow / "recording.csv").read_text()
        (slow / "recording.csv").unlink()
        os.mkfifo(slow / "recording.csv")

        def write_late():
            time.sleep(1.3)
            (slow / "recording.csv").write_text(recording)

        return slow, write_late

    def test_shows_how_far_it_is_and_takes_the_line_away(self):
        for jobs in (1, 2):
            slow, write_late = self.slow_walk()
            text = self.messages_on_terminal(
                ["--jobs", jobs, slow, LEFT_FOOT], meanwhile=write_late
            )
            self.assertRegex(
                text,
                r"1 of 2 walks, \d+\.\d (a second|a minute), \d+ seconds? left\r"
                "\x1b\\[K",
            )
            self.assertTrue(text.endswith("\x1b[Kgait-statistics: 2 of 2 walks reported\n"), text)
            shutil.rmtree(slow)

    def test_that_cannot_take_a_line_away_shows_none(self):
        slow, write_late = self.slow_walk()
        text = self.messages_on_terminal([slow, LEFT_FOOT], meanwhile=write_late, TERM="dumb")
        self.assertNotIn("\x1b", text)
        self.assertNotIn(" left\n", text)

    def test_of_one_walk_says_nothing_more(self):
        self.assertEqual(self.messages_on_terminal([self.walk(left=strides())]), "")

    def test_has_no_say_in_a_file(self):
        file = self.folder / "report.txt"
        self.assertEqual(self.on_terminal("--output", file, BOTH_FEET), "")
        self.assertEqual(file.read_text(), self.output(BOTH_FEET))


class OutputFile(ProgramTest):
    def setUp(self):
        super().setUp()
        self.file = self.folder / "result"

    def test_holds_what_would_have_been_printed(self):
        for form in ("table", "csv", "json"):
            self.assertEqual(
                self.output("--format", form, "--output", self.file, BOTH_FEET, LEFT_FOOT), ""
            )
            self.assertEqual(
                self.file.read_text(), self.output("--format", form, BOTH_FEET, LEFT_FOOT)
            )

    def test_takes_the_list_of_parameters(self):
        self.output("--list-parameters", "--output", self.file)
        self.assertEqual(self.file.read_text(), self.output("--list-parameters"))

    def test_replaces_a_file_and_keeps_its_permissions(self):
        self.file.write_text("old" * 10000)
        self.file.chmod(0o640)
        self.output("--output", self.file, LEFT_FOOT)
        self.assertEqual(self.file.read_text(), self.output(LEFT_FOOT))
        self.assertEqual(stat.S_IMODE(self.file.stat().st_mode), 0o640)

    def test_that_is_new_has_the_usual_permissions(self):
        self.output("--output", self.file, LEFT_FOOT, umask=0o027)
        self.assertEqual(stat.S_IMODE(self.file.stat().st_mode), 0o640)

    def test_replaces_what_a_symbolic_link_points_to(self):
        target = self.folder / "target"
        target.write_text("old")
        self.file.symlink_to(target)
        self.output("--output", self.file, LEFT_FOOT)
        self.assertTrue(self.file.is_symlink())
        self.assertEqual(target.read_text(), self.output(LEFT_FOOT))

    def test_is_not_made_of_a_link_that_leads_nowhere(self):
        self.file.symlink_to(self.folder / "nowhere")
        self.fails(
            f"{self.file}, a link that leads nowhere: No such file or directory",
            "--output",
            self.file,
            LEFT_FOOT,
        )
        self.assertTrue(self.file.is_symlink())
        self.assertFalse(self.file.exists())

    def test_leaves_nothing_else_behind(self):
        self.output("--output", self.file, LEFT_FOOT)
        self.assertEqual(os.listdir(self.folder), ["result"])

    def test_is_kept_when_no_walk_could_be_read(self):
        self.file.write_text("old")
        self.assertEqual(
            run("--format", "json", "--output", self.file, self.folder / "nowhere").returncode, 1
        )
        self.assertEqual(self.file.read_text(), "old")

    def test_holds_the_good_walks_when_one_is_bad(self):
        result = run("--output", self.file, BOTH_FEET, self.folder / "nowhere", LEFT_FOOT)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertEqual(self.file.read_text(), self.output(BOTH_FEET, LEFT_FOOT))

    def fails(self, what, *arguments, **options):
        result = run(*arguments, **options)
        self.assertEqual(
            (result.returncode, without_findings(result.stderr)),
            (1, [f"gait-statistics: cannot write {what}"]),
        )

    def test_is_kept_when_the_new_one_cannot_be_written_whole(self):
        self.file.write_text("old")
        limit = functools.partial(resource.setrlimit, resource.RLIMIT_FSIZE, (1000, 1000))
        self.fails(
            f"{self.file}: File too large", "--output", self.file, BOTH_FEET, preexec_fn=limit
        )
        self.assertEqual(self.file.read_text(), "old")
        self.assertEqual(os.listdir(self.folder), ["result"])

    def device(self, name, minor):
        """A memory device that the program may write to.

        Whoever could replace the machine's own gets a private one.
        """
        if os.geteuid() != 0:
            return pathlib.Path("/dev") / name
        device = self.folder / name
        try:
            os.mknod(device, stat.S_IFCHR | 0o600, os.makedev(1, minor))
            device.open("rb").close()
        except OSError as error:
            self.skipTest(f"no device can be made here: {error}")
        return device

    def test_fails_on_a_full_device(self):
        full = self.device("full", 7)
        self.fails(f"{full}: No space left on device", "--output", full, BOTH_FEET)
        self.assertTrue(full.is_char_device())

    def test_fails_on_a_folder_and_in_a_folder_that_is_not_there(self):
        self.fails(f"{self.folder}: Is a directory", "--output", self.folder, BOTH_FEET)
        missing = self.folder / "missing" / "file"
        self.fails(f"{missing}: No such file or directory", "--output", missing, BOTH_FEET)

    def test_may_be_a_device(self):
        null = self.device("null", 3)
        self.output("--output", null, BOTH_FEET)
        self.assertTrue(null.is_char_device())

    def test_may_be_a_pipe(self):
        os.mkfifo(self.file)
        # A reader that does not wait for a writer; the report is short enough to wait in the pipe.
        reader = os.open(self.file, os.O_RDONLY | os.O_NONBLOCK)
        self.addCleanup(os.close, reader)
        self.output("--output", self.file, LEFT_FOOT)
        self.assertEqual(os.read(reader, 65536).decode(), self.output(LEFT_FOOT))
        self.assertTrue(self.file.is_fifo())

    def test_full_standard_output_is_an_error(self):
        for arguments in (
            [BOTH_FEET],
            ["--format", "json", BOTH_FEET],
            ["--help"],
            ["--version"],
            ["--list-parameters"],
            ["--jobs", 2, BOTH_FEET, LEFT_FOOT],
        ):
            with open("/dev/full", "w", encoding="utf-8") as full:
                self.fails("the standard output: No space left on device", *arguments, stdout=full)

    def test_closed_pipe_ends_the_program_without_a_word_as_it_ends_cat(self):
        for arguments in (
            [BOTH_FEET],
            ["--format", "json", BOTH_FEET],
            ["--list-checks"],
            ["--help"],
            ["--jobs", 2, BOTH_FEET, LEFT_FOOT],
        ):
            reader, writer = os.pipe()
            os.close(reader)
            result = run(*arguments, stdout=writer)
            os.close(writer)
            self.assertEqual(
                (result.returncode, without_findings(result.stderr)),
                (-signal.SIGPIPE, []),
                arguments,
            )

    def test_closed_pipe_in_place_of_a_file_is_an_error(self):
        os.mkfifo(self.file)
        # More than a pipe holds.
        walk = self.walk(left=strides(900))
        # A reader that lets the writer open the pipe, and goes before anything is written.
        with subprocess.Popen(["sh", "-c", f"exec 3<'{self.file}'; exec 3<&-"]) as reader:
            self.fails(f"{self.file}: Broken pipe", "--format", "json", "--output", self.file, walk)
            reader.wait()

    def test_has_the_format_of_its_ending(self):
        for ending, form in (("csv", "csv"), ("json", "json"), ("txt", "table"), ("CSV", "csv")):
            file = self.folder / f"result.{ending}"
            self.output("-o", file, LEFT_FOOT)
            self.assertEqual(file.read_text(), self.output("--format", form, LEFT_FOOT))
            self.output("-o", file, "--format", "json", LEFT_FOOT)
            self.assertEqual(file.read_text(), self.output("--format", "json", LEFT_FOOT))

    def test_of_an_unknown_ending_needs_a_format(self):
        file = self.folder / "result.xlsx"
        result = run("-o", file, LEFT_FOOT)
        self.assertEqual((result.returncode, result.stdout), (2, ""))
        self.assertRegex(
            result.stderr,
            "^gait-statistics: --output: no format has the ending "
            r'"\.xlsx": use \.txt, .* or \.html, or add --format\n',
        )
        self.assertFalse(file.exists())
        self.output("-o", file, "--format", "csv", LEFT_FOOT)

    def test_of_a_dash_is_the_standard_output(self):
        self.assertEqual(self.output("-o", "-", LEFT_FOOT, cwd=self.folder), self.output(LEFT_FOOT))
        self.assertEqual(os.listdir(self.folder), [])

    def test_closed_standard_output_is_an_error(self):
        self.fails(
            "the standard output: Bad file descriptor",
            BOTH_FEET,
            stdout=None,
            preexec_fn=lambda: os.close(1),
        )

    def test_does_not_take_the_place_of_a_closed_standard_error(self):
        walk = self.walk(left=strides(6, ta=[-1.0] + [2.0] * 5))
        result = run("--output", self.file, walk, stderr=None, preexec_fn=lambda: os.close(2))
        self.assertEqual(result.returncode, 0)
        self.assertTrue(self.file.read_text().startswith("Walk walk\n"))
        self.assertNotIn("warning", self.file.read_text())


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv[1])
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
