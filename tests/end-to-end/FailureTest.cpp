// Installations that cannot succeed: nothing is lost, the log says why, and the user may try again.
#include <signal.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "platform/Paths.h"
#include "platform/posix/Files.h"
#include "tests/end-to-end/Installation.h"
#include "tests/end-to-end/Products.h"
#include "tests/support/Eventually.h"

namespace kr::testing {
namespace {

constexpr const char* kNotCopied = "ERROR -- Could not copy myself to ";

class FailedInstallation : public Installation {
 protected:
  void expectNotCopied(const std::string& destination) { expectFailed(kNotCopied + destination); }

  // The buttons are ready again: Install starts another attempt.
  void expectSecondAttempt() {
    EXPECT_TRUE(eventually(
        [&] {
          press("Return");
          const Lines lines = log();
          return std::count(lines.begin(), lines.end(), "Install") >= 2;
        },
        45));
  }

  const std::string applications_ = scratch_.folder("Applications");
};

TEST_F(FailedInstallation, AnInstallerWithoutAProductSaysSo) {
  const std::string console = scratch_ / "console";
  // Standard error goes to a file, as to the console of a desktop.
  scratch_.file("start.sh", "#!/bin/sh\nexec \"$1\" 2>\"$2\"\n");
  ::chmod((scratch_ / "start.sh").c_str(), 0755);
  start({installerProgram(), console}, scratch_ / "start.sh");
  EXPECT_TRUE(eventually([&] {
    const std::string text = files::contents(console).value_or("");
    return text.find("direct invocation\n") != std::string::npos &&
           text.find("arguments: (") != std::string::npos &&
           text.find("] missing source path\n") != std::string::npos;
  }));
  EXPECT_EQ(log(), Lines{}) << "nobody but a product fills the log file";
  expectQuitsOnOK();
}

TEST_F(FailedInstallation, AProductWithoutASignatureIsASetupError) {
  const std::string source = scratch_.folder("Plain.app");
  start({"-sourcePath", source, "-destinationPath"});
  expectLine("missing product signature");
  expectQuitsOnOK();
}

TEST_F(FailedInstallation, AMalformedInformationFileIsASetupError) {
  scratch_.file("Broken.app/Contents/Info.plist", "<plist><dict><key>CFBundleSignature</key><string>Brkn");
  start({"-sourcePath", scratch_ / "Broken.app", "-version", "1"});
  expectLine("missing product signature");
  expectQuitsOnOK();
}

TEST_F(FailedInstallation, ASourceThatDoesNotExistLeavesTheInstalledCopy) {
  const std::string destination = smallApplication(applications_ + "/Small.app");
  install(scratch_ / "missing/Small.app", destination, {"-productCode", "SmlA"});
  expectNotCopied(destination);
  EXPECT_TRUE(files::exists(destination + "/Contents/Resources/words.txt"));
  expectSecondAttempt();
}

TEST_F(FailedInstallation, ASourceThatIsAFileIsRefused) {
  const std::string destination = applications_ + "/Small.app";
  install(scratch_.file("Small.app"), destination, {"-productCode", "SmlA"});
  expectNotCopied(destination);
  EXPECT_FALSE(files::itemExists(destination));
}

TEST_F(FailedInstallation, ASourceThatIsTheDestinationIsRefused) {
  const std::string product = smallApplication(applications_ + "/Small.app");
  install(product, product);
  expectNotCopied(product);
  EXPECT_TRUE(files::exists(product + "/Contents/Resources/words.txt"));
  EXPECT_EQ(trashed(), Lines{});
}

TEST_F(FailedInstallation, ADestinationInsideTheSourceIsRefused) {
  const std::string product = smallApplication(applications_ + "/Small.app");
  install(product, product + "/Contents/Small.app");
  expectNotCopied(product + "/Contents/Small.app");
  EXPECT_FALSE(files::itemExists(product + "/Contents/Small.app"));
}

TEST_F(FailedInstallation, ASourceInsideTheDestinationIsRefused) {
  const std::string outer = smallApplication(applications_ + "/Outer.app");
  const std::string inner = smallApplication(outer + "/Contents/Small.app");
  install(inner, outer);
  expectNotCopied(outer);
  EXPECT_TRUE(files::exists(inner + "/Contents/Resources/words.txt"));
  EXPECT_EQ(trashed(), Lines{});
}

TEST_F(FailedInstallation, ADestinationWhoseFolderIsADanglingLinkGoesToTheApplicationsFolderInstead) {
  ASSERT_EQ(::symlink("nowhere", (scratch_ / "dangling").c_str()), 0);
  start({"-sourcePath", smallApplication(scratch_ / "Small.app"), "-destinationPath",
         scratch_ / "dangling/Small.app"});
  expectLine("Updated arguments: ");
  const Lines lines = log();
  for (const std::string& line : lines) {
    if (line.starts_with("Updated"))
      EXPECT_EQ(line.find("destinationPath = \"" + scratch_ / "dangling"), std::string::npos);
  }
  EXPECT_FALSE(files::exists(scratch_ / "nowhere"));
}

TEST_F(FailedInstallation, ASourceWithAnUnreadableFileIsNotHalfInstalled) {
  if (::geteuid() == 0) GTEST_SKIP() << "root reads every file";
  const std::string source = smallApplication(scratch_ / "Small.app");
  ::chmod((source + "/Contents/Resources/words.txt").c_str(), 0);
  install(source, applications_ + "/Small.app");
  expectNotCopied(applications_ + "/Small.app");
  EXPECT_EQ(files::entries(applications_), Lines{});
  expectSecondAttempt();
}

TEST_F(FailedInstallation, AFolderThatTheUserMayNotWriteNeedsAuthorization) {
  if (::geteuid() == 0) GTEST_SKIP() << "root writes every folder";
  ::chmod(applications_.c_str(), 0555);
  install(smallApplication(scratch_ / "Small.app"), applications_ + "/Small.app");
  expectFailed("ERROR -- Could not copy myself to /Applications with authorization");
  EXPECT_TRUE(logHas("Cannot write to folder " + applications_));
  expectSecondAttempt();
  ::chmod(applications_.c_str(), 0755);
}

TEST_F(FailedInstallation, AnExistingCopyThatCannotBeTrashedStays) {
  const std::string destination = smallApplication(applications_ + "/Small.app");
  scratch_.file("home/.local/share/Trash", "a file in place of the Trash");
  install(smallApplication(scratch_ / "Small.app"), destination);
  expectFailed("ERROR -- Could not trash existing " + destination);
  EXPECT_TRUE(logHas("ERROR -- Could not trash '" + destination + "'"));
  EXPECT_TRUE(files::exists(destination + "/Contents/Resources/words.txt"));
  EXPECT_EQ(files::entries(applications_), Lines{"Small.app"});
}

TEST_F(FailedInstallation, AFullDiskLeavesNothingBehind) {
  const std::string disk = scratch_.folder("disk");
  if (::mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=8m") != 0)
    GTEST_SKIP() << "only root can make a small disk";
  install(largeApplication(scratch_ / "Large.app"), disk + "/Large.app");
  expectNotCopied(disk + "/Large.app");
  EXPECT_EQ(files::entries(disk), Lines{});
  ::umount2(disk.c_str(), MNT_DETACH);
}

TEST_F(FailedInstallation, AnInstallerKilledInMidCopyLeavesAWholeProductOrNoneAndTheNextOneCleansUp) {
  const std::string source = largeApplication(scratch_ / "Large.app");
  const std::string destination = applications_ + "/Large.app";
  install(source, destination);
  // Something appears beside the destination before the product does.
  ASSERT_TRUE(eventually([&] { return !files::entries(applications_).value_or(Lines{}).empty(); }));
  kill();
  if (files::exists(destination)) expectSameTree(source, destination);
  install(source, destination);
  expectInstalled(destination);
  expectSameTree(source, destination);
  EXPECT_EQ(files::entries(applications_), Lines{"Large.app"});
}

TEST_F(FailedInstallation, ACopyThatIgnoresTheRequestIsEndedByForce) {
  const std::string destination = applications_ + "/Velmora Notes.app";
  std::filesystem::copy(
      sample("stubborn") + "/Velmora Notes.app", destination,
      std::filesystem::copy_options::recursive | std::filesystem::copy_options::copy_symlinks);
  launch(destination + "/Velmora Notes", "Velmora Notes");
  install(sample("2.0") + "/Velmora Notes.app", destination);
  expectLine("force-quit Velmora Notes: terminated after ");
  expectInstalled(destination);
}

}  // namespace
}  // namespace kr::testing
