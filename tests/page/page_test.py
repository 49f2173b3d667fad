"""The pages that tarnwick.exe writes, in a real browser.

usage: page_test.py GAMES.html APPS.html [SCREENSHOT.png]
"""

import json
import pathlib
import re
import sys
import tempfile
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By

GAMES = APPS = SCREENSHOT = None


def start_browser():
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for argument in (
        "--headless=new",
        "--no-sandbox",
        "--disable-gpu",
        "--disable-dev-shm-usage",
        "--no-first-run",
        "--disable-background-networking",
        "--disable-component-update",
        "--disable-sync",
        "--window-size=1280,900",
    ):
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


class Page(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.browser = start_browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.quit()

    def open(self, path):
        self.browser.get(pathlib.Path(path).resolve().as_uri())

    def data(self):
        return json.loads(self.browser.find_element(By.ID, "data").get_attribute("textContent"))

    def cards(self):
        return [card for card in self.browser.find_elements(By.CSS_SELECTOR, ".card") if card.is_displayed()]

    def search(self, text):
        box = self.browser.find_element(By.ID, "search")
        box.clear()
        box.send_keys(text or " \b")

    def names(self):
        return [card.find_element(By.CLASS_NAME, "name").text for card in self.cards()]

    def test_every_game_has_a_card_with_its_launcher(self):
        self.open(GAMES)
        items = self.data()["items"]
        self.assertGreaterEqual(len(items), 12)
        self.assertEqual(len(self.cards()), len(items))
        self.assertEqual(self.names(), [item["name"] or "(no name)" for item in items])
        groups = [card.find_element(By.CLASS_NAME, "group").text for card in self.cards()]
        self.assertEqual(groups, [item["group"] for item in items])

    def test_icons_are_drawn_where_there_are_any(self):
        self.open(GAMES)
        with_icon = [item for item in self.data()["items"] if item["icon"]]
        widths = self.browser.execute_script(
            "return [...document.querySelectorAll('img.icon')].map(image => image.naturalWidth)")
        self.assertEqual(len(widths), len(with_icon))
        self.assertTrue(widths and all(width > 0 for width in widths))

    def test_a_game_with_a_launch_uri_has_a_link_to_it(self):
        self.open(GAMES)
        wanted = [item["launch"] for item in self.data()["items"] if item["launch"]]
        links = [link.get_attribute("title") for link in self.browser.find_elements(By.CSS_SELECTOR, "a.launch")]
        self.assertEqual(links, wanted)
        self.assertTrue(wanted)

    def test_the_search_box_filters(self):
        self.open(GAMES)
        everything = self.names()
        first = self.data()["items"][0]["name"]
        self.search(first)
        self.assertIn(first, self.names())
        self.assertLess(len(self.names()), len(everything))
        self.assertRegex(self.browser.find_element(By.ID, "count").text, r"^\d+ of %d$" % len(everything))
        self.search("no such game at all")
        self.assertEqual(self.names(), [])
        self.assertTrue(self.browser.find_element(By.ID, "none").is_displayed())
        self.search("")
        self.assertEqual(self.names(), everything)

    def test_the_search_takes_letters_beyond_ascii_in_either_case(self):
        self.open(GAMES)
        name = next(item["name"] for item in self.data()["items"] if re.search("[\u0400-\u04ff]", item["name"]))
        self.search(name.upper())
        self.assertIn(name, self.names())

    def test_the_report_lists_all_strategies_by_level(self):
        self.open(GAMES)
        report = self.browser.find_element(By.ID, "report")
        self.assertTrue(report.is_displayed())
        report.find_element(By.TAG_NAME, "summary").click()
        rows = self.browser.find_elements(By.CSS_SELECTOR, "#strategies > tr")
        self.assertEqual(len(rows), 23)
        levels = [int(row.find_element(By.TAG_NAME, "td").text) for row in rows]
        self.assertEqual(levels, sorted(levels, reverse=True))
        self.assertTrue(all(re.search(r"[0-9.]+ ms", row.text) for row in rows))

    def test_the_applications_page_has_cards_and_no_report(self):
        self.open(APPS)
        self.assertEqual(len(self.cards()), len(self.data()["items"]))
        self.assertGreater(len(self.cards()), 0)
        self.assertFalse(self.browser.find_element(By.ID, "report").is_displayed())

    def test_texts_of_the_registry_never_become_markup(self):
        page = pathlib.Path(GAMES).read_text(encoding="utf-8")
        item = {"name": "<img src=x onerror='document.title=1'>", "group": "<b>", "detail": "</script>", "path": "<i>",
                "icon": "javascript:1", "launch": "javascript:document.title=1"}
        data = json.dumps({"title": "T", "items": [item], "report": None}).replace("<", "\\u003c")
        hostile = re.sub(r'(id="data">).*?(</script>)', lambda m: m[1] + data + m[2], page, count=1, flags=re.S)
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "hostile.html"
            path.write_text(hostile, encoding="utf-8")
            self.open(path)
            self.assertEqual(self.names(), [item["name"]])
            self.assertEqual(self.browser.title, "T \u2013 Tarnwick")
            self.assertEqual(self.browser.find_elements(By.CSS_SELECTOR, "a.launch, main img"), [])

    def test_no_script_errors_and_no_requests_to_the_outside(self):
        for path in (GAMES, APPS):
            self.browser.get_log("browser")
            self.browser.get_log("performance")
            self.open(path)
            self.search("a")
            self.assertEqual(self.browser.get_log("browser"), [])
            urls = []
            for entry in self.browser.get_log("performance"):
                message = json.loads(entry["message"])["message"]
                if message["method"] == "Network.requestWillBeSent":
                    urls.append(message["params"]["request"]["url"])
            self.assertTrue(urls)
            self.assertEqual([url for url in urls if not url.startswith(("file:", "data:"))], [])

    def test_light_and_dark_have_grounds_of_their_own(self):
        grounds = {}
        for scheme in ("light", "dark"):
            self.browser.execute_cdp_cmd(
                "Emulation.setEmulatedMedia", {"features": [{"name": "prefers-color-scheme", "value": scheme}]})
            self.open(GAMES)
            grounds[scheme] = self.browser.execute_script("return getComputedStyle(document.body).backgroundColor")
            if SCREENSHOT:
                target = pathlib.Path(SCREENSHOT)
                self.browser.save_screenshot(str(target.with_name(f"{target.stem}-{scheme}{target.suffix}")))
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": []})
        self.assertNotEqual(grounds["light"], grounds["dark"])


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    GAMES, APPS = sys.argv[1:3]
    SCREENSHOT = sys.argv[3] if len(sys.argv) > 3 else None
    unittest.main(argv=sys.argv[:1])
