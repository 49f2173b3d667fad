#pragma once
// Text operations that every subsystem shares. None touches Windows.

#include <cstddef>
#include <istream>
#include <string>
#include <vector>

namespace tarnwick {

// Installer and uninstaller file names, in lower case, that are never a game's executable. Read-only.
extern const std::vector<std::string> IgnoredExeNames;

// Appends a wide text to a wide JSON text: backslash and quote escaped, line feed as \n, other units below
// 0x20 as \u00xx in lower-case hexadecimal; everything else, slashes and non-ASCII included, as it stands.
void AppendJsonEscaped(std::wstring& out, const std::wstring& text);

// Appends `"key":"text"` to a JSON object under construction, with the text escaped, and a comma in front
// unless it is the first.
void AppendJsonMember(std::wstring& out, const wchar_t* key, const std::wstring& text);

// RFC 4648 with padding and no line breaks; `length` in bytes.
std::string Base64Encode(const unsigned char* bytes, size_t length);

// Removes every trade mark sign and every registered sign from a UTF-8 text, and nothing else: a blank before
// the sign stays.
void StripTrademarkSigns(std::string& name);

// The file name of a path without its extension, or "Unknown" if the path has no separator, or no dot behind
// it.
std::string ExeStemOrUnknown(const std::string& path);

// A game's name as it is shown: without trade mark signs, and by its executable where it has none.
std::string ShownGameName(const std::string& name, const std::string& exePath);

// Each pair of backslashes becomes one, from the start on: four become two, and so do three. Nothing else is
// unescaped.
std::string HalveBackslashes(std::string text);

// A path as the JSON members "loc" and "exepath" show it: backslashes only, runs of them collapsed, but for
// the double backslash that begins a network path.
std::wstring NormalizeLocPath(const std::wstring& path);

// Two wide paths with one backslash between them.
std::wstring JoinWidePath(const std::wstring& first, const std::wstring& second);

// Byte by byte, by the C library's rules; bytes above 127 stay in the C locale.
std::string ToLowerBytes(std::string text);
std::string ToUpperBytes(std::string text);

// Drops the first and last character if both are double quotes; a lone double quote becomes empty.
std::string StripOuterQuotes(const std::string& text);

// Without those of the given characters that stand at its start and end.
std::string TrimCharacters(const std::string& text, const char* characters);

// Where a wide text begins with a double quote and has a second one: what stands between them. Otherwise the
// text.
std::wstring UnquotedHead(const std::wstring& text);

// Removes all leading, or all trailing, backslashes and slashes.
std::string TrimLeadingSeparators(const std::string& path);
std::string TrimTrailingSeparators(const std::string& path);

// The rest of a stream as one text. A read error ends it there, unless the stream is told to throw.
std::string ReadAll(std::istream& stream);

}  // namespace tarnwick
