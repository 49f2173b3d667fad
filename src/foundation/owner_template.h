#pragma once
// An owner: a value that a close function must end, and the sentinel that means "none". The failure value is
// in the type, so no function body holds a bare close call.

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

}  // namespace tarnwick
