// The sound devices of the system, as far as they put sound out. Every answer is about the moment of the
// call. Any thread. Where a sound server has to be asked, a call blocks for a second at most when the server
// does not answer.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kr::platform {

// The system's number for a device, good until the device goes.
using AudioDeviceID = std::uint32_t;

// The part of a device that a property is asked of.
enum class AudioScope { global, output };

// What can be read of a device; what cannot is missing. UTF-8.
struct AudioDevice {
  std::optional<std::string> name;   // for people, at most 63 bytes
  std::optional<std::string> maker;  // at most 63 bytes
  std::optional<std::string>
      identifier;  // the same for as long as the device exists, also in another session
};

class AudioDevices {
 public:
  virtual ~AudioDevices() = default;

  // The device that alerts and sound effects play on; none when there is none or it cannot be told.
  [[nodiscard]] virtual std::optional<AudioDeviceID> systemOutput() = 0;

  // The unique identifier of a device, by which a sound is told to play on it.
  [[nodiscard]] virtual std::optional<std::string> uniqueIdentifier(AudioDeviceID device,
                                                                    AudioScope scope) = 0;

  // Every device, in the system's order.
  [[nodiscard]] virtual std::vector<AudioDevice> all() = 0;
};

}  // namespace kr::platform
