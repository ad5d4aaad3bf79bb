// Decodes sound files: WAVE, AIFF, AU, FLAC, Ogg, MP3 and whatever else libsndfile reads, which is loaded for
// the first of them. One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace kr::platform {

class SoundFile {
 public:
  // The extensions of files that can be decoded, lower case.
  [[nodiscard]] static std::span<const std::string_view> extensions() noexcept;

  // Reads the sound in the bytes, which must stay as they are as long as the object lives. Null, and a line
  // in the log, when they hold none.
  [[nodiscard]] static std::unique_ptr<SoundFile> open(std::span<const std::byte> bytes) noexcept;

  virtual ~SoundFile() = default;

  [[nodiscard]] virtual std::uint32_t framesPerSecond() const = 0;
  [[nodiscard]] virtual std::uint8_t channels() const = 0;
  [[nodiscard]] virtual double duration() const = 0;  // seconds

  // The next frames, as interleaved samples from -1 to 1. How many samples were put into the front of the
  // span; 0 at the end of the sound.
  [[nodiscard]] virtual std::size_t read(std::span<float> samples) noexcept = 0;

  // Where the next frame is read from, in seconds. A place that the sound does not have changes nothing.
  [[nodiscard]] virtual double position() noexcept = 0;
  virtual void setPosition(double seconds) noexcept = 0;
};

}  // namespace kr::platform
