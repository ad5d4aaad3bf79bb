#include "platform/Digest.h"

namespace kr::platform {

std::string hexadecimal(const MD5Digest& digest) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : digest) {
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0xFU];
  }
  return text;
}

}  // namespace kr::platform
