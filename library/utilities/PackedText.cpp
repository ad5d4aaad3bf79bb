#include "library/utilities/PackedText.h"

namespace kr {
namespace {

constexpr unsigned kBits = 5;
constexpr std::uint32_t kMask = (1u << kBits) - 1;
constexpr std::uint32_t kBeforeA = 0x60;

}  // namespace

std::string unpackedText(std::uint32_t packed) {
  std::string text;
  for (; packed != 0; packed >>= kBits) text += static_cast<char>((packed & kMask) | kBeforeA);
  return text;
}

}  // namespace kr
