// Sound files for tests, made here.
#pragma once

#include <string>

namespace kr::testing {

struct Tone {
  double seconds = 1;
  double amplitude = 0.5;  // of a sine, 1 is as loud as can be
  int channels = 1;
  int framesPerSecond = 44100;
};

// The bytes of a WAVE file (16 bits) that holds a tone of 441 hertz.
[[nodiscard]] std::string waveFile(const Tone& tone = {});

}  // namespace kr::testing
