"""README.md's way from three games to a scan: its file and its commands, run as they stand, with the games installed.

usage: five_commands_test.py TARNWICK.EXE DESKTOP.EXE [UNITTEST ARGUMENT...]
"""

import contextlib
import json
import pathlib
import shlex
import sys
import tempfile
import unittest

from snippets import snippet

SOURCE = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCE / "tests" / "captures"))
import machines  # noqa: E402

GAMES = snippet("csv", "Wren")
COMMANDS = snippet("sh", "catalogue from-csv")
TABLE = snippet("text", "Salt Kettle")
STEAM = r"C:\Program Files (x86)\Steam"
QUARRY_LANE = r"C:\Games\Epic\Quarry Lane"
INSTALLED = {
    "executables": [{"path": STEAM + r"\steamapps\common\Wren\bin\wren.exe"},
                    {"path": QUARRY_LANE + r"\quarry.exe"},
                    {"path": r"C:\Games\Salt Kettle\kettle.exe"}],
    "steam": {"path": STEAM,
              "libraries": [{"path": STEAM, "apps": [{"appId": 9770050, "name": "Wren", "installDir": "Wren"}]}]},
    "epic": {"items": [{"appName": "QuarryLane", "displayName": "Quarry Lane", "installLocation": QUARRY_LANE,
                        "launchExecutable": "start.exe"}]},
}
TARNWICK = DESKTOP = None


class TheFiveCommands(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.enterClassContext(contextlib.chdir(cls.enterClassContext(tempfile.TemporaryDirectory())))
        pathlib.Path("desktop.json").write_text(json.dumps(INSTALLED), encoding="utf-8")
        machines.build(DESKTOP, pathlib.Path("desktop.json").absolute(), pathlib.Path("state.json").absolute())
        cls.addClassCleanup(machines.remove, DESKTOP, pathlib.Path("state.json").absolute())
        pathlib.Path("games.csv").write_text(GAMES, encoding="utf-8")
        cls.results = [run(line) for line in COMMANDS.splitlines()]

    def test_are_five_and_end_well(self):
        self.assertEqual([result.returncode for result in self.results], [0] * 5, [r.stderr for r in self.results])

    def test_make_a_catalogue_of_the_three_games(self):
        text = pathlib.Path("games.xml").read_text(encoding="utf-8")
        self.assertEqual(text.count("<GameSignature>"), 3)
        for line in GAMES.splitlines()[1:]:
            self.assertIn(f"<DisplayName>{line.split(',')[0]}</DisplayName>", text)

    def test_find_nothing_amiss(self):
        self.assertEqual(self.results[1].stdout, b"")
        self.assertNotIn(b"warning[", self.results[1].stderr)

    def test_encipher_it(self):
        bytes_ = pathlib.Path("MasterGameList.xml").read_bytes()
        self.assertEqual(len(bytes_) % 16, 0)
        self.assertNotIn(b"Salt Kettle", bytes_)
        shown = run("tarnwick catalogue show kettle MasterGameList.xml")
        self.assertIn(rb"C:\Games\Salt Kettle", shown.stdout)

    def test_scan_with_it_as_the_page_says(self):
        self.assertEqual(self.results[3].stdout.decode("utf-8"), TABLE)
        self.assertEqual(self.results[3].stderr, b"")

    def test_tell_how_the_game_was_found(self):
        self.assertIn(rb"Found by Default Exe Search at C:\Games\Salt Kettle\kettle.exe", self.results[4].stdout)


class TheGuide(unittest.TestCase):
    def test_has_the_same_games_and_commands(self):
        guide = (SOURCE / "docs" / "catalogue.md").read_text(encoding="utf-8")
        self.assertIn(f"```csv\n{GAMES}```\n", guide)
        self.assertIn(f"```sh\n{COMMANDS}```\n", guide)


def run(line):
    program, *arguments = shlex.split(line)
    if program != "tarnwick":
        raise AssertionError("no command of the program's: " + line)
    return machines.start(TARNWICK, *arguments)


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    TARNWICK, DESKTOP = (str(pathlib.Path(argument).absolute()) for argument in sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
