#include "platform/SingleLine.h"

#include <array>
#include <cstdio>

namespace kr::platform {

std::string singleLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= 0x20 && byte != 0x7F) {
      line += character;
    } else if (character == '\n') {
      line += "\\n";
    } else if (character == '\r') {
      line += "\\r";
    } else if (character == '\t') {
      line += "\\t";
    } else {
      std::array<char, 5> escape{};
      std::snprintf(escape.data(), escape.size(), "\\x%02x", byte);
      line += escape.data();
    }
  }
  return line;
}

}  // namespace kr::platform
