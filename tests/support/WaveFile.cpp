#include "tests/support/WaveFile.h"

#include <cmath>
#include <cstdint>
#include <numbers>

namespace kr::testing {
namespace {

constexpr double kPitch = 441;

// The lowest byte first.
void append(std::string& bytes, std::uint32_t number, int size) {
  for (int index = 0; index < size; ++index) bytes += static_cast<char>(number >> (8 * index));
}

}  // namespace

std::string waveFile(const Tone& tone) {
  std::string samples;
  const int frames = static_cast<int>(tone.seconds * tone.framesPerSecond);
  for (int frame = 0; frame < frames; ++frame) {
    const double value =
        tone.amplitude * std::sin(2 * std::numbers::pi * kPitch * frame / tone.framesPerSecond);
    for (int channel = 0; channel < tone.channels; ++channel) {
      append(samples, static_cast<std::uint32_t>(std::lround(value * 32767)), 2);
    }
  }
  const auto rate = static_cast<std::uint32_t>(tone.framesPerSecond);
  const auto frameSize = static_cast<std::uint32_t>(2 * tone.channels);
  std::string bytes = "RIFF";
  append(bytes, static_cast<std::uint32_t>(36 + samples.size()), 4);
  bytes += "WAVEfmt ";
  append(bytes, 16, 4);
  append(bytes, 1, 2);
  append(bytes, static_cast<std::uint32_t>(tone.channels), 2);
  append(bytes, rate, 4);
  append(bytes, rate * frameSize, 4);
  append(bytes, frameSize, 2);
  append(bytes, 16, 2);
  bytes += "data";
  append(bytes, static_cast<std::uint32_t>(samples.size()), 4);
  return bytes + samples;
}

}  // namespace kr::testing
