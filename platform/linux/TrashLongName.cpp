#include "platform/linux/TrashLongName.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/Paths.h"
#include "platform/linux/GLibOwner.h"
#include "platform/linux/TrashNote.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/posix/Files.h"
#include "platform/posix/LastError.h"

namespace kr::platform {
namespace {

using posix::FileDescriptor;

constexpr std::size_t kShortened = 200;
constexpr int kAttempts = 1000;
constexpr mode_t kOwnerOnly = 0700;

Failure failed(const std::string& path) {
  return {"move to the Trash", path, posix::lastError()};
}

FileDescriptor folder(const std::string& path) {
  (void)files::makeFolders(std::string(paths::parent(path)));
  (void)::mkdir(path.c_str(), kOwnerOnly);
  return FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

// The beginning of the name, without half a character at its end, and a number.
std::string shortened(std::string name, int number) {
  constexpr unsigned char kContinuation = 0x80;
  constexpr unsigned char kContinuationMask = 0xC0;
  std::size_t size = kShortened;
  while (size > 0 && (static_cast<unsigned char>(name[size]) & kContinuationMask) == kContinuation) --size;
  name.resize(size > 0 ? size : kShortened);
  return name + "." + std::to_string(number);
}

}  // namespace

std::optional<Failure> moveLongNameToTrash(const std::string& path) {
  const std::string trash = paths::joined(g_get_user_data_dir(), "Trash");
  const std::string name(paths::lastComponent(path));
  if (name.size() <= kShortened) {
    errno = ENAMETOOLONG;  // it is the path that is too long
    return failed(path);
  }
  (void)::mkdir(trash.c_str(), kOwnerOnly);
  const FileDescriptor notes = folder(trash + "/info");
  if (!notes) return failed(path);
  const FileDescriptor items = folder(trash + "/files");
  if (!items) return failed(path);
  for (int number = 1; number <= kAttempts; ++number) {
    const std::string item = shortened(name, number);
    const std::string file = item + ".trashinfo";
    // The note comes first and takes the name: nobody else then takes it for an item.
    const FileDescriptor noted(
        ::openat(notes.get(), file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!noted && errno == EEXIST) continue;
    if (!noted) return failed(path);
    if (writeTrashNote(noted.get(), path) &&
        ::renameat2(AT_FDCWD, path.c_str(), items.get(), item.c_str(), RENAME_NOREPLACE) == 0) {
      return std::nullopt;
    }
    const int error = errno;
    ::unlinkat(notes.get(), file.c_str(), 0);
    errno = error;
    if (error != EEXIST) return failed(path);
  }
  return failed(path);
}

}  // namespace kr::platform
