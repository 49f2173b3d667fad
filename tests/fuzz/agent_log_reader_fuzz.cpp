#include "foundation/text.h"
#include "launchers/agent_log_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

namespace {

// Pair by pair, as the rule is worded; the library's way must not differ.
std::string CollapsedPairByPair(std::string text) {
  for (size_t at = text.find("\\\\"); at != std::string::npos; at = text.find("\\\\", at + 1))
    text.erase(at, 1);
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::istringstream log(text);
  for (const tarnwick::BattleNetGameEntry& entry : tarnwick::ReadAgentLog(log, "log")) {
    if (entry.installPath.empty() || entry.gameId.find_first_of(" \t\n") != std::string::npos) std::abort();
  }
  if (tarnwick::HalveBackslashes(text) != CollapsedPairByPair(text)) std::abort();
  return 0;
}
