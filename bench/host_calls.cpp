// What the calls cost a host, on the built library: the time and the size of each answer, a buffer that is
// too small, calls that wait for each other, and the memory that stays. Takes the path of a desktop's
// description; builds it and takes it away again.
#include "desktop/description.h"
#include "quantiles.h"
#include "tarnwick/tarnwick.hpp"

#include <psapi.h>

#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

namespace {

constexpr int kRounds = 21;
constexpr char kCatalogue[] = R"(C:\TarnwickDemo\MasterGameList.xml)";
constexpr char kExecutable[] = R"(C:\Program Files\Fernpad\fernpad.exe)";

template <class Call>
double Milliseconds(const Call& call) {
  const auto start = std::chrono::steady_clock::now();
  call();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

template <class Call>
void Time(const char* name, const Call& call) {
  std::vector<double> times;
  for (int i = 0; i < kRounds; ++i) times.push_back(Milliseconds(call));
  PrintRow(name, times, "ms");
}

size_t Count(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

// The icons are what stands in the data URIs.
size_t IconBytes(const std::string& answer) {
  size_t bytes = 0;
  for (size_t at = answer.find("\"data:"); at != std::string::npos; at = answer.find("\"data:", at + 1))
    bytes += answer.find('"', at + 1) - at - 1;
  return bytes;
}

void PrintSize(const char* name, const std::string& answer) {
  const size_t objects = Count(answer, "{\"name\":");
  const size_t icons = IconBytes(answer);
  std::printf("%-28s %8zu bytes, %zu objects: %zu of text and %zu of icon each\n", name, answer.size(),
              objects, (answer.size() - icons) / objects, icons / objects);
}

size_t MemoryInUse() {
  PROCESS_MEMORY_COUNTERS counters = {};
  counters.cb = sizeof counters;
  K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PagefileUsage / 1024;
}

// What a host pays that asks for the length first, or whose buffer is too small.
void TimeScans(const tarnwick::Library& library) {
  std::vector<double> once;
  std::vector<double> twice;
  std::vector<double> ratio;
  for (int i = 0; i < kRounds; ++i) {
    once.push_back(Milliseconds([&] { library.Scan(kCatalogue); }));
    twice.push_back(Milliseconds([&] {
      library.Exports().IA_RunMultiPlatformGameScanJson(kCatalogue, nullptr, 0);
      library.Scan(kCatalogue);
    }));
    ratio.push_back(twice.back() / once.back());
  }
  PrintRow("scan", once, "ms");
  PrintRow("no buffer first, then one", twice, "ms");
  PrintRow("the same as a ratio", ratio, "");
}

void TimeCalls(const tarnwick::Library& library) {
  TimeScans(library);
  Time("refresh", [&] { library.Refresh(); });
  Time("all, behind a refresh", [&] {
    library.Refresh();
    library.AllApplications();
  });
  Time("all, later on", [&] { library.AllApplications(); });
  Time("details of one executable", [&] { library.GameDetails(kExecutable); });
}

// The second thread's call begins while the first thread's scan runs.
template <class Call>
void TimeBesideAScan(const char* name, const tarnwick::Library& library, const Call& call) {
  std::vector<double> times;
  for (int i = 0; i < kRounds; ++i) {
    std::thread scan([&] { library.Scan(kCatalogue); });
    Sleep(20);
    times.push_back(Milliseconds(call));
    scan.join();
  }
  PrintRow(name, times, "ms");
}

void TimeThreads(const tarnwick::Library& library) {
  TimeBesideAScan("scan, beside a scan", library, [&] { library.Scan(kCatalogue); });
  TimeBesideAScan("page, beside a scan", library, [&] { library.Applications(1, 20); });
  TimeBesideAScan("details, beside a scan", library, [&] { library.GameDetails(kExecutable); });
}

void TimeWatch(const tarnwick::Library& library) {
  std::vector<double> times;
  for (DWORD i = 0; i < kRounds; ++i) {
    tarnwick::FocusWatch watch(library, [](const tarnwick::ForegroundProcess&) {}, 200);
    Sleep(10 * i);
    times.push_back(Milliseconds([&] { watch.Stop(); }));
  }
  PrintRow("stop of a watch (200 ms)", times, "ms");
}

void Run() {
  const size_t before = MemoryInUse();
  const tarnwick::Library library(tarnwick::PathBesideProgram());
  const size_t loaded = MemoryInUse();
  PrintSize("scan", library.Scan(kCatalogue));
  const size_t scanned = MemoryInUse();
  PrintSize("all applications", library.AllApplications());
  std::printf("%-28s %8zu KB, %zu KB loaded, %zu KB behind a scan, %zu KB with the applications\n", "memory",
              before, loaded, scanned, MemoryInUse());
  std::printf("%-28s %8s %8s %8s\n", "quartiles of 21 rounds", "first", "median", "third");
  TimeCalls(library);
  TimeThreads(library);
  TimeWatch(library);
}

}  // namespace

int main(int count, char** arguments) {
  try {
    if (count != 2) throw std::runtime_error("usage: tarnwick_host_calls_bench DESCRIPTION");
    std::ifstream file(std::filesystem::path(arguments[1]), std::ios::binary);
    tarnwick::desktop::Desktop desktop;
    ApplyDescription(desktop, {std::istreambuf_iterator<char>(file), {}});
    Run();
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
