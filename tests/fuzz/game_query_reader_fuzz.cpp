#include "inventory/game_query_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::wstring text(data, data + size);
  const std::vector<tarnwick::GameQuery> queries = tarnwick::ParseGameQueryList(text);
  for (const tarnwick::GameQuery& query : queries) {
    // Every value is a part of the text, without quotes, and no entry lacks its executable.
    for (const std::wstring* value : {&query.name, &query.exeName, &query.exePath}) {
      if (value->find(L'"') != std::wstring::npos || text.find(*value) == std::wstring::npos) std::abort();
    }
    if (query.exeName.empty()) std::abort();
  }
  return 0;
}
