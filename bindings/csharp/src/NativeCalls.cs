using System;
using System.Runtime.InteropServices;

namespace Tarnwick
{
    /// <summary>The library's functions. Texts and buffers are pointers, so that nothing is left to the marshaller's
    /// idea of a text.</summary>
    internal sealed class NativeCalls
    {
        private readonly IntPtr library;
        private readonly string path;

        public NativeCalls(string path)
        {
            this.path = path;
            library = NativeLoader.Load(path);
            try
            {
                Bind();
            }
            catch (TarnwickException)
            {
                Unload();
                throw;
            }
        }

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        public delegate int AnswerToText(IntPtr text, IntPtr buffer, int size);

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        public delegate int AnswerToPage(int page, int pageSize, IntPtr filter, IntPtr buffer, int size);

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        public delegate int Count();

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        public delegate void Order();

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        public delegate void OrderWithNumber(int number);

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        public delegate void FocusCallback(IntPtr fileName, uint processId, IntPtr path);

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        public delegate void OrderWithCallback(FocusCallback callback);

        public AnswerToText Scan { get; private set; }
        public AnswerToText Details { get; private set; }
        public AnswerToText AllApplications { get; private set; }
        public AnswerToText FindGames { get; private set; }
        public AnswerToText FindGamesByFile { get; private set; }
        public AnswerToPage Applications { get; private set; }
        public Count Refresh { get; private set; }
        public Order Report { get; private set; }
        public OrderWithCallback SetFocusCallback { get; private set; }
        public OrderWithNumber StartFocusWatch { get; private set; }
        public Order StopFocusWatch { get; private set; }

        public void Unload()
        {
            NativeLoader.Unload(library);
        }

        private void Bind()
        {
            Scan = Function<AnswerToText>("IA_RunMultiPlatformGameScanJson");
            Report = Function<Order>("RunMultiPlatformGameScan");
            Details = Function<AnswerToText>("IA_GetGameDetailsByPathJson");
            Refresh = Function<Count>("IA_RefreshCache");
            Applications = Function<AnswerToPage>("IA_GetAppsJson");
            AllApplications = Function<AnswerToText>("IA_GetAppsJsonAll");
            FindGames = Function<AnswerToText>("IA_FindGamesJson");
            FindGamesByFile = Function<AnswerToText>("IA_FindGamesByFile");
            SetFocusCallback = Function<OrderWithCallback>("SetFocusCallbackEx");
            StartFocusWatch = Function<OrderWithNumber>("StartFocusWatch");
            StopFocusWatch = Function<Order>("StopFocusWatch");
        }

        private T Function<T>(string name)
        {
            IntPtr function = NativeLoader.Function(library, name);
            if (function != IntPtr.Zero) return Marshal.GetDelegateForFunctionPointer<T>(function);
            throw new TarnwickException(TarnwickErrorKind.ExportMissing,
                path + " has no function " + name + ": take the Tarnwick.dll of version " + TarnwickLibrary.Version +
                ", which this assembly is made for.");
        }
    }
}
