"""What gait-statistics writes as pages: files, ids, hashes, and what it refuses.

Usage: html_report_test.py PROGRAM
"""

import base64
import hashlib
import html.parser
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

program = sys.argv.pop(1)
walks = pathlib.Path(__file__).parent.parent.parent / "examples" / "walks"


def run(*arguments: str | pathlib.Path) -> subprocess.CompletedProcess[str]:
    return subprocess.run([program, *map(str, arguments)], capture_output=True, text=True)


class Page(html.parser.HTMLParser):
    """The ids, the references and the texts of style and script of a page."""

    def __init__(self, text: str) -> None:
        super().__init__()
        self.ids: list[str] = []
        self.references: list[str] = []
        self.policy = ""
        self.texts: dict[str, str] = {}
        self._open = ""
        self.feed(text)

    def handle_starttag(self, tag: str, attributes: list[tuple[str, str | None]]) -> None:
        given = dict(attributes)
        self._open = "data" if given.get("type") == "application/json" else tag
        self.ids += [given["id"] or ""] if "id" in given else []
        self.references += [given[name] or "" for name in ("href", "src") if name in given]
        if given.get("http-equiv") == "Content-Security-Policy":
            self.policy = given["content"] or ""

    def handle_data(self, data: str) -> None:
        self.texts[self._open] = self.texts.get(self._open, "") + data

    def handle_endtag(self, tag: str) -> None:
        self._open = ""


def hash_of(text: str) -> str:
    digest = hashlib.sha256(text.encode()).digest()
    return f"'sha256-{base64.b64encode(digest).decode()}'"


class Pages(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def page(self, *given: pathlib.Path) -> Page:
        file = self.folder / "page.html"
        result = run("-o", file, *given)
        self.assertEqual((result.returncode, result.stdout), (0, ""), result.stderr)
        return Page(file.read_text())

    def test_needs_no_other_file(self) -> None:
        page = self.page(walks / "two_feet_turn")
        for reference in page.references:
            self.assertTrue(reference.startswith("#"), reference)
            self.assertIn(reference[1:], page.ids)

    def test_allows_its_own_style_and_script_alone(self) -> None:
        page = self.page(walks / "two_feet_turn")
        self.assertEqual(
            page.policy,
            f"default-src 'none'; style-src {hash_of(page.texts['style'])}; "
            f"script-src {hash_of(page.texts['script'])}; base-uri 'none'; form-action 'none'",
        )

    def test_gives_every_id_once(self) -> None:
        page = self.page(walks / "two_feet_turn", walks / "one_foot_short")
        self.assertEqual(len(page.ids), len(set(page.ids)))
        self.assertIn("walk-2", page.ids)

    def test_is_written_to_the_standard_output_as_well(self) -> None:
        result = run("--format", "html", walks / "one_foot_short")
        self.assertTrue(result.stdout.startswith("<!DOCTYPE html>"))
        self.assertEqual(
            result.stdout, run("-o", "-", "--format", "html", walks / "one_foot_short").stdout
        )

    def test_takes_up_to_a_hundred_walks(self) -> None:
        names = [self.folder / f"walk_{i}" for i in range(101)]
        for name in names:
            shutil.copytree(walks / "one_foot_short", name)
        self.assertEqual(
            len(re.findall("<article", run("--format", "html", *names[:100]).stdout)), 100
        )
        result = run("--format", "html", *names)
        self.assertEqual(result.returncode, 2)
        self.assertEqual(
            result.stderr,
            "gait-statistics: 101 walks in one page, expected up to 100; -o FOLDER/ writes a page "
            "for each\n",
        )

    def test_fills_a_folder(self) -> None:
        pages = self.folder / "new" / "pages"
        result = run("-o", f"{pages}/", walks / "two_feet_turn", walks / "one_foot_short")
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
        self.assertEqual(
            {file.name for file in pages.iterdir()},
            {"index.html", "two_feet_turn.html", "one_foot_short.html"},
        )
        index = Page((pages / "index.html").read_text())
        self.assertEqual(set(index.references), {"two_feet_turn.html", "one_foot_short.html"})

    def test_makes_no_folder_without_a_walk(self) -> None:
        pages = self.folder / "pages"
        self.assertEqual(run("-o", f"{pages}/", self.folder / "absent").returncode, 1)
        self.assertFalse(pages.exists())

    def test_refuses_a_folder_for_anything_else(self) -> None:
        result = run("-o", f"{self.folder}/", "--format", "json", walks / "two_feet_turn")
        self.assertEqual(result.returncode, 2)
        self.assertIn(
            "is a folder, which takes pages, expected --format html or a file", result.stderr
        )

    def test_refuses_a_list_as_a_page(self) -> None:
        for option in ("--list-parameters", "--list-checks"):
            result = run(option, "--format", "html")
            self.assertEqual(result.returncode, 2)
            self.assertIn("a list has no page", result.stderr)


if __name__ == "__main__":
    unittest.main()
