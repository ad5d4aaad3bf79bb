#include "platform/linux/copy/ItemCopier.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <climits>

#include "platform/posix/FileDescriptor.h"

namespace kr::platform::copy {
namespace {

using posix::FileDescriptor;

constexpr Problem kSpecialFile{"copy special file", ENOTSUP};

}  // namespace

Outcome ItemCopier::copy(Kind kind, const Place& source, const Place& destination, const PathOf& above,
                         Buffer& buffer) {
  switch (kind) {
    case Kind::file:
      return copyFile(source, destination, above, buffer);
    case Kind::link:
      return copyLink(source, destination, above);
    default:
      return kSpecialFile;
  }
}

Outcome ItemCopier::copyFile(const Place& source, const Place& destination, const PathOf& above,
                             Buffer& buffer) {
  // A FIFO that takes the place of a file must not hold this up.
  const FileDescriptor file(::openat(source.folder, source.name.c_str(),
                                     O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  Attributes attributes;
  const struct stat& status = attributes.status;
  if (!file) return problem("open");
  if (::fstat(file.get(), &attributes.status) != 0) return problem("look at");
  if (!S_ISREG(status.st_mode)) return kSpecialFile;

  FileDescriptor copy;
  const auto create = [&] {
    copy.reset(::openat(destination.folder, destination.name.c_str(),
                        O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    return static_cast<bool>(copy);
  };
  if (status.st_nlink > 1) {
    const auto made =
        links_.linkOrCreate(status, destination.folder, destination.name, above() + destination.name, create);
    if (made == HardLinks::Made::link) return std::nullopt;
  } else {
    (void)create();
  }
  if (!copy) return problem("create", Side::destination);

  if (Outcome failed = copyContents(file.get(), status, copy.get(), cloning_, buffer)) return failed;
  if (Outcome failed = readExtendedAttributes(file.get(), attributes)) return failed;
  adjust(attributes);
  if (Outcome failed = applyAttributes(copy.get(), attributes, creator_)) return failed;
  // Some file systems report only here that there was no room.
  if (::close(copy.release()) != 0 && errno != EINTR) return problem("write", Side::destination);
  return std::nullopt;
}

Outcome ItemCopier::copyLink(const Place& source, const Place& destination, const PathOf& above) {
  struct stat status {};
  if (::fstatat(source.folder, source.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    return problem("look at");
  }
  std::array<char, PATH_MAX + 1> target{};
  const ssize_t size = ::readlinkat(source.folder, source.name.c_str(), target.data(), target.size() - 1);
  if (size < 0) return problem("read link");
  const auto create = [&] {
    return ::symlinkat(target.data(), destination.folder, destination.name.c_str()) == 0;
  };
  if (status.st_nlink > 1) {
    const auto made =
        links_.linkOrCreate(status, destination.folder, destination.name, above() + destination.name, create);
    if (made == HardLinks::Made::link) return std::nullopt;
    if (made == HardLinks::Made::nothing) return problem("create link", Side::destination);
  } else if (!create()) {
    return problem("create link", Side::destination);
  }
  return copyLinkAttributes(source.folder, source.name, destination.folder, destination.name, status,
                            creator_, rights_);
}

}  // namespace kr::platform::copy
