"""What docs/versioning.md promises, as far as it can be counted, is what the code and the other pages have.

usage: versioning_test.py [UNITTEST ARGUMENT...]
"""

import json
import pathlib
import re
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]


def text(name):
    return (SOURCE / name).read_text(encoding="utf-8")


def rows(name, heading):
    """The cells of the table on this page whose first column has this heading; the last one is empty where there is none."""
    found = re.search(rf"^\| *{re.escape(heading)} *\|.*\n\|[-| ]+\|\n((?:\|.*\n)+)", text(name), re.MULTILINE)
    return [[cell.strip() for cell in line.strip("|").split("|")] for line in found[1].splitlines()] if found else []


def codes(name, heading):
    return [int(row[0]) for row in rows(name, heading)]


def schema(name):
    return json.loads(text(f"docs/schemas/{name}.schema.json"))


def members(whole):
    """The members of the one object that a schema is about, in their order."""
    if "properties" in whole:
        return list(whole["properties"])
    (definition,) = whole["$defs"].values()
    return list(definition["properties"])


class Exports(unittest.TestCase):
    promised = [row[0].strip("`") for row in rows("docs/versioning.md", "Export")]

    def test_the_page_names_what_the_library_exports(self):
        exported = text("src/core/Tarnwick.def").split("EXPORTS")[1].split()
        self.assertEqual(self.promised, exported)

    def test_the_page_names_what_the_header_declares(self):
        declared = re.findall(r"^TARNWICK_API [\w ]+?(\w+)\(", text("include/tarnwick/tarnwick.h"), re.MULTILINE)
        self.assertEqual(self.promised, declared)


class Members(unittest.TestCase):
    promised = {re.match(r"\[(.+?)\]", row[0])[1]: re.findall(r"`(\w+)`", row[1]) for row in rows("docs/versioning.md", "Schema")}

    def test_each_schema_has_the_promised_members_in_their_order(self):
        self.assertEqual(self.promised, {name: members(schema(name)) for name in self.promised})

    def test_every_schema_of_the_library_is_promised(self):
        of_the_library = [re.match(r"\[(.+?)\]", row[0])[1] for row in rows("docs/outputs.md", "Schema") if row[1]]
        self.assertEqual(sorted(self.promised), sorted(of_the_library))

    def test_the_header_tells_of_the_same_members(self):
        blocks = re.findall(r"members, in this order.*?\*/", text("include/tarnwick/tarnwick.h"), re.DOTALL)
        described = [re.findall(r'"(\w+)"', block) for block in blocks]
        for name, told in zip(("library-scan", "game-details", "all-applications"), described, strict=True):
            # Which member an answer has alone is told behind a first naming.
            told = [member for member in dict.fromkeys(told) if member in self.promised[name]]
            self.assertEqual(sorted(told), sorted(self.promised[name]), name)


class Schemas(unittest.TestCase):
    def test_the_page_of_outputs_lists_every_schema(self):
        listed = [re.match(r"\[(.+?)\]\(schemas/\1\.schema\.json\)", row[0])[1] for row in rows("docs/outputs.md", "Schema")]
        there = [path.name.removesuffix(".schema.json") for path in (SOURCE / "docs/schemas").glob("*.json")]
        self.assertEqual(sorted(listed), sorted(there))

    def test_a_schema_allows_no_members_that_it_does_not_name(self):
        for path in sorted((SOURCE / "docs/schemas").glob("*.json")):
            whole = json.loads(path.read_text(encoding="utf-8"))
            for part in (whole, *whole.get("$defs", {}).values()):
                if "properties" in part:
                    self.assertIs(part.get("additionalProperties"), False, path.name)


class ExitCodes(unittest.TestCase):
    def test_the_pages_tell_the_programs_codes(self):
        defined = [int(code) for code in re.findall(r"^inline constexpr int kExit\w+ = (\d+);", text("host/options.h"), re.MULTILINE)]
        self.assertTrue(defined)
        self.assertEqual(codes("docs/versioning.md", "Exit code"), defined)
        self.assertEqual(codes("docs/outputs.md", "Exit code"), defined)
        self.assertEqual(codes("docs/command-line.md", "code"), defined)

    def test_the_program_names_its_codes(self):
        """No command ends with a bare number, which this page's table wouldn't know of."""
        units = [SOURCE / "host/main.cpp", SOURCE / "host/failure.cpp", *(SOURCE / "host").rglob("command_*.cpp")]
        self.assertGreater(len(units), 10)
        bare = [unit.name for unit in units
                if re.search(r"\b(return|_?[Ee]xit(Process)?\(|quick_exit\()\s*-?\d", unit.read_text(encoding="utf-8"))]
        self.assertEqual(bare, [])


if __name__ == "__main__":
    unittest.main()
