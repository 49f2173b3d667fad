"""The pictures of the pages in docs/images.

usage: screenshots.py GAMES.html APPS.html FOLDER
"""

import pathlib
import sys

import browser as chromium

PICTURES = (
    ("games.png", 0, 1280, "light"),
    ("games-400.png", 0, 400, "dark"),
    ("apps-1280.png", 1, 1280, "dark"),
)


def main(pages, folder):
    browser = chromium.start()
    try:
        for name, page, width, scheme in PICTURES:
            chromium.show(browser, pages[page], width, 800, scheme)
            browser.execute_script("document.documentElement.style.scrollbarWidth = 'none'")
            browser.execute_script("return Promise.all([...document.images].slice(0, 40).map(image => image.decode()))")
            browser.save_screenshot(str(pathlib.Path(folder) / name))
    finally:
        browser.quit()


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(sys.argv[1:3], sys.argv[3])
