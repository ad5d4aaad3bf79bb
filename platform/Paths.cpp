#include "platform/Paths.h"

namespace kr::paths {

std::string_view withoutTrailingSlashes(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  return path;
}

std::string_view lastComponent(std::string_view path) {
  path = withoutTrailingSlashes(path);
  if (path == "/") return path;
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view parent(std::string_view path) {
  path = withoutTrailingSlashes(path);
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return {};
  return slash == 0 ? path.substr(0, 1) : withoutTrailingSlashes(path.substr(0, slash));
}

std::string joined(std::string_view folder, std::string_view name) {
  if (folder.empty()) return std::string(name);
  if (name.empty()) return std::string(folder);
  std::string path(withoutTrailingSlashes(folder));
  while (!name.empty() && name.front() == '/') name.remove_prefix(1);
  if (path.back() != '/') path += '/';
  path += name;
  return path;
}

std::string_view extension(std::string_view path) {
  const std::string_view name = lastComponent(path);
  const std::size_t dot = name.rfind('.');
  return dot == std::string_view::npos || dot == 0 ? std::string_view{} : name.substr(dot + 1);
}

std::string_view withoutExtension(std::string_view path) {
  path = withoutTrailingSlashes(path);
  const std::string_view name = lastComponent(path);
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return path;
  return path.substr(0, path.size() - (name.size() - dot));
}

std::string expandingTilde(std::string_view path, std::string_view home) {
  if (path == "~") return std::string(home);
  if (path.starts_with("~/")) return joined(home, path.substr(2));
  return std::string(path);
}

std::string abbreviatingWithTilde(std::string_view path, std::string_view home) {
  if (home.size() < 2 || !isSameOrInside(path, home)) return std::string(path);
  return "~" + std::string(path.substr(home.size()));
}

bool isSameOrInside(std::string_view path, std::string_view folder) {
  if (folder == "/") return path.starts_with('/');
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

}  // namespace kr::paths
