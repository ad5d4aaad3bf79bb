#include "platform/posix/Files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>

#include "platform/Paths.h"
#include "platform/posix/FileDescriptor.h"

namespace kr::files {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
using Listing = std::unique_ptr<DIR, CloseFolder>;
struct Free {
  void operator()(char* memory) const { std::free(memory); }
};

std::optional<std::vector<std::string>> names(DIR* listing) {
  if (listing == nullptr) return std::nullopt;
  std::vector<std::string> names;
  for (;;) {
    errno = 0;
    const dirent* entry = ::readdir(listing);
    if (entry == nullptr) break;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  if (errno != 0) return std::nullopt;
  return names;
}

constexpr std::size_t kReadAhead = 1 << 20;

// Owns nothing where the path leads to no regular file that can be read.
posix::FileDescriptor openRegularFile(const std::string& path, struct stat& status) {
  posix::FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return file;
}

// Reads on until there are `count` bytes or the file is at its end. False when it cannot be read.
bool readUpTo(int file, std::size_t count, std::string& bytes) {
  std::size_t length = bytes.size();
  bytes.resize(count);
  while (length < count) {
    const ssize_t more = ::read(file, bytes.data() + length, count - length);
    if (more < 0 && errno == EINTR) continue;
    if (more < 0) return false;
    if (more == 0) break;
    length += static_cast<std::size_t>(more);
  }
  bytes.resize(length);
  return true;
}

}  // namespace

bool exists(const std::string& path) noexcept {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0;
}

bool itemExists(const std::string& path) noexcept {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0;
}

bool isFolder(const std::string& path) noexcept {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool isReadableFolder(const std::string& path) noexcept {
  return isFolder(path) && ::access(path.c_str(), R_OK | X_OK) == 0;
}

std::optional<std::vector<std::string>> entries(const std::string& folder) {
  const Listing listing(::opendir(folder.c_str()));
  return names(listing.get());
}

std::optional<std::vector<std::string>> entries(int folder) {
  posix::FileDescriptor own(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // One that may be listed, but not entered.
  if (!own) own.reset(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
  const Listing listing(own ? ::fdopendir(own.get()) : nullptr);
  if (listing) {
    (void)own.release();
    ::rewinddir(listing.get());
  }
  return names(listing.get());
}

std::optional<std::string> contents(const std::string& path, std::size_t limit) {
  struct stat status {};
  const posix::FileDescriptor file = openRegularFile(path, status);
  if (!file) return std::nullopt;
  // One byte more than it says shows that a file has grown.
  const std::size_t expected = std::min(static_cast<std::size_t>(status.st_size), limit) + 1;
  std::string bytes;
  for (std::size_t wanted = expected;; wanted += kReadAhead) {
    if (!readUpTo(file.get(), wanted, bytes)) return std::nullopt;
    if (bytes.size() > limit) return std::nullopt;
    if (bytes.size() < wanted) return bytes;
  }
}

std::optional<std::string> firstBytes(const std::string& path, std::size_t count) {
  struct stat status {};
  const posix::FileDescriptor file = openRegularFile(path, status);
  std::string bytes;
  if (!file || !readUpTo(file.get(), count, bytes)) return std::nullopt;
  return bytes;
}

bool append(const std::string& path, std::string_view bytes) noexcept {
  const posix::FileDescriptor file(::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666));
  if (!file) return false;
  while (!bytes.empty()) {
    const ssize_t count = ::write(file.get(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

bool makeFolders(const std::string& path) noexcept {
  if (path.empty()) return false;
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
    ::mkdir(path.substr(0, slash).c_str(), 0777);
  }
  ::mkdir(path.c_str(), 0777);
  return isFolder(path);
}

std::optional<std::string> resolved(const std::string& path) {
  const std::unique_ptr<char, Free> absolute(::realpath(path.c_str(), nullptr));
  if (!absolute) return std::nullopt;
  return std::string(absolute.get());
}

}  // namespace kr::files
