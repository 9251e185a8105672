"""The recipes of docs/your-own-table.md: the program reads the walk folders that they make.

    your_own_table_test.py PROGRAM PAGE

Needs pandas.
"""

import itertools
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

import pandas

RATE = 100  # samples a second, as on the page
TIMES = [1.2 + 0.01 * (7 * i % 11) for i in range(20)]  # of one stride (s)
MEAN = sum(TIMES) / len(TIMES)


def strides(start):
    """When each stride of a foot begins and ends (s)."""
    return list(itertools.pairwise(itertools.accumulate(TIMES, initial=start)))


# In the order of time, the feet mixed.
EXPORT = sorted(
    (
        {
            "Side": side,
            "Start (s)": begin,
            "End (s)": end,
            "Stride time (ms)": 1000 * (end - begin),
            "Stride length (cm)": 130 + 0.1 * i,
        }
        for side, start in (("Right", 0.5), ("Left", 1.1))
        for i, (begin, end) in enumerate(strides(start))
    ),
    key=lambda stride: stride["Start (s)"],
)


def read_excel(file):
    """In place of pandas' own, which needs a further package."""
    assert file == "export.xlsx"
    return pandas.DataFrame(EXPORT)


def samples(begin, end):
    return f"{round(begin * RATE)},{round(end * RATE) - 1}"


class Recipe(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="your_own_table_")
        self.addCleanup(folder.cleanup)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(folder.name)

    def means(self, *arguments):
        """The means that the program finds, when it has nothing to say against the walk."""
        result = subprocess.run(
            [PROGRAM, "--format", "json", *arguments],
            capture_output=True,
            encoding="utf-8",
            check=False,
        )
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        [walk] = json.loads(result.stdout)["walks"]
        return {key: parameter["mean"] for key, parameter in walk["parameters"].items()}

    def check_each_foot(self):
        for foot in ("left", "right"):
            means = self.means("--foot", foot, "monday")
            self.assertAlmostEqual(means["gct"], MEAN)
            self.assertAlmostEqual(means["slength"], 1.3095)

    def test_with_pandas_as_it_stands_on_the_page(self):
        [recipe] = re.findall("```python\n(.*?)```", PAGE.read_text(encoding="utf-8"), re.DOTALL)
        self.addCleanup(setattr, pandas, "read_excel", pandas.read_excel)
        pandas.read_excel = read_excel
        exec(compile(recipe, PAGE, "exec"), {})
        self.check_each_foot()

    def test_in_a_spreadsheet_step_by_step(self):
        rows = sorted(EXPORT, key=lambda stride: (stride["Side"], stride["Start (s)"]))
        walk = pathlib.Path("monday")
        walk.mkdir()
        header = "foot,first_sample,last_sample,gct,slength\n"
        (walk / "foot_cycles.csv").write_text(
            header
            + "".join(
                f"{row['Side']},{samples(row['Start (s)'], row['End (s)'])},"
                f"{row['Stride time (ms)'] / 1000},{row['Stride length (cm)'] / 100}\n"
                for row in rows
            )
        )
        (walk / "recording.csv").write_text(f"foot,sampling_rate\nLeft,{RATE}\nRight,{RATE}\n")
        self.check_each_foot()
        (walk / "feet_cycles.csv").write_text(
            "right_index,left_index,gct,ds\n"
            + "".join(f"{i},{i},{TIMES[i]},\n" for i in range(len(TIMES)))
        )
        (walk / "exclusions.csv").write_text("cycles,list,index,reason\nfeet,excluded_1,4,turn\n")
        self.assertAlmostEqual(self.means("monday")["gct_R"], (sum(TIMES) - TIMES[4]) / 19)


if __name__ == "__main__":
    PROGRAM, PAGE = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2]).resolve()
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
