// Owns one reference to a Core Foundation object.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace kr::macos {

// `Ref` is a reference type such as CFStringRef.
template <class Ref>
class CFOwner {
 public:
  CFOwner() = default;
  // Takes over what a function with "Create" or "Copy" in its name returns; null owns nothing.
  explicit CFOwner(Ref reference) noexcept : reference_(reference) {}
  CFOwner(CFOwner&& other) noexcept : reference_(std::exchange(other.reference_, nullptr)) {}
  CFOwner& operator=(CFOwner&& other) noexcept {
    if (this != &other) reset(std::exchange(other.reference_, nullptr));
    return *this;
  }
  ~CFOwner() { reset(nullptr); }

  [[nodiscard]] Ref get() const noexcept { return reference_; }
  [[nodiscard]] explicit operator bool() const noexcept { return reference_ != nullptr; }

  // For functions that hand out a reference through a pointer. What is owned so far is released first.
  [[nodiscard]] Ref* receive() noexcept {
    reset(nullptr);
    return &reference_;
  }

 private:
  void reset(Ref reference) noexcept {
    if (reference_ != nullptr) CFRelease(reference_);
    reference_ = reference;
  }

  Ref reference_ = nullptr;
};

}  // namespace kr::macos
