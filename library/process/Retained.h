// Keeps a Cocoa object alive as long as the handle. Objective-C++ only.
#pragma once

#import <Foundation/Foundation.h>

#include <utility>

namespace kr {

template <class Object>
class Retained {
 public:
  Retained() = default;
  explicit Retained(Object* object) : object_([object retain]) {}
  Retained(const Retained& other) : object_([other.object_ retain]) {}
  Retained(Retained&& other) noexcept : object_(std::exchange(other.object_, nil)) {}
  Retained& operator=(Retained other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  // Most are empty: a list moves its entries about.
  ~Retained() {
    if (object_ != nil) [object_ release];
  }

  [[nodiscard]] Object* get() const { return object_; }

 private:
  Object* object_ = nil;
};

}  // namespace kr
