#include "installer/train/SystemPlaces.h"

#include <fcntl.h>
#include <limits.h>
#include <strings.h>
#include <sys/stat.h>

#include <algorithm>

#include "platform/Paths.h"

namespace kr::train {
namespace {

using platform::replace::Identity;
using platform::replace::Place;
using platform::replace::SystemFolder;

constexpr std::string_view kEach = "/*/";

std::optional<Identity> identityOf(int folder, const std::string& name, int flags = 0) {
  struct stat status {};
  if (::fstatat(folder, name.c_str(), &status, flags) != 0) return std::nullopt;
  return Identity{status.st_dev, status.st_ino};
}

bool isOrHolds(const std::string& path, const std::string& inner) {
  return inner.size() >= path.size() && ::strncasecmp(inner.c_str(), path.c_str(), path.size()) == 0 &&
         (inner.size() == path.size() || inner[path.size()] == '/');
}

}  // namespace

SystemPlaces::SystemPlaces(std::span<const SystemFolder> folders) {
  for (const SystemFolder& folder : folders) {
    const std::string path = folder.path;
    const std::size_t each = path.find(kEach);
    if (each == std::string::npos) {
      paths_.push_back(path);
      add(AT_FDCWD, path, folder.place);
    } else if (const auto above = identityOf(AT_FDCWD, path.substr(0, each))) {
      below_.push_back({*above, path.substr(each + kEach.size()), folder.place});
    }
  }
}

void SystemPlaces::enter(const Identity& above, int folder, const std::string& path) {
  for (const Below& below : below_) {
    if (below.above != above) continue;
    paths_.push_back(paths::joined(path, below.name));
    add(folder, below.name, below.place);
  }
}

std::optional<Place> SystemPlaces::placeOf(const Identity& folder) const {
  // A folder of two names is open only where both are.
  std::optional<Place> place;
  for (const Known& known : known_) {
    if (known.identity == folder && (!place || known.place < *place)) place = known.place;
  }
  return place;
}

bool SystemPlaces::isKept(const Identity& item) const {
  return std::find(kept_.begin(), kept_.end(), item) != kept_.end();
}

bool SystemPlaces::isKeptName(const std::string& path) const {
  return std::any_of(paths_.begin(), paths_.end(),
                     [&](const std::string& known) { return isOrHolds(path, known); });
}

void SystemPlaces::add(int folder, const std::string& name, Place place) {
  // What has the name and the names on the way to it, links too.
  for (std::size_t end = name.find('/', 1);; end = name.find('/', end + 1)) {
    if (const auto item = identityOf(folder, name.substr(0, end), AT_SYMLINK_NOFOLLOW))
      kept_.push_back(*item);
    if (end == std::string::npos) break;
  }
  const auto identity = identityOf(folder, name);
  if (!identity) return;
  known_.push_back({*identity, place});
  // The folder that it is and all above it; the root is its own parent.
  std::optional<Identity> last;
  for (std::string way = name; way.size() < PATH_MAX; way += "/..") {
    const auto at = identityOf(folder, way);
    if (!at || at == last) break;
    kept_.push_back(*at);
    last = at;
  }
}

}  // namespace kr::train
