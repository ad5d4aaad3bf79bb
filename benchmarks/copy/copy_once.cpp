// copy_once METHOD SOURCE DESTINATION: one copy, as a process of its own. On its last line it prints how far
// its memory rose above what it had before the copy, in KiB. Methods:
//
//   engine      the copy engine, which brings its copy to the disk
//   engine-cp   the copy engine without that, which is what cp and its like do
//   std         std::filesystem::copy
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "platform/linux/copy/CopyTree.h"

namespace {

using kr::platform::copy::Durability;

// A figure of /proc/self/status, in KiB.
long memory(std::string_view name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name)) return std::stol(line.substr(name.size() + 1));
  }
  return -1;
}

bool copyByEngine(const char* source, const char* destination, Durability durability) {
  const auto failure = kr::platform::copy::copyTree(source, destination, durability);
  if (failure) std::fprintf(stderr, "%s\n", failure->text().c_str());
  return !failure;
}

bool copyByLibrary(const char* source, const char* destination) {
  namespace fs = std::filesystem;
  std::error_code error;
  fs::copy(source, destination, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
  if (error) std::fprintf(stderr, "%s\n", error.message().c_str());
  return !error;
}

}  // namespace

int main(int count, char** words) {
  const std::string_view method = count == 4 ? words[1] : "";
  const long before = memory("VmRSS:");
  bool isDone = false;
  if (method == "engine") {
    isDone = copyByEngine(words[2], words[3], Durability::onDisk);
  } else if (method == "engine-cp") {
    isDone = copyByEngine(words[2], words[3], Durability::inCache);
  } else if (method == "std") {
    isDone = copyByLibrary(words[2], words[3]);
  } else {
    std::fprintf(stderr, "usage: copy_once engine|engine-cp|std SOURCE DESTINATION\n");
    return 2;
  }
  std::printf("%ld\n", memory("VmHWM:") - before);
  return isDone ? 0 : 1;
}
