#include "host/edit_distance.h"

#include <algorithm>
#include <string>
#include <vector>

namespace tarnwick::host {

size_t EditDistance(std::u32string_view from, std::u32string_view to) {
  std::vector<std::vector<size_t>> cost(from.size() + 1, std::vector<size_t>(to.size() + 1));
  for (size_t i = 0; i <= from.size(); ++i) {
    for (size_t j = 0; j <= to.size(); ++j) {
      if (i == 0 || j == 0) {
        cost[i][j] = i + j;
        continue;
      }
      cost[i][j] = std::min(
          {cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1)});
      if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1])
        cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
    }
  }
  return cost[from.size()][to.size()];
}

size_t EditDistance(std::string_view from, std::string_view to) {
  const auto widened = [](std::string_view text) { return std::u32string(text.begin(), text.end()); };
  return EditDistance(widened(from), widened(to));
}

}  // namespace tarnwick::host
