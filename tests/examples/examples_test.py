"""The examples in C and C++, compiled without a warning as their first lines say, and run on the sample desktop.

usage: examples_test.py BIN-FOLDER [UNITTEST ARGUMENT...]
"""

import json
import re
import sys
import unittest

import hosts

BIN = DESKTOP = None


def setUpModule():
    global DESKTOP
    DESKTOP = hosts.SampleDesktop(BIN)


def tearDownModule():
    DESKTOP.remove()


def program_rows(*command):
    return json.loads(hosts.run(DESKTOP.bin / "tarnwick.exe", *command, "--format", "json"))


class Example:
    """What is asked of the example in each language."""

    program = None

    def answer(self, *arguments):
        text = hosts.run(self.program, *arguments)
        self.assertEqual(text.count("\n"), 1)
        return json.loads(text)

    def test_scan(self):
        games = self.answer("scan", hosts.CATALOGUE)
        whole = program_rows("scan", hosts.CATALOGUE)
        self.assertGreater(len(games), 30)
        self.assertEqual(games, [{name: game[name] for name in games[0]} for game in whole])

    def test_scan_without_a_catalogue(self):
        self.assertEqual(self.answer("scan", r"C:\no catalogue.xml"), [])

    def test_apps(self):
        self.assertEqual(self.answer("apps"), program_rows("apps", "--all"))

    def test_watch(self):
        lines = hosts.with_a_window(lambda: hosts.run(self.program, "watch", "1"))
        # Wine's own shell may have been there before the window.
        for line in lines.splitlines():
            process = re.fullmatch(r"([1-9]\d*) (\S+) (C:\\.*\\(.*))", line)
            self.assertTrue(process, line)
            self.assertEqual(process[2], process[4])

    def test_usage(self):
        self.assertEqual(hosts.run(self.program, "scan", code=2), "")


class C(Example, unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.program = DESKTOP.folder / "c.exe"
        hosts.compile_host(hosts.C99, hosts.SOURCE / "examples" / "c" / "example.c", cls.program,
                           DESKTOP.bin.parent / "src" / "libTarnwick.dll.a")


class Cpp(Example, unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.program = DESKTOP.folder / "cpp.exe"
        hosts.compile_host(hosts.CPP17, hosts.SOURCE / "examples" / "cpp" / "example.cpp", cls.program)

    def test_without_the_library(self):
        alone = DESKTOP.folder / "alone" / "cpp.exe"
        alone.parent.mkdir()
        alone.write_bytes(self.program.read_bytes())
        result = hosts.start(alone, "apps")
        self.assertEqual(result.returncode, 1)
        self.assertIn(r"alone\Tarnwick.dll: there is no such file", result.stderr.decode())


class OutOfProcess(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.program = DESKTOP.folder / "out.exe"
        hosts.compile_host((*hosts.CPP17, "-municode"), hosts.SOURCE / "examples" / "cpp" / "out_of_process.cpp",
                           cls.program)

    def scan(self, catalogue, seconds, code):
        return hosts.run(self.program, DESKTOP.bin / "tarnwick.exe", catalogue, seconds, code=code)

    def test_the_answer_of_a_scan_in_time(self):
        self.assertEqual(json.loads(self.scan(hosts.CATALOGUE, 60, 0)), program_rows("scan", hosts.CATALOGUE))

    def test_a_scan_that_takes_longer_is_ended(self):
        self.assertEqual(self.scan(hosts.CATALOGUE, 0, 3), "")

    def test_a_scan_that_fails(self):
        self.assertEqual(self.scan(r"C:\no catalogue.xml", 60, 1), "")


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    BIN = sys.argv[1]
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
