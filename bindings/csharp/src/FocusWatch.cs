using System;
using System.Threading;

namespace Tarnwick
{
    /// <summary>Calls a handler whenever another process takes the foreground, until it is stopped. The handler runs on the
    /// library's own thread, one call at a time. A process has one watch at a time, and one that nobody holds goes on; at
    /// the process's regular end it is stopped.</summary>
    public sealed class FocusWatch : IDisposable
    {
        private static readonly object Gate = new object();  // start and stop come from one thread at a time
        private static volatile FocusWatch running;          // keeps the delegate alive that native code calls

        private readonly TarnwickLibrary library;
        private readonly Action<FocusChange> handler;
        private readonly Action<Exception> onError;
        private readonly NativeCalls.FocusCallback callback;
        private volatile Thread handlerThread;

        private FocusWatch(TarnwickLibrary library, Action<FocusChange> handler, Action<Exception> onError)
        {
            this.library = library;
            this.handler = handler;
            this.onError = onError;
            callback = Hear;
        }

        private static bool InHandler => running?.handlerThread == Thread.CurrentThread;

        /// <summary>Stops the watch and waits for its thread: one interval at most, and the handler that runs. Don't call it
        /// while you hold a lock that the handler waits for. From within the handler it only gives the order; call it once
        /// more from another thread. A second Stop does nothing.</summary>
        public void Stop()
        {
            if (handlerThread == Thread.CurrentThread)
            {
                OrderToEnd();
                return;
            }
            lock (Gate)
            {
                if (running == this) StopAndWait();
            }
        }

        /// <summary>The same as <see cref="Stop"/>.</summary>
        public void Dispose()
        {
            Stop();
        }

        internal static FocusWatch Start(TarnwickLibrary library, Action<FocusChange> handler, int intervalMs, Action<Exception> onError)
        {
            // Here a handler that starts a watch would wait for a stop that waits for the handler.
            if (!Monitor.TryEnter(Gate, InHandler ? 0 : Timeout.Infinite))
                throw Refused("The focus watch is being started or stopped: start another one outside of its handler.");
            try
            {
                if (running != null)
                    throw Refused("A focus watch is running in this process: stop it before you start another one.");
                var watch = new FocusWatch(library, handler, onError);
                watch.Begin(intervalMs);
                return watch;
            }
            finally
            {
                Monitor.Exit(Gate);
            }
        }

        /// <summary>Stops this library's watch and refuses further calls, with no start in between. Returns whether calls were
        /// allowed until now.</summary>
        internal static bool EndCallsOf(TarnwickLibrary library)
        {
            if (InHandler)
                throw Refused("Dispose was called from within the focus handler, while whose thread runs the library can't be " +
                              "unloaded: dispose of it on another thread.");
            lock (Gate)
            {
                if (running?.library == library) running.StopAndWait();
                return library.RefuseCalls();
            }
        }

        private static TarnwickException Refused(string message)
        {
            return new TarnwickException(TarnwickErrorKind.Watch, message);
        }

        private void Begin(int intervalMs)
        {
            library.Order("SetFocusCallbackEx", () => library.Native.SetFocusCallback(callback));
            running = this;
            AppDomain.CurrentDomain.ProcessExit += StopAtExit;
            AppDomain.CurrentDomain.DomainUnload += StopAtExit;
            library.Order("StartFocusWatch", () => library.Native.StartFocusWatch(intervalMs));
        }

        private void StopAndWait()
        {
            library.Order("StopFocusWatch", () => library.Native.StopFocusWatch());
            library.Order("SetFocusCallbackEx", () => library.Native.SetFocusCallback(null));
            AppDomain.CurrentDomain.ProcessExit -= StopAtExit;
            AppDomain.CurrentDomain.DomainUnload -= StopAtExit;
            running = null;
        }

        private void StopAtExit(object sender, EventArgs arguments)
        {
            Stop();
        }

        private void OrderToEnd()
        {
            // Where another thread has the gate, it is stopping this watch already, and waits for the handler to return. It
            // can't be the start: nobody has this watch before that is done.
            if (!Monitor.TryEnter(Gate)) return;
            try
            {
                library.Order("StopFocusWatch", () => library.Native.StopFocusWatch());
            }
            finally
            {
                Monitor.Exit(Gate);
            }
        }

        /// <summary>Called by native code, into which no exception may go.</summary>
        private void Hear(IntPtr fileName, uint processId, IntPtr path)
        {
            handlerThread = Thread.CurrentThread;
            try
            {
                handler(new FocusChange(NativeText.FromUtf8(fileName), processId, NativeText.FromUtf8(path)));
            }
            catch (Exception error)
            {
                TellOf(error);
            }
            finally
            {
                handlerThread = null;
            }
        }

        private void TellOf(Exception error)
        {
            try
            {
                onError?.Invoke(error);
            }
            catch (Exception)
            {
                // There is nobody left to tell.
            }
        }
    }
}
