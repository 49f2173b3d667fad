// What the observer's hook costs while nobody listens: one question of Windows asked bare and through the machine room,
// in turns. Google Benchmark isn't packaged for this compiler, so the rounds are timed here.
#include "foundation/machine/known_folders.h"
#include "foundation/windows_api.h"
#include "quantiles.h"

#include <chrono>
#include <cstdio>
#include <vector>

namespace {

constexpr int kRounds = 201;
constexpr int kCalls = 100'000;

bool AskBare() {
  BOOL wow64 = FALSE;
  return IsWow64Process(GetCurrentProcess(), &wow64) && wow64;
}

// Nanoseconds for each call of one round.
template <class Ask>
double Round(const Ask& ask) {
  int answers = 0;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kCalls; ++i) answers += ask() ? 1 : 0;
  const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - start;
  // The count is used, so that no compiler leaves the calls out.
  return answers < 0 ? 0 : time.count() / kCalls;
}

}  // namespace

int main() {
  std::vector<double> bare;
  std::vector<double> room;
  std::vector<double> ratio;
  std::vector<double> noise;
  for (int i = 0; i < kRounds; ++i) {
    bare.push_back(Round(AskBare));
    room.push_back(Round(tarnwick::RunsUnderWow64));
    ratio.push_back(room.back() / bare.back());
    noise.push_back(Round(AskBare) / bare.back());
  }
  std::printf("%-28s %8s %8s %8s\n", "quartiles of 201 rounds", "first", "median", "third");
  PrintRow("bare call", bare, "ns");
  PrintRow("through the room", room, "ns");
  PrintRow("room / bare", ratio, "");
  PrintRow("bare / bare, the noise", noise, "");
  return 0;
}
