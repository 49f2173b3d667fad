"""The stand-in library that the bindings' tests load, and the files that are no usable library."""

import json
import pathlib
import re
import struct
import subprocess

SOURCE = pathlib.Path(__file__).resolve().parents[2]
GOLDEN = SOURCE / "bindings" / "golden"
STAND_IN = "libtarnwick-stand-in.so"
MISSING_EXPORT = "libtarnwick-missing-export.so"


def make(folder):
    """The stand-in for this system, and beside it: 32-bit.so and 32-bit.dll, which end behind their headers, and
    text.so, which is no library at all."""
    subprocess.run([SOURCE / "bindings" / "stand-in" / "make-stand-in", "--linux", folder], check=True)
    folder = pathlib.Path(folder)
    elf = b"\x7fELF" + bytes([1, 1, 1]) + bytes(9) + struct.pack("<HHIIIIIHHHHHH", 3, 3, 1, 0, 0, 0, 0, 52, 0, 0, 0, 0, 0)
    (folder / "32-bit.so").write_bytes(elf + bytes(1024))
    (folder / "32-bit.dll").write_bytes(b"MZ" + bytes(58) + struct.pack("<I", 64) + b"PE\0\0\x4c\x01" + bytes(1024))
    (folder / "text.so").write_text("This is no library.\n", encoding="utf-8")
    return folder


def golden(name):
    return json.loads((GOLDEN / f"{name}.json").read_text(encoding="utf-8"))


def version():
    """The version of project() in CMakeLists.txt."""
    return re.search(r"project\(Tarnwick VERSION (\S+)", (SOURCE / "CMakeLists.txt").read_text(encoding="utf-8"))[1]
