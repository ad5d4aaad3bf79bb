#include "installer/train/DestinationPath.h"

#include "platform/Paths.h"

namespace kr::train {
namespace {

constexpr std::string_view kProduct = "app";

std::string refusalOf(const DestinationPath& destination) {
  if (destination.folders.empty()) return "it lies in the root folder";
  for (const std::string& folder : destination.folders) {
    if (folder.empty() || folder == "." || folder == "..") return "its path is not plain";
    if (folder.front() == '.') return "it lies in a hidden folder";
    if (paths::extension(folder) == kProduct) return "it lies inside a product";
  }
  const std::string& name = destination.name;
  if (name == "." || name == "..") return "its path is not plain";
  // Also refuses ".app", which has no extension.
  if (paths::extension(name) != kProduct) return "its name is not that of a product";
  if (name.front() == '.') return "its name is hidden";
  return {};
}

}  // namespace

DestinationPath destinationPath(std::string_view path) {
  DestinationPath destination;
  path = paths::withoutTrailingSlashes(path);
  if (!path.starts_with('/')) {
    destination.refusal = "it is no full path";
    return destination;
  }
  path.remove_prefix(1);
  for (std::size_t slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/')) {
    destination.folders.emplace_back(path.substr(0, slash));
    path.remove_prefix(slash + 1);
  }
  destination.name = path;
  destination.refusal = refusalOf(destination);
  return destination;
}

}  // namespace kr::train
