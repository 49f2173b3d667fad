"""The starter catalogue that the build makes of data/games.csv: whole, without a fault, and good for finding its games.

usage: starter_test.py TARNWICK.EXE DESKTOP.EXE [UNITTEST ARGUMENT...]
"""

import collections
import contextlib
import csv
import io
import json
import pathlib
import re
import sys
import tempfile
import unittest
import xml.etree.ElementTree

SOURCE = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(SOURCE / "data"), str(SOURCE / "tests" / "captures")]
import check_games  # noqa: E402
import machines  # noqa: E402

GAMES = SOURCE / "data" / "games.csv"
TARNWICK = DESKTOP = STARTER = None
INSTALLED = 40


def starter_records():
    """All that the file says, one dictionary of elements for each record."""
    with GAMES.open(encoding="utf-8", newline="") as file:
        return [record for row in csv.DictReader(file, strict=True) for record in check_games.records(row)]


class TheFile(unittest.TestCase):
    def test_passes_the_strict_check(self):
        result = machines.start(TARNWICK, "catalogue", "check", STARTER, "--strict")
        self.assertEqual((result.returncode, result.stdout), (0, b""), result.stderr)
        self.assertIn(f"no errors, no warnings in {len(starter_records())} records\n", result.stderr.decode("utf-8"))

    def test_is_what_from_csv_makes_of_the_games(self):
        with tempfile.TemporaryDirectory() as folder:
            made = pathlib.Path(folder) / "made.xml"
            machines.run(TARNWICK, "catalogue", "from-csv", GAMES, "-o", made)
            self.assertEqual(made.read_bytes(), STARTER.read_bytes())

    def test_says_what_the_lines_say(self):
        said = [{element.tag: element.text or "" for element in record}
                for record in xml.etree.ElementTree.parse(STARTER).getroot()]
        meant = [{name: text for name, text in record.items() if text} for record in starter_records()]
        self.assertEqual(said, meant)

    def test_has_the_counts_that_its_page_tells(self):
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            self.assertEqual(check_games.main([str(GAMES)]), 0)
        page = (SOURCE / "data" / "README.md").read_text(encoding="utf-8")
        self.assertIn("".join(f"    {line}\n" for line in printed.getvalue().splitlines()), page)

    def test_is_large_enough_to_begin_with(self):
        records = starter_records()
        self.assertGreaterEqual(len({record["DisplayName"] for record in records}), 500)
        self.assertGreaterEqual(len(records), 700)


def chosen_records():
    """As many games as are to be installed: of each source about equally many, spread over its records in the file's
    order, and no game twice. So the choice stays the same as long as the file does."""
    by_source = collections.defaultdict(list)
    for record in starter_records():
        by_source[record["SourceEx"]].append(record)
    chosen = {}
    for source, quota in quotas({source: len(records) for source, records in by_source.items()}).items():
        records = by_source[source]
        for number in range(quota):
            start = number * len(records) // quota
            record = next(record for record in records[start:] + records[:start] if record["DisplayName"] not in chosen)
            chosen[record["DisplayName"]] = record
    return list(chosen.values())


def quotas(counts):
    """How many of each source: one in turn, as long as there are any."""
    quota = collections.Counter()
    while quota.total() < INSTALLED:
        for source in sorted(counts):
            if quota[source] < counts[source] and quota.total() < INSTALLED:
                quota[source] += 1
    return quota


def launchers_name(record):
    """What a launcher calls the game whose name is the record's affair: so the record must find it."""
    return record["DisplayName"] + " (Launcher's Name)"


class Machine:
    """A desktop's description that grows with each game. What a store writes is written down here, not taken from the
    record: a key or a value of another name in the catalogue finds nothing."""

    def __init__(self):
        self.description = {
            "registry": [], "applications": [], "executables": [],
            "steam": {"path": r"C:\Program Files (x86)\Steam",
                      "libraries": [{"path": r"C:\Program Files (x86)\Steam", "apps": []}]},
            "gog": {"games": []},
            "epic": {"items": []},
            "uplay": {"path": r"C:\Program Files (x86)\Ubisoft\Ubisoft Game Launcher", "games": []},
            "ea": {"games": []},
            "store": {"packages": []},
            "battleNet": {"logs": [{"file": "Agent-20240501.log", "games": []}]},
            "riot": {"launchHelper": r"C:\Riot Games\Riot Client\RiotClientServices.exe", "products": []},
            "miHoYo": {"games": []},
            "bethesda": {"path": r"C:\Program Files (x86)\Bethesda.net Launcher", "games": []},
        }
        self.expected = {}

    def put_game(self, record, folder):
        """The game's files: its own executable and another program."""
        name, path = record["DisplayName"], folder + "\\" + record["DefaultExe"]
        self.description["executables"] += [{"path": path, "description": name},
                                            {"path": folder + "\\aside.exe", "description": "Settings"}]
        self.expected[name] = path

    def key(self, key, **values):
        self.description["registry"].append(
            {"key": "HKEY_LOCAL_MACHINE\\SOFTWARE\\" + key, "view": "32",
             "values": {name.replace("_", " "): text for name, text in values.items()}})

    def uninstall_entry(self, key, record, folder):
        self.description["applications"].append(
            {"key": key, "view": "32", "name": record["DisplayName"], "location": folder})

    def steam(self, record, folder):
        self.description["steam"]["libraries"][0]["apps"].append(
            {"appId": int(record["SourceExId"]), "name": record["DisplayName"], "installDir": folder.split("\\")[-1]})

    def gog(self, record, folder):
        # Whose id nobody has written down has one all the same.
        game_id = record["SourceExId"] or str(1900000000 + len(self.expected))
        self.description["gog"]["games"].append(
            {"gameId": game_id, "name": launchers_name(record), "executable": folder + "\\" + record["DefaultExe"]})
        self.key("GOG.com\\Games\\" + game_id, path=folder)
        self.uninstall_entry(game_id + "_is1", record, folder + "\\")

    def epic(self, record, folder):
        self.description["epic"]["items"].append(
            {"appName": record["SourceExId"], "displayName": record["DisplayName"], "installLocation": folder,
             "launchExecutable": "aside.exe", "categories": ["public", "games", "applications"]})

    def uplay(self, record, folder):
        self.key("Ubisoft\\Launcher\\Installs\\" + record["SourceExId"], InstallDir=folder + "\\")
        self.description["uplay"]["games"].append(
            {"name": launchers_name(record), "installId": record["SourceExId"], "location": folder + "\\",
             "relative": record["DefaultExe"]})

    def ea(self, record, folder):
        guid = f"{{5117E400-0000-4000-8000-{len(self.expected):012}}}"
        self.uninstall_entry(guid, record, folder + "\\")
        if not record["RegistryKey"].endswith("\\"):
            publisher, subkey = record["RegistryKey"].split("\\")[-2:]
            self.key(publisher + "\\" + subkey, Install_Dir=folder + "\\")
            self.description["ea"]["games"].append(
                {"publisher": publisher, "subkey": subkey, "productGuid": guid, "name": launchers_name(record),
                 "executable": folder + "\\" + record["DefaultExe"]})

    def uwp(self, record, folder):
        identity, publisher = record["GameInfo"].rsplit("_", 1)
        self.description["store"]["packages"].append(
            {"fullName": f"{identity}_1.2.0.0_x64__{publisher}", "familyName": record["GameInfo"], "folder": folder,
             "displayName": record["DisplayName"],
             "manifest": {"identityName": identity, "version": "1.2.0.0", "displayName": record["DisplayName"],
                          "executable": "aside.exe"}})

    def battlenet(self, record, folder):
        self.description["battleNet"]["logs"][0]["games"].append(
            {"gameId": record["SourceExId"], "installPath": folder, "relativePath": "aside.exe"})

    def riot(self, record, folder):
        product = re.sub(r"\W", "_", record["DisplayName"].lower())
        self.description["riot"]["products"].append({"id": product, "installPath": folder.replace("\\", "/")})

    def mihoyo(self, record, folder):
        self.description["miHoYo"]["games"].append({"gameBiz": record["SourceExId"], "installPath": folder})

    def bethesda(self, record, folder):
        self.description["bethesda"]["games"].append(
            {"productId": record["SourceExId"] or str(9000 + len(self.expected)), "name": record["DisplayName"],
             "location": folder})

    def direct(self, record, folder):
        if record["RegistryKey"].endswith("\\"):
            self.uninstall_entry(f"{{7A11D3C0-0000-4000-8000-{len(self.expected):012}}}", record, folder)
        else:
            self.key(record["RegistryKey"].removeprefix("HKEY_LOCAL_MACHINE\\SOFTWARE\\"),
                     **{record["RegistryPathKeyName"]: folder})


FOLDERS = {"STEAM": r"C:\Program Files (x86)\Steam\steamapps\common", "UWP": r"C:\Program Files\WindowsApps"}


def installed(records):
    machine = Machine()
    for record in records:
        source = record["SourceEx"]
        name = re.sub(r"[^\w ]", "", record["DisplayName"]).strip()
        folder = FOLDERS.get(source, "C:\\Games\\" + source) + "\\" + name
        machine.put_game(record, folder)
        getattr(machine, source.lower())(record, folder)
    return machine


class TheGames(unittest.TestCase):
    def test_installed_as_their_stores_would_are_all_found(self):
        records = chosen_records()
        machine = installed(records)
        self.assertEqual(len(machine.expected), INSTALLED)
        self.assertEqual({record["SourceEx"] for record in records},
                         {record["SourceEx"] for record in starter_records()})
        with standing(machine.description) as folder:
            scan = json.loads(scanned_in(folder))
        self.assertEqual(sorted((game["name"], game["loc"]) for game in scan), sorted(machine.expected.items()))


@contextlib.contextmanager
def standing(description):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "desktop.json").write_text(json.dumps(description), encoding="utf-8")
        machines.build(DESKTOP, folder / "desktop.json", folder / "state.json")
        try:
            yield folder
        finally:
            machines.remove(DESKTOP, folder / "state.json")


def scanned_in(folder):
    """What a scan without a named catalogue finds, which takes the one beside the program."""
    with contextlib.chdir(folder):
        result = machines.start(TARNWICK, "scan", "--format", "json", "--no-icons")
    if result.returncode != 0 or b"using the starter catalogue" not in result.stderr:
        raise AssertionError(result.stderr.decode())
    return result.stdout.decode("utf-8")


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    TARNWICK, DESKTOP = (str(pathlib.Path(argument).absolute()) for argument in sys.argv[1:3])
    STARTER = pathlib.Path(TARNWICK).with_name("MasterGameList.xml")
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
