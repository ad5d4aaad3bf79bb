#include "platform/linux/MountTable.h"

#include <gtest/gtest.h>

namespace kr::platform {
namespace {

constexpr std::string_view kTable =
    "25 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
    "30 25 0:25 / /home rw - btrfs /dev/sdb1 rw,subvol=/home\n"
    "31 25 0:26 /sub /mnt/with\\040blank\\012and\\134slash rw master:1 propagate_from:2 - xfs /dev/sdc rw\n"
    "40 25 0:30 / /srv rw - nfs4 server:/export rw,hard\n"
    "41 40 0:31 / /srv/local rw - tmpfs tmpfs rw\n"
    "50 25 0:32 / /over ro - overlay overlay rw\n"
    "51 25 0:33 / /over rw - fuse.sshfs me@host: rw\n";

std::string typeAt(std::string_view path) {
  const std::vector<Mount> table = parseMountTable(kTable);
  const Mount* mount = mountOf(table, path);
  return mount != nullptr ? mount->type : "none";
}

TEST(MountTable, HasAMountOnEveryLine) {
  const std::vector<Mount> table = parseMountTable(kTable);
  ASSERT_EQ(table.size(), 7U);
  EXPECT_EQ(table[0].id, 25U);
  EXPECT_EQ(table[0].place, "/");
  EXPECT_EQ(table[0].type, "ext4");
  EXPECT_EQ(table[1].type, "btrfs");
  EXPECT_EQ(table[2].place, "/mnt/with blank\nand\\slash");
  EXPECT_EQ(table[2].type, "xfs");
}

TEST(MountTable, IsSearchedByNumber) {
  const std::vector<Mount> table = parseMountTable(kTable);
  ASSERT_NE(mountWithID(table, 41), nullptr);
  EXPECT_EQ(mountWithID(table, 41)->type, "tmpfs");
  EXPECT_EQ(mountWithID(table, 4), nullptr);
  EXPECT_EQ(mountWithID({}, 0), nullptr);
}

TEST(MountTable, IsSearchedByTheTextOfAPath) {
  EXPECT_EQ(typeAt("/"), "ext4");
  EXPECT_EQ(typeAt("/etc/hosts"), "ext4");
  EXPECT_EQ(typeAt("/home"), "btrfs");
  EXPECT_EQ(typeAt("/home/me"), "btrfs");
  EXPECT_EQ(typeAt("/homes/me"), "ext4");
  EXPECT_EQ(typeAt("/srv/x"), "nfs4");
  EXPECT_EQ(typeAt("/srv/local/x"), "tmpfs");
  EXPECT_EQ(typeAt("/over/x"), "fuse.sshfs") << "the one that was mounted last";
  EXPECT_EQ(typeAt("relative"), "none");
  EXPECT_EQ(typeAt(""), "none");
}

TEST(MountTable, LeavesOutWhatIsNoLine) {
  EXPECT_TRUE(parseMountTable("").empty());
  EXPECT_TRUE(parseMountTable("\n\n").empty());
  EXPECT_TRUE(parseMountTable("x 1 8:1 / / rw - ext4 /dev/sda1 rw\n").empty());
  EXPECT_TRUE(parseMountTable("1x 1 8:1 / / rw - ext4 /dev/sda1 rw\n").empty());
  EXPECT_TRUE(parseMountTable("25 1 8:1 / / rw shared:1\n").empty());
  EXPECT_TRUE(parseMountTable("25 1 8:1 / / rw -").empty());
  EXPECT_TRUE(parseMountTable("25 1 8:1").empty());
  EXPECT_EQ(parseMountTable("junk\n25 1 8:1 / / rw - ext4 x rw").size(), 1U);
}

TEST(MountTable, KeepsABackslashThatStartsNoNumber) {
  const std::vector<Mount> table = parseMountTable("1 1 8:1 / /a\\x\\04\\ rw - ext4 x rw\n");
  ASSERT_EQ(table.size(), 1U);
  EXPECT_EQ(table[0].place, "/a\\x\\04\\");
}

TEST(MountTable, KnowsWhichFilesAreSomebodyElses) {
  for (const char* type : {"nfs", "nfs4", "cifs", "smb3", "9p", "afs", "autofs", "ceph", "lustre", "virtiofs",
                           "fuse", "fuse.sshfs", "fuseblk"}) {
    EXPECT_TRUE(mayNotAnswer(type)) << type;
  }
  for (const char* type : {"ext4", "xfs", "btrfs", "tmpfs", "overlay", "nfsd", "vfat", ""}) {
    EXPECT_FALSE(mayNotAnswer(type)) << type;
  }
}

}  // namespace
}  // namespace kr::platform
