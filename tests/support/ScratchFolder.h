// A folder of the test's own, removed at the end unless the test has failed. Its path has no links in it.
#pragma once

#include <string>
#include <string_view>

namespace kr::testing {

class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }

  // Path of `name` in the folder.
  [[nodiscard]] std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

  // Creates a file with its folders; answers its path.
  std::string file(std::string_view name, std::string_view contents = "contents") const;

  // Creates a folder with the folders above it; answers its path.
  std::string folder(std::string_view name) const;

 private:
  std::string path_;
};

// Removes a file, a link or a folder with all that is in it, write-protected folders as well.
void removeAll(const std::string& path);

// The bytes of a file; fails the test when it cannot be read.
[[nodiscard]] std::string readFile(const std::string& path);

}  // namespace kr::testing
