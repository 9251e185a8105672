#!/usr/bin/env python3
"""Fails when a link of a Markdown page below FOLDER leads to a file that is not there."""

import pathlib
import re
import sys

folder = pathlib.Path(sys.argv[1])
pages = sorted(folder.rglob("*.md"))
lost = [
    f"{page}: {target}"
    for page in pages
    for target in re.findall(r"\]\(([^)#\s]+)[^)]*\)", page.read_text(encoding="utf-8"))
    if not target.startswith("http") and not (page.parent / target).exists()
]
print(f"{len(pages)} pages, {len(lost)} links that lead nowhere", *lost, sep="\n")
sys.exit(bool(lost) or not pages)
