// A copy of a tree with everything in it, as other tools see it.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/linux/copy/CopyTree.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/posix/Files.h"
#include "tests/support/FileTree.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/TreeComparison.h"

namespace kr::platform::copy {
namespace {

using kr::testing::differences;
using kr::testing::setAttribute;

constexpr off_t kMiB = 1 << 20;

bool succeeds(const std::string& command) {
  return std::system(command.c_str()) == 0;
}

off_t allocated(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  return status.st_blocks * 512;
}

class CopyExactness : public ::testing::Test {
 protected:
  CopyExactness() {
    files::makeFolders(source_);
    makeModes();
    makeNames();
    makeLinks();
    makeHoles();
    makeAttributes();
    if (::geteuid() == 0) makeWhatOnlyRootMay();
    makeTimes();
    // Last: a write-protected folder takes nothing more.
    EXPECT_EQ(::chmod((source_ + "/modes/protected").c_str(), 0555), 0);
    EXPECT_EQ(::chmod((source_ + "/modes/private").c_str(), 0500), 0);
  }

  std::string file(const std::string& name, const std::string& contents = "contents") const {
    return scratch_.file("source/" + name, contents);
  }

  void makeModes() const {
    for (const mode_t mode : {0400, 0444, 0511, 0666, 0777, 01755, 02755, 04755, 06711}) {
      EXPECT_EQ(::chmod(file("modes/file" + std::to_string(mode)).c_str(), mode), 0);
    }
    for (const mode_t mode : {0700, 0750, 01777, 02775, 03771}) {
      const std::string name = "modes/folder" + std::to_string(mode);
      file(name + "/file");
      EXPECT_EQ(::chmod((source_ + "/" + name).c_str(), mode), 0);
    }
    file("modes/protected/inner/file");
    file("modes/private/file");
    scratch_.folder("source/modes/empty");
    file("modes/nothing", "");
  }

  void makeNames() const {
    for (const std::string& name :
         {std::string("new\nline"), std::string("bytes \xFF\xC0"), std::string("-rf"), std::string("\\0\\n"),
          std::string("\"quoted' $(x)"), std::string(" "), std::string("\x01\x7F"), std::string(255, 'n'),
          std::string("e\xCC\x81"), std::string("\xC3\xA9")}) {
      file("names/" + name, name);
      file("names/in/" + name + "/" + name, name);
      EXPECT_EQ(::symlink(name.c_str(), scratch_.folder("source/names/to").append("/" + name).c_str()), 0);
    }
  }

  void makeLinks() const {
    const std::string folder = scratch_.folder("source/links");
    int number = 0;
    for (const std::string& target :
         {std::string("nowhere"), std::string("/etc"), std::string("../modes"), std::string("."),
          std::string("link0"), std::string("link5"), std::string(4095, 't')}) {
      EXPECT_EQ(::symlink(target.c_str(), (folder + "/link" + std::to_string(number++)).c_str()), 0);
    }
    const std::string first = file("links/first");
    EXPECT_EQ(::link(first.c_str(), (folder + "/second").c_str()), 0);
    EXPECT_EQ(::link(first.c_str(), (scratch_.folder("source/links/a/b") + "/third").c_str()), 0);
    EXPECT_EQ(::link((folder + "/link0").c_str(), (folder + "/a/link").c_str()), 0);
    EXPECT_EQ(::link(file("links/0bytes", "").c_str(), (folder + "/a/0bytes").c_str()), 0);
    // One name is in the tree, the other one is not.
    EXPECT_EQ(::link(file("links/shared").c_str(), (scratch_ / "outside").c_str()), 0);
  }

  // Data at x, holes at o, each stretch a MiB.
  void makeHoles() const {
    for (const char* layout : {"xoo", "oxo", "oox", "xox", "xoooxoo", "ooo", "o"}) {
      const std::string path = file(std::string("holes/") + layout, "");
      const posix::FileDescriptor sparse(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
      const std::string data(kMiB, 'x');
      off_t at = 0;
      for (const char* part = layout; *part != '\0'; ++part, at += kMiB) {
        if (*part == 'x') EXPECT_EQ(::pwrite(sparse.get(), data.data(), data.size(), at), kMiB);
      }
      EXPECT_EQ(::ftruncate(sparse.get(), at), 0);
    }
    // Holes that begin and end at no border of a block.
    const posix::FileDescriptor odd(::open(file("holes/odd", "").c_str(), O_WRONLY | O_CLOEXEC));
    EXPECT_EQ(::pwrite(odd.get(), "x", 1, 3 * kMiB + 1), 1);
    EXPECT_EQ(::ftruncate(odd.get(), 5 * kMiB + 77), 0);
  }

  void makeAttributes() const {
    const std::string path = file("attributes/file");
    const std::string folder = source_ + "/attributes";
    EXPECT_TRUE(setAttribute(path, "user.text", "text"));
    EXPECT_TRUE(setAttribute(path, "user.bytes", std::string("\0\xFF\n", 3)));
    EXPECT_TRUE(setAttribute(path, "user.empty", ""));
    EXPECT_TRUE(setAttribute(folder, "user.folder", std::string(2000, 'f')));
    EXPECT_TRUE(succeeds("setfacl -m u:12345:rw,g:54321:r,m::rw '" + path + "'"));
    EXPECT_TRUE(succeeds("setfacl -m u:12345:r-x '" + folder + "'"));
    file("attributes/passing/file");
    EXPECT_TRUE(succeeds("setfacl -d -m u:12346:rwx,o::- '" + folder + "/passing'"));
    file("attributes/passing/heir");
    file("attributes/passing/folder/heir");
    // A list under which the group may less than the mode shows.
    EXPECT_TRUE(succeeds("setfacl -m u:12345:rw,g::-,m::rw '" + file("attributes/masked") + "'"));
    const std::string locked = file("attributes/locked");
    EXPECT_TRUE(setAttribute(locked, "user.locked", "x"));
    EXPECT_EQ(::chmod(locked.c_str(), 0444), 0);
  }

  void makeWhatOnlyRootMay() const {
    EXPECT_EQ(::chmod(file("root/locked").c_str(), 0), 0);
    EXPECT_EQ(::chown(file("root/program").c_str(), 1234, 5678), 0);
    EXPECT_EQ(::chmod((source_ + "/root/program").c_str(), 06755), 0);
    EXPECT_EQ(::symlink("program", (source_ + "/root/link").c_str()), 0);
    EXPECT_EQ(::lchown((source_ + "/root/link").c_str(), 4321, 8765), 0);
    EXPECT_TRUE(setAttribute(source_ + "/root/link", "trusted.link", "x"));
    EXPECT_TRUE(succeeds("setfacl -m u:12345:r '" + file("root/listed") + "'"));
    EXPECT_EQ(::chown((source_ + "/root/listed").c_str(), 1234, 5678), 0);
    scratch_.folder("source/root/locked folder");
    EXPECT_EQ(::chmod((source_ + "/root/locked folder").c_str(), 0), 0);
    EXPECT_EQ(::chown((source_ + "/root").c_str(), 1235, 0), 0);
  }

  // Times of all kinds of items, from long ago to far ahead.
  void makeTimes() const {
    using kr::testing::setTimes;
    setTimes(source_ + "/modes/nothing", 1, 1);
    setTimes(source_ + "/modes/empty", 0, 0);
    setTimes(source_ + "/links/link0", 1000000000, 123456789);
    setTimes(source_ + "/links/first", 4000000000, 999999999);
    setTimes(source_ + "/holes/odd", -86400, 5);
    setTimes(source_ + "/links", 1000000001, 1);
    setTimes(source_, 1000000002, 2);
  }

  kr::testing::ScratchFolder scratch_;
  const std::string source_ = scratch_ / "source";
  const std::string copy_ = scratch_.folder("to") + "/copy";
};

TEST_F(CopyExactness, OtherToolsSeeNoDifference) {
  const auto failure = copyTree(source_, copy_, Durability::inCache);
  ASSERT_FALSE(failure) << failure->text();
  EXPECT_EQ(differences(source_, copy_), "");
  struct stat status {};
  ASSERT_EQ(::stat((copy_ + "/links/shared").c_str(), &status), 0);
  EXPECT_EQ(status.st_nlink, 1U);
  const auto holes = files::entries(source_ + "/holes").value_or(std::vector<std::string>{});
  for (const std::string& name : holes) {
    EXPECT_LE(allocated(copy_ + "/holes/" + name), allocated(source_ + "/holes/" + name)) << name;
  }
  EXPECT_EQ(allocated(copy_ + "/holes/ooo"), 0);
}

// One change each, which leaves all else as it is where it can. They are run in the copy.
constexpr const char* kChanges[] = {
    "chmod 0666 modes/nothing",
    "chmod u-s modes/file2541",
    "chmod 0711 modes/empty",
    "rmdir modes/empty",
    "touch -d @1.000000002 modes/nothing",
    "touch -d @1000000001.000000002 links",
    "touch -h -d @1000000000.123456788 links/link0",
    "cp -p links/first ../kept && printf C >links/first && touch -r ../kept links/first",
    "cp -p links/first ../kept && printf C | dd of=links/first conv=notrunc status=none && touch -r ../kept "
    "links/first",
    "ln -sfn Nowhere links/link0 && touch -h -d @1000000000.123456789 links/link0 && touch -d "
    "@1000000001.000000001 links",
    "cp -p links/a/b/third links/a/b/new && mv links/a/b/new links/a/b/third",
    "mv names/-rf names/-fr",
    "printf x >names/extra",
    "setfattr -n user.text -v tex2 attributes/file",
    "setfattr -x user.empty attributes/file",
    "setfattr -x user.folder attributes",
    "setfacl -m u:12345:r attributes/file",
    "setfacl -k attributes/passing",
    "cp -p holes/xoo ../kept && cat ../kept >../full && cat ../full >holes/xoo && touch -r ../kept "
    "holes/xoo"};

// Else the test above shows nothing.
TEST_F(CopyExactness, OtherToolsSeeEveryChange) {
  for (const char* change : kChanges) {
    SCOPED_TRACE(change);
    ASSERT_FALSE(copyTree(source_, copy_, Durability::inCache));
    ASSERT_TRUE(succeeds("cd '" + copy_ + "' && " + change));
    EXPECT_NE(differences(source_, copy_), "");
    kr::testing::removeAll(copy_);
  }
}

TEST_F(CopyExactness, OtherToolsSeeAnotherOwner) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  for (const char* item : {"modes/nothing", "modes/empty", "root/link"}) {
    ASSERT_FALSE(copyTree(source_, copy_, Durability::inCache));
    ASSERT_EQ(::lchown((copy_ + "/" + item).c_str(), 77, 77), 0);
    EXPECT_NE(differences(source_, copy_), "") << item;
    kr::testing::removeAll(copy_);
  }
}

}  // namespace
}  // namespace kr::platform::copy
