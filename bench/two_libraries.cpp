// Scans with two builds of Tarnwick.dll in turns, and tells the ratio of their times within a round.
//
// usage: two_libraries_bench FIRST.DLL SECOND.DLL CATALOGUE ROUNDS
#include <windows.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "quantiles.h"

namespace {

using Scan = int (*)(const char*, char*, int);

Scan LoadScan(const char* path) {
  const HMODULE library = LoadLibraryA(path);
  if (library == nullptr) return nullptr;
  return reinterpret_cast<Scan>(
      reinterpret_cast<void*>(GetProcAddress(library, "IA_RunMultiPlatformGameScanJson")));
}

double Milliseconds(Scan scan, const char* catalogue) {
  static char answer[1 << 22];
  const auto start = std::chrono::steady_clock::now();
  scan(catalogue, answer, sizeof answer);
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main(int count, char** arguments) {
  const Scan first = count == 5 ? LoadScan(arguments[1]) : nullptr;
  const Scan second = count == 5 ? LoadScan(arguments[2]) : nullptr;
  if (first == nullptr || second == nullptr) {
    std::fputs("usage: two_libraries_bench FIRST.DLL SECOND.DLL CATALOGUE ROUNDS\n", stderr);
    return 2;
  }
  std::vector<double> ratios, noise, times;
  for (int round = 0; round < std::atoi(arguments[4]); ++round) {
    const double one = Milliseconds(first, arguments[3]);
    ratios.push_back(Milliseconds(second, arguments[3]) / one);
    noise.push_back(Milliseconds(first, arguments[3]) / one);
    times.push_back(one);
  }
  PrintRow("first", times, "ms");
  PrintRow("second / first", ratios, "");
  PrintRow("first / first, the noise", noise, "");
  return 0;
}
