"""Small hosts that are compiled as a reader of their page would do, and run on the sample desktop: what the tests of the
examples and of the README share."""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "schemas"))
from schema_test import CATALOGUE, SAMPLE, WINE, start  # noqa: E402  the one place that runs a Windows program here

SOURCE = pathlib.Path(__file__).resolve().parents[2]
WARNINGS = ("-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Werror")
C99 = ("x86_64-w64-mingw32-gcc-posix", "-std=c99")
CPP17 = ("x86_64-w64-mingw32-g++-posix", "-std=c++17", "-static")


def run(program, *arguments, code=0):
    """What the program printed. Another exit code is told in the program's own words."""
    result = start(program, *arguments)
    if result.returncode != code:
        raise AssertionError(f"{program} {arguments} ended with {result.returncode}: "
                             f"{result.stderr.decode(errors='replace')}")
    return result.stdout.decode("utf-8").replace("\r\n", "\n")


def compile_host(compiler, source, program, *libraries):
    """Without a warning, against the public headers alone."""
    command = [*compiler, *WARNINGS, "-I", SOURCE / "include", source, "-o", program, *libraries]
    made = subprocess.run(command, capture_output=True, text=True, check=False)
    if made.returncode != 0:
        raise AssertionError(f"{source} doesn't compile:\n{made.stderr}")


class SampleDesktop:
    """The sample desktop, and a folder of this machine's that has the library in it."""

    def __init__(self, bin_folder):
        self.bin = pathlib.Path(bin_folder).resolve()
        self._folder = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self._folder.name)
        shutil.copy(self.bin / "Tarnwick.dll", self.folder)
        self._state = self.folder / "state.json"
        run(self.bin / "tarnwick-desktop.exe", "build", SAMPLE, "--state", self._state)

    def remove(self):
        run(self.bin / "tarnwick-desktop.exe", "remove", "--state", self._state)
        self._folder.cleanup()


def with_a_window(action, patience=60):
    """The first answer of `action` that isn't empty, with a window of another program in the foreground; it must wait
    until that is there."""
    with subprocess.Popen([*WINE, "notepad"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as window:
        try:
            end = time.monotonic() + patience
            while time.monotonic() < end:
                if answer := action():
                    return answer
        finally:
            window.terminate()
    raise AssertionError("nothing came of a foreground window")


__all__ = ["C99", "CATALOGUE", "CPP17", "SOURCE", "WINE", "SampleDesktop", "compile_host", "run",
           "start", "with_a_window"]
