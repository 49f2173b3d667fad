"""The pages that tarnwick.exe writes, in a real browser.

usage: page_test.py GAMES.html APPS.html [AXE.min.js]

The third file is axe-core's, which package.json names; without it, the environment variable TARNWICK_AXE tells where
it is, or it lies where `npm ci` puts it for package.json copied to build/page-tools.
"""

import json
import os
import pathlib
import re
import sys
import unittest

from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.select import Select

import browser as chromium

GAMES = APPS = None
AXE = os.environ.get("TARNWICK_AXE") or (
    pathlib.Path(__file__).resolve().parents[2] / "build/page-tools/node_modules/axe-core/axe.min.js")

# The names of the strategies, from the list that the other tests keep.
STRATEGIES = re.findall(r'^    {"(.+?)", \d', (pathlib.Path(__file__).resolve().parents[1] / "support/strategy_rows.h")
                        .read_text("utf-8"), re.MULTILINE)

WIDTHS = (320, 400, 768, 1280)
LONG = "Donaudampfschifffahrtselektrizitätenhauptbetriebswerkbauunterbeamtengesellschaft"

# Whether the texts and boxes inside `frame` stay within it, and those inside the page within the page; each that
# doesn't is told. Cards out of sight have a guessed height, so all are laid out for this.
OVERFLOWS = """
document.head.append(Object.assign(document.createElement("style"), {textContent: ".card { content-visibility: visible }"}));
const found = [];
const check = (frame, what, rect) => {
  const bounds = frame.getBoundingClientRect();
  if (rect.width && (rect.left < bounds.left - 0.5 || rect.right > bounds.right + 0.5 || rect.bottom > bounds.bottom + 0.5))
    found.push(`${what} ${rect.left}-${rect.right} in ${frame.className || frame.tagName} ${bounds.left}-${bounds.right}`);
};
for (const frame of document.querySelectorAll(".card, header, #report, #notes, dialog[open] > *")) {
  for (const inner of frame.querySelectorAll("*")) {
    if (getComputedStyle(inner).position !== "absolute" ) check(frame, inner.className || inner.tagName, inner.getBoundingClientRect());
  }
  const walker = document.createTreeWalker(frame, NodeFilter.SHOW_TEXT);
  while (walker.nextNode()) {
    const range = document.createRange();
    range.selectNodeContents(walker.currentNode);
    if (walker.currentNode.parentElement.closest("select")) continue;
    for (const rect of range.getClientRects()) check(frame, walker.currentNode.data.slice(0, 20), rect);
  }
}
const page = document.scrollingElement.scrollWidth;
if (page > innerWidth) found.push(`the page has ${page} pixels of ${innerWidth}`);
return found;
"""

# The rows in which the browser sets the text of an element: a new one wherever a character stands lower.
ROWS = """
const rows = [];
const walker = document.createTreeWalker(arguments[0], NodeFilter.SHOW_TEXT);
let bottom = -Infinity;
while (walker.nextNode()) {
  for (let i = 0; i < walker.currentNode.length; ++i) {
    const range = document.createRange();
    range.setStart(walker.currentNode, i);
    range.setEnd(walker.currentNode, i + 1);
    const rect = range.getBoundingClientRect();
    if (rect.top > bottom - 4) rows.push({text: "", left: rect.left}), bottom = rect.bottom;
    rows.at(-1).text += walker.currentNode.data[i];
  }
}
return rows;
"""


def game(name, **fields):
    return {"name": name, "group": "Installed", "detail": "", "path": "", "icon": "", "launch": "", "size": 0, **fields}


def page_data(items, **fields):
    return {"title": "Games", "launchers": True, "iconSize": 56, "items": items, "report": None, **fields}


def question(text, answer=None):
    return {"text": text, "answer": answer or "", "ok": answer is not None}


def explanation(**fields):
    return {"strategy": "Some Search", "level": 3, "source": "HKEY_CURRENT_USER\\Software\\A", "evidence": [], "merged": [], **fields}


def strategy(name, lines, reasons=(), questions=(), **fields):
    """`reasons` are texts with their counts."""
    return {"name": name, "level": 1, "milliseconds": 1234567.5, "found": 3, "lines": lines, "records": 31, "failure": "",
            "reasons": [{"text": text, "count": count} for text, count in reasons], "reasonsLeftOut": 0,
            "missed": sum(count for _, count in reasons), "asked": len(questions), "kinds": [], "questions": list(questions), **fields}


def report_of(*strategies, **fields):
    return {"catalogue": 1234567, "raw": 12, "unique": 3, "strategies": list(strategies), "version": "1.2.3",
            "catalogueFile": "C:\\games.xml", "began": "2026-01-02 03:04:05.678", **fields}


class Page(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.browser = chromium.start()

    @classmethod
    def tearDownClass(cls):
        cls.browser.quit()

    def open(self, path, **window):
        chromium.show(self.browser, path, **window)

    def open_data(self, data, **window):
        made = chromium.page_with(GAMES, data)
        path = made.__enter__()
        self.addCleanup(made.__exit__, None, None, None)
        self.open(path, **window)

    def data(self):
        return json.loads(self.browser.find_element(By.ID, "data").get_attribute("textContent"))

    def one(self, selector):
        return self.browser.find_element(By.CSS_SELECTOR, selector)

    def script(self, text, *arguments):
        return self.browser.execute_script(text, *arguments)

    def search(self, text):
        box = self.browser.find_element(By.ID, "search")
        box.clear()
        box.send_keys(text or " \b")

    def sort(self, order):
        Select(self.browser.find_element(By.ID, "sort")).select_by_visible_text(order)

    def names(self):
        return self.script("return [...document.querySelectorAll('.card:not([hidden]) .name')].map(e => e.textContent)")

    def launchers(self):
        return [button.accessible_name for button in self.browser.find_elements(By.CSS_SELECTOR, ".launcher")]

    def choose(self, launcher):
        next(button for button in self.browser.find_elements(By.CSS_SELECTOR, ".launcher")
             if button.accessible_name.rsplit(" ", 1)[0] == launcher).click()

    def open_report(self):
        """With everything that is folded in it."""
        for folded in (".strategy", ".more"):
            self.script("document.querySelectorAll(arguments[0]).forEach(folded => { folded.open = true; })", folded)
            self.settle()

    def settle(self):
        """Until what was opened has filled itself: the browser tells of it a little later."""
        self.browser.execute_async_script("setTimeout(arguments[0], 50)")

    def texts(self, selector):
        return [element.text for element in self.browser.find_elements(By.CSS_SELECTOR, selector)]

    def explain(self, name):
        next(button for button in self.browser.find_elements(By.CSS_SELECTOR, ".explain")
             if button.accessible_name == f"Explain {name}").click()
        return self.one("dialog")

    def facts(self, within):
        """What the first list of facts in there tells."""
        return dict(self.script("return [...arguments[0].querySelector('dl').children].map(e => e.textContent)"
                                ".reduce((rows, text, i, all) => i % 2 ? [...rows, [all[i - 1], text]] : rows, [])", within))


class Gallery(Page):
    def test_every_game_has_a_card_with_its_launcher(self):
        self.open(GAMES)
        items = self.data()["items"]
        self.assertGreaterEqual(len(items), 12)
        shown = {(card.find_element(By.CLASS_NAME, "name").text, card.find_element(By.CLASS_NAME, "group").text)
                 for card in self.browser.find_elements(By.CSS_SELECTOR, ".card")}
        self.assertEqual(shown, {(item["name"] or "(no name)", item["group"]) for item in items})
        self.assertEqual(len(self.names()), len(items))

    def test_the_applications_page_has_cards_and_no_report(self):
        self.open(APPS)
        self.assertEqual(len(self.names()), len(self.data()["items"]))
        self.assertGreater(len(self.names()), 0)
        self.assertFalse(self.one("#report").is_displayed())
        self.assertFalse(self.one("#launchers").is_displayed())

    def test_a_game_with_a_launch_uri_has_a_link_to_it(self):
        self.open(GAMES)
        items = self.data()["items"]
        wanted = sorted(item["launch"] for item in items if item["launch"] and not item["launch"].startswith("shell:"))
        links = self.browser.find_elements(By.CSS_SELECTOR, "a.launch")
        self.assertEqual(sorted(link.get_attribute("title") for link in links), wanted)
        self.assertTrue(wanted)
        self.assertTrue(all(link.accessible_name.startswith("Launch ") for link in links))

    def test_a_launch_uri_that_browsers_hand_to_nobody_is_text(self):
        self.open_data(page_data([game("A", launch="shell:AppsFolder\\Some.App!App")]))
        self.assertEqual(self.browser.find_elements(By.CSS_SELECTOR, "a.launch"), [])
        self.assertIn("shell:AppsFolder\\Some.App!App", self.one(".card").text)

    def test_the_launcher_is_a_label_and_no_link(self):
        self.open_data(page_data([game("A", group="Steam", launch="steam://run/7")]))
        style = "const style = getComputedStyle(arguments[0]); return [style.color, style.backgroundColor, style.cursor]"
        colour, ground, cursor = self.script(style, self.one(".group"))
        self.assertNotEqual(colour, self.script(style, self.one("a.launch"))[0])
        self.assertNotIn(ground, (self.script(style, self.one(".card"))[1], "rgba(0, 0, 0, 0)"))
        self.assertNotEqual(cursor, "pointer")

    def test_texts_of_the_registry_never_become_markup(self):
        name = "<img src=x onerror='document.title=1'>"
        self.open_data(page_data(
            [game(name, group="<b>", detail="</script>", path="<i>\\<b>", icon="javascript:1", launch="javascript:document.title=1")],
            title="T", report=report_of(strategy("<u>", ["</script><img>"], [("<img>", 2)], [question("<i>", "<b>")], failure="<b>"),
                                        notes=["<img>"])))
        self.open_report()
        self.assertEqual(self.names(), [name])
        self.assertEqual(self.browser.title, "T \u2013 Tarnwick")
        self.assertEqual(self.browser.find_elements(By.CSS_SELECTOR, "a.launch, main img, main b, main i, main u"), [])

    def test_texts_of_an_explanation_never_become_markup(self):
        bad = "<img src=x onerror='document.title=1'></script><b>"
        merged = {"name": bad, "path": bad, "strategy": bad, "level": 1, "source": bad, "why": bad}
        self.open_data(page_data([game(bad, explanation=explanation(
            strategy=bad, source=bad, evidence=[question(bad, bad), question(bad)], merged=[merged]))], title="T"))
        dialog = self.explain(bad)
        self.assertEqual(self.browser.title, "T \u2013 Tarnwick")
        self.assertEqual(dialog.find_elements(By.CSS_SELECTOR, "img, b, script"), [])
        self.assertEqual(dialog.find_element(By.TAG_NAME, "h2").text, bad)

    def test_an_empty_page_says_so(self):
        self.open_data(page_data([], report=report_of()))
        self.assertEqual(self.one("#none").text, "No games found.")
        self.assertEqual(self.one("#count").text, "0 found")

    def test_no_script_errors_and_no_requests_to_the_outside(self):
        for path in (GAMES, APPS):
            self.browser.get_log("browser")
            self.browser.get_log("performance")
            self.open(path)
            self.search("a")
            self.search("")
            self.open_report()
            for button in self.browser.find_elements(By.CSS_SELECTOR, ".explain")[:3]:
                button.click()
                ActionChains(self.browser).send_keys(Keys.ESCAPE).perform()
            self.assertEqual(self.browser.get_log("browser"), [])
            urls = []
            for entry in self.browser.get_log("performance"):
                message = json.loads(entry["message"])["message"]
                if message["method"] == "Network.requestWillBeSent":
                    urls.append(message["params"]["request"]["url"])
            self.assertTrue(urls)
            self.assertEqual([url for url in urls if not url.startswith(("file:", "data:"))], [])


class Icons(Page):
    def test_icons_are_drawn_where_there_are_any_and_no_larger_than_they_are_shown(self):
        self.open(GAMES)
        data = self.data()
        with_icon = [item for item in data["items"] if item["icon"]]
        widths = self.browser.execute_async_script(
            "const images = [...document.querySelectorAll('img.icon')];"
            "Promise.all(images.map(image => (image.loading = 'eager', image.decode())))"
            ".then(() => arguments[0](images.map(image => image.naturalWidth)))")
        self.assertEqual(len(widths), len(with_icon))
        self.assertTrue(widths and all(0 < width <= data["iconSize"] for width in widths), widths)

    def test_icons_wait_until_they_are_in_sight(self):
        self.open(GAMES)
        self.assertEqual(
            set(map(tuple, self.script("return [...document.querySelectorAll('img.icon')]"
                                       ".map(i => [i.loading, i.decoding, i.width, i.height])"))),
            {("lazy", "async", 56, 56)})

    def test_the_icon_size_is_the_pages(self):
        icon = next(item["icon"] for item in chromium.data_of(GAMES)["items"] if item["icon"])
        for size in (16, 56, 128):
            self.open_data(page_data([game("A", icon=icon), game("B")], iconSize=size))
            boxes = self.script("return [...document.querySelectorAll('.icon')].map(i => [i.offsetWidth, i.offsetHeight])")
            self.assertEqual(boxes, [[size, size]] * 2)

    def test_an_icon_that_is_no_picture_gives_way_to_the_names_letter(self):
        self.open_data(page_data([game("\u00e4pfel", icon="data:image/png;base64,AAAA")]))
        self.browser.execute_async_script("setTimeout(arguments[0], 100)")
        self.assertEqual(self.browser.find_elements(By.CSS_SELECTOR, "img.icon"), [])
        self.assertEqual(self.one(".letter").text, "\u00c4")


class Layout(Page):
    def hostile(self, size):
        icon = next(item["icon"] for item in chromium.data_of(GAMES)["items"] if item["icon"])
        path = "C:\\" + "\\".join([LONG, "x" * 90, "Games", "y.exe"])
        asked = [question(f"read value {LONG} of key {path}", LONG * 3), question("x" * 300, "y" * 120), question(path), question("z" * 400)]
        merged = [{"name": LONG, "path": path, "strategy": LONG, "level": 3, "source": "s" * 200, "why": LONG * 3}] * 2
        items = [game(LONG, group=LONG, detail=LONG, path=path, icon=icon, launch="steam://run/" + "7" * 200,
                      explanation=explanation(strategy="x" * 200, source=path, evidence=asked, merged=merged)),
                 game("x" * 300, group="W" * 75, detail="1." * 60, path="/" * 150, launch="shell:" + "z" * 200),
                 game("\u6e38" * 90, group="\u6e38" * 90, path="\\\\" + "\u6e38\u620f" * 60, launch="javascript:" + "1" * 200)]
        lines = ["[" + LONG * 4 + "] Found: " + LONG + " -> " + path, "1" * 400]
        return page_data(items, iconSize=size, report=report_of(
            strategy(LONG, lines, [(f"{path} doesn't exist", 10**9), ("x" * 300, 1)] * 4, asked, failure=LONG * 3),
            strategy("s" * 200, lines, found=10**12, asked=10**12, missed=10**12, kinds=[{"name": "open key", "asked": 10**12, "missed": 10**12}]),
            notes=[LONG * 3, "n" * 300], catalogueFile="C:\\" + "x" * 300))

    def test_nothing_overflows_at_any_width(self):
        for size in (56, 256):
            for launchers in (True, False):
                data = {**self.hostile(size), "launchers": launchers}
                for width in WIDTHS:
                    with self.subTest(size=size, launchers=launchers, width=width):
                        self.open_data(data, width=width)
                        self.open_report()
                        self.assertEqual(self.script(OVERFLOWS), [])
                        self.explain(LONG)
                        self.assertEqual(self.script(OVERFLOWS), [])

    def test_the_real_pages_overflow_nowhere_either(self):
        for path in (GAMES, APPS):
            for width in WIDTHS:
                with self.subTest(path=path, width=width):
                    self.open(path, width=width)
                    self.open_report()
                    self.assertEqual(self.script(OVERFLOWS), [])

    def test_paths_break_behind_slashes(self):
        components = ["Games", "MosswickHollow", "\u9752\u74f7\u8c1c\u57ce" * 2, "Wintergreen", "bin", "x64", "mosswick.exe"]
        paths = ["D:\\" + "\\".join(components[:i] + components[j:]) for i in range(6) for j in range(i, 6)]
        paths += [path.replace("\\", "/") for path in paths]
        self.open_data(page_data([game("A", path=path) for path in paths]), width=320)
        broken = 0
        for shown in self.browser.find_elements(By.CSS_SELECTOR, ".path"):
            rows = [row["text"] for row in self.script(ROWS, shown)]
            broken += len(rows) > 1
            self.assertTrue(all(row[-1] in "\\/" and row != "D:\\" for row in rows[:-1]), rows)
        self.assertGreater(broken, len(paths) / 2)

    def test_the_head_of_a_path_stays_whole(self):
        for head in ("\\\\", "C:\\", "shell://"):
            self.open_data(page_data([game("A", path=head + "x" * 21 + "\\a.exe")]), width=320)
            rows = [row["text"] for row in self.script(ROWS, self.one(".path"))]
            self.assertGreater(len(rows[0]), len(head))

    def test_a_folder_too_long_for_a_row_breaks_inside(self):
        self.open_data(page_data([game("A", path="C:\\Games\\" + "x" * 90 + "\\a.exe")]), width=320)
        rows = [row["text"] for row in self.script(ROWS, self.one(".path"))]
        self.assertEqual(rows[0], "C:\\Games\\")
        self.assertTrue(rows[-1].endswith("\\a.exe"))
        self.assertGreater(len(rows), 3)

    def test_a_copied_path_is_the_plain_path(self):
        path = "C:\\Games\\Old Mill/Mysteries\\mill.exe"
        self.open_data(page_data([game("A", path=path)]), width=320)
        copied = self.script("getSelection().selectAllChildren(arguments[0]); return getSelection().toString()", self.one(".path"))
        self.assertEqual(copied, path)

    def test_light_and_dark_have_grounds_of_their_own(self):
        grounds = set()
        for scheme in ("light", "dark"):
            self.open(GAMES, scheme=scheme)
            grounds.add(self.script("return getComputedStyle(document.body).backgroundColor"))
        self.assertEqual(len(grounds), 2)


class Search(Page):
    def test_the_search_box_filters(self):
        self.open(GAMES)
        everything = self.names()
        first = self.data()["items"][0]["name"]
        self.search(first)
        self.assertIn(first, self.names())
        self.assertLess(len(self.names()), len(everything))
        self.assertRegex(self.one("#count").text, r"^\d+ of %d$" % len(everything))
        self.search("no such game at all")
        self.assertEqual(self.names(), [])
        self.assertEqual(self.one("#none").text, "Nothing matches.")
        self.search("")
        self.assertEqual(self.names(), everything)

    def test_accents_letter_case_and_trademarks_make_no_difference(self):
        names = ["Ch\u00e2teau\u2122 Brumaire", "Cha\u0302teau Zwei", "\u0412\u044c\u044e\u0433\u043e\u0440\u0430\u0434",
                 "Stra\u00dfe\u00ae", "\u03a3\u03af\u03c3\u03c5\u03c6\u03bf\u03c2", "Plain"]
        self.open_data(page_data([game(name) for name in names]))
        for words, wanted in {
            "chateau": names[:2], "CH\u00c2TEAU": names[:2], "brumaire ch\u00e2teau": names[:1],
            "chateau brumaire": names[:1], "Ch\u00e2teau\u2122": names[:2], "chateau plain": [],
            "\u0432\u044c\u044e": names[2:3], "\u0412\u042c\u042e\u0413\u041e": names[2:3], "STRASSE": names[3:4],
            "strasse\u2122": names[3:4], "\u03c3\u03b9\u03c3": names[4:5], "\u03a3\u0399\u03a3\u03a5\u03a6\u039f\u03a3": names[4:5],
            "\u03c3\u03b9\u03c3\u03c5\u03c6\u03bf\u03c3": names[4:5], "\u2122": names,
        }.items():
            with self.subTest(words=words):
                self.search(words)
                self.assertEqual(sorted(self.names()), sorted(wanted))

    def test_publishers_versions_and_paths_are_searched_too(self):
        self.open_data(page_data([game("A", group="Fern\u00e9", detail="3.1 \u00b7 2.0 MB"), game("B", path="C:\\Mill\\b.exe")]))
        for words, wanted in {"ferne 3.1": ["A"], "mill": ["B"], "mill 3.1": []}.items():
            self.search(words)
            self.assertEqual(self.names(), wanted)

    def test_escape_clears_the_search_from_anywhere(self):
        self.open(GAMES)
        everything = self.names()
        self.search("steam")
        self.assertLess(len(self.names()), len(everything))
        self.one(".card:not([hidden]) a.launch").send_keys(Keys.ESCAPE)
        self.assertEqual(self.names(), everything)
        self.assertEqual(self.script("return [document.activeElement.id, document.activeElement.value]"), ["search", ""])


class Order(Page):
    def test_names_sort_as_people_sort_them(self):
        names = ["Part 10", "\u00c9clair", "zebra", "Part 9", "apple", "Part 2", "Ecru", "Zoo"]
        self.open_data(page_data([game(name) for name in names]))
        self.assertEqual(self.names(), ["apple", "\u00c9clair", "Ecru", "Part 2", "Part 9", "Part 10", "zebra", "Zoo"])

    def test_games_sort_by_launcher(self):
        self.open_data(page_data([game("C", group="Steam"), game("B", group="GOG"), game("A", group="Steam"), game("D", group="Arc")]))
        self.assertEqual(self.one("#sort").accessible_name, "Sort by")
        self.assertEqual([option.text for option in Select(self.one("#sort")).options], ["Name", "Launcher"])
        self.sort("Launcher")
        self.assertEqual(self.names(), ["D", "B", "A", "C"])
        self.sort("Name")
        self.assertEqual(self.names(), ["A", "B", "C", "D"])

    def test_applications_sort_by_publisher_and_size(self):
        self.open_data(page_data([game("C", group="Fern", size=5), game("B", group="", size=0), game("A", group="Quay", size=5),
                                  game("D", group="Fern", size=600)], launchers=False))
        self.sort("Publisher")
        self.assertEqual(self.names(), ["C", "D", "A", "B"], "those without a publisher come last")
        self.sort("Size")
        self.assertEqual(self.names(), ["D", "A", "C", "B"], "the largest come first, equals by name")

    def test_equals_keep_their_order(self):
        paths = [f"C:\\{i}.exe" for i in (3, 1, 2, 9, 5)]
        self.open_data(page_data([game("Same", group=group, path=path) for path, group in zip(paths, "BABBA")]))
        shown = "return [...document.querySelectorAll('.path')].map(e => e.textContent)"
        for order, wanted in (("Launcher", [1, 4, 0, 2, 3]), ("Name", range(5)), ("Launcher", [1, 4, 0, 2, 3])):
            self.sort(order)
            self.assertEqual(self.script(shown), [paths[i] for i in wanted])

    def test_a_search_outlives_sorting(self):
        self.open_data(page_data([game("B one"), game("A one"), game("two")]))
        self.search("one")
        self.sort("Launcher")
        self.assertEqual(self.names(), ["A one", "B one"])


class Launchers(Page):
    def setUp(self):
        self.open_data(page_data([game("Apple", group="Steam"), game("Birch", group="Steam"), game("Apricot", group="GOG"),
                                  game("Cedar")]))

    def test_each_launcher_tells_how_many_games_it_has(self):
        self.assertEqual(self.launchers(), ["All 4", "GOG 1", "Installed 1", "Steam 2"])

    def test_a_launcher_shows_its_games_alone(self):
        self.choose("Steam")
        self.assertEqual(self.names(), ["Apple", "Birch"])
        self.assertEqual(self.one("#count").text, "2 of 4")
        self.assertEqual([button.accessible_name for button in self.browser.find_elements(By.CSS_SELECTOR, "[aria-pressed=true]")], ["Steam 2"])
        self.choose("All")
        self.assertEqual(len(self.names()), 4)

    def test_the_counts_follow_the_search(self):
        self.search("ap")
        self.assertEqual(self.launchers(), ["All 2", "GOG 1", "Installed 0", "Steam 1"])
        self.choose("Steam")
        self.assertEqual(self.names(), ["Apple"])
        self.assertEqual(self.launchers(), ["All 2", "GOG 1", "Installed 0", "Steam 1"])
        self.search("birch")
        self.assertEqual(self.names(), ["Birch"])

    def test_no_launcher_moves_while_somebody_types(self):
        self.open_data(page_data([game(f"Game {i}", group=f"G{i % 3}") for i in range(300)]))
        places = "return [...document.querySelectorAll('.launcher')].map(e => Math.round(e.getBoundingClientRect().left))"
        before = self.script(places)
        self.search("299")
        self.assertEqual(self.launchers(), ["All 1", "G0 0", "G1 0", "G2 1"])
        self.assertEqual(self.script(places), before)

    def test_the_launchers_of_the_real_page_are_those_of_its_games(self):
        self.open(GAMES)
        groups = [item["group"] for item in self.data()["items"]]
        wanted = {f"{group} {groups.count(group)}" for group in groups} | {f"All {len(groups)}"}
        self.assertEqual(set(self.launchers()), wanted)


class Report(Page):
    def strategies(self):
        return self.browser.find_elements(By.CSS_SELECTOR, "#report .strategy")

    def test_every_strategy_has_a_section_in_the_order_of_the_scan(self):
        self.open(GAMES)
        self.assertEqual(self.texts(".strategy .title"), STRATEGIES)
        levels = [int(text.removeprefix("Level ")) for text in self.texts("#report h3")]
        self.assertEqual(levels, sorted(set(levels), reverse=True))
        self.assertEqual(sum(len(level.find_elements(By.CSS_SELECTOR, ".strategy"))
                             for level in self.browser.find_elements(By.CSS_SELECTOR, "#report .level")), len(STRATEGIES))
        for section, known in zip(self.strategies(), self.data()["report"]["strategies"]):
            self.assertEqual(section.find_element(By.CSS_SELECTOR, ".found").text, f"{known['found']} found")
            self.assertRegex(section.find_element(By.CSS_SELECTOR, ".asked").text, r"^%d questions?$" % known["asked"])
            self.assertEqual(section.find_element(By.CSS_SELECTOR, ".missed").text, f"{known['missed']} missed")
            self.assertRegex(section.find_element(By.CSS_SELECTOR, ".time").text, r"^[0-9.]+ ms$")

    def test_the_numbers_of_the_real_page_are_those_of_a_scan(self):
        report = chromium.data_of(GAMES)["report"]
        self.assertEqual(sum(known["found"] for known in report["strategies"]), report["raw"])
        self.assertEqual(len(chromium.data_of(GAMES)["items"]), report["unique"])
        self.assertGreater(report["raw"], report["unique"])
        for known in report["strategies"]:
            self.assertGreater(known["asked"], 0, known["name"])
            self.assertEqual(sum(reason["count"] for reason in known["reasons"]), known["missed"])
            self.assertEqual(sum(kind["missed"] for kind in known["kinds"]), known["missed"])
            self.assertEqual(sum(kind["asked"] for kind in known["kinds"]), known["asked"])

    def test_a_section_opens_to_its_reasons_the_most_frequent_first(self):
        reasons = [(f"C:\\Games\\{count}.exe doesn't exist", count) for count in range(1200, 1190, -1)]
        self.open_data(page_data([], report=report_of(strategy("Some Search", [], reasons))))
        self.assertEqual(self.texts(".reason"), [])
        self.one(".strategy summary").click()
        self.settle()
        told = [f"{count:,} \u00d7\n{text}" for text, count in reasons]
        self.assertEqual(self.texts(".reason"), told[:5])
        self.assertEqual(self.one(".strategy .records").text, "Was given 31 games of the catalogue: what no earlier level had found.")
        more = self.one(".strategy .more summary")
        self.assertEqual(more.text, "5 more reasons")
        more.click()
        self.settle()
        self.assertEqual(self.texts(".reason"), told)

    def test_a_section_opens_by_the_keyboard(self):
        self.open_data(page_data([], report=report_of(strategy("Some Search", [], [("x doesn't exist", 2)]))))
        self.one(".strategy summary").send_keys(Keys.ENTER)
        self.settle()
        self.assertEqual(self.texts(".reason"), ["2 \u00d7\nx doesn't exist"])

    def test_what_is_left_out_is_counted(self):
        asked = [question(f"look for {i}", "file") for i in range(200)]
        self.open_data(page_data([], report=report_of(
            strategy("Some Search", [], [(f"r{i}", 1) for i in range(200)], asked, asked=50000, missed=49800, reasonsLeftOut=1))))
        self.open_report()
        self.assertEqual(self.texts(".left-out"), ["1 more reason is left out.", "49,800 more questions are left out."])
        self.assertEqual(self.texts(".more summary"), ["196 more reasons", "50,000 questions"])
        self.assertEqual(len(self.texts(".question")), 200)

    def test_questions_show_what_was_answered(self):
        asked = [question("look for C:\\a.exe", "file"), question("C:\\b.exe doesn't exist")]
        self.open_data(page_data([], report=report_of(strategy("Some Search", [], [], asked))))
        self.open_report()
        self.assertEqual(self.texts(".question .answer"), ["file"])
        self.assertEqual(self.texts(".question.missed"), ["C:\\b.exe doesn't exist"])

    def test_a_failure_is_told_without_opening_anything(self):
        line = "CRITICAL SEH ERROR in Strategy [Bad Search]: 0xC0000005"
        self.open_data(page_data([], report=report_of(strategy("Good Search", []), strategy("Bad Search", [], failure=line))))
        self.assertEqual(self.texts("#failures li"), [f"Bad Search failed: {line}"])
        self.assertEqual(self.texts(".strategy .title"), ["Good Search", "Bad Search failed"])
        self.open_report()
        self.assertEqual(self.texts(".strategy .failure"), [line])
        self.open(GAMES)
        self.assertFalse(self.one("#failures").is_displayed())

    def test_it_tells_which_scan_it_is(self):
        self.open_data(page_data([], report=report_of()))
        self.assertEqual(self.facts(self.one("#report")),
                         {"Catalogue": "C:\\games.xml", "Began": "2026-01-02 03:04:05.678", "Tarnwick": "1.2.3"})
        self.open(GAMES)
        facts = self.facts(self.one("#report"))
        self.assertEqual(facts["Catalogue"], "C:\\TarnwickDemo\\MasterGameList.xml")
        self.assertRegex(facts["Began"], r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}$")

    def test_the_report_is_one_key_from_the_top(self):
        self.open_data(page_data([game(f"Game {i}") for i in range(400)], report=report_of(strategy("Some Search", []))))
        self.one("#to-report").send_keys(Keys.ENTER)
        top = self.script("return document.getElementById('report-title').getBoundingClientRect().top")
        self.assertTrue(0 <= top < 900, top)

    def test_paper_shows_the_report_without_the_controls(self):
        self.open(GAMES)
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"media": "print"})
        self.addCleanup(self.browser.execute_cdp_cmd, "Emulation.setEmulatedMedia", {"media": ""})
        self.assertEqual([self.one(part).is_displayed() for part in ("#search", ".explain", "#report", ".strategy .found")],
                         [False, False, True, True])
        self.script("document.querySelector('.explain').click()")
        self.assertEqual([self.one(part).is_displayed() for part in ("main", "dialog", "dialog .facts")], [False, True, True])

    def test_log_lines_can_be_read_on_a_narrow_screen(self):
        lines = ["[Search] Found: Old Mill Mysteries -> C:\\Games\\Old Mill Mysteries\\mill.exe", "[Search] Done."]
        self.open_data(page_data([], report=report_of(strategy("Some Search", lines))), width=400)
        self.open_report()
        shown = self.browser.find_elements(By.CSS_SELECTOR, ".log li")
        self.assertEqual([line.text for line in shown], lines)
        self.assertGreater(shown[0].size["width"], 300)
        rows = self.script(ROWS, shown[0])
        self.assertGreater(len(rows), 1)
        self.assertTrue(all(row["left"] > rows[0]["left"] + 8 for row in rows[1:]), "further rows are indented")

    def test_a_narrow_screen_stacks_a_strategys_numbers(self):
        self.open_data(page_data([], report=report_of(strategy("Some Search", []))), width=400)
        title, found, asked, missed, time = (self.one(f".strategy > summary > .{part}").location["y"]
                                             for part in ("title", "found", "asked", "missed", "time"))
        self.assertEqual(title, found)
        self.assertLess(title, asked)
        self.assertEqual({asked, missed}, {time})

    def test_notes_are_shown_without_opening_the_report(self):
        notes = ["itch.io is recognised and not read.", "Another."]
        self.open_data(page_data([], report=report_of(notes=notes)))
        self.assertTrue(self.one("#notes").is_displayed())
        self.assertEqual([note.text for note in self.browser.find_elements(By.CSS_SELECTOR, "#notes li")], notes)
        self.open_data(page_data([], report=report_of()))
        self.assertFalse(self.one("#notes").is_displayed())


class Explanation(Page):
    EVIDENCE = [question("C:\\Games\\A\\old.exe doesn't exist"), question("look for C:\\Games\\A\\a.exe", "file")]
    MERGED = {"name": "Apple II", "path": "C:\\Games\\A\\a.exe", "strategy": "Other Search", "level": 2, "source": "Other: 7",
              "why": "same path, found later"}

    def setUp(self):
        self.open_data(page_data([
            game("Apple", path="C:\\Games\\A\\a.exe", launch="steam://run/7",
                 explanation=explanation(evidence=self.EVIDENCE, merged=[self.MERGED])),
            game("Birch", explanation=explanation()),
            game("Cedar")]))
        self.dialog = self.one("dialog")

    def test_it_tells_strategy_source_and_evidence(self):
        self.explain("Apple")
        self.assertEqual(self.dialog.accessible_name, "Apple")
        self.assertEqual(self.facts(self.dialog),
                         {"Found by": "Some Search, level 3", "Source": "HKEY_CURRENT_USER\\Software\\A", "Path": "C:\\Games\\A\\a.exe",
                          "Launch": "steam://run/7"})
        self.assertEqual(self.texts("dialog .question.missed"), ["C:\\Games\\A\\old.exe doesn't exist"])
        self.assertEqual(self.texts("dialog .question .answer"), ["file"])

    def test_it_tells_what_was_merged_into_the_game_and_why(self):
        self.explain("Apple")
        merged = self.one("dialog .merged")
        self.assertEqual(merged.find_element(By.CSS_SELECTOR, ".why").text, "same path, found later")
        self.assertEqual(self.facts(merged), {"Name": "Apple II", "Found by": "Other Search, level 2", "Source": "Other: 7"},
                         "the path is the game's own")

    def test_it_says_where_there_is_no_evidence(self):
        self.explain("Birch")
        self.assertEqual(self.texts("dialog .left-out"), ["No question of this strategy names the game."])
        self.assertEqual(self.texts("dialog .merged"), [])

    def test_a_click_on_the_card_opens_it_and_the_button_closes_it(self):
        self.one(".card .path").click()
        self.assertTrue(self.dialog.is_displayed())
        self.one("dialog .close").click()
        self.assertFalse(self.dialog.is_displayed())

    def test_a_card_without_an_explanation_does_not_open(self):
        self.browser.find_elements(By.CSS_SELECTOR, ".card")[2].click()
        self.assertFalse(self.dialog.is_displayed())
        self.assertEqual(len(self.browser.find_elements(By.CSS_SELECTOR, ".explain")), 2)

    def test_selecting_a_cards_text_does_not_open_it(self):
        path = self.one(".card .path")
        ActionChains(self.browser).move_to_element(path).move_by_offset(-60, 0).click_and_hold().move_by_offset(40, 0).release().perform()
        self.assertTrue(self.script("return getSelection().toString()"))
        self.assertFalse(self.dialog.is_displayed())

    def test_a_click_beside_it_closes_it(self):
        self.explain("Apple")
        ActionChains(self.browser).move_by_offset(5, 5).click().perform()
        self.assertFalse(self.dialog.is_displayed())

    def test_the_keyboard_opens_it_and_comes_back(self):
        for key in (Keys.ENTER, Keys.SPACE):
            button = self.one(".explain")
            button.send_keys(key)
            self.assertTrue(self.dialog.is_displayed())
            self.assertEqual(self.script("return document.activeElement.closest('dialog') !== null"), True)
            ActionChains(self.browser).send_keys(Keys.ESCAPE).perform()
            self.assertFalse(self.dialog.is_displayed())
            self.assertEqual(self.browser.switch_to.active_element, button)

    def test_escape_closes_it_and_leaves_the_search_alone(self):
        self.search("apple")
        self.explain("Apple")
        ActionChains(self.browser).send_keys(Keys.ESCAPE).perform()
        self.assertFalse(self.dialog.is_displayed())
        self.assertEqual(self.names(), ["Apple"])

    def test_it_fits_small_screens(self):
        for width, height in ((320, 480), (400, 800)):
            chromium.show(self.browser, GAMES, width, height)
            self.script("document.querySelector('.explain').click()")
            left, right, top, bottom = self.script("const r = document.querySelector('dialog').getBoundingClientRect();"
                                                   "return [r.left, r.right, r.top, r.bottom]")
            self.assertTrue(left >= 0 and right <= width and top >= 0 and bottom <= height, (left, right, top, bottom))
            self.assertTrue(self.one("dialog .close").is_displayed())

    def test_every_game_of_the_real_page_is_explained(self):
        data = chromium.data_of(GAMES)
        for item in data["items"]:
            told = item["explanation"]
            self.assertEqual(told["strategy"], item["detail"])
            self.assertTrue(told["source"], item["name"])
            self.assertTrue(any(asked["ok"] for asked in told["evidence"]), item["name"])
            self.assertLessEqual(len(told["evidence"]), 12)
        merged = sum(len(item["explanation"]["merged"]) for item in data["items"])
        self.assertEqual(merged, data["report"]["raw"] - data["report"]["unique"])

    def test_the_real_page_tells_of_both_ways_of_merging(self):
        merged = {item["name"]: [one["why"] for one in item["explanation"]["merged"]] for item in chromium.data_of(GAMES)["items"]}
        self.assertEqual(merged["Ivory Compass"], ["same path, found later"])
        self.assertEqual(merged["Brasswater"], ["same Steam app id 9000010, source of rank 1 below 3"])


class Access(Page):
    def test_axe_finds_nothing_to_complain_about(self):
        source = pathlib.Path(AXE).read_text(encoding="utf-8")
        for path in (GAMES, APPS):
            for scheme in ("light", "dark"):
                for width in (400, 1280):
                    with self.subTest(path=path, scheme=scheme, width=width):
                        self.open(path, scheme=scheme, width=width)
                        self.open_report()
                        self.script(source)
                        self.expect_no_violations()
                        self.script("document.querySelector('.explain')?.click()")
                        self.expect_no_violations()

    def test_axe_accepts_failures_too(self):
        for scheme in ("light", "dark"):
            self.open_data(page_data([game("A")], report=report_of(
                strategy("Bad Search", ["x"], [("y", 2)], [question("z")], failure="CRITICAL", found=0))), scheme=scheme)
            self.open_report()
            self.script(pathlib.Path(AXE).read_text(encoding="utf-8"))
            self.expect_no_violations()

    def expect_no_violations(self):
        result = self.browser.execute_async_script("axe.run().then(arguments[0])")
        self.assertGreater(len(result["passes"]), 15)
        self.assertEqual([(violation["id"], [node["html"] for node in violation["nodes"]][:3])
                          for violation in result["violations"]], [])

    def tab_through(self, count):
        """What the key goes to, each with the style of its outline and whether it is in sight."""
        for _ in range(count):
            ActionChains(self.browser).send_keys(Keys.TAB).perform()
            yield self.script("""
                const here = document.activeElement;
                const rect = here.getBoundingClientRect();
                const top = document.elementFromPoint(rect.left + rect.width / 2, rect.top + rect.height / 2);
                return [here.outerHTML, getComputedStyle(here).outlineStyle, here.contains(top)];""")

    def test_the_keyboard_reaches_everything_in_order_and_shows_where_it_is(self):
        for width in (400, 920, 1280):
            self.open(GAMES, width=width, height=700)
            wanted = self.script(
                "return [...document.querySelectorAll('input, select, button, a, summary')].map(e => e.outerHTML)")
            reached = list(self.tab_through(len(wanted)))
            self.assertEqual([html for html, _, _ in reached], wanted)
            self.assertEqual([html for html, outline, seen in reached if outline == "none" or not seen], [])

    def test_the_header_hides_nothing_that_the_keyboard_goes_back_to(self):
        self.open(GAMES, height=500)
        links = self.browser.find_elements(By.CSS_SELECTOR, "a.launch, .explain")
        self.script("arguments[0].focus()", links[-1])
        for link in reversed(links[:-1]):
            ActionChains(self.browser).key_down(Keys.SHIFT).send_keys(Keys.TAB).key_up(Keys.SHIFT).perform()
            below, top = self.script("return [document.querySelector('header').getBoundingClientRect().bottom,"
                                     "document.activeElement.getBoundingClientRect().top]")
            self.assertEqual(self.browser.switch_to.active_element, link)
            self.assertGreaterEqual(top, below)

    def test_nothing_moves(self):
        self.open(GAMES)
        self.assertEqual(self.script("""
            return [...document.querySelectorAll("*")].map(element => getComputedStyle(element)).filter(style =>
              style.transitionDuration !== "0s" || style.animationName !== "none" || style.scrollBehavior !== "auto").length"""), 0)


class ManyItems(Page):
    def setUp(self):
        lines = [f"[Search] line {i}" for i in range(20000)]
        told = explanation(evidence=[question(f"look for C:\\Games\\{i}.exe", "file") for i in range(12)])
        items = [game(f"Game {i}", group=f"Launcher {i % 12}", path=f"C:\\Games\\{i}.exe", explanation=told) for i in range(5000)]
        asked = [question(f"look for C:\\Games\\{i}.exe", "file") for i in range(200)]
        reasons = [(f"C:\\Games\\{i}.exe doesn't exist", 1) for i in range(200)]
        self.open_data(page_data(items, report=report_of(*[
            strategy(f"Search {i}", lines, reasons, asked, asked=50000, missed=40000, reasonsLeftOut=39800) for i in range(23)])))
        self.script("""
            window.changes = [];
            new MutationObserver(records => changes.push(...records.map(record => record.type)))
              .observe(document.getElementById("gallery"), {subtree: true, childList: true, attributes: true});""")

    def changes(self):
        changes = self.script("return changes.splice(0)")
        return {kind: changes.count(kind) for kind in set(changes)}

    def test_a_search_touches_only_the_cards_that_come_and_go(self):
        self.search("199")
        self.assertEqual(self.one("#count").text, "15 of 5000")
        self.assertLessEqual(self.changes().get("attributes", 0), 2 * 5000)
        self.one("#search").send_keys("9")
        self.assertEqual(self.names(), ["Game 1999"])
        self.assertEqual(self.changes(), {"attributes": 14})

    def test_sorting_moves_each_card_once(self):
        self.sort("Launcher")
        self.assertEqual(self.names()[:2], ["Game 0", "Game 12"])
        self.assertLessEqual(self.changes()["childList"], 2 * 5000 + 1)

    def test_what_is_out_of_sight_is_not_laid_out(self):
        self.assertEqual(self.script("return getComputedStyle(document.querySelector('.card')).contentVisibility"), "auto")
        self.assertEqual(self.browser.find_elements(By.CSS_SELECTOR, ".more, .question, .reason, .log li"), [])

    def test_a_section_of_many_questions_opens_to_a_short_text(self):
        self.one(".strategy summary").click()
        self.settle()
        self.assertEqual(len(self.browser.find_elements(By.CSS_SELECTOR, ".reason")), 5)
        self.assertEqual(self.texts(".more summary"), ["39,995 more reasons", "50,000 questions", "20,000 log lines"])
        self.assertEqual(self.browser.find_elements(By.CSS_SELECTOR, ".question, .log li"), [])

    def test_an_explanation_is_made_for_the_game_that_is_asked_for(self):
        self.explain("Game 7")
        self.assertEqual(len(self.browser.find_elements(By.CSS_SELECTOR, ".question")), 12)


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    GAMES, APPS = sys.argv[1:3]
    AXE = sys.argv[3] if len(sys.argv) > 3 else AXE
    unittest.main(argv=sys.argv[:1])
