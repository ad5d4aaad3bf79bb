// One sound on its way to a device of the sound server. What is written is buffered for a quarter of a
// second: a write blocks while the buffer is full, so whoever feeds it needs a thread for that. One thread at
// a time.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "platform/linux/PulseConnection.h"

namespace kr::platform {

// Frames of interleaved samples from -1 to 1.
struct PulseFormat {
  std::uint32_t framesPerSecond = 0;
  std::uint8_t channels = 0;
};

class PulsePlayback {
 public:
  PulsePlayback() = default;
  ~PulsePlayback();
  PulsePlayback(const PulsePlayback&) = delete;
  PulsePlayback& operator=(const PulsePlayback&) = delete;

  // Connects to the device with that name, or to the default one. False, and a line in the log, when that
  // does not succeed within five seconds.
  [[nodiscard]] bool open(const PulseFormat& format, const std::optional<std::string>& device);

  // Hands over whole frames. False when the server or the device is lost, or takes nothing for two seconds.
  [[nodiscard]] bool write(std::span<const float> samples);

  // Waits until all that was written has been heard, but no longer than that can take.
  void finish();

  // What has not been heard yet is dropped.
  void close();

 private:
  [[nodiscard]] bool isUsable() const;

  PulseConnection* connection_ = nullptr;
  pa_stream* stream_ = nullptr;
};

}  // namespace kr::platform
