#!/usr/bin/env python3
"""Writes the lines that a fleet of machines would have sent: two scans of each, a week apart, and the applications of the
second day. The same at every run, and modelled on what tarnwick writes of its sample desktop.

usage: generate_machines.py FOLDER [MACHINES]
"""

import json
import pathlib
import random
import sys

SEED = 20260101
DAYS = ("2026-01-05", "2026-01-12")
PROGRAM = "0.1.0"

FIRST = ["Amber", "Brisk", "Copper", "Dusty", "Ember", "Frosty", "Gilded", "Hollow", "Ivory", "Jade", "Lantern", "Misty"]
SECOND = ["Harbour", "Meadow", "Kestrel", "Orchard", "Caravan", "Ferry", "Lighthouse", "Compass", "Quarry", "Racers"]

# Launcher, share of machines that have it, launch URI, folder, strategy.
STEAM, EPIC, GOG, UBISOFT, STORE, NONE = range(6)
LAUNCHERS = [
    ("Steam", 0.80, "steam://run/{id}", r"{drive}:\SteamLibrary\steamapps\common\{name}\{exe}", "Steam Games Scan"),
    ("Epic Games", 0.45, "", r"{drive}:\Games\Epic\{name}\{exe}", "Epic Games Scan"),
    ("GOG", 0.25, "goggalaxy://openGameView/{id}", r"{drive}:\Games\GOG\{name}\{exe}", "GOG Registry Search"),
    ("Ubisoft", 0.30, "uplay://launch/{id}/0", r"{drive}:\Games\Uplay\{name}\bin\{exe}", "Uplay Configuration Search"),
    ("Microsoft Store", 0.35, r"shell:AppsFolder\Tessera.{word}_tarnwickdemo!App",
     r"C:\Program Files\WindowsApps\Tessera.{word}_{version}_x64__tarnwickdemo\{exe}", "UWP/Microsoft Store Scan"),
    ("Installed", 0.60, "", r"{drive}:\Games\{name}\{exe}", "Uninstall Registry Search"),
]


def catalogue(chance):
    """Each game: its name, id, launcher, size in KB, and how many of those with its launcher have it."""
    games = []
    for number, name in enumerate(f"{first} {second}" for first in FIRST for second in SECOND):
        games.append({"name": name, "id": 9000000 + 10 * number, "launcher": int(chance.random() * len(LAUNCHERS)),
                      "size": 200_000 + int(chance.random() * 60_000_000), "share": 0.05 + 0.5 * chance.random() ** 3})
    return games


def installed_games(games, launchers, chance):
    return [dict(game, drive="C" if chance.random() < 0.7 else "D", version="1.2.0.0")
            for game in games if game["launcher"] in launchers and chance.random() < game["share"]]


def a_week_later(mine, games, launchers, chance):
    """One game in 20 goes, one in 30 moves to the other drive, Store games are updated, and few come."""
    kept = []
    for game in mine:
        if chance.random() < 0.05:
            continue
        moves = game["launcher"] != STORE and chance.random() < 1 / 30
        kept.append(dict(game, drive="CD"[game["drive"] == "C"] if moves else game["drive"], version="1.3.0.0"))
    have = {game["name"] for game in mine}
    new = [game for game in games if game["launcher"] in launchers and game["name"] not in have and chance.random() < 0.01]
    return kept + [dict(game, drive="C", version="1.3.0.0") for game in new]


def row_of_game(game):
    launcher, _, uri, path, strategy = LAUNCHERS[game["launcher"]]
    word = game["name"].replace(" ", "")
    parts = {**game, "word": word, "exe": word.lower() + ".exe"}
    # Steam writes down what a game takes; the other launchers' sizes, where there are any, come with the applications.
    return {"name": game["name"], "loc": path.format(**parts), "icon": "", "launchUrl": uri.format(**parts),
            "exeName": parts["exe"], "launcher": launcher, "foundBy": strategy,
            "sizeKB": game["size"] if game["launcher"] == STEAM else None}


def row_of_application(game, chance):
    """GOG's and other installers list their games, some without a size: it is 0 then."""
    row = row_of_game(game)
    # The two programs don't spell every path alike.
    loc = row["loc"].lower() if chance.random() < 0.2 else row["loc"]
    return {"name": row["name"], "publisher": "Tessera", "version": game["version"], "loc": loc,
            "exeName": row["exeName"], "date": "20260104", "sizeKB": game["size"] if chance.random() < 0.9 else 0,
            "icon": ""}


def lines_of_run(rows, kind, end, day, minute, machine):
    origin = {"form": 1, "time": f"{day}T06:{minute // 60 % 60:02}:{minute % 60:02}.000Z", "machine": machine}
    lines = [{**row, "kind": kind, **origin} for row in rows]
    return [*lines, {"kind": end, **origin, "lines": len(rows), "program": PROGRAM}]


def machine_lines(number, games, chance):
    """The lines of one machine: its first scan, its second one and its applications."""
    machine = f"desk-{number:04}"
    launchers = {at for at, launcher in enumerate(LAUNCHERS) if chance.random() < launcher[1]}
    # Machines for work alone have no game, and their scans no line but the end.
    before = [] if chance.random() < 0.1 else installed_games(games, launchers, chance)
    after = a_week_later(before, games, launchers, chance) if before else []
    first, second = (lines_of_run([row_of_game(game) for game in mine], "game", "scan", day, number, machine)
                     for day, mine in zip(DAYS, (before, after)))
    listed = [row_of_application(game, chance) for game in after if game["launcher"] in (GOG, NONE)]
    apps = lines_of_run(listed, "application", "apps", DAYS[1], number, machine)
    # One machine in a hundred was switched off while it sent: the end of its last scan is missing. Of another one
    # the first line was lost on its way.
    lost = chance.random()
    if lost < 0.01:
        second = second[:-1]
    elif lost < 0.02:
        second = second[1:]
    return first, second, apps


def generate(folder, machines=2000):
    chance = random.Random(SEED)
    games = catalogue(chance)
    files = [(pathlib.Path(folder) / name).open("w", encoding="utf-8", newline="\n")
             for name in ("scans-1.ndjson", "scans-2.ndjson", "apps-2.ndjson")]
    for number in range(machines):
        for file, lines in zip(files, machine_lines(number, games, chance)):
            for line in lines:
                file.write(json.dumps(line, ensure_ascii=False, separators=(",", ":")) + "\n")
    for file in files:
        file.close()


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    pathlib.Path(sys.argv[1]).mkdir(parents=True, exist_ok=True)
    generate(sys.argv[1], *map(int, sys.argv[2:]))
