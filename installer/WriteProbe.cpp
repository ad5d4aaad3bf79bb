#include "installer/WriteProbe.h"

#include <fcntl.h>
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

constexpr std::string_view kProbeName = "temp-%X";
constexpr mode_t kProbeMode = 0600;

std::string probePath(const std::string& folder, long number) {
  return paths::joined(folder, formatted(kProbeName, number));
}

}  // namespace

bool canWriteToFile(const std::string& path) {
  return static_cast<bool>(posix::FileDescriptor(::open(path.c_str(), O_RDWR | O_CLOEXEC)));
}

bool canWriteToDirectory(const std::string& path) {
  // The name only has to be free; nobody gains anything by guessing it.
  std::string probe = probePath(path, ::random());
  while (files::exists(probe)) probe = probePath(path, std::rand());  // NOLINT(cert-msc30-c,cert-msc50-cpp)
  const posix::FileDescriptor file(::open(probe.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kProbeMode));
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
  while (folder.size() >= 2 && !files::exists(folder)) folder = paths::parent(folder);
  if (canWriteToFileOrDirectory(folder)) return true;
  log("Cannot write to folder %@", folder);
  return false;
}

}  // namespace kr
