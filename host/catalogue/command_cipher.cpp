// tarnwick catalogue encipher and decipher, for those who maintain catalogues.
#include <stdexcept>
#include <string>
#include <vector>

#include "catalogue/decipher.h"
#include "host/catalogue_file.h"
#include "host/command_output.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/failure.h"
#include "host/input_file.h"

namespace tarnwick::host {
namespace {

// Nothing is written before everything is known to be right.
CatalogueFile CheckedInput(const Options& options) {
  CatalogueFile file = InspectCatalogue(options.input);
  if (!file.fault.empty()) throw std::runtime_error(file.fault);
  if (IsSameFile(options.input, options.output))
    throw std::runtime_error(options.output + " is the file that is read; name another for the output");
  return file;
}

}  // namespace

int RunEncipher(const Options& options) {
  const CatalogueFile file = CheckedInput(options);
  if (file.enciphered)
    throw std::runtime_error(options.input + " is enciphered already; it can be used as it is");
  std::vector<unsigned char> bytes(file.bytes.begin(), file.bytes.end());
  if (!EncipherCatalogue(bytes)) throw std::runtime_error(options.input + " could not be enciphered");
  const std::string warning = CatalogueWarning(options.input, file);
  if (!warning.empty()) ReportLine(warning);
  WriteResult(options.output, std::string(bytes.begin(), bytes.end()));
  return kExitSuccess;
}

int RunDecipher(const Options& options) {
  const CatalogueFile file = CheckedInput(options);
  if (!file.enciphered)
    throw std::runtime_error(options.input + " is not enciphered; it can be used as it is");
  WriteResult(options.output, file.text);
  return kExitSuccess;
}

}  // namespace tarnwick::host
