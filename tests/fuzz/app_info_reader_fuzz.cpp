#include "steam/app_info_reader.h"
#include "support/little_memory.h"
#include "support/native_log.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <sstream>
#include <string>

namespace {

// Nesting is limited by the stack alone, and an overflow would end the fuzzer: inputs stay short enough for
// it.
constexpr size_t kLongestInput = 4096;

void CheckText(const std::string& text) {
  if (text.find('\0') != std::string::npos) std::abort();
}

void CheckTexts(const tarnwick::AppInfoDetails& details) {
  CheckText(details.name);
  CheckText(details.installDir);
  CheckText(details.executable);
  CheckText(details.type);
}

// The whole input as a file: every app of the index is asked for.
void ReadAsFile(const std::string& bytes) {
  std::istringstream stream(bytes);
  tarnwick::SteamAppInfoReader reader;
  try {
    tarnwick::IndexAppInfo(reader, stream);
  } catch (const std::bad_alloc&) {
    if (!reader.index.empty()) std::abort();
  }
  for (const auto& [appId, entry] : reader.index) {
    tarnwick::AppInfoDetails details;
    if (tarnwick::ReadAppDetails(reader, stream, appId, details) && details.appId != appId) std::abort();
    CheckTexts(details);
  }
}

// The whole input as one app's key-values.
void ReadAsSection(const std::string& bytes, const std::vector<std::string>& table) {
  tarnwick::ByteCursor cursor{bytes.data(), bytes.size(), 0};
  tarnwick::AppInfoDetails details;
  tarnwick::KeyValueContext context{cursor, details, table};
  tarnwick::ParseKeyValueSection(context, 0, "appinfo", "");
  if (cursor.position > cursor.size) std::abort();
  CheckTexts(details);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kLongestInput) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  ReadAsFile(bytes);
  ReadAsSection(bytes, {});
  ReadAsSection(bytes, {"common", "name", "type", "config", "installdir", "launch", "executable"});
  tarnwick::tests::NativeLogLines().clear();
  return 0;
}
