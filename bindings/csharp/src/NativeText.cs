using System;
using System.Runtime.InteropServices;
using System.Text;

namespace Tarnwick
{
    /// <summary>A zero-terminated text in native memory; of null a null pointer.</summary>
    internal sealed class NativeText : IDisposable
    {
        private static readonly Encoding Utf8Encoding = new UTF8Encoding(false, true);
        private static readonly Encoding Utf16Encoding = new UnicodeEncoding(false, false, true);

        private NativeText(string text, Encoding encoding, string parameter)
        {
            if (text == null) return;
            byte[] bytes = encoding.GetBytes(Checked(text, parameter) + "\0");
            Pointer = Marshal.AllocHGlobal(bytes.Length);
            Marshal.Copy(bytes, 0, Pointer, bytes.Length);
        }

        public IntPtr Pointer { get; private set; }

        public static NativeText Utf8(string text, string parameter)
        {
            return new NativeText(text, Utf8Encoding, parameter);
        }

        /// <summary>What the library's wide texts are, on Linux too.</summary>
        public static NativeText Utf16(string text, string parameter)
        {
            return new NativeText(text, Utf16Encoding, parameter);
        }

        public static string FromUtf8(IntPtr pointer)
        {
            int length = 0;
            while (Marshal.ReadByte(pointer, length) != 0) length++;
            var bytes = new byte[length];
            Marshal.Copy(pointer, bytes, 0, length);
            return Encoding.UTF8.GetString(bytes);
        }

        public void Dispose()
        {
            Marshal.FreeHGlobal(Pointer);
            Pointer = IntPtr.Zero;
        }

        private static string Checked(string text, string parameter)
        {
            if (text.IndexOf('\0') >= 0)
                throw new ArgumentException("The text holds a zero character, where the library would take it to end.", parameter);
            for (int i = 0; i < text.Length; i++)
            {
                if (!char.IsSurrogate(text[i])) continue;
                if (!char.IsSurrogatePair(text, i))
                    throw new ArgumentException("The text holds half of a surrogate pair.", parameter);
                i++;
            }
            return text;
        }
    }
}
