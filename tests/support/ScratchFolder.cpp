#include "tests/support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "platform/Paths.h"
#include "platform/posix/Files.h"

namespace kr::testing {

ScratchFolder::ScratchFolder() {
  const char* root = std::getenv("KR_TEST_SCRATCH");
  std::string path = std::string(root != nullptr ? root : "/var/tmp") + "/kr-test.XXXXXX";
  if (::mkdtemp(path.data()) == nullptr) throw std::runtime_error("no scratch folder at " + path);
  path_ = files::resolved(path).value_or(path);
}

ScratchFolder::~ScratchFolder() {
  if (::testing::Test::HasFailure()) {
    std::cerr << "scratch folder kept: " << path_ << '\n';
    return;
  }
  removeAll(path_);
}

std::string ScratchFolder::file(std::string_view name, std::string_view contents) const {
  const std::string path = *this / name;
  files::makeFolders(std::string(paths::parent(path)));
  std::ofstream(path, std::ios::binary) << contents;
  return path;
}

std::string ScratchFolder::folder(std::string_view name) const {
  const std::string path = *this / name;
  files::makeFolders(path);
  return path;
}

void removeAll(const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code ignored;
  if (fs::is_directory(fs::symlink_status(path, ignored))) {
    fs::permissions(path, fs::perms::owner_all, fs::perm_options::add, ignored);
    // A folder is opened up before the iteration enters it.
    for (fs::recursive_directory_iterator item(path, ignored), end; !ignored && item != end;
         item.increment(ignored)) {
      if (!item->is_directory(ignored) || item->is_symlink(ignored)) continue;
      fs::permissions(item->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
  }
  fs::remove_all(path, ignored);
}

std::string readFile(const std::string& path) {
  const std::optional<std::string> bytes = files::contents(path);
  EXPECT_TRUE(bytes.has_value()) << path;
  return bytes.value_or("");
}

}  // namespace kr::testing
