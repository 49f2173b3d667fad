"""A headless Chromium with a page of tarnwick.exe in it, and pages with data of one's own."""

import contextlib
import json
import pathlib
import re
import tempfile

from selenium import webdriver
from selenium.webdriver.chrome.service import Service

ARGUMENTS = (
    "--headless=new",
    "--no-sandbox",
    "--disable-gpu",
    "--disable-dev-shm-usage",
    "--no-first-run",
    "--disable-background-networking",
    "--disable-component-update",
    "--disable-sync",
    "--lang=en-US",
    "--window-size=1280,900",
)

DATA = re.compile(r'(<script type="application/json" id="data">)(.*?)(</script>)', re.S)


def start():
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for argument in ARGUMENTS:
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


def show(browser, path, width=1280, height=900, scheme="light"):
    """Opens the page in a window of that inner size."""
    browser.execute_cdp_cmd(
        "Emulation.setDeviceMetricsOverride",
        {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})
    browser.execute_cdp_cmd(
        "Emulation.setEmulatedMedia", {"features": [{"name": "prefers-color-scheme", "value": scheme}]})
    browser.get(pathlib.Path(path).resolve().as_uri())


def data_of(path):
    return json.loads(DATA.search(pathlib.Path(path).read_text(encoding="utf-8"))[2])


@contextlib.contextmanager
def page_with(path, data):
    """The page at `path` with other data in it, for as long as the context lasts."""
    text = json.dumps(data).replace("<", "\\u003c")
    page = DATA.sub(lambda match: match[1] + text + match[3], pathlib.Path(path).read_text(encoding="utf-8"), count=1)
    with tempfile.TemporaryDirectory() as folder:
        made = pathlib.Path(folder) / "page.html"
        made.write_text(page, encoding="utf-8")
        yield made
