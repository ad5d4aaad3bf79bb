// An empty file system at a new folder until the end of the scope. On one in use, the search for free inodes
// among those deleted a moment ago can take longer than a copy.
#pragma once

#include <filesystem>
#include <string>

namespace kr::bench {

class FreshFileSystem {
 public:
  // ext4 in a file `image`, for root; for anybody else, and where it cannot be mounted, just the folder.
  FreshFileSystem(const std::filesystem::path& folder, const std::filesystem::path& image);
  ~FreshFileSystem();
  FreshFileSystem(const FreshFileSystem&) = delete;
  FreshFileSystem& operator=(const FreshFileSystem&) = delete;

 private:
  std::filesystem::path folder_;
  std::filesystem::path image_;
  bool isMounted_ = false;
};

}  // namespace kr::bench
