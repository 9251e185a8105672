"""How Sphinx makes the site of the pages that scripts/docs lays out."""

import os
import re
from pathlib import Path

sources = Path(os.environ["GAIT_SOURCES"])
header = (sources / "include/gait/version.h").read_text(encoding="utf-8")

project = "gait_statistics"
author = "the gait_statistics developers"
copyright = f"2026, {author}"
version = release = ".".join(re.findall(r"VERSION_(?:MAJOR|MINOR|PATCH) (\d+)", header))
language = "en"

extensions = [
    "autoapi.extension",
    "breathe",
    "myst_parser",
    "sphinx.ext.napoleon",
]
exclude_patterns = ["examples/walks/*/README.md"]

myst_heading_anchors = 4

breathe_projects = {"gait": os.environ["GAIT_DOXYGEN_XML"]}
breathe_default_project = "gait"
cpp_id_attributes = ["GAIT_STATISTICS_EXPORT"]

autoapi_dirs = [str(sources / "python/gait_statistics")]
autoapi_root = "reference/python"
autoapi_add_toctree_entry = False
autoapi_options = ["members", "imported-members", "show-inheritance"]
autoapi_member_order = "groupwise"

html_theme = "furo"
html_title = f"gait_statistics {version}"
html_extra_path = ["extra"]

# Types of other projects, whose references are not linked, and names that modules keep to
# themselves.
nitpick_ignore_regex = [
    ("py:.*", r"(collections|enum|numpy|os)\..*"),
    ("py:class", r"gait_statistics\._.*|Foot|Samples"),
]


def keep_first_line(app, what, name, obj, options, lines):
    """napoleon takes what stands before a colon in the first line of a property for its type. A
    comment without text has none.
    """
    if what in ("attribute", "property"):
        lines[:0] = ["..", ""]


def setup(app):
    app.connect("autodoc-process-docstring", keep_first_line, priority=400)
