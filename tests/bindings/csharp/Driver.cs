// Does with the binding what csharp_test.py asks for, and prints what comes of it: one line for each result, its fields
// separated by U+001F, or the kind and text of an error.
using System;
using System.Collections.Generic;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Text;
using System.Threading;
using Tarnwick;

internal static class Driver
{
    private static readonly Dictionary<string, Action<TarnwickLibrary, string[]>> Commands =
        new Dictionary<string, Action<TarnwickLibrary, string[]>>
    {
        { "scan", (library, given) => PrintGames(library.Scan(given.Length > 0 ? given[0] : null)) },
        { "details", (library, given) => PrintDetails(library.GetGameDetails(given[0])) },
        { "page", (library, given) => PrintApplications(library.GetApplications(int.Parse(given[0]), int.Parse(given[1]), given[2])) },
        { "first-page", (library, given) => PrintApplications(library.GetApplications()) },
        { "all", (library, given) => PrintApplications(library.GetAllApplications(given.Length > 0 ? given[0] : null)) },
        { "find", (library, given) => PrintApplications(library.FindGames(Requests(given))) },
        { "find-file", (library, given) => PrintApplications(library.FindGamesInFile(given[0])) },
        { "refresh", (library, given) => Print(library.Refresh()) },
        { "report", (library, given) => library.Report() },
        { "dispose", (library, given) => library.Dispose() },
        { "load", (library, given) => new TarnwickLibrary(given[0]) },
        { "mapped", (library, given) => Print(File.ReadAllText("/proc/self/maps").Contains(given[0])) },
        { "half-pair", (library, given) => library.Scan("half \ud83c") },
        { "zero-filter", (library, given) => library.GetAllApplications("a\0b") },
        { "no-requests", (library, given) => library.FindGames(null) },
        { "watch", Watch },
        { "watch-stops", WatchStops },
        { "watch-order", WatchOrder },
        { "watch-two-stops", (library, given) => StopBeside(library, watch => watch.Stop()) },
        { "watch-start-in-stop", (library, given) => StopBeside(library, watch => Attempt(() => library.WatchFocus(Ignore))) },
        { "watch-twice", WatchTwice },
        { "watch-refusals", WatchRefusals },
        { "watch-throws", WatchThrows },
        { "watch-collected", WatchCollected },
        { "watch-dispose", WatchDispose },
        { "watch-exit", WatchExit },
        { "slow-call", SlowCall },
    };

    private static int Main(string[] arguments)
    {
        Console.SetOut(new StreamWriter(Console.OpenStandardOutput(), new UTF8Encoding(false)) { AutoFlush = true });
        if (arguments[0] == "json") return ReadJson();
        // LIBRARY, and then commands with their arguments, each behind a "+".
        Attempt(() =>
        {
            var library = new TarnwickLibrary(arguments[0]);
            foreach (string[] command in Split(arguments.Skip(1)))
                Attempt(() => Commands[command[0]](library, command.Skip(1).ToArray()));
        });
        return 0;
    }

    private static IEnumerable<string[]> Split(IEnumerable<string> arguments)
    {
        var command = new List<string>();
        foreach (string argument in arguments.Skip(1).Concat(new[] { "+" }))
        {
            if (argument != "+")
            {
                command.Add(argument);
                continue;
            }
            yield return command.ToArray();
            command.Clear();
        }
    }

    private static void Attempt(Action action)
    {
        try
        {
            action();
        }
        catch (TarnwickException error)
        {
            Print(error.Kind, error.Message);
        }
        catch (ArgumentException error)
        {
            Print(error.GetType().Name, error.Message.Replace("\n", " "));
        }
    }

    private static void Print(params object[] fields)
    {
        lock (Commands) Console.Out.Write(string.Join("\u001f", fields) + "\n");
    }

    private static void PrintGames(IEnumerable<Game> games)
    {
        foreach (Game game in games) Print(game.Name, game.Path, game.Icon, game.LaunchUrl, game.ExeName);
    }

    private static void PrintDetails(GameDetails details)
    {
        if (details == null) Print("null");
        else Print(details.Name, details.Icon, details.Path, details.ExeName);
    }

    private static void PrintApplications(IEnumerable<Application> applications)
    {
        foreach (Application found in applications)
            Print(found.Name, found.Publisher, found.Version, found.Path, found.ExeName ?? "null", found.Date, found.SizeKB, found.Icon);
    }

    private static IEnumerable<GameRequest> Requests(string[] given)
    {
        for (int i = 0; i < given.Length; i += 3) yield return new GameRequest(given[i], given[i + 1], given[i + 2]);
    }

    // ------ JSON: a text in base64 on each line, answered by its value in base64 or by the error ------

    private static int ReadJson()
    {
        for (string line = Console.In.ReadLine(); line != null; line = Console.In.ReadLine())
        {
            try
            {
                var written = new StringBuilder();
                Write(Answer.Parse(Convert.FromBase64String(line), "X"), written);
                Print(Convert.ToBase64String(Encoding.UTF8.GetBytes(written.ToString())));
            }
            catch (TarnwickException error)
            {
                Print(error.Kind, error.Message);
            }
        }
        return 0;
    }

    private static void Write(object value, StringBuilder to)
    {
        if (value is Dictionary<string, object> members)
            WriteAll('{', members, member => { Write(member.Key, to); to.Append(':'); Write(member.Value, to); }, '}', to);
        else if (value is List<object> values) WriteAll('[', values, each => Write(each, to), ']', to);
        else if (value is string text) to.Append('"' + string.Concat(text.Select(unit => "\\u" + ((int)unit).ToString("x4"))) + '"');
        else if (value is double number) to.Append(number.ToString("R", System.Globalization.CultureInfo.InvariantCulture));
        else to.Append(value == null ? "null" : value.ToString().ToLowerInvariant());
    }

    private static void WriteAll<T>(char open, IEnumerable<T> values, Action<T> write, char close, StringBuilder to)
    {
        to.Append(open);
        bool first = true;
        foreach (T value in values)
        {
            if (!first) to.Append(',');
            first = false;
            write(value);
        }
        to.Append(close);
    }

    // ------ The focus watch ------

    private static int heard;

    private static void Ignore(FocusChange change)
    {
        Interlocked.Increment(ref heard);
    }

    private static void WaitUntilHeard(int count)
    {
        while (Volatile.Read(ref heard) < count) Thread.Sleep(5);
    }

    private static void Watch(TarnwickLibrary library, string[] given)
    {
        Action<FocusChange> tell = change =>
        {
            Print(change.FileName, change.ProcessId, change.Path, library.Refresh());
            Ignore(change);
        };
        using (library.WatchFocus(tell, 50)) WaitUntilHeard(4);
    }

    private static void WatchStops(TarnwickLibrary library, string[] given)
    {
        FocusWatch watch = library.WatchFocus(Ignore, 50);
        WaitUntilHeard(2);
        watch.Stop();
        int count = heard;
        watch.Stop();
        watch.Dispose();
        Thread.Sleep(200);
        Print(heard == count);
    }

    private static void WatchOrder(TarnwickLibrary library, string[] given)
    {
        FocusWatch watch = null;
        var known = new ManualResetEvent(false);
        watch = library.WatchFocus(change =>
        {
            known.WaitOne();
            watch.Stop();
            Ignore(change);
        }, 50);
        known.Set();
        WaitUntilHeard(1);
        watch.Stop();
        Print(heard);
        using (library.WatchFocus(Ignore, 50)) WaitUntilHeard(2);
    }

    private static void WaitUntilStopping()
    {
        object gate = typeof(FocusWatch).GetField("Gate", BindingFlags.NonPublic | BindingFlags.Static).GetValue(null);
        while (Monitor.TryEnter(gate))
        {
            Monitor.Exit(gate);
            Thread.Sleep(5);
        }
    }

    /// <summary>Stops a watch while its handler waits for that, and then does the action.</summary>
    private static void StopBeside(TarnwickLibrary library, Action<FocusWatch> action)
    {
        FocusWatch watch = null;
        ManualResetEvent inHandler = new ManualResetEvent(false), started = new ManualResetEvent(false);
        watch = library.WatchFocus(change =>
        {
            inHandler.Set();
            started.WaitOne();
            WaitUntilStopping();
            action(watch);
            Print("handler ends");
        }, 50);
        started.Set();
        inHandler.WaitOne();
        watch.Stop();
        Print("stop ends");
    }

    private static void WatchTwice(TarnwickLibrary library, string[] given)
    {
        using (library.WatchFocus(Ignore, 50)) Attempt(() => library.WatchFocus(Ignore, 50));
        library.WatchFocus(Ignore, 50).Stop();
        Print("another one");
    }

    private static void WatchRefusals(TarnwickLibrary library, string[] given)
    {
        Action<FocusChange> handler = change =>
        {
            if (heard > 0) return;
            Attempt(() => library.WatchFocus(Ignore));
            Attempt(library.Dispose);
            Ignore(change);
        };
        using (library.WatchFocus(handler, 50)) WaitUntilHeard(1);
        Print(library.Refresh());
    }

    private static void WatchThrows(TarnwickLibrary library, string[] given)
    {
        Action<Exception> onError = error =>
        {
            Print(error.GetType().Name);
            Interlocked.Increment(ref heard);
            throw new InvalidOperationException("from onError");
        };
        using (library.WatchFocus(change => throw new DivideByZeroException(), 50, onError)) WaitUntilHeard(2);
        Action<FocusChange> handler = change =>
        {
            Ignore(change);
            throw new DivideByZeroException();
        };
        using (library.WatchFocus(handler, 50)) WaitUntilHeard(4);
        Print("goes on");
    }

    private static void WatchCollected(TarnwickLibrary library, string[] given)
    {
        new Thread(() => library.WatchFocus(Ignore, 50)).Start();
        for (int count = 1; count < 8; count++)
        {
            WaitUntilHeard(count);
            GC.Collect();
            GC.WaitForPendingFinalizers();
        }
        Print("goes on");
        library.Dispose();
    }

    private static void WatchDispose(TarnwickLibrary library, string[] given)
    {
        library.WatchFocus(Ignore, 50);
        WaitUntilHeard(1);
        library.Dispose();
        int count = heard;
        Thread.Sleep(200);
        Print(heard == count);
    }

    private static void WatchExit(TarnwickLibrary library, string[] given)
    {
        library.WatchFocus(change => Ignore(change), 50);
        WaitUntilHeard(1);
        AppDomain.CurrentDomain.ProcessExit += (sender, arguments) =>
        {
            int count = heard;
            Thread.Sleep(200);
            Print(heard == count);
        };
    }

    // ------ Closing ------

    private static void SlowCall(TarnwickLibrary library, string[] given)
    {
        var called = new ManualResetEvent(false);
        var call = new Thread(() => library.Order("slow", () =>
        {
            called.Set();
            Thread.Sleep(300);
            Print("call ends");
        }));
        call.Start();
        called.WaitOne();
        library.Dispose();
        Print("disposed");
        call.Join();
    }
}
