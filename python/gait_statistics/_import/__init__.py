"""Tables of any form as walk folders, by a map that says which column is which."""

from ._walks import import_tables

__all__ = ["import_tables"]
