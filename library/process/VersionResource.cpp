#include "library/process/VersionResource.h"

#include <array>

#include "platform/Format.h"

namespace kr {
namespace {

struct Stage {
  unsigned value;
  std::string_view letter;
};
constexpr std::array<Stage, 3> kStages{{{0x20, "d"}, {0x40, "a"}, {0x60, "b"}}};

std::string_view letterOf(unsigned value) {
  for (const Stage& stage : kStages) {
    if (stage.value == value) return stage.letter;
  }
  return "";
}

}  // namespace

std::optional<std::string> versionFromResource(std::string_view bytes) {
  if (bytes.size() < 4) return std::nullopt;
  const auto byte = [&](std::size_t index) {
    return static_cast<unsigned>(static_cast<unsigned char>(bytes[index]));
  };
  const auto high = [](unsigned value) { return value >> 4U; };
  const auto low = [](unsigned value) { return value & 0xFU; };
  const unsigned nonRelease = byte(0);
  const unsigned stage = byte(1);
  const unsigned minor = high(byte(2));
  const unsigned bugFix = low(byte(2));
  const unsigned major = high(byte(3)) * 10 + low(byte(3));
  std::string text =
      bugFix != 0 ? formatted("%d.%d.%d", major, minor, bugFix) : formatted("%d.%d", major, minor);
  if (nonRelease != 0) text = formatted("%@%@%d", text, letterOf(stage), nonRelease);
  return text;
}

}  // namespace kr
