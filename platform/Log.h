// The one way to the log. Every diagnostic is one line; the system's logger adds the time and the program's
// name and writes it to standard error. Any thread.
//
//   kr::log("Quitting '%@': %@", signature, name);
#pragma once

#include <string>
#include <string_view>

#include "platform/Format.h"
#include "platform/SingleLine.h"

namespace kr::platform {

class LogSink {
 public:
  virtual ~LogSink() = default;

  // Writes one line. `text` is UTF-8, or bytes as the file system has them, without line breaks.
  virtual void line(std::string_view text) noexcept = 0;
};

// Hands one finished line to the sink in force.
void logLine(std::string_view text) noexcept;

}  // namespace kr::platform

namespace kr {

// Formats as kr::formatted does and writes the result as one log line.
template <class... Arguments>
void log(std::string_view format, const Arguments&... arguments) {
  platform::logLine(formatted(format, arguments...));
}

}  // namespace kr
