"""A picture of what a command shows on a terminal.

usage: terminal_picture.py PICTURE.png COLUMNS PROMPT COMMAND [ARGUMENT ...]

Runs the command on a pseudo-terminal, feeds its output to a terminal emulator and lets a browser draw the screen, one box
for each character, so that wide characters stand in line whatever font has them. PROMPT is the line shown above.
"""

import fcntl
import html
import os
import pathlib
import pty
import struct
import sys
import tempfile
import termios

import pyte
from selenium import webdriver
from selenium.webdriver.chrome.service import Service

MOST_LINES = 500
PAGE = """<!DOCTYPE html><meta charset="utf-8"><style>
body {{ margin: 0; padding: 14px 18px; background: #14171f; color: #d7dce8; font: 13px/1.4 "DejaVu Sans Mono", monospace;
       width: max-content; }}
.prompt {{ color: #8aa4ff; }} div {{ height: 1.4em; white-space: nowrap; }}
i {{ display: inline-block; width: 1ch; font-style: normal; overflow: visible; white-space: pre; }} i.w {{ width: 2ch; }}
</style><div class="prompt">{prompt}</div>{lines}"""


def screen_of(columns, command):
    """The screen that the command leaves, as a pyte.Screen, and its exit code."""
    screen = pyte.Screen(columns, MOST_LINES)
    stream = pyte.ByteStream(screen)
    child, terminal = pty.fork()
    if child == 0:
        os.execvp(command[0], command)
    fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", MOST_LINES, columns, 0, 0))
    try:
        while data := os.read(terminal, 65536):
            stream.feed(data)
    except OSError:
        pass  # Linux reports the end of the other side as an error
    return screen, os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])


def line_as_html(line, columns):
    cells = []
    for column in range(columns):
        text = line[column].data
        if not text:
            continue  # the second half of a wide character
        wide = column + 1 < columns and not line[column + 1].data
        cells.append(f'<i class="w">{html.escape(text)}</i>' if wide else f"<i>{html.escape(text)}</i>")
    return f"<div>{''.join(cells)}</div>"


def draw(page, picture):
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-background-networking", "--no-first-run",
                     "--hide-scrollbars"):
        options.add_argument(argument)
    browser = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
    try:
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "screen.html"
            path.write_text(page, encoding="utf-8")
            browser.get(path.as_uri())
            width, height = browser.execute_script("return [document.body.offsetWidth, document.body.offsetHeight]")
            browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                                    {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})
            browser.save_screenshot(str(picture))
    finally:
        browser.quit()


def main():
    if len(sys.argv) < 5:
        sys.exit(__doc__)
    picture, columns, prompt, command = sys.argv[1], int(sys.argv[2]), sys.argv[3], sys.argv[4:]
    screen, code = screen_of(columns, command)
    if code != 0:
        sys.exit(f"{command[0]} ended with code {code}:\n" + "\n".join(line.rstrip() for line in screen.display).strip())
    used = [row for row in range(MOST_LINES) if any(screen.buffer[row][c].data.strip() for c in range(columns))]
    lines = [line_as_html(screen.buffer[row], columns) for row in range(max(used, default=-1) + 1)]
    draw(PAGE.format(prompt=html.escape(prompt), lines="".join(lines)), picture)


if __name__ == "__main__":
    main()
