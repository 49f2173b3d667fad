#pragma once
// How many applications there are beside those that an answer shows. The library tells no total, but whether
// there is an application of a given number.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace tarnwick::host {

struct ApplicationCounts {
  uint64_t shown = 0;
  uint64_t total = 0;  // with an executable, by the same filter
  uint64_t page = 1;
  uint64_t pageSize = 0;           // 0: all on one page
  std::optional<uint64_t> cached;  // with and without an executable; absent where that can't be told
};

// The number of items, of which `known` are known to exist, by asking whether there is an n-th one, n counted
// from 1. Asks about twice as often as the number's logarithm.
uint64_t CountItems(uint64_t known, const std::function<bool(uint64_t)>& exists);

// "20 of 41 applications (page 1 of 3; --all shows all)." and where it is known how many have no executable,
// that too; each line ended by a line feed. Empty where there is nothing to tell of an empty list.
std::string CountsText(const ApplicationCounts& counts);

// "there is no page 9: 41 applications make 3 pages of 20", if the page lies behind the end; otherwise empty.
std::string MissingPageText(const ApplicationCounts& counts);

}  // namespace tarnwick::host
