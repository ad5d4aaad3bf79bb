#include "platform/UserInput.h"

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>

#include <cstdint>

#include "platform/SystemServices.h"
#include "platform/macos/CFOwner.h"

namespace kr::platform {
namespace {

// Owns one reference to an object of the I/O registry.
class RegistryObject {
 public:
  RegistryObject() = default;
  explicit RegistryObject(io_object_t object) noexcept : object_(object) {}
  ~RegistryObject() {
    if (object_ != IO_OBJECT_NULL) IOObjectRelease(object_);
  }
  RegistryObject(const RegistryObject&) = delete;
  RegistryObject& operator=(const RegistryObject&) = delete;

  [[nodiscard]] io_object_t get() const noexcept { return object_; }
  [[nodiscard]] explicit operator bool() const noexcept { return object_ != IO_OBJECT_NULL; }
  [[nodiscard]] io_object_t* receive() noexcept { return &object_; }

 private:
  io_object_t object_ = IO_OBJECT_NULL;
};

class InputSystem final : public UserInput {
 public:
  std::optional<std::chrono::nanoseconds> idleTime() override {
    RegistryObject services;
    // The call releases the matching dictionary.
    if (IOServiceGetMatchingServices(kIOMasterPortDefault, IOServiceMatching("IOHIDSystem"),
                                     services.receive()) != KERN_SUCCESS) {
      return std::nullopt;
    }
    const RegistryObject service(IOIteratorNext(services.get()));
    if (!service) return std::nullopt;
    macos::CFOwner<CFMutableDictionaryRef> properties;
    if (IORegistryEntryCreateCFProperties(service.get(), properties.receive(), kCFAllocatorDefault, 0) !=
            KERN_SUCCESS ||
        !properties) {
      return std::nullopt;
    }
    const void* value = CFDictionaryGetValue(properties.get(), CFSTR("HIDIdleTime"));
    if (value == nullptr || CFGetTypeID(value) != CFNumberGetTypeID()) return std::nullopt;
    std::int64_t nanoseconds = 0;
    if (!CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberSInt64Type, &nanoseconds)) {
      return std::nullopt;
    }
    return std::chrono::nanoseconds(nanoseconds);
  }
};

}  // namespace

UserInput& systemUserInput() noexcept {
  static InputSystem& input = *new InputSystem;
  return input;
}

}  // namespace kr::platform
