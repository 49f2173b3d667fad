using System;
using System.Collections.Generic;
using System.Globalization;
using System.Text;

namespace Tarnwick
{
    /// <summary>Reads JSON, and nothing else than JSON: objects as Dictionary, arrays as List, texts, long, double, bool
    /// and null. Of members with one name the last counts.</summary>
    internal sealed class JsonReader
    {
        private const int DeepestNesting = 64;

        private readonly string text;
        private int at;
        private int depth;

        private JsonReader(string text)
        {
            this.text = text;
        }

        /// <exception cref="FormatException">The text is no JSON; the message names the character, counted from 1.</exception>
        public static object Read(string text)
        {
            var reader = new JsonReader(text);
            object value = reader.Value();
            reader.SkipBlanks();
            return reader.at == text.Length ? value : throw reader.Error("the end");
        }

        private FormatException Error(string wanted)
        {
            return new FormatException("no JSON at character " + (at + 1).ToString(CultureInfo.InvariantCulture) + ": " +
                                       wanted + " is expected");
        }

        private char Next => at < text.Length ? text[at] : '\0';

        private void SkipBlanks()
        {
            while (Next == ' ' || Next == '\t' || Next == '\r' || Next == '\n') at++;
        }

        private bool Takes(char wanted)
        {
            SkipBlanks();
            if (at == text.Length || text[at] != wanted) return false;
            at++;
            return true;
        }

        private void Take(char wanted)
        {
            if (!Takes(wanted)) throw Error("'" + wanted + "'");
        }

        private object Value()
        {
            SkipBlanks();
            switch (Next)
            {
                case '{': return Nested(Object);
                case '[': return Nested(Array);
                case '"': return Text();
                case 't': return Word("true", true);
                case 'f': return Word("false", false);
                case 'n': return Word("null", null);
                default: return Number();
            }
        }

        private object Nested(Func<object> read)
        {
            if (++depth > DeepestNesting) throw Error("less nesting");
            object value = read();
            depth--;
            return value;
        }

        private object Object()
        {
            var members = new Dictionary<string, object>();
            Take('{');
            if (Takes('}')) return members;
            do
            {
                SkipBlanks();
                string name = Text();
                Take(':');
                members[name] = Value();
            } while (Takes(','));
            Take('}');
            return members;
        }

        private object Array()
        {
            var values = new List<object>();
            Take('[');
            if (Takes(']')) return values;
            do
            {
                values.Add(Value());
            } while (Takes(','));
            Take(']');
            return values;
        }

        private object Word(string word, object value)
        {
            if (string.CompareOrdinal(text, at, word, 0, word.Length) != 0) throw Error("a value");
            at += word.Length;
            return value;
        }

        private string Text()
        {
            if (Next != '"') throw Error("'\"'");
            at++;
            var value = new StringBuilder();
            while (Next != '"')
            {
                int start = at;
                while (Next >= ' ' && Next != '"' && Next != '\\') at++;
                value.Append(text, start, at - start);
                if (Next == '\\') value.Append(Escaped());
                else if (Next != '"') throw Error("a text's end, or an escape instead of a control character,");
            }
            at++;
            return value.ToString();
        }

        private char Escaped()
        {
            const string Names = "\"\\/bfnrt", Meanings = "\"\\/\b\f\n\r\t";
            at++;
            int which = at < text.Length ? Names.IndexOf(text[at]) : -1;
            if (which < 0 && Next != 'u') throw Error("an escape");
            at++;
            return which < 0 ? FourDigits() : Meanings[which];
        }

        private char FourDigits()
        {
            int unit = 0;
            for (int i = 0; i < 4; i++, at++)
            {
                int digit = "0123456789abcdef".IndexOf(char.ToLowerInvariant(Next));
                if (digit < 0) throw Error("a hexadecimal digit");
                unit = unit * 16 + digit;
            }
            return (char)unit;
        }

        private object Number()
        {
            int start = at;
            if (Next == '-') at++;
            if (Next == '0') at++;
            else Digits("a value");
            int whole = at;
            if (Next == '.')
            {
                at++;
                Digits("a digit");
            }
            if (Next == 'e' || Next == 'E') Exponent();
            string number = text.Substring(start, at - start);
            if (at == whole && long.TryParse(number, NumberStyles.AllowLeadingSign, CultureInfo.InvariantCulture, out long exact))
                return exact;
            return double.TryParse(number, NumberStyles.Float, CultureInfo.InvariantCulture, out double value) &&
                   !double.IsInfinity(value)
                ? value
                : throw Error("a smaller number");
        }

        private void Exponent()
        {
            at++;
            if (Next == '+' || Next == '-') at++;
            Digits("a digit");
        }

        private void Digits(string wanted)
        {
            int start = at;
            while (Next >= '0' && Next <= '9') at++;
            if (at == start) throw Error(wanted);
        }
    }
}
