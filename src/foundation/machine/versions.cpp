// Edge: version resources.
#include "foundation/machine/versions.h"

#include "foundation/conversions.h"
#include "foundation/machine/observer.h"
#include "foundation/windows_api.h"

#include <winver.h>
#include <cstdio>
#include <cwchar>

namespace tarnwick {
namespace {

using machine::AskMachine;

static_assert(sizeof(VersionTranslation) == 4, "as the resource lays it out");

VersionBlock AskBlock(const std::wstring& path) {
  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &ignored);
  VersionBlock block(size);
  if (size == 0 || !GetFileVersionInfoW(path.c_str(), 0, size, block.data())) return {};
  return block;
}

VersionBlock AskNarrowBlock(const std::string& path) {
  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeA(path.c_str(), &ignored);
  VersionBlock block(size);
  if (size == 0 || !GetFileVersionInfoA(path.c_str(), 0, size, block.data())) return {};
  return block;
}

Answer TellBlock(const VersionBlock& block) {
  return {!block.empty(), std::to_string(block.size()) + " bytes"};
}

}  // namespace

VersionBlock ReadVersionBlock(const std::wstring& path) {
  return AskMachine([&] { return Question{QuestionKind::kVersionResource, WideToUtf8(path), "", {}, {}}; },
                    [] { return VersionBlock(); }, [&] { return AskBlock(path); }, TellBlock);
}

VersionBlock ReadNarrowVersionBlock(const std::string& path) {
  return AskMachine([&] { return Question{QuestionKind::kVersionResource, path, "narrow", {}, {}}; },
                    [] { return VersionBlock(); }, [&] { return AskNarrowBlock(path); }, TellBlock);
}

std::vector<VersionTranslation> VersionTranslations(const VersionBlock& block) {
  void* rows = nullptr;
  UINT bytes = 0;
  if (!VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", &rows, &bytes) || rows == nullptr)
    return {};
  const auto* first = static_cast<const VersionTranslation*>(rows);
  return {first, first + bytes / sizeof(VersionTranslation)};
}

std::optional<std::wstring> VersionText(const VersionBlock& block, VersionTranslation translation,
                                        const std::wstring& name) {
  wchar_t query[64];
  swprintf(query, 64, L"\\StringFileInfo\\%04x%04x\\%ls", translation.language, translation.codePage,
           name.c_str());
  void* text = nullptr;
  UINT length = 0;
  if (!VerQueryValueW(block.data(), query, &text, &length) || length == 0 || text == nullptr)
    return std::nullopt;
  const auto* units = static_cast<const wchar_t*>(text);
  return std::wstring(units, wcsnlen(units, length));
}

std::optional<VersionTranslation> FirstNarrowTranslation(const VersionBlock& block) {
  void* rows = nullptr;
  UINT length = 0;
  if (!VerQueryValueA(block.data(), "\\VarFileInfo\\Translation", &rows, &length) || length < 4)
    return std::nullopt;
  return *static_cast<const VersionTranslation*>(rows);
}

std::optional<std::string> NarrowVersionText(const VersionBlock& block, VersionTranslation translation,
                                             const std::string& name) {
  char query[64];
  std::snprintf(query, sizeof(query), "\\StringFileInfo\\%04x%04x\\%s", translation.language,
                translation.codePage, name.c_str());
  void* text = nullptr;
  UINT length = 0;
  if (!VerQueryValueA(block.data(), query, &text, &length) || text == nullptr) return std::nullopt;
  return AnsiToUtf8(std::string(static_cast<const char*>(text), length).c_str());
}

}  // namespace tarnwick
