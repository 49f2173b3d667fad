"""The package as npm packs it, run by Node.js for Windows: its own tests, its ends, its types and its examples.

usage: node_test.py BIN TOOLS [UNITTEST ARGUMENT...]

BIN holds Tarnwick.dll and tarnwick-desktop.exe, TOOLS what install-tools puts there. All that is run lies in TOOLS/staged.
"""

import json
import os
import pathlib
import re
import shutil
import sys
import tarfile
import tempfile
import unittest

from staging import CATALOGUE, PACKAGE, SOURCE, Stage, output_of, unpack, windows_text

HERE = pathlib.Path(__file__).resolve().parent
VERSION = re.search(r"project\(Tarnwick VERSION ([\d.]+)", (SOURCE / "CMakeLists.txt").read_text("utf-8"))[1]

BIN = TOOLS = STAGE = None


def setUpModule():
    global STAGE
    stand_ins = TOOLS / "stand-in"
    output_of(SOURCE / "bindings" / "stand-in" / "make-stand-in", stand_ins)
    os.environ["TARNWICK_STAND_INS"] = windows_text(stand_ins)
    os.environ["TARNWICK_GOLDEN"] = windows_text(SOURCE / "bindings" / "golden")
    STAGE = Stage(BIN, TOOLS, "staged")
    unittest.addModuleCleanup(STAGE.close)
    shutil.copytree(HERE, STAGE.folder, dirs_exist_ok=True, ignore=shutil.ignore_patterns("package*.json", "__pycache__"))
    shutil.copytree(SOURCE / "examples" / "node", STAGE.folder / "examples")


class JavaScript(unittest.TestCase):
    """The tests in one file. They run together, and each of them is a test here."""
    file = None

    @classmethod
    def setUpClass(cls):
        cls.code, cls.told, cls.errors = STAGE.node(STAGE.folder / cls.file)

    def expect_ok(self, name):
        if not re.search(rf"^ok \d+ - {re.escape(name)}$", self.told, re.MULTILINE):
            self.fail(self.told + self.errors)

    def test_the_run_itself(self):
        self.assertEqual(self.code, 0, self.told + self.errors)
        self.assertRegex(self.told, rf"(?m)^# pass {len(names_in(HERE / self.file))}$")


def names_in(path):
    return re.findall(r"^test\('(.+?)', ", path.read_text(encoding="utf-8"), re.MULTILINE)


def case_of(path):
    tests = {"test_" + re.sub(r"\W+", "_", name): lambda self, name=name: self.expect_ok(name) for name in names_in(path)}
    return type("".join(word.title() for word in path.name.split(".")[0].split("_")), (JavaScript,), {"file": path.name, **tests})


class Processes(unittest.TestCase):
    def run_program(self, name, *arguments):
        return STAGE.node(STAGE.folder / "processes" / name, *arguments)

    def test_a_watch_holds_no_process_back_from_its_end(self):
        for how in ("exit", "exit-while-the-watch-waits", "exit-while-stopping", "exit-from-stopped", "unref",
                    "unref-while-the-watch-waits", "stop"):
            with self.subTest(how):
                self.assertEqual(self.run_program("ending.js", how), (7, "", ""))

    def test_a_watch_keeps_its_process_running(self):
        self.assertEqual(self.run_program("watching.js"), (0, "still there\n", ""))

    def test_what_a_listener_throws_ends_the_process_where_nobody_listens(self):
        code, _, errors = self.run_program("ending.js", "throw")
        self.assertEqual(code, 1)
        self.assertIn("Error: thrown by a listener", errors)

    def test_a_scan_does_not_crash_an_exit(self):
        self.assertEqual(self.run_program("exit_during_scan.js"), (7, "", ""))


class Package(unittest.TestCase):
    def test_has_the_version_of_the_project(self):
        packed = json.loads((STAGE.folder / "node_modules/tarnwick/package.json").read_text("utf-8"))
        self.assertEqual((packed["name"], packed["version"], packed["license"]), ("tarnwick", VERSION, "MIT"))
        self.assertEqual(list(packed["dependencies"]), ["koffi"])
        self.assertEqual(STAGE.archive.name, f"tarnwick-{VERSION}.tgz")

    def test_holds_what_a_host_needs_and_nothing_else(self):
        with tarfile.open(STAGE.archive) as packed:
            names = sorted(name.removeprefix("package/") for name in packed.getnames())
        self.assertEqual([name for name in names if not name.startswith("lib/")], [
            "LICENSE", "README.md", "Tarnwick.dll", "index.d.mts", "index.d.ts", "index.js", "index.mjs", "package.json"])
        self.assertEqual([name for name in names if name.startswith("lib/")],
                         sorted(f"lib/{path.name}" for path in (PACKAGE / "lib").iterdir()))

    def test_is_the_same_bytes_each_time(self):
        again = STAGE.folder / "again"
        output_of("bash", "-c", 'umask 077; exec "$@"', "-", PACKAGE / "make-package", STAGE.bin / "Tarnwick.dll", again)
        self.assertEqual((again / STAGE.archive.name).read_bytes(), STAGE.archive.read_bytes())

    def test_both_entry_points_give_the_same(self):
        processes = STAGE.folder / "processes"
        self.assertEqual(STAGE.node_output(processes / "entry.cjs"), f"tarnwick {VERSION} TarnwickError,load function\n")
        self.assertEqual(STAGE.node_output(processes / "entry.mjs"), "TarnwickError,load true\n")

    def test_installs_into_an_empty_folder_and_runs_there(self):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            (folder / "package.json").write_text('{"name":"host","private":true}', encoding="utf-8")
            output_of("npm", "install", "--offline", "--install-links", "--ignore-scripts", "--no-audit", "--no-fund",
                      STAGE.archive, STAGE.tools / "node_modules" / "koffi", cwd=folder)
            shutil.copy(STAGE.folder / "examples" / "scan.mjs", folder)
            told = STAGE.node_output(folder / "scan.mjs", CATALOGUE)
        self.assertIn("Lantern Harbour", told)

    def test_tells_that_it_came_without_the_library(self):
        bare = STAGE.folder / "bare"
        bare.mkdir()
        unpack(STAGE.archive, bare)
        program = pathlib.Path(shutil.copy(STAGE.folder / "processes" / "default_dll.js", bare))
        self.assertEqual(STAGE.node_output(program), "loaded\n")
        (bare / "node_modules/tarnwick/Tarnwick.dll").unlink()
        self.assertRegex(STAGE.node_output(program), r"^DLL_MISSING this package came without the library: give load\(\) the "
                                                     r"path of Tarnwick\.dll ")

    @unittest.skipIf(os.name == "nt", "this is Windows")
    def test_tells_that_this_is_not_windows(self):
        self.assertRegex(output_of("node", STAGE.folder / "processes" / "default_dll.js"),
                         r"^UNSUPPORTED_PLATFORM Tarnwick\.dll runs on Windows alone, and this is ")

    def test_types(self):
        self.assertEqual(output_of("node", STAGE.tools / "node_modules/typescript/bin/tsc", "--project", STAGE.folder / "types"), "")


class Examples(unittest.TestCase):
    def example(self, name, *arguments):
        return STAGE.node_output(STAGE.folder / "examples" / name, *arguments)

    def test_scan(self):
        told = self.example("scan.mjs", CATALOGUE)
        self.assertRegex(told, r"(?m)^Lantern Harbour +C:\\Games\\Lantern Harbour\\lantern\.exe$")
        self.assertGreaterEqual(len(told.splitlines()), 39)

    def test_list(self):
        self.assertRegex(self.example("list.cjs", "fern"), r"(?m)^Fernpad")
        self.assertEqual(self.example("list.cjs", "no such application"), "")

    def test_watch(self):
        self.assertRegex(self.example("watch.mjs", "1"), r"stopped\n$")


# unittest finds these by their names, as it does those above.
for file in sorted(HERE.glob("*.test.js")):
    case = case_of(file)
    globals()[case.__name__] = case
del JavaScript, case


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    BIN, TOOLS = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
