#pragma once
// Rows of quartiles, for the benches that time their rounds themselves.

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <vector>

inline double Quantile(std::vector<double> values, double part) {
  std::sort(values.begin(), values.end());
  return values[static_cast<size_t>(part * static_cast<double>(values.size() - 1))];
}

inline void PrintRow(const char* name, const std::vector<double>& values, const char* unit) {
  std::printf("%-28s %8.3f %8.3f %8.3f %s\n", name, Quantile(values, 0.25), Quantile(values, 0.5),
              Quantile(values, 0.75), unit);
}
