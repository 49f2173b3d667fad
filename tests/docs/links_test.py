"""Every relative link in this repository's Markdown leads somewhere: to a file that git knows, and to a heading in it where the
link names one.

usage: links_test.py [UNITTEST ARGUMENT...]
"""

import functools
import pathlib
import subprocess
import unittest
import urllib.parse

from markdown_it import MarkdownIt
from mdit_py_plugins.anchors import anchors_plugin

SOURCE = pathlib.Path(__file__).resolve().parents[2]


def known_files():
    """What git knows, and what it would take in: names from the top of the repository."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=SOURCE, check=True,
                            capture_output=True).stdout.decode()
    return {name for name in listed.split("\0") if name and (SOURCE / name).is_file()}


def with_folders(files):
    return files | {parent.as_posix() for name in files for parent in pathlib.PurePosixPath(name).parents}


def parsed(text):
    """The page's tokens, those inside of paragraphs too. Headings have the ids that GitHub gives them."""
    tokens = MarkdownIt("commonmark").enable("table").use(anchors_plugin, max_level=6).parse(text)
    return [inner for token in tokens for inner in (token, *(token.children or []))]


def links(text):
    for token in parsed(text):
        target = token.attrGet("href") or token.attrGet("src")
        if target:
            yield target


def anchors(text):
    return {token.attrGet("id") for token in parsed(text) if token.type == "heading_open"}


@functools.cache
def anchors_of(name):
    return anchors((SOURCE / name).read_text(encoding="utf-8"))


def resolved(page, path):
    """The file that a link on this page names, from the top of the repository; a page itself for a mere anchor."""
    if not path:
        return page
    target = (SOURCE / page).parent.joinpath(urllib.parse.unquote(path))
    return pathlib.Path(*target.parts).resolve().relative_to(SOURCE).as_posix()


def fault(page, link, files):
    """What is wrong with a link, or None."""
    parts = urllib.parse.urlsplit(link)
    if parts.scheme or parts.netloc:
        return None
    try:
        target = resolved(page, parts.path)
    except ValueError:
        return f"{page}: {link} leads out of the repository"
    if target not in files:
        return f"{page}: {link} leads to {target}, which isn't there"
    if parts.fragment and target.endswith(".md") and parts.fragment not in anchors_of(target):
        return f"{page}: {link} names a heading that {target} hasn't got"
    return None


class Links(unittest.TestCase):
    def test_every_relative_link_leads_to_a_file_and_its_anchor_to_a_heading(self):
        files = with_folders(known_files())
        pages = sorted(name for name in files if name.endswith(".md"))
        followed = [(page, link) for page in pages for link in links((SOURCE / page).read_text(encoding="utf-8"))]
        self.assertGreater(len(pages), 60)
        self.assertGreater(len(followed), 150)
        faults = [fault(page, link, files) for page, link in followed]
        self.assertEqual([text for text in faults if text], [])

    def test_a_link_that_leads_nowhere_is_told(self):
        files = with_folders(known_files())
        self.assertEqual(fault("docs/outputs.md", "nowhere.md", files),
                         "docs/outputs.md: nowhere.md leads to docs/nowhere.md, which isn't there")
        self.assertIn("hasn't got", fault("docs/outputs.md", "command-line.md#nowhere", files))
        self.assertIn("hasn't got", fault("docs/outputs.md", "#nowhere", files))
        self.assertIn("leads out", fault("README.md", "../elsewhere.md", files))
        self.assertIn("isn't there", fault("README.md", "docs/Outputs.md", files), "letter case counts")
        for good in ("command-line.md#exit-codes", "#formats", "schemas/", "../README.md", "https://example.com/none"):
            self.assertIsNone(fault("docs/outputs.md", good, files), good)

    def test_code_holds_no_links_and_headings_of_one_name_are_told_apart(self):
        text = ("# A `b` c: d?\n\n`[no](none.md)` [yes](a%20b.md) ![picture](c.png)\n\n## Twice\n\n## Twice\n\n"
                "```\n[no](none.md)\n```\n")
        self.assertEqual(list(links(text)), ["a%20b.md", "c.png"])
        self.assertEqual(anchors(text), {"a-b-c-d", "twice", "twice-1"})


if __name__ == "__main__":
    unittest.main()
