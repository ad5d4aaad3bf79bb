#include "installer/train/Way.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#include "platform/Paths.h"
#include "platform/posix/LastError.h"
#include "platform/replace/Replacement.h"

namespace kr::train {
namespace {

using platform::replace::Identity;
using platform::replace::Place;
using platform::replace::SystemFolder;

Refusal unreachable(const std::string& path) {
  return {Status::destinationUnreachable, platform::Failure{"open", path, posix::lastError()}.text()};
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
  way.system = SystemPlaces(systemFolders);
  std::string path = "/";
  Identity above;
  bool isClosed = false;
  bool isOpenBelow = false;
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
    const Identity identity{status.st_dev, status.st_ino};
    way.system.enter(above, way.parent.get(), path);
    const std::optional<Place> place = way.system.placeOf(identity);
    if (place) isClosed = *place == Place::closed;
    isOpenBelow = place == Place::openBelow;
    above = identity;
  }
  // A folder that does not exist is known by its name alone.
  if (!way.parent) isClosed = isClosed || way.system.isKeptName(path);
  if (isClosed) return refused(path, "is the system's own");
  if (isOpenBelow && way.parent) return refused(path, "has room for products only in its folders");
  return std::nullopt;
}

}  // namespace kr::train
