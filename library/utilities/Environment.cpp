#include "library/utilities/Environment.h"

#include <array>
#include <optional>
#include <string_view>

#include "platform/FileSystems.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/Program.h"
#include "platform/Services.h"
#include "platform/posix/Files.h"

namespace kr {
namespace {

constexpr std::array<std::string_view, 2> kMarkers{".launchlock", "launchlock"};
constexpr std::array<std::string_view, 2> kTransientPlaces{"/AppTranslocation/", "/var/tmp/"};

// The root of the volume that the path lies on, by its text.
std::optional<std::string> volumeOf(std::string_view path) {
  for (const std::string& folder : platform::services().fileSystems->volumeFolders()) {
    const std::string start = folder + "/";
    if (!path.starts_with(start)) continue;
    const std::size_t nameStart = path.find_first_not_of('/', start.size());
    if (nameStart == std::string_view::npos) continue;
    return start + std::string(path.substr(nameStart, path.find('/', nameStart) - nameStart));
  }
  return std::nullopt;
}

}  // namespace

bool runsFromDistributionDisk() {
  const std::optional<std::string> volume = volumeOf(platform::services().program->bundlePath());
  if (!volume) return false;
  for (const std::string_view marker : kMarkers) {
    if (files::exists(paths::joined(*volume, marker))) return true;
  }
  return false;
}

bool isInInstallationMode() {
  if (runsFromDistributionDisk()) return true;
  const std::string path = platform::services().program->bundlePath();
  for (const std::string_view place : kTransientPlaces) {
    if (path.find(place) != std::string::npos) return true;
  }
  return false;
}

std::string fileSystemType(const std::string& path) {
  log("FS Info %@", path);
  const platform::FileSystemType type = platform::services().fileSystems->type(path);
  log("statfs err = %d", type.status);
  return type.status == 0 ? type.name : "";
}

std::string resolvedAlias(const std::string& path) {
  return platform::services().fileSystems->aliasTarget(path).value_or(path);
}

}  // namespace kr
