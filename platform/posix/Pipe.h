// A pipe that the program keeps to itself. Any thread.
#pragma once

#include <system_error>

#include "platform/posix/FileDescriptor.h"

namespace kr::posix {

struct Pipe {
  FileDescriptor reading;
  FileDescriptor writing;
};

// Neither end is open in programs that are started, but as what they are given it for. On macOS one that
// another thread starts at the very moment may have it.
[[nodiscard]] std::error_code makePipe(Pipe& pipe);

}  // namespace kr::posix
