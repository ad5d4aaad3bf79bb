// What the tool refuses before it touches anything.
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "tests/installer/train/system/TrainTest.h"

namespace kr::testing {
namespace {

class TrainRefusal : public TrainTest {
 protected:
  TrainRefusal() : source_(product("P.app", "new")) { product("to/P.app", "old"); }

  // The same for places that are the machine's own: where the tool does not refuse, it gets no further.
  void expectRefusedOnTheSystem(const Lines& words, Status status,
                                const std::function<void()>& prepare = {}) {
    const auto stop = [](const WatchedCall&) { return Verdict::fail(EROFS); };
    EXPECT_EQ(runWatched(words, {SYS_mkdirat}, stop, prepare), status)
        << ::testing::PrintToString(words) << errors;
    EXPECT_TRUE(errors.starts_with("train: " + std::string(train::meaning(status)))) << errors;
  }

  const std::string source_;
};

TEST_F(TrainRefusal, OfWordsThatAreNotTwoOrThree) {
  expectRefused({}, Status::usage);
  expectRefused({source_}, Status::usage);
  expectRefused({source_, destination_, scratch_.folder("w"), "more"}, Status::usage);
}

TEST_F(TrainRefusal, OfADestinationThatIsNoPlainProductDestination) {
  scratch_.folder("to/Q.app/Contents");
  scratch_.folder("to/.hidden");
  scratch_.folder("to/folder");
  for (const char* path : {"", ".", "/", "P.app", "to/P.app", "/usr", "/usr/P.app", "/P.app", "/etc/P.app"}) {
    expectRefused({source_, path}, Status::destinationRefused);
  }
  for (const char* end : {"", "/folder", "/.app", "/../to/P.app", "/./P.app", "//P.app", "/P.app/.",
                          "/P.app/..", "/Q.app/P.app", "/Q.app/Contents/P.app", "/.hidden/P.app", "/.P.app",
                          "/missing/P.app", "/missing/folder/P.app"}) {
    expectRefused({source_, to_ + end}, Status::destinationRefused);
  }
}

TEST_F(TrainRefusal, OfADestinationThatIsReachedThroughALinkOrIsOne) {
  scratch_.folder("real/inner");
  ASSERT_EQ(::symlink("real", (scratch_ / "link").c_str()), 0);
  ASSERT_EQ(::symlink("inner", (scratch_ / "real/link").c_str()), 0);
  ASSERT_EQ(::symlink(destination_.c_str(), (to_ + "/Q.app").c_str()), 0);
  ASSERT_EQ(::symlink("/nowhere", (to_ + "/R.app").c_str()), 0);
  for (const char* path : {"link/P.app", "link/inner/P.app", "real/link/P.app", "to/Q.app", "to/R.app"}) {
    expectRefused({source_, scratch_ / path}, Status::destinationRefused);
  }
}

TEST_F(TrainRefusal, OfADestinationThatIsASpecialFile) {
  ASSERT_EQ(::mkfifo((to_ + "/Q.app").c_str(), 0644), 0);
  expectRefused({source_, to_ + "/Q.app"}, Status::destinationRefused);
}

TEST_F(TrainRefusal, OfADestinationInAFolderThatEverybodyMayChange) {
  ASSERT_EQ(::chmod(to_.c_str(), 0777), 0);
  expectRefused({source_, destination_}, Status::destinationRefused);
}

TEST_F(TrainRefusal, OfADestinationThatCannotBeReached) {
  expectRefused({source_, scratch_ / (std::string(300, 'x') + "/P.app")}, Status::destinationUnreachable);
  expectRefused({source_, to_ + "/" + std::string(300, 'x') + ".app"}, Status::destinationUnreachable);
}

TEST_F(TrainRefusal, OfADestinationThatHoldsTheSourceOrLiesInIt) {
  expectRefused({source_, source_}, Status::sourceRefused);
  expectRefused({destination_ + "/Contents", destination_}, Status::sourceRefused);
  scratch_.folder("tree/sub");
  expectRefused({scratch_ / "tree", scratch_ / "tree/P.app"}, Status::destinationRefused);
  expectRefused({scratch_ / "tree", scratch_ / "tree/sub/P.app"}, Status::destinationRefused);
  // Through a link, which the text does not show.
  ASSERT_EQ(::symlink(destination_.c_str(), (scratch_ / "link").c_str()), 0);
  expectRefused({scratch_ / "link/Contents", destination_}, Status::sourceRefused);
}

TEST_F(TrainRefusal, OfASourceThatIsNoFolder) {
  scratch_.file("file.app");
  ASSERT_EQ(::mkfifo((scratch_ / "fifo.app").c_str(), 0644), 0);
  ASSERT_EQ(::symlink("/nowhere", (scratch_ / "link.app").c_str()), 0);
  for (const std::string& source :
       {std::string(), std::string("P.app"), scratch_ / "missing.app", scratch_ / "file.app",
        scratch_ / "fifo.app", scratch_ / "link.app", std::string("/dev/null")}) {
    expectRefused({source, destination_}, Status::sourceRefused);
  }
}

TEST_F(TrainRefusal, OfAWrapperThatIsNoFolder) {
  scratch_.file("file");
  for (const std::string& wrapper :
       {std::string(), std::string("w"), scratch_ / "missing", scratch_ / "file"}) {
    expectRefused({source_, destination_, wrapper}, Status::wrapperRefused);
  }
}

TEST_F(TrainRefusal, OfAWrapperThatHoldsTheDestinationOrLiesInIt) {
  expectRefused({source_, destination_, to_}, Status::wrapperRefused);
  expectRefused({source_, destination_, scratch_.path()}, Status::wrapperRefused);
  expectRefused({source_, destination_, destination_ + "/Contents"}, Status::wrapperRefused);
  expectRefused({source_, to_ + "/missing/P.app", to_}, Status::wrapperRefused);
}

TEST_F(TrainRefusal, OfAWrapperWhoseItemsWouldDeleteWhatIsToBeCopied) {
  const std::string inside = product("to/item/P.app", "new");
  scratch_.file("w/item");
  expectRefused({inside, destination_, scratch_ / "w"}, Status::wrapperRefused);
  scratch_.file("to/v/v/file");
  expectRefused({source_, destination_, to_ + "/v"}, Status::wrapperRefused);
}

TEST_F(TrainRefusal, OfAWrapperInAFolderOfTheSystem) {
  scratch_.file("etc/passwd", "root::0:0::/:/bin/sh");
  expectRefused({source_, "/etc/P.app", scratch_ / "etc"}, Status::destinationRefused);
  scratch_.file("sbin/ls");
  expectRefused({source_, "/usr/local/sbin/P.app", scratch_ / "sbin"}, Status::destinationRefused);
}

TEST_F(TrainRefusal, OfAWrapperBesideFoldersOfTheSystemOrOfUsers) {
  scratch_.file("w/bin/ls");
  scratch_.folder("w/bob");
  for (const char* parent :
       {"/usr/local", "/home", "/srv", "/var/opt", "/var/local", "/media", "/mnt", "/root"}) {
    expectRefusedOnTheSystem({source_, std::string(parent) + "/P.app", scratch_ / "w"},
                             Status::destinationRefused);
  }
}

TEST_F(TrainRefusal, OfAWrapperWithAnItemThatIsOrHoldsAFolderOfTheSystem) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root may mount";
  // The root folder by another name, which none of its paths shows; the tool alone sees it.
  const std::string root = scratch_.folder("root");
  const auto mountRoot = [&] {
    if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("/", root.c_str(), nullptr, MS_BIND, nullptr) != 0) {
      ::_exit(98);
    }
  };
  for (const char* item : {"usr", "var", "home"}) {
    const std::string wrapper = std::string("wrapper of ") + item;
    scratch_.folder(wrapper + "/" + item);
    expectRefusedOnTheSystem({source_, root + "/P.app", scratch_ / wrapper}, Status::wrapperRefused,
                             mountRoot);
    EXPECT_NE(errors.find("is the system's own, or holds what is"), std::string::npos) << errors;
  }
}

TEST_F(TrainRefusal, OfAWrapperWithAnItemInTheNameOfASystemFolderThatIsMissing) {
  const std::string home = "/home/velmora-train-test";
  if (::mkdir(home.c_str(), 0755) != 0) GTEST_SKIP() << "only root may make a home";
  scratch_.folder("w/bin");
  scratch_.folder("v/GNUstep");
  expectRefusedOnTheSystem({source_, home + "/P.app", scratch_ / "w"}, Status::wrapperRefused);
  expectRefusedOnTheSystem({source_, home + "/P.app", scratch_ / "v"}, Status::wrapperRefused);
  expectRefusedOnTheSystem({source_, home + "/bin/P.app", scratch_ / "w"}, Status::destinationRefused);
  EXPECT_EQ(entries(home), Lines{});
  ::rmdir(home.c_str());
}

TEST_F(TrainRefusal, OfAWrapperWithAHiddenItem) {
  for (const char* item : {".bashrc", ".ssh/authorized_keys", ".DS_Store2", "..."}) {
    const std::string wrapper = std::string("wrapper of ") + item[1];
    scratch_.file(wrapper + "/" + item);
    expectRefused({source_, destination_, scratch_ / wrapper}, Status::wrapperRefused);
    expectRefused({source_, to_ + "/new/P.app", scratch_ / wrapper}, Status::wrapperRefused);
  }
}

TEST_F(TrainRefusal, OfAPlaceAtWhichSomethingIsMounted) {
  const std::string mounted = scratch_.folder("to/Q.app");
  const std::string item = scratch_.folder("to/item");
  scratch_.file("w/item");
  // The second one is of the same volume.
  if (::mount("tmpfs", mounted.c_str(), "tmpfs", 0, "size=1m") != 0 ||
      ::mount(scratch_.folder("other").c_str(), item.c_str(), nullptr, MS_BIND, nullptr) != 0) {
    GTEST_SKIP() << "only root may mount";
  }
  expectRefused({source_, mounted}, Status::destinationRefused);
  expectRefused({source_, destination_, scratch_ / "w"}, Status::wrapperRefused);
  ::umount2(item.c_str(), MNT_DETACH);
  ::umount2(mounted.c_str(), MNT_DETACH);
}

TEST_F(TrainRefusal, IsOneLineWhateverThePathsHold) {
  expectRefused({source_, to_ + "/a\nb\x1b[0m"}, Status::destinationRefused);
  EXPECT_NE(errors.find("a\\nb\\x1b[0m"), std::string::npos) << errors;
}

TEST_F(TrainRefusal, ComesBeforeAnyCallThatChangesSomething) {
  const std::vector<long> kinds{SYS_mkdir,     SYS_mkdirat,  SYS_rename,   SYS_renameat,  SYS_renameat2,
                                SYS_unlink,    SYS_rmdir,    SYS_unlinkat, SYS_symlink,   SYS_symlinkat,
                                SYS_link,      SYS_linkat,   SYS_chmod,    SYS_fchmod,    SYS_fchmodat,
                                SYS_chown,     SYS_fchown,   SYS_fchownat, SYS_ftruncate, SYS_truncate,
                                SYS_utimensat, SYS_setxattr, SYS_fsetxattr};
  int changes = 0;
  const auto count = [&](const WatchedCall&) {
    ++changes;
    return Verdict::pass();
  };
  ASSERT_EQ(::symlink(to_.c_str(), (scratch_ / "link").c_str()), 0);
  EXPECT_EQ(runWatched({source_, scratch_ / "link/P.app"}, kinds, count), Status::destinationRefused);
  EXPECT_EQ(runWatched({source_, destination_, to_}, kinds, count), Status::wrapperRefused);
  EXPECT_EQ(runWatched({source_, source_}, kinds, count), Status::sourceRefused);
  EXPECT_EQ(changes, 0);
  EXPECT_EQ(runWatched({source_, destination_}, kinds, count), Status::installed);
  EXPECT_GT(changes, 0);
}

}  // namespace
}  // namespace kr::testing
