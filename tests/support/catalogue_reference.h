#pragma once
// The catalogue's parser in its plain form: each of the 18 elements is searched for on its own, from the
// beginning of its record. Slow, and easy to see right: the tests, the fuzz target and the bench hold the
// parser against it.

#include "catalogue/catalogue_reader.h"

#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarnwick::tests {

struct CatalogueField {
  const char* name;
  std::string GameSignature::* field;
};

inline const std::vector<CatalogueField>& CatalogueFields() {
  using Game = GameSignature;
  static const std::vector<CatalogueField> kFields = {
      {"DisplayName", &Game::DisplayName},
      {"RegistryKey", &Game::RegistryKey},
      {"RegistryPathKeyName", &Game::RegistryPathKeyName},
      {"DefaultExe", &Game::DefaultExe},
      {"DefaultExe32", &Game::DefaultExe32},
      {"DefaultExe64", &Game::DefaultExe64},
      {"DefaultFolderExe", &Game::DefaultFolderExe},
      {"DefaultFolderExe32", &Game::DefaultFolderExe32},
      {"DefaultFolderExe64", &Game::DefaultFolderExe64},
      {"DefaultFolder", &Game::DefaultFolder},
      {"DefaultFolder32", &Game::DefaultFolder32},
      {"DefaultFolder64", &Game::DefaultFolder64},
      {"GameGUID", &Game::GameGUID},
      {"GameInfo", &Game::GameInfo},
      {"SourceExId", &Game::SourceExId},
      {"LaunchUrl", &Game::LaunchUrl},
      {"RunningExe", &Game::RunningExe},
  };
  return kFields;
}

inline bool IsSpacePlainly(char byte) { return std::isspace(static_cast<unsigned char>(byte)) != 0; }

inline std::string NormalizePlainly(std::string text) {
  while (!text.empty() && IsSpacePlainly(text.back())) text.pop_back();
  size_t first = 0;
  while (first < text.size() && IsSpacePlainly(text[first])) ++first;
  std::string out;
  for (size_t i = first; i < text.size(); ++i) {
    if (!IsSpacePlainly(text[i])) out += text[i];
    if (IsSpacePlainly(text[i]) && !IsSpacePlainly(text[i - 1])) out += ' ';
  }
  return out;
}

// As strtoul has it where unsigned long has 32 bits.
inline std::optional<uint32_t> ParseNumberPlainly(const std::string& text, int base) {
  size_t at = 0;
  while (at < text.size() && IsSpacePlainly(text[at])) ++at;
  const bool negative = at < text.size() && text[at] == '-';
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
  if (at == text.size() || std::isalnum(static_cast<unsigned char>(text[at])) == 0) return std::nullopt;
  char* end = nullptr;
  errno = 0;
  const unsigned long long value = std::strtoull(text.c_str() + at, &end, base);
  if (end == text.c_str() + at || errno == ERANGE || value > UINT32_MAX) return std::nullopt;
  return static_cast<uint32_t>(negative ? 0 - value : value);
}

inline std::string EncodePlainly(uint32_t code) {
  std::string out;
  const auto byte = [&](uint32_t bits) { out += static_cast<char>(static_cast<unsigned char>(bits & 0xFF)); };
  if (code < 0x80) {
    byte(code);
    return out;
  }
  const int trails = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  constexpr uint32_t kLead[] = {0, 0xC0, 0xE0, 0xF0};
  byte(kLead[trails] | code >> 6 * trails);
  for (int i = trails - 1; i >= 0; --i) byte(0x80 | (code >> 6 * i & 0x3F));
  return out;
}

// What the reference between the '&' at `at` and the first ';' that can end it stands for.
inline std::optional<std::string> ReferencePlainly(const std::string& text, size_t at, size_t& end) {
  const bool number = text[at + 1] == '#';
  const bool hexadecimal = number && at + 2 < text.size() && (text[at + 2] == 'x' || text[at + 2] == 'X');
  const size_t begin = at + (hexadecimal ? 3 : number ? 2 : 1);
  end = text.find(';', number ? begin : at);
  if (end == std::string::npos || end == begin) return std::nullopt;
  const std::string name = text.substr(begin, end - begin);
  if (number) {
    const std::optional<uint32_t> code = ParseNumberPlainly(name, hexadecimal ? 16 : 10);
    return code ? std::optional(EncodePlainly(*code)) : std::nullopt;
  }
  if (name == "amp") return "&";
  if (name == "lt") return "<";
  if (name == "gt") return ">";
  if (name == "quot") return "\"";
  if (name == "apos") return "'";
  return std::nullopt;
}

inline std::string DecodePlainly(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    size_t end = 0;
    const bool possible = text[i] == '&' && i + 1 < text.size();
    const std::optional<std::string> meant = possible ? ReferencePlainly(text, i, end) : std::nullopt;
    if (meant) {
      out += *meant;
      i = end;
    } else {
      out += text[i];
    }
  }
  return out;
}

inline GameList ParseCataloguePlainly(std::string_view text) {
  constexpr std::string_view kOpen = "<GameSignature>";
  constexpr std::string_view kClose = "</GameSignature>";
  GameList games;
  size_t position = 0;
  while (true) {
    const size_t start = text.find(kOpen, position);
    if (start == std::string_view::npos) return games;
    const size_t close = text.find(kClose, start);
    if (close == std::string_view::npos) return games;
    const std::string block(text.substr(start, close + kClose.size() - start));
    GameSignature game;
    for (const CatalogueField& row : CatalogueFields()) {
      game.*row.field = DecodePlainly(NormalizePlainly(ExtractElementText(block, row.name)));
    }
    game.SourceKind = ParseSourceKind(NormalizePlainly(ExtractElementText(block, "SourceEx")));
    games.push_back(std::move(game));
    position = close + kClose.size();
  }
}

inline bool SameGame(const GameSignature& one, const GameSignature& other) {
  for (const CatalogueField& row : CatalogueFields()) {
    if (one.*row.field != other.*row.field) return false;
  }
  return one.SourceKind == other.SourceKind;
}

// The first record in which the lists differ, one list's end included; -1 if they are the same.
inline int FirstDifference(const GameList& one, const GameList& other) {
  for (size_t i = 0; i < one.size() || i < other.size(); ++i) {
    if (i >= one.size() || i >= other.size() || !SameGame(one[i], other[i])) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace tarnwick::tests
