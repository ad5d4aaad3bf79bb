// The files of a tree that have several names, and under which name each was copied first. Any thread.
#pragma once

#include <sys/stat.h>

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "platform/linux/copy/Problem.h"

namespace kr::platform::copy {

class HardLinks {
 public:
  // `root` is the open folder that the copies' paths are relative to.
  explicit HardLinks(int root) : root_(root) {}

  enum class Made { link, file, nothing };

  // Gives the item with this status the name in the open folder: as a further name of its copy where there is
  // one, else by `create`, which creates the file or link and whose success makes it the copy. `path` is the
  // new name's path below the root. Answers "nothing" with errno where that has failed.
  [[nodiscard]] Made linkOrCreate(const struct stat& status, int folder, const std::string& name,
                                  std::string path, const std::function<bool()>& create);

 private:
  [[nodiscard]] bool link(const std::string& path, int folder, const std::string& name) const;

  int root_;
  std::mutex mutex_;
  std::map<std::pair<dev_t, ino_t>, std::string> copies_;
};

}  // namespace kr::platform::copy
