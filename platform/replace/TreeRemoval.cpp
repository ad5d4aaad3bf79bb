#include "platform/replace/TreeRemoval.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/Paths.h"
#include "platform/posix/Files.h"

namespace kr::platform::replace {
namespace {

std::optional<Failure> failure(const Entry& entry, int error = errno) {
  return Failure{"delete", entry.path, {error, std::generic_category()}};
}

std::optional<Failure> remove(const Entry& entry, dev_t volume) {
  struct stat status {};
  const char* name = entry.name.c_str();
  if (::fstatat(entry.folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return failure(entry);
  if (!S_ISDIR(status.st_mode)) {
    return ::unlinkat(entry.folder, name, 0) == 0 ? std::nullopt : failure(entry);
  }
  if (status.st_dev != volume) return failure(entry, EBUSY);
  const posix::FileDescriptor folder = openFolder(entry.folder, entry.name);
  if (!folder) return failure(entry);
  // Its owner may have write-protected it.
  (void)::fchmod(folder.get(), (status.st_mode & 07777) | S_IRWXU);
  const auto names = files::entries(folder.get());
  if (!names) return failure(entry);
  for (const std::string& child : *names) {
    if (auto failed = remove({folder.get(), child, paths::joined(entry.path, child)}, volume)) return failed;
  }
  return ::unlinkat(entry.folder, name, AT_REMOVEDIR) == 0 ? std::nullopt : failure(entry);
}

}  // namespace

std::optional<Failure> removeTree(const Entry& entry) {
  struct stat status {};
  if (::fstatat(entry.folder, entry.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return failure(entry);
  return remove(entry, status.st_dev);
}

}  // namespace kr::platform::replace
