namespace Tarnwick
{
    /// <summary>One game of a scan. Texts are empty where the library knows nothing.</summary>
    public sealed class Game
    {
        internal Game(Members members)
        {
            Name = members.Text("name");
            Path = members.Text("loc");
            Icon = members.Text("icon");
            LaunchUrl = members.Text("launchUrl");
            ExeName = members.Text("exeName");
        }

        /// <summary>The display name.</summary>
        public string Name { get; }

        /// <summary>Full path of the executable ("loc"); empty for a game that only launches by URI.</summary>
        public string Path { get; }

        /// <summary>A PNG as a data URI.</summary>
        public string Icon { get; }

        /// <summary>URI that launches the game ("launchUrl").</summary>
        public string LaunchUrl { get; }

        /// <summary>File name of the executable ("exeName").</summary>
        public string ExeName { get; }
    }

    /// <summary>What can be shown for one executable. Texts are empty where the library knows nothing.</summary>
    public sealed class GameDetails
    {
        internal GameDetails(Members members)
        {
            Name = members.Text("name");
            Icon = members.Text("ico");
            Path = members.Text("exepath");
            ExeName = members.Text("exe");
        }

        /// <summary>The display name.</summary>
        public string Name { get; }

        /// <summary>A PNG as a data URI ("ico").</summary>
        public string Icon { get; }

        /// <summary>The path, with backslashes ("exepath").</summary>
        public string Path { get; }

        /// <summary>The file name ("exe").</summary>
        public string ExeName { get; }
    }

    /// <summary>One installed application. Texts are empty where the library knows nothing.</summary>
    public sealed class Application
    {
        internal Application(Members members)
        {
            Name = members.Text("name");
            Publisher = members.Text("publisher");
            Version = members.Text("version");
            Path = members.Text("loc");
            ExeName = members.OptionalText("exeName");
            Date = members.Text("date");
            SizeKB = members.Number("sizeKB");
            Icon = members.Text("icon");
        }

        /// <summary>The display name.</summary>
        public string Name { get; }

        /// <summary>The publisher.</summary>
        public string Publisher { get; }

        /// <summary>The version.</summary>
        public string Version { get; }

        /// <summary>Full path of the executable ("loc").</summary>
        public string Path { get; }

        /// <summary>File name of the executable ("exeName"); null but in the answers of
        /// <see cref="TarnwickLibrary.GetAllApplications"/>.</summary>
        public string ExeName { get; }

        /// <summary>The date of the installation, as the registry has it.</summary>
        public string Date { get; }

        /// <summary>Estimated size in kilobytes ("sizeKB"), 0 if unknown.</summary>
        public int SizeKB { get; }

        /// <summary>A PNG as a data URI.</summary>
        public string Icon { get; }
    }

    /// <summary>A game to look up among the installed applications. The library takes these texts as they stand, so they
    /// hold no quotes, no braces and no zero characters.</summary>
    public sealed class GameRequest
    {
        /// <summary>Names the executable that the game is found by.</summary>
        public GameRequest(string exeName, string name = "", string exePath = "")
        {
            ExeName = exeName ?? "";
            Name = name ?? "";
            ExePath = exePath ?? "";
        }

        /// <summary>File name of the game's executable ("exeName").</summary>
        public string ExeName { get; }

        /// <summary>The name that the answer carries; where it is empty, the application's own.</summary>
        public string Name { get; }

        /// <summary>A folder below the install folder ("exePath").</summary>
        public string ExePath { get; }
    }

    /// <summary>The new foreground process. Both texts are empty where the process can't be opened, such as an elevated
    /// one.</summary>
    public sealed class FocusChange
    {
        internal FocusChange(string fileName, uint processId, string path)
        {
            FileName = fileName;
            ProcessId = processId;
            Path = path;
        }

        /// <summary>File name of the executable.</summary>
        public string FileName { get; }

        /// <summary>The process id.</summary>
        public uint ProcessId { get; }

        /// <summary>Full path of the executable.</summary>
        public string Path { get; }
    }
}
