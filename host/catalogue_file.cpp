#include "host/catalogue_file.h"

#include <fmt/format.h>
#include <windows.h>

#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "catalogue/catalogue_reader.h"
#include "catalogue/xml_parser.h"
#include "host/catalogue/check_encoding.h"
#include "host/console.h"
#include "host/input_file.h"
#include "host/presentation.h"

namespace tarnwick::host {
namespace {

constexpr const char* kDefaultNames[] = {"MasterGameList_decrypted.xml", "MasterGameList.xml"};
constexpr const char* kStarterName = "MasterGameList.xml";

size_t CountOf(std::string_view text, std::string_view part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

bool HoldsControlCharacters(std::string_view text) {
  constexpr std::string_view kAllowed = "\t\n\v\f\r";
  for (const char byte : text) {
    if (static_cast<unsigned char>(byte) < 0x20 && kAllowed.find(byte) == kAllowed.npos) return true;
  }
  return false;
}

// Cipher text is bytes of all kinds: sixteen of them are hardly ever text.
bool IsText(const std::string& bytes) {
  return !HoldsControlCharacters(bytes) && Narrow(Widen(bytes)) == bytes;
}

std::string Counts(const std::string& path, const CatalogueFile& file) {
  return fmt::format("{} opens {}, closes {}; the library read {}", path,
                     Counted(file.opened, "record", "records"), file.closed, file.records);
}

// For a text in which the library finds no record.
std::string ExplainNoRecords(const std::string& path, const CatalogueFile& file) {
  if (IsUtf16(file.text)) return path + " is UTF-16, which the library does not read; save it as UTF-8";
  if (file.opened > 0) return Counts(path, file) + "; close each <GameSignature>";
  if (!file.enciphered && !IsText(file.text)) {
    return path +
           " looks enciphered, but can't be deciphered: it was cut or changed, or has another key; get it "
           "anew";
  }
  return path + (file.enciphered ? " deciphers, but is" : " is") +
         " not a catalogue: it holds no <GameSignature>; name a list of games";
}

bool IsThere(const std::filesystem::path& path) {
  std::error_code ignored;
  return std::filesystem::exists(path, ignored);
}

// Of the library's own two names, the first that the current folder has; empty for neither.
std::string CatalogueHere() {
  for (const char* name : kDefaultNames) {
    if (IsThere(name)) return name;
  }
  return {};
}

std::filesystem::path ProgramFolder() {
  std::wstring program(32768, L'\0');
  program.resize(GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size())));
  return std::filesystem::path(program).parent_path();
}

}  // namespace

CatalogueFile InspectCatalogue(const std::string& path) {
  CatalogueFile file;
  InputFile input = ReadInputFile(path);
  file.fault = ExplainFault(path, input.fault);
  if (!file.fault.empty()) return file;
  if (input.bytes.empty()) file.fault = path + " is empty; get the catalogue anew";
  file.bytes = std::move(input.bytes);
  file.text = ReadCatalogueFile(Widen(path));
  file.enciphered = file.text != file.bytes;
  file.opened = CountOf(file.text, "<GameSignature>");
  file.closed = CountOf(file.text, "</GameSignature>");
  file.records = ParseCatalogue(file.text).size();
  if (file.fault.empty() && file.records == 0) file.fault = ExplainNoRecords(path, file);
  return file;
}

std::string CatalogueWarning(const std::string& path, const CatalogueFile& file) {
  const bool whole = file.opened == file.closed && file.records == file.opened;
  return whole ? std::string() : Counts(path, file);
}

std::string StarterCatalogue(const std::string& named) {
  if (!named.empty() || !CatalogueHere().empty()) return {};
  const std::filesystem::path starter = ProgramFolder() / kStarterName;
  return IsThere(starter) ? Narrow(starter.wstring()) : std::string();
}

std::string CatalogueToScan(const std::string& named) {
  if (!named.empty()) return named;
  if (std::string here = CatalogueHere(); !here.empty()) return here;
  throw std::runtime_error(fmt::format("there is no {} and no {} in the current folder; name a catalogue",
                                       kDefaultNames[0], kDefaultNames[1]));
}

}  // namespace tarnwick::host
