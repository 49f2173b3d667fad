// Edge: the machine's names.
#include "host/machine_name.h"

#include <vector>

#include "common/wide_text.h"

namespace tarnwick::host {

std::string MachineName(COMPUTER_NAME_FORMAT format) {
  std::vector<wchar_t> name(1024);
  auto length = static_cast<DWORD>(name.size());
  return GetComputerNameExW(format, name.data(), &length) ? common::Narrow(std::wstring(name.data(), length))
                                                          : std::string();
}

}  // namespace tarnwick::host
