// What is written into the log: names, paths and numbers that come from outside, in the program's own
// formats.
#include <algorithm>
#include <cstring>

#include "fuzz/Fuzz.h"
#include "platform/Log.h"

namespace {

using kr::fuzz::require;

bool isControl(unsigned char byte) {
  return byte < 0x20 || byte == 0x7F;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input = kr::fuzz::text(data, size);
  const std::string line = kr::platform::singleLine(input);
  require(std::none_of(line.begin(), line.end(), isControl), "a line holds no control character");
  require(line == input || std::any_of(input.begin(), input.end(), isControl), "other text stays as it is");

  const std::string text(input);
  require(kr::formatted("%@ to '%s'", text, text) == text + " to '" + text + "'",
          "a text is never read as a format");
  long long integer = 0;
  double real = 0;
  std::memcpy(&integer, data, std::min(size, sizeof integer));
  std::memcpy(&real, data, std::min(size, sizeof real));
  require(kr::formatted("%lld", integer) == std::to_string(integer), "an integer prints in decimal");
  require(!kr::formatted("%d %X %c %.2f %@", real, integer, real, integer, real).empty(),
          "a number prints in every notation");
  return 0;
}
