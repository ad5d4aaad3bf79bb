#include "installer/CopyHazards.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>
#include <vector>

#include "platform/Paths.h"
#include "platform/Program.h"
#include "platform/Services.h"
#include "platform/posix/Files.h"
#include "platform/posix/LastError.h"

namespace kr {
namespace {

using platform::Failure;
using posix::lastError;

// Whether something is the case: none is no, an empty error is yes, and any other one says why nobody knows.
using Danger = std::optional<std::error_code>;

// A link that leads to itself and a name that is too long lead nowhere either.
bool meansNothingThere(std::error_code error) {
  return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory ||
         error == std::errc::too_many_symbolic_link_levels || error == std::errc::filename_too_long;
}

std::error_code look(const std::string& path, struct stat& status, int flags = 0) {
  return ::fstatat(AT_FDCWD, path.c_str(), &status, flags) == 0 ? std::error_code() : lastError();
}

bool isSamePlace(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

// Replaces the path by the nearest one above it that exists, without links; by "" where there is none.
std::error_code toNearestExisting(std::string& path) {
  struct stat status {};
  std::error_code error;
  while (!path.empty() && meansNothingThere(error = look(path, status))) path = paths::parent(path);
  if (path.empty() || error) return path.empty() ? std::error_code() : error;
  const std::optional<std::string> resolved = files::resolved(path);
  if (!resolved) return lastError();
  path = *resolved;
  return {};
}

// Whether the item at the path, or the nearest folder above it that exists, is the folder or lies below it.
Danger liesInside(const std::string& path, const std::string& folder) {
  struct stat wanted {};
  const std::error_code absent = look(folder, wanted);
  if (absent) return meansNothingThere(absent) ? Danger() : absent;
  std::string at = path;
  if (const std::error_code error = toNearestExisting(at)) return error;
  if (at.empty()) return std::nullopt;
  // Without links, the text of the path above is the way up on the disk.
  for (;;) {
    struct stat status {};
    if (const std::error_code error = look(at, status)) return error;
    if (isSamePlace(status, wanted)) return std::error_code();
    if (at == "/") return std::nullopt;
    at = paths::parent(at);
  }
}

// Whether deleting the item takes the other one with it. A link goes alone.
Danger deletionTakes(const std::string& item, const std::string& other) {
  struct stat status {};
  if (const std::error_code error = look(item, status, AT_SYMLINK_NOFOLLOW)) {
    return meansNothingThere(error) ? Danger() : error;
  }
  if (S_ISLNK(status.st_mode)) return std::nullopt;
  if (const std::error_code error = look(other, status)) return meansNothingThere(error) ? Danger() : error;
  return liesInside(other, item);
}

}  // namespace

std::optional<Failure> hazardOfProduct(const std::string& source, const std::string& destination) {
  if (!files::isReadableFolder(source)) return Failure{"the source is not a readable folder:", source, {}};
  const std::string_view name = paths::lastComponent(destination);
  if (!destination.starts_with('/') || name == "/" || name == "." || name == "..") {
    return Failure{"the destination is not the full path of an item:", destination, {}};
  }
  if (const Danger danger = liesInside(destination, source)) {
    return Failure{"the destination is the source or lies inside it:", destination, *danger};
  }
  if (const Danger danger = liesInside(source, destination)) {
    return Failure{"the source lies inside the destination:", source, *danger};
  }
  return std::nullopt;
}

std::optional<Failure> hazardOfWrapper(const std::string& wrapper, const std::string& source,
                                       const std::string& destination) {
  const std::string parent(paths::parent(destination));
  const std::optional<std::vector<std::string>> entries = files::entries(wrapper);
  if (!entries) return Failure{"the wrapper cannot be listed to be copied to", parent, {}};
  if (const Danger danger = liesInside(parent, wrapper)) {
    return Failure{"the wrapper would be copied into itself, to", parent, *danger};
  }
  // The existing copy only goes to the Trash, but with it would go what the user has chosen to install.
  if (const Danger danger = deletionTakes(destination, wrapper)) {
    return Failure{"the wrapper lies inside the item to replace:", destination, *danger};
  }
  const std::string program = platform::services().program->bundlePath();
  for (const std::string& entry : *entries) {
    const std::string item = paths::joined(parent, entry);
    // The product is the one item that comes back, from the source: an installer inside the copy that it
    // replaces may take itself away.
    const bool isProduct = entry == paths::lastComponent(destination);
    for (const std::string& kept : {wrapper, source, program, paths::joined(wrapper, entry)}) {
      if (isProduct && kept == program) continue;
      if (const Danger danger = deletionTakes(item, kept)) {
        return Failure{kept + " would be deleted with", item, *danger};
      }
    }
  }
  return std::nullopt;
}

}  // namespace kr
