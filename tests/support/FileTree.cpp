#include "tests/support/FileTree.h"

#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <functional>
#include <sstream>
#include <vector>

namespace kr::testing {
namespace {

using FirstNames = std::map<std::pair<dev_t, ino_t>, std::string>;

std::string attributes(const std::string& path) {
  std::array<char, 65536> names{};
  const ssize_t size = ::llistxattr(path.c_str(), names.data(), names.size());
  std::map<std::string, std::string> values;
  for (ssize_t at = 0; at < size;) {
    const std::string name = &names[static_cast<std::size_t>(at)];
    std::array<char, 65536> value{};
    const ssize_t length = ::lgetxattr(path.c_str(), name.c_str(), value.data(), value.size());
    values[name] = length < 0 ? "(unreadable)" : std::string(value.data(), static_cast<std::size_t>(length));
    at += static_cast<ssize_t>(name.size()) + 1;
  }
  std::string text;
  for (const auto& [name, value] : values) text += " [" + name + "=" + value + "]";
  return text;
}

std::string contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  if (!file.is_open()) return "(unreadable)";
  return std::to_string(std::hash<std::string>{}(bytes.str()));
}

void add(const std::string& root, const std::string& name, FileTree& tree, FirstNames& firstNames) {
  const std::string path = root + name;
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) {
    tree[name] = "(missing)";
    return;
  }
  std::ostringstream line;
  line << std::oct << status.st_mode << std::dec << " " << status.st_uid << ":" << status.st_gid << " "
       << status.st_mtim.tv_sec << "." << status.st_mtim.tv_nsec << attributes(path);
  std::vector<std::string> names;
  if (S_ISLNK(status.st_mode)) {
    std::array<char, 4096> target{};
    const ssize_t size = ::readlink(path.c_str(), target.data(), target.size());
    line << " -> " << std::string(target.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
  } else if (S_ISREG(status.st_mode)) {
    line << " " << status.st_size << " bytes " << contents(path);
  }
  if (!S_ISDIR(status.st_mode)) {
    if (status.st_nlink > 1) {
      line << " = " << firstNames.try_emplace({status.st_dev, status.st_ino}, name).first->second;
    }
    tree[name] = line.str();
    return;
  }
  tree[name] = line.str();
  if (DIR* folder = ::opendir(path.c_str())) {
    while (const dirent* entry = ::readdir(folder)) {
      const std::string child = entry->d_name;
      if (child != "." && child != "..") names.push_back(child);
    }
    ::closedir(folder);
  } else {
    tree[name] += " (unreadable)";
  }
  std::sort(names.begin(), names.end());
  for (const std::string& child : names) add(root, name + "/" + child, tree, firstNames);
}

}  // namespace

FileTree fileTree(const std::string& root) {
  FileTree tree;
  FirstNames firstNames;
  add(root, "", tree, firstNames);
  return tree;
}

bool setAttribute(const std::string& path, const std::string& name, const std::string& value) {
  return ::lsetxattr(path.c_str(), name.c_str(), value.data(), value.size(), 0) == 0;
}

void setTimes(const std::string& path, long seconds, long nanoseconds) {
  const timespec times[] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0) << path;
}

std::string accessListWithReader(unsigned user) {
  struct Entry {
    std::uint16_t tag, permissions;
    std::uint32_t id;
  };
  constexpr std::uint32_t kVersion = 2, kNobody = 0xFFFFFFFF;
  // Owner, named user, group, mask, others.
  const Entry entries[] = {
      {0x01, 6, kNobody}, {0x02, 4, user}, {0x04, 4, kNobody}, {0x10, 4, kNobody}, {0x20, 0, kNobody}};
  std::string value(reinterpret_cast<const char*>(&kVersion), sizeof kVersion);
  value.append(reinterpret_cast<const char*>(entries), sizeof entries);
  return value;
}

}  // namespace kr::testing
