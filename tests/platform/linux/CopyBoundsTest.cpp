// However deep or broad a tree is, a copy takes few descriptors and little memory.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "platform/linux/copy/CopyTree.h"
#include "platform/linux/copy/RemoveTree.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/posix/Files.h"
#include "tests/support/Forked.h"
#include "tests/support/ScratchFolder.h"

namespace kr::platform::copy {
namespace {

constexpr rlim_t kDescriptors = 48;
constexpr int kFailed = 255;
// Sanitizers take memory of their own for all that is used.
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr int kMostMemory = 250;
#else
constexpr int kMostMemory = 8;
#endif

// How much memory this process has had at most, in KiB.
long peakMemory() {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word) {
    long size = 0;
    if (word == "VmHWM:" && status >> size) return size;
  }
  return -1;
}

class CopyBounds : public ::testing::Test {
 protected:
  ~CopyBounds() override {
    // Deeper than what the scratch folder can remove.
    EXPECT_FALSE(removeTree(source_));
    EXPECT_FALSE(removeTree(destination_));
  }

  // Copies with few descriptors, with further threads of such a stack; answers how many MiB more it has taken
  // than there were before.
  int copyWithFewDescriptors(std::size_t stack = 1UL << 20) {
    const int status = kr::testing::inChild([&] {
      pthread_attr_t attributes;
      ::pthread_attr_init(&attributes);
      ::pthread_attr_setstacksize(&attributes, stack);
      if (::pthread_setattr_default_np(&attributes) != 0) return kFailed;
      const rlimit few{kDescriptors, kDescriptors};
      if (::setrlimit(RLIMIT_NOFILE, &few) != 0) return kFailed;
      std::ofstream("/proc/self/clear_refs") << "5";  // what was needed until now does not count
      const long before = peakMemory();
      if (copyTree(source_, destination_, Durability::inCache)) return kFailed;
      return static_cast<int>((peakMemory() - before + 1023) / 1024);
    });
    return WIFEXITED(status) ? WEXITSTATUS(status) : kFailed;
  }

  kr::testing::ScratchFolder scratch_;
  const std::string source_ = scratch_.folder("source");
  const std::string destination_ = scratch_ / "destination";
};

class OpenFolder {
 public:
  explicit OpenFolder(const std::string& path) : folder_(::open(path.c_str(), O_RDONLY | O_DIRECTORY)) {}

  [[nodiscard]] int get() const { return folder_.get(); }
  [[nodiscard]] bool goDown(const std::string& name) {
    folder_.reset(::openat(folder_.get(), name.c_str(), O_RDONLY | O_DIRECTORY));
    return static_cast<bool>(folder_);
  }
  [[nodiscard]] bool makeFile(const std::string& name) const {
    return static_cast<bool>(
        posix::FileDescriptor(::openat(folder_.get(), name.c_str(), O_WRONLY | O_CREAT, 0644)));
  }

 private:
  posix::FileDescriptor folder_;
};

TEST_F(CopyBounds, GoesDeeperThanAPathMayBeLongOrDescriptorsMayBeOpen) {
  constexpr int kDepth = 1000;
  const std::string name(250, 'n');
  {
    OpenFolder at(source_);
    for (int level = 0; level < kDepth; ++level) {
      ASSERT_EQ(::mkdirat(at.get(), name.c_str(), 0755), 0);
      ASSERT_TRUE(at.makeFile("one") && at.makeFile("two") && at.makeFile("three"));
      ASSERT_TRUE(at.goDown(name));
    }
    ASSERT_TRUE(at.makeFile("bottom"));
    ASSERT_EQ(::linkat(at.get(), "bottom", at.get(), "second", 0), 0);
  }
  EXPECT_LE(copyWithFewDescriptors(), kMostMemory);
  OpenFolder at(destination_);
  for (int level = 0; level < kDepth; ++level) ASSERT_TRUE(at.goDown(name)) << level;
  struct stat bottom {};
  EXPECT_EQ(::fstatat(at.get(), "bottom", &bottom, 0), 0);
  EXPECT_EQ(bottom.st_nlink, 2U);
}

TEST_F(CopyBounds, ComesBackFromFarBelowOnASmallStack) {
  // Folders without items are left as fast as they come, while the item at the bottom is still being copied:
  // what is freed last is at the end of a long chain.
  constexpr int kDepth = 1500;
  constexpr std::size_t kStack = 64UL << 10;
  OpenFolder at(source_);
  for (int level = 0; level < kDepth; ++level) {
    ASSERT_EQ(::mkdirat(at.get(), "n", 0755), 0);
    ASSERT_TRUE(at.goDown("n"));
  }
  ASSERT_TRUE(at.makeFile("bottom"));
  const posix::FileDescriptor bottom(::openat(at.get(), "bottom", O_WRONLY));
  const std::string bytes(8UL << 20, 'x');
  ASSERT_EQ(::write(bottom.get(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  EXPECT_LE(copyWithFewDescriptors(kStack), kMostMemory);
  EXPECT_TRUE(files::isFolder(destination_));
}

TEST_F(CopyBounds, TakesAHundredThousandEntriesInOneFolder) {
  constexpr int kEntries = 100000;
  const OpenFolder at(source_);
  ASSERT_TRUE(at.makeFile("first"));
  for (int number = 1; number < kEntries; ++number) {
    // Links are quicker to make than files, and no less entries.
    ASSERT_EQ(::symlinkat("first", at.get(), ("entry" + std::to_string(number)).c_str()), 0);
  }
  EXPECT_LE(copyWithFewDescriptors(), kMostMemory);
  EXPECT_EQ(files::entries(destination_)->size(), static_cast<std::size_t>(kEntries));
}

}  // namespace
}  // namespace kr::platform::copy
