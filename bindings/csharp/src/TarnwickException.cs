using System;

namespace Tarnwick
{
    /// <summary>What a <see cref="TarnwickException"/> is about.</summary>
    public enum TarnwickErrorKind
    {
        /// <summary>There is no file where the library was looked for.</summary>
        LibraryMissing,

        /// <summary>The file is no library, is made for processes of another word size, or lacks something it needs.</summary>
        LibraryUnusable,

        /// <summary>The library lacks a function: it is another library, or another version of Tarnwick.</summary>
        ExportMissing,

        /// <summary>The answer did not fit although the buffer was grown to the length that was asked for, several times.</summary>
        AnswerCut,

        /// <summary>The answer is not UTF-8, not JSON, or JSON of another shape.</summary>
        AnswerInvalid,

        /// <summary>A call after <see cref="TarnwickLibrary.Dispose"/>.</summary>
        Closed,

        /// <summary>A second focus watch in this process, or a Dispose of the library from within the watch's handler.</summary>
        Watch,
    }

    /// <summary>What went wrong between the program and Tarnwick.dll. The message says what to do about it.</summary>
    public sealed class TarnwickException : Exception
    {
        internal TarnwickException(TarnwickErrorKind kind, string message, Exception inner = null) : base(message, inner)
        {
            Kind = kind;
        }

        /// <summary>What the error is about.</summary>
        public TarnwickErrorKind Kind { get; }
    }
}
