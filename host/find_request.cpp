#include "host/find_request.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "foundation/conversions.h"
#include "host/catalogue/check_encoding.h"
#include "host/input_file.h"
#include "inventory/game_query_reader.h"

namespace tarnwick::host {
namespace {

constexpr const char* kExample = R"([{"name":"Foo","exeName":"foo.exe","exePath":"bin"}])";

std::string Label(size_t number, const std::string& name, const std::string& exeName) {
  std::string label;
  if (!name.empty()) label = '"' + name + '"';
  if (!exeName.empty()) label += (label.empty() ? "" : ", ") + exeName;
  return fmt::format("entry {}{}", number, label.empty() ? "" : " (" + label + ")");
}

RequestEntry EntryOf(const std::wstring& object, size_t number) {
  return {WideToUtf8(object),
          Label(number, WideToUtf8(JsonStringValue(object, L"name")),
                WideToUtf8(JsonStringValue(object, L"exeName"))),
          !ParseGameQueryList(object).empty()};
}

std::string Fault(const std::string& path, const InputFile& file) {
  if (file.fault != FileFault::kNone) return ExplainFault(path, file.fault);
  if (file.bytes.empty()) return fmt::format("{} is empty; a request looks like {}", path, kExample);
  if (IsUtf16(file.bytes)) return path + " is UTF-16, which the library does not read; save it as UTF-8";
  return {};
}

}  // namespace

FindRequest FindRequestFromText(const std::string& text) {
  const std::wstring wide = Utf8ToWide(text);
  FindRequest request;
  size_t begin = wide.find(L'{');
  while (begin != wide.npos) {
    const size_t end = wide.find(L'}', begin);
    request.openEnd = end == wide.npos;
    if (request.openEnd) return request;
    request.entries.push_back(EntryOf(wide.substr(begin, end + 1 - begin), request.entries.size() + 1));
    begin = wide.find(L'{', end);
  }
  return request;
}

FindRequest ReadFindRequest(const std::string& path) {
  const InputFile file = ReadInputFile(path);
  const std::string fault = Fault(path, file);
  if (!fault.empty()) throw std::runtime_error(fault);
  FindRequest request = FindRequestFromText(file.bytes);
  if (request.entries.empty())
    throw std::runtime_error(fmt::format("{} holds no object; a request looks like {}", path, kExample));
  return request;
}

size_t CountAsking(const FindRequest& request) {
  return static_cast<size_t>(std::ranges::count(request.entries, true, &RequestEntry::asks));
}

std::vector<std::string> IgnoredEntries(const FindRequest& request) {
  std::vector<std::string> lines;
  for (const RequestEntry& entry : request.entries) {
    if (!entry.asks) lines.push_back(entry.label + " has no exeName, so the library ignores it");
  }
  if (request.openEnd)
    lines.push_back(fmt::format("what stands behind entry {} has no closing brace, so the library ignores it",
                                request.entries.size()));
  return lines;
}

}  // namespace tarnwick::host
