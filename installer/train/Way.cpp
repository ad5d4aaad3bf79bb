#include "installer/train/Way.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "platform/Paths.h"
#include "platform/replace/Replacement.h"

namespace kr::train {
namespace {

using platform::replace::SystemFolder;

struct Known {
  platform::replace::Identity identity;
  bool isClosed;
};

// Known by what they are, not by how they are spelt: a volume can be mounted twice, and names need not tell
// capitals.
std::vector<Known> identify(std::span<const SystemFolder> systemFolders) {
  std::vector<Known> known;
  for (const SystemFolder& folder : systemFolders) {
    struct stat status {};
    if (::stat(folder.path, &status) == 0) {
      known.push_back({{status.st_dev, status.st_ino}, folder.isClosed});
    }
  }
  return known;
}

// A folder that does not exist is known by its name alone.
bool isClosedName(const std::string& path, std::span<const SystemFolder> systemFolders) {
  return std::any_of(systemFolders.begin(), systemFolders.end(),
                     [&](const SystemFolder& known) { return known.isClosed && path == known.path; });
}

Refusal unreachable(const std::string& path) {
  return {Status::destinationUnreachable,
          platform::Failure{"open", path, {errno, std::generic_category()}}.text()};
}

}  // namespace

Checked openWay(const std::vector<std::string>& folders, Way& way,
                std::span<const SystemFolder> systemFolders) {
  const auto refused = [](const std::string& path, const char* why) {
    return Refusal{Status::destinationRefused, path + " " + why};
  };
  way = {};
  way.parent = platform::replace::openFolder(AT_FDCWD, "/");
  if (!way.parent) return unreachable("/");
  std::string path = "/";
  const std::vector<Known> known = identify(systemFolders);
  bool isOfSystem = false;
  for (const std::string& name : folders) {
    path = paths::joined(path, name);
    way.above = std::move(way.parent);
    if (!way.above) return refused(std::string(paths::parent(path)), "does not exist");
    way.parent = platform::replace::openFolder(way.above.get(), name);
    if (!way.parent) {
      if (errno == ELOOP || errno == ENOTDIR) return refused(path, "is a link or no folder");
      if (errno == ENOENT) continue;
      return unreachable(path);
    }
    struct stat status {};
    if (::fstat(way.parent.get(), &status) != 0) return unreachable(path);
    if ((status.st_mode & S_IWOTH) != 0 && (status.st_mode & S_ISVTX) == 0) {
      return refused(path, "can be changed by everybody");
    }
    const platform::replace::Identity identity{status.st_dev, status.st_ino};
    for (const Known& folder : known) {
      if (folder.identity == identity) isOfSystem = folder.isClosed;
    }
  }
  if (!way.parent) isOfSystem = isOfSystem || isClosedName(path, systemFolders);
  if (isOfSystem) return refused(path, "is the system's own");
  return std::nullopt;
}

}  // namespace kr::train
