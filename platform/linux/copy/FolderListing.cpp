#include "platform/linux/copy/FolderListing.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "platform/posix/FileDescriptor.h"

namespace kr::platform::copy {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

Kind kindOf(int folder, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return copy::kindOf(DTTOIF(entry.d_type));
  // What cannot be looked at will be found out when it is opened.
  struct stat status {};
  return ::fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 ? copy::kindOf(status.st_mode)
                                                                            : Kind::file;
}

}  // namespace

Kind kindOf(mode_t mode) noexcept {
  if (S_ISDIR(mode)) return Kind::folder;
  if (S_ISREG(mode)) return Kind::file;
  return S_ISLNK(mode) ? Kind::link : Kind::special;
}

Outcome listFolder(int folder, FolderListing& listing) {
  posix::FileDescriptor own(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
  if (!own) return problem("list");
  const std::unique_ptr<DIR, CloseFolder> stream(::fdopendir(own.get()));
  if (!stream) return problem("list");
  (void)own.release();

  struct Numbered {
    ino_t inode;
    Item item;
  };
  std::vector<Numbered> items;
  for (;;) {
    errno = 0;
    const dirent* entry = ::readdir(stream.get());
    if (entry == nullptr) break;
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    const Kind kind = kindOf(folder, *entry);
    if (kind == Kind::folder) {
      listing.folders.emplace_back(name);
    } else {
      items.push_back({entry->d_ino, {std::string(name), kind}});
    }
  }
  if (errno != 0) return problem("list");

  // A disk that has to be read for it gives files up fastest in this order.
  std::sort(items.begin(), items.end(),
            [](const Numbered& one, const Numbered& other) { return one.inode < other.inode; });
  listing.items.reserve(items.size());
  for (Numbered& numbered : items) listing.items.push_back(std::move(numbered.item));
  return std::nullopt;
}

}  // namespace kr::platform::copy
