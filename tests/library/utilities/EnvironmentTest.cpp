#include "library/utilities/Environment.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <optional>

#include "platform/Services.h"
#include "platform/testing/FixedDesktop.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/ScratchFolder.h"

namespace kr {
namespace {

using Lines = std::vector<std::string>;

class Environment : public ::testing::Test {
 protected:
  Environment() { fileSystems.volumes = {folder / "media/user", folder / "Volumes"}; }

  platform::Services set() {
    platform::Services set = platform::services();
    set.fileSystems = &fileSystems;
    set.log = &log;
    set.program = &program;
    return set;
  }

  bool runsFromDisk(const std::string& bundle) {
    program.bundle = bundle;
    return runsFromDistributionDisk();
  }

  testing::ScratchFolder folder;
  platform::testing::FixedFileSystems fileSystems;
  platform::testing::FixedProgram program;
  platform::testing::RecordingLog log;
  platform::ScopedServices services{set()};
};

TEST_F(Environment, IsADistributionDiskWithEitherMarker) {
  EXPECT_FALSE(runsFromDisk(folder / "Volumes/Disk/Product.app"));
  const std::string visible = folder.file("Volumes/Disk/launchlock", "");
  EXPECT_TRUE(runsFromDisk(folder / "Volumes/Disk/Product.app"));
  EXPECT_TRUE(runsFromDisk(folder / "Volumes/Disk/Folder/Product.app/Contents/Resources/Installer.app"));
  testing::removeAll(visible);
  EXPECT_FALSE(runsFromDisk(folder / "Volumes/Disk/Product.app"));
  folder.file("Volumes/Disk/.launchlock", "");
  EXPECT_TRUE(runsFromDisk(folder / "Volumes/Disk/Product.app"));
}

TEST_F(Environment, HasItsMarkerAtTheRootOfTheProgramsOwnVolume) {
  folder.file("Volumes/Other/launchlock", "");
  folder.file("Volumes/Disk/Folder/launchlock", "");
  folder.file("Volumes/launchlock", "");
  folder.file("launchlock", "");
  EXPECT_FALSE(runsFromDisk(folder / "Volumes/Disk/Folder/Product.app"));
  EXPECT_TRUE(runsFromDisk(folder / "Volumes/Other/Product.app"));
}

TEST_F(Environment, IsNoVolumeOutsideTheFolderOfVolumes) {
  folder.file("Volumes/launchlock", "");
  folder.file("VolumesToo/Disk/launchlock", "");
  folder.file("Applications/launchlock", "");
  EXPECT_FALSE(runsFromDisk(folder / "Volumes"));
  EXPECT_FALSE(runsFromDisk(folder / "Volumes/"));
  EXPECT_FALSE(runsFromDisk(folder / "Volumes//"));
  EXPECT_FALSE(runsFromDisk(folder / "VolumesToo/Disk/Product.app"));
  EXPECT_FALSE(runsFromDisk(folder / "Applications/Product.app"));
  EXPECT_FALSE(runsFromDisk("/elsewhere" + (folder / "Volumes/Disk/Product.app")));
  EXPECT_FALSE(runsFromDisk(""));
}

TEST_F(Environment, MayHaveSeveralFoldersOfVolumes) {
  folder.file("media/user/Disk/launchlock", "");
  EXPECT_TRUE(runsFromDisk(folder / "media/user/Disk/Product.app"));
  EXPECT_FALSE(runsFromDisk(folder / "media/user/Stick/Product.app"));
}

TEST_F(Environment, IsThatOfAnInstallerOnADistributionDisk) {
  // The scratch folder itself is a place that does not last.
  ASSERT_EQ(::chdir(folder.path().c_str()), 0);
  fileSystems.volumes = {"/proc/self/cwd/Volumes"};
  program.bundle = "/proc/self/cwd/Volumes/Disk/Product.app";
  EXPECT_FALSE(isInInstallationMode());
  folder.file("Volumes/Disk/launchlock", "");
  EXPECT_TRUE(isInInstallationMode());
}

TEST_F(Environment, IsThatOfAnInstallerInAPlaceThatDoesNotLast) {
  const auto installsFrom = [this](const std::string& bundle) {
    program.bundle = bundle;
    return isInInstallationMode();
  };
  EXPECT_TRUE(installsFrom("/private/var/folders/x/AppTranslocation/1234/d/Product.app"));
  EXPECT_TRUE(installsFrom("/var/tmp/Product.app"));
  EXPECT_TRUE(installsFrom("/private/var/tmp/update/Product.app"));
  EXPECT_FALSE(installsFrom("/Applications/Product.app"));
  EXPECT_FALSE(installsFrom("/x/apptranslocation/Product.app"));
  EXPECT_FALSE(installsFrom("/x/AppTranslocation"));
  EXPECT_FALSE(installsFrom("/var/tmpfiles/Product.app"));
  EXPECT_FALSE(installsFrom("/tmp/Product.app"));
}

TEST_F(Environment, TellsAndLogsTheTypeOfAFileSystem) {
  fileSystems.types["/home"] = {.status = 0, .name = "ext4"};
  EXPECT_EQ(fileSystemType("/home"), "ext4");
  EXPECT_EQ(log.lines(), (Lines{"FS Info /home", "statfs err = 0"}));
}

TEST_F(Environment, HasNoTypeWhereTheSystemCannotTell) {
  fileSystems.types["/gone"] = {.status = -1, .name = "left over"};
  EXPECT_EQ(fileSystemType("/gone"), "");
  EXPECT_EQ(log.lines(), (Lines{"FS Info /gone", "statfs err = -1"}));
}

TEST_F(Environment, LeavesAPathThatIsNoAliasAsItIs) {
  fileSystems.aliases["/alias"] = "/target";
  EXPECT_EQ(resolvedAlias("/alias"), "/target");
  EXPECT_EQ(resolvedAlias("/file"), "/file");
  EXPECT_EQ(resolvedAlias(""), "");
}

}  // namespace
}  // namespace kr
