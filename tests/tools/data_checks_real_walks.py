"""The data checks on measured walks: what they find in the walks as they are, and that a sound walk
altered in one way breaks the check that is meant for it and no other.

    data_checks_real_walks.py PROGRAM FOLDER [-v]

Ends with 77, which CTest counts as skipped, when FOLDER is empty. With -v the findings of the walks
as they are are printed.
"""

import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

from data_checks_trial import Walk

# What measured walks are known to break, all of it true: steps over pauses.
KNOWN = {"step_and_stride_time"}

# Medians and comparisons of both feet need some strides.
FEWEST_STRIDES = 10


def report(program, walk, *options):
    result = subprocess.run(
        [program, "--format", "json", *options, walk],
        capture_output=True,
        encoding="utf-8",
        check=False,
    )
    assert result.returncode == 0, result.stderr
    return json.loads(result.stdout)["walks"][0]


def checks_broken(program, walk):
    return {finding["check"] for finding in report(program, walk)["findings"]}


class AlteredWalk(Walk):
    """A copy of a measured walk, with an included stride to alter."""

    def __init__(self, folder, pair):
        super().__init__(folder)
        self.pair = pair  # an included cycle of both feet
        rows = self.rows("feet_cycles.csv")
        self.right = rows[pair]["right_index"]

    def rows(self, table):
        kept = []
        self.alter(table, kept.extend)
        return kept

    def has(self, column, table="foot_cycles.csv"):
        return any(row[column] for row in self.rows(table))

    def each(self, change, table="foot_cycles.csv", foot=None):
        def alter(rows):
            for row in rows:
                if foot is None or row["foot"] == foot:
                    change(row)

        self.alter(table, alter)

    def one(self, change):
        """Alters an included stride of the right foot."""
        self.each(lambda row: change(row) if row["index"] == self.right else None, foot="right")

    def pairs(self, change):
        self.alter("feet_cycles.csv", change)

    def one_pair(self, change):
        self.pairs(lambda rows: change(rows[self.pair]))


def add(column, amount):
    def change(row):
        if row[column]:
            row[column] = repr(float(row[column]) + amount)

    return change


def times(column, factor):
    def change(row):
        if row[column]:
            row[column] = repr(float(row[column]) * factor)

    return change


def put(column, value):
    def change(row):
        row[column] = str(value)

    return change


def swap(one, other):
    def change(row):
        row[one], row[other] = row[other], row[one]

    return change


def hs_of_the_end(row):
    row["hs"] = repr(float(row["hs"]) + float(row["gct"]))


def other_step_time(row):
    if row["step_time"]:
        row["step_time"] = f"{0.9 * (float(row['gct']) - float(row['step_time'])):.2f}"


def step_time_of_a_stride(row):
    if row["step_time"]:
        row["step_time"] = repr(1.2 * float(row["gct"]))


def late_links(rows):
    links = [row["left_index"] for row in rows]
    for row, link in zip(rows, [*links[1:], ""]):
        row["left_index"] = link


def early_links(rows):
    links = [row["left_index"] for row in rows]
    for row, link in zip(rows, ["", *links]):
        row["left_index"] = link


def have_times_of_their_own(walk):
    """Of the walks of footswitches, the right foot's times were made from the left one's."""
    strides = {(row["foot"], row["index"]): row for row in walk.rows("foot_cycles.csv")}
    pair = walk.rows("feet_cycles.csv")[walk.pair]
    right, left = (strides[foot, pair[f"{foot}_index"]] for foot in ("right", "left"))
    return right["last_sample"] != left["last_sample"]


def exchange_links(walk):
    def change(rows):
        one, other = rows[walk.pair], rows[walk.pair + 1]
        for column in ("right_index", "left_index", "gct", "ds"):
            one[column], other[column] = other[column], one[column]

    walk.pairs(change)


# The column that a walk must have, what is altered, the check that is meant for it, and the checks
# that must follow or may.
ALTERATIONS = [
    ("swing", lambda w: w.one(add("swing", 2)), "swing_and_stance", set()),
    (
        "gct",
        lambda w: w.one(add("gct", 0.05)),
        "duration_and_samples",
        {
            "cadence_and_duration",
            "speed_and_stride_length",
            "contact_and_stance",
            "feet_cycle_duration",
        },
    ),
    ("gct", lambda w: w.set_rate(128), "duration_and_samples", {"heel_strike_and_sample"}),
    ("hs", lambda w: w.each(hs_of_the_end), "heel_strike_and_sample", {"strides_in_time_order"}),
    ("cadence", lambda w: w.each(times("cadence", 1.05)), "cadence_and_duration", set()),
    (
        "slength",
        lambda w: w.each(times("slength", 0.5)),
        "speed_and_stride_length",
        {"step_lengths_of_a_stride"},
    ),
    ("contact", lambda w: w.one(times("contact", 0.6)), "contact_and_stance", set()),
    ("ldr", lambda w: w.each(times("ldr", 0.6)), "phases_of_stance", set()),
    ("path_length", lambda w: w.one(put("path_length", 90)), "path_and_stride_length", set()),
    (
        "step_time",
        lambda w: w.each(step_time_of_a_stride),
        "step_and_stride_time",
        {"step_times_of_a_stride"},
    ),
    (
        "mtc_speed",
        lambda w: w.one(swap("mtc_speed", "speed")),
        "swing_speed_and_velocity",
        {"speed_and_stride_length"},
    ),
    ("min_tc", lambda w: w.one(swap("min_tc", "max_tc2")), "toe_clearances", set()),
    (
        "gct",
        Walk.reverse_indices,
        "strides_in_time_order",
        {
            "linked_strides_overlap",
            "feet_cycle_duration",
            "durations_of_both_feet",
            "double_support_and_stances",
            "left_opens_within_right",
        },
    ),
    ("gct", exchange_links, "links_in_order", {"linked_strides_overlap", "feet_cycle_duration"}),
    (
        "gct",
        lambda w: w.pairs(late_links),
        "linked_strides_overlap",
        {"step_times_of_a_stride", "step_lengths_of_a_stride", "feet_cycle_duration"},
    ),
    ("gct", lambda w: w.one_pair(put("left_index", "")), "unlinked_strides", set()),
    ("gct", lambda w: w.one_pair(add("gct", 0.2)), "feet_cycle_duration", set()),
    (
        "gct",
        Walk.swap_feet,
        "feet_cycle_duration",
        {"left_opens_within_right", "step_times_of_a_stride"},
    ),
    (
        "gct",
        Walk.swap_feet,
        "left_opens_within_right",
        {"feet_cycle_duration", "step_times_of_a_stride"},
    ),
    (
        "gct",
        lambda w: w.pairs(early_links),
        "left_opens_within_right",
        {
            "step_times_of_a_stride",
            "step_lengths_of_a_stride",
            "linked_strides_overlap",
            "feet_cycle_duration",
            "unlinked_strides",
        },
    ),
    (
        "swing",
        lambda w: w.each(times("ds", 0.5), "feet_cycles.csv"),
        "double_support_and_stances",
        {"ds_median"},
    ),
    (
        "step_time",
        lambda w: w.each(other_step_time),
        "step_times_of_a_stride",
        {"step_and_stride_time", "step_time_bounds"},
    ),
    ("step_length", lambda w: w.each(times("step_length", 1.3)), "step_lengths_of_a_stride", set()),
    (
        "gct",
        lambda w: w.each(times("gct", 1.2), foot="left"),
        "durations_of_both_feet",
        {
            "duration_and_samples",
            "cadence_and_duration",
            "speed_and_stride_length",
            "contact_and_stance",
            "feet_cycle_duration",
        },
    ),
    ("peakswing", lambda w: w.each(put("peakswing", 400)), "stuck_column", set()),
    (
        "gct",
        lambda w: w.each(lambda row: put("last_sample", int(row["last_sample"]) + 1)(row)),
        "one_sample_too_many",
        {"duration_and_samples"},
    ),
    ("hsp", lambda w: w.each(times("hsp", 0.0174533)), "angles_in_radians", set()),
]


def list_checks(program):
    listed = subprocess.run(
        [program, "--list-checks", "--format", "json"], capture_output=True, check=True
    ).stdout
    return json.loads(listed)


def altered_bounds(program):
    """The alterations that the bounds are meant for: one value beyond them, or a whole column."""
    for check in list_checks(program):
        if check["kind"] not in ("bounds of one stride", "median of the walk"):
            continue
        column = check["check"].rsplit("_", 1)[0]
        table = "feet_cycles.csv" if column == "ds" else "foot_cycles.csv"
        lowest, highest = map(float, re.match(r"(\S+) to (\S+) ", check["tolerance"]).groups())
        if check["kind"] == "bounds of one stride":
            for value in (lowest - 0.5, highest + 0.5):
                change = put(column, value)
                yield (
                    column,
                    lambda w, c=change, t=table: w.one_pair(c)
                    if t == "feet_cycles.csv"
                    else w.one(c),
                    check["check"],
                    set(),
                )
        else:
            change = put(column, highest + 0.5)
            yield (
                column,
                lambda w, c=change, t=table: w.each(
                    lambda row: c(row) if row[w.column] else None, t
                ),
                check["check"],
                set(),
            )


def check_walk(program, folder, copy, verbose):
    """What a walk breaks as it is; then each alteration that it has the values for."""
    as_it_is = report(program, folder)
    if verbose:
        for finding in as_it_is["findings"]:
            print(
                f"{folder.name}: {finding['check']}: {finding['text']}, "
                f"{finding['broken']} of {finding['compared']} {finding['counted']}"
            )
    broken = {finding["check"] for finding in as_it_is["findings"]}
    assert broken <= KNOWN, (folder, broken)
    included = as_it_is["accounting"]["cycles"]
    covered, wrong = set(), []
    if len(included) < FEWEST_STRIDES:
        return covered, wrong
    for column, alter, check, following in [*ALTERATIONS, *altered_bounds(program)]:
        shutil.copytree(folder, copy)
        walk = AlteredWalk(copy, included[len(included) // 2])
        walk.column = column
        is_there = walk.has(column, "feet_cycles.csv" if column == "ds" else "foot_cycles.csv")
        if is_there and (check != "left_opens_within_right" or have_times_of_their_own(walk)):
            alter(walk)
            found = checks_broken(program, copy) - (broken - {check})
            if check in found and found <= {check} | following:
                covered.add(check)
            else:
                wrong.append((folder.name, check, found))
        shutil.rmtree(copy)
    return covered, wrong


def main(program, folder, *options):
    if not folder:
        print("skipped: no folder of measured walks is given (GAIT_REAL_WALKS)")
        return 77
    walks = sorted(file.parent for file in pathlib.Path(folder).glob("**/recording.csv"))
    assert walks, f"{folder} holds no walk"
    covered, wrong = set(), []
    with tempfile.TemporaryDirectory(prefix="gait_real_walks_") as temporary:
        for walk in walks:
            more, failed = check_walk(
                program, walk, pathlib.Path(temporary) / "walk", "-v" in options
            )
            covered |= more
            wrong += failed
            print(f"{walk.name}: {len(more)} checks broken one by one")
    assert not wrong, "\n".join(map(str, wrong))
    print("of no walk:", *sorted({check["check"] for check in list_checks(program)} - covered))
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
