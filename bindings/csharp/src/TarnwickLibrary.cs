using System;
using System.Collections.Generic;
using System.Linq;
using System.Runtime.InteropServices;
using System.Threading;

namespace Tarnwick
{
    /// <summary>Tarnwick.dll, loaded. Every method may be called on any thread, from several at once, and returns when the
    /// library has done its work: seconds or minutes for a scan. Without a Dispose the library stays loaded.</summary>
    public sealed class TarnwickLibrary : IDisposable
    {
        /// <summary>The version of Tarnwick that this assembly is made for.</summary>
        public const string Version = "0.1.0";

        private const int FirstBufferBytes = 4 << 20;
        private const int Attempts = 4;

        private readonly object state = new object();
        private readonly NativeCalls native;
        private int callsInFlight;
        private bool closed;

        /// <summary>Loads the Tarnwick.dll in the folder of the program.</summary>
        /// <exception cref="TarnwickException">The library is missing, unusable, or lacks a function.</exception>
        public TarnwickLibrary() : this(System.IO.Path.Combine(AppContext.BaseDirectory, "Tarnwick.dll"))
        {
        }

        /// <summary>Loads the library from an absolute path. Nothing is searched, so that nobody can put another library in
        /// its place.</summary>
        /// <exception cref="ArgumentException">The path is not absolute.</exception>
        /// <exception cref="TarnwickException">The library is missing, unusable, or lacks a function.</exception>
        public TarnwickLibrary(string path)
        {
            if (path == null) throw new ArgumentNullException(nameof(path));
            if (path.IndexOf('\0') >= 0 || !System.IO.Path.IsPathRooted(path))
                throw new ArgumentException("\"" + path + "\" is no absolute path: name the library by its whole path, such as " +
                    "one below AppContext.BaseDirectory, so that no other folder is searched for it.", nameof(path));
            Path = path;
            native = new NativeCalls(path);
        }

        private delegate int Ask(IntPtr buffer, int size);

        /// <summary>The path that the library was loaded from.</summary>
        public string Path { get; }

        internal NativeCalls Native => native;

        /// <summary>Finds the games of a catalogue file and those that the launchers hold. Without a path the library looks
        /// for its catalogue in the current directory. Takes seconds, or minutes on slow disks, and has no time
        /// limit.</summary>
        /// <exception cref="TarnwickException">The answer is cut or invalid, or the library is closed.</exception>
        public IReadOnlyList<Game> Scan(string cataloguePath = null)
        {
            using (NativeText path = NativeText.Utf8(cataloguePath, nameof(cataloguePath)))
            {
                object answer = AnswerOf("IA_RunMultiPlatformGameScanJson", (buffer, size) => native.Scan(path.Pointer, buffer, size));
                return Answer.List(answer, members => new Game(members), "a game");
            }
        }

        /// <summary>What can be shown for one executable, without a scan; null where there is no such file.</summary>
        /// <exception cref="TarnwickException">The answer is cut or invalid, or the library is closed.</exception>
        public GameDetails GetGameDetails(string path)
        {
            using (NativeText text = NativeText.Utf8(NotNull(path, nameof(path)), nameof(path)))
            {
                object answer = AnswerOf("IA_GetGameDetailsByPathJson", (buffer, size) => native.Details(text.Pointer, buffer, size));
                bool none = answer is Dictionary<string, object> members && members.Count == 0;
                return none ? null : new GameDetails(new Members(answer, "the details"));
            }
        }

        /// <summary>One page of the installed applications, counted from 1. The filter keeps those whose name or publisher
        /// holds it, without regard to case. A page behind the last one is empty.</summary>
        /// <exception cref="TarnwickException">The answer is cut or invalid, or the library is closed.</exception>
        public IReadOnlyList<Application> GetApplications(int page = 1, int pageSize = 20, string filter = null)
        {
            using (NativeText text = NativeText.Utf16(filter, nameof(filter)))
            {
                return Applications("IA_GetAppsJson",
                    (buffer, size) => native.Applications(page, pageSize, text.Pointer, buffer, size));
            }
        }

        /// <summary>All installed applications that the filter keeps, each with its executable's name.</summary>
        /// <exception cref="TarnwickException">The answer is cut or invalid, or the library is closed.</exception>
        public IReadOnlyList<Application> GetAllApplications(string filter = null)
        {
            using (NativeText text = NativeText.Utf16(filter, nameof(filter)))
            {
                return Applications("IA_GetAppsJsonAll", (buffer, size) => native.AllApplications(text.Pointer, buffer, size));
            }
        }

        /// <summary>The first installed application for each request; a request without one gives nothing.</summary>
        /// <exception cref="ArgumentException">A text of a request holds quotes, braces or a zero character, or a request
        /// has no ExeName.</exception>
        /// <exception cref="TarnwickException">The answer is cut or invalid, or the library is closed.</exception>
        public IReadOnlyList<Application> FindGames(IEnumerable<GameRequest> requests)
        {
            string query = "[" + string.Join(",", NotNull(requests, nameof(requests)).Select(RequestText)) + "]";
            using (NativeText text = NativeText.Utf8(query, nameof(requests)))
            {
                return Applications("IA_FindGamesJson", (buffer, size) => native.FindGames(text.Pointer, buffer, size));
            }
        }

        /// <summary>FindGames with the requests of a JSON file. A file that is missing or unreadable finds nothing.</summary>
        /// <exception cref="TarnwickException">The answer is cut or invalid, or the library is closed.</exception>
        public IReadOnlyList<Application> FindGamesInFile(string path)
        {
            using (NativeText text = NativeText.Utf8(NotNull(path, nameof(path)), nameof(path)))
            {
                return Applications("IA_FindGamesByFile", (buffer, size) => native.FindGamesByFile(text.Pointer, buffer, size));
            }
        }

        /// <summary>Reads the list of installed applications anew; returns how many there are.</summary>
        /// <exception cref="TarnwickException">The library is closed.</exception>
        public int Refresh()
        {
            return Call("IA_RefreshCache", () => native.Refresh());
        }

        /// <summary>Writes a readable report of a scan to the debug output. Takes as long as a scan.</summary>
        /// <exception cref="TarnwickException">The library is closed.</exception>
        public void Report()
        {
            Order("RunMultiPlatformGameScan", () => native.Report());
        }

        /// <summary>Starts a focus watch, which calls the handler on a thread of the library's. See
        /// <see cref="FocusWatch"/>.</summary>
        /// <param name="handler">Hears of each new foreground process, first of the present one.</param>
        /// <param name="intervalMs">How often the library looks, in milliseconds; below 50 it takes 200.</param>
        /// <param name="onError">Hears of the exceptions that leave the handler; the watch goes on. Without it they are
        /// lost.</param>
        /// <exception cref="TarnwickException">Another watch runs in this process, or the library is closed.</exception>
        public FocusWatch WatchFocus(Action<FocusChange> handler, int intervalMs = 200, Action<Exception> onError = null)
        {
            return FocusWatch.Start(this, NotNull(handler, nameof(handler)), intervalMs, onError);
        }

        /// <summary>Stops this library's focus watch, waits for the calls that run, and unloads the library. A second
        /// Dispose does nothing.</summary>
        /// <exception cref="TarnwickException">It was called from within the watch's handler.</exception>
        public void Dispose()
        {
            if (!FocusWatch.EndCallsOf(this)) return;
            lock (state)
            {
                while (callsInFlight > 0) Monitor.Wait(state);
            }
            native.Unload();
        }

        /// <summary>Whether calls were allowed until now.</summary>
        internal bool RefuseCalls()
        {
            lock (state)
            {
                bool wereAllowed = !closed;
                closed = true;
                return wereAllowed;
            }
        }

        internal void Order(string name, Action function)
        {
            Call(name, () =>
            {
                function();
                return 0;
            });
        }

        private int Call(string name, Func<int> function)
        {
            lock (state)
            {
                if (closed)
                    throw new TarnwickException(TarnwickErrorKind.Closed, name + " was called after Dispose: make a new TarnwickLibrary.");
                callsInFlight++;
            }
            try
            {
                return function();
            }
            finally
            {
                lock (state)
                {
                    callsInFlight--;
                    Monitor.PulseAll(state);
                }
            }
        }

        private IReadOnlyList<Application> Applications(string name, Ask ask)
        {
            return Answer.List(AnswerOf(name, ask), members => new Application(members), "an application");
        }

        private object AnswerOf(string name, Ask ask)
        {
            int size = FirstBufferBytes;
            for (int attempt = 0; attempt < Attempts; attempt++)
            {
                byte[] answer = AnswerWithin(name, ask, size, out int length);
                if (answer != null) return Answer.Parse(answer, name);
                if (length == int.MaxValue) break;
                size = length + 1;
            }
            throw new TarnwickException(TarnwickErrorKind.AnswerCut, "The answer of " + name + " is still cut in a buffer of " +
                size + " bytes: it keeps growing, or is too large for the library. Try again when nothing is being installed.");
        }

        /// <summary>Null where the answer is longer than the buffer takes.</summary>
        private byte[] AnswerWithin(string name, Ask ask, int size, out int length)
        {
            IntPtr buffer = Marshal.AllocHGlobal(size);
            try
            {
                length = Call(name, () => ask(buffer, size));
                if (length >= size) return null;
                var answer = new byte[length];
                Marshal.Copy(buffer, answer, 0, length);
                return answer;
            }
            finally
            {
                Marshal.FreeHGlobal(buffer);
            }
        }

        /// <summary>A request as the library reads it: it decodes no escapes, so nothing is escaped.</summary>
        private static string RequestText(GameRequest request)
        {
            if (request == null || request.ExeName == "")
                throw new ArgumentException("A request has no ExeName, which is what it is found by.", "requests");
            string[] members = { Member("name", request.Name), Member("exeName", request.ExeName), Member("exePath", request.ExePath) };
            return "{" + string.Join(",", members.Where(member => member != "")) + "}";
        }

        private static string Member(string key, string value)
        {
            if (value.IndexOfAny(new[] { '"', '{', '}' }) >= 0)
                throw new ArgumentException("\"" + key + "\" of a request is " + value +
                    ", and the library can't read quotes or braces there.", "requests");
            return value == "" ? "" : "\"" + key + "\":\"" + value + "\"";
        }

        private static T NotNull<T>(T value, string parameter) where T : class
        {
            return value ?? throw new ArgumentNullException(parameter);
        }
    }
}
