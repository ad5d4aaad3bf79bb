#include "platform/posix/Pipe.h"

#include <fcntl.h>
#include <unistd.h>

#include "platform/posix/LastError.h"

namespace kr::posix {

// The system has no call that does it at once.
std::error_code makePipe(Pipe& pipe) {
  int ends[2];
  if (::pipe(ends) != 0) return lastError();
  pipe.reading.reset(ends[0]);
  pipe.writing.reset(ends[1]);
  for (const int end : ends) {
    if (::fcntl(end, F_SETFD, FD_CLOEXEC) != 0) return lastError();
  }
  return {};
}

}  // namespace kr::posix
