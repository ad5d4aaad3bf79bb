// What a file, folder or link has besides its contents: owner, mode, times, extended attributes. Access lists
// are extended attributes here.
#pragma once

#include <sys/stat.h>

#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/linux/copy/Problem.h"

namespace kr::platform::copy {

struct Attributes {
  struct stat status {};
  std::vector<std::pair<std::string, std::string>> extended;
};

// Who the files belong to that this process creates.
struct Creator {
  uid_t user;
  gid_t group;

  [[nodiscard]] static Creator current() noexcept;
};

// Whose a copy is.
enum class Rights {
  ofSource,  // what it was copied from says who owns it and what may be done with it
  ofSystem,  // it is part of the system: root's, written by nobody else, lending its rights to nobody
};

// Makes owner and mode those of a part of the system: root, no set-user-ID and set-group-ID bits, no writing
// by group and others.
void giveToSystem(struct stat& status) noexcept;

// The same, and takes away the extended attributes that grant something: access lists, capabilities, labels.
void giveToSystem(Attributes& attributes);

// Fills in the extended attributes of an open file or folder.
[[nodiscard]] Outcome readExtendedAttributes(int descriptor, Attributes& attributes);

// Gives them to an open file or folder that this process has created. The owner is kept where the process may
// give files away (root may); where it may not, a set-user-ID or set-group-ID bit is not kept either, because
// it would lend the rights of another account than before. Attributes that the file system cannot hold, or
// that only the system may set, are left out. No other attribute is.
[[nodiscard]] Outcome applyAttributes(int descriptor, const Attributes& attributes, const Creator& creator);

// The same for the link with the name in an open folder; the link's target is not touched.
[[nodiscard]] Outcome copyLinkAttributes(int sourceFolder, const std::string& sourceName, int folder,
                                         const std::string& name, const struct stat& status,
                                         const Creator& creator, Rights rights = Rights::ofSource);

// Takes the access lists away that a new folder has inherited, so that it passes none on.
[[nodiscard]] std::error_code removeInheritedAccessLists(int folder) noexcept;

}  // namespace kr::platform::copy
