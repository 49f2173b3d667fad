// What listening costs: a whole scan of the sample desktop, icons included, alone and with an observer that keeps
// every question and answer, in turns. Takes the path of the desktop's description; builds it and takes it away again.
#include "common/heard_questions.h"
#include "core/scan_driver.h"
#include "desktop/description.h"
#include "quantiles.h"

#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

namespace {

using tarnwick::common::HeardQuestions;

constexpr int kRounds = 51;
constexpr char kCatalogue[] = R"(C:\TarnwickDemo\MasterGameList.xml)";

size_t g_questions = 0;

// Milliseconds.
double TimeScan(bool listening) {
  static std::string answer(8u << 20, '\0');
  std::optional<HeardQuestions> heard;
  if (listening) heard.emplace();
  const auto start = std::chrono::steady_clock::now();
  const int length = tarnwick::RunScanGuarded(kCatalogue, answer.data(), static_cast<int>(answer.size()));
  const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
  if (length < 1000) throw std::runtime_error("the scan found nothing");
  if (heard) g_questions = heard->All().size();
  return time.count();
}

void Run() {
  std::vector<double> alone;
  std::vector<double> heard;
  std::vector<double> ratio;
  std::vector<double> noise;
  TimeScan(true);
  for (int i = 0; i < kRounds; ++i) {
    // Each of the three comes first, second and third in turn.
    double times[3] = {};
    for (int j = 0; j < 3; ++j) times[(i + j) % 3] = TimeScan((i + j) % 3 == 1);
    alone.push_back(times[0]);
    heard.push_back(times[1]);
    ratio.push_back(times[1] / times[0]);
    noise.push_back(times[2] / times[0]);
  }
  std::printf("%zu questions in a scan\n%-28s %8s %8s %8s\n", g_questions, "quartiles of 51 rounds", "first",
              "median", "third");
  PrintRow("alone", alone, "ms");
  PrintRow("listened to", heard, "ms");
  PrintRow("listened to / alone", ratio, "");
  PrintRow("alone / alone, the noise", noise, "");
}

}  // namespace

int main(int count, char** arguments) {
  try {
    if (count != 2) throw std::runtime_error("usage: tarnwick_observed_scan_bench DESCRIPTION");
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
