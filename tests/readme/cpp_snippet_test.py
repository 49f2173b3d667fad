"""The README's snippet in C++, compiled as it stands and run on the sample desktop.

usage: cpp_snippet_test.py BIN-FOLDER [UNITTEST ARGUMENT...]
"""

import json
import pathlib
import subprocess
import sys
import time
import unittest

from snippets import snippet

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "examples"))
import hosts  # noqa: E402

BIN = None


class CppSnippet(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = hosts.SampleDesktop(BIN)
        cls.addClassCleanup(cls.desktop.remove)
        source = cls.desktop.folder / "snippet.cpp"
        source.write_text(snippet("cpp", "tarnwick.hpp"), encoding="utf-8")
        cls.program = cls.desktop.folder / "snippet.exe"
        hosts.compile_host(hosts.CPP17, source, cls.program)
        # The snippet's catalogue is in the current directory.
        shown = hosts.run(cls.desktop.bin / "tarnwick.exe", "catalogue", "merge", hosts.CATALOGUE, hosts.CATALOGUE,
                          "-o", cls.desktop.folder / "MasterGameList.xml")
        assert shown == ""

    def run_with_enter(self, seconds):
        """What the snippet printed until it was ended with the enter key, after that many seconds."""
        printed = self.desktop.folder / "printed.txt"
        with open(printed, "wb") as output:
            with subprocess.Popen([*hosts.WINE, self.program], cwd=self.desktop.folder, stdin=subprocess.PIPE,
                                  stdout=output) as host:
                time.sleep(seconds)
                host.communicate(b"\n", timeout=60)
        self.assertEqual(host.returncode, 0)
        return printed.read_text(encoding="utf-8").splitlines()

    def test_scans_lists_and_watches(self):
        # A line for each answer, and one more as soon as a window is in the foreground.
        lines = hosts.with_a_window(lambda: [] if len(got := self.run_with_enter(4)) < 3 else got)
        games, applications, *processes = lines
        self.assertIn("Brasswater", [game["name"] for game in json.loads(games)])
        self.assertIn("Fernpad", json.loads(applications)[0]["name"])
        self.assertRegex(processes[0], r"^[1-9]\d* \S+\.exe$")


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    BIN = sys.argv[1]
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
