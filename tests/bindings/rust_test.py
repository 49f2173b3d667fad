"""The Rust binding: its own tests against the stand-in library, on this machine and under Wine; and the library itself,
with the binding's tests and the example, on the sample desktop.

usage: rust_test.py BIN    (the folder of Tarnwick.dll, tarnwick.exe and tarnwick-desktop.exe)

It wants Debian's Rust and crates (bindings/rust/README.md names them) and a Wine prefix that may be spoilt.
"""

import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = ROOT / "build" / "rust"
SOURCE = BUILD / "source"
TARGET = BUILD / "target"
STAND_IN = BUILD / "stand-in"
WINDOWS = "x86_64-pc-windows-gnu"
CATALOGUE = r"C:\TarnwickDemo\MasterGameList.xml"
BIN = TOOLS = None


def finds_windows(rustc):
    """Whether this compiler comes with Rust's standard library for Windows."""
    result = subprocess.run([rustc, "--print", "sysroot"], capture_output=True, text=True, check=False)
    return result.returncode == 0 and pathlib.Path(result.stdout.strip(), "lib", "rustlib", WINDOWS, "lib").is_dir()


def folder_of_rust():
    """Debian's before any other that comes first in PATH, since that may know Linux alone."""
    for folder in ["/usr/bin", *os.environ["PATH"].split(":")]:
        tools = pathlib.Path(folder)
        if (tools / "cargo").exists() and (tools / "rustc").exists() and finds_windows(tools / "rustc"):
            return tools
    raise RuntimeError(f"no Rust here builds for {WINDOWS}: install rustc, cargo and libstd-rust-dev-windows")


def windows_path(path):
    """Wine shows this machine's root as drive Z."""
    return "Z:" + str(path).replace("/", "\\")


def copy_source():
    """Cargo writes beside what it builds, so it gets a copy, with one lock file and one target. Each file is new, since
    cargo goes by age."""
    for part in ("bindings/rust", "bindings/golden", "examples/rust"):
        shutil.rmtree(SOURCE / part, ignore_errors=True)
        shutil.copytree(ROOT / part, SOURCE / part, copy_function=shutil.copy,
                        ignore=shutil.ignore_patterns("target", "Cargo.lock"))
    (SOURCE / "Cargo.toml").write_text('[workspace]\nmembers = ["bindings/rust", "examples/rust"]\n', encoding="utf-8")
    # One that another version of cargo wrote may be unreadable.
    (SOURCE / "Cargo.lock").unlink(missing_ok=True)


def environment(**more):
    """A home of its own keeps the user's settings out. Wine's dbghelp crashes on the backtrace of a Rust test."""
    path = f"{TOOLS}:{os.environ['PATH']}"
    own = {"PATH": path, "CARGO_HOME": str(BUILD / "cargo-home"), "CARGO_TARGET_DIR": str(TARGET), "RUST_BACKTRACE": "0"}
    without_rust = {name: value for name, value in os.environ.items() if not name.startswith(("CARGO", "RUST"))}
    return {**without_rust, **own, **more}


def run(command, **more):
    """Into a file: the end of a pipe would wait for processes that Wine starts on the side, and which stay."""
    with tempfile.TemporaryFile() as output:
        code = subprocess.run(command, cwd=SOURCE, env=environment(**more), stdout=output, stderr=subprocess.STDOUT,
                              check=False, timeout=1200).returncode
        output.seek(0)
        return code, output.read().decode("utf-8", errors="replace")


def cargo(*arguments, **more):
    code, text = run([str(TOOLS / "cargo"), "--config", "bindings/rust/debian.toml", *arguments], **more)
    if code != 0:
        raise AssertionError(f"cargo {' '.join(arguments)} ended with {code}:\n{text}")
    return text


def passed(text):
    return sum(int(count) for count in re.findall(r"^test result: ok\. (\d+) passed; 0 failed", text, re.MULTILINE))


def setUpModule():
    global TOOLS
    TOOLS = folder_of_rust()
    copy_source()
    subprocess.run([ROOT / "bindings/stand-in/make-stand-in", STAND_IN], check=True)


class StandIn(unittest.TestCase):
    """What is expected of each answer stands in the crate's tests."""

    def test_on_this_machine(self):
        text = cargo("test", "--package", "tarnwick", "--lib", "--tests", TARNWICK_STAND_IN=str(STAND_IN))
        self.assertGreaterEqual(passed(text), 35, text)

    def test_on_windows(self):
        text = cargo("test", "--package", "tarnwick", "--lib", "--tests", "--target", WINDOWS,
                     TARNWICK_STAND_IN=windows_path(STAND_IN))
        self.assertGreaterEqual(passed(text), 37, text)


class Crate(unittest.TestCase):
    def test_snippets_of_the_documentation(self):
        # A released rustdoc looks at which error a snippet doesn't compile with only where it is told so.
        text = cargo("test", "--package", "tarnwick", "--doc", RUSTC_BOOTSTRAP="1")
        self.assertGreaterEqual(passed(text), 6, text)
        self.assertEqual(len(re.findall(r"compile fail ... ok$", text, re.MULTILINE)), 1, text)
        self.assertIn(" - Readme (", text)

    def test_documentation(self):
        cargo("doc", "--package", "tarnwick", "--no-deps", RUSTDOCFLAGS="-D warnings")

    def test_lints(self):
        if not (TOOLS / "cargo-clippy").exists():
            self.skipTest("rust-clippy isn't installed")
        # Clippy starts a cargo of its own, which isn't told of --config.
        home = BUILD / "clippy-home"
        home.mkdir(exist_ok=True)
        shutil.copy(ROOT / "bindings/rust/debian.toml", home / "config.toml")
        for target in ([], ["--target", WINDOWS]):
            cargo("clippy", "--workspace", "--all-targets", *target, "--", "-D", "warnings", CARGO_HOME=str(home))

    def test_format(self):
        if not (TOOLS / "cargo-fmt").exists():
            self.skipTest("rustfmt isn't installed")
        cargo("fmt", "--all", "--check")

    def test_version(self):
        project = re.search(r"^project\([^)]*VERSION\s+([\d.]+)", (ROOT / "CMakeLists.txt").read_text(encoding="utf-8"),
                            re.MULTILINE)
        packages = json.loads(cargo("metadata", "--no-deps", "--quiet", "--format-version", "1"))["packages"]
        described = {package["name"]: package for package in packages}["tarnwick"]
        self.assertEqual((described["version"], described["license"]), (project.group(1), "MIT"))

    def test_package(self):
        listed = cargo("package", "--package", "tarnwick", "--list", "--allow-dirty", "--quiet").splitlines()
        self.assertLess({"src/lib.rs", "README.md", "LICENSE"}, set(listed))
        self.assertEqual([name for name in listed if name.startswith("tests")], [])

    def test_no_name_of_a_registry(self):
        for path in [*(ROOT / "bindings/rust").rglob("*"), *(ROOT / "examples/rust").rglob("*")]:
            if path.is_file() and path.name != "Cargo.lock" and "target" not in path.parts:
                self.assertNotRegex(path.read_text(encoding="utf-8"), r"crates\.io|index\.crates", path)


def start(program, *arguments):
    return run(["wine", str(program), *arguments])


class SampleDesktop(unittest.TestCase):
    """The library itself; the example lies beside it."""

    @classmethod
    def setUpClass(cls):
        cargo("build", "--package", "tarnwick-example", "--target", WINDOWS)
        cls.beside = BUILD / "beside"
        cls.beside.mkdir(exist_ok=True)
        cls.example = cls.beside / "tarnwick-example.exe"
        shutil.copy(TARGET / WINDOWS / "debug" / "tarnwick-example.exe", cls.example)
        shutil.copy(BIN / "Tarnwick.dll", cls.beside)
        cls.state = windows_path(BUILD / "state.json")
        code, text = start(BIN / "tarnwick-desktop.exe", "build",
                           windows_path(ROOT / "desktop/samples/sample-desktop.json"), "--state", cls.state)
        if code != 0:
            raise RuntimeError(text)

    @classmethod
    def tearDownClass(cls):
        start(BIN / "tarnwick-desktop.exe", "remove", "--state", cls.state)

    def answer(self, program, *arguments):
        code, text = start(program, *arguments)
        self.assertEqual(code, 0, text)
        return text

    def program_rows(self, *arguments):
        return json.loads(self.answer(BIN / "tarnwick.exe", *arguments, "--format", "json"))

    def test_binding(self):
        text = cargo("test", "--package", "tarnwick", "--test", "real_library", "--target", WINDOWS, "--", "--ignored",
                     "--test-threads=1", TARNWICK_DLL=windows_path(self.beside / "Tarnwick.dll"))
        self.assertGreaterEqual(passed(text), 4, text)

    def test_example_scans(self):
        games = [f"{game['name']}\t{game['loc'] or game['launchUrl']}" for game in self.program_rows("scan", CATALOGUE)]
        self.assertGreater(len(games), 30)
        self.assertEqual(self.answer(self.example, "scan", CATALOGUE).splitlines(), games)

    def test_example_lists(self):
        rows = self.program_rows("apps", "--page-size", "1000")
        apps = [f"{app['name']}\t{app['version']}\t{app['loc']}" for app in rows]
        self.assertGreater(len(apps), 5)
        self.assertEqual(self.answer(self.example, "list").splitlines(), apps)
        self.assertEqual(self.answer(self.example, "list", "harbour mail").splitlines(),
                         [line for line in apps if line.startswith("Harbour Mail")])

    def test_example_watches(self):
        with subprocess.Popen(["wine", "notepad"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as window:
            try:
                self.assertRegex(self.watched(), r"(?m)^\d+\t.*\.exe\t.*\\.*\.exe\r?$")
            finally:
                window.terminate()

    def watched(self):
        """What the watch says, which must wait until the window that was started is there."""
        end = time.monotonic() + 60
        while time.monotonic() < end:
            text = self.answer(self.example, "watch", "1")
            if text:
                return text
        raise AssertionError("the watch saw no foreground process")

    def test_example_complains(self):
        code, text = start(self.example, "nonsense")
        self.assertEqual(code, 1)
        self.assertIn("usage: tarnwick-example", text)


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    BIN = pathlib.Path(sys.argv[1]).resolve()
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
