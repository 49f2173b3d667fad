"""Every JSON that the library and the program write, tried on the schemas in docs/schemas; and the program's other
lists, which must hold the same.

usage: schema_test.py TARNWICK.EXE DESKTOP.EXE ANSWERS.EXE
"""

import csv
import copy
import io
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time
import unittest

import jsonschema

SOURCE = pathlib.Path(__file__).resolve().parents[2]
SCHEMAS = SOURCE / "docs" / "schemas"
SAMPLE = SOURCE / "desktop" / "samples" / "sample-desktop.json"
CATALOGUE = r"C:\TarnwickDemo\MasterGameList.xml"
EXECUTABLE = r"C:\Program Files\Fernpad\fernpad.exe"
REQUEST = [{"name": "Mine", "exeName": "fernpad.exe", "exePath": "bin"}, {"exeName": "mail.exe"}]
FAULTY_CATALOGUE = """<A>
<GameSignature><DisplayName>Wren</DisplayName><GameGUID>{7A11D3C0-0000-4000-8000-000000000001}</GameGUID></GameSignature>
<GameSignature><SourceEx>GOG Galaxy</SourceEx><DisplayName>Fernpad</DisplayName></GameSignature>
<GameSignature><Wings>2</Wings><GameGUID>7A11D3C0-0000-4000-8000-000000000002</GameGUID></GameSignature>
</A>
"""
CLEAN_CATALOGUE = ("<A><GameSignature><DefaultExe>wren.exe</DefaultExe><DefaultFolder>C:\\Games\\Wren</DefaultFolder>"
                   "<DisplayName>Wren</DisplayName></GameSignature></A>\n")
WINE = [] if os.name == "nt" else ["wine"]

TARNWICK = DESKTOP = ANSWERS = None
FOLDER = None


def windows_text(argument):
    """An argument for a Windows program: Wine shows this machine's root as drive Z."""
    if isinstance(argument, pathlib.PurePosixPath):
        return "Z:" + str(argument).replace("/", "\\")
    return str(argument)


def start(program, *arguments):
    # Into files: the end of a pipe would wait for processes that Wine starts on the side, and which stay.
    command = [*WINE, program, *map(windows_text, arguments)]
    with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
        code = subprocess.run(command, stdout=output, stderr=errors, check=False, timeout=120).returncode
        output.seek(0)
        errors.seek(0)
        return subprocess.CompletedProcess(command, code, output.read(), errors.read())


def tarnwick(*arguments):
    result = start(TARNWICK, *arguments)
    if result.returncode != 0:
        raise AssertionError(f"tarnwick {arguments} ended with {result.returncode}: {result.stderr.decode()}")
    return result.stdout.decode("utf-8")


def schema(name):
    return json.loads((SCHEMAS / f"{name}.schema.json").read_text(encoding="utf-8"))


def item_schema(name):
    """What one line of a list is: the schema of the list's items."""
    whole = schema(name)
    return {"$defs": whole["$defs"], **whole["items"]}


def check(value, its_schema):
    jsonschema.Draft202012Validator(its_schema).validate(value)


def setUpModule():
    global FOLDER
    FOLDER = tempfile.TemporaryDirectory()
    built = start(DESKTOP, "build", SAMPLE, "--state", pathlib.Path(FOLDER.name) / "state.json")
    if built.returncode != 0:
        FOLDER.cleanup()
        raise RuntimeError(built.stderr.decode())


def tearDownModule():
    start(DESKTOP, "remove", "--state", pathlib.Path(FOLDER.name) / "state.json")
    FOLDER.cleanup()


def request_file():
    path = pathlib.Path(FOLDER.name) / "request.json"
    path.write_text(json.dumps(REQUEST), encoding="utf-8")
    return path


class Schemas(unittest.TestCase):
    def test_each_is_a_schema(self):
        paths = list(SCHEMAS.glob("*.json"))
        self.assertGreaterEqual(len(paths), 7)
        for path in paths:
            jsonschema.Draft202012Validator.check_schema(json.loads(path.read_text(encoding="utf-8")))

    def test_each_object_is_closed_and_each_member_described(self):
        for path in SCHEMAS.glob("*.json"):
            for described in objects_with_properties(json.loads(path.read_text(encoding="utf-8"))):
                self.assertIs(described.get("additionalProperties"), False, path.name)
                for name, member in described["properties"].items():
                    self.assertTrue(member.get("description"), f"{path.name}: {name}")

    def test_the_request_that_the_tests_send_fits(self):
        check(REQUEST, schema("find-request"))
        for spoilt in ({"name": "no exeName"}, {"exeName": ""}, {"exeName": "a", "other": 1}, {"exeName": 'a"'}):
            with self.assertRaises(jsonschema.ValidationError):
                check([spoilt], schema("find-request"))


def objects_with_properties(node):
    if isinstance(node, dict):
        if "properties" in node:
            yield node
        node = list(node.values())
    if isinstance(node, list):
        for part in node:
            yield from objects_with_properties(part)


class Library(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(FOLDER.name) / "answers"
        cls.folder.mkdir()
        result = start(ANSWERS, CATALOGUE, EXECUTABLE, request_file(), cls.folder)
        if result.returncode != 0:
            raise RuntimeError(f"{ANSWERS} ended with {result.returncode}: {result.stderr.decode()}")

    def answer(self, name):
        return json.loads((self.folder / f"{name}.json").read_text(encoding="utf-8"))

    def test_scan(self):
        games = self.answer("scan")
        check(games, schema("library-scan"))
        self.assertGreater(len(games), 30)
        refuses_spoilt(self, games, schema("library-scan"))

    def test_details(self):
        details = self.answer("details")
        check(details, schema("game-details"))
        self.assertEqual(details["exe"], "fernpad.exe")
        check(self.answer("details-none"), schema("game-details"))
        refuses_spoilt(self, details, schema("game-details"))

    def test_applications(self):
        page = self.answer("apps-page")
        check(page, schema("applications"))
        self.assertEqual(len(page), 5)
        self.assertEqual(self.answer("apps-none"), [])
        every = self.answer("apps-all")
        check(every, schema("all-applications"))
        self.assertGreater(len(every), 5)
        refuses_spoilt(self, page, schema("applications"))
        refuses_spoilt(self, every, schema("all-applications"))

    def test_lookups(self):
        found = self.answer("find")
        check(found, schema("applications"))
        self.assertEqual([game["name"] for game in found], ["Mine", "Harbour Mail \u2014 \u041f\u043e\u0447\u0442\u0430"])
        self.assertEqual(self.answer("find-by-file"), found)


def spoilt_forms(value):
    """The value with one thing wrong in it: for each member of an object, missing and of another type; and one
    more member. Of a list only the first item is spoilt."""
    if isinstance(value, list):
        for spoilt in spoilt_forms(value[0]):
            yield [spoilt, *value[1:]]
        return
    for name in value:
        missing = copy.deepcopy(value)
        del missing[name]
        yield missing
        # No member of any schema may be this.
        yield {**value, name: {"unheardOf": None}}
    yield {**value, "unheardOf": ""}


def refuses_spoilt(test, value, its_schema):
    count = 0
    for spoilt in spoilt_forms(value):
        count += 1
        with test.assertRaises(jsonschema.ValidationError, msg=str(spoilt)[:200]):
            check(spoilt, its_schema)
    test.assertGreater(count, 2)


def cell(value):
    """A value as the program's comma-separated values hold it: what could be run as a formula has a mark in front."""
    return "'" + value if isinstance(value, str) and value[:1] in tuple("=+-@\t\r") else str(value)


class Program(unittest.TestCase):
    def check_list(self, name, *command, lines=None):
        """The list in every format: JSON fits its schema, and the others hold the same rows. Returns the rows.
        `lines` are the schema and its definition of lines that tell of their origin."""
        text = tarnwick(*command, "--format", "json")
        rows = json.loads(text)
        self.assertEqual(text.count("\n"), 1)
        check(rows, schema(name))
        self.assertGreater(len(rows), 0)
        if lines:
            self.check_fleet_lines(*lines, rows, tarnwick(*command, "--format", "ndjson"))
        else:
            self.check_lines(name, rows, tarnwick(*command, "--format", "ndjson"))
        self.check_cells(name, rows, tarnwick(*command, "--format", "csv"))
        refuses_spoilt(self, rows, schema(name))
        return rows

    def check_lines(self, name, rows, text):
        self.assertTrue(text.endswith("\n"))
        lines = [json.loads(line) for line in text.split("\n")[:-1]]
        for line in lines:
            check(line, item_schema(name))
        self.assertEqual(lines, rows)
        self.assertEqual([list(line) for line in lines], [list(row) for row in rows])
        refuses_spoilt(self, lines[0], item_schema(name))

    def check_fleet_lines(self, name, definition, rows, text):
        """Each line holds a row, without its icon, and its origin behind; the last one is the end."""
        *lines, end = [json.loads(line) for line in text.split("\n")[:-1]]
        for line in [*lines, end]:
            check(line, schema(name))
        bare = [{**row, "icon": ""} for row in rows]
        self.assertEqual([{member: line[member] for member in rows[0]} for line in lines], bare)
        self.assertEqual([list(line)[:len(rows[0])] for line in lines], [list(row) for row in rows])
        origin = {member: end[member] for member in ("form", "time", "machine")}
        self.assertEqual([{member: line[member] for member in origin} for line in lines], [origin] * len(rows))
        self.assertEqual(end["lines"], len(rows))
        parts = {"$defs": schema(name)["$defs"]}
        refuses_spoilt(self, lines[0], {**parts, "$ref": f"#/$defs/{definition}"})
        refuses_spoilt(self, end, schema(name))

    def check_cells(self, name, rows, text):
        self.assertFalse(text.startswith("\ufeff"))
        self.assertTrue(text.endswith("\r\n"))
        members, *cells = csv.reader(io.StringIO(text, newline=""), strict=True)
        self.assertEqual(members, list(rows[0]))
        self.assertEqual(members, list(next(iter(schema(name)["$defs"].values()))["properties"]))
        self.assertEqual(cells, [[cell(row[member]) for member in members] for row in rows])

    def test_scan(self):
        rows = self.check_list("program-scan", "scan", CATALOGUE, lines=("scan-line", "game"))
        found_by = {row["name"]: (row["launcher"], row["foundBy"]) for row in rows}
        self.assertEqual(found_by["Kiteborne"], ("Steam", "Steam Games Scan"))
        self.assertTrue(all(row["icon"] for row in rows))
        bare = self.check_list("program-scan", "scan", CATALOGUE, "--no-icons", lines=("scan-line", "game"))
        self.assertEqual(bare, [{**row, "icon": ""} for row in rows])

    def test_apps(self):
        page = self.check_list("applications", "apps", "--page-size", "3", lines=("apps-line", "pageApplication"))
        self.assertEqual(len(page), 3)
        every = self.check_list("all-applications", "apps", "--all", lines=("apps-line", "application"))
        self.assertGreater(len(every), 5)
        bare = self.check_list("all-applications", "apps", "--all", "--no-icons", lines=("apps-line", "application"))
        self.assertEqual(bare, [{**row, "icon": ""} for row in every])

    def test_lines_have_icons_and_no_machine_where_that_was_asked_for(self):
        lines = tarnwick("scan", CATALOGUE, "--format", "ndjson", "--icons", "--no-machine").splitlines()
        *games, end = map(json.loads, lines)
        self.assertTrue(all(game["icon"] for game in games))
        self.assertEqual({line["machine"] for line in [*games, end]}, {""})
        named = json.loads(tarnwick("apps", "--format", "ndjson", "--machine", "asset 12").splitlines()[-1])
        self.assertEqual(named["machine"], "asset 12")

    def test_a_diff_of_two_scans(self):
        old, new = (pathlib.Path(FOLDER.name) / name for name in ("old.json", "new.ndjson"))
        tarnwick("scan", CATALOGUE, "--format", "ndjson", "-o", new)
        rows = json.loads(tarnwick("scan", CATALOGUE, "--format", "json", "--no-icons"))
        self.assertEqual(rows[0]["launchUrl"], "")
        rows[0]["loc"] = r"C:\Elsewhere\game.exe"
        gone = {"name": "Gone", "loc": "", "launchUrl": "", "launcher": "GOG"}
        old.write_text(json.dumps([*rows[:-1], gone]), encoding="utf-8")
        result = start(TARNWICK, "diff", old, new, "--format", "json")
        self.assertEqual((result.returncode, result.stderr), (1, b""))
        difference = json.loads(result.stdout)
        check(difference, schema("scan-difference"))
        names = {part: [game["name"] for game in difference[part]] for part in ("added", "removed", "moved")}
        self.assertEqual(names, {"added": [rows[-1]["name"]], "removed": ["Gone"], "moved": [rows[0]["name"]]})
        self.assertEqual(difference["moved"][0]["from"], rows[0]["loc"])
        refuses_spoilt(self, difference, schema("scan-difference"))
        for definition, part in (("scan", difference["new"]), ("game", difference["added"][0]),
                                 ("movedGame", difference["moved"][0])):
            refuses_spoilt(self, part, {"$defs": schema("scan-difference")["$defs"], "$ref": f"#/$defs/{definition}"})

    def test_find(self):
        rows = self.check_list("applications", "find", request_file())
        self.assertEqual(rows[0]["name"], "Mine")

    def test_details(self):
        details = json.loads(tarnwick("details", EXECUTABLE, "--format", "json"))
        check(details, schema("game-details"))
        bare = json.loads(tarnwick("details", EXECUTABLE, "--format", "json", "--no-icons"))
        check(bare, schema("game-details"))
        self.assertEqual(bare, {**details, "ico": ""})

    def explained(self, name, code):
        return self.checked_explanation("explanation", code, name, CATALOGUE)

    def checked_explanation(self, name, code, *arguments):
        result = start(TARNWICK, "explain", *arguments, "--format", "json")
        self.assertEqual(result.returncode, code, result.stderr.decode())
        text = result.stdout.decode("utf-8")
        self.assertEqual(text.count("\n"), 1)
        explanation = json.loads(text)
        check(explanation, schema(name))
        refuses_spoilt(self, explanation, schema(name))
        return explanation

    def refuses_spoilt_parts(self, name, parts):
        """Each of the parts, by its definition's name, with a member left out, renamed or of another type."""
        for definition, part in parts:
            refuses_spoilt(self, part, {"$defs": schema(name)["$defs"], "$ref": f"#/$defs/{definition}"})

    def test_explain(self):
        found = self.explained("kiteborne", 0)["records"]
        self.assertEqual([(game["name"], game["outcome"]) for game in found], [("Kiteborne", "found")])
        self.assertEqual(found[0]["foundBy"], "Steam Games Scan")
        missing = self.explained("far beacon", 1)["records"]
        self.assertEqual([(game["name"], game["outcome"]) for game in missing], [("Far Beacon", "missing")])
        strategy = missing[0]["strategies"][-1]
        self.refuses_spoilt_parts("explanation", [("record", missing[0]), ("strategy", strategy),
                                                  ("question", strategy["questions"][0])])
        self.assertEqual(self.explained("no game of this name", 1)["records"], [])
        many = self.explained("a", 0)
        self.assertEqual(len(many["records"]), 10)
        self.assertGreater(many["further"], 10)

    def test_explain_path(self):
        whole = self.checked_explanation("path-explanation", 0, r"C:\Games\Copper Kestrel\kestrel.exe", CATALOGUE)
        self.assertEqual([record["name"] for record in whole["records"]], ["Copper Kestrel"])
        self.assertEqual((whole["kind"], whole["inScan"]), ("file", True))
        self.refuses_spoilt_parts("path-explanation", [("strategy", whole["strategies"][0])])
        missing = self.checked_explanation("path-explanation", 1, r"C:\Games\Nowhere\nothing.exe", CATALOGUE)
        self.assertEqual((missing["kind"], missing["icon"]), ("missing", None))

    def test_explain_application(self):
        listed = self.checked_explanation("application-explanation", 0, "--app", "harbour mail")
        self.assertEqual([app["verdict"] for app in listed["applications"]], ["listed"])
        app = listed["applications"][0]
        self.refuses_spoilt_parts("application-explanation", [("application", app), ("question", app["questions"][0])])
        self.assertEqual(self.checked_explanation("application-explanation", 1, "--app", "no such app")["applications"], [])

    def test_watch(self):
        with subprocess.Popen([*WINE, "notepad"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as window:
            try:
                lines = self.watched_lines()
            finally:
                window.terminate()
        for line in lines:
            check(line, schema("watch-line"))
        refuses_spoilt(self, lines[0], schema("watch-line"))

    def watched_lines(self):
        """What the watch says, which must wait until the window that was started is there."""
        end = time.monotonic() + 60
        while time.monotonic() < end:
            text = tarnwick("watch", "--format", "json", "--interval", "50", "--for", "1000")
            if text:
                return [json.loads(line) for line in text.splitlines()]
        raise AssertionError("the watch saw no foreground process")

    def test_capture(self):
        path = pathlib.Path(FOLDER.name) / "machine.json"
        tarnwick("capture", CATALOGUE, "-o", path)
        capture = json.loads(path.read_text(encoding="utf-8"))
        check(capture, schema("capture"))
        refuses_spoilt(self, capture, schema("capture"))
        for section in ("keys", "subfolders", "data", "programs"):
            self.assertGreater(len(capture[section]), 10)
            its_schema = {"$defs": schema("capture")["$defs"], **schema("capture")["properties"][section]}
            refuses_spoilt(self, [max(capture[section], key=len)], {**its_schema, "minItems": 1})
        listed = tarnwick("capture", CATALOGUE, "--list").splitlines()
        self.assertEqual(len(listed), sum(len(capture[name]) for name in capture if name != "capture"))

    def checked_catalogue(self, text, *options):
        """What the check of a catalogue with this text finds, and its exit code."""
        path = pathlib.Path(FOLDER.name) / "checked.xml"
        path.write_text(text, encoding="utf-8")
        result = start(TARNWICK, "catalogue", "check", path, "--format", "json", *options)
        self.assertEqual(result.stdout.count(b"\n"), 1)
        findings = json.loads(result.stdout.decode("utf-8"))
        check(findings, schema("catalogue-check"))
        return findings, result.returncode

    def test_catalogue_check(self):
        findings, code = self.checked_catalogue(FAULTY_CATALOGUE)
        self.assertEqual(code, 1)
        self.assertEqual([(found["line"], found["column"], found["severity"], found["code"], found["record"])
                          for found in findings],
                         [(2, 57, "warning", "TC108", "Wren"), (3, 26, "error", "TC009", "Fernpad"),
                          (4, 1, "error", "TC013", ""), (4, 16, "warning", "TC107", "")])
        refuses_spoilt(self, findings, schema("catalogue-check"))
        for wrong in ({"line": 0}, {"column": 0}, {"severity": "hint"}, {"code": "TC9"}):
            with self.assertRaises(jsonschema.ValidationError):
                check([{**findings[0], **wrong}], schema("catalogue-check"))
        strict, code = self.checked_catalogue(FAULTY_CATALOGUE, "--strict")
        self.assertEqual((strict, code), ([{**found, "severity": "error"} for found in findings], 1))

    def test_catalogue_check_of_a_clean_one(self):
        self.assertEqual(self.checked_catalogue(CLEAN_CATALOGUE, "--strict"), ([], 0))

    def test_empty_lists_have_the_shape_of_full_ones(self):
        nothing = ("apps", "--filter", "no application of this name")
        self.assertEqual(tarnwick(*nothing, "--format", "json"), "[]\n")
        end = json.loads(tarnwick(*nothing, "--format", "ndjson"))
        self.assertEqual((end["kind"], end["lines"]), ("apps", 0))
        members = list(schema("applications")["$defs"]["application"]["properties"])
        self.assertEqual(tarnwick(*nothing, "--format", "csv"), ",".join(members) + "\r\n")


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    TARNWICK, DESKTOP, ANSWERS = sys.argv[1:4]
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
