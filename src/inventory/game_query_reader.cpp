// Reader: the text of lookup requests.
#include "inventory/game_query_reader.h"

#include <utility>

namespace tarnwick {
namespace {

constexpr size_t kNone = std::wstring_view::npos;

size_t FindFrom(std::wstring_view text, wchar_t unit, size_t from) {
  return from == kNone ? kNone : text.find(unit, from);
}

size_t Behind(size_t position) { return position == kNone ? kNone : position + 1; }

}  // namespace

std::wstring JsonStringValue(std::wstring_view object, std::wstring_view key) {
  std::wstring quoted = L"\"";
  quoted.append(key).append(L"\"");
  // Kept: the colon is looked for from the key's own start, so one inside of the key counts
  // (docs/decisions/json-text.md).
  const size_t colon = FindFrom(object, L':', object.find(quoted));
  const size_t first = Behind(FindFrom(object, L'"', colon));
  const size_t last = FindFrom(object, L'"', first);
  return last == kNone ? std::wstring() : std::wstring(object.substr(first, last - first));
}

std::vector<GameQuery> ParseGameQueryList(const std::wstring& text) {
  const std::wstring_view view = text;
  std::vector<GameQuery> queries;
  size_t cursor = 0;
  while (true) {
    const size_t begin = FindFrom(view, L'{', cursor);
    const size_t end = FindFrom(view, L'}', begin);
    if (end == kNone) return queries;
    // Kept: nested objects are not understood; the first closing brace ends the object
    // (docs/decisions/json-text.md).
    const std::wstring_view object = view.substr(begin, end - begin + 1);
    GameQuery query{JsonStringValue(object, L"name"), JsonStringValue(object, L"exeName"),
                    JsonStringValue(object, L"exePath")};
    if (!query.exeName.empty()) queries.push_back(std::move(query));
    cursor = end + 1;
  }
}

}  // namespace tarnwick
