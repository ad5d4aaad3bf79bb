#include "platform/linux/copy/Contents.h"

#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace kr::platform::copy {
namespace {

constexpr off_t kBlockUnit = 512;  // of st_blocks, on every file system

// Whether the answer to one file holds for all of them.
bool isForEveryFile(int error) {
  return error == EOPNOTSUPP || error == ENOTTY || error == EXDEV || error == ENOSYS;
}

bool clone(int source, int destination, CloneSupport& cloning) {
  if (!cloning.load(std::memory_order_relaxed)) return false;
  if (::ioctl(destination, FICLONE, source) == 0) return true;
  if (isForEveryFile(errno)) cloning.store(false, std::memory_order_relaxed);
  return false;
}

ssize_t readSome(int source, char* bytes, std::size_t size) {
  ssize_t count = -1;
  do {
    count = ::read(source, bytes, size);
  } while (count < 0 && errno == EINTR);
  return count;
}

Outcome writeAll(int destination, const char* bytes, std::size_t size) {
  while (size > 0) {
    const ssize_t count = ::write(destination, bytes, size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return problem("write", Side::destination);
    bytes += count;
    size -= static_cast<std::size_t>(count);
  }
  return std::nullopt;
}

// Copies up to `size` bytes from where both files stand and adds what it found to `copied`; stops early at
// the source's end.
Outcome copyBytes(int source, int destination, off_t size, Buffer& buffer, off_t& copied) {
  while (size > 0) {
    const std::size_t wanted = std::min(buffer.size(), static_cast<std::size_t>(size));
    const ssize_t count = readSome(source, buffer.data(), wanted);
    if (count < 0) return problem("read");
    if (count == 0) return std::nullopt;
    if (Outcome failed = writeAll(destination, buffer.data(), static_cast<std::size_t>(count))) return failed;
    copied += count;
    size -= count;
  }
  return std::nullopt;
}

constexpr Problem kChanged{"copy, as it changes meanwhile,", ESTALE};

Outcome copyWhole(int source, off_t size, int destination, Buffer& buffer) {
  off_t copied = 0;
  for (;;) {
    // One byte more than there should be: an answer without it tells of the end, and spares a call that does.
    const std::size_t wanted = std::min(buffer.size(), static_cast<std::size_t>(size - copied) + 1);
    const ssize_t count = readSome(source, buffer.data(), wanted);
    if (count < 0) return problem("read");
    copied += count;
    if (copied > size || (count == 0 && copied < size)) return kChanged;
    if (Outcome failed = writeAll(destination, buffer.data(), static_cast<std::size_t>(count))) return failed;
    if (copied == size && static_cast<std::size_t>(count) < wanted) return std::nullopt;
  }
}

Outcome setLength(int destination, off_t size) {
  while (::ftruncate(destination, size) != 0) {
    if (errno != EINTR) return problem("write", Side::destination);
  }
  return std::nullopt;
}

// The file's data one stretch after the other. What is between them reads as zeros and takes no space.
Outcome copyStretches(int source, off_t size, int destination, Buffer& buffer) {
  off_t hole = 0;
  for (;;) {
    const off_t data = ::lseek(source, hole, SEEK_DATA);
    if (data < 0 && errno == ENXIO) break;  // none beyond this point
    if (data < 0) return problem("read");
    hole = ::lseek(source, data, SEEK_HOLE);
    if (hole < 0 || ::lseek(source, data, SEEK_SET) < 0) return problem("read");
    if (::lseek(destination, data, SEEK_SET) < 0) return problem("write", Side::destination);
    off_t copied = 0;
    if (Outcome failed = copyBytes(source, destination, hole - data, buffer, copied)) return failed;
    if (copied != hole - data) return kChanged;
  }
  const off_t end = ::lseek(source, 0, SEEK_END);
  if (end < 0) return problem("read");
  return end == size ? setLength(destination, size) : kChanged;
}

Outcome findHoles(int source, const struct stat& status, bool& has) {
  // A file that the file system compresses or keeps in its inode looks like one with holes; asking for the
  // first one tells, and a file system that knows of no holes answers EINVAL.
  has = status.st_blocks * kBlockUnit < status.st_size;
  if (!has) return std::nullopt;
  const off_t hole = ::lseek(source, 0, SEEK_HOLE);
  if (hole < 0 && errno != EINVAL && errno != ENXIO) return problem("read");
  has = hole >= 0 && hole < status.st_size;
  if (::lseek(source, 0, SEEK_SET) != 0) return problem("read");
  return std::nullopt;
}

}  // namespace

Outcome copyContents(int source, const struct stat& status, int destination, CloneSupport& cloning,
                     Buffer& buffer) {
  if (clone(source, destination, cloning)) {
    struct stat cloned {};
    if (::fstat(destination, &cloned) != 0) return problem("look at", Side::destination);
    return cloned.st_size == status.st_size ? Outcome{} : kChanged;
  }
  bool hasHoles = false;
  if (Outcome failed = findHoles(source, status, hasHoles)) return failed;
  return hasHoles ? copyStretches(source, status.st_size, destination, buffer)
                  : copyWhole(source, status.st_size, destination, buffer);
}

}  // namespace kr::platform::copy
