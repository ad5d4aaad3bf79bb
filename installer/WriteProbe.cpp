#include "installer/WriteProbe.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/FileOperations.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/Services.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/posix/Files.h"

namespace kr {
namespace {

// A parent this short is "/", or the path has none: the search for an existing folder ends there.
constexpr std::size_t kShortestMissingParent = 2;

std::string probeIn(const std::string& folder, long number) {
  return paths::joined(folder, formatted("temp-%X", number));
}

}  // namespace

bool canWriteToFile(const std::string& path) noexcept {
  return static_cast<bool>(posix::FileDescriptor(::open(path.c_str(), O_RDWR | O_CLOEXEC)));
}

bool canWriteToDirectory(const std::string& path) {
  if (path.empty()) return false;  // the probe would land in the working folder
  std::string probe = probeIn(path, ::random());
  // A dangling link counts as taken: opening it would create the file that it points to.
  // The name only has to be unused; nothing rests on the quality of these numbers.
  while (files::itemExists(probe)) probe = probeIn(path, std::rand());  // NOLINT(cert-msc*)
  const posix::FileDescriptor file(::open(probe.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!file) return false;
  ::unlink(probe.c_str());
  return true;
}

bool canWriteToFileOrDirectory(const std::string& path) {
  return platform::services().files->isWritable(path);
}

bool canWriteToPath(const std::string& path) {
  if (files::exists(path) && !canWriteToFileOrDirectory(path)) {
    log("Cannot write to item %@", path);
    return false;
  }
  std::string folder(paths::parent(path));
  while (folder.size() >= kShortestMissingParent && !files::exists(folder)) folder = paths::parent(folder);
  if (canWriteToFileOrDirectory(folder)) return true;
  log("Cannot write to folder %@", folder);
  return false;
}

}  // namespace kr
