// What a replacement asks of the system and each system calls by another name. Everything works on names in
// open folders, so that no link that is put in their way meanwhile leads elsewhere. Any thread.
#pragma once

#include <optional>
#include <string>
#include <system_error>

#include "platform/Failure.h"
#include "platform/posix/FileDescriptor.h"

namespace kr::platform::replace {

// A name in an open folder; "." is the folder itself. `path` names it in failures.
struct Entry {
  int folder = -1;
  std::string name;
  std::string path;
};

// Opens the folder of that name in an open folder, or at an absolute path, to go through it or to work in it;
// a link is no folder. None with errno when it cannot be opened.
[[nodiscard]] posix::FileDescriptor openFolder(int above, const std::string& name) noexcept;

// Whether something is mounted there.
[[nodiscard]] bool isMountPoint(const Entry& entry) noexcept;

// Takes the access lists away that a new item has got from elsewhere: a folder passes none on then.
[[nodiscard]] std::error_code removeInheritedAccessLists(int item) noexcept;

// Copies a file, a link or a folder with all that is in it to a name that is not taken, in a folder that
// nobody else may enter. No link is followed; anything else than these three is a failure. The copy is a part
// of the system: root's where this process is root, with the modes of the source except that it sets no user
// and group and is written by nobody but its owner, without access lists. After a failure what was copied so
// far is there. Failures of the reading side carry a path of the source.
[[nodiscard]] std::optional<Failure> copyEntry(const Entry& source, const Entry& destination);

// Deletes a file, a link or a folder with all that is in it. No link is followed, nothing that is mounted
// inside is touched.
[[nodiscard]] std::optional<Failure> removeEntry(const Entry& entry);

// Gives the item in the folder `from` a name in the folder `to`, at which there must be nothing
// (file_exists).
[[nodiscard]] std::error_code renameExclusively(int from, const std::string& old, int to,
                                                const std::string& name) noexcept;

// Gives each of the two items the other one's name, in one step. `not_supported` where the file system
// cannot.
[[nodiscard]] std::error_code exchangeNames(int folder, const std::string& name, int otherFolder,
                                            const std::string& otherName) noexcept;

// Returns when all that was written below the open folder is on the disk.
[[nodiscard]] std::error_code bringToDisk(int folder) noexcept;

}  // namespace kr::platform::replace
