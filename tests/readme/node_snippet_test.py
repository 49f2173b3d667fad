"""The README's snippet for Node.js, run as it stands on the sample desktop.

usage: node_snippet_test.py BIN TOOLS [UNITTEST ARGUMENT...]

BIN holds Tarnwick.dll and tarnwick-desktop.exe, TOOLS what bindings/node/test/install-tools puts there.
"""

import contextlib
import os
import pathlib
import sys
import unittest

from snippets import snippet

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "bindings" / "node" / "test"))
from staging import Stage  # noqa: E402

BIN = TOOLS = None


class NodeSnippet(unittest.TestCase):
    def test_prints_the_games(self):
        stage = Stage(BIN, TOOLS, "snippet")
        self.addCleanup(stage.close)
        program = stage.folder / "host.mjs"
        program.write_text(snippet("js", "'tarnwick'"), encoding="utf-8")
        # The snippet's catalogue is in the current directory.
        with contextlib.chdir(pathlib.Path(os.environ["WINEPREFIX"]) / "drive_c" / "TarnwickDemo"):
            games = stage.node_output(program).splitlines()
        self.assertGreaterEqual(len(games), 39)
        self.assertIn(r"Lantern Harbour C:\Games\Lantern Harbour\lantern.exe", games)


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    BIN, TOOLS = sys.argv[1:3]
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
