using System;
using System.Collections.Generic;
using System.ComponentModel;
using System.IO;
using System.Runtime.InteropServices;

namespace Tarnwick
{
    /// <summary>Loads a library from a path at run time. DllImport would search folders for it by name.</summary>
    internal static class NativeLoader
    {
        private static readonly bool OnWindows = Environment.OSVersion.Platform == PlatformID.Win32NT;

        private static readonly Dictionary<int, int> WordSizeOfMachine = new Dictionary<int, int>
        {
            { 0x014C, 32 }, { 0x01C4, 32 }, { 0x8664, 64 }, { 0xAA64, 64 },
        };

        public static IntPtr Load(string path)
        {
            if (!File.Exists(path))
                throw new TarnwickException(TarnwickErrorKind.LibraryMissing,
                    "There is no library " + path + ": put Tarnwick.dll there, or give the path where it lies.");
            IntPtr library = OnWindows ? Windows.Load(path) : Posix.dlopen(path, Posix.Now);
            if (library != IntPtr.Zero) return library;
            throw new TarnwickException(TarnwickErrorKind.LibraryUnusable, WhyUnusable(path, LastError()));
        }

        /// <summary>A null pointer where the library has no such function.</summary>
        public static IntPtr Function(IntPtr library, string name)
        {
            return OnWindows ? Windows.GetProcAddress(library, name) : Posix.dlsym(library, name);
        }

        public static void Unload(IntPtr library)
        {
            if (OnWindows) Windows.FreeLibrary(library);
            else Posix.dlclose(library);
        }

        /// <summary>Elsewhere than on Windows it isn't told: the runtime itself calls dlsym in between, and so dlerror has
        /// nothing left to say.</summary>
        private static string LastError()
        {
            return OnWindows ? " (" + new Win32Exception(Marshal.GetLastWin32Error()).Message + ")" : "";
        }

        private static string WhyUnusable(string path, string error)
        {
            int ours = IntPtr.Size * 8, theirs = WordSize(path);
            if (theirs == 0) return path + " is no library" + error + ": take Tarnwick.dll from Tarnwick's package.";
            if (theirs == ours)
                return path + " can't be loaded" + error + ": take Tarnwick.dll from Tarnwick's package, for this system.";
            return path + " is made for " + theirs + "-bit processes, and this is a " + ours + "-bit one" + error +
                   ": build the program for " + theirs + " bits, or start tarnwick.exe (\"scan --format json\") and read " +
                   "what it prints.";
        }

        /// <summary>Bits of the code in a Windows or Linux library, told by its first bytes; 0 for what is none.</summary>
        private static int WordSize(string path)
        {
            var start = new byte[4096];
            int length;
            using (FileStream file = File.OpenRead(path)) length = file.Read(start, 0, start.Length);
            if (Begins(start, 0, 0x7F, 'E', 'L', 'F')) return start[4] == 1 ? 32 : start[4] == 2 ? 64 : 0;
            if (!Begins(start, 0, 'M', 'Z')) return 0;
            int header = BitConverter.ToInt32(start, 0x3C);
            if (header < 0 || header > length - 6 || !Begins(start, header, 'P', 'E', 0, 0)) return 0;
            WordSizeOfMachine.TryGetValue(BitConverter.ToUInt16(start, header + 4), out int bits);
            return bits;
        }

        private static bool Begins(byte[] bytes, int at, params int[] expected)
        {
            for (int i = 0; i < expected.Length; i++)
            {
                if (bytes[at + i] != expected[i]) return false;
            }
            return true;
        }

        private static class Windows
        {
            private const uint SearchItsFolder = 0x100, SearchSystem32 = 0x800;  // LOAD_LIBRARY_SEARCH_...

            /// <summary>What the library itself needs comes from its own folder and from the system's.</summary>
            public static IntPtr Load(string path)
            {
                return LoadLibraryExW(path, IntPtr.Zero, SearchItsFolder | SearchSystem32);
            }

            [DefaultDllImportSearchPaths(DllImportSearchPath.System32)]
            [DllImport("kernel32.dll", CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
            private static extern IntPtr LoadLibraryExW(string path, IntPtr unused, uint flags);

            [DefaultDllImportSearchPaths(DllImportSearchPath.System32)]
            [DllImport("kernel32.dll", CharSet = CharSet.Ansi, ExactSpelling = true, BestFitMapping = false)]
            public static extern IntPtr GetProcAddress(IntPtr library, string name);

            [DefaultDllImportSearchPaths(DllImportSearchPath.System32)]
            [DllImport("kernel32.dll", ExactSpelling = true)]
            public static extern int FreeLibrary(IntPtr library);
        }

        private static class Posix
        {
            public const int Now = 2;  // RTLD_NOW

            [DllImport("libdl.so.2", CharSet = CharSet.Ansi)]
            public static extern IntPtr dlopen(string path, int flags);

            [DllImport("libdl.so.2", CharSet = CharSet.Ansi)]
            public static extern IntPtr dlsym(IntPtr library, string name);

            [DllImport("libdl.so.2")]
            public static extern int dlclose(IntPtr library);
        }
    }
}
