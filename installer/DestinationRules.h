// Where a product goes: the copy that the user already runs, else the Applications folder, and inside a
// folder of its own when it comes with a wrapper. Paths are file-system bytes. Any thread.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kr {

// Whether the path lies in a place that must never be taken for an installed copy: a build folder, the
// installer's own disk image, the Trash, a temporary folder. A plain search in the path as it stands; no path
// is in no such place.
[[nodiscard]] bool isInUnsupportedFolder(const std::optional<std::string>& path);

// The first login item whose file name begins with the prefix; none when there is none.
[[nodiscard]] std::optional<std::string> autoLaunchPath(std::string_view namePrefix);

// A running process as the search for a copy to replace sees it.
struct RunningCopy {
  std::uint32_t signature = 0;
  bool isInstaller = false;
  std::function<std::optional<std::string>()> path;
};

// Path of the running copy to replace: the first with the first code, else the first with any of the codes.
// The installer itself, programs without a signature and copies in unsupported folders do not count.
[[nodiscard]] std::optional<std::string> pathToReplace(const std::vector<RunningCopy>& processes,
                                                       const std::vector<std::uint32_t>& productCodes);

// The login item's path when it is in a supported place, else the running copy's. Logs the login item.
[[nodiscard]] std::optional<std::string> preferredDestination(
    std::string_view productName, const std::function<std::optional<std::string>()>& runningCopy);

// The Applications folder to install into: that of the machine when it is writable, else that of the user
// when that one is, else that of the machine. Logs when it is not the first.
[[nodiscard]] std::string applicationsFolder();

// The full path that the product will have. `wanted` is taken when its parent is an existing folder.
[[nodiscard]] std::string destinationInFolder(const std::optional<std::string>& wanted,
                                              std::string_view sourcePath);

// Whether the wrapper folder may be used: it begins with the path of the source's parent folder, and it
// exists.
[[nodiscard]] bool isUsableWrapper(const std::string& wrapper, std::string_view sourcePath);

// The destination inside a folder named like the wrapper; as it stands when its folder has that name already.
[[nodiscard]] std::string destinationInWrapper(std::string_view destination, std::string_view wrapper);

// The path for people: the home folder as "~", and every component under the name that file viewers show.
[[nodiscard]] std::string recursiveLocalizedPath(const std::string& path);
[[nodiscard]] std::string localizedPath(const std::string& path);

}  // namespace kr
