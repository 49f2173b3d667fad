"""Tarnwick from Python: the games, the applications, the foreground.

    python example.py C:\\path\\to\\Tarnwick.dll scan [CATALOGUE]
    python example.py C:\\path\\to\\Tarnwick.dll list [FILTER]
    python example.py C:\\path\\to\\Tarnwick.dll watch [SECONDS]

Outside of the source tree, install the module first: pip install bindings/python
"""

import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "bindings" / "python"))

from tarnwick import FocusChange, Tarnwick, TarnwickError  # noqa: E402


def scan(tarnwick: Tarnwick, catalogue: str) -> None:
    for game in tarnwick.scan(catalogue or None):
        print(f"{game.name}: {game.path or game.launch_url}")


def list_applications(tarnwick: Tarnwick, filter: str) -> None:
    for application in tarnwick.all_applications(filter):
        print(f"{application.name}, {application.publisher}: {application.path}")


def watch(tarnwick: Tarnwick, seconds: str) -> None:
    def tell(change: FocusChange) -> None:
        print(change.process_id, change.file_name, change.path, flush=True)

    with tarnwick.watch_focus(tell):
        time.sleep(float(seconds or 60))


COMMANDS = {"scan": scan, "list": list_applications, "watch": watch}


def main() -> int:
    if len(sys.argv) < 3 or sys.argv[2] not in COMMANDS:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        with Tarnwick(sys.argv[1]) as tarnwick:
            COMMANDS[sys.argv[2]](tarnwick, sys.argv[3] if len(sys.argv) > 3 else "")
    except TarnwickError as error:
        print(error, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
