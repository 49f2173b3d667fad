"""Machines that are built, asked and taken away: what the tests of captures share."""

import base64
import io
import json
import pathlib
import sys

from PIL import Image

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "schemas"))
from schema_test import start  # noqa: E402  the one place that knows how a Windows program is run here

HERE = pathlib.Path(__file__).resolve().parent
ICON_HEAD = "data:image/png;base64,"


root = "Z:"  # the drive that shows the whole of this machine to Wine


def windows_text(argument):
    if isinstance(argument, pathlib.PurePosixPath):
        return root + str(argument).replace("/", "\\")
    return argument


def run(program, *arguments):
    """What the program printed. A failure is told in its own words."""
    result = start(program, *map(windows_text, arguments))
    if result.returncode != 0:
        raise AssertionError(f"{program} {arguments} ended with {result.returncode}: "
                             f"{result.stderr.decode(errors='replace')}")
    return result.stdout.decode("utf-8")


def build(desktop, description, state):
    return run(desktop, "build", pathlib.Path(description), "--state", pathlib.Path(state))


def remove(desktop, state):
    return run(desktop, "remove", "--state", pathlib.Path(state))


def colour_of(icon):
    """The colour in the middle of an icon, which is all that is compared: how a size is scaled is the system's affair."""
    if not icon:
        return ""
    if not icon.startswith(ICON_HEAD):
        raise AssertionError("an icon that is no PNG picture: " + icon[:40])
    picture = Image.open(io.BytesIO(base64.b64decode(icon[len(ICON_HEAD):]))).convert("RGBA")
    red, green, blue, alpha = picture.getpixel((picture.width // 2, picture.height // 2))
    return f"#{red:02X}{green:02X}{blue:02X}" if alpha else "transparent"


def with_colours(rows):
    return [{**row, "icon": colour_of(row["icon"])} for row in rows]


def answers(tarnwick, catalogue):
    """What a scan and the list of applications tell of the machine that stands now."""
    scan = ["scan", catalogue] if catalogue else ["scan"]
    return {"scan": with_colours(json.loads(run(tarnwick, *scan, "--format", "json"))),
            "apps": with_colours(json.loads(run(tarnwick, "apps", "--all", "--format", "json")))}


def catalogue_of(capture):
    return json.loads(pathlib.Path(capture).read_text(encoding="utf-8"))["capture"].get("catalogue", "")
