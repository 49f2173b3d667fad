// Edge: a catalogue file, from its path to its findings.
#include "host/catalogue/check_file.h"

#include "catalogue/xml_parser.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "host/catalogue/check_characters.h"
#include "host/catalogue/check_parser.h"
#include "host/catalogue/check_text.h"
#include "host/console.h"
#include "host/input_file.h"

namespace tarnwick::host {
namespace {

// Of such texts a parser could say nothing that isn't said already.
bool IsNoText(const Findings& findings) {
  return std::ranges::any_of(findings.list, [](const Finding& finding) {
    return finding.check == kUtf16 || finding.check == kNotDeciphered || finding.check == kTooLarge;
  });
}

// The first of what the parser and the strict look at characters find: behind a document type its entities
// are no fault of their own.
std::optional<Finding> FirstFault(std::string_view text) {
  std::optional<Finding> fault = FindParserFault(text);
  std::optional<Finding> character = FindCharacterFault(text);
  if (!fault || (character && fault->check == kNotWellFormed && character->at < fault->at)) return character;
  return fault;
}

}  // namespace

CatalogueText ReadCatalogueText(const std::string& path) {
  std::error_code none;
  const auto size = std::filesystem::file_size(Widen(path), none);
  if (!none && size > kMostBytes) return {static_cast<size_t>(size), false, {}};
  InputFile input = ReadInputFile(path);
  if (input.fault != FileFault::kNone) throw std::runtime_error(ExplainFault(path, input.fault));
  CatalogueText file{input.bytes.size(), false, ReadCatalogueFile(Widen(path))};
  file.enciphered = file.text != input.bytes;
  return file;
}

Findings CheckWholeText(std::string_view text) {
  Findings findings = CheckText(text);
  if (!IsNoText(findings)) {
    if (std::optional<Finding> fault = FirstFault(text)) AddFinding(findings, *std::move(fault));
  }
  PlaceFindings(findings, text);
  return findings;
}

Findings CheckFile(const std::string& path) {
  const CatalogueText file = ReadCatalogueText(path);
  return file.bytes > kMostBytes ? TooLarge(file.bytes) : CheckWholeText(file.text);
}

}  // namespace tarnwick::host
