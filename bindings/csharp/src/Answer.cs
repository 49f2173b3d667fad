using System;
using System.Collections.Generic;
using System.Linq;
using System.Text;

namespace Tarnwick
{
    /// <summary>From the library's bytes to results.</summary>
    internal static class Answer
    {
        private static readonly Encoding StrictUtf8 = new UTF8Encoding(false, true);

        public static object Parse(byte[] bytes, string function)
        {
            try
            {
                return JsonReader.Read(StrictUtf8.GetString(bytes));
            }
            catch (DecoderFallbackException error)
            {
                throw Invalid("The answer of " + function + " is not UTF-8.", error);
            }
            catch (FormatException error)
            {
                throw Invalid("The answer of " + function + " is " + error.Message + ".", error);
            }
        }

        public static IReadOnlyList<T> List<T>(object answer, Func<Members, T> make, string what)
        {
            if (!(answer is List<object> values)) throw Invalid("The answer is " + KindOf(answer) + ", not an array.");
            return values.Select(value => make(new Members(value, what))).ToArray();
        }

        public static TarnwickException Invalid(string problem, Exception inner = null)
        {
            return new TarnwickException(TarnwickErrorKind.AnswerInvalid,
                problem + " Is this Tarnwick.dll of version " + TarnwickLibrary.Version + "?", inner);
        }

        public static string KindOf(object value)
        {
            if (value is Dictionary<string, object>) return "an object";
            if (value is List<object>) return "an array";
            if (value is string) return "a text";
            return value == null ? "null" : value is bool ? "true or false" : "a number";
        }
    }

    /// <summary>The members of one object of an answer, by type.</summary>
    internal sealed class Members
    {
        private readonly Dictionary<string, object> values;
        private readonly string what;

        public Members(object value, string what)
        {
            this.what = what;
            values = value as Dictionary<string, object> ??
                     throw Answer.Invalid("The answer holds " + Answer.KindOf(value) + " where " + what + " is expected.");
        }

        public string Text(string name)
        {
            return values.TryGetValue(name, out object value) && value is string text ? text : throw Lacks(name, "a text");
        }

        public string OptionalText(string name)
        {
            return values.ContainsKey(name) ? Text(name) : null;
        }

        public int Number(string name)
        {
            return values.TryGetValue(name, out object value) && value is long number && number == (int)number
                ? (int)number
                : throw Lacks(name, "a number of 32 bits");
        }

        private TarnwickException Lacks(string name, string kind)
        {
            return Answer.Invalid("The answer lacks \"" + name + "\" of " + what + ", or it is not " + kind + ".");
        }
    }
}
