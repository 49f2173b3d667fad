// Edge: COM apartments.
#include "foundation/com_scope.h"

#include "foundation/windows_api.h"

#include <objbase.h>

namespace tarnwick {

ComScope::ComScope() {
  HRESULT answer = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  if (answer == RPC_E_CHANGED_MODE) answer = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  entered_ = answer == S_OK || answer == S_FALSE;
}

ComScope::~ComScope() {
  if (entered_) CoUninitialize();
}

}  // namespace tarnwick
