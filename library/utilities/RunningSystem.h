// The version of the system that the program runs on, in the shapes that programs compare. Any thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

namespace kr {

// All zero when the system does not say what it is.
struct ThreePartVersion {
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  std::uint16_t bugfix = 0;

  bool operator==(const ThreePartVersion&) const = default;
};

// A part that the system does not tell is 0, and the log says so.
[[nodiscard]] ThreePartVersion threePartVersion();

// The parts as binary-coded decimals, as in 0x1068 for 10.6.8; 0 when the system does not say.
[[nodiscard]] std::uint32_t hexSystemVersion();

// "10.15.7", and "11.0" for 11.0.0.
[[nodiscard]] std::string systemVersionString();

// The parts as one number with two digits each, as in 101507 for 10.15.7. The system is asked until it
// answers; the answer is kept. Two threads that ask at the same time keep the same.
class DecimalSystemVersion {
 public:
  [[nodiscard]] std::uint32_t value();

 private:
  std::atomic<std::uint32_t> known_{0};
};

// Of this process.
[[nodiscard]] std::uint32_t decimalSystemVersion();

}  // namespace kr
