#include "platform/Failure.h"

namespace kr::platform {

std::string Failure::text() const {
  std::string line = step;
  if (!path.empty()) line += " " + path;
  if (error) line += ": " + error.message();
  return line;
}

}  // namespace kr::platform
