"""A desktop is captured and replayed on a second machine, which must give the same answers but for the stand-ins of what
is private.

usage: round_trip_test.py TARNWICK.EXE DESKTOP.EXE [UNITTEST ARGUMENT...]

The second machine is a Wine prefix of its own, in the build tree.
"""

import contextlib
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

import machines

SOURCE = machines.HERE.parents[1]
SAMPLE = SOURCE / "desktop" / "samples" / "sample-desktop.json"
PARTS = machines.HERE / "round-trip"
CATALOGUE = r"C:\TarnwickDemo\MasterGameList.xml"
SECOND = SOURCE / "build" / "round-trip" / "wine"
MAKE_SECOND = """set -euo pipefail
. scripts/lib/packages.sh
. scripts/lib/wine.sh
{ read -r drives; } < <(/usr/bin/python3 scripts/lib/capture_head.py "$1")
fresh_wine >&2
cut_links_out_of_wine
give_wine_drives "$drives" >&2
printf '%s' "${wine_root^}"
"""

TARNWICK = DESKTOP = None


def merged(*descriptions):
    """One description with the sections of all; a list goes on where the one before ends."""
    whole = {}
    for description in descriptions:
        for name, section in json.loads(description.read_text(encoding="utf-8")).items():
            if isinstance(section, list):
                whole.setdefault(name, []).extend(section)
            elif name == "catalogue" and name in whole:
                whole[name]["games"] += section["games"]
            else:
                whole[name] = section
    return whole


@contextlib.contextmanager
def standing(folder, *descriptions):
    """The described desktops, one after the other, each by a process that sees what those before have set."""
    with contextlib.ExitStack() as stack:
        for number, description in enumerate(descriptions):
            state = folder / f"state-{number}.json"
            machines.build(DESKTOP, description, state)
            stack.callback(machines.remove, DESKTOP, state)
        yield


def make_second_machine(capture):
    """With the drives of the capture; gives the drive that shows the whole of this machine there."""
    SECOND.parent.mkdir(parents=True, exist_ok=True)
    # Into files: the end of a pipe would wait for the server that stays.
    with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
        code = subprocess.run(["bash", "-c", MAKE_SECOND, "bash", str(capture)], cwd=SOURCE, check=False,
                              env={**os.environ, "TARNWICK_WINEPREFIX": str(SECOND)}, stdout=output,
                              stderr=errors).returncode
        output.seek(0)
        errors.seek(0)
        if code != 0:
            raise AssertionError(errors.read().decode(errors="replace"))
        return output.read().decode()


@contextlib.contextmanager
def second_machine(capture):
    before = (os.environ["WINEPREFIX"], machines.root)
    machines.root = make_second_machine(capture)
    os.environ["WINEPREFIX"] = str(SECOND)
    try:
        yield
    finally:
        subprocess.run(["wineserver", "-k"], check=False)
        os.environ["WINEPREFIX"], machines.root = before


def without_user(answers):
    """The user's name in paths, the one thing of these desktops that a capture replaces."""
    text = json.dumps(answers, ensure_ascii=False)
    return json.loads(re.sub(r"(C:\\\\users\\\\)[^\\\"]+", r"\1<user>", text, flags=re.IGNORECASE))


def can_capture():
    return re.search(r"^\s+capture\b", machines.run(TARNWICK, "--help"), flags=re.MULTILINE) is not None


@unittest.skipIf(os.name == "nt", "a second machine is at hand under Wine alone")
class RoundTrip(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        if not can_capture():
            self.skipTest("this tarnwick.exe has no command 'capture'")

    def captured(self, folder, *descriptions):
        """The answers of the desktop, and its capture."""
        capture = folder / "machine.json"
        with standing(folder, *descriptions):
            answers = machines.answers(TARNWICK, CATALOGUE)
            machines.run(TARNWICK, "capture", "--with-apps", "-o", capture, CATALOGUE)
        return answers, capture

    def check_round_trip(self, *descriptions, least_games):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            wanted, capture = self.captured(folder, *descriptions)
            machine = json.loads(capture.read_text(encoding="utf-8"))
            self.assertGreaterEqual(len(wanted["scan"]), least_games)
            with second_machine(capture), standing(folder, capture):
                answers = machines.answers(TARNWICK, machines.catalogue_of(capture))
        self.assertEqual(without_user(answers), without_user(wanted))
        return wanted, machine

    def test_the_sample_desktop(self):
        self.check_round_trip(SAMPLE, least_games=35)

    def test_everything(self):
        """Every launcher, a user with letters beyond ASCII, one view alone, odd types, folders that can't be listed."""
        with tempfile.TemporaryDirectory() as name:
            description = pathlib.Path(name) / "everything.json"
            description.write_text(json.dumps(merged(SAMPLE, PARTS / "oddities.json")), encoding="utf-8")
            answers, capture = self.check_round_trip(PARTS / "user.json", description, least_games=40)
        places = [game["loc"] for game in answers["scan"]]
        self.assertTrue(any("Zoë Müß" in place for place in places), places)
        refused = [folder["path"] for folder in capture["subfolders"] if folder.get("refused")]
        self.assertEqual(refused, [r"C:\ProgramData\Riot Games\Metadata\held.live"])
        self.assertTrue({"Narrow", "Locked"} <= {game["name"] for game in answers["scan"]})


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    TARNWICK, DESKTOP = sys.argv[1:3]
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
