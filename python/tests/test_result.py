"""What comes out: plain data, the same in every thread and process."""

from __future__ import annotations

import copy
import gc
import html.parser
import pickle
import threading
import time
import warnings
from collections.abc import Callable, Sequence
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path
from typing import Any

import numpy as np
import pandas as pd
import pytest
from conftest import strides_of_one_foot

import gait_statistics as gs
from gait_statistics import _core, _result

TURN = "examples/walks/two_feet_turn"


def test_a_result_is_the_same_after_pickling(folder: Path) -> None:
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", gs.WalkWarning)
        result = gs.analyse(gs.read_walk(folder))
    for again in (pickle.loads(pickle.dumps(result)), copy.deepcopy(result)):
        for table in ("parameters", "strides", "walks"):
            pd.testing.assert_frame_equal(
                getattr(again, table), getattr(result, table), check_exact=True
            )
        for part in ("name", "info", "quality_flags", "findings", "notes", "summary", "warnings"):
            assert getattr(again, part) == getattr(result, part)
        assert again.to_json() == result.to_json()


def test_a_pickled_result_of_another_version_keeps_its_figures_and_writes_no_report() -> None:
    state = gs.analyse(gs.read_walk(TURN)).__getstate__() | {"version": "0.9.0"}
    old = gs.Result.__new__(gs.Result)
    old.__setstate__(state)
    assert old.info.included_count == 31
    with pytest.raises(RuntimeError, match=r"found a result of gait_statistics 0\.9\.0"):
        old.to_json()


def test_a_walk_is_the_same_after_pickling(folder: Path) -> None:
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", gs.WalkWarning)
        walk = gs.read_walk(folder)
        again = pickle.loads(pickle.dumps(walk))
        assert repr(again) == repr(walk)
        assert again.samples == walk.samples
        assert gs.analyse(again).to_json() == gs.analyse(walk).to_json()


def test_a_result_outlives_its_walk() -> None:
    walk = gs.read_walk(TURN)
    result = gs.analyse(walk)
    expected = result.to_json()
    del walk
    gc.collect()
    assert result.to_json() == expected


def test_frames_are_independent_of_the_result() -> None:
    result = gs.analyse(gs.read_walk(TURN))
    frame = result.parameters
    frame["mean"] = 0.0
    assert (result.parameters["mean"] != 0.0).any()


def test_the_fields_of_info_are_those_of_the_record() -> None:
    analysis = gs.analyse(gs.read_walk(TURN))._whole()
    assert list(gs.Info.__dataclass_fields__) == list(analysis.info())


def test_every_quality_flag_has_a_name() -> None:
    strides = strides_of_one_foot(speed=3.0)
    result = gs.analyse(gs.Walk(strides, 100), settings_value=50.0)
    raised = gs.QualityFlag.SETTING | gs.QualityFlag.FEW_CYCLES | gs.QualityFlag.SPEED
    assert result.quality_flags == raised
    assert len(result.quality_flags_in_words) == 3


def test_a_finding_is_a_sentence_and_names_the_strides() -> None:
    result = gs.analyse(gs.Walk(strides_of_one_foot(swing=[38.0, 150.0, 39.0]), 100))
    (finding,) = (found for found in result.findings if found.check == "swing_bounds")
    assert finding.places == (gs.Place("left", 1, None),)
    assert "left 1" in str(finding)


def test_the_summary_is_short_and_brings_no_style() -> None:
    strides = strides_of_one_foot()
    result = gs.analyse(gs.Walk(strides, 100, name="<b>&"))
    html = result._repr_html_()
    assert "<style" not in html
    assert "style=" not in html
    assert "&lt;b&gt;&amp;" in html
    assert repr(result).startswith("Walk <b>& (left foot)\nIn the statistics: 3 of 3 left strides")


def test_json_is_written_to_a_file(tmp_path: Path) -> None:
    result = gs.analyse(gs.read_walk(TURN))
    result.to_json(tmp_path / "walk.json")
    assert (tmp_path / "walk.json").read_text(encoding="utf-8") == result.to_json()


def test_a_report_that_cannot_be_written_is_an_os_error(tmp_path: Path) -> None:
    with pytest.raises(OSError, match="no_folder"):
        gs.analyse(gs.read_walk(TURN)).to_html(tmp_path / "no_folder/report.html")


class FramesOfAPage(html.parser.HTMLParser):
    """The elements of a notebook's output, and the page that is in a frame of it."""

    def __init__(self, text: str) -> None:
        super().__init__()
        self.tags: list[str] = []
        self.page = ""
        self.feed(text)

    def handle_starttag(self, tag: str, attrs: list[tuple[str, str | None]]) -> None:
        self.tags.append(tag)
        self.page = dict(attrs).get("srcdoc") or ""


def test_a_notebook_shows_the_page_in_a_frame_that_keeps_its_style() -> None:
    result = gs.analyse(gs.read_walk(TURN))
    shown = FramesOfAPage(result.show()._repr_html_())
    assert shown.tags == ["iframe"]
    assert shown.page == result.to_html()


def test_the_lock_is_released_while_a_walk_is_analysed() -> None:
    walk = long_walk(8000)
    thread = threading.Thread(target=gs.analyse, args=(walk,))
    turns = 0
    thread.start()
    while thread.is_alive():
        turns += 1
        time.sleep(0.001)
    # With the lock held, this thread would have had a turn or two.
    assert turns > 20


def walk_with(durations: Sequence[float]) -> gs.Walk:
    first = 100 * np.arange(len(durations))
    strides = {"first_sample": first, "last_sample": first + 99, "gct": durations}
    return gs.Walk(pd.DataFrame({"foot": "left", **strides}), 100)


def long_walk(strides: int) -> gs.Walk:
    return walk_with([1.0 + stride % 7 / 100 for stride in range(strides)])


def test_threads_compute_the_same() -> None:
    walks = [gs.read_walk(TURN), *(long_walk(count) for count in (30, 300, 1000))] * 4
    expected = [gs.analyse(walk).to_json() for walk in walks]
    with ThreadPoolExecutor(8) as pool:
        assert [result.to_json() for result in pool.map(gs.analyse, walks)] == expected


def killer_of_the_sort(length: int) -> list[float]:
    """An order on which the sort of a sample is as deep as there are values."""
    # The value at each place is decided when the sort first compares it: the pivot is always the
    # smallest value that is left.
    order = list(range(length))
    values = [0.0] * length
    for value, left in enumerate(range(length)):
        middle = (left + length - 1) // 2
        values[order[middle]] = float(value)
        order[left], order[middle] = order[middle], order[left]
    return values


def in_a_thread_with_a_small_stack(run: Callable[[], Any]) -> Any:
    found = []
    before = threading.stack_size(256 * 1024)
    try:
        thread = threading.Thread(target=lambda: found.append(run()))
        thread.start()
    finally:
        threading.stack_size(before)
    thread.join()
    return found[0]


def test_a_thread_with_a_small_stack_computes_what_the_main_thread_does() -> None:
    values = killer_of_the_sort(5000)
    walk = walk_with([1.0 + value / 1e6 for value in values])

    def everything() -> Any:
        result = gs.analyse(walk)
        return gs.percentile(values, [25, 75]).tolist(), result.to_json(), result.to_html()

    assert in_a_thread_with_a_small_stack(everything) == everything()


def test_percentiles_are_those_of_definition_5() -> None:
    random = np.random.default_rng(1)
    for count in (1, 2, 3, 10, 11, 100, 1001):
        values = random.normal(size=count)
        asked = [0.0, 5.0, 25.0, 33.3, 50.0, 75.0, 95.0, 100.0]
        np.testing.assert_allclose(
            gs.percentile(values, asked), np.percentile(values, asked, method="hazen"), rtol=1e-12
        )


def test_a_percentile_of_one_percentage_is_a_number_and_missing_values_are_left_out() -> None:
    assert gs.percentile([3.0, float("nan"), 1.0], 50) == 2.0
    assert gs.percentile(pd.Series([3.0, None, 1.0]), 50) == 2.0


@pytest.mark.parametrize(
    ("values", "asked", "message"),
    [
        ([], 50, "values: found none"),
        ([float("nan")], 50, "values: found none"),
        ([1.0, float("inf")], 50, "values: found an infinite one"),
        ([1.0], 101, "percentages: found one out of range"),
        ([1.0], float("nan"), "percentages: found one out of range"),
        ([[1.0]], 50, "more than one dimension"),
    ],
)
def test_percentiles_that_are_none_are_refused(values: Any, asked: float, message: str) -> None:
    with pytest.raises(ValueError, match=message):
        gs.percentile(values, asked)


def test_the_lists_are_those_of_the_program() -> None:
    assert gs.parameters()["key"].tolist()[:2] == ["gct", "swing"]
    assert set(gs.checks()["check"]) >= {"swing_bounds"}
    assert gs.__version__ == _core.version


def test_a_frame_of_no_known_library_is_refused() -> None:
    with pytest.raises(ValueError, match="frame: found 'excel'"):
        gs.read_walk(TURN, frame="excel")  # type: ignore[arg-type]


def test_every_part_of_a_result_is_stored() -> None:
    assert set(gs.analyse(gs.read_walk(TURN)).__getstate__()["parts"]) == set(_result._PARTS)
