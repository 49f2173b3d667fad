"""The questions of docs/fleet.md, asked of DuckDB over a generated fleet, against answers that are counted here without
it; and the fleet itself, against the schemas and the program.

usage: fleet_test.py NODE_MODULES TARNWICK.EXE

NODE_MODULES is the folder with @duckdb/node-api.
"""

import collections
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

import jsonschema

import generate_machines

SOURCE = pathlib.Path(__file__).resolve().parents[2]
PAGE = SOURCE / "docs" / "fleet.md"
MACHINES = 2000
WINE = [] if os.name == "nt" else ["wine"]

NODE_MODULES = TARNWICK = None


def read_page():
    """The statements of the page in their order, each with the table behind it: a list of rows of texts, or None."""
    text = PAGE.read_text(encoding="utf-8")
    pairs = re.findall(r"^```sql\n(.*?)^```\n(?:\n((?:\|[^\n]*\n)+))?", text, re.M | re.S)
    tables = [[[cell.strip() for cell in line.strip("|\n").split("|")] for line in table.splitlines()] or None
              for _, table in pairs]
    return [(statement, table and [table[0], *table[2:]]) for (statement, _), table in zip(pairs, tables)]


def ask(statements, folder):
    run = subprocess.run(["node", str(SOURCE / "tests" / "fleet" / "answer.cjs")], input=json.dumps(statements), cwd=folder,
                         env={**os.environ, "NODE_PATH": NODE_MODULES}, capture_output=True, text=True, check=False)
    if run.returncode != 0:
        raise AssertionError(run.stderr)
    return json.loads(run.stdout)


def setUpModule():
    global FOLDER, LINES, PAGE_PARTS, ANSWERS
    FOLDER = tempfile.TemporaryDirectory()
    collected = pathlib.Path(FOLDER.name) / "collected"
    collected.mkdir()
    generate_machines.generate(collected, MACHINES)
    # Some lines arrive twice.
    first = (collected / "scans-1.ndjson").read_text(encoding="utf-8").splitlines(keepends=True)
    (collected / "again.ndjson").write_text("".join(first[:500]), encoding="utf-8")
    LINES = [json.loads(line) for path in sorted(collected.glob("*-?.ndjson"))
             for line in path.read_text(encoding="utf-8").splitlines()]
    PAGE_PARTS = read_page()
    ANSWERS = ask([statement for statement, _ in PAGE_PARTS], FOLDER.name)


def tearDownModule():
    FOLDER.cleanup()


class Fleet:
    """What the lines say, gathered without SQL."""

    def __init__(self, lines):
        rows = collections.defaultdict(list)
        for line in lines:
            kind = {"game": "scan", "application": "apps"}.get(line["kind"], line["kind"])
            rows[line["machine"], line["time"], kind].append(line)
        self.machines = {machine for machine, *_ in rows}
        self.whole = collections.defaultdict(dict)  # (machine, "scan") -> {time: rows}
        self.newest_sent = {}
        for (machine, time, kind), run in rows.items():
            if kind == "scan":
                self.newest_sent[machine] = max(time, self.newest_sent.get(machine, ""))
            if "lines" in run[-1] and run[-1]["lines"] == len(run) - 1:
                self.whole[machine, kind][time] = run[:-1]

    def run(self, machine, kind, age):
        times = sorted(self.whole[machine, kind], reverse=True)
        return self.whole[machine, kind][times[age - 1]] if len(times) >= age else None

    def games(self):
        return [game for machine in self.machines for game in self.run(machine, "scan", 1) or []]

    def changes(self):
        for machine in self.machines:
            older, newer = self.run(machine, "scan", 2), self.run(machine, "scan", 1)
            if older is not None:
                for what, name in differences(older, newer):
                    yield machine, what, name


def identity(game):
    return game["launchUrl"] or (game["launcher"], game["name"])


def place(game):
    folders = game["loc"].lower().split("\\")
    if "windowsapps" in folders:
        package = folders.index("windowsapps") + 1
        name, _, *rest = folders[package].split("_")
        folders[package] = "_".join([name, *rest])
    return folders


def differences(older, newer):
    old, new = ({identity(game): game for game in games} for games in (older, newer))
    yield from (("removed", old[key]["name"]) for key in old.keys() - new.keys())
    yield from (("added", new[key]["name"]) for key in new.keys() - old.keys())
    yield from (("moved", new[key]["name"]) for key in old.keys() & new.keys() if place(old[key]) != place(new[key]))


def texts(rows):
    return [["" if cell is None else str(cell) for cell in row] for row in rows]


class Questions(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.fleet = Fleet(LINES)

    def answer(self, *columns):
        """The rows of the one answer with these columns, as texts, which are the page's table too."""
        found = [(answer, table) for answer, (_, table) in zip(ANSWERS, PAGE_PARTS) if answer["columns"] == list(columns)]
        self.assertEqual(len(found), 1, columns)
        answer, table = found[0]
        self.assertEqual(table, [answer["columns"], *texts(answer["rows"])])
        return texts(answer["rows"])

    def test_every_statement_is_a_view_or_has_its_table(self):
        kinds = [(statement.split()[0], table is not None) for statement, table in PAGE_PARTS]
        self.assertEqual(set(kinds), {("CREATE", False), ("SELECT", True)})
        self.assertEqual(kinds.count(("SELECT", True)), 6)

    def test_which_games_are_on_how_many_machines(self):
        counts = collections.Counter()
        for name, launcher, _ in {(game["name"], game["launcher"], game["machine"]) for game in self.fleet.games()}:
            counts[name, launcher] += 1
        ranked = sorted((-count, *game) for game, count in counts.items())[:5]
        expected = [[name, launcher, -count] for count, name, launcher in ranked]
        self.assertEqual(self.answer("name", "launcher", "machines"), texts(expected))

    def test_how_many_machines_there_are(self):
        with_runs = [machine for machine in self.fleet.machines if self.fleet.run(machine, "scan", 1) is not None]
        with_games = {game["machine"] for game in self.fleet.games()}
        self.assertEqual(len(with_runs), MACHINES)
        self.assertEqual(self.answer("machines", "with_games"), texts([[len(with_runs), len(with_games)]]))

    def test_whose_scan_was_cut(self):
        cut = [machine for machine, time in self.fleet.newest_sent.items()
               if time not in self.fleet.whole[machine, "scan"]]
        self.assertGreater(len(cut), 5)
        self.assertEqual(self.answer("cut_machines"), texts([[len(cut)]]))

    def test_how_much_room_they_take(self):
        sums = collections.defaultdict(lambda: [0, 0, 0])
        listed = {(app["machine"], app["loc"].lower()): app["sizeKB"] for machine in self.fleet.machines
                  for app in self.fleet.run(machine, "apps", 1) or [] if app["sizeKB"] > 0}
        for game in self.fleet.games():
            size = game["sizeKB"] if game["sizeKB"] is not None else listed.get((game["machine"], game["loc"].lower()))
            row = sums[game["launcher"]]
            row[0] += 1
            row[1] += size is not None
            row[2] += size or 0
        expected = [[launcher, games, known, kb // 1048576 if known else None]
                    for launcher, (games, known, kb) in sorted(sums.items())]
        self.assertEqual(len(expected), 6)
        self.assertEqual(self.answer("launcher", "games", "with_size", "at_least_gib"), texts(expected))

    def test_what_changed(self):
        changes = list(self.fleet.changes())
        rows = [[what, sum(one == what for _, one, _ in changes),
                 len({machine for machine, one, _ in changes if one == what})]
                for what in ("added", "moved", "removed")]
        self.assertTrue(all(games > 100 for _, games, _ in rows))
        self.assertEqual(self.answer("what", "games", "machines"), texts(rows))

    def test_which_games_came_and_went(self):
        counts = collections.defaultdict(collections.Counter)
        for _, what, name in self.fleet.changes():
            counts[name][what] += 1
        ranked = sorted((-count["removed"], name, count["added"]) for name, count in counts.items())[:5]
        expected = [[name, added, -removed] for removed, name, added in ranked]
        self.assertEqual(self.answer("name", "added", "removed"), texts(expected))


def line_schema(name):
    text = (SOURCE / "docs" / "schemas" / f"{name}.schema.json").read_text(encoding="utf-8")
    return jsonschema.Draft202012Validator(json.loads(text))


class GeneratedLines(unittest.TestCase):
    def test_the_pages_example_fits_the_schema(self):
        block = re.search(r"^```json\n(.*?)^```$", PAGE.read_text(encoding="utf-8"), re.M | re.S).group(1)
        lines = [json.loads(line) for line in block.splitlines()]
        self.assertEqual([line["kind"] for line in lines], ["game", "scan"])
        for line in lines:
            line_schema("scan-line").validate(line)

    def test_they_fit_the_schemas_of_the_programs_lines(self):
        kinds = collections.Counter()
        for name in ("scan-line", "apps-line"):
            validator = line_schema(name)
            its_kinds = ("game", "scan") if name == "scan-line" else ("application", "apps")
            # All are made by one function, so that some thousand will do.
            for line in [line for line in LINES if line["kind"] in its_kinds][::20]:
                validator.validate(line)
                kinds[line["kind"]] += 1
        self.assertEqual(len(kinds), 4)
        self.assertGreater(min(kinds.values()), 50)

    def test_every_run_of_the_generator_is_the_same(self):
        with tempfile.TemporaryDirectory() as one, tempfile.TemporaryDirectory() as other:
            generate_machines.generate(one, 30)
            generate_machines.generate(other, 30)
            for name in ("scans-1.ndjson", "scans-2.ndjson", "apps-2.ndjson"):
                text = (pathlib.Path(one) / name).read_text(encoding="utf-8")
                self.assertEqual(text, (pathlib.Path(other) / name).read_text(encoding="utf-8"))
                self.assertGreater(len(text), 1000)

    def test_the_program_tells_the_same_differences(self):
        fleet = Fleet(LINES)
        changed = sorted({machine for machine, *_ in fleet.changes()})[:3]
        for machine in changed:
            with tempfile.TemporaryDirectory() as folder:
                paths = [self.scan_file(pathlib.Path(folder), f"{age}.ndjson", machine, day)
                         for age, day in enumerate(generate_machines.DAYS)]
                with tempfile.TemporaryFile() as output:
                    code = subprocess.run([*WINE, TARNWICK, "diff", *paths, "--format", "json"], stdout=output, check=False,
                                          timeout=120).returncode
                    output.seek(0)
                    told = json.load(output)
            self.assertEqual(code, 1)
            expected = sorted((what, name) for one, what, name in fleet.changes() if one == machine)
            answered = [(what, game["name"]) for what in ("added", "removed", "moved") for game in told[what]]
            self.assertEqual(sorted(answered), expected)

    def scan_file(self, folder, name, machine, day):
        path = folder / name
        lines = [line for line in LINES if line["machine"] == machine and line["time"].startswith(day)
                 and line["kind"] in ("game", "scan")]
        path.write_text("".join(json.dumps(line) + "\n" for line in lines), encoding="utf-8")
        return str(path) if os.name == "nt" else "Z:" + str(path).replace("/", "\\")


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    NODE_MODULES, TARNWICK = sys.argv[1:3]
    NODE_MODULES = str(pathlib.Path(NODE_MODULES).resolve())
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
