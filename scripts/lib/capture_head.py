"""What a script must know of a captured machine before it is built.

usage: capture_head.py MACHINE.JSON

Prints the letters of its drives on one line and the path of its catalogue on the next. Both are empty where the file
tells none, or is no capture at all: whoever builds it says what is wrong with it.
"""

import json
import re
import sys

LONGEST = 128 << 20  # no longer one is built


def head_of(path):
    with open(path, encoding="utf-8") as file:
        text = file.read(LONGEST + 1)
    machine = json.loads(text) if len(text) <= LONGEST else {}
    head = machine.get("capture") if isinstance(machine, dict) else None
    return head if isinstance(head, dict) else {}


def drives_of(head):
    drives = head.get("drives")
    texts = drives if isinstance(drives, list) else []
    letters = [text[0].lower() for text in texts if isinstance(text, str) and re.fullmatch(r"[A-Za-z]:\\", text)]
    return "".join(sorted(set(letters)))


def main():
    try:
        head = head_of(sys.argv[1])
    except (OSError, ValueError, RecursionError):
        head = {}
    catalogue = head.get("catalogue")
    print(drives_of(head))
    print(re.sub(r"[\x00-\x1f]", "?", catalogue) if isinstance(catalogue, str) else "")


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.stdout.reconfigure(encoding="utf-8", errors="replace")
    main()
