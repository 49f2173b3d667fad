// tarnwick catalogue encipher and decipher: the only commands that know more of the library than its header.
#include <stdexcept>
#include <vector>

#include "catalogue/decipher.h"
#include "host/commands.h"
#include "host/console.h"

namespace tarnwick::host {
namespace {

int Convert(const Options& options, bool (*convert)(std::vector<unsigned char>&), const char* failure) {
  const std::string text = ReadFileBytes(options.input);
  std::vector<unsigned char> bytes(text.begin(), text.end());
  if (!convert(bytes)) throw std::runtime_error(options.input + failure);
  WriteResult(options.output, std::string(bytes.begin(), bytes.end()));
  return kExitSuccess;
}

}  // namespace

int RunEncipher(const Options& options) {
  return Convert(options, EncipherCatalogue, " could not be enciphered");
}

int RunDecipher(const Options& options) {
  return Convert(options, DecipherCatalogue,
                 " is not an enciphered catalogue, or was enciphered with another key");
}

}  // namespace tarnwick::host
