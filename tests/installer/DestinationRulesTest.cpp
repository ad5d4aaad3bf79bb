#include "installer/DestinationRules.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/Services.h"
#include "platform/testing/FixedDesktop.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/ScratchFolder.h"

namespace kr {
namespace {

using Lines = std::vector<std::string>;
constexpr std::uint32_t kMain = 0x41414141, kRelated = 0x42424242, kOther = 0x43434343;

class DestinationRules : public ::testing::Test {
 protected:
  DestinationRules() : services_(platform::services()) {
    services_.folders = &folders_;
    services_.loginItems = &loginItems_;
    services_.log = &log_;
    scope_.emplace(services_);
  }

  kr::testing::ScratchFolder scratch_;
  platform::testing::FixedFolders folders_;
  platform::testing::FixedLoginItems loginItems_;
  platform::testing::RecordingLog log_;

 private:
  platform::Services services_;
  std::optional<platform::ScopedServices> scope_;
};

RunningCopy copy(std::uint32_t signature, const char* path, bool isInstaller = false) {
  return {signature, isInstaller, [path]() -> std::optional<std::string> {
            if (path == nullptr) return std::nullopt;
            return path;
          }};
}

TEST_F(DestinationRules, UnsupportedFolders) {
  struct Row {
    const char* path;
    bool unsupported;
  };
  constexpr Row kRows[] = {{"/Users/x/build/Release/qam/P.app", true},
                           {"/Users/x/build/P.app", false},
                           {"/Users/x/qam/P.app", false},
                           {"/Users/x/build-qam/P.app", false},
                           {"/x/builds/qam/P.app", true},
                           {"/Volumes/P-Install/P.app", true},
                           {"/Volumes/Data/Applications/P.app", false},
                           {"/opt/P-Install/P.app", false},
                           {"/Users/x/.Trash/P.app", true},
                           {"/home/x/.local/share/Trash/files/P.app", true},
                           {"/home/x/Trash.app", false},
                           {"/home/x/trash/P.app", false},
                           {"/private/var/folders/ab/P.app", true},
                           {"/var/folders/ab/P.app", false},
                           {"/x/private/var/P.app", false},
                           {"/Applications/P.app", false}};
  for (const Row& row : kRows) EXPECT_EQ(isInUnsupportedFolder(row.path), row.unsupported) << row.path;
  EXPECT_FALSE(isInUnsupportedFolder(std::nullopt));
}

TEST_F(DestinationRules, TheFirstLoginItemWithThePrefixCounts) {
  loginItems_.items = Lines{"/opt/Q.app", "/opt/P Tools.app", "/opt/P.app"};
  EXPECT_EQ(autoLaunchPath("P"), "/opt/P Tools.app");
  EXPECT_EQ(autoLaunchPath("P."), "/opt/P.app");
  EXPECT_EQ(autoLaunchPath("p"), std::nullopt);
  loginItems_.items.reset();
  EXPECT_EQ(autoLaunchPath("P"), std::nullopt);
}

TEST_F(DestinationRules, ARunningCopyOfTheMainSignatureWinsOverARelatedOne) {
  EXPECT_EQ(pathToReplace({copy(kRelated, "/Applications/B.app"), copy(kMain, "/home/x/Applications/A.app")},
                          {kMain, kRelated}),
            "/home/x/Applications/A.app");
}

TEST_F(DestinationRules, ARelatedCopyCountsWhenNoMainCopyRuns) {
  EXPECT_EQ(pathToReplace({copy(kOther, "/o.app"), copy(kRelated, "/b.app")}, {kMain, kRelated}), "/b.app");
  EXPECT_EQ(pathToReplace({copy(kRelated, "/b.app")}, {kMain}), std::nullopt);
}

TEST_F(DestinationRules, TheInstallerAndUnsupportedFoldersAreSkipped) {
  EXPECT_EQ(pathToReplace({copy(kMain, "/installer.app", true), copy(kMain, "/x/.Trash/a.app"),
                           copy(kMain, nullptr), copy(kMain, "/a.app")},
                          {kMain}),
            "/a.app");
  EXPECT_EQ(
      pathToReplace({copy(kMain, "/a.app", true), copy(kRelated, "/x/.Trash/b.app")}, {kMain, kRelated}),
      std::nullopt);
  EXPECT_EQ(pathToReplace({copy(kMain, "/a.app")}, {}), std::nullopt);
}

TEST_F(DestinationRules, AProgramWithoutASignatureIsNobodysCopy) {
  EXPECT_EQ(
      pathToReplace({copy(0x3F3F3F3F, "/usr/bin/terminal"), copy(0, "/usr/bin/ended")}, {0x3F3F3F3F, 0}),
      std::nullopt);
}

TEST_F(DestinationRules, ALoginItemIsPreferredToARunningCopy) {
  loginItems_.items = Lines{"/opt/P.app"};
  EXPECT_EQ(preferredDestination("P", [] { return std::optional<std::string>("/run/P.app"); }), "/opt/P.app");
  EXPECT_EQ(log_.lines(), Lines{"autolaunch = /opt/P.app"});
}

TEST_F(DestinationRules, TheRunningCopyStandsInForALoginItemThatIsMissingOrUnsupported) {
  const auto running = [] { return std::optional<std::string>("/run/P.app"); };
  EXPECT_EQ(preferredDestination("P", running), "/run/P.app");
  loginItems_.items = Lines{"/x/.Trash/P.app"};
  EXPECT_EQ(preferredDestination("P", running), "/run/P.app");
  EXPECT_EQ(log_.lines(), (Lines{"autolaunch = (null)", "autolaunch = /x/.Trash/P.app"}));
}

TEST_F(DestinationRules, TheMachinesApplicationsFolderComesFirst) {
  folders_.local = scratch_.folder("local");
  folders_.user = scratch_.folder("user");
  EXPECT_EQ(applicationsFolder(), scratch_ / "local");
  EXPECT_TRUE(log_.lines().empty());
}

TEST_F(DestinationRules, TheUsersApplicationsFolderIsNextWhenItIsThere) {
  folders_.local = scratch_ / "missing";
  folders_.user = scratch_.folder("user");
  EXPECT_EQ(applicationsFolder(), scratch_ / "user");
  EXPECT_EQ(log_.lines(), (Lines{"Can't write to /Applications, checking ~/Applications",
                                 "User applicationsDirectory: " + scratch_ / "user"}));
}

TEST_F(DestinationRules, TheMachinesFolderIsTakenWhenNeitherCanBeWritten) {
  folders_.local = scratch_ / "missing";
  folders_.user = scratch_ / "user";
  EXPECT_EQ(applicationsFolder(), scratch_ / "missing");
  EXPECT_NE(::access((scratch_ / "user").c_str(), F_OK), 0) << "the user's folder is never created";
  folders_.user.reset();
  EXPECT_EQ(applicationsFolder(), scratch_ / "missing");
  EXPECT_EQ(log_.lines().back(), "User applicationsDirectory: (null)");
}

TEST_F(DestinationRules, AWantedPathStandsWhenItsParentIsAFolder) {
  folders_.local = scratch_.folder("local");
  EXPECT_EQ(destinationInFolder(scratch_ / "New Name.app", "/src/P.app"), scratch_ / "New Name.app");
}

TEST_F(DestinationRules, WithoutAUsableParentTheProductGoesToTheApplicationsFolder) {
  folders_.local = scratch_.folder("local");
  const std::string expected = scratch_ / "local/P.app";
  EXPECT_EQ(destinationInFolder(scratch_ / "missing/Q.app", "/src/P.app"), expected);
  EXPECT_EQ(destinationInFolder(scratch_.file("file") + "/Q.app", "/src/P.app"), expected);
  ASSERT_EQ(::symlink("nowhere", (scratch_ / "dangling").c_str()), 0);
  EXPECT_EQ(destinationInFolder(scratch_ / "dangling/Q.app", "/src/P.app"), expected);
  EXPECT_EQ(destinationInFolder(std::nullopt, "/src/P.app/"), expected);
}

TEST_F(DestinationRules, AWrapperMustExistBesideTheSource) {
  scratch_.folder("disk/Wrapper");
  scratch_.folder("other/Wrapper");
  const std::string source = scratch_ / "disk/P.app";
  EXPECT_TRUE(isUsableWrapper(scratch_ / "disk/Wrapper", source));
  EXPECT_FALSE(isUsableWrapper(scratch_ / "disk/Missing", source));
  EXPECT_FALSE(isUsableWrapper(scratch_ / "other/Wrapper", source));
}

TEST_F(DestinationRules, TheProductGoesIntoAFolderNamedLikeTheWrapper) {
  EXPECT_EQ(destinationInWrapper("/Applications/P.app", "/disk/P Folder"), "/Applications/P Folder/P.app");
  EXPECT_EQ(destinationInWrapper("/Applications/P Folder/P.app", "/disk/P Folder"),
            "/Applications/P Folder/P.app");
}

TEST_F(DestinationRules, PathsForPeopleAbbreviateTheHomeFolderAndUseDisplayNames) {
  folders_.displayNames = {{"/home/user/Applications", "Programme"}, {"/opt", "Extras"}};
  EXPECT_EQ(localizedPath("/home/user/Applications/P.app"), "~/Programme/P.app");
  EXPECT_EQ(localizedPath("/opt/P.app"), "/Extras/P.app");
  EXPECT_EQ(localizedPath("/home/username/P.app"), "/home/username/P.app");
  EXPECT_EQ(recursiveLocalizedPath("~/Applications"), "~/Programme");
}

TEST_F(DestinationRules, ShortPathsStayAsTheyAre) {
  for (const char* path : {"~", "/", "", "/a"}) EXPECT_EQ(recursiveLocalizedPath(path), path);
}

}  // namespace
}  // namespace kr
