#include "benchmarks/copy/FreshFileSystem.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace kr::bench {
namespace {

constexpr std::uintmax_t kSize = 16UL << 30;  // a sparse file

bool isDone(const std::string& command) {
  return std::system((command + " >&2").c_str()) == 0;
}

}  // namespace

FreshFileSystem::FreshFileSystem(const std::filesystem::path& folder, const std::filesystem::path& image)
    : folder_(folder), image_(image) {
  std::filesystem::create_directory(folder);
  if (::geteuid() != 0) return;
  std::ofstream(image, std::ios::binary).close();
  std::filesystem::resize_file(image, kSize);
  isMounted_ =
      isDone("/usr/sbin/mkfs.ext4 -q -E lazy_itable_init=1,lazy_journal_init=1,nodiscard '" + image.string() +
             "' && mount -o loop '" + image.string() + "' '" + folder.string() + "'");
  if (!isMounted_) std::fprintf(stderr, "copy_bench: no file system of its own\n");
}

FreshFileSystem::~FreshFileSystem() {
  std::error_code ignored;
  if (!isMounted_) {
    std::filesystem::remove_all(folder_, ignored);
  } else if (isDone("umount '" + folder_.string() + "'")) {
    std::filesystem::remove(image_, ignored);
  } else {
    std::fprintf(stderr, "copy_bench: cannot unmount %s\n", folder_.c_str());
    std::exit(1);
  }
}

}  // namespace kr::bench
