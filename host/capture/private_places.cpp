// Reader.
#include "host/capture/private_places.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace tarnwick::host {
namespace {

using Text = std::u32string_view;
using Span = std::optional<PrivateSpan>;

constexpr Text kNobodies[] = {U"public", U"default",   U"default user", U"all users", U"defaultuser0",
                              U"0",      U"anonymous", U"true",         U"false",     U"null",
                              U"none",   U"unknown",   U"offline",      U"*",         U"%username%"};

// Words that stand on every machine. Replacing each of them would spoil what the capture is for.
constexpr Text kOrdinary[] = {
    U"user",      U"users",     U"admin",    U"administrator", U"root",    U"owner",    U"guest",
    U"gamer",     U"game",      U"games",    U"steam",         U"epic",    U"common",   U"desktop",
    U"documents", U"downloads", U"home",     U"local",         U"roaming", U"appdata",  U"system",
    U"windows",   U"program",   U"programs", U"files",         U"data",    U"software", U"microsoft",
    U"uninstall", U"launcher",  U"client",   U"library",       U"server",  U"test",     U"localhost",
    U"live",      U"release",   U"retail",   U"valve",         U"config",  U"wine",     U"temp"};

// Fields of launchers' files, and values of the registry, that hold an account's name or id.
constexpr Text kAccountFields[] = {
    U"accountname",    U"account_name", U"account",       U"accountid",     U"account_id", U"personaname",
    U"persona",        U"personaid",    U"persona_id",    U"autologinuser", U"lastuser",   U"lastowner",
    U"steamid",        U"steamid64",    U"userid",        U"user_id",       U"username",   U"user_name",
    U"login",          U"loginname",    U"email",         U"mail",          U"battletag",  U"battle_tag",
    U"puuid",          U"riotid",       U"epicaccountid", U"nucleusid",     U"pidid",      U"pid_id",
    U"ubiaccountid",   U"profileid",    U"profile_id",    U"activeuser",    U"ownerid",    U"owner_id",
    U"registeredowner"};

// What stands behind an @ in the names of pictures and packages.
constexpr Text kNoDomains[] = {U"png", U"jpg",  U"jpeg", U"gif", U"ico", U"svg", U"webp", U"bmp", U"dll",
                               U"exe", U"json", U"js",   U"css", U"ts",  U"mjs", U"xml",  U"txt", U"pak"};

template <size_t count>
bool IsOneOf(const Text (&list)[count], Text text) {
  return std::ranges::find(list, text) != std::end(list);
}

bool IsDigit(char32_t character) { return character >= '0' && character <= '9'; }
bool IsSeparator(char32_t character) { return character == '\\' || character == '/'; }
bool EndsName(char32_t character) {
  return character < 0x20 || character == 0xFFFFFFFF || Text(U"\\/\"<>|*?:").find(character) != Text::npos;
}
bool IsWordAt(Text text, size_t at) { return at < text.size() && IsWordCharacter(text[at]); }
bool StartsAt(Text text, size_t at, Text part) { return text.substr(at, part.size()) == part; }

template <class Test>
size_t EndOf(Text text, size_t at, Test&& test) {
  while (at < text.size() && test(text[at])) ++at;
  return at;
}

// The end of a folder's name and the separators behind it, if it stands at `at` behind one; otherwise 0.
size_t BehindFolder(Text text, size_t at, Text folder) {
  if (at == 0 || !IsSeparator(text[at - 1]) || !StartsAt(text, at, folder)) return 0;
  const size_t end = EndOf(text, at + folder.size(), IsSeparator);
  return end > at + folder.size() ? end : 0;
}

bool StandsBehindDrive(Text text, size_t at) {
  while (at > 0 && IsSeparator(text[at - 1])) --at;
  return at >= 2 && text[at - 1] == ':' && text[at - 2] >= 'a' && text[at - 2] <= 'z';
}

// What follows C:\Users\. Where no drive stands in front, it is no more than a name that looks like it.
Span ProfileAt(Text text, size_t at) {
  constexpr Text kFolders[] = {U"users", U"documents and settings", U"home"};
  for (const Text folder : kFolders) {
    const size_t begin = BehindFolder(text, at, folder);
    if (begin == 0) continue;
    size_t end = EndOf(text, begin, [](char32_t character) { return !EndsName(character); });
    while (end > begin && text[end - 1] == ' ') --end;
    const Text name = text.substr(begin, end - begin);
    if (name.empty() || IsNobody(name) || name.find('%') != Text::npos) return std::nullopt;
    return PrivateSpan{begin, end, PrivateKind::kUser, folder != U"home" && StandsBehindDrive(text, at)};
  }
  return std::nullopt;
}

// The numbers of S-1-5-21-... and S-1-12-1-...: a machine's, a domain's or a cloud account's.
Span SidAt(Text text, size_t at) {
  constexpr Text kHeads[] = {U"s-1-5-21-", U"s-1-12-1-"};
  for (const Text head : kHeads) {
    if (!StartsAt(text, at, head) || (at > 0 && IsWordCharacter(text[at - 1]))) continue;
    const size_t begin = at + head.size();
    const size_t end =
        EndOf(text, begin, [](char32_t character) { return IsDigit(character) || character == '-'; });
    if (end > begin) return PrivateSpan{begin, end, PrivateKind::kSid, false};
  }
  return std::nullopt;
}

bool IsMailCharacter(char32_t character) {
  return IsWordCharacter(character) || Text(U"._+-").find(character) != Text::npos;
}

// Around an @.
Span MailAt(Text text, size_t at) {
  if (text[at] != '@') return std::nullopt;
  size_t begin = at;
  while (begin > 0 && at - begin < 64 && IsMailCharacter(text[begin - 1])) --begin;
  size_t end = EndOf(text, at + 1, [](char32_t character) {
    return character < 0x80 && character != '_' && character != '+' && IsMailCharacter(character);
  });
  while (end > at && !IsWordCharacter(text[end - 1])) --end;
  const Text domain = text.substr(at + 1, end - at - 1);
  const size_t dot = domain.rfind('.');
  if (begin == at || dot == Text::npos || dot == 0) return std::nullopt;
  const Text last = domain.substr(dot + 1);
  if (last.size() < 2 || std::ranges::any_of(last, IsDigit) || IsOneOf(kNoDomains, last)) return std::nullopt;
  return PrivateSpan{begin, end, PrivateKind::kMail, false};
}

// The last ten digits of a Steam id of seventeen.
Span SteamIdAt(Text text, size_t at) {
  constexpr Text kHead = U"7656119";
  constexpr size_t kDigits = 17;
  if (!StartsAt(text, at, kHead) || (at > 0 && IsDigit(text[at - 1]))) return std::nullopt;
  if (EndOf(text, at, IsDigit) != at + kDigits) return std::nullopt;
  return PrivateSpan{at + kHead.size(), at + kDigits, PrivateKind::kAccount, false};
}

// The account's number that a folder of Steam's is called by.
Span SteamFolderAt(Text text, size_t at) {
  const size_t begin = BehindFolder(text, at, U"userdata");
  const size_t end = begin == 0 ? 0 : EndOf(text, begin, IsDigit);
  if (end == begin || IsWordAt(text, end) || IsNobody(text.substr(begin, end - begin))) return std::nullopt;
  return PrivateSpan{begin, end, PrivateKind::kAccount, true};
}

bool IsFieldCharacter(char32_t character) {
  return character == '_' || (character < 0x80 && IsWordCharacter(character));
}
bool IsBlank(char32_t character) { return character == ' ' || character == '\t'; }

// Where a field's value begins: "name" "value", "name": "value", name: value, name=value or, in binary VDF,
// name, zero, value. 0 where none does.
size_t BehindFieldName(Text text, size_t end) {
  if (end < text.size() && text[end] == 0) return end + 1;
  size_t at = end;
  const bool quoted = at < text.size() && text[at] == '"';
  if (quoted) ++at;
  at = EndOf(text, at, IsBlank);
  const bool marked = at < text.size() && (text[at] == ':' || text[at] == '=');
  if (marked) at = EndOf(text, at + 1, IsBlank);
  return marked || (quoted && at < text.size() && text[at] == '"') ? at : 0;
}

size_t EndOfFieldValue(Text text, size_t begin, bool quoted) {
  return EndOf(text, begin, [&](char32_t character) {
    if (character < 0x20 || character == '"' || character == 0xFFFFFFFF) return false;
    return quoted || Text(U" ,;}]&").find(character) == Text::npos;
  });
}

Span AccountAt(Text text, size_t at) {
  if (!IsFieldCharacter(text[at]) || (at > 0 && IsFieldCharacter(text[at - 1]))) return std::nullopt;
  const size_t end = EndOf(text, at, IsFieldCharacter);
  if (!IsAccountField(text.substr(at, end - at))) return std::nullopt;
  size_t begin = BehindFieldName(text, end);
  if (begin == 0 || begin >= text.size()) return std::nullopt;
  const bool quoted = text[begin] == '"' || text[begin - 1] == 0;
  if (text[begin] == '"') ++begin;
  const size_t close = EndOfFieldValue(text, begin, quoted);
  if (close == begin || IsNobody(text.substr(begin, close - begin))) return std::nullopt;
  return PrivateSpan{begin, close, PrivateKind::kAccount, true};
}

// Each row looks for one thing at one place.
using PlaceTest = Span (*)(Text text, size_t at);
constexpr PlaceTest kPlaces[] = {ProfileAt, SidAt, MailAt, SteamIdAt, SteamFolderAt, AccountAt};

}  // namespace

std::vector<PrivateSpan> PrivateSpans(const CodedText& coded) {
  std::vector<PrivateSpan> spans;
  for (size_t at = 0; at < coded.folded.size(); ++at) {
    for (const PlaceTest test : kPlaces) {
      if (const Span span = test(coded.folded, at)) spans.push_back(*span);
    }
  }
  return spans;
}

bool IsNobody(Text folded) { return IsOneOf(kNobodies, folded); }

bool IsOrdinary(Text folded) {
  constexpr size_t kShortestName = 3;
  constexpr size_t kShortestNumber = 5;
  if (std::ranges::all_of(folded, IsDigit)) return folded.size() < kShortestNumber;
  return folded.size() < kShortestName || IsOneOf(kOrdinary, folded);
}

bool IsAccountField(Text folded) { return IsOneOf(kAccountFields, folded); }

}  // namespace tarnwick::host
