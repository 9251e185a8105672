#!/usr/bin/env python3
"""Names the lines that are wider than 100 columns, in the files given, and fails if there are any.

Exempt are tables: what stands between `clang-format off` and `clang-format on`, and the rows of a
Markdown table. So is what a Markdown page shows as code, in a fenced or an indented block, because
it is the output of a command.
"""

import sys

WIDEST = 100


def prose_lines(lines):
    """The lines of a Markdown page that are neither code nor rows of a table, with their numbers."""
    fenced = False
    for number, line in lines:
        if line.lstrip().startswith("```"):
            fenced = not fenced
        elif not fenced and not line.startswith(("|", "    ")):
            yield number, line


def code_lines(lines):
    """The lines that clang-format may lay out, with their numbers."""
    formatted = True
    for number, line in lines:
        if "clang-format off" in line:
            formatted = False
        elif "clang-format on" in line:
            formatted = True
        if formatted:
            yield number, line


def wide_lines(path):
    with open(path, encoding="utf-8") as file:
        lines = list(enumerate(file.read().splitlines(), 1))
    chosen = prose_lines(lines) if path.endswith(".md") else code_lines(lines)
    return [(number, len(line)) for number, line in chosen if len(line) > WIDEST]


def main(paths):
    found = 0
    for path in paths:
        for number, width in wide_lines(path):
            print(f"{path}:{number}: {width} columns, more than {WIDEST}")
            found += 1
    print(f"{len(paths)} files, {found} lines wider than {WIDEST} columns")
    return found > 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
