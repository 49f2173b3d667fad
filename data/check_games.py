#!/usr/bin/env python3
"""Checks games.csv, the source of the starter catalogue, and prints how many games and records it has by source.

usage: check_games.py [games.csv]
Each fault is one line, FILE:LINE: what is wrong; the exit code is 1 if there is any. README.md tells the rules.
"""

import csv
import io
import pathlib
import sys
from collections import Counter

COLUMNS = ("DisplayName SourceEx SourceExId DefaultExe DefaultFolderExe DefaultFolder RegistryKey RegistryPathKeyName "
           "GameGUID GameInfo LaunchUrl RunningExe").split()
SOURCES = "STEAM EPIC GOG UPLAY EA UWP BATTLENET RIOT DIRECT MIHOYO ARC BETHESDA".split()
ARC_KEY = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Perfect World Entertainment\\Core\\"
HIVES = ("HKEY_LOCAL_MACHINE\\", "HKEY_CURRENT_USER\\")
CHECKED = {
    "ids": {"list", "launcher", "known"},
    "exe": {"path list", "process list, own one chosen", "launcher", "known"},
    "other stores": {"known"},
}
COMMON = set("app application autorun bootstrap client config crashhandler engine game game32 game64 install installer "
             "launch launcher loader main nw patcher play player run server setup settings start starter startup "
             "uninstall update updater".split())
# A record that has none of these sets of fields is tested by no strategy.
REGISTRY = ("RegistryKey", "RegistryPathKeyName")
NEEDED = {
    "STEAM": [("SourceExId",)],
    "EPIC": [("SourceExId", "LaunchUrl")],
    "UWP": [("GameInfo",)],
    "BATTLENET": [("SourceExId",)],
    "RIOT": [("RunningExe",)],
    "MIHOYO": [("SourceExId",)],
    "ARC": [("RegistryKey",)],
    "BETHESDA": [("LaunchUrl",), REGISTRY],
}
OTHERWISE = [REGISTRY, ("DefaultFolder",), ("GameGUID",)]


def records(row):
    """One dictionary of elements for each source of a line."""
    sources = row["SourceEx"].split(";")
    ids = row["SourceExId"].split(";")
    ids += [""] * (len(sources) - len(ids))
    for source, number in zip(sources, ids):
        record = {name: row.get(f"{name}@{source}") or row[name] for name in COLUMNS}
        yield record | {"SourceEx": source, "SourceExId": number}


def header_faults(columns):
    for name in columns[:-1]:
        element, _, source = name.partition("@")
        if element not in COLUMNS or (source and source not in SOURCES):
            yield f"no column of the catalogue: {name}"
    if len(set(columns)) < len(columns):
        yield "a column stands twice"
    if columns[-1:] != ["checked"]:
        yield "the last column isn't checked"
    yield from (f"column {name} is missing" for name in COLUMNS if name not in columns)


def exe_faults(record):
    exe = record["DefaultExe"]
    if not exe:
        yield "no executable"
    elif not exe.lower().endswith(".exe"):
        yield f"no executable's name: {exe}"
    elif exe[:-4].lower() in COMMON:
        yield f"executable that names many games: {exe}"
    if "/" in exe or exe.startswith("\\") or ":" in exe:
        yield f"no path below the install folder, parted by backslashes: {exe}"


def form_faults(record):
    if record["SourceEx"] == "STEAM" and not record["SourceExId"].isdecimal():
        yield f"no app id: {record['SourceExId']}"
    if record["SourceEx"] == "STEAM" and record["LaunchUrl"]:
        yield "a launch URL in a Steam record"
    if record["SourceEx"] == "EPIC" and f"/apps/{record['SourceExId']}?" not in record["LaunchUrl"]:
        yield "the launch URL isn't that of the id"
    if record["SourceEx"] == "ARC" and (not record["RegistryKey"].startswith(ARC_KEY) or record["RegistryPathKeyName"]):
        yield "not the key that Arc's own strategy compares, alone"
    if record["RegistryKey"] and not record["RegistryKey"].startswith(HIVES):
        yield f"no hive in long form: {record['RegistryKey']}"
    if set(record["GameGUID"]) & set("{}"):
        yield "GUID with braces"


def record_faults(record):
    if record["SourceEx"] not in SOURCES:
        yield f"unknown source: {record['SourceEx']}"
    elif not any(all(record[name] for name in names) for names in NEEDED.get(record["SourceEx"], OTHERWISE)):
        yield f"no strategy tests the {record['SourceEx']} record"
    yield from exe_faults(record)
    yield from form_faults(record)


def checked_faults(text):
    for part in text.split("; ") if text != "known" else []:
        fact, _, how = part.partition(": ")
        if how not in CHECKED.get(fact, ()):
            yield f"not a word for how it was checked: {part!r}"


def line_faults(row):
    """What is wrong with a line as a whole, its records aside."""
    if None in row or None in row.values():
        yield "more or fewer fields than columns"
        return
    if "\ufffd" in "".join(row.values()):
        yield "bytes that are no UTF-8"
    if any(sign in row["DisplayName"] for sign in "™®©"):
        yield "trademark sign in the name"
    yield from (f"blanks around or inside the text: {text!r}" for text in row.values()
                if " ".join(text.split()) != text)
    sources = row["SourceEx"].split(";")
    if row["SourceExId"].count(";") not in (0, len(sources) - 1):
        yield "other number of ids than of sources"
    yield from (f"{name} is for a source the game hasn't" for name, text in row.items()
                if text and "@" in name and name.split("@")[1] not in sources)
    yield from checked_faults(row["checked"])


def sort_key(row):
    return row["DisplayName"].casefold(), row["DisplayName"]


def order_faults(row, before, names):
    if before and sort_key(row) < sort_key(before):
        yield f"not sorted: {row['DisplayName']} behind {before['DisplayName']}"
    name = row["DisplayName"].casefold()
    if not name or name in names:
        yield f"no name or one that stands twice: {row['DisplayName']!r}"
    names.add(name)


def identity_faults(record, seen):
    """What tells a record from others of its source is the id; some launchers' games have another field for it."""
    field = {"UWP": "GameInfo", "RIOT": "RunningExe", "ARC": "RegistryKey"}.get(record["SourceEx"], "SourceExId")
    identity = record["SourceEx"], record[field]
    if record[field] and identity in seen:
        yield "source and id stand twice: " + " ".join(identity)
    seen.add(identity)


def all_faults(reader, counts):
    """(line, fault) for the whole file; counts its games and its records by source."""
    columns = reader.fieldnames or []
    yield from ((1, fault) for fault in header_faults(columns))
    if not set(COLUMNS + ["checked"]) <= set(columns):
        return
    names, seen, before = set(), set(), None
    for row in reader:
        faults = [*line_faults(row), *order_faults(row, before, names)]
        for record in records(row) if None not in row.values() else ():
            faults += [*record_faults(record), *identity_faults(record, seen)]
            counts[record["SourceEx"]] += 1
        yield from ((reader.line_num, fault) for fault in dict.fromkeys(faults))
        counts["games"] += 1
        before = row


def file_faults(path, counts):
    data = path.read_bytes()
    if b"\r" in data or data.startswith(b"\xef\xbb\xbf") or not data.endswith(b"\n"):
        yield 1, "not UTF-8 without byte-order mark and with line feeds alone, one behind the last line too"
    reader = csv.DictReader(io.StringIO(data.decode("utf-8", "replace"), newline=""), strict=True)
    try:
        yield from all_faults(reader, counts)
    except csv.Error as error:
        yield reader.line_num, f"no CSV: {error}"


def main(arguments):
    path = pathlib.Path(arguments[0]) if arguments else pathlib.Path(__file__).with_name("games.csv")
    counts, failed = Counter(), False
    for line, fault in file_faults(path, counts):
        print(f"{path}:{line}: {fault}")
        failed = True
    games = counts.pop("games", 0)
    print(f"{games} games, {counts.total()} records")
    for source, count in counts.most_common():
        print(f"{source:10} {count:5}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
