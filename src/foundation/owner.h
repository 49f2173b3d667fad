#pragma once
// Owners: a value that a close function must end, and the sentinel that means "none". The failure value is in
// the type, so no function body holds a bare close call.

#include "foundation/windows_api.h"

#include <utility>

namespace tarnwick {

// `Traits` has a `Value` type, `static Value None()` and `static void Close(Value)`.
template <class Traits>
class Owner {
 public:
  using Value = typename Traits::Value;

  Owner() : value_(Traits::None()) {}
  explicit Owner(Value value) : value_(value) {}
  ~Owner() { Reset(); }
  Owner(Owner&& other) noexcept : value_(other.Release()) {}
  Owner& operator=(Owner&& other) noexcept {
    if (this != &other) {
      Reset();
      value_ = other.Release();
    }
    return *this;
  }
  Owner(const Owner&) = delete;
  Owner& operator=(const Owner&) = delete;

  explicit operator bool() const { return value_ != Traits::None(); }
  Value Get() const { return value_; }
  Value Release() { return std::exchange(value_, Traits::None()); }
  void Reset() {
    if (value_ != Traits::None()) Traits::Close(Release());
  }
  // For calls that write their result through a pointer. Ends what was owned before.
  Value* Receive() {
    Reset();
    return &value_;
  }

 private:
  Value value_;
};

struct RegistryKeyTraits {
  using Value = HKEY;
  static Value None() { return nullptr; }
  static void Close(Value key) { RegCloseKey(key); }
};
using RegistryKey = Owner<RegistryKeyTraits>;

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
