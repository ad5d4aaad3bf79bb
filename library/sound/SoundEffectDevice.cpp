#include "library/sound/SoundEffectDevice.h"

#include "platform/Format.h"
#include "platform/Services.h"

namespace kr {

std::optional<std::string> systemOutputIdentifier(platform::AudioScope scope) {
  platform::AudioDevices& devices = *platform::services().audioDevices;
  const std::optional<platform::AudioDeviceID> output = devices.systemOutput();
  return output ? devices.uniqueIdentifier(*output, scope) : std::nullopt;
}

std::vector<std::string> audioDeviceLines() {
  std::vector<std::string> lines;
  for (const platform::AudioDevice& device : platform::services().audioDevices->all()) {
    if (!device.name || !device.maker || !device.identifier) continue;
    lines.push_back(formatted("   device %s by %s id %@", *device.name, *device.maker, *device.identifier));
  }
  return lines;
}

}  // namespace kr
