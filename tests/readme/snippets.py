"""The snippets of README.md, so that tests run what a reader would copy."""

import re
from pathlib import Path

README = Path(__file__).resolve().parents[2] / "README.md"


def snippet(language, containing):
    """The only fenced block of this language that holds the given text."""
    blocks = re.findall(r"^```" + re.escape(language) + r"\n(.*?)^```$", README.read_text(encoding="utf-8"), re.M | re.S)
    found = [block for block in blocks if containing in block]
    if len(found) != 1:
        raise LookupError(f"README.md holds {len(found)} {language} blocks with {containing!r}, one is wanted")
    return found[0]
