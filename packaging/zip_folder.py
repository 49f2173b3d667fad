#!/usr/bin/env python3
"""Packs a folder so that the same files give the same bytes, whoever packs them, when and where.

usage: zip_folder.py FOLDER ARCHIVE.zip

Every file has the time SOURCE_DATE_EPOCH, or the earliest that an archive can tell.
"""
import os
import pathlib
import sys
import time
import zipfile

EARLIEST = 315532800  # 1980-01-01


def entry(name, seconds):
    info = zipfile.ZipInfo(name, time.gmtime(seconds)[:6])
    info.compress_type = zipfile.ZIP_DEFLATED
    info.create_system = 3
    info.external_attr = 0o100644 << 16
    return info


def pack(folder, archive):
    seconds = max(int(os.environ.get("SOURCE_DATE_EPOCH", EARLIEST)), EARLIEST)
    files = sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*") if path.is_file())
    with zipfile.ZipFile(archive, "w") as packed:
        for name in files:
            packed.writestr(entry(name, seconds), (folder / name).read_bytes(), compresslevel=9)


def main(arguments):
    if len(arguments) != 2:
        print(__doc__.strip())
        return 2
    pack(pathlib.Path(arguments[0]), pathlib.Path(arguments[1]))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
