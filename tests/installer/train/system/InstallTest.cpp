// What is in place after the tool has ended with status 0.
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <sstream>

#include "platform/posix/Files.h"
#include "tests/installer/train/system/TrainTest.h"

namespace kr::testing {
namespace {

class Train : public TrainTest {
 protected:
  // All that has to be the same in the copy: what is there, its contents, modes and times, but not whose it
  // is.
  static FileTree withoutOwners(FileTree tree) {
    for (auto& [path, line] : tree) {
      std::istringstream words(line);
      std::string mode;
      std::string owner;
      std::string rest;
      words >> mode >> owner;
      std::getline(words, rest);
      line = mode + rest;
    }
    return tree;
  }

  static mode_t modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
  }
};

TEST_F(Train, CopiesAProduct) {
  const std::string source = product("P.app", "new");
  ASSERT_EQ(run({source, destination_}), Status::installed) << errors;
  EXPECT_EQ(errors, "");
  EXPECT_EQ(withoutOwners(fileTree(destination_)), withoutOwners(fileTree(source)));
  EXPECT_EQ(entries(to_), Lines{"P.app"});
}

TEST_F(Train, ReplacesTheOldProductWithAllThatWasInIt) {
  product("to/P.app", "old");
  scratch_.file("to/P.app/only in the old one");
  const std::string source = product("P.app", "new");
  ASSERT_EQ(run({source, destination_}), Status::installed) << errors;
  EXPECT_EQ(errors, "");
  EXPECT_EQ(withoutOwners(fileTree(destination_)), withoutOwners(fileTree(source)));
  EXPECT_EQ(entries(to_), Lines{"P.app"});
}

TEST_F(Train, ReplacesAFileThatHasTheName) {
  scratch_.file("to/P.app", "a file");
  const std::string source = product("P.app", "new");
  ASSERT_EQ(run({source, destination_}), Status::installed) << errors;
  EXPECT_EQ(withoutOwners(fileTree(destination_)), withoutOwners(fileTree(source)));
}

TEST_F(Train, TakesSlashesAtTheEndAndASourceThroughLinks) {
  const std::string source = product("P.app", "new");
  ASSERT_EQ(::symlink(source.c_str(), (scratch_ / "link").c_str()), 0);
  ASSERT_EQ(run({scratch_ / "link/", destination_ + "/"}), Status::installed) << errors;
  EXPECT_EQ(withoutOwners(fileTree(destination_)), withoutOwners(fileTree(source)));
}

TEST_F(Train, GivesTheCopyToRootOrToWhomTheProcessIs) {
  const std::string source = product("P.app", "new");
  if (::geteuid() == 0) {
    for (const char* item : {"", "/link", "/Contents", "/Contents/Info.plist"}) {
      ASSERT_EQ(::lchown((source + item).c_str(), 1234, 1234), 0);
    }
  }
  ASSERT_EQ(run({source, destination_}), Status::installed) << errors;
  for (const char* item : {"", "/link", "/Contents", "/Contents/Info.plist"}) {
    struct stat status {};
    ASSERT_EQ(::lstat((destination_ + item).c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, ::geteuid()) << item;
    EXPECT_EQ(status.st_gid, ::getegid()) << item;
  }
}

TEST_F(Train, TakesAwayWhatWouldLendRightsOrLetOthersWrite) {
  const std::string source = product("P.app", "new");
  ASSERT_EQ(::chmod((source + "/Contents/MacOS/P").c_str(), 06777), 0);
  ASSERT_EQ(::chmod((source + "/Contents").c_str(), 03777), 0);
  ASSERT_EQ(::chmod(source.c_str(), 02775), 0);
  ASSERT_EQ(::chmod((source + "/Contents/Info.plist").c_str(), 0640), 0);
  ASSERT_EQ(run({source, destination_}), Status::installed) << errors;
  EXPECT_EQ(modeOf(destination_ + "/Contents/MacOS/P"), 0755U);
  EXPECT_EQ(modeOf(destination_ + "/Contents"), 01755U);
  EXPECT_EQ(modeOf(destination_), 0755U);
  EXPECT_EQ(modeOf(destination_ + "/Contents/Info.plist"), 0640U);
}

TEST_F(Train, TakesAwayAccessListsAndKeepsOtherAttributes) {
  const std::string source = product("P.app", "new");
  const std::string file = source + "/Contents/Info.plist";
  const std::string list = accessListWithReader(1234);
  ASSERT_TRUE(setAttribute(file, "user.note", "kept"));
  ASSERT_TRUE(setAttribute(file, "system.posix_acl_access", list));
  ASSERT_TRUE(setAttribute(source + "/Contents", "system.posix_acl_default", list));
  // The folder of products passes one on, too.
  ASSERT_TRUE(setAttribute(to_, "system.posix_acl_default", list));
  ASSERT_EQ(run({source, destination_}), Status::installed) << errors;
  for (const auto& [path, line] : fileTree(destination_)) {
    EXPECT_EQ(line.find("posix_acl"), std::string::npos) << path << " " << line;
  }
  EXPECT_NE(fileTree(destination_).at("/Contents/Info.plist").find("[user.note=kept]"), std::string::npos);
}

TEST_F(Train, TakesAwayCapabilities) {
  const std::string source = product("P.app", "new");
  // Version 2, permitted and effective: to bypass permissions.
  const std::string capability(
      "\x01\x00\x00\x02\x02\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00", 20);
  if (!setAttribute(source + "/Contents/MacOS/P", "security.capability", capability)) {
    GTEST_SKIP() << "only root may give capabilities";
  }
  ASSERT_EQ(run({source, destination_}), Status::installed) << errors;
  EXPECT_EQ(fileTree(destination_).at("/Contents/MacOS/P").find("security.capability"), std::string::npos);
}

TEST_F(Train, DeletesNothingThatTheOldProductLinksTo) {
  scratch_.file("elsewhere/file", "stays");
  scratch_.folder("to/P.app");
  ASSERT_EQ(::symlink((scratch_ / "elsewhere").c_str(), (destination_ + "/link").c_str()), 0);
  const FileTree before = fileTree(scratch_ / "elsewhere");
  ASSERT_EQ(run({product("P.app", "new"), destination_}), Status::installed) << errors;
  EXPECT_EQ(fileTree(scratch_ / "elsewhere"), before);
}

TEST_F(Train, ReplacesAnOldProductThatIsWriteProtectedInside) {
  product("to/P.app", "old");
  ASSERT_EQ(::chmod((destination_ + "/Contents/MacOS").c_str(), 0), 0);
  ASSERT_EQ(run({product("P.app", "new"), destination_}), Status::installed) << errors;
  EXPECT_EQ(errors, "");
  EXPECT_EQ(entries(to_), Lines{"P.app"});
}

TEST_F(Train, SaysWhatIsLeftOfTheOldProductAndClearsItAwayNextTime) {
  product("to/P.app", "old");
  const std::string source = product("P.app", "new");
  const auto keep = [&](const WatchedCall& call) {
    return call.path() == "Info.plist" ? Verdict::fail(EPERM) : Verdict::pass();
  };
  ASSERT_EQ(runWatched({source, destination_}, {SYS_unlinkat}, keep), Status::installed);
  EXPECT_EQ(errors.find("train: the old " + destination_ + " is left over: delete "), 0U) << errors;
  EXPECT_EQ(entries(to_).size(), 2U);
  EXPECT_EQ(fileTree(destination_), installed(source));
  ASSERT_EQ(run({source, destination_}), Status::installed);
  EXPECT_EQ(errors, "");
  EXPECT_EQ(entries(to_), Lines{"P.app"});
}

TEST_F(Train, PlacesItemsOfTheWrapperBesideTheProduct) {
  scratch_.file("P Folder/Read Me.txt", "new");
  scratch_.file("P Folder/Examples/one", "new");
  scratch_.file("P Folder/folder for file", "new");
  ASSERT_EQ(::symlink("Read Me.txt", (scratch_ / "P Folder/link").c_str()), 0);
  scratch_.file("to/Read Me.txt", "old");
  scratch_.file("to/Examples/two", "old");
  scratch_.file("to/folder for file/inside", "old");
  scratch_.file("to/the user's own", "old");
  scratch_.file("target", "stays");
  ASSERT_EQ(::symlink((scratch_ / "target").c_str(), (to_ + "/link").c_str()), 0);
  ASSERT_EQ(run({product("P.app", "new"), destination_, scratch_ / "P Folder"}), Status::installed) << errors;
  EXPECT_EQ(entries(to_),
            (Lines{"Examples", "P.app", "Read Me.txt", "folder for file", "link", "the user's own"}));
  EXPECT_EQ(readFile(to_ + "/Read Me.txt"), "new");
  EXPECT_EQ(readFile(to_ + "/folder for file"), "new");
  EXPECT_EQ(entries(to_ + "/Examples"), Lines{"one"});
  EXPECT_EQ(readFile(to_ + "/the user's own"), "old");
  EXPECT_EQ(files::resolved(to_ + "/link"), to_ + "/Read Me.txt");
  EXPECT_EQ(readFile(scratch_ / "target"), "stays");
}

TEST_F(Train, MakesTheWrapperTheFolderOfTheProductWhereThatIsMissing) {
  scratch_.file("P Folder/Read Me.txt", "new");
  scratch_.file("P Folder/P.app/from the wrapper", "new");
  ASSERT_EQ(::chmod((scratch_ / "P Folder").c_str(), 0777), 0);
  const std::string source = product("P.app", "new");
  const std::string folder = to_ + "/P Folder";
  ASSERT_EQ(run({source, folder + "/P.app", scratch_ / "P Folder"}), Status::installed) << errors;
  EXPECT_EQ(errors, "");
  EXPECT_EQ(entries(to_), Lines{"P Folder"});
  EXPECT_EQ(entries(folder), (Lines{"P.app", "Read Me.txt"}));
  EXPECT_EQ(modeOf(folder), 0755U);
  EXPECT_EQ(withoutOwners(fileTree(folder + "/P.app")), withoutOwners(fileTree(source)));
}

TEST_F(Train, TakesTheSourceForAProductThatIsInTheWrapperToo) {
  scratch_.file("P Folder/P.app/from the wrapper", "new");
  scratch_.file("P Folder/item", "new");
  product("to/P.app", "old");
  const std::string source = product("P.app", "new");
  ASSERT_EQ(run({source, destination_, scratch_ / "P Folder"}), Status::installed) << errors;
  EXPECT_EQ(fileTree(destination_), installed(source));
  EXPECT_EQ(entries(to_), (Lines{"P.app", "item"}));
}

TEST_F(Train, LeavesTheWrappersViewSettingsOut) {
  scratch_.file("P Folder/.DS_Store", "of the wrapper");
  scratch_.file("P Folder/.localized", "of the wrapper");
  scratch_.file("P Folder/item", "new");
  scratch_.file("to/.DS_Store", "stays");
  ASSERT_EQ(run({product("P.app", "new"), destination_, scratch_ / "P Folder"}), Status::installed) << errors;
  EXPECT_EQ(entries(to_), (Lines{".DS_Store", "P.app", "item"}));
  EXPECT_EQ(readFile(to_ + "/.DS_Store"), "stays");
}

TEST_F(Train, TakesAnItemForTheProductThatIsTheOldOneByAnotherName) {
  scratch_.file("to/P.app", "a file of two names");
  ASSERT_EQ(::link(destination_.c_str(), (to_ + "/p.APP").c_str()), 0);
  scratch_.file("P Folder/p.APP", "of the wrapper");
  const std::string source = product("P.app", "new");
  ASSERT_EQ(run({source, destination_, scratch_ / "P Folder"}), Status::installed) << errors;
  EXPECT_EQ(fileTree(destination_), installed(source));
  EXPECT_EQ(readFile(to_ + "/p.APP"), "a file of two names");
}

TEST_F(Train, InstallsAProductThatLiesInItsWrapper) {
  const std::string source = product("P Folder/P.app", "new");
  scratch_.file("P Folder/item", "new");
  ASSERT_EQ(run({source, destination_, scratch_ / "P Folder"}), Status::installed) << errors;
  EXPECT_EQ(fileTree(destination_), installed(source));
  EXPECT_EQ(entries(to_), (Lines{"P.app", "item"}));
}

}  // namespace
}  // namespace kr::testing
