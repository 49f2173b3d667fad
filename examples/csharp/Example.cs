// Tarnwick from C#: the games, the applications, the foreground.
//
//     Example.exe C:\path\to\Tarnwick.dll scan [CATALOGUE]
//     Example.exe C:\path\to\Tarnwick.dll list [FILTER]
//     Example.exe C:\path\to\Tarnwick.dll watch [SECONDS]
using System;
using System.Globalization;
using System.Threading;
using Tarnwick;

internal static class Example
{
    private static int Main(string[] arguments)
    {
        if (arguments.Length < 2)
        {
            Console.Error.WriteLine("usage: Example TARNWICK.DLL scan [CATALOGUE] | list [FILTER] | watch [SECONDS]");
            return 2;
        }
        try
        {
            using (var tarnwick = new TarnwickLibrary(arguments[0]))
                return Run(tarnwick, arguments[1], arguments.Length > 2 ? arguments[2] : null);
        }
        catch (TarnwickException error)
        {
            Console.Error.WriteLine(error.Message);
            return 1;
        }
    }

    private static int Run(TarnwickLibrary tarnwick, string command, string argument)
    {
        switch (command)
        {
            case "scan":
                foreach (Game game in tarnwick.Scan(argument))
                    Console.WriteLine(game.Name + ": " + (game.Path != "" ? game.Path : game.LaunchUrl));
                return 0;
            case "list":
                foreach (Application application in tarnwick.GetAllApplications(argument))
                    Console.WriteLine(application.Name + ", " + application.Publisher + ": " + application.Path);
                return 0;
            case "watch":
                Watch(tarnwick, double.Parse(argument ?? "60", CultureInfo.InvariantCulture));
                return 0;
            default:
                Console.Error.WriteLine("There is no command " + command + ": scan, list or watch.");
                return 2;
        }
    }

    private static void Watch(TarnwickLibrary tarnwick, double seconds)
    {
        using (tarnwick.WatchFocus(change => Console.WriteLine(change.ProcessId + " " + change.FileName + " " + change.Path)))
            Thread.Sleep(TimeSpan.FromSeconds(seconds));
    }
}
