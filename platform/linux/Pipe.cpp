#include "platform/posix/Pipe.h"

#include <fcntl.h>
#include <unistd.h>

#include "platform/posix/LastError.h"

namespace kr::posix {

std::error_code makePipe(Pipe& pipe) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return lastError();
  pipe.reading.reset(ends[0]);
  pipe.writing.reset(ends[1]);
  return {};
}

}  // namespace kr::posix
