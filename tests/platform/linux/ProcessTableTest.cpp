#include "platform/ProcessTable.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <filesystem>
#include <set>
#include <thread>

#include "platform/SystemServices.h"
#include "platform/linux/ProcFS.h"
#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"
#include "tests/support/Forked.h"
#include "tests/support/TestApplication.h"

namespace kr::platform {
namespace {

using kr::testing::Child;
using kr::testing::Desktop;
using kr::testing::eventually;
using kr::testing::makeBundle;
using kr::testing::ScratchFolder;
using kr::testing::TestApplication;

constexpr std::uint32_t kNone = 0x3F3F3F3F;

class ProcessTableTest : public ::testing::Test {
 protected:
  static bool contains(const std::vector<SerialNumber>& list, SerialNumber process) {
    return std::find(list.begin(), list.end(), process) != list.end();
  }
  SerialNumber serial(const TestApplication& application) { return table.forPID(application.pid()).value(); }

  Desktop withoutDisplay{{.display = false}};
  ScratchFolder folder;
  ProcessTable& table = systemProcessTable();
};

TEST_F(ProcessTableTest, AProcessOfABundleIsAnApplication) {
  TestApplication application(folder, "Product.app", {.signature = "ABCD", .name = "The Product"});
  const SerialNumber process = serial(application);
  EXPECT_TRUE(contains(table.all(), process));
  EXPECT_EQ(table.pid(process), application.pid());
  EXPECT_TRUE(table.same(process, process));
  const std::optional<ProcessRecord> record = table.record(process);
  ASSERT_TRUE(record);
  EXPECT_EQ(record->signature, 0x41424344U);
  EXPECT_EQ(record->name, "The Product");
  EXPECT_EQ(table.displayName(process), "The Product");
  EXPECT_EQ(table.bundleLocation(process), folder / "Product.app");
  EXPECT_TRUE(table.isNativePackage(process));
  EXPECT_EQ(table.versionResource(process), std::nullopt);
}

TEST_F(ProcessTableTest, AProcessWithoutBundleAndWindowIsNone) {
  Child sleep({"sleep", "60"});
  EXPECT_FALSE(table.forPID(sleep.pid()));
  for (const SerialNumber process : table.all()) EXPECT_NE(table.pid(process), sleep.pid());
}

TEST_F(ProcessTableTest, TheRunningProgramIsAmongThemThoughItHasNoBundle) {
  const std::optional<SerialNumber> own = table.current();
  ASSERT_TRUE(own);
  EXPECT_EQ(table.pid(*own), ::getpid());
  EXPECT_EQ(table.forPID(::getpid()), own);
  EXPECT_TRUE(contains(table.all(), *own));
  EXPECT_FALSE(table.isNativePackage(*own));
  const std::string path = std::filesystem::read_symlink("/proc/self/exe");
  EXPECT_EQ(table.bundleLocation(*own), path);
  EXPECT_EQ(table.record(*own)->name, std::filesystem::path(path).filename());
  EXPECT_EQ(table.record(*own)->signature, kNone);
}

TEST_F(ProcessTableTest, TheOldestProcessComesFirstAtEveryCall) {
  TestApplication one(folder, "One.app");
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  TestApplication two(folder, "Two.app");
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  TestApplication three(folder, "Three.app");
  const std::vector<SerialNumber> all = table.all();
  const auto place = [&](const TestApplication& application) {
    return std::find(all.begin(), all.end(), serial(application)) - all.begin();
  };
  EXPECT_LT(place(one), place(two));
  EXPECT_LT(place(two), place(three));
  EXPECT_LT(place(three), static_cast<long>(all.size()));
  EXPECT_LT(std::find(all.begin(), all.end(), table.current().value()) - all.begin(), place(one));
  EXPECT_TRUE(std::is_sorted(all.begin(), all.end(), [](SerialNumber first, SerialNumber second) {
    return std::pair(first.high, first.low) < std::pair(second.high, second.low);
  }));
}

TEST_F(ProcessTableTest, TheInnermostBundleCounts) {
  TestApplication application(folder, "Outer.app/Contents/Helpers/Inner.app", {.signature = "INNR"});
  EXPECT_EQ(table.bundleLocation(serial(application)), folder / "Outer.app/Contents/Helpers/Inner.app");
  EXPECT_EQ(table.record(serial(application))->signature, 0x494E4E52U);
}

TEST_F(ProcessTableTest, AProgramDeepInABundleBelongsToIt) {
  const std::string executable = makeBundle(folder, "Deep.app", {.signature = "DEEP"});
  const std::string tool = folder.folder("Deep.app/Contents/MacOS") + "/tool";
  std::filesystem::copy_file(executable, tool);
  TestApplication application(tool);
  EXPECT_EQ(table.bundleLocation(serial(application)), folder / "Deep.app");
}

TEST_F(ProcessTableTest, ABundleThatSaysNothingGivesItsName) {
  TestApplication application(folder, "Plain Name.app");
  const std::optional<ProcessRecord> record = table.record(serial(application));
  ASSERT_TRUE(record);
  EXPECT_EQ(record->signature, kNone);
  EXPECT_EQ(record->name, "Plain Name");
  EXPECT_EQ(table.displayName(serial(application)), "Plain Name");
}

TEST_F(ProcessTableTest, ASignatureThatIsNoneCountsAsNone) {
  TestApplication application(folder, "A.app", {.signature = "AB"});
  EXPECT_EQ(table.record(serial(application))->signature, kNone);
}

TEST_F(ProcessTableTest, ADisplayNameOfItsOwnComesBeforeTheName) {
  TestApplication application(
      folder, "A.app", {.name = "Short", .further = "<key>CFBundleDisplayName</key><string>Long</string>"});
  EXPECT_EQ(table.displayName(serial(application)), "Long");
  EXPECT_EQ(table.record(serial(application))->name, "Short");
}

TEST_F(ProcessTableTest, ReadsTheDictionaryOfTheOtherLayout) {
  const std::string executable = makeBundle(folder, "G.app", {.name = "Wrong"});
  std::filesystem::remove_all(folder / "G.app/Contents");
  static_cast<void>(folder.file("G.app/Resources/Info-gnustep.plist",
                                "{ CFBundleName = \"Right\"; CFBundleSignature = \"GGGG\"; }"));
  TestApplication application(executable);
  EXPECT_EQ(table.record(serial(application))->name, "Right");
  EXPECT_EQ(table.record(serial(application))->signature, 0x47474747U);
}

TEST_F(ProcessTableTest, TheInformationIsThatOfTheBundleAndOfTheProcess) {
  TestApplication application(folder, "A.app",
                              {.identifier = "com.x.y", .further = "<key>LSUIElement</key><true/>"});
  const std::string text = table.information(serial(application)).value();
  EXPECT_TRUE(text.starts_with("<?xml")) << text;
  const auto says = [&](const std::string& part) { return text.find(part) != std::string::npos; };
  EXPECT_TRUE(says("com.x.y")) << text;
  EXPECT_TRUE(says("LSUIElement")) << text;
  EXPECT_TRUE(says("<integer>" + std::to_string(application.pid()) + "</integer>")) << text;
  EXPECT_TRUE(says("<string>" + (folder / "A.app") + "</string>")) << text;
  EXPECT_TRUE(says("<string>" + (folder / "A.app/A") + "</string>")) << text;
}

TEST_F(ProcessTableTest, APathThatIsNoTextStaysAPathAndIsLeftOutOfTheInformation) {
  TestApplication application(folder, "A\xFF.app", {.signature = "ABCD"});
  EXPECT_EQ(table.bundleLocation(serial(application)), folder / "A\xFF.app");
  EXPECT_EQ(table.record(serial(application))->signature, 0x41424344U);
  const std::string text = table.information(serial(application)).value();
  EXPECT_NE(text.find("ABCD"), std::string::npos) << text;
  EXPECT_EQ(text.find("BundlePath"), std::string::npos) << text;
}

TEST_F(ProcessTableTest, NothingIsKnownOfAProcessThatHasEnded) {
  TestApplication application(folder, "A.app");
  const SerialNumber process = serial(application);
  const pid_t pid = application.pid();
  EXPECT_TRUE(table.record(process));
  application.child().signal(SIGKILL);
  // Whether or not it was reaped already.
  EXPECT_TRUE(eventually([&] { return !table.pid(process); }));
  const auto isUnknown = [&] {
    EXPECT_FALSE(table.record(process));
    EXPECT_FALSE(table.displayName(process));
    EXPECT_FALSE(table.bundleLocation(process));
    EXPECT_FALSE(table.information(process));
    EXPECT_FALSE(table.isNativePackage(process));
    EXPECT_FALSE(table.forPID(pid));
    EXPECT_FALSE(contains(table.all(), process));
  };
  isUnknown();
  ASSERT_TRUE(application.child().wait(5.0));
  isUnknown();
  EXPECT_EQ(table.startTime(pid), 0.0);
  EXPECT_EQ(table.userTime(pid), std::nullopt);
}

TEST_F(ProcessTableTest, ABundleThatIsMovedWhileItRunsIsFoundAtItsNewPlace) {
  TestApplication application(folder, "A.app", {.signature = "ABCD"});
  EXPECT_EQ(table.bundleLocation(serial(application)), folder / "A.app");
  std::filesystem::rename(folder / "A.app", folder / "Moved.app");
  EXPECT_EQ(table.bundleLocation(serial(application)), folder / "Moved.app");
  EXPECT_EQ(table.record(serial(application))->signature, 0x41424344U);
}

TEST_F(ProcessTableTest, ADeletedBundleIsStillWhatItWas) {
  TestApplication application(folder, "A.app", {.signature = "ABCD"});
  EXPECT_EQ(table.record(serial(application))->signature, 0x41424344U);
  std::filesystem::remove_all(folder / "A.app");
  EXPECT_EQ(table.bundleLocation(serial(application)), folder / "A.app");
  EXPECT_EQ(table.record(serial(application))->signature, 0x41424344U);
  EXPECT_TRUE(contains(table.all(), serial(application)));
}

TEST_F(ProcessTableTest, ABundleThatWasReplacedWhileItRanIsStillTheOneThatWasRead) {
  TestApplication old(folder, "A.app", {.signature = "OLDA"});
  EXPECT_EQ(table.record(serial(old))->signature, 0x4F4C4441U);
  std::filesystem::remove_all(folder / "A.app");
  TestApplication current(folder, "A.app", {.signature = "NEWA"});
  EXPECT_EQ(table.record(serial(old))->signature, 0x4F4C4441U);
  EXPECT_EQ(table.bundleLocation(serial(old)), folder / "A.app");
  EXPECT_EQ(table.record(serial(current))->signature, 0x4E455741U);
  EXPECT_NE(serial(old), serial(current));
}

TEST_F(ProcessTableTest, ABundleThatWasMovedAwayWhileItRunsIsFoundThere) {
  TestApplication application(folder, "A.app", {.signature = "ABCD"});
  EXPECT_TRUE(table.record(serial(application)));
  std::filesystem::rename(folder / "A.app", folder / "Trash.app");
  static_cast<void>(makeBundle(folder, "A.app", {.signature = "NEWA"}));
  EXPECT_EQ(table.bundleLocation(serial(application)), folder / "Trash.app");
  EXPECT_EQ(table.record(serial(application))->signature, 0x41424344U);
}

TEST_F(ProcessTableTest, AnInformationFileThatIsUnreadableOrNoneLeavesTheNameOfTheBundle) {
  for (const char* contents : {"", "{", "<plist>", "\xFF\xFE", "(1, 2)"}) {
    const std::string executable = makeBundle(folder, "Odd.app", {.signature = "ODDA"});
    static_cast<void>(folder.file("Odd.app/Contents/Info.plist", contents));
    TestApplication application(executable);
    const std::optional<ProcessRecord> record = table.record(serial(application));
    ASSERT_TRUE(record) << contents;
    EXPECT_EQ(record->name, "Odd") << contents;
    EXPECT_EQ(record->signature, kNone) << contents;
  }
}

// Processes that run, and do not let their program be seen.
std::set<SerialNumber> unseenProcesses() {
  std::set<SerialNumber> result;
  for (const pid_t pid : procfs::processIDs()) {
    const std::optional<SerialNumber> process = procfs::serialNumber(pid);
    if (process && !procfs::executable(pid) && procfs::runningProcessID(*process)) result.insert(*process);
  }
  return result;
}

// A kernel thread, one of another user. Applications come and go meanwhile: one that ends lets its program be
// seen no more, one that is about to start not yet. So only those count that were so before and after.
TEST_F(ProcessTableTest, ProcessesWhoseProgramCannotBeSeenAreNoApplications) {
  const std::set<SerialNumber> before = unseenProcesses();
  const std::vector<SerialNumber> all = table.all();
  std::set<SerialNumber> known;
  for (const SerialNumber process : before) {
    if (table.forPID(procfs::processID(process)) == process) known.insert(process);
  }
  for (const SerialNumber process : unseenProcesses()) {
    if (!before.contains(process)) continue;
    EXPECT_FALSE(contains(all, process)) << process.low;
    EXPECT_FALSE(known.contains(process)) << process.low;
  }
}

TEST_F(ProcessTableTest, AnApplicationThatHidesItsProgramFromTheUserIsNone) {
  TestApplication application(folder, "A.app", {.signature = "ABCD"}, {"private"});
  const SerialNumber process = procfs::serialNumber(application.pid()).value();
  const bool mayLook = procfs::executable(application.pid()).has_value();
  if (::geteuid() != 0) EXPECT_FALSE(mayLook);
  EXPECT_EQ(contains(table.all(), process), mayLook);
  EXPECT_EQ(table.forPID(application.pid()).has_value(), mayLook);
  EXPECT_EQ(table.record(process).has_value(), mayLook);
  EXPECT_EQ(table.information(process).has_value(), mayLook);
  EXPECT_EQ(table.bundleLocation(process).has_value(), mayLook);
  EXPECT_EQ(table.pid(process), application.pid());
}

// The table that the administrator may have set up.
TEST_F(ProcessTableTest, WhereTheProcessesOfOthersAreHiddenTheyAreNone) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root mounts a process table";
  TestApplication application(folder, "A.app");
  const SerialNumber process = serial(application);
  EXPECT_EQ(
      kr::testing::inChild([&] {
        if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
          return 1;
        }
        if (::mount("proc", "/proc", "proc", 0, "hidepid=2") != 0) return 2;
        if (!contains(table.all(), process)) return 3;
        kr::testing::becomeOrdinaryUser();
        const std::optional<SerialNumber> own = table.current();
        const std::vector<SerialNumber> all = table.all();
        if (!own || !contains(all, *own) || table.forPID(::getpid()) != own) return 4;
        if (contains(all, process) || table.forPID(application.pid()) || table.pid(process)) return 5;
        if (table.record(process) || table.information(process) || table.bundleLocation(process)) return 6;
        return table.startTime(application.pid()) == 0.0 ? 0 : 7;
      }),
      0);
}

// As if every process ended, or were hidden, at that very moment.
TEST_F(ProcessTableTest, AReadThatFailsInTheMiddleReadsAsNone) {
  TestApplication application(folder, "A.app", {.signature = "ABCD"});
  const SerialNumber process = serial(application);
  for (const auto& [call, error] :
       {std::pair(SYS_readlink, ENOENT), std::pair(SYS_readlink, EACCES), std::pair(SYS_read, ESRCH),
        std::pair(SYS_openat, ENOENT), std::pair(SYS_openat, EACCES), std::pair(SYS_getdents64, ENOENT)}) {
    EXPECT_EQ(kr::testing::inChild([&, failing = call, as = error] {
                kr::testing::failSystemCall(static_cast<int>(failing), as);
                if (contains(table.all(), process)) return 1;
                if (failing == SYS_getdents64) return 0;  // the list alone needs it
                if (table.record(process) || table.information(process)) return 2;
                if (table.bundleLocation(process) || table.isNativePackage(process)) return 3;
                if (failing == SYS_readlink) return table.pid(process) ? 0 : 4;
                if (table.forPID(application.pid()) || table.pid(process)) return 5;
                if (table.userTime(application.pid()) || table.startTime(application.pid()) != 0.0) return 6;
                return 0;
              }),
              0)
        << call << " " << error;
  }
}

TEST_F(ProcessTableTest, AProcessThatTakesAnotherProgramIsThatApplication) {
  const std::string second = makeBundle(folder, "Second.app", {.signature = "SECD"});
  TestApplication application(folder, "First.app", {.signature = "FRST"}, {"exec", second});
  const SerialNumber process = serial(application);
  EXPECT_EQ(table.record(process)->signature, 0x46525354U);
  application.child().signal(SIGUSR1);
  EXPECT_TRUE(eventually([&] { return table.bundleLocation(process) == folder / "Second.app"; }));
  EXPECT_EQ(table.record(process)->signature, 0x53454344U);
}

TEST_F(ProcessTableTest, TheStartTimeIsThatOfTheProcess) {
  const auto now = static_cast<double>(::time(nullptr));
  TestApplication application(folder, "A.app");
  EXPECT_NEAR(table.startTime(application.pid()), now, 3.0);
  EXPECT_EQ(table.startTime(0), 0.0);
}

TEST_F(ProcessTableTest, TheUserTimeIsMinutesAndSeconds) {
  TestApplication application(folder, "A.app", {}, {"busy", "300"});
  const std::string text = table.userTime(application.pid()).value();
  ASSERT_EQ(text.size(), std::string("0:00.30").size()) << text;
  EXPECT_TRUE(text.starts_with("0:00.") || text.starts_with("0:01.")) << text;
  const double seconds = std::stod(text.substr(2));
  EXPECT_GE(seconds, 0.2);
  EXPECT_LE(seconds, 1.0);
}

TEST_F(ProcessTableTest, OtherToolkitsProcessesAreApplicationsWhileTheyShowAWindow) {
  Desktop desktop({.windowManager = true});
  const std::string plain = folder / "plain";
  std::filesystem::copy_file(KR_TEST_APPLICATION, plain);
  TestApplication application(plain, {"window", "One"});
  ASSERT_TRUE(eventually([&] { return table.forPID(application.pid()).has_value(); }));
  const SerialNumber process = serial(application);
  EXPECT_TRUE(contains(table.all(), process));
  EXPECT_EQ(table.bundleLocation(process), plain);
  EXPECT_FALSE(table.isNativePackage(process));
  EXPECT_EQ(table.record(process)->name, "plain");
  desktop.stopDisplay();
  EXPECT_TRUE(eventually([&] { return !table.forPID(application.pid()); }));
}

TEST_F(ProcessTableTest, StaysRightWhileProcessesComeAndGo) {
  const std::string executable = makeBundle(folder, "A.app", {.signature = "ABCD"});
  std::atomic<bool> stop = false;
  std::thread coming([&] {
    for (int round = 0; round < 40; ++round) TestApplication(executable).child().signal(SIGKILL);
    stop = true;
  });
  int found = 0;
  while (!stop) {
    for (const SerialNumber process : table.all()) {
      const std::optional<ProcessRecord> record = table.record(process);
      const std::optional<std::string> place = table.bundleLocation(process);
      if (record && place == folder / "A.app") {
        EXPECT_EQ(record->signature, 0x41424344U);
        ++found;
      }
    }
  }
  coming.join();
  EXPECT_GT(found, 0);
}

}  // namespace
}  // namespace kr::platform
