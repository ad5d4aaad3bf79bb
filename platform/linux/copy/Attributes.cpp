#include "platform/linux/copy/Attributes.h"

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <string_view>

#include "platform/posix/LastError.h"

namespace kr::platform::copy {
namespace {

constexpr std::string_view kUserAttributes = "user.";
constexpr std::array<std::string_view, 2> kAccessLists{"system.posix_acl_default", "system.posix_acl_access"};

// The calls that read and write extended attributes, on a descriptor or on a link.
struct Target {
  int descriptor = -1;
  std::string path;  // of a link; empty for a descriptor

  ssize_t list(char* names, std::size_t size) const {
    return path.empty() ? ::flistxattr(descriptor, names, size) : ::llistxattr(path.c_str(), names, size);
  }
  ssize_t get(const char* name, void* value, std::size_t size) const {
    return path.empty() ? ::fgetxattr(descriptor, name, value, size)
                        : ::lgetxattr(path.c_str(), name, value, size);
  }
  int set(const char* name, const std::string& value) const {
    return path.empty() ? ::fsetxattr(descriptor, name, value.data(), value.size(), 0)
                        : ::lsetxattr(path.c_str(), name, value.data(), value.size(), 0);
  }
};

// A link has no descriptor that attributes could be asked for; the folder's descriptor leads to it.
Target link(int folder, const std::string& name) {
  return {-1, "/proc/self/fd/" + std::to_string(folder) + "/" + name};
}

// Calls `read` with a growing buffer until what it answers fits.
Outcome readGrowing(std::string& bytes, const std::function<ssize_t(char*, std::size_t)>& read) {
  for (;;) {
    const ssize_t needed = read(nullptr, 0);
    if (needed < 0) return problem("read attributes of");
    bytes.resize(static_cast<std::size_t>(needed));
    if (needed == 0) return std::nullopt;
    const ssize_t size = read(bytes.data(), bytes.size());
    if (size >= 0) {
      bytes.resize(static_cast<std::size_t>(size));
      return std::nullopt;
    }
    if (errno != ERANGE) return problem("read attributes of");
  }
}

Outcome readExtended(const Target& target, std::vector<std::pair<std::string, std::string>>& extended) {
  std::string names;
  if (const Outcome failed =
          readGrowing(names, [&](char* buffer, std::size_t size) { return target.list(buffer, size); })) {
    return failed->error == ENOTSUP ? std::nullopt : failed;
  }
  for (std::size_t at = 0; at < names.size(); at += std::strlen(&names[at]) + 1) {
    std::string value;
    const char* name = &names[at];
    if (const Outcome failed = readGrowing(
            value, [&](char* buffer, std::size_t size) { return target.get(name, buffer, size); })) {
      // Gone since it was listed, or listed without being there (some network file systems do).
      if (failed->error == ENODATA || failed->error == ENOTSUP) continue;
      return failed;
    }
    extended.emplace_back(name, std::move(value));
  }
  return std::nullopt;
}

Outcome writeExtended(const Target& target, const std::string& name, const std::string& value) {
  if (target.set(name.c_str(), value) == 0 || errno == ENOTSUP) return std::nullopt;
  // Labels of the system's own: a process that may not set them gets those that belong to the new place. Not
  // so access lists: without its list a file would be open to others than before.
  const bool denied = errno == EPERM || errno == EACCES;
  const bool isOwners = name.starts_with(kUserAttributes) ||
                        std::find(kAccessLists.begin(), kAccessLists.end(), name) != kAccessLists.end();
  if (denied && !isOwners) return std::nullopt;
  return problem("set attributes of", Side::destination);
}

// Gives the item its owner; answers the mode bits that must not be kept because the owner is another one.
// `change` is fchown or its like. A file system without owners refuses, and so it is for an ordinary user.
Outcome applyOwner(const struct stat& status, const Creator& creator, mode_t& dropped,
                   const std::function<int(uid_t, gid_t)>& change) {
  if (status.st_uid == creator.user && status.st_gid == creator.group) return std::nullopt;
  if (change(status.st_uid, status.st_gid) == 0) return std::nullopt;
  const auto isRefusal = [] { return errno == EPERM || errno == EINVAL || errno == ENOTSUP; };
  if (!isRefusal()) return problem("set owner of", Side::destination);
  if (status.st_uid != creator.user) dropped |= S_ISUID;
  if (status.st_gid != creator.group && change(static_cast<uid_t>(-1), status.st_gid) != 0) {
    if (!isRefusal()) return problem("set owner of", Side::destination);
    dropped |= S_ISGID;
  }
  return std::nullopt;
}

std::array<timespec, 2> times(const struct stat& status) {
  return {status.st_atim, status.st_mtim};
}

}  // namespace

Creator Creator::current() noexcept {
  return {::geteuid(), ::getegid()};
}

void giveToSystem(struct stat& status) noexcept {
  status.st_uid = 0;
  status.st_gid = 0;
  status.st_mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID | S_IWGRP | S_IWOTH);
}

void giveToSystem(Attributes& attributes) {
  giveToSystem(attributes.status);
  std::erase_if(attributes.extended,
                [](const auto& attribute) { return !attribute.first.starts_with(kUserAttributes); });
}

Outcome readExtendedAttributes(int descriptor, Attributes& attributes) {
  return readExtended({descriptor, {}}, attributes.extended);
}

Outcome applyAttributes(int descriptor, const Attributes& attributes, const Creator& creator) {
  // A change of owner clears privileges and mode bits, and only a file that its owner may write takes
  // attributes: hence this order.
  mode_t dropped = 0;
  if (const Outcome failed = applyOwner(attributes.status, creator, dropped, [&](uid_t user, gid_t group) {
        return ::fchown(descriptor, user, group);
      })) {
    return failed;
  }
  for (const auto& [name, value] : attributes.extended) {
    if (const Outcome failed = writeExtended({descriptor, {}}, name, value)) return failed;
  }
  // For a file of one's own, only file systems without modes refuse.
  if (::fchmod(descriptor, attributes.status.st_mode & 07777 & ~dropped) != 0 && errno != EPERM) {
    return problem("set mode of", Side::destination);
  }
  if (::futimens(descriptor, times(attributes.status).data()) != 0) {
    return problem("set times of", Side::destination);
  }
  return std::nullopt;
}

Outcome copyLinkAttributes(int sourceFolder, const std::string& sourceName, int folder,
                           const std::string& name, const struct stat& status, const Creator& creator,
                           Rights rights) {
  Attributes attributes{status, {}};
  const Outcome unread = readExtended(link(sourceFolder, sourceName), attributes.extended);
  // Without /proc there is no way to them.
  if (unread && unread->error != ENOENT) return unread;
  if (rights == Rights::ofSystem) giveToSystem(attributes);
  mode_t dropped = 0;
  if (const Outcome failed = applyOwner(attributes.status, creator, dropped, [&](uid_t user, gid_t group) {
        return ::fchownat(folder, name.c_str(), user, group, AT_SYMLINK_NOFOLLOW);
      })) {
    return failed;
  }
  for (const auto& [attribute, value] : attributes.extended) {
    if (const Outcome failed = writeExtended(link(folder, name), attribute, value)) return failed;
  }
  if (::utimensat(folder, name.c_str(), times(status).data(), AT_SYMLINK_NOFOLLOW) != 0) {
    return problem("set times of", Side::destination);
  }
  return std::nullopt;
}

std::error_code removeInheritedAccessLists(int folder) noexcept {
  for (const std::string_view list : kAccessLists) {
    if (::fremovexattr(folder, list.data()) != 0 && errno != ENODATA && errno != ENOTSUP) {
      return posix::lastError();
    }
  }
  return {};
}

}  // namespace kr::platform::copy
