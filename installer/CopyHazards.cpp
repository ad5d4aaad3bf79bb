#include "installer/CopyHazards.h"

#include <sys/stat.h>

#include "platform/Paths.h"
#include "platform/posix/Files.h"

namespace kr {
namespace {

bool isSameItem(const std::string& one, const std::string& other) {
  struct stat first {};
  struct stat second {};
  return ::stat(one.c_str(), &first) == 0 && ::stat(other.c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

// The path without links, as far down as it exists.
std::string nearestExisting(std::string path) {
  while (path.size() > 1 && !files::exists(path)) path = paths::parent(path);
  return files::resolved(path).value_or(path);
}

}  // namespace

bool holds(const std::string& item, const std::string& kept) {
  for (std::string folder = nearestExisting(kept); !folder.empty(); folder = paths::parent(folder)) {
    if (isSameItem(folder, item)) return true;
    if (folder == "/") break;
  }
  return false;
}

std::optional<std::string> hazardOfProduct(const std::string& source, const std::string& destination) {
  if (!files::isFolder(source)) return "the source is no folder";
  if (!files::isReadableFolder(source)) return "the source cannot be read";
  if (isSameItem(source, destination)) return "the source is the destination";
  if (holds(destination, source)) return "the source lies inside the destination";
  if (holds(source, destination)) return "the destination lies inside the source";
  return std::nullopt;
}

}  // namespace kr
