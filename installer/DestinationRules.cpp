#include "installer/DestinationRules.h"

#include <algorithm>
#include <array>

#include "installer/WriteProbe.h"
#include "platform/FourCharacterCode.h"
#include "platform/Log.h"
#include "platform/LoginItems.h"
#include "platform/Paths.h"
#include "platform/Services.h"
#include "platform/StandardFolders.h"
#include "platform/UTF8Bytes.h"
#include "platform/posix/Files.h"

namespace kr {
namespace {

// A path is unsupported when it holds both fragments of a row; an empty fragment is in every path.
struct Fragments {
  std::string_view one, other;
};
constexpr std::array<Fragments, 4> kUnsupportedFragments{
    {{"/build", "/qam/"}, {"/Volumes/", "-Install"}, {"/Trash/", ""}, {"/.Trash/", ""}}};
constexpr std::string_view kTemporaryFolder = "/private/var/";

// In UTF-16 units. A path shorter than this is "/", "~" or a name of one letter.
constexpr std::size_t kShortestLocalizedPath = 3;

bool contains(std::string_view text, std::string_view fragment) {
  return text.find(fragment) != std::string_view::npos;
}

std::optional<std::string> firstSupportedPath(const std::vector<RunningCopy>& processes,
                                              const std::function<bool(std::uint32_t)>& isWanted) {
  for (const RunningCopy& process : processes) {
    if (process.isInstaller || !isSignature(process.signature) || !isWanted(process.signature)) continue;
    std::optional<std::string> path = process.path();
    if (path && !isInUnsupportedFolder(path)) return path;
  }
  return std::nullopt;
}

}  // namespace

bool isInUnsupportedFolder(const std::optional<std::string>& path) {
  if (!path) return false;
  return std::any_of(
             kUnsupportedFragments.begin(), kUnsupportedFragments.end(),
             [&](const Fragments& row) { return contains(*path, row.one) && contains(*path, row.other); }) ||
         path->starts_with(kTemporaryFolder);
}

std::optional<std::string> autoLaunchPath(std::string_view namePrefix) {
  const auto items = platform::services().loginItems->paths();
  if (!items) return std::nullopt;
  const auto match = std::find_if(items->begin(), items->end(), [&](const std::string& path) {
    return paths::lastComponent(path).starts_with(namePrefix);
  });
  if (match == items->end()) return std::nullopt;
  return *match;
}

std::optional<std::string> pathToReplace(const std::vector<RunningCopy>& processes,
                                         const std::vector<std::uint32_t>& productCodes) {
  if (productCodes.empty()) return std::nullopt;
  const auto main =
      firstSupportedPath(processes, [&](std::uint32_t code) { return code == productCodes.front(); });
  if (main || productCodes.size() < 2) return main;
  return firstSupportedPath(processes, [&](std::uint32_t code) {
    return std::find(productCodes.begin(), productCodes.end(), code) != productCodes.end();
  });
}

std::optional<std::string> preferredDestination(
    std::string_view productName, const std::function<std::optional<std::string>()>& runningCopy) {
  std::optional<std::string> loginItem = autoLaunchPath(productName);
  log("autolaunch = %@", loginItem);
  if (!loginItem || isInUnsupportedFolder(loginItem)) return runningCopy();
  return loginItem;
}

std::string applicationsFolder() {
  platform::StandardFolders& folders = *platform::services().folders;
  const std::optional<std::string> local = folders.localApplications();
  if (local && canWriteToFileOrDirectory(*local)) return *local;
  log("Can't write to /Applications, checking ~/Applications");
  const std::optional<std::string> user = folders.userApplications();
  log("User applicationsDirectory: %@", user);
  if (user && canWriteToFileOrDirectory(*user)) return *user;
  return local.value_or("");
}

std::string destinationInFolder(const std::optional<std::string>& wanted, std::string_view sourcePath) {
  if (wanted && files::isFolder(std::string(paths::parent(*wanted)))) return *wanted;
  return paths::joined(applicationsFolder(), paths::lastComponent(sourcePath));
}

bool isUsableWrapper(const std::string& wrapper, std::string_view sourcePath) {
  return wrapper.starts_with(paths::parent(sourcePath)) && files::exists(wrapper);
}

std::string destinationInWrapper(std::string_view destination, std::string_view wrapper) {
  const std::string_view folder = paths::parent(destination);
  const std::string_view name = paths::lastComponent(wrapper);
  if (paths::lastComponent(folder) == name) return std::string(destination);
  return paths::joined(paths::joined(folder, name), paths::lastComponent(destination));
}

std::string recursiveLocalizedPath(const std::string& path) {
  if (platform::utf16FromBytes(path).size() < kShortestLocalizedPath) return path;
  platform::StandardFolders& folders = *platform::services().folders;
  return paths::joined(recursiveLocalizedPath(std::string(paths::parent(path))),
                       folders.displayName(paths::expandingTilde(path, folders.home())));
}

std::string localizedPath(const std::string& path) {
  return recursiveLocalizedPath(paths::abbreviatingWithTilde(path, platform::services().folders->home()));
}

}  // namespace kr
