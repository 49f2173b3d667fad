"""Each captured machine of this folder is built, scanned and taken away; what was found is compared with its golden
answers.

usage: captures_test.py TARNWICK.EXE DESKTOP.EXE [UNITTEST ARGUMENT...]
       captures_test.py TARNWICK.EXE DESKTOP.EXE --write [NAME...]

The second form writes the golden answers anew, of all machines or of those named.
"""

import json
import pathlib
import sys
import tempfile
import unittest

import machines

TARNWICK = DESKTOP = None
GOLDEN = ".golden.json"


def captures():
    return sorted(path for path in machines.HERE.glob("*.json")
                  if not path.name.endswith(GOLDEN) and "capture" in json.loads(path.read_text(encoding="utf-8")))


def golden_of(capture):
    return capture.with_name(capture.stem + GOLDEN)


def answers_of(capture):
    with tempfile.TemporaryDirectory() as folder:
        state = pathlib.Path(folder) / "state.json"
        machines.build(DESKTOP, capture, state)
        try:
            return machines.answers(TARNWICK, machines.catalogue_of(capture))
        finally:
            machines.remove(DESKTOP, state)


class Captures(unittest.TestCase):
    maxDiff = None

    def test_every_golden_file_has_its_capture(self):
        wanted = {golden_of(capture).name for capture in captures()}
        self.assertEqual({path.name for path in machines.HERE.glob("*" + GOLDEN)}, wanted)

    def test_nothing_stays_of_a_machine(self):
        """The answers of the bare machine are the same before and after."""
        before = machines.run(TARNWICK, "apps", "--all", "--format", "json")
        answers_of(captures()[0])
        self.assertEqual(machines.run(TARNWICK, "apps", "--all", "--format", "json"), before)


def make_test(capture):
    def test(self):
        golden = json.loads(golden_of(capture).read_text(encoding="utf-8"))
        self.assertEqual(answers_of(capture), golden)
    return test


for found in captures():
    setattr(Captures, "test_" + found.stem.replace("-", "_"), make_test(found))


def write(names):
    for capture in captures():
        if not names or capture.stem in names:
            text = json.dumps(answers_of(capture), indent=1, ensure_ascii=False)
            golden_of(capture).write_text(text + "\n", encoding="utf-8")
            print("wrote", golden_of(capture).name)


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    TARNWICK, DESKTOP = sys.argv[1:3]
    if sys.argv[3:4] == ["--write"]:
        write(sys.argv[4:])
    else:
        unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
