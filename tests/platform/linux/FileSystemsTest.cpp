#include "platform/FileSystems.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>

#include "platform/SystemServices.h"
#include "platform/posix/FileDescriptor.h"
#include "tests/support/Child.h"
#include "tests/support/Eventually.h"
#include "tests/support/Forked.h"
#include "tests/support/ScratchFolder.h"

namespace kr::platform {
namespace {

using kr::testing::eventually;
using kr::testing::inChild;
using kr::testing::ScratchFolder;

class MountedFileSystems : public ::testing::Test {
 protected:
  // As another program tells it.
  std::string typeByOthers(const std::string& path) {
    const std::string output = folder / "type";
    kr::testing::Child tool(
        {"sh", "-c", "findmnt -n -o FSTYPE -T \"$1\" | tail -n 1 > \"$2\"", "sh", path, output});
    const auto status = tool.wait(10.0);
    if (!status || *status != 0) return "unknown";
    std::string type = kr::testing::readFile(output);
    if (type.ends_with('\n')) type.pop_back();
    return type;
  }

  ScratchFolder folder;
  FileSystems& fileSystems = systemFileSystems();
};

TEST_F(MountedFileSystems, AreNamedAsTheSystemNamesThem) {
  for (const std::string& path : {folder.path(), std::string("/"), std::string("/tmp"),
                                  std::string("/dev/shm"), folder.file("a file")}) {
    const FileSystemType type = fileSystems.type(path);
    EXPECT_EQ(type.status, 0);
    EXPECT_EQ(type.name, typeByOthers(path)) << path;
  }
  EXPECT_EQ(fileSystems.type("/proc/self/status").name, "proc");
  EXPECT_EQ(fileSystems.type("/sys").name, "sysfs");
}

TEST_F(MountedFileSystems, AreThoseThatLinksLeadTo) {
  std::filesystem::create_symlink("/proc/self", folder / "link");
  EXPECT_EQ(fileSystems.type(folder / "link").name, "proc");
  EXPECT_EQ(fileSystems.type(folder / "link/status").name, "proc");
}

TEST_F(MountedFileSystems, HaveNoNameWhereNothingIs) {
  const FileSystemType type = fileSystems.type(folder / "missing");
  EXPECT_EQ(type.status, -1);
  EXPECT_EQ(type.name, "");
  EXPECT_EQ(fileSystems.type("").status, -1);
}

TEST_F(MountedFileSystems, AreToldInTheCurrentFolderToo) {
  ASSERT_EQ(::chdir("/proc"), 0);
  EXPECT_EQ(fileSystems.type("self").name, "proc");
}

// Beside a file system whose program never answers, as a server that is gone.
class DeadFileSystem : public MountedFileSystems {
 protected:
  void SetUp() override {
    if (::geteuid() != 0 || ::access("/dev/fuse", R_OK | W_OK) != 0) {
      GTEST_SKIP() << "needs to mount a file system";
    }
  }

  // Runs the check in a process that has it mounted and is ended when it does not come back. 0 is success.
  template <class Check>
  int besideIt(Check check) {
    const int status = inChild([&] {
      ::alarm(10);
      const posix::FileDescriptor device(::open("/dev/fuse", O_RDWR | O_CLOEXEC));
      const std::string options =
          "fd=" + std::to_string(device.get()) + ",rootmode=40000,user_id=0,group_id=0";
      if (::unshare(CLONE_NEWNS) != 0 || ::mount("", "/", "", MS_REC | MS_PRIVATE, "") != 0 ||
          ::mount("dead", place.c_str(), "fuse.dead", 0, options.c_str()) != 0) {
        return 100;
      }
      return check();
    });
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  static bool isAbsent(const FileSystemType& type) { return type.status == -1 && type.name.empty(); }

  std::string place = folder.folder("dead");
};

std::ptrdiff_t threadCount() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

TEST_F(DeadFileSystem, IsNamedByTheTextOfAPath) {
  EXPECT_EQ(besideIt([&] {
              const auto start = std::chrono::steady_clock::now();
              const FileSystemType type = fileSystems.type(place + "/file");
              if (std::chrono::steady_clock::now() - start > std::chrono::seconds(1)) return 1;
              return type.status == 0 && type.name == "fuse.dead" ? 0 : 2;
            }),
            0);
}

TEST_F(DeadFileSystem, HasNoNameWhereOnlyTheDiskSaysThatAPathLeadsThere) {
  std::filesystem::create_symlink(place + "/file", folder / "link");
  folder.folder("other");
  EXPECT_EQ(besideIt([&] {
              if (!isAbsent(fileSystems.type(folder / "link"))) return 1;
              if (!isAbsent(fileSystems.type(folder / "other/../dead/file"))) return 2;
              if (!isAbsent(fileSystems.type("/" + place + "/file"))) return 3;
              if (::chdir(folder.path().c_str()) != 0) return 4;
              return isAbsent(fileSystems.type("dead/file")) ? 0 : 5;
            }),
            0);
}

TEST_F(DeadFileSystem, HasNoAliases) {
  std::filesystem::create_symlink(place + "/file", folder / "link");
  EXPECT_EQ(besideIt([&] {
              if (fileSystems.aliasTarget(place + "/file")) return 1;
              return fileSystems.aliasTarget(folder / "link") ? 2 : 0;
            }),
            0);
}

TEST_F(DeadFileSystem, LeavesTheOthersAsTheyAre) {
  const std::string target = folder.file("target");
  std::filesystem::create_symlink(target, folder / "link");
  EXPECT_EQ(besideIt([&] {
              // On a busy machine an answer may be late.
              if (!eventually([&] { return fileSystems.type("/proc/self").name == "proc"; })) return 1;
              if (!eventually([&] { return fileSystems.aliasTarget(folder / "link") == target; })) return 2;
              return isAbsent(fileSystems.type(folder / "missing")) ? 0 : 3;
            }),
            0);
}

TEST_F(DeadFileSystem, IsAskedOnceAtATime) {
  EXPECT_EQ(besideIt([&] {
              const std::ptrdiff_t before = threadCount();
              for (int i = 0; i < 5; ++i) {
                static_cast<void>(fileSystems.type(place + "/file"));
                static_cast<void>(fileSystems.aliasTarget(place + "/file"));
              }
              return static_cast<int>(threadCount() - before);
            }),
            2);
}

TEST_F(MountedFileSystems, AppearInTheFoldersOfDesktops) {
  const std::vector<std::string> folders = fileSystems.volumeFolders();
  const std::string user = ::getpwuid(::getuid())->pw_name;
  const auto at = [&](const std::string& name) {
    return std::find(folders.begin(), folders.end(), name) - folders.begin();
  };
  EXPECT_LT(at("/run/media/" + user), std::ssize(folders));
  EXPECT_LT(at("/media/" + user), at("/media")) << "the inner one first";
  EXPECT_LT(at("/media"), std::ssize(folders));
  EXPECT_LT(at("/mnt"), std::ssize(folders));
  EXPECT_LT(at("/Volumes"), std::ssize(folders));
}

TEST_F(MountedFileSystems, HaveLinksForAliases) {
  const std::string target = folder.file("folder/target");
  std::filesystem::create_symlink("folder", folder / "to-folder");
  std::filesystem::create_symlink(folder / "to-folder/target", folder / "one");
  std::filesystem::create_symlink("one", folder / "two");
  EXPECT_EQ(fileSystems.aliasTarget(folder / "one"), target);
  EXPECT_EQ(fileSystems.aliasTarget(folder / "two"), target) << "to the end of the chain";
  EXPECT_EQ(fileSystems.aliasTarget(folder / "to-folder"), folder / "folder");
  EXPECT_EQ(fileSystems.aliasTarget(folder / "to-folder/"), folder / "folder");
}

TEST_F(MountedFileSystems, HaveNoAliasInWhatIsNoLinkOrLeadsNowhere) {
  using None = std::optional<std::string>;
  std::filesystem::create_symlink("missing", folder / "dangling");
  std::filesystem::create_symlink("loop", folder / "loop");
  std::filesystem::create_symlink("folder", folder / "link");
  folder.file("folder/target");
  EXPECT_EQ(fileSystems.aliasTarget(folder / "dangling"), None{});
  EXPECT_EQ(fileSystems.aliasTarget(folder / "loop"), None{});
  EXPECT_EQ(fileSystems.aliasTarget(folder / "missing"), None{});
  EXPECT_EQ(fileSystems.aliasTarget(folder / "folder"), None{});
  EXPECT_EQ(fileSystems.aliasTarget(folder / "link/target"), None{}) << "the file itself is no link";
  EXPECT_EQ(fileSystems.aliasTarget(""), None{});
}

}  // namespace
}  // namespace kr::platform
