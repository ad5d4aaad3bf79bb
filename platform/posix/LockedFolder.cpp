#include "platform/posix/LockedFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/Files.h"
#include "platform/posix/LastError.h"

namespace kr::posix {
namespace {

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr std::string_view kHexadecimal = "0123456789abcdef";
constexpr std::size_t kDigits = 16;
constexpr int kAttempts = 100;

std::string randomName(std::string_view prefix) {
  unsigned char bytes[kDigits] = {};
  (void)::getentropy(bytes, sizeof bytes);
  std::string name(prefix);
  for (const unsigned char byte : bytes) name += kHexadecimal[byte % kHexadecimal.size()];
  return name;
}

// Whether the name is still taken. Nobody else takes this one, so it is by the same folder.
bool isThere(int parent, const std::string& name) {
  struct stat status {};
  return ::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 || errno != ENOENT;
}

// Whether the folder is this process's now. Where the file system has no locks, nobody ever gets one, so that
// nobody's folder is taken for an abandoned one.
bool lock(int folder) noexcept {
  return ::flock(folder, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

}  // namespace

std::error_code createLockedFolder(int parent, std::string_view prefix, std::string& name,
                                   FileDescriptor& folder) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    name = randomName(prefix);
    if (::mkdirat(parent, name.c_str(), S_IRWXU) != 0) {
      if (errno == EEXIST) continue;
      return lastError();
    }
    folder.reset(::openat(parent, name.c_str(), kFolderFlags));
    // Another program may have taken it for abandoned before it was locked: then it is gone, or will be.
    if (!folder && errno != ENOENT) {
      const std::error_code error = lastError();
      ::unlinkat(parent, name.c_str(), AT_REMOVEDIR);
      return error;
    }
    if (!folder || !lock(folder.get()) || !isThere(parent, name)) continue;
    const auto contents = files::entries(folder.get());
    if (!contents) {
      const std::error_code error = lastError();
      ::unlinkat(parent, name.c_str(), AT_REMOVEDIR);
      return error;
    }
    // Who may rename in the parent can have put another folder in its place.
    if (contents->empty()) return {};
  }
  return std::make_error_code(std::errc::file_exists);
}

bool isLockedFolderName(std::string_view prefix, std::string_view name) {
  if (!name.starts_with(prefix) || name.size() != prefix.size() + kDigits) return false;
  return name.find_first_not_of(kHexadecimal, prefix.size()) == std::string_view::npos;
}

FileDescriptor openAbandonedFolder(int parent, const std::string& name) noexcept {
  FileDescriptor folder(::openat(parent, name.c_str(), kFolderFlags));
  if (folder && ::flock(folder.get(), LOCK_EX | LOCK_NB) != 0) folder.reset();
  return folder;
}

}  // namespace kr::posix
