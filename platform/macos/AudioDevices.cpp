#include "platform/AudioDevices.h"

#include <CoreAudio/CoreAudio.h>

#include <array>

#include "platform/SystemServices.h"
#include "platform/macos/CFOwner.h"
#include "platform/macos/CFText.h"

namespace kr::platform {
namespace {

constexpr std::size_t kLongestName = 64;  // with the zero at the end

AudioObjectPropertyAddress address(AudioObjectPropertySelector property,
                                   AudioObjectPropertyScope scope = kAudioObjectPropertyScopeGlobal) {
  return {property, scope, kAudioObjectPropertyElementMaster};
}

// Names are properties of zero-terminated characters.
std::optional<std::string> characters(AudioObjectID device, AudioObjectPropertySelector property) {
  const AudioObjectPropertyAddress place = address(property);
  std::array<char, kLongestName> buffer{};
  UInt32 size = buffer.size();
  if (AudioObjectGetPropertyData(device, &place, 0, nullptr, &size, buffer.data()) != noErr) {
    return std::nullopt;
  }
  buffer.back() = '\0';
  return std::string(buffer.data());
}

std::optional<std::string> identifier(AudioObjectID device, AudioObjectPropertyScope scope) {
  const AudioObjectPropertyAddress place = address(kAudioDevicePropertyDeviceUID, scope);
  macos::CFOwner<CFStringRef> value;
  UInt32 size = sizeof(CFStringRef);
  if (AudioObjectGetPropertyData(device, &place, 0, nullptr, &size, value.receive()) != noErr || !value) {
    return std::nullopt;
  }
  return macos::text(value.get());
}

class CoreAudioDevices final : public AudioDevices {
 public:
  std::optional<kr::platform::AudioDeviceID> systemOutput() override {
    const AudioObjectPropertyAddress place = address(kAudioHardwarePropertyDefaultSystemOutputDevice);
    AudioObjectID device = kAudioObjectUnknown;
    UInt32 size = sizeof device;
    if (AudioObjectGetPropertyData(kAudioObjectSystemObject, &place, 0, nullptr, &size, &device) != noErr) {
      return std::nullopt;
    }
    return device;
  }

  std::optional<std::string> uniqueIdentifier(kr::platform::AudioDeviceID device, AudioScope scope) override {
    return identifier(device, scope == AudioScope::output ? kAudioObjectPropertyScopeOutput
                                                          : kAudioObjectPropertyScopeGlobal);
  }

  std::vector<AudioDevice> all() override {
    const AudioObjectPropertyAddress place = address(kAudioHardwarePropertyDevices);
    UInt32 size = 0;
    if (AudioObjectGetPropertyDataSize(kAudioObjectSystemObject, &place, 0, nullptr, &size) != noErr) {
      return {};
    }
    std::vector<AudioObjectID> numbers(size / sizeof(AudioObjectID));
    if (AudioObjectGetPropertyData(kAudioObjectSystemObject, &place, 0, nullptr, &size, numbers.data()) !=
        noErr) {
      return {};
    }
    // Devices may have gone between the two calls.
    numbers.resize(size / sizeof(AudioObjectID));
    std::vector<AudioDevice> devices;
    for (const AudioObjectID number : numbers) {
      devices.push_back({characters(number, kAudioDevicePropertyDeviceName),
                         characters(number, kAudioDevicePropertyDeviceManufacturer),
                         identifier(number, kAudioObjectPropertyScopeGlobal)});
    }
    return devices;
  }
};

}  // namespace

AudioDevices& systemAudioDevices() noexcept {
  static CoreAudioDevices& devices = *new CoreAudioDevices;
  return devices;
}

}  // namespace kr::platform
