"""scripts/replay: a captured machine in a Wine prefix of its own.

usage: replay_test.py [UNITTEST ARGUMENT...]
"""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = HERE.parents[1]
SCRIPT = SOURCE / "scripts" / "replay"
HEAD = SOURCE / "scripts" / "lib" / "capture_head.py"
MACHINE = HERE / "several-launchers.json"


def call(*command):
    with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
        code = subprocess.run([str(part) for part in command], stdout=output, stderr=errors, check=False).returncode
        output.seek(0)
        errors.seek(0)
        return code, output.read().decode(errors="replace"), errors.read().decode(errors="replace")


def games_of(output):
    """The list of games among what the script says."""
    lists = [line for line in output.splitlines() if line.startswith("[")]
    return {game["name"]: game["loc"] for game in json.loads(lists[-1])}


class CaptureHead(unittest.TestCase):
    def head(self, text):
        with tempfile.NamedTemporaryFile("w", suffix=".json", encoding="utf-8") as file:
            file.write(text)
            file.flush()
            code, output, errors = call(sys.executable, HEAD, file.name)
        self.assertEqual((code, errors), (0, ""))
        return output

    def test_tells_drives_and_catalogue(self):
        self.assertEqual(self.head('{"capture": {"drives": ["D:\\\\", "C:\\\\", "d:\\\\"], "catalogue": "C:\\\\Größe.xml"}}'),
                         "cd\nC:\\Größe.xml\n")

    def test_tells_nothing_of_what_is_no_capture(self):
        for text in ("", "{", "[]", "7", '{"capture": 7}', '{"capture": {}}', "[" * 100_000):
            self.assertEqual(self.head(text), "\n\n", text[:40])

    def test_passes_on_nothing_that_a_shell_or_a_path_could_stumble_on(self):
        self.assertEqual(self.head('{"capture": {"drives": ["../:\\\\", 5, "C:", "C:\\\\x", "$:\\\\"], "catalogue": "a\\nb"}}'),
                         "\na?b\n")


class Replay(unittest.TestCase):
    def test_tells_what_is_wrong_with_the_command_line(self):
        for arguments in ([], ["--pages", MACHINE], ["--page"], [MACHINE, "page"], [MACHINE, "explain"]):
            code, output, errors = call(SCRIPT, *arguments)
            self.assertEqual((code, output), (2, ""), arguments)
            self.assertIn("usage: scripts/replay", errors)
        code, output, _ = call(SCRIPT, "--help")
        self.assertEqual(code, 0)
        self.assertIn("usage: scripts/replay", output)

    def test_tells_that_there_is_no_such_file(self):
        self.assertEqual(call(SCRIPT, "none.json"), (1, "", "replay: there is no file 'none.json'\n"))

    def test_builds_drives_and_runs_any_command_there(self):
        """The drive that is all of this machine otherwise is the captured one here."""
        machine = json.loads(MACHINE.read_text(encoding="utf-8").replace("C:\\\\Games\\\\Silt", "Z:\\\\Silt"))
        machine["capture"]["drives"] = ["C:\\", "D:\\", "Z:\\"]
        machine["programs"].append({"path": "D:\\Far Cairn\\cairn.exe"})
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "two drives.json"
            page = pathlib.Path(folder) / "games.html"
            path.write_text(json.dumps(machine), encoding="utf-8")
            code, output, errors = call(SCRIPT, "--page", page, path, "--", "scan", "--format", "json", "--no-icons")
            self.assertEqual(code, 0, output + errors)
            self.assertEqual(games_of(output)["Silt"], "Z:\\Silt\\silt.exe")
            self.assertIn("Copperleaf", page.read_text(encoding="utf-8"))
        self.assertTrue((SOURCE / "build/replay/two_drives/wine/drive_z/Silt/silt.exe").is_file())
        self.assertTrue((SOURCE / "build/replay/two_drives/wine/drive_d/Far Cairn/cairn.exe").is_file())
        users = SOURCE / "build/replay/two_drives/wine/drive_c/users"
        self.assertEqual([link for link in users.glob("*/*") if link.is_symlink()], [])

    def test_refuses_a_machine_that_cannot_be_built(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "later.json"
            path.write_text('{"capture": {"version": 2}}', encoding="utf-8")
            code, _, errors = call(SCRIPT, path)
        self.assertEqual(code, 1)
        self.assertEqual(errors.strip(), "tarnwick-desktop: at /capture/version: this capture has version 2; "
                                         "this program builds version 1")


if __name__ == "__main__":
    unittest.main()
