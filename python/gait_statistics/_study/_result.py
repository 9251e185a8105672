"""What a study leaves: files, read on request."""

from __future__ import annotations

from os import PathLike
from pathlib import Path
from typing import Any

import pyarrow as pa
import pyarrow.csv
import pyarrow.parquet

from .._tables import FrameKind, _library, frame_of
from ._tables import TABLES, keys_of_types, schema_of
from ._work import RECORD, read_record


def _in_pandas(table: pa.Table) -> Any:
    import pandas as pd

    types = {
        pa.int64(): pd.Int64Dtype(),
        pa.string(): pd.StringDtype(),
    }
    return table.to_pandas(types_mapper=types.get)


class Study:
    """A study that is complete: its tables, read from the files each time they are asked for.

    Args:
        out: the folder that :func:`study` or ``gait-study`` wrote.
        frame: the library whose frames the tables are: "pandas", "polars" or "pyarrow".

    Raises:
        ValueError: where the folder holds no complete study.

    >>> import tempfile, gait_statistics as gs
    >>> with tempfile.TemporaryDirectory() as out:
    ...     done = gs.study("examples/walks", out)
    ...     again = gs.Study(out, frame="pyarrow")
    ...     again.walks.num_rows == len(done.walks) == len(done)
    True
    """

    def __init__(self, out: str | PathLike[str], frame: FrameKind = "pandas") -> None:
        """Reads the record of the study, and no table."""
        self._out = Path(out)
        record = read_record(self._out / RECORD)
        if record is None:
            under_way = (self._out / ".study/plan.json").exists()
            found = "a study that is not complete" if under_way else "no study"
            raise ValueError(f"{self._out}: found {found}, expected the folder of a complete one")
        frame_of([], frame)
        self._was_complete = True
        self._record = record
        self._frame = frame

    @property
    def out(self) -> Path:
        """The folder of the tables."""
        return self._out

    @property
    def files(self) -> dict[str, Path]:
        """The file of each table, by the table's name."""
        ending = self._record["options"]["format"]
        return {name: self._out / f"{name}.{ending}" for name in TABLES}

    @property
    def left_out(self) -> int:
        """How many walks are not in the tables; :attr:`errors` says why."""
        return int(self._record["left_out"])

    @property
    def version(self) -> str:
        """The version of the library that computed the study."""
        return str(self._record["version"])

    def __len__(self) -> int:
        """How many walks the study is of, with those that are left out."""
        return int(self._record["walks"])

    @property
    def parameters(self) -> Any:
        """The statistics as a frame: a row for each walk, parameter and side."""
        return self._read("parameters")

    @property
    def parameters_wide(self) -> Any:
        """The statistics as a frame: a row for each walk, a column such as swing_right_mean."""
        return self._read("parameters_wide")

    @property
    def walks(self) -> Any:
        """The accounting, quality flags and findings as a frame: a row for each walk."""
        return self._read("walks")

    @property
    def errors(self) -> Any:
        """What is wrong with the walks that are left out, as a frame: a row for each message."""
        return self._read("errors")

    def _read(self, name: str) -> Any:
        table = self._arrow(name)
        if self._frame == "pandas":
            return _in_pandas(table)
        return table if self._frame == "pyarrow" else _library("polars").from_arrow(table)

    def _arrow(self, name: str) -> pa.Table:
        path = self.files[name]
        if path.suffix == ".parquet":
            return pa.parquet.read_table(path)
        keys = keys_of_types(self._record["keys"])
        schema = schema_of(name, keys, tuple(self._record["options"]["statistics"]))
        options = pa.csv.ConvertOptions(
            column_types=schema,
            null_values=[""],
            strings_can_be_null=True,
            quoted_strings_can_be_null=False,
        )
        return pa.csv.read_csv(path, convert_options=options)

    def summary(self) -> str:
        """How many walks are in the tables, and which are not, in a sentence."""
        sentence = f"{len(self) - self.left_out:,} of {len(self):,} walks in {self._out}"
        if not self.left_out:
            return sentence
        names = ", ".join(self._record["left_out_first"])
        more = ", ..." if self.left_out > len(self._record["left_out_first"]) else ""
        sentence += f"; {self.left_out:,} left out: {names}{more}"
        return f"{sentence} ({self.files['errors'].name} says why)"

    def __repr__(self) -> str:
        """The summary."""
        return f"<Study: {self.summary()}>"
