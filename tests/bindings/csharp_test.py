"""The C# binding and its example, compiled by Mono and run on the stand-in library.

usage: csharp_test.py
"""

import base64
import json
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

sys.dont_write_bytecode = True

import stand_in  # noqa: E402

BINDING = stand_in.SOURCE / "bindings" / "csharp"
EXAMPLE = stand_in.SOURCE / "examples" / "csharp" / "Example.cs"
DRIVER = stand_in.SOURCE / "tests" / "bindings" / "csharp" / "Driver.cs"
ICON = "data:image/png;base64,"
ENVIRONMENT = {**os.environ, "LC_ALL": "C.UTF-8"}

FOLDER = None


def compile_program(*arguments):
    # As the project file has it: language version 7, warnings are errors.
    result = subprocess.run(["mcs", "-langversion:7", "-warn:4", "-warnaserror", *arguments], capture_output=True,
                            text=True, check=False)
    if result.returncode != 0 or "warning" in result.stdout + result.stderr:
        raise AssertionError(result.stdout + result.stderr)


def setUpModule():
    global FOLDER
    folder = tempfile.TemporaryDirectory()
    unittest.addModuleCleanup(folder.cleanup)
    FOLDER = stand_in.make(folder.name)
    sources = sorted((BINDING / "src").glob("*.cs"))
    compile_program("-target:library", f"-doc:{FOLDER}/Tarnwick.Bindings.xml", f"-out:{FOLDER}/Tarnwick.Bindings.dll", *sources)
    compile_program(f"-r:{FOLDER}/Tarnwick.Bindings.dll", f"-out:{FOLDER}/Example.exe", EXAMPLE)
    compile_program(f"-out:{FOLDER}/Driver.exe", DRIVER, *sources)  # with the sources: it tries the JSON reader too


def mono(program, *arguments, **options):
    return subprocess.run(["mono", FOLDER / program, *arguments], timeout=120, capture_output=True, encoding="utf-8",
                          check=False, env=ENVIRONMENT, **options)


def drive(*arguments, library=None):
    """The lines of the driver's answer as lists of fields. Commands are separated by "+"."""
    result = mono("Driver.exe", library or FOLDER / stand_in.STAND_IN, "+", *arguments)
    if (result.returncode, result.stderr) != (0, ""):
        raise AssertionError(f"{result.returncode}: {result.stdout}{result.stderr}")
    return [line.split("\x1f") for line in result.stdout.split("\n")[:-1]]


def application(found):
    return [found["name"], found["publisher"], found["version"], found["loc"], found.get("exeName", "null"), found["date"],
            str(found["sizeKB"]), found["icon"]]


class Answers(unittest.TestCase):
    maxDiff = None

    def test_a_scan_gives_the_golden_games(self):
        expected = [[found["name"], found["loc"], found["icon"], found["launchUrl"], found["exeName"]]
                    for found in stand_in.golden("scan")]
        self.assertEqual(drive("scan"), expected)
        self.assertEqual(expected[2][:2], ["雪の夜 🎮", "C:\\ゲーム\\雪の夜\\yuki.exe"])

    def test_details_are_the_golden_ones(self):
        found = stand_in.golden("details")
        self.assertEqual(drive("details", "x.exe"), [[found["name"], found["ico"], found["exepath"], found["exe"]]])

    def test_a_file_that_is_not_there_has_no_details(self):
        self.assertEqual(drive("details", "missing"), [["null"]])

    def test_a_page_of_applications_is_the_golden_one(self):
        expected = [application(found) for found in stand_in.golden("apps")]
        self.assertEqual(drive("first-page"), expected)
        self.assertEqual(expected[1][1], "Kůň\tLtd.")

    def test_all_applications_are_the_golden_ones(self):
        expected = [application(found) for found in stand_in.golden("apps-all")]
        self.assertEqual(drive("all"), expected)
        self.assertEqual(expected[2][4:7], ["ookii.exe", "20231231", "-1073741824"])

    def test_found_games_are_the_golden_ones(self):
        expected = [application(found) for found in stand_in.golden("find")]
        self.assertEqual(drive("find", "fernpad.exe", "Mine", "", "+", "find-file", "requests.json"), expected + expected)

    def test_nothing_found_is_an_empty_list(self):
        self.assertEqual(drive("page", "2", "20", "", "+", "all", "nothing", "+", "find", "+", "find-file", "missing"), [])

    def test_a_refresh_counts_the_applications(self):
        self.assertEqual(drive("refresh"), [["3"]])

    def test_a_report_is_asked_for(self):
        self.assertEqual(drive("report", "+", "scan", "counts")[0][0], "reports=1 cuts=0")

    def test_an_answer_larger_than_the_first_buffer_arrives_whole(self):
        self.assertEqual(len(drive("scan", "large")[0][2]), 5 << 20)


class Arguments(unittest.TestCase):
    TEXT = 'echo: C:\\Größe\\雪 🎮 "x"'

    def test_paths_arrive_as_utf_8(self):
        lines = drive("scan", self.TEXT, "+", "details", self.TEXT, "+", "find-file", self.TEXT)
        self.assertEqual([line[0] for line in lines], [self.TEXT] * 3)

    def test_filters_arrive_as_utf_16_and_numbers_in_their_order(self):
        paged, unpaged = drive("page", "7", "31", self.TEXT, "+", "all", self.TEXT)
        self.assertEqual((paged[0], paged[2], paged[6]), (self.TEXT, "7", "31"))
        self.assertEqual(unpaged[0], self.TEXT)

    def test_requests_arrive_without_escapes(self):
        found = drive("find", "größe.exe", "echo: 雪", "bin\\x64", "b.exe", "", "")
        self.assertEqual(found[0][0],
                         '[{"name":"echo: 雪","exeName":"größe.exe","exePath":"bin\\x64"},{"exeName":"b.exe"}]')

    def test_a_library_in_a_folder_beyond_ascii_is_loaded(self):
        folder = FOLDER / "Größe 雪 🎮"
        folder.mkdir()
        (folder / "library.so").write_bytes((FOLDER / stand_in.STAND_IN).read_bytes())
        self.assertEqual(drive("refresh", library=folder / "library.so"), [["3"]])

    def test_what_the_library_can_not_take_is_refused(self):
        lines = drive("half-pair", "+", "zero-filter", "+", "find", 'a"b.exe', "", "", "+", "find", "a.exe", "{", "", "+",
                      "find", "", "x", "", "+", "no-requests")
        self.assertEqual([line[0] for line in lines], ["ArgumentException"] * 5 + ["ArgumentNullException"])


class BadInput(unittest.TestCase):
    def assert_error(self, lines, kind, text):
        self.assertEqual([line[0] for line in lines], [kind])
        self.assertRegex(lines[0][1], text)

    def test_a_missing_library_is_told_with_its_path(self):
        self.assert_error(drive("scan", library="/nowhere/Tarnwick.dll"), "LibraryMissing",
                          "^There is no library /nowhere/Tarnwick.dll: put")

    def test_a_relative_path_is_refused(self):
        for path in ("Tarnwick.dll", "bin/Tarnwick.dll"):
            self.assert_error(drive("scan", library=path), "ArgumentException", "no absolute path")

    def test_another_word_size_is_told(self):
        for name in ("32-bit.so", "32-bit.dll"):
            self.assert_error(drive("scan", library=FOLDER / name), "LibraryUnusable",
                              "made for 32-bit processes, and this is a 64-bit one")

    def test_a_file_that_is_no_library_is_told(self):
        self.assert_error(drive("scan", library=FOLDER / "text.so"), "LibraryUnusable", r"text\.so is no library: take")

    def test_a_library_that_the_system_refuses_is_told(self):
        (FOLDER / "broken.so").write_bytes((FOLDER / stand_in.STAND_IN).read_bytes()[:64] + bytes(1024))
        self.assert_error(drive("scan", library=FOLDER / "broken.so"), "LibraryUnusable", r"broken\.so can't be loaded")

    def test_a_missing_export_is_named_and_the_library_unloaded(self):
        error, mapped = drive("load", FOLDER / stand_in.MISSING_EXPORT, "+", "mapped", stand_in.MISSING_EXPORT)
        self.assert_error([error], "ExportMissing", "has no function IA_RefreshCache: take")
        self.assertEqual(mapped, ["False"])

    def test_an_answer_that_stays_cut_is_given_up_after_four_attempts(self):
        cut, counts = drive("scan", "cut", "+", "scan", "counts")
        self.assert_error([cut], "AnswerCut", "IA_RunMultiPlatformGameScanJson is still cut")
        self.assertEqual(counts[0], "reports=0 cuts=4")

    def test_invalid_json_is_told_with_its_place(self):
        self.assert_error(drive("scan", "invalid"), "AnswerInvalid", "no JSON at character 10")

    def test_bytes_that_are_no_utf_8_are_told(self):
        self.assert_error(drive("scan", "not-utf8"), "AnswerInvalid", "is not UTF-8")

    def test_a_call_after_dispose_is_told(self):
        lines = drive("dispose", "+", "dispose", "+", "scan", "+", "refresh", "+", "report", "+", "first-page", "+", "watch-stops")
        self.assertEqual([line[0] for line in lines], ["Closed"] * 5)
        self.assertRegex(lines[0][1], "was called after Dispose")


class Json(unittest.TestCase):
    """The reader against Python's: the same texts are refused, the others have the same values."""

    def read(self, texts):
        lines = "".join(base64.b64encode(text.encode("utf-8")).decode() + "\n" for text in texts)
        result = mono("Driver.exe", "json", input=lines)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        answers = [line.split("\x1f") for line in result.stdout.split("\n")[:-1]]
        self.assertEqual(len(answers), len(texts))
        return [answer[1] if len(answer) > 1 else json.loads(base64.b64decode(answer[0])) for answer in answers]

    def assert_as_python_reads(self, texts):
        def refuse(_):
            raise ValueError

        refused = 0
        for text, value in zip(texts, self.read(texts)):
            try:
                expected = json.loads(text, parse_constant=refuse)
            except ValueError:
                refused += 1
                self.assertRegex(str(value), r"^The answer of X is no JSON at character \d+: ", text)
                continue
            self.assertEqual(value, expected, text)
        return refused

    def test_values_of_every_kind(self):
        texts = ["0", "-1", "12.5e-1", "1E3", "true", "false", "null", '""', ' [ 1 , [ ] , { } ] \r\n\t', '{"a":{"b":[1]},"a":2}',
                 r'"\"\\\/\b\f\n\r\t\u00e9\uD83C\uDFAE"', '"雪🎮\x7f\u2028"', "9007199254740993", "-9223372036854775808", "0.1"]
        self.assertEqual(self.assert_as_python_reads(texts), 0)

    def test_what_is_no_json(self):
        texts = ["", " ", "[", "]", "{", "[1,]", "[,1]", "[1 2]", '{"a"}', '{"a":}', '{"a":1,}', "{a:1}", "{1:2}", "'a'", '"a',
                 '"\\x"', '"\\u12g4"', '"\\u12', '"\\', '"a\nb"', '"a\tb"', '"a\0b"', "01", "-", "+1", ".5", "1.", "1e", "1e+",
                 "0x10", "NaN", "Infinity", "tru", "nulll", "True", "[1]]", "{}{}", "1 2", "\0", "[1]\0", "\ufeff[]", "// a\n1",
                 "-Infinity", "--1", '{"a":1 "b":2}', '["a":1]']
        self.assertEqual(self.assert_as_python_reads(texts), len(texts))

    def test_no_beginning_of_an_answer_is_taken_for_an_answer(self):
        whole = (stand_in.GOLDEN / "apps-all.json").read_text(encoding="utf-8")
        self.assertEqual(self.assert_as_python_reads([whole[:length] for length in range(len(whole))]), len(whole))

    def test_answers_with_a_few_characters_changed(self):
        chance = random.Random(4711)
        whole = (stand_in.GOLDEN / "scan.json").read_text(encoding="utf-8")
        texts = []
        for _ in range(3000):
            text = whole
            for _ in range(chance.randint(1, 3)):
                at = chance.randrange(len(text))
                text = text[:at] + chance.choice(["", *'{}[]:,"\\0-e. u\n']) + text[at + chance.randint(0, 1):]
            texts.append(text)
        refused = self.assert_as_python_reads(texts)
        self.assertTrue(300 < refused < 2900, refused)

    def test_deep_nesting_and_numbers_beyond_a_double_are_refused(self):
        for value in self.read(["[" * 100000, "[" * 65 + "]" * 65]):
            self.assertIn("less nesting is expected", value)
        for value in self.read(["1e999", "-1e999"]):
            self.assertIn("a smaller number is expected", value)
        self.assertEqual(self.read(["[" * 64 + "]" * 64, "12345678901234567890"])[1], 12345678901234567890.0)

    def test_the_place_is_the_character_where_reading_stopped(self):
        self.assertIn("at character 4: ']' is expected", self.read(["[1 2]"])[0])


class Focus(unittest.TestCase):
    def test_changes_arrive_in_order_with_their_texts_and_the_handler_may_call(self):
        self.assertEqual(drive("watch")[:4], [
            ["game.exe", "4242", "C:\\Games\\game.exe", "3"], ["", "4243", "", "3"],
            ["spät 🎮.exe", "4244", "C:\\ゲーム\\spät 🎮.exe", "3"], ["game.exe", "4245", "C:\\Games\\game.exe", "3"]])

    def test_nothing_arrives_after_a_stop_and_a_second_stop_does_nothing(self):
        self.assertEqual(drive("watch-stops"), [["True"]])

    def test_a_stop_from_within_the_handler_gives_the_order(self):
        self.assertEqual(drive("watch-order"), [["1"]])

    def test_two_stops_at_once_one_of_them_in_the_handler_both_end(self):
        self.assertEqual(drive("watch-two-stops"), [["handler ends"], ["stop ends"]])

    def test_a_watch_that_is_started_in_the_handler_during_a_stop_is_refused(self):
        lines = drive("watch-start-in-stop")
        self.assertEqual(lines[0][0], "Watch")
        self.assertRegex(lines[0][1], "being started or stopped: start another one")
        self.assertEqual(lines[1:], [["handler ends"], ["stop ends"]])

    def test_a_second_watch_is_refused_until_the_first_has_stopped(self):
        refused, another = drive("watch-twice")
        self.assertEqual(refused[0], "Watch")
        self.assertRegex(refused[1], "is running in this process: stop it")
        self.assertEqual(another, ["another one"])

    def test_a_watch_or_a_dispose_from_within_the_handler_is_refused(self):
        lines = drive("watch-refusals")
        self.assertEqual([line[0] for line in lines], ["Watch", "Watch", "3"])

    def test_an_exception_in_the_handler_is_told_and_the_watch_goes_on(self):
        lines = drive("watch-throws")
        self.assertEqual(lines[:2], [["DivideByZeroException"]] * 2)
        self.assertEqual(lines[-1], ["goes on"])

    def test_a_watch_that_nobody_holds_survives_collections(self):
        self.assertEqual(drive("watch-collected"), [["goes on"]])

    def test_dispose_of_the_library_stops_the_watch(self):
        self.assertEqual(drive("watch-dispose"), [["True"]])

    def test_the_program_ends_with_a_watch_running(self):
        self.assertEqual(drive("watch-exit"), [["True"]])


class Closing(unittest.TestCase):
    def test_dispose_unloads_the_library(self):
        self.assertEqual(drive("mapped", stand_in.STAND_IN, "+", "dispose", "+", "mapped", stand_in.STAND_IN),
                         [["True"], ["False"]])

    def test_dispose_waits_for_the_calls_that_run(self):
        self.assertEqual(drive("slow-call"), [["call ends"], ["disposed"]])


class Example(unittest.TestCase):
    def lines(self, *arguments):
        result = mono("Example.exe", FOLDER / stand_in.STAND_IN, *arguments)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        return result.stdout.splitlines()

    def test_scan_lists_the_games(self):
        lines = self.lines("scan")
        self.assertEqual(lines[1], 'Der "große" Spaß: D:\\Spiele\\Größe\\spaß.exe')
        self.assertEqual(lines[3], "Only a link: uplay://launch/4242/0")
        self.assertEqual(len(lines), 4)

    def test_list_lists_the_applications(self):
        self.assertEqual(self.lines("list")[0], "Fernpad 2, Fern & Söhne: C:\\Program Files\\Fernpad\\fernpad.exe")
        self.assertEqual(self.lines("list", "nothing"), [])

    def test_watch_tells_the_foreground(self):
        self.assertEqual(self.lines("watch", "1.5")[0], "4242 game.exe C:\\Games\\game.exe")

    def test_an_error_is_one_line(self):
        result = mono("Example.exe", "/nowhere/Tarnwick.dll", "scan")
        self.assertEqual(result.returncode, 1)
        self.assertTrue(result.stderr.startswith("There is no library /nowhere/Tarnwick.dll"), result.stderr)
        self.assertEqual(len(result.stderr.splitlines()), 1)


class Package(unittest.TestCase):
    def property(self, name):
        project = xml.etree.ElementTree.parse(BINDING / "Tarnwick.csproj")
        return project.findtext(f"PropertyGroup/{name}")

    def test_the_version_is_the_projects(self):
        self.assertEqual(self.property("Version"), stand_in.version())
        self.assertIn(f'Version = "{stand_in.version()}"', (BINDING / "src" / "TarnwickLibrary.cs").read_text(encoding="utf-8"))

    def test_the_project_file_names_what_the_tests_compile_with(self):
        self.assertEqual((self.property("TargetFramework"), self.property("LangVersion"), self.property("PackageId")),
                         ("netstandard2.0", "7", "Tarnwick"))


if __name__ == "__main__":
    unittest.main()
