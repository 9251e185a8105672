"""Reads each table that gait-statistics writes as CSV in one line of pandas, and of R where there
is one, and turns it into one row a walk.

    csv_reads.py PROGRAM FOLDER...

Takes every walk below the folders. Ends with 77, which CTest counts as skipped, where there is no
Python package pandas (Debian: python3-pandas).
"""

import json
import pathlib
import shutil
import subprocess
import sys
import tempfile

try:
    import pandas as pd
except ModuleNotFoundError:
    print("skipped: no Python package pandas")
    sys.exit(77)

IN_R = """
arguments <- commandArgs(trailingOnly = TRUE)
parameters <- read.csv(arguments[1])
walks <- read.csv(arguments[2])
strides <- read.csv(arguments[3])
means <- reshape(parameters[c("walk", "parameter", "side", "mean")], direction = "wide",
                 idvar = "walk", timevar = c("parameter", "side"))
stopifnot(nrow(means) == nrow(walks), !anyDuplicated(walks$walk))
wide <- tapply(parameters$n, list(parameters$walk, paste(parameters$parameter, parameters$side)),
               sum)
stopifnot(nrow(wide) == nrow(walks), sum(!is.na(wide)) == nrow(parameters))
stopifnot(is.logical(strides$included), is.numeric(strides$gct_seconds))
counted <- tapply(strides$included, strides$walk, sum)[walks$walk]
recorded <- rowSums(walks[c("included_right", "included_left")], na.rm = TRUE)
stopifnot(counted == recorded)
"""


def check_in_pandas(files: dict[str, pathlib.Path], document: dict) -> None:
    parameters, walks, strides = (
        pd.read_csv(files[table], float_precision="round_trip")
        for table in ("parameters", "walks", "strides")
    )
    names = [walk["walk"] for walk in document["walks"]]
    wide = parameters.pivot(index="walk", columns=["parameter", "side"], values="n")
    assert sorted(wide.index) == sorted(names), wide
    assert wide.notna().sum().sum() == len(parameters), "a row is lost"
    means = parameters.pivot(index="walk", columns=["parameter", "side"], values="mean")
    figures = 0
    for walk in document["walks"]:
        for parameter in walk["parameters"].values():
            found = means.loc[walk["walk"], (parameter["parameter"], parameter["side"])]
            assert pd.isna(found) if parameter["mean"] is None else found == parameter["mean"]
            figures += 1
    assert not parameters[["unit", "side", "analysed", "sampling_rate_hz"]].isna().any().any()
    assert list(walks["walk"]) == names
    assert strides["included"].dtype == bool
    counted = strides[strides["included"]].groupby("walk").size()
    recorded = walks.set_index("walk")[["included_right", "included_left"]].sum(axis=1)
    assert (counted == recorded[counted.index]).all()
    print(
        f"pandas {pd.__version__}: {len(parameters)}, {len(walks)} and {len(strides)} rows, "
        f"{figures} means to the bit"
    )


def main(program: str, *folders: str) -> None:
    def output(*options: str) -> str:
        return subprocess.run(
            [program, "--recursive", *options, *folders],
            capture_output=True,
            check=True,
            encoding="utf-8",
        ).stdout

    with tempfile.TemporaryDirectory(prefix="gait_statistics_") as name:
        files = {
            table: pathlib.Path(name) / f"{table}.csv"
            for table in ("parameters", "walks", "strides")
        }
        for table, file in files.items():
            file.write_text(output("--table", table), encoding="utf-8")
        check_in_pandas(files, json.loads(output("--format", "json")))
        if shutil.which("Rscript") is None:
            print("without R: no Rscript")
            return
        script = pathlib.Path(name) / "read.R"
        script.write_text(IN_R, encoding="utf-8")
        subprocess.run(["Rscript", "--vanilla", script, *files.values()], check=True)
        print("R reads the same")


if __name__ == "__main__":
    main(*sys.argv[1:])
