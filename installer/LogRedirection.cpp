#include "installer/LogRedirection.h"

#include <unistd.h>

#include <cstdio>

#include "platform/Paths.h"
#include "platform/posix/Files.h"

namespace kr {
namespace {

constexpr const char* kMode = "a+";

void redirect(std::FILE* stream, int descriptor, const std::string& path) {
  if (std::freopen(path.c_str(), kMode, stream) == nullptr &&
      std::freopen("/dev/null", kMode, stream) == nullptr) {
    return;  // the stream is closed now, and there is nowhere left to say so
  }
  // A stream that is opened anew takes the lowest number that is free. The log, and whatever else writes
  // without a stream, needs its own.
  if (::fileno(stream) != descriptor) ::dup2(::fileno(stream), descriptor);
  // What stands in a stream's buffer when the installer is killed would be missing from the log.
  std::setvbuf(stream, nullptr, _IOLBF, 0);
}

}  // namespace

void redirectStandardStreams(const std::string& home) {
  const std::string path = paths::expandingTilde(kInstallerLogPath, home);
  files::makeFolders(std::string(paths::parent(path)));
  redirect(stdout, STDOUT_FILENO, path);
  redirect(stderr, STDERR_FILENO, path);
}

}  // namespace kr
