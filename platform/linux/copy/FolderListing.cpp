#include "platform/linux/copy/FolderListing.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <limits>

namespace kr::platform::copy {
namespace {

constexpr std::size_t kBytesAtATime = 32UL << 10;

Kind kindOf(int folder, const dirent64& entry) {
  if (entry.d_type != DT_UNKNOWN) return copy::kindOf(DTTOIF(entry.d_type));
  // What cannot be looked at will be found out when it is opened.
  struct stat status {};
  return ::fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 ? copy::kindOf(status.st_mode)
                                                                            : Kind::file;
}

struct Numbered {
  ino_t inode;
  Item item;
};

}  // namespace

Kind kindOf(mode_t mode) noexcept {
  if (S_ISDIR(mode)) return Kind::folder;
  if (S_ISREG(mode)) return Kind::file;
  return S_ISLNK(mode) ? Kind::link : Kind::special;
}

void NameStack::push(std::string_view name) {
  bytes_.append(name);
  bytes_ += '\0';
}

std::string NameStack::pop() {
  bytes_.pop_back();
  const std::size_t start = bytes_.rfind('\0') + 1;  // 0 for the first one
  std::string name = bytes_.substr(start);
  bytes_.resize(start);
  return name;
}

FolderReader::FolderReader(int folder) : folder_(folder), buffer_(kBytesAtATime) {}

Outcome FolderReader::read(FolderListing& listing, std::size_t items) {
  std::vector<Numbered> found;
  while (!isAtEnd_ && found.size() < items) {
    const ssize_t size = ::getdents64(folder_, buffer_.data(), buffer_.size());
    if (size < 0) return problem("list");
    isAtEnd_ = size == 0;
    for (ssize_t at = 0; at < size;) {
      const auto* entry = reinterpret_cast<const dirent64*>(&buffer_[static_cast<std::size_t>(at)]);
      at += entry->d_reclen;
      const std::string_view name = entry->d_name;
      if (name == "." || name == "..") continue;
      const Kind kind = kindOf(folder_, *entry);
      if (kind == Kind::folder) {
        listing.folders.push(name);
      } else {
        found.push_back({entry->d_ino, {std::string(name), kind}});
      }
    }
  }
  // A disk that has to be read for it gives files up fastest in this order.
  std::sort(found.begin(), found.end(),
            [](const Numbered& one, const Numbered& other) { return one.inode < other.inode; });
  listing.items.clear();
  listing.items.reserve(found.size());
  for (Numbered& numbered : found) listing.items.push_back(std::move(numbered.item));
  return std::nullopt;
}

Outcome listFolder(int folder, FolderListing& listing) {
  return FolderReader(folder).read(listing, std::numeric_limits<std::size_t>::max());
}

}  // namespace kr::platform::copy
