"""tarnwick.exe as a person sees it: on a pseudo-terminal whose screen is read, and with outputs that fail.

usage: terminal_test.py TARNWICK.EXE DESKTOP.EXE

It builds the sample desktop and registry entries of its own, so it wants a Wine prefix that may be spoilt.
"""

import fcntl
import json
import os
import pathlib
import pty
import re
import select
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unittest

import pyte
from wcwidth import wcswidth

TARNWICK = DESKTOP = FOLDER = None
ROOT = pathlib.Path(__file__).resolve().parents[2]
CATALOGUE = r"C:\TarnwickDemo\MasterGameList.xml"
PATIENCE = 60
ROWS = 100

LONG_NAME = "Endless " * 30 + "End"
HOSTILE_NAME = "Hostile \x1b[31mred\x9b2J\u202egnirts\u2066 end"
UNINSTALL = r"HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall"
APPLICATIONS = {
    "TarnwickTerminalLong": (LONG_NAME, "Makers of what is long", "long.exe"),
    "TarnwickTerminalMarks": ("Ve\u0301rite\u0301 de\u0301cousue", "E\u0301tienne", "ve\u0301rite\u0301.exe"),
    "TarnwickTerminalWide": ("\u9752\u74f7\u8c1c\u57ce", "\u9752\u74f7\u5de5\u574a", "\u8c1c\u57ce.exe"),
    "TarnwickTerminalHostile": (HOSTILE_NAME, "Nobody", "hostile.exe"),
}


def own_desktop():
    """A description for the desktop builder."""
    folder = "C:\\TarnwickTerminal\\A folder with a name of some length\\"
    return {
        "registry": [
            {
                "key": UNINSTALL + "\\" + key,
                "view": "64",
                "values": {
                    "DisplayName": name,
                    "Publisher": publisher,
                    "DisplayVersion": "1.2.3",
                    "DisplayIcon": folder + program,
                    "InstallLocation": folder.rstrip("\\"),
                },
            }
            for key, (name, publisher, program) in APPLICATIONS.items()
        ],
        "executables": [{"path": folder + program} for _, _, program in APPLICATIONS.values()],
    }


def set_size(descriptor, columns, rows):
    fcntl.ioctl(descriptor, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))


class Terminal:
    """A program on a pseudo-terminal, and the screen that its output makes."""

    def __init__(self, arguments, columns, rows=ROWS, **streams):
        self.output = b""
        self.screen = pyte.Screen(columns, rows)
        self.stream = pyte.ByteStream(self.screen)
        self.master, slave = pty.openpty()
        set_size(slave, columns, rows)
        self.process = subprocess.Popen(
            ["wine", TARNWICK, *arguments],
            stdin=slave,
            stdout=streams.get("stdout", slave),
            stderr=streams.get("stderr", slave),
            start_new_session=True,
            preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY, 0),
        )
        os.close(slave)

    def read(self, seconds):
        """Takes what comes within `seconds`; False when the terminal's other end has gone."""
        if not select.select([self.master], [], [], seconds)[0]:
            return True
        try:
            data = os.read(self.master, 65536)
        except OSError:
            return False
        self.output += data
        self.stream.feed(data)
        return bool(data)

    def wait(self):
        end = time.monotonic() + PATIENCE
        while self.read(0.1):
            if time.monotonic() > end:
                self.process.kill()
                raise AssertionError("the program did not end")
        self.code = self.process.wait(PATIENCE)
        os.close(self.master)
        return self

    @property
    def lines(self):
        return [line.rstrip() for line in self.screen.display if line.strip()]


def on_terminal(*arguments, columns=80, **more):
    return Terminal(arguments, columns, **more).wait()


def run(*arguments, **streams):
    streams = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **streams}
    return subprocess.run(["wine", TARNWICK, *arguments], stdin=subprocess.DEVNULL, timeout=PATIENCE, **streams)


def text(data):
    return data.decode("utf-8")


def cell(character):
    """How pyte shows a character of two columns: itself and an empty cell, which the display leaves out."""
    return max(wcswidth(character), 0)


def column_of(line, word):
    """The column at which `word` begins."""
    return sum(cell(character) for character in line[: line.index(word)])


def table_of(lines):
    """The rows below the rule and the line of counts behind them, and where the columns start. Notes stand below that."""
    rule = next(i for i, line in enumerate(lines) if set(line) == {"\u2500", " "})
    counts = next(i for i, line in enumerate(lines) if re.match(r"\d+ (games|applications)\b|\d+ of \d+ app", line))
    return lines[rule + 1 : counts + 1], [match.start() for match in re.finditer("\u2500+", lines[rule])]


def windows(path):
    """The path as Wine's programs have it: this machine's root is their drive Z."""
    return "Z:" + str(path).replace("/", "\\")


def desktop(*arguments):
    subprocess.run(["wine", DESKTOP, *arguments], check=True, stdout=subprocess.DEVNULL, timeout=PATIENCE)


def keep_wine_running():
    """Wine's desktop process inherits the pipes of the program that makes it necessary, and keeps them open until the
    last program has ended: better that of a program without pipes. Its window gives the watch something to see.
    """
    keeper = subprocess.Popen(["wine", "notepad"], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, start_new_session=True)
    unittest.addModuleCleanup(keeper.wait)
    unittest.addModuleCleanup(keeper.kill)


def setUpModule():
    """Makes the desktops."""
    global FOLDER
    keep_wine_running()
    FOLDER = pathlib.Path(tempfile.mkdtemp(prefix="tarnwick-terminal-"))
    unittest.addModuleCleanup(shutil.rmtree, FOLDER)
    own = FOLDER / "own.json"
    own.write_text(json.dumps(own_desktop()), encoding="utf-8")
    for description in (ROOT / "desktop/samples/sample-desktop.json", own):
        state = windows(FOLDER / (description.stem + ".state"))
        desktop("build", windows(description), "--state", state)
        unittest.addModuleCleanup(desktop, "remove", "--state", state)


class World(unittest.TestCase):
    def path(self, name):
        return str(FOLDER / name)


class Screen(World):
    def assert_fits(self, lines, columns):
        for line in lines:
            self.assertLessEqual(wcswidth(line), columns - 1, line)

    def assert_aligned(self, rows, starts):
        """Every cell begins at its column, with a blank before it."""
        for row in rows:
            cells = "".join(character + "\0" * (cell(character) - 1) for character in row if cell(character))
            for start in starts[1:]:
                self.assertEqual(cells[start - 2 : start], "  ", row)
                self.assertNotIn(cells[start], " \0", row)

    def games(self):
        return json.loads(run("scan", CATALOGUE, "--format", "json").stdout)

    def test_a_scan_at_80_columns_has_one_row_for_each_game(self):
        terminal = on_terminal("scan", CATALOGUE)
        self.assertEqual(terminal.code, 0)
        lines = terminal.lines
        self.assertTrue(lines[0].startswith("NAME  "), lines[0])
        self.assertTrue(terminal.screen.display[0].startswith("NAME  "), "something stands above the table")
        self.assert_fits(lines, 80)
        rows, starts = table_of(lines)
        games = self.games()
        self.assertGreater(len(games), 12)
        self.assertEqual(rows.pop(), f"{len(games)} games (27 in the catalogue).")
        self.assertEqual(len(rows), len(games))
        self.assert_aligned(rows, starts)
        for row, game in zip(rows, games):
            beginning, end = row[-24:].split()[-1].split("\u2026") if "\u2026" in row[-24:] else ("", "")
            self.assertTrue(row.startswith(game["name"]), row)
            self.assertTrue(game["loc"].endswith(end) and row.endswith("\\" + game["exeName"]), row)

    def test_paths_keep_their_beginning_and_their_file_name(self):
        lines = on_terminal("scan", CATALOGUE).lines
        row = next(line for line in lines if line.startswith("Mosaic Meadow"))
        self.assertRegex(row, r"  C:\\Program F[^\\]*\u2026\\mosaic\.exe$")

    def test_a_scan_at_40_columns_wraps_no_row(self):
        rows, starts = table_of(on_terminal("scan", CATALOGUE, columns=40).lines)
        self.assert_fits(rows, 40)
        self.assertEqual(len(rows) - 1, len(self.games()))
        self.assertEqual(len(starts), 4)
        self.assert_aligned(rows[:-1], starts)

    def test_a_scan_at_200_columns_shows_every_text_whole(self):
        lines = on_terminal("scan", CATALOGUE, columns=200).lines
        self.assertNotIn("\u2026", "".join(lines))
        rows, starts = table_of(lines)
        self.assert_aligned(rows[:-1], starts)
        for row, game in zip(rows, self.games()):
            self.assertTrue(row.startswith(game["name"]) and row.endswith("  " + game["loc"]), row)

    def test_a_pipe_gets_every_text_whole_whatever_the_terminal(self):
        lines = text(run("scan", CATALOGUE).stdout).splitlines()
        self.assertIn(r"C:\Program Files\WindowsApps\Tessera.MosaicMeadow_1.2.0.0_x64__tarnwickdemo\mosaic.exe",
                      "\n".join(lines))

    def test_a_file_gets_every_text_whole_though_a_terminal_is_there(self):
        out = self.path("games.txt")
        terminal = on_terminal("scan", CATALOGUE, "-o", out, columns=40)
        self.assertEqual(terminal.lines, [])
        self.assertNotIn("\u2026", pathlib.Path(out).read_text(encoding="utf-8"))

    def test_names_that_are_not_ascii_are_shown_as_they_are(self):
        screen = "\n".join(on_terminal("scan", CATALOGUE).lines)
        for name in ("Хроники Вьюгограда", "青瓷谜城", "Château Brumaire"):
            self.assertIn(name, screen)
        self.assertNotIn("\ufffd", screen)

    def test_short_outputs_and_errors_are_shown_right_too(self):
        lines = on_terminal("details", r"C:\Игры\Вьюгоград\вьюгоград.exe", columns=200).lines
        self.assertIn("вьюгоград.exe", "\n".join(lines))
        lines = on_terminal("find", r"C:\нет\游戏.json").lines
        self.assertIn(r"C:\нет\游戏.json", "\n".join(lines))

    def test_the_log_on_a_terminal_has_stamped_lines_and_its_letters(self):
        terminal = on_terminal("scan", CATALOGUE, "--log", "-o", self.path("log.txt"), columns=200, rows=500)
        screen = "\n".join(terminal.lines)
        self.assertIn("[Found] Хроники Вьюгограда -> ", screen)
        self.assertNotIn("\ufffd", screen)
        for line in terminal.lines:
            self.assertRegex(line, Log.LINE)
        self.assertRegex(terminal.lines[-1], "] Successfully finished IA_RunMultiPlatformGameScanJson$")

    def test_a_long_text_loses_no_letter_where_it_is_written_in_pieces(self):
        for shift in ("", "a"):
            terminal = on_terminal("find", shift + "Ж" * 5000)
            screen = "".join(terminal.screen.display)
            self.assertEqual(screen.count("Ж"), 5000)
            self.assertNotIn("\ufffd", screen)

    def test_every_picture_of_the_progress_is_one_line(self):
        terminal = Terminal(["scan", CATALOGUE, "-o", self.path("progress.txt")], 30)
        seen = set()
        while terminal.read(0.1):
            lines = terminal.lines
            seen.update(lines)
            self.assertLessEqual(len(lines), 1)
            self.assert_fits(lines, 30)
        terminal.wait()
        self.assertTrue(any(line.startswith("Level ") for line in seen), seen)
        self.assertTrue(all(re.match(r"(L(e(v(e(l.*)?)?)?)?)$", line) for line in seen), seen)
        self.assertEqual(terminal.lines, [])

    def test_the_progress_leaves_nothing_behind_an_error_either(self):
        terminal = on_terminal("scan", CATALOGUE, "-o", r"C:\no such folder\x.txt")
        self.assertEqual(terminal.code, 1)
        self.assertEqual(len(terminal.lines), 1)
        self.assertTrue(terminal.screen.display[0].startswith(r"tarnwick: can't write C:\no such folder\x.txt"))

    def test_the_program_sends_no_escape_sequence_of_its_own(self):
        terminal = on_terminal("scan", CATALOGUE)
        self.assertNotIn("[K", "\n".join(terminal.lines))

    def test_no_progress_goes_into_a_pipe(self):
        self.assertEqual(run("scan", CATALOGUE).stderr, b"")

    def test_one_long_name_costs_no_other_row_its_path(self):
        lines = on_terminal("apps", "--all", columns=80).lines
        self.assert_fits(lines, 80)
        rows, starts = table_of(lines)
        self.assertTrue(any(row.startswith("Endless Endless") and "\u2026" in row for row in rows))
        rows = [row for row in rows if "\\" in row]
        self.assertGreaterEqual(len(rows), len(APPLICATIONS))
        self.assert_aligned(rows, starts)
        self.assertTrue(all(re.search(r"  C:\\[^\u2026]*\u2026[^\u2026]+\.exe$", row) for row in rows), rows)

    def test_marks_and_wide_letters_wrap_no_row(self):
        for columns in (80, 60, 40):
            rows, starts = table_of(on_terminal("apps", "--all", columns=columns).lines)
            rows = [row for row in rows if "\\" in row]
            # A row that wraps would be two lines, one of them without its first column.
            self.assert_fits(rows, columns)
            self.assert_aligned(rows, starts)
            self.assertTrue(any("\u9752\u74f7" in row for row in rows))

    def test_no_text_of_the_registry_reaches_the_terminal_as_a_sequence(self):
        for arguments in (("apps", "--all"), ("apps", "--all", "--log")):
            terminal = on_terminal(*arguments, columns=200)
            screen = "\n".join(terminal.lines)
            self.assertIn("Hostile  [31mred 2J gnirts  end", screen)
            for sequence in (b"\x1b[31m", b"\xc2\x9b", b"\x9b2J", "\u202e".encode(), "\u2066".encode()):
                self.assertNotIn(sequence, terminal.output)

    def test_an_explanation_at_80_columns_has_one_verdict_for_each_strategy_and_wraps_no_line(self):
        terminal = on_terminal("explain", "far beacon", CATALOGUE)
        self.assertEqual(terminal.code, 1)
        lines = terminal.lines
        self.assert_fits(lines, 80)
        self.assertEqual(lines[:2], ["Far Beacon", "  Not found."])
        verdicts = [line for line in lines if re.match(r"  [0-6]  \S", line)]
        self.assertEqual(len(verdicts), 23)
        for line in verdicts:
            self.assertRegex(line[33:], r"^(found|not tried|missed|failed) +\S")
        self.assertIn("  6  GameUX Registry Search      not tried  the record has no GameGUID", verdicts)
        self.assertIn("  5  Default Exe Search          missed     C:\\Games\\Far Beacon\\beacon.exe", verdicts)

    def test_watch_shows_aligned_columns_that_fit(self):
        for columns in (80, 40):
            terminal = on_terminal("watch", "--for", "1500", "--interval", "50", columns=columns)
            self.assertEqual(terminal.code, 0)
            self.assertGreaterEqual(len(terminal.lines), 1, "nothing is in the foreground: is there a display?")
            self.assert_fits(terminal.lines, columns)
            self.assertRegex(terminal.lines[0], r"^ *\d+  \S.*  C:\\.*\S$")


class Arguments(World):
    def test_a_format_is_taken_in_any_letter_case_by_every_command(self):
        request = pathlib.Path(self.path("request.json"))
        request.write_text('[{"name":"Mine","exeName":"fernpad.exe","exePath":""}]', encoding="utf-8")
        for command in (("scan", CATALOGUE), ("apps",), ("find", str(request)),
                        ("details", r"C:\Games\Lantern Harbour\lantern.exe"), ("watch", "--for", "500")):
            result = run(*command, "--format", "JSON")
            self.assertEqual((result.returncode, result.stderr), (0, b""), command)
            for line in text(result.stdout).splitlines():
                json.loads(line)

    def test_a_misspelt_command_is_one_clear_line_and_a_hint(self):
        result = run("scna")
        self.assertEqual((result.returncode, result.stdout), (2, b""))
        self.assertEqual(text(result.stderr), "tarnwick: unknown command 'scna'; did you mean 'scan'?\n"
                                              "Run with --help for more information.\n")

    def test_a_path_that_begins_with_a_slash_is_a_path(self):
        result = run("details", "/no/such/game.exe")
        self.assertEqual(result.returncode, 1)
        self.assertIn("/no/such/game.exe", text(result.stderr))


class Losses(World):
    """Outputs that can't be written."""

    COMMANDS = (("--help",), ("scan", "--help"), ("--version",), ("scan", CATALOGUE),
                ("scan", CATALOGUE, "--format", "html"), ("apps", "--format", "json"),
                ("details", r"C:\Games\Lantern Harbour\lantern.exe"), ("watch", "--for", "60000"),
                ("watch", "--for", "60000", "--format", "json"))

    def assert_told(self, result, *arguments):
        errors = text(result.stderr)
        self.assertEqual(result.returncode, 1, (arguments, errors))
        self.assertRegex(errors, r"\Atarnwick: can't write to the standard output: [^\n]+\n\Z", arguments)

    def test_a_full_disk_is_an_error_of_every_command(self):
        for arguments in self.COMMANDS:
            with open("/dev/full", "wb") as full:
                self.assert_told(run(*arguments, stdout=full), *arguments)

    def test_so_is_a_pipe_whose_reader_has_gone(self):
        for arguments in self.COMMANDS:
            reader, writer = os.pipe()
            os.close(reader)
            try:
                self.assert_told(run(*arguments, stdout=writer), *arguments)
            finally:
                os.close(writer)

    def test_a_find_can_lose_its_output_as_well(self):
        request = pathlib.Path(self.path("lost.json"))
        request.write_text('[{"name":"Mine","exeName":"fernpad.exe","exePath":""}]', encoding="utf-8")
        with open("/dev/full", "wb") as full:
            self.assert_told(run("find", str(request), "--format", "json", stdout=full))

    def test_a_file_on_a_full_device_is_named(self):
        result = run("scan", CATALOGUE, "--format", "json", "-o", "/dev/full")
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertRegex(text(result.stderr), r"\Atarnwick: can't write /dev/full: [^\n]+\n\Z")

    def test_a_log_without_a_reader_does_not_end_the_work(self):
        reader, writer = os.pipe()
        os.close(reader)
        try:
            result = run("scan", CATALOGUE, "--log", "--format", "json", stderr=writer)
        finally:
            os.close(writer)
        self.assertEqual(result.returncode, 0)
        self.assertGreater(len(json.loads(result.stdout)), 12)

    def test_a_log_file_that_fills_its_disk_is_told_once_and_costs_no_result(self):
        result = run("scan", CATALOGUE, "--log-file", "/dev/full", "--format", "json")
        self.assertEqual(result.returncode, 0)
        self.assertGreater(len(json.loads(result.stdout)), 12)
        self.assertRegex(text(result.stderr),
                         r"\Atarnwick: the log is incomplete: can't write /dev/full: [^\n]+\n\Z")


class Log(World):
    LINE = r"\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\] .*\S"

    def test_the_log_file_has_whole_stamped_lines(self):
        path = pathlib.Path(self.path("журнал.log"))
        result = run("scan", CATALOGUE, "--log-file", str(path), "--format", "json")
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        lines = text(path.read_bytes()).split("\n")
        self.assertEqual(lines.pop(), "")
        self.assertGreater(len(lines), 100)
        for line in lines:
            self.assertRegex(line, "^" + self.LINE + "$")
            self.assertEqual(len(re.findall(r"\[\d{4}-\d\d-\d\d \d\d:\d\d", line)), 1, line)
        self.assertTrue(any("Вьюгоград" in line for line in lines))

    def test_both_logs_have_the_same_lines(self):
        path = pathlib.Path(self.path("both.log"))
        result = run("apps", "--log", "--log-file", str(path), "--format", "json")
        self.assertEqual(result.stderr, path.read_bytes())
        self.assertGreater(len(result.stderr), 0)

    def test_watch_flushes_each_line_of_json(self):
        process = subprocess.Popen(["wine", TARNWICK, "watch", "--interval", "50", "--format", "json"],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, start_new_session=True)
        try:
            self.assertTrue(select.select([process.stdout], [], [], PATIENCE)[0], "no line came")
            self.assertIsNone(process.poll())
            self.assertEqual(set(json.loads(process.stdout.readline())), {"exe", "pid", "path"})
        finally:
            process.send_signal(signal.SIGKILL)
            process.wait()
            process.stdout.close()


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    TARNWICK, DESKTOP = (str(pathlib.Path(path).resolve()) for path in sys.argv[1:3])
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=2)
