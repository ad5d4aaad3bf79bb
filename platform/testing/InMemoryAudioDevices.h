// Sound devices in memory, for tests: a device answers what it was given.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/AudioDevices.h"

namespace kr::platform::testing {

class InMemoryAudioDevices final : public AudioDevices {
 public:
  std::optional<AudioDeviceID> output;
  std::map<AudioDeviceID, AudioDevice> devices;
  // What a device calls itself in the global scope where that is something else.
  std::map<AudioDeviceID, std::string> globalIdentifiers;

  std::optional<AudioDeviceID> systemOutput() override { return output; }

  std::optional<std::string> uniqueIdentifier(AudioDeviceID device, AudioScope scope) override {
    const auto global = globalIdentifiers.find(device);
    if (scope == AudioScope::global && global != globalIdentifiers.end()) return global->second;
    const auto found = devices.find(device);
    return found == devices.end() ? std::nullopt : found->second.identifier;
  }

  std::vector<AudioDevice> all() override {
    std::vector<AudioDevice> list;
    for (const auto& [number, device] : devices) list.push_back(device);
    return list;
  }
};

}  // namespace kr::platform::testing
