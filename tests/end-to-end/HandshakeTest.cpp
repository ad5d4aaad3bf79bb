// The product tells the installer that it has started.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>

#include "platform/posix/Files.h"
#include "tests/end-to-end/Installation.h"
#include "tests/end-to-end/Products.h"
#include "tests/support/Child.h"
#include "tests/support/Eventually.h"

namespace kr::testing {
namespace {

constexpr std::string_view kReceived = "received Done event (";
constexpr const char* kFinished = "installation finished";

class Handshake : public Installation {
 protected:
  // Runs the tool; its exit status.
  static int sendDone(const Lines& words) {
    Lines command{KR_SEND_DONE};
    command.insert(command.end(), words.begin(), words.end());
    const std::optional<int> status = Child(command).wait(20);
    return status && WIFEXITED(*status) ? WEXITSTATUS(*status) : -1;
  }

  // The installer takes events from its first turn of the run loop on, a moment after its window is set up.
  static void expectDelivered(const std::string& tag) {
    EXPECT_TRUE(eventually([&] { return sendDone({tag}) == 0; }, 20));
  }

  void installSmall(const Lines& more = {"-version", "3.1"}) {
    install(smallApplication(scratch_ / "Small.app"), applications_ + "/Small.app", more);
    expectInstalled(applications_ + "/Small.app");
  }

  std::ptrdiff_t count(const std::string& line) const {
    const Lines lines = log();
    return std::count(lines.begin(), lines.end(), line);
  }

  std::ptrdiff_t receivedEvents() const {
    const Lines lines = log();
    return std::count_if(lines.begin(), lines.end(),
                         [](const std::string& line) { return line.starts_with(kReceived); });
  }

  const std::string applications_ = scratch_.folder("Applications");
};

TEST_F(Handshake, TheSampleProductConfirmsItsStartAfterTheInstallationHasSucceeded) {
  const std::string destination = applications_ + "/Velmora Notes.app";
  install(sample("2.0") + "/Velmora Notes.app", destination,
          {"-productName", "Velmora Notes", "-version", "2.0"});
  expectInstalled(destination);
  expectLine(kFinished);
  const Lines lines = log();
  const auto launched = std::find(lines.begin(), lines.end(), "launched immediately: 1");
  EXPECT_EQ(
      Lines(launched, lines.end()),
      (Lines{"launched immediately: 1",
             "received Done event (Velmora Notes 2.0), current installation: Velmora Notes 2.0", kFinished}));
  expectQuitsOnOK();
}

TEST_F(Handshake, AnotherVersionOfTheProductDoesNotConfirm) {
  const std::string destination = applications_ + "/Velmora Notes.app";
  install(sample("2.0") + "/Velmora Notes.app", destination,
          {"-productName", "Velmora Notes", "-version", "2.1"});
  expectInstalled(destination);
  expectLine("received Done event (Velmora Notes 2.0), current installation: Velmora Notes 2.1");
  EXPECT_FALSE(logHas(kFinished));
  expectQuitsOnOK();
}

TEST_F(Handshake, WithoutAVersionTheProductDoesNotConfirm) {
  const std::string destination = applications_ + "/Velmora Notes.app";
  install(sample("1.0") + "/Velmora Notes.app", destination);
  expectInstalled(destination);
  expectLine("received Done event (Velmora Notes 1.0), current installation: Velmora Notes (null)");
  EXPECT_FALSE(logHas(kFinished));
  expectQuitsOnOK();
}

TEST_F(Handshake, TheToolReachesTheInstallerBySignatureAndByProcessID) {
  installSmall();
  EXPECT_EQ(sendDone({"Small 3.1"}), 0);
  EXPECT_EQ(sendDone({"Small 3.1", std::to_string(installerPID())}), 0);
  EXPECT_TRUE(eventually([&] { return count(kFinished) == 2; }));
  EXPECT_EQ(sendDone({"small 3.1"}), 0) << "delivered, and ignored there";
  expectLine("received Done event (small 3.1), current installation: Small 3.1");
  EXPECT_EQ(count(kFinished), 2);
  expectQuitsOnOK();
}

TEST_F(Handshake, AnEventBeforeInstallIsPressedIsIgnored) {
  start({"-sourcePath", smallApplication(scratch_ / "Small.app"), "-destinationPath",
         applications_ + "/Small.app", "-version", "3.1"});
  expectLine("Updated arguments: ");
  expectDelivered("Small 3.1");
  expectLine("received Done event (Small 3.1), current installation: (null)");
  EXPECT_FALSE(logHas(kFinished));
  EXPECT_FALSE(files::itemExists(applications_ + "/Small.app"));
}

TEST_F(Handshake, WithoutAnInstallerTheToolSaysSoAtOnce) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(sendDone({"Small 3.1"}), 1);
  EXPECT_EQ(sendDone({"Small 3.1", std::to_string(::getpid())}), 1);
  const ScopedVariable noBus("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
  EXPECT_EQ(sendDone({"Small 3.1"}), 1);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
}

TEST_F(Handshake, TheToolRefusesWrongUse) {
  for (const Lines& words : {Lines{}, Lines{"a", "b"}, Lines{"a", "0"}, Lines{"a", "-1"}, Lines{"a", "1x"},
                             Lines{"a", "99999999999"}, Lines{"a", ""}, Lines{"a", "1", "c"}}) {
    EXPECT_EQ(sendDone(words), 2);
  }
}

TEST_F(Handshake, TheInstalledHandlerIsTheConsolesToReport) {
  const std::string console = scratch_ / "console";
  scratch_.file("start.sh",
                "#!/bin/sh\nprogram=$1 console=$2\nshift 2\nexec \"$program\" \"$@\" 2>\"$console\"\n");
  ::chmod((scratch_ / "start.sh").c_str(), 0755);
  start({installerProgram(), console, "-sourcePath", smallApplication(scratch_ / "Small.app"),
         "-destinationPath", applications_ + "/Small.app"},
        scratch_ / "start.sh");
  expectLine("Updated arguments: ");
  EXPECT_NE(readFile(console).find("] AppleEvents installed\n"), std::string::npos);
  EXPECT_FALSE(logHas("AppleEvents installed"));
  EXPECT_TRUE(log().at(0).starts_with("arguments: "));
}

TEST_F(Handshake, AFloodOfForeignEventsDoesNotKeepTheUserFromInstalling) {
  constexpr int kCount = 10'000;
  start({"-sourcePath", smallApplication(scratch_ / "Small.app"), "-destinationPath",
         applications_ + "/Small.app", "-version", "3.1"});
  expectLine("Updated arguments: ");
  expectDelivered("first");
  Child flood({KR_EVENT_FLOOD, std::to_string(installerPID()), "0x53696E53", "0x446F6E65", "Foreign 1.0",
               std::to_string(kCount)});
  EXPECT_TRUE(eventually(
      [&] {
        press("Return");
        return eventually([&] { return logHas("Install"); }, 1);
      },
      45));
  expectInstalled(applications_ + "/Small.app");
  EXPECT_TRUE(eventually([&] { return receivedEvents() == kCount + 1; }, 30)) << "none is lost";
  EXPECT_EQ(flood.wait(10), 0);
  expectQuitsOnOK();
}

}  // namespace
}  // namespace kr::testing
