#include "host/application_counts.h"

#include <fmt/format.h>

#include "host/presentation.h"

namespace tarnwick::host {
namespace {

uint64_t PagesOf(const ApplicationCounts& counts) {
  return (counts.total + counts.pageSize - 1) / counts.pageSize;
}

std::string WithoutExecutable(const ApplicationCounts& counts) {
  if (!counts.cached || *counts.cached <= counts.total) return {};
  const uint64_t count = *counts.cached - counts.total;
  return fmt::format("{}{} {} no executable and {} not shown.\n", count, counts.total > 0 ? " more" : "",
                     count == 1 ? "has" : "have", count == 1 ? "is" : "are");
}

}  // namespace

uint64_t CountItems(uint64_t known, const std::function<bool(uint64_t)>& exists) {
  uint64_t step = 1;
  for (; exists(known + step); step *= 2) known += step;
  // The number of items lies from `known` to just below `absent`.
  uint64_t absent = known + step;
  while (absent - known > 1) {
    const uint64_t middle = known + (absent - known) / 2;
    (exists(middle) ? known : absent) = middle;
  }
  return known;
}

std::string CountsText(const ApplicationCounts& counts) {
  const std::string all = Counted(counts.total, "application", "applications");
  if (counts.total == 0) return WithoutExecutable(counts);
  if (counts.shown == counts.total) return all + ".\n" + WithoutExecutable(counts);
  return fmt::format("{} of {} (page {} of {}; --all shows all).\n", counts.shown, all, counts.page,
                     PagesOf(counts)) +
         WithoutExecutable(counts);
}

std::string MissingPageText(const ApplicationCounts& counts) {
  if (counts.shown > 0 || counts.page <= 1) return {};
  const std::string all = Counted(counts.total, "application", "applications");
  if (counts.total == 0) return fmt::format("there is no page {}: {} found", counts.page, all);
  const uint64_t pages = PagesOf(counts);
  return fmt::format("there is no page {}: {} {} {} of {}", counts.page, all,
                     counts.total == 1 ? "makes" : "make", Counted(pages, "page", "pages"), counts.pageSize);
}

}  // namespace tarnwick::host
