"""The Python binding and its example, on the stand-in library; and their types, where mypy is installed.

usage: python_test.py
"""

import faulthandler
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from unittest import mock

sys.dont_write_bytecode = True

import stand_in  # noqa: E402

BINDING = stand_in.SOURCE / "bindings" / "python"
EXAMPLE = stand_in.SOURCE / "examples" / "python" / "example.py"
sys.path.insert(0, str(BINDING))

import tarnwick as binding  # noqa: E402
from tarnwick import Application, FocusChange, Game, GameDetails, GameRequest, Tarnwick  # noqa: E402

LIBRARIES = None


def setUpModule():
    global LIBRARIES
    folder = tempfile.TemporaryDirectory()
    unittest.addModuleCleanup(folder.cleanup)
    LIBRARIES = stand_in.make(folder.name)


def wait_until(condition):
    end = time.monotonic() + 30
    while not condition():
        if time.monotonic() > end:
            raise AssertionError("waited in vain")
        time.sleep(0.01)


class BindingTest(unittest.TestCase):
    def setUp(self):
        faulthandler.dump_traceback_later(120, exit=True)  # a deadlock tells where it is, and ends
        self.addCleanup(faulthandler.cancel_dump_traceback_later)
        self.tarnwick = Tarnwick(LIBRARIES / stand_in.STAND_IN)
        self.addCleanup(self.tarnwick.close)

    def counts(self):
        return [int(number) for number in re.findall(r"\d+", self.tarnwick.scan("counts")[0].name)]


def game(found):
    return Game(found["name"], found["loc"], found["icon"], found["launchUrl"], found["exeName"])


def application(found):
    return Application(found["name"], found["publisher"], found["version"], found["loc"], found.get("exeName"),
                       found["date"], found["sizeKB"], found["icon"])


class Answers(BindingTest):
    def test_a_scan_gives_the_golden_games(self):
        games = self.tarnwick.scan()
        self.assertEqual(games, [game(found) for found in stand_in.golden("scan")])
        self.assertEqual(games[1].name, 'Der "große" Spaß')
        self.assertEqual(games[2].path, "C:\\ゲーム\\雪の夜\\yuki.exe")
        self.assertEqual(games[3].launch_url, "uplay://launch/4242/0")
        self.assertTrue(games[0].icon.startswith("data:image/png;base64,"))

    def test_details_are_the_golden_ones(self):
        found = stand_in.golden("details")
        self.assertEqual(self.tarnwick.game_details(pathlib.Path("x.exe")),
                         GameDetails(found["name"], found["ico"], found["exepath"], found["exe"]))

    def test_a_file_that_is_not_there_has_no_details(self):
        self.assertIsNone(self.tarnwick.game_details("missing"))

    def test_a_page_of_applications_is_the_golden_one(self):
        found = self.tarnwick.applications()
        self.assertEqual(found, [application(each) for each in stand_in.golden("apps")])
        self.assertIsNone(found[0].exe_name)
        self.assertEqual(found[1].publisher, "Kůň\tLtd.")

    def test_all_applications_are_the_golden_ones(self):
        found = self.tarnwick.all_applications()
        self.assertEqual(found, [application(each) for each in stand_in.golden("apps-all")])
        self.assertEqual(found[2].exe_name, "ookii.exe")
        self.assertEqual(found[2].size_kb, -1073741824)

    def test_found_games_are_the_golden_ones(self):
        expected = [application(each) for each in stand_in.golden("find")]
        self.assertEqual(self.tarnwick.find_games([GameRequest("fernpad.exe", name="Mine")]), expected)
        self.assertEqual(self.tarnwick.find_games_in_file("requests.json"), expected)

    def test_nothing_found_is_an_empty_list(self):
        self.assertEqual(self.tarnwick.applications(page=2), [])
        self.assertEqual(self.tarnwick.all_applications("nothing"), [])
        self.assertEqual(self.tarnwick.find_games([]), [])
        self.assertEqual(self.tarnwick.find_games_in_file("missing"), [])

    def test_a_refresh_counts_the_applications(self):
        self.assertEqual(self.tarnwick.refresh(), 3)

    def test_a_report_is_asked_for(self):
        before = self.counts()[0]
        self.tarnwick.report()
        self.assertEqual(self.counts()[0], before + 1)

    def test_an_answer_larger_than_the_first_buffer_arrives_whole(self):
        self.assertEqual(len(self.tarnwick.scan("large")[0].icon), 5 << 20)


class Arguments(BindingTest):
    TEXT = 'echo: C:\\Größe\\雪 🎮 "x"'

    def test_paths_arrive_as_utf_8(self):
        self.assertEqual(self.tarnwick.scan(self.TEXT)[0].name, self.TEXT)
        self.assertEqual(self.tarnwick.scan(pathlib.Path(self.TEXT))[0].name, self.TEXT)
        self.assertEqual(self.tarnwick.game_details(self.TEXT).name, self.TEXT)
        self.assertEqual(self.tarnwick.find_games_in_file(self.TEXT)[0].name, self.TEXT)

    def test_filters_arrive_as_utf_16_and_numbers_in_their_order(self):
        found = self.tarnwick.applications(page=7, page_size=31, filter=self.TEXT)[0]
        self.assertEqual((found.name, found.version, found.size_kb), (self.TEXT, "7", 31))
        self.assertEqual(self.tarnwick.all_applications(self.TEXT)[0].name, self.TEXT)
        self.assertEqual(binding._utf16("ab"), b"a\0b\0\0")  # ctypes adds the other half of the zero

    def test_requests_arrive_without_escapes(self):
        requests = [GameRequest("größe.exe", name="echo: 雪", exe_path="bin\\x64"), GameRequest("b.exe")]
        self.assertEqual(self.tarnwick.find_games(requests)[0].name,
                         '[{"name":"echo: 雪","exeName":"größe.exe","exePath":"bin\\x64"},{"exeName":"b.exe"}]')

    def test_a_library_in_a_folder_beyond_ascii_is_loaded(self):
        folder = LIBRARIES / "Größe 雪 🎮"
        folder.mkdir()
        shutil.copy(LIBRARIES / stand_in.STAND_IN, folder / "library.so")
        with Tarnwick(folder / "library.so") as loaded:
            self.assertEqual(loaded.refresh(), 3)

    def test_what_the_library_can_not_take_is_refused(self):
        for call in (lambda: self.tarnwick.scan("a\0b"), lambda: self.tarnwick.scan("half \ud83c"),
                     lambda: self.tarnwick.applications(filter="a\0b"), lambda: self.tarnwick.applications(page=2**31),
                     lambda: self.tarnwick.find_games([GameRequest('a"b.exe')]),
                     lambda: self.tarnwick.find_games([GameRequest("a.exe", name="{")]),
                     lambda: self.tarnwick.find_games([GameRequest("", name="x")]),
                     lambda: self.tarnwick.watch_focus(print, 2**31)):
            self.assertRaises(binding.ArgumentError, call)
        self.assertTrue(issubclass(binding.ArgumentError, ValueError))


class BadInput(BindingTest):
    def assert_load_fails(self, error, text, name):
        with self.assertRaisesRegex(error, text):
            Tarnwick(LIBRARIES / name)

    def test_a_missing_library_is_told_with_its_path(self):
        self.assert_load_fails(binding.LibraryMissingError, "There is no library .*/nowhere.so: put Tarnwick.dll", "nowhere.so")
        with self.assertRaisesRegex(binding.LibraryMissingError, re.escape(str(BINDING / "Tarnwick.dll"))):
            Tarnwick()

    def test_a_relative_path_is_refused(self):
        for path in ("Tarnwick.dll", "bin/Tarnwick.dll"):
            with self.assertRaisesRegex(binding.ArgumentError, "no absolute path"):
                Tarnwick(path)

    def test_another_word_size_is_told(self):
        for name in ("32-bit.so", "32-bit.dll"):
            self.assert_load_fails(binding.LibraryUnusableError, "made for 32-bit processes, and this Python is a 64-bit one", name)

    def test_a_file_that_is_no_library_is_told(self):
        self.assert_load_fails(binding.LibraryUnusableError, "text.so is no library", "text.so")

    def test_a_library_that_the_system_refuses_is_told(self):
        whole = (LIBRARIES / stand_in.STAND_IN).read_bytes()
        (LIBRARIES / "broken.so").write_bytes(whole[:64] + bytes(1024))
        self.assert_load_fails(binding.LibraryUnusableError, "broken.so can't be loaded", "broken.so")

    def test_a_missing_export_is_named_and_the_library_unloaded(self):
        with mock.patch.object(binding, "_unload", wraps=binding._unload) as unload:
            self.assert_load_fails(binding.ExportMissingError, "has no function IA_RefreshCache: take", stand_in.MISSING_EXPORT)
        unload.assert_called_once()

    def test_an_answer_that_stays_cut_is_given_up_after_four_attempts(self):
        before = self.counts()[1]
        with self.assertRaisesRegex(binding.AnswerCutError, "IA_RunMultiPlatformGameScanJson is still cut"):
            self.tarnwick.scan("cut")
        self.assertEqual(self.counts()[1], before + 4)

    def test_invalid_json_is_told_with_its_place(self):
        with self.assertRaisesRegex(binding.AnswerInvalidError, "no JSON at character 10"):
            self.tarnwick.scan("invalid")

    def test_bytes_that_are_no_utf_8_are_told(self):
        with self.assertRaisesRegex(binding.AnswerInvalidError, "not UTF-8 at byte 11"):
            self.tarnwick.scan("not-utf8")

    def test_json_of_another_shape_is_told(self):
        answers = {b"{}": "not a list", b"[1]": "holds int where a game", b'[{"loc":""}]': 'lacks "name" of a game',
                   b'[{"name":1}]': 'lacks "name" of a game, or it is no str', b"[" * 100000: "nested too deep"}
        for answer, text in answers.items():
            with mock.patch.object(self.tarnwick, "_whole_answer", return_value=answer):
                with self.assertRaisesRegex(binding.AnswerInvalidError, text):
                    self.tarnwick.scan()

    def test_a_call_after_close_is_told(self):
        self.tarnwick.close()
        self.tarnwick.close()
        for call in (self.tarnwick.scan, self.tarnwick.refresh, self.tarnwick.report, self.tarnwick.applications,
                     lambda: self.tarnwick.watch_focus(print)):
            with self.assertRaisesRegex(binding.ClosedError, "after close"):
                call()

    def test_every_error_is_a_tarnwick_error(self):
        names = [name for name in binding.__all__ if name.endswith("Error")]
        self.assertEqual(len(names), 9)
        for name in names:
            self.assertTrue(issubclass(getattr(binding, name), binding.TarnwickError), name)


class Closing(BindingTest):
    def is_mapped(self):
        return stand_in.STAND_IN in pathlib.Path("/proc/self/maps").read_text()

    def test_the_end_of_a_with_block_unloads_the_library(self):
        self.tarnwick.close()
        with Tarnwick(LIBRARIES / stand_in.STAND_IN):
            self.assertTrue(self.is_mapped())
        self.assertFalse(self.is_mapped())

    def test_close_waits_for_the_calls_that_run(self):
        running, may_end = threading.Event(), threading.Event()

        def slow_call():
            running.set()
            may_end.wait()
            return 3

        with mock.patch.dict(self.tarnwick._functions, IA_RefreshCache=slow_call):
            call = threading.Thread(target=self.tarnwick.refresh)
            call.start()
            running.wait()
            close = threading.Thread(target=self.tarnwick.close)
            close.start()
            wait_until(lambda: self.tarnwick._closed)
            self.assertTrue(self.is_mapped())
            self.assertTrue(close.is_alive())
            may_end.set()
            close.join()
            call.join()
        self.assertFalse(self.is_mapped())


class Focus(BindingTest):
    def setUp(self):
        super().setUp()
        self.heard = []

    def watch(self, handler=None):
        return self.tarnwick.watch_focus(handler or self.heard.append, interval_ms=50)

    def test_changes_arrive_in_order_and_with_their_texts(self):
        with self.watch():
            wait_until(lambda: len(self.heard) >= 4)
        self.assertEqual(self.heard[:4], [
            FocusChange("game.exe", 4242, "C:\\Games\\game.exe"), FocusChange("", 4243, ""),
            FocusChange("spät 🎮.exe", 4244, "C:\\ゲーム\\spät 🎮.exe"), FocusChange("game.exe", 4245, "C:\\Games\\game.exe")])

    def test_nothing_arrives_after_a_stop_and_a_second_stop_does_nothing(self):
        watch = self.watch()
        wait_until(lambda: self.heard)
        watch.stop()
        count = len(self.heard)
        watch.stop()
        time.sleep(0.2)
        self.assertEqual(len(self.heard), count)

    def test_a_stop_beside_a_handler_that_wants_the_interpreter_ends(self):
        in_handler = []

        def handler(change):
            in_handler.append(change)
            time.sleep(0.2)  # the main thread is in stop() by then
            self.heard.append(change)

        watch = self.watch(handler)
        while not in_handler:  # never lets go of the interpreter by itself
            pass
        watch.stop()
        self.assertEqual(self.heard, in_handler)

    def test_calls_work_from_within_the_handler(self):
        with self.watch(lambda _: self.heard.append(self.tarnwick.refresh())):
            wait_until(lambda: self.heard)
        self.assertEqual(self.heard[0], 3)

    def test_a_stop_from_within_the_handler_gives_the_order(self):
        started = threading.Event()

        def handler(change):
            started.wait()
            self.heard.append(change)
            watch.stop()

        watch = self.watch(handler)
        started.set()
        wait_until(lambda: self.heard)
        watch.stop()
        self.assertEqual(len(self.heard), 1)
        with self.watch():
            wait_until(lambda: len(self.heard) > 1)

    def is_stopping(self):
        free = binding.FocusWatch._lock.acquire(blocking=False)
        if free:
            binding.FocusWatch._lock.release()
        return not free

    def stop_beside(self, action):
        """Stops a watch while its handler waits for that, and then does the action."""
        in_handler, started = threading.Event(), threading.Event()

        def handler(_):
            in_handler.set()
            started.wait()
            wait_until(self.is_stopping)
            action(watch)

        watch = self.watch(handler)
        started.set()
        in_handler.wait()
        watch.stop()
        self.assertIsNone(binding.FocusWatch._running)

    def test_two_stops_at_once_one_of_them_in_the_handler_both_end(self):
        self.stop_beside(lambda watch: (watch.stop(), self.heard.append(1)))
        self.assertEqual(self.heard, [1])

    def test_a_watch_that_is_started_in_the_handler_during_a_stop_is_refused(self):
        def start(_):
            with self.assertRaisesRegex(binding.WatchError, "being started or stopped: start another one"):
                self.watch()
            self.heard.append(1)

        self.stop_beside(start)
        self.assertEqual(self.heard, [1])

    def test_a_second_watch_is_refused_until_the_first_has_stopped(self):
        with self.watch():
            with self.assertRaisesRegex(binding.WatchError, "is running in this process: stop it"):
                self.watch()
        self.watch().stop()

    def test_a_watch_or_a_close_from_within_the_handler_is_refused(self):
        def handler(_):
            for call in (self.watch, self.tarnwick.close):
                try:
                    call()
                except binding.WatchError as error:
                    self.heard.append(error)

        with self.watch(handler):
            wait_until(lambda: len(self.heard) >= 2)
        self.assertEqual(len(self.tarnwick.scan()), 4)

    def test_an_exception_in_the_handler_is_told_and_the_watch_goes_on(self):
        def handler(change):
            self.heard.append(change)
            raise ZeroDivisionError

        told = []
        with mock.patch.object(sys, "unraisablehook", lambda unraisable: told.append(unraisable.exc_type)):
            with self.watch(handler):
                wait_until(lambda: len(self.heard) >= 2)
        self.assertIn(ZeroDivisionError, told)

    def test_close_stops_the_watch(self):
        self.watch()
        wait_until(lambda: self.heard)
        self.tarnwick.close()
        self.assertIsNone(binding.FocusWatch._running)

    def test_a_watch_that_nobody_holds_goes_on(self):
        import gc

        self.watch()
        gc.collect()
        wait_until(lambda: len(self.heard) >= 3)

    def test_python_ends_with_a_watch_running(self):
        program = ("import atexit, sys, time, tarnwick\n"
                   "atexit.register(lambda: print(tarnwick.FocusWatch._running))\n"
                   "tarnwick.Tarnwick(sys.argv[1]).watch_focus(lambda change: print(change.process_id, flush=True), 50)\n"
                   "time.sleep(1)\n")
        result = subprocess.run([sys.executable, "-c", program, LIBRARIES / stand_in.STAND_IN], cwd=BINDING, timeout=60,
                                capture_output=True, text=True, check=False)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(result.stdout.splitlines()[0], "4242")
        self.assertEqual(result.stdout.splitlines()[-1], "None")


class Example(unittest.TestCase):
    def run_example(self, *arguments, library=None):
        library = library or LIBRARIES / stand_in.STAND_IN
        return subprocess.run([sys.executable, EXAMPLE, library, *arguments], timeout=60, capture_output=True,
                              encoding="utf-8", check=False, env={"PYTHONIOENCODING": "utf-8"})

    def lines(self, *arguments):
        result = self.run_example(*arguments)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        return result.stdout.splitlines()

    def test_scan_lists_the_games(self):
        lines = self.lines("scan")
        self.assertEqual(lines[1], 'Der "große" Spaß: D:\\Spiele\\Größe\\spaß.exe')
        self.assertEqual(lines[3], "Only a link: uplay://launch/4242/0")
        self.assertEqual(len(lines), 4)

    def test_list_lists_the_applications(self):
        self.assertEqual(self.lines("list")[0], "Fernpad 2, Fern & Söhne: C:\\Program Files\\Fernpad\\fernpad.exe")
        self.assertEqual(self.lines("list", "nothing"), [])

    def test_watch_tells_the_foreground(self):
        self.assertEqual(self.lines("watch", "1.5")[0], "4242 game.exe C:\\Games\\game.exe")

    def test_an_error_is_one_line(self):
        result = self.run_example("scan", library="/nowhere/Tarnwick.dll")
        self.assertEqual(result.returncode, 1)
        self.assertTrue(result.stderr.startswith("There is no library /nowhere/Tarnwick.dll"), result.stderr)
        self.assertEqual(len(result.stderr.splitlines()), 1)


class Package(unittest.TestCase):
    def test_the_version_is_the_projects(self):
        self.assertEqual(binding.__version__, stand_in.version())
        self.assertIn(f'\nversion = "{stand_in.version()}"\n', (BINDING / "pyproject.toml").read_text(encoding="utf-8"))

    def test_everything_public_is_documented(self):
        for name in binding.__all__:
            self.assertTrue(getattr(binding, name).__doc__, name)
        for owner in (Tarnwick, binding.FocusWatch):
            for name, member in vars(owner).items():
                if callable(member) and not name.startswith("_"):
                    self.assertTrue(member.__doc__, name)

    @unittest.skipUnless(shutil.which("mypy"), "mypy is not installed")
    def test_types_hold_on_both_systems(self):
        for platform in ("win32", "linux"):
            result = subprocess.run(["mypy", "--strict", "--platform", platform, "--cache-dir", LIBRARIES / "mypy",
                                     BINDING / "tarnwick.py", EXAMPLE], capture_output=True, text=True, check=False)
            self.assertEqual(result.returncode, 0, result.stdout)


if __name__ == "__main__":
    unittest.main()
