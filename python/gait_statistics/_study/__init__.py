"""Studies: the statistics of thousands of walks as tables in files.

It needs pyarrow and tqdm, which ``pip install 'gait-statistics[study]'`` brings along.
"""

from __future__ import annotations

try:
    import pyarrow as _pyarrow  # noqa: F401
    import tqdm as _tqdm  # noqa: F401
except ImportError as error:
    raise ImportError(f"{error}: pip install 'gait-statistics[study]'") from error

from ._result import Study
from ._study import study

__all__ = ["Study", "study"]

for _public in (Study, study):
    _public.__module__ = "gait_statistics"
