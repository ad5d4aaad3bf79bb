#include "installer/CopyHazards.h"

#include <sys/stat.h>

#include <cerrno>
#include <vector>

#include "platform/Paths.h"
#include "platform/Program.h"
#include "platform/Services.h"
#include "platform/posix/Files.h"

namespace kr {
namespace {

using platform::Failure;

struct Place {
  dev_t volume = 0;
  ino_t number = 0;

  friend bool operator==(Place, Place) = default;
};

// Where the path leads, through links.
std::optional<Place> place(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return Place{status.st_dev, status.st_ino};
}

std::optional<std::string> nearestExisting(std::string path) {
  while (!path.empty() && !files::exists(path)) path = paths::parent(path);
  if (path.empty()) return std::nullopt;
  return files::resolved(path);
}

bool isLink(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

// Whether deleting the item takes the other one with it. A link goes alone.
bool deletionTakes(const std::string& item, const std::string& other) {
  return files::itemExists(item) && !isLink(item) && files::exists(other) && liesInside(other, item);
}

}  // namespace

bool liesInside(const std::string& path, const std::string& folder) {
  const std::optional<Place> wanted = place(folder);
  std::optional<std::string> at = nearestExisting(path);
  if (!wanted || !at) return false;
  // Without links, the text of the path above is the way up on the disk.
  while (place(*at) != wanted) {
    if (*at == "/") return false;
    at = paths::parent(*at);
  }
  return true;
}

std::optional<Failure> hazardOfProduct(const std::string& source, const std::string& destination) {
  if (!files::isReadableFolder(source)) return Failure{"the source is not a readable folder:", source, {}};
  const std::string_view name = paths::lastComponent(destination);
  if (!destination.starts_with('/') || name == "/" || name == "." || name == "..") {
    return Failure{"the destination is not the full path of an item:", destination, {}};
  }
  if (liesInside(destination, source)) {
    return Failure{"the destination is the source or lies inside it:", destination, {}};
  }
  if (liesInside(source, destination)) {
    return Failure{"the source lies inside the destination:", source, {}};
  }
  return std::nullopt;
}

std::optional<Failure> hazardOfWrapper(const std::string& wrapper, const std::string& source,
                                       const std::string& destination) {
  const std::string parent(paths::parent(destination));
  const std::optional<std::vector<std::string>> entries = files::entries(wrapper);
  if (!entries) return Failure{"the wrapper cannot be listed to be copied to", parent, {}};
  if (liesInside(parent, wrapper)) {
    return Failure{"the wrapper would be copied into itself, to", parent, {}};
  }
  // The existing copy only goes to the Trash, but with it would go what the user has chosen to install.
  if (deletionTakes(destination, wrapper)) {
    return Failure{"the wrapper lies inside the item to replace:", destination, {}};
  }
  const std::string program = platform::services().program->bundlePath();
  for (const std::string& entry : *entries) {
    const std::string item = paths::joined(parent, entry);
    for (const std::string& kept : {wrapper, source, program, paths::joined(wrapper, entry)}) {
      if (deletionTakes(item, kept)) return Failure{kept + " would be deleted with", item, {}};
    }
  }
  return std::nullopt;
}

}  // namespace kr
