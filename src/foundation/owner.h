#pragma once
// Owners of Windows' own handles.

#include "foundation/owner_template.h"
#include "foundation/windows_api.h"

namespace tarnwick {

struct RegistryHandleTraits {
  using Value = HKEY;
  static Value None() { return nullptr; }
  static void Close(Value key) { RegCloseKey(key); }
};
using RegistryHandle = Owner<RegistryHandleTraits>;

struct HandleTraits {
  using Value = HANDLE;
  static Value None() { return nullptr; }
  static void Close(Value handle) { CloseHandle(handle); }
};
using Handle = Owner<HandleTraits>;

struct FindTraits {
  using Value = HANDLE;
  static Value None() { return INVALID_HANDLE_VALUE; }
  static void Close(Value handle) { FindClose(handle); }
};
using FindHandle = Owner<FindTraits>;

struct IconTraits {
  using Value = HICON;
  static Value None() { return nullptr; }
  static void Close(Value icon) { DestroyIcon(icon); }
};
using Icon = Owner<IconTraits>;

// A COM interface pointer; `Interface` has Release().
template <class Interface>
struct ComTraits {
  using Value = Interface*;
  static Value None() { return nullptr; }
  static void Close(Value object) { object->Release(); }
};
template <class Interface>
using ComPointer = Owner<ComTraits<Interface>>;

}  // namespace tarnwick
