// Products that need a newer system than the one that runs: the real alert, answered from outside.
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <memory>

#include "platform/posix/Files.h"
#include "tests/end-to-end/Installation.h"
#include "tests/end-to-end/Products.h"
#include "tests/support/Eventually.h"

namespace kr::testing {
namespace {

constexpr const char* kArchive = "https://www.velmora.example/downloads/archive/";

class Requirement : public Installation {
 protected:
  Requirement() {
    // A handler of web pages that keeps what it is asked to open.
    const std::string program =
        scratch_.file("browser", "#!/bin/sh\nprintf '%s\\n' \"$@\" >> '" + opened_ + ".part'\nmv '" +
                                     opened_ + ".part' '" + opened_ + "'\n");
    ::chmod(program.c_str(), 0755);
    scratch_.file("data/applications/browser.desktop",
                  "[Desktop Entry]\nType=Application\nName=Browser\nExec=" + program +
                      " %u\nMimeType=x-scheme-handler/https;\n");
    scratch_.file("data/applications/mimeapps.list",
                  "[Default Applications]\nx-scheme-handler/https=browser.desktop\n");
  }

  // Starts the installer on a system of this version.
  void startOn(const std::string& system, const Lines& more) {
    system_ = std::make_unique<ScopedVariable>("KR_SYSTEM_VERSION", system);
    Lines arguments{"-sourcePath", smallApplication(scratch_ / "Small.app"), "-destinationPath",
                    destination_};
    arguments.insert(arguments.end(), more.begin(), more.end());
    start(arguments);
    expectLine("Updated arguments: ");
  }

  void expectSheet() {
    ASSERT_TRUE(eventually([] { return windows().size() == 2; }, 20)) << "no sheet on the window";
    // The window manager still has to hand it the focus.
    ASSERT_TRUE(eventually([] { return std::system("xdotool getactivewindow >/dev/null 2>&1") == 0; }, 20));
  }

  // Presses a key until the installer ends by itself.
  void expectEndsOn(const std::string& key) {
    std::optional<int> status;
    for (int attempt = 0; attempt < 20 && !status; ++attempt) {
      type(key);
      status = ended(1.5);
    }
    ASSERT_TRUE(status) << "the installer still runs";
    EXPECT_EQ(*status, 0);
  }

  void expectNothingInstalled() {
    EXPECT_FALSE(files::itemExists(destination_));
    EXPECT_FALSE(logHas("Install"));
  }

  std::string openedPages() { return files::contents(opened_).value_or(""); }

  const std::string destination_ = scratch_.folder("Applications") + "/Small.app";
  const std::string opened_ = scratch_ / "opened";

 private:
  ScopedVariable data_{"XDG_DATA_HOME", scratch_ / "data"};
  std::unique_ptr<ScopedVariable> system_;
};

TEST_F(Requirement, ThatIsNotMetEndsTheInstallerOnReturn) {
  startOn("10.12", {"-minSystemVersion", "10.13"});
  expectSheet();
  expectEndsOn("Return");
  expectNothingInstalled();
  EXPECT_EQ(openedPages(), "");
}

TEST_F(Requirement, ThatIsNotMetLeadsToTheArchiveWhenTheUserWantsThat) {
  startOn("10.12", {"-minSystemVersion", "10.13"});
  expectSheet();
  type("Tab");
  expectEndsOn("space");
  EXPECT_TRUE(eventually([&] { return !openedPages().empty(); }));
  EXPECT_EQ(openedPages(), std::string(kArchive) + "\n");
  expectNothingInstalled();
}

TEST_F(Requirement, ThatIsNotMetEndsTheInstallerAlsoWithoutABrowser) {
  scratch_.file("data/applications/mimeapps.list", "");
  scratch_.file("data/applications/browser.desktop", "");
  const ScopedVariable none("XDG_DATA_DIRS", scratch_ / "none");
  startOn("10.12", {"-minSystemVersion", "10.13"});
  expectSheet();
  type("Tab");
  expectEndsOn("space");
  expectLine("could not open " + std::string(kArchive) + ": no application for it");
}

TEST_F(Requirement, ThatIsNotMetLeavesTheWindowInert) {
  startOn("10.12", {"-minSystemVersion", "10.13"});
  expectSheet();
  for (int attempt = 0; attempt < 3; ++attempt) click(kInstallX, kInstallY);
  // Above the sheet, where it would take the focus.
  click(40, 20);
  EXPECT_FALSE(ended(2)) << "the installer has ended";
  EXPECT_EQ(windows().size(), 2U);
  expectNothingInstalled();
  expectEndsOn("Return");
}

TEST_F(Requirement, ThatIsNotMetDoesNotKeepASignalFromEndingTheInstaller) {
  startOn("10.12", {"-minSystemVersion", "10.13"});
  expectSheet();
  signal(SIGTERM);
  const auto status = ended();
  ASSERT_TRUE(status) << "the installer still runs";
  EXPECT_TRUE(WIFEXITED(*status)) << "it ends as on its own command";
  EXPECT_EQ(WEXITSTATUS(*status), 0);
}

TEST_F(Requirement, OfTheProductsBundleCounts) {
  const std::string product = scratch_.folder("disk/Newer.app");
  scratch_.file("disk/Newer.app/Contents/Info.plist",
                "{ CFBundleSignature = Newr; LSMinimumSystemVersion = \"10.16\"; }");
  start({"-sourcePath", product, "-destinationPath", destination_});
  expectSheet();
  expectEndsOn("Return");
  expectNothingInstalled();
}

TEST_F(Requirement, IsMetByTheSameSystem) {
  startOn("10.13", {"-minSystemVersion", "10.13"});
  // The place that is inert under a sheet.
  ASSERT_TRUE(eventually(
      [&] {
        click(kInstallX, kInstallY);
        return eventually([&] { return logHas("Install"); }, 1);
      },
      45));
  expectInstalled(destination_);
  EXPECT_EQ(windows().size(), 1U);
}

}  // namespace
}  // namespace kr::testing
