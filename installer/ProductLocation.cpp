#include "installer/ProductLocation.h"

#include "platform/Log.h"
#include "platform/Paths.h"

namespace kr {
namespace {

constexpr std::string_view kApplicationSuffix = ".app";

}  // namespace

std::optional<std::string> enclosingApplication(std::string_view installerPath) {
  std::string_view path = paths::parent(installerPath);
  while (path.size() >= 2 && !path.ends_with(kApplicationSuffix)) {
    path = paths::parent(path);
    log("shortened path = %@", path);
  }
  if (!path.ends_with(kApplicationSuffix)) return std::nullopt;
  return std::string(path);
}

std::optional<std::string> productNameFromPath(std::string_view sourcePath) {
  const std::string_view name = paths::withoutExtension(paths::lastComponent(sourcePath));
  if (name.empty()) return std::nullopt;
  return std::string(name);
}

}  // namespace kr
