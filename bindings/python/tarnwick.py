"""Tarnwick for Python: which games and applications are installed on this Windows desktop, and which process holds the
foreground.

    from tarnwick import Tarnwick

    with Tarnwick(r"C:\\Program Files\\Example\\Tarnwick.dll") as tarnwick:
        for game in tarnwick.scan():
            print(game.name, game.path)

Everything goes through Tarnwick.dll, by ctypes; include/tarnwick/tarnwick.h tells what each call does and what it locks.
The calls block for as long as the library takes, seconds or minutes for a scan, and let other Python threads run
meanwhile. Every error is a TarnwickError.
"""

from __future__ import annotations

import atexit
import ctypes
import json
import os
import struct
import sys
import threading
from dataclasses import dataclass
from types import TracebackType
from typing import Any, Callable, Dict, Iterable, List, Optional, Tuple, Type, TypeVar, Union

import _ctypes

__version__ = "0.1.0"
__all__ = [
    "Tarnwick", "FocusWatch", "Game", "GameDetails", "Application", "GameRequest", "FocusChange", "TarnwickError",
    "LibraryMissingError", "LibraryUnusableError", "ExportMissingError", "AnswerCutError", "AnswerInvalidError",
    "ClosedError", "WatchError", "ArgumentError",
]

AnyPath = Union[str, "os.PathLike[str]"]


# ------ Errors ------


class TarnwickError(Exception):
    """Anything that went wrong between Python and Tarnwick.dll. Its text says what to do about it."""


class LibraryMissingError(TarnwickError):
    """There is no file where the library was looked for."""


class LibraryUnusableError(TarnwickError):
    """The file is no library, is made for processes of another word size, or lacks something it needs."""


class ExportMissingError(TarnwickError):
    """The library lacks a function: it is another library, or another version of Tarnwick."""


class AnswerCutError(TarnwickError):
    """The answer did not fit although the buffer was grown to the length that was asked for, several times."""


class AnswerInvalidError(TarnwickError):
    """The answer is not UTF-8, not JSON, or JSON of another shape."""


class ClosedError(TarnwickError):
    """A call after close()."""


class WatchError(TarnwickError):
    """A second focus watch in this process, or a close() from within the watch's handler."""


class ArgumentError(TarnwickError, ValueError):
    """An argument that can't be handed to the library."""


# ------ Results. Texts are empty where the library knows nothing. ------


@dataclass(frozen=True)
class Game:
    """One game of a scan. `icon` is a PNG as a data URI; a game that only launches by URI has no `path`."""

    name: str
    path: str  # "loc"
    icon: str
    launch_url: str  # "launchUrl"
    exe_name: str  # "exeName"


@dataclass(frozen=True)
class GameDetails:
    """What can be shown for one executable. `icon` is a PNG as a data URI."""

    name: str
    icon: str  # "ico"
    path: str  # "exepath"
    exe_name: str  # "exe"


@dataclass(frozen=True)
class Application:
    """One installed application. `exe_name` is None but in the answers of all_applications(); `size_kb` is 0 where the
    size is unknown, and `date` is written as the registry has it."""

    name: str
    publisher: str
    version: str
    path: str  # "loc"
    exe_name: Optional[str]  # "exeName"
    date: str
    size_kb: int  # "sizeKB"
    icon: str


@dataclass(frozen=True)
class GameRequest:
    """A game to look up among the installed applications. The library takes these texts as they stand, so they hold no
    quotes, no braces and no zero characters."""

    exe_name: str  # "exeName"
    name: str = ""
    exe_path: str = ""  # "exePath", a folder below the install folder


@dataclass(frozen=True)
class FocusChange:
    """The new foreground process. Both texts are empty where the process can't be opened, such as an elevated one."""

    file_name: str
    process_id: int
    path: str


FocusHandler = Callable[[FocusChange], object]


# ------ The library ------

_BUFFER_BYTES = 4 << 20
_LARGEST_BUFFER = 2**31 - 1  # the library's sizes are signed numbers of 32 bits
_ATTEMPTS = 4

_FocusCallback = ctypes.CFUNCTYPE(None, ctypes.c_char_p, ctypes.c_uint32, ctypes.c_char_p)
_Text, _Size = ctypes.c_char_p, ctypes.c_int32

# What each export takes and gives. Wide texts are handed over as UTF-16 bytes: c_wchar_p is UTF-16 on Windows alone.
_EXPORTS: Dict[str, Tuple[List[Any], Any]] = {
    "IA_RunMultiPlatformGameScanJson": ([_Text, _Text, _Size], _Size),
    "RunMultiPlatformGameScan": ([], None),
    "IA_GetGameDetailsByPathJson": ([_Text, _Text, _Size], _Size),
    "IA_RefreshCache": ([], _Size),
    "IA_GetAppsJson": ([_Size, _Size, _Text, _Text, _Size], _Size),
    "IA_GetAppsJsonAll": ([_Text, _Text, _Size], _Size),
    "IA_FindGamesJson": ([_Text, _Text, _Size], _Size),
    "IA_FindGamesByFile": ([_Text, _Text, _Size], _Size),
    "SetFocusCallbackEx": ([_FocusCallback], None),
    "StartFocusWatch": ([_Size], None),
    "StopFocusWatch": ([], None),
}


class Tarnwick:
    """Tarnwick.dll, loaded. Every method may be called on any thread, from several at once."""

    def __init__(self, library: Optional[AnyPath] = None) -> None:
        """Loads the library from an absolute path; without one, the Tarnwick.dll beside this file. Nothing else is
        searched, so that nobody can put another library in its place."""
        self.path = _library_path(library)
        self._state = threading.Condition()
        self._calls_in_flight = 0
        self._closed = False
        loaded = _load(self.path)
        self._handle: int = loaded._handle
        try:
            self._functions = {name: _export(loaded, name, self.path) for name in _EXPORTS}
        except TarnwickError:
            _unload(self._handle)
            raise

    def __enter__(self) -> Tarnwick:
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        self.close()

    def close(self) -> None:
        """Stops this library's focus watch, waits for the calls that run, and unloads the library. Calls after it raise
        ClosedError; a second close() does nothing. Not from within the watch's handler."""
        if not FocusWatch._end_calls_of(self):
            return
        with self._state:
            self._state.wait_for(lambda: self._calls_in_flight == 0)
        _unload(self._handle)

    def scan(self, catalogue: Optional[AnyPath] = None) -> List[Game]:
        """Finds the games of a catalogue file and those that the launchers hold. Without a path the library looks for
        its catalogue in the current directory. Takes seconds, or minutes on slow disks, and has no time limit."""
        answer = self._answer("IA_RunMultiPlatformGameScanJson", _optional_utf8(catalogue))
        return [_game(_Members(found, "a game")) for found in _list(answer)]

    def game_details(self, path: AnyPath) -> Optional[GameDetails]:
        """What can be shown for one executable, without a scan; None where there is no such file."""
        answer = self._answer("IA_GetGameDetailsByPathJson", _utf8(os.fspath(path)))
        return None if answer == {} else _details(_Members(answer, "the details"))

    def applications(self, page: int = 1, page_size: int = 20, filter: str = "") -> List[Application]:
        """One page of the installed applications, counted from 1. The filter keeps those whose name or publisher holds
        it, without regard to case. A page behind the last one is empty."""
        numbers = _number("page", page), _number("page_size", page_size)
        return _applications(self._answer("IA_GetAppsJson", *numbers, _utf16(filter)))

    def all_applications(self, filter: str = "") -> List[Application]:
        """All installed applications that the filter keeps, each with its executable's name."""
        return _applications(self._answer("IA_GetAppsJsonAll", _utf16(filter)))

    def find_games(self, requests: Iterable[GameRequest]) -> List[Application]:
        """The first installed application for each request; a request without one gives nothing."""
        return _applications(self._answer("IA_FindGamesJson", _utf8(_request_text(requests))))

    def find_games_in_file(self, path: AnyPath) -> List[Application]:
        """find_games() with the requests of a JSON file. A file that is missing or unreadable finds nothing."""
        return _applications(self._answer("IA_FindGamesByFile", _utf8(os.fspath(path))))

    def refresh(self) -> int:
        """Reads the list of installed applications anew; returns how many there are."""
        return int(self._call("IA_RefreshCache"))

    def report(self) -> None:
        """Writes a readable report of a scan to the debug output. Takes as long as a scan."""
        self._call("RunMultiPlatformGameScan")

    def watch_focus(self, handler: FocusHandler, interval_ms: int = 200) -> FocusWatch:
        """Starts a focus watch; see FocusWatch."""
        return FocusWatch(self, handler, interval_ms)

    def _refuse_calls(self) -> bool:
        """Whether calls were allowed until now."""
        with self._state:
            were_allowed = not self._closed
            self._closed = True
            return were_allowed

    def _call(self, name: str, *arguments: object) -> Any:
        with self._state:
            if self._closed:
                raise ClosedError(f"{name} was called after close(): make a new Tarnwick object.")
            self._calls_in_flight += 1
        try:
            return self._functions[name](*arguments)
        finally:
            with self._state:
                self._calls_in_flight -= 1
                self._state.notify_all()

    def _answer(self, name: str, *arguments: object) -> Any:
        return _json(self._whole_answer(name, *arguments), name)

    def _whole_answer(self, name: str, *arguments: object) -> bytes:
        size = _BUFFER_BYTES
        for _ in range(_ATTEMPTS):
            buffer = ctypes.create_string_buffer(size)
            length = int(self._call(name, *arguments, buffer, size))
            if length < size:
                return ctypes.string_at(buffer, length)
            if length >= _LARGEST_BUFFER:
                break
            size = length + 1
        raise AnswerCutError(
            f"The answer of {name} is still cut in a buffer of {size:,} bytes: it keeps growing, or is too large for the "
            "library. Try again when nothing is being installed.")


def _library_path(library: Optional[AnyPath]) -> str:
    if library is None:
        return os.path.join(os.path.dirname(os.path.abspath(__file__)), "Tarnwick.dll")
    path = os.fspath(library)
    if "\0" in path or not os.path.isabs(path):
        raise ArgumentError(f"{path!r} is no absolute path: name the library by its whole path, such as one made with "
                            "os.path.abspath(), so that no other folder is searched for it.")
    return path


def _load(path: str) -> ctypes.CDLL:
    if not os.path.isfile(path):
        raise LibraryMissingError(f"There is no library {path}: put Tarnwick.dll there, or give the path where it lies.")
    try:
        if sys.platform == "win32":
            # What the library itself needs comes from its own folder and from the system's, never from elsewhere.
            LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR, LOAD_LIBRARY_SEARCH_SYSTEM32 = 0x100, 0x800
            return ctypes.CDLL(path, winmode=LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32)
        return ctypes.CDLL(path)
    except OSError as error:
        raise LibraryUnusableError(_why_unusable(path, error)) from error


def _why_unusable(path: str, error: OSError) -> str:
    ours, theirs = struct.calcsize("P") * 8, _word_size(path)
    if theirs == 0:
        return f"{path} is no library ({error}): take Tarnwick.dll from Tarnwick's package."
    if theirs != ours:
        return (f"{path} is made for {theirs}-bit processes, and this Python is a {ours}-bit one ({error}): run a "
                f"{theirs}-bit Python, or start tarnwick.exe (\"scan --format json\") and read what it prints.")
    return f"{path} can't be loaded ({error}): take Tarnwick.dll from Tarnwick's package, for this system."


def _word_size(path: str) -> int:
    """Bits of the code in a Windows or Linux library, told by its first bytes; 0 for what is none."""
    with open(path, "rb") as file:
        start = file.read(4096)
    if start[:4] == b"\x7fELF":
        return {b"\1": 32, b"\2": 64}.get(start[4:5], 0)
    if start[:2] != b"MZ" or len(start) < 0x40:
        return 0
    header = int.from_bytes(start[0x3C:0x40], "little")
    if start[header:header + 4] != b"PE\0\0":
        return 0
    machine = int.from_bytes(start[header + 4:header + 6], "little")
    return {0x014C: 32, 0x01C4: 32, 0x8664: 64, 0xAA64: 64}.get(machine, 0)


def _export(loaded: ctypes.CDLL, name: str, path: str) -> Any:
    try:
        function = loaded[name]
    except AttributeError as error:
        raise ExportMissingError(f"{path} has no function {name}: take the Tarnwick.dll of version {__version__}, which "
                                 "this module is made for.") from error
    function.argtypes, function.restype = _EXPORTS[name]
    return function


def _unload(handle: int) -> None:
    getattr(_ctypes, "FreeLibrary" if sys.platform == "win32" else "dlclose")(handle)


# ------ Texts to the library ------


def _encoded(text: str, encoding: str) -> bytes:
    if "\0" in text:
        raise ArgumentError(f"{text!r} holds a zero character, where the library would take the text to end.")
    try:
        return text.encode(encoding)
    except UnicodeEncodeError as error:
        raise ArgumentError(f"{text!r} holds half of a surrogate pair, which no {encoding} can carry.") from error


def _utf8(text: str) -> bytes:
    return _encoded(text, "utf-8")


def _optional_utf8(path: Optional[AnyPath]) -> Optional[bytes]:
    return None if path is None else _utf8(os.fspath(path))


def _utf16(text: str) -> bytes:
    return _encoded(text, "utf-16-le") + b"\0"  # ctypes adds the second zero byte


def _number(name: str, value: int) -> int:
    if not -2**31 <= value < 2**31:
        raise ArgumentError(f"{name} is {value}, which a signed number of 32 bits can't hold.")
    return value


def _request_text(requests: Iterable[GameRequest]) -> str:
    """The requests as the library reads them: it decodes no escapes, so nothing is escaped."""
    objects = []
    for request in requests:
        members = (("name", request.name), ("exeName", request.exe_name), ("exePath", request.exe_path))
        for key, value in members:
            if set(value) & set("\"{}"):
                raise ArgumentError(f"{key} of a request is {value!r}, and the library can't read quotes or braces there.")
        if not request.exe_name:
            raise ArgumentError(f"The request for {request.name!r} has no exe_name, which is what it is found by.")
        objects.append("{" + ",".join(f'"{key}":"{value}"' for key, value in members if value) + "}")
    return "[" + ",".join(objects) + "]"


# ------ Answers ------

_T = TypeVar("_T", str, int)


def _json(answer: bytes, name: str) -> Any:
    try:
        return json.loads(answer.decode("utf-8"))
    except UnicodeDecodeError as error:
        problem = f"is not UTF-8 at byte {error.start + 1}"
    except json.JSONDecodeError as error:
        problem = f"is no JSON at character {error.pos + 1}: {error.msg}"
    except RecursionError:
        problem = "is nested too deep"
    raise AnswerInvalidError(f"The answer of {name} {problem}. Is this Tarnwick.dll of version {__version__}?")


def _list(answer: object) -> List[object]:
    if isinstance(answer, list):
        return answer
    raise AnswerInvalidError(f"The answer is {type(answer).__name__}, not a list. Is this Tarnwick.dll of version "
                             f"{__version__}?")


class _Members:
    """The members of one object of an answer, by type."""

    def __init__(self, value: object, what: str) -> None:
        if not isinstance(value, dict):
            raise AnswerInvalidError(f"The answer holds {type(value).__name__} where {what} is expected.")
        self._values: Dict[str, object] = value
        self._what = what

    def _member(self, name: str, kind: Type[_T]) -> _T:
        value = self._values.get(name)
        if type(value) is kind:
            return value
        raise AnswerInvalidError(f'The answer lacks "{name}" of {self._what}, or it is no {kind.__name__}. Is this '
                                 f"Tarnwick.dll of version {__version__}?")

    def text(self, name: str) -> str:
        return self._member(name, str)

    def optional_text(self, name: str) -> Optional[str]:
        return self.text(name) if name in self._values else None

    def number(self, name: str) -> int:
        return self._member(name, int)


def _game(members: _Members) -> Game:
    return Game(name=members.text("name"), path=members.text("loc"), icon=members.text("icon"),
                launch_url=members.text("launchUrl"), exe_name=members.text("exeName"))


def _details(members: _Members) -> GameDetails:
    return GameDetails(name=members.text("name"), icon=members.text("ico"), path=members.text("exepath"),
                       exe_name=members.text("exe"))


def _application(members: _Members) -> Application:
    return Application(name=members.text("name"), publisher=members.text("publisher"), version=members.text("version"),
                       path=members.text("loc"), exe_name=members.optional_text("exeName"), date=members.text("date"),
                       size_kb=members.number("sizeKB"), icon=members.text("icon"))


def _applications(answer: object) -> List[Application]:
    return [_application(_Members(found, "an application")) for found in _list(answer)]


# ------ The focus watch ------


class FocusWatch:
    """Calls a handler with a FocusChange whenever another process takes the foreground, first with the present one.

        with tarnwick.watch_focus(lambda change: print(change.file_name)):
            input("Enter ends the watch")

    The handler runs on the library's own thread, one call at a time; an exception in it goes to sys.unraisablehook, and
    the watch goes on. A process has one watch at a time. stop() waits for the handler that runs: don't call it while you
    hold a lock that the handler waits for. A watch that is still running when Python ends is stopped.
    """

    _lock = threading.RLock()  # start and stop come from one thread at a time
    _running: Optional[FocusWatch] = None

    def __init__(self, tarnwick: Tarnwick, handler: FocusHandler, interval_ms: int = 200) -> None:
        """Starts the watch. It looks every `interval_ms` milliseconds; below 50 the library takes 200."""
        self._tarnwick = tarnwick
        self._handler = handler
        self._handler_thread: Optional[int] = None
        self._callback = _FocusCallback(self._hear)  # kept here: native code holds nothing but its address
        _number("interval_ms", interval_ms)
        # Here a handler that starts a watch would wait for a stop that waits for the handler.
        if not FocusWatch._lock.acquire(blocking=not FocusWatch._in_handler()):
            raise WatchError("The focus watch is being started or stopped: start another one outside of its handler.")
        try:
            self._start(interval_ms)
        finally:
            FocusWatch._lock.release()

    def __enter__(self) -> FocusWatch:
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        self.stop()

    def stop(self) -> None:
        """Stops the watch and waits for its thread: one interval at most, and the handler that runs. From within the
        handler it only gives the order; call it once more from another thread. A second stop does nothing."""
        if self._handler_thread == threading.get_ident():
            self._order_to_end()
            return
        with FocusWatch._lock:
            if FocusWatch._running is self:
                self._stop()

    def _start(self, interval_ms: int) -> None:
        if FocusWatch._running is not None:
            raise WatchError("A focus watch is running in this process: stop it before you start another one.")
        self._tarnwick._call("SetFocusCallbackEx", self._callback)
        FocusWatch._running = self
        atexit.register(self.stop)
        self._tarnwick._call("StartFocusWatch", interval_ms)

    def _stop(self) -> None:
        self._tarnwick._call("StopFocusWatch")
        self._tarnwick._call("SetFocusCallbackEx", _FocusCallback(0))
        FocusWatch._running = None
        atexit.unregister(self.stop)

    def _order_to_end(self) -> None:
        # Where another thread has the lock, it is stopping this watch already, and waits for the handler to return. It
        # can't be the start: nobody has this watch before that is done.
        if FocusWatch._lock.acquire(blocking=False):
            try:
                self._tarnwick._call("StopFocusWatch")
            finally:
                FocusWatch._lock.release()

    def _hear(self, file_name: bytes, process_id: int, path: bytes) -> None:
        self._handler_thread = threading.get_ident()
        try:
            self._handler(FocusChange(file_name.decode("utf-8", "replace"), process_id, path.decode("utf-8", "replace")))
        finally:
            self._handler_thread = None

    @classmethod
    def _in_handler(cls) -> bool:
        running = cls._running
        return running is not None and running._handler_thread == threading.get_ident()

    @classmethod
    def _end_calls_of(cls, tarnwick: Tarnwick) -> bool:
        """Stops this library's watch and refuses further calls, with no start in between."""
        if cls._in_handler():
            raise WatchError("close() was called from within the focus handler, while whose thread runs the library "
                             "can't be unloaded: close it from another thread.")
        with cls._lock:
            if cls._running is not None and cls._running._tarnwick is tarnwick:
                cls._running._stop()
            return tarnwick._refuse_calls()
