#!/usr/bin/python3
"""Tests of tools/import-ludusavi, on manifests that are made here.

    import_ludusavi_test.py                   runs the tests
    import_ludusavi_test.py --sample COUNT    prints a manifest of so many titles
    import_ludusavi_test.py --fuzz SECONDS    spoils manifests at random for so long
"""

import csv
import io
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import unittest
from importlib.machinery import SourceFileLoader
from importlib.util import module_from_spec, spec_from_loader
from random import Random

TOOL = pathlib.Path(__file__).resolve().parents[2] / "tools" / "import-ludusavi"


def load_tool():
    sys.dont_write_bytecode = True
    loader = SourceFileLoader("import_ludusavi", str(TOOL))
    module = module_from_spec(spec_from_loader(loader.name, loader))
    loader.exec_module(module)
    return module


tool = load_tool()


def sample(count):
    """A manifest in the form that the project publishes, of games that don't exist."""
    lines = []
    for number in range(count):
        title = f"Game {number}: The \u00c9tude"
        if number % 10 == 9:
            lines += [f'"{title}":', f'  alias: "Game {number - 1}: The \u00c9tude"']
            continue
        lines += [f'"{title}":', "  files:"]
        for file in range(4):
            lines += [f'    "<base>/saves/{file}/<storeUserId>.sav":', "      tags:", "        - save",
                      "      when:", "        - os: windows", "          store: steam"]
        lines += ["  installDir:", f'    "Game {number}": {{}}', "  launch:"]
        for path, when in (("bin/game.exe", "os: windows"), ("game.sh", "os: linux"), ("Launcher.exe", "os: windows")):
            lines += [f'    "<base>/{path}":', "      - when:", f"          - {when}", "            bit: 64",
                      "            store: steam"]
        lines += ["  registry:", f'    "HKEY_CURRENT_USER/Software/Game {number}":', "      tags:", "        - config"]
        lines += ["  steam:", f"    id: {number + 1}"]
        if number % 3 == 0:
            lines += ["  gog:", f"    id: {number + 1000000}"]
    return "\n".join(lines) + "\n"


def lines_of(manifest, all_ids=False):
    output = io.StringIO(newline="")
    taken, left = tool.import_manifest(manifest.encode(), output, all_ids)
    return list(csv.DictReader(io.StringIO(output.getvalue(), newline=""))), taken, left


def texts(line):
    """The cells that hold anything."""
    return {column: text for column, text in line.items() if text and column != "checked"}


def run_tool(content, *options):
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder, "manifest.yaml")
        path.write_bytes(content)
        done = subprocess.run([TOOL, path, *options], capture_output=True, check=False, timeout=120)
        return done.returncode, done.stdout.decode(), done.stderr.decode().replace(str(path), "manifest.yaml")


SPOILERS = [b"&a ", b"*a", b"[", b"]", b"{", b"}", b": ", b"\n", b"\n  ", b"- ", b"? ", b"| ", b"!!binary ", b"<base>/", b"~",
            b"\"", b"'", b"\x00", b"\xff", b"\xef\xbb\xbf", b"---\n", b"...\n", b"%YAML 9.9\n", b"#", b"steam", b"70", b".exe"]


def spoil(text, random):
    """The manifest with up to eight changes."""
    spoilt = bytearray(text)
    for _ in range(random.randint(1, 8)):
        at = random.randrange(len(spoilt) + 1)
        spoilt[at:at + random.choice([0, 0, 1, 5, 200])] = random.choice(SPOILERS)
    return bytes(spoilt)


def check_spoilt(seed):
    """Lines that every CSV reader takes, or one of the two faults; anything else is an error of the tool."""
    manifest = spoil(sample(4).encode(), Random(seed))
    output = io.StringIO(newline="")
    try:
        tool.import_manifest(manifest, output)
    except (tool.BadManifest, tool.yaml.YAMLError) as error:
        fault = str(error) if isinstance(error, tool.BadManifest) else tool.explain(error)
        assert re.match(r"[0-9]+:[0-9]+: [^\n]+$", fault), (seed, fault)
    for line in csv.DictReader(io.StringIO(output.getvalue(), newline=""), strict=True):
        assert None not in line and None not in line.values(), seed
        assert len(line["SourceEx"].split(";")) == len(line["SourceExId"].split(";")), seed


def fuzz(seconds):
    end, seed = time.monotonic() + seconds, 0
    while time.monotonic() < end:
        seed += 1
        check_spoilt(seed)
    print(f"{seed} spoilt manifests in {seconds} s")


class Titles(unittest.TestCase):
    def test_a_game_of_two_stores_is_one_line(self):
        lines, taken, _ = lines_of("""
Wren:
  installDir: {Wren Folder: {}}
  launch:
    <base>/bin/wren.exe: [{when: [{os: windows}]}]
  steam: {id: 70}
  gog: {id: 1207658927}
""")
        self.assertEqual([texts(line) for line in lines], [{
            "DisplayName": "Wren", "SourceEx": "STEAM;GOG", "SourceExId": "70;1207658927",
            "DefaultExe": "bin\\wren.exe",
            "DefaultFolder@STEAM": "C:\\Program Files (x86)\\Steam\\steamapps\\common\\Wren Folder",
            "RegistryKey@GOG": "HKEY_LOCAL_MACHINE\\SOFTWARE\\GOG.com\\Games\\1207658927",
            "RegistryPathKeyName@GOG": "path"}])
        self.assertEqual(taken, {"titles": 1, "STEAM": 1, "GOG": 1})

    def test_bits_have_fields_of_their_own(self):
        lines, _, _ = lines_of("""
Wren:
  launch:
    <base>/w.exe: [{}]
    <base>/w32.exe: [{when: [{bit: 32, os: windows}]}]
    <base>/w64.exe: [{when: [{bit: 64, os: windows}]}]
  steam: {id: 70}
""")
        self.assertEqual({column: text for column, text in texts(lines[0]).items() if "Exe" in column},
                         {"DefaultExe": "w.exe", "DefaultExe32": "w32.exe", "DefaultExe64": "w64.exe"})

    def test_other_systems_and_stores_are_left(self):
        lines, _, left = lines_of("""
Wren:
  launch:
    <base>/wren: [{when: [{os: linux}]}]
    <base>/wren.app: [{when: [{os: mac}]}]
    <base>/mac.exe: [{when: [{os: mac}]}]
    <base>/gog.exe: [{when: [{os: windows, store: gog}]}]
    <base>/epic.exe: [{when: [{os: windows, store: epic}]}]
  steam: {id: 70}
  gog: {id: 71}
""")
        self.assertEqual([(line["SourceEx"], line["DefaultExe"]) for line in lines], [("GOG", "gog.exe")])
        self.assertEqual(left["Steam id without a program for Windows"], 1)

    def test_what_stores_do_not_share_stands_in_their_columns(self):
        lines, _, _ = lines_of("""
Wren:
  launch: {<base>/s.exe: [{when: [{store: steam, bit: 64}]}], <base>/g.exe: [{when: [{store: gog}]}]}
  steam: {id: 70}
  gog: {id: 71}
""")
        self.assertEqual((lines[0]["DefaultExe64@STEAM"], lines[0]["DefaultExe@GOG"]), ("s.exe", "g.exe"))
        self.assertEqual((lines[0]["DefaultExe"], lines[0]["DefaultExe64"], lines[0]["DefaultExe@STEAM"]), ("",) * 3)

    def test_a_game_of_gog_without_a_program_is_found_by_its_key(self):
        lines, _, _ = lines_of("Wren: {gog: {id: 71}}\n")
        self.assertEqual(lines[0]["RegistryPathKeyName@GOG"], "exe")

    def test_the_games_own_program_goes_before_what_stands_beside_it(self):
        lines, _, _ = lines_of("""
Wren:
  launch:
    <base>/Config.exe: [{}]
    <base>/Launcher.exe: [{when: [{bit: 32}]}]
    <base>/a.exe: [{arguments: -edit}]
    <base>/wren.exe: [{}]
  steam: {id: 70}
Owl:
  launch: {<base>/Launcher.exe: [{}]}
  steam: {id: 71}
""")
        self.assertEqual([(line["DefaultExe"], line["DefaultExe32"]) for line in lines],
                         [("wren.exe", ""), ("Launcher.exe", "")])

    def test_keys_that_are_no_executable_below_the_folder_are_passed_over(self):
        for key in ("<home>/w.exe", "<base>/../w.exe", "<base>/w.bat", "<base>", "steam://run/70", "<base>/a:b.exe",
                    "<base>/<root>/w.exe", "<base>/a|b.exe"):
            _, _, left = lines_of(f'Wren:\n  launch: {{"{key}": [{{}}]}}\n  steam: {{id: 70}}\n')
            self.assertEqual(left["Steam id without a program for Windows"], 1, key)

    def test_ids_of_a_store_beyond_the_first_are_taken_when_asked_for(self):
        manifest = """
Wren:
  launch: {<base>/w.exe: [{}]}
  steam: {id: 70}
  id: {steamExtra: [71, 70, 72], gogExtra: [80]}
"""
        lines, _, left = lines_of(manifest)
        self.assertEqual([(line["SourceEx"], line["SourceExId"]) for line in lines], [("STEAM;GOG", "70;80")])
        self.assertEqual(left["further id of a store"], 2)
        lines, taken, _ = lines_of(manifest, all_ids=True)
        self.assertEqual([line["SourceExId"] for line in lines], ["70;80", "71", "72"])
        self.assertEqual((taken["titles"], taken["STEAM"]), (1, 3))

    def test_an_id_is_a_number_as_stores_write_it(self):
        for bad in ("070", "0", "-70", "7_0", "7" * 20, "0x46"):
            _, _, left = lines_of(f'Wren:\n  gog: {{id: "{bad}"}}\n')
            self.assertEqual(left["no id at Steam or GOG"], 1, bad)

    def test_of_a_key_that_stands_twice_the_last_counts(self):
        lines, _, _ = lines_of("Wren:\n  gog: {id: 7}\n  gog: {id: 8}\n")
        self.assertEqual([line["SourceExId"] for line in lines], ["8"])

    def test_of_several_install_folders_none_is_guessed(self):
        manifest = "Wren:\n  launch: {{<base>/w.exe: [{{}}]}}\n  steam: {{id: 70}}\n  installDir: {}\n"
        for folders, folder in (("{Wren: {}}", tool.STEAM_LIBRARY + "Wren"), ("{Wren: {}, Wren2: {}}", ""),
                                ("{a/b: {}}", ""), ("{'..': {}}", ""), ("{}", "")):
            lines, _, _ = lines_of(manifest.format(folders))
            self.assertEqual(lines[0]["DefaultFolder@STEAM"], folder, folders)

    def test_says_what_was_left_and_why(self):
        _, taken, left = lines_of("""
Wren: {alias: Owl}
Owl: {}
Lark: ~
Rook: text
Finch: {steam: {id: seventy}}
Crow: {steam: [70], launch: text, installDir: 5}
? [a, b]
: {steam: {id: 70}}
"": {steam: {id: 70}}
""")
        self.assertEqual(taken["titles"], 0)
        self.assertEqual(dict(left), {"alias of another title": 1, "no id at Steam or GOG": 5, "no usable title": 2})

    def test_hostile_titles_stay_one_cell(self):
        title = 'a,"b"; c\\n <&> \u6e38 =1'
        lines, _, _ = lines_of(f"'{title}': {{gog: {{id: 7}}}}\n")
        self.assertEqual(lines[0]["DisplayName"], title)


class Faults(unittest.TestCase):
    def expect(self, content, fault):
        code, _, error = run_tool(content)
        self.assertEqual(code, 1)
        self.assertEqual(error.count("\n"), 1, error)
        self.assertTrue(error.startswith("manifest.yaml:" + fault), error)

    def test_anchors_and_aliases_are_refused(self):
        bomb = "a: &a [x, x]\n" + "".join(f"{chr(98 + i)}: &{chr(98 + i)} [*{chr(97 + i)}, *{chr(97 + i)}]\n"
                                             for i in range(20))
        self.expect(bomb.encode(), "1:4: an anchor or alias")
        self.expect(b"Wren: *a\n", "1:7: an anchor or alias")

    def test_nesting_is_bounded(self):
        self.expect(b"Wren: " + b"[" * 1_000_000, "1:38: nested more than 32 deep")
        self.expect(b"Wren: " + b"{a: " * 1_000_000, "1:")
        self.expect(b"[" * 1_000_000, "1:1: no mapping of titles")

    def test_one_title_is_bounded(self):
        self.expect(b"Wren: [" + b"a," * 200_000 + b"]\n", "1:")

    def test_truncated_and_binary_files_have_a_line_with_the_place(self):
        self.expect(b'Wren:\n  launch: {"<base>', "2:")
        self.expect(b"Wren:\n  launch: {", "3:1: ")
        self.expect(b"Wren: a\n\x00\x01\x02", "1:1: unacceptable character")
        self.expect(b"\x7fELF\x02\x01\x01\x00\xff\xfe", "1:1:")
        self.expect(b"Wren: \xff\xfe\n", "1:1:")
        self.expect(b"", "1:1: the file is empty")
        self.expect(b"- Wren\n", "1:1: no mapping of titles")
        self.expect(b"Wren: a\nOwl\n", "3:1: ")

    def test_every_beginning_of_a_manifest_ends_in_lines_or_one_fault(self):
        whole = sample(2)
        for length in range(len(whole)):
            try:
                lines_of(whole[:length])
            except (tool.BadManifest, tool.yaml.YAMLError) as error:
                self.assertTrue(str(error))

    def test_spoilt_manifests_end_in_lines_or_one_fault(self):
        for seed in range(500):
            check_spoilt(seed)

    def test_a_fault_leaves_no_file(self):
        with tempfile.TemporaryDirectory() as folder:
            manifest, output = pathlib.Path(folder, "m.yaml"), pathlib.Path(folder, "out.csv")
            manifest.write_text("Wren: {gog: {id: 7}}\nOwl: [\n", encoding="utf-8")
            done = subprocess.run([TOOL, manifest, "-o", output], capture_output=True, check=False)
            self.assertEqual(done.returncode, 1)
            self.assertEqual([path.name for path in pathlib.Path(folder).iterdir()], ["m.yaml"])

    def test_a_file_of_hundreds_of_megabytes_is_refused_unread(self):
        with tempfile.TemporaryDirectory() as folder:
            manifest = pathlib.Path(folder, "m.yaml")
            for size, refused in ((tool.MOST_BYTES + 1, True), (tool.MOST_BYTES, False)):
                with manifest.open("wb") as file:
                    file.truncate(size)
                if refused:
                    with self.assertRaisesRegex(tool.BadManifest, "more than 256 MB"):
                        tool.open_manifest(manifest)
                else:
                    tool.open_manifest(manifest).close()

    def test_a_missing_file_is_named(self):
        done = subprocess.run([TOOL, "/no/such.yaml"], capture_output=True, check=False)
        self.assertEqual((done.returncode, done.stderr.decode()),
                         (1, "import-ludusavi: /no/such.yaml: No such file or directory\n"))


class WholeManifest(unittest.TestCase):
    def test_every_title_is_taken_or_counted(self):
        code, output, error = run_tool(sample(1000).encode())
        self.assertEqual(code, 0, error)
        lines = list(csv.DictReader(io.StringIO(output, newline="")))
        self.assertEqual(len(lines), 900)
        self.assertEqual(lines[0]["DefaultExe64@STEAM"], "bin\\game.exe")
        self.assertIn("taken: 900 titles, 1200 records (900 of Steam, 300 of GOG)", error)
        self.assertIn("left: 100  alias of another title", error)


if __name__ == "__main__":
    if sys.argv[1:2] == ["--sample"]:
        sys.stdout.reconfigure(encoding="utf-8")
        sys.stdout.write(sample(int(sys.argv[2])))
    elif sys.argv[1:2] == ["--fuzz"]:
        fuzz(int(sys.argv[2]))
    else:
        unittest.main()
