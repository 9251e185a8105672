"""Studies: what the tables hold, wherever the walks come from and however the work is cut."""

from __future__ import annotations

import doctest
import shutil
import subprocess
import sys
import warnings
from collections.abc import Callable
from pathlib import Path
from typing import Any

import pandas as pd
import pytest
from conftest import ROOT, Program, as_kind, rows_of_csv
from pages import failures_of
from studies import contents_of, gait_study, strides_of_bouts, write_walks

pytest.importorskip("pyarrow")
pytest.importorskip("tqdm")

import pyarrow.parquet as pq

import gait_statistics as gs
from gait_statistics._study import _assembly, _study
from gait_statistics._study._folders import walk_folders_in

TABLES = ("parameters", "parameters_wide", "walks", "errors")
EXAMPLES = ROOT / "examples/walks"


@pytest.fixture(scope="module")
def walks(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """Thirty walks, of which some cannot be analysed."""
    return write_walks(tmp_path_factory.mktemp("study") / "walks", 30)


@pytest.fixture(scope="module")
def done(walks: Path, tmp_path_factory: pytest.TempPathFactory) -> gs.Study:
    """Their study."""
    return gs.study(walks, tmp_path_factory.mktemp("study") / "out")


def one_by_one(walks: Path) -> tuple[list[gs.Result], dict[str, list[str]]]:
    """The results of the walks of a folder, and the messages of those that have none."""
    results, messages = [], {}
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", gs.WalkWarning)
        for folder in sorted(walks.iterdir()):
            try:
                results.append(gs.analyse(gs.read_walk(folder)))
            except gs.WalkError as error:
                messages[folder.name] = [str(one) for one in error.errors]
    return results, messages


def assert_same(found: pd.DataFrame, expected: pd.DataFrame) -> None:
    pd.testing.assert_frame_equal(found, expected, check_exact=True)


def changed(study: gs.Study, other: gs.Study) -> list[str]:
    """The files in which two studies differ."""
    first, second = contents_of(study.out), contents_of(other.out)
    return [name for name in first.keys() | second.keys() if first.get(name) != second.get(name)]


# ---- What the tables hold


def test_the_long_tables_hold_what_analyse_gives_for_each_walk(walks: Path, done: gs.Study) -> None:
    results, messages = one_by_one(walks)
    assert len(results) > 20
    for table in ("parameters", "walks"):
        rows = [getattr(result, table) for result in results]
        assert_same(getattr(done, table), pd.concat(rows, ignore_index=True))
    assert len(done) == 30
    assert done.left_out == len(messages)


def test_the_wide_table_is_the_long_one_turned(done: gs.Study) -> None:
    long, wide = done.parameters, done.parameters_wide.set_index("walk")
    assert list(wide.index) == list(done.walks["walk"])
    compared = 0
    for statistic in ("n", "mean", "median", "std", "cv"):
        turned = long.pivot(index="walk", columns=["parameter", "side"], values=statistic)
        for parameter, side in turned.columns:
            column = wide[f"{parameter}_{side}_{statistic}".replace(" ", "_")]
            expected = turned[parameter, side].reindex(wide.index)
            pd.testing.assert_series_equal(column, expected, check_names=False, check_exact=True)
            compared += int(column.notna().sum())
    assert compared == long[["n", "mean", "median", "std", "cv"]].notna().sum().sum()


def test_the_wide_table_has_the_statistics_that_are_asked_for(tmp_path: Path) -> None:
    wide = gs.study(EXAMPLES, tmp_path / "out", statistics=["q3", "n"]).parameters_wide
    assert list(wide.columns[:4]) == ["walk", "analysed", "gct_right_n", "gct_right_q3"]
    every = gs.study(EXAMPLES, tmp_path / "all", statistics=["all"]).parameters_wide
    assert "swing_left_symmetry_index" in every


def test_units_are_in_the_metadata_of_the_columns(done: gs.Study) -> None:
    def units(table: str) -> dict[str, str]:
        schema = pq.read_schema(done.files[table])
        return {f.name: f.metadata[b"unit"].decode() for f in schema if f.metadata}

    wide = units("parameters_wide")
    assert wide["swing_right_mean"] == "% of gait cycle"
    assert wide["Step_Time_left_std"] == "seconds"
    assert wide["gct_left_cv"] == "%"
    assert wide["gct_left_n"] == "strides"
    assert units("walks")["included_distance_meters"] == "meters"
    assert units("parameters")["sampling_rate_hz"] == "Hz"


def test_csv_holds_what_parquet_holds(walks: Path, done: gs.Study, tmp_path: Path) -> None:
    as_text = gs.study(walks, tmp_path / "out", format="csv")
    for table in TABLES:
        assert_same(getattr(as_text, table), getattr(done, table))


def test_csv_is_that_of_the_program(tmp_path: Path, program: Program) -> None:
    done = gs.study(EXAMPLES, tmp_path / "out", format="csv")
    for table in ("parameters", "walks"):
        printed = program("--recursive", "--table", table, "examples/walks")
        assert rows_of_csv(done.files[table].read_text()) == rows_of_csv(printed)


def test_tables_are_read_as_frames_of_the_library_that_is_asked_for(
    kind: str, done: gs.Study
) -> None:
    frame = gs.Study(done.out, frame=kind).walks  # type: ignore[arg-type]
    assert type(frame).__module__.split(".")[0] == kind
    assert len(frame) == len(done) - done.left_out


# ---- However the work is cut


@pytest.mark.parametrize(("jobs", "batch"), [(1, None), (2, 1), (3, 7), (1, 30)])
def test_the_files_do_not_depend_on_threads_or_batches(
    jobs: int, batch: int | None, walks: Path, done: gs.Study, tmp_path: Path
) -> None:
    other = gs.study(walks, tmp_path / "out", jobs=jobs, batch=batch)
    assert changed(done, other) == []


@pytest.mark.parametrize("batch", [1, 4, 8, 30])
def test_groups_of_rows_do_not_depend_on_batches(
    batch: int, walks: Path, tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.setattr(_assembly, "WALKS_OF_A_GROUP", 8)
    done = gs.study(walks, tmp_path / "out", batch=batch)
    file = pq.ParquetFile(done.files["parameters"])
    groups = [
        set(file.read_row_group(number, ["walk"])["walk"].to_pylist())
        for number in range(file.num_row_groups)
    ]
    places = [{int(name.split("_")[1]) // 8 for name in group} for group in groups]
    assert places == [{0}, {1}, {2}, {3}]


def test_the_core_needs_none_of_the_packages_of_a_study() -> None:
    code = (
        "import sys, gait_statistics as gs\n"
        "gs.analyse(gs.read_walk('examples/walks/two_feet_turn')).parameters\n"
        "assert not {'tqdm', 'distributed', 'gait_statistics._study'} & set(sys.modules)"
    )
    subprocess.run([sys.executable, "-c", code], check=True)


def test_a_missing_package_is_named(tmp_path: Path) -> None:
    blocked = "import sys; sys.modules['tqdm'] = None; from gait_statistics import _study_command"
    code = f"{blocked} as c; sys.argv = ['', '-o', '{tmp_path}/out', 'x']; sys.exit(c.main())"
    finished = subprocess.run(
        [sys.executable, "-c", code], capture_output=True, encoding="utf-8", check=False
    )
    assert finished.returncode == 2
    assert "pip install 'gait-statistics[study]'" in finished.stderr


# ---- Folders and manifests


def test_a_broken_walk_costs_itself_and_nothing_else(walks: Path, tmp_path: Path) -> None:
    _, messages = one_by_one(walks)
    broken = write_walks(tmp_path / "walks", 3) / "walk_00001"
    (broken / "foot_cycles.csv").write_text("foot,first_sample\nleft,x\n")
    done = gs.study(broken.parent, tmp_path / "out")
    with pytest.raises(gs.WalkError) as found:
        gs.read_walk(broken)
    errors = done.errors
    assert list(errors["message"]) == [str(error) for error in found.value.errors]
    assert set(errors["walk"]) == {"walk_00001"}
    assert list(done.walks["walk"]) == ["walk_00000", "walk_00002"]
    assert done.summary().endswith("1 left out: walk_00001 (errors.parquet says why)")


def test_a_study_none_of_whose_walks_can_be_read_has_all_of_its_columns(
    tmp_path: Path, done: gs.Study
) -> None:
    none = gs.study([tmp_path / "nothing", tmp_path / "nowhere"], tmp_path / "out")
    assert none.left_out == 2
    for table in TABLES:
        assert list(getattr(none, table).columns) == list(getattr(done, table).columns)
    assert len(none.walks) == 0


def test_strict_leaves_out_walks_with_findings_and_warnings(walks: Path, tmp_path: Path) -> None:
    strict = gs.study(walks, tmp_path / "out", strict=True)
    results, messages = one_by_one(walks)
    sound = [r.name for r in results if not r.findings and not r.warnings]
    kept = list(strict.walks["walk"])
    assert set(kept) <= set(sound)
    left_out = set(strict.errors["walk"])
    assert {r.name for r in results if r.findings} <= left_out
    assert set(messages) <= left_out


def test_options_act_on_every_walk(tmp_path: Path) -> None:
    done = gs.study(EXAMPLES / "two_feet_turn", tmp_path / "out", foot="left", max_strides=100)
    assert list(done.walks["analysed"]) == ["left foot"]
    short = gs.study(EXAMPLES / "two_feet_turn", tmp_path / "short", max_strides=20)
    assert "the limit that was set" in short.errors["message"][0]


def test_walks_are_found_by_pattern_in_folders_and_once(tmp_path: Path) -> None:
    for subject in ("s2", "s1"):
        write_walks(tmp_path / "study" / subject, 2)
    (tmp_path / "study/s1/notes").mkdir()
    nearly = tmp_path / "study/s3"
    nearly.mkdir()
    (nearly / "Foot_Cycles.CSV").write_text("x")
    found = gs.study(
        [tmp_path / "study", tmp_path / "study/s2/walk_00001", f"{tmp_path}/study/s?/walk*"],
        tmp_path / "out",
    )
    assert len(found) == 5
    assert set(found.errors["walk"]) >= {"s3"}
    names = [*found.walks["walk"], *found.errors["walk"]]
    # Two folders are called walk_00000: the path tells which.
    assert {f"{tmp_path}/study/{s}/walk_00000" for s in ("s1", "s2")} <= set(names)


def test_walks_are_sorted_by_path_part_by_part(tmp_path: Path) -> None:
    folders = ["a", "a/b", "a/c", "a b", "a-b/c", "b"]
    for name in folders:
        shutil.copytree(EXAMPLES / "one_foot_short", tmp_path / "walks" / name, dirs_exist_ok=True)
    (tmp_path / "walks/a/bad").symlink_to(tmp_path / "walks/b")
    found = [str(path) for path in walk_folders_in(str(tmp_path / "walks"))]
    expected = sorted(tmp_path / "walks" / name for name in folders)
    assert found == [str(path) for path in expected]


def test_the_columns_of_a_manifest_go_into_every_row(tmp_path: Path) -> None:
    write_walks(tmp_path / "walks", 2)
    manifest = tmp_path / "manifest.csv"
    manifest.write_text(
        "subject,walk,visit\n007,walks/walk_00001,1\n008,walks/missing,\n007,walks/walk_00000,2\n"
    )
    code, said = gait_study(manifest, "-o", tmp_path / "out")
    done = gs.Study(tmp_path / "out")
    assert code == 1
    assert "2 of 3 walks" in said
    for table in ("parameters", "parameters_wide", "walks"):
        rows = getattr(done, table)[["walk", "subject", "visit"]].drop_duplicates()
        assert rows.values.tolist() == [
            ["walks/walk_00001", "007", "1"],
            ["walks/walk_00000", "007", "2"],
        ]
    errors = done.errors.iloc[0]
    assert (errors["walk"], errors["subject"], errors["visit"]) == ("walks/missing", "008", pd.NA)
    assert "walks/missing" in errors["message"]


def test_a_frame_or_parquet_may_be_the_manifest(tmp_path: Path) -> None:
    write_walks(tmp_path / "walks", 2)
    frame = pd.DataFrame({"walk": ["walks/walk_00000", "walks/walk_00001"], "visit": [1, 2]})
    frame.to_parquet(tmp_path / "manifest.parquet")
    of_file = gs.study(tmp_path / "manifest.parquet", tmp_path / "of_file")
    absolute = frame.assign(walk=[f"{tmp_path}/{walk}" for walk in frame["walk"]])
    of_frame = gs.study(absolute, tmp_path / "of_frame", format="csv")
    for study in (of_file, of_frame):
        assert study.walks["visit"].dtype == "Int64"
        assert list(study.walks["visit"]) == [1, 2]


# ---- Tables of strides


def bouts_one_by_one(strides: pd.DataFrame) -> pd.DataFrame:
    """The parameters of each bout, made by hand."""
    rows: list[pd.DataFrame] = []
    for (subject, bout), own in strides.groupby(["subject", "bout"], sort=False):
        table = own.drop(columns=["subject", "bout"]).reset_index(drop=True)
        walk = gs.Walk(table, 100, gs.pair_feet(table), name=f"{subject}/{bout}")
        parameters = gs.analyse(walk).parameters
        parameters.insert(1, "subject", pd.array([subject] * len(parameters), dtype="string"))
        parameters.insert(2, "bout", pd.array([bout] * len(parameters), dtype="Int64"))
        rows.append(parameters)
    return pd.concat(rows, ignore_index=True)


def test_a_frame_of_strides_is_cut_into_walks(kind: str, tmp_path: Path) -> None:
    strides = strides_of_bouts(5)
    done = gs.study(
        as_kind(strides, kind), tmp_path / "out", ["subject", "bout"], sampling_rate=100, batch=2
    )
    assert_same(done.parameters, bouts_one_by_one(strides))
    assert list(done.walks["walk"]) == ["s0/0", "s1/1", "s0/2", "s1/3", "s0/4"]


def test_rows_of_a_frame_may_be_in_any_order(tmp_path: Path) -> None:
    strides = strides_of_bouts(4)
    mixed = strides.sort_values(["first_sample", "bout"], kind="stable")
    mixed.loc[mixed["bout"] == 2, "gct"] = float("inf")
    done = gs.study(mixed, tmp_path / "out", ["subject", "bout"], sampling_rate=100)
    sorted_ = strides[strides["bout"] != 2]
    expected = bouts_one_by_one(sorted_)["mean"]
    pd.testing.assert_series_equal(done.parameters["mean"], expected, check_exact=True)
    # The message names the row of the caller's frame.
    row = int(done.errors["message"][0].split("row ")[1].split(",")[0])
    assert mixed.iloc[row]["bout"] == 2
    assert mixed.iloc[row]["gct"] == float("inf")


def test_parquet_is_read_in_row_groups_and_files(tmp_path: Path) -> None:
    strides = strides_of_bouts(20)
    (tmp_path / "set").mkdir()
    # Walks reach over the edges of groups and files.
    strides.iloc[:250].to_parquet(tmp_path / "set/a.parquet", row_group_size=37)
    strides.iloc[250:].to_parquet(tmp_path / "set/b.parquet", row_group_size=100)
    by = ["subject", "bout"]
    done = gs.study(tmp_path / "set", tmp_path / "out", by, sampling_rate=100, batch=3)
    assert_same(done.parameters, bouts_one_by_one(strides))


def test_a_column_may_have_the_sampling_rate(tmp_path: Path) -> None:
    strides = strides_of_bouts(3).assign(sampling_rate=lambda rows: 100 + rows["bout"])
    strides.loc[strides.index[-1], "sampling_rate"] = 7
    done = gs.study(strides, tmp_path / "out", "bout", ignore_columns=["subject"])
    assert list(done.walks["sampling_rate_hz"]) == [100, 101]
    assert "found 102, 7, expected one rate" in done.errors["message"][0]


def test_categories_and_missing_names_and_values(tmp_path: Path) -> None:
    strides = strides_of_bouts(3)
    strides = strides.assign(
        foot=strides["foot"].astype("category"),
        subject=strides["subject"].where(strides["bout"] != 1),
        first_sample=strides["first_sample"].astype("Int64"),
    )
    strides.loc[0, "first_sample"] = pd.NA
    done = gs.study(strides, tmp_path / "out", ["subject", "bout"], sampling_rate=100)
    assert list(done.walks["walk"]) == ["s0/2"]
    assert list(done.errors["walk"]) == ["s0/0", "/1"]
    messages = list(done.errors["message"])
    assert messages[0].startswith("strides, row 0, column first_sample: found")
    assert messages[1].startswith("strides, row 24, column subject: found nothing")


def test_a_dask_frame_needs_no_cluster(tmp_path: Path) -> None:
    frames = pytest.importorskip("dask.dataframe", exc_type=ImportError)
    strides = strides_of_bouts(9)
    for partitions in (1, 4):
        frame = frames.from_pandas(strides, npartitions=partitions, sort=False)
        by = ["subject", "bout"]
        done = gs.study(frame, tmp_path / str(partitions), by, sampling_rate=100, batch=2)
        assert_same(done.parameters, bouts_one_by_one(strides))


# ---- What is refused


def scattered(folder: Path) -> Path:
    path = folder / "scattered.parquet"
    strides_of_bouts(3).sort_values("first_sample").to_parquet(path)
    return path


def manifest_of(folder: Path, text: str) -> Path:
    path = folder / "manifest.csv"
    path.write_text(text)
    return path


BOUTS = strides_of_bouts(2)
WRONG: dict[str, tuple[Callable[[Path], Any], dict[str, Any], str]] = {
    "no walks": (lambda _: [], {}, "walks: found none, expected folders"),
    "no match": (lambda f: f"{f}/x*", {}, "found no folder that matches"),
    "a file among folders": (
        lambda f: [EXAMPLES, manifest_of(f, "walk\nx\n")],
        {},
        "among others, expected folders, or one manifest",
    ),
    "no column walk": (
        lambda f: manifest_of(f, "path\nx\n"),
        {},
        "found no column walk among path",
    ),
    "no path": (lambda f: manifest_of(f, "walk,a\n,1\n"), {}, "csv:2: column walk: found nothing"),
    "a walk twice": (
        lambda f: manifest_of(f, "walk\nx\ny\n./x\n"),
        {},
        "csv:4: column walk: found './x', which line 2 has too",
    ),
    "a column of the tables": (
        lambda f: manifest_of(f, "walk,mean\nx,1\n"),
        {},
        "column mean: found the name of a column of the table parameters",
    ),
    "ragged": (lambda f: manifest_of(f, "walk,a\nx\n"), {}, "Expected 2 columns"),
    "no by": (lambda _: BOUTS, {}, "the manifest: found no column walk"),
    "unknown by": (lambda _: BOUTS, {"by": "person"}, "by: found 'person', expected columns of"),
    "by twice": (lambda _: BOUTS, {"by": ["bout", "bout"]}, "expected each column once"),
    "no rate": (lambda _: BOUTS, {"by": "bout"}, "sampling_rate: found none, and no column"),
    "a rate for folders": (lambda _: EXAMPLES, {"sampling_rate": 100}, "expected it with by alone"),
    "an unknown column": (
        lambda _: BOUTS.assign(swng=1.0),
        {"by": ["subject", "bout"], "sampling_rate": 100},
        "the table of strides: column swng: found an unknown column, expected swing",
    ),
    "no rows": (
        lambda _: BOUTS.iloc[:0],
        {"by": ["subject", "bout"], "sampling_rate": 100},
        "found no rows",
    ),
    "scattered rows": (
        scattered,
        {"by": ["subject", "bout"], "sampling_rate": 100},
        "expected the rows of a walk together: sort the table by subject, bout",
    ),
    "no table": (lambda f: f / "x.parquet", {"by": "bout"}, "found nothing, expected a Parquet"),
    "no parquet": (
        lambda f: manifest_of(f, "walk\n"),
        {"by": "bout", "sampling_rate": 100},
        "manifest.csv: ",
    ),
    "a check": (lambda _: EXAMPLES, {"without_checks": ["x"]}, "expected the name of a check"),
    "a statistic": (lambda _: EXAMPLES, {"statistics": ["sum"]}, "statistics: found 'sum'"),
    "a format": (lambda _: EXAMPLES, {"format": "xlsx"}, "format: found 'xlsx'"),
    "no threads": (lambda _: EXAMPLES, {"jobs": 0}, "jobs: found 0, expected a whole number"),
}


@pytest.mark.parametrize("what", WRONG)
def test_what_cannot_be_meant_is_refused_and_leaves_nothing(what: str, tmp_path: Path) -> None:
    walks, keywords, expected = WRONG[what]
    with pytest.raises(ValueError, match=r"(?s).") as found:
        gs.study(walks(tmp_path), tmp_path / "out", **keywords)
    assert expected in str(found.value)
    assert not (tmp_path / "out").exists()


def test_a_study_is_not_written_among_the_files_of_its_table(tmp_path: Path) -> None:
    BOUTS.to_parquet(tmp_path / "strides.parquet")
    with pytest.raises(ValueError, match="which is in the table of strides"):
        gs.study(tmp_path, tmp_path / "out", ["subject", "bout"], sampling_rate=100)
    assert not (tmp_path / "out").exists()


def test_something_else_than_walks_is_a_type_error(tmp_path: Path) -> None:
    with pytest.raises(TypeError, match="walks: found int, expected paths of walk folders"):
        gs.study(7, tmp_path / "out")


# ---- The folder of a study


@pytest.mark.parametrize(
    ("keywords", "expected"),
    [
        ({"foot": "left"}, "foot None instead of left"),
        ({"walks": EXAMPLES / "two_feet_turn"}, "other walks"),
        ({"statistics": ["n"]}, "statistics"),
    ],
)
def test_another_study_in_the_folder_is_refused_unless_it_is_discarded(
    keywords: dict[str, Any], expected: str, tmp_path: Path
) -> None:
    old = contents_of(gs.study(EXAMPLES, tmp_path / "out").out)
    again = {"walks": EXAMPLES, **keywords}
    with pytest.raises(ValueError, match=expected):
        gs.study(out=tmp_path / "out", **again)
    assert contents_of(tmp_path / "out") == old
    anew = gs.study(out=tmp_path / "out", restart=True, **again)
    assert changed(anew, gs.study(out=tmp_path / "other", **again)) == []


def test_a_study_of_another_version_is_refused(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    gs.study(EXAMPLES, tmp_path / "out")
    record = tmp_path / "out/study.json"
    record.write_text(record.read_text().replace(gs.__version__, "0.9.0"))
    with pytest.raises(ValueError, match=f"version 0.9.0 instead of {gs.__version__}"):
        gs.study(EXAMPLES, tmp_path / "out")


def test_tables_of_something_else_are_not_replaced(tmp_path: Path) -> None:
    (tmp_path / "walks.parquet").write_text("mine")
    (tmp_path / "notes.txt").write_text("mine too")
    with pytest.raises(ValueError, match=r"found walks\.parquet of no study"):
        gs.study(EXAMPLES, tmp_path)
    assert sorted(contents_of(tmp_path)) == ["notes.txt", "walks.parquet"]


def test_a_complete_study_is_not_computed_again(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    first = gs.study(EXAMPLES, tmp_path / "out")
    old = contents_of(first.out)
    monkeypatch.setattr(_study, "_compute", None)
    again = gs.study(EXAMPLES, tmp_path / "out")
    assert contents_of(again.out) == old
    code, said = gait_study(EXAMPLES, "-o", tmp_path / "out")
    assert code == 0
    assert "was complete already; --restart computes it anew" in said


def test_a_folder_without_a_complete_study_is_not_read(tmp_path: Path) -> None:
    with pytest.raises(ValueError, match="found no study, expected the folder of a complete one"):
        gs.Study(tmp_path)


# ---- The documentation


# The wheel's own test has no packages of extras, so README marks what needs them.
@pytest.mark.parametrize(
    ("page", "fence", "least"), [("docs/study.md", "python", 9), ("README.md", "pycon", 4)]
)
def test_the_examples_of_the_pages_are_right(page: str, fence: str, least: int) -> None:
    failed, examples = failures_of(page, fence)
    assert failed == 0
    assert examples >= least


@pytest.mark.parametrize("name", ["Study", "study"])
def test_the_examples_of_docstrings_are_right(name: str) -> None:
    public = getattr(gs, name)
    runner = doctest.DocTestRunner()
    for test in doctest.DocTestFinder().find(public, name, False, {name: public}):
        runner.run(test)
    assert runner.tries > 0
    assert runner.failures == 0


# ---- The command


def test_the_command_takes_what_study_takes(tmp_path: Path) -> None:
    strides_of_bouts(3).to_parquet(tmp_path / "strides.parquet")
    code, said = gait_study(
        *("--by", "subject", "--by", "bout", "--sampling-rate", 100, "--format", "csv"),
        *("--jobs", 1, "--statistics", "n,mean", "-o", tmp_path / "out"),
        tmp_path / "strides.parquet",
    )
    assert (code, said) == (0, f"gait-study: 3 of 3 walks in {tmp_path}/out\n")
    code, said = gait_study("--by", "x", "-o", tmp_path / "b", tmp_path / "strides.parquet")
    assert code == 2
    assert said.startswith("gait-study: by: found 'x', expected columns of ")


def test_progress_is_shown_on_demand(tmp_path: Path, capsys: pytest.CaptureFixture[str]) -> None:
    gs.study(EXAMPLES, tmp_path / "quiet")
    assert capsys.readouterr().err == ""
    gs.study(EXAMPLES, tmp_path / "shown", progress=True)
    assert "2/2" in capsys.readouterr().err
