// Installations that succeed, on real products.
#include <signal.h>
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

TEST_F(Installation, TheSampleProductIsInstalledRegisteredAndLaunched) {
  const std::string source = sample("1.0") + "/Velmora Notes.app";
  const std::string destination = scratch_.folder("Applications") + "/Velmora Notes.app";
  install(source, destination, {"-productName", "Velmora Notes", "-version", "1.0"});
  expectInstalled(destination);
  expectSameTree(source, destination);
  const Lines lines = log();
  const auto from = std::find(lines.begin(), lines.end(), "Install");
  // What the product itself reports comes after it.
  const auto to =
      std::find_if(from, lines.end(), [](const auto& line) { return line.starts_with("received"); });
  EXPECT_EQ(Lines(from, to),
            (Lines{"Install", "successfully copied", "launching " + destination, "waited 0.5",
                   "registered app: 0", "waited 0.3", "launched immediately: 1"}));
  EXPECT_EQ(trashed(), Lines{});
  EXPECT_TRUE(files::exists(home_ + "/.local/share/applications/com.velmora.notes.desktop"));
  expectQuitsOnOK();
  EXPECT_FALSE(processesIn(destination).empty()) << "the product outlives its installer";
}

TEST_F(Installation, ARunningCopyIsQuitAndItsFilesGoToTheTrash) {
  const std::string destination = scratch_.folder("Applications") + "/Velmora Notes.app";
  std::filesystem::copy(
      sample("1.0") + "/Velmora Notes.app", destination,
      std::filesystem::copy_options::recursive | std::filesystem::copy_options::copy_symlinks);
  launch(destination + "/Velmora Notes", "Velmora Notes");
  const std::vector<pid_t> old = processesIn(destination);
  ASSERT_EQ(old.size(), 1U);

  install(sample("2.0") + "/Velmora Notes.app", destination);
  expectInstalled(destination);
  EXPECT_TRUE(logHas("Quitting 'VmNt': Velmora Notes"));
  const std::vector<pid_t> now = processesIn(destination);
  EXPECT_EQ(std::count(now.begin(), now.end(), old.front()), 0);
  EXPECT_EQ(trashed(), Lines{"Velmora Notes.app"});
  expectSameTree(sample("1.0") + "/Velmora Notes.app", home_ + "/.local/share/Trash/files/Velmora Notes.app");
  expectSameTree(sample("2.0") + "/Velmora Notes.app", destination);
}

TEST_F(Installation, ARunningCopyIsFoundAndReplacedWhereItIs) {
  const std::string destination = scratch_.folder("Somewhere") + "/Renamed Notes.app";
  std::filesystem::copy(
      sample("1.0") + "/Velmora Notes.app", destination,
      std::filesystem::copy_options::recursive | std::filesystem::copy_options::copy_symlinks);
  launch(destination + "/Velmora Notes", "Velmora Notes");
  start({"-sourcePath", sample("2.0") + "/Velmora Notes.app", "-productCode", "VmNt"});
  expectLine("Updated arguments: ");
  const Lines lines = log();
  EXPECT_NE(std::find_if(lines.begin(), lines.end(),
                         [&](const std::string& line) {
                           return line.find("destinationPath = \"" + destination + "\"") != std::string::npos;
                         }),
            lines.end());
}

TEST_F(Installation, APackagedApplicationIsInstalled) {
  const std::string source = packagedApplication("EdenMath", "EdMt", scratch_ / "packages");
  const std::string destination = scratch_.folder("Applications") + "/EdenMath.app";
  install(source, destination);
  expectInstalled(destination);
  expectSameTree(source, destination);
}

TEST_F(Installation, APackagedApplicationIsReplacedWhileItRuns) {
  const std::string destination = packagedApplication("Gomoku", "Gmku", scratch_ / "Applications");
  const std::string source = packagedApplication("Gomoku", "Gmku", scratch_ / "packages");
  scratch_.file("packages/Gomoku.app/Resources/new-in-this-version");
  launch(destination + "/Gomoku", "Gomoku");
  install(source, destination);
  expectInstalled(destination);
  EXPECT_TRUE(logHas("Quitting 'Gmku': Gomoku"));
  EXPECT_EQ(trashed(), Lines{"Gomoku.app"});
  expectSameTree(source, destination);
}

TEST_F(Installation, ALargeBundleOfTheOtherSystemsLayoutKeepsItsFrameworkLinks) {
  const std::string source = largeApplication(scratch_ / "disk/Large.app");
  const std::string destination = scratch_.folder("Applications") + "/Large.app";
  install(source, destination);
  expectInstalled(destination);
  expectSameTree(source, destination);
  EXPECT_EQ(std::filesystem::read_symlink(destination + "/Contents/Frameworks/Kit.framework/Kit"),
            "Versions/Current/Kit");
}

TEST_F(Installation, AWrapperFolderIsInstalledAroundTheProduct) {
  const std::string source = smallApplication(scratch_ / "disk/Small.app");
  scratch_.file("disk/Small Folder/Licence.txt", "licence");
  const std::string destination = scratch_.folder("Applications") + "/Small Folder/Small.app";
  install(source, scratch_ / "Applications/Small.app", {"-wrapperPath", scratch_ / "disk/Small Folder"});
  EXPECT_TRUE(logHas("wrapper = " + scratch_ / "disk/Small Folder"));
  expectInstalled(destination);
  EXPECT_EQ(readFile(scratch_ / "Applications/Small Folder/Licence.txt"), "licence");
}

TEST_F(Installation, TheInstallerQuitsByItselfWhenTheProductAskedForIt) {
  const std::string destination = scratch_.folder("Applications") + "/Small.app";
  install(smallApplication(scratch_ / "Small.app"), destination, {"-completionQuit", "1.5"});
  expectInstalled(destination);
  expectLine("quit delay: 1.5");
  EXPECT_TRUE(eventually([&] { return processesIn(paths::parent(installerProgram()).data()).empty(); }, 10));
}

TEST_F(Installation, AProductThatNeverStartsIsInstalledAllTheSame) {
  const std::string destination = scratch_.folder("Applications") + "/Small.app";
  install(smallApplication(scratch_ / "Small.app", false), destination);
  expectLine("retry opening (count=10)");
  expectLine("launched: 0");
  EXPECT_TRUE(files::exists(destination + "/Contents/Resources/words.txt"));
  expectQuitsOnOK();
}

class InstallationOfAnOddName : public Installation, public ::testing::WithParamInterface<const char*> {};

TEST_P(InstallationOfAnOddName, IsLikeAnyOther) {
  const std::string source = smallApplication(scratch_ / "disk/" + std::string(GetParam()));
  const std::string destination = scratch_.folder("Applications") + "/" + GetParam();
  install(source, destination, {"-productName", GetParam()});
  expectInstalled(destination);
  expectSameTree(source, destination);
}

const std::string kLongestName = std::string(251, 'n') + ".app";

INSTANTIATE_TEST_SUITE_P(Names, InstallationOfAnOddName,
                         ::testing::Values("Two  words.app", "It's \"quoted\" $HOME `id`.app",
                                           "New\nline.app", "Bytes \xFF\xFE.app",
                                           "Gr\xC3\xBC\xC3\x9F"
                                           "e.app",
                                           "100% %@ %n.app", "-dash.app", kLongestName.c_str()),
                         [](const auto& name) { return std::to_string(name.index); });

}  // namespace
}  // namespace kr::testing
