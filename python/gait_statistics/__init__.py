"""The statistics of recorded walks: cycle accounting, gait parameters, left and right compared.

>>> import gait_statistics as gs
>>> walk = gs.read_walk("examples/walks/two_feet_turn")
>>> result = gs.analyse(walk)
>>> table = result.parameters
>>> swing = table[(table["parameter"] == "swing") & (table["side"] == "right")]
>>> round(swing["mean"].item(), 2)
38.55
"""

from importlib import import_module
from typing import TYPE_CHECKING, Any

from ._core import version as __version__
from ._errors import InputError, WalkError, WalkWarning
from ._lists import checks, parameters, percentile
from ._result import Finding, Info, Note, Page, Place, QualityFlag, Result, analyse
from ._walk import Walk, pair_feet, read_walk, write_walk

if TYPE_CHECKING:
    from ._import._walks import import_tables as import_tables
    from ._study import Study as Study
    from ._study import study as study

# Without what takes an extra's packages: "import *" must work without them.
__all__ = [
    "Finding",
    "Info",
    "InputError",
    "Note",
    "Page",
    "Place",
    "QualityFlag",
    "Result",
    "Walk",
    "WalkError",
    "WalkWarning",
    "__version__",
    "analyse",
    "checks",
    "pair_feet",
    "parameters",
    "percentile",
    "read_walk",
    "write_walk",
]

# Messages and help name them as users import them.
for _public in (Finding, Info, InputError, Note, Page, Place, QualityFlag, Result, Walk):
    _public.__module__ = __name__
for _public_error in (WalkError, WalkWarning):
    _public_error.__module__ = __name__


# Where what takes an extra's packages lies.
_MODULES = {"Study": "_study", "import_tables": "_import._walks", "study": "_study"}


def __getattr__(name: str) -> Any:
    """Imports what takes an extra's packages when it is first used."""
    if name in _MODULES:
        return getattr(import_module(f".{_MODULES[name]}", __name__), name)
    raise AttributeError(f"module {__name__!r} has no attribute {name!r}")
