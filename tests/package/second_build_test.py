"""Builds the package a second time, from a copy of the sources in another folder, and compares every byte.

usage: second_build_test.py BUILD/PACKAGE

Takes as long as a whole build of the library and the program: nothing is taken from a cache of compiled objects.
"""

import calendar
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile

SOURCE = pathlib.Path(__file__).resolve().parents[2]
PACKAGE = None


def copy_of_sources(folder):
    """A copy of the files that git knows or would: two builds of one commit, wherever they stand."""
    names = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=SOURCE, check=True,
                           capture_output=True).stdout.decode().split("\0")
    for name in filter(None, names):
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(SOURCE / name, folder / name)


def time_of(archive):
    with zipfile.ZipFile(archive) as opened:
        return calendar.timegm((*opened.infolist()[0].date_time, 0, 0, 0))


def contents(folder):
    return {path.relative_to(folder).as_posix(): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


class SecondBuild(unittest.TestCase):
    def test_another_folder_another_zone_and_another_mask_give_the_same_bytes(self):
        with tempfile.TemporaryDirectory(prefix="tarnwick-a-second-build-") as temporary:
            folder = pathlib.Path(temporary) / "deep" / "down" / "tarnwick"
            copy_of_sources(folder)
            surroundings = {**os.environ, "CCACHE_DISABLE": "1", "TZ": "Asia/Tokyo",
                            "SOURCE_DATE_EPOCH": str(time_of(next(PACKAGE.glob("tarnwick-*-x64.zip"))))}
            made = subprocess.run([str(folder / "scripts" / "package")], env=surroundings, umask=0o077, capture_output=True,
                                  text=True, check=False)
            self.assertEqual(made.returncode, 0, made.stdout + made.stderr)
            first, second = contents(PACKAGE), contents(folder / "build" / "package")
            self.assertEqual(sorted(first), sorted(second))
            self.assertEqual([name for name in first if first[name] != second[name]], [])


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    PACKAGE = pathlib.Path(sys.argv[1]).resolve()
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
