#include "platform/replace/TreeCopy.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "platform/Paths.h"
#include "platform/posix/FileTimes.h"
#include "platform/posix/Files.h"
#include "platform/posix/LastError.h"

namespace kr::platform::replace {
namespace {

using posix::FileDescriptor;

constexpr mode_t kForbidden = S_ISUID | S_ISGID | S_IWGRP | S_IWOTH;

std::optional<Failure> failure(const char* step, const Entry& entry) {
  return Failure{step, entry.path, posix::lastError()};
}

bool isSame(const timespec& one, const timespec& other) {
  return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

class Copy {
 public:
  Copy(const Entry& source, const Entry& destination, Contents& contents)
      : source_(source), destination_(destination), contents_(contents) {}

  std::optional<Failure> run() {
    if (::fstatat(source_.folder, source_.name.c_str(), &status_, AT_SYMLINK_NOFOLLOW) != 0) {
      return failure("look at", source_);
    }
    if (S_ISDIR(status_.st_mode)) return copyFolder();
    if (S_ISREG(status_.st_mode)) return copyFile();
    if (S_ISLNK(status_.st_mode)) return copyLink();
    return specialFile();
  }

 private:
  [[nodiscard]] Failure specialFile() const {
    return {"copy special file", source_.path, std::make_error_code(std::errc::not_supported)};
  }

  [[nodiscard]] FileDescriptor openSource(int flags) const {
    return FileDescriptor(
        ::openat(source_.folder, source_.name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | flags));
  }
  [[nodiscard]] FileDescriptor openDestination(int flags, mode_t mode = 0) const {
    return FileDescriptor(
        ::openat(destination_.folder, destination_.name.c_str(), O_NOFOLLOW | O_CLOEXEC | flags, mode));
  }

  // The other entry's name below both.
  [[nodiscard]] static Entry below(int folder, const Entry& entry, const std::string& name) {
    return {folder, name, paths::joined(entry.path, name)};
  }

  std::optional<Failure> copyFolder() {
    const FileDescriptor source = openSource(O_DIRECTORY);
    if (!source || ::fstat(source.get(), &status_) != 0) return failure("open", source_);
    if (::mkdirat(destination_.folder, destination_.name.c_str(), S_IRWXU) != 0) {
      return failure("create folder", destination_);
    }
    const FileDescriptor copy = openDestination(O_RDONLY | O_DIRECTORY);
    if (!copy) return failure("open", destination_);
    const auto names = files::entries(source.get());
    if (!names) return failure("list", source_);
    for (const std::string& name : *names) {
      Copy child(below(source.get(), source_, name), below(copy.get(), destination_, name), contents_);
      if (auto failed = child.run()) return failed;
    }
    if (!contents_.copyAttributes(source.get(), copy.get())) return failure("copy attributes of", source_);
    return giveToSystem(copy.get());
  }

  std::optional<Failure> copyFile() {
    // A FIFO that takes the place of a file must not hold this up.
    const FileDescriptor source = openSource(O_NONBLOCK | O_NOCTTY);
    if (!source || ::fstat(source.get(), &status_) != 0) return failure("open", source_);
    if (!S_ISREG(status_.st_mode)) return specialFile();
    const bool isCloned = contents_.clone(source.get(), destination_.folder, destination_.name);
    const FileDescriptor copy = isCloned ? openDestination(O_RDONLY)
                                         : openDestination(O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
    if (!copy) return failure("create", destination_);
    if (!isCloned) {
      if (!contents_.copyFile(source.get(), copy.get())) {
        return errno == ENOSPC || errno == EDQUOT || errno == EFBIG ? failure("write", destination_)
                                                                    : failure("copy", source_);
      }
      struct stat after {};
      if (::fstat(source.get(), &after) != 0) return failure("look at", source_);
      if (after.st_size != status_.st_size || !isSame(posix::lastChange(after), posix::lastChange(status_))) {
        errno = ESTALE;
        return failure("copy, as it changes meanwhile,", source_);
      }
      if (::fsync(copy.get()) != 0) return failure("write to the disk", destination_);
    }
    return giveToSystem(copy.get());
  }

  std::optional<Failure> copyLink() {
    std::array<char, PATH_MAX + 1> target{};
    if (::readlinkat(source_.folder, source_.name.c_str(), target.data(), target.size() - 1) < 0) {
      return failure("read link", source_);
    }
    const char* name = destination_.name.c_str();
    if (::symlinkat(target.data(), destination_.folder, name) != 0)
      return failure("create link", destination_);
    if (::fchownat(destination_.folder, name, 0, 0, AT_SYMLINK_NOFOLLOW) != 0 && errno != EPERM) {
      return failure("set owner of", destination_);
    }
    const timespec times[] = {posix::lastRead(status_), posix::lastChange(status_)};
    if (::utimensat(destination_.folder, name, times, AT_SYMLINK_NOFOLLOW) != 0) {
      return failure("set times of", destination_);
    }
    return std::nullopt;
  }

  // Anybody but root keeps what is theirs.
  std::optional<Failure> giveToSystem(int copy) {
    if (const auto problem = contents_.unprotect(copy)) {
      return Failure{problem->step, destination_.path, problem->error};
    }
    if (::fchown(copy, 0, 0) != 0 && errno != EPERM) return failure("set owner of", destination_);
    if (::fchmod(copy, status_.st_mode & 07777 & ~kForbidden) != 0)
      return failure("set mode of", destination_);
    const timespec times[] = {posix::lastRead(status_), posix::lastChange(status_)};
    if (::futimens(copy, times) != 0) return failure("set times of", destination_);
    return std::nullopt;
  }

  Entry source_;
  Entry destination_;
  Contents& contents_;
  struct stat status_ {};
};

}  // namespace

std::optional<Failure> copyTree(const Entry& source, const Entry& destination, Contents& contents) {
  return Copy(source, destination, contents).run();
}

}  // namespace kr::platform::replace
